#include "model/data_path.h"

#include "foundation/text.h"
#include "model/module_record.h"
#include "model/navigation.h"
#include "model/node_record.h"

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
