// Where a module keeps its top-level nodes, and how they are found by name.
#include "schema/lookup.h"

#include <initializer_list>

#include "model/module_record.h"
#include "platform/text.h"
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
