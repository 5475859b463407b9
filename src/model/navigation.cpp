// SPDX-License-Identifier: Apache-2.0
// The data tree seen through the schema tree (RFC 7950, section 3: choice, case, input, output and
// augment have no instance in data, so their children stand where they would).
#include "model/navigation.h"

#include "foundation/array.h"
#include "model/module_records.h"
#include "model/node_record.h"

namespace {

constexpr uint32_t Bit(uint32_t kind)
{
    return UINT32_C(1) << kind;
}

constexpr uint32_t kDataKinds = Bit(ZR_NODE_CONTAINER) | Bit(ZR_NODE_LEAF) |
                                Bit(ZR_NODE_LEAF_LIST) | Bit(ZR_NODE_LIST) | Bit(ZR_NODE_ANYDATA) |
                                Bit(ZR_NODE_ANYXML) | Bit(ZR_NODE_ACTION) | Bit(ZR_NODE_RPC) |
                                Bit(ZR_NODE_NOTIFICATION);

// Goes down through choices and cases, whose nesting bounds the recursion. The last child ends the
// scan: a coupled augment's children go on into those of its target.
ZrNode *FindBelow(const ZrNode *parent, const char *moduleName, const char *name)
{
    for (ZrNode *child = parent->firstChild; child != nullptr; child = child->next) {
        if (zr::HasDataInstance(child->kind)) {
            if (zr::TextEquals(child->name, name) && zr::IsOfModule(child, moduleName))
                return child;
        } else if (ZrNode *found = FindBelow(child, moduleName, name); found != nullptr) {
            return found;
        }
        if (child == parent->lastChild)
            break;
    }
    return nullptr;
}

const ZrNode *FindInChain(const ZrNode *head, const char *name)
{
    while (head != nullptr && !zr::TextEquals(head->name, name))
        head = head->next;
    return head;
}

} // namespace

namespace zr {

bool HasDataInstance(uint32_t kind)
{
    return kind <= ZR_NODE_AUGMENT && (kDataKinds & Bit(kind)) != 0;
}

bool IsOfModule(const ZrNode *node, const char *moduleName)
{
    return node->module != nullptr && TextEquals(node->module->name, moduleName);
}

} // namespace zr

ZrNode *ZRS_NODE_GetParentDataTreeNode(const ZrNode *node)
{
    ZrNode *parent = node != nullptr ? node->parent : nullptr;
    while (parent != nullptr && !zr::HasDataInstance(parent->kind))
        parent = parent->parent;
    return parent;
}

ZrNode *ZRS_NODE_GetFirstSlibingDataTreeNode(ZrNode *node, const ZrNode *stop)
{
    while (node != nullptr && !zr::HasDataInstance(node->kind)) {
        if (node->firstChild == nullptr)
            return ZRS_NODE_GetNextDataTreeNode(node, stop);
        node = node->firstChild;
    }
    return node;
}

ZrNode *ZRS_NODE_GetNextDataTreeNode(const ZrNode *node, const ZrNode *stop)
{
    while (node != nullptr) {
        while (node->next == nullptr) {
            node = node->parent;
            if (node == nullptr || node == stop || zr::HasDataInstance(node->kind))
                return nullptr;
        }
        ZrNode *candidate = node->next;
        while (!zr::HasDataInstance(candidate->kind) && candidate->firstChild != nullptr)
            candidate = candidate->firstChild;
        if (zr::HasDataInstance(candidate->kind))
            return candidate;
        node = candidate; // a choice or case without children: go on after it
    }
    return nullptr;
}

ZrNode *ZRS_NODE_FindChildDataTreeNodeByName(const ZrNode *node, const char *moduleName,
                                             const char *name)
{
    if (node == nullptr || name == nullptr)
        return nullptr;
    if (moduleName == nullptr || *moduleName == '\0')
        moduleName = node->module != nullptr ? node->module->name : nullptr;
    return moduleName != nullptr ? FindBelow(node, moduleName, name) : nullptr;
}

ZrNode *ZRS_NODE_FindChildNodeByName(const ZrNode *parent, const char *moduleName, const char *name)
{
    if (parent == nullptr || name == nullptr)
        return nullptr;
    bool anyModule = moduleName == nullptr || *moduleName == '\0';
    // The last child ends the scan: a coupled augment's own stretch ends inside the target's chain.
    for (ZrNode *child = parent->firstChild; child != nullptr; child = child->next) {
        if (zr::TextEquals(child->name, name) && (anyModule || zr::IsOfModule(child, moduleName)))
            return child;
        if (child == parent->lastChild)
            break;
    }
    return nullptr;
}

const ZrtRealType *ZRS_NODE_GetLeafSchemaRealType(const ZrNode *node)
{
    if (node == nullptr || node->info == nullptr)
        return nullptr;
    switch (node->kind) {
    case ZR_NODE_LEAF:
        return &static_cast<const ZrsLeafInfo *>(node->info)->realType;
    case ZR_NODE_LEAF_LIST:
        return &static_cast<const ZrsLeafListInfo *>(node->info)->realType;
    default:
        return nullptr;
    }
}

ZrNode *ZRS_MOD_FindTopLevelSchemaNode(const ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return nullptr;
    for (const ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        if (const ZrNode *node = FindInChain(head, name); node != nullptr)
            return const_cast<ZrNode *>(node);
    }
    return nullptr;
}

// Nodes by a path through the data tree.

namespace {

// A top-level node by its name; one inside a top-level choice counts as top-level.
ZrNode *FindTopLevelDataNode(const ZrMod *module, const char *name)
{
    if (module == nullptr)
        return nullptr;
    if (ZrNode *node = ZRS_MOD_FindTopLevelSchemaNode(module, name); node != nullptr)
        return node;
    for (ZrNode *top = module->dataNodes; top != nullptr; top = top->next) {
        if (zr::HasDataInstance(top->kind))
            continue;
        ZrNode *node = ZRS_NODE_FindChildDataTreeNodeByName(top, module->name, name);
        if (node != nullptr)
            return node;
    }
    return nullptr;
}

} // namespace

const char *ZRS_MOD_GetRelativePathRealStartNode(const ZrNode *contextNode, const char *path,
                                                 ZrNode **startOut)
{
    if (contextNode == nullptr || path == nullptr || startOut == nullptr)
        return nullptr;
    auto *node = const_cast<ZrNode *>(contextNode);
    while (path[0] == '.') {
        // Every ".." must be followed by another step; "." is no step of a schema path.
        if (path[1] != '.' || path[2] != '/')
            return nullptr;
        node = ZRS_NODE_GetParentDataTreeNode(node);
        if (node == nullptr)
            return nullptr;
        path += 3;
    }
    if (*path == '\0')
        return nullptr;
    *startOut = node;
    return path;
}

uint32_t ZRS_MOD_GetStartPathAndNode(const ZrNode *contextNode, const char *path,
                                     const char **restOut, ZrNode **startOut)
{
    if (path == nullptr || restOut == nullptr || startOut == nullptr)
        return ZR_ERR_INVALID;
    *startOut = nullptr;
    *restOut = path;
    if (*path == '/')
        return ZR_OK;
    if (contextNode == nullptr)
        return ZR_ERR_INVALID;
    if (*path != '.') {
        *startOut = const_cast<ZrNode *>(contextNode);
        return ZR_OK;
    }
    *restOut = ZRS_MOD_GetRelativePathRealStartNode(contextNode, path, startOut);
    if (*restOut == nullptr)
        return ZR_ERR_INVALID;
    return ZR_OK;
}

ZrNode *ZRS_MOD_GetDataTreeNodeByNodeIdentifier(const ZrMod *module, ZrNode *current,
                                                const char *moduleName, const char *name)
{
    if (module == nullptr || moduleName == nullptr || name == nullptr)
        return nullptr;
    if (current != nullptr)
        return ZRS_NODE_FindChildDataTreeNodeByName(current, moduleName, name);
    return FindTopLevelDataNode(ZR_CTX_GetModuleByModName(module->ctx, moduleName), name);
}

ZrNode *ZRS_MOD_GetNodeByXpath(const ZrMod *module, const ZrNode *contextNode, const char *path)
{
    const char *rest = nullptr;
    ZrNode *node = nullptr;
    if (module == nullptr || ZRS_MOD_GetStartPathAndNode(contextNode, path, &rest, &node) != ZR_OK)
        return nullptr;
    return zr::FollowSteps(
        node, rest, [module](ZrNode *current, const char *moduleName, const char *name) {
            return ZRS_MOD_GetDataTreeNodeByNodeIdentifier(module, current, moduleName, name);
        });
}
