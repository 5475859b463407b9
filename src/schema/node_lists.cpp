// Scans of what a node holds in lists: conditions, features, defaults; and its path.
#include <zrschema/node.h>

#include "model/node_record.h"
#include "schema/lookup.h"

namespace {

uint32_t ScanTexts(const char *const *texts, uint32_t count, ZrTextScanFunc callback,
                   void *userData)
{
    uint32_t result = ZR_OK;
    for (uint32_t i = 0; i < count && result == ZR_OK; ++i)
        if (texts[i] != nullptr)
            result = callback(texts[i], userData);
    return result;
}

} // namespace

uint32_t ZR_NODE_ScanAllMusts(const ZrNode *node, ZrMustScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    uint32_t result = ZR_OK;
    for (uint32_t i = 0; i < node->mustCount && result == ZR_OK; ++i) {
        const ZrsMust *must = &node->musts[i];
        result = callback(must->condition, must->errorMessage, must->errorAppTag, userData);
    }
    return result;
}

uint32_t ZR_NODE_ScanAllIfFeatures(const ZrNode *node, ZrIfFeatureScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    uint32_t result = ZR_OK;
    for (uint32_t i = 0; i < node->ifFeatureCount && result == ZR_OK; ++i)
        result =
            callback(node->ifFeatures[i].moduleName, node->ifFeatures[i].featureName, userData);
    return result;
}

uint32_t ZR_NODE_ScanAllDefaults(const ZrNode *node, ZrTextScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    if (node->kind == ZR_NODE_LEAF)
        return ScanTexts(&static_cast<const ZrsLeafInfo *>(node->info)->defaultValue, 1, callback,
                         userData);
    if (node->kind == ZR_NODE_CHOICE)
        return ScanTexts(&static_cast<const ZrsChoiceInfo *>(node->info)->defaultCase, 1, callback,
                         userData);
    if (node->kind != ZR_NODE_LEAF_LIST)
        return ZR_OK;
    const auto *info = static_cast<const ZrsLeafListInfo *>(node->info);
    return ScanTexts(info->defaults, info->defaultCount, callback, userData);
}

uint32_t ZR_NODE_GetNodePath(const ZrNode *node, char *buffer, uint32_t size)
{
    if (node == nullptr || buffer == nullptr || size == 0)
        return ZR_ERR_INVALID;
    uint32_t length = 0;
    buffer[0] = '\0';
    uint32_t status = ZRS_NODE_PrintJsonPathRecursive(node, buffer, size, &length);
    if (status != ZR_OK)
        buffer[0] = '\0';
    return status;
}
