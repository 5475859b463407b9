// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/type_maker.h"

#include <algorithm>
#include <limits>

#include "instance/plan/leafref.h"
#include "instance/plan/scan.h"

namespace zr::data {

namespace {

bool IsSigned(uint32_t base)
{
    return base == ZRT_TYPE_DECIMAL64 || (base >= ZRT_TYPE_INT8 && base <= ZRT_TYPE_INT64);
}

constexpr uint64_t kLeastSigned = uint64_t{1} << 63;
constexpr uint64_t kGreatestSigned = kLeastSigned - 1;

// A number with so many fraction digits as one with others; the nearest that there is. Digits that
// a type does not have are cut off.
int64_t Rescale(int64_t number, uint32_t digits, uint32_t wanted)
{
    for (; digits < wanted; ++digits)
        if (__builtin_mul_overflow(number, int64_t{10}, &number))
            return number < 0 ? std::numeric_limits<int64_t>::min()
                              : std::numeric_limits<int64_t>::max();
    for (; digits > wanted; --digits)
        number /= 10;
    return number;
}

// What all values of a built-in type lie between.
Interval LimitsOf(uint32_t base)
{
    if (base >= ZRT_TYPE_INT8 && base < ZRT_TYPE_INT64) {
        uint64_t greatest = (uint64_t{1} << ((8u << (base - ZRT_TYPE_INT8)) - 1)) - 1;
        return {~greatest, greatest};
    }
    if (base >= ZRT_TYPE_UINT8 && base < ZRT_TYPE_UINT64)
        return {0, (uint64_t{1} << (8u << (base - ZRT_TYPE_UINT8))) - 1};
    if (IsSigned(base))
        return {kLeastSigned, kGreatestSigned};
    return {0, std::numeric_limits<uint64_t>::max()};
}

// What a bound is for values of a type; "min" and "max" are those of what the type is derived from.
uint64_t NumberOf(const ZrTypeBound &bound, const Type &type, const Interval &limits)
{
    if (bound.kind == ZR_BOUND_MIN)
        return limits.start;
    if (bound.kind == ZR_BOUND_MAX)
        return limits.end;
    if (type.base != ZRT_TYPE_DECIMAL64)
        return bound.number;
    return static_cast<uint64_t>(
        Rescale(static_cast<int64_t>(bound.number), bound.fractionDigits, type.fractionDigits));
}

} // namespace

const Pattern *TypeMaker::PatternOf(std::string_view text)
{
    auto found = plan_.patterns.find(text);
    if (found != plan_.patterns.end())
        return found->second;
    auto *pattern = plan_.arena.New<Pattern>();
    pattern->text = {plan_.arena.CopyText(text), text.size()};
    plan_.patterns.emplace(pattern->text, pattern);
    return pattern;
}

namespace {

Refusal RefusalOf(const ZrtRealType *source, uint32_t restriction, uint32_t index)
{
    return {ZR_TYPE_GetErrorMessage(source, restriction, index),
            ZR_TYPE_GetErrorAppTag(source, restriction, index)};
}

// A valid type has a range or a length, not both.
Refusal RefusalOfBounds(const ZrtRealType *source)
{
    Refusal refusal = RefusalOf(source, ZR_RESTRICTION_RANGE, 0);
    bool isSaid = refusal.message != nullptr || refusal.appTag != nullptr;
    return isSaid ? refusal : RefusalOf(source, ZR_RESTRICTION_LENGTH, 0);
}

} // namespace

void TypeMaker::ReadLink(const ZrtRealType *source, Link &link)
{
    std::pmr::memory_resource *memory = &plan_.memory;
    std::pmr::vector<Segment> segments(memory);
    Scan(ZR_TYPE_ScanBounds, source, [&](const ZrTypeBound *start, const ZrTypeBound *end) {
        segments.push_back({*start, *end});
    });
    link.segments = Keep(plan_.arena, segments);
    link.refusal = RefusalOfBounds(source);

    std::pmr::vector<NamedValue> names(memory);
    Scan(ZR_TYPE_ScanNameValuePair, source, [&](const char *name, const char *, int64_t value) {
        auto index = static_cast<uint32_t>(names.size());
        names.push_back({name, value, ZR_TYPE_IsNameEnabled(source, plan_.ctx, index) != 0});
    });
    link.names = Keep(plan_.arena, names);

    std::pmr::vector<PatternUse> patterns(memory);
    Scan(ZR_TYPE_ScanPatternInvertMatch, source, [&](const char *text, uint32_t inverted) {
        auto index = static_cast<uint32_t>(patterns.size());
        patterns.push_back(
            {PatternOf(text), inverted != 0, RefusalOf(source, ZR_RESTRICTION_PATTERN, index)});
    });
    link.patterns = Keep(plan_.arena, patterns);

    std::pmr::vector<const Identity *> bases(memory);
    Scan(ZR_TYPE_ScanIdentRefBase, source, [&](const char *module, const char *name) {
        std::pmr::string qualified(module, memory);
        bases.push_back(plan_.FindIdentity((qualified += ':') += name));
    });
    link.bases = Keep(plan_.arena, bases);
}

const TypeMaker::Link &TypeMaker::LinkOf(const ZrtRealType *source)
{
    auto [place, isNew] = links_.try_emplace(source);
    if (isNew)
        ReadLink(source, place->second);
    return place->second;
}

// Adds what a link asks for to what those below it ask for, whose last one ends where "min" and
// "max" are. The same link may restrict another base elsewhere.
void TypeMaker::Restrict(const Type &type, const Link &link,
                         std::pmr::vector<Restriction> &restrictions)
{
    if (link.segments.empty())
        return;
    Interval limits = LimitsOf(type.base);
    if (!restrictions.empty()) {
        std::span<Interval> below = restrictions.back().intervals;
        limits = {below.front().start, below.back().end};
    }
    std::pmr::vector<Interval> intervals(&plan_.memory);
    for (const Segment &segment : link.segments)
        intervals.push_back(
            {NumberOf(segment.start, type, limits), NumberOf(segment.end, type, limits)});
    restrictions.push_back({Keep(plan_.arena, intervals), link.refusal});
}

// The outermost list is the narrowest. It need not repeat the values and positions, which are those
// of the list in which all names are first (RFC 7950, sections 9.6.4.2 and 9.7.4.2). Each list may
// make a name depend on features.
void TypeMaker::NarrowNames(Type &type, std::span<NamedValue> ofLink)
{
    if (type.names.empty() || ofLink.empty()) {
        type.names = type.names.empty() ? ofLink : type.names;
        return;
    }
    std::pmr::vector<NamedValue> names(type.names.begin(), type.names.end(), &plan_.memory);
    for (NamedValue &row : names) {
        auto isSame = [&](const NamedValue &other) { return other.name == row.name; };
        auto found = std::find_if(ofLink.begin(), ofLink.end(), isSame);
        if (found != ofLink.end()) {
            row.value = found->value;
            row.isEnabled &= found->isEnabled;
        }
    }
    type.names = Keep(plan_.arena, names);
}

namespace {

void AddMember(const Type &member, std::pmr::vector<const Type *> &members)
{
    if (member.base == ZRT_TYPE_UNION)
        members.insert(members.end(), member.members.begin(), member.members.end());
    else
        members.push_back(&member);
}

// What the outermost type of a chain says that says anything. A context that does not keep it knows
// it of leafrefs alone.
bool RequiresInstance(const std::pmr::vector<const ZrtRealType *> &chain)
{
    for (const ZrtRealType *link : chain)
        if (uint32_t said = ZR_TYPE_GetRequireInstance(link); said != ZR_INSTANCE_NOT_SAID)
            return said == ZR_INSTANCE_REQUIRED;
    return ZR_TYPE_GetLeafrefRequireInstance(chain.back()) != 0;
}

} // namespace

const Type *TypeMaker::Make(const PlanNode &leaf, const ZrtRealType *source)
{
    std::pmr::memory_resource *memory = &plan_.memory;
    std::pmr::vector<const ZrtRealType *> chain({source}, memory);
    auto addLink = [&](const char *, const char *, const ZrtRealType *link) {
        if (link != nullptr && link != source)
            chain.push_back(link);
    };
    Caught<decltype(addLink)> caught(addLink);
    ZR_TYPE_IterRealTypeDerivedName(
        source, plan_.ctx,
        CallBack<decltype(addLink), const char *, const char *, const ZrtRealType *, void *>,
        &caught);
    caught.Rethrow();

    const ZrtRealType *innermost = chain.back();
    Type *type = plan_.arena.New<Type>();
    type->source = source;
    type->base = ZR_TYPE_GetBuiltInBaseType(innermost);
    type->fractionDigits = ZR_TYPE_GetDecimal64Fraction(innermost);
    std::pmr::vector<Restriction> restrictions(memory);
    std::pmr::vector<PatternUse> patterns(memory);
    for (const ZrtRealType *one : chain) {
        const Link &link = LinkOf(one);
        NarrowNames(*type, link.names);
        if (type->identityBases.empty())
            type->identityBases = link.bases;
        patterns.insert(patterns.end(), link.patterns.begin(), link.patterns.end());
    }
    for (auto link = chain.rbegin(); link != chain.rend(); ++link)
        Restrict(*type, LinkOf(*link), restrictions);
    type->restrictions = Keep(plan_.arena, restrictions);
    type->patterns = Keep(plan_.arena, patterns);

    std::pmr::vector<const Type *> members(memory);
    Scan(ZR_TYPE_ScanUnionSubType, innermost,
         [&](const char *, const char *, const ZrtRealType *member) {
             AddMember(*Make(leaf, member), members);
         });
    type->members = Keep(plan_.arena, members);
    if (const char *path = ZR_TYPE_GetLeafrefPathWithPredicates(innermost))
        CompileLeafref(plan_, leaf, path, *type);
    auto isRequired = [](const Type *member) { return member->requiresInstance; };
    auto refers = [](const Type *member) { return member->IsReference(); };
    type->hasReferences = std::any_of(members.begin(), members.end(), refers);
    type->requiresInstance = type->IsReference()
                                 ? RequiresInstance(chain)
                                 : std::any_of(members.begin(), members.end(), isRequired);
    return type;
}

} // namespace zr::data
