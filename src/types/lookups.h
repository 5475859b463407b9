// What the types ask of the modules and nodes that stand above them.
//
// A typedef, an identity and a leafref's target are found by name at each validation, in records
// of the schema, which is built on the types. Declaring just these few functions here keeps the
// includes pointing down; their own headers say what they do.
#pragma once

#include <zrschema/types.h>

#include "schema/member_records.h"

extern "C" {
ZR_API ZrsTypDef *ZR_CTX_FindTdefObjByModAndTdefName(const ZrCtx *ctx, const char *moduleName,
                                                     const char *typedefName);
ZR_API ZrsIdentity *ZR_CTX_FindIdentityByModNameAndIdentName(const ZrCtx *ctx,
                                                             const char *moduleName,
                                                             const char *identityName);
ZR_API ZrsTypDef *ZRS_MOD_FindZrsTypDefByName(const ZrMod *module, const char *name);
ZR_API ZrNode *ZRS_MOD_GetNodeByXpath(const ZrMod *module, const ZrNode *contextNode,
                                      const char *path);
ZR_API const ZrtRealType *ZRS_NODE_GetLeafSchemaRealType(const ZrNode *node);
}
