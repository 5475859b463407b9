// SPDX-License-Identifier: Apache-2.0
// What a leaf or leaf-list says of its values: type, default, units, leafref target, checks.
#include <algorithm>

#include "foundation/array.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "schema/nodes/node.h"
#include "types/chains.h"
#include "types/real_type.h"

namespace {

// The first text that `read` finds in the typedefs behind a type, as far as they are loaded.
template <typename Read>
const char *FirstInTypedefs(const ZrCtx *ctx, const ZrtRealType *type, Read read)
{
    zr::TypedefChain chain(ctx, type, zr::TypedefChain::kByName);
    while (chain.Next() && chain.Definition() != nullptr) {
        if (const char *text = read(*chain.Definition()); text != nullptr)
            return text;
    }
    return nullptr;
}

const char *TypedefDefault(const ZrNode *node, const ZrtRealType *type)
{
    return FirstInTypedefs(zr::ContextOf(node), type,
                           [](const ZrsTypDef &definition) { return definition.defaultValue; });
}

const char *TypedefUnits(const ZrNode *node, const ZrtRealType *type)
{
    return FirstInTypedefs(zr::ContextOf(node), type,
                           [](const ZrsTypDef &definition) { return definition.units; });
}

const char *OwnUnits(const ZrNode *node)
{
    if (node->kind == ZR_NODE_LEAF)
        return static_cast<const ZrsLeafInfo *>(node->info)->units;
    return static_cast<const ZrsLeafListInfo *>(node->info)->units;
}

// Checks a value; `*matchedOut` receives the type that took it, null when that is the node's own.
uint32_t Validate(const ZrNode *node, uint32_t inputKind, const void *value,
                  const ZrtRealType **matchedOut)
{
    const ZrCtx *ctx = zr::ContextOf(node);
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    if (ctx == nullptr || type == nullptr)
        return ZR_ERR_INVALID;
    ZrtValidateCtx validation = {};
    validation.ctx = ctx;
    validation.node = node;
    uint32_t status =
        ZRT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, value, &validation);
    *matchedOut = validation.matched;
    return status;
}

} // namespace

const ZrtRealType *ZR_NODE_GetRealType(const ZrNode *node)
{
    return ZRS_NODE_GetLeafSchemaRealType(node);
}

const char *ZR_NODE_GetDefaultValueStr(const ZrNode *node)
{
    // A mandatory leaf has no default of its own and does not take its type's (RFC 7950, 7.6.1).
    if (node == nullptr || node->kind != ZR_NODE_LEAF || node->info == nullptr ||
        ZR_NODE_IsMandatory(node) != 0)
        return nullptr;
    const auto *leaf = static_cast<const ZrsLeafInfo *>(node->info);
    return leaf->defaultValue != nullptr ? leaf->defaultValue
                                         : TypedefDefault(node, &leaf->realType);
}

const char *ZR_NODE_GetTypedefDefaultStr(const ZrNode *node)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    return type != nullptr ? TypedefDefault(node, type) : nullptr;
}

const char *ZR_NODE_GetUnitsValueStr(const ZrNode *node)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    if (type == nullptr)
        return nullptr;
    const char *units = OwnUnits(node);
    return units != nullptr ? units : TypedefUnits(node, type);
}

const char *ZR_NODE_GetTypedefUnitsStr(const ZrNode *node)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    return type != nullptr ? TypedefUnits(node, type) : nullptr;
}

uint32_t ZR_NODE_ScanDerivedType(const ZrNode *node, ZrDerivedTypeScanFunc callback, void *userData)
{
    const ZrCtx *ctx = zr::ContextOf(node);
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    if (ctx == nullptr || type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ZR_TYPE_IterRealTypeDerivedName(type, ctx, callback, userData);
}

ZrNode *ZR_NODE_GetLeafrefTargetNode(const ZrNode *node, uint32_t follow)
{
    const char *path = zr::LeafrefPathOf(node);
    return path != nullptr ? zr::LeafrefTarget(node, path, follow != 0) : nullptr;
}

uint32_t ZR_NODE_ValidateValue(const ZrNode *node, uint32_t inputKind, const void *value)
{
    const ZrtRealType *matched = nullptr;
    return Validate(node, inputKind, value, &matched);
}

const ZrtRealType *ZR_NODE_FindRealTypeMatchedValue(const ZrNode *node, uint32_t inputKind,
                                                    const void *value)
{
    const ZrtRealType *matched = nullptr;
    if (Validate(node, inputKind, value, &matched) != ZR_OK)
        return nullptr;
    return matched != nullptr ? matched : ZRS_NODE_GetLeafSchemaRealType(node);
}

// The defaults of a leaf-list (RFC 7950, section 7.7.4), which deviations add and take away.

uint32_t ZRS_NODE_AppendLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                         const char *const *values, uint32_t count)
{
    if (dict == nullptr || info == nullptr || (values == nullptr && count != 0) ||
        count > UINT32_C(0xffff) - info->defaultCount)
        return ZR_ERR_INVALID;
    uint32_t oldCount = info->defaultCount;
    if (uint32_t status = zr::ExpandArray(&info->defaults, oldCount, count); status != ZR_OK)
        return status;
    for (uint32_t i = 0; i < count; ++i) {
        info->defaults[oldCount + i] = ZR_DICT_Insert(dict, values[i]);
        if (info->defaults[oldCount + i] != nullptr)
            continue;
        while (i > 0)
            zr::Release(dict, info->defaults[oldCount + --i]);
        if (oldCount == 0) {
            zr::Free(info->defaults);
            info->defaults = nullptr;
        }
        return ZR_ERR_NO_MEMORY;
    }
    info->defaultCount = static_cast<uint16_t>(oldCount + count);
    return ZR_OK;
}

uint32_t ZRS_NODE_SubtractLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info, uint32_t newCount)
{
    if (dict == nullptr || info == nullptr)
        return ZR_ERR_INVALID;
    const char **end = info->defaults + info->defaultCount;
    if (std::count(info->defaults, end, nullptr) + int64_t{newCount} != info->defaultCount)
        return ZR_ERR_INVALID;
    // Closing up in place cannot fail, so a deviation never ends half done for want of memory.
    const char **left = std::remove(info->defaults, end, nullptr);
    info->defaultCount = static_cast<uint16_t>(left - info->defaults);
    if (info->defaultCount == 0) {
        zr::Free(info->defaults);
        info->defaults = nullptr;
    }
    return ZR_OK;
}
