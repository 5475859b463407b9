// SPDX-License-Identifier: Apache-2.0
#include "foundation/pattern.h"

#include "platform/memory.h"
#include "platform/xml.h"

namespace {

using OwnedPattern = zr::Owned<xmlRegexp, xmlRegFreeRegexp>;

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

// Character classes inside each other at most, "[a-z-[aeiou]]". libxml2 calls itself for each, with
// no end but that of the stack.
constexpr uint32_t kMaxClassNesting = 64;

bool NestsClassesTooDeep(const char *pattern)
{
    uint32_t depth = 0;
    for (const char *at = pattern; *at != '\0'; ++at) {
        if (*at == '\\' && at[1] != '\0')
            ++at; // an escaped character opens and closes nothing
        else if (*at == '[' && ++depth > kMaxClassNesting)
            return true;
        else if (*at == ']' && depth > 0)
            --depth;
    }
    return false;
}

// Null for an expression that does not compile.
xmlRegexp *Compile(const char *pattern)
{
    return NestsClassesTooDeep(pattern) ? nullptr : xmlRegexpCompile(AsXml(pattern));
}

} // namespace

zr::Match zr::MatchPattern(const char *str, const char *pattern)
{
    bool outOfMemory = false;
    OwnedPattern compiled(CompilePattern(pattern, &outOfMemory));
    if (!compiled)
        return outOfMemory ? Match::Undecided : Match::No;
    return MatchCompiled(compiled.get(), str);
}

xmlRegexp *zr::CompilePattern(const char *pattern, bool *outOfMemory)
{
    XmlErrors errors;
    OwnedPattern compiled(Compile(pattern));
    *outOfMemory = errors.outOfMemory();
    return *outOfMemory ? nullptr : compiled.release();
}

zr::Match zr::MatchCompiled(xmlRegexp *compiled, const char *str)
{
    XmlErrors errors;
    constexpr int kMatched = 1;
    int result = xmlRegexpExec(compiled, AsXml(str));
    if (errors.outOfMemory() || result < 0)
        return Match::Undecided; // the matcher ended without knowing
    return result == kMatched ? Match::Yes : Match::No;
}

uint32_t ZR_UTL_MatchStrWithPattern(const char *str, const char *pattern)
{
    if (str == nullptr || pattern == nullptr)
        return ZR_ERR_INVALID;
    return zr::MatchPattern(str, pattern) == zr::Match::Yes ? ZR_OK : ZR_ERR_INVALID;
}
