// SPDX-License-Identifier: Apache-2.0
// Type records: copied, destroyed, asked for their constraints, resolved to typedefs.
#include "types/real_type.h"

#include <cstring>
#include <iterator>

#include "foundation/array.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "types/constraints.h"
#include "types/type_notes.h"

namespace {

struct RecordRow {
    ZrtConsKind kind;
    ZrtConsCreateFunc create;
    ZrtConsDestroyFunc destroy;
    ZrtConsCopyFunc copy;
    ZrtConsUpdateFunc update;
};

// clang-format off
constexpr RecordRow kRecordRows[] = {
    {ZRT_CONS_DERIVED,  ZRT_CONS_CreateConsDataBodyWithDerived,  ZRT_CONS_DestroyConsDataBodyWithDerived,   ZRT_CONS_CopyConsDataBodyWithDerived,  ZRT_CONS_UpdateConsDataDerFromWithDerived},
    {ZRT_CONS_BASE,     ZRT_CONS_CreateConsDataBodyWithBase,     ZRT_CONS_DestroyConsDataBodyWithBase,      ZRT_CONS_CopyConsDataBodyWithBase,     nullptr},
    {ZRT_CONS_BIT,      ZRT_CONS_CreateConsDataBodyWithBit,      ZRT_CONS_DestroyConsDataBodyWithBit,       ZRT_CONS_CopyConsDataBodyWithBit,      nullptr},
    {ZRT_CONS_ENUM,     ZRT_CONS_CreateConsDataBodyWithEnum,     ZRT_CONS_DestroyConsDataBodyWithEnum,      ZRT_CONS_CopyConsDataBodyWithEnum,     nullptr},
    {ZRT_CONS_FRACTION, ZRT_CONS_CreateConsDataBodyWithFraction, ZRT_CONS_DestroyConsDataBodyWithNoDynamic, ZRT_CONS_CopyConsDataBodyWithFraction, nullptr},
    {ZRT_CONS_LENGTH,   ZRT_CONS_CreateConsDataBodyWithRange,    ZRT_CONS_DestroyConsDataBodyWithRange,     ZRT_CONS_CopyConsDataBodyWithRange,    nullptr},
    {ZRT_CONS_PATH,     ZRT_CONS_CreateConsDataBodyWithPath,     ZRT_CONS_DestroyConsDataBodyWithPath,      ZRT_CONS_CopyConsDataBodyWithPath,     nullptr},
    {ZRT_CONS_PATTERN,  ZRT_CONS_CreateConsDataBodyWithPattern,  ZRT_CONS_DestroyConsDataBodyWithPattern,   ZRT_CONS_CopyConsDataBodyWithPattern,  nullptr},
    {ZRT_CONS_RANGE,    ZRT_CONS_CreateConsDataBodyWithRange,    ZRT_CONS_DestroyConsDataBodyWithRange,     ZRT_CONS_CopyConsDataBodyWithRange,    nullptr},
    {ZRT_CONS_UNION,    ZRT_CONS_CreateConsDataBodyWithUnion,    ZRT_CONS_DestroyConsDataBodyWithUnion,     ZRT_CONS_CopyConsDataBodyWithUnion,    ZRT_CONS_UpdateConsDataDerFromWithUnion},
};
// clang-format on
static_assert(zr::RowsInOrder(kRecordRows, &RecordRow::kind, 0, ZRT_CONS_KIND_COUNT));

constexpr RecordRow kNoRow = {};

const RecordRow &RowOf(uint32_t kind)
{
    return kind < std::size(kRecordRows) ? kRecordRows[kind] : kNoRow;
}

} // namespace

ZrtConsCreateFunc ZRT_CONS_GetConsDataCreateBodyFunc(uint32_t kind)
{
    return RowOf(kind).create;
}

ZrtConsDestroyFunc ZRT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind)
{
    return RowOf(kind).destroy;
}

ZrtConsCopyFunc ZRT_CONS_GetConsDataCopyBodyFunc(uint32_t kind)
{
    return RowOf(kind).copy;
}

ZrtConsUpdateFunc ZRT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind)
{
    return RowOf(kind).update;
}

uint32_t ZRT_TYPE_ExpandConstraintArray(ZrtRealType *type, uint32_t count)
{
    if (type == nullptr)
        return ZR_ERR_INVALID;
    return zr::NewArray(&type->constraints, count);
}

void ZRT_TYPE_DestroyTypeConstraintArray(ZrCtx *ctx, ZrtRealType *type)
{
    if (type == nullptr)
        return;
    zr::DestroyNotes(ctx, type);
    for (uint32_t i = 0; i < type->consCount; ++i) {
        ZrtConsSlot &slot = type->constraints[i];
        ZrtConsDestroyFunc destroy = ZRT_CONS_GetConsDataDestroyBodyFunc(slot.kind);
        if (slot.body != nullptr && destroy != nullptr)
            destroy(ctx, slot.body);
    }
    zr::Free(type->constraints);
    type->constraints = nullptr;
    type->consCount = 0;
}

void ZRT_TYPE_DestroyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *type)
{
    if (type == nullptr)
        return;
    ZRT_TYPE_DestroyTypeConstraintArray(ctx, type);
    type->baseType = ZRT_TYPE_DERIVED;
    type->flags = 0;
}

void ZRT_TYPE_DestroyZrtRealType(ZrCtx *ctx, ZrtRealType *type)
{
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, type);
    zr::Free(type);
}

namespace {

bool CopySlot(ZrCtx *ctx, ZrtConsSlot &slot, const ZrtConsSlot &source)
{
    ZrtConsCopyFunc copy = ZRT_CONS_GetConsDataCopyBodyFunc(source.kind);
    if (copy == nullptr || source.body == nullptr)
        return false;
    slot.kind = source.kind;
    slot.body = copy(ctx, source.body);
    return slot.body != nullptr;
}

// Into the array of slots, whose length fits.
bool CopySlots(ZrCtx *ctx, ZrtRealType *destination, const ZrtRealType *source)
{
    for (uint32_t i = 0; i < source->consCount; ++i) {
        if (!CopySlot(ctx, destination->constraints[i], source->constraints[i]))
            return false;
        ++destination->consCount;
    }
    const ZrtTypeNotes *notes = zr::NotesOf(source);
    return notes == nullptr || zr::CopyNotes(ctx, destination, notes);
}

} // namespace

uint32_t ZRT_TYPE_CopyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *destination,
                                       const ZrtRealType *source)
{
    if (ctx == nullptr || destination == nullptr || source == nullptr)
        return ZR_ERR_NO_MEMORY;
    if (source->consCount == 0) {
        // A type without slots has no bounds, so there are no flags of these to take over.
        destination->baseType = source->baseType;
        destination->flags = static_cast<uint16_t>(source->flags & ZRT_INSTANCE_BITS);
        destination->consCount = 0;
        destination->constraints = nullptr;
        return ZR_OK;
    }
    uint32_t slotCount = source->consCount + (zr::NotesOf(source) != nullptr ? 1u : 0u);
    if (ZRT_TYPE_ExpandConstraintArray(destination, slotCount) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    destination->baseType = source->baseType;
    destination->flags = static_cast<uint16_t>(source->flags & ~ZRT_TYPE_HAS_NOTES);
    if (CopySlots(ctx, destination, source))
        return ZR_OK;
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, destination);
    return ZR_ERR_NO_MEMORY;
}

ZrtRealType *ZRT_TYPE_CopyZrtRealType(ZrCtx *ctx, const ZrtRealType *source)
{
    if (source == nullptr)
        return nullptr;
    zr::Owned<ZrtRealType> copy(zr::New<ZrtRealType>());
    if (!copy || ZRT_TYPE_CopyZrtRealTypeInner(ctx, copy.get(), source) != ZR_OK)
        return nullptr;
    return copy.release();
}

void *ZRT_TYPE_GetTypeConsDataByConsType(const ZrtRealType *type, uint32_t kind)
{
    if (type == nullptr)
        return nullptr;
    for (uint32_t i = 0; i < type->consCount; ++i) {
        if (type->constraints[i].kind == kind)
            return type->constraints[i].body;
    }
    return nullptr;
}

ZrtConsDerived *ZRT_TYPE_GetTypeConsDataDerived(const ZrtRealType *type)
{
    // Slots ascend by kind, so a typedef reference is always the first.
    if (type == nullptr || type->consCount == 0 || type->constraints[0].kind != ZRT_CONS_DERIVED)
        return nullptr;
    return static_cast<ZrtConsDerived *>(type->constraints[0].body);
}

uint32_t ZRT_TYPE_GetTypeConsDataFractionVal(const ZrtRealType *type)
{
    return ZRT_CONS_GetConsDataFractionVal(
        ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_FRACTION));
}

const char *ZRT_TYPE_GetInheritedTypDefName(const ZrtRealType *type, const char **moduleNameOut)
{
    return ZRT_CONS_GetConsDataInheritedTypDefName(ZRT_TYPE_GetTypeConsDataDerived(type),
                                                   moduleNameOut);
}

uint32_t ZRT_TYPE_IsTypeWithIdentref(const ZrtRealType *type)
{
    return type != nullptr && type->baseType == ZRT_TYPE_IDENTITYREF;
}

uint32_t ZRT_TYPE_IsInvalidType(const ZrtRealType *type)
{
    return type == nullptr || type->baseType == ZRT_TYPE_NONE ||
           (type->baseType == ZRT_TYPE_DERIVED && type->consCount == 0);
}

uint32_t ZRT_TYPE_UpdateRealTypeDerivedFrom(ZrtRealType *type, const ZrMod *module)
{
    if (type == nullptr || module == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < type->consCount; ++i) {
        ZrtConsUpdateFunc update =
            ZRT_CONS_GetConsDataUpdateDerFromModFunc(type->constraints[i].kind);
        if (update == nullptr)
            continue;
        uint32_t status = update(type->constraints[i].body, module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRT_CONS_UpdateConsDataDerFromWithDerived(void *body, const ZrMod *module)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    if (derived == nullptr || derived->moduleName == nullptr || derived->typedefName == nullptr)
        return ZR_ERR_INVALID;
    if (module->name == nullptr || std::strcmp(derived->moduleName, module->name) != 0)
        return ZR_OK;
    // Looked up even when resolved before: the module's typedefs move when their array grows.
    const ZrsTypDef *typeDef = ZRS_MOD_FindZrsTypDefByName(module, derived->typedefName);
    if (typeDef == nullptr)
        return derived->resolved != nullptr ? ZR_OK : ZR_ERR_INVALID;
    derived->resolved = &typeDef->realType;
    return ZR_OK;
}

// The member types of a union (RFC 7950, section 9.12).

void *ZRT_CONS_CreateConsDataBodyWithUnion(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsUnion>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithUnion(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtConsUnion>(ctx, body, [](ZrCtx *owner, ZrtRealType &member) {
        ZRT_TYPE_DestroyZrtRealTypeInner(owner, &member);
    });
}

void *ZRT_CONS_CopyConsDataBodyWithUnion(ZrCtx *ctx, const void *body)
{
    return zr::CopyCountedBody<ZrtConsUnion>(
        ctx, body,
        [](ZrCtx *owner, ZrtRealType &to, const ZrtRealType &from) {
            return ZRT_TYPE_CopyZrtRealTypeInner(owner, &to, &from) == ZR_OK;
        },
        ZRT_CONS_DestroyConsDataBodyWithUnion);
}

uint32_t ZRT_CONS_UpdateConsDataDerFromWithUnion(void *body, const ZrMod *module)
{
    auto *members = static_cast<ZrtConsUnion *>(body);
    if (members == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < members->count; ++i) {
        uint32_t status = ZRT_TYPE_UpdateRealTypeDerivedFrom(&members->items[i], module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

ZrtRealType *ZRT_CONS_GetConsUnionSubTypeData(const void *body, uint16_t *countOut)
{
    const auto *members = static_cast<const ZrtConsUnion *>(body);
    if (countOut != nullptr)
        *countOut = members != nullptr ? members->count : 0;
    return members != nullptr ? members->items : nullptr;
}
