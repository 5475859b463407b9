#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/search_dirs.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/text.h"

namespace {

constexpr uint32_t kEntryCapacity = 2;

} // namespace

ZrErrModNode *ZRS_MOD_CreateErrNode(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr)
        return nullptr;
    auto *node = zr::AllocRecord<ZrErrModNode>();
    if (node == nullptr)
        return nullptr;
    PAL_AVL3_InitNode(&node->treeNode);
    node->moduleName = ZR_DICT_Insert(&ctx->dict, moduleName);
    if (node->moduleName == nullptr || zr::NewArray(&node->entries, kEntryCapacity) != ZR_OK) {
        ZRS_MOD_FreeErrModNode(ctx, node);
        return nullptr;
    }
    node->entryCapacity = kEntryCapacity;
    return node;
}

uint32_t ZRS_MOD_RecordErrorInfo(ZrCtx *ctx, ZrErrModNode *node, uint32_t kind, const char *message)
{
    if (node == nullptr)
        return ZR_ERR_INVALID;
    if (node->entryCount >= node->entryCapacity)
        return ZR_OK;
    uint32_t status = ZRS_MOD_SetErrInfoNode(ctx, &node->entries[node->entryCount], kind, message);
    if (status == ZR_OK)
        ++node->entryCount;
    return status;
}

uint32_t ZRS_MOD_SetErrInfoNode(ZrCtx *ctx, ZrErrInfo *entry, uint32_t kind, const char *message)
{
    if (ctx == nullptr || entry == nullptr || message == nullptr)
        return ZR_ERR_INVALID;
    const char *file = ZR_CTX_GetCurYinFile(ctx);
    *entry = ZrErrInfo{};
    entry->message = ZR_UTL_StrDup(message);
    entry->yinFile = *file != '\0' ? ZR_UTL_StrDup(file) : nullptr;
    if (entry->message == nullptr || (*file != '\0' && entry->yinFile == nullptr)) {
        ZRS_MOD_ClearErrInfoNode(entry);
        return ZR_ERR_NO_MEMORY;
    }
    entry->kind = kind;
    entry->time = PAL_SystimeGet();
    entry->loadStage = ctx->loadStage;
    return ZR_OK;
}

void ZRS_MOD_ClearErrInfoNode(ZrErrInfo *entry)
{
    if (entry == nullptr)
        return;
    zr::Free(entry->yinFile);
    zr::Free(entry->message);
    *entry = ZrErrInfo{};
}

void ZRS_MOD_FreeErrModNode(ZrCtx *ctx, ZrErrModNode *node)
{
    if (ctx == nullptr || node == nullptr)
        return;
    for (uint32_t i = 0; i < node->entryCount; ++i)
        ZRS_MOD_ClearErrInfoNode(&node->entries[i]);
    zr::Free(node->entries);
    ZR_DICT_Remove(&ctx->dict, node->moduleName);
    zr::Free(node);
}

void ZR_MOD_ClearErrByLoadStage(ZrErrModNode *node, uint32_t stage)
{
    if (node == nullptr)
        return;
    uint32_t kept = 0;
    for (uint32_t i = 0; i < node->entryCount; ++i) {
        if (node->entries[i].loadStage == stage)
            ZRS_MOD_ClearErrInfoNode(&node->entries[i]);
        else
            node->entries[kept++] = node->entries[i];
    }
    for (uint32_t i = kept; i < node->entryCount; ++i)
        node->entries[i] = ZrErrInfo{};
    node->entryCount = kept;
}

uint32_t ZRS_MOD_ScanModAllLoadFail(const ZrErrModNode *node, ZrLoadFailScanFunc callback,
                                    void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_OK;
    for (uint32_t i = 0; i < node->entryCount; ++i) {
        const ZrErrInfo *entry = &node->entries[i];
        uint32_t result = callback(node->moduleName, entry->yinFile, entry->kind, entry->message,
                                   entry->time, userData);
        if (result != 0)
            return result;
    }
    return ZR_OK;
}
