// SPDX-License-Identifier: Apache-2.0
// What the operating system gives on POSIX calls: files, directory search, the clock.
#pragma once

#include <cstddef>
#include <cstdint>

struct PalFile; // an open file
struct PalFind; // a running directory search

extern "C" {
// Opens a regular file for reading (mode "r" or "rb", no other); null on failure. A directory, a
// pipe or a device is refused, so that reading a module never blocks.
PalFile *PAL_VFS_FOpen(const char *path, const char *mode);
// Buffer mode 1, no stream buffer, is the only one there is: ZR_OK for it, ZR_ERR_INVALID for
// another.
uint32_t PAL_VFS_SetBufMode(PalFile *file, uint32_t mode);
// Moves the read position; `whence` is SEEK_SET, SEEK_CUR or SEEK_END. 0, or -1 on failure.
int32_t PAL_VFS_FSeek(PalFile *file, int64_t offset, int32_t whence);
// The read position in bytes, negative on failure.
int64_t PAL_VFS_FTell(PalFile *file);
// Reads up to `count` items of `size` bytes; the result is the number of whole items read.
size_t PAL_VFS_FRead(void *buffer, size_t size, size_t count, PalFile *file);
// Closes the file; null is accepted.
void PAL_VFS_FClose(PalFile *file);
// Starts a search for the directory entries that match the glob in the last part of `pattern`
// ("*" and "?"; in the directory's own order) and writes the first match's full path into
// `pathOut`. Entries whose path does not fit are passed over. Null when there is no match, or no
// such directory, or no memory, which errno tells by ENOMEM.
PalFind *PAL_VFS_FindFirst(const char *pattern, char *pathOut, size_t pathSize);
// Writes the next match: ZR_OK, or ZR_ERR_NOT_FOUND at the end.
uint32_t PAL_VFS_FindNext(PalFind *find, char *pathOut, size_t pathSize);
// Ends the search; null is accepted.
void PAL_VFS_FindClose(PalFind *find);
// 1 for an existing regular file, else 0. Links are followed.
uint32_t PAL_VFS_IsFileExist(const char *path);
// 1 for an existing directory, else 0. Links are followed.
uint32_t PAL_VFS_IsDirExist(const char *path);
// Seconds since 1970-01-01 UTC.
uint32_t PAL_SystimeGet(void);
}
