#include "foundation/pattern.h"

#include "platform/xml_errors.h"

namespace {

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

} // namespace

zr::Match zr::MatchPattern(const char *str, const char *pattern)
{
    bool outOfMemory = false;
    xmlRegexp *compiled = CompilePattern(pattern, &outOfMemory);
    if (compiled == nullptr)
        return outOfMemory ? Match::Undecided : Match::No;
    Match match = MatchCompiled(compiled, str);
    xmlRegFreeRegexp(compiled);
    return match;
}

xmlRegexp *zr::CompilePattern(const char *pattern, bool *outOfMemory)
{
    XmlErrors errors;
    xmlRegexp *compiled = xmlRegexpCompile(AsXml(pattern));
    *outOfMemory = errors.outOfMemory();
    if (!*outOfMemory)
        return compiled;
    xmlRegFreeRegexp(compiled);
    return nullptr;
}

zr::Match zr::MatchCompiled(xmlRegexp *compiled, const char *str)
{
    // 1 for a match, 0 for none, less where the matcher ended without knowing.
    XmlErrors errors;
    int result = xmlRegexpExec(compiled, AsXml(str));
    if (errors.outOfMemory() || result < 0)
        return Match::Undecided;
    return result == 1 ? Match::Yes : Match::No;
}

uint32_t ZR_UTL_MatchStrWithPattern(const char *str, const char *pattern)
{
    if (str == nullptr || pattern == nullptr)
        return ZR_ERR_INVALID;
    return zr::MatchPattern(str, pattern) == zr::Match::Yes ? ZR_OK : ZR_ERR_INVALID;
}
