// SPDX-License-Identifier: Apache-2.0
// What a run changes in an instance tree: the elements that default completion adds, how they are
// marked, listed, placed and kept, and what is taken out.
#pragma once

#include "data/check_records.h"
#include "platform/memory.h"

// The value of the `line` field of an added element. libxml2 leaves the field at 0 in elements that
// are built in memory.
enum : uint16_t { ZRD_DEFAULT_MARK = 256 };

// What becomes of the added elements when their list is emptied: any value but KEEP removes them.
enum ZrdDefaultsFate : uint32_t { ZRD_DEFAULTS_REMOVE = 0, ZRD_DEFAULTS_KEEP = 1 };

extern "C" {
// Appends an empty element for the schema node, in the namespace of its module; null when memory
// runs out, nothing is added then.
ZR_API xmlNode *ZRD_NODE_CreateNewChildNode(xmlNode *element, ZrNode *schemaNode);
// The same with a text content, unless `value` is null; the module of an identity in it is
// declared.
ZR_API xmlNode *ZRD_PAS_AddNewChildNodeWithValue(xmlNode *element, ZrNode *schemaNode,
                                                 const char *value);

// Whether default completion added the node.
ZR_API uint32_t ZRD_PAS_IsDefaultAddNode(const xmlNode *node);
// Takes the mark off the node and off every node below it.
ZR_API void ZRD_PAS_ClearDefaultNodeTreeFlag(xmlNode *node);
// The list holds the roots of the added subtrees: an unmarked element, or one below a marked one,
// is not entered. ZR_OK, or ZR_ERR_NO_MEMORY for the entry.
ZR_API uint32_t ZRD_PAS_AddDefaultNodeToList(ZrListLink *list, xmlNode *element);
// Frees the entry of the element, if it has one.
ZR_API void ZRD_PAS_RemoveDefaultNodeFromList(ZrListLink *list, xmlNode *element);
// Takes an added element out of the tree, and out of the list when it stands there.
ZR_API void ZRD_PAS_DeleteDefaultAddNode(ZrdCheckAux *check, xmlNode *element);
// Empties the list: with ZRD_DEFAULTS_KEEP the elements stay, unmarked, and go to the run's
// callback, newest first; else they are removed from the tree and freed.
ZR_API void ZRD_PAS_ClearDefaultNodeList(ZrdCheckAux *check, uint32_t keep);

// Sets _private of the element and of all elements below it to null.
ZR_API void ZRD_PAS_ClearXmlTreePrivate(xmlNode *element);
}

namespace zr {

// Unlinks the node and frees it with everything below.
void RemoveNode(xmlNode *node);

// Owns an element of a tree until it is known to stay.
using OwnedElement = Owned<xmlNode, RemoveNode>;

inline void MarkAsDefault(xmlNode *element)
{
    element->line = ZRD_DEFAULT_MARK;
}

// Moves what was added from the end of its parent to its place in the schema's order.
void PlaceDefaults(const ZrdCheckAux *check);

} // namespace zr
