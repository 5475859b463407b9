// SPDX-License-Identifier: Apache-2.0
// "deviate not-supported": the target goes, and with it every augment that points into it.
//
// The rule is the same in whatever order modules arrive: an augment whose target a loaded module's
// deviation has removed is dropped, be it there when the deviation is applied or loaded later.
#include <zrschema/context.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "foundation/array.h"
#include "foundation/list.h"
#include "foundation/relations.h"
#include "model/context.h"
#include "platform/strings.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/lookup/lookup.h"
#include "schema/nodes/node.h"

namespace {

// Records that the module is changed by the deviating one, so that it is loaded again when that
// one goes.
uint32_t RecordLoss(const ZrMod *module, const char *deviatingModuleName)
{
    if (zr::TextEquals(module->name, deviatingModuleName))
        return ZR_OK;
    return ZR_CTX_AddTwoModRelation(module->ctx, module->name, deviatingModuleName,
                                    ZR_RELATION_DEVIATED_BY);
}

// Drops the augments that point to or below the path, and to or below the node, which may be null.
// Everything that can fail comes first. The nodes are taken back before any augment goes, since one
// augment's nodes may hang below another's.
uint32_t DropAugments(zr::DeviationRun *run, const char *deviatingModuleName, const char *path,
                      const ZrNode *node)
{
    if (!run->augments.Doom(path, node))
        return ZR_OK;
    uint32_t status = ZR_OK;
    run->augments.ForEachDoomed([&](const ZrNode *augment) {
        if (status == ZR_OK)
            status = RecordLoss(augment->module, deviatingModuleName);
    });
    if (status != ZR_OK) {
        run->augments.Spare();
        return status;
    }
    run->augments.ForEachDoomed([run](ZrNode *augment) {
        if (augment->firstChild != nullptr)
            run->children.ForgetChildrenOf(augment->firstChild->parent);
        zr::TakeBackAugmentNodes(augment);
    });
    run->augments.ForEachDoomed(
        [run](const ZrNode *augment) { run->children.LeaveAugment(augment); });
    run->augments.FreeDoomed();
    return ZR_OK;
}

// The same by path alone, for the augments of a context or of one module.
template <typename Owner>
uint32_t DropAugmentsOf(Owner *owner, const char *deviatingModuleName, const char *path)
{
    zr::DeviationRun run;
    uint32_t status = run.augments.Make(owner);
    return status == ZR_OK ? DropAugments(&run, deviatingModuleName, path, nullptr) : status;
}

} // namespace

void ZRS_NODE_NotifyBeforeDeviateNotSupport(ZrNode *node)
{
    ZrCtx *ctx = zr::ContextOf(node);
    if (ctx != nullptr && ctx->beforeDeviateNotSupportFunc != nullptr)
        ctx->beforeDeviateNotSupportFunc(ctx, node, ctx);
}

uint32_t ZRS_MOD_CoupleDevNotSup(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target,
                                 ZrNode *augment)
{
    zr::DeviationRun run;
    return zr::RemoveTarget(module, deviation, target, augment, &run);
}

uint32_t zr::RemoveTarget(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target,
                          ZrNode *augment, DeviationRun *run)
{
    if (module == nullptr || deviation == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    ZRS_NODE_NotifyBeforeDeviateNotSupport(target);
    // The augments go before the nodes do, as long as their links lead somewhere.
    uint32_t status = run->augments.Make(module->ctx);
    if (status == ZR_OK)
        status = DropAugments(run, module->name, deviation->targetPath, target);
    if (status != ZR_OK)
        return status;
    ZrNode *adder = run->augments.AugmentOf(target);
    run->children.Leave(target, adder);
    // The augment that added the node may be one of its own module, which a lookup by path does
    // not come through.
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment, target);
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(adder, target);
    ZRS_NODE_Unlink(target);
    ZRS_NODE_Free(target);
    return ZR_OK;
}

uint32_t ZRS_MOD_RemoveAllModAugmentStartsWithDeviationPath(ZrMod *targetModule,
                                                            const char *deviatingModuleName,
                                                            const char *deviationPath)
{
    if (targetModule == nullptr || deviatingModuleName == nullptr || deviationPath == nullptr)
        return ZR_ERR_INVALID;
    return DropAugmentsOf(targetModule->ctx, deviatingModuleName, deviationPath);
}

uint32_t ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ZrMod *module,
                                                            const char *deviatingModuleName,
                                                            const char *deviationPath)
{
    if (module == nullptr || deviatingModuleName == nullptr || deviationPath == nullptr)
        return ZR_ERR_INVALID;
    return DropAugmentsOf(module, deviatingModuleName, deviationPath);
}

uint32_t zr::DropAugment(ZrNode *augment, const ZrMod *remover)
{
    uint32_t status = RecordLoss(augment->module, remover->name);
    if (status != ZR_OK)
        return status;
    ZRS_NODE_Unlink(augment);
    ZRS_NODE_Free(augment);
    return ZR_OK;
}

// Who removed a node: the module with an applied "not-supported" deviation at or above its path.

namespace {

bool IsNotSupported(const ZrsDeviation &deviation)
{
    for (uint32_t i = 0; i < deviation.deviateCount; ++i) {
        if (deviation.deviates[i].kind == ZRS_DEVIATE_NOT_SUPPORTED)
            return true;
    }
    return false;
}

bool HasRemoved(const ZrsDeviation &deviation)
{
    return (deviation.flags & ZRS_DEVIATION_COUPLED) != 0 && IsNotSupported(deviation);
}

bool HasRemoved(const ZrMod *module, const char *path)
{
    for (uint32_t i = 0; module != nullptr && i < module->deviationCount; ++i) {
        const ZrsDeviation &deviation = module->deviations[i];
        if (HasRemoved(deviation) && zr::IsPathAtOrBelow(path, deviation.targetPath))
            return true;
    }
    return false;
}

// The module among the named one and those that deviate it which removed the path, or null.
ZrMod *FindRemoverAmong(const ZrCtx *ctx, const char *moduleName, const char *path)
{
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (HasRemoved(module, path))
        return module;
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return nullptr;
    for (const ZrModRelItem &relation : zr::ItemsOf<ZrModRelItem>(&table->items)) {
        if (relation.kind != ZR_RELATION_DEVIATED_BY)
            continue;
        module = ZR_CTX_GetModuleByModName(ctx, relation.otherName);
        if (HasRemoved(module, path))
            return module;
    }
    return nullptr;
}

// Reads the module name of the step that begins at `step`; false when it has none.
bool ReadModuleName(const char *step, zr::ModuleNameText &nameOut)
{
    size_t length = std::strcspn(step, ":/");
    if (step[length] != ':' || length >= sizeof(nameOut))
        return false;
    std::memcpy(nameOut, step, length);
    nameOut[length] = '\0';
    return true;
}

// Calls `visit`(deviation, module) for every deviation that has removed a node.
template <typename Visit> void ForEachRemoval(const ZrCtx *ctx, Visit visit)
{
    for (ZrMod *module : zr::ModulesOf(ctx)) {
        for (uint32_t i = 0; i < module->deviationCount; ++i) {
            const ZrsDeviation &deviation = module->deviations[i];
            if (HasRemoved(deviation))
                visit(deviation, module);
        }
    }
}

} // namespace

ZrMod *zr::FindRemover(const ZrCtx *ctx, const char *path)
{
    // A path at or below the removed one names all the modules that the removed one names.
    for (const char *slash = std::strchr(path, '/'); slash != nullptr;
         slash = std::strchr(slash + 1, '/')) {
        ModuleNameText name;
        if (!ReadModuleName(slash + 1, name))
            continue;
        if (ZrMod *remover = FindRemoverAmong(ctx, name, path))
            return remover;
    }
    return nullptr;
}

bool zr::RemovedPaths::Make(const ZrCtx *ctx)
{
    uint32_t count = 0;
    ForEachRemoval(ctx, [&](const ZrsDeviation &, const ZrMod *) { ++count; });
    if (NewArray(paths_, count) != ZR_OK)
        return false;
    ForEachRemoval(ctx, [this](const ZrsDeviation &deviation, ZrMod *module) {
        paths_.get()[count_++] = {deviation.targetPath, module};
    });
    std::sort(paths_.get(), paths_.get() + count_, [](const Removal &a, const Removal &b) {
        return std::string_view(a.path) < std::string_view(b.path);
    });
    return true;
}

ZrMod *zr::RemovedPaths::RemoverOf(std::string_view path) const
{
    const Removal *first = paths_.get(), *end = first + count_;
    const Removal *found =
        std::lower_bound(first, end, path, [](const Removal &removal, std::string_view key) {
            return std::string_view(removal.path) < key;
        });
    return found != end && path == found->path ? found->module : nullptr;
}

ZrMod *zr::RemovedPaths::FindRemover(const ZrCtx *ctx, const char *path)
{
    constexpr uint32_t kManyQuestions = 16;
    if (!isMade_ && (++questions_ < kManyQuestions || !(isMade_ = Make(ctx))))
        return zr::FindRemover(ctx, path);
    std::string_view text(path);
    for (size_t slash = text.find('/', 1); slash != text.npos; slash = text.find('/', slash + 1)) {
        if (ZrMod *remover = RemoverOf(First(text, slash)))
            return remover;
    }
    return RemoverOf(text);
}
