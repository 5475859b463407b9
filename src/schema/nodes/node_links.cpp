// SPDX-License-Identifier: Apache-2.0
// Links between schema nodes: parent, children, siblings, and the heads of the top-level chains.
#include "model/module_records.h"
#include "schema/nodes/node.h"

namespace {

// A node that leaves its chain leaves it to its predecessor to be the last appended.
void ForgetLastAppended(const ZrNode *node)
{
    if (node->module == nullptr)
        return;
    for (ZrNode *&last : node->module->lastAppended) {
        if (last == node)
            last = node->prev;
    }
}

} // namespace

void ZR_NODE_CalibrateTopNodeAddress(ZrNode *node)
{
    if (node == nullptr || node->module == nullptr)
        return;
    for (ZrNode *ZrMod::*head : zr::kTopChains) {
        if (node->module->*head == node) {
            node->module->*head = node->next;
            return;
        }
    }
}

void ZRS_NODE_Unlink(ZrNode *node)
{
    if (node == nullptr)
        return;
    if (ZrNode *parent = node->parent; parent != nullptr) {
        if (parent->firstChild == node)
            parent->firstChild = node->next;
        if (parent->lastChild == node)
            parent->lastChild = node->prev;
        node->parent = nullptr;
    } else {
        ZR_NODE_CalibrateTopNodeAddress(node);
        ForgetLastAppended(node);
    }
    if (node->prev != nullptr)
        node->prev->next = node->next;
    if (node->next != nullptr)
        node->next->prev = node->prev;
    node->next = nullptr;
    node->prev = nullptr;
}

uint32_t ZRS_NODE_AddAsFirstChild(ZrNode *parent, ZrNode *node)
{
    if (parent == nullptr || node == nullptr)
        return ZR_ERR_INVALID;
    node->parent = parent;
    node->prev = nullptr;
    node->next = parent->firstChild;
    if (node->next != nullptr)
        node->next->prev = node;
    else
        parent->lastChild = node;
    parent->firstChild = node;
    return ZR_OK;
}

uint32_t ZRS_NODE_AddChild(ZrNode *parent, ZrNode *node)
{
    if (parent == nullptr || node == nullptr)
        return ZR_ERR_INVALID;
    node->parent = parent;
    node->next = nullptr;
    node->prev = parent->lastChild;
    if (node->prev != nullptr)
        node->prev->next = node;
    else
        parent->firstChild = node;
    parent->lastChild = node;
    return ZR_OK;
}

uint32_t ZRS_NODE_AddSibling(ZrNode *node, ZrNode *newNode)
{
    if (node == nullptr || newNode == nullptr)
        return ZR_ERR_INVALID;
    ZrNode *last = ZRS_NODE_GetLastSibling(node);
    newNode->parent = node->parent;
    newNode->next = nullptr;
    newNode->prev = last;
    last->next = newNode;
    if (node->parent != nullptr)
        node->parent->lastChild = newNode;
    return ZR_OK;
}

uint32_t ZRS_NODE_LinkTreeNode(ZrNode *anchor, ZrNode *node, uint32_t mode)
{
    switch (mode) {
    case ZRS_LINK_AS_CHILD:
        return ZRS_NODE_AddChild(anchor, node);
    case ZRS_LINK_AS_SIBLING:
        return ZRS_NODE_AddSibling(anchor, node);
    default:
        return ZR_ERR_INVALID;
    }
}

ZrNode *ZRS_NODE_GetLastSibling(const ZrNode *node)
{
    if (node == nullptr)
        return nullptr;
    if (node->parent != nullptr)
        return node->parent->lastChild;
    while (node->next != nullptr)
        node = node->next;
    return const_cast<ZrNode *>(node);
}

uint32_t ZRS_NODE_IsChildNode(const ZrNode *parent, const ZrNode *node)
{
    if (parent == nullptr || node == nullptr)
        return 0;
    for (const ZrNode *child = parent->firstChild; child != nullptr; child = child->next) {
        if (child == node)
            return 1;
    }
    return 0;
}

// Where a module keeps its top-level nodes.

namespace {

// The chain that takes a top-level node of the kind; kTopChainCount for a kind that stands only
// below others.
zr::TopChain ChainForKind(uint32_t kind)
{
    switch (kind) {
    case ZR_NODE_CONTAINER:
    case ZR_NODE_LEAF:
    case ZR_NODE_LEAF_LIST:
    case ZR_NODE_LIST:
    case ZR_NODE_CHOICE:
    case ZR_NODE_ANYDATA:
    case ZR_NODE_ANYXML:
        return zr::kDataNodes;
    case ZR_NODE_RPC:
        return zr::kRpcs;
    case ZR_NODE_NOTIFICATION:
        return zr::kNotifications;
    case ZR_NODE_AUGMENT:
        return zr::kAugments;
    default:
        return zr::kTopChainCount;
    }
}

} // namespace

uint32_t ZRS_MOD_AddTopNodeToSchemaTree(ZrMod *module, ZrNode *node)
{
    if (module == nullptr || node == nullptr)
        return ZR_ERR_INVALID;
    zr::TopChain chain = ChainForKind(node->kind);
    if (chain == zr::kTopChainCount)
        return ZR_ERR_INVALID;
    ZrNode *&head = module->*zr::kTopChains[chain];
    ZrNode *&last = module->lastAppended[chain];
    if (head == nullptr)
        head = node;
    else
        ZRS_NODE_AddSibling(last != nullptr ? last : head, node);
    last = node;
    return ZR_OK;
}
