// Operations on type records: copy, destroy, lookup of slots, resolution, validation entry.
#pragma once

#include <zrschema/type.h>
#include <zrschema/types.h>

#include "foundation/context_record.h"
#include "model/type_records.h"

extern "C" {
ZR_API uint32_t ZRT_TYPE_ExpandConstraintArray(ZrtRealType *type, uint32_t count);
ZR_API ZrtRealType *ZRT_TYPE_CopyZrtRealType(ZrCtx *ctx, const ZrtRealType *source);
ZR_API uint32_t ZRT_TYPE_CopyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *destination,
                                              const ZrtRealType *source);
ZR_API void ZRT_TYPE_DestroyZrtRealType(ZrCtx *ctx, ZrtRealType *type);
ZR_API void ZRT_TYPE_DestroyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *type);
ZR_API void ZRT_TYPE_DestroyTypeConstraintArray(ZrCtx *ctx, ZrtRealType *type);
ZR_API void *ZRT_TYPE_GetTypeConsDataByConsType(const ZrtRealType *type, uint32_t kind);
ZR_API ZrtConsDerived *ZRT_TYPE_GetTypeConsDataDerived(const ZrtRealType *type);
ZR_API uint32_t ZRT_TYPE_GetTypeConsDataFractionVal(const ZrtRealType *type);
ZR_API const char *ZRT_TYPE_GetInheritedTypDefName(const ZrtRealType *type,
                                                   const char **moduleNameOut);
ZR_API uint32_t ZRT_TYPE_IsTypeWithIdentref(const ZrtRealType *type);
ZR_API uint32_t ZRT_TYPE_IsInvalidType(const ZrtRealType *type);
ZR_API uint32_t ZRT_TYPE_UpdateRealTypeDerivedFrom(ZrtRealType *type, const ZrMod *module);
ZR_API uint32_t ZRT_TYPE_ValidateValueNodeAgainstRealType(const ZrtRealType *type,
                                                          uint32_t inputKind, const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_TYPE_CheckBaseTypeSystemRestriction(uint32_t baseType, uint32_t inputKind,
                                                        const void *value,
                                                        ZrtValidateCtx *validation);
ZR_API const char *ZRT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void *value);
ZR_API void ZRT_TYPE_SetMatchRealType(ZrtValidateCtx *validation, const ZrtRealType *type);
}

// Where a leafref leads (RFC 7950, section 9.9): read alike by queries and by checks of values.

namespace zr {

// The path of a leaf or leaf-list that is a leafref: its type's, or the first one along the chain
// of its typedefs. Null for another type and for another node.
const char *LeafrefPathOf(const ZrNode *node);

// The node that the path leads to from `node`, with `follow` on through the leafrefs that it meets.
// Null when there is none, and when the leafrefs do not come to an end.
ZrNode *LeafrefTarget(const ZrNode *node, const char *path, bool follow);

} // namespace zr
