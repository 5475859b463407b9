// SPDX-License-Identifier: Apache-2.0
// Where RE2 can say what a class says, the class is written in RE2's words. It has neither
// subtraction nor the categories of what no character has (C, Cn): such a class is computed as a
// set and written as ranges.
#include "patterns/translate.h"

#include <re2/re2.h>

#include <algorithm>
#include <charconv>

#include "patterns/utf8.h"

namespace zr::patterns {

namespace {

// Of all characters those are in C, and those are not assigned (Cn), that have none of these.
constexpr std::string_view kNotOther = "\\p{L}\\p{M}\\p{N}\\p{P}\\p{S}\\p{Z}";
constexpr std::string_view kAssignedOther = "\\p{Cc}\\p{Cf}\\p{Co}";

constexpr CodeRange kSurrogates = {0xD800, 0xDFFF};

void AppendHex(std::string &text, char32_t code)
{
    char digits[8];
    auto end = std::to_chars(std::begin(digits), std::end(digits), static_cast<uint32_t>(code), 16);
    text.append("\\x{").append(digits, end.ptr).append("}");
}

void AppendRanges(std::string &text, std::span<const CodeRange> ranges)
{
    for (const CodeRange &range : ranges) {
        AppendHex(text, range.first);
        text += '-';
        AppendHex(text, range.last);
    }
}

void AppendCategory(std::string &text, std::string_view name, bool negated)
{
    text.append(negated ? "\\P{" : "\\p{").append(name).append("}");
}

// The code points of a class, of which the inside is given: what RE2 finds in the text of all
// characters, a run of them at a time.
CodeSet ReadOff(const std::string &members)
{
    const RE2 run("[" + members + "]+");
    std::vector<CodeRange> ranges;
    constexpr char32_t kPart = 0x1000; // so many at once; divides their number
    std::string text;
    for (char32_t first = 0; first <= kLastCode; first += kPart) {
        text.clear();
        for (char32_t code = first; code < first + kPart; ++code)
            if (code < kSurrogates.first || code > kSurrogates.last)
                Append(text, code);
        size_t at = 0, length = 0;
        for (re2::StringPiece found; run.Match(text, at, text.size(), RE2::UNANCHORED, &found, 1);
             at = static_cast<size_t>(found.data() - text.data()) + found.size()) {
            std::string_view all(found.data(), found.size());
            char32_t low = Decode(all, length), high = low;
            for (; !all.empty(); all.remove_prefix(length))
                high = Decode(all, length);
            ranges.push_back({low, high});
        }
    }
    return CodeSet(ranges);
}

bool IsUnknownToRe2(const Category &category)
{
    return category.name == "C" || category.name == "Cn";
}

// The members of a class of all characters that are not of such a category.
std::string NotUnknown(const Category &category)
{
    std::string members(kNotOther);
    return category.name == "C" ? members : members.append(kAssignedOther);
}

CodeSet SetOfUnknown(const Category &category)
{
    CodeSet others = ReadOff(NotUnknown(category));
    return category.negated
               ? others
               : others.Complement().Minus(CodeSet::Of(kSurrogates.first, kSurrogates.last));
}

class Writer {
public:
    std::string text;

    void Write(const Node &node)
    {
        switch (node.kind) {
        case Node::Kind::Class:
            WriteClass(node.chars);
            break;
        case Node::Kind::Sequence:
            for (const Node &child : node.children)
                Write(child);
            break;
        case Node::Kind::Choice:
            WriteChoice(node);
            break;
        case Node::Kind::Repeat:
            WriteRepeat(node);
            break;
        }
    }

private:
    void WriteChoice(const Node &node)
    {
        const char *separator = "(?:";
        for (const Node &child : node.children) {
            text += separator;
            Write(child);
            separator = "|";
        }
        text += ')';
    }

    void WriteRepeat(const Node &node)
    {
        Write(node.children.front());
        if (node.most == kNoEnd && node.least <= 1) {
            text += node.least == 0 ? '*' : '+';
            return;
        }
        text += '{' + std::to_string(node.least);
        if (node.most != node.least)
            text += ',';
        if (node.most != node.least && node.most != kNoEnd)
            text += std::to_string(node.most);
        text += '}';
    }

    void WriteClass(const CharClass &chars)
    {
        bool isOne = chars.ranges.size() == 1 && chars.ranges[0].first == chars.ranges[0].last;
        if (isOne && !chars.negated && chars.categories.empty() && chars.subtracted.empty())
            WriteCharacter(chars.ranges[0].first);
        else if (chars.subtracted.empty() &&
                 std::none_of(chars.categories.begin(), chars.categories.end(), IsUnknownToRe2))
            WriteNative(chars);
        else if (chars.subtracted.empty() && chars.ranges.empty() && chars.categories.size() == 1)
            WriteUnknown(chars.categories.front(), chars.negated);
        else
            WriteSet(SetOf(chars));
    }

    void WriteCharacter(char32_t code)
    {
        constexpr std::u32string_view kMeaningful = U"\\.+*?()|[]{}^$";
        if (kMeaningful.find(code) != std::u32string_view::npos)
            text += '\\';
        Append(text, code);
    }

    void WriteNative(const CharClass &chars)
    {
        text += chars.negated ? "[^" : "[";
        AppendRanges(text, chars.ranges);
        for (const Category &category : chars.categories)
            AppendCategory(text, category.name, category.negated);
        text += ']';
    }

    void WriteUnknown(const Category &category, bool negated)
    {
        text.append(category.negated != negated ? "[" : "[^").append(NotUnknown(category)) += ']';
    }

    void WriteSet(const CodeSet &set)
    {
        text += '[';
        if (set.ranges().empty()) { // RE2 has no empty class
            text += '^';
            AppendRanges(text, set.Complement().ranges());
        }
        AppendRanges(text, set.ranges());
        text += ']';
    }
};

} // namespace

CodeSet SetOf(const CharClass &chars)
{
    CodeSet set(chars.ranges);
    std::string known;
    for (const Category &category : chars.categories) {
        if (IsUnknownToRe2(category))
            set = set.Union(SetOfUnknown(category));
        else
            AppendCategory(known, category.name, category.negated);
    }
    if (!known.empty())
        set = set.Union(ReadOff(known));
    if (chars.negated)
        set = set.Complement();
    for (const CharClass &other : chars.subtracted)
        set = set.Minus(SetOf(other));
    return set;
}

std::string Translate(const Node &expression)
{
    Writer writer;
    writer.Write(expression);
    return std::move(writer.text);
}

} // namespace zr::patterns
