// Values that are numbers, and the ranges of numbers and lengths (RFC 7950, sections 9.2 to 9.4).
#pragma once

#include "instance/tree/value.h"

namespace zr::data {

using Canonical = std::pmr::string;

// Whether a number, of a signed type as two's complement, is in every range of a type.
bool IsWithin(const Type &type, uint64_t number, bool isSigned);

// They append the canonical form, and return what is wrong with the text, or null.
const char *ReadInteger(const ValueScope &scope, const Type &type, std::string_view text,
                        Canonical &out);
const char *ReadDecimal(const ValueScope &scope, const Type &type, std::string_view text,
                        Canonical &out);

} // namespace zr::data
