// SPDX-License-Identifier: Apache-2.0
// How a module comes into a context, whole: its files are found, handed out one by one, read, and
// merged into one record; the module is linked into the context and coupled; its imports follow.
// Each phase stands in a file of its own and calls no other.
#include "loader/pipeline.h"

#include <cstring>
#include <utility>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/search_dirs.h"
#include "foundation/statement_ids.h"
#include "loader/coupling.h"
#include "loader/files/module_content.h"
#include "loader/pending.h"
#include "model/context.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/merge/merge.h"
#include "schema/module/module.h"

namespace {
using OwnedModule = zr::Owned<ZrMod, ZRS_MOD_Free>;
} // namespace

// One file: read, noted, kept or merged.

ZrMod *ZRS_LOADER_ReadFilePathToZrMod(ZrCtx *ctx, const char *path, const char *moduleName,
                                      const char *expectedName)
{
    zr::OwnedDoc document = zr::ReadYinFile(ctx, path, moduleName);
    return document ? ZRS_LOADER_ParseYinContent(ctx, document.get(), expectedName) : nullptr;
}

namespace {

// Notes that the file of the current suffix has been read, also in the module into which it is to
// be merged (null for the first file), before it is: what was merged, even in part, must not be
// merged once more.
uint32_t NoteCurrentSuffix(ZrMod *module, const ZrsLoadAssister *assister)
{
    if (assister == nullptr || assister->current == nullptr)
        return ZR_OK;
    assister->current->done = 1;
    uint32_t status =
        module != nullptr ? ZRS_LOADER_SaveSuccLoadingSuffix(module, assister) : uint32_t{ZR_OK};
    if (status != ZR_OK)
        assister->current->done = 0;
    return status;
}

// Puts a file's record into the empty slot, or merges it into the module that stands there, if the
// file could be noted in it.
uint32_t KeepOrMerge(OwnedModule module, ZrMod **moduleSlot, uint32_t noteStatus)
{
    if (*moduleSlot == nullptr) {
        *moduleSlot = module.release();
        return ZR_OK;
    }
    uint32_t status = noteStatus == ZR_OK
                          ? ZRS_MOD_MergeTwoModuleInSameCtx(*moduleSlot, module.get())
                          : noteStatus;
    if (status != ZR_OK)
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to merge module \"%s\".",
                           module->name);
    return status;
}

uint32_t ReadAndMerge(ZrCtx *ctx, const char *path, const char *moduleName,
                      const ZrsLoadAssister *assister, ZrMod **moduleSlot)
{
    OwnedModule module;
    uint32_t noteStatus = ZR_OK;
    if (zr::OwnedDoc document = zr::ReadYinFile(ctx, path, moduleName)) {
        module.reset(ZRS_LOADER_ParseYinContent(ctx, document.get(), moduleName));
        document.reset();
        noteStatus = NoteCurrentSuffix(*moduleSlot, assister);
    }
    if (module)
        return KeepOrMerge(std::move(module), moduleSlot, noteStatus);
    ZR_CTX_AddModError(ctx, moduleName, "Failed to parse module \"%s\" from the yin file.",
                       moduleName);
    return ZR_ERR_INVALID;
}

} // namespace

uint32_t ZRS_LOADER_LoadModuleByPath(ZrCtx *ctx, const char *path, const char *moduleName,
                                     ZrsLoadAssister *assister, ZrMod **moduleSlot)
{
    ZR_CTX_SetCurYinFile(ctx, path);
    uint32_t status = ReadAndMerge(ctx, path, moduleName, assister, moduleSlot);
    ZR_CTX_ClearCurYinFile(ctx);
    return status;
}

// A module: linked into the context and coupled.

uint32_t ZRS_LOADER_AppendModuleToCtx(ZrCtx *ctx, ZrMod *module, ZrsLoadAssister *assister)
{
    if (module == nullptr)
        return ZR_ERR_INVALID;
    // The one step that can run out of memory comes before the module is linked to others.
    if (assister != nullptr) {
        uint32_t status = ZRS_LOADER_SaveSuccLoadingSuffix(module, assister);
        if (status != ZR_OK)
            return status;
    }
    if (ZR_CTX_GetModuleByModName(ctx, module->name) == nullptr &&
        ZR_CTX_AddModuleNode(ctx, module) != ZR_OK)
        return ZR_ERR_FAILED;
    if (ZRS_LOADER_UpdateGlobalTypDefDerivedFrom(module) != ZR_OK)
        ZR_CTX_AddModError(ctx, module->name, "Failed to update typedef statements.");
    if (ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, module) != ZR_OK)
        zr::RecordUncoupledAugments(module);
    if (ZRS_LOADER_CoupleDeviationAndGenRelation(ctx, module) != ZR_OK)
        ZR_CTX_AddModError(ctx, module->name, "Failed to couple deviation statements.");
    return ZR_OK;
}

// All files of a module, into a new one or into one that is loaded.

namespace {

// Loads the files that the assister asks for into `*module`; the first failing one ends the loop.
void LoadFiles(ZrCtx *ctx, const char *moduleName, ZrsPathCollection *collection,
               ZrsLoadAssister *assister, ZrMod **module)
{
    collection->limit = zr::kMaxFilesAtOnce;
    for (const ZrsPathObj *object;
         (object = ZRS_LOADER_GetNextPathObjToProc(collection, assister));) {
        if (ZRS_LOADER_LoadModuleByPath(ctx, object->path, moduleName, assister, module) != ZR_OK)
            return;
        ZRS_LOADER_ResetCurrentLoadingSuffix(assister, 1);
    }
}

uint32_t LoadFirstFiles(ZrCtx *ctx, const char *moduleName, ZrsPathCollection *collection,
                        ZrsLoadAssister *assister)
{
    ZrMod *module = nullptr;
    LoadFiles(ctx, moduleName, collection, assister, &module);
    uint32_t status = ZRS_LOADER_AppendModuleToCtx(ctx, module, assister);
    if (status != ZR_OK && module != nullptr)
        ZR_CTX_DestroyModuleNode(ctx, module);
    return status;
}

// What the parts that the module has been put together from give when they are read once more, in
// the same order; null when there is none. Whatever went wrong has been recorded the first time.
OwnedModule ReadPartsAgain(ZrCtx *ctx, const ZrMod *module, const ZrsPathCollection *collection)
{
    ZrMod *original = nullptr;
    uint32_t stage = ctx->loadStage;
    ZR_CTX_SetLoadStage(ctx, ZRS_STAGE_READING_AGAIN);
    for (uint32_t i = 0; i < module->mergeSourceCount; ++i) {
        const ZrsPathObj *object = zr::FindPathObject(collection, module->mergeSources[i]);
        if (object != nullptr)
            ZRS_LOADER_LoadModuleByPath(ctx, object->path, module->name, nullptr, &original);
    }
    ZR_CTX_SetLoadStage(ctx, stage);
    ZR_CTX_ClearModErrByLoadStage(ctx->errMng, module->name, ZRS_STAGE_READING_AGAIN);
    return OwnedModule(original);
}

// Merges further parts into a module that is loaded and coupled, so that it becomes what all parts
// at once would have given: they meet the module as its files say it, not as couplings left it. A
// module whose earlier files are not there any more is taken as it stands.
uint32_t LoadFurtherFiles(ZrCtx *ctx, ZrMod *module, ZrsPathCollection *collection,
                          ZrsLoadAssister *assister)
{
    OwnedModule original;
    if (zr::MayDifferFromFiles(module))
        original = ReadPartsAgain(ctx, module, collection);
    zr::AugmentsAside aside(module);
    uint32_t status = aside.TakeOut();
    if (status != ZR_OK)
        return status;
    if (original)
        zr::BringBackOriginal(module, original.get());
    LoadFiles(ctx, module->name, collection, assister, &module);
    aside.PutBack();
    status = ZRS_LOADER_AppendModuleToCtx(ctx, module, assister);
    zr::CoupleDependents(ctx, module->name);
    return status;
}

uint32_t LoadCollected(ZrCtx *ctx, const char *moduleName, ZrMod *existing,
                       ZrsPathCollection *collection)
{
    zr::LoadAssister assister(moduleName);
    uint32_t proceed = 1;
    uint32_t status =
        ZRS_LOADER_PreFillLoadAssisterFromExisting(existing, collection, &assister, &proceed);
    if (status != ZR_OK || proceed == 0)
        return status;
    if (existing == nullptr)
        return LoadFirstFiles(ctx, moduleName, collection, &assister);
    if (ZRS_LOADER_UpdateNextLoadingSuffix(&assister) == nullptr)
        return ZR_OK; // every part is loaded already
    return LoadFurtherFiles(ctx, existing, collection, &assister);
}

} // namespace

uint32_t ZRS_LOADER_LoadModuleByModName(ZrCtx *ctx, const char *moduleName)
{
    zr::OwnedPaths paths;
    uint32_t status = zr::CollectPaths(ctx, moduleName, paths);
    ZrMod *existing = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (existing == nullptr)
        ZR_CTX_DeleteErrNodeByModName(ctx->errMng, moduleName);
    if (status == ZR_ERR_NOT_FOUND)
        ZR_CTX_AddModWarning(ctx, moduleName, "Module \"%s\" not found from search directories.",
                             moduleName);
    return status == ZR_OK ? LoadCollected(ctx, moduleName, existing, paths.get()) : status;
}

// The imports of a module, and theirs.

namespace {

// Walks the pending list while it grows; with the ignore option a failing import does not end it.
uint32_t LoadPending(ZrCtx *ctx, ZrsPendTbl *table)
{
    for (const ZrsPendNode &node : zr::ItemsOf<ZrsPendNode>(&table->nodes)) {
        uint32_t status = ZRS_LOADER_LoadModuleByModName(ctx, node.moduleName);
        if (status != ZR_OK && ZT_CTX_IgnoreImportModError(ctx) == 0)
            return status;
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, node.moduleName);
        if (module == nullptr)
            continue;
        status = ZRS_LOADER_AppendZrModImportsAsPending(table, module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRS_LOADER_LoadModuleImportedNames(ZrCtx *ctx, const char *moduleName)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr)
        return ZR_ERR_INVALID;
    zr::PendTable table;
    uint32_t status = ZRS_LOADER_AppendZrModImportsAsPending(&table, module);
    if (status == ZR_OK)
        status = LoadPending(ctx, &table);
    ZRS_LOADER_CoupleModPendTblAndCurMod(ctx, &table, moduleName);
    return status;
}

// What an application calls.

uint32_t ZR_CTX_LoadModule(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr || moduleName == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_LOADER_LoadModuleByModName(ctx, moduleName);
    if (status != ZR_OK) {
        if (ZR_CTX_GetErrNodeByModName(ctx, moduleName) == nullptr)
            ZR_CTX_AddModError(ctx, moduleName, "Failed to load module \"%s\".", moduleName);
        return status;
    }
    if ((ctx->flags & ZR_CTX_LOAD_IMPORTS) != 0)
        return ZRS_LOADER_LoadModuleImportedNames(ctx, moduleName);
    ZRS_MOD_NotifyModuleChangeEvent(ctx, moduleName, ZRS_MODULE_LOADED, nullptr);
    return ZR_OK;
}

uint32_t ZR_CTX_LoadMemory(ZrCtx *ctx, const char *yinText)
{
    if (ctx == nullptr || yinText == nullptr)
        return ZR_ERR_INVALID;
    zr::OwnedDoc document(zr::ParseXmlText(yinText, std::strlen(yinText)));
    if (!document)
        return ZR_ERR_INVALID;
    OwnedModule read(ZRS_LOADER_ParseYinContent(ctx, document.get(), nullptr));
    document.reset();
    if (!read)
        return ZR_ERR_FAILED;
    if (ZR_CTX_GetModuleByModName(ctx, read->name) != nullptr)
        return ZR_OK; // the module that is loaded stays
    ZrMod *module = read.release();
    uint32_t status = ZRS_LOADER_AppendModuleToCtx(ctx, module, nullptr);
    if (status != ZR_OK) {
        ZR_CTX_DestroyModuleNode(ctx, module);
        return status;
    }
    ZRS_MOD_NotifyModuleChangeEvent(ctx, module->name, ZRS_MODULE_LOADED, nullptr);
    return ZR_OK;
}
