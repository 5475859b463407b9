// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/keyword.h"

#include <algorithm>
#include <iterator>

namespace zr::yang {

namespace {

using F = ArgumentForm;

// clang-format off
// RFC 7950, sections 13.1 (names in YIN) and 14 (forms):
//   keyword             argument in YIN  element  form
constexpr KeywordInfo kKeywords[] = {
    {"action",           "name",          false, F::Identifier},
    {"anydata",          "name",          false, F::Identifier},
    {"anyxml",           "name",          false, F::Identifier},
    {"argument",         "name",          false, F::Identifier},
    {"augment",          "target-node",   false, F::AugmentTarget},
    {"base",             "name",          false, F::Reference},
    {"belongs-to",       "module",        false, F::Identifier},
    {"bit",              "name",          false, F::Identifier},
    {"case",             "name",          false, F::Identifier},
    {"choice",           "name",          false, F::Identifier},
    {"config",           "value",         false, F::Boolean},
    {"contact",          "text",          true,  F::Text},
    {"container",        "name",          false, F::Identifier},
    {"default",          "value",         false, F::Text},
    {"description",      "text",          true,  F::Text},
    {"deviate",          "value",         false, F::DeviateWord},
    {"deviation",        "target-node",   false, F::AbsoluteId},
    {"enum",             "name",          false, F::Text},
    {"error-app-tag",    "value",         false, F::Text},
    {"error-message",    "value",         true,  F::Text},
    {"extension",        "name",          false, F::Identifier},
    {"feature",          "name",          false, F::Identifier},
    {"fraction-digits",  "value",         false, F::FractionDigits},
    {"grouping",         "name",          false, F::Identifier},
    {"identity",         "name",          false, F::Identifier},
    {"if-feature",       "name",          false, F::FeatureExpression},
    {"import",           "module",        false, F::Identifier},
    {"include",          "module",        false, F::Identifier},
    {"input",            "",              false, F::None},
    {"key",              "value",         false, F::References},
    {"leaf",             "name",          false, F::Identifier},
    {"leaf-list",        "name",          false, F::Identifier},
    {"length",           "value",         false, F::Length},
    {"list",             "name",          false, F::Identifier},
    {"mandatory",        "value",         false, F::Boolean},
    {"max-elements",     "value",         false, F::MaxElements},
    {"min-elements",     "value",         false, F::Unsigned},
    {"modifier",         "value",         false, F::ModifierWord},
    {"module",           "name",          false, F::Identifier},
    {"must",             "condition",     false, F::Condition},
    {"namespace",        "uri",           false, F::Uri},
    {"notification",     "name",          false, F::Identifier},
    {"ordered-by",       "value",         false, F::OrderWord},
    {"organization",     "text",          true,  F::Text},
    {"output",           "",              false, F::None},
    {"path",             "value",         false, F::LeafrefPath},
    {"pattern",          "value",         false, F::Text},
    {"position",         "value",         false, F::Unsigned},
    {"prefix",           "value",         false, F::Identifier},
    {"presence",         "value",         false, F::Text},
    {"range",            "value",         false, F::Range},
    {"reference",        "text",          true,  F::Text},
    {"refine",           "target-node",   false, F::DescendantId},
    {"require-instance", "value",         false, F::Boolean},
    {"revision",         "date",          false, F::Date},
    {"revision-date",    "date",          false, F::Date},
    {"rpc",              "name",          false, F::Identifier},
    {"status",           "value",         false, F::StatusWord},
    {"submodule",        "name",          false, F::Identifier},
    {"type",             "name",          false, F::Reference},
    {"typedef",          "name",          false, F::Identifier},
    {"unique",           "tag",           false, F::DescendantIds},
    {"units",            "name",          false, F::Text},
    {"uses",             "name",          false, F::Reference},
    {"value",            "value",         false, F::Integer},
    {"when",             "condition",     false, F::Condition},
    {"yang-version",     "value",         false, F::Version},
    {"yin-element",      "value",         false, F::Boolean},
};
// clang-format on
static_assert(std::size(kKeywords) == kKeywordCount);

constexpr bool IsSorted()
{
    for (size_t i = 1; i < kKeywordCount; ++i)
        if (kKeywords[i - 1].name >= kKeywords[i].name)
            return false;
    return true;
}
static_assert(IsSorted());

constexpr KeywordInfo kNoKeyword = {"", "", false, F::Text};

constexpr uint64_t Bit(Keyword keyword)
{
    return uint64_t{1} << static_cast<unsigned>(keyword);
}
constexpr uint64_t kDataKeywords = Bit(Keyword::Container) | Bit(Keyword::Leaf) |
                                   Bit(Keyword::LeafList) | Bit(Keyword::List) |
                                   Bit(Keyword::Anydata) | Bit(Keyword::Anyxml);
constexpr uint64_t kNodeKeywords =
    kDataKeywords | Bit(Keyword::Choice) | Bit(Keyword::Case) | Bit(Keyword::Rpc) |
    Bit(Keyword::Action) | Bit(Keyword::Notification) | Bit(Keyword::Input) | Bit(Keyword::Output);
static_assert(static_cast<size_t>(Keyword::Rpc) < 64);

bool IsIn(uint64_t set, Keyword keyword)
{
    return static_cast<size_t>(keyword) < 64 && (set & Bit(keyword)) != 0;
}

constexpr std::string_view kBuiltins[] = {
    "binary",  "bits",        "boolean",     "decimal64",
    "empty",   "enumeration", "identityref", "instance-identifier",
    "int16",   "int32",       "int64",       "int8",
    "leafref", "string",      "uint16",      "uint32",
    "uint64",  "uint8",       "union",
};
static_assert(std::size(kBuiltins) == static_cast<size_t>(Builtin::None));

} // namespace

const KeywordInfo &InfoOf(Keyword keyword)
{
    return keyword == Keyword::Unknown ? kNoKeyword : kKeywords[static_cast<size_t>(keyword)];
}

Keyword FindKeyword(std::string_view word)
{
    const KeywordInfo *found =
        std::lower_bound(std::begin(kKeywords), std::end(kKeywords), word,
                         [](const KeywordInfo &info, std::string_view w) { return info.name < w; });
    if (found == std::end(kKeywords) || found->name != word)
        return Keyword::Unknown;
    return static_cast<Keyword>(found - kKeywords);
}

bool IsNodeKeyword(Keyword keyword)
{
    return IsIn(kNodeKeywords, keyword);
}

bool IsDataKeyword(Keyword keyword)
{
    return IsIn(kDataKeywords, keyword);
}

Builtin FindBuiltin(std::string_view name)
{
    const auto *found = std::lower_bound(std::begin(kBuiltins), std::end(kBuiltins), name);
    if (found == std::end(kBuiltins) || *found != name)
        return Builtin::None;
    return static_cast<Builtin>(found - kBuiltins);
}

std::string_view NameOf(Builtin type)
{
    return type == Builtin::None ? std::string_view("derived")
                                 : kBuiltins[static_cast<size_t>(type)];
}

} // namespace zr::yang
