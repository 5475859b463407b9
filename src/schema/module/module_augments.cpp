// SPDX-License-Identifier: Apache-2.0
// The augments of one module: coupled with a relation to each target's module, and uncoupled again.
#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "foundation/statement_ids.h"
#include "model/context.h"
#include "model/module_records.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/lookup/child_index.h"
#include "schema/lookup/lookup.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"

namespace {

// One run over the augments of a module that are not coupled yet.
class Coupler {
public:
    explicit Coupler(ZrMod *module) : module_(module) {}

    // Tries the augments in order; then, as long as that may help, those that failed, nearest
    // target first. An augment can only wait for one with a shorter target path, so that each is
    // tried twice at the most, whatever their order.
    uint32_t Run()
    {
        TryAll(0);
        if (coupled_ != 0) {
            for (uint32_t depth = NextDepth(0); depth != 0; depth = NextDepth(depth))
                TryAll(depth);
        }
        return status_;
    }

    bool CoupledAny() const { return coupled_ != 0; }
    bool MadeTarget() const { return madeTarget_; }

private:
    static uint32_t Depth(const ZrNode *augment)
    {
        return ZR_UTL_CountCharNumber(augment->name, '/');
    }

    // The least number of steps above `depth` of a target path that is not coupled; 0 for none.
    uint32_t NextDepth(uint32_t depth) const
    {
        uint32_t next = 0;
        for (const ZrNode *augment = module_->augments; augment != nullptr;
             augment = augment->next) {
            if (zr::IsCoupled(augment))
                continue;
            uint32_t own = Depth(augment);
            if (own > depth && (next == 0 || own < next))
                next = own;
        }
        return next;
    }

    // Tries every augment, or every one whose target path has `depth` steps.
    void TryAll(uint32_t depth)
    {
        ZrNode *next = nullptr;
        for (ZrNode *augment = module_->augments; augment != nullptr; augment = next) {
            next = augment->next; // a dropped augment is gone
            if (zr::IsCoupled(augment) || (depth != 0 && Depth(augment) != depth))
                continue;
            uint32_t status = TryOne(augment);
            if (status != ZR_OK)
                status_ = status;
        }
    }

    uint32_t TryOne(ZrNode *augment)
    {
        zr::ModuleNameText target;
        if (!zr::LastNamedModule(augment->name, target))
            return ZR_ERR_INVALID;
        // The relation first: nodes that no relation tells of would be left behind in a module
        // that is unloaded.
        uint32_t status = Relate(target);
        if (status != ZR_OK)
            return status;
        ZrNode *node = zr::FindTarget(module_->ctx, augment->name, nullptr, &index_);
        if (node == nullptr || !zr::StandsInSchema(node)) {
            if (const ZrMod *remover = removed_.FindRemover(module_->ctx, augment->name)) {
                index_.LeaveAugment(augment);
                return zr::DropAugment(augment, remover);
            }
        }
        bool hadMade = (augment->flags & ZRS_FLAG_MADE_TARGET) != 0;
        status = zr::CoupleAugment(augment, node);
        if (status != ZR_OK)
            return status;
        ++coupled_;
        madeTarget_ = madeTarget_ || (!hadMade && (augment->flags & ZRS_FLAG_MADE_TARGET) != 0);
        status = RelateToOwner(augment, target);
        if (status == ZR_OK)
            index_.Arrive(augment);
        return status;
    }

    uint32_t Relate(const char *targetModuleName) const
    {
        if (zr::TextEquals(targetModuleName, module_->name))
            return ZR_OK;
        return ZR_CTX_AddTwoModRelation(module_->ctx, targetModuleName, module_->name,
                                        ZR_RELATION_AUGMENTED_BY);
    }

    // A step without a module name matches a node of any module, so that the nodes may hang in
    // another module than the path says; that module's end concerns them too.
    uint32_t RelateToOwner(ZrNode *augment, const char *namedModule) const
    {
        const ZrNode *first = augment->firstChild;
        const ZrMod *owner = first != nullptr ? first->parent->module : nullptr;
        if (owner == nullptr || zr::TextEquals(owner->name, namedModule))
            return ZR_OK;
        uint32_t status = Relate(owner->name);
        if (status != ZR_OK)
            ZRS_NODE_UnCoupleAugmentNode(augment);
        return status;
    }

    ZrMod *module_;
    zr::ChildIndex index_;
    zr::RemovedPaths removed_;
    uint32_t status_ = ZR_OK;
    uint32_t coupled_ = 0;
    bool madeTarget_ = false;
};

// Applies the deviations of all other modules that waited for a node.
void ApplyWaitingDeviations(const ZrMod *coupled)
{
    for (ZrMod *module : zr::ModulesOf(coupled->ctx)) {
        if (module != coupled)
            zr::RetryModuleDeviations(module);
    }
}

// Whether any other module adds to the nodes of the module or changes them.
bool IsChangedByOthers(const ZrMod *module)
{
    return ZR_CTX_FindModRelationTbl(module->ctx, module->name) != nullptr;
}

constexpr char kUncoupled[] = "Failed to couple augment statements.";

bool IsRecordedUncoupled(const ZrMod *module)
{
    const ZrErrModNode *recorded = ZR_CTX_GetErrNodeByModName(module->ctx, module->name);
    for (uint32_t i = 0; recorded != nullptr && i < recorded->entryCount; ++i) {
        const ZrErrInfo &entry = recorded->entries[i];
        if (entry.loadStage == ZRS_STAGE_AUGMENT && zr::TextEquals(entry.message, kUncoupled))
            return true;
    }
    return false;
}

} // namespace

uint32_t zr::CoupleModuleAugments(ZrMod *module)
{
    Coupler coupler(module);
    uint32_t status = coupler.Run();
    // Others may have waited for the input or output that this made, and for nodes that hung in an
    // augment without a target.
    if (coupler.MadeTarget() || (coupler.CoupledAny() && IsChangedByOthers(module)))
        ApplyWaitingDeviations(module);
    return SettleModuleAugments(module) ? uint32_t{ZR_OK} : status;
}

void zr::RetryModuleAugments(ZrMod *module)
{
    CoupleModuleAugments(module);
    RetryModuleDeviations(module);
}

void zr::RecordUncoupledAugments(const ZrMod *module)
{
    if (IsRecordedUncoupled(module))
        return;
    // A stage of its own: a later success clears the message.
    ScopedLoadStage stage(module->ctx, ZRS_STAGE_AUGMENT);
    ZR_CTX_AddModError(module->ctx, module->name, kUncoupled);
}

// Uncoupling, and the "input" and "output" nodes that coupling made.

namespace {

// A deviation of a node that is gone can be applied again when the node comes back.
void ForgetDeviationsOf(const ZrCtx *ctx, const char *path)
{
    for (ZrMod *module : zr::ModulesOf(ctx)) {
        for (uint32_t i = 0; i < module->deviationCount; ++i) {
            if (zr::TextEquals(module->deviations[i].targetPath, path))
                module->deviations[i].flags = 0;
        }
    }
}

ZrNode *FindCoupledAugmentOf(const ZrMod *module, const char *path)
{
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        if (zr::IsCoupled(augment) && zr::TextEquals(augment->name, path))
            return augment;
    }
    return nullptr;
}

// A coupled augment of any module with that target path, or null.
ZrNode *FindCoupledAugment(const ZrCtx *ctx, const char *path)
{
    for (const ZrMod *module : zr::ModulesOf(ctx)) {
        if (ZrNode *augment = FindCoupledAugmentOf(module, path))
            return augment;
    }
    return nullptr;
}

// The node that coupling made for the augment, or null; looked up while it is still coupled.
ZrNode *MadeTargetOf(const ZrNode *augment)
{
    if (!zr::IsCoupled(augment) || (augment->flags & ZRS_FLAG_MADE_TARGET) == 0)
        return nullptr;
    if (augment->firstChild != nullptr)
        return augment->firstChild->parent;
    return ZR_CTX_GetTargetNode(augment->module->ctx, augment->name, nullptr);
}

// The made node stays for the next augment that uses it, and goes with the last one.
void LeaveMadeTarget(ZrNode *augment, ZrNode *target)
{
    const ZrCtx *ctx = augment->module->ctx;
    augment->flags &= ~ZRS_FLAG_MADE_TARGET;
    if (ZrNode *heir = FindCoupledAugment(ctx, augment->name)) {
        heir->flags |= ZRS_FLAG_MADE_TARGET;
        return;
    }
    if (target->firstChild != nullptr)
        return;
    ForgetDeviationsOf(ctx, augment->name);
    ZRS_NODE_Unlink(target);
    ZRS_NODE_Free(target);
}

} // namespace

void zr::UncoupleModuleAugments(ZrMod *module)
{
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        ZrNode *made = MadeTargetOf(augment);
        ZRS_NODE_UnCoupleAugmentNode(augment);
        if (made != nullptr)
            LeaveMadeTarget(augment, made);
    }
}

void zr::UncoupleMadeTargetsIn(const ZrMod *module)
{
    // An augment that takes a made target over may stand before the one that left it.
    for (bool any = true; any;) {
        any = false;
        for (const ZrMod *owner : ModulesOf(module->ctx)) {
            for (ZrNode *augment = owner->augments; augment != nullptr; augment = augment->next) {
                ZrNode *made = MadeTargetOf(augment);
                if (made == nullptr || made->module != module)
                    continue;
                ZRS_NODE_UnCoupleAugmentNode(augment);
                LeaveMadeTarget(augment, made);
                any = true;
            }
        }
    }
}
