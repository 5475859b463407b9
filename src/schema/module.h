// Module records: prefix resolution, lookups by names, destruction. What applications ask of a
// module stands in zrschema/module.h.
#pragma once

#include <zrschema/context.h>
#include <zrschema/module.h>

#include "schema/module_record.h"

extern "C" {
// The name of the module that is imported with the prefix, or null.
ZR_API const char *ZRS_MOD_GetImportModNameByPrefix(const ZrMod *module, const char *prefix);
// The same, but the module's own prefix comes first and gives its own name. While a file is read
// into the module, a prefix means what it means there (file_prefixes.h).
ZR_API const char *ZRS_MOD_GetModuleNameByPrefix(const ZrMod *module, const char *prefix);
// "prefix:name" or "name", which means this module's own, as a new text "module:name" that the
// caller frees with zr::Free. Null for anything else, for names of more than 64 characters, for an
// unknown prefix, and when memory runs out.
ZR_API char *ZRS_MOD_ConvertPrefixValToJsonFormat(const ZrMod *module, const char *value);

// The two halves of freeing a module: its header and member arrays, and its four node lists.
// Coupled augments must be uncoupled before.
ZR_API void ZRS_MOD_DestroyNonNodeMember(ZrMod *module);
ZR_API void ZRS_MOD_DestroyNodeMember(ZrMod *module);
// Frees the record with everything in it; null is accepted. The module stands in no tree any more.
ZR_API void ZRS_MOD_Free(ZrMod *module);

// Members of a loaded module by module and member name; null when any is missing.
ZR_API ZrsIdentity *ZR_CTX_FindIdentityByModNameAndIdentName(const ZrCtx *ctx,
                                                             const char *moduleName,
                                                             const char *identityName);
ZR_API ZrsTypDef *ZR_CTX_FindTdefObjByModAndTdefName(const ZrCtx *ctx, const char *moduleName,
                                                     const char *typedefName);
ZR_API ZrsFeature *ZR_CTX_FindFeatureByModNameAndFeatName(const ZrCtx *ctx, const char *moduleName,
                                                          const char *featureName);

// Takes the module out of the context's trees, deletes its load errors and frees it.
ZR_API void ZR_CTX_DestroyModuleNode(ZrCtx *ctx, ZrMod *module);
// Uncouples all augments of all modules, then destroys every module in name order.
ZR_API void ZR_CTX_DeInitModuleTree(ZrCtx *ctx);
}

namespace zr {
// A zeroed module record of the context, standing in no tree; null when memory runs out.
ZrMod *NewModule(ZrCtx *ctx);
} // namespace zr
