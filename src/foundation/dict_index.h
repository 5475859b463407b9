// SPDX-License-Identifier: Apache-2.0
// A second way into a dictionary whose chains have become long. The chains stay what they are; the
// index finds an entry, the one before it and the end of a chain without a walk.
#pragma once

#include <cstddef>

#include "foundation/dict.h"

struct ZrDictIndex {
    struct Slot {
        ZrDictEntry *entry;    // null: the slot is free
        ZrDictEntry *previous; // in its chain, null for the first
        uint32_t hash;
    };

    Slot *slots;         // open addressing by the hash, each in the next free place
    ZrDictEntry **tails; // the last entry of each bucket's chain
    uint32_t slotCount;  // a power of two
    uint32_t entryCount;
    bool isClosing; // the texts go with the dictionary, none before
};

namespace zr {

struct HashedText {
    uint32_t hash;
    size_t length;
};
// What a text's place in a dictionary follows from: ZR_DICT_HashVal() of it, and its length.
HashedText HashText(const char *text);

// An index of all that the dictionary holds; null without memory, and when it holds too much.
ZrDictIndex *MakeIndex(const ZrDict *dict);
void FreeIndex(ZrDictIndex *index);

// The slot of a text, or the free one where it would stand.
ZrDictIndex::Slot *FindSlot(const ZrDictIndex *index, const char *text, uint32_t hash);

// Enters what has been put at the end of its chain. False without memory; the index is then of no
// more use.
bool IndexEntry(ZrDictIndex *index, ZrDictEntry *entry, uint32_t hash, uint32_t bucket);
// Takes out what has been taken out of its chain.
void UnindexEntry(ZrDictIndex *index, const ZrDictIndex::Slot *slot, uint32_t bucket);

} // namespace zr
