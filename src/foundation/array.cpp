// SPDX-License-Identifier: Apache-2.0
#include "foundation/array.h"

#include "platform/memory.h"
#include "platform/strings.h"

namespace {

// A zero-filled block of count elements; null also when it would be larger than the address space.
void *AllocElements(uint32_t count, uint32_t elementSize)
{
    size_t size;
    if (__builtin_mul_overflow(count, elementSize, &size))
        return nullptr;
    return zr::AllocZeroed(size);
}

} // namespace

uint32_t ZR_UTL_NewArray(void **arrayPtr, uint32_t count, uint32_t elementSize)
{
    if (arrayPtr == nullptr || *arrayPtr != nullptr || elementSize == 0)
        return ZR_ERR_INVALID;
    if (count == 0)
        return ZR_OK;
    void *block = AllocElements(count, elementSize);
    if (block == nullptr)
        return ZR_ERR_NO_MEMORY;
    *arrayPtr = block;
    return ZR_OK;
}

uint32_t ZR_UTL_ExpandArray(void **arrayPtr, uint32_t oldCount, uint32_t addCount,
                            uint32_t elementSize)
{
    if (arrayPtr == nullptr || elementSize == 0)
        return ZR_ERR_INVALID;
    if (oldCount == 0)
        return ZR_UTL_NewArray(arrayPtr, addCount, elementSize);
    if (addCount == 0)
        return ZR_OK;
    uint32_t count;
    if (__builtin_add_overflow(oldCount, addCount, &count))
        return ZR_ERR_NO_MEMORY;
    zr::Owned<void> block(AllocElements(count, elementSize));
    if (!block)
        return ZR_ERR_NO_MEMORY;
    size_t oldSize = static_cast<size_t>(oldCount) * elementSize;
    if (memcpy_s(block.get(), oldSize, *arrayPtr, oldSize) != 0)
        return ZR_ERR_NO_MEMORY;
    zr::Free(*arrayPtr);
    *arrayPtr = block.release();
    return ZR_OK;
}
