// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/entry_statements.h"

#include <cstring>

#include "foundation/context_record.h"
#include "foundation/text.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members/entry_rules.h"

namespace {

uint32_t Refuse(ZrMod *module, const char *argument, uint32_t statement)
{
    zr::RecordBadValue(module, argument, statement);
    return ZR_ERR_INVALID;
}

// A number of 32 bits, not below `least`.
bool ReadNumber(const char *text, uint32_t least, uint32_t *numberOut)
{
    uint64_t number = 0;
    const char *end = nullptr;
    if (ZR_UTL_ReadInputStrAsUnsignedInteger(text, &end, 0, &number) != ZR_OK ||
        *ZR_UTL_ConsumeAllSpaceChar(end) != '\0' || number < least || number > UINT32_MAX)
        return false;
    *numberOut = static_cast<uint32_t>(number);
    return true;
}

uint32_t ReadMinElements(ZrMod *module, const char *argument, ZrsEntryRules *rules)
{
    if ((rules->given & ZRS_ENTRY_MIN) != 0)
        return ZR_ERR_FAILED;
    rules->given |= ZRS_ENTRY_MIN;
    return ReadNumber(argument, 0, &rules->minElements)
               ? uint32_t{ZR_OK}
               : Refuse(module, argument, ZRS_STMT_MIN_ELEMENTS);
}

uint32_t ReadMaxElements(ZrMod *module, const char *argument, ZrsEntryRules *rules)
{
    if ((rules->given & ZRS_ENTRY_MAX) != 0)
        return ZR_ERR_FAILED;
    rules->given |= ZRS_ENTRY_MAX;
    bool isUnbounded = std::strcmp(argument, "unbounded") == 0;
    return isUnbounded || ReadNumber(argument, 1, &rules->maxElements)
               ? uint32_t{ZR_OK}
               : Refuse(module, argument, ZRS_STMT_MAX_ELEMENTS);
}

uint32_t Append(zr::ConditionText *out, const char *text)
{
    return ZRS_LOADER_CopyTokenIntoOutCondition(out, text,
                                                static_cast<uint32_t>(std::strlen(text)));
}

// Appends one step, "name" or "prefix:name", with its module's name; `text` moves behind it.
uint32_t AppendStep(const ZrMod *module, zr::ConditionText *out, const char *&text)
{
    uint32_t length = ZR_UTL_ConsumeIdentNameBestEffort(text);
    uint32_t status = ZR_OK;
    if (text[length] == ':') {
        status = ZRS_LOADER_AddModuleNameIntoCondition(module, out, text, length);
        text += length + 1;
        length = ZR_UTL_ConsumeIdentNameBestEffort(text);
    } else {
        status = Append(out, module->name);
    }
    if (status != ZR_OK || length == 0)
        return ZR_ERR_INVALID;
    status = Append(out, ":");
    if (status == ZR_OK)
        status = ZRS_LOADER_CopyTokenIntoOutCondition(out, text, length);
    text += length;
    return status;
}

// The descendant paths of a "unique" (RFC 7950, section 14, "unique-arg") with module names.
uint32_t QualifyUnique(const ZrMod *module, const char *argument, zr::ConditionText *out)
{
    const char *text = ZR_UTL_ConsumeAllSpaceChar(argument);
    do {
        uint32_t status = out->length != 0 ? Append(out, " ") : uint32_t{ZR_OK};
        if (status == ZR_OK)
            status = AppendStep(module, out, text);
        while (status == ZR_OK && *text == '/') {
            status = Append(out, "/");
            ++text;
            if (status == ZR_OK)
                status = AppendStep(module, out, text);
        }
        if (status != ZR_OK || (*text != '\0' && !zr::IsBlank(*text)))
            return ZR_ERR_INVALID;
        text = ZR_UTL_ConsumeAllSpaceChar(text);
    } while (*text != '\0');
    return ZR_OK;
}

uint32_t ReadUnique(ZrMod *module, const char *argument, ZrsEntryRules *rules)
{
    zr::Owned<char> buffer(zr::New<char>(zr::kMaxConditionLength + 1));
    if (!buffer)
        return ZR_ERR_NO_MEMORY;
    zr::ConditionText text = {buffer.get(), 0};
    if (QualifyUnique(module, argument, &text) != ZR_OK)
        return Refuse(module, argument, ZRS_STMT_UNIQUE);
    const char *unique = buffer.get();
    return zr::AppendUniques(&module->ctx->dict, rules, &unique, 1);
}

enum Place : uint32_t {
    kInLeafList = 0x1,
    kInList = 0x2,
    kInAdd = 0x4,
    kInDelete = 0x8,
    kInReplace = 0x10,
};

struct EntryStatement {
    uint32_t statement;
    uint32_t places; // where it may stand (RFC 7950, sections 7.7.3, 7.8.1 and 7.20.3.2)
    uint32_t (*read)(ZrMod *module, const char *argument, ZrsEntryRules *rules);
};

// clang-format off
constexpr EntryStatement kStatements[] = {
    // statement              places                                           reader
    {ZRS_STMT_MIN_ELEMENTS,  kInLeafList | kInList | kInAdd | kInReplace,      ReadMinElements},
    {ZRS_STMT_MAX_ELEMENTS,  kInLeafList | kInList | kInAdd | kInReplace,      ReadMaxElements},
    {ZRS_STMT_UNIQUE,        kInList | kInAdd | kInDelete,                     ReadUnique},
};
// clang-format on

uint32_t PlaceOf(uint32_t statement, uint32_t deviateKind)
{
    switch (deviateKind) {
    case ZRS_DEVIATE_ADD:
        return kInAdd;
    case ZRS_DEVIATE_DELETE:
        return kInDelete;
    case ZRS_DEVIATE_REPLACE:
        return kInReplace;
    default:
        return statement == ZRS_STMT_LIST ? kInList : kInLeafList;
    }
}

const EntryStatement *FindStatement(const xmlNode *element, uint32_t place)
{
    if (element->type != XML_ELEMENT_NODE)
        return nullptr;
    uint32_t statement = ZRS_LOADER_GetXmlNodeYangStmt(element);
    for (const EntryStatement &row : kStatements)
        if (row.statement == statement && (row.places & place) != 0)
            return &row;
    return nullptr;
}

uint32_t ReadStatement(ZrMod *module, const xmlNode *element, const EntryStatement &row,
                       uint32_t parentStatement, const void *owner)
{
    const char *argument = zr::RequireArgument(module, element, row.statement);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    ZrsEntryRules *rules = zr::NeedEntryRules(module->ctx, owner);
    if (rules == nullptr)
        return ZR_ERR_NO_MEMORY;
    uint32_t status = row.read(module, argument, rules);
    if (status == ZR_ERR_FAILED)
        zr::RecordRepeated(module, row.statement, parentStatement);
    return status;
}

} // namespace

uint32_t zr::ReadEntryStatements(ZrMod *module, const xmlNode *element, uint32_t statement,
                                 const void *owner, uint32_t deviateKind)
{
    if (!IsStandard(module->ctx))
        return ZR_OK;
    uint32_t place = PlaceOf(statement, deviateKind);
    uint32_t status = ZR_OK;
    for (const xmlNode *child = element->children; child != nullptr && status == ZR_OK;
         child = child->next) {
        if (const EntryStatement *row = FindStatement(child, place); row != nullptr)
            status = ReadStatement(module, child, *row, statement, owner);
    }
    return status;
}
