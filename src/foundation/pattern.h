// SPDX-License-Identifier: Apache-2.0
// Regular expressions of XML Schema, the dialect of the "pattern" statement: an expression matches
// a text when it matches the whole of it. Nothing here prints or reports.
#pragma once

#include <libxml/xmlregexp.h>

#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// ZR_OK when `str` matches, else ZR_ERR_INVALID, also for an expression that does not compile. The
// expression is compiled anew each time.
// For callers outside the library.
ZR_API uint32_t ZR_UTL_MatchStrWithPattern(const char *str, const char *pattern);
}

namespace zr {

// Undecided: memory runs out, or the matcher gives up on an expression that makes it try too much.
enum class Match { Yes, No, Undecided };

// Whether the whole text matches; No for an expression that does not compile.
Match MatchPattern(const char *str, const char *pattern);

// The expression in a form that any number of threads may match texts with, to be released with
// xmlRegFreeRegexp. Its memory is libxml2's. Null when it does not compile or memory runs out;
// `*outOfMemory` tells which.
xmlRegexp *CompilePattern(const char *pattern, bool *outOfMemory);
Match MatchCompiled(xmlRegexp *compiled, const char *str);

} // namespace zr
