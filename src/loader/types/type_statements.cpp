// SPDX-License-Identifier: Apache-2.0
// "type" and "typedef" (RFC 7950, sections 7.3 and 7.4).
#include <cstring>

#include <zrschema/names.h>

#include "foundation/load_errors.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "loader/types/type_fill.h"
#include "platform/xml.h"
#include "schema/members/members.h"
#include "types/real_type.h"

namespace {

uint32_t CountRestrictions(xmlNode *element, uint32_t baseType, ZrtTypeSubElemCount *counters)
{
    if (baseType == ZRT_TYPE_DERIVED) {
        counters->counts[ZRT_CONS_DERIVED] = 1;
        counters->counts[ZRT_CONS_KIND_COUNT] = 1;
    }
    return zr::CountAndMarkRestrictions(element, counters);
}

uint32_t ParseTypeDefInto(ZrMod *module, xmlNode *element, const char *name, ZrsTypDef *typeDef)
{
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_TYPE, &typeDef->realType),
        zr::UniqueRow(ZRS_STMT_DEFAULT, &typeDef->defaultValue),
        zr::UniqueRow(ZRS_STMT_UNITS, &typeDef->units),
    };
    uint32_t status = zr::ParseRows(module, element, ZRS_STMT_TYPEDEF, rows);
    if (status != ZR_OK) {
        zr::RecordBadValue(module, name, ZRS_STMT_TYPEDEF);
        return status;
    }
    if (ZRT_TYPE_IsInvalidType(&typeDef->realType) != 0) {
        zr::RecordMissingType(module, ZRS_STMT_TYPEDEF, name);
        return ZR_ERR_INVALID;
    }
    return ZRS_LOADER_RefreshTypeDefDefaultValue(module, typeDef);
}

} // namespace

uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name)
{
    if (name == nullptr)
        return ZRT_TYPE_DERIVED;
    for (uint32_t type = ZRT_TYPE_BINARY; type <= ZRT_TYPE_UNION; ++type) {
        const char *builtIn = ZR_GetBuiltInTypeName(type);
        if (*builtIn == *name && std::strcmp(builtIn, name) == 0)
            return type;
    }
    return ZRT_TYPE_DERIVED;
}

uint32_t ZRT_LOADER_ParseTypeStmt(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                  void *destination)
{
    auto *type = static_cast<ZrtRealType *>(destination);
    if (type == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr) { // a message of its own (docs/oddities.md)
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                           "typeName");
        return ZR_ERR_INVALID;
    }
    ZrtTypeSubElemCount counters = {};
    uint32_t baseType = ZRT_LOADER_GetBaseTypeFromTypeName(name);
    uint32_t status = CountRestrictions(element, baseType, &counters);
    if (status != ZR_OK) {
        zr::RecordBadValue(module, name, ZRS_STMT_TYPE);
        return status;
    }
    type->baseType = baseType;
    type->flags = zr::ReadInstanceFlags(module, element, baseType);
    if (counters.counts[ZRT_CONS_KIND_COUNT] == 0)
        return ZR_OK;
    uint32_t noteCount = zr::CountTypeNotes(module, element);
    status = ZRT_TYPE_ExpandConstraintArray(type, counters.counts[ZRT_CONS_KIND_COUNT] +
                                                      (noteCount != 0 ? 1u : 0u));
    if (status != ZR_OK)
        return status;
    status = ZRT_LOADER_FillAllTypeConstraint(module, type, element, &counters);
    if (status == ZR_OK && noteCount != 0)
        status = zr::FillTypeNotes(module, type, element, noteCount);
    if (status != ZR_OK)
        zr::RecordBadValue(module, name, ZRS_STMT_TYPE);
    return status;
}

uint32_t ZRT_LOADER_ParseTypeDefStmt(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                     void *destination)
{
    auto *typeDef = static_cast<ZrsTypDef *>(destination);
    if (typeDef == nullptr || module == nullptr || element == nullptr)
        return ZR_ERR_INVALID;
    const char *name = zr::RequireName(module, element, ZRS_STMT_TYPEDEF);
    if (name == nullptr || zr::KeepText(module, name, &typeDef->name) != ZR_OK)
        return ZR_ERR_INVALID; // also without memory (docs/oddities.md)
    uint32_t status = ParseTypeDefInto(module, element, name, typeDef);
    if (status != ZR_OK)
        ZRS_TYPE_DestroyTypDefInner(module->ctx, typeDef);
    return status;
}
