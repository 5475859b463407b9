// SPDX-License-Identifier: Apache-2.0
#include "xpath/value_text.h"

#include <zrschema/context.h>

#include <cstring>
#include <string_view>

#include "foundation/text.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "types/chains.h"
#include "types/real_type.h"

namespace {

// The type behind a type's typedefs, of which `*links` have been followed already; a typedef
// reference where they do not come to an end, null where one is not loaded.
const ZrtRealType *EndOfTypedefs(const ZrCtx *ctx, const ZrtRealType *type, uint32_t *links)
{
    zr::TypedefChain chain(ctx, type, zr::TypedefChain::kResolved, *links);
    while (chain.Next()) {
    }
    *links = chain.Links();
    return chain.Type();
}

bool HoldsIdentityref(const ZrCtx *ctx, const ZrtRealType *type, uint32_t links)
{
    type = EndOfTypedefs(ctx, type, &links);
    if (type == nullptr || type->baseType != ZRT_TYPE_UNION)
        return ZRT_TYPE_IsTypeWithIdentref(type) != 0;
    auto *members =
        static_cast<ZrtConsUnion *>(ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_UNION));
    for (uint32_t i = 0; members != nullptr && i < members->count; ++i) {
        if (HoldsIdentityref(ctx, &members->items[i], links + 1))
            return true;
    }
    return false;
}

constexpr size_t kPrefixSize = 128; // a prefix of 127 characters and its NUL

// The name of the module that a prefix denotes on the element; null for an unknown one.
const char *ModuleNameOfPrefix(const xmlNode *element, const ZrCtx *ctx, const char *prefix)
{
    xmlNode *node = const_cast<xmlNode *>(element); // the search changes nothing
    const xmlNs *ns = xmlSearchNs(node->doc, node, reinterpret_cast<const xmlChar *>(prefix));
    if (ns == nullptr || ns->href == nullptr)
        return nullptr;
    const ZrMod *module = ZR_CTX_GetModuleByModNs(ctx, reinterpret_cast<const char *>(ns->href));
    return module != nullptr ? module->name : nullptr;
}

char *Join(std::string_view moduleName, std::string_view name)
{
    char *text = zr::New<char>(moduleName.size() + name.size() + 2);
    if (text == nullptr)
        return nullptr;
    std::memcpy(text, moduleName.data(), moduleName.size());
    text[moduleName.size()] = ':';
    std::memcpy(text + moduleName.size() + 1, name.data(), name.size());
    return text;
}

// What the text of an identityref, or of a union with one, turns out to be.
enum class Form {
    None,  // nothing: its prefix leads to no module
    Plain, // not the name of an identity, but a value of another member
    Named  // an identity
};

struct IdentityText {
    const char *moduleName; // of an identity
    char name[zr::kNameSize];
};

Form Read(const xmlNode *element, const ZrNode *schemaNode, const char *value, IdentityText *out)
{
    const ZrMod *module = schemaNode != nullptr ? schemaNode->module : nullptr;
    if (element == nullptr || module == nullptr || value == nullptr)
        return Form::None;
    char prefix[kPrefixSize];
    // The splitter reads up to a "/", with which no identity goes on.
    if (ZR_UTL_GetXPathNextPrefixAndNode(value, prefix, sizeof(prefix), out->name,
                                         sizeof(out->name)) != ZR_OK ||
        std::strchr(value, '/') != nullptr)
        return Form::Plain;
    out->moduleName =
        prefix[0] != '\0' ? ModuleNameOfPrefix(element, module->ctx, prefix) : module->name;
    return out->moduleName != nullptr ? Form::Named : Form::None;
}

} // namespace

uint32_t ZRD_MDL_IsIdentityref(const ZrNode *schemaNode)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(schemaNode);
    if (type == nullptr || schemaNode->module == nullptr)
        return 0;
    return HoldsIdentityref(schemaNode->module->ctx, type, 0);
}

char *ZRD_NODE_GetValueContent(const xmlNode *element, const ZrNode *schemaNode)
{
    const char *content = ZR_XML_GetElemNodeContent(element);
    if (content == nullptr)
        return nullptr;
    return ZRD_MDL_IsIdentityref(schemaNode)
               ? ZRD_NODE_ConvertPrefixValueToModValue(element, schemaNode, content)
               : ZR_UTL_StrDup(content);
}

char *ZRD_NODE_ConvertPrefixValueToModValue(const xmlNode *element, const ZrNode *schemaNode,
                                            const char *value)
{
    IdentityText identity;
    Form form = Read(element, schemaNode, value, &identity);
    if (form == Form::Plain)
        return ZR_UTL_StrDup(value);
    return form == Form::Named ? Join(identity.moduleName, identity.name) : nullptr;
}

namespace zr {

bool HasModuleForm(const xmlNode *element, const ZrNode *schemaNode, const char *value)
{
    IdentityText identity;
    return Read(element, schemaNode, value, &identity) != Form::None;
}

bool IsIdentityrefAlone(const ZrNode *schemaNode)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(schemaNode);
    if (type == nullptr || schemaNode->module == nullptr)
        return false;
    uint32_t links = 0;
    return ZRT_TYPE_IsTypeWithIdentref(EndOfTypedefs(schemaNode->module->ctx, type, &links)) != 0;
}

uint32_t ReadValueText(const xmlNode *node, char **textOut)
{
    *textOut = nullptr;
    const ZrNode *schemaNode = SchemaOf(node);
    if (schemaNode == nullptr)
        return ZR_OK;
    *textOut = ZRD_NODE_GetValueContent(node, schemaNode);
    const char *content = ZR_XML_GetElemNodeContent(node);
    if (*textOut != nullptr || content == nullptr)
        return ZR_OK;
    // There is content, so that only a prefix without a module leaves no value.
    if (ZRD_MDL_IsIdentityref(schemaNode) != 0 && !HasModuleForm(node, schemaNode, content))
        return ZR_OK;
    return ZR_ERR_NO_MEMORY;
}

} // namespace zr
