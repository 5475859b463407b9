// SPDX-License-Identifier: Apache-2.0
// Nodes by name: the children of one node, the top-level nodes of one module and the nodes that its
// augments add, for many lookups in a row.
#pragma once

#include <cstddef>
#include <string_view>

#include "foundation/context_record.h"
#include "foundation/dict.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "platform/memory.h"

namespace zr {

// Finds what ZRS_NODE_FindChildNodeByName and ZRS_MOD_FindTopLevelSchemaNode find. Where there are
// many nodes to choose from it does so through a hash table of them, which serves until another
// parent or module with many is asked for; without memory for the table it passes the siblings like
// those functions. What is taken out between two lookups has to be told before; where the table is
// not told of new children, it is made again.
class ChildIndex {
public:
    ZrNode *Find(const ZrNode *parent, const char *moduleName, const char *name);
    ZrNode *FindTop(const ZrMod *module, const char *name);
    // Whether the nodes that the module's augments add can be asked for; there have to be many.
    bool ServesAugmentsOf(const ZrMod *module);
    // Of these, the nodes of that name that augments of exactly that target add, in the order of
    // the augments: calls `visit`(node, augment) until it gives true.
    template <typename Visit>
    void ForEachAdded(std::string_view target, const char *name, Visit visit) const
    {
        const char *shared = FindInterned(&augmenting_->ctx->dict, name);
        if (shared == nullptr)
            return;
        added_.Find(HashOf(shared) ^ HashOf(target), [&](const Entry &entry) {
            return entry.node->name == shared && entry.augment->name == target &&
                   visit(entry.node, entry.augment);
        });
    }
    // The augment has just been coupled.
    void Arrive(const ZrNode *augment);
    // The node, still linked, is about to go with its subtree; `augment` is the coupled augment
    // that added it, or null.
    void Leave(const ZrNode *node, const ZrNode *augment);
    // The augment, which has its nodes back, is about to go with them.
    void LeaveAugment(const ZrNode *augment);
    // The parent loses children.
    void ForgetChildrenOf(const ZrNode *parent);

private:
    struct Entry {
        ZrNode *node;
        ZrNode *augment; // that adds the node, where it matters
        size_t hash;
    };

    // Hash table of nodes; those of one hash keep the order in which they were added.
    class Table {
    public:
        // Makes room for the nodes; false without memory.
        bool Make(size_t count);
        // False when there is no room.
        bool Add(Entry entry);
        void Remove(const ZrNode *node, size_t hash);
        // The first node of that hash for which `fits`(entry) holds, or null.
        template <typename Fits> ZrNode *Find(size_t hash, Fits fits) const
        {
            for (size_t slot = hash & mask_; slots_.get()[slot].node != nullptr;
                 slot = (slot + 1) & mask_) {
                const Entry &entry = slots_.get()[slot];
                if (entry.hash == hash && fits(entry))
                    return entry.node;
            }
            return nullptr;
        }

    private:
        Owned<Entry> slots_;
        size_t count_ = 0;
        size_t mask_ = 0; // number of slots less one; at least half of them are empty
    };

    // Names are shared copies, so that their addresses tell them apart.
    static size_t HashOf(const char *name)
    {
        return reinterpret_cast<uintptr_t>(name) / alignof(max_align_t) * size_t{2654435761};
    }
    static size_t HashOf(std::string_view text);

    bool ServesChildrenOf(const ZrNode *parent);
    bool MakeChildrenOf(const ZrNode *parent);
    bool ServesTopOf(const ZrMod *module);

    const ZrNode *parent_ = nullptr;
    const ZrNode *firstChild_ = nullptr; // of the parent as the table knows it
    const ZrNode *lastChild_ = nullptr;
    const ZrMod *module_ = nullptr;     // of the top-level nodes
    const ZrMod *augmenting_ = nullptr; // of the augments
    Table children_;
    Table top_;
    Table added_;
};

} // namespace zr
