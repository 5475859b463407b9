// SPDX-License-Identifier: Apache-2.0
// Where exceptions end: at the boundary of a library whose callers write C.
#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>

namespace zr {

// Runs a piece of work and turns memory that runs out into a status.
template <uint32_t noMemory, typename Work> uint32_t Guard(Work work) noexcept
{
    try {
        return work();
    } catch (const std::bad_alloc &) {
        return noMemory;
    } catch (const std::length_error &) { // a text longer than the machine can address
        return noMemory;
    }
}

} // namespace zr
