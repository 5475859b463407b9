// SPDX-License-Identifier: Apache-2.0
#include "loader/pending.h"

#include <cstddef>

#include "foundation/array.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

int32_t CompareNames(const void *nameA, const void *nameB)
{
    return PAL_StrCmp(static_cast<const char *>(nameA), static_cast<const char *>(nameB));
}

constexpr PalAvlInfo kByName = {CompareNames, offsetof(ZrsPendNode, moduleName),
                                offsetof(ZrsPendNode, byNameLink)};

void FreeFeature(ZrsPendFeature *feature)
{
    zr::Free(feature->name);
    zr::Free(feature);
}

// Takes every item out of a list and gives it to `destroy`.
template <typename Item, typename Destroy> void Drain(ZrListLink *head, Destroy destroy)
{
    while (!zr::IsEmpty(head)) {
        Item *first = &*zr::ItemsOf<Item>(head).begin();
        zr::Unlink(&first->link);
        destroy(first);
    }
}

void FreeNode(ZrsPendNode *node)
{
    Drain<ZrsPendFeature>(&node->features, FreeFeature);
    zr::Free(node->moduleName);
    zr::Free(node);
}

ZrsPendFeature *FindFeature(ZrsPendNode *node, const char *name)
{
    for (ZrsPendFeature &feature : zr::ItemsOf<ZrsPendFeature>(&node->features))
        if (zr::TextEquals(feature.name, name))
            return &feature;
    return nullptr;
}

} // namespace

void zr::InitPendTable(ZrsPendTbl *table)
{
    zr::InitList(&table->nodes);
    PAL_AVL3_Init(&table->byName);
}

void zr::FreePendTable(ZrsPendTbl *table)
{
    Drain<ZrsPendNode>(&table->nodes, FreeNode);
    zr::InitPendTable(table);
}

ZrsPendNode *ZRS_LOADER_FindModPendNodeByName(const ZrsPendTbl *table, const char *moduleName)
{
    return static_cast<ZrsPendNode *>(PAL_AVL3_Find(&table->byName, moduleName, &kByName));
}

uint32_t zr::AppendPending(ZrsPendTbl *table, const char *moduleName)
{
    if (ZRS_LOADER_FindModPendNodeByName(table, moduleName) != nullptr)
        return ZR_OK;
    zr::Owned<ZrsPendNode> owned(zr::New<ZrsPendNode>());
    if (!owned)
        return ZR_ERR_NO_MEMORY;
    owned->moduleName = ZR_UTL_StrDup(moduleName);
    if (owned->moduleName == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZrsPendNode *node = owned.release();
    zr::InitList(&node->features);
    zr::PushBack(&table->nodes, &node->link);
    PAL_AVL3_InitNode(&node->byNameLink);
    PAL_AVL3_Insert_Or_Find(&table->byName, node, &kByName);
    return ZR_OK;
}

uint32_t ZRS_LOADER_AppendZrModImportsAsPending(ZrsPendTbl *table, const ZrMod *module)
{
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < module->importCount && status == ZR_OK; ++i)
        status = zr::AppendPending(table, module->imports[i].moduleName);
    return status;
}

uint32_t zr::AppendFeature(ZrsPendNode *pendingNode, const char *featureName, uint32_t flags)
{
    zr::Owned<ZrsPendFeature> feature(zr::New<ZrsPendFeature>());
    if (!feature)
        return ZR_ERR_NO_MEMORY;
    feature->name = ZR_UTL_StrDup(featureName);
    if (feature->name == nullptr)
        return ZR_ERR_NO_MEMORY;
    feature->flags = flags;
    zr::PushBack(&pendingNode->features, &feature.release()->link);
    return ZR_OK;
}

uint32_t ZRS_LOADER_AddModFeatPend(ZrsPendNode *pendingNode, const char *featureName,
                                   uint32_t flags)
{
    if (pendingNode == nullptr || featureName == nullptr)
        return ZR_ERR_INVALID;
    ZrsPendFeature *noted = FindFeature(pendingNode, featureName);
    if (noted == nullptr)
        return zr::AppendFeature(pendingNode, featureName, flags);
    noted->flags = flags;
    return ZR_OK;
}
