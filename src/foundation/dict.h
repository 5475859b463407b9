// SPDX-License-Identifier: Apache-2.0
// The string dictionary: equal texts share one reference-counted copy.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

struct ZrDictEntry {
    char *text; // owned
    uint32_t refCount;
    ZrDictEntry *next;
};

struct ZrDictBucket {
    uint32_t entryCount;
    ZrDictEntry *head;
};

struct ZrDict {
    uint32_t bucketCount; // a power of two
    uint32_t headCount;   // buckets that were given a head; for information
    ZrDictBucket *buckets;
    struct ZrDictIndex *index; // once a chain is long and there is memory for it, else null
};

extern "C" {
// Makes an empty dictionary: ZR_OK, or ZR_ERR_FAILED when memory runs out.
ZR_API uint32_t ZR_DICT_Init(ZrDict *dict);
// The 32-bit hash of a text, 0 for "". The second argument is not read.
ZR_API uint32_t ZR_DICT_HashVal(const char *text, uint32_t ignoredLength);
// The shared copy of a text with one more reference; null for null or when memory runs out. Each
// successful call is paid back with one ZR_DICT_Remove.
ZR_API const char *ZR_DICT_Insert(ZrDict *dict, const char *text);
// Gives one reference back; the text is found by its content. With the last one the copy is
// released. Null and unknown texts are ignored.
ZR_API void ZR_DICT_Remove(ZrDict *dict, const char *text);
// Releases the dictionary. Texts that are still referenced are not: they are their holders' to
// give back before, unless CloseDict() was called.
ZR_API void ZR_DICT_Destroy(ZrDict *dict);
}

namespace zr {
// The shared copy of a text without another reference, or null when there is none.
const char *FindInterned(const ZrDict *dict, const char *text);

// Says that everything that holds texts is about to go, and the dictionary after it. To find each
// text of many to give it back takes longer than all else that is done to them: a dictionary with
// an index takes and gives back none from here on and releases all texts when it is destroyed. They
// can still be found.
void CloseDict(ZrDict *dict);

// Gives an interned string back and clears the field that held it.
inline void Release(ZrDict *dict, const char *&text)
{
    ZR_DICT_Remove(dict, text);
    text = nullptr;
}
} // namespace zr
