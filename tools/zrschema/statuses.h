// The names of the library's statuses.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

std::string StatusName(uint32_t status);

} // namespace tool
