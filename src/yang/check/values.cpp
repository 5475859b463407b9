// SPDX-License-Identifier: Apache-2.0
// Defaults: whether a text is a value of a type (RFC 7950, section 9).
#include <algorithm>
#include <unordered_set>

#include "yang/check/checker.h"
#include "yang/syntax/arguments.h"
#include "yang/types/patterns.h"

namespace zr::yang {

namespace {

using B = Builtin;
using K = Keyword;

// What a value is judged by besides its type.
struct Judge {
    Scopes &scopes;
    const Statement &where; // whose prefixes it has
    std::pmr::memory_resource *memory;
};

using Test = bool (*)(const Type &, std::string_view, const Judge &);

bool IsInteger(const Type &type, std::string_view text, const Judge &)
{
    uint64_t ordinal;
    return ReadIntegerValue(text, type.form, ordinal) && Contains(*type.intervals, ordinal);
}

bool IsDecimal(const Type &type, std::string_view text, const Judge &)
{
    uint64_t ordinal;
    return ReadNumber(text, type.form, ordinal) && Contains(*type.intervals, ordinal);
}

bool HasModifier(const Statement &pattern)
{
    return SubStatement(pattern, K::Modifier) != nullptr;
}

// The patterns of all the typedefs that a type stands on hold together.
bool MatchesPatterns(const Type &type, std::string_view text, std::pmr::memory_resource *memory)
{
    for (const Type *at = &type; at != nullptr; at = at->derivedFrom)
        for (const Statement *pattern = SubStatement(*at->statement, K::Pattern);
             pattern != nullptr; pattern = NextSubStatement(*pattern, K::Pattern)) {
            Match wrong = HasModifier(*pattern) ? Match::Yes : Match::No;
            if (FindPatternFault(pattern->argument) == nullptr &&
                MatchPattern(pattern->argument, text, memory) == wrong)
                return false;
        }
    return true;
}

bool IsString(const Type &type, std::string_view text, const Judge &judge)
{
    return Contains(*type.intervals, CountCharacters(text)) &&
           MatchesPatterns(type, text, judge.memory);
}

bool IsBoolean(const Type &, std::string_view text, const Judge &)
{
    return text == "true" || text == "false";
}

bool HasName(const Type &type, std::string_view name)
{
    return std::any_of(type.names->begin(), type.names->end(),
                       [&](const NamedValue &one) { return one.name == name; });
}

bool IsEnum(const Type &type, std::string_view text, const Judge &)
{
    return HasName(type, text);
}

bool AreBits(const Type &type, std::string_view text, const Judge &judge)
{
    std::pmr::unordered_set<std::string_view> seen(judge.memory);
    for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text))
        if (!HasName(type, word) || !seen.insert(word).second)
            return false;
    return true;
}

// Base64 (RFC 4648, section 4), with line breaks between its characters.
bool IsBinary(const Type &type, std::string_view text, const Judge &)
{
    uint64_t characters = 0, padding = 0;
    for (char c : text) {
        if (c == '\n' || c == '\r' || c == ' ')
            continue;
        bool isDigit = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '+' || c == '/';
        if (c == '=')
            ++padding;
        else if (!isDigit || padding > 0)
            return false;
        ++characters;
    }
    return characters % 4 == 0 && padding <= 2 &&
           Contains(*type.intervals, characters / 4 * 3 - padding);
}

bool IsNothing(const Type &, std::string_view, const Judge &)
{
    return false; // a leaf of type empty has no default
}

bool IsAnything(const Type &, std::string_view, const Judge &)
{
    return true;
}

bool IsPath(const Type &, std::string_view text, const Judge &)
{
    return text.starts_with('/');
}

bool IsDerived(const Definition &identity, const Definition &base,
               std::pmr::unordered_set<const Definition *> &seen)
{
    std::pmr::vector<const Definition *> waiting({&identity}, seen.get_allocator());
    while (!waiting.empty()) {
        const Definition *at = waiting.back();
        waiting.pop_back();
        for (const Need *need = at->needs; need != nullptr; need = need->next) {
            if (need->definition == &base)
                return true;
            if (seen.insert(need->definition).second)
                waiting.push_back(need->definition);
        }
    }
    return false;
}

// An identity that is derived from every base.
bool IsIdentity(const Type &type, std::string_view text, const Judge &judge)
{
    const Definition *identity =
        IsReference(text) ? judge.scopes.Look(DefinitionKind::Identity, text, judge.where)
                          : nullptr;
    if (identity == nullptr)
        return false;
    return std::all_of(type.bases->begin(), type.bases->end(), [&](const Definition *base) {
        std::pmr::unordered_set<const Definition *> seen(judge.memory);
        return IsDerived(*identity, *base, seen);
    });
}

bool IsOfUnion(const Type &type, std::string_view text, const Judge &judge);

// In the order of Builtin. What a leafref refers to is not looked at.
constexpr Test kTests[] = {
    IsBinary,  AreBits,   IsBoolean, IsDecimal, IsNothing, IsEnum,     IsIdentity,
    IsPath,    IsInteger, IsInteger, IsInteger, IsInteger, IsAnything, IsString,
    IsInteger, IsInteger, IsInteger, IsInteger, IsOfUnion,
};
static_assert(std::size(kTests) == static_cast<size_t>(B::None));

bool IsValue(const Type &type, std::string_view text, const Judge &judge)
{
    return kTests[static_cast<size_t>(type.base)](type, text, judge);
}

// Unions stand in each other as deep as types may.
bool IsOfUnion(const Type &type, std::string_view text, const Judge &judge)
{
    return std::any_of(type.members->begin(), type.members->end(), [&](const Type *member) {
        return member->base != B::Empty && IsValue(*member, text, judge);
    });
}

} // namespace

void Checker::CheckValue(const Type &type, const Statement &value)
{
    if (!IsValue(type, value.argument, {scopes_, value, memory_}))
        Error(value, ZR_YANG_CODE_DEFAULT,
              {"default \"", value.argument, "\" is no value of type \"", type.statement->argument,
               "\""});
}

// A default is there with every set of features, and so are the names in it (RFC 7950, section
// 7.6.4).
void Checker::CheckConditionalNames(const Type &type, const Statement &value)
{
    if (type.names == nullptr)
        return;
    std::string_view rest = value.argument;
    bool isEnum = type.base == B::Enumeration;
    for (std::string_view name = isEnum ? rest : TakeWord(rest); !name.empty();
         name = isEnum ? std::string_view() : TakeWord(rest))
        for (const NamedValue &one : *type.names)
            if (one.name == name && one.isConditional)
                Error(value, ZR_YANG_CODE_DEFAULT, {"default \"", name, "\" depends on a feature"});
}

// A type that restricts its base may leave no room for the default that it would inherit.
void Checker::CheckInheritedDefault(const Statement &statement, const Type &type)
{
    if (type.statement->first == nullptr)
        return; // nothing is restricted
    const Statement *at = SubStatement(statement, K::Type);
    for (uint32_t i = 0; at != nullptr && i <= type.chain; ++i) {
        const Definition *base = static_cast<const TypeUse *>(at->meaning)->definition;
        if (base == nullptr)
            return;
        const Statement *value = SubStatement(*base->statement, K::Default);
        if (value != nullptr) {
            if (!IsValue(type, value->argument, {scopes_, *value, memory_}))
                Error(*type.statement, ZR_YANG_CODE_DEFAULT,
                      {"the default \"", value->argument, "\" of type \"", base->name(),
                       "\" is no value of its restriction here"});
            return;
        }
        at = SubStatement(*base->statement, K::Type);
    }
}

} // namespace zr::yang
