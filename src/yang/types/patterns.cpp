// SPDX-License-Identifier: Apache-2.0
#include "yang/types/patterns.h"

#include <libxml/xmlregexp.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>

#include "shared/xml_reports.h"

namespace zr::yang {

namespace {

// The regular expressions of XML Schema (its second volume, Datatypes, appendix F).
constexpr std::string_view kSingleEscapes = "nrt\\|.?*+(){}-[]^";
constexpr std::string_view kClassEscapes = "sSiIcCdDwW";
constexpr std::string_view kCategories[] = {
    "L",  "Lu", "Ll", "Lt", "Lm", "Lo", "M",  "Mn", "Mc", "Me", "N",  "Nd",
    "Nl", "No", "P",  "Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po", "Z",  "Zs",
    "Zl", "Zp", "S",  "Sm", "Sc", "Sk", "So", "C",  "Cc", "Cf", "Co", "Cn",
};
constexpr std::string_view kBlockPrefix = "Is"; // \p{IsBasicLatin}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBlockChar(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-';
}

bool IsCategory(std::string_view name)
{
    if (name.starts_with(kBlockPrefix))
        return name.size() > kBlockPrefix.size() &&
               std::all_of(name.begin(), name.end(), IsBlockChar);
    return std::find(std::begin(kCategories), std::end(kCategories), name) != std::end(kCategories);
}

// A loop with counters instead of a descent: parentheses and subtracted classes only need to match.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    const char *Run()
    {
        while (!rest_.empty() && fault_ == nullptr)
            ReadOne();
        if (fault_ == nullptr && open_ > 0)
            fault_ = "a \"(\" is not closed";
        return fault_;
    }

private:
    // What one member of a class is.
    struct Member {
        std::string_view character; // as it is written, "" when it stands for several
        bool isEscape;
    };

    char Peek(size_t ahead = 0) const { return ahead < rest_.size() ? rest_[ahead] : '\0'; }

    // The next character, with all of its bytes.
    std::string_view Take()
    {
        size_t length = 1;
        while (length < rest_.size() && (static_cast<unsigned char>(rest_[length]) & 0xC0) == 0x80)
            ++length;
        std::string_view character = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return character;
    }

    bool TakeIf(char c)
    {
        bool isNext = !rest_.empty() && rest_.front() == c;
        if (isNext)
            rest_.remove_prefix(1);
        return isNext;
    }

    void ReadOne()
    {
        bool hadAtom = hasAtom_;
        hasAtom_ = true;
        switch (Take().front()) {
        case '(':
            ++open_;
            hasAtom_ = false;
            break;
        case ')':
            if (open_-- == 0)
                fault_ = "a \")\" closes nothing";
            break;
        case '|':
            hasAtom_ = false;
            break;
        case '?':
        case '*':
        case '+':
            hasAtom_ = false;
            if (!hadAtom)
                fault_ = "there is nothing to repeat";
            break;
        case '{': // behind nothing that can be repeated it is a character like others
            hasAtom_ = !hadAtom;
            if (hadAtom)
                ReadQuantity();
            break;
        case '[':
            ReadClass();
            break;
        case ']':
            fault_ = "a \"]\" closes nothing";
            break;
        case '\\':
            ReadEscape();
            break;
        default:
            break;
        }
    }

    // "n}", "n,}" or "n,m}".
    void ReadQuantity()
    {
        std::string_view least = TakeDigits(), most = least;
        if (TakeIf(',') && Peek() != '}')
            most = TakeDigits();
        if (least.empty() || most.empty() || !TakeIf('}'))
            fault_ = "bad quantity";
        else if (most.size() < least.size() || (most.size() == least.size() && most < least))
            fault_ = "a quantity whose end is below its start";
    }

    std::string_view TakeDigits()
    {
        const auto *end = std::find_if_not(rest_.begin(), rest_.end(), IsDigit);
        auto length = static_cast<size_t>(end - rest_.begin());
        std::string_view digits = rest_.substr(0, length);
        rest_.remove_prefix(length);
        while (digits.size() > 1 && digits.front() == '0')
            digits.remove_prefix(1);
        return digits;
    }

    // What stands behind "\".
    Member ReadEscape()
    {
        if (rest_.empty()) {
            fault_ = "a \"\\\" with nothing behind it";
            return {};
        }
        std::string_view character = Take();
        char c = character.front();
        if (c == 'p' || c == 'P') {
            size_t end = rest_.find('}');
            if (!TakeIf('{') || end == std::string_view::npos ||
                !IsCategory(rest_.substr(0, end - 1)))
                fault_ = "an unknown category of characters";
            else
                rest_.remove_prefix(end);
            return {{}, true};
        }
        if (kClassEscapes.find(c) != std::string_view::npos)
            return {{}, true};
        if (kSingleEscapes.find(c) == std::string_view::npos)
            fault_ = "an unknown escape";
        return {character, true};
    }

    // Behind "[": members up to "]". A class that is subtracted, as in "[a-z-[aeiou]]", ends the
    // one around it.
    void ReadClass()
    {
        uint32_t classes = 1;
        TakeIf('^');
        for (bool isEmpty = true; fault_ == nullptr; isEmpty = false) {
            if (rest_.empty()) {
                fault_ = "a \"[\" is not closed";
            } else if (!isEmpty && TakeIf(']')) {
                while (--classes > 0)
                    if (!TakeIf(']'))
                        fault_ = "a subtraction that does not end its class";
                return;
            } else if (!isEmpty && Peek() == '-' && Peek(1) == '[') {
                rest_.remove_prefix(2);
                TakeIf('^');
                ++classes;
                ReadMember();
            } else {
                ReadMember();
            }
        }
    }

    // A character, an escape, or a range of characters.
    void ReadMember()
    {
        Member low = TakeMember();
        bool isRange = !low.character.empty() && fault_ == nullptr && Peek() == '-' &&
                       Peek(1) != ']' && Peek(1) != '[' && !(Peek(1) == '-' && Peek(2) == '[');
        if (!isRange)
            return;
        rest_.remove_prefix(1);
        Member high = TakeMember();
        if (fault_ != nullptr)
            return;
        if (high.character.empty())
            fault_ = "a range that ends with a class";
        else if (!low.isEscape && !high.isEscape && high.character < low.character)
            fault_ = "a range whose end is below its start";
    }

    Member TakeMember()
    {
        if (rest_.empty() || Peek() == '[' || Peek() == ']') {
            fault_ = Peek() == ']' ? "an empty class" : "a \"[\" in a class";
            if (rest_.empty())
                fault_ = "a \"[\" is not closed";
            return {};
        }
        std::string_view character = Take();
        return character == "\\" ? ReadEscape() : Member{character, false};
    }

    std::string_view rest_;
    const char *fault_ = nullptr;
    uint32_t open_ = 0;    // parentheses
    bool hasAtom_ = false; // something that can be repeated has just been read
};

} // namespace

const char *FindPatternFault(std::string_view pattern)
{
    return Reader(pattern).Run();
}

namespace {

// libxml2 calls itself for each class in a class, and its matcher tries more the longer a text is.
constexpr size_t kMostClasses = 64;
constexpr size_t kLongest = 10000;

const xmlChar *AsXml(const std::pmr::string &text)
{
    return reinterpret_cast<const xmlChar *>(text.c_str());
}

} // namespace

Match MatchPattern(std::string_view pattern, std::string_view text,
                   std::pmr::memory_resource *memory)
{
    auto classes = static_cast<size_t>(std::count(pattern.begin(), pattern.end(), '['));
    if (classes > kMostClasses || pattern.size() > kLongest || text.size() > kLongest)
        return Match::Open;
    XmlReports reports; // to nobody else
    std::unique_ptr<xmlRegexp, decltype(&xmlRegFreeRegexp)> compiled(
        xmlRegexpCompile(AsXml(std::pmr::string(pattern, memory))), xmlRegFreeRegexp);
    if (compiled == nullptr)
        return Match::Open;
    int result = xmlRegexpExec(compiled.get(), AsXml(std::pmr::string(text, memory)));
    return result < 0 ? Match::Open : result == 0 ? Match::No : Match::Yes;
}

} // namespace zr::yang
