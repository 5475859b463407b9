// The restrictions that number names: the enums of an enumeration and the bits of a bits type
// (RFC 7950, sections 9.6.4 and 9.7.4).
#include <algorithm>

#include "foundation/text.h"
#include "loader/statements.h"
#include "loader/type_fill.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/xml.h"

namespace {

// Kept: an enum may not be given either end of the 32-bit range, and a bit not its last position.
constexpr int64_t kMinEnumValue = int64_t{INT32_MIN} + 1;
constexpr int64_t kMaxEnumValue = int64_t{INT32_MAX} - 1;
constexpr uint64_t kMaxBitPosition = uint64_t{UINT32_MAX} - 1;

bool EndsAfterBlanks(const char *text)
{
    return *ZR_UTL_ConsumeAllSpaceChar(text) == '\0';
}

uint32_t InternName(ZrMod *module, const xmlNode *element, const char *&nameOut)
{
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    nameOut = ZR_DICT_Insert(&module->ctx->dict, name);
    return nameOut != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

// Gives the items without a number of their own the next free one, in document order. The next is
// one above the greatest so far; `last` is the greatest that the number's type can hold.
template <typename Item, typename Number>
uint32_t AssignNumbers(Item *items, uint32_t count, const uint8_t *explicitFlags,
                       Number Item::*number, int64_t last)
{
    int64_t next = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (explicitFlags[i] == 0) {
            if (next > last)
                return ZR_ERR_INVALID;
            items[i].*number = static_cast<Number>(next);
        }
        next = std::max(next, int64_t{items[i].*number} + 1);
    }
    return ZR_OK;
}

uint8_t *NewFlags(uint32_t count)
{
    return zr::New<uint8_t>(count);
}

} // namespace

uint32_t ZRT_LOADER_FillOneConsSegEnum(ZrMod *module, xmlNode *element, void *item,
                                       uint8_t *isExplicit)
{
    auto *entry = static_cast<ZrtEnumItem *>(item);
    const char *text = ZRT_LOADER_GetMatchChildFirstMatchedValStr(element, "value");
    if (text != nullptr) {
        int64_t value = 0;
        const char *end = nullptr;
        if (ZR_UTL_ReadInputStrAsSignedInteger(text, &end, 0, &value) != ZR_OK ||
            !EndsAfterBlanks(end) || value < kMinEnumValue || value > kMaxEnumValue)
            return ZR_ERR_INVALID;
        entry->value = static_cast<int32_t>(value);
        *isExplicit = 1;
    }
    return InternName(module, element, entry->name);
}

uint32_t ZRT_LOADER_FillOneConsSegBit(ZrMod *module, xmlNode *element, void *item,
                                      uint8_t *isExplicit)
{
    auto *entry = static_cast<ZrtBitItem *>(item);
    const char *text = ZRT_LOADER_GetMatchChildFirstMatchedValStr(element, "position");
    if (text != nullptr) {
        uint64_t position = 0;
        const char *end = nullptr;
        if (ZR_UTL_ReadInputStrAsUnsignedInteger(text, &end, 0, &position) != ZR_OK ||
            !EndsAfterBlanks(end) || position > kMaxBitPosition)
            return ZR_ERR_INVALID;
        entry->position = static_cast<uint32_t>(position);
        *isExplicit = 1;
    }
    return InternName(module, element, entry->name);
}

uint32_t ZR_LOADER_FillDescWithAllEnum(ZrMod *module, ZrtConsEnum *body, xmlNode *element)
{
    body->descriptions = zr::New<const char *>(body->count);
    if (body->descriptions == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZrsParseFunc parse = ZRS_LOADER_GetStmtParseFunc(ZRS_STMT_DESCRIPTION);
    uint32_t index = 0;
    for (xmlNode *child = element->children; child != nullptr && index < body->count;
         child = child->next) {
        if (!zr::HasTypeMark(child, zr::TypeMarkOf(ZRT_CONS_ENUM)))
            continue;
        const char **description = &body->descriptions[index++];
        xmlNode *statement = zr::FirstChildNamed(child, "description");
        if (statement == nullptr || parse == nullptr)
            continue;
        uint32_t status = parse(module, statement, ZRS_STMT_ENUM, description);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRT_LOADER_FillConsDataAndAllEnumSeg(ZrMod *module, ZrtRealType *, void *body,
                                              xmlNode *element, uint32_t count)
{
    auto *enums = static_cast<ZrtConsEnum *>(body);
    zr::Owned<uint8_t> flags(NewFlags(count));
    if (!flags)
        return ZR_ERR_NO_MEMORY;
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtEnumItem), zr::TypeMarkOf(ZRT_CONS_ENUM),
                             ZRT_LOADER_FillOneConsSegEnum);
    uint32_t status =
        ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler, enums->items, flags.get());
    if (status == ZR_OK && (module->ctx->flags & ZR_CTX_KEEP_DESCRIPTIONS) != 0)
        status = ZR_LOADER_FillDescWithAllEnum(module, enums, element);
    if (status != ZR_OK)
        return status;
    return AssignNumbers(enums->items, count, flags.get(), &ZrtEnumItem::value, INT32_MAX);
}

uint32_t ZRT_LOADER_FillConsDataAndAllBitSeg(ZrMod *module, ZrtRealType *, void *body,
                                             xmlNode *element, uint32_t count)
{
    auto *bits = static_cast<ZrtConsBit *>(body);
    zr::Owned<uint8_t> flags(NewFlags(count));
    if (!flags)
        return ZR_ERR_NO_MEMORY;
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtBitItem), zr::TypeMarkOf(ZRT_CONS_BIT),
                             ZRT_LOADER_FillOneConsSegBit);
    uint32_t status =
        ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler, bits->items, flags.get());
    if (status != ZR_OK)
        return status;
    return AssignNumbers(bits->items, count, flags.get(), &ZrtBitItem::position, UINT32_MAX);
}
