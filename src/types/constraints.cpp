// SPDX-License-Identifier: Apache-2.0
// What the kinds of constraints share, and the bodies that are one record: the reference of a
// derived type and the path of a leafref.
#include "types/constraints.h"

#include <libxml/tree.h>

#include <cstring>

#include "foundation/array.h"
#include "platform/xml.h"

void *ZRT_CONS_CreateConsDataBodyAndSegSize(uint32_t bodySize, uint32_t count, uint32_t itemSize)
{
    zr::Owned<unsigned char> body(zr::New<unsigned char>(bodySize));
    if (!body || count == 0 || itemSize == 0)
        return body.release();
    void *items = zr::AllocZeroed(size_t{count} * itemSize);
    if (items == nullptr)
        return nullptr;
    std::memcpy(body.get() + zr::kBodyArrayOffset, &items, sizeof items);
    return body.release();
}

const char *ZRT_TYPE_GetInputValueAsSimpleStr(uint32_t inputKind, const void *value)
{
    switch (inputKind) {
    case ZR_VALUE_STRING:
        return static_cast<const char *>(value);
    case ZR_VALUE_XML:
        return ZR_XML_GetElemNodeContent(static_cast<const xmlNode *>(value));
    default:
        return nullptr;
    }
}

// The typedef reference of a derived type (RFC 7950, section 7.3).

void *ZRT_CONS_CreateConsDataBodyWithDerived(uint32_t)
{
    return zr::New<ZrtConsDerived>();
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
    auto *copy = zr::New<ZrtConsDerived>();
    if (copy == nullptr)
        return nullptr;
    // The copy is not resolved: it may outlive the module that the source's pointer leads into.
    if (!zr::Intern(&ctx->dict, copy->moduleName, source->moduleName) ||
        !zr::Intern(&ctx->dict, copy->typedefName, source->typedefName)) {
        ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
        return nullptr;
    }
    return copy;
}

const char *ZRT_CONS_GetConsDataInheritedTypDefName(const void *body, const char **moduleNameOut)
{
    const auto *derived = static_cast<const ZrtConsDerived *>(body);
    if (moduleNameOut != nullptr)
        *moduleNameOut = derived != nullptr ? derived->moduleName : nullptr;
    return derived != nullptr ? derived->typedefName : nullptr;
}

// The path of a leafref (RFC 7950, section 9.9.2).

void *ZRT_CONS_CreateConsDataBodyWithPath(uint32_t)
{
    return zr::New<ZrtConsPath>();
}

ZrtConsPath *zr::CreateFullPath()
{
    auto *path = zr::New<ZrtConsFullPath>();
    if (path != nullptr)
        path->requireInstance = ZRT_PATH_HAS_PREDICATES;
    return path;
}

void ZRT_CONS_DestroyConsDataBodyWithPath(ZrCtx *ctx, void *body)
{
    auto *path = static_cast<ZrtConsPath *>(body);
    if (path == nullptr)
        return;
    zr::Release(&ctx->dict, path->path);
    if (ZrtConsFullPath *full = zr::FullPathOf(path); full != nullptr)
        zr::Release(&ctx->dict, full->fullPath);
    zr::Free(path);
}

void *ZRT_CONS_CopyConsDataBodyWithPath(ZrCtx *ctx, const void *body)
{
    const auto *source = static_cast<const ZrtConsPath *>(body);
    if (ctx == nullptr || source == nullptr)
        return nullptr;
    const ZrtConsFullPath *full = zr::FullPathOf(source);
    ZrtConsPath *copy = full != nullptr ? zr::CreateFullPath() : zr::New<ZrtConsPath>();
    if (copy == nullptr)
        return nullptr;
    copy->requireInstance = source->requireInstance;
    if (!zr::Intern(&ctx->dict, copy->path, source->path) ||
        (full != nullptr &&
         !zr::Intern(&ctx->dict, zr::FullPathOf(copy)->fullPath, full->fullPath))) {
        ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
        return nullptr;
    }
    return copy;
}

const char *ZRT_CONS_GetConsDataLeafrefPath(const void *body)
{
    return body != nullptr ? static_cast<const ZrtConsPath *>(body)->path : nullptr;
}
