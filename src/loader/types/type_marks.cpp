// SPDX-License-Identifier: Apache-2.0
// Which children of a type statement are restrictions, and of which kind.
#include <cstring>
#include <iterator>

#include "loader/statements/arguments.h"
#include "loader/statements/statements.h"
#include "loader/types/type_fill.h"
#include "platform/xml.h"

namespace {

struct Restriction {
    uint32_t kind;
    uint32_t statement;
    uint32_t mark;
};

// clang-format off
constexpr Restriction kRestrictions[] = {
    // kind              statement                 mark
    {ZRT_CONS_DERIVED,  ZRS_STMT_UNKNOWN,         0}, // the type's name itself, not a child
    {ZRT_CONS_BASE,     ZRS_STMT_BASE,            ZRT_MARK_BASE},
    {ZRT_CONS_BIT,      ZRS_STMT_BIT,             ZRT_MARK_BIT},
    {ZRT_CONS_ENUM,     ZRS_STMT_ENUM,            ZRT_MARK_ENUM},
    {ZRT_CONS_FRACTION, ZRS_STMT_FRACTION_DIGITS, ZRT_MARK_FRACTION},
    {ZRT_CONS_LENGTH,   ZRS_STMT_LENGTH,          ZRT_MARK_LENGTH},
    {ZRT_CONS_PATH,     ZRS_STMT_PATH,            ZRT_MARK_PATH},
    {ZRT_CONS_PATTERN,  ZRS_STMT_PATTERN,         ZRT_MARK_PATTERN},
    {ZRT_CONS_RANGE,    ZRS_STMT_RANGE,           ZRT_MARK_RANGE},
    {ZRT_CONS_UNION,    ZRS_STMT_TYPE,            ZRT_MARK_UNION},
};
// clang-format on

consteval bool KindsStandInOrder()
{
    for (uint32_t i = 0; i < std::size(kRestrictions); ++i) {
        if (kRestrictions[i].kind != i)
            return false;
    }
    return std::size(kRestrictions) == ZRT_CONS_KIND_COUNT;
}
static_assert(KindsStandInOrder());

// The row of the restriction that a child is, or null.
const Restriction *FindRestriction(const xmlNode *child)
{
    if (child->type != XML_ELEMENT_NODE)
        return nullptr;
    uint32_t statement = ZRS_LOADER_GetStmtByKeyword(zr::LocalName(child));
    if (statement == ZRS_STMT_UNKNOWN)
        return nullptr;
    // An extension may use the same words for statements of its own.
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(child);
    if (ns != nullptr && std::strcmp(ns, zr::kYinNamespace) != 0)
        return nullptr;
    for (const Restriction &row : kRestrictions)
        if (row.statement == statement)
            return &row;
    return nullptr;
}

} // namespace

uint32_t zr::TypeMarkOf(uint32_t kind)
{
    return kind < std::size(kRestrictions) ? kRestrictions[kind].mark : 0;
}

bool zr::HasTypeMark(const xmlNode *element, uint32_t mark)
{
    return (MarksOf(element) & mark) != 0;
}

uint32_t zr::CountAndMarkRestrictions(xmlNode *element, ZrtTypeSubElemCount *counters)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        const Restriction *row = FindRestriction(child);
        if (row == nullptr)
            continue;
        uint16_t &counter = counters->counts[row->kind];
        if (counter == UINT16_MAX)
            return ZR_ERR_INVALID;
        ++counter;
        zr::AddMark(child, row->mark);
        if (counter == 1)
            ++counters->counts[ZRT_CONS_KIND_COUNT];
    }
    return ZR_OK;
}

const char *zr::MarkedChildArgument(const xmlNode *element, uint32_t kind)
{
    return ZR_XML_GetFirstPropertyValue(
        ZR_XML_GetFirstChildNodeWithPriVal(element, TypeMarkOf(kind)));
}

const char *ZRT_LOADER_GetMatchChildFirstMatchedValStr(const xmlNode *element, const char *name)
{
    if (element == nullptr || name == nullptr)
        return nullptr;
    return zr::ArgumentOfChild(element, name);
}

// The walk over the children of one kind.

void ZRT_LOADER_InitSegFiller(ZrtSegFiller *filler, uint32_t itemCount, uint32_t itemSize,
                              uint32_t mark, ZrtItemLoadFunc loadItem)
{
    *filler = {itemCount, itemSize, mark, loadItem};
}

uint32_t ZRT_LOADER_FillTypeConstraintSeg(ZrMod *module, xmlNode *element,
                                          const ZrtSegFiller *filler, void *items,
                                          uint8_t *explicitFlags)
{
    auto *item = static_cast<unsigned char *>(items);
    uint32_t index = 0;
    for (xmlNode *child = element->children; child != nullptr && index < filler->itemCount;
         child = child->next) {
        if (!zr::HasTypeMark(child, filler->mark))
            continue;
        uint8_t *isExplicit = explicitFlags != nullptr ? explicitFlags + index : nullptr;
        uint32_t status = filler->loadItem(module, child, item, isExplicit);
        if (status != ZR_OK)
            return status;
        item += filler->itemSize;
        ++index;
    }
    return ZR_OK;
}
