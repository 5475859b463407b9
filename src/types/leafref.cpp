// The path of a leafref and the check of its values (RFC 7950, section 9.9).
#include "model/module_records.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "types/constraints.h"
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

// Whether the value of the leaf is being checked: it is the one under check, or the check came from
// it through leafrefs that are members of unions.
bool IsUnderCheck(const ZrNode *leaf, const ZrtValidateCtx *validation)
{
    for (; validation != nullptr; validation = validation->referrer) {
        if (validation->node == leaf)
            return true;
    }
    return false;
}

} // namespace

namespace zr {

const char *LeafrefPathOf(const ZrNode *node)
{
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(node);
    if (type == nullptr)
        return nullptr;
    if (type->baseType == ZRT_TYPE_LEAFREF)
        return ZR_TYPE_GetTypeConsDataLeafrefPath(type);
    if (type->baseType != ZRT_TYPE_DERIVED || node->module == nullptr)
        return nullptr;
    PathFound found = {nullptr};
    ZR_TYPE_IterRealTypeDerivedName(type, node->module->ctx, TakeFirstPath, &found);
    return found.path;
}

ZrNode *LeafrefTarget(const ZrNode *node, const char *path, bool follow)
{
    for (uint32_t i = 0; i < kMaxResolutions && path != nullptr && node->module != nullptr; ++i) {
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

} // namespace zr

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
    if (validation->node == nullptr)
        return ZR_ERR_VALUE_LEAFREF;
    const ZrNode *target = zr::LeafrefTarget(validation->node, path, true);
    const ZrtRealType *type = ZRS_NODE_GetLeafSchemaRealType(target);
    // A leaf whose value is being checked says nothing on it: there is no end to asking it again.
    if (type == nullptr || IsUnderCheck(target, validation))
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
