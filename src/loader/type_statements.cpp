#include "loader/type_statements.h"

#include <iterator>

#include "foundation/load_errors.h"
#include "loader/arguments.h"
#include "loader/engine.h"
#include "loader/refresh.h"
#include "loader/type_fill.h"
#include "platform/xml.h"
#include "schema/members.h"
#include "types/real_type.h"

namespace {

void RecordParseFailure(ZrMod *module, const char *value, const char *keyword)
{
    ZR_CTX_AddModError(module->ctx, module->name,
                       "Failed to parse value \"%s\" of statement \"%s\".", value, keyword);
}

uint32_t ParseTypeDefBody(ZrMod *module, xmlNode *element, const char *name, ZrsTypDef *typeDef)
{
    ZrsSubElem rows[] = {
        {ZRS_STMT_TYPE, &typeDef->realType, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
        {ZRS_STMT_DEFAULT, &typeDef->defaultValue, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
        {ZRS_STMT_UNITS, &typeDef->units, nullptr, nullptr, 0, ZRS_ROW_UNIQUE},
    };
    uint32_t status = ZRS_LOADER_ParseSubStatements(module, element, ZRS_STMT_TYPEDEF, rows,
                                                    static_cast<uint32_t>(std::size(rows)));
    if (status != ZR_OK) {
        RecordParseFailure(module, name, "typedef");
        return status;
    }
    if (ZRT_TYPE_IsInvalidType(&typeDef->realType)) {
        ZR_CTX_AddModError(module->ctx, module->name,
                           "typedef \"%s\" must define with type statement.", name);
        return ZR_ERR_INVALID;
    }
    return ZRS_LOADER_RefreshTypeDefDefaultValue(module, typeDef);
}

} // namespace

uint32_t ZRT_LOADER_ParseTypeStmt(ZrMod *module, xmlNode *element, uint32_t, void *destination)
{
    auto *type = static_cast<ZrtRealType *>(destination);
    if (type == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                           "typeName");
        return ZR_ERR_INVALID;
    }
    ZrtTypeSubElemCount counters = {};
    uint32_t baseType = ZRT_LOADER_GetBaseTypeFromTypeName(name);
    if (baseType == ZRT_TYPE_DERIVED) {
        counters.counts[ZRT_CONS_DERIVED] = 1;
        counters.counts[ZRT_CONS_KIND_COUNT] = 1;
    }
    uint32_t status = zr::CountAndMarkRestrictions(element, &counters);
    if (status != ZR_OK) {
        RecordParseFailure(module, name, "type");
        return status;
    }
    type->baseType = baseType;
    if (counters.counts[ZRT_CONS_KIND_COUNT] == 0)
        return ZR_OK;
    status = ZRT_TYPE_ExpandConstraintArray(type, counters.counts[ZRT_CONS_KIND_COUNT]);
    if (status != ZR_OK)
        return status;
    status = ZRT_LOADER_FillAllTypeConstraint(module, type, element, &counters);
    if (status != ZR_OK)
        RecordParseFailure(module, name, "type");
    return status;
}

uint32_t ZRT_LOADER_ParseTypeDefStmt(ZrMod *module, xmlNode *element, uint32_t, void *destination)
{
    auto *typeDef = static_cast<ZrsTypDef *>(destination);
    if (typeDef == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = zr::RequireName(module, element, ZRS_STMT_TYPEDEF);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    typeDef->name = ZR_DICT_Insert(&module->ctx->dict, name);
    if (typeDef->name == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ParseTypeDefBody(module, element, name, typeDef);
    if (status != ZR_OK)
        ZRS_TYPE_DestroyTypDefInner(module->ctx, typeDef);
    return status;
}
