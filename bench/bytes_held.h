// SPDX-License-Identifier: Apache-2.0
// What the engine holds, counted in its allocation hooks by all benchmarks of one run.
#pragma once

#include <cstddef>

namespace bench {

// Bytes asked for and not yet given back.
size_t BytesHeld();

} // namespace bench
