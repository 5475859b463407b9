// SPDX-License-Identifier: Apache-2.0
// What is shared about the nodes of a tree: which are printed, and how a level follows from the one
// above.
#pragma once

#include "print/line.h"
#include "print/printer.h"

namespace zr {

// The first sibling that is printed from `first` on, and the next one after `node`, up to and with
// `last` (null: the end of the chain). A node is printed when it is enabled and of a printed kind.
const ZrNode *FirstPrinted(const ZrNode *first, const ZrNode *last);
const ZrNode *NextPrinted(const ZrNode *node, const ZrNode *last);
// Whether the node stands directly under a choice without a case of its own.
bool HasImpliedCase(const ZrNode *node);
// The access mode below a node.
uint32_t ModeBelow(const ZrNode *node, uint32_t mode);

// Sets the flags of one node, and leaves the options of the printing as they are.
inline void SetNodeFlags(ZrsPrintCtx *print, uint32_t flags)
{
    print->flags = (print->flags & ZRS_PRINT_OPTIONS) | flags;
}

// The context of the level below `print`, with the options of the printing and no other flags. Its
// width, access mode and bars are still those of the level above.
ZrsPrintCtx LevelBelow(const ZrsPrintCtx *print);

// The type column: "-> path" for a leafref, the typedef's name (qualified when it is another
// module's) for a derived type, the keyword for a built-in one.
void PutType(LineWriter &line, const ZrMod *module, const ZrtRealType *type);

} // namespace zr
