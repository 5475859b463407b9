// SPDX-License-Identifier: Apache-2.0
// The memory of a workspace.
#pragma once

#include <zryang/zryang.h>

#include "shared/memory.h"

namespace zr::yang {

using HookResource = zr::HookResource<ZrYangMemory>;
using zr::Arena;

} // namespace zr::yang
