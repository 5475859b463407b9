// SPDX-License-Identifier: Apache-2.0
// How a deviate is applied: a table of steps, one property each, with the message that sums up a
// step's failure; what the steps of all kinds share; and what deviations in a row share.
#pragma once

#include <span>

#include "model/node_record.h"
#include "schema/augment/augment_index.h"
#include "schema/deviation/deviation.h"
#include "schema/lookup/child_index.h"

namespace zr {

using DeviateStepFunc = uint32_t (*)(ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

struct DeviateStep {
    bool (*wanted)(const ZrsDeviate &deviate); // whether the deviate carries the property
    DeviateStepFunc run;
    const char *summary; // with one %s, the target's name
};

inline bool CarriesFlags(const ZrsDeviate &deviate)
{
    return (deviate.flags & (ZRS_FLAGS_CONFIG | ZRS_FLAGS_MANDATORY)) != 0;
}
inline bool CarriesDefaults(const ZrsDeviate &deviate)
{
    return deviate.defaultCount != 0;
}
inline bool CarriesMusts(const ZrsDeviate &deviate)
{
    return deviate.mustCount != 0;
}
inline bool CarriesUnits(const ZrsDeviate &deviate)
{
    return deviate.units != nullptr;
}
inline bool CarriesExtInsts(const ZrsDeviate &deviate)
{
    return deviate.extInstCount != 0;
}
inline bool CarriesEntryRules(const ZrsDeviate &deviate)
{
    return (deviate.flags & ZRS_DEVIATE_ENTRY_RULES) != 0;
}
inline bool CarriesType(const ZrsDeviate &deviate)
{
    return deviate.type != nullptr;
}

// Runs the wanted steps in order; the first that fails records its summary and ends the deviate.
uint32_t RunDeviateSteps(std::span<const DeviateStep> steps, ZrMod *module, ZrsDeviate *deviate,
                         ZrNode *target);

// The work on defaults, one function for each kind of node that has them; other kinds give
// ZR_ERR_FAILED.
struct DefaultsByKind {
    DeviateStepFunc choice;
    DeviateStepFunc leaf;
    DeviateStepFunc leafList;
};
uint32_t RunByKind(const DefaultsByKind &table, ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// Whether the extension instance is one of NETCONF access control (RFC 8341).
bool IsNacmInstance(const ZrsExtInst *instance);

// Records a message about the target and gives ZR_ERR_FAILED.
uint32_t RefuseDeviate(ZrMod *module, const ZrNode *target, const char *message);

// Where the node keeps its single default: a leaf's value or a choice's case.
const char **DefaultSlot(ZrNode *target);

// What is said of a deviate that names several defaults, and of a target that has a default to
// which one would be added, or none to be deleted or replaced.
struct SingleDefaultMessages {
    const char *tooMany;
    const char *unfit;
};

// Hands the place of the target's single default, which has to be there or not as `isThere` says,
// to `change`(slot) and returns its status.
template <typename Change>
uint32_t ChangeSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target, bool isThere,
                             const SingleDefaultMessages &messages, Change change)
{
    if (deviate->defaultCount > 1) {
        RefuseDeviate(module, target, messages.tooMany);
        return ZR_OK; // docs/oddities.md: recorded, and the deviate goes on
    }
    const char **slot = DefaultSlot(target);
    if ((*slot != nullptr) != isThere)
        return RefuseDeviate(module, target, messages.unfit);
    return change(*slot);
}

// Where the node keeps its units; null for a kind that has none.
const char **UnitsSlot(ZrNode *target);
// The leaf-list's record.
ZrsLeafListInfo *LeafListOf(ZrNode *target);
// The real type of a leaf or leaf-list; null for another kind.
ZrtRealType *RealTypeSlot(ZrNode *target);

// What the deviate says of the entries of its target, whose rules these are.
struct EntryRulesChange {
    ZrDict *dict;
    const ZrsEntryRules *wanted;
    ZrsEntryRules *rules;
};

// Finds both and hands them to `change`, when the target is of a kind that has them: a list, or a
// leaf-list when there is no "unique". Else ZR_ERR_FAILED; ZR_ERR_NO_MEMORY.
uint32_t ChangeEntryRules(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                          uint32_t (*change)(ZrMod *module, const ZrNode *target,
                                             const EntryRulesChange &rules));

// Puts an interned copy of the text in place of the slot's; ZR_OK, or ZR_ERR_NO_MEMORY with nothing
// changed.
uint32_t ReplaceText(ZrMod *module, const char *&slot, const char *text);

// Deviations in a row: what is remembered from one to the next, so that the cost stays in
// proportion to their number.
struct DeviationRun {
    ChildIndex children;   // of the targets' parents
    AugmentIndex augments; // made when the first node goes
};

// ZRS_MOD_CoupleDevNotSup in a run.
uint32_t RemoveTarget(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target, ZrNode *augment,
                      DeviationRun *run);

} // namespace zr
