// The list of modules still to be loaded, or to be removed and loaded again.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/relations.h"
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
    ZrListLink features;
    PalAvlNode byNameLink;
};

struct ZrsPendTbl {
    ZrListLink nodes;
    PalAvlTree byName; // the same nodes
};

extern "C" {
ZR_API ZrsPendNode *ZRS_LOADER_FindModPendNodeByName(const ZrsPendTbl *table,
                                                     const char *moduleName);
ZR_API uint32_t ZRS_LOADER_AppendZrModImportsAsPending(ZrsPendTbl *table, const ZrMod *module);
}
namespace zr {
void InitPendTable(ZrsPendTbl *table);
// Appends the name unless it is pending already; 0 or 12.
uint32_t AppendPending(ZrsPendTbl *table, const char *moduleName);
void FreePendTable(ZrsPendTbl *table);
} // namespace zr
