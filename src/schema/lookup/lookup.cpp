// SPDX-License-Identifier: Apache-2.0
// Schema nodes by schema node identifier (RFC 7950, section 6.5), by target path, and by the names
// of elements.
#include "schema/lookup/lookup.h"

#include <cstring>
#include <initializer_list>
#include <string_view>

#include "foundation/array.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "platform/strings.h"
#include "schema/lookup/child_index.h"
#include "xpath/path_forms.h"

namespace {

// By schema node identifier, as ZRS_MOD_GetNodeBySchemaNodeId; the index may be null.
ZrNode *FindBySteps(const ZrMod *module, ZrNode *start, const char *path, zr::ChildIndex *index)
{
    return zr::FollowSteps(
        start, path, [=](ZrNode *node, const char *moduleName, const char *name) {
            if (index != nullptr)
                return node == nullptr ? index->FindTop(module, name)
                                       : index->Find(node, moduleName, name);
            return node == nullptr ? ZRS_MOD_FindTopLevelSchemaNode(module, name)
                                   : ZRS_NODE_FindChildNodeByName(node, moduleName, name);
        });
}

// FindUnderAugment() with an index that serves the module's augments: only the augments that add a
// node of the first step's name are looked at.
ZrNode *FindAmongAdded(const ZrMod *module, std::string_view augmentTarget, const char *restPath,
                       ZrNode **augmentOut, zr::ChildIndex *index)
{
    char moduleName[zr::kNameSize];
    char name[zr::kNameSize];
    const char *rest =
        ZR_UTL_GetXPathNextPredicatedPrefixNode(*restPath == '/' ? restPath + 1 : restPath,
                                                moduleName, sizeof(moduleName), name, sizeof(name));
    if (rest == nullptr)
        return nullptr;
    ZrNode *found = nullptr;
    index->ForEachAdded(augmentTarget, name, [&](ZrNode *node, ZrNode *augment) {
        if (*moduleName != '\0' && !zr::IsOfModule(node, moduleName))
            return false;
        found = *rest == '\0' ? node : FindBySteps(module, node, rest, index);
        if (found != nullptr && augmentOut != nullptr)
            *augmentOut = augment;
        return found != nullptr;
    });
    return found;
}

// Looks the rest of a path up below the module's own augments of exactly that target.
ZrNode *FindUnderAugment(const ZrMod *module, std::string_view augmentTarget, const char *restPath,
                         ZrNode **augmentOut, zr::ChildIndex *index)
{
    if (index != nullptr && index->ServesAugmentsOf(module))
        return FindAmongAdded(module, augmentTarget, restPath, augmentOut, index);
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (augment->name == nullptr || augment->name != augmentTarget)
            continue;
        ZrNode *node = FindBySteps(module, augment, restPath, index);
        if (node != nullptr) {
            if (augmentOut != nullptr)
                *augmentOut = augment;
            return node;
        }
    }
    return nullptr;
}

// A target path cut at its last step that carries a module name. The parts stay where they are: a
// lookup must not come back empty because memory is short.
struct TargetPath {
    char moduleName[zr::kNameSize] = {};
    std::string_view head; // empty when that step is the first
    const char *tail = nullptr;

    bool Split(const char *path)
    {
        tail = zr::FindLastNamedStep(path, moduleName, sizeof(moduleName));
        if (tail != nullptr)
            head = {path, static_cast<size_t>(tail - path)};
        return tail != nullptr;
    }

    // The node that the path names, looked up in the module that owns the last named step.
    ZrNode *Find(const ZrMod *module, ZrNode **augmentOut, zr::ChildIndex *index) const
    {
        return head.empty() ? FindBySteps(module, nullptr, tail, index)
                            : FindUnderAugment(module, head, tail, augmentOut, index);
    }
};

} // namespace

ZrNode *ZRS_MOD_GetNodeBySchemaNodeId(const ZrMod *module, ZrNode *start, const char *path)
{
    if (module == nullptr || path == nullptr)
        return nullptr;
    return FindBySteps(module, start, path, nullptr);
}

ZrNode *ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(const ZrMod *module, const char *augmentTarget,
                                                  const char *restPath, ZrNode **augmentOut)
{
    if (augmentOut != nullptr)
        *augmentOut = nullptr;
    if (module == nullptr || augmentTarget == nullptr || restPath == nullptr)
        return nullptr;
    return FindUnderAugment(module, augmentTarget, restPath, augmentOut, nullptr);
}

ZrNode *zr::FindTarget(const ZrCtx *ctx, const char *path, ZrNode **augmentOut, ChildIndex *index)
{
    if (augmentOut != nullptr)
        *augmentOut = nullptr;
    TargetPath target;
    if (ctx == nullptr || !target.Split(path))
        return nullptr;
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, target.moduleName);
    return module != nullptr ? target.Find(module, augmentOut, index) : nullptr;
}

ZrNode *ZR_CTX_GetTargetNode(const ZrCtx *ctx, const char *path, ZrNode **augmentOut)
{
    return zr::FindTarget(ctx, path, augmentOut, nullptr);
}

uint32_t ZRS_MOD_FindAugNodeTargetInSelfMod(const ZrMod *module, const ZrNode *augment,
                                            ZrNode **nodeOut)
{
    if (module == nullptr || module->name == nullptr || augment == nullptr || nodeOut == nullptr)
        return ZR_ERR_INVALID;
    TargetPath target;
    if (!target.Split(augment->name))
        return ZR_ERR_INVALID;
    bool ownModule = PAL_StrCmp(target.moduleName, module->name) == 0;
    *nodeOut = ownModule ? target.Find(module, nullptr, nullptr) : nullptr;
    return ZR_OK;
}

// What a target path says of its target.

bool zr::LastNamedModule(const char *path, ModuleNameText &nameOut)
{
    return path != nullptr &&
           ZR_XPATH_SplitTargetNodeXpath(path, nameOut, sizeof(nameOut), nullptr, nullptr) == ZR_OK;
}

bool zr::LeadsIntoModule(const char *path, const char *moduleName)
{
    ModuleNameText name;
    return LastNamedModule(path, name) && TextEquals(name, moduleName);
}

bool zr::IsPathAtOrBelow(const char *path, const char *root)
{
    size_t length = std::strlen(root);
    return std::strncmp(path, root, length) == 0 && (path[length] == '\0' || path[length] == '/');
}

bool zr::StandsInSchema(const ZrNode *node)
{
    while (node->parent != nullptr)
        node = node->parent;
    return node->kind != ZR_NODE_AUGMENT;
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
