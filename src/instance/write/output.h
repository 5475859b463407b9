// SPDX-License-Identifier: Apache-2.0
// Text on its way to the caller's callback.
#pragma once

#include <zrdata/write.h>

#include <memory_resource>
#include <string>
#include <string_view>

#include "shared/escapes.h"

namespace zr::data {

// What the callback answered when it stopped the writing; thrown.
struct Stopped {
    int answer;
};

class Output {
public:
    Output(ZrDataWriteFunc write, void *user, std::pmr::memory_resource *memory)
        : write_(write), user_(user), buffer_(memory)
    {
        buffer_.reserve(kPiece);
    }

    Output &operator<<(std::string_view text)
    {
        if (text.size() > kPiece - buffer_.size())
            Flush();
        if (text.size() > kPiece)
            Hand(text);
        else
            buffer_ += text;
        return *this;
    }
    Output &operator<<(char c) { return *this << std::string_view(&c, 1); }
    void Flush()
    {
        if (!buffer_.empty())
            Hand(buffer_);
        buffer_.clear();
    }
    // A new line with its indentation; nothing where all stands on one line.
    void BreakLine(uint32_t indent, uint32_t depth);

private:
    static constexpr size_t kPiece = 16 * 1024;

    void Hand(std::string_view text)
    {
        if (int answer = write_(text.data(), text.size(), user_))
            throw Stopped{answer};
    }

    ZrDataWriteFunc write_;
    void *user_;
    std::pmr::string buffer_;
};

// A text with what must be escaped replaced: `escape` gives the replacement of a character, "" for
// one that stands for itself.
template <typename Escape> void WriteEscaped(Output &out, std::string_view text, Escape escape)
{
    PutEscaped(text, escape, [&](std::string_view part) { out << part; });
}

} // namespace zr::data
