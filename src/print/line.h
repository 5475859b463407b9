// One line of the tree while it is written into the print buffer.
#pragma once

#include <string_view>

#include "platform/memory.h"
#include "print/printer.h"

namespace zr {

// Hands all the text in the buffer to the callback and starts it again empty; 0 or 22.
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
    uint32_t Finish(); // ends the line; 0 or 22

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

// One printing from the empty buffer to the last piece: 12 without memory for the buffer, 1 when
// `body`, called with the context of a top-level node, or the last callback fails.
template <typename Body> uint32_t RunPrint(ZrPrintFunc callback, void *userData, Body body)
{
    Owned<char> buffer(New<char>(ZRS_PRINT_BUFFER_SIZE));
    if (!buffer)
        return ZR_ERR_NO_MEMORY;
    ZrsPrintCtx print = {};
    print.level = 1;
    print.bufferSize = ZRS_PRINT_BUFFER_SIZE;
    print.buffer = buffer.get();
    print.userData = userData;
    print.callback = callback;
    if (body(&print) != ZR_OK || FlushPrint(&print) != ZR_OK)
        return ZR_ERR_FAILED;
    return ZR_OK;
}

} // namespace zr
