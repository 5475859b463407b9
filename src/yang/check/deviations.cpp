// Deviations: whether what they change is there (RFC 7950, section 7.20.3).
#include <algorithm>
#include <iterator>

#include "yang/check/checker.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr uint64_t Bit(Keyword keyword)
{
    return uint64_t{1} << static_cast<unsigned>(keyword);
}
constexpr uint64_t kLeafs = Bit(K::Leaf) | Bit(K::LeafList);
constexpr uint64_t kLists = Bit(K::List) | Bit(K::LeafList);
constexpr uint64_t kAnything = Bit(K::Anydata) | Bit(K::Anyxml);
constexpr uint64_t kData = kLeafs | kLists | kAnything | Bit(K::Container);

// What can be deviated where, and whether a target can have it several times. What has a value
// without being written can be replaced all the same.
struct DeviateRow {
    Keyword property;
    uint64_t targets;
    bool isMany, isAlwaysThere;
};
constexpr DeviateRow kRows[] = {
    {K::Type, kLeafs, false, false},
    {K::Units, kLeafs, false, false},
    {K::Default, kLeafs | Bit(K::Choice), false, false},
    {K::Config, kData | Bit(K::Choice), false, true},
    {K::Mandatory, kAnything | Bit(K::Leaf) | Bit(K::Choice), false, true},
    {K::MinElements, kLists, false, true},
    {K::MaxElements, kLists, false, true},
    {K::Must, kData | Bit(K::Input) | Bit(K::Output) | Bit(K::Notification), true, false},
    {K::Unique, Bit(K::List), true, false},
};

bool HasValue(const Node &node, const Statement &property)
{
    bool has = false;
    ForEachProperty(node, property.keyword,
                    [&](const Statement &own, bool) { has |= own.argument == property.argument; });
    return has;
}

} // namespace

void Checker::CheckDeviation(const Statement &deviation, Expander &expander)
{
    const Node *target = expander.FindTarget(nullptr, deviation.argument, deviation);
    if (target == nullptr)
        return;
    if (target->module == UnitOf(deviation).module)
        Error(deviation, ZR_YANG_CODE_REFINE, {"a module cannot deviate from itself"});
    for (const Statement &deviate : SubStatements(deviation))
        if (deviate.keyword == K::Deviate)
            CheckDeviate(deviate, *target);
}

void Checker::CheckDeviate(const Statement &deviate, const Node &target)
{
    for (const Statement &property : SubStatements(deviate)) {
        const auto *row =
            std::find_if(std::begin(kRows), std::end(kRows),
                         [&](const DeviateRow &r) { return r.property == property.keyword; });
        if (row == std::end(kRows))
            continue;
        bool isMany =
            row->isMany || (property.keyword == K::Default && target.keyword == K::LeafList);
        bool isThere = PropertyOf(target, property.keyword) != nullptr;
        auto fail = [&](std::string_view how) {
            Error(property, ZR_YANG_CODE_REFINE,
                  {NameOf(target.keyword), " \"", target.name(), "\" ", how, " \"", property.word,
                   "\""});
        };
        if ((row->targets & Bit(target.keyword)) == 0)
            fail("cannot have a");
        else if (deviate.argument == "add" && !isMany && isThere)
            fail("already has a");
        else if (deviate.argument == "replace" && !isThere && !row->isAlwaysThere)
            fail("has no");
        else if (deviate.argument == "delete" && !HasValue(target, property))
            fail("has no such");
        const Type *type = property.keyword == K::Default ? TypeIn(*target.statement) : nullptr;
        if (type != nullptr && deviate.argument != "delete" &&
            SubStatement(deviate, K::Type) == nullptr)
            CheckValue(*type, property);
    }
}

} // namespace zr::yang
