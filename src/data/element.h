// SPDX-License-Identifier: Apache-2.0
// What the phases of a run ask about an element and about its schema node, which every matched
// element carries in _private.
#pragma once

#include <libxml/tree.h>

#include "data/check_records.h"
#include "model/node_record.h"
#include "xpath/value_text.h" // zr::SchemaOf()

extern "C" {
// The first child node of any node type, text and comments included (docs/oddities.md), with that
// name.
ZR_API xmlNode *ZRD_PAS_FindChildDataNode(const xmlNode *element, const char *name);
// The first child element that instantiates the schema node.
ZR_API xmlNode *ZRD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode *element,
                                                    const ZrNode *schemaNode);
// The child node of the choice through which the element holds data of it; null without any.
ZR_API ZrNode *ZRD_NODE_GetChoiceInstanceCaseBranch(const xmlNode *element, const ZrNode *choice);
// Whether the element is a key leaf of its list.
ZR_API uint32_t ZRD_NODE_IsKeyLeafNode(const xmlNode *node);
// The name of the module that an element belongs to, by its schema node or else by its namespace;
// null for a node that is no element and for a namespace of no loaded module.
ZR_API const char *ZRD_NODE_GetModuleName(const ZrCtx *ctx, const xmlNode *element);
// The input of an rpc's or action's element, or null.
ZR_API ZrNode *ZRD_PAS_GetRpcSubTreeInputMdl(const xmlNode *element);

// Questions about schema nodes: null is answered like a plain node that has nothing.

// A container or list with "mount-point" of ietf-yang-schema-mount (RFC 8528, section 3).
ZR_API uint32_t ZRD_MDL_IsSchemaNodeDefineWithMountPoint(const ZrNode *schemaNode);
// Anydata, anyxml and mount points: what stands below their elements has no schema here.
ZR_API uint32_t ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(const ZrNode *schemaNode);
// A choice or a case, which have no elements of their own.
ZR_API uint32_t ZRD_MDL_IsChoiceOrCaseNode(const ZrNode *schemaNode);
// Whether a "when" of the node is evaluated: not for operations, notifications, input and output.
ZR_API uint32_t ZRD_MDL_IsNeedCheckWhenCond(const ZrNode *schemaNode);
// The choice that a node stands in, and its branch there: the case, or the node itself in a
// shorthand case. Null, and a null branch, when the node stands in none.
ZR_API ZrNode *ZRD_MDL_GetChoiceCaseParentNode(ZrNode *schemaNode, ZrNode **caseOut);
// The case that a choice's "default" names, or null.
ZR_API ZrNode *ZRD_MDL_GetChoiceDefaultChildNode(const ZrNode *choice);
// The nearest ancestor that is neither choice nor case, or null.
ZR_API ZrNode *ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(const ZrNode *schemaNode);
// The next enabled data node of the same module below `ancestor`, in schema order.
ZR_API ZrNode *ZRD_MDL_GetNextDataNodeInSameMod(const ZrNode *schemaNode, const ZrNode *ancestor);
}

namespace zr {

// The local name of an element, as records show it; "" for null and for a nameless node.
inline const char *NameOf(const xmlNode *node)
{
    return node != nullptr && node->name != nullptr ? reinterpret_cast<const char *>(node->name)
                                                    : "";
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

// Whether elements below one of this schema node carry schema nodes: not below leaves, nor where
// ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode() says so, nor below an element that has none itself.
bool HasMatchedChildren(const ZrNode *schemaNode);
// Whether several elements of one parent may instantiate the node: lists and leaf-lists.
inline bool MayRepeat(const ZrNode *schemaNode)
{
    return schemaNode != nullptr &&
           (schemaNode->kind == ZR_NODE_LIST || schemaNode->kind == ZR_NODE_LEAF_LIST);
}
// Whether `earlier` comes before `later` among the enabled data nodes of one module and level.
bool ComesBefore(const ZrNode *earlier, const ZrNode *later);
// The input among an rpc's or action's schema children, or null.
ZrNode *InputOf(const ZrNode *operation);

} // namespace zr
