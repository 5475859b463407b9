// SPDX-License-Identifier: Apache-2.0
// The augments of many modules by target path, by target and by the nodes that they added, for a
// run of deviations that take nodes away.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "model/node_record.h"
#include "platform/memory.h"

namespace zr {

// Finds the augments that a removed node concerns without passing all the others. It is made once;
// while it is in use augments may only go through it, none may be coupled or uncoupled, and a
// removed node must not be asked for again.
class AugmentIndex {
public:
    AugmentIndex() = default;
    AugmentIndex(const AugmentIndex &) = delete;
    AugmentIndex &operator=(const AugmentIndex &) = delete;
    ~AugmentIndex();

    // Collect the augments of all modules, or of one; nothing when that is done. ZR_OK or
    // ZR_ERR_NO_MEMORY.
    uint32_t Make(ZrCtx *ctx);
    uint32_t Make(const ZrMod *module);

    // The coupled augment that added the node to its parent, or null.
    ZrNode *AugmentOf(const ZrNode *node) const;

    // Dooms the augments whose target path is `path` or leads below it, and those whose target
    // stands at or below `node`, which may be null. False when there is none.
    bool Doom(const char *path, const ZrNode *node);
    // Calls `visit`(augment) for every doomed augment.
    template <typename Visit> void ForEachDoomed(Visit visit) const
    {
        for (uint32_t i = doomed_; i != kNone; i = slots_.get()[i].nextDoomed)
            visit(slots_.get()[i].augment);
    }
    // Lets the doomed augments be.
    void Spare();
    // Frees the doomed augments, which have their nodes back.
    void FreeDoomed();

private:
    static constexpr uint32_t kNone = UINT32_MAX;
    struct Slot {
        ZrNode *augment;  // null once it is gone
        const char *path; // stays until the end, as it gives the order
        ZrMod *module;
        bool isDoomed;
        bool wasCoupled; // when it was doomed
        uint32_t nextDoomed;
    };
    struct Link { // from a node to the augment that added it, or that has it for target
        const ZrNode *node;
        uint32_t slot;
    };

    template <typename ForEachAugment> uint32_t MakeOf(ZrCtx *ctx, ForEachAugment forEachAugment);
    void FillLinks();
    void SettleModules() const;
    void DoomSlot(uint32_t slot);
    void DoomPaths(const char *path);
    void DoomTargets(const ZrNode *node);
    static uint32_t DoomTarget(ZrNode *node, uint32_t arrival, void *userData);

    ZrDict *dict_ = nullptr;
    Owned<Slot> slots_; // in the order of the paths
    Owned<Link> added_; // in the order of the nodes' addresses, like the next
    Owned<Link> targets_;
    uint32_t slotCount_ = 0;
    uint32_t addedCount_ = 0;
    uint32_t targetCount_ = 0;
    uint32_t doomed_ = kNone;
    bool isMade_ = false;
};

} // namespace zr
