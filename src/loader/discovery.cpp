#include "loader/discovery.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "platform/memory.h"
#include "platform/system.h"
#include "platform/text.h"
#include "platform/xml.h"

namespace {

constexpr const char *kSuffixMark = "@@"; // name@@suffix.yin: one part of a module in several files

const char *BaseName(const char *path)
{
    const char *slash = PAL_StrRChr(path, '/');
    return slash != nullptr ? slash + 1 : path;
}

// Copies what stands between the mark and the next "." into `suffix`, cut to what fits; false for a
// plain file.
bool ReadSuffix(const char *path, char *suffix, size_t suffixSize)
{
    const char *mark = PAL_StrStr(BaseName(path), kSuffixMark);
    if (mark == nullptr)
        return false;
    const char *start = mark + std::strlen(kSuffixMark);
    size_t length = std::strcspn(start, ".");
    if (length >= suffixSize)
        length = suffixSize - 1;
    std::memcpy(suffix, start, length);
    suffix[length] = '\0';
    return true;
}

uint32_t AppendPath(ZrsPathCollection *collection, const char *path)
{
    if (collection->count == UINT16_MAX)
        return ZR_ERR_INVALID;
    if (zr::ExpandArray(&collection->objects, collection->count, 1) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    ZrsPathObj *object = &collection->objects[collection->count++];
    strcpy_s(object->path, sizeof(object->path), path);
    if (ReadSuffix(path, object->suffix, sizeof(object->suffix)))
        collection->hasSuffixed = 1;
    else
        collection->hasPlain = 1;
    return ZR_OK;
}

// Collects the module's plain file, when the directory holds one; `*found` tells.
uint32_t CollectPlainFile(ZrsPathCollection *collection, const char *directory,
                          const char *moduleName, bool *found)
{
    char path[sizeof(ZrsPathObj::path)];
    *found = sprintf_s(path, sizeof(path), "%s/%s.yin", directory, moduleName) >= 0 &&
             PAL_VFS_IsFileExist(path) == 1;
    return *found ? AppendPath(collection, path) : uint32_t{ZR_OK};
}

uint32_t CollectMarkedFiles(ZrsPathCollection *collection, const char *directory,
                            const char *moduleName)
{
    char pattern[sizeof(ZrsPathObj::path)];
    char path[sizeof(ZrsPathObj::path)];
    if (sprintf_s(pattern, sizeof(pattern), "%s/%s@*.yin", directory, moduleName) < 0)
        return ZR_OK;
    PalFind *find = PAL_VFS_FindFirst(pattern, path, sizeof(path));
    if (find == nullptr)
        return errno == ENOMEM ? ZR_ERR_NO_MEMORY : ZR_OK;
    uint32_t status = ZR_OK;
    do {
        status = AppendPath(collection, path);
    } while (status == ZR_OK && PAL_VFS_FindNext(find, path, sizeof(path)) == ZR_OK);
    PAL_VFS_FindClose(find);
    return status;
}

// A name stands for files of the search directories themselves, and for itself alone.
bool CanNameFiles(const char *moduleName)
{
    return moduleName != nullptr && std::strpbrk(moduleName, "/*?[]\\") == nullptr;
}

// In the order of the directories; the first plain file ends the search.
uint32_t CollectFromAll(ZrsPathCollection *collection, const ZrCtx *ctx, const char *moduleName)
{
    for (uint32_t i = 0; i < ctx->searchDirCount; ++i) {
        bool found = false;
        uint32_t status = CollectPlainFile(collection, ctx->searchDirs[i], moduleName, &found);
        if (status != ZR_OK || found)
            return status;
        status = CollectMarkedFiles(collection, ctx->searchDirs[i], moduleName);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

// The file's size with the position back at its start, or -1.
int64_t FileSize(PalFile *file)
{
    if (PAL_VFS_FSeek(file, 0, SEEK_END) != 0)
        return -1;
    int64_t size = PAL_VFS_FTell(file);
    return PAL_VFS_FSeek(file, 0, SEEK_SET) == 0 ? size : -1;
}

} // namespace

void zr::FreePathCollection(ZrsPathCollection *collection)
{
    if (collection == nullptr)
        return;
    zr::Free(collection->objects);
    zr::Free(collection);
}

uint32_t zr::CollectPaths(const ZrCtx *ctx, const char *moduleName,
                          ZrsPathCollection **collectionOut)
{
    *collectionOut = nullptr;
    if (!CanNameFiles(moduleName))
        return ZR_ERR_NOT_FOUND;
    auto *collection = zr::New<ZrsPathCollection>();
    if (collection == nullptr)
        return ZR_ERR_NO_MEMORY;
    collection->limit = 1;
    uint32_t status = CollectFromAll(collection, ctx, moduleName);
    if (status == ZR_OK && collection->count == 0)
        status = ZR_ERR_NOT_FOUND;
    if (status == ZR_OK)
        *collectionOut = collection;
    else
        zr::FreePathCollection(collection);
    return status;
}

ZrsPathCollection *ZRS_LOADER_CollectFilePathMatchedInAllDir(const ZrCtx *ctx,
                                                             const char *moduleName)
{
    ZrsPathCollection *collection = nullptr;
    zr::CollectPaths(ctx, moduleName, &collection);
    return collection;
}

xmlDoc *ZRS_LOADER_ReadFileContentAsDoc(PalFile *file)
{
    int64_t size = FileSize(file);
    if (size < 0 || size > int64_t{zr::kMaxXmlLength})
        return nullptr; // before any memory is asked for
    auto length = static_cast<size_t>(size);
    zr::Owned<char> text(zr::New<char>(length + 1));
    if (!text || PAL_VFS_FRead(text.get(), 1, length, file) != length)
        return nullptr;
    return zr::ParseXmlText(text.get(), length);
}

xmlDoc *ZRS_LOADER_ReadYinFileToXmlDoc(const char *path)
{
    PalFile *file = PAL_VFS_FOpen(path, "r");
    if (file == nullptr)
        return nullptr;
    PAL_VFS_SetBufMode(file, 1); // one read takes the whole file: no stream buffer
    xmlDoc *document = ZRS_LOADER_ReadFileContentAsDoc(file);
    PAL_VFS_FClose(file);
    return document;
}
