// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/plan.h"

#include <algorithm>
#include <functional>
#include <string>

#include "shared/names.h"

namespace zr::data {

namespace {

void Mix(uint64_t &stamp, uint64_t part)
{
    stamp = (stamp ^ part) * 1099511628211u;
    stamp ^= stamp >> 29;
}

void MixText(uint64_t &stamp, const char *text)
{
    Mix(stamp, text == nullptr ? 1 : std::hash<std::string_view>()(text));
}

uint64_t &StampIn(void *user)
{
    return *static_cast<uint64_t *>(user);
}

uint32_t MixModule(ZrMod *module, void *user)
{
    uint64_t &stamp = StampIn(user);
    Mix(stamp, reinterpret_cast<uintptr_t>(module));
    MixText(stamp, ZR_MOD_GetModuleName(module));
    MixText(stamp, ZR_MOD_GetRevision(module));
    ZR_MOD_ScanAllFeatures(
        module,
        [](const char *, uint32_t enabled, void *sum) {
            Mix(StampIn(sum), enabled);
            return 0u;
        },
        user);
    auto mixNode = [](ZrNode *node, uint32_t, void *sum) {
        Mix(StampIn(sum), reinterpret_cast<uintptr_t>(node));
        return 0u;
    };
    ZR_MOD_IterScanTopmostNode(module, mixNode, user);
    ZR_MOD_IterScanAugmentNode(module, mixNode, user);
    return 0;
}

template <typename Map, typename Key> auto *Find(const Map &map, const Key &key)
{
    auto found = map.find(key);
    return found == map.end() ? nullptr : found->second;
}

} // namespace

size_t ChildKeyHash::operator()(const ChildKey &key) const
{
    size_t hash = std::hash<std::string_view>()(key.name);
    auto mix = [&](const void *part) {
        hash ^= reinterpret_cast<uintptr_t>(part) + 0x9e3779b9u + (hash << 6) + (hash >> 2);
    };
    mix(key.parent);
    mix(key.module);
    return hash;
}

Plan::Plan(const ZrDataMemory &hooks)
    : memory(hooks), arena(&memory), modules(&memory), modulesByName(&memory),
      modulesByNamespace(&memory), childrenByName(&memory), messagesByName(&memory),
      identities(&memory), patterns(&memory), expressions(&memory), problems(&memory)
{
}

Plan::~Plan()
{
    for (auto &[text, pattern] : patterns)
        xmlRegFreeRegexp(pattern->compiled.load());
}

const PlanModule *Plan::FindModule(std::string_view name) const
{
    return Find(modulesByName, name);
}

const PlanModule *Plan::FindNamespace(std::string_view uri) const
{
    return Find(modulesByNamespace, uri);
}

bool Plan::HasAnnotation(std::string_view uri, std::string_view name) const
{
    const PlanModule *module = FindNamespace(uri);
    return module != nullptr && std::find(module->annotations.begin(), module->annotations.end(),
                                          name) != module->annotations.end();
}

const PlanNode *Plan::FindChild(const PlanNode &parent, const PlanModule *module,
                                std::string_view name) const
{
    return Find(childrenByName, ChildKey{&parent, module, name});
}

const Message *Plan::FindMessage(const PlanNode &parent, const PlanModule *module,
                                 std::string_view name) const
{
    return parent.Is(PlanNode::kSpeaks) ? Find(messagesByName, ChildKey{&parent, module, name})
                                        : nullptr;
}

const PlanNode *Plan::FindOwnMessage(const PlanNode &leaf, const PlanNode &parent,
                                     const PlanModule *module, std::string_view name)
{
    const PlanNode *at = &leaf;
    while (at != nullptr && !at->IsMessage())
        at = at->parent;
    bool isMeant =
        at != nullptr && at->parent == &parent && at->module == module && name == at->name;
    return isMeant ? at : nullptr;
}

const Message *Plan::FindOperation(std::string_view path) const
{
    const PlanNode *at = &root;
    const PlanModule *module = nullptr;
    path.remove_prefix(path.starts_with('/'));
    while (at != nullptr) {
        size_t length = std::min(path.find('/'), path.size());
        QName step = SplitName(path.substr(0, length));
        if (!step.prefix.empty())
            module = FindModule(step.prefix);
        if (length == path.size()) {
            const Message *message = FindMessage(*at, module, step.name);
            return message != nullptr && message->reply != nullptr ? message : nullptr;
        }
        at = FindChild(*at, module, step.name);
        path.remove_prefix(length + 1);
    }
    return nullptr;
}

const Identity *Plan::FindIdentity(std::string_view qualified) const
{
    return Find(identities, qualified);
}

void Plan::AddProblem(const PlanNode &node, const char *expression, const char *message)
{
    constexpr uint32_t kLongestPath = 20000; // that can be looked up
    std::pmr::string path(kLongestPath, '\0', &memory);
    ZR_NODE_GetNodePath(node.source, path.data(), kLongestPath);
    problems.push_back({arena.CopyText(path.c_str()), expression, message});
}

bool IsDerived(const Identity &identity, const Identity &base)
{
    return std::find(identity.ancestors.begin(), identity.ancestors.end(), &base) !=
           identity.ancestors.end();
}

uint64_t StampOf(const ZrCtx *ctx)
{
    uint64_t stamp = 14695981039346656037u;
    ZR_CTX_ScanAllModules(ctx, MixModule, &stamp);
    return stamp;
}

} // namespace zr::data
