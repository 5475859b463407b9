// Where a module keeps its top-level nodes, and how they are found by name.
#include "schema/lookup.h"

#include <initializer_list>

#include "platform/text.h"
#include "schema/module_record.h"
#include "schema/node.h"

namespace {

using HeadField = ZrNode *ZrMod::*;

// The chain that takes a top-level node of the kind; null for a kind that stands only below others.
HeadField HeadForKind(uint32_t kind)
{
    switch (kind) {
    case ZR_NODE_CONTAINER:
    case ZR_NODE_LEAF:
    case ZR_NODE_LEAF_LIST:
    case ZR_NODE_LIST:
    case ZR_NODE_CHOICE:
    case ZR_NODE_ANYDATA:
    case ZR_NODE_ANYXML:
        return &ZrMod::dataNodes;
    case ZR_NODE_RPC:
        return &ZrMod::rpcs;
    case ZR_NODE_NOTIFICATION:
        return &ZrMod::notifications;
    case ZR_NODE_AUGMENT:
        return &ZrMod::augments;
    default:
        return nullptr;
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
    HeadField head = HeadForKind(node->kind);
    if (head == nullptr)
        return ZR_ERR_INVALID;
    if (module->*head != nullptr)
        return ZRS_NODE_AddSibling(module->*head, node);
    module->*head = node;
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
