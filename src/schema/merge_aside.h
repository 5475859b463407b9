// Coupled augments while a further part is merged into their module, or into the module in which
// their nodes stand: they step out of their targets, so that the merge meets the module's own
// statements, in their own lists, and nothing else. Then each goes back to its place.
#pragma once

#include "model/module_record.h"
#include "model/node_record.h"
#include "platform/memory.h"

namespace zr {

class AugmentsAside {
public:
    explicit AugmentsAside(ZrMod *module) : module_(module) {}

    // Takes the nodes of the augments out of their targets and puts them under their augments. The
    // augments stay marked as coupled, but for two kinds, which are coupled anew with the module:
    // the module's own ones without nodes, and all whose target is an "input" or "output" that
    // coupling made; such a node goes. 0, or 12 with nothing changed.
    uint32_t TakeOut();

    // Puts the nodes back where they stood. Nodes that the module's augments have won stand behind
    // those that they had; its new augments of its own nodes are coupled before the other modules'
    // return, as they are when all parts come together.
    void PutBack();

private:
    struct Stretch {
        ZrNode *augment;
        ZrNode *target;
        ZrNode *next; // the node behind the stretch, or null
    };

    bool IsConcerned(const ZrNode *augment) const;
    uint32_t CountConcerned() const;
    void TakeOutOf(const ZrMod *owner);
    void TakeOutOne(ZrNode *augment);
    void CoupleNewAugments() const;

    ZrMod *module_;
    ScopedBlock<Stretch> stretches_; // in the order in which they were taken out
    uint32_t count_ = 0;
};

} // namespace zr
