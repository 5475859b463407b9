// SPDX-License-Identifier: Apache-2.0
// Leafrefs: their paths, and where these lead (RFC 7950, section 9.9).
#include <algorithm>
#include <string>

#include "shared/xpath_tokens.h"
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

// The form of paths, which is less than that of expressions (RFC 7950, section 9.9.2).
class PathReader {
public:
    explicit PathReader(std::string_view text) : tokens_(text) {}

    // The token that may not stand where it stands; one of no length at the end of the text.
    const XPathToken &at() const { return tokens_.at(); }

    bool Run()
    {
        bool isAbsolute = IsSlash();
        bool isRead = isAbsolute || (TakeClimb() && ReadStep());
        while (isRead && IsSlash()) {
            tokens_.Advance();
            isRead = ReadStep();
        }
        return isRead && at().kind == XPathKind::End;
    }

private:
    bool IsSlash() const { return at().kind == XPathKind::Slash && at().text == "/"; }

    bool Take(XPathKind kind, std::string_view text = {})
    {
        if (at().kind != kind || (!text.empty() && at().text != text))
            return false;
        tokens_.Advance();
        return true;
    }

    bool TakeName() { return !at().text.ends_with('*') && Take(XPathKind::Name); }

    // "../", at least once.
    bool TakeClimb()
    {
        do {
            if (!Take(XPathKind::DotDot) || !Take(XPathKind::Slash, "/"))
                return false;
        } while (at().kind == XPathKind::DotDot);
        return true;
    }

    bool ReadStep()
    {
        if (!TakeName())
            return false;
        while (at().kind == XPathKind::OpenBracket)
            if (!ReadPredicate())
                return false;
        return true;
    }

    // "[key = current()/../leaf]".
    bool ReadPredicate()
    {
        bool isRead = Take(XPathKind::OpenBracket) && TakeName() &&
                      Take(XPathKind::Operator, "=") && Take(XPathKind::Function, "current") &&
                      Take(XPathKind::Open) && Take(XPathKind::Close) &&
                      Take(XPathKind::Slash, "/") && TakeClimb() && TakeName();
        while (isRead && IsSlash()) {
            tokens_.Advance();
            isRead = TakeName();
        }
        return isRead && Take(XPathKind::CloseBracket);
    }

    XPathTokens tokens_;
};

bool IsLeaf(const Node &node)
{
    return node.keyword == K::Leaf || node.keyword == K::LeafList;
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

// Reports a path that is an expression, and more than paths may be.
bool Checker::CheckPath(const Statement &path)
{
    PathReader reader(path.argument);
    if (reader.Run())
        return true;
    std::string_view text = reader.at().text;
    Error(path, ZR_YANG_CODE_XPATH,
          {"\"", path.argument, "\" is no path of a leafref: unexpected ",
           text.empty() ? "end" : "\"", text, text.empty() ? "" : "\""});
    return false;
}

// A name is looked for in the module that its prefix means, and one of the file's own also in the
// module that the node is in: groupings and typedefs are used in others.
const Node *Checker::FindPathStep(const Node *at, const Node &leaf, std::string_view step,
                                  const Statement &path)
{
    QName name = SplitName(step);
    Module *module = scopes_.FindModule(name.prefix, path);
    bool isOwn = module == UnitOf(path).module;
    for (Module *candidate : {isOwn ? leaf.module : module, module}) {
        // The top of the data tree is that of every module.
        bool isTop = at == nullptr || at->keyword == K::Module;
        const Node *from = !isTop ? at : candidate != nullptr ? candidate->tree : nullptr;
        const Node *found =
            from != nullptr ? index_.FindDataChild(*from, candidate, name.name) : nullptr;
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

Checker::PathEnd Checker::FollowPath(const Node &leaf, const Statement &path)
{
    std::string_view rest = path.argument;
    const Node *at = rest.starts_with('/') ? nullptr : &leaf;
    while (!rest.empty()) {
        std::string_view step = TakePathStep(rest);
        if (step == "..") {
            at = at != nullptr ? Climb(*at) : nullptr;
            if (at != nullptr && !HoldsNodes(*at))
                return {nullptr, {}}; // out of a grouping: where that will be used, nobody knows
        } else {
            at = FindPathStep(at, leaf, step, path);
        }
        if (at == nullptr)
            return {nullptr, step};
    }
    return {at, {}};
}

void Checker::CheckLeafref(const Node &leaf, const Type &type)
{
    if (type.members != nullptr)
        for (const Type *member : *type.members)
            CheckLeafref(leaf, *member);
    if (type.path == nullptr || type.path->isFaulty)
        return;
    const Statement &path = *type.path;
    PathEnd end = FollowPath(leaf, path);
    if (!end.missing.empty())
        return Error(path, ZR_YANG_CODE_PATH,
                     {"the path of leafref \"", leaf.name(), "\" leads to nothing: there is no \"",
                      end.missing, "\""});
    if (end.node == nullptr)
        return;
    if (!IsLeaf(*end.node))
        return Error(path, ZR_YANG_CODE_PATH,
                     {"the path of leafref \"", leaf.name(), "\" leads to the ",
                      NameOf(end.node->keyword), " \"", end.node->name(), "\", which is no leaf"});
    const Statement *require = SubStatement(*type.statement, K::RequireInstance);
    bool isLoose = require != nullptr && require->argument == "false";
    if (!isLoose && UseOf(leaf) == NodeUse::Config && UseOf(*end.node) == NodeUse::State)
        Error(path, ZR_YANG_CODE_PATH,
              {"leafref \"", leaf.name(), "\" is configuration and leads to \"", end.node->name(),
               "\", which is not"});
}

// The type of the leaf at the end of a chain of leafrefs; null when there is none. A chain that
// leads to its own beginning has no value (RFC 7950, section 9.9); it is reported once. Every leaf
// is passed once, however many chains go through it.
const Type *Checker::EndOfLeafrefs(const Node &leaf, const Type &type)
{
    std::pmr::vector<const Node *> chain(memory_);
    const Node *at = &leaf;
    const Type *end = &type;
    while (end != nullptr && end->path != nullptr) {
        auto [known, isNew] = ends_.try_emplace(at, nullptr);
        if (!isNew) {
            end = known->second;
            if (std::find(chain.begin(), chain.end(), at) != chain.end())
                ReportLeafrefCircle(chain, *at);
            break;
        }
        chain.push_back(at);
        at = end->path->isFaulty ? nullptr : FollowPath(*at, *end->path).node;
        end = at != nullptr && IsLeaf(*at) ? TypeIn(*at->statement) : nullptr;
    }
    for (const Node *one : chain)
        ends_[one] = end;
    return end;
}

void Checker::ReportLeafrefCircle(const std::pmr::vector<const Node *> &chain, const Node &start)
{
    std::pmr::string names(memory_);
    for (auto at = std::find(chain.begin(), chain.end(), &start); at != chain.end(); ++at)
        (names += (*at)->name()) += ", ";
    Error(*TypeIn(*start.statement)->path, ZR_YANG_CODE_CIRCLE,
          {"leafref \"", start.name(), "\" leads to itself: ", names, start.name()});
}

} // namespace zr::yang
