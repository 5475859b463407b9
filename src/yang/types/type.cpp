// SPDX-License-Identifier: Apache-2.0
#include "yang/types/type.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <unordered_set>

#include "yang/syntax/arguments.h"
#include "yang/types/patterns.h"

namespace zr::yang {

namespace {

using B = Builtin;
using K = Keyword;

constexpr uint32_t kChainLimit = 128; // of typedefs that stand on each other, and of unions

constexpr uint32_t Bit(Builtin type)
{
    return 1u << static_cast<unsigned>(type);
}
constexpr uint32_t kIntegers = Bit(B::Int8) | Bit(B::Int16) | Bit(B::Int32) | Bit(B::Int64) |
                               Bit(B::Uint8) | Bit(B::Uint16) | Bit(B::Uint32) | Bit(B::Uint64);

// What may stand in a type (RFC 7950, section 9), and what must stand in one that is built in.
struct RestrictionRow {
    Keyword keyword;
    uint32_t bases;     // that it restricts
    bool isNeeded;      // by the built-in type
    bool isForBuiltins; // alone; in YANG 1.1 types derived from these may be restricted too
    bool isForDerived;  // in YANG 1.1, though not in YANG 1
};
constexpr RestrictionRow kRestrictions[] = {
    {K::FractionDigits, Bit(B::Decimal64), true, true, false},
    {K::Range, kIntegers | Bit(B::Decimal64), false, false, true},
    {K::Length, Bit(B::String) | Bit(B::Binary), false, false, true},
    {K::Pattern, Bit(B::String), false, false, true},
    {K::Enum, Bit(B::Enumeration), true, true, true},
    {K::Bit, Bit(B::Bits), true, true, true},
    {K::Path, Bit(B::Leafref), true, true, false},
    {K::Base, Bit(B::Identityref), true, true, false},
    {K::Type, Bit(B::Union), true, true, false},
    {K::RequireInstance, Bit(B::InstanceIdentifier) | Bit(B::Leafref), false, true, true},
};

// The range of a built-in type as ordinals.
struct BuiltinRange {
    Builtin type;
    bool isSigned;
    uint32_t bits;
};
constexpr BuiltinRange kRanges[] = {
    {B::Int8, true, 8},     {B::Int16, true, 16},   {B::Int32, true, 32},
    {B::Int64, true, 64},   {B::Uint8, false, 8},   {B::Uint16, false, 16},
    {B::Uint32, false, 32}, {B::Uint64, false, 64}, {B::Decimal64, true, 64},
    {B::String, false, 64}, {B::Binary, false, 64},
};

Interval IntervalOf(const BuiltinRange &range)
{
    uint64_t most = std::numeric_limits<uint64_t>::max() >> (64 - range.bits);
    if (!range.isSigned)
        return {0, most};
    uint64_t middle = uint64_t{1} << 63, half = most / 2;
    return {middle - half - 1, middle + half};
}

// Enums count in 32 bits with a sign, bits without one.
struct NameRow {
    Keyword keyword, number;
    int64_t least, most;
};
constexpr NameRow kNameRows[] = {
    {K::Enum, K::Value, INT32_MIN, INT32_MAX},
    {K::Bit, K::Position, 0, UINT32_MAX},
};

} // namespace

const Type *TypeIn(const Statement &statement)
{
    const Statement *type = SubStatement(statement, K::Type);
    return type != nullptr ? static_cast<const TypeUse *>(type->meaning)->type : nullptr;
}

void TypeResolver::Resolve(Module &module)
{
    for (Unit *unit : module.units)
        for (Statement *at = unit->root; at != nullptr; at = NextInWalk(*unit->root, *at))
            if (at->keyword == K::Type)
                TypeOf(*at);
}

const Type *TypeResolver::TypeOf(Statement &statement, uint32_t depth)
{
    auto &use = *static_cast<TypeUse *>(statement.meaning);
    if (use.type != nullptr || !use.isLinked || statement.isFaulty)
        return use.type;
    if (depth > kChainLimit) {
        reports_.Error(statement.place(), ZR_YANG_CODE_LIMIT,
                       {"types stand on each other more than 128 deep"});
        statement.isFaulty = true;
        return nullptr;
    }
    use.type = Make(statement, use, depth);
    statement.isFaulty = use.type == nullptr;
    return use.type;
}

bool TypeResolver::StartFromBase(Type &type, const TypeUse &use, uint32_t depth)
{
    if (use.definition == nullptr) {
        type.base = FindBuiltin(type.statement->argument);
        for (const BuiltinRange &range : kRanges)
            if (range.type == type.base) {
                type.form.isSigned = range.isSigned;
                auto *intervals = arena_.New<Intervals>(arena_.resource());
                intervals->push_back(IntervalOf(range));
                type.intervals = intervals;
            }
        return true;
    }
    if (use.definition->isInCircle)
        return false;
    Statement *inner = SubStatement(*use.definition->statement, K::Type);
    const Type *base = inner != nullptr ? TypeOf(*inner, depth + 1) : nullptr;
    if (base == nullptr)
        return false;
    const Statement *statement = type.statement;
    type = *base;
    type.statement = statement;
    type.derivedFrom = base;
    type.chain = base->chain + 1;
    if (type.chain <= kChainLimit)
        return true;
    reports_.Error(statement->place(), ZR_YANG_CODE_LIMIT,
                   {"typedefs stand on each other more than 128 deep"});
    return false;
}

Type *TypeResolver::Make(Statement &statement, TypeUse &use, uint32_t depth)
{
    auto *type = arena_.New<Type>();
    type->statement = &statement;
    bool isBuiltin = use.definition == nullptr;
    if (!StartFromBase(*type, use, depth) || !CheckRestrictions(statement, *type, isBuiltin) ||
        !Restrict(*type, isBuiltin, depth))
        return nullptr;
    return type;
}

bool TypeResolver::CheckRestrictions(const Statement &statement, const Type &type, bool isBuiltin)
{
    bool isNew = UnitOf(statement).version == Version::Yang11, isRight = true;
    for (const RestrictionRow &row : kRestrictions) {
        const Statement *found = SubStatement(statement, row.keyword);
        bool isOfType = (row.bases & Bit(type.base)) != 0;
        bool isAllowed =
            isOfType && (isBuiltin || !row.isForBuiltins || (row.isForDerived && isNew));
        // In YANG 1 a leafref has no require-instance.
        if (row.keyword == K::RequireInstance && type.base == B::Leafref && !isNew)
            isAllowed = false;
        if (found != nullptr && !isAllowed) {
            Error(*found,
                  {"\"", found->word, "\" may not stand in type \"", statement.argument, "\""});
            isRight = false;
        } else if (found == nullptr && isBuiltin && row.isNeeded && isOfType) {
            Error(statement,
                  {"type \"", statement.argument, "\" without \"", NameOf(row.keyword), "\""});
            isRight = false;
        }
    }
    return isRight;
}

bool TypeResolver::Restrict(Type &type, bool isBuiltin, uint32_t depth)
{
    const Statement &statement = *type.statement;
    if (const Statement *digits = SubStatement(statement, K::FractionDigits)) {
        uint64_t count = 0;
        ReadUnsigned(digits->argument, count);
        type.form.fractionDigits = static_cast<uint32_t>(count);
    }
    for (Keyword keyword : {K::Range, K::Length})
        if (const Statement *restriction = SubStatement(statement, keyword))
            if (!RestrictIntervals(type, *restriction))
                return false;
    for (Keyword keyword : {K::Enum, K::Bit})
        if (SubStatement(statement, keyword) != nullptr && !RestrictNames(type, keyword, isBuiltin))
            return false;
    CheckPatterns(statement);
    if (const Statement *path = SubStatement(statement, K::Path))
        type.path = path;
    if (SubStatement(statement, K::Base) != nullptr && !ReadBases(type))
        return false;
    return SubStatement(statement, K::Type) == nullptr || ReadMembers(type, depth);
}

void TypeResolver::CheckPatterns(const Statement &statement)
{
    for (const Statement *pattern = SubStatement(statement, K::Pattern); pattern != nullptr;
         pattern = NextSubStatement(*pattern, K::Pattern))
        if (const char *fault = FindPatternFault(pattern->argument))
            Error(*pattern, {"bad pattern \"", pattern->argument, "\": ", fault});
}

bool TypeResolver::RestrictIntervals(Type &type, const Statement &restriction)
{
    auto *intervals = arena_.New<Intervals>(arena_.resource());
    const char *fault = ReadIntervals(restriction.argument, type.form, *type.intervals, *intervals);
    type.intervals = intervals;
    if (fault != nullptr)
        Error(restriction, {"bad ", restriction.word, " \"", restriction.argument, "\": ", fault});
    return fault == nullptr;
}

// The enums or bits of a built-in type, or a choice of those of a derived one (RFC 7950, sections
// 9.6.4 and 9.7.4).
bool TypeResolver::RestrictNames(Type &type, Keyword keyword, bool isBuiltin)
{
    auto *names = arena_.New<std::pmr::vector<NamedValue>>(arena_.resource());
    bool isRight = ReadNames(type, keyword, *names, isBuiltin ? nullptr : type.names);
    type.names = names;
    return isRight;
}

bool TypeResolver::ReadNames(Type &type, Keyword keyword, std::pmr::vector<NamedValue> &names,
                             const std::pmr::vector<NamedValue> *base)
{
    const NameRow &row = kNameRows[keyword == K::Bit];
    std::pmr::unordered_set<std::string_view> seen(names.get_allocator());
    std::pmr::unordered_set<int64_t> used(names.get_allocator());
    std::pmr::unordered_map<std::string_view, int64_t> inherited(names.get_allocator());
    if (base != nullptr)
        for (const NamedValue &one : *base)
            inherited.emplace(one.name, one.value);
    bool isRight = true;
    auto fail = [&](const Statement &where, std::initializer_list<std::string_view> pieces) {
        Error(where, pieces);
        isRight = false;
    };
    int64_t next = 0;
    for (const Statement *at = SubStatement(*type.statement, keyword); at != nullptr;
         at = NextSubStatement(*at, keyword)) {
        auto found = inherited.find(at->argument);
        const int64_t *inBase = found != inherited.end() ? &found->second : nullptr;
        if (!seen.insert(at->argument).second)
            fail(*at, {at->word, " \"", at->argument, "\" stands here twice"});
        if (base != nullptr && inBase == nullptr)
            fail(*at, {"the base type has no ", at->word, " \"", at->argument, "\""});
        if (keyword == K::Bit && !IsIdentifier(at->argument))
            continue; // reported as an argument
        if (inBase != nullptr)
            next = *inBase;
        const Statement *number = SubStatement(*at, row.number);
        int64_t value = next;
        if (number != nullptr && !ReadInteger(number->argument, value))
            continue;
        if (inBase != nullptr && value != *inBase)
            fail(*number,
                 {"the base type has another ", number->word, " for \"", at->argument, "\""});
        if (value < row.least || value > row.most)
            fail(*at, {at->word, " \"", at->argument, "\" needs a ", NameOf(row.number)});
        else if (!used.insert(value).second)
            fail(*at,
                 {at->word, " \"", at->argument, "\" has the ", NameOf(row.number), " of another"});
        next = names.empty() ? value + 1 : std::max(next, value + 1);
        names.push_back({at->argument, value, SubStatement(*at, K::IfFeature) != nullptr});
    }
    return isRight;
}

bool TypeResolver::ReadBases(Type &type)
{
    type.bases = arena_.New<std::pmr::vector<Definition *>>(arena_.resource());
    bool isRight = true;
    for (const Statement *at = SubStatement(*type.statement, K::Base); at != nullptr;
         at = NextSubStatement(*at, K::Base)) {
        auto *identity = static_cast<Definition *>(at->meaning);
        isRight &= identity != nullptr;
        type.bases->push_back(identity);
    }
    return isRight;
}

bool TypeResolver::ReadMembers(Type &type, uint32_t depth)
{
    type.members = arena_.New<std::pmr::vector<const Type *>>(arena_.resource());
    bool isOld = UnitOf(*type.statement).version == Version::Yang1, isRight = true;
    for (Statement *at = SubStatement(const_cast<Statement &>(*type.statement), K::Type);
         at != nullptr; at = NextSubStatement(*at, K::Type)) {
        const Type *member = TypeOf(*at, depth + 1);
        isRight &= member != nullptr;
        if (isOld && member != nullptr && (member->base == B::Empty || member->base == B::Leafref))
            Error(*at, {"a union of YANG 1 may not have a member of type \"", NameOf(member->base),
                        "\""});
        type.members->push_back(member);
    }
    return isRight;
}

} // namespace zr::yang
