#include "data/data_tree.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>

#include "data/schema_query.h"
#include "foundation/text.h"
#include "model/scope.h"
#include "xpath/value_text.h"

namespace {

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

// libxml2 makes nodes also when it has no memory for their names or texts, and leaves those null.
bool HasText(const xmlNode *text)
{
    return text != nullptr && text->content != nullptr;
}

} // namespace

xmlNode *ZRD_PAS_FindChildDataNode(const xmlNode *element, const char *name)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (child->name != nullptr &&
            std::strcmp(reinterpret_cast<const char *>(child->name), name) == 0)
            return child;
    }
    return nullptr;
}

xmlNode *ZRD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode *element, const ZrNode *schemaNode)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (zr::SchemaOf(child) == schemaNode && child->type == XML_ELEMENT_NODE)
            return child;
    }
    return nullptr;
}

xmlNode *ZRD_NODE_CreateNewChildNode(xmlNode *element, ZrNode *schemaNode)
{
    xmlNode *child = xmlNewChild(element, nullptr, AsXml(ZR_NODE_GetNodeName(schemaNode)), nullptr);
    if (child == nullptr)
        return nullptr;
    child->_private = schemaNode;
    if (child->name != nullptr &&
        zr::EnterModuleNamespace(child, zr::SchemaOf(element), schemaNode))
        return child;
    zr::RemoveNode(child);
    return nullptr;
}

xmlNode *ZRD_PAS_AddNewChildNodeWithValue(xmlNode *element, ZrNode *schemaNode, const char *value)
{
    xmlNode *child = ZRD_NODE_CreateNewChildNode(element, schemaNode);
    if (child == nullptr || value == nullptr || value[0] == '\0')
        return child;
    // Not xmlNodeSetContent, which reads "&" and "<" of a default as markup.
    xmlNodeAddContent(child, AsXml(value));
    if (HasText(child->children) && zr::DeclareIdentityPrefix(child, schemaNode, value))
        return child;
    zr::RemoveNode(child);
    return nullptr;
}

ZrNode *ZRD_NODE_GetChoiceInstanceCaseBranch(const xmlNode *element, const ZrNode *choice)
{
    for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
        ZrNode *node = zr::SchemaOf(child);
        while (node != nullptr && ZR_NODE_GetParentNode(node) != choice) {
            node = ZR_NODE_GetParentNode(node);
            if (!ZRD_MDL_IsChoiceOrCaseNode(node))
                node = nullptr;
        }
        if (node != nullptr)
            return node;
    }
    return nullptr;
}

uint32_t ZRD_NODE_IsKeyLeafNode(const xmlNode *node)
{
    return ZR_NODE_IsKey(zr::SchemaOf(node));
}

void ZRD_PAS_ClearXmlTreePrivate(xmlNode *element)
{
    if (element == nullptr || element->type != XML_ELEMENT_NODE)
        return;
    for (xmlNode *node = element; node != nullptr; node = zr::NextElement(element, node))
        node->_private = nullptr;
}

namespace zr {

xmlNode *NextElement(const xmlNode *top, xmlNode *element)
{
    if (xmlNode *child = ElementFrom(element->children))
        return child;
    for (xmlNode *node = element; node != nullptr && node != top; node = node->parent) {
        if (xmlNode *sibling = ElementFrom(node->next))
            return sibling;
    }
    return nullptr;
}

void RemoveNode(xmlNode *node)
{
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

} // namespace zr

namespace {

bool IsSame(const xmlChar *a, const char *b)
{
    return xmlStrEqual(a, AsXml(b)) != 0;
}

// A new declaration, the default one for a null prefix; null when memory runs out. libxml2 makes
// declarations also when it has no memory for their texts, and leaves those null.
xmlNs *Declare(xmlNode *element, const char *uri, const char *prefix)
{
    xmlNs *ns = xmlNewNs(element, AsXml(uri), AsXml(prefix));
    bool whole =
        ns != nullptr && ns->href != nullptr && (prefix == nullptr || ns->prefix != nullptr);
    return whole ? ns : nullptr;
}

// The search for the module that an identityref's default names. The loader keeps the default of
// an identityref in the form module:identity; under a typedef or in a union it stays as the module
// wrote it, with a prefix of that module's.
struct IdentitySearch {
    const ZrCtx *ctx;
    char qualifier[zr::kNameSize];
    char name[zr::kNameSize];
    const ZrMod *found;

    bool Take(const char *moduleName)
    {
        if (moduleName != nullptr &&
            ZR_CTX_FindIdentityByModNameAndIdentName(ctx, moduleName, name) != nullptr)
            found = ZR_CTX_GetModuleByModName(ctx, moduleName);
        return found != nullptr;
    }
    bool TakePrefixOf(const ZrMod *module)
    {
        return Take(ZRS_MOD_GetModuleNameByPrefix(module, qualifier));
    }
};

uint32_t TakePrefixOfTypedef(const char *moduleName, const char *, const ZrtRealType *,
                             void *userData)
{
    auto *search = static_cast<IdentitySearch *>(userData);
    bool found = moduleName != nullptr &&
                 search->TakePrefixOf(ZR_CTX_GetModuleByModName(search->ctx, moduleName));
    return found ? uint32_t{ZR_ERR_FAILED} : uint32_t{ZR_OK}; // to stop
}

bool TakesIdentities(const ZrNode *leaf)
{
    return ZRD_MDL_IsIdentityref(leaf) != 0 ||
           ZRD_MDL_IsIdentityref(ZR_NODE_GetLeafrefTargetNode(leaf, 1)) != 0;
}

const ZrMod *FindModule(IdentitySearch &search, const ZrNode *leaf)
{
    if (!search.Take(search.qualifier) && !search.TakePrefixOf(ZR_NODE_GetModule(leaf)))
        ZR_NODE_ScanDerivedType(leaf, TakePrefixOfTypedef, &search);
    return search.found;
}

// A prefix that the XML namespaces keep for themselves.
bool IsReserved(const char *prefix)
{
    return std::strcmp(prefix, "xml") == 0 || std::strcmp(prefix, "xmlns") == 0;
}

// Gives the element a declaration of its own when a new one of this prefix would change the meaning
// of its name.
bool KeepNamespace(xmlNode *element, const char *prefix)
{
    if (element->ns == nullptr || !IsSame(element->ns->prefix, prefix))
        return true;
    xmlNs *own = Declare(element, reinterpret_cast<const char *>(element->ns->href), nullptr);
    if (own != nullptr)
        element->ns = own;
    return own != nullptr;
}

} // namespace

namespace zr {

bool EnterModuleNamespace(xmlNode *element, const ZrNode *parentSchema, const ZrNode *schemaNode)
{
    const ZrMod *module = ZR_NODE_GetModule(schemaNode);
    if (ZR_NODE_GetModule(parentSchema) == module)
        return true;
    xmlNs *ns = Declare(element, ZR_MOD_GetModuleNs(module), nullptr);
    if (ns != nullptr)
        element->ns = ns;
    return ns != nullptr;
}

bool DeclareIdentityPrefix(xmlNode *leaf, const ZrNode *schemaNode, const char *value)
{
    IdentitySearch search = {};
    const ZrMod *own = ZR_NODE_GetModule(schemaNode);
    if (own == nullptr || std::strchr(value, ':') == nullptr ||
        ZR_UTL_GetXPathNextPrefixAndNode(value, search.qualifier, sizeof(search.qualifier),
                                         search.name, sizeof(search.name)) != ZR_OK ||
        search.qualifier[0] == '\0' || IsReserved(search.qualifier) || !TakesIdentities(schemaNode))
        return true;
    search.ctx = own->ctx;
    const ZrMod *module = FindModule(search, schemaNode);
    if (module == nullptr)
        return true;
    const char *uri = ZR_MOD_GetModuleNs(module);
    const xmlNs *bound = xmlSearchNs(leaf->doc, leaf, AsXml(search.qualifier));
    if (bound != nullptr && IsSame(bound->href, uri))
        return true;
    return KeepNamespace(leaf, search.qualifier) && Declare(leaf, uri, search.qualifier) != nullptr;
}

} // namespace zr
