/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file zrpatterns.h
 * Patterns in linear time: a matcher for ZR_CTX_SetPatternMatcher(), and its functions by
 * themselves.
 *
 * A pattern (RFC 7950, section 9.4.5) is a regular expression of XML Schema (its volume of
 * datatypes, second edition, appendix F). The library turns it into one of RE2, which matches a
 * value in a time that grows with the value's length alone, whatever the value is.
 *
 *     const ZrPatternMatcher *matcher = ZR_PATTERNS_GetMatcher();
 *     ZR_CTX_SetPatternMatcher(ctx, matcher);
 *
 * Values and patterns are UTF-8. Memory comes from the C++ heap, which RE2 uses: what a compiled
 * pattern holds grows with the values that it meets, up to 8 MiB for a pattern that gives them many
 * states; some tens of KiB are usual. No exception leaves the library. It starts no threads and has
 * no state outside its compiled patterns. It prints nothing, but where memory runs out RE2 may
 * write a line to standard error, and lose what it had for the pattern at hand.
 *
 * A thread that compiles patterns needs 256 KiB of stack.
 */
#ifndef ZRPATTERNS_ZRPATTERNS_H
#define ZRPATTERNS_ZRPATTERNS_H
#include <stdint.h>
#include <zrschema/types.h>
/** @def ZR_PATTERNS_API
    Marks a function that the library exports under its own name. */
#if defined(__GNUC__)
#define ZR_PATTERNS_API __attribute__((visibility("default")))
#else
#define ZR_PATTERNS_API
#endif
#ifdef __cplusplus
extern "C" {
#endif

/** A compiled pattern; only the library sees inside. */
typedef struct ZrPattern ZrPattern;

/** What compiling returns. */
enum ZrPatternsStatus {
    ZR_PATTERNS_OK = 0,            /**< compiled */
    ZR_PATTERNS_ERR_FAULTY = 1,    /**< no regular expression of XML Schema, beyond doubt */
    ZR_PATTERNS_ERR_TOO_LARGE = 7, /**< beyond what is matched in linear time, or nested too deep */
    ZR_PATTERNS_ERR_NO_MEMORY = 12, /**< memory ran out */
    ZR_PATTERNS_ERR_INVALID = 22    /**< a null argument */
};

/**
 * The matcher that this library gives, for ZR_CTX_SetPatternMatcher().
 *
 * It refuses the patterns for which ZR_PATTERNS_Compile() returns #ZR_PATTERNS_ERR_FAULTY or
 * #ZR_PATTERNS_ERR_TOO_LARGE, which leaves them to the context's built-in matcher. A value that is
 * no text of XML, and one during whose matching memory runs out, is #ZR_PATTERN_UNDECIDED.
 *
 * @return a constant record of the library
 */
ZR_PATTERNS_API const ZrPatternMatcher *ZR_PATTERNS_GetMatcher(void);

/**
 * Compiles a pattern.
 *
 * @param pattern     NUL-terminated UTF-8
 * @param patternOut  receives the compiled pattern, to be released with ZR_PATTERNS_Free(), or null
 *                    when the status is not #ZR_PATTERNS_OK
 * @retval ZR_PATTERNS_OK             compiled
 * @retval ZR_PATTERNS_ERR_FAULTY     it is no regular expression, or one that readers of XML Schema
 *                                    take differently, such as a class with "-" in its midst; the
 *                                    blocks of `\p{Is...}` are those that XML Schema lists
 * @retval ZR_PATTERNS_ERR_TOO_LARGE  a number of repetitions above 1,000, also as the product of
 *                                    such that stand in each other; groups more than 100 deep,
 *                                    classes subtracted more than 60 deep; or more than some
 *                                    400,000 of RE2's instructions
 * @retval ZR_PATTERNS_ERR_NO_MEMORY  memory ran out
 * @retval ZR_PATTERNS_ERR_INVALID    a null argument
 */
ZR_PATTERNS_API uint32_t ZR_PATTERNS_Compile(const char *pattern, ZrPattern **patternOut);

/**
 * Tells whether a pattern matches the whole of a value. The answer takes time linear in the value's
 * length.
 *
 * @param pattern  a compiled pattern; any number of threads may use it at the same time
 * @param value    NUL-terminated UTF-8
 * @retval ZR_PATTERN_MATCH      it matches
 * @retval ZR_PATTERN_NO_MATCH   it does not
 * @retval ZR_PATTERN_UNDECIDED  a null argument; a value that is not UTF-8, or has a character that
 *                               XML does not have, such as a control character; or memory ran out
 */
ZR_PATTERNS_API uint32_t ZR_PATTERNS_Match(const ZrPattern *pattern, const char *value);

/**
 * Releases a compiled pattern, which no thread uses any more.
 *
 * @param pattern  the pattern; null is ignored
 */
ZR_PATTERNS_API void ZR_PATTERNS_Free(ZrPattern *pattern);

#ifdef __cplusplus
}
#endif
#endif
