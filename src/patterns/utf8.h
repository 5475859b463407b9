// SPDX-License-Identifier: Apache-2.0
// UTF-8 (RFC 3629), without surrogates and overlong forms.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zr::patterns {

constexpr char32_t kNoCode = UINT32_MAX;

// The first character of a text that is not empty, and its bytes; kNoCode where none starts.
char32_t Decode(std::string_view text, size_t &lengthOut);

void Append(std::string &text, char32_t code);

// Whether a text is UTF-8 and has no other characters than XML 1.0 does (production 2).
bool IsXmlText(std::string_view text);

} // namespace zr::patterns
