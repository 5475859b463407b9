// SPDX-License-Identifier: Apache-2.0
// Counted arrays: one block, the count kept by the owner, grown exactly.
//
// An empty array is a null pointer. An array grows by the elements that its owner is about to add,
// without spare room: the lists of a schema are short and built once.
#pragma once

#include <zrschema/types.h>

#include <cstddef>
#include <cstdint>

#include "foundation/dict.h"
#include "platform/memory.h"
#include "platform/strings.h"

extern "C" {
// `arrayPtr` is the address of the owner's array pointer; sizes are in bytes.

// Makes an array of `count` zero-filled elements; with 0 it stays null. ZR_OK; ZR_ERR_INVALID for a
// null address, an array that is there already or an element size of 0; ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZR_UTL_NewArray(void **arrayPtr, uint32_t count, uint32_t elementSize);
// Adds `addCount` zero-filled elements to the `oldCount` that are there. ZR_OK; ZR_ERR_INVALID for
// a null address or an element size of 0; ZR_ERR_NO_MEMORY, and then the old array stays as it was.
ZR_API uint32_t ZR_UTL_ExpandArray(void **arrayPtr, uint32_t oldCount, uint32_t addCount,
                                   uint32_t elementSize);
}

namespace zr {

// Typed forms of the two.
template <typename T> uint32_t NewArray(T **array, uint32_t count)
{
    return ZR_UTL_NewArray(reinterpret_cast<void **>(array), count, sizeof(T));
}
template <typename T> uint32_t NewArray(Owned<T> &array, uint32_t count)
{
    return NewArray<T>(Out(array), count);
}
template <typename T> uint32_t ExpandArray(T **array, uint32_t oldCount, uint32_t addCount)
{
    return ZR_UTL_ExpandArray(reinterpret_cast<void **>(array), oldCount, addCount, sizeof(T));
}
template <typename T> uint32_t ExpandArray(Owned<T> &array, uint32_t oldCount, uint32_t addCount)
{
    T *block = array.release();
    uint32_t status = ExpandArray(&block, oldCount, addCount);
    array.reset(block);
    return status;
}

} // namespace zr

// Constant tables that are indexed by an enumeration.

namespace zr {

// Whether row i of the table carries the number i more than `first` in its field `key`, for every
// row, and the last one is the one before `end`: to be asserted beside the table.
template <typename Row, size_t count, typename Number>
constexpr bool RowsInOrder(const Row (&rows)[count], Number Row::*key, uint32_t first = 0,
                           uint32_t end = count)
{
    for (size_t i = 0; i < count; ++i) {
        if (static_cast<uint32_t>(rows[i].*key) != first + i)
            return false;
    }
    return first + count == end;
}

} // namespace zr

// What the families of small records share: interning of their strings, and the operations on
// counted arrays of them. An array is one block, its 16-bit count stands in the owner.

namespace zr {

// Stores an interned copy of `text` in `field`; a null text stores null. False when the dictionary
// cannot take the text; the field is null then.
inline bool Intern(ZrDict *dict, const char *&field, const char *text)
{
    field = text == nullptr ? nullptr : ZR_DICT_Insert(dict, text);
    return field != nullptr || text == nullptr;
}

// Whether both texts are there and equal. Callers ask with buffers of their own, so pointers alone
// do not decide.
inline bool TextEquals(const char *a, const char *b)
{
    return a != nullptr && b != nullptr && (a == b || PAL_StrCmp(a, b) == 0);
}

// Appends one record: makes room, lets `fill`(record) set it, and counts it when that gives ZR_OK.
// Else the room stays, uncounted, for the next record. ZR_ERR_INVALID for an array that is full,
// ZR_ERR_NO_MEMORY, or the result of `fill`.
template <typename Record, typename Fill>
uint32_t AppendOne(Record **array, uint16_t *count, Fill fill)
{
    if (array == nullptr || count == nullptr || *count == UINT16_MAX)
        return ZR_ERR_INVALID;
    bool hasRoom = *count == 0 && *array != nullptr; // left by a first record that was not filled
    uint32_t status = hasRoom ? uint32_t{ZR_OK} : ExpandArray(array, *count, 1);
    if (status == ZR_OK)
        status = fill(&(*array)[*count]);
    if (status == ZR_OK)
        ++*count;
    return status;
}

// The first record for which `matches`(record) holds, or null.
template <typename Record, typename Matches>
Record *FindFirst(Record *array, uint32_t count, Matches matches)
{
    for (uint32_t i = 0; array != nullptr && i < count; ++i) {
        if (matches(array[i]))
            return &array[i];
    }
    return nullptr;
}

// Lets `clear`(record) release every record, then frees the block.
template <typename Record, typename Clear>
void FreeRecords(Record *array, uint32_t count, Clear clear)
{
    for (uint32_t i = 0; array != nullptr && i < count; ++i)
        clear(&array[i]);
    Free(array);
}

// A new array of the same length, each record set by `fill`(record, source record). Null for an
// empty array and on failure, when `clear` releases what was copied.
template <typename Record, typename Fill, typename Clear>
Record *CopyRecords(const Record *array, uint32_t count, Fill fill, Clear clear)
{
    Record *copy = nullptr;
    if (array == nullptr || NewArray(&copy, count) != ZR_OK)
        return nullptr;
    for (uint32_t i = 0; i < count; ++i) {
        if (fill(&copy[i], &array[i]) != ZR_OK) {
            FreeRecords(copy, i, clear);
            return nullptr;
        }
    }
    return copy;
}

// Whether the arrays are equally long and equal record by record, in order.
template <typename Record, typename Same>
bool RecordsSame(const Record *a, uint32_t countA, const Record *b, uint32_t countB, Same same)
{
    if (countA != countB)
        return false;
    for (uint32_t i = 0; i < countA; ++i) {
        if (!same(&a[i], &b[i]))
            return false;
    }
    return true;
}

// Arrays of interned texts.

// Gives the texts back, null ones among them too, and frees the block.
inline void FreeTexts(ZrDict *dict, const char **texts, uint32_t count)
{
    FreeRecords(texts, count, [dict](const char **text) { Release(dict, *text); });
}

// A new array of the same texts; null for an empty array and without memory.
inline const char **CopyTexts(ZrDict *dict, const char *const *texts, uint32_t count)
{
    return CopyRecords(
        texts, count,
        [dict](const char **copy, const char *const *from) -> uint32_t {
            return Intern(dict, *copy, *from) ? ZR_OK : ZR_ERR_NO_MEMORY;
        },
        [dict](const char **text) { Release(dict, *text); });
}

} // namespace zr
