// SPDX-License-Identifier: Apache-2.0
// The end of modules and of contexts.
#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "model/context.h"
#include "schema/augment/augment.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"

namespace {

void FreeTopNodes(ZrNode *&head)
{
    ZrNode *next = nullptr;
    for (ZrNode *node = head; node != nullptr; node = next) {
        next = node->next;
        ZRS_NODE_Free(node);
    }
    head = nullptr;
}

// Before any module goes, so that none does while another one's nodes still hang in it.
void UncoupleAllAugments(ZrCtx *ctx)
{
    for (const ZrMod *module : zr::ModulesOf(ctx))
        for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
            ZRS_NODE_UnCoupleAugmentNode(augment);
}

void DestroyAllModules(ZrCtx *ctx)
{
    while (ZrMod *module = zr::FirstModule(ctx))
        ZR_CTX_DestroyModuleNode(ctx, module);
}

// Frees an array and leaves the owner without it.
template <typename Record, typename Owner>
void FreeMembers(void (*freeRecords)(Owner *, Record *, uint32_t), Owner *owner, Record *&array,
                 uint16_t &count)
{
    freeRecords(owner, array, count);
    array = nullptr;
    count = 0;
}

} // namespace

void ZRS_MOD_DestroyNonNodeMember(ZrMod *module)
{
    if (module == nullptr || module->ctx == nullptr)
        return;
    ZrCtx *ctx = module->ctx;
    ZrDict *dict = &ctx->dict;
    zr::Release(dict, module->name);
    zr::Release(dict, module->ns);
    zr::Release(dict, module->prefix);
    zr::Release(dict, module->description);
    zr::Release(dict, module->revision);
    zr::Release(dict, module->organization);
    // clang-format off
    FreeMembers(ZRS_MOD_FreeImports,      dict, module->imports,      module->importCount);
    FreeMembers(ZRS_MOD_FreeIncludes,     dict, module->includes,     module->includeCount);
    FreeMembers(ZRS_MOD_FreeFeatures,     dict, module->features,     module->featureCount);
    FreeMembers(ZRS_MOD_FreeIdentities,   dict, module->identities,   module->identityCount);
    FreeMembers(ZRS_MOD_FreeExtensions,   dict, module->extensions,   module->extensionCount);
    FreeMembers(ZRS_MOD_FreeDeviation,    ctx,  module->deviations,   module->deviationCount);
    FreeMembers(zr::FreeTexts,            dict, module->mergeSources, module->mergeSourceCount);
    FreeMembers(ZRS_EXT_FreeExtInsts,     dict, module->extInsts,     module->extInstCount);
    FreeMembers(ZRS_TYPE_FreeTypDefArray, ctx,  module->typedefs,     module->typedefCount);
    // clang-format on
}

void ZRS_MOD_DestroyNodeMember(ZrMod *module)
{
    if (module == nullptr)
        return;
    FreeTopNodes(module->dataNodes);
    FreeTopNodes(module->rpcs);
    FreeTopNodes(module->notifications);
    FreeTopNodes(module->augments);
}

void ZRS_MOD_Free(ZrMod *module)
{
    ZRS_MOD_DestroyNonNodeMember(module);
    ZRS_MOD_DestroyNodeMember(module);
    zr::Free(module);
}

void ZR_CTX_DestroyModuleNode(ZrCtx *ctx, ZrMod *module)
{
    if (ctx == nullptr || module == nullptr)
        return;
    zr::RemoveModuleNode(ctx, module);
    ZR_CTX_DeleteErrNodeByModName(ctx->errMng, module->name);
    ZRS_MOD_Free(module);
}

void ZR_CTX_DeInitModuleTree(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    UncoupleAllAugments(ctx);
    DestroyAllModules(ctx);
}

void ZR_CTX_Delete(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    ZR_CTX_DestroyErrMng(ctx->errMng);
    ctx->errMng = nullptr; // recording and deleting do nothing from here on
    UncoupleAllAugments(ctx);
    zr::CloseDict(&ctx->dict);
    DestroyAllModules(ctx);
    zr::DestroyContextParts(ctx);
}
