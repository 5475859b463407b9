// What prefixes mean while a file is read into a module. Prefixes are local to a file: a submodule
// gives its module and its imports prefixes of its own.
#pragma once

#include <cstdint>

#include "model/member_records.h"
#include "platform/memory.h"

namespace zr {

// A hash table of imports, by prefix or by prefix and module, over an array that stays where it is.
class ImportTable {
public:
    enum Key : uint32_t { kPrefix, kPrefixAndModule };

    // An empty table with room for `capacity` imports of the array; 0 or 12.
    uint32_t Make(const ZrsImport *imports, uint32_t capacity, Key key);
    // The first import with the key of imports[index] that was added, or null: then that one is.
    const ZrsImport *FindOrAdd(uint32_t index);
    const ZrsImport *At(uint32_t index) const { return &imports_[index]; }
    // The first import of that prefix, or null; for a table by prefix.
    const ZrsImport *Find(const char *prefix) const;

private:
    uint32_t HashOf(const ZrsImport &import) const;
    bool HasKeyOf(const ZrsImport &a, const ZrsImport &b) const;
    uint32_t *SlotOf(const ZrsImport &wanted) const;

    const ZrsImport *imports_ = nullptr;
    Key key_ = kPrefix;
    ScopedBlock<uint32_t> slots_; // index plus 1, 0 for an empty slot; at least half of them are
    uint32_t mask_ = 0;
};

} // namespace zr

// One file that is being read. The texts belong to its document.
struct ZrsFilePrefixes {
    const char *modulePrefix = nullptr; // what the file calls the module that it belongs to
    zr::ImportTable imports;            // all imports of the file, also those still to be parsed
    const ZrsFilePrefixes *including = nullptr; // of a submodule: the file of the module
};

namespace zr {

// The name of the module that a prefix means in the file that is being read into `module`, or null:
// the file's own prefixes come first, then those of the including module.
const char *ModuleNameInFile(const ZrMod *module, const char *prefix);

} // namespace zr
