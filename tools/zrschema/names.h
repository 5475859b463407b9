// The names of the interface's numbers.
#pragma once

#include <zrschema/zrschema.h>

#include <string>

namespace tool {

std::string BuiltInTypeName(uint32_t baseType);
std::string NodeKindName(uint32_t kind);
std::string ErrorTypeName(uint32_t type);
std::string ErrorSeverityName(uint32_t severity);
std::string ErrorTagName(uint32_t tag);

} // namespace tool
