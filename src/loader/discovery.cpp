#include "loader/discovery.h"

#include <cstdio>
#include <cstring>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/memory.h"
#include "platform/files.h"
#include "platform/secure.h"
#include "platform/text.h"
#include "platform/xml_parse.h"

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

// True when the directory holds the module's plain file, which is then collected.
bool CollectPlainFile(ZrsPathCollection *collection, const char *directory, const char *moduleName)
{
    char path[sizeof(ZrsPathObj::path)];
    if (sprintf_s(path, sizeof(path), "%s/%s.yin", directory, moduleName) < 0)
        return false;
    if (PAL_VFS_IsFileExist(path) != 1)
        return false;
    AppendPath(collection, path);
    return true;
}

void CollectMarkedFiles(ZrsPathCollection *collection, const char *directory,
                        const char *moduleName)
{
    char pattern[sizeof(ZrsPathObj::path)];
    char path[sizeof(ZrsPathObj::path)];
    if (sprintf_s(pattern, sizeof(pattern), "%s/%s@*.yin", directory, moduleName) < 0)
        return;
    PalFind *find = PAL_VFS_FindFirst(pattern, path, sizeof(path));
    if (find == nullptr)
        return;
    do {
        AppendPath(collection, path);
    } while (PAL_VFS_FindNext(find, path, sizeof(path)) == ZR_OK);
    PAL_VFS_FindClose(find);
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

ZrsPathCollection *ZRS_LOADER_CollectFilePathMatchedInAllDir(const ZrCtx *ctx,
                                                             const char *moduleName)
{
    auto *collection = zr::AllocRecord<ZrsPathCollection>();
    if (collection == nullptr)
        return nullptr;
    collection->limit = 1;
    for (uint32_t i = 0; i < ctx->searchDirCount; ++i) {
        if (CollectPlainFile(collection, ctx->searchDirs[i], moduleName))
            break; // the plain file ends the search
        CollectMarkedFiles(collection, ctx->searchDirs[i], moduleName);
    }
    if (collection->count == 0) {
        zr::FreePathCollection(collection);
        return nullptr;
    }
    return collection;
}

xmlDoc *ZRS_LOADER_ReadFileContentAsDoc(PalFile *file)
{
    int64_t size = FileSize(file);
    if (size < 0)
        return nullptr;
    auto length = static_cast<size_t>(size);
    zr::ScopedBlock<char> text(static_cast<char *>(zr::AllocZeroed(length + 1)));
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
