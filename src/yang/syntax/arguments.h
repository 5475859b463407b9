// SPDX-License-Identifier: Apache-2.0
// What arguments must look like, by their forms (RFC 7950, section 14).
#pragma once

#include "yang/base/reports.h"
#include "yang/syntax/statement.h"

namespace zr::yang {

// Reports an argument that is missing, not wanted, or malformed.
void CheckArgument(const Statement &statement, Reports &reports);

// Whether a text is PREFIX:NAME or NAME.
bool IsReference(std::string_view text);
// Whether it is a day as YYYY-MM-DD.
bool IsDate(std::string_view text);

// Reads a decimal number that fills the text; leading zeros are refused, but for zero itself.
bool ReadUnsigned(std::string_view text, uint64_t &value);
bool ReadInteger(std::string_view text, int64_t &value);

// Takes the next word off a text of words between white space; "" at the end.
std::string_view TakeWord(std::string_view &text);
// Takes the next step off a path of steps between slashes; a leading slash is passed over.
std::string_view TakeStep(std::string_view &path);

} // namespace zr::yang
