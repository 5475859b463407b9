// decimal64 text as an integer scaled by ten to the power of its fraction digits.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// 0, or 22 when the text is no decimal64 of so many fraction digits (RFC 7950, section 9.3).
ZR_API uint32_t ZRT_CONS_ConvertValStrToDecimal64PowerInteger(const char *text,
                                                              uint32_t fractionDigits,
                                                              int64_t *valueOut);
}
