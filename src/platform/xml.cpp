// SPDX-License-Identifier: Apache-2.0
#include "platform/xml.h"

#include <cstring>

namespace {

const char *AsText(const xmlChar *text)
{
    return reinterpret_cast<const char *>(text);
}

const char *ValueOf(const xmlAttr *attribute)
{
    return attribute->children != nullptr ? AsText(attribute->children->content) : nullptr;
}

bool IsElement(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE;
}

// The child of an entity reference is the entity's declaration, which stands in the document type,
// outside of the subtree; the way up from there never comes back.
bool HasOwnChildren(const xmlNode *node)
{
    return node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE ||
           node->type == XML_DOCUMENT_FRAG_NODE;
}

} // namespace

const char *ZR_XML_GetTargetPropertyValue(const xmlNode *element, const char *attributeName)
{
    if (!IsElement(element) || attributeName == nullptr)
        return nullptr;
    for (const xmlAttr *attribute = element->properties; attribute != nullptr;
         attribute = attribute->next) {
        if (std::strcmp(AsText(attribute->name), attributeName) == 0 &&
            attribute->children != nullptr)
            return ValueOf(attribute);
    }
    return nullptr;
}

const char *ZR_XML_GetFirstPropertyValue(const xmlNode *element)
{
    return IsElement(element) && element->properties != nullptr ? ValueOf(element->properties)
                                                                : nullptr;
}

const char *ZR_XML_GetXmlNodeDefaultNs(const xmlNode *element)
{
    return IsElement(element) && element->ns != nullptr ? AsText(element->ns->href) : nullptr;
}

const char *ZR_XML_GetElemNodeContent(const xmlNode *element)
{
    if (!IsElement(element) || element->children == nullptr ||
        element->children->type != XML_TEXT_NODE)
        return nullptr;
    return AsText(element->children->content);
}

xmlNode *ZR_XML_GetFirstChildNodeWithPriVal(const xmlNode *element, uint32_t mask)
{
    if (!IsElement(element))
        return nullptr;
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if ((reinterpret_cast<uintptr_t>(child->_private) & mask) != 0)
            return child;
    }
    return nullptr;
}

xmlNode *ZR_XML_GetXmlDomNextNode(const xmlNode *root, xmlNode *node, uint32_t *direction)
{
    if (node == nullptr || direction == nullptr)
        return nullptr;
    if (*direction != ZR_XML_TO_PARENT && HasOwnChildren(node) && node->children != nullptr) {
        *direction = ZR_XML_TO_CHILD;
        return node->children;
    }
    return ZR_XML_GetXmlDomSibOrParent(root, node, direction);
}

xmlNode *ZR_XML_GetXmlDomSibOrParent(const xmlNode *root, xmlNode *node, uint32_t *direction)
{
    if (node == nullptr || node == root || direction == nullptr)
        return nullptr;
    if (node->next != nullptr) {
        *direction = ZR_XML_TO_SIBLING;
        return node->next;
    }
    xmlNode *parent = ZR_XML_GetParentNodeByTraverse(node, direction);
    return parent != root ? parent : nullptr;
}

xmlNode *ZR_XML_GetParentNodeByTraverse(xmlNode *node, uint32_t *direction)
{
    if (node == nullptr || direction == nullptr)
        return nullptr;
    *direction = ZR_XML_TO_PARENT;
    return node->parent;
}
