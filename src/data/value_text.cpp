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

constexpr size_t kMaxPrefix = 127;
constexpr size_t kMaxName = zr::kNameSize - 1;

// The name of the module that a prefix denotes on the element; null for an unknown one.
const char *ModuleNameOfPrefix(const xmlNode *element, const ZrCtx *ctx, std::string_view prefix)
{
    char text[kMaxPrefix + 1] = {};
    std::memcpy(text, prefix.data(), prefix.size());
    xmlNode *node = const_cast<xmlNode *>(element); // the search changes nothing
    const xmlNs *ns = xmlSearchNs(node->doc, node, reinterpret_cast<const xmlChar *>(text));
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

// The module and the identity that a value names.
struct QualifiedName {
    const char *moduleName; // null when it names none
    std::string_view name;
};

QualifiedName Split(const xmlNode *element, const ZrNode *schemaNode, const char *value)
{
    const ZrMod *module = ZR_NODE_GetModule(schemaNode);
    if (element == nullptr || module == nullptr || value == nullptr)
        return {};
    std::string_view text = value;
    size_t colon = text.find(':');
    bool hasPrefix = colon != std::string_view::npos;
    std::string_view prefix = hasPrefix ? std::string_view(value, colon) : "";
    std::string_view name = hasPrefix ? std::string_view(value + colon + 1) : text;
    if (prefix.size() > kMaxPrefix || name.size() > kMaxName)
        return {};
    return {hasPrefix ? ModuleNameOfPrefix(element, module->ctx, prefix)
                      : ZR_MOD_GetModuleName(module),
            name};
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
    QualifiedName parts = Split(element, schemaNode, value);
    return parts.moduleName != nullptr ? Join(parts.moduleName, parts.name) : nullptr;
}

namespace zr {

bool HasModuleForm(const xmlNode *element, const ZrNode *schemaNode, const char *value)
{
    return Split(element, schemaNode, value).moduleName != nullptr;
}

} // namespace zr
