// Lists: "key" and "unique" (RFC 7950, sections 7.8.2 and 7.8.3).
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

} // namespace zr::yang
