#include "loader/pending.h"

#include <cstddef>

#include "foundation/text.h"
#include "model/module_record.h"
#include "platform/memory.h"
#include "platform/text.h"

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
    auto *node = zr::AllocRecord<ZrsPendNode>();
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
