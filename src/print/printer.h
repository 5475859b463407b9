// SPDX-License-Identifier: Apache-2.0
// The tree printer: renders schema nodes as an indented text tree (RFC 8340) into a fixed buffer,
// which is handed to the application whenever it is nearly full.
//
// Every printing function takes the printed module first (names of other modules' nodes and
// typedefs are qualified), then the node, then the print context. They return ZR_OK, or
// ZR_ERR_INVALID when a line does not fit the buffer, a width is exceeded or the application's
// callback fails.
#pragma once

#include <zrschema/print.h>

enum ZrsPrintMode : uint32_t {
    ZRS_PRINT_CONFIG = 0, // the access field says "rw" or "ro"
    ZRS_PRINT_INPUT = 1,  // content of an RPC's or action's input: "-w"
    ZRS_PRINT_OUTPUT = 2  // content of an output or notification: "ro"
};

// Bits of ZrsPrintCtx::flags.
enum ZrsPrintFlag : uint32_t {
    // Of one node: they do not pass to its children.
    ZRS_PRINT_LINE_ONLY = 0x1,  // the node's line without its children
    ZRS_PRINT_LAST_SHOWN = 0x2, // the following siblings are not printed: no bar towards them

    // The bits that are kept for options of a whole printing, which pass to every level.
    ZRS_PRINT_OPTIONS = 0xffff0000
};

enum : uint32_t {
    ZRS_PRINT_BUFFER_SIZE = 8192,
    ZRS_PRINT_FLUSH_LENGTH = 7168 // so many characters are handed over before the next node
};

// One level of the tree; copied for every level below.
struct ZrsPrintCtx {
    uint32_t retractMask;   // bit n: a bar goes on at level n + 1
    uint32_t level;         // 1 for top-level nodes
    uint32_t maxNameLength; // longest name among the siblings, for the type column
    uint32_t accessMode;    // ZrsPrintMode
    uint32_t bufferSize;
    uint32_t usedLength; // characters in the buffer
    char *buffer;
    void *userData;
    uint32_t flags; // bits of ZrsPrintFlag
    ZrPrintFunc callback;
};

#if UINTPTR_MAX == UINT32_MAX
static_assert(sizeof(ZrsPrintCtx) == 40);
#endif

extern "C" {
// Copies the context of a level for the level below, without its flags.
ZR_API void ZRS_NODE_InheritPrintPara(ZrsPrintCtx *child, const ZrsPrintCtx *parent);
// Hands the text to the callback when the buffer is nearly full, and starts it again empty.
ZR_API uint32_t ZRS_NODE_PrintAllocBuffer(ZrsPrintCtx *print);
// The longest printed name of the siblings from `first` to `last` (null: the end of the chain).
ZR_API uint32_t ZRS_NODE_PrintGetMaxLen(const ZrMod *module, const ZrNode *first,
                                        const ZrNode *last);

// A whole node with everything below it; a disabled one prints nothing.
ZR_API uint32_t ZRS_NODE_PrintSubTree(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
// The same by kind, without the test. PrintCase also prints the implied case of a choice's
// shorthand child (RFC 7950, section 7.9.2), with the child below it.
ZR_API uint32_t ZRS_NODE_PrintContainer(const ZrMod *module, const ZrNode *node,
                                        ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintLeaf(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintLeafList(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintList(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintChoice(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintCase(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintAnyDataXml(const ZrMod *module, const ZrNode *node,
                                         ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintRpcAction(const ZrMod *module, const ZrNode *node,
                                        ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintNotif(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintInout(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);
// An augment's line and the nodes that it adds; a disabled augment prints nothing.
ZR_API uint32_t ZRS_NODE_PrintAugmentTree(const ZrMod *module, const ZrNode *augment,
                                          ZrsPrintCtx *print);

// The two halves of a module's tree.
ZR_API uint32_t ZRS_MOD_PrintModelTreeDataAug(const ZrMod *module, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_MOD_PrintModelTreeRpcNotif(const ZrMod *module, ZrsPrintCtx *print);

// The steps of ZR_NODE_PrintNodesTree(): the header, and one line for each ancestor from the top
// down, which leaves the context at the node's own level. ZR_ERR_INVALID for a node in an augment
// that is not coupled, because it stands in no module's tree.
ZR_API uint32_t ZR_NODE_PrintNodeHeader(const ZrNode *node, ZrsPrintCtx *print);
ZR_API uint32_t ZRS_NODE_PrintAncestorNodes(const ZrMod *module, const ZrNode *node,
                                            ZrsPrintCtx *print);
// The ancestor of a node at a level, or the node itself at its own; null outside of the two.
ZR_API const ZrNode *ZRS_NODE_GetAncestorNodeBySpecifyLevel(const ZrNode *node, uint32_t level);
}
