#include "statuses.h"

#include <zrschema/types.h>

namespace tool {

namespace {

struct Name {
    uint32_t status;
    const char *name;
};

// clang-format off
constexpr Name kStatuses[] = {
    {ZR_OK,                 "ZR_OK"},
    {ZR_ERR_FAILED,         "ZR_ERR_FAILED"},
    {ZR_ERR_NOT_FOUND,      "ZR_ERR_NOT_FOUND"},
    {ZR_ERR_NO_MEMORY,      "ZR_ERR_NO_MEMORY"},
    {ZR_ERR_REGISTERED,     "ZR_ERR_REGISTERED"},
    {ZR_ERR_BAD_DIR,        "ZR_ERR_BAD_DIR"},
    {ZR_ERR_INVALID,        "ZR_ERR_INVALID"},
    {ZR_ERR_LOCK,           "ZR_ERR_LOCK"},
    {ZR_ERR_COPY,           "ZR_ERR_COPY"},
    {ZR_ERR_OVERFLOW,       "ZR_ERR_OVERFLOW"},
    {ZR_ERR_VALUE_NO_BODY,  "ZR_ERR_VALUE_NO_BODY"},
    {ZR_ERR_VALUE_DERIVED,  "ZR_ERR_VALUE_DERIVED"},
    {ZR_ERR_VALUE_IDENTITY, "ZR_ERR_VALUE_IDENTITY"},
    {ZR_ERR_VALUE_BITS,     "ZR_ERR_VALUE_BITS"},
    {ZR_ERR_VALUE_ENUM,     "ZR_ERR_VALUE_ENUM"},
    {ZR_ERR_VALUE_LENGTH,   "ZR_ERR_VALUE_LENGTH"},
    {ZR_ERR_VALUE_LEAFREF,  "ZR_ERR_VALUE_LEAFREF"},
    {ZR_ERR_VALUE_PATTERN,  "ZR_ERR_VALUE_PATTERN"},
    {ZR_ERR_VALUE_RANGE,    "ZR_ERR_VALUE_RANGE"},
    {ZR_ERR_VALUE_UNION,    "ZR_ERR_VALUE_UNION"},
    {ZR_ERR_VALUE_BOOLEAN,  "ZR_ERR_VALUE_BOOLEAN"},
    {ZR_ERR_VALUE_BINARY,   "ZR_ERR_VALUE_BINARY"},
    {ZR_ERR_VALUE_EMPTY,    "ZR_ERR_VALUE_EMPTY"},
};
// clang-format on

} // namespace

std::string StatusName(uint32_t status)
{
    for (const Name &name : kStatuses)
        if (name.status == status)
            return name.name;
    return "unknown status " + std::to_string(status);
}

} // namespace tool
