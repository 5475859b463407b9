// SPDX-License-Identifier: Apache-2.0
#include "foundation/dict.h"

#include <cstring>

#include "foundation/array.h"
#include "foundation/dict_index.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

constexpr uint32_t kBucketCount = 1024;
// How many texts there are for each bucket when an index is made; it is given up again below one.
constexpr uint32_t kTextsForIndex = 4;
constexpr uint32_t kLongChain = 8; // a power of two; no dictionary of so many texts has none
static_assert((kBucketCount & (kBucketCount - 1)) == 0, "the bucket index is a mask");
static_assert(sizeof(ZrDictBucket) == sizeof(void *) + (sizeof(void *) == 4 ? 4 : 8),
              "a bucket is a count and a pointer, 8 bytes with 32-bit pointers");

uint32_t BucketNumber(const ZrDict *dict, uint32_t hash)
{
    return hash & (dict->bucketCount - 1);
}

// Where a text stands in its chain, or would stand.
struct Place {
    uint32_t hash;
    uint32_t bucket;
    ZrDictEntry **link;      // to its entry, or else to the end of the chain
    ZrDictIndex::Slot *slot; // of it in the index, null without one
};

ZrDictEntry **LinkBehind(const ZrDict *dict, uint32_t bucket, ZrDictEntry *previous)
{
    return previous != nullptr ? &previous->next : &dict->buckets[bucket].head;
}

Place FindPlace(const ZrDict *dict, const char *text, uint32_t hash)
{
    uint32_t bucket = BucketNumber(dict, hash);
    if (dict->index != nullptr) {
        ZrDictIndex::Slot *slot = zr::FindSlot(dict->index, text, hash);
        ZrDictEntry *previous =
            slot->entry != nullptr ? slot->previous : dict->index->tails[bucket];
        return {hash, bucket, LinkBehind(dict, bucket, previous), slot};
    }
    ZrDictEntry **link = &dict->buckets[bucket].head;
    while (*link != nullptr && std::strcmp((*link)->text, text) != 0)
        link = &(*link)->next;
    return {hash, bucket, link, nullptr};
}

void DropIndex(ZrDict *dict)
{
    zr::FreeIndex(dict->index);
    dict->index = nullptr;
}

bool IsFull(const ZrDict *dict)
{
    uint32_t entries = 0;
    for (uint32_t i = 0; i < dict->bucketCount; ++i)
        entries += dict->buckets[i].entryCount;
    return entries / kTextsForIndex >= dict->bucketCount;
}

// Keeps the index up to date with an entry at the end of its chain, or makes one when that chain
// has become long. Where memory is short there is none: it is tried again when a chain has doubled.
void Index(ZrDict *dict, ZrDictEntry *entry, const Place &place)
{
    uint32_t length = dict->buckets[place.bucket].entryCount;
    bool isTimeToAsk = length >= kLongChain && (length & (length - 1)) == 0;
    if (dict->index == nullptr)
        dict->index = isTimeToAsk && IsFull(dict) ? zr::MakeIndex(dict) : nullptr;
    else if (!zr::IndexEntry(dict->index, entry, place.hash, place.bucket))
        DropIndex(dict);
}

void Unindex(ZrDict *dict, const Place &place)
{
    if (dict->index == nullptr)
        return;
    zr::UnindexEntry(dict->index, place.slot, place.bucket);
    if (dict->index->entryCount < dict->bucketCount)
        DropIndex(dict);
}

ZrDictEntry *NewEntry(const char *text, size_t length)
{
    zr::Owned<ZrDictEntry> entry(zr::New<ZrDictEntry>());
    if (!entry)
        return nullptr;
    // Not zero-filled first: every byte is written at once.
    entry->text = static_cast<char *>(g_zrMemMallocFunc(length + 1));
    if (entry->text == nullptr)
        return nullptr;
    std::memcpy(entry->text, text, length + 1);
    entry->refCount = 1;
    return entry.release();
}

bool IsLive(const ZrDict *dict)
{
    return dict != nullptr && dict->buckets != nullptr;
}

bool IsClosing(const ZrDict *dict)
{
    return dict->index != nullptr && dict->index->isClosing;
}

} // namespace

uint32_t ZR_DICT_Init(ZrDict *dict)
{
    if (dict == nullptr)
        return ZR_ERR_FAILED;
    *dict = ZrDict{};
    if (zr::NewArray(&dict->buckets, kBucketCount) != ZR_OK)
        return ZR_ERR_FAILED;
    dict->bucketCount = kBucketCount;
    return ZR_OK;
}

uint32_t ZR_DICT_HashVal(const char *text, uint32_t)
{
    return text != nullptr ? zr::HashText(text).hash : 0;
}

const char *ZR_DICT_Insert(ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr || IsClosing(dict))
        return nullptr;
    zr::HashedText hashed = zr::HashText(text);
    Place place = FindPlace(dict, text, hashed.hash);
    if (*place.link != nullptr) {
        ++(*place.link)->refCount;
        return (*place.link)->text;
    }
    // Counted before the allocations, also when they fail: the count only says how long the chain
    // wanted to be.
    ZrDictBucket *bucket = &dict->buckets[place.bucket];
    ++bucket->entryCount;
    ZrDictEntry *entry = NewEntry(text, hashed.length);
    if (entry == nullptr)
        return nullptr;
    if (place.link == &bucket->head)
        ++dict->headCount;
    *place.link = entry;
    Index(dict, entry, place);
    return entry->text;
}

const char *zr::FindInterned(const ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr)
        return nullptr;
    const ZrDictEntry *entry = *FindPlace(dict, text, zr::HashText(text).hash).link;
    return entry != nullptr ? entry->text : nullptr;
}

void zr::CloseDict(ZrDict *dict)
{
    if (dict->index != nullptr)
        dict->index->isClosing = true;
}

void ZR_DICT_Remove(ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr || IsClosing(dict))
        return;
    Place place = FindPlace(dict, text, zr::HashText(text).hash);
    ZrDictEntry *entry = *place.link;
    if (entry == nullptr || --entry->refCount != 0)
        return;
    Unindex(dict, place);
    ZrDictBucket *bucket = &dict->buckets[place.bucket];
    if (place.link == &bucket->head)
        --dict->headCount;
    *place.link = entry->next;
    --bucket->entryCount;
    zr::Free(entry->text);
    zr::Free(entry);
}

void ZR_DICT_Destroy(ZrDict *dict)
{
    if (!IsLive(dict))
        return;
    bool isClosing = IsClosing(dict);
    DropIndex(dict);
    for (uint32_t i = 0; i < dict->bucketCount; ++i) {
        while (ZrDictEntry *entry = dict->buckets[i].head) {
            dict->buckets[i].head = entry->next;
            if (isClosing)
                zr::Free(entry->text);
            zr::Free(entry);
        }
    }
    zr::Free(dict->buckets);
    dict->buckets = nullptr;
}
