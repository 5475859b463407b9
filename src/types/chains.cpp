// SPDX-License-Identifier: Apache-2.0
// Chains: from typedef to typedef, and from leafref to leafref.
#include "types/chains.h"

#include "model/module_records.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "types/constraints.h"
#include "types/real_type.h"

const ZrtRealType *zr::ReferencedType(const ZrtConsDerived *derived, const ZrCtx *ctx)
{
    if (derived->resolved != nullptr)
        return derived->resolved;
    const ZrsTypDef *definition =
        ZR_CTX_FindTdefObjByModAndTdefName(ctx, derived->moduleName, derived->typedefName);
    return definition != nullptr ? &definition->realType : nullptr;
}

bool zr::TypedefChain::Next()
{
    if (type_ == nullptr || type_->baseType != ZRT_TYPE_DERIVED || links_ >= kMaxChainLinks)
        return false;
    ++links_;
    const ZrtConsDerived *reference = ZRT_TYPE_GetTypeConsDataDerived(type_);
    typedefName_ = ZRT_CONS_GetConsDataInheritedTypDefName(reference, &moduleName_);
    if (reference != nullptr && how_ == kResolved) {
        type_ = ReferencedType(reference, ctx_);
        return true;
    }
    definition_ = ZR_CTX_FindTdefObjByModAndTdefName(ctx_, moduleName_, typedefName_);
    type_ = definition_ != nullptr ? &definition_->realType : nullptr;
    return true;
}

namespace {

const char *OwnPath(const ZrtRealType *type)
{
    return ZRT_CONS_GetConsDataLeafrefPath(ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_PATH));
}

} // namespace

const char *zr::LeafrefPathOf(const ZrNode *node)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    if (type == nullptr)
        return nullptr;
    if (type->baseType == ZRT_TYPE_LEAFREF)
        return OwnPath(type);
    if (node->module == nullptr)
        return nullptr;
    TypedefChain chain(node->module->ctx, type, TypedefChain::kByName);
    while (chain.Next()) {
        if (const char *path = OwnPath(chain.Type()); path != nullptr)
            return path;
    }
    return nullptr;
}

ZrNode *zr::LeafrefTarget(const ZrNode *node, const char *path, bool follow)
{
    for (uint32_t i = 0; i < kMaxChainLinks && path != nullptr && node->module != nullptr; ++i) {
        ZrNode *target = ZRS_MOD_GetNodeByXpath(node->module, node, path);
        if (target == nullptr || !follow)
            return target;
        path = LeafrefPathOf(target);
        if (path == nullptr)
            return target;
        node = target;
    }
    return nullptr;
}
