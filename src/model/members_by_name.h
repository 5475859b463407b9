// Members of a module by their names, and what a prefix means in it.
//
// A name is compared as text, so that a caller may ask with a buffer of its own. The first record
// of that name, or null when there is none or an argument is null.
#pragma once

#include <zrschema/context.h>

#include "model/module_record.h"

extern "C" {
ZR_API ZrsImport *ZRS_MOD_FindImportByPrefix(ZrsImport *array, uint32_t count, const char *prefix);
ZR_API ZrsInclude *ZRS_MOD_FindIncludeBySubName(ZrsInclude *array, uint32_t count,
                                                const char *name);
ZR_API ZrsFeature *ZRS_MOD_FindFeatureByName(const ZrMod *module, const char *name);
ZR_API ZrsIdentity *ZRS_MOD_FindIdentityByName(const ZrMod *module, const char *name);
ZR_API ZrsExtension *ZRS_MOD_FindExtensionByName(const ZrMod *module, const char *name);
ZR_API ZrsTypDef *ZRS_MOD_FindTypDefObjByName(ZrsTypDef *array, uint32_t count, const char *name);
ZR_API ZrsTypDef *ZRS_MOD_FindZrsTypDefByName(const ZrMod *module, const char *name);

// Members of a loaded module by the module's name and theirs.
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
