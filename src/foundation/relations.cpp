// SPDX-License-Identifier: Apache-2.0
#include "foundation/relations.h"

#include <cstddef>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

constexpr PalAvlInfo kByTarget = {ZR_CTX_CompareModRelationTbl, offsetof(ZrModRelTbl, moduleName),
                                  offsetof(ZrModRelTbl, treeNode)};

void DeleteItem(ZrModRelTbl *table, ZrModRelItem *item)
{
    zr::Unlink(&item->link);
    ZR_DICT_Remove(table->dict, item->otherName);
    zr::Free(item);
}

void DeleteTable(ZrCtx *ctx, ZrModRelTbl *table)
{
    PAL_AVL3_Delete(&ctx->modRelations, table, &kByTarget);
    while (auto *item = zr::FirstOf<ZrModRelItem>(&table->items))
        DeleteItem(table, item);
    ZR_DICT_Remove(table->dict, table->moduleName);
    zr::Free(table);
}

void DeleteTableIfEmpty(ZrCtx *ctx, ZrModRelTbl *table)
{
    if (zr::IsEmpty(&table->items))
        DeleteTable(ctx, table);
}

ZrModRelTbl *FindOrCreateTable(ZrCtx *ctx, const char *moduleName)
{
    ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table != nullptr)
        return table;
    zr::Owned<ZrModRelTbl> created(zr::New<ZrModRelTbl>());
    if (!created)
        return nullptr;
    table = created.get();
    table->dict = &ctx->dict;
    table->moduleName = ZR_DICT_Insert(&ctx->dict, moduleName);
    if (table->moduleName == nullptr)
        return nullptr;
    zr::InitList(&table->items);
    PAL_AVL3_InitNode(&table->treeNode);
    PAL_AVL3_Insert_Or_Find(&ctx->modRelations, table, &kByTarget);
    return created.release();
}

// Adds a relation to its table unless it is there. The name is interned first, since relations
// are told apart by the pointer.
uint32_t AddItem(ZrModRelTbl *table, const char *otherName, uint32_t kind)
{
    const char *interned = ZR_DICT_Insert(table->dict, otherName);
    if (interned == nullptr)
        return ZR_ERR_NO_MEMORY;
    bool known = ZR_CTX_FindModRelationItem(table, kind, interned) != nullptr;
    auto *item = known ? nullptr : zr::New<ZrModRelItem>();
    if (item == nullptr) {
        ZR_DICT_Remove(table->dict, interned);
        return known ? ZR_OK : ZR_ERR_NO_MEMORY;
    }
    item->kind = kind;
    item->otherName = interned;
    item->refCount = 1;
    zr::PushFront(&table->items, &item->link);
    return ZR_OK;
}

// A growing list of names without repetition.
struct NameList {
    zr::Owned<const char *> names;
    uint32_t count = 0;
    uint32_t capacity = 0;
};

constexpr uint32_t kNameListStep = 32;

bool HasName(const NameList *list, const char *name)
{
    for (uint32_t i = 0; i < list->count; ++i) {
        if (list->names.get()[i] == name)
            return true;
    }
    return false;
}

uint32_t AppendName(NameList *list, const char *name)
{
    if (HasName(list, name))
        return ZR_OK;
    if (list->count == list->capacity) {
        if (zr::ExpandArray(list->names, list->capacity, kNameListStep) != ZR_OK)
            return ZR_ERR_NO_MEMORY;
        list->capacity += kNameListStep;
    }
    list->names.get()[list->count++] = name;
    return ZR_OK;
}

uint32_t AppendNamesOf(const ZrCtx *ctx, const char *moduleName, uint32_t kind, NameList *list)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, moduleName);
    if (table == nullptr)
        return ZR_OK;
    for (const auto &item : zr::ItemsOf<ZrModRelItem>(&table->items)) {
        if (item.kind == kind && AppendName(list, item.otherName) != ZR_OK)
            return ZR_ERR_NO_MEMORY;
    }
    return ZR_OK;
}

// Breadth first: the list is its own queue.
uint32_t CollectNames(const ZrCtx *ctx, const char *moduleName, uint32_t kind, NameList *list)
{
    uint32_t status = AppendNamesOf(ctx, moduleName, kind, list);
    for (uint32_t i = 0; status == ZR_OK && i < list->count; ++i)
        status = AppendNamesOf(ctx, list->names.get()[i], kind, list);
    return status;
}

} // namespace

void ZR_CTX_InitModRelationTree(ZrCtx *ctx)
{
    if (ctx != nullptr)
        PAL_AVL3_Init(&ctx->modRelations);
}

void ZR_CTX_DeInitModRelationTree(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    while (void *table = PAL_AVL3_First(&ctx->modRelations, &kByTarget))
        DeleteTable(ctx, static_cast<ZrModRelTbl *>(table));
}

int32_t ZR_CTX_CompareModRelationTbl(const void *keyA, const void *keyB)
{
    if (keyA == keyB)
        return 0;
    return PAL_StrCmp(static_cast<const char *>(keyA), static_cast<const char *>(keyB));
}

uint32_t ZR_CTX_AddTwoModRelation(ZrCtx *ctx, const char *targetModuleName,
                                  const char *otherModuleName, uint32_t kind)
{
    if (ctx == nullptr || targetModuleName == nullptr || otherModuleName == nullptr)
        return ZR_ERR_INVALID;
    ZrModRelTbl *table = FindOrCreateTable(ctx, targetModuleName);
    if (table == nullptr)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = AddItem(table, otherModuleName, kind);
    DeleteTableIfEmpty(ctx, table);
    return status;
}

void ZR_CTX_DelTwoModRelation(ZrCtx *ctx, const char *targetModuleName, const char *otherModuleName,
                              uint32_t kind)
{
    ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx, targetModuleName);
    if (table == nullptr || otherModuleName == nullptr)
        return;
    // The name of a stored relation is in the dictionary, so that this allocates nothing for it.
    const char *interned = ZR_DICT_Insert(table->dict, otherModuleName);
    if (interned == nullptr)
        return;
    if (ZrModRelItem *item = ZR_CTX_FindModRelationItem(table, kind, interned))
        DeleteItem(table, item);
    ZR_DICT_Remove(&ctx->dict, interned);
    DeleteTableIfEmpty(ctx, table);
}

ZrModRelTbl *ZR_CTX_FindModRelationTbl(const ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr || moduleName == nullptr)
        return nullptr;
    return static_cast<ZrModRelTbl *>(PAL_AVL3_Find(&ctx->modRelations, moduleName, &kByTarget));
}

ZrModRelItem *ZR_CTX_FindModRelationItem(const ZrModRelTbl *table, uint32_t kind,
                                         const char *otherName)
{
    if (table == nullptr)
        return nullptr;
    for (auto &item : zr::ItemsOf<ZrModRelItem>(const_cast<ZrListLink *>(&table->items))) {
        if (item.kind == kind && item.otherName == otherName)
            return &item;
    }
    return nullptr;
}

uint32_t ZR_CTX_CollectDepModNamesRecursive(ZrCtx *ctx, const char *moduleName, uint32_t kind,
                                            const char ***namesOut, uint32_t *countOut)
{
    if (ctx == nullptr || moduleName == nullptr || namesOut == nullptr || countOut == nullptr)
        return ZR_ERR_INVALID;
    *namesOut = nullptr;
    *countOut = 0;
    NameList list;
    uint32_t status = CollectNames(ctx, moduleName, kind, &list);
    if (status == ZR_OK && list.count != 0 && list.names.get()[0] == nullptr)
        status = ZR_ERR_INVALID;
    if (status == ZR_OK) {
        *countOut = list.count;
        *namesOut = list.names.release();
    }
    return status;
}

const ZrModRelTbl *zr::FirstRelationTable(const ZrCtx *ctx)
{
    return static_cast<const ZrModRelTbl *>(PAL_AVL3_First(&ctx->modRelations, &kByTarget));
}

const ZrModRelTbl *zr::NextRelationTable(const ZrCtx *ctx, const ZrModRelTbl *table)
{
    return static_cast<const ZrModRelTbl *>(PAL_AVL3_Next(&ctx->modRelations, table, &kByTarget));
}
