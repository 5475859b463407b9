// SPDX-License-Identifier: Apache-2.0
// The statements that set one property of a node: flag bits, key, condition texts, musts.
#include <string_view>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "model/node_record.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members/condition_records.h"

namespace {

struct FlagValue {
    uint32_t statement;
    std::string_view value;
    uint32_t bits; // ORed into the owner's flags
};

// clang-format off
constexpr FlagValue kFlagValues[] = {
    // statement             value          bits
    {ZRS_STMT_CONFIG,     "true",       ZRS_FLAG_CONFIG_GIVEN | ZRS_FLAG_CONFIG_TRUE},
    {ZRS_STMT_CONFIG,     "false",      ZRS_FLAG_CONFIG_GIVEN | ZRS_FLAG_CONFIG_FALSE},
    {ZRS_STMT_MANDATORY,  "true",       ZRS_FLAG_MANDATORY_TRUE},
    {ZRS_STMT_MANDATORY,  "false",      ZRS_FLAG_MANDATORY_FALSE},
    {ZRS_STMT_ORDERED_BY, "system",     0},
    {ZRS_STMT_ORDERED_BY, "user",       ZRS_FLAG_ORDERED_BY_USER},
    {ZRS_STMT_STATUS,     "current",    0},
    {ZRS_STMT_STATUS,     "deprecated", ZRS_FLAG_DEPRECATED},
    {ZRS_STMT_STATUS,     "obsolete",   ZRS_FLAG_OBSOLETE},
};
// clang-format on

const FlagValue *FindFlagValue(uint32_t statement, std::string_view value)
{
    for (const FlagValue &row : kFlagValues)
        if (row.statement == statement && row.value == value)
            return &row;
    return nullptr;
}

uint32_t ParseFlag(ZrMod *module, const xmlNode *element, uint32_t statement, void *destination)
{
    const char *argument = zr::RequireArgument(module, element, statement);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    const FlagValue *row = FindFlagValue(statement, argument);
    if (row == nullptr) {
        zr::RecordBadValue(module, argument, statement);
        return ZR_ERR_INVALID;
    }
    *static_cast<uint32_t *>(destination) |= row->bits;
    return ZR_OK;
}

// The condition in module-name form. One that cannot be rewritten is recorded and kept as it was
// written: it may still evaluate, and one bad condition does not keep a module out.
class Condition {
public:
    Condition(ZrMod *module, const char *written, uint32_t statement)
        : written_(written), rewritten_(ZRS_LOADER_TransPrefix2ModNameInLiteral(module, written))
    {
        if (!rewritten_)
            ZR_CTX_AddModError(module->ctx, module->name,
                               "Failed to transfer prefix to module name in statement \"%s\".",
                               ZRS_LOADER_GetKeywordByStmt(statement));
    }
    const char *text() const { return rewritten_ ? rewritten_.get() : written_; }

private:
    const char *written_;
    zr::Owned<char> rewritten_;
};

uint32_t ParseMustInto(ZrMod *module, xmlNode *element, const char *argument, ZrsMust *must)
{
    Condition condition(module, argument, ZRS_STMT_MUST);
    uint32_t status =
        ZRS_NODE_FillMust(&module->ctx->dict, must, condition.text(), nullptr, nullptr);
    if (status != ZR_OK)
        return status;
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_ERROR_MESSAGE, &must->errorMessage),
        zr::UniqueRow(ZRS_STMT_ERROR_APP_TAG, &must->errorAppTag),
    };
    return zr::ParseRows(module, element, ZRS_STMT_MUST, rows);
}

} // namespace

uint32_t ZRS_LOADER_ParseConfig(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                void *destination)
{
    return ParseFlag(module, element, ZRS_STMT_CONFIG, destination);
}

uint32_t ZRS_LOADER_ParseMandatory(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    return ParseFlag(module, element, ZRS_STMT_MANDATORY, destination);
}

uint32_t ZRS_LOADER_ParseOrderedBy(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    return ParseFlag(module, element, ZRS_STMT_ORDERED_BY, destination);
}

uint32_t ZRS_LOADER_ParseStatus(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                void *destination)
{
    return ParseFlag(module, element, ZRS_STMT_STATUS, destination);
}

// What the presence means is for people: only that there is one is kept.
uint32_t ZRS_LOADER_ParsePresence(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                  void *destination)
{
    if (ZR_XML_GetFirstPropertyValue(element) == nullptr) {
        zr::RecordBadValue(module, "", ZRS_STMT_PRESENCE);
        return ZR_ERR_INVALID;
    }
    *static_cast<uint32_t *>(destination) |= ZRS_FLAG_PRESENCE;
    return ZR_OK;
}

// The list parser uses the text while the document is open, so it is not copied.
uint32_t ZRS_LOADER_ParseKey(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                             void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_KEY);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    *static_cast<const char **>(destination) = argument;
    return ZR_OK;
}

uint32_t ZRS_LOADER_ParseWhen(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                              void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_WHEN);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    Condition condition(module, argument, ZRS_STMT_WHEN);
    return zr::KeepText(module, condition.text(), static_cast<const char **>(destination));
}

uint32_t ZRS_LOADER_ParseMust(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                              void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_MUST);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    auto *must = static_cast<ZrsMust *>(destination);
    uint32_t status = ParseMustInto(module, element, argument, must);
    if (status != ZR_OK) {
        ZRS_NODE_ClearMust(&module->ctx->dict, must);
        zr::RecordBadValue(module, argument, ZRS_STMT_MUST);
    }
    return status;
}
