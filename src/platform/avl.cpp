// SPDX-License-Identifier: Apache-2.0
#include "platform/avl.h"

#include <boost/intrusive/avltree_algorithms.hpp>

namespace {

// Teaches Boost.Intrusive's algorithms our link.
struct AvlNodeTraits {
    using node = PalAvlNode;
    using node_ptr = PalAvlNode *;
    using const_node_ptr = const PalAvlNode *;
    using balance = int32_t;

    static node_ptr get_parent(const_node_ptr n) { return n->parent; }
    static void set_parent(node_ptr n, node_ptr parent) { n->parent = parent; }
    static node_ptr get_left(const_node_ptr n) { return n->left; }
    static void set_left(node_ptr n, node_ptr left) { n->left = left; }
    static node_ptr get_right(const_node_ptr n) { return n->right; }
    static void set_right(node_ptr n, node_ptr right) { n->right = right; }
    static balance get_balance(const_node_ptr n) { return n->balance; }
    static void set_balance(node_ptr n, balance b) { n->balance = b; }
    static balance zero() { return 0; }
    static balance positive() { return 1; }
    static balance negative() { return 2; }
};

using Algorithms = boost::intrusive::avltree_algorithms<AvlNodeTraits>;

constexpr int32_t kInNoTree = -1;

PalAvlNode *LinkOf(const void *record, const PalAvlInfo *info)
{
    auto *bytes = static_cast<char *>(const_cast<void *>(record));
    return reinterpret_cast<PalAvlNode *>(bytes + info->nodePos);
}

void *RecordOf(const PalAvlNode *link, const PalAvlInfo *info)
{
    return reinterpret_cast<char *>(const_cast<PalAvlNode *>(link)) - info->nodePos;
}

const void *KeyOf(const void *record, const PalAvlInfo *info)
{
    return *reinterpret_cast<const void *const *>(static_cast<const char *>(record) + info->keyPos);
}

// Every link in a tree has a parent, the root's being the header; so a zero-filled record that was
// never initialised stands in no tree either.
bool StandsInTree(const PalAvlNode *link)
{
    return link->balance != kInNoTree && link->parent != nullptr;
}

// Where a descent by key ended: at an equal record, or below `parent` on one side.
struct Place {
    PalAvlNode *equal;
    PalAvlNode *parent;
    bool left;
};

Place Descend(const PalAvlTree *tree, const void *key, const PalAvlInfo *info)
{
    Place place{nullptr, const_cast<PalAvlNode *>(&tree->header), true};
    PalAvlNode *link = tree->header.parent;
    while (link != nullptr) {
        int32_t order = info->compare(key, KeyOf(RecordOf(link, info), info));
        if (order == 0) {
            place.equal = link;
            return place;
        }
        place.parent = link;
        place.left = order < 0;
        link = place.left ? link->left : link->right;
    }
    return place;
}

} // namespace

void PAL_AVL3_Init(PalAvlTree *tree)
{
    Algorithms::init_header(&tree->header);
}

void PAL_AVL3_InitNode(PalAvlNode *node)
{
    *node = PalAvlNode{nullptr, nullptr, nullptr, kInNoTree};
}

void *PAL_AVL3_Insert_Or_Find(PalAvlTree *tree, void *record, const PalAvlInfo *info)
{
    Place place = Descend(tree, KeyOf(record, info), info);
    if (place.equal != nullptr)
        return RecordOf(place.equal, info);
    Algorithms::insert_commit_data commit;
    commit.link_left = place.left;
    commit.node = place.parent;
    PalAvlNode *link = LinkOf(record, info);
    Algorithms::init(link);
    Algorithms::insert_unique_commit(&tree->header, link, commit);
    return nullptr;
}

void *PAL_AVL3_Find(const PalAvlTree *tree, const void *key, const PalAvlInfo *info)
{
    Place place = Descend(tree, key, info);
    return place.equal != nullptr ? RecordOf(place.equal, info) : nullptr;
}

void *PAL_AVL3_First(const PalAvlTree *tree, const PalAvlInfo *info)
{
    return tree->header.parent != nullptr ? RecordOf(tree->header.left, info) : nullptr;
}

void *PAL_AVL3_Next(const PalAvlTree *tree, const void *record, const PalAvlInfo *info)
{
    PalAvlNode *link = LinkOf(record, info);
    if (!StandsInTree(link))
        return nullptr;
    const PalAvlNode *next = Algorithms::next_node(link);
    return next != &tree->header ? RecordOf(next, info) : nullptr;
}

void PAL_AVL3_Delete(PalAvlTree *tree, void *record, const PalAvlInfo *info)
{
    PalAvlNode *link = LinkOf(record, info);
    if (!StandsInTree(link))
        return;
    Algorithms::erase(&tree->header, link);
    PAL_AVL3_InitNode(link);
}
