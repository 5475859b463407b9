#include "data/data_tree.h"

#include <zrschema/node.h>

#include <cstring>

#include "data/namespaces.h"
#include "data/schema_query.h"

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
