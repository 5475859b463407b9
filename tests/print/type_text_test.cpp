#include "print/nodes.h"

#include "model/module_records.h"
#include "print/print_support.h"

namespace {

using zrtest::TestContext;
using zrtest::Tree;
using zrtest::TreeOfBody;

struct TypeCase {
    const char *type; // the YIN
    const char *text;
};

const TypeCase kTypes[] = {
    {R"(<type name="binary"/>)", "binary"},
    {R"(<type name="bits"><bit name="a"/></type>)", "bits"},
    {R"(<type name="boolean"/>)", "boolean"},
    {R"(<type name="decimal64"><fraction-digits value="2"/></type>)", "decimal64"},
    {R"(<type name="empty"/>)", "empty"},
    {R"(<type name="enumeration"><enum name="a"/></type>)", "enumeration"},
    {R"(<type name="identityref"><base name="i"/></type>)", "identityref"},
    {R"(<type name="instance-identifier"/>)", "instance-identifier"},
    {R"(<type name="int8"/>)", "int8"},
    {R"(<type name="int16"/>)", "int16"},
    {R"(<type name="int32"/>)", "int32"},
    {R"(<type name="int64"/>)", "int64"},
    {R"(<type name="leafref"><path value="/m:a"/></type>)", "-> /m:a"},
    {R"(<type name="leafref"><path value="../a"/></type>)", "-> ../m:a"},
    {R"(<type name="string"/>)", "string"},
    {R"(<type name="uint8"/>)", "uint8"},
    {R"(<type name="uint16"/>)", "uint16"},
    {R"(<type name="uint32"/>)", "uint32"},
    {R"(<type name="uint64"/>)", "uint64"},
    {R"(<type name="union"><type name="int8"/></type>)", "union"},
    {R"(<type name="own"/>)", "own"},
    {R"(<type name="m:own"/>)", "own"},
    {R"(<type name="ref"/>)", "ref"},
    {R"(<type name="far:their"/>)", "far:their"},
};

TEST(PrintType, EveryTypeHasItsText)
{
    for (const TypeCase &row : kTypes) {
        SCOPED_TRACE(row.type);
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("far", R"(<typedef name="their"><type name="int8"/></typedef>)"),
                  ZR_OK);
        ASSERT_EQ(ctx.LoadBody("m", std::string(R"(
          <import module="far"><prefix value="far"/></import>
          <identity name="i"/>
          <typedef name="own"><type name="int8"/></typedef>
          <typedef name="ref"><type name="leafref"><path value="/m:a"/></type></typedef>
          <leaf name="a">)") + row.type +
                                        "</leaf>"),
                  ZR_OK)
            << ::testing::PrintToString(ctx.Messages());
        EXPECT_EQ(Tree(ctx.Module("m")), std::string("module: m\n+--rw a?   ") + row.text + "\n");
    }
}

std::string TextOf(const ZrtRealType &type)
{
    char name[] = "m";
    ZrMod module = {};
    module.name = name;
    char buffer[64] = "";
    ZrsPrintCtx print = {};
    print.buffer = buffer;
    print.bufferSize = sizeof(buffer);
    zr::LineWriter line(&print);
    zr::PutType(line, &module, &type);
    EXPECT_EQ(line.Finish(), ZR_OK);
    return buffer;
}

TEST(PrintType, WhatHasNoTextIsUnknown)
{
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_DERIVED, 0, 0, nullptr}), "unknown\n");
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_NONE, 0, 0, nullptr}), "unknown\n");
}

TEST(PrintType, ALeafrefWithoutPathIsNamedByItsKeyword)
{
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_LEAFREF, 0, 0, nullptr}), "leafref\n");
}

} // namespace
