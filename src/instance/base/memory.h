// SPDX-License-Identifier: Apache-2.0
// The memory of plans and results.
#pragma once

#include <zrdata/zrdata.h>

#include "shared/memory.h"

namespace zr::data {

using HookResource = zr::HookResource<ZrDataMemory>;
using zr::Arena;

} // namespace zr::data
