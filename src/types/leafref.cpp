// The path of a leafref and the check of its values (RFC 7950, section 9.9).
#include "schema/module_record.h"
#include "schema/node_record.h"
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/lookups.h"
#include "types/nested.h"
#include "types/real_type.h"

namespace {

// Leafrefs to leafrefs are followed so often; a circle never comes to an end before.
constexpr uint32_t kMaxResolutions = 129;

struct PathFound {
    const char *path;
};

uint32_t TakeFirstPath(const char *, const char *, const ZrtRealType *type, void *userData)
{
    auto *found = static_cast<PathFound *>(userData);
    found->path = ZR_TYPE_GetTypeConsDataLeafrefPath(type);
    return found->path != nullptr ? 1 : 0;
}

// The path of a leafref, also of one behind typedefs; null for another type.
const char *LeafrefPathOf(const ZrtRealType *type, const ZrCtx *ctx)
{
    if (type == nullptr)
        return nullptr;
    if (type->baseType == ZRT_TYPE_LEAFREF)
        return ZR_TYPE_GetTypeConsDataLeafrefPath(type);
    if (type->baseType != ZRT_TYPE_DERIVED)
        return nullptr;
    PathFound found = {nullptr};
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, TakeFirstPath, &found);
    return found.path;
}

// The leaf that the path leads to from the node, through leafrefs; null when there is none.
const ZrNode *FollowPath(const ZrNode *node, const char *path)
{
    for (uint32_t i = 0; i < kMaxResolutions && node != nullptr; ++i) {
        if (node->module == nullptr)
            return nullptr;
        node = ZRS_MOD_GetNodeByXpath(node->module, node, path);
        if (node == nullptr)
            return nullptr;
        path = LeafrefPathOf(ZRS_NODE_GetLeafSchemaRealType(node),
                             node->module != nullptr ? node->module->ctx : nullptr);
        if (path == nullptr)
            return node;
    }
    return nullptr;
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithPath(uint32_t)
{
    return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsPath), 0, 0);
}

void ZRT_CONS_DestroyConsDataBodyWithPath(ZrCtx *ctx, void *body)
{
    auto *path = static_cast<ZrtConsPath *>(body);
    if (path == nullptr)
        return;
    zr::Release(&ctx->dict, path->path);
    zr::Free(path);
}

void *ZRT_CONS_CopyConsDataBodyWithPath(ZrCtx *ctx, const void *body)
{
    const auto *source = static_cast<const ZrtConsPath *>(body);
    if (ctx == nullptr || source == nullptr)
        return nullptr;
    auto *copy = static_cast<ZrtConsPath *>(ZRT_CONS_CreateConsDataBodyWithPath(1));
    if (copy == nullptr)
        return nullptr;
    copy->requireInstance = source->requireInstance;
    if (!zr::CopyText(ctx, copy->path, source->path)) {
        ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
        return nullptr;
    }
    return copy;
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataPath(const void *body, uint32_t inputKind,
                                                   const void *value, ZrtValidateCtx *validation)
{
    // The path is that of the type under check, not that of the leaf: the leafref may be a member
    // of a union.
    const char *path = static_cast<const ZrtConsPath *>(body)->path;
    if (path == nullptr || ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value) == nullptr)
        return ZR_ERR_VALUE_LEAFREF;
    const ZrNode *target = FollowPath(validation->node, path);
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(target);
    if (type == nullptr)
        return ZR_ERR_VALUE_LEAFREF;
    const ZrtRealType *matched = nullptr;
    uint32_t status = zr::ValidateNested(type, inputKind, value, validation, target, &matched);
    if (status == ZR_OK)
        ZRT_TYPE_SetMatchRealType(validation, matched != nullptr ? matched : type);
    return status;
}

const char *ZRT_CONS_GetConsDataLeafrefPath(const void *body)
{
    return body != nullptr ? static_cast<const ZrtConsPath *>(body)->path : nullptr;
}
