#include "schema/merge_types.h"

#include <initializer_list>

#include "schema/node.h"
#include "types/real_type.h"

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
