#include "foundation/pattern.h"

#include "platform/xml_errors.h"

namespace {

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

// What a match or its failure means, beside what libxml2 reported meanwhile.
zr::Match Outcome(bool matches, const zr::XmlErrors &errors)
{
    if (errors.outOfMemory())
        return zr::Match::OutOfMemory;
    return matches ? zr::Match::Yes : zr::Match::No;
}

bool Execute(xmlRegexp *compiled, const char *str)
{
    return xmlRegexpExec(compiled, AsXml(str)) == 1;
}

} // namespace

zr::Match zr::MatchPattern(const char *str, const char *pattern)
{
    XmlErrors errors;
    xmlRegexp *compiled = xmlRegexpCompile(AsXml(pattern));
    bool matches = compiled != nullptr && Execute(compiled, str);
    xmlRegFreeRegexp(compiled);
    return Outcome(matches, errors);
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
    XmlErrors errors;
    return Outcome(Execute(compiled, str), errors);
}

uint32_t ZR_UTL_MatchStrWithPattern(const char *str, const char *pattern)
{
    if (str == nullptr || pattern == nullptr)
        return ZR_ERR_INVALID;
    return zr::MatchPattern(str, pattern) == zr::Match::Yes ? ZR_OK : ZR_ERR_INVALID;
}
