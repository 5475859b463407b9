// SPDX-License-Identifier: Apache-2.0
#include "loader/coupling.h"

#include <zrschema/module.h>

#include "foundation/relations.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

namespace {

// Resolves the type of a node of the module. Other modules' nodes below it are left out: what they
// refer to may go before they do.
uint32_t ResolveNodeType(ZrNode *node, uint32_t arrival, void *userData)
{
    const auto *module = static_cast<const ZrMod *>(userData);
    if (node->module != module)
        return ZR_SCAN_SKIP_SUBTREE;
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    // A reference that leads nowhere shows when a value is validated.
    auto *type = const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(node));
    if (type != nullptr)
        ZRT_TYPE_UpdateRealTypeDerivedFrom(type, module);
    return 0;
}

uint32_t ResolveTreeTypes(ZrNode *root, uint32_t /*arrival*/, void *userData)
{
    ZR_NODE_TreeScanAllNode(root, ResolveNodeType, userData);
    return 0;
}

// The children of an augment stand in its target when it is coupled, and are scanned from there.
uint32_t ResolveAugmentTypes(ZrNode *augment, uint32_t /*arrival*/, void *userData)
{
    ZR_NODE_IterScanChildrenNode(augment, ResolveTreeTypes, userData);
    return 0;
}

} // namespace

uint32_t ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(ZrMod *module)
{
    if (module == nullptr)
        return ZR_ERR_INVALID;
    uint32_t result = ZR_OK;
    for (uint32_t i = 0; i < module->typedefCount; ++i) {
        uint32_t status = ZRT_TYPE_UpdateRealTypeDerivedFrom(&module->typedefs[i].realType, module);
        if (result == ZR_OK)
            result = status;
    }
    ZR_MOD_IterScanTopmostNode(module, ResolveTreeTypes, module);
    ZR_MOD_IterScanAugmentNode(module, ResolveAugmentTypes, module);
    return result;
}

uint32_t ZRS_LOADER_CoupleAugmentAndGenRelation(ZrCtx *ctx, ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return ZR_ERR_INVALID;
    return zr::CoupleModuleAugments(module);
}

uint32_t ZRS_LOADER_CoupleDeviationAndGenRelation(ZrCtx *ctx, ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return ZR_ERR_INVALID;
    return zr::CoupleModuleDeviations(module);
}

void ZRS_LOADER_CoupleModPendTblAndCurMod(ZrCtx *ctx, ZrsPendTbl *table,
                                          const char *startModuleName)
{
    if (ctx == nullptr || table == nullptr)
        return;
    for (const ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes)) {
        if (ZR_CTX_GetModuleByModName(ctx, node.moduleName) != nullptr)
            ZRS_MOD_NotifyModuleChangeEvent(ctx, node.moduleName, ZRS_MODULE_LOADED, nullptr);
    }
    ZRS_MOD_NotifyModuleChangeEvent(ctx, startModuleName, ZRS_MODULE_LOADED, nullptr);
}

void zr::CoupleDependents(ZrCtx *ctx, const char *moduleName)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return;
    for (const ZrModRelItem &item : zr::ItemsBackwards<ZrModRelItem>(&table->items)) {
        ZrsCoupleEventFunc couple = ZRS_MOD_GetCoupleEvtProcFunc(item.kind, ZRS_MODULE_LOADED);
        if (couple != nullptr)
            couple(ctx, moduleName, item.otherName, nullptr);
    }
}
