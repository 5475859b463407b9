// The public entry points that load and unload modules.
#include "loader/pipeline.h"

#include <zrschema/context.h>

#include <cstring>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/relations.h"
#include "foundation/search_dirs.h"
#include "loader/arguments.h"
#include "loader/discovery.h"
#include "loader/linkage.h"
#include "loader/load_state.h"
#include "loader/statements.h"
#include "loader/unload.h"
#include "model/context.h"
#include "platform/memory.h"
#include "platform/text.h"
#include "platform/xml.h"
#include "schema/merge/merge.h"
#include "schema/module/module.h"

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
    xmlDoc *document = zr::ParseXmlText(yinText, std::strlen(yinText));
    if (document == nullptr)
        return ZR_ERR_INVALID;
    ZrMod *module = ZRS_LOADER_ParseYinContent(ctx, document, nullptr);
    xmlFreeDoc(document);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    if (ZR_CTX_GetModuleByModName(ctx, module->name) != nullptr) {
        ZRS_MOD_Free(module); // the module that is loaded stays
        return ZR_OK;
    }
    uint32_t status = ZRS_LOADER_AppendModuleToCtx(ctx, module, nullptr);
    if (status != ZR_OK) {
        ZR_CTX_DestroyModuleNode(ctx, module);
        return status;
    }
    ZRS_MOD_NotifyModuleChangeEvent(ctx, module->name, ZRS_MODULE_LOADED, nullptr);
    return ZR_OK;
}

uint32_t ZR_CTX_UnloadModule(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr)
        return ZR_OK;
    return ZRS_LOADER_UnloadModuleProc(ctx, moduleName);
}

namespace {

constexpr uint16_t kMaxFilesOfOneModule = 10;

void CoupleAugments(ZrCtx *ctx, ZrMod *module)
{
    if (ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, module) == ZR_OK)
        return;
    zr::RecordUncoupledAugments(module);
}

// Reads a file into a record of its own; `*read` tells whether there was a document to parse.
ZrMod *ReadFile(ZrCtx *ctx, const char *path, const char *moduleName, const char *expectedName,
                bool *read)
{
    xmlDoc *document = ZRS_LOADER_ReadYinFileToXmlDoc(path);
    *read = document != nullptr;
    if (document == nullptr) {
        ZR_CTX_AddModError(ctx, moduleName, "Failed to read content from the yin file.");
        return nullptr;
    }
    ZrMod *module = ZRS_LOADER_ParseYinContent(ctx, document, expectedName);
    xmlFreeDoc(document);
    return module;
}

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
uint32_t KeepOrMerge(ZrMod *module, ZrMod **moduleSlot, uint32_t noteStatus)
{
    if (*moduleSlot == nullptr) {
        *moduleSlot = module;
        return ZR_OK;
    }
    uint32_t status =
        noteStatus == ZR_OK ? ZRS_MOD_MergeTwoModuleInSameCtx(*moduleSlot, module) : noteStatus;
    if (status != ZR_OK)
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to merge module \"%s\".",
                           module->name);
    ZRS_MOD_Free(module);
    return status;
}

// Loads the files that the assister asks for into `*module`; the first failing one ends the loop.
void LoadFiles(ZrCtx *ctx, const char *moduleName, ZrsPathCollection *collection,
               ZrsLoadAssister *assister, ZrMod **module)
{
    collection->limit = kMaxFilesOfOneModule;
    for (const ZrsPathObj *object;
         (object = ZRS_LOADER_GetNextPathObjToProc(collection, assister));) {
        if (ZRS_LOADER_LoadModuleByPath(ctx, object->path, moduleName, assister, module) != ZR_OK)
            return;
        ZRS_LOADER_ResetCurrentLoadingSuffix(assister, 1);
    }
}

// What the parts that the module has been put together from give when they are read once more, in
// the same order; null when there is none. Whatever went wrong has been recorded the first time.
ZrMod *ReadPartsAgain(ZrCtx *ctx, const ZrMod *module, const ZrsPathCollection *collection)
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
    return original;
}

// Couples what other modules have for the module, in the order in which they came to it: the event
// that tells of the load takes the newest first.
void CoupleDependents(ZrCtx *ctx, const char *moduleName)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return;
    for (const ZrListLink *link = table->items.prev; link != &table->items; link = link->prev) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        ZrsCoupleEventFunc couple = ZRS_MOD_GetCoupleEvtProcFunc(item->kind, ZRS_MODULE_LOADED);
        if (couple != nullptr)
            couple(ctx, moduleName, item->otherName, nullptr);
    }
}

// Merges further parts into a module that is loaded and coupled, so that it becomes what all parts
// at once would have given: they meet the module as its files say it, not as couplings left it. A
// module whose earlier files are not there any more is taken as it stands.
uint32_t LoadFurtherFiles(ZrCtx *ctx, ZrMod *module, ZrsPathCollection *collection,
                          ZrsLoadAssister *assister)
{
    ZrMod *original =
        zr::MayDifferFromFiles(module) ? ReadPartsAgain(ctx, module, collection) : nullptr;
    zr::AugmentsAside aside(module);
    uint32_t status = aside.TakeOut();
    if (status == ZR_OK) {
        if (original != nullptr)
            zr::BringBackOriginal(module, original);
        LoadFiles(ctx, module->name, collection, assister, &module);
        aside.PutBack();
        status = ZRS_LOADER_AppendModuleToCtx(ctx, module, assister);
        CoupleDependents(ctx, module->name);
    }
    ZRS_MOD_Free(original);
    return status;
}

uint32_t LoadCollected(ZrCtx *ctx, const char *moduleName, ZrMod *existing,
                       ZrsPathCollection *collection, ZrsLoadAssister *assister)
{
    uint32_t proceed = 1;
    uint32_t status =
        ZRS_LOADER_PreFillLoadAssisterFromExisting(existing, collection, assister, &proceed);
    if (status != ZR_OK || proceed == 0)
        return status;
    if (existing != nullptr)
        return ZRS_LOADER_UpdateNextLoadingSuffix(assister) != nullptr
                   ? LoadFurtherFiles(ctx, existing, collection, assister)
                   : uint32_t{ZR_OK}; // every part is loaded already
    ZrMod *module = nullptr;
    LoadFiles(ctx, moduleName, collection, assister, &module);
    status = ZRS_LOADER_AppendModuleToCtx(ctx, module, assister);
    if (status != ZR_OK && module != nullptr)
        ZR_CTX_DestroyModuleNode(ctx, module);
    return status;
}

// Walks the pending list while it grows; with the ignore option a failing import does not end it.
uint32_t LoadPending(ZrCtx *ctx, ZrsPendTbl *table)
{
    for (ZrListLink *link = table->nodes.next; link != &table->nodes; link = link->next) {
        const char *name = reinterpret_cast<ZrsPendNode *>(link)->moduleName;
        uint32_t status = ZRS_LOADER_LoadModuleByModName(ctx, name);
        if (status != ZR_OK && ZT_CTX_IgnoreImportModError(ctx) != 1)
            return status;
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name);
        if (module == nullptr)
            continue;
        status = ZRS_LOADER_AppendZrModImportsAsPending(table, module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRS_LOADER_CheckParsedModNameMatched(const char *parsedName, const char *expectedName)
{
    if (parsedName == nullptr || parsedName[0] == '\0')
        return ZR_ERR_INVALID;
    if (expectedName == nullptr || PAL_StrCmp(parsedName, expectedName) == 0)
        return ZR_OK;
    return ZR_ERR_INVALID;
}

ZrMod *ZRS_LOADER_ParseYinDocToZrMod(ZrCtx *ctx, xmlNode *root, const char *expectedName)
{
    const char *name = ZR_XML_GetTargetPropertyValue(root, "name");
    if (ZRS_LOADER_CheckParsedModNameMatched(name, expectedName) != ZR_OK)
        return nullptr;
    ZrMod *module = zr::NewModule(ctx);
    if (module == nullptr)
        return nullptr;
    module->name = ZR_DICT_Insert(&ctx->dict, name);
    if (module->name == nullptr || zr::CheckName(module, name, ZRS_STMT_MODULE) != ZR_OK ||
        ZRS_LOADER_ParseModuleContent(module, root, expectedName) != ZR_OK) {
        ZRS_MOD_Free(module);
        return nullptr;
    }
    return module;
}

ZrMod *ZRS_LOADER_ParseYinContent(ZrCtx *ctx, xmlDoc *document, const char *expectedName)
{
    xmlNode *root = xmlDocGetRootElement(document);
    if (root == nullptr || PAL_StrCmp(reinterpret_cast<const char *>(root->name),
                                      ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_MODULE)) != 0)
        return nullptr;
    return ZRS_LOADER_ParseYinDocToZrMod(ctx, root, expectedName);
}

ZrMod *ZRS_LOADER_ReadFilePathToZrMod(ZrCtx *ctx, const char *path, const char *moduleName,
                                      const char *expectedName)
{
    bool read = false;
    return ReadFile(ctx, path, moduleName, expectedName, &read);
}

uint32_t ZRS_LOADER_LoadModuleByPath(ZrCtx *ctx, const char *path, const char *moduleName,
                                     ZrsLoadAssister *assister, ZrMod **moduleSlot)
{
    bool read = false;
    ZR_CTX_SetCurYinFile(ctx, path);
    ZrMod *module = ReadFile(ctx, path, moduleName, moduleName, &read);
    uint32_t status = read ? NoteCurrentSuffix(*moduleSlot, assister) : uint32_t{ZR_OK};
    if (module == nullptr) {
        ZR_CTX_AddModError(ctx, moduleName, "Failed to parse module \"%s\" from the yin file.",
                           moduleName);
        status = ZR_ERR_INVALID;
    } else {
        status = KeepOrMerge(module, moduleSlot, status);
    }
    ZR_CTX_ClearCurYinFile(ctx);
    return status;
}

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
    CoupleAugments(ctx, module);
    if (ZRS_LOADER_CoupleDeviationAndGenRelation(ctx, module) != ZR_OK)
        ZR_CTX_AddModError(ctx, module->name, "Failed to couple deviation statements.");
    return ZR_OK;
}

uint32_t ZRS_LOADER_LoadModuleByModName(ZrCtx *ctx, const char *moduleName)
{
    ZrsPathCollection *collection = nullptr;
    uint32_t status = zr::CollectPaths(ctx, moduleName, &collection);
    ZrMod *existing = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (existing == nullptr)
        ZR_CTX_DeleteErrNodeByModName(ctx->errMng, moduleName);
    if (status == ZR_ERR_NOT_FOUND)
        ZR_CTX_AddModWarning(ctx, moduleName, "Module \"%s\" not found from search directories.",
                             moduleName);
    if (status != ZR_OK)
        return status;
    ZrsLoadAssister assister = {};
    assister.moduleName = moduleName;
    status = LoadCollected(ctx, moduleName, existing, collection, &assister);
    ZRS_LOADER_ClearLoadAssister(&assister);
    zr::FreePathCollection(collection);
    return status;
}

uint32_t ZRS_LOADER_LoadModuleImportedNames(ZrCtx *ctx, const char *moduleName)
{
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, moduleName);
    if (module == nullptr)
        return ZR_ERR_INVALID;
    ZrsPendTbl table;
    zr::InitPendTable(&table);
    uint32_t status = ZRS_LOADER_AppendZrModImportsAsPending(&table, module);
    if (status == ZR_OK)
        status = LoadPending(ctx, &table);
    ZRS_LOADER_CoupleModPendTblAndCurMod(ctx, &table, moduleName);
    zr::FreePendTable(&table);
    return status;
}
