#include "instance/xpath/references.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

using Predicate = References::Predicate;

// Canonical instance-identifiers are well-formed; what else comes gives an empty predicate.
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

const References::Hit *References::Find(Element &leaf, const Type &leafref)
{
    Element *anchor = &tree_.root;
    if (leafref.upward != Type::kFromRoot) {
        anchor = &leaf;
        for (uint32_t i = 0; i < leafref.upward && anchor != nullptr; ++i)
            anchor = anchor->parent;
    }
    if (anchor == nullptr)
        return nullptr;
    return FindValue(*anchor, *leafref.target, leaf.value);
}

const References::Hit *References::FindValue(Element &anchor, const PlanNode &target,
                                             std::string_view value)
{
    const Index &index = IndexOf(anchor, target);
    auto found = index.find(value);
    return found == index.end() ? nullptr : found->second;
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
    auto found = index.find(text);
    for (const Hit *hit = found == index.end() ? nullptr : found->second; hit != nullptr;
         hit = hit->next)
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

// Follows the schema from the anchor down to the target: the elements on the way are kept on a
// stack that is as deep as the schema.
void References::Collect(Element &anchor, const PlanNode &target, const PlanNode *second,
                         Index &index)
{
    std::pmr::vector<const PlanNode *> way(memory_); // the target first
    for (const PlanNode *at = &target; at != anchor.plan; at = at->parent)
        way.push_back(at);
    if (way.empty()) // a path that leads nowhere else
        return;
    std::pmr::vector<Element *> stack(memory_);
    std::pmr::unordered_map<std::string_view, Hit *> last(memory_);
    auto push = [&](Element &parent) {
        stack.push_back(tree_.First(parent, *way[way.size() - 1 - stack.size()]));
    };
    push(anchor);
    while (!stack.empty()) {
        Element *at = stack.back();
        if (at == nullptr) {
            stack.pop_back();
            continue;
        }
        stack.back() = at->nextSame;
        if (stack.size() != way.size()) {
            push(*at);
            continue;
        }
        std::string_view text = TextFor(*at, second);
        if (text.data() == nullptr) // it is not there but for its own condition
            continue;
        Hit *hit = tree_.arena.New<Hit>(at, nullptr);
        Hit *&end = last[text];
        if (end == nullptr)
            index.emplace(text, hit);
        else
            end->next = hit;
        end = hit;
    }
}

Element *References::FindPath(std::string_view path)
{
    XPathTokens tokens(path);
    Element *at = &tree_.root;
    while (at != nullptr && tokens.at().kind == XPathKind::Slash) {
        tokens.Advance();
        QName name = SplitName(tokens.at().text);
        const PlanNode *plan = plan_.FindChild(*at->plan, plan_.FindModule(name.prefix), name.name);
        tokens.Advance();
        if (plan == nullptr)
            return nullptr;
        at = tree_.First(*at, *plan);
        std::pmr::vector<Predicate> predicates(memory_);
        while (tokens.at().kind == XPathKind::OpenBracket)
            predicates.push_back(TakePredicate(tokens));
        uint32_t position = 1;
        while (at != nullptr && !Fits(*at, predicates, position)) {
            at = at->nextSame;
            ++position;
        }
    }
    return at;
}

bool References::Fits(const Element &element, std::span<const Predicate> predicates,
                      uint32_t position) const
{
    return std::all_of(predicates.begin(), predicates.end(), [&](const Predicate &predicate) {
        if (predicate.name.empty()) {
            uint32_t wanted = 0;
            std::from_chars(predicate.value.data(), predicate.value.data() + predicate.value.size(),
                            wanted);
            return wanted == position;
        }
        if (predicate.name == ".")
            return element.value == predicate.value;
        QName name = SplitName(predicate.name);
        const PlanNode *plan =
            plan_.FindChild(*element.plan, plan_.FindModule(name.prefix), name.name);
        const Element *leaf = plan == nullptr ? nullptr : tree_.First(element, *plan);
        return leaf != nullptr && leaf->value == predicate.value;
    });
}

} // namespace zr::data
