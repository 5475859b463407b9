// SPDX-License-Identifier: Apache-2.0
#include "yin_look.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace tool {

namespace {

// In order, to be searched.
constexpr std::string_view kKeywords[] = {"action",
                                          "anydata",
                                          "anyxml",
                                          "argument",
                                          "augment",
                                          "base",
                                          "belongs-to",
                                          "bit",
                                          "case",
                                          "choice",
                                          "config",
                                          "contact",
                                          "container",
                                          "default",
                                          "description",
                                          "deviate",
                                          "deviation",
                                          "enum",
                                          "error-app-tag",
                                          "error-message",
                                          "extension",
                                          "feature",
                                          "fraction-digits",
                                          "grouping",
                                          "identity",
                                          "if-feature",
                                          "import",
                                          "include",
                                          "input",
                                          "key",
                                          "leaf",
                                          "leaf-list",
                                          "length",
                                          "list",
                                          "mandatory",
                                          "max-elements",
                                          "min-elements",
                                          "modifier",
                                          "module",
                                          "must",
                                          "namespace",
                                          "notification",
                                          "ordered-by",
                                          "organization",
                                          "output",
                                          "path",
                                          "pattern",
                                          "position",
                                          "prefix",
                                          "presence",
                                          "range",
                                          "reference",
                                          "refine",
                                          "require-instance",
                                          "revision",
                                          "revision-date",
                                          "rpc",
                                          "status",
                                          "submodule",
                                          "text",
                                          "type",
                                          "typedef",
                                          "unique",
                                          "units",
                                          "uses",
                                          "value",
                                          "when",
                                          "yang-version",
                                          "yin-element"};
static_assert(std::ranges::is_sorted(kKeywords));

// RFC 7950, section 14: module-header-stmts to revision-stmts, and what submodules have of them.
constexpr std::string_view kHeader[] = {"belongs-to", "contact",   "description",  "import",
                                        "include",    "namespace", "organization", "prefix",
                                        "reference",  "revision",  "yang-version"};
constexpr std::string_view kListed[] = {"import", "include", "revision"};

template <size_t count>
constexpr bool IsOneOf(const std::string_view (&words)[count], std::string_view word)
{
    return std::ranges::find(words, word) != std::end(words);
}

// Where the keywords of each letter begin, and the end behind those of the last one.
constexpr auto kFirstOfLetter = [] {
    std::array<uint8_t, 27> firsts = {};
    for (size_t i = 0; i < firsts.size(); ++i)
        firsts[i] =
            static_cast<uint8_t>(std::ranges::count_if(kKeywords, [i](std::string_view keyword) {
                return static_cast<size_t>(keyword[0] - 'a') < i;
            }));
    return firsts;
}();

// What a tag is cut at.
constexpr auto kTagMarks = [] {
    std::array<bool, 256> marks = {};
    for (char mark : {' ', '\t', '\r', '\n', '/', '>', '"', '\''})
        marks[static_cast<unsigned char>(mark)] = true;
    return marks;
}();

constexpr size_t kNowhere = std::string_view::npos;

// Goes from tag to tag. What it does not know its way in ends the walk.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    struct Tag {
        std::string_view name;
        size_t start = 0;     // of its "<"
        bool opens = false;   // or closes an element
        bool isWhole = false; // an element in one tag
    };

    // False at the end, and where it does not know its way.
    bool Next(Tag &tag)
    {
        for (at_ = text_.find('<', at_); at_ != kNowhere; at_ = text_.find('<', at_)) {
            std::string_view rest = text_.substr(at_);
            if (rest.starts_with("<!--"))
                at_ = Behind("-->", at_ + 4);
            else if (rest.starts_with("<?"))
                at_ = Behind("?>", at_ + 2);
            else if (rest.starts_with("<![CDATA["))
                at_ = Behind("]]>", at_ + 9);
            else
                return !rest.starts_with("<!") && ReadTag(tag);
            if (at_ == kNowhere)
                return false;
        }
        return false;
    }
    size_t at() const { return at_; } // behind the tag

private:
    size_t Behind(std::string_view closing, size_t from) const
    {
        size_t found = text_.find(closing, from);
        return found != kNowhere ? found + closing.size() : kNowhere;
    }

    bool ReadTag(Tag &tag)
    {
        tag.start = at_++;
        tag.opens = at_ == text_.size() || text_[at_] != '/';
        if (!tag.opens)
            ++at_;
        size_t name = at_;
        GoToMark();
        tag.name = text_.substr(name, at_ - name);
        for (; at_ < text_.size() && text_[at_] != '>'; ++at_, GoToMark())
            if (text_[at_] == '"' || text_[at_] == '\'')
                at_ = std::min(text_.find(text_[at_], at_ + 1), text_.size() - 1);
        if (at_ == text_.size())
            return false;
        tag.isWhole = tag.opens && text_[at_ - 1] == '/';
        ++at_;
        return true;
    }

    void GoToMark()
    {
        while (at_ < text_.size() && !kTagMarks[static_cast<unsigned char>(text_[at_])])
            ++at_;
    }

    std::string_view text_;
    size_t at_ = 0;
};

// Whether the root's tag, and no other, says what names without a prefix are, and that they are
// YIN; and whether no prefix stands for YIN.
bool IsYinThroughout(std::string_view text, size_t behindRoot)
{
    constexpr std::string_view kDeclaration = "xmlns=";
    std::string_view root = text.substr(0, behindRoot);
    size_t declared = root.find(kDeclaration);
    if (declared == kNowhere)
        return false;
    std::string_view value = root.substr(declared + kDeclaration.size() + 1); // behind its quote
    return value.starts_with(kYinNamespace) && value.find(kYinNamespace, 1) == kNowhere &&
           root.substr(0, declared).find(kYinNamespace) == kNowhere &&
           text.find("xmlns", behindRoot) == kNowhere;
}

// Of a statement so many elements below the root.
bool MayBePassedOver(std::string_view keyword, size_t depth)
{
    return keyword == "uses" || keyword == "grouping" || (keyword == "typedef" && depth > 1) ||
           !IsKeyword(keyword);
}

} // namespace

bool IsKeyword(std::string_view word)
{
    if (word.empty() || word[0] < 'a' || word[0] > 'z')
        return false;
    auto letter = static_cast<size_t>(word[0] - 'a');
    return std::find(kKeywords + kFirstOfLetter[letter], kKeywords + kFirstOfLetter[letter + 1],
                     word) != kKeywords + kFirstOfLetter[letter + 1];
}

YinLook LookAtYin(std::string_view text)
{
    Scanner scanner(text);
    Scanner::Tag tag;
    YinLook look;
    if (!scanner.Next(tag) || (tag.name != "module" && tag.name != "submodule") || !tag.opens ||
        tag.isWhole || !IsYinThroughout(text, scanner.at()))
        return {};
    look.root = tag.name;
    size_t depth = 1;
    while (depth > 0 && scanner.Next(tag)) {
        bool isInHeader = look.headerEnd == 0;
        if (!tag.opens)
            --depth;
        else if (tag.name.find(':') == kNowhere && MayBePassedOver(tag.name, depth))
            return {};
        bool isStatement = tag.opens && depth == 1;
        if (isInHeader && (depth == 0 || (isStatement && !IsOneOf(kHeader, tag.name))))
            look.headerEnd = tag.start;
        if (!isInHeader && isStatement && IsOneOf(kListed, tag.name))
            return {};
        if (tag.opens && !tag.isWhole)
            ++depth;
    }
    look.isPlain = depth == 0;
    return look;
}

} // namespace tool
