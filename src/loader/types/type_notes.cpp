// SPDX-License-Identifier: Apache-2.0
// What the parts of a type say beside themselves: "error-message" and "error-app-tag" of
// restrictions (RFC 7950, sections 7.5.4.1 and 7.5.4.2), "if-feature" of bits and enums
// (section 7.20.2).
#include "types/type_notes.h"

#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "loader/types/type_fill.h"
#include "model/module_records.h"

namespace {

bool IsStatement(const xmlNode *node, uint32_t statement)
{
    return node->type == XML_ELEMENT_NODE && ZRS_LOADER_GetXmlNodeYangStmt(node) == statement;
}

uint32_t CountChildren(const xmlNode *element, uint32_t statement)
{
    uint32_t count = 0;
    for (const xmlNode *child = element->children; child != nullptr; child = child->next)
        count += IsStatement(child, statement);
    return count;
}

// A restriction has one note for its message and its tag.
uint32_t CountErrors(const xmlNode *restriction)
{
    return CountChildren(restriction, ZRS_STMT_ERROR_MESSAGE) +
               CountChildren(restriction, ZRS_STMT_ERROR_APP_TAG) !=
           0;
}

uint32_t ReadErrors(ZrMod *module, xmlNode *restriction, uint32_t statement, ZrtTypeNote *note)
{
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_ERROR_MESSAGE, &note->texts[ZRT_NOTE_ERROR_MESSAGE]),
        zr::UniqueRow(ZRS_STMT_ERROR_APP_TAG, &note->texts[ZRT_NOTE_ERROR_APP_TAG]),
    };
    return zr::ParseRows(module, restriction, statement, rows);
}

// A bit or enum has a note for each feature.
uint32_t CountConditions(const xmlNode *name)
{
    return CountChildren(name, ZRS_STMT_IF_FEATURE);
}

uint32_t ReadConditions(ZrMod *module, xmlNode *name, uint32_t statement, ZrtTypeNote *notes)
{
    uint32_t status = ZR_OK;
    for (xmlNode *child = name->children; child != nullptr && status == ZR_OK;
         child = child->next) {
        if (!IsStatement(child, ZRS_STMT_IF_FEATURE))
            continue;
        ZrsIfFeature condition = {};
        status = ZRS_LOADER_ParseIfFeature(module, child, statement, &condition);
        notes->texts[ZRT_NOTE_MODULE] = condition.moduleName;
        notes->texts[ZRT_NOTE_FEATURE] = condition.featureName;
        ++notes;
    }
    return status;
}

struct NotedKind {
    uint32_t kind;
    uint32_t statement;
    bool isRepeated; // else the first child alone is read
    uint32_t (*count)(const xmlNode *element);
    uint32_t (*read)(ZrMod *module, xmlNode *element, uint32_t statement, ZrtTypeNote *notes);
};

// clang-format off
constexpr NotedKind kNotedKinds[] = {
    // kind             statement         repeated  notes of one     reader
    {ZRT_CONS_BIT,     ZRS_STMT_BIT,     true,     CountConditions, ReadConditions},
    {ZRT_CONS_ENUM,    ZRS_STMT_ENUM,    true,     CountConditions, ReadConditions},
    {ZRT_CONS_LENGTH,  ZRS_STMT_LENGTH,  false,    CountErrors,     ReadErrors},
    {ZRT_CONS_PATTERN, ZRS_STMT_PATTERN, true,     CountErrors,     ReadErrors},
    {ZRT_CONS_RANGE,   ZRS_STMT_RANGE,   false,    CountErrors,     ReadErrors},
};
// clang-format on

// Calls `work(row, index, child, count)` for each part that has notes, until it fails.
template <typename Work> uint32_t ForEachNoted(const xmlNode *element, Work work)
{
    uint32_t status = ZR_OK;
    for (const NotedKind &row : kNotedKinds) {
        uint16_t index = 0;
        for (xmlNode *child = element->children; child != nullptr && status == ZR_OK;
             child = child->next) {
            if (!zr::HasTypeMark(child, zr::TypeMarkOf(row.kind)))
                continue;
            uint32_t count = index == 0 || row.isRepeated ? row.count(child) : 0;
            if (count != 0)
                status = work(row, index, child, count);
            ++index;
        }
    }
    return status;
}

} // namespace

uint32_t zr::CountTypeNotes(const ZrMod *module, const xmlNode *element)
{
    uint32_t total = 0;
    auto add = [&](const NotedKind &, uint16_t, const xmlNode *, uint32_t count) -> uint32_t {
        total += count;
        return ZR_OK;
    };
    if (IsStandard(module->ctx))
        ForEachNoted(element, add);
    return total;
}

uint32_t zr::FillTypeNotes(ZrMod *module, ZrtRealType *type, xmlNode *element, uint32_t count)
{
    if (count > UINT16_MAX)
        return ZR_ERR_INVALID;
    ZrtTypeNotes *all = CreateNotes(type, count);
    if (all == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZrtTypeNote *next = all->items;
    auto read = [&](const NotedKind &row, uint16_t index, xmlNode *child, uint32_t ofChild) {
        ZrtTypeNote *notes = next;
        for (; next != notes + ofChild; ++next) {
            next->kind = static_cast<uint16_t>(row.kind);
            next->index = index;
        }
        return row.read(module, child, row.statement, notes);
    };
    return ForEachNoted(element, read);
}
