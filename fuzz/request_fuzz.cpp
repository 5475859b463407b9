// SPDX-License-Identifier: Apache-2.0
// Requests and notifications against schemas, both from the input: what a stranger's module makes
// of a stranger's request.
//
// Input: texts that each follow a line "=== NAME". "schema" is a module in YIN, loaded in the order
// of the input, "request" a text that is validated against those before it, and "patterns" has the
// context keep compiled patterns, wherever it stands.
#include "requests.h"
#include "support.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using namespace zrfuzz;

Goal g_loaded("a schema is loaded");
Goal g_refusedSchema("a schema is refused");
Goal g_valid("a request is valid");
Goal g_completed("a request is completed");
Goal g_notification("a notification is valid");
Goal g_keeping("a request is valid where patterns are kept");
Goal g_badValue("a request has an invalid value");
Goal g_mustFalse("a must of a request is false");
Goal g_whenFalse("a when of a request is false");
Goal g_missing("a request lacks an element");
Goal g_late("a request is invalid once a further schema is loaded");

constexpr size_t kMaxParts = 12;

bool Says(const Verdicts &verdicts, const char *message)
{
    return verdicts.request.find(message) != std::string::npos;
}

void Reached(const Verdicts &verdicts, uint32_t flags)
{
    bool valid = verdicts.request == "valid";
    g_valid.MeetIf(valid);
    g_keeping.MeetIf(valid && flags != 0);
    g_completed.MeetIf(verdicts.defaults != 0);
    g_notification.MeetIf(verdicts.notification);
    g_badValue.MeetIf(Says(verdicts, " has invalid value "));
    g_mustFalse.MeetIf(Says(verdicts, " is not satisfied must condition."));
    g_whenFalse.MeetIf(Says(verdicts, " is not satisfied when condition."));
    g_missing.MeetIf(Says(verdicts, "Missing element: "));
}

class Run {
public:
    Run(ZrCtx *ctx, uint32_t flags) : ctx_(ctx), flags_(flags) {}

    void Load(const std::string &text)
    {
        uint32_t status = ZR_CTX_LoadMemory(ctx_, text.c_str());
        Check(IsLoadStatus(status), "loading has a stated status");
        g_loaded.MeetIf(status == ZR_OK);
        g_refusedSchema.MeetIf(status == ZR_ERR_FAILED);
        WalkErrors(ctx_);
    }

    void Validate(const std::string &text)
    {
        // The compiled patterns that are kept are all that a validation may leave behind.
        std::optional<BlockBalance> balance;
        if ((flags_ & ZR_CTX_KEEP_PATTERNS) == 0)
            balance.emplace("a validation keeps no block");
        Verdicts verdicts = ValidateInEveryWay(ctx_, text);
        Reached(verdicts, flags_);
        bool same = text == last_.text;
        g_late.MeetIf(same && last_.valid && verdicts.request != "valid");
        last_ = {text, verdicts.request == "valid"};
    }

private:
    struct Last {
        std::string text;
        bool valid = false;
    };

    ZrCtx *ctx_;
    uint32_t flags_;
    Last last_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    std::vector<Part> parts = ReadParts({reinterpret_cast<const char *>(data), size});
    parts.resize(std::min(parts.size(), kMaxParts));
    bool keeps = std::any_of(parts.begin(), parts.end(),
                             [](const Part &part) { return part.name == "patterns"; });
    uint32_t flags = keeps ? uint32_t{ZR_CTX_KEEP_PATTERNS} : 0;
    Context ctx(flags);
    Run run(ctx, flags);
    for (Part &part : parts) {
        part.text.resize(std::strlen(part.text.c_str()));
        if (part.name == "schema")
            run.Load(part.text);
        else if (part.name == "request")
            run.Validate(part.text);
    }
    return 0;
}
