// SPDX-License-Identifier: Apache-2.0
// The list of modules still to be loaded, or to be removed and loaded again.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/list.h"
#include "platform/avl.h"

struct ZrsPendFeature { // a feature as it was when its module was destroyed
    ZrListLink link;
    char *name; // owned
    uint32_t flags;
};

struct ZrsPendNode {
    ZrListLink link;
    char *moduleName; // owned
    uint8_t doNotReload;
    ZrListLink features; // ZrsPendFeature
    PalAvlNode byNameLink;
};

struct ZrsPendTbl {
    ZrListLink nodes;  // ZrsPendNode
    PalAvlTree byName; // the same nodes
};

extern "C" {
// The node of that name, or null.
ZR_API ZrsPendNode *ZRS_LOADER_FindModPendNodeByName(const ZrsPendTbl *table,
                                                     const char *moduleName);
// Appends every module that the module imports: ZR_OK or ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZRS_LOADER_AppendZrModImportsAsPending(ZrsPendTbl *table, const ZrMod *module);
// Notes a feature with its flags; one that is noted already keeps its place and takes the flags.
// ZR_OK, ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for a null argument.
ZR_API uint32_t ZRS_LOADER_AddModFeatPend(ZrsPendNode *pendingNode, const char *featureName,
                                          uint32_t flags);
}

namespace zr {

void InitPendTable(ZrsPendTbl *table);
// Empties the table.
void FreePendTable(ZrsPendTbl *table);
// Appends the name unless it is pending already: ZR_OK or ZR_ERR_NO_MEMORY.
uint32_t AppendPending(ZrsPendTbl *table, const char *moduleName);
// Notes a feature that is not noted yet: ZR_OK or ZR_ERR_NO_MEMORY.
uint32_t AppendFeature(ZrsPendNode *pendingNode, const char *featureName, uint32_t flags);

// A table for the length of a scope.
struct PendTable : ZrsPendTbl {
    PendTable() { InitPendTable(this); }
    PendTable(const PendTable &) = delete;
    PendTable &operator=(const PendTable &) = delete;
    ~PendTable() { FreePendTable(this); }
};

} // namespace zr
