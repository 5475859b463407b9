#include "foundation/dict.h"

#include <cstring>

#include "foundation/array.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

constexpr uint32_t kBucketCount = 1024;
static_assert((kBucketCount & (kBucketCount - 1)) == 0, "the bucket index is a mask");
static_assert(sizeof(ZrDictBucket) == sizeof(void *) + (sizeof(void *) == 4 ? 4 : 8),
              "a bucket is a count and a pointer, 8 bytes with 32-bit pointers");

struct Hashed {
    uint32_t hash;
    size_t length;
};

// Jenkins's one-at-a-time hash. The bytes count as signed on every target: which bucket a text
// falls into does not depend on the sign of char.
Hashed HashText(const char *text)
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

ZrDictBucket *BucketOf(const ZrDict *dict, uint32_t hash)
{
    return &dict->buckets[hash & (dict->bucketCount - 1)];
}

// The link that points to the entry of that text, or else to the end of the bucket's chain.
ZrDictEntry **FindLink(ZrDictBucket *bucket, const char *text)
{
    ZrDictEntry **link = &bucket->head;
    while (*link != nullptr && std::strcmp((*link)->text, text) != 0)
        link = &(*link)->next;
    return link;
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
    return text != nullptr ? HashText(text).hash : 0;
}

const char *ZR_DICT_Insert(ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr)
        return nullptr;
    Hashed hashed = HashText(text);
    ZrDictBucket *bucket = BucketOf(dict, hashed.hash);
    ZrDictEntry **link = FindLink(bucket, text);
    if (*link != nullptr) {
        ++(*link)->refCount;
        return (*link)->text;
    }
    // Counted before the allocations, also when they fail: the count only says how long the chain
    // wanted to be.
    ++bucket->entryCount;
    ZrDictEntry *entry = NewEntry(text, hashed.length);
    if (entry == nullptr)
        return nullptr;
    if (link == &bucket->head)
        ++dict->headCount;
    *link = entry;
    return entry->text;
}

const char *zr::FindInterned(const ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr)
        return nullptr;
    const ZrDictEntry *entry = *FindLink(BucketOf(dict, HashText(text).hash), text);
    return entry != nullptr ? entry->text : nullptr;
}

void ZR_DICT_Remove(ZrDict *dict, const char *text)
{
    if (!IsLive(dict) || text == nullptr)
        return;
    ZrDictBucket *bucket = BucketOf(dict, HashText(text).hash);
    ZrDictEntry **link = FindLink(bucket, text);
    ZrDictEntry *entry = *link;
    if (entry == nullptr || --entry->refCount != 0)
        return;
    if (link == &bucket->head)
        --dict->headCount;
    *link = entry->next;
    --bucket->entryCount;
    zr::Free(entry->text);
    zr::Free(entry);
}

void ZR_DICT_Destroy(ZrDict *dict)
{
    if (!IsLive(dict))
        return;
    for (uint32_t i = 0; i < dict->bucketCount; ++i) {
        while (ZrDictEntry *entry = dict->buckets[i].head) {
            dict->buckets[i].head = entry->next;
            zr::Free(entry);
        }
    }
    zr::Free(dict->buckets);
    dict->buckets = nullptr;
}
