// SPDX-License-Identifier: Apache-2.0
// Members of a module by their names, and what a prefix means in it.
#pragma once

#include <zrschema/context.h>

#include <cstdint>

#include "model/module_records.h"
#include "platform/memory.h"

extern "C" {
// The first record of that name, compared as text, so that a caller may ask with a buffer of its
// own; null when there is none or an argument is null.
ZR_API ZrsImport *ZRS_MOD_FindImportByPrefix(ZrsImport *array, uint32_t count, const char *prefix);
ZR_API ZrsInclude *ZRS_MOD_FindIncludeBySubName(ZrsInclude *array, uint32_t count,
                                                const char *name);
ZR_API ZrsFeature *ZRS_MOD_FindFeatureByName(const ZrMod *module, const char *name);
ZR_API ZrsIdentity *ZRS_MOD_FindIdentityByName(const ZrMod *module, const char *name);
ZR_API ZrsExtension *ZRS_MOD_FindExtensionByName(const ZrMod *module, const char *name);
ZR_API ZrsTypDef *ZRS_MOD_FindTypDefObjByName(ZrsTypDef *array, uint32_t count, const char *name);
ZR_API ZrsTypDef *ZRS_MOD_FindZrsTypDefByName(const ZrMod *module, const char *name);

// The same by the names of a loaded module and of its member.
ZR_API ZrsIdentity *ZR_CTX_FindIdentityByModNameAndIdentName(const ZrCtx *ctx,
                                                             const char *moduleName,
                                                             const char *identityName);
ZR_API ZrsTypDef *ZR_CTX_FindTdefObjByModAndTdefName(const ZrCtx *ctx, const char *moduleName,
                                                     const char *typedefName);
ZR_API ZrsFeature *ZR_CTX_FindFeatureByModNameAndFeatName(const ZrCtx *ctx, const char *moduleName,
                                                          const char *featureName);

// The name of the module that is imported with the prefix, or null.
ZR_API const char *ZRS_MOD_GetImportModNameByPrefix(const ZrMod *module, const char *prefix);
// The same, but the module's own prefix comes first and gives its own name.
ZR_API const char *ZRS_MOD_GetModuleNameByPrefix(const ZrMod *module, const char *prefix);
// "prefix:name" or "name", which means this module's own, as a new text "module:name" that the
// caller frees with zr::Free. Null for anything else, for names of more than 64 characters, for an
// unknown prefix, and when memory runs out.
ZR_API char *ZRS_MOD_ConvertPrefixValToJsonFormat(const ZrMod *module, const char *value);
}

namespace zr {

// Whether a feature of a loaded module is on; false for one that is not known.
bool IsFeatureOn(const ZrCtx *ctx, const char *moduleName, const char *featureName);
// Whether all of these are, which may be none.
bool AreFeaturesOn(const ZrCtx *ctx, const ZrsIfFeature *conditions, uint32_t count);

} // namespace zr

// What prefixes mean while a file is read into a module. Prefixes are local to a file: a submodule
// gives its module and its imports prefixes of its own.

namespace zr {

// A hash table of imports, by prefix or by prefix and module, over an array that stays where it is.
class ImportTable {
public:
    enum Key : uint32_t { kPrefix, kPrefixAndModule };

    // An empty table with room for `capacity` imports of the array: ZR_OK or ZR_ERR_NO_MEMORY.
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
    Owned<uint32_t> slots_; // index plus 1, 0 for an empty slot; at least half of them are
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
