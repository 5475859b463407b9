// Reads and changes of the instance tree. During a run every matched element carries its schema
// node in _private.
#pragma once

#include "data/check_run.h"

extern "C" {
// The first child node of any node type, text and comments included, with that name.
ZR_API xmlNode *ZRD_PAS_FindChildDataNode(const xmlNode *element, const char *name);
// The first child element that instantiates the schema node.
ZR_API xmlNode *ZRD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode *element,
                                                    const ZrNode *schemaNode);
// Appends an empty element for the schema node, in the namespace of its module; null when memory
// runs out, nothing is added then.
ZR_API xmlNode *ZRD_NODE_CreateNewChildNode(xmlNode *element, ZrNode *schemaNode);
// The same with a text content, unless `value` is null; the module of an identity in it is
// declared.
ZR_API xmlNode *ZRD_PAS_AddNewChildNodeWithValue(xmlNode *element, ZrNode *schemaNode,
                                                 const char *value);
// The child node of the choice through which the element holds data of it; null without any.
ZR_API ZrNode *ZRD_NODE_GetChoiceInstanceCaseBranch(const xmlNode *element, const ZrNode *choice);
ZR_API uint32_t ZRD_NODE_IsKeyLeafNode(const xmlNode *node);
// Sets _private of the element and of all elements below it to null.
ZR_API void ZRD_PAS_ClearXmlTreePrivate(xmlNode *element);
}

namespace zr {

// The schema node of a matched element; null for null and for other nodes, whose _private is the
// caller's.
inline ZrNode *SchemaOf(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE ? static_cast<ZrNode *>(node->_private)
                                                             : nullptr;
}

// The next sibling, at or after `node`, that is an element; ElementUpTo the same backwards.
inline xmlNode *ElementFrom(xmlNode *node)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE)
        node = node->next;
    return node;
}
inline const xmlNode *ElementUpTo(const xmlNode *node)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE)
        node = node->prev;
    return node;
}

// A walk over the elements of a subtree in document order: the element after `element` below
// `top`, or null. A loop, because a caller's tree may be of any depth.
xmlNode *NextElement(const xmlNode *top, xmlNode *element);

// Unlinks the node and frees it with everything below.
void RemoveNode(xmlNode *node);

} // namespace zr

// The namespace declarations of elements that are added to a tree: what the tree says of them, its
// text says too.

namespace zr {

// Puts an element whose parent belongs to another module into its own module's namespace, which it
// declares as the default one. False when memory runs out.
bool EnterModuleNamespace(xmlNode *element, const ZrNode *parentSchema, const ZrNode *schemaNode);

// Declares what the qualifier of an identityref's default stands for, so that the value means the
// identity in XML too (RFC 7950, section 9.10.3), unless the prefix is bound to that namespace
// there already. Any other value needs no declaration. False when memory runs out.
bool DeclareIdentityPrefix(xmlNode *leaf, const ZrNode *schemaNode, const char *value);

} // namespace zr
