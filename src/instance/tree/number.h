// SPDX-License-Identifier: Apache-2.0
// Values that are numbers, and the ranges of numbers and lengths (RFC 7950, sections 9.2 to 9.4).
#pragma once

#include "instance/tree/value.h"

namespace zr::data {

using Canonical = std::pmr::string;

// What is wrong with a text; null: nothing. A fault that a constraint finds comes with what the
// schema says of it.
struct ValueFault {
    ValueFault() = default;
    ValueFault(const char *what, const Refusal *said = nullptr) : text(what), refusal(said) {}

    const char *text = nullptr;
    const Refusal *refusal = nullptr;
};

// Holds a number, of a signed type as two's complement, against every range of a type, or a length
// against every length; `fault` is what to say of one that is out of them.
ValueFault CheckRanges(const Type &type, uint64_t number, bool isSigned, const char *fault);

// They append the canonical form, and return what is wrong with the text.
ValueFault ReadInteger(const ValueScope &scope, const Type &type, std::string_view text,
                       Canonical &out);
ValueFault ReadDecimal(const ValueScope &scope, const Type &type, std::string_view text,
                       Canonical &out);

} // namespace zr::data
