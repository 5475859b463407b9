// SPDX-License-Identifier: Apache-2.0
#include "instance/xpath/references.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

using Predicate = References::Predicate;

// Canonical instance-identifiers are well-formed.
Predicate TakePredicate(XPathTokens &tokens)
{
    Predicate predicate;
    for (tokens.Advance(); tokens.at().kind != XPathKind::CloseBracket; tokens.Advance()) {
        const XPathToken &token = tokens.at();
        if (token.kind == XPathKind::End)
            return predicate;
        if (token.kind == XPathKind::Literal)
            predicate.value = token.text.substr(1, token.text.size() - 2);
        else if (token.kind == XPathKind::Number)
            predicate.value = token.text;
        else if (token.kind != XPathKind::Operator)
            predicate.name = token.text;
    }
    tokens.Advance();
    return predicate;
}

} // namespace

// Calls `work` with all instances at the end of a way of nodes: the elements on it are kept on a
// stack that is as deep as the schema.
template <typename Work>
void References::EachAt(Element &from, std::span<const PlanNode *const> way, Work work) const
{
    std::pmr::vector<Element *> stack({tree_.First(from, *way[0])}, memory_);
    while (!stack.empty()) {
        Element *at = stack.back();
        if (at == nullptr) {
            stack.pop_back();
            continue;
        }
        stack.back() = at->nextSame;
        if (stack.size() != way.size())
            stack.push_back(tree_.First(*at, *way[stack.size()]));
        else
            work(*at);
    }
}

// Calls `take` with each instance until it returns false.
template <typename Take>
void References::EachInstance(Element &leaf, const Type &leafref, std::string_view value, Take take)
{
    Element *anchor = &tree_.root;
    if (leafref.upward != Type::kFromRoot) {
        anchor = &leaf;
        for (uint32_t i = 0; i < leafref.upward && anchor != nullptr; ++i)
            anchor = anchor->parent;
    }
    if (anchor == nullptr)
        return;
    if (leafref.steps.empty()) {
        EachBelow(*anchor, *leafref.target, value, take);
        return;
    }
    std::pmr::vector<Element *> places({anchor}, memory_), entries(memory_);
    for (const PathStep &step : leafref.steps) {
        FollowStep(leaf, step, places, entries);
        places.swap(entries);
        entries.clear();
    }
    for (Element *place : places)
        if (!EachBelow(*place, *leafref.target, value, take))
            return;
}

// What is directly in a place needs no index.
template <typename Take>
bool References::EachBelow(Element &place, const PlanNode &target, std::string_view value,
                           Take take)
{
    if (target.parent == place.plan && target.kind == ZR_NODE_LEAF) {
        Element *only = tree_.First(place, target);
        bool isIt = only != nullptr && only->value.data() != nullptr && only->value == value;
        return !isIt || take(*only);
    }
    for (const Hit *hit = HitOf(IndexOf(place, target), value); hit != nullptr; hit = hit->next)
        if (!take(*hit->leaf))
            return false;
    return true;
}

// The entries below some places that the predicates of a step name.
void References::FollowStep(Element &leaf, const PathStep &step, std::span<Element *const> places,
                            std::pmr::vector<Element *> &out)
{
    std::pmr::vector<std::pmr::vector<std::string_view>> values(memory_);
    std::pmr::vector<Wanted> wanted(memory_);
    values.reserve(step.predicates.size());
    for (const PathPredicate &predicate : step.predicates) {
        CollectValues(leaf, predicate, values.emplace_back());
        wanted.push_back({predicate.leaf, values.back()});
    }
    for (Element *place : places)
        FindEntries(*place, *step.list, wanted, out);
}

// The values that a predicate compares with, each once.
void References::CollectValues(Element &leaf, const PathPredicate &predicate,
                               std::pmr::vector<std::string_view> &out) const
{
    Element *from = &leaf;
    for (uint32_t i = 0; i < predicate.upward && from != nullptr; ++i)
        from = from->parent;
    if (from != nullptr)
        EachAt(*from, predicate.downward, [&](Element &at) { out.push_back(at.value); });
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
}

bool References::Exists(Element &leaf, const Type &leafref, std::string_view value)
{
    bool exists = false;
    EachInstance(leaf, leafref, value, [&](Element &) {
        exists = true;
        return false;
    });
    return exists;
}

void References::Find(Element &leaf, const Type &leafref, std::pmr::vector<Element *> &out)
{
    EachInstance(leaf, leafref, leaf.value, [&](Element &target) {
        out.push_back(&target);
        return true;
    });
}

void References::FindValues(Element &parent, const PlanNode &leafList, std::string_view value,
                            std::pmr::vector<Element *> &out)
{
    for (const Hit *hit = HitOf(IndexOf(parent, leafList), value); hit != nullptr; hit = hit->next)
        out.push_back(hit->leaf);
}

const References::Index &References::IndexOf(Element &anchor, const PlanNode &target,
                                             const PlanNode *second)
{
    Key key{&anchor, &target, second};
    auto found = indexes_.find(key);
    bool isStable = isSettled_ || (target.Is(PlanNode::kKey) &&
                                   (second == nullptr || second->Is(PlanNode::kKey)));
    if (found != indexes_.end() && !isStable) {
        indexes_.erase(found);
        found = indexes_.end();
    }
    if (found == indexes_.end()) {
        Index index(memory_);
        Collect(anchor, target, second, index);
        found = indexes_.emplace(key, std::move(index)).first;
    }
    return found->second;
}

namespace {

// The length of the first keeps "a" "bc" and "ab" "c" apart.
void JoinValues(std::pmr::string &out, std::string_view first, std::string_view second)
{
    std::array<char, 24> digits;
    out.assign(digits.data(),
               std::to_chars(digits.data(), digits.data() + digits.size(), first.size()).ptr);
    ((out += ':') += first) += second;
}

} // namespace

// The text by which a leaf is found; "" without a place for one that has no value.
std::string_view References::TextFor(const Element &leaf, const PlanNode *second)
{
    if (second == nullptr || leaf.value.data() == nullptr)
        return leaf.value;
    const Element *other = tree_.First(*leaf.parent, *second);
    if (other == nullptr || other->value.data() == nullptr)
        return {};
    std::pmr::string joined(memory_);
    JoinValues(joined, leaf.value, other->value);
    return tree_.arena.Copy(joined);
}

void References::FindEntries(Element &parent, const PlanNode &list, std::span<const Wanted> wanted,
                             std::pmr::vector<Element *> &out)
{
    bool areLeafs = std::all_of(wanted.begin(), wanted.end(), [](const Wanted &one) {
        return one.leaf != nullptr && one.leaf->kind == ZR_NODE_LEAF;
    });
    if (!areLeafs) {
        for (Element *at = tree_.First(parent, list); at != nullptr; at = at->nextSame)
            if (HasValues(*at, wanted))
                out.push_back(at);
        return;
    }
    const Wanted &first = wanted[0];
    if (wanted.size() == 1) {
        const Index &index = IndexOf(parent, *first.leaf);
        for (std::string_view value : first.values)
            AddHits(index, value, {}, out);
        return;
    }
    const Index &index = IndexOf(parent, *first.leaf, wanted[1].leaf);
    std::pmr::string joined(memory_);
    for (std::string_view value : first.values)
        for (std::string_view second : wanted[1].values) {
            JoinValues(joined, value, second);
            AddHits(index, joined, wanted.subspan(2), out);
        }
}

void References::AddHits(const Index &index, std::string_view text, std::span<const Wanted> rest,
                         std::pmr::vector<Element *> &out) const
{
    for (const Hit *hit = HitOf(index, text); hit != nullptr; hit = hit->next)
        if (HasValues(*hit->leaf->parent, rest))
            out.push_back(hit->leaf->parent);
}

bool References::HasValues(const Element &entry, std::span<const Wanted> wanted) const
{
    return std::all_of(wanted.begin(), wanted.end(), [&](const Wanted &one) {
        const Element *at = one.leaf == nullptr ? nullptr : tree_.First(entry, *one.leaf);
        while (at != nullptr &&
               std::find(one.values.begin(), one.values.end(), at->value) == one.values.end())
            at = at->nextSame;
        return at != nullptr;
    });
}

// Collects the instances of the target below the anchor.
void References::Collect(Element &anchor, const PlanNode &target, const PlanNode *second,
                         Index &index)
{
    std::pmr::vector<const PlanNode *> way(memory_);
    for (const PlanNode *at = &target; at != anchor.plan; at = at->parent)
        way.push_back(at);
    if (way.empty()) // a path that leads nowhere else
        return;
    std::reverse(way.begin(), way.end());
    std::pmr::unordered_map<std::string_view, Hit *> last(memory_);
    EachAt(anchor, way, [&](Element &at) {
        std::string_view text = TextFor(at, second);
        if (text.data() == nullptr) // it is not there but for its own condition
            return;
        Hit *hit = tree_.arena.New<Hit>(&at, nullptr);
        Hit *&end = last[text];
        if (end == nullptr)
            index.emplace(text, hit);
        else
            end->next = hit;
        end = hit;
    });
}

// A child by its name in data; also the message that is defined in the parent.
Element *References::FirstInstance(const Element &parent, const PlanModule *module,
                                   std::string_view name) const
{
    if (const PlanNode *plan = plan_.FindChild(*parent.plan, module, name))
        return tree_.First(parent, *plan);
    Element *message = nullptr;
    if (parent.plan->Is(PlanNode::kSpeaks) && parent.firsts != nullptr)
        message = parent.firsts[parent.plan->dataChildren.size()];
    bool isIt =
        message != nullptr && message->plan->module == module && name == message->plan->name;
    return isIt ? message : nullptr;
}

Element *References::FindPath(std::string_view path)
{
    XPathTokens tokens(path);
    Element *at = &tree_.root;
    std::pmr::vector<Predicate> predicates(memory_);
    while (at != nullptr && tokens.at().kind == XPathKind::Slash) {
        tokens.Advance();
        QName name = SplitName(tokens.at().text);
        tokens.Advance();
        at = FirstInstance(*at, plan_.FindModule(name.prefix), name.name);
        predicates.clear();
        while (tokens.at().kind == XPathKind::OpenBracket)
            predicates.push_back(TakePredicate(tokens));
        if (at != nullptr && !predicates.empty())
            at = FindInstance(*at, predicates);
    }
    return at;
}

const PlanNode *References::NodeOf(std::string_view path, const PlanNode &leaf) const
{
    XPathTokens tokens(path);
    const PlanNode *at = &plan_.root;
    while (at != nullptr && tokens.at().kind == XPathKind::Slash) {
        tokens.Advance();
        QName name = SplitName(tokens.at().text);
        tokens.Advance();
        const PlanModule *module = plan_.FindModule(name.prefix);
        const PlanNode *child = plan_.FindChild(*at, module, name.name);
        at = child != nullptr ? child : Plan::FindOwnMessage(leaf, *at, module, name.name);
        while (tokens.at().kind == XPathKind::OpenBracket)
            TakePredicate(tokens);
    }
    return at;
}

// One of the instances of which the first is given: by its keys, its value or its position.
Element *References::FindInstance(Element &first, std::span<const Predicate> predicates)
{
    Element &parent = *first.parent;
    const Predicate &only = predicates[0];
    if (only.name == ".") {
        const Hit *hit = HitOf(IndexOf(parent, *first.plan), only.value);
        return hit == nullptr ? nullptr : hit->leaf;
    }
    if (only.name.empty()) {
        uint32_t position = 0;
        std::from_chars(only.value.data(), only.value.data() + only.value.size(), position);
        Element *at = position == 0 ? nullptr : &first;
        for (uint32_t i = 1; i < position && at != nullptr; ++i)
            at = at->nextSame;
        return at;
    }
    std::pmr::vector<Wanted> wanted(memory_);
    for (const Predicate &predicate : predicates) {
        QName name = SplitName(predicate.name);
        wanted.push_back({plan_.FindChild(*first.plan, plan_.FindModule(name.prefix), name.name),
                          {&predicate.value, 1}});
    }
    std::pmr::vector<Element *> found(memory_);
    FindEntries(parent, *first.plan, wanted, found);
    return found.empty() ? nullptr : found[0];
}

const Type *ReferenceOf(const Tree &tree, const Element &leaf)
{
    const Type *type = leaf.plan->type;
    if (type != nullptr && type->hasReferences)
        if (auto member = tree.members.find(&leaf); member != tree.members.end())
            type = type->members[member->second.number];
    return type != nullptr && type->IsReference() ? type : nullptr;
}

} // namespace zr::data
