// From an element's schema node to those of its children, for applications that walk instance data.
#include <zrschema/context.h>
#include <zrschema/node.h>

#include <initializer_list>

#include "model/module_record.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "platform/text.h"

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
