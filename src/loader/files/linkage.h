// SPDX-License-Identifier: Apache-2.0
// "import" and "include" of the files of one module: its own, and those of its submodules.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"

namespace zr {

class Linkage;

// Finds a submodule that a file asks for, and reads it into the module: the status of the include.
using SubmoduleLoader = uint32_t (*)(ZrMod *module, const char *submoduleName, Linkage *linkage);

// Lets the module's prefixes mean what they mean in one file, for the length of a scope.
class FileScope {
public:
    explicit FileScope(ZrMod *module) : module_(module), outer_(module->file) {}
    ~FileScope() { module_->file = outer_; }
    FileScope(const FileScope &) = delete;
    FileScope &operator=(const FileScope &) = delete;

    // The file below `root`, which calls the module `prefix`. The document stays open meanwhile.
    // ZR_OK or ZR_ERR_NO_MEMORY, as for the next.
    uint32_t Enter(const xmlNode *root, const char *prefix);
    // The module's own file when all its linkage is parsed: the imports of the module record.
    uint32_t EnterRecord();

private:
    ZrMod *module_;
    const ZrsFilePrefixes *outer_;
    ZrsFilePrefixes file_;
    Owned<ZrsImport> texts_; // the file's imports; their texts belong to the document
};

// What the linkage of a module has come to. Imports of submodules wait until all of the module's
// own are there: the first import of a prefix is the one that counts.
class Linkage {
public:
    Linkage(ZrMod *module, SubmoduleLoader loadSubmodule)
        : module_(module), loadSubmodule_(loadSubmodule)
    {
    }
    ~Linkage();
    Linkage(const Linkage &) = delete;
    Linkage &operator=(const Linkage &) = delete;

    // Every "import" and "include" of a file in document order, up to the first failure.
    uint32_t ParseFile(xmlNode *root);
    uint32_t Include(const xmlNode *element);
    // Appends the imports of the submodules that the module does not have itself.
    uint32_t Finish();

    uint32_t depth = 0; // includes around the file that is being read

private:
    uint32_t ParseStatement(xmlNode *element, uint32_t statement);
    uint32_t Import(const xmlNode *element);
    bool IsRepeated(const ZrsImport &texts, uint32_t index) const;
    uint32_t Keep(const ZrsImport &texts);
    uint32_t TakeOver(ZrsImport *import, ImportTable *table);

    ZrMod *module_;
    SubmoduleLoader loadSubmodule_;
    uint32_t parsed_ = 0; // imports of the file so far
    uint32_t room_ = 0;   // free places behind the module's imports
    ZrsImport *brought_ = nullptr;
    uint32_t broughtCount_ = 0;
    uint32_t broughtRoom_ = 0;
};

} // namespace zr
