// What can be seen of statements before they are expanded.
#include "yang/check/checker.h"
#include "yang/xpath/expression.h"

namespace zr::yang {

namespace {

using K = Keyword;

// Reports prefixes that are not known.
class PrefixCheck final : public XPathVisitor {
public:
    PrefixCheck(const Statement &statement, Scopes &scopes) : statement_(statement), scopes_(scopes)
    {
    }
    void Name(const XPathToken &token, bool) override
    {
        QName name = SplitName(token.text);
        if (!name.prefix.empty())
            scopes_.FindModule(name.prefix, statement_);
    }

private:
    const Statement &statement_;
    Scopes &scopes_;
};

} // namespace

void Checker::CheckCondition(const Statement &statement)
{
    PrefixCheck prefixes(statement, scopes_);
    XPathFault fault = ReadXPath(statement.argument, prefixes);
    if (fault.what == nullptr)
        return;
    bool hasText = !fault.text.empty();
    Error(statement, ZR_YANG_CODE_XPATH,
          {"bad expression \"", statement.argument, "\": ", fault.what, hasText ? " \"" : "",
           fault.text, hasText ? "\"" : ""});
}

// The default of a typedef, or the one that it inherits, is to be one of its values (RFC 7950,
// section 7.3.4).
void Checker::CheckTypedefDefault(const Statement &statement)
{
    const Type *type = TypeIn(statement);
    if (type == nullptr)
        return;
    const Statement *value = SubStatement(statement, K::Default);
    if (value != nullptr)
        CheckValue(*type, *value);
    else
        CheckInheritedDefault(statement, *type);
}

void Checker::CheckStatements(Unit &unit)
{
    for (Statement *at = unit.root; at != nullptr; at = NextInWalk(*unit.root, *at)) {
        switch (at->keyword) {
        case K::Must:
        case K::When:
        case K::Path:
            CheckCondition(*at);
            break;
        case K::Typedef:
            CheckTypedefDefault(*at);
            break;
        default:
            break;
        }
    }
}

} // namespace zr::yang
