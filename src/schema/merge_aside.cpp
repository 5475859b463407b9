#include "schema/merge_aside.h"

#include "foundation/array.h"
#include "model/module_tree.h"
#include "schema/augment.h"
#include "schema/child_index.h"
#include "schema/deviation.h"
#include "schema/lookup.h"
#include "schema/node.h"

namespace {

bool IsCoupled(const ZrNode *augment)
{
    return (augment->flags & ZRS_FLAG_COUPLED) != 0;
}

// Makes the nodes from the augment's first to its last the children of `parent`, without a change
// of their flags.
void SetParent(const ZrNode *augment, ZrNode *parent)
{
    for (ZrNode *node = augment->firstChild;; node = node->next) {
        node->parent = parent;
        if (node == augment->lastChild)
            return;
    }
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
    for (ZrNode *node = augment->firstChild;; node = node->next) {
        ZRS_NODE_UpdateConfigFlag(node);
        ZRS_NODE_UpdateNacmFlag(node);
        if (node == augment->lastChild)
            return;
    }
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
    for (const ZrMod *owner = FirstModule(module_->ctx); owner != nullptr;
         owner = NextModule(module_->ctx, owner)) {
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
    if (count != 0 && NewArray(stretches_.slot(), count) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    UncoupleMadeTargetsIn(module_);
    for (const ZrMod *owner = FirstModule(module_->ctx); owner != nullptr;
         owner = NextModule(module_->ctx, owner)) {
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
