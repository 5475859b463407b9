// The restrictions of numbers and text: fraction digits, ranges, lengths and patterns.
#include <cstring>

#include "foundation/text.h"
#include "loader/type_fill.h"
#include "model/module_record.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "types/range_parse.h"

namespace {

constexpr uint64_t kMaxFractionDigits = 18;

bool IsAnchored(const char *pattern, size_t length)
{
    return length > 1 && pattern[0] == '^' && pattern[length - 1] == '$';
}

// Patterns match whole values anyway, so a pair of anchors around one says nothing; libxml2 would
// take them for characters.
const char *InternPattern(ZrDict *dict, const char *pattern)
{
    size_t length = std::strlen(pattern);
    if (!IsAnchored(pattern, length))
        return ZR_DICT_Insert(dict, pattern);
    zr::ScopedBlock<char> inner(static_cast<char *>(zr::AllocZeroed(length - 1)));
    if (!inner)
        return nullptr;
    std::memcpy(inner.get(), pattern + 1, length - 2);
    return ZR_DICT_Insert(dict, inner.get());
}

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllFractionSeg(ZrMod *, ZrtRealType *, void *body,
                                                  xmlNode *element, uint32_t)
{
    const char *text = zr::MarkedChildArgument(element, ZRT_CONS_FRACTION);
    uint64_t digits = 0;
    // Kept: what follows the number is not looked at.
    if (text == nullptr ||
        ZR_UTL_ReadInputStrAsUnsignedInteger(text, nullptr, 0, &digits) != ZR_OK || digits < 1 ||
        digits > kMaxFractionDigits)
        return ZR_ERR_INVALID;
    static_cast<ZrtConsFraction *>(body)->fractionDigits = static_cast<uint8_t>(digits);
    return ZR_OK;
}

uint32_t ZRT_LOADER_FillConsDataAndAllLengthSeg(ZrMod *, ZrtRealType *type, void *body,
                                                xmlNode *element, uint32_t)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_LENGTH);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseLengthInto(type, static_cast<ZrtConsRange *>(body), expression);
}

uint32_t ZRT_LOADER_FillConsDataAndAllRangeSeg(ZrMod *, ZrtRealType *type, void *body,
                                               xmlNode *element, uint32_t)
{
    const char *expression = zr::MarkedChildArgument(element, ZRT_CONS_RANGE);
    if (expression == nullptr)
        return ZR_ERR_INVALID;
    return zr::ParseRangeInto(type, static_cast<ZrtConsRange *>(body), expression);
}

uint32_t ZRT_LOADER_FillOneConsSegPattern(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    auto *entry = static_cast<ZrtPatternItem *>(item);
    const char *pattern = ZR_XML_GetFirstPropertyValue(element);
    if (pattern == nullptr)
        return ZR_ERR_INVALID;
    entry->pattern = InternPattern(&module->ctx->dict, pattern);
    // "invert-match" is the only modifier there is, so that its word is not read.
    entry->invertMatch = zr::FirstChildNamed(element, "modifier") != nullptr;
    return entry->pattern != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillConsDataAndAllPatternSeg(ZrMod *module, ZrtRealType *, void *body,
                                                 xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtPatternItem),
                             zr::TypeMarkOf(ZRT_CONS_PATTERN), ZRT_LOADER_FillOneConsSegPattern);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsPattern *>(body)->items, nullptr);
}
