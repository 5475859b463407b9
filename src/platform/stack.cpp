// SPDX-License-Identifier: Apache-2.0
#include "platform/stack.h"

#include <cstddef>
#include <zrschema/types.h>

#include "platform/memory.h"

// One block: this head, then `capacity` slots.
struct PalStack {
    uint32_t capacity;
    uint32_t size;
};

namespace {

static_assert(sizeof(PalStack) % alignof(void *) == 0, "the slots follow the head");

void **Slots(const PalStack *stack)
{
    return reinterpret_cast<void **>(const_cast<PalStack *>(stack) + 1);
}

} // namespace

PalStack *PAL_CreateStack(uint32_t capacity)
{
    size_t slots;
    if (__builtin_mul_overflow(capacity, sizeof(void *), &slots))
        return nullptr;
    auto *stack = zr::NewWithTail<PalStack>(slots);
    if (stack != nullptr)
        stack->capacity = capacity;
    return stack;
}

uint32_t PAL_Push(PalStack *stack, void *item)
{
    if (stack == nullptr || stack->size == stack->capacity)
        return ZR_ERR_NO_MEMORY;
    Slots(stack)[stack->size++] = item;
    return ZR_OK;
}

void *PAL_Pop(PalStack *stack)
{
    return PAL_GetSize(stack) != 0 ? Slots(stack)[--stack->size] : nullptr;
}

void *PAL_Peep(const PalStack *stack)
{
    return PAL_GetSize(stack) != 0 ? Slots(stack)[stack->size - 1] : nullptr;
}

uint32_t PAL_GetSize(const PalStack *stack)
{
    return stack != nullptr ? stack->size : 0;
}

void PAL_DeleteStack(PalStack *stack)
{
    zr::Free(stack);
}
