// The built-in types of YANG (RFC 7950, section 4.2.4).
#pragma once

#include <cstdint>
#include <string_view>

namespace zr::yang {

// In alphabetical order, as their names.
enum class Builtin : uint8_t {
    Binary,
    Bits,
    Boolean,
    Decimal64,
    Empty,
    Enumeration,
    Identityref,
    InstanceIdentifier,
    Int16,
    Int32,
    Int64,
    Int8,
    Leafref,
    String,
    Uint16,
    Uint32,
    Uint64,
    Uint8,
    Union,
    None // a derived type
};

Builtin FindBuiltin(std::string_view name);
std::string_view NameOf(Builtin type);

} // namespace zr::yang
