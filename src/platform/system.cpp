// SPDX-License-Identifier: Apache-2.0
#include "platform/system.h"

#include <zrschema/types.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/memory.h"
#include "platform/strings.h"

struct PalFile {
    int descriptor;
};

// One block: this head, then the two texts.
struct PalFind {
    DIR *dir;
    const char *directory; // with its last "/", or ""
    const char *glob;
};

namespace {

bool IsOfType(const char *path, mode_t type)
{
    struct stat info;
    return path != nullptr && stat(path, &info) == 0 && (info.st_mode & S_IFMT) == type;
}

// A descriptor of a regular file, or -1. Opened without blocking: the name may be a pipe's.
int OpenRegular(const char *path)
{
    int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return -1;
    struct stat info;
    if (fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode))
        return descriptor;
    close(descriptor);
    return -1;
}

// "*" stands for any run of characters, "?" for one. Only the last "*" met is ever retried: what an
// earlier one could still give up, the last one can take.
bool MatchesGlob(const char *text, const char *glob)
{
    const char *retryText = nullptr;
    const char *retryGlob = nullptr;
    while (*text != '\0') {
        if (*glob == '*') {
            retryGlob = ++glob;
            retryText = text;
        } else if (*glob == '?' || *glob == *text) {
            ++glob;
            ++text;
        } else if (retryGlob != nullptr) {
            glob = retryGlob;
            text = ++retryText;
        } else {
            return false;
        }
    }
    while (*glob == '*')
        ++glob;
    return *glob == '\0';
}

} // namespace

PalFile *PAL_VFS_FOpen(const char *path, const char *mode)
{
    if (path == nullptr || mode == nullptr)
        return nullptr;
    std::string_view wanted(mode);
    if (wanted != "r" && wanted != "rb")
        return nullptr;
    int descriptor = OpenRegular(path);
    if (descriptor < 0)
        return nullptr;
    auto *file = zr::New<PalFile>();
    if (file == nullptr)
        close(descriptor);
    else
        file->descriptor = descriptor;
    return file;
}

uint32_t PAL_VFS_SetBufMode(PalFile *file, uint32_t mode)
{
    constexpr uint32_t kNoBuffer = 1;
    return file != nullptr && mode == kNoBuffer ? ZR_OK : ZR_ERR_INVALID;
}

int32_t PAL_VFS_FSeek(PalFile *file, int64_t offset, int32_t whence)
{
    return file != nullptr && lseek(file->descriptor, offset, whence) >= 0 ? 0 : -1;
}

int64_t PAL_VFS_FTell(PalFile *file)
{
    return file != nullptr ? lseek(file->descriptor, 0, SEEK_CUR) : -1;
}

size_t PAL_VFS_FRead(void *buffer, size_t size, size_t count, PalFile *file)
{
    size_t wanted;
    if (buffer == nullptr || file == nullptr || size == 0 ||
        __builtin_mul_overflow(size, count, &wanted))
        return 0;
    size_t done = 0;
    while (done < wanted) {
        ssize_t got = read(file->descriptor, static_cast<char *>(buffer) + done, wanted - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<size_t>(got);
    }
    return done / size;
}

void PAL_VFS_FClose(PalFile *file)
{
    if (file == nullptr)
        return;
    close(file->descriptor);
    zr::Free(file);
}

PalFind *PAL_VFS_FindFirst(const char *pattern, char *pathOut, size_t pathSize)
{
    if (pattern == nullptr || pathOut == nullptr)
        return nullptr;
    std::string_view whole(pattern);
    size_t slash = whole.rfind('/');
    size_t directoryLength = slash == std::string_view::npos ? 0 : slash + 1;
    zr::Owned<PalFind, PAL_VFS_FindClose> find(zr::NewWithTail<PalFind>(whole.size() + 2));
    errno = find ? 0 : ENOMEM;
    if (!find)
        return nullptr;
    char *directory = reinterpret_cast<char *>(find.get() + 1);
    char *glob = directory + directoryLength + 1;
    std::memcpy(directory, pattern, directoryLength);
    std::memcpy(glob, pattern + directoryLength, whole.size() - directoryLength);
    find->directory = directory;
    find->glob = glob;
    find->dir = opendir(directoryLength == 0 ? "." : directory);
    if (find->dir == nullptr || PAL_VFS_FindNext(find.get(), pathOut, pathSize) != ZR_OK)
        return nullptr;
    return find.release();
}

uint32_t PAL_VFS_FindNext(PalFind *find, char *pathOut, size_t pathSize)
{
    if (find == nullptr || pathOut == nullptr)
        return ZR_ERR_NOT_FOUND;
    while (const dirent *entry = readdir(find->dir)) {
        std::string_view name(entry->d_name);
        if (name == "." || name == ".." || !MatchesGlob(entry->d_name, find->glob))
            continue;
        if (sprintf_s(pathOut, pathSize, "%s%s", find->directory, entry->d_name) >= 0)
            return ZR_OK;
    }
    return ZR_ERR_NOT_FOUND;
}

void PAL_VFS_FindClose(PalFind *find)
{
    if (find == nullptr)
        return;
    if (find->dir != nullptr)
        closedir(find->dir);
    zr::Free(find);
}

uint32_t PAL_VFS_IsFileExist(const char *path)
{
    return IsOfType(path, S_IFREG) ? 1 : 0;
}

uint32_t PAL_VFS_IsDirExist(const char *path)
{
    return IsOfType(path, S_IFDIR) ? 1 : 0;
}

// Held in 32 bits without a sign, they last until 2106.
uint32_t PAL_SystimeGet(void)
{
    static_assert(sizeof(std::time_t) == 8, "the clock must not end in 2038");
    return static_cast<uint32_t>(std::time(nullptr));
}
