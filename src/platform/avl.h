// SPDX-License-Identifier: Apache-2.0
// Intrusive AVL trees of records that carry their own link.
//
// The tree is a balanced binary search tree over links that stand inside the caller's records, so
// that nothing is allocated and one record can stand in several trees at once. A record's key is a
// pointer field of the record; the pointer's value, not the field's address, goes to the compare
// function. Nothing here takes a lock.
#pragma once

#include <cstdint>

// Link of a record in a tree. `balance` is -1 while the record stands in no tree; else it says
// which side below it is deeper: 0 neither, 1 the right one, 2 the left one.
struct PalAvlNode {
    PalAvlNode *parent;
    PalAvlNode *left;
    PalAvlNode *right;
    int32_t balance;
};

// A tree: the header holds the root (parent), the first (left) and the last node (right). A
// zero-filled tree reads as empty, but only an initialised one takes records.
struct PalAvlTree {
    PalAvlNode header;
};

// How the records of a tree are keyed: `keyPos` is the offset of the record's key field, a pointer
// whose value is handed to `compare`; `nodePos` is the offset of its PalAvlNode. `compare` orders
// two keys like strcmp.
struct PalAvlInfo {
    int32_t (*compare)(const void *keyA, const void *keyB);
    uint32_t keyPos;
    uint32_t nodePos;
};

extern "C" {
// Makes the tree empty; records that stood in it keep their links.
void PAL_AVL3_Init(PalAvlTree *tree);
// Marks the link as standing in no tree.
void PAL_AVL3_InitNode(PalAvlNode *node);
// Inserts `record`; returns null when it was inserted, else the record with an equal key, and then
// `record` keeps the link that it had.
void *PAL_AVL3_Insert_Or_Find(PalAvlTree *tree, void *record, const PalAvlInfo *info);
// The record with that key, or null.
void *PAL_AVL3_Find(const PalAvlTree *tree, const void *key, const PalAvlInfo *info);
// The record with the smallest key, or null.
void *PAL_AVL3_First(const PalAvlTree *tree, const PalAvlInfo *info);
// The record after `record` in key order, or null.
void *PAL_AVL3_Next(const PalAvlTree *tree, const void *record, const PalAvlInfo *info);
// Takes `record` out of the tree in which it stands; one that stands in no tree is left alone.
void PAL_AVL3_Delete(PalAvlTree *tree, void *record, const PalAvlInfo *info);
}
