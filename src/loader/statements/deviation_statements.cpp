// SPDX-License-Identifier: Apache-2.0
// "deviation" and "deviate" (RFC 7950, section 7.20.3) into the records that are applied to their
// targets once those are loaded.
#include <cstring>

#include "foundation/context_record.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/entry_statements.h"
#include "loader/statements/statements.h"
#include "model/node_record.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members/entry_rules.h"
#include "schema/members/members.h"
#include "types/real_type.h"
#include "xpath/path_forms.h"

namespace {

struct DeviateKind {
    const char *name;
    uint32_t kind;
    ZrsParseFunc parse; // of the children; null: the kind has none
};

// clang-format off
constexpr DeviateKind kDeviateKinds[] = {
    // argument        kind                       children
    {"add",            ZRS_DEVIATE_ADD,           ZRS_LOADER_ParseDeviateAdd},
    {"delete",         ZRS_DEVIATE_DELETE,        ZRS_LOADER_ParseDeviateDelete},
    {"not-supported",  ZRS_DEVIATE_NOT_SUPPORTED, nullptr},
    {"replace",        ZRS_DEVIATE_REPLACE,       ZRS_LOADER_ParseDeviateReplace},
};
// clang-format on

const DeviateKind *FindDeviateKind(const char *name)
{
    for (const DeviateKind &row : kDeviateKinds)
        if (std::strcmp(row.name, name) == 0)
            return &row;
    return nullptr;
}

// The properties are parsed as those of a node and then kept in the record's narrower word.
uint16_t PropertyFlags(uint32_t nodeFlags)
{
    return static_cast<uint16_t>(nodeFlags &
                                 (ZRS_FLAGS_CONFIG | ZRS_FLAG_CONFIG_GIVEN | ZRS_FLAGS_MANDATORY));
}

uint32_t ParseDeviationInto(ZrMod *module, xmlNode *element, const char *path,
                            ZrsDeviation *deviation)
{
    zr::Owned<char> target(ZR_XPATH_TransformToJsonFormat(module, path));
    if (!target)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_MOD_FillDeviationTargetNode(&module->ctx->dict, deviation, target.get());
    if (status != ZR_OK)
        return status;
    uint16_t filled = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_DEVIATE, &deviation->deviates, &filled, &deviation->deviateCount),
    };
    return zr::ParseRows(module, element, ZRS_STMT_DEVIATION, rows);
}

} // namespace

uint32_t ZRS_LOADER_GetDeviateType(const char *name)
{
    const DeviateKind *row = name != nullptr ? FindDeviateKind(name) : nullptr;
    return row != nullptr ? row->kind : 0;
}

uint32_t ZRS_LOADER_ParseDeviation(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    const char *path = ZR_XML_GetFirstPropertyValue(element);
    if (path == nullptr || path[0] != '/') {
        zr::RecordMissingValue(module, ZRS_STMT_DEVIATION);
        return ZR_ERR_INVALID;
    }
    auto *deviation = static_cast<ZrsDeviation *>(destination);
    uint32_t status = ParseDeviationInto(module, element, path, deviation);
    if (status != ZR_OK) {
        ZRS_MOD_ClearDeviation(module->ctx, deviation);
        zr::RecordBadDefinition(module, ZRS_STMT_DEVIATION, path);
    }
    return status;
}

uint32_t ZRS_LOADER_ParseDeviate(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                 void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_DEVIATE);
    if (argument == nullptr)
        return UINT32_MAX; // a status of its own (docs/oddities.md)
    const DeviateKind *row = FindDeviateKind(argument);
    if (row == nullptr) {
        zr::RecordBadValue(module, argument, ZRS_STMT_DEVIATE);
        return UINT32_MAX;
    }
    auto *deviate = static_cast<ZrsDeviate *>(destination);
    deviate->kind = row->kind;
    if (row->parse == nullptr)
        return ZR_OK;
    uint32_t status = row->parse(module, element, ZRS_STMT_DEVIATE, deviate);
    if (status == ZR_OK)
        status = zr::ReadEntryStatements(module, element, ZRS_STMT_DEVIATE, deviate, deviate->kind);
    if (zr::EntryRulesOf(module->ctx, deviate) != nullptr)
        deviate->flags |= ZRS_DEVIATE_ENTRY_RULES;
    if (status != ZR_OK) {
        ZRS_MOD_ClearDeviate(module->ctx, deviate);
        zr::RecordBadValue(module, argument, ZRS_STMT_DEVIATE);
    }
    return status;
}

uint32_t ZRS_LOADER_ParseDeviateAdd(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                    void *destination)
{
    auto *deviate = static_cast<ZrsDeviate *>(destination);
    uint32_t flags = 0;
    uint16_t defaults = 0;
    uint16_t musts = 0;
    uint16_t extInsts = 0;
    // clang-format off
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_CONFIG,            &flags),
        zr::UniqueRow(ZRS_STMT_MANDATORY,         &flags),
        zr::ArrayRow(ZRS_STMT_DEFAULT,            &deviate->defaults, &defaults, &deviate->defaultCount),
        zr::ArrayRow(ZRS_STMT_MUST,               &deviate->musts,    &musts,    &deviate->mustCount),
        zr::UniqueRow(ZRS_STMT_UNITS,             &deviate->units),
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &deviate->extInsts, &extInsts, &deviate->extInstCount),
    };
    // clang-format on
    uint32_t status = zr::ParseRows(module, element, ZRS_STMT_DEVIATE, rows);
    deviate->flags = PropertyFlags(flags);
    return status;
}

uint32_t ZRS_LOADER_ParseDeviateDelete(ZrMod *module, xmlNode *element,
                                       uint32_t /*parentStatement*/, void *destination)
{
    auto *deviate = static_cast<ZrsDeviate *>(destination);
    uint16_t defaults = 0;
    uint16_t musts = 0;
    uint16_t extInsts = 0;
    // clang-format off
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_DEFAULT,            &deviate->defaults, &defaults, &deviate->defaultCount),
        zr::ArrayRow(ZRS_STMT_MUST,               &deviate->musts,    &musts,    &deviate->mustCount),
        zr::UniqueRow(ZRS_STMT_UNITS,             &deviate->units),
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &deviate->extInsts, &extInsts, &deviate->extInstCount),
    };
    // clang-format on
    return zr::ParseRows(module, element, ZRS_STMT_DEVIATE, rows);
}

uint32_t ZRS_LOADER_ParseDeviateReplace(ZrMod *module, xmlNode *element,
                                        uint32_t /*parentStatement*/, void *destination)
{
    auto *deviate = static_cast<ZrsDeviate *>(destination);
    deviate->type = zr::New<ZrtRealType>();
    if (deviate->type == nullptr)
        return ZR_ERR_NO_MEMORY;
    uint32_t flags = 0;
    uint16_t defaults = 0;
    // clang-format off
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_CONFIG,    &flags),
        zr::UniqueRow(ZRS_STMT_MANDATORY, &flags),
        zr::ArrayRow(ZRS_STMT_DEFAULT,    &deviate->defaults, &defaults, &deviate->defaultCount),
        zr::UniqueRow(ZRS_STMT_TYPE,      deviate->type),
        zr::UniqueRow(ZRS_STMT_UNITS,     &deviate->units),
    };
    // clang-format on
    uint32_t status = zr::ParseRows(module, element, ZRS_STMT_DEVIATE, rows);
    deviate->flags = PropertyFlags(flags);
    if (ZRT_TYPE_IsInvalidType(deviate->type) != 0) { // no "type": nothing is to be replaced
        ZRT_TYPE_DestroyZrtRealType(module->ctx, deviate->type);
        deviate->type = nullptr;
    }
    return status;
}
