// SPDX-License-Identifier: Apache-2.0
// YANG sources: read, checked, expanded and written.
//
// Input: a byte for the allocation that fails, 0 for none, a byte of options, and then sources with
// a line "%%" between them. The first is "m"; the others, which it may import or include, are "a",
// "b" and so on; those that begin with "<" are prepared modules.
#include "support.h"

#include <zryang/zryang.h>

namespace {

using namespace zrfuzz;

Goal g_prepared("a module is prepared");
Goal g_faulty("a module has errors");
Goal g_warned("a module has warnings alone");
Goal g_imported("a prepared module imports another one");
Goal g_usedPrepared("a prepared import is used");
Goal g_noMemory("memory runs out");
Goal g_limited("a limit is reached");

constexpr std::string_view kSeparator = "\n%%\n";
constexpr uint64_t kNodeLimit = 5000;

struct Heard {
    size_t errors = 0, warnings = 0;
    bool isLimit = false;
};

void Hear(const ZrYangReport *report, void *user)
{
    auto &heard = *static_cast<Heard *>(user);
    ++(report->severity == ZR_YANG_ERROR ? heard.errors : heard.warnings);
    heard.isLimit |= report->code == ZR_YANG_CODE_LIMIT;
    Check(report->message[0] != '\0', "a report says something");
    Check((report->line == 0) == (report->column == 0), "a line has a column");
    Check(report->line == 0 || report->sourceLine != nullptr, "a place in a source has a line");
}

uint32_t AddAll(ZrYang *yang, std::string_view sources, size_t &countOut)
{
    std::string name = "m";
    for (countOut = 0; countOut < 8; ++countOut) {
        size_t end = std::min(sources.find(kSeparator), sources.size());
        if (sources.starts_with('<'))
            name += ".yin";
        uint32_t status = ZR_YANG_AddText(yang, name.c_str(), sources.data(), end);
        if (status != ZR_YANG_OK || end == sources.size())
            return status;
        sources.remove_prefix(end + kSeparator.size());
        name = static_cast<char>('a' + countOut);
    }
    return ZR_YANG_OK;
}

// The status of preparing "m" in a workspace of its own, and the text.
uint32_t Prepare(std::string_view sources, uint8_t options, Memory &memory, std::string &textOut,
                 Heard &heard)
{
    ZrYangMemory hooks = {Memory::Allocate, Memory::Release, &memory};
    ZrYang *yang = ZR_YANG_Create(&hooks);
    if (yang == nullptr)
        return ZR_YANG_ERR_NO_MEMORY;
    ZR_YANG_SetReportFunc(yang, Hear, &heard);
    ZR_YANG_SetOption(yang, ZR_YANG_OPTION_NODE_LIMIT, kNodeLimit);
    ZR_YANG_SetOption(yang, ZR_YANG_OPTION_STRIP, options & 1);
    size_t count = 0;
    uint32_t status = AddAll(yang, sources, count);
    if (status == ZR_YANG_OK && (options & 2) != 0)
        status = ZR_YANG_SetFeature(yang, "*", "*", options & 4);
    char *text = nullptr;
    size_t length = 0;
    if (status == ZR_YANG_OK)
        status = ZR_YANG_PrepareToText(yang, "m", &text, &length);
    Check((text != nullptr) == (status == ZR_YANG_OK), "there is a text when all is well");
    if (text != nullptr)
        textOut.assign(text, length);
    g_usedPrepared.MeetIf(status == ZR_YANG_OK && sources.find("\n%%\n<") != sources.npos &&
                          textOut.find("type name=\"a:") != std::string::npos);
    g_imported.MeetIf(count > 0 && textOut.find("<import") != std::string::npos);
    ZR_YANG_FreeText(yang, text);
    ZR_YANG_Delete(yang);
    return status;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    std::string_view sources(reinterpret_cast<const char *>(data) + 2, size - 2);
    Memory memory;
    memory.failAt = data[0];
    std::string text, again;
    Heard heard;
    uint32_t status = Prepare(sources, data[1], memory, text, heard);
    Check(memory.live == 0, "every block is given back");
    Check(status == ZR_YANG_OK || status == ZR_YANG_ERR_FAULTY || status == ZR_YANG_ERR_NO_MEMORY,
          "the status is a stated one");
    Check(status != ZR_YANG_OK || heard.errors == 0, "what has errors is not prepared");
    if (status == ZR_YANG_OK) {
        Memory more;
        Heard same;
        Check(Prepare(sources, data[1], more, again, same) == status && text == again,
              "the same comes of the same");
    }
    g_prepared.MeetIf(status == ZR_YANG_OK);
    g_faulty.MeetIf(status == ZR_YANG_ERR_FAULTY);
    g_warned.MeetIf(status == ZR_YANG_OK && heard.warnings > 0);
    g_noMemory.MeetIf(status == ZR_YANG_ERR_NO_MEMORY);
    g_limited.MeetIf(heard.isLimit);
    return 0;
}
