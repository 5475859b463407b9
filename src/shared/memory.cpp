// SPDX-License-Identifier: Apache-2.0
#include "shared/memory.h"

namespace zr {

std::string_view Arena::Copy(std::string_view text)
{
    if (text.empty())
        return {};
    char *copy = static_cast<char *>(pool_.allocate(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
}

const char *Arena::CopyText(std::string_view text)
{
    char *copy = static_cast<char *>(pool_.allocate(text.size() + 1, 1));
    if (!text.empty())
        std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

} // namespace zr
