// SPDX-License-Identifier: Apache-2.0
// The check of a value against a type: the order of the checks, and the kinds of constraints that
// hand the value on to another type: typedef references, unions and leafrefs.
#include <zrschema/types.h>

#include <iterator>

#include "foundation/array.h"
#include "model/navigation.h"
#include "types/chains.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace {

struct CheckRow {
    ZrtConsKind kind;
    ZrtConsCheckFunc check;
};

// clang-format off
constexpr CheckRow kChecks[] = {
    {ZRT_CONS_DERIVED,  ZRT_CONS_ValidateValueNodeAgainstDataDerived},
    {ZRT_CONS_BASE,     ZRT_CONS_ValidateValueNodeAgainstDataBase},
    {ZRT_CONS_BIT,      ZRT_CONS_ValidateValueNodeAgainstDataBit},
    {ZRT_CONS_ENUM,     ZRT_CONS_ValidateValueNodeAgainstDataEnum},
    {ZRT_CONS_FRACTION, ZRT_CONS_ValidateValueNodeAgainstDataFraction},
    {ZRT_CONS_LENGTH,   ZRT_CONS_ValidateValueNodeAgainstDataLength},
    {ZRT_CONS_PATH,     ZRT_CONS_ValidateValueNodeAgainstDataPath},
    {ZRT_CONS_PATTERN,  ZRT_CONS_ValidateValueNodeAgainstDataPattern},
    {ZRT_CONS_RANGE,    ZRT_CONS_ValidateValueNodeAgainstDataRange},
    {ZRT_CONS_UNION,    ZRT_CONS_ValidateValueNodeAgainstDataUnion},
};
// clang-format on
static_assert(zr::RowsInOrder(kChecks, &CheckRow::kind, 0, ZRT_CONS_KIND_COUNT));

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
    else if ((type->flags & ZRT_BOUNDS_EXPLICIT) != 0)
        validation->explicitBounds = 1;
    else if ((type->flags & ZRT_BOUNDS_RELATIVE) != 0)
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

ZrtConsCheckFunc ZRT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind)
{
    return kind < std::size(kChecks) ? kChecks[kind].check : nullptr;
}

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

// Typedef references (RFC 7950, section 7.3).

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataDerived(const void *body, uint32_t inputKind,
                                                      const void *value, ZrtValidateCtx *validation)
{
    if (validation->derivedDepth >= zr::kMaxChainLinks)
        return ZR_ERR_VALUE_DERIVED;
    const ZrtRealType *type =
        zr::ReferencedType(static_cast<const ZrtConsDerived *>(body), validation->ctx);
    if (type == nullptr)
        return ZR_ERR_VALUE_DERIVED;
    ++validation->derivedDepth;
    uint32_t status = ZRT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, value, validation);
    if (status == ZR_OK)
        ZRT_TYPE_SetMatchRealType(validation, type);
    return status;
}

// Unions (RFC 7950, section 9.12).

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

// Leafrefs (RFC 7950, section 9.9).

namespace {

// Whether the value of the leaf is being checked: it is the one under check, or the check came from
// it through leafrefs that are members of unions.
bool IsUnderCheck(const ZrNode *leaf, const ZrtValidateCtx *validation)
{
    for (; validation != nullptr; validation = validation->referrer) {
        if (validation->node == leaf)
            return true;
    }
    return false;
}

} // namespace

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPath(const void *body, uint32_t inputKind,
                                                   const void *value, ZrtValidateCtx *validation)
{
    // The path is that of the type under check, not that of the leaf: the leafref may be a member
    // of a union.
    const char *path = static_cast<const ZrtConsPath *>(body)->path;
    if (path == nullptr || ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value) == nullptr)
        return ZR_ERR_VALUE_LEAFREF;
    if (validation->node == nullptr)
        return ZR_ERR_VALUE_LEAFREF;
    const ZrNode *target = zr::LeafrefTarget(validation->node, path, true);
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(target);
    // A leaf whose value is being checked says nothing on it: there is no end to asking it again.
    if (type == nullptr || IsUnderCheck(target, validation))
        return ZR_ERR_VALUE_LEAFREF;
    const ZrtRealType *matched = nullptr;
    uint32_t status = zr::ValidateNested(type, inputKind, value, validation, target, &matched);
    if (status == ZR_OK)
        ZRT_TYPE_SetMatchRealType(validation, matched != nullptr ? matched : type);
    return status;
}
