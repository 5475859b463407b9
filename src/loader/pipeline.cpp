#include "loader/pipeline.h"

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/memory.h"
#include "foundation/module_tree.h"
#include "foundation/search_dirs.h"
#include "loader/coupling.h"
#include "loader/discovery.h"
#include "loader/header.h"
#include "loader/pending.h"
#include "loader/statements.h"
#include "platform/text.h"
#include "platform/xml.h"
#include "schema/augment.h"
#include "schema/merge.h"
#include "schema/module.h"

namespace {

constexpr uint16_t kMaxFilesOfOneModule = 10;

void CoupleAugments(ZrCtx *ctx, ZrMod *module)
{
    if (ZRS_LOADER_CoupleAugmentAndGenRelation(ctx, module) == ZR_OK)
        return;
    // A stage of its own: a later success clears the message.
    ZR_CTX_SetLoadStage(ctx, ZRS_STAGE_AUGMENT);
    ZR_CTX_AddModError(ctx, module->name, "Failed to couple augment statements.");
    ZR_CTX_SetLoadStage(ctx, 0);
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

uint32_t LoadCollected(ZrCtx *ctx, const char *moduleName, ZrMod *existing,
                       ZrsPathCollection *collection, ZrsLoadAssister *assister)
{
    uint32_t proceed = 1;
    uint32_t status =
        ZRS_LOADER_PreFillLoadAssisterFromExisting(existing, collection, assister, &proceed);
    if (status != ZR_OK || proceed == 0)
        return status;
    if (existing != nullptr && ZRS_LOADER_UpdateNextLoadingSuffix(assister) == nullptr)
        return ZR_OK; // every part is loaded already
    ZrMod *module = existing;
    LoadFiles(ctx, moduleName, collection, assister, &module);
    status = ZRS_LOADER_AppendModuleToCtx(ctx, module, assister);
    if (status != ZR_OK && module != nullptr && module != existing)
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
    if (module->name == nullptr ||
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
    xmlDoc *document = ZRS_LOADER_ReadYinFileToXmlDoc(path);
    if (document == nullptr) {
        ZR_CTX_AddModError(ctx, moduleName, "Failed to read content from the yin file.");
        return nullptr;
    }
    ZrMod *module = ZRS_LOADER_ParseYinContent(ctx, document, expectedName);
    xmlFreeDoc(document);
    return module;
}

uint32_t ZRS_LOADER_LoadModuleByPath(ZrCtx *ctx, const char *path, const char *moduleName,
                                     ZrsLoadAssister * /*assister*/, ZrMod **moduleSlot)
{
    uint32_t status = ZR_OK;
    ZR_CTX_SetCurYinFile(ctx, path);
    ZrMod *module = ZRS_LOADER_ReadFilePathToZrMod(ctx, path, moduleName, moduleName);
    if (module == nullptr) {
        ZR_CTX_AddModError(ctx, moduleName, "Failed to parse module \"%s\" from the yin file.",
                           moduleName);
        status = ZR_ERR_INVALID;
    } else if (*moduleSlot == nullptr) {
        *moduleSlot = module;
    } else {
        status = ZRS_MOD_MergeTwoModuleInSameCtx(*moduleSlot, module);
        ZRS_MOD_Free(module);
        if (status != ZR_OK)
            ZR_CTX_AddModError(ctx, moduleName, "Failed to merge module \"%s\".", moduleName);
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
