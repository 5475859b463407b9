// The entry of value validation: the order of the checks of one type.
#include <zrschema/types.h>

#include <libxml/tree.h>

#include "platform/xml.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace {

// Types that one value is handed on through at most: typedefs, members of unions and targets of
// leafrefs together. A typedef that is a union of itself, or a union that refers to its own leaf,
// has no other end.
constexpr uint32_t kMaxNesting = 2048;
// Types that one value is held against altogether. Unions whose members meet again in the same
// unions further down would otherwise be tried twice as often with every level.
constexpr uint32_t kMaxVisits = 1 << 18;

// A type with bounds of its own puts the bounds of its ancestors out of force; one with relative
// bounds makes its ancestors record theirs.
void EnterBounds(const ZrtRealType *type, ZrtValidateCtx *validation)
{
    if (validation->explicitBounds != 0)
        ++validation->explicitBounds;
    else if ((type->boundsFlags & ZRT_BOUNDS_EXPLICIT) != 0)
        validation->explicitBounds = 1;
    else if ((type->boundsFlags & ZRT_BOUNDS_RELATIVE) != 0)
        validation->parentBounds = 1;
}

uint32_t CheckSlots(const ZrtRealType *type, uint32_t inputKind, const void *value,
                    ZrtValidateCtx *validation)
{
    for (uint32_t i = 0; i < type->consCount; ++i) {
        const ZrtConsSlot &slot = type->constraints[i];
        ZrtConsCheckFunc check = ZRT_CONS_GetConsDataValueRestricationCheckFunc(slot.kind);
        if (check == nullptr)
            continue;
        if (slot.body == nullptr)
            return ZR_ERR_VALUE_NO_BODY;
        uint32_t status = check(slot.body, inputKind, value, validation);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRT_TYPE_ValidateValueNodeAgainstRealType(const ZrtRealType *type, uint32_t inputKind,
                                                   const void *value, ZrtValidateCtx *validation)
{
    if (type == nullptr || validation == nullptr)
        return ZR_ERR_INVALID;
    if (validation->nesting == kMaxNesting || validation->visits == kMaxVisits) {
        validation->tooDeep = 1;
        return ZR_ERR_VALUE_DERIVED;
    }
    ++validation->nesting;
    ++validation->visits;
    EnterBounds(type, validation);
    const ZrtRealType *outer = validation->current;
    validation->current = type;
    if (type->baseType != ZRT_TYPE_DERIVED) {
        validation->baseType = type->baseType;
        validation->fractionDigits =
            static_cast<uint16_t>(ZRT_TYPE_GetTypeConsDataFractionVal(type));
        uint32_t status =
            ZRT_TYPE_CheckBaseTypeSystemRestriction(type->baseType, inputKind, value, validation);
        if (status != ZR_OK)
            return status;
    }
    uint32_t status = CheckSlots(type, inputKind, value, validation);
    // A refused value ends its validation, so the context is not restored then.
    if (status != ZR_OK)
        return status;
    validation->current = outer;
    if (validation->explicitBounds != 0)
        --validation->explicitBounds;
    --validation->nesting;
    return ZR_OK;
}

uint32_t ZRT_TYPE_CheckBaseTypeSystemRestriction(uint32_t baseType, uint32_t inputKind,
                                                 const void *value, ZrtValidateCtx *validation)
{
    ZrtDefaultCheckFunc check = ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(baseType);
    return check != nullptr ? check(baseType, inputKind, value, validation) : uint32_t{ZR_OK};
}

const char *ZRT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void *value)
{
    switch (inputKind) {
    case ZR_VALUE_STRING:
        return static_cast<const char *>(value);
    case ZR_VALUE_XML:
        return value != nullptr ? ZR_XML_GetElemNodeContent(static_cast<const xmlNode *>(value))
                                : nullptr;
    default:
        return nullptr;
    }
}

void ZRT_TYPE_SetMatchRealType(ZrtValidateCtx *validation, const ZrtRealType *type)
{
    if (validation != nullptr && validation->matched == nullptr)
        validation->matched = type;
}

namespace zr {

uint32_t ValidateNested(const ZrtRealType *type, uint32_t inputKind, const void *value,
                        ZrtValidateCtx *outer, const ZrNode *node, const ZrtRealType **matchedOut)
{
    ZrtValidateCtx inner = {};
    inner.ctx = outer->ctx;
    inner.node = node;
    inner.nesting = outer->nesting;
    inner.visits = outer->visits;
    inner.referrer = node == outer->node ? outer->referrer : outer;
    uint32_t status = ZRT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, value, &inner);
    outer->visits = inner.visits;
    outer->tooDeep = inner.tooDeep;
    *matchedOut = inner.matched;
    return status;
}

} // namespace zr

// The member types of a union and the check of its values (RFC 7950, section 9.12).

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

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataUnion(const void *body, uint32_t inputKind,
                                                    const void *value, ZrtValidateCtx *validation)
{
    const auto *members = static_cast<const ZrtConsUnion *>(body);
    for (uint32_t i = 0; i < members->count; ++i) {
        const ZrtRealType *member = &members->items[i];
        const ZrtRealType *matched = nullptr;
        if (zr::ValidateNested(member, inputKind, value, validation, validation->node, &matched) ==
            ZR_OK) {
            ZRT_TYPE_SetMatchRealType(validation, matched != nullptr ? matched : member);
            return ZR_OK;
        }
        if (validation->tooDeep != 0)
            break;
    }
    return ZR_ERR_VALUE_UNION;
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
