// Schema nodes by schema node identifier (RFC 7950, section 6.5) and by target path.
#include "schema/lookup.h"

#include "foundation/memory.h"
#include "foundation/text.h"
#include "platform/text.h"
#include "schema/module_record.h"
#include "schema/node.h"
#include "xpath/path_forms.h"

namespace {

// A target path cut at its last step that carries a module name.
struct TargetPath {
    char moduleName[zr::kNameSize] = {};
    zr::ScopedBlock<char> head; // null when that step is the first
    zr::ScopedBlock<char> tail;

    uint32_t Split(const char *path)
    {
        return ZR_XPATH_SplitTargetNodeXpath(path, moduleName, sizeof(moduleName), head.slot(),
                                             tail.slot());
    }

    // The node that the path names, looked up in the module that owns the last named step.
    ZrNode *Find(const ZrMod *module, const char *path, ZrNode **augmentOut) const
    {
        if (!head)
            return ZRS_MOD_GetNodeBySchemaNodeId(module, nullptr, path);
        return ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(module, head.get(), tail.get(),
                                                         augmentOut);
    }
};

} // namespace

ZrNode *ZRS_MOD_GetNodeBySchemaNodeId(const ZrMod *module, ZrNode *start, const char *path)
{
    if (module == nullptr || path == nullptr)
        return nullptr;
    ZrNode *node = start;
    const char *rest = path;
    do {
        char moduleName[zr::kNameSize];
        char name[zr::kNameSize];
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(*rest == '/' ? rest + 1 : rest, moduleName,
                                                       sizeof(moduleName), name, sizeof(name));
        if (rest == nullptr)
            return nullptr;
        node = node == nullptr ? ZRS_MOD_FindTopLevelSchemaNode(module, name)
                               : ZRS_NODE_FindChildNodeByName(node, moduleName, name);
    } while (node != nullptr && *rest != '\0');
    return node;
}

ZrNode *ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(const ZrMod *module, const char *augmentTarget,
                                                  const char *restPath, ZrNode **augmentOut)
{
    if (augmentOut != nullptr)
        *augmentOut = nullptr;
    if (module == nullptr || augmentTarget == nullptr || restPath == nullptr)
        return nullptr;
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (augment->name == nullptr || PAL_StrCmp(augment->name, augmentTarget) != 0)
            continue;
        ZrNode *node = ZRS_MOD_GetNodeBySchemaNodeId(module, augment, restPath);
        if (node != nullptr) {
            if (augmentOut != nullptr)
                *augmentOut = augment;
            return node;
        }
    }
    return nullptr;
}

ZrNode *ZR_CTX_GetTargetNode(const ZrCtx *ctx, const char *path, ZrNode **augmentOut)
{
    if (augmentOut != nullptr)
        *augmentOut = nullptr;
    TargetPath target;
    if (ctx == nullptr || path == nullptr || target.Split(path) != ZR_OK)
        return nullptr;
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, target.moduleName);
    return module != nullptr ? target.Find(module, path, augmentOut) : nullptr;
}

uint32_t ZRS_MOD_FindAugNodeTargetInSelfMod(const ZrMod *module, const ZrNode *augment,
                                            ZrNode **nodeOut)
{
    if (module == nullptr || module->name == nullptr || augment == nullptr || nodeOut == nullptr)
        return ZR_ERR_INVALID;
    TargetPath target;
    if (uint32_t status = target.Split(augment->name); status != ZR_OK)
        return status;
    bool ownModule = PAL_StrCmp(target.moduleName, module->name) == 0;
    *nodeOut = ownModule ? target.Find(module, augment->name, nullptr) : nullptr;
    return ZR_OK;
}
