// SPDX-License-Identifier: Apache-2.0
// How the numbers of the interface read when a comparison with their constant fails:
// "ZR_ERR_INVALID (22)" and not "22".
#pragma once

#include <gtest/gtest.h>
#include <zrschema/names.h>

#include <string>

namespace zrtest {

inline const char *NameOf(uint32_t number, ZrStatus)
{
    return ZR_GetStatusName(number);
}
inline const char *NameOf(uint32_t number, ZrXpathStatus)
{
    return ZR_GetStatusName(number);
}
inline const char *NameOf(uint32_t number, ZrNodeKind)
{
    return ZR_GetNodeKindName(number);
}
inline const char *NameOf(uint32_t number, ZrtBuiltInType)
{
    return ZR_GetBuiltInTypeName(number);
}
inline const char *NameOf(uint32_t number, ZrErrorTag)
{
    return ZR_GetErrorTagName(number);
}

template <typename Constant>
concept Named = requires(Constant constant)
{
    NameOf(0, constant);
};

template <Named Constant> std::string WithName(uint32_t number, Constant kind)
{
    return std::string(NameOf(number, kind)) + " (" + std::to_string(number) + ")";
}

} // namespace zrtest

// GoogleTest finds these two beside the constants: the number compared, and the constant.
template <zrtest::Named Constant>
std::string FormatForComparisonFailureMessage(const uint32_t &number, const Constant &kind)
{
    return zrtest::WithName(number, kind);
}
template <zrtest::Named Constant>
std::string FormatForComparisonFailureMessage(const Constant &constant, const uint32_t &)
{
    return zrtest::WithName(constant, constant);
}
