// SPDX-License-Identifier: Apache-2.0
// A module that is coupled when a further part of it arrives: coupled augments step aside, and the
// module's nodes become again what its files say.
#include <zrschema/context.h>

#include <utility>

#include "foundation/array.h"
#include "foundation/list.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "model/context.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/lookup/child_index.h"
#include "schema/lookup/lookup.h"
#include "schema/members/entry_rules.h"
#include "schema/merge/merge.h"
#include "schema/module/module.h"
#include "schema/nodes/node.h"

// Coupled augments step aside.

namespace {

// Makes the augment's nodes the children of `parent`, without a change of their flags.
void SetParent(const ZrNode *augment, ZrNode *parent)
{
    zr::ForEachChild(augment, [parent](ZrNode *node) { node->parent = parent; });
}

// Links the augment's nodes, which stand alone, into the target before `next`, or at its end.
void LinkStretch(const ZrNode *augment, ZrNode *target, ZrNode *next)
{
    ZrNode *prev = next != nullptr ? next->prev : target->lastChild;
    augment->firstChild->prev = prev;
    augment->lastChild->next = next;
    (prev != nullptr ? prev->next : target->firstChild) = augment->firstChild;
    (next != nullptr ? next->prev : target->lastChild) = augment->lastChild;
    SetParent(augment, target);
}

// The reverse; returns the node behind the stretch.
ZrNode *UnlinkStretch(ZrNode *augment, ZrNode *target)
{
    ZrNode *prev = augment->firstChild->prev;
    ZrNode *next = augment->lastChild->next;
    (prev != nullptr ? prev->next : target->firstChild) = next;
    (next != nullptr ? next->prev : target->lastChild) = prev;
    augment->firstChild->prev = nullptr;
    augment->lastChild->next = nullptr;
    SetParent(augment, augment);
    return next;
}

// The nodes may be new there, and their target's flags may be others than before.
void InheritFlags(const ZrNode *augment)
{
    zr::ForEachChild(augment, [](ZrNode *node) {
        ZRS_NODE_UpdateConfigFlag(node);
        ZRS_NODE_UpdateNacmFlag(node);
    });
}

} // namespace

bool zr::AugmentsAside::IsConcerned(const ZrNode *augment) const
{
    return IsCoupled(augment) && augment->firstChild != nullptr &&
           (augment->module == module_ || augment->firstChild->parent->module == module_);
}

uint32_t zr::AugmentsAside::CountConcerned() const
{
    uint32_t count = 0;
    for (const ZrMod *owner : ModulesOf(module_->ctx)) {
        for (const ZrNode *augment = owner->augments; augment != nullptr; augment = augment->next)
            count += IsConcerned(augment) ? 1 : 0;
    }
    return count;
}

void zr::AugmentsAside::TakeOutOne(ZrNode *augment)
{
    ZrNode *target = augment->firstChild->parent;
    stretches_.get()[count_++] = {augment, target, UnlinkStretch(augment, target)};
}

void zr::AugmentsAside::TakeOutOf(const ZrMod *owner)
{
    for (ZrNode *augment = owner->augments; augment != nullptr; augment = augment->next) {
        if (IsConcerned(augment))
            TakeOutOne(augment);
    }
}

// The others' stretches go first, so that the module's own ones come back first.
uint32_t zr::AugmentsAside::TakeOut()
{
    uint32_t count = CountConcerned();
    if (count != 0 && NewArray(stretches_, count) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    UncoupleMadeTargetsIn(module_);
    for (const ZrMod *owner : ModulesOf(module_->ctx)) {
        if (owner != module_)
            TakeOutOf(owner);
    }
    TakeOutOf(module_);
    for (ZrNode *augment = module_->augments; augment != nullptr; augment = augment->next) {
        if (augment->firstChild == nullptr)
            augment->flags &= ~ZRS_FLAG_COUPLED;
    }
    return ZR_OK;
}

void zr::AugmentsAside::CoupleNewAugments() const
{
    const ZrCtx *ctx = module_->ctx;
    ChildIndex index;
    for (ZrNode *augment = module_->augments; augment != nullptr; augment = augment->next) {
        if (IsCoupled(augment))
            continue;
        ZrNode *target = FindTarget(ctx, augment->name, nullptr, &index);
        if (target != nullptr && target->module == module_ &&
            FindRemover(ctx, augment->name) == nullptr)
            CoupleAugment(augment, target);
    }
}

// In the reverse order, so that the node behind each stretch is there again.
void zr::AugmentsAside::PutBack()
{
    bool ownAreBack = false;
    for (; count_ != 0; --count_) {
        const Stretch &stretch = stretches_.get()[count_ - 1];
        if (!ownAreBack && stretch.augment->module != module_) {
            CoupleNewAugments();
            ownAreBack = true;
        }
        LinkStretch(stretch.augment, stretch.target, stretch.next);
        InheritFlags(stretch.augment);
    }
}

// The module's nodes as its files say.

namespace {

bool IsSameStatement(const ZrNode *node, const ZrNode *original)
{
    return node->name == original->name && node->kind == original->kind;
}

// Whether every node of the list has its original, in the same order; the list may lack some.
bool HasOriginals(const ZrNode *node, const ZrNode *original)
{
    for (; original != nullptr && node != nullptr; original = original->next) {
        if (!IsSameStatement(node, original))
            continue;
        if (!HasOriginals(node->firstChild, original->firstChild))
            return false;
        node = node->next;
    }
    return node == nullptr;
}

void SwapInfo(ZrNode *node, ZrNode *original)
{
    switch (node->kind) {
    case ZR_NODE_LEAF:
        std::swap(*static_cast<ZrsLeafInfo *>(node->info),
                  *static_cast<ZrsLeafInfo *>(original->info));
        break;
    case ZR_NODE_LEAF_LIST:
        std::swap(*static_cast<ZrsLeafListInfo *>(node->info),
                  *static_cast<ZrsLeafListInfo *>(original->info));
        break;
    case ZR_NODE_CHOICE:
        std::swap(*static_cast<ZrsChoiceInfo *>(node->info),
                  *static_cast<ZrsChoiceInfo *>(original->info));
        break;
    default:
        break;
    }
    // The typedefs that the type refers to are those of the other record.
    zr::ForgetResolved(const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(node)));
}

// What a deviation can change, and what a node takes from its parent.
void SwapProperties(ZrNode *node, ZrNode *original)
{
    node->flags = (node->flags & ZRS_FLAGS_COUPLING) | (original->flags & ~ZRS_FLAGS_COUPLING);
    node->marks = original->marks;
    std::swap(node->musts, original->musts);
    std::swap(node->mustCount, original->mustCount);
    std::swap(node->extInsts, original->extInsts);
    std::swap(node->extInstCount, original->extInstCount);
    if (zr::HasEntries(node->kind))
        zr::SwapEntryRules(zr::ContextOf(node), node, original);
    SwapInfo(node, original);
}

// One list of siblings: its head, and the parent that owns it or null.
struct List {
    ZrNode **head;
    ZrNode *parent;
};

// Moves a node out of the original's list into the list, behind `prev`, which may be null.
void Insert(ZrMod *module, const List &list, ZrNode *node, ZrNode *prev)
{
    ZRS_NODE_Unlink(node);
    ZRS_NODE_RefreshNodeTreeToZrMod(node, module); // a missing typedef shows with a value
    ZrNode *next = prev != nullptr ? prev->next : *list.head;
    node->parent = list.parent;
    node->prev = prev;
    node->next = next;
    (prev != nullptr ? prev->next : *list.head) = node;
    if (next != nullptr)
        next->prev = node;
    else if (list.parent != nullptr)
        list.parent->lastChild = node;
}

void BringBackList(ZrMod *module, const List &list, ZrNode *original)
{
    ZrNode *prev = nullptr;
    ZrNode *next = nullptr;
    for (; original != nullptr; original = next) {
        next = original->next;
        ZrNode *node = prev != nullptr ? prev->next : *list.head;
        if (node != nullptr && IsSameStatement(node, original)) {
            SwapProperties(node, original);
            BringBackList(module, {&node->firstChild, node}, original->firstChild);
            prev = node;
        } else {
            Insert(module, list, original, prev);
            prev = original;
        }
    }
}

// The deviations will be applied again, and those that failed will say so again.
void ForgetDeviations(ZrMod *deviating, const char *moduleName)
{
    bool failed = false;
    for (uint32_t i = 0; deviating != nullptr && i < deviating->deviationCount; ++i) {
        ZrsDeviation &deviation = deviating->deviations[i];
        if (!zr::LeadsIntoModule(deviation.targetPath, moduleName))
            continue;
        failed = failed || (deviation.flags & ZRS_DEVIATION_FAILED) != 0;
        deviation.flags = 0;
    }
    if (failed)
        ZR_CTX_ClearModCoupleErr(deviating->ctx->errMng, deviating->name);
}

// Calls `visit`(module name) for every other module that deviates the module.
template <typename Visit> void ForEachDeviating(const ZrMod *module, Visit visit)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(module->ctx, module->name);
    if (table == nullptr)
        return;
    for (const ZrModRelItem &relation : zr::ItemsOf<ZrModRelItem>(&table->items)) {
        if (relation.kind == ZR_RELATION_DEVIATED_BY)
            visit(relation.otherName);
    }
}

} // namespace

bool zr::MayDifferFromFiles(const ZrMod *module)
{
    bool differs = false;
    ForEachDeviating(module, [&differs](const char *) { differs = true; });
    for (uint32_t i = 0; i < module->deviationCount; ++i)
        differs = differs || module->deviations[i].flags != 0;
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        differs = differs || IsCoupled(augment);
    return differs;
}

bool zr::BringBackOriginal(ZrMod *module, ZrMod *original)
{
    for (ZrNode *ZrMod::*chain : kTopChains) {
        if (!HasOriginals(module->*chain, original->*chain))
            return false;
    }
    for (ZrNode *ZrMod::*chain : kTopChains)
        BringBackList(module, {&(module->*chain), nullptr}, original->*chain);
    ForgetDeviations(module, module->name);
    ForEachDeviating(module, [module](const char *name) {
        ForgetDeviations(ZR_CTX_GetModuleByModName(module->ctx, name), module->name);
    });
    return true;
}
