// SPDX-License-Identifier: Apache-2.0
// Merging of schema trees, and the typedef references of what is merged.
#include <zrschema/node.h>

#include <initializer_list>

#include "foundation/load_errors.h"
#include "schema/augment/augment.h"
#include "schema/merge/merge.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

// Typedef references.

namespace {

// The tree below a node also holds what other modules add to it; those resolve no typedef of this
// module.
uint32_t ForgetResolvedOfNode(ZrNode *node, uint32_t arrival, void *userData)
{
    if (arrival != ZR_ARRIVAL_PARENT && node->module == userData)
        zr::ForgetResolved(const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(node)));
    return 0;
}

uint32_t ForgetResolvedOfTree(ZrNode *node, uint32_t, void *userData)
{
    return ZR_NODE_TreeScanAllNode(node, ForgetResolvedOfNode, userData);
}

} // namespace

namespace zr {

void ForgetResolved(ZrtRealType *type)
{
    ZrtConsDerived *derived = ZRT_TYPE_GetTypeConsDataDerived(type);
    if (derived != nullptr)
        derived->resolved = nullptr;
    const auto *members =
        static_cast<ZrtConsUnion *>(ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_UNION));
    for (uint32_t i = 0; members != nullptr && i < members->count; ++i)
        ForgetResolved(&members->items[i]);
}

void ForgetResolvedOfModule(ZrMod *module)
{
    for (uint32_t i = 0; i < module->typedefCount; ++i)
        ForgetResolved(&module->typedefs[i].realType);
    for (ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        if (head != nullptr)
            ZR_NODE_IterScanSiblingNode(head, ForgetResolvedOfTree, module);
    }
    // The children of a coupled augment stand in another tree: they are scanned one by one.
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        ZR_NODE_IterScanChildrenNode(augment, ForgetResolvedOfTree, module);
}

uint32_t ResolveAgain(ZrtRealType *type, const ZrMod *module)
{
    ForgetResolved(type);
    return ZRT_TYPE_UpdateRealTypeDerivedFrom(type, module);
}

} // namespace zr

// Schema trees.

namespace {

struct Rehoming {
    ZrMod *module;
    uint32_t status; // of the first type that could not be resolved
};

uint32_t Rehome(ZrNode *node, uint32_t arrival, void *userData)
{
    auto *rehoming = static_cast<Rehoming *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    node->module = rehoming->module;
    auto *type = const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(node));
    uint32_t status = type == nullptr ? uint32_t{ZR_OK} : zr::ResolveAgain(type, rehoming->module);
    if (rehoming->status == ZR_OK)
        rehoming->status = status;
    return 0; // every node changes its owner, whatever its type says
}

} // namespace

uint32_t ZRS_NODE_RefreshNodeTreeToZrMod(ZrNode *root, ZrMod *module)
{
    if (root == nullptr || module == nullptr)
        return ZR_ERR_INVALID;
    Rehoming rehoming = {module, ZR_OK};
    ZR_NODE_TreeScanAllNode(root, Rehome, &rehoming);
    return rehoming.status;
}

const char *ZRS_NODE_GetDiffReasonName(uint32_t reason)
{
    switch (reason) {
    case ZRS_DIFF_NONE:
        return "none";
    case ZRS_DIFF_EXTENSION:
        return "extension";
    case ZRS_DIFF_NAME:
        return "name";
    case ZRS_DIFF_OTHER:
        return "other";
    default:
        return "unknown";
    }
}

uint32_t ZRS_NODE_CompareTwoTreeNodeSelfData(const ZrNode *destination, const ZrNode *source)
{
    if (destination == nullptr || source == nullptr)
        return ZRS_DIFF_OTHER;
    if (destination->name != source->name)
        return ZRS_DIFF_NAME;
    if (((destination->flags ^ source->flags) & ~ZRS_FLAGS_COUPLING) != 0 ||
        destination->kind != source->kind)
        return ZRS_DIFF_OTHER;
    if (source->extInstCount == 0)
        return ZRS_DIFF_NONE;
    if (destination->extInstCount == 0)
        return ZRS_DIFF_EXTENSION;
    return destination->extInstCount == source->extInstCount ? ZRS_DIFF_NONE : ZRS_DIFF_OTHER;
}

void ZRS_NODE_RecordNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                       const ZrNode *parent, uint32_t reason)
{
    if (module == nullptr || node == nullptr)
        return;
    const char *reasonName = ZRS_NODE_GetDiffReasonName(reason);
    if (parent != nullptr)
        ZR_CTX_AddModError(module->ctx, module->name,
                           "Failed to merge node \"%s\" under \"%s\" with diff reason \"%s\".",
                           node->name, parent->name, reasonName);
    else
        ZR_CTX_AddModError(module->ctx, module->name,
                           "Failed to merge node \"%s\" with diff reason \"%s\".", node->name,
                           reasonName);
}

void ZRS_NODE_RecordExtraNodeListMergeError(const ZrMod *module, const ZrNode *node,
                                            const ZrNode *parent)
{
    if (module == nullptr || node == nullptr)
        return;
    if (parent != nullptr)
        ZR_CTX_AddModError(module->ctx, module->name,
                           "Failed to merge extra node list \"%s\" under \"%s\".", node->name,
                           parent->name);
    else
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to merge extra node list \"%s\".",
                           node->name);
}

uint32_t ZRS_NODE_MergeDstNodeWithMimExtInst(ZrNode *destination, const ZrNode *source)
{
    if (destination == nullptr || source == nullptr || destination->extInstCount != 0)
        return ZR_ERR_INVALID;
    return ZR_NODE_ReplaceDstExtInst(destination, source);
}

uint32_t ZRS_NODE_CheckPostSiblingNodeUnique(const ZrNode *destination, const ZrNode *source)
{
    for (; source != nullptr; source = source->next) {
        for (const ZrNode *other = destination; other != nullptr; other = other->next) {
            if (other->name == source->name)
                return ZR_ERR_INVALID;
        }
    }
    return ZR_OK;
}

uint32_t ZRS_NODE_MergeNodeListToTgtWithTravType(ZrNode *anchor, ZrNode *source, uint32_t mode,
                                                 ZrMod *destinationModule)
{
    if (anchor == nullptr || destinationModule == nullptr || mode > ZRS_LINK_AS_SIBLING)
        return ZR_ERR_INVALID;
    while (source != nullptr) {
        ZrNode *next = source->next;
        ZRS_NODE_Unlink(source); // while it still belongs to its own module's list
        uint32_t status = ZRS_NODE_RefreshNodeTreeToZrMod(source, destinationModule);
        ZRS_NODE_LinkTreeNode(anchor, source, mode);
        if (status != ZR_OK)
            return status;
        if (mode == ZRS_LINK_AS_SIBLING)
            anchor = source; // the new end of the chain: the next node need not look for it
        source = next;
    }
    return ZR_OK;
}

uint32_t ZRS_NODE_MergeNodeListWithDiffReason(ZrNode *destination, ZrNode *source,
                                              ZrNode **sourceList, uint32_t reason,
                                              ZrMod *destinationModule)
{
    if (destination == nullptr || source == nullptr || sourceList == nullptr ||
        destination->module != destinationModule)
        return ZR_ERR_INVALID;
    if (reason == ZRS_DIFF_NONE)
        return ZR_OK;
    if (reason == ZRS_DIFF_EXTENSION)
        return ZRS_NODE_MergeDstNodeWithMimExtInst(destination, source);
    if (reason != ZRS_DIFF_NAME ||
        ZRS_NODE_CheckPostSiblingNodeUnique(destination, source) != ZR_OK)
        return ZR_ERR_INVALID;
    bool isHead = *sourceList == source;
    uint32_t status = ZRS_NODE_MergeNodeListToTgtWithTravType(
        destination, source, ZRS_LINK_AS_SIBLING, destinationModule);
    if (isHead && status == ZR_OK)
        *sourceList = nullptr;
    return status;
}

uint32_t ZRS_NODE_MoveExtraNodeList(ZrNode **destinationList, ZrNode *source, ZrNode *parent,
                                    ZrMod *destinationModule)
{
    if (destinationList == nullptr || destinationModule == nullptr)
        return ZR_ERR_INVALID;
    if (parent != nullptr)
        return ZRS_NODE_MergeNodeListToTgtWithTravType(parent, source, ZRS_LINK_AS_CHILD,
                                                       destinationModule);
    if (source == nullptr || *destinationList != nullptr)
        return ZR_OK;
    ZrNode *next = source->next;
    ZRS_NODE_Unlink(source);
    uint32_t status = ZRS_NODE_RefreshNodeTreeToZrMod(source, destinationModule);
    *destinationList = source;
    if (status != ZR_OK)
        return status;
    return ZRS_NODE_MergeNodeListToTgtWithTravType(source, next, ZRS_LINK_AS_SIBLING,
                                                   destinationModule);
}

uint32_t ZRS_NODE_CompareAndMergeNodeList(ZrNode **destinationList, ZrNode **sourceList,
                                          ZrNode *parent, ZrMod *destinationModule)
{
    if (destinationList == nullptr || sourceList == nullptr || destinationModule == nullptr)
        return ZR_ERR_INVALID;
    ZrNode *destination = *destinationList;
    ZrNode *source = *sourceList;
    for (; destination != nullptr && source != nullptr;
         destination = destination->next, source = source->next) {
        uint32_t reason = ZRS_NODE_CompareTwoTreeNodeSelfData(destination, source);
        uint32_t status = ZRS_NODE_MergeNodeListWithDiffReason(destination, source, sourceList,
                                                               reason, destinationModule);
        if (status != ZR_OK) {
            ZRS_NODE_RecordNodeListMergeError(destinationModule, destination, parent, reason);
            return status;
        }
        if (reason == ZRS_DIFF_NAME)
            return ZR_OK; // the rest of the source is at the destination's end now
    }
    if (source == nullptr)
        return ZR_OK;
    uint32_t status =
        ZRS_NODE_MoveExtraNodeList(destinationList, source, parent, destinationModule);
    if (status != ZR_OK)
        ZRS_NODE_RecordExtraNodeListMergeError(destinationModule, source, parent);
    return status;
}

uint32_t ZRS_NODE_MergeTreeNodeFromRootStart(ZrNode **destinationList, ZrNode **sourceList,
                                             ZrNode *parent, ZrMod *destinationModule)
{
    uint32_t status =
        ZRS_NODE_CompareAndMergeNodeList(destinationList, sourceList, parent, destinationModule);
    if (status != ZR_OK)
        return status;
    ZrNode *destination = *destinationList;
    ZrNode *source = *sourceList;
    for (; destination != nullptr && source != nullptr;
         destination = destination->next, source = source->next) {
        status = ZRS_NODE_MergeTreeNodeFromRootStart(&destination->firstChild, &source->firstChild,
                                                     destination, destinationModule);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}
