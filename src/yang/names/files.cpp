// SPDX-License-Identifier: Apache-2.0
#include "yang/names/files.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace zr::yang {

namespace {

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    ~File()
    {
        if (descriptor_ >= 0)
            close(descriptor_);
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    int get() const { return descriptor_; }

    // Closes it now, when that it succeeds matters.
    int Close()
    {
        int descriptor = descriptor_;
        descriptor_ = -1;
        return close(descriptor) == 0 ? 0 : errno;
    }

private:
    int descriptor_;
};

int ReadAll(int descriptor, char *buffer, size_t size, size_t &lengthOut)
{
    size_t length = 0;
    while (length < size) {
        ssize_t count = read(descriptor, buffer + length, size - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        if (count == 0)
            break; // the file has become shorter
        length += static_cast<size_t>(count);
    }
    lengthOut = length;
    return 0;
}

int WriteAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        text.remove_prefix(static_cast<size_t>(count));
    }
    return 0;
}

} // namespace

int ReadFile(const char *path, Arena &arena, std::string_view &textOut)
{
    File file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)); // a pipe must not hold us up
    if (file.get() < 0)
        return errno;
    struct stat status;
    if (fstat(file.get(), &status) != 0)
        return errno;
    if (!S_ISREG(status.st_mode))
        return EINVAL;
    if (static_cast<uint64_t>(status.st_size) > INT32_MAX)
        return EFBIG;
    auto size = static_cast<size_t>(status.st_size);
    char *buffer = size > 0 ? static_cast<char *>(arena.resource()->allocate(size, 1)) : nullptr;
    size_t length = 0;
    int error = ReadAll(file.get(), buffer, size, length);
    textOut = {buffer, length};
    return error;
}

int ListDirectory(const char *path, const std::function<void(const char *)> &func)
{
    std::unique_ptr<DIR, int (*)(DIR *)> directory(opendir(path), closedir);
    if (directory == nullptr)
        return errno;
    errno = 0;
    while (const dirent *entry = readdir(directory.get())) {
        func(entry->d_name);
        errno = 0;
    }
    return errno;
}

int WriteFile(const char *path, std::string_view text, std::pmr::memory_resource *memory)
{
    std::pmr::string temporary(path, memory);
    temporary += ".tmp";
    File file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.get() < 0)
        return errno;
    int error = WriteAll(file.get(), text);
    int closed = file.Close();
    if (error == 0)
        error = closed;
    if (error == 0 && rename(temporary.c_str(), path) != 0)
        error = errno;
    if (error != 0)
        unlink(temporary.c_str());
    return error;
}

} // namespace zr::yang
