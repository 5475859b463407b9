#include "yang/names/builtin.h"

#include <algorithm>
#include <iterator>

namespace zr::yang {

namespace {

constexpr std::string_view kNames[] = {
    "binary",  "bits",        "boolean",     "decimal64",
    "empty",   "enumeration", "identityref", "instance-identifier",
    "int16",   "int32",       "int64",       "int8",
    "leafref", "string",      "uint16",      "uint32",
    "uint64",  "uint8",       "union",
};
static_assert(std::size(kNames) == static_cast<size_t>(Builtin::None));

} // namespace

Builtin FindBuiltin(std::string_view name)
{
    const auto *found = std::lower_bound(std::begin(kNames), std::end(kNames), name);
    if (found == std::end(kNames) || *found != name)
        return Builtin::None;
    return static_cast<Builtin>(found - kNames);
}

std::string_view NameOf(Builtin type)
{
    return type == Builtin::None ? std::string_view("derived") : kNames[static_cast<size_t>(type)];
}

} // namespace zr::yang
