// SPDX-License-Identifier: Apache-2.0
#include "lookup.h"

#include <algorithm>

#include "close_names.h"

namespace tool {

namespace {

constexpr const char *kPathForm =
    " (a path is /MODULE:NAME/NAME/..., with MODULE: again where the module changes; choices, "
    "cases, input and output are steps too)";

struct Step {
    std::string module; // "" when it is that of the step before
    std::string name;
};

// Predicates are left out, as the library passes over them.
std::vector<std::string> WordsOf(const std::string &path)
{
    std::vector<std::string> words(1);
    bool inPredicate = false;
    for (char c : path) {
        if (c == '[' || c == ']')
            inPredicate = c == '[';
        else if (c == '/' && !inPredicate)
            words.emplace_back();
        else if (!inPredicate)
            words.back() += c;
    }
    return words;
}

std::vector<Step> StepsOf(const std::string &path)
{
    std::vector<Step> steps;
    for (const std::string &word : WordsOf(path)) {
        size_t colon = word.find(':');
        if (colon != std::string::npos)
            steps.push_back({word.substr(0, colon), word.substr(colon + 1)});
        else if (!word.empty())
            steps.push_back({"", word});
    }
    return steps;
}

std::string ModuleNameOf(const ZrNode *node)
{
    const char *name = ZR_MOD_GetModuleName(ZR_NODE_GetModule(node));
    return name != nullptr ? name : "";
}

uint32_t Append(ZrNode *node, uint32_t, void *out)
{
    static_cast<std::vector<const ZrNode *> *>(out)->push_back(node);
    return 0;
}

std::vector<const ZrNode *> ChildrenOf(const ZrNode *node)
{
    std::vector<const ZrNode *> children;
    ZR_NODE_IterScanChildrenNode(node, Append, &children);
    return children;
}

std::vector<const ZrNode *> TopNodesOf(const ZrMod *module)
{
    std::vector<const ZrNode *> nodes;
    ZR_MOD_IterScanTopmostNode(module, Append, &nodes);
    return nodes;
}

bool IsChoiceOrCase(const ZrNode *node)
{
    uint32_t kind = ZR_NODE_GetNodeType(node);
    return kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE;
}

// Choices, cases, inputs and outputs are no steps of a leafref's path.
bool HasData(const ZrNode *node)
{
    uint32_t kind = ZR_NODE_GetNodeType(node);
    return !IsChoiceOrCase(node) && kind != ZR_NODE_INPUT && kind != ZR_NODE_OUTPUT;
}

const ZrNode *ChildByName(const std::vector<const ZrNode *> &nodes, const Step &step)
{
    for (const ZrNode *node : nodes)
        if (step.name == ZR_NODE_GetNodeName(node) && step.module == ModuleNameOf(node))
            return node;
    return nullptr;
}

const ZrNode *DataChildByName(const std::vector<const ZrNode *> &nodes, const Step &step)
{
    for (const ZrNode *node : nodes) {
        const ZrNode *found =
            HasData(node) ? ChildByName({node}, step) : DataChildByName(ChildrenOf(node), step);
        if (found != nullptr)
            return found;
    }
    return nullptr;
}

const ZrNode *DataParentOf(const ZrNode *node)
{
    do
        node = ZR_NODE_GetParentNode(node);
    while (node != nullptr && !HasData(node));
    return node;
}

// How the steps below `parent` are written that lead to its children, and through choices and cases
// to those of their children that have the name.
void CollectSteps(const std::vector<const ZrNode *> &nodes, const std::string &module,
                  const std::string &before, const std::string &name,
                  std::vector<std::pair<std::string, std::string>> &steps)
{
    for (const ZrNode *node : nodes) {
        std::string own = ModuleNameOf(node), local = ZR_NODE_GetNodeName(node);
        std::string step = before;
        step.append(own == module ? "" : own).append(own == module ? "" : ":").append(local);
        if (before.empty() || local == name)
            steps.emplace_back(local, step);
        if (IsChoiceOrCase(node))
            CollectSteps(ChildrenOf(node), own, step + "/", name, steps);
    }
}

// Close names are those of the last steps; they are shown with what leads to them.
std::string CloseSteps(const std::vector<const ZrNode *> &nodes, const std::string &module,
                       const std::string &name)
{
    std::vector<std::pair<std::string, std::string>> steps;
    CollectSteps(nodes, module, "", name, steps);
    std::vector<std::string> names, close;
    for (const auto &[local, step] : steps)
        names.push_back(local);
    for (const std::string &one : CloseNames(name, names))
        for (const auto &[local, step] : steps)
            if (local == one)
                close.push_back(step);
    return DidYouMean(close);
}

// A module that is not loaded: perhaps its prefix was written, or nearly its name.
std::string CloseModules(Session &session, const std::vector<std::string> &modules,
                         const std::string &name)
{
    for (const std::string &loaded : modules) {
        const char *prefix = ZR_MOD_GetModulePrefix(session.Module(loaded));
        if (prefix != nullptr && name == prefix)
            return DidYouMean({loaded});
    }
    if (std::find(modules.begin(), modules.end(), name) != modules.end())
        return ""; // why has been said
    if (session.files().Has(name))
        return "; load it with -m " + name;
    std::vector<std::string> close = CloseNames(name, modules);
    return DidYouMean(close.empty() ? session.files().CloseTo(name) : close);
}

// A path that names no module, beside what the modules that were asked for have at their tops.
std::string CloseTopNodes(Session &session, const std::vector<std::string> &modules,
                          const std::string &name)
{
    std::vector<const ZrNode *> nodes;
    for (const std::string &module : modules)
        for (const ZrNode *node : TopNodesOf(session.Module(module)))
            nodes.push_back(node);
    return CloseSteps(nodes, "", name);
}

// Where the path fails, with what is there.
std::string WhyNotFound(Session &session, const std::vector<std::string> &modules,
                        const std::string &path)
{
    std::vector<Step> steps = StepsOf(path);
    if (steps.empty())
        return "";
    if (path.front() != '/' || steps.front().module.empty())
        return ": it names no module at its start" +
               CloseTopNodes(session, modules, steps.front().name);
    std::string module = steps.front().module;
    if (session.Module(module) == nullptr)
        return ": no module " + module + " is loaded" + CloseModules(session, modules, module);
    std::vector<const ZrNode *> nodes = TopNodesOf(session.Module(module));
    std::string outer = module, where = "module " + module;
    for (Step step : steps) {
        if (step.module.empty())
            step.module = module;
        const ZrNode *node = ChildByName(nodes, step);
        if (node == nullptr)
            return ": " + where + " has no " + step.name +
                   (step.module != outer ? " of module " + step.module : "") +
                   CloseSteps(nodes, outer, step.name);
        nodes = ChildrenOf(node);
        outer = module = step.module;
        where = PathOf(node);
    }
    return "";
}

} // namespace

std::string PathOf(const ZrNode *node)
{
    char path[4096];
    return ZR_NODE_GetNodePath(node, path, sizeof(path)) == ZR_OK ? path : "";
}

const ZrNode *FindNode(Session &session, const std::vector<std::string> &modules,
                       const std::string &path)
{
    const ZrNode *node = ZR_CTX_GetTargetNode(session.ctx(), path.c_str(), nullptr);
    if (node == nullptr)
        session.run().Complain("no such node: " + path + WhyNotFound(session, modules, path) +
                               kPathForm);
    return node;
}

std::vector<std::string> PathsBelow(const Session &session, const std::string &path)
{
    std::vector<const ZrNode *> nodes;
    std::string module, before = path;
    if (path.size() > 2 && path.front() == '/' && path.back() == ':') {
        module = path.substr(1, path.size() - 2);
        nodes = TopNodesOf(session.Module(module));
    } else if (const ZrNode *node = ZR_CTX_GetTargetNode(session.ctx(), path.c_str(), nullptr)) {
        module = ModuleNameOf(node);
        nodes = ChildrenOf(node);
        before += "/";
    }
    std::vector<std::string> paths;
    for (const ZrNode *node : nodes) {
        std::string own = ModuleNameOf(node);
        paths.push_back(before + (own == module ? "" : own + ":") + ZR_NODE_GetNodeName(node) +
                        (ChildrenOf(node).empty() ? "" : "/"));
    }
    return paths;
}

const ZrNode *FollowLeafrefPath(const ZrCtx *ctx, const ZrNode *leaf, const std::string &path)
{
    const ZrNode *node = !path.empty() && path.front() == '/' ? nullptr : leaf;
    std::string module = ModuleNameOf(leaf);
    bool top = node == nullptr;
    for (Step step : StepsOf(path)) {
        if (step.name == "..") {
            node = DataParentOf(node);
        } else {
            module = step.module = step.module.empty() ? module : step.module;
            node = DataChildByName(top ? TopNodesOf(ZR_CTX_GetModuleByModName(ctx, module.c_str()))
                                       : ChildrenOf(node),
                                   step);
        }
        top = false;
        if (node == nullptr)
            return nullptr;
    }
    return node;
}

} // namespace tool
