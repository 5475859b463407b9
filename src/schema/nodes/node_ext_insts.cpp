// SPDX-License-Identifier: Apache-2.0
// The extension instances of schema nodes.
#include "foundation/array.h"
#include "model/module_records.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"

namespace {

// The dictionary of the node's context, or null.
ZrDict *DictOf(const ZrNode *node)
{
    ZrCtx *ctx = zr::ContextOf(node);
    return ctx != nullptr ? &ctx->dict : nullptr;
}

} // namespace

uint32_t ZRS_NODE_AppendOneExtInst(ZrDict *dict, ZrNode *node, const char *moduleName,
                                   const char *extensionName, const char *argument)
{
    if (node == nullptr)
        return ZR_ERR_INVALID;
    ZrsExtInst record; // interned for the comparison by pointers
    uint32_t status = ZRS_EXT_FillExtInst(dict, &record, moduleName, extensionName, argument);
    if (status != ZR_OK)
        return status;
    bool isNew =
        ZRS_EXT_FindSameExtInstInArray(node->extInsts, node->extInstCount, &record) == nullptr;
    if (isNew)
        status = ZRS_EXT_AppendOneExtInstToArray(dict, &node->extInsts, &node->extInstCount,
                                                 moduleName, extensionName, argument);
    ZRS_EXT_ClearExtInst(dict, &record);
    if (isNew && status == ZR_OK && zr::TextEquals(moduleName, "ietf-netconf-acm")) {
        ZRS_NODE_SetNacmFlag(node, moduleName, extensionName);
        ZRS_NODE_UpdateFlag(node);
    }
    return status;
}

uint32_t ZR_NODE_AppendExtInst(ZrNode *node, const char *moduleName, const char *extensionName,
                               const char *argument)
{
    return ZRS_NODE_AppendOneExtInst(DictOf(node), node, moduleName, extensionName, argument);
}

uint32_t ZR_NODE_ReplaceDstExtInst(ZrNode *destination, const ZrNode *source)
{
    ZrDict *dict = DictOf(destination);
    if (dict == nullptr || source == nullptr || source->extInsts == nullptr ||
        source->extInstCount == 0)
        return ZR_ERR_INVALID;
    uint16_t count = source->extInstCount;
    ZrsExtInst *copy = ZRS_EXT_CopyExtInsts(dict, source->extInsts, count);
    if (copy == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZR_NODE_CleanExtInsts(destination);
    destination->extInsts = copy;
    destination->extInstCount = count;
    return ZR_OK;
}

void ZR_NODE_CleanExtInsts(ZrNode *node)
{
    ZrDict *dict = DictOf(node);
    if (dict == nullptr)
        return;
    ZRS_EXT_FreeExtInsts(dict, node->extInsts, node->extInstCount);
    node->extInstCount = 0;
    node->extInsts = nullptr;
}

uint32_t ZR_NODE_ScanAllExtInsts(const ZrNode *node, ZrExtInstScanFunc callback, void *userData)
{
    if (node == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return zr::ScanExtInsts(node->extInsts, node->extInstCount, callback, userData);
}
