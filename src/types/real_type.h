// SPDX-License-Identifier: Apache-2.0
// Operations on type records: copied, destroyed, asked, resolved, and a value checked against one.
#pragma once

#include <zrschema/type.h>
#include <zrschema/types.h>

#include "foundation/context_record.h"
#include "model/type_records.h"

extern "C" {
// Makes room for `count` slots, zero-filled and uncounted. ZR_OK, ZR_ERR_INVALID for a null type or
// one that has slots already, ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZRT_TYPE_ExpandConstraintArray(ZrtRealType *type, uint32_t count);

// A new record with texts and blocks of its own, which accepts what the source accepts but for
// inverted patterns (docs/oddities.md); null for a null argument and when memory runs out. Its
// typedef references are not resolved.
ZR_API ZrtRealType *ZRT_TYPE_CopyZrtRealType(ZrCtx *ctx, const ZrtRealType *source);
// The same into a record without slots: ZR_OK, or ZR_ERR_NO_MEMORY for every failure, and then the
// record is empty.
ZR_API uint32_t ZRT_TYPE_CopyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *destination,
                                              const ZrtRealType *source);
// Releases a record that is a block of its own; null is accepted.
ZR_API void ZRT_TYPE_DestroyZrtRealType(ZrCtx *ctx, ZrtRealType *type);
// Empties a record that stands in another.
ZR_API void ZRT_TYPE_DestroyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *type);
// Releases the slots with their bodies; the rest of the record stays.
ZR_API void ZRT_TYPE_DestroyTypeConstraintArray(ZrCtx *ctx, ZrtRealType *type);

// The body of the slot of a kind, null when the type has none.
ZR_API void *ZRT_TYPE_GetTypeConsDataByConsType(const ZrtRealType *type, uint32_t kind);
// The typedef reference, null for a built-in type.
ZR_API ZrtConsDerived *ZRT_TYPE_GetTypeConsDataDerived(const ZrtRealType *type);
// The fraction digits, 0 when the type gives none.
ZR_API uint32_t ZRT_TYPE_GetTypeConsDataFractionVal(const ZrtRealType *type);
// The name of the typedef that the type refers to, and that of its module; both null for a built-in
// type. `moduleNameOut` may be null.
ZR_API const char *ZRT_TYPE_GetInheritedTypDefName(const ZrtRealType *type,
                                                   const char **moduleNameOut);
// 1 for an identityref itself, not for a typedef of one; else 0.
ZR_API uint32_t ZRT_TYPE_IsTypeWithIdentref(const ZrtRealType *type);
// 1 for null and for a record that no "type" statement has filled.
ZR_API uint32_t ZRT_TYPE_IsInvalidType(const ZrtRealType *type);

// Resolves the references to typedefs of `module`, also those of a union's members. ZR_OK;
// ZR_ERR_INVALID for a null argument, a reference without names, or a typedef that the module does
// not have.
ZR_API uint32_t ZRT_TYPE_UpdateRealTypeDerivedFrom(ZrtRealType *type, const ZrMod *module);

// Checks a value, a text (ZR_VALUE_STRING) or an element (ZR_VALUE_XML), in a context that is zero
// but for the library context and the leaf. ZR_OK, ZR_ERR_INVALID for a null type or context, or
// the status of the restriction that refuses the value; the context is of no more use then.
ZR_API uint32_t ZRT_TYPE_ValidateValueNodeAgainstRealType(const ZrtRealType *type,
                                                          uint32_t inputKind, const void *value,
                                                          ZrtValidateCtx *validation);
// The part of the check that the built-in type demands before any restriction.
ZR_API uint32_t ZRT_TYPE_CheckBaseTypeSystemRestriction(uint32_t baseType, uint32_t inputKind,
                                                        const void *value,
                                                        ZrtValidateCtx *validation);
// Records the type that took the value, unless one is recorded already.
ZR_API void ZRT_TYPE_SetMatchRealType(ZrtValidateCtx *validation, const ZrtRealType *type);
}
