// Schema nodes: config, defaults, mandatory, the numbers of elements (RFC 7950, sections 7.5
// to 7.9).
#include <iterator>
#include <unordered_set>

#include "yang/check/checker.h"
#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using K = Keyword;

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
