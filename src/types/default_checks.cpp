#include "types/default_checks.h"

#include <cstring>
#include <string_view>

#include "foundation/text.h"
#include "types/range.h"
#include "types/real_type.h"

namespace {

bool IsBase64Char(char ch)
{
    return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z') || (ch >= '0' && ch <= '9') ||
           ch == '+' || ch == '/';
}

bool IsBlank(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\n';
}

// The text without the blanks around it.
std::string_view TrimBlanks(const char *text)
{
    std::string_view rest(ZR_UTL_ConsumeAllSpaceChar(text));
    while (!rest.empty() && IsBlank(rest.back()))
        rest.remove_suffix(1);
    return rest;
}

// Counts the octets of base64 text (RFC 4648, section 4); false when it is none. Kept: characters
// of no alphabet are let through and count like letters.
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
