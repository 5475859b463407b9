// SPDX-License-Identifier: Apache-2.0
#include "types/default_checks.h"

#include <cstring>
#include <iterator>
#include <string_view>

#include "foundation/array.h"
#include "foundation/text.h"
#include "platform/strings.h"
#include "types/constraints.h"
#include "types/range.h"

namespace {

bool IsBase64Char(char ch)
{
    return zr::IsLetter(ch) || zr::IsDigit(ch) || ch == '+' || ch == '/';
}

// The text without the blanks around it.
std::string_view TrimBlanks(const char *text)
{
    std::string_view rest(ZR_UTL_ConsumeAllSpaceChar(text));
    while (!rest.empty() && zr::IsBlank(rest.back()))
        rest.remove_suffix(1);
    return rest;
}

// Counts the octets of base64 text (RFC 4648, section 4); false when it is none. Which characters
// are let through: docs/oddities.md.
bool MeasureBase64(std::string_view text, uint32_t &lengthOut)
{
    if (text.size() % 4 != 0)
        return false;
    uint32_t padding = 0;
    for (char ch : text) {
        if (ch == '=')
            ++padding;
        else if (padding != 0 && IsBase64Char(ch))
            return false;
        if (padding > 2)
            return false;
    }
    lengthOut = static_cast<uint32_t>(text.size() / 4 * 3 - padding);
    return true;
}

} // namespace

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictBinary(uint32_t, uint32_t inputKind,
                                                      const void *value, ZrtValidateCtx *validation)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    if (text == nullptr || !MeasureBase64(TrimBlanks(text), validation->binaryLength))
        return ZR_ERR_VALUE_BINARY;
    zr::RecordFullLength(validation);
    return ZR_OK;
}

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictBoolean(uint32_t, uint32_t inputKind,
                                                       const void *value, ZrtValidateCtx *)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    bool isBoolean =
        text != nullptr && (std::strcmp(text, "false") == 0 || std::strcmp(text, "true") == 0);
    return isBoolean ? ZR_OK : ZR_ERR_VALUE_BOOLEAN;
}

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64(uint32_t, uint32_t inputKind,
                                                         const void *value,
                                                         ZrtValidateCtx *validation)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    int64_t number = 0;
    if (text == nullptr || validation->fractionDigits == 0 ||
        ZRT_CONS_ConvertValStrToDecimal64PowerInteger(text, validation->fractionDigits, &number) !=
            ZR_OK)
        return ZR_ERR_VALUE_RANGE;
    validation->value = {static_cast<uint64_t>(number), static_cast<uint64_t>(number),
                         ZRT_SEG_SIGNED};
    // "min" and "max" of a type that is derived from this one mean its whole range.
    ZrtGenericSeg bounds = {};
    ZRT_CONS_GetBasedIntegerMinMaxVal(ZRT_TYPE_INT64, &bounds);
    zr::RecordBounds(validation, bounds);
    return ZR_OK;
}

uint32_t ZRT_CONS_CheckValStrAgainstDefRestrictEmpty(uint32_t, uint32_t inputKind,
                                                     const void *value, ZrtValidateCtx *)
{
    const char *text = ZRT_TYPE_GetInputValueAsSimpleStr(inputKind, value);
    return text == nullptr || *text == '\0' ? ZR_OK : ZR_ERR_VALUE_EMPTY;
}

namespace {

struct DefaultRow {
    ZrtBuiltInType type;
    ZrtDefaultCheckFunc check;
};

// clang-format off
constexpr DefaultRow kDefaultChecks[] = {
    {ZRT_TYPE_DERIVED,             nullptr},
    {ZRT_TYPE_BINARY,              ZRT_CONS_CheckValStrAgainstDefRestrictBinary},
    {ZRT_TYPE_BITS,                nullptr},
    {ZRT_TYPE_BOOLEAN,             ZRT_CONS_CheckValStrAgainstDefRestrictBoolean},
    {ZRT_TYPE_DECIMAL64,           ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64},
    {ZRT_TYPE_EMPTY,               ZRT_CONS_CheckValStrAgainstDefRestrictEmpty},
    {ZRT_TYPE_ENUMERATION,         nullptr},
    {ZRT_TYPE_IDENTITYREF,         nullptr},
    {ZRT_TYPE_INSTANCE_IDENTIFIER, nullptr},
    {ZRT_TYPE_INT8,                ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_INT16,               ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_INT32,               ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_INT64,               ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_LEAFREF,             nullptr},
    {ZRT_TYPE_STRING,              ZRT_CONS_CheckValStrAgainstDefRestrictLength},
    {ZRT_TYPE_UINT8,               ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_UINT16,              ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_UINT32,              ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_UINT64,              ZRT_CONS_CheckValStrAgainstDefRestrictRange},
    {ZRT_TYPE_UNION,               nullptr},
};
// clang-format on
static_assert(zr::RowsInOrder(kDefaultChecks, &DefaultRow::type, ZRT_TYPE_DERIVED, ZRT_TYPE_NONE));

} // namespace

ZrtDefaultCheckFunc ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType)
{
    return baseType < std::size(kDefaultChecks) ? kDefaultChecks[baseType].check : nullptr;
}
