// What this folder needs of the allocation hooks: the foundation, which owns them, defines both.
#pragma once

#include <cstddef>

namespace zr {

// A zero-filled block through the malloc hook, or null.
void *AllocZeroed(size_t size);
// Gives a block back through the free hook; null is accepted.
void Free(void *block);

} // namespace zr
