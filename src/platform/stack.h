// SPDX-License-Identifier: Apache-2.0
// A stack of pointers with a fixed capacity.
#pragma once

#include <cstdint>

struct PalStack;

extern "C" {
// A new, empty stack for `capacity` items, or null when memory runs out; capacity 0 is allowed.
PalStack *PAL_CreateStack(uint32_t capacity);
// Puts an item on top: ZR_OK, or ZR_ERR_NO_MEMORY when the stack is full or null.
uint32_t PAL_Push(PalStack *stack, void *item);
// Takes the top item off and returns it; null when the stack is empty.
void *PAL_Pop(PalStack *stack);
// The top item, which stays; null when the stack is empty.
void *PAL_Peep(const PalStack *stack);
// How many items lie on the stack.
uint32_t PAL_GetSize(const PalStack *stack);
// Releases the stack; null is accepted, and the items stay the caller's.
void PAL_DeleteStack(PalStack *stack);
}
