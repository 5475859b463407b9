// SPDX-License-Identifier: Apache-2.0
#include "print/line.h"

#include <cstring>

namespace zr {

uint32_t FlushPrint(ZrsPrintCtx *print)
{
    uint32_t status = print->callback(print->buffer, print->usedLength, print->userData);
    print->usedLength = 0;
    print->buffer[0] = '\0';
    return status == 0 ? ZR_OK : ZR_ERR_INVALID;
}

// Room for `length` characters and the NUL behind them, or null.
char *LineWriter::Room(size_t length)
{
    if (failed_ || length >= print_->bufferSize - print_->usedLength) {
        failed_ = true;
        return nullptr;
    }
    char *room = print_->buffer + print_->usedLength;
    print_->usedLength += static_cast<uint32_t>(length);
    room[length] = '\0';
    return room;
}

LineWriter &LineWriter::Put(std::string_view text)
{
    if (char *room = Room(text.size()); room != nullptr && !text.empty())
        std::memcpy(room, text.data(), text.size());
    return *this;
}

LineWriter &LineWriter::Put(const char *text)
{
    if (text != nullptr)
        return Put(std::string_view(text));
    failed_ = true;
    return *this;
}

LineWriter &LineWriter::Blanks(uint32_t count)
{
    if (char *room = Room(count); room != nullptr)
        std::memset(room, ' ', count);
    return *this;
}

uint32_t LineWriter::Finish()
{
    Put(std::string_view("\n"));
    if (!failed_)
        return ZR_OK;
    print_->usedLength = start_;
    print_->buffer[start_] = '\0';
    return ZR_ERR_INVALID;
}

} // namespace zr

uint32_t ZRS_NODE_PrintAllocBuffer(ZrsPrintCtx *print)
{
    if (print->usedLength < ZRS_PRINT_FLUSH_LENGTH)
        return ZR_OK;
    return zr::FlushPrint(print);
}
