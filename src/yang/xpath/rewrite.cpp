// SPDX-License-Identifier: Apache-2.0
#include "yang/xpath/rewrite.h"

#include <algorithm>
#include <iterator>

#include "yang/syntax/arguments.h"
#include "yang/xpath/expression.h"

namespace zr::yang {

namespace {

// Functions that take the context node when they have no argument (XPath 1.0, section 4).
constexpr std::string_view kContextFunctions[] = {
    "local-name", "name", "namespace-uri", "normalize-space", "number", "string", "string-length",
};

bool IsIdentityFunction(std::string_view function)
{
    return function == "derived-from" || function == "derived-from-or-self";
}

// Copies the expression and changes it on the way: changes come from the left to the right.
class Rewriter : public XPathVisitor {
public:
    Rewriter(std::string_view text, PrefixMap &prefixes, std::pmr::string &out)
        : prefixes_(prefixes), text_(text), out_(out)
    {
    }

    void Finish() { CopyTo(text_.size()); }

protected:
    void CopyTo(size_t offset)
    {
        if (offset > copied_)
            out_ += text_.substr(copied_, offset - copied_);
        copied_ = std::max(copied_, offset);
    }
    void Insert(size_t offset, std::string_view text)
    {
        CopyTo(offset);
        out_ += text;
    }
    void ReplacePrefix(size_t offset, std::string_view prefix)
    {
        std::string_view written = prefixes_.Written(prefix);
        if (written == prefix)
            return;
        Insert(offset, written);
        copied_ = offset + prefix.size();
    }
    void InsertPrefix(size_t offset, std::string_view prefix)
    {
        Insert(offset, prefix);
        out_ += ':';
    }

    PrefixMap &prefixes_;

private:
    std::string_view text_;
    std::pmr::string &out_;
    size_t copied_ = 0; // how much of the expression has been dealt with
};

class ConditionRewriter : public Rewriter {
public:
    ConditionRewriter(std::string_view text, bool climbs, PrefixMap &prefixes,
                      std::pmr::string &out)
        : Rewriter(text, prefixes, out), climbs_(climbs)
    {
    }

    void PathStart(const XPathToken &token) override
    {
        if (climbs_)
            Insert(token.offset, token.kind == XPathKind::Dot ? "." : "../");
    }

    void Name(const XPathToken &token, bool) override
    {
        QName name = SplitName(token.text);
        if (!name.prefix.empty())
            ReplacePrefix(token.offset, name.prefix);
    }

    // A literal that names an identity has a prefix of the source too.
    void Literal(const XPathToken &token, std::string_view function, uint32_t argument) override
    {
        std::string_view content = token.text.substr(1, token.text.size() - 2);
        if (!IsReference(content))
            return;
        QName name = SplitName(content);
        if (!name.prefix.empty() && prefixes_.IsKnown(name.prefix))
            ReplacePrefix(token.offset + 1, name.prefix);
        else if (name.prefix.empty() && IsIdentityFunction(function) && argument == 1 &&
                 !prefixes_.OfUnprefixedName().empty())
            InsertPrefix(token.offset + 1, prefixes_.OfUnprefixedName());
    }

    void Call(const XPathCall &call) override
    {
        bool takesContext = std::find(std::begin(kContextFunctions), std::end(kContextFunctions),
                                      call.name) != std::end(kContextFunctions);
        if (!climbs_ || call.arguments != 0)
            return;
        if (call.name == "current")
            Insert(call.closing + 1, "/..");
        else if (takesContext && !call.isInPredicate)
            Insert(call.closing, "..");
    }

private:
    bool climbs_;
};

class PathRewriter : public Rewriter {
public:
    PathRewriter(std::string_view text, std::string_view own, PrefixMap &prefixes,
                 std::pmr::string &out)
        : Rewriter(text, prefixes, out), own_(own)
    {
    }

    void Name(const XPathToken &token, bool isInPredicate) override
    {
        QName name = SplitName(token.text);
        if (!name.prefix.empty())
            ReplacePrefix(token.offset, name.prefix);
        else if (!isInPredicate)
            InsertPrefix(token.offset, own_);
    }

private:
    std::string_view own_;
};

} // namespace

void RewriteCondition(std::string_view condition, bool climbs, PrefixMap &prefixes,
                      std::pmr::string &out)
{
    ConditionRewriter rewriter(condition, climbs, prefixes, out);
    ReadXPath(condition, rewriter);
    rewriter.Finish();
}

void RewriteLeafrefPath(std::string_view path, std::string_view own, PrefixMap &prefixes,
                        std::pmr::string &out)
{
    PathRewriter rewriter(path, own, prefixes, out);
    ReadXPath(path, rewriter);
    rewriter.Finish();
}

} // namespace zr::yang
