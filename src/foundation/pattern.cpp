#include "foundation/pattern.h"

#include <libxml/xmlerror.h>

namespace {

// A template, because libxml2's releases differ in whether the error is const.
template <typename Error> void Ignore(void *, Error) {}

// Keeps libxml2 from printing what it thinks of an expression. Its error handlers belong to the
// thread, so other threads keep theirs.
class QuietXml {
public:
    QuietXml() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(nullptr, Ignore);
    }
    ~QuietXml() { xmlSetStructuredErrorFunc(context_, handler_); }
    QuietXml(const QuietXml &) = delete;
    QuietXml &operator=(const QuietXml &) = delete;

private:
    xmlStructuredErrorFunc handler_;
    void *context_;
};

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

} // namespace

namespace zr {

xmlRegexp *CompilePattern(const char *pattern)
{
    QuietXml quiet;
    return xmlRegexpCompile(AsXml(pattern));
}

bool MatchesCompiled(xmlRegexp *compiled, const char *str)
{
    QuietXml quiet;
    return xmlRegexpExec(compiled, AsXml(str)) == 1;
}

} // namespace zr

uint32_t ZR_UTL_MatchStrWithPattern(const char *str, const char *pattern)
{
    if (str == nullptr || pattern == nullptr)
        return ZR_ERR_INVALID;
    xmlRegexp *compiled = zr::CompilePattern(pattern);
    if (compiled == nullptr)
        return ZR_ERR_INVALID;
    bool matches = zr::MatchesCompiled(compiled, str);
    xmlRegFreeRegexp(compiled);
    return matches ? ZR_OK : ZR_ERR_INVALID;
}
