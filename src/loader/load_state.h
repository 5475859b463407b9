// The load assister: which suffixed files of a module are loaded and which are still to come.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "foundation/relations.h"
#include "loader/discovery.h"
#include "platform/avl.h"

struct ZrsSuffix {
    char suffix[10];
    uint8_t done;
};

struct ZrsLoadAssister {
    const char *moduleName;
    uint16_t suffixCount;
    ZrsSuffix *suffixes;
    ZrsSuffix *current; // the one that is being loaded, or null
};

extern "C" {
// Adds a suffix unless it is there or empty: 0, 22 for a null or over-long one, 12 without memory.
ZR_API uint32_t ZRS_LOADER_AppendOneSuffixToAssister(ZrsLoadAssister *assister, const char *suffix,
                                                     uint8_t done);
// Adds several, stopping at the first failure.
ZR_API uint32_t ZRS_LOADER_AppendSuffixsToAssister(ZrsLoadAssister *assister, uint32_t count,
                                                   const char *const *suffixes, uint8_t done);
// Adds the suffixes of the collected files as still to be loaded.
ZR_API uint32_t ZRS_LOADER_AddPathObjToLoadAssister(ZrsLoadAssister *assister,
                                                    const ZrsPathCollection *collection);
// Fills the assister from what is loaded under the name (null: nothing) and what was collected;
// `*proceed` becomes 0 when there is nothing to load: a module of one file is loaded already.
ZR_API uint32_t ZRS_LOADER_PreFillLoadAssisterFromExisting(const ZrMod *existingModule,
                                                           const ZrsPathCollection *collection,
                                                           ZrsLoadAssister *assister,
                                                           uint32_t *proceed);
// The suffix to load now: the current one, else the first that is not done; null when all are.
ZR_API const char *ZRS_LOADER_UpdateNextLoadingSuffix(ZrsLoadAssister *assister);
// Ends the loading of the current suffix.
ZR_API void ZRS_LOADER_ResetCurrentLoadingSuffix(ZrsLoadAssister *assister, uint8_t done);
// The next file to load, or null when no further one is to be loaded.
ZR_API const ZrsPathObj *ZRS_LOADER_GetNextPathObjToProc(ZrsPathCollection *collection,
                                                         ZrsLoadAssister *assister);
ZR_API void ZRS_LOADER_ClearLoadAssister(ZrsLoadAssister *assister);
// Keeps the suffixes whose files were read, merged or not, as the module's merge sources: 0, 12
// or 22.
ZR_API uint32_t ZRS_LOADER_SaveSuccLoadingSuffix(ZrMod *module, const ZrsLoadAssister *assister);
}

namespace zr {
// The file of a suffix among the collected ones, or null; a plain file that stands before it is
// taken in its place.
const ZrsPathObj *FindPathObject(const ZrsPathCollection *collection, const char *suffix);
} // namespace zr

// The list of modules still to be loaded, or to be removed and loaded again.

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
