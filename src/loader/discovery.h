// Module files: collecting them from the search directories and reading them.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

struct PalFile;

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

extern "C" {
ZR_API ZrsPathCollection *ZRS_LOADER_CollectFilePathMatchedInAllDir(const ZrCtx *ctx,
                                                                    const char *moduleName);
ZR_API xmlDoc *ZRS_LOADER_ReadYinFileToXmlDoc(const char *path);
ZR_API xmlDoc *ZRS_LOADER_ReadFileContentAsDoc(PalFile *file);
}
namespace zr {
// The files of a module in all search directories: 0, 2 when there are none, or 12.
uint32_t CollectPaths(const ZrCtx *ctx, const char *moduleName, ZrsPathCollection **collectionOut);
void FreePathCollection(ZrsPathCollection *collection); // null is accepted
} // namespace zr
