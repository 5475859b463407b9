#include "instance/check/run.h"

namespace zr::data {

// Conditions look at data that is whole, so that what is in use by default is added before; what
// has no place in the data by its "when" is told before what it holds is judged.
void CheckData(Run &run, const xmlNode &wrapper)
{
    MatchElements(run, wrapper);
    AddDefaults(run);
    run.tree.Number();
    run.references.Clear();
    CheckWhens(run);
    CheckLists(run);
    CheckMandatory(run);
    CheckReferences(run);
    CheckMusts(run);
}

} // namespace zr::data
