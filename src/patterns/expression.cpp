// SPDX-License-Identifier: Apache-2.0
#include "patterns/expression.h"

#include <algorithm>
#include <string>

#include "patterns/unicode.h"
#include "patterns/utf8.h"

namespace zr::patterns {

namespace {

constexpr std::u32string_view kMetacharacters = U".\\?*+()|[]";
// The categories of "\w", which are all but those of "\W": punctuation, separators, others.
constexpr std::string_view kWord = "LMNS", kNoWord = "PZC";
constexpr CodeRange kSpaces[] = {{'\t', '\n'}, {'\r', '\r'}, {' ', ' '}};
constexpr CodeRange kLineEnds[] = {{'\n', '\n'}, {'\r', '\r'}};

// What a single-character escape stands for, or kNoCode.
char32_t SingleEscape(char32_t code)
{
    constexpr std::u32string_view kThemselves = U"\\|.?*+(){}-[]^";
    switch (code) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return kThemselves.find(code) != std::u32string_view::npos ? code : kNoCode;
    }
}

void AddRanges(CharClass &to, std::span<const CodeRange> ranges, bool complement)
{
    CodeSet set(ranges);
    if (complement)
        set = set.Complement();
    to.ranges.insert(to.ranges.end(), set.ranges().begin(), set.ranges().end());
}

// Categories by their letters.
void AddCategories(CharClass &to, std::string_view letters)
{
    for (size_t at = 0; at < letters.size(); ++at)
        to.categories.push_back({letters.substr(at, 1), false});
}

bool IsDigit(char32_t code)
{
    return code >= '0' && code <= '9';
}

// A descent whose depth kMostGroups and kMostSubtractions bound. Each function reads its part from
// where the parser stands, and is false when it ends the parsing with verdict_.
class Parser {
public:
    explicit Parser(std::u32string_view text) : rest_(text) {}

    Verdict Run(Node &out)
    {
        if (ReadChoice(out) && !rest_.empty())
            Fail(Verdict::Faulty); // a ")" that closes nothing
        return verdict_;
    }

private:
    bool Fail(Verdict verdict)
    {
        verdict_ = verdict;
        return false;
    }

    char32_t Peek(size_t ahead = 0) const { return ahead < rest_.size() ? rest_[ahead] : kNoCode; }

    bool TakeIf(char32_t code)
    {
        bool isNext = Peek() == code;
        if (isNext)
            rest_.remove_prefix(1);
        return isNext;
    }

    char32_t Take()
    {
        char32_t code = Peek();
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return code;
    }

    // branch ('|' branch)*
    bool ReadChoice(Node &out)
    {
        out.kind = Node::Kind::Choice;
        do {
            if (!ReadBranch(out.children.emplace_back()))
                return false;
        } while (TakeIf('|'));
        return true;
    }

    bool ReadBranch(Node &out)
    {
        out.kind = Node::Kind::Sequence;
        while (!rest_.empty() && Peek() != '|' && Peek() != ')')
            if (!ReadPiece(out.children.emplace_back()))
                return false;
        return true;
    }

    bool ReadPiece(Node &out)
    {
        Node atom;
        uint32_t least = 1, most = 1;
        if (!ReadAtom(atom))
            return false;
        size_t before = rest_.size();
        if (!ReadQuantifier(least, most))
            return false;
        if (rest_.size() != before && Peek() == '{') // no second quantity, but a character?
            return Fail(Verdict::Faulty);
        if (least == 1 && most == 1) {
            out = std::move(atom);
            return true;
        }
        out.kind = Node::Kind::Repeat;
        out.least = least;
        out.most = most;
        out.children.push_back(std::move(atom));
        return true;
    }

    bool ReadAtom(Node &out)
    {
        if (Peek() == '(')
            return ReadGroup(out);
        out.kind = Node::Kind::Class;
        if (TakeIf('['))
            return ReadClass(out.chars, 0);
        if (TakeIf('.')) {
            out.chars.negated = true;
            AddRanges(out.chars, kLineEnds, false);
            return true;
        }
        if (Peek() == '\\' && Peek(1) == 'W') { // what "\w" is not, in fewer words
            rest_.remove_prefix(2);
            out.chars.negated = true;
            AddCategories(out.chars, kWord);
            return true;
        }
        if (IsClassEscape())
            return ReadClassEscape(out.chars);
        if (Peek() != '\\' && kMetacharacters.find(Peek()) != std::u32string_view::npos)
            return Fail(Verdict::Faulty);
        char32_t code = TakeCharacter();
        return AddRange(out.chars, code, code);
    }

    bool ReadGroup(Node &out)
    {
        Take();
        if (++groups_ > kMostGroups)
            return Fail(Verdict::TooLarge);
        if (!ReadChoice(out))
            return false;
        --groups_;
        return TakeIf(')') || Fail(Verdict::Faulty);
    }

    // "?", "*", "+", "{n}", "{n,}", "{n,m}" or nothing.
    bool ReadQuantifier(uint32_t &least, uint32_t &most)
    {
        char32_t sign = Peek();
        if (sign == '{')
            return ReadQuantity(least, most);
        if (sign == '?' || sign == '*' || sign == '+') {
            Take();
            least = sign == '+' ? 1 : 0;
            most = sign == '?' ? 1 : kNoEnd;
        }
        return true;
    }

    bool ReadQuantity(uint32_t &least, uint32_t &most)
    {
        Take();
        if (!ReadNumber(least))
            return false;
        most = least;
        if (TakeIf(',')) {
            most = kNoEnd;
            if (Peek() != '}' && !ReadNumber(most))
                return false;
        }
        return TakeIf('}') && least <= most ? true : Fail(Verdict::Faulty);
    }

    bool ReadNumber(uint32_t &out)
    {
        if (!IsDigit(Peek()))
            return Fail(Verdict::Faulty);
        for (out = 0; IsDigit(Peek());) {
            out = out * 10 + (Take() - '0');
            if (out > kMostRepeats)
                return Fail(Verdict::TooLarge);
        }
        return true;
    }

    // Behind "[", up to and with its "]".
    bool ReadClass(CharClass &out, uint32_t depth)
    {
        if (depth > kMostSubtractions)
            return Fail(Verdict::TooLarge);
        out.negated = TakeIf('^');
        for (bool isFirst = true; isFirst || Peek() != ']'; isFirst = false) {
            if (!isFirst && Peek() == '-' && Peek(1) == '[') {
                rest_.remove_prefix(2);
                if (!ReadClass(out.subtracted.emplace_back(), depth + 1))
                    return false;
                break; // nothing stands behind what is taken away
            }
            // A "-" for itself stands first or last.
            if (Peek() == '-' && !isFirst && Peek(1) != ']')
                return Fail(Verdict::Faulty);
            if (!ReadMember(out))
                return false;
        }
        return TakeIf(']') || Fail(Verdict::Faulty);
    }

    // A character, an escape, or a range.
    bool ReadMember(CharClass &out)
    {
        if (IsClassEscape())
            return ReadClassEscape(out);
        char32_t first = TakeCharacter(), last = first;
        bool isRange = Peek() == '-' && first != '-' && Peek(1) != ']' && Peek(1) != '[';
        if (isRange) {
            Take();
            last = Peek() == '-' ? kNoCode : TakeCharacter();
        }
        return AddRange(out, first, last);
    }

    bool AddRange(CharClass &out, char32_t first, char32_t last)
    {
        if (first == kNoCode || last == kNoCode || first > last)
            return Fail(Verdict::Faulty);
        out.ranges.push_back({first, last});
        return true;
    }

    // A character for itself or behind "\", else kNoCode.
    char32_t TakeCharacter()
    {
        if (Peek() == '[' || Peek() == ']')
            return kNoCode;
        return TakeIf('\\') ? SingleEscape(Take()) : Take();
    }

    bool IsClassEscape() const { return Peek() == '\\' && SingleEscape(Peek(1)) == kNoCode; }

    // "\p{..}", "\P{..}", or a letter that stands for a class, in upper case for what is not in it.
    bool ReadClassEscape(CharClass &out)
    {
        Take();
        char32_t letter = Take();
        bool isUpper = letter >= 'A' && letter <= 'Z';
        switch (letter | 0x20) { // its lower case
        case 'p':
            return ReadProperty(out, isUpper);
        case 's':
            AddRanges(out, kSpaces, isUpper);
            return true;
        case 'i':
            AddRanges(out, NameStartChars(), isUpper);
            return true;
        case 'c':
            AddRanges(out, NameChars(), isUpper);
            return true;
        case 'd':
            out.categories.push_back({"Nd", isUpper});
            return true;
        case 'w':
            AddCategories(out, isUpper ? kNoWord : kWord);
            return true;
        default:
            return Fail(Verdict::Faulty);
        }
    }

    bool ReadProperty(CharClass &out, bool negated)
    {
        std::string name;
        if (!TakeIf('{'))
            return Fail(Verdict::Faulty);
        while (!rest_.empty() && Peek() != '}')
            Append(name, Take());
        if (!TakeIf('}'))
            return Fail(Verdict::Faulty);
        constexpr std::string_view kBlockMark = "Is";
        if (name.starts_with(kBlockMark)) {
            std::vector<CodeRange> block = FindBlock(name.substr(kBlockMark.size()));
            AddRanges(out, block, negated);
            return !block.empty() || Fail(Verdict::Faulty);
        }
        std::string_view category = FindCategory(name);
        out.categories.push_back({category, negated});
        return !category.empty() || Fail(Verdict::Faulty);
    }

    std::u32string_view rest_;
    uint32_t groups_ = 0; // that are open
    Verdict verdict_ = Verdict::Sound;
};

} // namespace

Verdict Parse(std::string_view pattern, Node &out)
{
    std::u32string text;
    while (!pattern.empty()) {
        size_t length = 0;
        text += Decode(pattern, length);
        if (text.back() == kNoCode)
            return Verdict::Faulty;
        pattern.remove_prefix(length);
    }
    return Parser(text).Run(out);
}

} // namespace zr::patterns
