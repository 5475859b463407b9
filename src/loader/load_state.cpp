#include "loader/load_state.h"

#include <cstddef>

#include "foundation/array.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/text.h"

namespace {

bool HasSuffix(const ZrsLoadAssister *assister, const char *suffix)
{
    for (uint32_t i = 0; i < assister->suffixCount; ++i)
        if (PAL_StrCmp(assister->suffixes[i].suffix, suffix) == 0)
            return true;
    return false;
}

bool HasMergeSource(const ZrMod *module, const char *suffix)
{
    for (uint32_t i = 0; i < module->mergeSourceCount; ++i)
        if (PAL_StrCmp(module->mergeSources[i], suffix) == 0)
            return true;
    return false;
}

uint32_t AppendMergeSource(ZrMod *module, const char *suffix)
{
    if (module->mergeSourceCount == UINT16_MAX)
        return ZR_ERR_INVALID;
    const char *kept = ZR_DICT_Insert(&module->ctx->dict, suffix);
    if (kept == nullptr)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = zr::ExpandArray(&module->mergeSources, module->mergeSourceCount, 1);
    if (status != ZR_OK) {
        ZR_DICT_Remove(&module->ctx->dict, kept);
        return status;
    }
    module->mergeSources[module->mergeSourceCount++] = kept;
    return ZR_OK;
}

} // namespace

const ZrsPathObj *zr::FindPathObject(const ZrsPathCollection *collection, const char *suffix)
{
    for (uint32_t i = 0; i < collection->count; ++i) {
        const ZrsPathObj *object = &collection->objects[i];
        if (object->suffix[0] == '\0' || PAL_StrCmp(object->suffix, suffix) == 0)
            return object;
    }
    return nullptr;
}

uint32_t ZRS_LOADER_AppendOneSuffixToAssister(ZrsLoadAssister *assister, const char *suffix,
                                              uint8_t done)
{
    if (suffix == nullptr)
        return ZR_ERR_INVALID;
    if (suffix[0] == '\0' || HasSuffix(assister, suffix))
        return ZR_OK;
    if (assister->suffixCount == UINT16_MAX)
        return ZR_ERR_INVALID;
    ZrsSuffix entry = {};
    if (strcpy_s(entry.suffix, sizeof(entry.suffix), suffix) != 0)
        return ZR_ERR_INVALID;
    entry.done = done;
    if (zr::ExpandArray(&assister->suffixes, assister->suffixCount, 1) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    assister->current = nullptr; // pointed into the old array
    assister->suffixes[assister->suffixCount++] = entry;
    return ZR_OK;
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

namespace {

int32_t CompareNames(const void *nameA, const void *nameB)
{
    return PAL_StrCmp(static_cast<const char *>(nameA), static_cast<const char *>(nameB));
}

constexpr PalAvlInfo kByName = {CompareNames, offsetof(ZrsPendNode, moduleName),
                                offsetof(ZrsPendNode, byNameLink)};

void FreeFeatures(ZrsPendNode *node)
{
    for (ZrListLink *link = node->features.next; link != &node->features;) {
        auto *feature = reinterpret_cast<ZrsPendFeature *>(link);
        link = link->next;
        zr::Free(feature->name);
        zr::Free(feature);
    }
}

} // namespace

void zr::InitPendTable(ZrsPendTbl *table)
{
    table->nodes.next = &table->nodes;
    table->nodes.prev = &table->nodes;
    PAL_AVL3_Init(&table->byName);
}

uint32_t zr::AppendPending(ZrsPendTbl *table, const char *moduleName)
{
    if (ZRS_LOADER_FindModPendNodeByName(table, moduleName) != nullptr)
        return ZR_OK;
    auto *node = zr::New<ZrsPendNode>();
    if (node == nullptr)
        return ZR_ERR_NO_MEMORY;
    node->moduleName = ZR_UTL_StrDup(moduleName);
    if (node->moduleName == nullptr) {
        zr::Free(node);
        return ZR_ERR_NO_MEMORY;
    }
    node->features.next = &node->features;
    node->features.prev = &node->features;
    node->link.prev = table->nodes.prev;
    node->link.next = &table->nodes;
    node->link.prev->next = &node->link;
    table->nodes.prev = &node->link;
    PAL_AVL3_InitNode(&node->byNameLink);
    PAL_AVL3_Insert_Or_Find(&table->byName, node, &kByName);
    return ZR_OK;
}

void zr::FreePendTable(ZrsPendTbl *table)
{
    for (ZrListLink *link = table->nodes.next; link != &table->nodes;) {
        auto *node = reinterpret_cast<ZrsPendNode *>(link);
        link = link->next;
        FreeFeatures(node);
        zr::Free(node->moduleName);
        zr::Free(node);
    }
    zr::InitPendTable(table);
}

ZrsPendNode *ZRS_LOADER_FindModPendNodeByName(const ZrsPendTbl *table, const char *moduleName)
{
    return static_cast<ZrsPendNode *>(PAL_AVL3_Find(&table->byName, moduleName, &kByName));
}

uint32_t ZRS_LOADER_AppendZrModImportsAsPending(ZrsPendTbl *table, const ZrMod *module)
{
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < module->importCount && status == ZR_OK; ++i)
        status = zr::AppendPending(table, module->imports[i].moduleName);
    return status;
}
