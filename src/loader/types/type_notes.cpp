// What the restrictions of a type say beside themselves: "error-message" and "error-app-tag" (RFC
// 7950, sections 7.5.4.1 and 7.5.4.2).
#include "types/type_notes.h"

#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "loader/types/type_fill.h"
#include "model/module_records.h"

namespace {

struct NotedKind {
    uint32_t kind;
    uint32_t statement;
    bool isRepeated; // else the first child alone is read
};

// clang-format off
constexpr NotedKind kNotedKinds[] = {
    // kind              statement         repeated
    {ZRT_CONS_LENGTH,  ZRS_STMT_LENGTH,  false},
    {ZRT_CONS_PATTERN, ZRS_STMT_PATTERN, true},
    {ZRT_CONS_RANGE,   ZRS_STMT_RANGE,   false},
};
// clang-format on

bool HasNote(const xmlNode *restriction)
{
    for (const xmlNode *child = restriction->children; child != nullptr; child = child->next) {
        uint32_t statement = child->type == XML_ELEMENT_NODE ? ZRS_LOADER_GetXmlNodeYangStmt(child)
                                                             : uint32_t{ZRS_STMT_UNKNOWN};
        if (statement == ZRS_STMT_ERROR_MESSAGE || statement == ZRS_STMT_ERROR_APP_TAG)
            return true;
    }
    return false;
}

// Calls `work(row, index, child)` for each restriction with a note, until it fails.
template <typename Work> uint32_t ForEachNoted(const xmlNode *element, Work work)
{
    uint32_t status = ZR_OK;
    for (const NotedKind &row : kNotedKinds) {
        uint16_t index = 0;
        for (xmlNode *child = element->children; child != nullptr && status == ZR_OK;
             child = child->next) {
            if (!zr::HasTypeMark(child, zr::TypeMarkOf(row.kind)))
                continue;
            if (HasNote(child) && (index == 0 || row.isRepeated))
                status = work(row, index, child);
            ++index;
        }
    }
    return status;
}

uint32_t ReadNote(ZrMod *module, xmlNode *restriction, uint32_t statement, ZrtTypeNote *note)
{
    ZrsSubElem rows[] = {
        zr::UniqueRow(ZRS_STMT_ERROR_MESSAGE, &note->texts[ZRT_NOTE_ERROR_MESSAGE]),
        zr::UniqueRow(ZRS_STMT_ERROR_APP_TAG, &note->texts[ZRT_NOTE_ERROR_APP_TAG]),
    };
    return zr::ParseRows(module, restriction, statement, rows);
}

} // namespace

uint32_t zr::CountTypeNotes(const ZrMod *module, const xmlNode *element)
{
    uint32_t count = 0;
    if (IsStandard(module->ctx))
        ForEachNoted(element, [&](const NotedKind &, uint16_t, const xmlNode *) -> uint32_t {
            ++count;
            return ZR_OK;
        });
    return count;
}

uint32_t zr::FillTypeNotes(ZrMod *module, ZrtRealType *type, xmlNode *element, uint32_t count)
{
    if (count > UINT16_MAX)
        return ZR_ERR_INVALID;
    ZrtTypeNotes *notes = CreateNotes(type, count);
    if (notes == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZrtTypeNote *note = notes->items;
    return ForEachNoted(element, [&](const NotedKind &row, uint16_t index, xmlNode *child) {
        note->kind = static_cast<uint16_t>(row.kind);
        note->index = index;
        return ReadNote(module, child, row.statement, note++);
    });
}
