// SPDX-License-Identifier: Apache-2.0
// One YIN text, loaded from memory, read in every way and unloaded.
#include "support.h"

namespace {

using namespace zrfuzz;

Goal g_loaded("a module is loaded");
Goal g_refused("a module is refused, with an error");
Goal g_shortOfMemory("a load runs out of memory");

// The first module name in the text; loading takes the root's.
std::string NameOf(const std::string &text)
{
    size_t at = text.find("name=\"");
    if (at == std::string::npos)
        return "";
    at += 6;
    return text.substr(at, text.find('"', at) - at);
}

// Short texts cannot make a line longer than the printer's buffer, but for entities.
bool MayHoldLongLines(const std::string &text)
{
    return text.size() > 2000 || text.find("<!") != std::string::npos;
}

// An allocation fails somewhere on the way.
uint32_t LoadShortOfMemory(const std::string &text, uint32_t flags)
{
    Context ctx(flags);
    FailAllocation(PickBy(text, 200));
    uint32_t status = ZR_CTX_LoadMemory(ctx, text.c_str());
    FailAllocation(-1);
    Check(IsLoadStatus(status), "loading has a stated status");
    WalkErrors(ctx);
    if (ZrMod *module = ZR_CTX_GetModuleByModName(ctx, NameOf(text).c_str()))
        WalkModule(ctx, module, MayHoldLongLines(text));
    return status;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    std::string text(reinterpret_cast<const char *>(data), size);
    constexpr uint32_t kAllKept =
        ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS | ZR_CTX_KEEP_PATTERNS;
    uint32_t flags = size % 2 != 0 ? kAllKept : 0;
    uint32_t shortOfMemory = LoadShortOfMemory(text, flags);
    Context ctx(flags);
    uint32_t status = ZR_CTX_LoadMemory(ctx, text.c_str());
    g_shortOfMemory.MeetIf(status == ZR_OK && shortOfMemory != ZR_OK);
    Check(status == ZR_OK || status == ZR_ERR_FAILED || status == ZR_ERR_INVALID,
          "loading has a stated status");
    g_loaded.MeetIf(status == ZR_OK);
    g_refused.MeetIf(status == ZR_ERR_FAILED);
    WalkErrors(ctx);
    std::string name = NameOf(text);
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name.c_str());
    if (module == nullptr)
        return 0;
    Check(status == ZR_OK, "a module is there only after it was loaded");
    WalkModule(ctx, module, MayHoldLongLines(text));
    Check(ZR_CTX_LoadMemory(ctx, text.c_str()) == ZR_OK, "a loaded module is left as it is");
    Check(ZR_CTX_GetModuleByModName(ctx, name.c_str()) == module, "and stays where it was");
    ZR_CTX_UnloadModule(ctx, name.c_str());
    Check(ZR_CTX_GetModuleByModName(ctx, name.c_str()) == nullptr, "an unloaded module is gone");
    // What was unloaded can be loaded again.
    Check(ZR_CTX_LoadMemory(ctx, text.c_str()) == ZR_OK, "and comes back");
    return 0;
}
