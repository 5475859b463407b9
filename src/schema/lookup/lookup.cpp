// Schema nodes by schema node identifier (RFC 7950, section 6.5) and by target path.
#include "schema/lookup/lookup.h"

#include <string_view>

#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "schema/lookup/child_index.h"
#include "schema/nodes/node.h"
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

// Paths of schema nodes, in the form in which target paths are looked up.

namespace {

const char *StepName(const ZrNode *node)
{
    switch (node->kind) {
    case ZR_NODE_INPUT:
        return "input";
    case ZR_NODE_OUTPUT:
        return "output";
    default:
        return node->name;
    }
}

// A step carries its module's name where the path enters the module. A node whose augment is not
// coupled has no parent in the schema yet, so its step is the first one of its own module.
bool IsQualified(const ZrNode *node)
{
    const ZrNode *parent = ZR_NODE_GetParentNode(node);
    return parent == nullptr || parent->module != node->module;
}

int WriteStep(const ZrNode *node, char *destination, uint32_t size)
{
    const char *name = StepName(node);
    if (name == nullptr)
        return -1;
    if (node->kind == ZR_NODE_AUGMENT) // its name is the path of its target
        return sprintf_s(destination, size, "%s", name);
    if (!IsQualified(node))
        return sprintf_s(destination, size, "/%s", name);
    if (node->module == nullptr || node->module->name == nullptr)
        return -1;
    return sprintf_s(destination, size, "/%s:%s", node->module->name, name);
}

} // namespace

uint32_t ZRS_NODE_PrintJsonPathRecursive(const ZrNode *node, char *buffer, uint32_t size,
                                         uint32_t *length)
{
    if (node == nullptr || buffer == nullptr || length == nullptr)
        return ZR_ERR_INVALID;
    if (node->parent != nullptr) {
        uint32_t status = ZRS_NODE_PrintJsonPathRecursive(node->parent, buffer, size, length);
        if (status != ZR_OK)
            return status;
    }
    if (*length >= size)
        return ZR_ERR_NO_MEMORY;
    int written = WriteStep(node, buffer + *length, size - *length);
    if (written < 0)
        return ZR_ERR_NO_MEMORY;
    *length += static_cast<uint32_t>(written);
    return ZR_OK;
}

char *ZRS_NODE_PrintPath(const ZrNode *node)
{
    zr::Owned<char> buffer(zr::New<char>(zr::kXpathSize));
    uint32_t length = 0;
    if (!buffer ||
        ZRS_NODE_PrintJsonPathRecursive(node, buffer.get(), zr::kXpathSize, &length) != ZR_OK)
        return nullptr;
    return ZR_UTL_StrDup(buffer.get());
}
