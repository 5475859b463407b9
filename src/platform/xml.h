// Thin reads of a libxml2 tree, and a walk over it without recursion.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

// How a step of the walk reached its node.
enum ZrXmlDirection : uint32_t { ZR_XML_TO_CHILD = 0, ZR_XML_TO_SIBLING = 1, ZR_XML_TO_PARENT = 2 };

extern "C" {
// Reads of one element. The returned texts and nodes belong to the tree; a null element gives null.

// The text of the first attribute of that name that has a value, else null. Prefixes do not count.
ZR_API const char *ZR_XML_GetTargetPropertyValue(const xmlNode *element, const char *attributeName);
// The text of the element's first attribute, whatever its name, else null.
ZR_API const char *ZR_XML_GetFirstPropertyValue(const xmlNode *element);
// The URI of the namespace in which the element stands, or null.
ZR_API const char *ZR_XML_GetXmlNodeDefaultNs(const xmlNode *element);
// The element's text when its first child is a text node, else null.
ZR_API const char *ZR_XML_GetElemNodeContent(const xmlNode *element);
// The first child whose mark in `_private` shares a bit with the mask, or null.
ZR_API xmlNode *ZR_XML_GetFirstChildNodeWithPriVal(const xmlNode *element, uint32_t mask);

// A depth-first walk of the subtree of `root`. `*direction` says on entry how `node` was reached
// (ZR_XML_TO_CHILD at the start, with `node` the root) and on return how the result was: a node
// that comes with ZR_XML_TO_PARENT was visited before, and only its siblings are still to come.
// Null at the end. Attributes and the content of unexpanded entities are not walked.
ZR_API xmlNode *ZR_XML_GetXmlDomNextNode(const xmlNode *root, xmlNode *node, uint32_t *direction);
// The same step without a look at the children of `node`: leaves its subtree out.
ZR_API xmlNode *ZR_XML_GetXmlDomSibOrParent(const xmlNode *root, xmlNode *node,
                                            uint32_t *direction);
// The parent of `node` with ZR_XML_TO_PARENT, or null.
ZR_API xmlNode *ZR_XML_GetParentNodeByTraverse(xmlNode *node, uint32_t *direction);
}
