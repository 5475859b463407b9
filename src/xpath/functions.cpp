// SPDX-License-Identifier: Apache-2.0
// The functions of conditions. Adding one: its function, which may stand in the unnamed namespace,
// and its row in the table.
#include "xpath/evaluate.h"

#include <cstring>

#include "foundation/text.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "xpath/value_text.h"

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

// Only the bases that the identity lists itself: docs/oddities.md.
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
    const ZrNode *schemaNode = zr::SchemaOf(node);
    if (schemaNode == nullptr)
        return ZR_XPATH_ERR_NO_SCHEMA;
    if (!zr::IsIdentityrefAlone(schemaNode))
        return ZR_ERR_INVALID;

    zr::Owned<char> text;
    uint32_t status = zr::ReadValueText(node, zr::Out(text));
    if (status != ZR_OK || !text || *text == '\0')
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
    zr::OwnedObject identity(PopObjectOfKind(ctx, ZR_XPATH_OBJ_STRING));
    if (!identity)
        return ZR_XPATH_ERR_BAD_ARGUMENT;
    zr::OwnedObject node(PopObjectOfKind(ctx, ZR_XPATH_OBJ_NODE));
    if (!node || node->value.node == nullptr || *identity->value.string == '\0')
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

namespace {

// clang-format off
constexpr zr::XpathFunction kFunctions[] = {
    {"not",                  ZR_XPATH_FuncNot},
    {"derived-from",         ZR_XPATH_FuncDerivedFrom},
    {"derived-from-or-self", ZR_XPATH_FuncDerivedFromOfSelf},
};
// clang-format on

} // namespace

const zr::XpathFunction *zr::FindXpathFunction(const char *text, uint32_t length)
{
    for (const XpathFunction &function : kFunctions) {
        if (PAL_StrLen(function.name) == length && PAL_StrNCmp(function.name, text, length) == 0)
            return &function;
    }
    return nullptr;
}
