// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/lookup.h"

#include <vector>

#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

using Tokens = std::pmr::vector<XPathToken>;

// A condition "m:key = VALUE" of a step, as texts of the expression.
struct KeyCondition {
    std::string_view name, value;
};

class Rewriter {
public:
    Rewriter(std::string_view text, std::pmr::memory_resource *memory, std::pmr::string &out)
        : text_(text), tokens_(memory), keys_(memory), out_(out)
    {
        for (XPathTokens tokens(text); tokens.at().kind != XPathKind::End; tokens.Advance())
            tokens_.push_back(tokens.at());
        tokens_.push_back({XPathKind::End, text.size(), {}});
    }

    void Run()
    {
        size_t copied = 0;
        for (size_t at = 0; at + 1 < tokens_.size(); ++at) {
            if (!IsName(at) || KindAt(at + 1) != XPathKind::OpenBracket)
                continue;
            keys_.clear();
            size_t start = FindStart(at);
            size_t end = at + 1;
            while (start != kNone && KindAt(end) == XPathKind::OpenBracket) {
                size_t next = ReadPredicate(end);
                if (next == kNone)
                    break;
                end = next;
            }
            if (start == kNone || keys_.empty())
                continue;
            out_ += text_.substr(copied, tokens_[start].offset - copied);
            AppendCall(start, at);
            copied = tokens_[end - 1].offset + tokens_[end - 1].text.size();
            at = end - 1;
        }
        out_ += text_.substr(copied);
    }

private:
    static constexpr size_t kNone = ~size_t{0};

    XPathKind KindAt(size_t at) const { return tokens_[at].kind; }
    bool IsName(size_t at) const
    {
        return KindAt(at) == XPathKind::Name && tokens_[at].text.back() != '*';
    }
    bool IsText(size_t at, XPathKind kind, std::string_view text) const
    {
        return KindAt(at) == kind && tokens_[at].text == text;
    }
    bool IsSlash(size_t at) const { return IsText(at, XPathKind::Slash, "/"); }
    bool IsStep(size_t at) const
    {
        return IsName(at) || KindAt(at) == XPathKind::Dot || KindAt(at) == XPathKind::DotDot;
    }
    // Whether "current()" ends at a token.
    bool IsCurrent(size_t last) const
    {
        return last >= 2 && KindAt(last) == XPathKind::Close &&
               KindAt(last - 1) == XPathKind::Open &&
               IsText(last - 2, XPathKind::Function, "current");
    }
    // Whether a path may begin behind a token.
    bool IsBefore(size_t at) const
    {
        switch (KindAt(at)) {
        case XPathKind::Open:
        case XPathKind::OpenBracket:
        case XPathKind::Comma:
        case XPathKind::Operator:
            return true;
        default:
            return false;
        }
    }

    // The token with which the path of simple steps begins whose last step is at `at`; kNone where
    // it is not that simple.
    size_t FindStart(size_t at) const
    {
        while (true) {
            if (at == 0 || IsBefore(at - 1))
                return at;
            if (!IsSlash(at - 1))
                return kNone;
            --at;
            if (at == 0 || IsBefore(at - 1))
                return at; // an absolute path
            if (IsCurrent(at - 1))
                return at - 3 == 0 || IsBefore(at - 4) ? at - 3 : kNone;
            if (!IsStep(at - 1))
                return kNone;
            --at;
        }
    }

    // Reads "[m:key = VALUE and ...]" and returns the token behind it; kNone for another predicate.
    size_t ReadPredicate(size_t at)
    {
        size_t before = keys_.size();
        do {
            at = ReadCondition(at + 1);
        } while (at != kNone && IsText(at, XPathKind::Operator, "and"));
        if (at != kNone && KindAt(at) == XPathKind::CloseBracket)
            return at + 1;
        keys_.resize(before);
        return kNone;
    }
    // Either side may be the key.
    size_t ReadCondition(size_t at)
    {
        bool isKeyFirst = IsName(at);
        size_t middle = isKeyFirst ? at + 1 : SkipValue(at);
        if (middle == kNone || !IsText(middle, XPathKind::Operator, "="))
            return kNone;
        size_t end = isKeyFirst ? SkipValue(middle + 1) : middle + 2;
        if (end == kNone || (!isKeyFirst && !IsName(middle + 1)))
            return kNone;
        size_t key = isKeyFirst ? at : middle + 1;
        size_t value = isKeyFirst ? middle + 1 : at;
        const XPathToken &last = tokens_[isKeyFirst ? end - 1 : middle - 1];
        size_t start = tokens_[value].offset;
        keys_.push_back(
            {tokens_[key].text, text_.substr(start, last.offset + last.text.size() - start)});
        return end;
    }
    // Goes behind a value that is the same for all entries.
    size_t SkipValue(size_t at) const
    {
        if (KindAt(at) == XPathKind::Literal)
            return at + 1;
        bool isCurrent = IsText(at, XPathKind::Function, "current") &&
                         KindAt(at + 1) == XPathKind::Open && KindAt(at + 2) == XPathKind::Close;
        if (isCurrent)
            at += 3;
        else if (!IsSlash(at) || !IsStep(at + 1))
            return kNone;
        while (IsSlash(at) && IsStep(at + 1))
            at += 2;
        return at;
    }

    void AppendCall(size_t start, size_t name)
    {
        std::string_view parents = ".";
        if (start != name) { // without the slash at the end, but for that of the root
            const XPathToken &last = tokens_[start + 1 == name ? start : name - 2];
            size_t from = tokens_[start].offset;
            parents = text_.substr(from, last.offset + last.text.size() - from);
        }
        ((out_ += kEntriesFunction) += '(') += parents;
        ((out_ += ",'") += tokens_[name].text) += '\'';
        for (const KeyCondition &key : keys_)
            (((out_ += ",'") += key.name) += "',") += key.value;
        out_ += ')';
    }

    std::string_view text_;
    Tokens tokens_;
    std::pmr::vector<KeyCondition> keys_;
    std::pmr::string &out_;
};

} // namespace

void AppendWithLookups(std::string_view expression, std::pmr::memory_resource *memory,
                       std::pmr::string &out)
{
    Rewriter(expression, memory, out).Run();
}

} // namespace zr::data
