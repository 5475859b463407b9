// SPDX-License-Identifier: Apache-2.0
// One text, validated as a request and as a notification, with the promises about both checked.
#pragma once

#include <zrschema/zrschema.h>

#include <cstdint>
#include <string>

namespace zrfuzz {

struct Verdicts {
    std::string request;   // "valid", or the error record with a line for each of its parts
    uint32_t defaults = 0; // roots of what completion added
    bool notification = false;
};

// Validates the text as a request, with an allocation failing, as the caller's tree, and as a
// notification.
Verdicts ValidateInEveryWay(ZrCtx *ctx, const std::string &text);

} // namespace zrfuzz
