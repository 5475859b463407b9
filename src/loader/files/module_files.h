// SPDX-License-Identifier: Apache-2.0
// The files of a module: found in the search directories, handed out in the order in which they are
// to be loaded, and read.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "platform/memory.h"

struct PalFile;

// One file that was found.
struct ZrsPathObj {
    char path[256];
    char suffix[10]; // between "@@" and the next ".", "" for a plain file
};

struct ZrsPathCollection {
    uint16_t count;
    uint8_t hasSuffixed;
    uint8_t hasPlain;
    uint16_t limit;     // files to process at the most
    uint16_t processed; // files handed out
    ZrsPathObj *objects;
};

// The load assister says which suffixed files of a module are loaded and which are still to come.
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

// Finding and reading.

extern "C" {
// The files of a module in all search directories, for the caller to release with
// zr::FreePathCollection; null when there are none or memory runs out. For callers outside the
// library.
ZR_API ZrsPathCollection *ZRS_LOADER_CollectFilePathMatchedInAllDir(const ZrCtx *ctx,
                                                                    const char *moduleName);
// The document of a YIN file, for the caller to release with xmlFreeDoc; null when the file cannot
// be read or is no well-formed XML.
ZR_API xmlDoc *ZRS_LOADER_ReadYinFileToXmlDoc(const char *path);
// The same for an open file, which stays open.
ZR_API xmlDoc *ZRS_LOADER_ReadFileContentAsDoc(PalFile *file);
}

namespace zr {

constexpr uint16_t kMaxFilesAtOnce = 10; // of one module or submodule

void FreePathCollection(ZrsPathCollection *collection); // null is accepted
using OwnedPaths = Owned<ZrsPathCollection, FreePathCollection>;
using OwnedDoc = Owned<xmlDoc, xmlFreeDoc>;

// The files of a module in all search directories: ZR_OK, ZR_ERR_NOT_FOUND when there are none, or
// ZR_ERR_NO_MEMORY.
uint32_t CollectPaths(const ZrCtx *ctx, const char *moduleName, OwnedPaths &paths);
// The file of a suffix among the collected ones, or null; a plain file that stands before it is
// taken in its place.
const ZrsPathObj *FindPathObject(const ZrsPathCollection *collection, const char *suffix);

// The document of one of the files; one that cannot be read is recorded for the module.
OwnedDoc ReadYinFile(ZrCtx *ctx, const char *path, const char *moduleName);

} // namespace zr

// The load assister.

extern "C" {
// Adds a suffix unless it is there or empty: ZR_OK, ZR_ERR_INVALID for a null or over-long one, or
// ZR_ERR_NO_MEMORY.
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
// Empties the assister.
ZR_API void ZRS_LOADER_ClearLoadAssister(ZrsLoadAssister *assister);
// Keeps the suffixes whose files were read, merged or not, as the module's merge sources: ZR_OK,
// ZR_ERR_NO_MEMORY or ZR_ERR_INVALID.
ZR_API uint32_t ZRS_LOADER_SaveSuccLoadingSuffix(ZrMod *module, const ZrsLoadAssister *assister);
}

namespace zr {
// An assister for the length of a scope.
struct LoadAssister : ZrsLoadAssister {
    explicit LoadAssister(const char *name) : ZrsLoadAssister() { moduleName = name; }
    LoadAssister(const LoadAssister &) = delete;
    LoadAssister &operator=(const LoadAssister &) = delete;
    ~LoadAssister() { ZRS_LOADER_ClearLoadAssister(this); }
};
} // namespace zr
