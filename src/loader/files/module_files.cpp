// SPDX-License-Identifier: Apache-2.0
#include "loader/files/module_files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/system.h"
#include "platform/xml.h"

// Finding.

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
    return zr::AppendOne(&collection->objects, &collection->count,
                         [=](ZrsPathObj *object) -> uint32_t {
                             strcpy_s(object->path, sizeof(object->path), path);
                             if (ReadSuffix(path, object->suffix, sizeof(object->suffix)))
                                 collection->hasSuffixed = 1;
                             else
                                 collection->hasPlain = 1;
                             return ZR_OK;
                         });
}

// Collects the module's plain file, when the directory holds one; `*found` tells.
uint32_t CollectPlainFile(ZrsPathCollection *collection, const char *directory,
                          const char *moduleName, bool *found)
{
    char path[sizeof(ZrsPathObj::path)];
    *found = sprintf_s(path, sizeof(path), "%s/%s.yin", directory, moduleName) >= 0 &&
             PAL_VFS_IsFileExist(path) != 0;
    return *found ? AppendPath(collection, path) : uint32_t{ZR_OK};
}

uint32_t CollectMarkedFiles(ZrsPathCollection *collection, const char *directory,
                            const char *moduleName)
{
    char pattern[sizeof(ZrsPathObj::path)];
    char path[sizeof(ZrsPathObj::path)];
    if (sprintf_s(pattern, sizeof(pattern), "%s/%s@*.yin", directory, moduleName) < 0)
        return ZR_OK;
    zr::Owned<PalFind, PAL_VFS_FindClose> find(PAL_VFS_FindFirst(pattern, path, sizeof(path)));
    if (!find)
        return errno == ENOMEM ? ZR_ERR_NO_MEMORY : ZR_OK;
    do {
        uint32_t status = AppendPath(collection, path);
        if (status != ZR_OK)
            return status;
    } while (PAL_VFS_FindNext(find.get(), path, sizeof(path)) == ZR_OK);
    return ZR_OK;
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

} // namespace

void zr::FreePathCollection(ZrsPathCollection *collection)
{
    if (collection == nullptr)
        return;
    zr::Free(collection->objects);
    zr::Free(collection);
}

uint32_t zr::CollectPaths(const ZrCtx *ctx, const char *moduleName, OwnedPaths &paths)
{
    if (!CanNameFiles(moduleName))
        return ZR_ERR_NOT_FOUND;
    OwnedPaths found(zr::New<ZrsPathCollection>());
    if (!found)
        return ZR_ERR_NO_MEMORY;
    found->limit = 1;
    uint32_t status = CollectFromAll(found.get(), ctx, moduleName);
    if (status != ZR_OK)
        return status;
    if (found->count == 0)
        return ZR_ERR_NOT_FOUND;
    paths = std::move(found);
    return ZR_OK;
}

ZrsPathCollection *ZRS_LOADER_CollectFilePathMatchedInAllDir(const ZrCtx *ctx,
                                                             const char *moduleName)
{
    zr::OwnedPaths paths;
    zr::CollectPaths(ctx, moduleName, paths);
    return paths.release();
}

const ZrsPathObj *zr::FindPathObject(const ZrsPathCollection *collection, const char *suffix)
{
    for (uint32_t i = 0; i < collection->count; ++i) {
        const ZrsPathObj *object = &collection->objects[i];
        if (object->suffix[0] == '\0' || PAL_StrCmp(object->suffix, suffix) == 0)
            return object;
    }
    return nullptr;
}

// Reading.

namespace {

// The file's size with the position back at its start, or -1.
int64_t FileSize(PalFile *file)
{
    if (PAL_VFS_FSeek(file, 0, SEEK_END) != 0)
        return -1;
    int64_t size = PAL_VFS_FTell(file);
    return PAL_VFS_FSeek(file, 0, SEEK_SET) == 0 ? size : -1;
}

} // namespace

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
    zr::Owned<PalFile, PAL_VFS_FClose> file(PAL_VFS_FOpen(path, "r"));
    if (!file)
        return nullptr;
    PAL_VFS_SetBufMode(file.get(), 1); // one read takes the whole file: no stream buffer
    return ZRS_LOADER_ReadFileContentAsDoc(file.get());
}

zr::OwnedDoc zr::ReadYinFile(ZrCtx *ctx, const char *path, const char *moduleName)
{
    OwnedDoc document(ZRS_LOADER_ReadYinFileToXmlDoc(path));
    if (!document)
        ZR_CTX_AddModError(ctx, moduleName, "Failed to read content from the yin file.");
    return document;
}

// The load assister.

namespace {

bool HasSuffix(const ZrsLoadAssister *assister, const char *suffix)
{
    return zr::FindFirst(assister->suffixes, assister->suffixCount, [suffix](const ZrsSuffix &row) {
               return zr::TextEquals(row.suffix, suffix);
           }) != nullptr;
}

bool HasMergeSource(const ZrMod *module, const char *suffix)
{
    return zr::FindFirst(module->mergeSources, module->mergeSourceCount,
                         [suffix](const char *text) { return zr::TextEquals(text, suffix); }) !=
           nullptr;
}

uint32_t AppendMergeSource(ZrMod *module, const char *suffix)
{
    const char *kept = nullptr;
    if (!zr::Intern(&module->ctx->dict, kept, suffix))
        return ZR_ERR_NO_MEMORY;
    uint32_t status = zr::AppendOne(&module->mergeSources, &module->mergeSourceCount,
                                    [kept](const char **source) -> uint32_t {
                                        *source = kept;
                                        return ZR_OK;
                                    });
    if (status != ZR_OK)
        ZR_DICT_Remove(&module->ctx->dict, kept);
    return status;
}

} // namespace

uint32_t ZRS_LOADER_AppendOneSuffixToAssister(ZrsLoadAssister *assister, const char *suffix,
                                              uint8_t done)
{
    if (suffix == nullptr)
        return ZR_ERR_INVALID;
    if (suffix[0] == '\0' || HasSuffix(assister, suffix))
        return ZR_OK;
    ZrsSuffix entry = {};
    if (strcpy_s(entry.suffix, sizeof(entry.suffix), suffix) != 0)
        return ZR_ERR_INVALID;
    entry.done = done;
    uint32_t status = zr::AppendOne(&assister->suffixes, &assister->suffixCount,
                                    [&entry](ZrsSuffix *slot) -> uint32_t {
                                        *slot = entry;
                                        return ZR_OK;
                                    });
    if (status == ZR_OK)
        assister->current = nullptr; // pointed into the old array
    return status;
}

uint32_t ZRS_LOADER_AppendSuffixsToAssister(ZrsLoadAssister *assister, uint32_t count,
                                            const char *const *suffixes, uint8_t done)
{
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < count && status == ZR_OK; ++i)
        status = ZRS_LOADER_AppendOneSuffixToAssister(assister, suffixes[i], done);
    return status;
}

uint32_t ZRS_LOADER_AddPathObjToLoadAssister(ZrsLoadAssister *assister,
                                             const ZrsPathCollection *collection)
{
    uint32_t status = ZR_OK;
    if (collection->hasSuffixed == 0)
        return status;
    for (uint32_t i = 0; i < collection->count && status == ZR_OK; ++i)
        status = ZRS_LOADER_AppendOneSuffixToAssister(assister, collection->objects[i].suffix, 0);
    return status;
}

uint32_t ZRS_LOADER_PreFillLoadAssisterFromExisting(const ZrMod *existingModule,
                                                    const ZrsPathCollection *collection,
                                                    ZrsLoadAssister *assister, uint32_t *proceed)
{
    if (existingModule != nullptr && existingModule->mergeSourceCount == 0) {
        *proceed = 0;
        return ZR_OK;
    }
    if (existingModule != nullptr) {
        uint32_t status = ZRS_LOADER_AppendSuffixsToAssister(
            assister, existingModule->mergeSourceCount, existingModule->mergeSources, 1);
        if (status != ZR_OK)
            return status;
    }
    return ZRS_LOADER_AddPathObjToLoadAssister(assister, collection);
}

const char *ZRS_LOADER_UpdateNextLoadingSuffix(ZrsLoadAssister *assister)
{
    for (uint32_t i = 0; assister->current == nullptr && i < assister->suffixCount; ++i)
        if (assister->suffixes[i].done == 0)
            assister->current = &assister->suffixes[i];
    return assister->current != nullptr ? assister->current->suffix : nullptr;
}

void ZRS_LOADER_ResetCurrentLoadingSuffix(ZrsLoadAssister *assister, uint8_t done)
{
    if (assister->current != nullptr)
        assister->current->done = done;
    assister->current = nullptr;
}

const ZrsPathObj *ZRS_LOADER_GetNextPathObjToProc(ZrsPathCollection *collection,
                                                  ZrsLoadAssister *assister)
{
    const char *suffix = ZRS_LOADER_UpdateNextLoadingSuffix(assister);
    if (suffix == nullptr && collection->processed > 0)
        return nullptr;
    if (collection->count == 0 || collection->processed >= collection->limit)
        return nullptr;
    const ZrsPathObj *object =
        suffix == nullptr ? &collection->objects[0] : zr::FindPathObject(collection, suffix);
    if (object != nullptr)
        ++collection->processed;
    return object;
}

void ZRS_LOADER_ClearLoadAssister(ZrsLoadAssister *assister)
{
    zr::Free(assister->suffixes);
    assister->suffixes = nullptr;
    assister->suffixCount = 0;
    assister->current = nullptr;
}

uint32_t ZRS_LOADER_SaveSuccLoadingSuffix(ZrMod *module, const ZrsLoadAssister *assister)
{
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < assister->suffixCount && status == ZR_OK; ++i) {
        const ZrsSuffix *entry = &assister->suffixes[i];
        // A file that was not read may still be loaded by a later call.
        if (entry->done != 0 && !HasMergeSource(module, entry->suffix))
            status = AppendMergeSource(module, entry->suffix);
    }
    return status;
}
