// SPDX-License-Identifier: Apache-2.0
// The files of sources: reading them whole, and listing directories.
#pragma once

#include <functional>

#include "yang/base/memory.h"

namespace zr::yang {

// Reads a regular file into the arena. Returns 0, or errno; EINVAL stands for what is no regular
// file. The path is NUL-terminated.
int ReadFile(const char *path, Arena &arena, std::string_view &textOut);

// Calls `func` with the name of each entry; 0, or errno when the directory cannot be listed.
int ListDirectory(const char *path, const std::function<void(const char *)> &func);

// Writes a whole file beside `path` and renames it to that; 0, or errno, and then nothing is left.
int WriteFile(const char *path, std::string_view text, std::pmr::memory_resource *memory);

} // namespace zr::yang
