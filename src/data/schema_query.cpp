#include "data/schema_query.h"

#include <zrschema/node.h>

#include <cstring>

#include "schema/module.h"
#include "schema/navigation.h"
#include "schema/node.h"
#include "types/real_type.h"
#include "xpath/data_values.h"

namespace {

constexpr uint32_t kMaxTypedefs = 129;

// The type that a typedef reference leads to; null when the typedef is not there.
const ZrtRealType *Resolve(const ZrCtx *ctx, const ZrtRealType *type)
{
    const ZrtConsDerived *derived = ZRT_TYPE_GetTypeConsDataDerived(type);
    if (derived == nullptr)
        return nullptr;
    if (derived->resolved != nullptr)
        return derived->resolved;
    const ZrsTypDef *def =
        ZR_CTX_FindTdefObjByModAndTdefName(ctx, derived->moduleName, derived->typedefName);
    return def != nullptr ? &def->realType : nullptr;
}

// The type at the end of a chain of typedefs, whose links are added to `*depth`; null when it does
// not come to an end.
const ZrtRealType *EndOfTypedefs(const ZrCtx *ctx, const ZrtRealType *type, uint32_t *depth)
{
    for (; type != nullptr && type->baseType == ZRT_TYPE_DERIVED; type = Resolve(ctx, type)) {
        if (++*depth > kMaxTypedefs)
            return nullptr;
    }
    return type;
}

bool HoldsIdentityref(const ZrCtx *ctx, const ZrtRealType *type, uint32_t depth)
{
    type = EndOfTypedefs(ctx, type, &depth);
    if (type == nullptr || type->baseType != ZRT_TYPE_UNION)
        return ZRT_TYPE_IsTypeWithIdentref(type) != 0;
    auto *members =
        static_cast<ZrtConsUnion *>(ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_UNION));
    for (uint32_t i = 0; members != nullptr && i < members->count; ++i) {
        if (HoldsIdentityref(ctx, &members->items[i], depth + 1))
            return true;
    }
    return false;
}

} // namespace

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

uint32_t ZRD_MDL_IsIdentityref(const ZrNode *schemaNode)
{
    const ZrtRealType *type = ZR_NODE_GetRealType(schemaNode);
    if (type == nullptr || schemaNode->module == nullptr)
        return 0;
    return HoldsIdentityref(schemaNode->module->ctx, type, 0);
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

bool IsIdentityrefAlone(const ZrNode *schemaNode)
{
    const ZrtRealType *type = ZR_NODE_GetRealType(schemaNode);
    if (type == nullptr || schemaNode->module == nullptr)
        return false;
    uint32_t depth = 0;
    return ZRT_TYPE_IsTypeWithIdentref(EndOfTypedefs(schemaNode->module->ctx, type, &depth)) != 0;
}

bool HasMatchedChildren(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind != ZR_NODE_UNKNOWN && kind != ZR_NODE_LEAF && kind != ZR_NODE_LEAF_LIST &&
           !ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode);
}

} // namespace zr
