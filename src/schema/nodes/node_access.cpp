// SPDX-License-Identifier: Apache-2.0
// What a schema node says of itself: its properties, what it holds in lists, its path.
#include <zrschema/context.h>
#include <zrschema/node.h>

#include "foundation/text.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "schema/members/entry_rules.h"
#include "schema/nodes/node.h"

namespace {

uint32_t HasFlag(const ZrNode *node, uint32_t flag)
{
    return node != nullptr && (node->flags & flag) != 0 ? 1 : 0;
}

uint32_t IsKindWithFlag(const ZrNode *node, uint32_t kind, uint32_t flag)
{
    return node != nullptr && node->kind == kind ? HasFlag(node, flag) : 0;
}

} // namespace

const char *ZR_NODE_GetNodeName(const ZrNode *node)
{
    return node != nullptr ? node->name : nullptr;
}

const char *ZR_NODE_GetDescription(const ZrNode *node)
{
    return node != nullptr ? node->description : nullptr;
}

const char *ZR_NODE_GetWhenCond(const ZrNode *node)
{
    return node != nullptr ? node->when : nullptr;
}

ZrMod *ZR_NODE_GetModule(const ZrNode *node)
{
    return node != nullptr ? node->module : nullptr;
}

uint32_t ZR_NODE_GetNodeType(const ZrNode *node)
{
    return node != nullptr ? node->kind : 0;
}

uint32_t ZR_NODE_GetNodeKeyNum(const ZrNode *node)
{
    return node != nullptr ? node->keyCount : 0;
}

void *ZR_NODE_GetPrivate(const ZrNode *node)
{
    return node != nullptr ? node->privateData : nullptr;
}

void ZR_NODE_SetPrivate(ZrNode *node, void *privateData)
{
    if (node != nullptr)
        node->privateData = privateData;
}

ZrNode *ZR_NODE_GetParentNode(const ZrNode *node)
{
    if (node == nullptr || node->parent == nullptr || node->parent->kind == ZR_NODE_AUGMENT)
        return nullptr;
    return node->parent;
}

ZrNode *ZR_NODE_GetNonChoiceCaseParent(const ZrNode *node)
{
    if (node == nullptr)
        return nullptr;
    ZrNode *parent = node->parent;
    while (parent != nullptr && (parent->kind == ZR_NODE_CHOICE || parent->kind == ZR_NODE_CASE))
        parent = parent->parent;
    return parent;
}

uint32_t ZR_NODE_IsKey(const ZrNode *node)
{
    if (node == nullptr || node->parent == nullptr || node->parent->kind != ZR_NODE_LIST)
        return 0;
    return IsKindWithFlag(node, ZR_NODE_LEAF, ZRS_FLAG_KEY);
}

uint32_t ZR_NODE_IsRwConfig(const ZrNode *node)
{
    if (node == nullptr)
        return 0;
    return HasFlag(node, ZRS_FLAGS_CONFIG) == 0 ? 1 : HasFlag(node, ZRS_FLAG_CONFIG_TRUE);
}

uint32_t ZR_NODE_IsMandatory(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_MANDATORY_TRUE);
}

uint32_t ZR_NODE_IsOrderedByNode(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_ORDERED_BY_USER);
}

uint32_t ZR_NODE_IsPresenceContainer(const ZrNode *node)
{
    return IsKindWithFlag(node, ZR_NODE_CONTAINER, ZRS_FLAG_PRESENCE);
}

uint32_t ZR_NODE_IsDeprecatedNode(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_DEPRECATED);
}

uint32_t ZR_NODE_IsObsoleteNode(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_OBSOLETE);
}

uint32_t ZR_NODE_IsNacmDefaultDenyAll(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_DENY_ALL);
}

uint32_t ZR_NODE_IsNacmDefaultDenyWrite(const ZrNode *node)
{
    return HasFlag(node, ZRS_FLAG_DENY_WRITE);
}

uint32_t ZR_NODE_IsEnabled(const ZrNode *node)
{
    if (node == nullptr || node->module == nullptr)
        return 0;
    return zr::AreFeaturesOn(node->module->ctx, node->ifFeatures, node->ifFeatureCount);
}

// Scans of what a node holds in lists: conditions, features, defaults.

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

// What a list or leaf-list says of its entries.

namespace {

const ZrsEntryRules *RulesOf(const ZrNode *node)
{
    return node != nullptr && zr::HasEntries(node->kind)
               ? zr::EntryRulesOf(zr::ContextOf(node), node)
               : nullptr;
}

uint32_t ScanKeysInSchemaOrder(const ZrNode *list, ZrNodeScanFunc callback, void *userData)
{
    uint32_t result = ZR_OK;
    for (ZrNode *child = list->firstChild; child != nullptr && result == ZR_OK; child = child->next)
        if (ZR_NODE_IsKey(child) != 0)
            result = callback(child, ZR_ARRIVAL_CHILD, userData);
    return result;
}

} // namespace

uint32_t ZR_NODE_GetMinElements(const ZrNode *node)
{
    const ZrsEntryRules *rules = RulesOf(node);
    return rules != nullptr ? rules->minElements : 0;
}

uint32_t ZR_NODE_GetMaxElements(const ZrNode *node)
{
    const ZrsEntryRules *rules = RulesOf(node);
    return rules != nullptr ? rules->maxElements : 0;
}

uint32_t ZR_NODE_ScanAllUniques(const ZrNode *list, ZrUniqueScanFunc callback, void *userData)
{
    if (list == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    const ZrsEntryRules *rules = RulesOf(list);
    return rules != nullptr ? ScanTexts(rules->uniques, rules->uniqueCount, callback, userData)
                            : uint32_t{ZR_OK};
}

uint32_t ZR_NODE_ScanAllKeysInOrder(const ZrNode *list, ZrNodeScanFunc callback, void *userData)
{
    if (list == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    if (list->kind != ZR_NODE_LIST)
        return ZR_OK;
    const ZrsEntryRules *rules = RulesOf(list);
    if (rules == nullptr || rules->key == nullptr)
        return ScanKeysInSchemaOrder(list, callback, userData);
    uint32_t result = ZR_OK;
    for (zr::KeyNames keys(rules->key); !keys.AtEnd() && result == ZR_OK; keys.Next()) {
        ZrNode *key = zr::KeyLeaf(list, keys.Name(), keys.Length());
        if (key != nullptr)
            result = callback(key, ZR_ARRIVAL_CHILD, userData);
    }
    return result;
}

// The path of a node, in the form in which target paths are looked up.

namespace {

const char *StepName(const ZrNode *node)
{
    switch (node->kind) {
    case ZR_NODE_INPUT:
        return "input";
    case ZR_NODE_OUTPUT:
        return "output";
    default:
        return node->name;
    }
}

// A step carries its module's name where the path enters the module. A node whose augment is not
// coupled has no parent in the schema yet, so its step is the first one of its own module.
bool IsQualified(const ZrNode *node)
{
    const ZrNode *parent = ZR_NODE_GetParentNode(node);
    return parent == nullptr || parent->module != node->module;
}

int WriteStep(const ZrNode *node, char *destination, uint32_t size)
{
    const char *name = StepName(node);
    if (name == nullptr)
        return -1;
    if (node->kind == ZR_NODE_AUGMENT) // its name is the path of its target
        return sprintf_s(destination, size, "%s", name);
    if (!IsQualified(node))
        return sprintf_s(destination, size, "/%s", name);
    if (node->module == nullptr || node->module->name == nullptr)
        return -1;
    return sprintf_s(destination, size, "/%s:%s", node->module->name, name);
}

} // namespace

uint32_t ZRS_NODE_PrintJsonPathRecursive(const ZrNode *node, char *buffer, uint32_t size,
                                         uint32_t *length)
{
    if (node == nullptr || buffer == nullptr || length == nullptr)
        return ZR_ERR_INVALID;
    if (node->parent != nullptr) {
        uint32_t status = ZRS_NODE_PrintJsonPathRecursive(node->parent, buffer, size, length);
        if (status != ZR_OK)
            return status;
    }
    if (*length >= size)
        return ZR_ERR_NO_MEMORY;
    int written = WriteStep(node, buffer + *length, size - *length);
    if (written < 0)
        return ZR_ERR_NO_MEMORY;
    *length += static_cast<uint32_t>(written);
    return ZR_OK;
}

char *ZRS_NODE_PrintPath(const ZrNode *node)
{
    zr::Owned<char> buffer(zr::New<char>(zr::kXpathSize));
    uint32_t length = 0;
    if (!buffer ||
        ZRS_NODE_PrintJsonPathRecursive(node, buffer.get(), zr::kXpathSize, &length) != ZR_OK)
        return nullptr;
    return ZR_UTL_StrDup(buffer.get());
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
