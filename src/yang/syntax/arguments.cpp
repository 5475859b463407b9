// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/arguments.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace zr::yang {

namespace {

using F = ArgumentForm;
using Test = bool (*)(const Statement &);

constexpr std::string_view kBlanks = " \t\r\n";

template <typename Number> bool ReadNumber(std::string_view text, Number &value)
{
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), text) != words.end();
}

bool IsSchemaNodeId(std::string_view text, bool isAbsolute)
{
    if (text.empty() || text.starts_with('/') != isAbsolute || text.ends_with('/'))
        return false;
    while (!text.empty())
        if (!IsReference(TakeStep(text)))
            return false;
    return true;
}

bool AreWords(std::string_view text, bool (*isWord)(std::string_view))
{
    std::string_view word = TakeWord(text);
    if (word.empty())
        return false;
    for (; !word.empty(); word = TakeWord(text))
        if (!isWord(word))
            return false;
    return true;
}

bool IsDescendant(std::string_view text)
{
    return IsSchemaNodeId(text, false);
}

// The value of an enum is any text that does not begin or end with white space.
bool IsText(const Statement &statement)
{
    if (statement.keyword != Keyword::Enum)
        return true;
    std::string_view text = statement.argument;
    return !text.empty() && kBlanks.find(text.front()) == std::string_view::npos &&
           kBlanks.find(text.back()) == std::string_view::npos;
}

bool IsUri(std::string_view text)
{
    return !text.empty() && text.find_first_of(" \t\r\n<>\"{}|\\^`") == std::string_view::npos;
}

bool IsUnsigned32(std::string_view text)
{
    uint64_t value;
    return ReadUnsigned(text, value) && value <= UINT32_MAX;
}

bool IsInteger32(std::string_view text)
{
    int64_t value;
    return ReadInteger(text, value) && value >= INT32_MIN && value <= INT32_MAX;
}

bool IsFractionDigits(std::string_view text)
{
    uint64_t value;
    return ReadUnsigned(text, value) && value >= 1 && value <= 18;
}

bool IsTarget(const Statement &statement)
{
    bool inUses = statement.parent != nullptr && statement.parent->keyword == Keyword::Uses;
    return IsSchemaNodeId(statement.argument, !inUses);
}

// Forms that have readers of their own, who report what they find, are right as long as there is
// something to read.
bool IsNotEmpty(const Statement &statement)
{
    return statement.argument.find_first_not_of(kBlanks) != std::string_view::npos;
}

struct FormRow {
    ArgumentForm form;
    Test test;
};

// clang-format off
constexpr FormRow kForms[] = {
    {F::None,              [](const Statement &) { return true; }},
    {F::Text,              IsText},
    {F::Identifier,        [](const Statement &s) { return IsIdentifier(s.argument); }},
    {F::Reference,         [](const Statement &s) { return IsReference(s.argument); }},
    {F::References,        [](const Statement &s) { return AreWords(s.argument, IsReference); }},
    {F::Boolean,           [](const Statement &s) { return IsOneOf(s.argument, {"true", "false"}); }},
    {F::Date,              [](const Statement &s) { return IsDate(s.argument); }},
    {F::Uri,               [](const Statement &s) { return IsUri(s.argument); }},
    {F::Version,           [](const Statement &s) { return IsOneOf(s.argument, {"1", "1.1"}); }},
    {F::StatusWord,        [](const Statement &s) { return IsOneOf(s.argument, {"current", "deprecated", "obsolete"}); }},
    {F::OrderWord,         [](const Statement &s) { return IsOneOf(s.argument, {"user", "system"}); }},
    {F::DeviateWord,       [](const Statement &s) { return IsOneOf(s.argument, {"add", "delete", "replace", "not-supported"}); }},
    {F::ModifierWord,      [](const Statement &s) { return s.argument == "invert-match"; }},
    {F::Unsigned,          [](const Statement &s) { return IsUnsigned32(s.argument); }},
    {F::MaxElements,       [](const Statement &s) { return s.argument == "unbounded" || (IsUnsigned32(s.argument) && s.argument != "0"); }},
    {F::Integer,           [](const Statement &s) { return IsInteger32(s.argument); }},
    {F::FractionDigits,    [](const Statement &s) { return IsFractionDigits(s.argument); }},
    {F::AbsoluteId,        [](const Statement &s) { return IsSchemaNodeId(s.argument, true); }},
    {F::DescendantId,      [](const Statement &s) { return IsDescendant(s.argument); }},
    {F::DescendantIds,     [](const Statement &s) { return AreWords(s.argument, IsDescendant); }},
    {F::AugmentTarget,     IsTarget},
    {F::FeatureExpression, IsNotEmpty},
    {F::Range,             IsNotEmpty},
    {F::Length,            IsNotEmpty},
    {F::Condition,         IsNotEmpty},
    {F::LeafrefPath,       IsNotEmpty},
};
// clang-format on

constexpr bool IsInOrder()
{
    for (size_t i = 0; i < std::size(kForms); ++i)
        if (kForms[i].form != static_cast<ArgumentForm>(i))
            return false;
    return std::size(kForms) == static_cast<size_t>(F::LeafrefPath) + 1;
}
static_assert(IsInOrder());

} // namespace

bool IsReference(std::string_view text)
{
    QName name = SplitName(text);
    bool hasPrefix = text.find(':') != std::string_view::npos;
    return IsIdentifier(name.name) && (!hasPrefix || IsIdentifier(name.prefix));
}

bool IsDate(std::string_view text)
{
    constexpr std::string_view kShape = "dddd-dd-dd";
    if (text.size() != kShape.size())
        return false;
    for (size_t i = 0; i < text.size(); ++i)
        if (kShape[i] == 'd' ? text[i] < '0' || text[i] > '9' : text[i] != kShape[i])
            return false;
    constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int month = (text[5] - '0') * 10 + text[6] - '0', day = (text[8] - '0') * 10 + text[9] - '0';
    return month >= 1 && month <= 12 && day >= 1 && day <= kDays[month - 1];
}

bool ReadUnsigned(std::string_view text, uint64_t &value)
{
    return ReadNumber(text, value) && (text.front() != '0' || text.size() == 1);
}

bool ReadInteger(std::string_view text, int64_t &value)
{
    std::string_view digits = text.starts_with('-') ? text.substr(1) : text;
    return ReadNumber(text, value) && (digits.front() != '0' || digits.size() == 1);
}

std::string_view TakeWord(std::string_view &text)
{
    size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
    size_t end = std::min(text.find_first_of(kBlanks, start), text.size());
    std::string_view word = text.substr(start, end - start);
    text.remove_prefix(end);
    return word;
}

std::string_view TakeStep(std::string_view &path)
{
    if (path.starts_with('/'))
        path.remove_prefix(1);
    size_t end = std::min(path.find('/'), path.size());
    std::string_view step = path.substr(0, end);
    path.remove_prefix(end);
    return step;
}

void CheckArgument(const Statement &statement, Reports &reports)
{
    if (statement.IsExtension())
        return;
    ArgumentForm form = InfoOf(statement.keyword).form;
    if (statement.hasArgument == (form == F::None)) {
        reports.Error(statement.place(), ZR_YANG_CODE_ARGUMENT,
                      {"\"", statement.word,
                       form == F::None ? "\" takes no argument" : "\" needs an argument"});
        return;
    }
    if (!kForms[static_cast<size_t>(form)].test(statement))
        reports.Error(
            statement.place(), ZR_YANG_CODE_ARGUMENT,
            {"invalid argument \"", statement.argument, "\" of \"", statement.word, "\""});
}

} // namespace zr::yang
