// A module that has been coupled, brought back to what its files say. Couplings change a module's
// own nodes: deviations change and remove them, and nodes that its augments add take flags from
// their targets. A further part is merged with the nodes as they were read.
#pragma once

#include "model/module_record.h"

namespace zr {

// Whether couplings may have changed the module's own nodes.
bool MayDifferFromFiles(const ZrMod *module);

// Gives the module's nodes the properties of those of `original`, which was read from the same
// files once more and loses what is taken from it, and moves those that are missing into the
// module; deviations of the module's nodes count as not applied from then on. No augment's nodes
// may stand in the module's trees. Nodes and texts of the module stay where they are. False, with
// nothing changed, when the module has nodes that the original has not.
bool BringBackOriginal(ZrMod *module, ZrMod *original);

} // namespace zr
