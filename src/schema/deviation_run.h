// Applying many deviations, or coupling many augments, in a row: what is remembered from one to the
// next, so that the cost stays in proportion to their number.
#pragma once

#include <string_view>

#include "platform/memory.h"
#include "schema/augment_index.h"
#include "schema/child_index.h"
#include "schema/deviation.h"

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

    ScopedBlock<Removal> paths_;
    uint32_t count_ = 0;
    uint32_t questions_ = 0;
    bool isMade_ = false;
};

} // namespace zr
