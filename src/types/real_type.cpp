#include "types/real_type.h"

#include <cstring>

#include "foundation/array.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "types/constraints.h"

uint32_t ZRT_TYPE_ExpandConstraintArray(ZrtRealType *type, uint32_t count)
{
    if (type == nullptr)
        return ZR_ERR_INVALID;
    return zr::NewArray(&type->constraints, count);
}

void ZRT_TYPE_DestroyTypeConstraintArray(ZrCtx *ctx, ZrtRealType *type)
{
    if (type == nullptr)
        return;
    for (uint32_t i = 0; i < type->consCount; ++i) {
        ZrtConsSlot &slot = type->constraints[i];
        ZrtConsDestroyFunc destroy = ZRT_CONS_GetConsDataDestroyBodyFunc(slot.kind);
        if (slot.body != nullptr && destroy != nullptr)
            destroy(ctx, slot.body);
    }
    zr::Free(type->constraints);
    type->constraints = nullptr;
    type->consCount = 0;
}

void ZRT_TYPE_DestroyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *type)
{
    if (type == nullptr)
        return;
    ZRT_TYPE_DestroyTypeConstraintArray(ctx, type);
    type->baseType = ZRT_TYPE_DERIVED;
    type->boundsFlags = 0;
}

void ZRT_TYPE_DestroyZrtRealType(ZrCtx *ctx, ZrtRealType *type)
{
    ZRT_TYPE_DestroyZrtRealTypeInner(ctx, type);
    zr::Free(type);
}

namespace {

bool CopySlot(ZrCtx *ctx, ZrtConsSlot &slot, const ZrtConsSlot &source)
{
    ZrtConsCopyFunc copy = ZRT_CONS_GetConsDataCopyBodyFunc(source.kind);
    if (copy == nullptr || source.body == nullptr)
        return false;
    slot.kind = source.kind;
    slot.body = copy(ctx, source.body);
    return slot.body != nullptr;
}

} // namespace

uint32_t ZRT_TYPE_CopyZrtRealTypeInner(ZrCtx *ctx, ZrtRealType *destination,
                                       const ZrtRealType *source)
{
    if (ctx == nullptr || destination == nullptr || source == nullptr)
        return ZR_ERR_NO_MEMORY;
    if (source->consCount == 0) {
        // A type without slots has no bounds, so there are no flags to take over.
        destination->baseType = source->baseType;
        destination->consCount = 0;
        destination->constraints = nullptr;
        return ZR_OK;
    }
    if (ZRT_TYPE_ExpandConstraintArray(destination, source->consCount) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    destination->baseType = source->baseType;
    destination->boundsFlags = source->boundsFlags;
    for (uint32_t i = 0; i < source->consCount; ++i) {
        if (!CopySlot(ctx, destination->constraints[i], source->constraints[i])) {
            ZRT_TYPE_DestroyZrtRealTypeInner(ctx, destination);
            return ZR_ERR_NO_MEMORY;
        }
        ++destination->consCount;
    }
    return ZR_OK;
}

ZrtRealType *ZRT_TYPE_CopyZrtRealType(ZrCtx *ctx, const ZrtRealType *source)
{
    if (source == nullptr)
        return nullptr;
    auto *copy = zr::New<ZrtRealType>();
    if (copy != nullptr && ZRT_TYPE_CopyZrtRealTypeInner(ctx, copy, source) != ZR_OK) {
        zr::Free(copy);
        return nullptr;
    }
    return copy;
}

void *ZRT_TYPE_GetTypeConsDataByConsType(const ZrtRealType *type, uint32_t kind)
{
    if (type == nullptr)
        return nullptr;
    for (uint32_t i = 0; i < type->consCount; ++i) {
        if (type->constraints[i].kind == kind)
            return type->constraints[i].body;
    }
    return nullptr;
}

ZrtConsDerived *ZRT_TYPE_GetTypeConsDataDerived(const ZrtRealType *type)
{
    // Slots ascend by kind, so a typedef reference is always the first.
    if (type == nullptr || type->consCount == 0 || type->constraints[0].kind != ZRT_CONS_DERIVED)
        return nullptr;
    return static_cast<ZrtConsDerived *>(type->constraints[0].body);
}

uint32_t ZRT_TYPE_GetTypeConsDataFractionVal(const ZrtRealType *type)
{
    return ZRT_CONS_GetConsDataFractionVal(
        ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_FRACTION));
}

const char *ZRT_TYPE_GetInheritedTypDefName(const ZrtRealType *type, const char **moduleNameOut)
{
    return ZRT_CONS_GetConsDataInheritedTypDefName(ZRT_TYPE_GetTypeConsDataDerived(type),
                                                   moduleNameOut);
}

uint32_t ZRT_TYPE_IsTypeWithIdentref(const ZrtRealType *type)
{
    return type != nullptr && type->baseType == ZRT_TYPE_IDENTITYREF;
}

uint32_t ZRT_TYPE_IsInvalidType(const ZrtRealType *type)
{
    return type == nullptr || type->baseType == ZRT_TYPE_NONE ||
           (type->baseType == ZRT_TYPE_DERIVED && type->consCount == 0);
}

uint32_t ZRT_TYPE_UpdateRealTypeDerivedFrom(ZrtRealType *type, const ZrMod *module)
{
    if (type == nullptr || module == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; i < type->consCount; ++i) {
        ZrtConsUpdateFunc update =
            ZRT_CONS_GetConsDataUpdateDerFromModFunc(type->constraints[i].kind);
        if (update == nullptr)
            continue;
        uint32_t status = update(type->constraints[i].body, module);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

// The typedef reference of a derived type (RFC 7950, section 7.3).

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
