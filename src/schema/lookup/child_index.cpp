// SPDX-License-Identifier: Apache-2.0
#include "schema/lookup/child_index.h"

#include <initializer_list>

#include "schema/nodes/node.h"

namespace {

// With fewer nodes, passing them costs no more than hashing a name.
constexpr size_t kMany = 64;

// In the order in which a lookup passes them.
template <typename Visit> void ForEachTop(const ZrMod *module, Visit visit)
{
    for (ZrNode *node : {module->dataNodes, module->rpcs, module->notifications}) {
        for (; node != nullptr; node = node->next)
            visit(node);
    }
}

// Whether `node` is the other one or stands below it.
bool IsAtOrBelow(const ZrNode *node, const ZrNode *ancestor)
{
    while (node != nullptr && node != ancestor)
        node = node->parent;
    return node != nullptr;
}

} // namespace

bool zr::ChildIndex::Table::Make(size_t count)
{
    size_t size = kMany;
    while (size < 2 * count)
        size *= 2;
    slots_.reset(); // before the new block, so that both need not be there at once
    slots_.reset(zr::New<Entry>(size));
    mask_ = size - 1;
    count_ = 0;
    return static_cast<bool>(slots_);
}

bool zr::ChildIndex::Table::Add(Entry entry)
{
    if (2 * ++count_ > mask_ + 1)
        return false;
    size_t slot = entry.hash & mask_;
    while (slots_.get()[slot].node != nullptr)
        slot = (slot + 1) & mask_;
    slots_.get()[slot] = entry;
    return true;
}

void zr::ChildIndex::Table::Remove(const ZrNode *node, size_t hash)
{
    Entry *slots = slots_.get();
    size_t hole = hash & mask_;
    while (slots[hole].node != nullptr && slots[hole].node != node)
        hole = (hole + 1) & mask_;
    if (slots[hole].node == nullptr)
        return;
    // What stands behind the hole moves up to it, unless that would put it before its own place.
    for (size_t at = (hole + 1) & mask_; slots[at].node != nullptr; at = (at + 1) & mask_) {
        size_t home = slots[at].hash & mask_;
        if (((at - home) & mask_) < ((at - hole) & mask_))
            continue;
        slots[hole] = slots[at];
        hole = at;
    }
    slots[hole] = {};
    --count_;
}

bool zr::ChildIndex::ServesChildrenOf(const ZrNode *parent)
{
    return parent == parent_ && parent->firstChild == firstChild_ &&
           parent->lastChild == lastChild_;
}

bool zr::ChildIndex::MakeChildrenOf(const ZrNode *parent)
{
    size_t count = 0;
    zr::ForEachChild(parent, [&](const ZrNode *) { ++count; });
    if (count < kMany || parent->module == nullptr)
        return false;
    parent_ = nullptr;
    if (!children_.Make(count))
        return false;
    zr::ForEachChild(parent, [this](ZrNode *child) {
        children_.Add({child, nullptr, HashOf(child->name)});
    });
    parent_ = parent;
    firstChild_ = parent->firstChild;
    lastChild_ = parent->lastChild;
    return true;
}

ZrNode *zr::ChildIndex::Find(const ZrNode *parent, const char *moduleName, const char *name)
{
    if (parent == nullptr || name == nullptr ||
        (!ServesChildrenOf(parent) && !MakeChildrenOf(parent)))
        return ZRS_NODE_FindChildNodeByName(parent, moduleName, name);
    const char *shared = zr::FindInterned(&parent->module->ctx->dict, name);
    if (shared == nullptr)
        return nullptr;
    bool anyModule = moduleName == nullptr || *moduleName == '\0';
    return children_.Find(HashOf(shared), [=](const Entry &entry) {
        return entry.node->name == shared && (anyModule || zr::IsOfModule(entry.node, moduleName));
    });
}

bool zr::ChildIndex::ServesTopOf(const ZrMod *module)
{
    if (module == module_)
        return true;
    size_t count = 0;
    ForEachTop(module, [&](const ZrNode *) { ++count; });
    if (count < kMany)
        return false;
    module_ = nullptr;
    if (!top_.Make(count))
        return false;
    ForEachTop(module, [this](ZrNode *node) { top_.Add({node, nullptr, HashOf(node->name)}); });
    module_ = module;
    return true;
}

ZrNode *zr::ChildIndex::FindTop(const ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr || !ServesTopOf(module))
        return ZRS_MOD_FindTopLevelSchemaNode(module, name);
    const char *shared = zr::FindInterned(&module->ctx->dict, name);
    if (shared == nullptr)
        return nullptr;
    return top_.Find(HashOf(shared),
                     [=](const Entry &entry) { return entry.node->name == shared; });
}

bool zr::ChildIndex::ServesAugmentsOf(const ZrMod *module)
{
    if (module == augmenting_)
        return true;
    size_t augments = 0, nodes = 0;
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        ++augments;
    if (augments < kMany)
        return false;
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        zr::ForEachChild(augment, [&](const ZrNode *) { ++nodes; });
    augmenting_ = nullptr;
    if (!added_.Make(nodes))
        return false;
    for (ZrNode *augment = module->augments; augment != nullptr; augment = augment->next) {
        size_t hash = HashOf(std::string_view(augment->name));
        zr::ForEachChild(augment, [=, this](ZrNode *node) {
            added_.Add({node, augment, HashOf(node->name) ^ hash});
        });
    }
    augmenting_ = module;
    return true;
}

size_t zr::ChildIndex::HashOf(std::string_view text)
{
    uint32_t hash = 2166136261; // FNV-1a
    for (char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
    return hash;
}

void zr::ChildIndex::Arrive(const ZrNode *augment)
{
    const ZrNode *first = augment->firstChild;
    if (first == nullptr || first->parent != parent_ || first->prev != lastChild_)
        return;
    bool hasRoom = true;
    zr::ForEachChild(augment, [&](ZrNode *node) {
        hasRoom = hasRoom && children_.Add({node, nullptr, HashOf(node->name)});
    });
    lastChild_ = augment->lastChild;
    if (!hasRoom)
        parent_ = nullptr;
}

void zr::ChildIndex::LeaveAugment(const ZrNode *augment)
{
    zr::ForEachChild(augment, [=, this](const ZrNode *node) { Leave(node, augment); });
    ForgetChildrenOf(augment);
}

void zr::ChildIndex::Leave(const ZrNode *node, const ZrNode *augment)
{
    if (augmenting_ != nullptr && augment != nullptr && augment->module == augmenting_)
        added_.Remove(node, HashOf(node->name) ^ HashOf(std::string_view(augment->name)));
    if (module_ != nullptr && node->parent == nullptr)
        top_.Remove(node, HashOf(node->name));
    if (parent_ == nullptr)
        return;
    if (IsAtOrBelow(parent_, node)) {
        parent_ = nullptr;
        return;
    }
    children_.Remove(node, HashOf(node->name));
    bool isFirst = node == firstChild_, isLast = node == lastChild_;
    if (isFirst)
        firstChild_ = isLast ? nullptr : node->next;
    if (isLast)
        lastChild_ = isFirst ? nullptr : node->prev;
}

void zr::ChildIndex::ForgetChildrenOf(const ZrNode *parent)
{
    if (parent == parent_)
        parent_ = nullptr;
}
