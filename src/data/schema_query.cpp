#include "data/schema_query.h"

#include <zrschema/node.h>

#include <cstring>

#include "model/navigation.h"
#include "model/scope.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

uint32_t ZRD_MDL_IsSchemaNodeDefineWithMountPoint(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if (kind != ZR_NODE_CONTAINER && kind != ZR_NODE_LIST)
        return 0;
    for (uint32_t i = 0; i < schemaNode->extInstCount; ++i) {
        const ZrsExtInst &instance = schemaNode->extInsts[i];
        if (instance.extensionName != nullptr && instance.moduleName != nullptr &&
            std::strcmp(instance.extensionName, "mount-point") == 0 &&
            std::strcmp(instance.moduleName, "ietf-yang-schema-mount") == 0)
            return 1;
    }
    return 0;
}

uint32_t ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML ||
           ZRD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode);
}

uint32_t ZRD_MDL_IsChoiceOrCaseNode(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE;
}

uint32_t ZRD_MDL_IsNeedCheckWhenCond(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind < ZR_NODE_ACTION || kind > ZR_NODE_OUTPUT;
}

ZrNode *ZRD_MDL_GetChoiceCaseParentNode(ZrNode *schemaNode, ZrNode **caseOut)
{
    *caseOut = nullptr;
    ZrNode *parent = ZR_NODE_GetParentNode(schemaNode);
    uint32_t kind = ZR_NODE_GetNodeType(parent);
    if (kind == ZR_NODE_CHOICE) {
        *caseOut = schemaNode;
        return parent;
    }
    if (kind != ZR_NODE_CASE)
        return nullptr;
    *caseOut = parent;
    return ZR_NODE_GetParentNode(parent);
}

ZrNode *ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(const ZrNode *schemaNode)
{
    ZrNode *node = ZR_NODE_GetParentNode(schemaNode);
    while (ZRD_MDL_IsChoiceOrCaseNode(node))
        node = ZR_NODE_GetParentNode(node);
    return node;
}

ZrNode *ZRD_MDL_GetNextDataNodeInSameMod(const ZrNode *schemaNode, const ZrNode *ancestor)
{
    ZrNode *node = ZRS_NODE_GetNextDataTreeNode(schemaNode, ancestor);
    while (node != nullptr && (node->module != schemaNode->module || !ZR_NODE_IsEnabled(node)))
        node = ZRS_NODE_GetNextDataTreeNode(node, ancestor);
    return node;
}

ZrNode *ZRD_MDL_GetChoiceDefaultChildNode(const ZrNode *choice)
{
    if (ZR_NODE_GetNodeType(choice) != ZR_NODE_CHOICE || choice->info == nullptr)
        return nullptr;
    const char *name = static_cast<const ZrsChoiceInfo *>(choice->info)->defaultCase;
    return name != nullptr ? ZRS_NODE_FindChildNodeByName(choice, nullptr, name) : nullptr;
}

namespace zr {

bool HasMatchedChildren(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind != ZR_NODE_UNKNOWN && kind != ZR_NODE_LEAF && kind != ZR_NODE_LEAF_LIST &&
           !ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode);
}

} // namespace zr
