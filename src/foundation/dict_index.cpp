// SPDX-License-Identifier: Apache-2.0
#include "foundation/dict_index.h"

#include <cstring>

#include "platform/memory.h"

namespace {

using Slot = ZrDictIndex::Slot;

constexpr uint32_t kFirstSlots = 16 * 1024;
constexpr uint32_t kMostSlots = uint32_t{1} << 30;

uint32_t MaskOf(const ZrDictIndex *index)
{
    return index->slotCount - 1;
}

Slot *FindFree(Slot *slots, uint32_t mask, uint32_t hash)
{
    uint32_t at = hash & mask;
    while (slots[at].entry != nullptr)
        at = (at + 1) & mask;
    return &slots[at];
}

// Makes room for one more: a quarter of the slots stays free, so that a search ends soon.
bool Reserve(ZrDictIndex *index)
{
    if (index->entryCount < index->slotCount / 4 * 3)
        return true;
    if (index->slotCount >= kMostSlots)
        return false;
    uint32_t count = index->slotCount != 0 ? index->slotCount * 2 : kFirstSlots;
    Slot *slots = zr::New<Slot>(count);
    if (slots == nullptr)
        return false;
    for (uint32_t i = 0; i < index->slotCount; ++i) {
        if (index->slots[i].entry != nullptr)
            *FindFree(slots, count - 1, index->slots[i].hash) = index->slots[i];
    }
    zr::Free(index->slots);
    index->slots = slots;
    index->slotCount = count;
    return true;
}

// Frees a slot. What stands behind it up to the next free one moves up where the search for it
// would otherwise end too early.
void FreeSlot(ZrDictIndex *index, uint32_t hole)
{
    uint32_t mask = MaskOf(index);
    for (uint32_t at = (hole + 1) & mask; index->slots[at].entry != nullptr; at = (at + 1) & mask) {
        uint32_t distance = (at - index->slots[at].hash) & mask; // from where its search begins
        if (distance < ((at - hole) & mask))
            continue;
        index->slots[hole] = index->slots[at];
        hole = at;
    }
    index->slots[hole] = Slot{};
    --index->entryCount;
}

} // namespace

// Jenkins's one-at-a-time hash. The bytes count as signed on every target: which bucket a text
// falls into does not depend on the sign of char.
zr::HashedText zr::HashText(const char *text)
{
    uint32_t h = 0;
    const char *p = text;
    for (; *p != '\0'; ++p) {
        h += static_cast<uint32_t>(static_cast<signed char>(*p));
        h += h << 10;
        h ^= h >> 6;
    }
    h += h << 3;
    h ^= h >> 11;
    h += h << 15;
    return {h, static_cast<size_t>(p - text)};
}

ZrDictIndex *zr::MakeIndex(const ZrDict *dict)
{
    Owned<ZrDictIndex, FreeIndex> index(New<ZrDictIndex>());
    if (!index)
        return nullptr;
    index->tails = New<ZrDictEntry *>(dict->bucketCount);
    if (index->tails == nullptr)
        return nullptr;
    for (uint32_t bucket = 0; bucket < dict->bucketCount; ++bucket) {
        for (ZrDictEntry *entry = dict->buckets[bucket].head; entry != nullptr; entry = entry->next)
            if (!IndexEntry(index.get(), entry, HashText(entry->text).hash, bucket))
                return nullptr;
    }
    return index.release();
}

void zr::FreeIndex(ZrDictIndex *index)
{
    if (index == nullptr)
        return;
    Free(index->slots);
    Free(index->tails);
    Free(index);
}

Slot *zr::FindSlot(const ZrDictIndex *index, const char *text, uint32_t hash)
{
    uint32_t at = hash & MaskOf(index);
    for (;; at = (at + 1) & MaskOf(index)) {
        Slot *slot = &index->slots[at];
        bool isFound = slot->entry == nullptr ||
                       (slot->hash == hash && std::strcmp(slot->entry->text, text) == 0);
        if (isFound)
            return slot;
    }
}

bool zr::IndexEntry(ZrDictIndex *index, ZrDictEntry *entry, uint32_t hash, uint32_t bucket)
{
    if (!Reserve(index))
        return false;
    *FindFree(index->slots, MaskOf(index), hash) = {entry, index->tails[bucket], hash};
    index->tails[bucket] = entry;
    ++index->entryCount;
    return true;
}

void zr::UnindexEntry(ZrDictIndex *index, const Slot *slot, uint32_t bucket)
{
    if (const ZrDictEntry *next = slot->entry->next)
        FindSlot(index, next->text, HashText(next->text).hash)->previous = slot->previous;
    else
        index->tails[bucket] = slot->previous;
    FreeSlot(index, static_cast<uint32_t>(slot - index->slots));
}
