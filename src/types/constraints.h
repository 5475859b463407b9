// SPDX-License-Identifier: Apache-2.0
// The operations of each constraint kind, as the dispatch tables list them: those on records stand
// in real_type.cpp, the checks in value_check.cpp, the scans in type_scans.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "foundation/context_record.h"
#include "model/type_records.h"
#include "platform/memory.h"

extern "C" {
// A zero-filled body with room for `count` items; null when memory runs out.
ZR_API void *ZRT_CONS_CreateConsDataBodyWithDerived(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithBase(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithBit(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithEnum(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithFraction(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithPath(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithPattern(uint32_t count);
ZR_API void *ZRT_CONS_CreateConsDataBodyWithRange(uint32_t count); // also of lengths
ZR_API void *ZRT_CONS_CreateConsDataBodyWithUnion(uint32_t count);

// Give a body back with its texts and blocks; null is accepted.
ZR_API void ZRT_CONS_DestroyConsDataBodyWithDerived(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithBase(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithBit(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithEnum(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithNoDynamic(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithPath(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithPattern(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithRange(ZrCtx *ctx, void *body);
ZR_API void ZRT_CONS_DestroyConsDataBodyWithUnion(ZrCtx *ctx, void *body);

// A body with references of its own; null for a null argument and when memory runs out.
ZR_API void *ZRT_CONS_CopyConsDataBodyWithDerived(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithBase(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithBit(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithEnum(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithFraction(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithPath(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithPattern(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithRange(ZrCtx *ctx, const void *body);
ZR_API void *ZRT_CONS_CopyConsDataBodyWithUnion(ZrCtx *ctx, const void *body);

// Check a value: ZR_OK, or the status of the kind, ZR_ERR_VALUE_..., when it is refused.
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataDerived(const void *body, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBase(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBit(const void *body, uint32_t inputKind,
                                                         const void *value,
                                                         ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataEnum(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataFraction(const void *body, uint32_t inputKind,
                                                              const void *value,
                                                              ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataLength(const void *body, uint32_t inputKind,
                                                            const void *value,
                                                            ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPath(const void *body, uint32_t inputKind,
                                                          const void *value,
                                                          ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPattern(const void *body, uint32_t inputKind,
                                                             const void *value,
                                                             ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataRange(const void *body, uint32_t inputKind,
                                                           const void *value,
                                                           ZrtValidateCtx *validation);
ZR_API uint32_t ZRT_CONS_ValidateValueNodeAgainstDataUnion(const void *body, uint32_t inputKind,
                                                           const void *value,
                                                           ZrtValidateCtx *validation);

// Resolve references to typedefs of `module`: ZR_OK, or ZR_ERR_INVALID for one that it lacks.
ZR_API uint32_t ZRT_CONS_UpdateConsDataDerFromWithDerived(void *body, const ZrMod *module);
ZR_API uint32_t ZRT_CONS_UpdateConsDataDerFromWithUnion(void *body, const ZrMod *module);

// Each calls back per item or segment, in order, and stops at the first non-zero result.
ZR_API uint32_t ZRT_CONS_ScanNameValuePairsWithBit(const void *body, ZrNameValueScanFunc callback,
                                                   void *userData);
ZR_API uint32_t ZRT_CONS_ScanNameValuePairsWithEnum(const void *body, ZrNameValueScanFunc callback,
                                                    void *userData);
ZR_API uint32_t ZRT_CONS_ScanStartEndPairsWithLength(const void *body, uint32_t baseType,
                                                     ZrStartEndScanFunc callback, void *userData);
ZR_API uint32_t ZRT_CONS_ScanStartEndPairsWithRange(const void *body, uint32_t baseType,
                                                    ZrStartEndScanFunc callback, void *userData);

// Reads of one body, which may be null: then 0 or null comes back.
ZR_API uint32_t ZRT_CONS_GetConsDataFractionVal(const void *body);
ZR_API const char *ZRT_CONS_GetConsDataLeafrefPath(const void *body);
ZR_API const char *ZRT_CONS_GetConsDataInheritedTypDefName(const void *body,
                                                           const char **moduleNameOut);
// The members of a union and, where `countOut` is not null, their number.
// For callers outside the library.
ZR_API ZrtRealType *ZRT_CONS_GetConsUnionSubTypeData(const void *body, uint16_t *countOut);
}

// Bodies of constraint slots: the parts that every kind shares.

extern "C" {
// A zeroed body; when count and item size are both non-zero, its item array is zeroed and stored
// in the body's array pointer, which every counted body has at the same place. Null when memory
// runs out.
ZR_API void *ZRT_CONS_CreateConsDataBodyAndSegSize(uint32_t bodySize, uint32_t count,
                                                   uint32_t itemSize);
// The text of a value: the text itself (ZR_VALUE_STRING) or that of an element (ZR_VALUE_XML); null
// when there is none, and for another kind of input.
ZR_API const char *ZRT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void *value);
}

namespace zr {

// A counted body starts with its 16-bit count; the array pointer is its second word.
constexpr size_t kBodyArrayOffset = sizeof(void *);

template <typename Body> using BodyItem = std::remove_pointer_t<decltype(Body::items)>;

// A body with `count` zeroed items, or null.
template <typename Body> Body *CreateCountedBody(uint32_t count)
{
    static_assert(offsetof(Body, count) == 0);
    static_assert(offsetof(Body, items) == kBodyArrayOffset);
    if (count > UINT16_MAX)
        return nullptr;
    auto *body = static_cast<Body *>(
        ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(Body), count, sizeof(BodyItem<Body>)));
    if (body != nullptr)
        body->count = static_cast<uint16_t>(count);
    return body;
}

// Releases every item with `release(ctx, item)`, then the array and the body.
template <typename Body, typename Release>
void DestroyCountedBody(ZrCtx *ctx, void *opaque, Release release)
{
    auto *body = static_cast<Body *>(opaque);
    if (body == nullptr)
        return;
    for (uint32_t i = 0; body->items != nullptr && i < body->count; ++i)
        release(ctx, body->items[i]);
    zr::Free(body->items);
    zr::Free(body);
}

// A new body whose items are made by `copy(ctx, to, from)`, which is false on failure; `destroy`
// takes back a partial copy. Null when memory runs out.
template <typename Body, typename Copy>
Body *CopyCountedBody(ZrCtx *ctx, const void *opaque, Copy copy, void (*destroy)(ZrCtx *, void *))
{
    const auto *source = static_cast<const Body *>(opaque);
    if (ctx == nullptr || source == nullptr)
        return nullptr;
    Body *body = CreateCountedBody<Body>(source->count);
    if (body == nullptr)
        return nullptr;
    for (uint32_t i = 0; i < source->count; ++i) {
        if (!copy(ctx, body->items[i], source->items[i])) {
            destroy(ctx, body);
            return nullptr;
        }
    }
    return body;
}

} // namespace zr

// Dispatch by constraint kind and by built-in type.

typedef void *(*ZrtConsCreateFunc)(uint32_t count);
typedef void (*ZrtConsDestroyFunc)(ZrCtx *ctx, void *body);
typedef void *(*ZrtConsCopyFunc)(ZrCtx *ctx, const void *body);
typedef uint32_t (*ZrtConsCheckFunc)(const void *body, uint32_t inputKind, const void *value,
                                     ZrtValidateCtx *validation);
typedef uint32_t (*ZrtConsUpdateFunc)(void *body, const ZrMod *module);
typedef uint32_t (*ZrtConsScanNameValueFunc)(const void *body, ZrNameValueScanFunc callback,
                                             void *userData);
typedef uint32_t (*ZrtConsScanStartEndFunc)(const void *body, uint32_t baseType,
                                            ZrStartEndScanFunc callback, void *userData);
typedef uint32_t (*ZrtDefaultCheckFunc)(uint32_t baseType, uint32_t inputKind, const void *value,
                                        ZrtValidateCtx *validation);

extern "C" {
// The operation of a kind, and the check of a built-in type before any restriction; null where
// there is none, also for a number beyond the last.
ZR_API ZrtConsCreateFunc ZRT_CONS_GetConsDataCreateBodyFunc(uint32_t kind);
ZR_API ZrtConsDestroyFunc ZRT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind);
ZR_API ZrtConsCopyFunc ZRT_CONS_GetConsDataCopyBodyFunc(uint32_t kind);
ZR_API ZrtConsCheckFunc ZRT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind);
ZR_API ZrtConsUpdateFunc ZRT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind);
ZR_API ZrtConsScanNameValueFunc ZRT_CONS_GetConsDataScanNameValueFunc(uint32_t kind);
ZR_API ZrtConsScanStartEndFunc ZRT_CONS_GetConsDataScanStartEndFunc(uint32_t kind);
ZR_API ZrtDefaultCheckFunc ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType);
}

// Paths of leafrefs.

namespace zr {

// A zero-filled body for a path with predicates; null when memory runs out.
ZrtConsPath *CreateFullPath();

// The body with its predicates; null for one that has none.
inline ZrtConsFullPath *FullPathOf(ZrtConsPath *path)
{
    bool isFull = path != nullptr && (path->requireInstance & ZRT_PATH_HAS_PREDICATES) != 0;
    return isFull ? static_cast<ZrtConsFullPath *>(path) : nullptr;
}
inline const ZrtConsFullPath *FullPathOf(const ZrtConsPath *path)
{
    return FullPathOf(const_cast<ZrtConsPath *>(path));
}

} // namespace zr

// Values handed on to another type: a union's member or a leafref's target.

namespace zr {

// Validates the value against `type` in a fresh context that carries over `outer`'s library
// context, and `node` as the leaf, which is `outer`'s own or the target of a leafref of it. On
// success `*matchedOut` is the type that the fresh context recorded as matched, or null.
uint32_t ValidateNested(const ZrtRealType *type, uint32_t inputKind, const void *value,
                        ZrtValidateCtx *outer, const ZrNode *node, const ZrtRealType **matchedOut);

} // namespace zr
