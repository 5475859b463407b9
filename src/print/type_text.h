// The text of a type in the tree.
#pragma once

#include "print/line.h"

namespace zr {

// "-> path" for a leafref, the typedef's name (qualified when it is another module's) for a derived
// type, the keyword for a built-in one.
void PutType(LineWriter &line, const ZrMod *module, const ZrtRealType *type);

} // namespace zr
