// Leafrefs: where their paths lead (RFC 7950, section 9.9.2).
#include "yang/check/checker.h"
#include "yang/syntax/arguments.h"

namespace zr::yang {

namespace {

using K = Keyword;

// Takes the next step off a path, without what stands in brackets behind it.
std::string_view TakePathStep(std::string_view &path)
{
    if (path.starts_with('/'))
        path.remove_prefix(1);
    size_t end = std::min(path.find_first_of("/["), path.size());
    std::string_view step = path.substr(0, end);
    path.remove_prefix(end);
    while (path.starts_with('[')) {
        size_t close = std::min(path.find(']'), path.size() - 1);
        path.remove_prefix(close + 1);
        path.remove_prefix(std::min(path.find_first_not_of(" \t\r\n"), path.size()));
    }
    size_t start = std::min(step.find_first_not_of(" \t\r\n"), step.size());
    return step.substr(start, step.find_last_not_of(" \t\r\n") + 1 - start);
}

bool HoldsNodes(const Node &node)
{
    return node.keyword == K::Module || IsNodeKeyword(node.keyword);
}

// One step up in the data tree, where "input" and "output" are no elements of their own.
const Node *Climb(const Node &node)
{
    const Node *at = &node;
    if (at->keyword == K::Input || at->keyword == K::Output)
        at = at->parent;
    return DataParentOf(*at);
}

} // namespace

// A name is looked for in the module that its prefix means, and one of the file's own also in the
// module that the node is in: groupings and typedefs are used in others.
const Node *Checker::FindPathStep(const Node *at, const Node &leaf, std::string_view step,
                                  const Statement &path)
{
    QName name = SplitName(step);
    Module *module = scopes_.FindModule(name.prefix, path);
    bool isOwn = module == UnitOf(path).module;
    for (Module *candidate : {isOwn ? leaf.module : module, module}) {
        const Node *from = at != nullptr ? at : candidate != nullptr ? candidate->tree : nullptr;
        const Node *found =
            from != nullptr ? index_.FindDataChild(*from, candidate, name.name) : nullptr;
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

void Checker::CheckLeafref(const Node &leaf, const Type &type)
{
    if (type.members != nullptr)
        for (const Type *member : *type.members)
            CheckLeafref(leaf, *member);
    if (type.path == nullptr)
        return;
    const Statement &path = *type.path;
    std::string_view rest = path.argument;
    const Node *at = rest.starts_with('/') ? nullptr : &leaf;
    while (!rest.empty()) {
        std::string_view step = TakePathStep(rest);
        if (step == "..") {
            at = at != nullptr ? Climb(*at) : nullptr;
            if (at != nullptr && !HoldsNodes(*at))
                return; // out of a grouping: where that will be used, nobody knows
        } else {
            at = FindPathStep(at, leaf, step, path);
        }
        if (at == nullptr) {
            Error(path, ZR_YANG_CODE_PATH,
                  {"the path of leafref \"", leaf.name(), "\" leads to nothing: there is no \"",
                   step, "\""});
            return;
        }
    }
    if (at->keyword != K::Leaf && at->keyword != K::LeafList)
        return Error(path, ZR_YANG_CODE_PATH,
                     {"the path of leafref \"", leaf.name(), "\" leads to the ",
                      NameOf(at->keyword), " \"", at->name(), "\", which is no leaf"});
    const Statement *require = SubStatement(*type.statement, K::RequireInstance);
    bool isLoose = require != nullptr && require->argument == "false";
    if (!isLoose && UseOf(leaf) == NodeUse::Config && UseOf(*at) == NodeUse::State)
        Error(path, ZR_YANG_CODE_PATH,
              {"leafref \"", leaf.name(), "\" is configuration and leads to \"", at->name(),
               "\", which is not"});
}

} // namespace zr::yang
