#include <gtest/gtest.h>

#include "loader/types/type_fill.h"

namespace {

TEST(BaseTypeName, OfEveryBuiltInTypeGivesItsNumber)
{
    const char *const names[] = {"binary",  "bits",        "boolean",     "decimal64",
                                 "empty",   "enumeration", "identityref", "instance-identifier",
                                 "int8",    "int16",       "int32",       "int64",
                                 "leafref", "string",      "uint8",       "uint16",
                                 "uint32",  "uint64",      "union"};
    uint32_t number = ZRT_TYPE_BINARY;
    for (const char *name : names)
        EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(name), number++) << name;
    EXPECT_EQ(number, uint32_t{ZRT_TYPE_NONE});
}

TEST(BaseTypeName, OfAnythingElseIsDerived)
{
    for (const char *name : {"",
                             "t:int8",
                             "int8x",
                             "int",
                             "uint",
                             "Int8",
                             "INT8",
                             " int8",
                             "int8 ",
                             "int128",
                             "strings",
                             "str",
                             "derived",
                             "my-type",
                             "b",
                             "u",
                             "bit",
                             "boolea",
                             "instance-identifie",
                             "type",
                             "x",
                             "enum",
                             "\xC3\xBC"})
        EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(name), 0u) << name;
    EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(nullptr), 0u);
}

} // namespace
