// Schema nodes by schema node identifier (RFC 7950, section 6.5) and by target path.
#include "schema/lookup.h"

#include <string_view>

#include "model/module_record.h"
#include "platform/text.h"
#include "schema/child_index.h"
#include "schema/node.h"
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
