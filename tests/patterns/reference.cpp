// SPDX-License-Identifier: Apache-2.0
#include "patterns/reference.h"

#include <algorithm>

#include "patterns/translate.h"
#include "patterns/utf8.h"

namespace zrtest {

namespace {

using zr::patterns::CharClass;
using zr::patterns::CodeSet;
using zr::patterns::Node;

// Bit i: the i-th place of a text can be reached.
using Places = uint64_t;

const CodeSet &SetOfCategory(std::string_view name)
{
    static std::map<std::string_view, CodeSet> sets;
    auto [found, isNew] = sets.try_emplace(name);
    if (isNew) {
        CharClass chars;
        chars.categories.push_back({name, false});
        found->second = zr::patterns::SetOf(chars);
    }
    return found->second;
}

Places Advance(const Node &node, const std::u32string &text, Places from);

Places AdvanceOverClass(const Node &node, const std::u32string &text, Places from)
{
    Places to = 0;
    for (size_t at = 0; at < text.size(); ++at)
        if ((from >> at & 1) != 0 && Has(node.chars, text[at]))
            to |= Places{1} << (at + 1);
    return to;
}

Places AdvanceOverRepeat(const Node &node, const std::u32string &text, Places from)
{
    const Node &part = node.children.front();
    Places at = from;
    for (uint32_t time = 0; time < node.least && at != 0; ++time)
        at = Advance(part, text, at);
    Places all = at;
    for (uint32_t time = node.least; time < node.most && at != 0; ++time) {
        at = Advance(part, text, at) & ~all;
        all |= at;
    }
    return all;
}

Places Advance(const Node &node, const std::u32string &text, Places from)
{
    Places to = node.kind == Node::Kind::Sequence ? from : 0;
    switch (node.kind) {
    case Node::Kind::Class:
        return AdvanceOverClass(node, text, from);
    case Node::Kind::Repeat:
        return AdvanceOverRepeat(node, text, from);
    case Node::Kind::Sequence:
        for (const Node &child : node.children)
            to = Advance(child, text, to);
        return to;
    case Node::Kind::Choice:
        for (const Node &child : node.children)
            to |= Advance(child, text, from);
        return to;
    }
    return 0;
}

uint32_t Pick(std::mt19937 &random, size_t count)
{
    return static_cast<uint32_t>(random() % count);
}

char32_t SampleOf(const CharClass &chars, std::mt19937 &random)
{
    static const std::u32string kLikely = U"ab01AZ_:-. \n\t$^\u00e9\u0663\u4e00\u20ac\U0001F600";
    for (int attempt = 0; attempt < 20; ++attempt) {
        char32_t code = kLikely[Pick(random, kLikely.size())];
        if (!chars.ranges.empty() && Pick(random, 2) == 0) {
            const auto &range = chars.ranges[Pick(random, chars.ranges.size())];
            code = range.first + Pick(random, range.last - range.first + 1);
        }
        if (zr::patterns::IsXmlText(ToUtf8(std::u32string(1, code))) && Has(chars, code))
            return code;
    }
    return 'a';
}

void AppendSample(const Node &node, std::u32string &text, std::mt19937 &random)
{
    switch (node.kind) {
    case Node::Kind::Class:
        text += SampleOf(node.chars, random);
        return;
    case Node::Kind::Choice:
        AppendSample(node.children[Pick(random, node.children.size())], text, random);
        return;
    case Node::Kind::Sequence:
        for (const Node &child : node.children)
            AppendSample(child, text, random);
        return;
    case Node::Kind::Repeat:
        uint32_t most = std::min(node.most, node.least + 2);
        uint32_t times = node.least + Pick(random, most - node.least + 1);
        for (uint32_t time = 0; time < times && text.size() < Reference::kMostCharacters; ++time)
            AppendSample(node.children.front(), text, random);
        return;
    }
}

} // namespace

bool Has(const CharClass &chars, char32_t code)
{
    bool has = std::any_of(chars.ranges.begin(), chars.ranges.end(), [code](const auto &range) {
        return code >= range.first && code <= range.last;
    });
    for (const auto &category : chars.categories)
        has = has || SetOfCategory(category.name).Contains(code) != category.negated;
    if (has == chars.negated)
        return false;
    return chars.subtracted.empty() || !Has(chars.subtracted.front(), code);
}

bool Reference::Matches(const std::u32string &text) const
{
    return (Advance(root_, text, 1) >> text.size() & 1) != 0;
}

std::u32string Reference::Sample(std::mt19937 &random) const
{
    std::u32string text;
    AppendSample(root_, text, random);
    text.resize(std::min(text.size(), kMostCharacters));
    return text;
}

std::string ToUtf8(const std::u32string &text)
{
    std::string bytes;
    for (char32_t code : text)
        zr::patterns::Append(bytes, code);
    return bytes;
}

} // namespace zrtest
