// The binary operators.
#include <cmath>
#include <cstring>
#include <iterator>

#include "foundation/text.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "xpath/evaluate.h"
#include "xpath/value_text.h"

namespace zr {

XpathOperatorFunc OperatorFunction(uint32_t operatorClass)
{
    // clang-format off
    static constexpr XpathOperatorFunc kFunctions[] = {
        ZR_XPATH_EvalOrExpr,         // 0 or
        ZR_XPATH_EvalAndExpr,        // 1 and
        ZR_XPATH_EvalEqualityExpr,   // 2 = !=
        ZR_XPATH_EvalRelationalExpr, // 3 > < >= <=
        nullptr,                     // 4 + -
        nullptr,                     // 5 * div mod
        nullptr,                     // 6 no operator has it
        nullptr,                     // 7 |
    };
    // clang-format on
    static_assert(std::size(kFunctions) == ZR_XPATH_CLASS_NONE);
    return operatorClass < std::size(kFunctions) ? kFunctions[operatorClass] : nullptr;
}

} // namespace zr

uint32_t ZR_XPATH_GetTokenOperationType(const ZrXpathLex *lex, uint32_t position)
{
    uint32_t type = ZR_XPATH_TOKEN_NONE;
    uint32_t length = 0;
    const char *text = ZR_XPATH_GetTokenExprByPos(lex, position, &type, &length);
    switch (type) {
    case ZR_XPATH_TOKEN_OR:
        return ZR_XPATH_OP_OR;
    case ZR_XPATH_TOKEN_AND:
        return ZR_XPATH_OP_AND;
    case ZR_XPATH_TOKEN_EQUALITY:
        return length == 1 ? ZR_XPATH_OP_EQUAL : ZR_XPATH_OP_NOT_EQUAL;
    case ZR_XPATH_TOKEN_RELATIONAL:
        if (length == 1)
            return *text == '>' ? ZR_XPATH_OP_GREATER : ZR_XPATH_OP_LESS;
        return *text == '>' ? ZR_XPATH_OP_GREATER_OR_EQUAL : ZR_XPATH_OP_LESS_OR_EQUAL;
    default:
        return ZR_XPATH_OP_NONE;
    }
}

uint32_t ZR_XPATH_IsEqualityOperator(uint32_t operation)
{
    return operation == ZR_XPATH_OP_EQUAL || operation == ZR_XPATH_OP_NOT_EQUAL ? 1 : 0;
}

uint32_t ZR_XPATH_IsRelationalOperator(uint32_t operation)
{
    return operation >= ZR_XPATH_OP_GREATER && operation <= ZR_XPATH_OP_LESS_OR_EQUAL ? 1 : 0;
}

uint32_t ZR_XPATH_EvalOrExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                             uint32_t operation)
{
    return ZR_XPATH_EvalLogicExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalAndExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                              uint32_t operation)
{
    return ZR_XPATH_EvalLogicExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalEqualityExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                   uint32_t operation)
{
    return ZR_XPATH_EvalCompareExpr(ctx, left, right, operation);
}

uint32_t ZR_XPATH_EvalRelationalExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                     uint32_t operation)
{
    return ZR_XPATH_EvalCompareExpr(ctx, left, right, operation);
}

namespace {

using Conversion = uint32_t (*)(ZrXpathObject *object);

uint32_t ConvertBoth(Conversion convert, ZrXpathObject *left, ZrXpathObject *right)
{
    uint32_t status = convert(left);
    return status != ZR_OK ? status : convert(right);
}

uint32_t NodeToString(ZrXpathObject *object)
{
    return object->kind == ZR_XPATH_OBJ_NODE ? ZR_XPATH_FuncStringInner(object) : uint32_t{ZR_OK};
}

// Booleans before numbers before strings (XPath 1.0, section 3.4); there are no nodes left.
uint32_t AreEqual(ZrXpathObject *left, ZrXpathObject *right, bool *equal)
{
    auto either = [&](uint32_t kind) { return left->kind == kind || right->kind == kind; };
    uint32_t status = ZR_OK;
    if (either(ZR_XPATH_OBJ_BOOLEAN)) {
        status = ConvertBoth(ZR_XPATH_FuncBooleanInner, left, right);
        *equal = status == ZR_OK && left->value.boolean == right->value.boolean;
    } else if (either(ZR_XPATH_OBJ_NUMBER)) {
        status = ConvertBoth(ZR_XPATH_FuncNumberInner, left, right);
        // NaN on either side makes the difference NaN, which is never below.
        *equal = status == ZR_OK &&
                 std::fabs(left->value.number - right->value.number) < zr::kXpathEpsilon;
    } else {
        *equal = PAL_StrCmp(left->value.string, right->value.string) == 0;
    }
    return status;
}

bool CompareNumbers(double left, double right, uint32_t operation)
{
    switch (operation) {
    case ZR_XPATH_OP_GREATER:
        return left > right;
    case ZR_XPATH_OP_LESS:
        return left < right;
    case ZR_XPATH_OP_GREATER_OR_EQUAL:
        return left >= right;
    default:
        return left <= right;
    }
}

} // namespace

uint32_t ZR_XPATH_EvalLogicExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                uint32_t operation)
{
    if (operation > ZR_XPATH_OP_AND)
        return ZR_ERR_INVALID;
    uint32_t status = ConvertBoth(ZR_XPATH_FuncBooleanInner, left, right);
    if (status != ZR_OK)
        return status;
    uint32_t l = left->value.boolean;
    uint32_t r = right->value.boolean;
    return ZR_XPATH_PushBooleanToObjStack(ctx, operation == ZR_XPATH_OP_OR ? l | r : l & r);
}

uint32_t ZR_XPATH_EvalCompareExpr(ZrXpathEvalCtx *ctx, ZrXpathObject *left, ZrXpathObject *right,
                                  uint32_t operation)
{
    uint32_t equality = ZR_XPATH_IsEqualityOperator(operation);
    if (equality == 0 && ZR_XPATH_IsRelationalOperator(operation) == 0)
        return ZR_ERR_INVALID;
    uint32_t status = ConvertBoth(NodeToString, left, right);
    if (status != ZR_OK)
        return status;
    bool result;
    if (equality != 0) {
        status = AreEqual(left, right, &result);
        result = result == (operation == ZR_XPATH_OP_EQUAL);
    } else {
        status = ConvertBoth(ZR_XPATH_FuncNumberInner, left, right);
        result =
            status == ZR_OK && CompareNumbers(left->value.number, right->value.number, operation);
    }
    if (status != ZR_OK)
        return status;
    return ZR_XPATH_PushBooleanToObjStack(ctx, result ? 1 : 0);
}

// The functions: not(), derived-from() and derived-from-or-self().

namespace zr {

const XpathFunction *FindXpathFunction(const char *text, uint32_t length)
{
    // clang-format off
    static constexpr XpathFunction kFunctions[] = {
        { "not",                  ZR_XPATH_FuncNot },
        { "derived-from",         ZR_XPATH_FuncDerivedFrom },
        { "derived-from-or-self", ZR_XPATH_FuncDerivedFromOfSelf },
    };
    // clang-format on
    char name[21]; // the longest name and its NUL; what does not fit is unknown
    if (strncpy_s(name, sizeof(name), text, length) < 0)
        return nullptr;
    for (const XpathFunction &function : kFunctions) {
        if (PAL_StrCmp(name, function.name) == 0)
            return &function;
    }
    return nullptr;
}

} // namespace zr

uint32_t ZR_XPATH_FuncNot(ZrXpathEvalCtx *ctx)
{
    auto *object = static_cast<ZrXpathObject *>(PAL_Peep(ctx->objects));
    uint32_t status = ZR_XPATH_FuncBooleanInner(object);
    if (status == ZR_OK)
        object->value.boolean = object->value.boolean != 0 ? 0 : 1;
    return status;
}

namespace {

// The name of an identity; the qualifier is a module name, "" when there is none.
struct IdentityName {
    char module[zr::kNameSize];
    char name[zr::kNameSize];
};

bool SplitIdentityName(const char *text, IdentityName *out)
{
    return ZR_UTL_GetXPathNextPrefixAndNode(text, out->module, sizeof(out->module), out->name,
                                            sizeof(out->name)) == ZR_OK;
}

bool IsSameIdentity(const IdentityName &a, const char *moduleName, const char *name)
{
    return PAL_StrCmp(a.module, moduleName) == 0 && PAL_StrCmp(a.name, name) == 0;
}

// Kept: only the bases that the identity lists itself count, not the bases of those.
bool HasBase(const ZrsIdentity *identity, const IdentityName &base)
{
    for (uint32_t i = 0; i < identity->baseCount; ++i) {
        const ZrsIdentBase &item = identity->bases[i];
        if (IsSameIdentity(base, item.moduleName, item.identityName))
            return true;
    }
    return false;
}

// Whether the identity that is the value of `node` is derived from the one that `argument` names.
uint32_t IsDerived(const xmlNode *node, const char *argument, bool orSelf, bool *result)
{
    *result = false;
    const ZrNode *schemaNode = zr::SchemaNodeOf(node);
    if (schemaNode == nullptr)
        return ZR_XPATH_ERR_NO_SCHEMA;
    if (!zr::IsIdentityrefAlone(schemaNode))
        return ZR_ERR_INVALID;

    zr::Owned<char> text;
    uint32_t status = zr::ReadValueText(node, zr::Out(text));
    if (status != ZR_OK || !text || *text.get() == '\0')
        return status; // no value is derived from nothing
    // What names no identity, as a notification's value may, has no module in its value text.
    if (std::strchr(text.get(), ':') == nullptr)
        return ZR_OK;
    IdentityName value;
    if (!SplitIdentityName(text.get(), &value))
        return ZR_ERR_INVALID;
    const ZrsIdentity *identity =
        ZR_CTX_FindIdentityByModNameAndIdentName(schemaNode->module->ctx, value.module, value.name);
    if (identity == nullptr)
        return ZR_ERR_INVALID;

    IdentityName base;
    if (!SplitIdentityName(argument, &base))
        return ZR_ERR_INVALID;
    if (base.module[0] == '\0' &&
        strcpy_s(base.module, sizeof(base.module), schemaNode->module->name) < 0)
        return ZR_ERR_INVALID;
    *result = (orSelf && IsSameIdentity(base, value.module, value.name)) || HasBase(identity, base);
    return ZR_OK;
}

// Takes the object on top off the stack when it is of that kind, else gives null.
ZrXpathObject *PopObjectOfKind(ZrXpathEvalCtx *ctx, uint32_t kind)
{
    const auto *top = static_cast<const ZrXpathObject *>(PAL_Peep(ctx->objects));
    if (top == nullptr || top->kind != kind)
        return nullptr;
    return static_cast<ZrXpathObject *>(PAL_Pop(ctx->objects));
}

uint32_t DerivedFrom(ZrXpathEvalCtx *ctx, bool orSelf)
{
    zr::ScopedObject identity(PopObjectOfKind(ctx, ZR_XPATH_OBJ_STRING));
    if (identity.get() == nullptr)
        return ZR_XPATH_ERR_BAD_ARGUMENT;
    zr::ScopedObject node(PopObjectOfKind(ctx, ZR_XPATH_OBJ_NODE));
    if (node.get() == nullptr || node->value.node == nullptr || *identity->value.string == '\0')
        return ZR_XPATH_ERR_BAD_ARGUMENT;
    bool result;
    uint32_t status = IsDerived(node->value.node, identity->value.string, orSelf, &result);
    return status != ZR_OK ? status : ZR_XPATH_PushBooleanToObjStack(ctx, result ? 1 : 0);
}

} // namespace

uint32_t ZR_XPATH_FuncDerivedFrom(ZrXpathEvalCtx *ctx)
{
    return DerivedFrom(ctx, false);
}

uint32_t ZR_XPATH_FuncDerivedFromOfSelf(ZrXpathEvalCtx *ctx)
{
    return DerivedFrom(ctx, true);
}
