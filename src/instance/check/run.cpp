// SPDX-License-Identifier: Apache-2.0
#include "instance/check/run.h"

#include <algorithm>
#include <iterator>

#include "instance/check/edit_target.h"

namespace zr::data {

namespace {

struct Kind {
    uint32_t kind;
    void (*read)(Run &, const xmlNode &);
};
constexpr Kind kKinds[] = {
    {ZR_DATA_CONFIG, ReadData}, {ZR_DATA_CONFIG_AND_STATE, ReadData},
    {ZR_DATA_EDIT, ReadEdit},   {ZR_DATA_REQUEST, ReadRequest},
    {ZR_DATA_REPLY, ReadReply}, {ZR_DATA_NOTIFICATION, ReadNotification},
};

const Kind *FindKind(uint32_t kind)
{
    auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                              [&](const Kind &row) { return row.kind == kind; });
    return found == std::end(kKinds) ? nullptr : found;
}

} // namespace

bool IsKnownKind(uint32_t kind)
{
    return FindKind(kind) != nullptr;
}

// Conditions look at data that is whole, so that what is in use by default is added before; what
// has no place in the data by its "when" is told before what it holds is judged. An edit is not
// whole: only its own parts can be held against each other.
void CheckDocument(Run &run, const xmlNode &root)
{
    FindKind(run.options.kind)->read(run, root);
    if (run.IsEdit()) {
        CheckLists(run);
        CheckMandatory(run);
        CheckTargets(run);
        return;
    }
    AddDefaults(run);
    run.tree.Complete();
    run.references.Settle();
    SettleUnions(run);
    CheckWhens(run);
    CheckLists(run);
    CheckMandatory(run);
    CheckReferences(run);
    CheckMusts(run);
}

} // namespace zr::data
