// SPDX-License-Identifier: Apache-2.0
#include "schema/augment/augment_index.h"

#include <zrschema/node.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "foundation/array.h"
#include "model/context.h"
#include "model/module_records.h"
#include "schema/augment/augment.h"
#include "schema/lookup/lookup.h"
#include "schema/nodes/node.h"

namespace {

// Orders paths so that those below a path follow it at once: "/" comes before any other character.
bool IsPathBefore(const char *a, const char *b)
{
    while (*a == *b && *a != '\0') {
        ++a;
        ++b;
    }
    auto rank = [](char c) { return c == '/' ? 1 : 2 * int{static_cast<unsigned char>(c)}; };
    return rank(*a) < rank(*b);
}

bool HasNodesInTarget(const ZrNode *augment)
{
    return zr::IsCoupled(augment) && augment->firstChild != nullptr;
}

// Calls `visit`(augment) for every augment of the module.
template <typename Visit> void ForEachAugment(const ZrMod *module, Visit visit)
{
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        visit(augment);
}

// The links of a node in links that are ordered by node.
template <typename Link>
std::pair<const Link *, const Link *> LinksOf(const Link *links, uint32_t count, const ZrNode *node)
{
    struct ByNode {
        bool operator()(const Link &link, const ZrNode *key) const
        {
            return std::less<const ZrNode *>()(link.node, key);
        }
        bool operator()(const ZrNode *key, const Link &link) const
        {
            return std::less<const ZrNode *>()(key, link.node);
        }
    };
    return std::equal_range(links, links + count, node, ByNode());
}

template <typename Link> void SortByNode(Link *links, uint32_t count)
{
    std::sort(links, links + count, [](const Link &a, const Link &b) {
        return std::less<const ZrNode *>()(a.node, b.node);
    });
}

} // namespace

zr::AugmentIndex::~AugmentIndex()
{
    for (uint32_t i = 0; i < slotCount_; ++i) {
        if (slots_.get()[i].augment == nullptr)
            ZR_DICT_Remove(dict_, slots_.get()[i].path);
    }
}

uint32_t zr::AugmentIndex::Make(ZrCtx *ctx)
{
    return MakeOf(ctx, [=](auto visit) {
        for (const ZrMod *module : ModulesOf(ctx))
            ForEachAugment(module, visit);
    });
}

uint32_t zr::AugmentIndex::Make(const ZrMod *module)
{
    return MakeOf(module->ctx, [=](auto visit) { ForEachAugment(module, visit); });
}

template <typename ForEachAugment>
uint32_t zr::AugmentIndex::MakeOf(ZrCtx *ctx, ForEachAugment forEachAugment)
{
    if (isMade_)
        return ZR_OK;
    dict_ = &ctx->dict;
    uint32_t slots = 0, added = 0, targets = 0;
    forEachAugment([&](const ZrNode *augment) {
        ++slots;
        if (!HasNodesInTarget(augment))
            return;
        ++targets;
        ForEachChild(augment, [&](const ZrNode *) { ++added; });
    });
    if (NewArray(slots_, slots) != ZR_OK || NewArray(added_, added) != ZR_OK ||
        NewArray(targets_, targets) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    forEachAugment([this](ZrNode *augment) {
        slots_.get()[slotCount_++] = {augment, augment->name, augment->module, false, false, kNone};
    });
    std::sort(slots_.get(), slots_.get() + slotCount_,
              [](const Slot &a, const Slot &b) { return IsPathBefore(a.path, b.path); });
    FillLinks();
    isMade_ = true;
    return ZR_OK;
}

void zr::AugmentIndex::FillLinks()
{
    for (uint32_t i = 0; i < slotCount_; ++i) {
        const ZrNode *augment = slots_.get()[i].augment;
        if (!HasNodesInTarget(augment))
            continue;
        targets_.get()[targetCount_++] = {augment->firstChild->parent, i};
        ForEachChild(augment, [&](const ZrNode *node) { added_.get()[addedCount_++] = {node, i}; });
    }
    SortByNode(targets_.get(), targetCount_);
    SortByNode(added_.get(), addedCount_);
}

ZrNode *zr::AugmentIndex::AugmentOf(const ZrNode *node) const
{
    auto [first, last] = LinksOf<Link>(added_.get(), addedCount_, node);
    return first != last ? slots_.get()[first->slot].augment : nullptr;
}

bool zr::AugmentIndex::Doom(const char *path, const ZrNode *node)
{
    DoomPaths(path);
    if (node != nullptr && targetCount_ != 0)
        DoomTargets(node);
    return doomed_ != kNone;
}

void zr::AugmentIndex::DoomSlot(uint32_t index)
{
    Slot &slot = slots_.get()[index];
    if (slot.augment == nullptr || slot.isDoomed)
        return;
    slot.isDoomed = true;
    slot.wasCoupled = IsCoupled(slot.augment);
    slot.nextDoomed = doomed_;
    doomed_ = index;
    // The nodes of one without a target go with it, and with them what hangs below.
    if (!slot.wasCoupled && targetCount_ != 0)
        ForEachChild(slot.augment, [this](const ZrNode *node) { DoomTargets(node); });
}

void zr::AugmentIndex::DoomPaths(const char *path)
{
    const Slot *first = std::lower_bound(
        slots_.get(), slots_.get() + slotCount_, path,
        [](const Slot &slot, const char *key) { return IsPathBefore(slot.path, key); });
    for (const Slot *slot = first; slot != slots_.get() + slotCount_; ++slot) {
        if (!IsPathAtOrBelow(slot->path, path))
            break;
        DoomSlot(static_cast<uint32_t>(slot - slots_.get()));
    }
}

// Most targets at or below the node are found by their paths; the others have been reached by
// another spelling.
void zr::AugmentIndex::DoomTargets(const ZrNode *node)
{
    ZR_NODE_TreeScanAllNode(const_cast<ZrNode *>(node), DoomTarget, this);
}

uint32_t zr::AugmentIndex::DoomTarget(ZrNode *node, uint32_t arrival, void *userData)
{
    auto *index = static_cast<AugmentIndex *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    auto [first, last] = LinksOf<Link>(index->targets_.get(), index->targetCount_, node);
    for (const Link *link = first; link != last; ++link) {
        const ZrNode *augment = index->slots_.get()[link->slot].augment;
        if (augment != nullptr && HasNodesInTarget(augment))
            index->DoomSlot(link->slot);
    }
    return 0;
}

void zr::AugmentIndex::Spare()
{
    while (doomed_ != kNone) {
        Slot &slot = slots_.get()[doomed_];
        doomed_ = slot.nextDoomed;
        slot.isDoomed = false;
    }
}

// A module that lost an augment without a target may have none without a target left.
void zr::AugmentIndex::SettleModules() const
{
    const ZrMod *settled = nullptr;
    for (uint32_t i = doomed_; i != kNone; i = slots_.get()[i].nextDoomed) {
        const Slot &slot = slots_.get()[i];
        if (slot.wasCoupled || slot.module == settled)
            continue;
        SettleModuleAugments(slot.module);
        settled = slot.module;
    }
}

void zr::AugmentIndex::FreeDoomed()
{
    for (uint32_t i = doomed_; i != kNone; i = slots_.get()[i].nextDoomed) {
        Slot &slot = slots_.get()[i];
        ZR_DICT_Insert(dict_, slot.path); // one more reference to a text that is there
        ZRS_NODE_Unlink(slot.augment);
        ZRS_NODE_Free(slot.augment);
        slot.augment = nullptr;
    }
    SettleModules();
    doomed_ = kNone;
}
