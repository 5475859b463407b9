// SPDX-License-Identifier: Apache-2.0
// What nlohmann-json is given to read a text: strings from the caller's memory, and an iterator
// that counts lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory_resource>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace zr::data {

// nlohmann-json makes strings without asking anybody for an allocator: theirs finds the memory of
// the parse that its thread is in.
inline thread_local std::pmr::memory_resource *t_memory = nullptr;

class MemoryScope {
public:
    explicit MemoryScope(std::pmr::memory_resource *memory) : outer_(t_memory)
    {
        t_memory = memory;
    }
    ~MemoryScope() { t_memory = outer_; }
    MemoryScope(const MemoryScope &) = delete;
    MemoryScope &operator=(const MemoryScope &) = delete;

private:
    std::pmr::memory_resource *outer_;
};

template <typename T> struct ScopeAllocator {
    using value_type = T;

    ScopeAllocator() = default;
    template <typename U> ScopeAllocator(const ScopeAllocator<U> &) noexcept {}
    T *allocate(size_t count)
    {
        return static_cast<T *>(t_memory->allocate(count * sizeof(T), alignof(T)));
    }
    void deallocate(T *block, size_t count)
    {
        t_memory->deallocate(block, count * sizeof(T), alignof(T));
    }
    bool operator==(const ScopeAllocator &) const = default;
};

using JsonString = std::basic_string<char, std::char_traits<char>, ScopeAllocator<char>>;
using Json = nlohmann::basic_json<std::map, std::vector, JsonString>;

// The text as the parser reads it, one character after another. The parser reads one character too
// far behind a number: the line is that of the last character that was read, so that a line feed
// there does not count yet.
class LineIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char *;
    using reference = const char &;

    LineIterator(const char *at, uint32_t *line) : at_(at), line_(line) {}

    reference operator*() const { return *at_; }
    LineIterator &operator++()
    {
        *line_ += isBehindFeed_;
        isBehindFeed_ = *at_ == '\n';
        ++at_;
        return *this;
    }
    bool operator==(const LineIterator &other) const { return at_ == other.at_; }
    bool operator!=(const LineIterator &other) const { return at_ != other.at_; }

private:
    const char *at_;
    uint32_t *line_;
    bool isBehindFeed_ = false;
};

} // namespace zr::data
