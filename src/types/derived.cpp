// The typedef reference of a derived type (RFC 7950, section 7.3).
#include <cstring>

#include "model/members_by_name.h"
#include "model/module_record.h"
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace {

// Typedef references are followed while fewer than this many have been, plus one.
constexpr uint32_t kMaxDerivedDepth = 128;

const ZrtRealType *FindReferencedType(const ZrtConsDerived *derived, const ZrCtx *ctx)
{
    if (derived->resolved != nullptr)
        return derived->resolved;
    if (ctx == nullptr)
        return nullptr;
    const ZrsTypDef *typeDef =
        ZR_CTX_FindTdefObjByModAndTdefName(ctx, derived->moduleName, derived->typedefName);
    return typeDef != nullptr ? &typeDef->realType : nullptr;
}

} // namespace

void *ZRT_CONS_CreateConsDataBodyWithDerived(uint32_t)
{
    return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsDerived), 0, 0);
}

void ZRT_CONS_DestroyConsDataBodyWithDerived(ZrCtx *ctx, void *body)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    if (derived == nullptr)
        return;
    zr::Release(&ctx->dict, derived->moduleName);
    zr::Release(&ctx->dict, derived->typedefName);
    zr::Free(derived);
}

void *ZRT_CONS_CopyConsDataBodyWithDerived(ZrCtx *ctx, const void *body)
{
    const auto *source = static_cast<const ZrtConsDerived *>(body);
    if (ctx == nullptr || source == nullptr)
        return nullptr;
    auto *copy = static_cast<ZrtConsDerived *>(ZRT_CONS_CreateConsDataBodyWithDerived(1));
    if (copy == nullptr)
        return nullptr;
    // The copy is not resolved: it may outlive the module that the source's pointer leads into.
    if (!zr::CopyText(ctx, copy->moduleName, source->moduleName) ||
        !zr::CopyText(ctx, copy->typedefName, source->typedefName)) {
        ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
        return nullptr;
    }
    return copy;
}

uint32_t ZRT_CONS_ValidateValueNodeAgainstDataDerived(const void *body, uint32_t inputKind,
                                                      const void *value, ZrtValidateCtx *validation)
{
    if (validation->derivedDepth > kMaxDerivedDepth)
        return ZR_ERR_VALUE_DERIVED;
    const ZrtRealType *type =
        FindReferencedType(static_cast<const ZrtConsDerived *>(body), validation->ctx);
    if (type == nullptr)
        return ZR_ERR_VALUE_DERIVED;
    ++validation->derivedDepth;
    uint32_t status = ZRT_TYPE_ValidateValueNodeAgainstRealType(type, inputKind, value, validation);
    if (status == ZR_OK)
        ZRT_TYPE_SetMatchRealType(validation, type);
    return status;
}

uint32_t ZRT_CONS_UpdateConsDataDerFromWithDerived(void *body, const ZrMod *module)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    if (derived == nullptr || derived->moduleName == nullptr || derived->typedefName == nullptr)
        return ZR_ERR_INVALID;
    if (module->name == nullptr || std::strcmp(derived->moduleName, module->name) != 0)
        return ZR_OK;
    // Looked up even when resolved before: the module's typedefs move when their array grows.
    const ZrsTypDef *typeDef = ZRS_MOD_FindZrsTypDefByName(module, derived->typedefName);
    if (typeDef == nullptr)
        return derived->resolved != nullptr ? ZR_OK : ZR_ERR_INVALID;
    derived->resolved = &typeDef->realType;
    return ZR_OK;
}

const char *ZRT_CONS_GetConsDataInheritedTypDefName(const void *body, const char **moduleNameOut)
{
    const auto *derived = static_cast<const ZrtConsDerived *>(body);
    if (moduleNameOut != nullptr)
        *moduleNameOut = derived != nullptr ? derived->moduleName : nullptr;
    return derived != nullptr ? derived->typedefName : nullptr;
}
