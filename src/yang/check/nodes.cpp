// SPDX-License-Identifier: Apache-2.0
// Schema nodes: config, defaults, mandatory, the numbers of elements, keys (RFC 7950, sections 7.5
// to 7.9).
#include <iterator>
#include <unordered_set>

#include "yang/check/checker.h"
#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using K = Keyword;

bool HasAny(const Node &node, Keyword keyword)
{
    bool has = false;
    ForEachProperty(node, keyword, [&](const Statement &, bool) { has = true; });
    return has;
}

} // namespace

void Checker::CheckConfig(const Node &node)
{
    const Statement *config = PropertyOf(node, K::Config);
    if (config == nullptr || config->argument != "true" || node.parent == nullptr)
        return;
    if (UseOf(*node.parent) == NodeUse::State)
        Error(*config, ZR_YANG_CODE_NODE,
              {NameOf(node.keyword), " \"", node.name(),
               "\" is configuration in a parent that is not"});
}

void Checker::CheckLeaf(const Node &node)
{
    const Type *type = TypeIn(*node.statement);
    if (type == nullptr)
        return;
    bool hasDefault = false;
    std::pmr::unordered_set<std::string_view> values(memory_);
    const Statement *chosen = PropertyOf(node, K::Default);
    // A refine replaces all defaults of a leaf-list at once.
    for (const Statement *value = chosen; value != nullptr;
         value = NextSubStatement(*value, K::Default)) {
        hasDefault = true;
        CheckValue(*type, *value);
        CheckConditionalNames(*type, *value);
        if (node.keyword == K::LeafList && UseOf(node) == NodeUse::Config &&
            !values.insert(value->argument).second)
            Error(*value, ZR_YANG_CODE_DEFAULT,
                  {"default \"", value->argument, "\" stands here twice"});
    }
    if (!hasDefault)
        CheckInheritedDefault(*node.statement, *type);
    const Statement *least = PropertyOf(node, K::MinElements);
    if (hasDefault && HasProperty(node, K::Mandatory, "true"))
        Error(*chosen, ZR_YANG_CODE_DEFAULT,
              {"leaf \"", node.name(), "\" is mandatory and has a default"});
    if (hasDefault && least != nullptr && least->argument != "0")
        Error(*chosen, ZR_YANG_CODE_DEFAULT,
              {"leaf-list \"", node.name(), "\" needs elements and has a default"});
    CheckLeafref(node, *type);
    if (type->path == nullptr)
        return;
    const Type *end = EndOfLeafrefs(node, *type);
    for (const Statement *value = chosen; end != nullptr && value != nullptr;
         value = NextSubStatement(*value, K::Default))
        CheckValue(*end, *value);
}

void Checker::CheckElementCounts(const Node &node)
{
    const Statement *least = PropertyOf(node, K::MinElements);
    const Statement *most = PropertyOf(node, K::MaxElements);
    uint64_t low = 0, high = 0;
    if (least != nullptr && most != nullptr && ReadUnsigned(least->argument, low) &&
        ReadUnsigned(most->argument, high) && low > high)
        Error(
            *least, ZR_YANG_CODE_NODE,
            {NameOf(node.keyword), " \"", node.name(), "\" needs more elements than it may have"});
}

void Checker::CheckChoice(const Node &node)
{
    const Statement *value = PropertyOf(node, K::Default);
    if (value == nullptr)
        return;
    if (HasProperty(node, K::Mandatory, "true"))
        Error(*value, ZR_YANG_CODE_DEFAULT,
              {"choice \"", node.name(), "\" is mandatory and has a default"});
    const Node *chosen = index_.FindChild(node, node.module, SplitName(value->argument).name);
    if (chosen == nullptr) {
        Error(*value, ZR_YANG_CODE_DEFAULT,
              {"choice \"", node.name(), "\" has no case \"", value->argument, "\""});
        return;
    }
    for (const Node *child = chosen->first; child != nullptr; child = child->next)
        if (HasProperty(*child, K::Mandatory, "true"))
            Error(*value, ZR_YANG_CODE_DEFAULT,
                  {"the default case \"", value->argument, "\" has the mandatory node \"",
                   child->name(), "\""});
}

// Lists: "key" and "unique" (RFC 7950, sections 7.8.2 and 7.8.3).

void Checker::CheckKeyLeaf(const Node &list, const Node &leaf, const Statement &key)
{
    auto fail = [&](std::string_view what) {
        Error(key, ZR_YANG_CODE_NODE, {"key \"", leaf.name(), "\" ", what});
    };
    if (leaf.keyword != K::Leaf)
        return fail("is no leaf");
    if (UseOf(list) != UseOf(leaf))
        fail("is configuration and its list is not, or the other way round");
    const Type *type = TypeIn(*leaf.statement);
    if (UnitOf(key).version == Version::Yang1) {
        if (type != nullptr && type->base == Builtin::Empty)
            fail("is of type \"empty\"");
        return;
    }
    if (HasAny(leaf, K::IfFeature))
        fail("depends on a feature");
    if (HasAny(leaf, K::When))
        fail("depends on a condition");
}

void Checker::CheckKey(const Node &list)
{
    const Statement *key = PropertyOf(list, K::Key);
    if (key == nullptr) {
        if (UseOf(list) == NodeUse::Config)
            Error(*list.statement, ZR_YANG_CODE_NODE,
                  {"list \"", list.name(), "\" is configuration and has no key"});
        return;
    }
    std::pmr::unordered_set<std::string_view> seen(memory_);
    std::string_view rest = key->argument;
    for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
        std::string_view name = SplitName(word).name;
        const Node *leaf = index_.FindChild(list, list.module, name);
        if (!seen.insert(name).second)
            Error(*key, ZR_YANG_CODE_NODE, {"key \"", name, "\" is named twice"});
        else if (leaf == nullptr)
            Error(*key, ZR_YANG_CODE_NODE,
                  {"list \"", list.name(), "\" has no leaf \"", name, "\" for its key"});
        else
            CheckKeyLeaf(list, *leaf, *key);
    }
}

void Checker::CheckUnique(const Node &list, const Statement &unique)
{
    std::string_view rest = unique.argument;
    const Node *first = nullptr;
    for (std::string_view path = TakeWord(rest); !path.empty(); path = TakeWord(rest)) {
        std::string_view whole = path;
        const Node *at = &list;
        while (at != nullptr && !path.empty()) {
            QName step = SplitName(TakeStep(path));
            Module *module = scopes_.FindModule(step.prefix, unique);
            if (module == UnitOf(unique).module)
                module = list.module; // as what a grouping defines
            at = module != nullptr ? index_.FindChild(*at, module, step.name) : nullptr;
            if (at != nullptr && !path.empty() && at->keyword == K::List)
                at = nullptr; // of a list inside there are several
        }
        if (at == nullptr || at->keyword != K::Leaf)
            Error(unique, ZR_YANG_CODE_NODE,
                  {"list \"", list.name(), "\" has no leaf \"", whole, "\" to be unique"});
        else if (first != nullptr && UseOf(*first) != UseOf(*at))
            Error(unique, ZR_YANG_CODE_NODE,
                  {"\"", unique.argument, "\" mixes configuration and state"});
        first = first != nullptr ? first : at;
    }
}

void Checker::CheckNode(const Node &node)
{
    CheckConfig(node);
    switch (node.keyword) {
    case K::Leaf:
        return CheckLeaf(node);
    case K::LeafList:
        CheckElementCounts(node);
        return CheckLeaf(node);
    case K::List:
        CheckElementCounts(node);
        CheckKey(node);
        return ForEachProperty(node, K::Unique,
                               [&](const Statement &unique, bool) { CheckUnique(node, unique); });
    case K::Choice:
        return CheckChoice(node);
    case K::Action:
    case K::Notification:
        return CheckPlace(node);
    default:
        return;
    }
}

// Actions and notifications of nodes stand neither in each other nor in lists without keys (RFC
// 7950, sections 7.15 and 7.16).
void Checker::CheckPlace(const Node &node)
{
    for (const Node *at = node.parent; at != nullptr; at = at->parent) {
        bool isMessage =
            at->keyword == K::Rpc || at->keyword == K::Action || at->keyword == K::Notification;
        bool isKeyless = at->keyword == K::List && PropertyOf(*at, K::Key) == nullptr;
        if (!isMessage && !isKeyless)
            continue;
        Error(*node.statement, ZR_YANG_CODE_NODE,
              {NameOf(node.keyword), " \"", node.name(), "\" stands in ",
               isKeyless ? "the keyless list \"" : "", isKeyless ? "" : NameOf(at->keyword),
               isKeyless ? "" : " \"", at->name(), "\""});
        return;
    }
}

} // namespace zr::yang
