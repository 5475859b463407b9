// Deep copies of schema nodes into another module.
#include "foundation/array.h"
#include "model/module_record.h"
#include "schema/ext_inst.h"
#include "schema/node.h"
#include "types/real_type.h"

namespace {

// Interns a copy of a text; a null text stays null and succeeds.
bool CopyText(ZrDict *dict, const char *&destination, const char *source)
{
    if (source == nullptr)
        return true;
    destination = ZR_DICT_Insert(dict, source);
    return destination != nullptr;
}

// The copied type's typedefs are now looked for in the module that the copy belongs to.
uint32_t CopyType(ZrMod *module, ZrtRealType *destination, const ZrtRealType *source)
{
    uint32_t status = ZRT_TYPE_CopyZrtRealTypeInner(module->ctx, destination, source);
    return status == ZR_OK ? ZRT_TYPE_UpdateRealTypeDerivedFrom(destination, module) : status;
}

uint32_t CopyLeafInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsLeafInfo *>(destination);
    const auto *from = static_cast<const ZrsLeafInfo *>(source);
    if (!CopyText(&module->ctx->dict, to->defaultValue, from->defaultValue) ||
        !CopyText(&module->ctx->dict, to->units, from->units))
        return ZR_ERR_NO_MEMORY;
    return CopyType(module, &to->realType, &from->realType);
}

uint32_t CopyLeafListInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsLeafListInfo *>(destination);
    const auto *from = static_cast<const ZrsLeafListInfo *>(source);
    uint32_t status =
        ZRS_NODE_AppendLeaflistDefaults(&module->ctx->dict, to, from->defaults, from->defaultCount);
    if (status != ZR_OK)
        return status;
    if (!CopyText(&module->ctx->dict, to->units, from->units))
        return ZR_ERR_NO_MEMORY;
    return CopyType(module, &to->realType, &from->realType);
}

uint32_t CopyChoiceInfo(ZrMod *module, void *destination, const void *source)
{
    auto *to = static_cast<ZrsChoiceInfo *>(destination);
    const auto *from = static_cast<const ZrsChoiceInfo *>(source);
    return CopyText(&module->ctx->dict, to->defaultCase, from->defaultCase) ? ZR_OK
                                                                            : ZR_ERR_NO_MEMORY;
}

using CopyInfoFunc = uint32_t (*)(ZrMod *module, void *destination, const void *source);

CopyInfoFunc CopyInfoFuncOf(uint32_t kind)
{
    switch (kind) {
    case ZR_NODE_LEAF:
        return CopyLeafInfo;
    case ZR_NODE_LEAF_LIST:
        return CopyLeafListInfo;
    case ZR_NODE_CHOICE:
        return CopyChoiceInfo;
    default:
        return nullptr;
    }
}

bool CopyMembers(ZrNode *node, const ZrNode *source)
{
    ZrDict *dict = &node->module->ctx->dict;
    if (!CopyText(dict, node->name, source->name) ||
        !CopyText(dict, node->description, source->description))
        return false;
    if (source->extInstCount != 0) {
        node->extInsts = ZRS_EXT_CopyExtInsts(dict, source->extInsts, source->extInstCount);
        if (node->extInsts == nullptr)
            return false;
        node->extInstCount = source->extInstCount;
    }
    if (source->kind == ZR_NODE_LIST)
        node->keyCount = source->keyCount;
    return ZRS_NODE_CopySchemaByType(node, source) == ZR_OK;
}

struct TreeCopy {
    ZrMod *target;
    ZrNode *root;
    ZrNode *current; // the copy of the node that the walk visited last
};

uint32_t CopyVisitedNode(ZrNode *source, uint32_t arrival, void *userData)
{
    auto *copy = static_cast<TreeCopy *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT) {
        copy->current = copy->current->parent;
        return 0;
    }
    ZrNode *node = ZRS_NODE_CopyOneNodeToModule(source, copy->target);
    if (node == nullptr)
        return ZR_ERR_NO_MEMORY;
    if (arrival == ZR_ARRIVAL_ROOT)
        copy->root = node;
    else
        ZRS_NODE_AddChild(arrival == ZR_ARRIVAL_CHILD ? copy->current : copy->current->parent,
                          node);
    copy->current = node;
    return 0;
}

} // namespace

uint32_t ZRS_NODE_CopySchemaByType(ZrNode *destination, const ZrNode *source)
{
    if (destination == nullptr || source == nullptr || destination->kind != source->kind ||
        destination->module == nullptr || destination->module->ctx == nullptr)
        return ZR_ERR_INVALID;
    CopyInfoFunc copyInfo = CopyInfoFuncOf(source->kind);
    if (copyInfo == nullptr)
        return ZR_OK;
    if (destination->info == nullptr || source->info == nullptr)
        return ZR_ERR_INVALID;
    return copyInfo(destination->module, destination->info, source->info);
}

ZrNode *ZRS_NODE_CopyOneNodeToModule(const ZrNode *source, ZrMod *target)
{
    if (source == nullptr || target == nullptr || target->ctx == nullptr)
        return nullptr;
    ZrNode *node = ZRS_NODE_New(source->kind);
    if (node == nullptr)
        return nullptr;
    node->module = target;
    if (!CopyMembers(node, source)) {
        ZRS_NODE_Free(node);
        return nullptr;
    }
    return node;
}

ZrNode *ZRS_NODE_CopyNodeTreeToModule(ZrNode *root, ZrMod *target)
{
    TreeCopy copy = {target, nullptr, nullptr};
    if (ZR_NODE_TreeScanAllNode(root, CopyVisitedNode, &copy) != ZR_OK) {
        ZRS_NODE_Free(copy.root);
        return nullptr;
    }
    return copy.root;
}
