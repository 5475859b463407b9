// What the printing functions share about the walk from node to node.
#pragma once

#include "print/line.h"
#include "print/printer.h"

namespace zr {

// The bit of ZrsPrintCtx::retractMask for a level; 0 past the mask's end, where no bar is drawn.
uint32_t LevelBit(uint32_t level);
// Characters of a node's printed name, with the module name and colon of another module's node.
size_t PrintedNameLength(const ZrMod *module, const ZrNode *node);
// The first sibling that is printed from `first` on, and the next one after `node`, up to and with
// `last` (null: the end of the chain). A node is printed when it is enabled and of a printed kind.
const ZrNode *FirstPrinted(const ZrNode *first, const ZrNode *last);
const ZrNode *NextPrinted(const ZrNode *node, const ZrNode *last);
// Whether the node stands directly under a choice without a case of its own.
bool HasImpliedCase(const ZrNode *node);
// The access mode below a node.
uint32_t ModeBelow(const ZrNode *node, uint32_t mode);
// The node's children, unless only its line is asked for.
uint32_t PrintChildren(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
// The node one level below the line of its implied case. The case's line has drawn the bar towards
// the next case, so the node draws none; its width is that of the choice's children.
uint32_t PrintUnderImpliedCase(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);

} // namespace zr

// The text of a type in the tree.

namespace zr {

// "-> path" for a leafref, the typedef's name (qualified when it is another module's) for a derived
// type, the keyword for a built-in one.
void PutType(LineWriter &line, const ZrMod *module, const ZrtRealType *type);

} // namespace zr
