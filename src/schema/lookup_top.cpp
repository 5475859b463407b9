// Where a module keeps its top-level nodes, and how they are found by name.
#include "schema/lookup.h"

#include <initializer_list>

#include "platform/text.h"
#include "schema/module_record.h"
#include "schema/node.h"

namespace {

// The chain that takes a top-level node of the kind; kTopChainCount for a kind that stands only
// below others.
zr::TopChain ChainForKind(uint32_t kind)
{
    switch (kind) {
    case ZR_NODE_CONTAINER:
    case ZR_NODE_LEAF:
    case ZR_NODE_LEAF_LIST:
    case ZR_NODE_LIST:
    case ZR_NODE_CHOICE:
    case ZR_NODE_ANYDATA:
    case ZR_NODE_ANYXML:
        return zr::kDataNodes;
    case ZR_NODE_RPC:
        return zr::kRpcs;
    case ZR_NODE_NOTIFICATION:
        return zr::kNotifications;
    case ZR_NODE_AUGMENT:
        return zr::kAugments;
    default:
        return zr::kTopChainCount;
    }
}

const ZrNode *FindInChain(const ZrNode *head, const char *name)
{
    while (head != nullptr && (head->name == nullptr || PAL_StrCmp(head->name, name) != 0))
        head = head->next;
    return head;
}

} // namespace

uint32_t ZRS_MOD_AddTopNodeToSchemaTree(ZrMod *module, ZrNode *node)
{
    if (module == nullptr || node == nullptr)
        return ZR_ERR_INVALID;
    zr::TopChain chain = ChainForKind(node->kind);
    if (chain == zr::kTopChainCount)
        return ZR_ERR_INVALID;
    ZrNode *&head = module->*zr::kTopChains[chain];
    ZrNode *&last = module->lastAppended[chain];
    if (head == nullptr)
        head = node;
    else
        ZRS_NODE_AddSibling(last != nullptr ? last : head, node);
    last = node;
    return ZR_OK;
}

ZrNode *ZRS_MOD_FindTopLevelSchemaNode(const ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return nullptr;
    for (const ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        if (const ZrNode *node = FindInChain(head, name); node != nullptr)
            return const_cast<ZrNode *>(node);
    }
    return nullptr;
}
