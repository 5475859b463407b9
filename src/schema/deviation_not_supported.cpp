// "deviate not-supported": the target goes, and with it every augment that points into it.
//
// The rule is the same in whatever order modules arrive: an augment whose target a loaded module's
// deviation has removed is dropped, be it there when the deviation is applied or loaded later.
#include <cstring>

#include "foundation/module_tree.h"
#include "foundation/relations.h"
#include "schema/augment.h"
#include "schema/deviation.h"
#include "schema/module.h"
#include "schema/node.h"
#include "schema/record_arrays.h"

namespace {

// Of an augment's flags: it is about to be dropped.
constexpr uint32_t kDoomed = 0x8000;

// What is removed: the nodes at and below a path, and below a node when it is known.
struct Removed {
    const char *path;
    const ZrNode *node; // or null
};

bool IsAtOrBelow(const ZrNode *node, const ZrNode *ancestor)
{
    while (node != nullptr && node != ancestor)
        node = node->parent;
    return node != nullptr;
}

// The paths tell for nearly all augments; the nodes also tell for one whose path leads to the
// removed node by another spelling.
bool PointsInto(const ZrNode *augment, const Removed &removed)
{
    if (zr::IsPathAtOrBelow(augment->name, removed.path))
        return true;
    return removed.node != nullptr && (augment->flags & ZRS_FLAG_COUPLED) != 0 &&
           augment->firstChild != nullptr && IsAtOrBelow(augment->firstChild->parent, removed.node);
}

// Marks the module's augments that are to be dropped; false when there is none.
bool Doom(const ZrMod *module, const Removed &removed)
{
    bool any = false;
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (PointsInto(augment, removed)) {
            augment->flags |= kDoomed;
            any = true;
        }
    }
    return any;
}

void Spare(const ZrMod *module)
{
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        augment->flags &= ~kDoomed;
}

void TakeBackDoomed(const ZrMod *module)
{
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if ((augment->flags & kDoomed) != 0)
            zr::TakeBackAugmentNodes(augment);
    }
}

void Drop(ZrNode *augment)
{
    ZRS_NODE_Unlink(augment);
    ZRS_NODE_Free(augment);
}

void DropDoomed(ZrMod *module)
{
    bool any = false;
    ZrNode *next = nullptr;
    for (ZrNode *augment = module->augments; augment != nullptr; augment = next) {
        next = augment->next;
        if ((augment->flags & kDoomed) != 0) {
            Drop(augment);
            any = true;
        }
    }
    if (any)
        zr::SettleModuleAugments(module);
}

// Records that the module is changed by the deviating one, so that it is loaded again when that
// one goes.
uint32_t RecordLoss(const ZrMod *module, const char *deviatingModuleName)
{
    if (zr::TextEquals(module->name, deviatingModuleName))
        return ZR_OK;
    return ZR_CTX_AddTwoModRelation(module->ctx, module->name, deviatingModuleName,
                                    ZR_RELATION_DEVIATED_BY);
}

// Calls `visit`(module) for every loaded module.
template <typename Visit> void ForEachModule(const ZrCtx *ctx, Visit visit)
{
    for (ZrMod *module = zr::FirstModule(ctx); module != nullptr;
         module = zr::NextModule(ctx, module))
        visit(module);
}

// Drops the augments of all modules that point into what is removed. Everything that can fail
// comes first. The nodes are taken back before any augment goes, since one augment's nodes may
// hang below another's.
uint32_t DropAugments(const ZrCtx *ctx, const char *deviatingModuleName, const Removed &removed)
{
    uint32_t status = ZR_OK;
    ForEachModule(ctx, [&](const ZrMod *module) {
        if (status == ZR_OK && Doom(module, removed))
            status = RecordLoss(module, deviatingModuleName);
    });
    if (status != ZR_OK) {
        ForEachModule(ctx, Spare);
        return status;
    }
    ForEachModule(ctx, TakeBackDoomed);
    ForEachModule(ctx, DropDoomed);
    return ZR_OK;
}

// The stretches of coupled augments that begin or end with the node. It may have been added by an
// augment of its own module, which a lookup by path does not come through.
void KeepStretches(ZrNode *augment, const ZrNode *node)
{
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment, node);
    for (ZrNode *own = node->module->augments; own != nullptr; own = own->next)
        ZRS_NODE_RemoveCoupledAugmentNodeChildLink(own, node);
}

bool IsNotSupported(const ZrsDeviation &deviation)
{
    for (uint32_t i = 0; i < deviation.deviateCount; ++i) {
        if (deviation.deviates[i].kind == ZRS_DEVIATE_NOT_SUPPORTED)
            return true;
    }
    return false;
}

bool HasRemoved(const ZrMod *module, const char *path)
{
    for (uint32_t i = 0; module != nullptr && i < module->deviationCount; ++i) {
        const ZrsDeviation &deviation = module->deviations[i];
        if ((deviation.flags & ZRS_DEVIATION_COUPLED) != 0 && IsNotSupported(deviation) &&
            zr::IsPathAtOrBelow(path, deviation.targetPath))
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
    for (const ZrListLink *link = table->items.next; link != &table->items; link = link->next) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        if (item->kind != ZR_RELATION_DEVIATED_BY)
            continue;
        module = ZR_CTX_GetModuleByModName(ctx, item->otherName);
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

} // namespace

void ZRS_NODE_NotifyBeforeDeviateNotSupport(ZrNode *node)
{
    if (node == nullptr || node->module == nullptr || node->module->ctx == nullptr)
        return;
    ZrCtx *ctx = node->module->ctx;
    if (ctx->beforeDeviateNotSupportFunc != nullptr)
        ctx->beforeDeviateNotSupportFunc(ctx, node, ctx);
}

uint32_t ZRS_MOD_CoupleDevNotSup(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target,
                                 ZrNode *augment)
{
    if (module == nullptr || deviation == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    ZRS_NODE_NotifyBeforeDeviateNotSupport(target);
    // The augments go before the nodes do, as long as their links lead somewhere.
    uint32_t status = DropAugments(module->ctx, module->name, {deviation->targetPath, target});
    if (status != ZR_OK)
        return status;
    KeepStretches(augment, target);
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
    return DropAugments(targetModule->ctx, deviatingModuleName, {deviationPath, nullptr});
}

uint32_t ZRS_MOD_RemoveOneModAugmentStartsWithDeviationPath(ZrMod *module,
                                                            const char *deviatingModuleName,
                                                            const char *deviationPath)
{
    if (module == nullptr || deviatingModuleName == nullptr || deviationPath == nullptr)
        return ZR_ERR_INVALID;
    if (!Doom(module, {deviationPath, nullptr}))
        return ZR_OK;
    uint32_t status = RecordLoss(module, deviatingModuleName);
    if (status != ZR_OK) {
        Spare(module);
        return status;
    }
    TakeBackDoomed(module);
    DropDoomed(module);
    return ZR_OK;
}

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

uint32_t zr::DropAugment(ZrNode *augment, const ZrMod *remover)
{
    uint32_t status = RecordLoss(augment->module, remover->name);
    if (status == ZR_OK)
        Drop(augment);
    return status;
}
