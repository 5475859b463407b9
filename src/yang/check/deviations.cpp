// SPDX-License-Identifier: Apache-2.0
// Deviations: whether what they change is there (RFC 7950, section 7.20.3).
#include <algorithm>
#include <iterator>

#include "yang/check/checker.h"

namespace zr::yang {

namespace {

using K = Keyword;

constexpr KeywordSet kLeafs = {K::Leaf, K::LeafList};
constexpr KeywordSet kLists = {K::List, K::LeafList};
constexpr KeywordSet kAnything = {K::Anydata, K::Anyxml};
constexpr KeywordSet kData = kLeafs | kLists | kAnything | KeywordSet{K::Container};

// What can be deviated where, and whether a target can have it several times. What has a value
// without being written can be replaced all the same.
struct DeviateRow {
    Keyword property;
    KeywordSet targets;
    bool isMany, isAlwaysThere;
};
constexpr DeviateRow kRows[] = {
    {K::Type, kLeafs, false, false},
    {K::Units, kLeafs, false, false},
    {K::Default, kLeafs | KeywordSet{K::Choice}, false, false},
    {K::Config, kData | KeywordSet{K::Choice}, false, true},
    {K::Mandatory, kAnything | KeywordSet{K::Leaf, K::Choice}, false, true},
    {K::MinElements, kLists, false, true},
    {K::MaxElements, kLists, false, true},
    {K::Must, kData | KeywordSet{K::Input, K::Output, K::Notification}, true, false},
    {K::Unique, {K::List}, true, false},
};

constexpr std::string_view kNotSupported = "not-supported", kDelete = "delete";

bool HasValue(const Node &node, const Statement &property)
{
    bool has = false;
    ForEachProperty(node, property.keyword,
                    [&](const Statement &own, bool) { has |= own.argument == property.argument; });
    return has;
}

} // namespace

// The deviations of a module hold together, in whatever order they are applied: none changes what
// another one removes or changes.
void Checker::CheckDeviation(const Statement &deviation, Expander &expander, Changes &changes)
{
    const Node *target = expander.FindTarget(nullptr, deviation.argument, deviation);
    if (target == nullptr)
        return;
    if (target->module == UnitOf(deviation).module)
        Error(deviation, ZR_YANG_CODE_REFINE, {"a module cannot deviate from itself"});
    for (const Statement &deviate : SubStatements(deviation)) {
        if (deviate.keyword != K::Deviate)
            continue;
        auto [known, isFirst] = changes.try_emplace({target, K::Deviate}, &deviate);
        if (!isFirst &&
            (deviate.argument == kNotSupported || known->second->argument == kNotSupported))
            Error(deviate, ZR_YANG_CODE_REFINE,
                  {NameOf(target->keyword), " \"", target->name(),
                   "\" is not supported, and is deviated besides"});
        CheckDeviate(deviate, *target, changes);
    }
}

void Checker::CheckDeviate(const Statement &deviate, const Node &target, Changes &changes)
{
    for (const Statement &property : SubStatements(deviate)) {
        const auto *row =
            std::find_if(std::begin(kRows), std::end(kRows),
                         [&](const DeviateRow &r) { return r.property == property.keyword; });
        if (row == std::end(kRows))
            continue;
        bool isMany =
            row->isMany || (property.keyword == K::Default && target.keyword == K::LeafList);
        const Statement *&change = changes[{&target, property.keyword}];
        bool isDeleted = change != nullptr && change->parent->argument == kDelete;
        bool isThere = PropertyOf(target, property.keyword) != nullptr && !isDeleted;
        auto fail = [&](std::string_view how) {
            Error(property, ZR_YANG_CODE_REFINE,
                  {NameOf(target.keyword), " \"", target.name(), "\" ", how, " \"", property.word,
                   "\""});
        };
        bool isChangedTwice = !isMany && change != nullptr && change->parent != &deviate &&
                              !(isDeleted && deviate.argument == "add");
        change = &property;
        if (!row->targets.Has(target.keyword))
            fail("cannot have a");
        else if (isChangedTwice)
            fail("is deviated twice in its");
        else if (deviate.argument == "add" && !isMany && isThere)
            fail("already has a");
        else if (deviate.argument == "replace" && !isThere && !row->isAlwaysThere)
            fail("has no");
        else if (deviate.argument == kDelete && !HasValue(target, property))
            fail("has no such");
        const Type *type = property.keyword == K::Default ? TypeIn(*target.statement) : nullptr;
        if (type != nullptr && deviate.argument != kDelete &&
            SubStatement(deviate, K::Type) == nullptr)
            CheckValue(*type, property);
    }
}

} // namespace zr::yang
