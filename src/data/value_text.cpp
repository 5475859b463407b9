#include "data/value_text.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>
#include <string_view>

#include "foundation/memory.h"
#include "foundation/text.h"
#include "platform/xml.h"
#include "schema/module_record.h"
#include "schema/node_record.h"

namespace {

constexpr size_t kPrefixSize = 128; // a prefix of 127 characters and its NUL

// The name of the module that a prefix denotes on the element; null for an unknown one.
const char *ModuleNameOfPrefix(const xmlNode *element, const ZrCtx *ctx, const char *prefix)
{
    xmlNode *node = const_cast<xmlNode *>(element); // the search changes nothing
    const xmlNs *ns = xmlSearchNs(node->doc, node, reinterpret_cast<const xmlChar *>(prefix));
    if (ns == nullptr || ns->href == nullptr)
        return nullptr;
    return ZR_MOD_GetModuleName(
        ZR_CTX_GetModuleByModNs(ctx, reinterpret_cast<const char *>(ns->href)));
}

char *Join(std::string_view moduleName, std::string_view name)
{
    char *text = static_cast<char *>(zr::AllocZeroed(moduleName.size() + name.size() + 2));
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
    const ZrMod *module = ZR_NODE_GetModule(schemaNode);
    if (element == nullptr || module == nullptr || value == nullptr)
        return Form::None;
    char prefix[kPrefixSize];
    // The splitter reads up to a "/", with which no identity goes on.
    if (ZR_UTL_GetXPathNextPrefixAndNode(value, prefix, sizeof(prefix), out->name,
                                         sizeof(out->name)) != ZR_OK ||
        std::strchr(value, '/') != nullptr)
        return Form::Plain;
    out->moduleName = prefix[0] != '\0' ? ModuleNameOfPrefix(element, module->ctx, prefix)
                                        : ZR_MOD_GetModuleName(module);
    return out->moduleName != nullptr ? Form::Named : Form::None;
}

} // namespace

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

} // namespace zr
