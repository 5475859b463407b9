// How a deviate is applied: a table of steps, one property each, with the message that sums up a
// step's failure.
#pragma once

#include <span>
#include <string_view>

#include "model/node_record.h"
#include "platform/memory.h"
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
inline bool CarriesType(const ZrsDeviate &deviate)
{
    return deviate.type != nullptr;
}

// Runs the wanted steps in order; the first that fails records its summary and ends the deviate.
uint32_t RunDeviateSteps(std::span<const DeviateStep> steps, ZrMod *module, ZrsDeviate *deviate,
                         ZrNode *target);

// The work on defaults, one function for each kind of node that has them; other kinds give 1.
struct DefaultsByKind {
    DeviateStepFunc choice;
    DeviateStepFunc leaf;
    DeviateStepFunc leafList;
};
uint32_t RunByKind(const DefaultsByKind &table, ZrMod *module, ZrsDeviate *deviate, ZrNode *target);

// Whether the extension instance is one of NETCONF access control (RFC 8341).
bool IsNacmInstance(const ZrsExtInst *instance);

// Records a message about the target and gives 1.
uint32_t RefuseDeviate(ZrMod *module, const ZrNode *target, const char *message);

// Where the node keeps its single default: a leaf's value or a choice's case.
const char **DefaultSlot(ZrNode *target);
// What is said of a deviate that names several defaults, and of a target that has none.
struct SingleDefaultMessages {
    const char *tooMany;
    const char *none;
};

// Hands the target's single default, which has to be there, to `change(slot)` and returns its
// status.
template <typename Change>
uint32_t ChangeSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                             const SingleDefaultMessages &messages, Change change)
{
    if (deviate->defaultCount > 1) {
        RefuseDeviate(module, target, messages.tooMany);
        return ZR_OK; // kept: recorded, but coupling goes on
    }
    const char **slot = DefaultSlot(target);
    if (*slot == nullptr)
        return RefuseDeviate(module, target, messages.none);
    return change(*slot);
}

// Where the node keeps its units; null for a kind that has none.
const char **UnitsSlot(ZrNode *target);
// The leaf-list's record.
ZrsLeafListInfo *LeafListOf(ZrNode *target);
// The real type of a leaf or leaf-list; null for another kind.
ZrtRealType *RealTypeSlot(ZrNode *target);

// Puts an interned copy of the text in place of the slot's; 0 or 12 with nothing changed.
uint32_t ReplaceText(ZrMod *module, const char *&slot, const char *text);

} // namespace zr

// Applying many deviations, or coupling many augments, in a row: what is remembered from one to the
// next, so that the cost stays in proportion to their number.

namespace zr {

struct DeviationRun {
    ChildIndex children;   // of the targets' parents
    AugmentIndex augments; // made when the first node goes
};

// ZRS_MOD_CoupleDeviation, ZRS_MOD_CoupleDeviate and ZRS_MOD_CoupleDevNotSup in a run.
uint32_t CoupleDeviation(ZrMod *module, ZrsDeviation *deviation, DeviationRun *run);
uint32_t CoupleDeviate(ZrMod *module, ZrsDeviation *deviation, ZrsDeviate *deviate, ZrNode *target,
                       ZrNode *augment, DeviationRun *run);
uint32_t RemoveTarget(ZrMod *module, const ZrsDeviation *deviation, ZrNode *target, ZrNode *augment,
                      DeviationRun *run);

// FindRemover() for many paths, while no deviation is applied. After some questions the removed
// paths are put in order; without memory for that each is looked for as the first ones are.
class RemovedPaths {
public:
    ZrMod *FindRemover(const ZrCtx *ctx, const char *path);

private:
    struct Removal {
        const char *path;
        ZrMod *module;
    };

    bool Make(const ZrCtx *ctx);
    ZrMod *RemoverOf(std::string_view path) const;

    Owned<Removal> paths_;
    uint32_t count_ = 0;
    uint32_t questions_ = 0;
    bool isMade_ = false;
};

} // namespace zr
