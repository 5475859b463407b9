// Counted arrays: one block, the count kept by the owner, grown exactly.
//
// An empty array is a null pointer. An array grows by the elements that its owner is about to add,
// without spare room: the lists of a schema are short and built once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <zrschema/types.h>

extern "C" {
// `arrayPtr` is the address of the owner's array pointer; sizes are in bytes.

// Makes an array of `count` zero-filled elements; with 0 it stays null. 22 for a null address, an
// array that is there already or an element size of 0; 12 when memory runs out.
ZR_API uint32_t ZR_UTL_NewArray(void **arrayPtr, uint32_t count, uint32_t elementSize);
// Adds `addCount` zero-filled elements to the `oldCount` that are there. 22 for a null address or
// an element size of 0; 12 when memory runs out or the old elements cannot be copied, and then the
// old array stays as it was.
ZR_API uint32_t ZR_UTL_ExpandArray(void **arrayPtr, uint32_t oldCount, uint32_t addCount,
                                   uint32_t elementSize);
}

namespace zr {

// Typed forms of the two.
template <typename T> uint32_t NewArray(T **array, uint32_t count)
{
    return ZR_UTL_NewArray(reinterpret_cast<void **>(array), count, sizeof(T));
}
template <typename T> uint32_t ExpandArray(T **array, uint32_t oldCount, uint32_t addCount)
{
    return ZR_UTL_ExpandArray(reinterpret_cast<void **>(array), oldCount, addCount, sizeof(T));
}

} // namespace zr
