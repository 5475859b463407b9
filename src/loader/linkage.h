// "import" and "include" of the files of one module: its own, and those of its submodules.
#pragma once

#include <zrschema/types.h>

#include <libxml/tree.h>

#include <cstdint>

#include "loader/engine.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"

namespace zr {

// Lets the module's prefixes mean what they mean in one file, for the length of a scope.
class FileScope {
public:
    explicit FileScope(ZrMod *module) : module_(module), outer_(module->file) {}
    ~FileScope() { module_->file = outer_; }
    FileScope(const FileScope &) = delete;
    FileScope &operator=(const FileScope &) = delete;

    // The file below `root`, which calls the module `prefix`. The document stays open meanwhile.
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
    explicit Linkage(ZrMod *module) : module_(module) {}
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
    void RecordFailure(uint32_t statement) const;
    uint32_t Import(const xmlNode *element);
    bool IsRepeated(const ZrsImport &texts, uint32_t index) const;
    uint32_t Keep(const ZrsImport &texts);
    uint32_t TakeOver(ZrsImport *import, ImportTable *table);

    ZrMod *module_;
    uint32_t parsed_ = 0; // imports of the file so far
    uint32_t room_ = 0;   // free places behind the module's imports
    ZrsImport *brought_ = nullptr;
    uint32_t broughtCount_ = 0;
    uint32_t broughtRoom_ = 0;
};

// Parses what belongs to the linkage of a module whose own file is not being read.
template <typename Parse> uint32_t ParseAlone(ZrMod *module, Parse parse)
{
    Linkage linkage(module);
    FileScope record(module);
    uint32_t status = record.EnterRecord();
    if (status == ZR_OK)
        status = parse(&linkage);
    return status == ZR_OK ? linkage.Finish() : status;
}

} // namespace zr

// Module content: header, linkage and body statements; the content of included submodules.

extern "C" {
// Reads a whole "module" element into the module record, which has its name already.
ZR_API uint32_t ZRS_LOADER_ParseModuleContent(ZrMod *module, xmlNode *root,
                                              const char *expectedName);
// "yang-version", "namespace" and "prefix"; ends as soon as it has seen all three.
ZR_API uint32_t ZRS_LOADER_ParseModuleHeadStmts(ZrMod *module, xmlNode *root);
// The bit of a header statement, 0 for every other statement.
ZR_API uint32_t ZRS_LOADER_MapModuleHeadStmtToBit(uint32_t statement);
// Every "import" and "include" in document order.
ZR_API uint32_t ZRS_LOADER_ParseLinkageStmts(ZrMod *module, xmlNode *root);
// Counts the array statements of a body and grows the module's arrays by them; what the module
// holds already stays in front. The index counters of the rows hold the lengths so far.
ZR_API uint32_t ZRS_LOADER_CounterAndExpandBodyStmtArray(ZrMod *module, xmlNode *root,
                                                         ZrsSubElem *rows, uint32_t rowCount);
// Reads a "submodule" element into the including module.
ZR_API uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root,
                                                 const char *submoduleName);
// Finds, reads and parses a submodule into the including module; 0 or the failing status: 2 when
// there is no file of that name, 22 when includes are nested more than 128 deep.
ZR_API uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName);
}

namespace zr {

// The body of a module, or of a submodule, whose revision, description and organization are checked
// and dropped.
uint32_t ParseModuleBody(ZrMod *module, xmlNode *root);
uint32_t ParseSubmoduleBody(ZrMod *module, xmlNode *root);
// A submodule that a file asks for; 22 when includes are nested too deep.
uint32_t LoadSubmodule(ZrMod *module, const char *submoduleName, Linkage *linkage);
// The argument of an element's first "prefix" child. A missing one is recorded together with the
// value of the statement that needs it, and gives null.
const char *RequirePrefixChild(ZrMod *module, const xmlNode *element, uint32_t statement,
                               const char *value);

} // namespace zr
