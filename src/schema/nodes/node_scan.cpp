// Walks over schema nodes: a subtree, the children of a node, the siblings from a node on.
#include <zrschema/context.h>
#include <zrschema/node.h>

#include <initializer_list>

#include "model/module_records.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "platform/text.h"
#include "schema/nodes/node.h"

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

// From an element's schema node to those of its children, for applications that walk instance data.

namespace {

bool IsOperation(const ZrNode *node)
{
    return node != nullptr && (node->kind == ZR_NODE_RPC || node->kind == ZR_NODE_ACTION);
}

ZrNode *OperationChild(const ZrNode *operation, uint32_t kind)
{
    if (!IsOperation(operation))
        return nullptr;
    ZrNode *child = operation->firstChild;
    while (child != nullptr && child->kind != kind)
        child = child->next;
    return child;
}

bool IsChoiceOrCase(const ZrNode *node)
{
    return node->kind == ZR_NODE_CHOICE || node->kind == ZR_NODE_CASE;
}

// The module's own node in a chain of top-level nodes, or inside a choice there.
ZrNode *FindInChain(ZrNode *head, const ZrMod *module, const char *name)
{
    for (ZrNode *node = head; node != nullptr; node = node->next) {
        ZrNode *found = nullptr;
        if (IsChoiceOrCase(node))
            found = ZRS_NODE_FindChildDataTreeNodeByName(node, module->name, name);
        else if (node->name != nullptr && PAL_StrCmp(node->name, name) == 0)
            found = node;
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

// Whether nothing stands above the nodes of a coupled augment but choices and cases.
bool AddsTopDataNodes(const ZrNode *augment)
{
    const ZrNode *node = augment->firstChild;
    if ((augment->flags & ZRS_FLAG_COUPLED) == 0 || node == nullptr)
        return false;
    for (node = node->parent; node != nullptr; node = node->parent)
        if (!IsChoiceOrCase(node))
            return false;
    return true;
}

ZrNode *FindInAugments(const ZrMod *module, const char *name)
{
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (!AddsTopDataNodes(augment))
            continue;
        ZrNode *found = ZRS_NODE_FindChildDataTreeNodeByName(augment, module->name, name);
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

} // namespace

ZrNode *ZR_NODE_GetInputNode(const ZrNode *node)
{
    return OperationChild(node, ZR_NODE_INPUT);
}

ZrNode *ZR_NODE_GetOutputNode(const ZrNode *node)
{
    return OperationChild(node, ZR_NODE_OUTPUT);
}

ZrNode *ZR_NODE_FindDataChild(const ZrNode *node, const char *moduleName, const char *name)
{
    // Input and output may have children of one name: below an operation stands its input.
    if (IsOperation(node))
        node = ZR_NODE_GetInputNode(node);
    return ZRS_NODE_FindChildDataTreeNodeByName(node, moduleName, name);
}

ZrNode *ZR_CTX_FindTopDataNode(const ZrCtx *ctx, const char *moduleName, const char *name)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr || name == nullptr)
        return nullptr;
    for (ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        if (ZrNode *found = FindInChain(head, module, name); found != nullptr)
            return found;
    }
    return FindInAugments(module, name);
}
