// SPDX-License-Identifier: Apache-2.0
// The bases of an identityref and the check of its values (RFC 7950, section 9.10).
#include <libxml/tree.h>
#include <zrschema/context.h>

#include <cstring>
#include <string_view>

#include "foundation/array.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/strings.h"
#include "types/constraints.h"

namespace {

constexpr uint32_t kMaxPrefixLength = 1024;
constexpr uint32_t kMaxDerivation = 128;
// Identities that one search looks at. A sound derivation has far fewer; a circular one, or one
// whose bases meet again and again, would otherwise be walked over and over.
constexpr uint32_t kMaxVisited = 65536;

struct IdentitySearch {
    const ZrCtx *ctx;
    const ZrsIdentBase *wanted;
    uint32_t visited;

    // True when the identity is the wanted one or derives from it, depth first in base order.
    bool Matches(const char *moduleName, const ZrsIdentity *identity, uint32_t level)
    {
        if (++visited > kMaxVisited)
            return false;
        if (zr::TextEquals(moduleName, wanted->moduleName) &&
            zr::TextEquals(identity->name, wanted->identityName))
            return true;
        if (level == kMaxDerivation)
            return false;
        for (uint32_t i = 0; i < identity->baseCount; ++i) {
            const ZrsIdentBase &base = identity->bases[i];
            const ZrsIdentity *parent =
                ZR_CTX_FindIdentityByModNameAndIdentName(ctx, base.moduleName, base.identityName);
            if (parent != nullptr && Matches(base.moduleName, parent, level + 1))
                return true;
        }
        return false;
    }
};

// The module of "module:identity"; the module is named as it is.
const ZrMod *FindModuleOfText(const ZrCtx *ctx, std::string_view moduleName)
{
    char name[zr::kNameSize];
    if (strncpy_s(name, sizeof(name), moduleName.data(), moduleName.size()) < 0)
        return nullptr;
    return ZR_CTX_GetModuleByModName(ctx, name);
}

// The module of a value in an element: that of the prefix's namespace, or, without a prefix, of
// the element's own namespace.
const ZrMod *FindModuleOfElement(const ZrCtx *ctx, xmlNode *element, const std::string_view *prefix)
{
    const xmlNs *ns = element->ns;
    if (prefix != nullptr) {
        char text[kMaxPrefixLength + 1];
        if (strncpy_s(text, sizeof(text), prefix->data(), prefix->size()) < 0)
            return nullptr;
        ns = xmlSearchNs(element->doc, element, reinterpret_cast<const xmlChar *>(text));
    }
    if (ns == nullptr || ns->href == nullptr)
        return nullptr;
    return ZR_CTX_GetModuleByModNs(ctx, reinterpret_cast<const char *>(ns->href));
}

// Splits the value into its module and the name of the identity; null when it names no module.
const ZrMod *SplitIdentityValue(const ZrCtx *ctx, uint32_t inputKind, const void *value,
                                const char *&identityName)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr)
        return nullptr;
    const char *colon = std::strchr(text, ':');
    identityName = colon != nullptr ? colon + 1 : text;
    std::string_view qualifier(text, colon != nullptr ? static_cast<size_t>(colon - text) : 0);
    if (inputKind == ZR_VALUE_STRING)
        return colon != nullptr ? FindModuleOfText(ctx, qualifier) : nullptr;
    // libxml2 takes a node that it may change; searching a namespace does not.
    auto *element = const_cast<xmlNode *>(static_cast<const xmlNode *>(value));
    return FindModuleOfElement(ctx, element, colon != nullptr ? &qualifier : nullptr);
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithBase(uint32_t count)
{
    return zr::CreateCountedBody<ZrtConsBase>(count);
}

void ZRT_CONS_DestroyConsDataBodyWithBase(ZrCtx *ctx, void *body)
{
    zr::DestroyCountedBody<ZrtConsBase>(ctx, body, [](ZrCtx *owner, ZrsIdentBase &item) {
        zr::Release(&owner->dict, item.moduleName);
        zr::Release(&owner->dict, item.identityName);
    });
}

void *ZRT_CONS_CopyConsDataBodyWithBase(ZrCtx *ctx, const void *body)
{
    return zr::CopyCountedBody<ZrtConsBase>(
        ctx, body,
        [](ZrCtx *owner, ZrsIdentBase &to, const ZrsIdentBase &from) {
            return zr::Intern(&owner->dict, to.moduleName, from.moduleName) &&
                   zr::Intern(&owner->dict, to.identityName, from.identityName);
        },
        ZRT_CONS_DestroyConsDataBodyWithBase);
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataBase(const void *body, uint32_t inputKind,
                                                   const void *value, ZrtValidateCtx *validation)
{
    const auto *bases = static_cast<const ZrtConsBase *>(body);
    if (validation->ctx == nullptr)
        return ZR_ERR_VALUE_IDENTITY;
    const char *identityName = nullptr;
    const ZrMod *module = SplitIdentityValue(validation->ctx, inputKind, value, identityName);
    if (module == nullptr || *identityName == '\0')
        return ZR_ERR_VALUE_IDENTITY;
    const ZrsIdentity *identity =
        ZR_CTX_FindIdentityByModNameAndIdentName(validation->ctx, module->name, identityName);
    if (identity == nullptr)
        return ZR_ERR_VALUE_IDENTITY;
    for (uint32_t i = 0; i < bases->count; ++i) {
        IdentitySearch search = {validation->ctx, &bases->items[i], 0};
        if (search.Matches(module->name, identity, 0))
            return ZR_OK;
    }
    return ZR_ERR_VALUE_IDENTITY;
}
