// SPDX-License-Identifier: Apache-2.0
// Walks over schema nodes: a subtree, the children of a node, the siblings from a node on.
#include <zrschema/node.h>

#include "model/node_record.h"

namespace {

// The node after `node` in a walk that does not go down, null after the root. The root's last child
// ends the walk by itself, because the children of a coupled augment have another parent.
ZrNode *NextOrParent(ZrNode *root, ZrNode *node, uint32_t *arrival)
{
    if (node == root)
        return nullptr;
    if (node == root->lastChild) {
        *arrival = ZR_ARRIVAL_PARENT;
        return root;
    }
    if (node->next != nullptr) {
        *arrival = ZR_ARRIVAL_SIBLING;
        return node->next;
    }
    *arrival = ZR_ARRIVAL_PARENT;
    return node->parent;
}

} // namespace

uint32_t ZR_NODE_TreeScanAllNode(ZrNode *root, ZrNodeScanFunc callback, void *userData)
{
    if (root == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    uint32_t arrival = ZR_ARRIVAL_ROOT;
    for (ZrNode *node = root; node != nullptr;) {
        uint32_t result = callback(node, arrival, userData);
        if (result != 0 && result != ZR_SCAN_SKIP_SUBTREE)
            return result;
        if (result == 0 && arrival != ZR_ARRIVAL_PARENT && node->firstChild != nullptr) {
            arrival = ZR_ARRIVAL_CHILD;
            node = node->firstChild;
        } else {
            node = NextOrParent(root, node, &arrival);
        }
    }
    return ZR_OK;
}

uint32_t ZR_NODE_IterScanChildrenNode(const ZrNode *node, ZrNodeScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    // A coupled augment's children go on into those of its target, so its last child ends the scan.
    const ZrNode *last = node->kind == ZR_NODE_AUGMENT ? node->lastChild : nullptr;
    for (ZrNode *child = node->firstChild; child != nullptr;) {
        ZrNode *next = child != last ? child->next : nullptr; // the callback may unlink the child
        if (uint32_t result = callback(child, ZR_ARRIVAL_CHILD, userData); result != 0)
            return result;
        child = next;
    }
    return ZR_OK;
}

uint32_t ZR_NODE_IterScanSiblingNode(ZrNode *node, ZrNodeScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    while (node != nullptr) {
        ZrNode *next = node->next; // the callback may unlink the node
        if (uint32_t result = callback(node, ZR_ARRIVAL_SIBLING, userData); result != 0)
            return result;
        node = next;
    }
    return ZR_OK;
}
