// SPDX-License-Identifier: Apache-2.0
// String copies, number readers and the tokenisers of names and schema paths.
//
// An identifier character is an ASCII letter, a digit, "_", "-" or "."; the rule of YANG for the
// first character of an identifier (RFC 7950, section 6.2) is enforced by IsIdentifier alone. A
// blank is a space, a tab or a line feed. New strings are the caller's, who releases them with
// zr::Free.
#pragma once

#include <cstddef>
#include <cstdint>
#include <zrschema/types.h>

namespace zr {
constexpr uint32_t kNameSize = 65;    // a name of at most 64 characters and its NUL
constexpr uint32_t kPathSize = 256;   // a file path
constexpr uint32_t kXpathSize = 3096; // a path in module-name form

inline bool IsBlank(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\n';
}

// Whether the whole text is an identifier of YANG (RFC 7950, section 6.2): identifier characters,
// of which the first is a letter or "_". Any length will do.
bool IsIdentifier(const char *text);
} // namespace zr

extern "C" {
// A copy; null when there is nothing to copy or memory runs out.
ZR_API char *ZR_UTL_StrDup(const char *str);
// A copy of the first `length` characters: null also for a length of 0 or beyond the end of `str`.
ZR_API char *ZR_UTL_StrDupWithSpecifyLength(const char *str, uint32_t length);
// A new "".
ZR_API char *ZR_UTL_CreateEmptyString(void);

// The first `ch` among the positions 0 to `limit`, both included: callers pass the remaining length
// minus one. The NUL ends the search, and is found itself only in an empty string.
// For callers outside the library.
ZR_API const char *ZR_UTL_Strnchr(const char *str, char ch, uint32_t limit);
// How often `ch` stands in the text; 0 for null.
ZR_API uint32_t ZR_UTL_CountCharNumber(const char *str, char ch);
// 1 for equal texts or two nulls, else 0.
// For callers outside the library.
ZR_API uint32_t ZR_UTL_IsNulStringEqual(const char *a, const char *b);

// Decimal numbers: white space, a sign, digits. ZR_OK; ZR_ERR_INVALID without a digit, on overflow
// or for a null argument. `endOut`, which may be null, receives the place after the last digit:
// what stands there is the caller's affair. `reserved` is not read.
ZR_API uint32_t ZR_UTL_ReadInputStrAsSignedInteger(const char *str, const char **endOut,
                                                   uint32_t reserved, int64_t *valueOut);
// The same without negative numbers: a "-" is refused.
ZR_API uint32_t ZR_UTL_ReadInputStrAsUnsignedInteger(const char *str, const char **endOut,
                                                     uint32_t reserved, uint64_t *valueOut);

// Names and path steps.

// How many identifier characters `str` begins with.
ZR_API uint32_t ZR_UTL_ConsumeIdentNameBestEffort(const char *str);
// How many identifier characters the first `length` characters of `str` end with; `*stopOut` (may
// be null) is the place just before them, which lies before `str` when all of them are.
ZR_API uint32_t ZR_UTL_ConsumeIdentNameFromTail(const char *str, uint32_t length,
                                                const char **stopOut);
// The first character that is no blank.
ZR_API const char *ZR_UTL_ConsumeAllSpaceChar(const char *str);
// One name up to "/" or the end. ZR_OK; ZR_ERR_FAILED for an empty one, ZR_ERR_INVALID when
// something else follows, ZR_ERR_OVERFLOW when it does not fit, and then `nameOut` is empty. Sizes
// are in bytes and count the NUL.
ZR_API uint32_t ZR_UTL_GetXPathNextNodeName(const char *src, char *nameOut, uint32_t nameSize);
// "name" or "prefix:name" up to "/" or the end. ZR_OK; ZR_ERR_FAILED for an empty name,
// ZR_ERR_INVALID when something else follows or the first of the two does not fit, ZR_ERR_OVERFLOW
// when the name after a prefix does not fit.
ZR_API uint32_t ZR_UTL_GetXPathNextPrefixAndNode(const char *src, char *prefixOut,
                                                 uint32_t prefixSize, char *nameOut,
                                                 uint32_t nameSize);
// The place after a run of predicates, which is "/" or the end; null when it is anything else. A
// predicate ends at its first "]", also inside a quoted literal.
ZR_API const char *ZR_UTL_SkipPredicateParis(const char *p);
// One step, "name" or "prefix:name", with its predicates: the rest of the path, which is "" or
// begins with "/", or null when the step is malformed or a name does not fit.
ZR_API const char *ZR_UTL_GetXPathNextPredicatedPrefixNode(const char *src, char *prefixOut,
                                                           uint32_t prefixSize, char *nameOut,
                                                           uint32_t nameSize);
}
