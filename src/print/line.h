// SPDX-License-Identifier: Apache-2.0
// One line of the tree while it is written into the print buffer.
#pragma once

#include <string_view>

#include "print/printer.h"

namespace zr {

// Hands all the text in the buffer to the callback and starts it again empty. ZR_OK, or
// ZR_ERR_INVALID when the callback fails.
uint32_t FlushPrint(ZrsPrintCtx *print);

// Collects the pieces of one line. Once a piece does not fit the rest is dropped, and Finish()
// takes the line back, so that the buffer holds whole lines only.
class LineWriter {
public:
    explicit LineWriter(ZrsPrintCtx *print) : print_(print), start_(print->usedLength) {}
    LineWriter(const LineWriter &) = delete;
    LineWriter &operator=(const LineWriter &) = delete;

    LineWriter &Put(std::string_view text);
    LineWriter &Put(const char *text); // null fails the line
    LineWriter &Blanks(uint32_t count);
    void Fail() { failed_ = true; }
    uint32_t Finish(); // ends the line: ZR_OK, or ZR_ERR_INVALID when it does not fit

private:
    char *Room(size_t length);

    ZrsPrintCtx *print_;
    uint32_t start_;
    bool failed_ = false;
};

// Writes one line with `write`, called with a LineWriter. A line that does not fit behind the text
// in the buffer is written again after that text has been handed over.
template <typename Write> uint32_t PrintLine(ZrsPrintCtx *print, Write write)
{
    for (;;) {
        LineWriter line(print);
        write(line);
        if (line.Finish() == ZR_OK)
            return ZR_OK;
        if (print->usedLength == 0 || FlushPrint(print) != ZR_OK)
            return ZR_ERR_INVALID;
    }
}

} // namespace zr
