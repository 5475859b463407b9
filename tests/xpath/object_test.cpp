// SPDX-License-Identifier: Apache-2.0
#include "xpath/object.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "foundation/text.h"
#include "platform/memory.h"
#include "support/alloc.h"
#include "xpath/data_tree.h"

namespace {

ZrXpathObject Boolean(uint32_t value)
{
    return {ZR_XPATH_OBJ_BOOLEAN, {.boolean = value}};
}

ZrXpathObject String(const char *text)
{
    return {ZR_XPATH_OBJ_STRING, {.string = ZR_UTL_StrDup(text)}};
}

ZrXpathObject Node(xmlNode *node)
{
    return {ZR_XPATH_OBJ_NODE, {.node = node}};
}

ZrXpathObject Number(double value)
{
    return {ZR_XPATH_OBJ_NUMBER, {.number = value}};
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::string AsString(ZrXpathObject object)
{
    EXPECT_EQ(ZR_XPATH_FuncStringInner(&object), ZR_OK);
    EXPECT_EQ(object.kind, ZR_XPATH_OBJ_STRING);
    std::string text = object.value.string;
    zr::Free(object.value.string);
    return text;
}

double AsNumber(ZrXpathObject object)
{
    EXPECT_EQ(ZR_XPATH_FuncNumberInner(&object), ZR_OK);
    EXPECT_EQ(object.kind, ZR_XPATH_OBJ_NUMBER);
    return object.value.number;
}

uint32_t AsBoolean(ZrXpathObject object)
{
    EXPECT_EQ(ZR_XPATH_FuncBooleanInner(&object), ZR_OK);
    EXPECT_EQ(object.kind, ZR_XPATH_OBJ_BOOLEAN);
    return object.value.boolean;
}

TEST(Object, HoldsANumberInEightBytes)
{
    EXPECT_EQ(sizeof(ZrXpathValue), sizeof(double));
}

TEST(FreeObject, FreesTheStringToo)
{
    zrtest::AllocGuard guard;
    auto *object = zr::New<ZrXpathObject>();
    *object = String("text");
    EXPECT_EQ(guard.LiveBlocks(), 2);
    ZR_XPATH_FreeObject(object);
    EXPECT_EQ(guard.LiveBlocks(), 0);
    ZR_XPATH_FreeObject(nullptr);
}

TEST(ToString, WritesBooleansAsWords)
{
    EXPECT_EQ(AsString(Boolean(1)), "true");
    EXPECT_EQ(AsString(Boolean(0)), "false");
}

TEST(ToString, LeavesAStringAsItIs)
{
    ZrXpathObject object = String("x");
    char *text = object.value.string;
    EXPECT_EQ(ZR_XPATH_FuncStringInner(&object), ZR_OK);
    EXPECT_EQ(object.value.string, text);
    zr::Free(text);
}

TEST(ToString, GivesTheValueTextOfANode)
{
    zrtest::DataTree tree("<r><a> on </a><b/><c><d>x</d></c></r>");
    EXPECT_EQ(AsString(Node(tree.Find("a"))), " on ");
    EXPECT_EQ(AsString(Node(tree.Find("b"))), "");
    EXPECT_EQ(AsString(Node(tree.Find("c"))), "");
    EXPECT_EQ(AsString(Node(nullptr)), "");
    EXPECT_EQ(AsString(Node(tree.Root())), "");
}

TEST(ToString, GivesAnEmptyStringForANodeWithoutSchemaNode)
{
    zrtest::DataTree tree("<r><a>on</a></r>");
    tree.Find("a")->_private = nullptr;
    EXPECT_EQ(AsString(Node(tree.Find("a"))), "");
}

TEST(ToString, TakesNoSchemaNodeFromWhatIsNoElement)
{
    zrtest::DataTree tree("<r><a>on</a></r>");
    xmlNode *text = tree.Find("a")->children;
    text->_private = text; // the application's
    EXPECT_EQ(AsString(Node(text)), "");
}

TEST(ToString, ChangesNothingButTheKindOfANumber)
{
    ZrXpathObject object = Number(1.5);
    EXPECT_EQ(ZR_XPATH_FuncStringInner(&object), ZR_OK);
    EXPECT_EQ(object.kind, ZR_XPATH_OBJ_STRING);
    EXPECT_EQ(object.value.number, 1.5);
}

TEST(ToString, LeavesTheObjectAloneWhenMemoryRunsOut)
{
    zrtest::DataTree tree("<r><a>on</a><b/></r>");
    for (ZrXpathObject object :
         {Boolean(1), Node(tree.Find("a")), Node(tree.Find("b")), Node(nullptr)}) {
        zrtest::AllocGuard guard;
        guard.FailAt(0, true);
        uint32_t kind = object.kind;
        EXPECT_EQ(ZR_XPATH_FuncStringInner(&object), ZR_ERR_NO_MEMORY);
        EXPECT_EQ(object.kind, kind);
        EXPECT_EQ(guard.LiveBlocks(), 0);
    }
}

TEST(ToNumber, TakesBooleansAsOneAndZero)
{
    EXPECT_EQ(AsNumber(Boolean(1)), 1.0);
    EXPECT_EQ(AsNumber(Boolean(0)), 0.0);
}

TEST(ToNumber, ReadsAStringAndFreesIt)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(AsNumber(String("12.5")), 12.5);
    EXPECT_EQ(AsNumber(String(" -3 ")), -3.0);
    EXPECT_TRUE(std::isnan(AsNumber(String(""))));
    EXPECT_TRUE(std::isnan(AsNumber(String("abc"))));
    EXPECT_TRUE(std::isnan(AsNumber(String("1x"))));
    EXPECT_TRUE(std::isnan(AsNumber(String("1e5"))));
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ToNumber, ReadsTheRawTextOfANode)
{
    zrtest::DataTree tree("<r><a>7</a><b>x</b><c/></r>");
    tree.Find("a")->_private = nullptr; // the raw text needs no schema node
    EXPECT_EQ(AsNumber(Node(tree.Find("a"))), 7.0);
    EXPECT_TRUE(std::isnan(AsNumber(Node(tree.Find("b")))));
}

TEST(ToNumber, IsZeroForAMissingNodeAndForOneWithoutContent)
{
    zrtest::DataTree tree("<r><c/></r>");
    EXPECT_EQ(AsNumber(Node(nullptr)), 0.0);
    EXPECT_EQ(AsNumber(Node(tree.Find("c"))), 0.0);
}

TEST(ToNumber, LeavesANumberAsItIs)
{
    EXPECT_EQ(AsNumber(Number(2.5)), 2.5);
}

TEST(ToBoolean, LeavesABooleanAsItIs)
{
    EXPECT_EQ(AsBoolean(Boolean(1)), 1u);
    EXPECT_EQ(AsBoolean(Boolean(0)), 0u);
}

TEST(ToBoolean, TakesEveryStringButTheEmptyOneAsTrueAndFreesIt)
{
    zrtest::AllocGuard guard;
    EXPECT_EQ(AsBoolean(String("")), 0u);
    EXPECT_EQ(AsBoolean(String("false")), 1u);
    EXPECT_EQ(AsBoolean({ZR_XPATH_OBJ_STRING, {.string = nullptr}}), 0u);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(ToBoolean, TellsWhetherThereIsANode)
{
    zrtest::DataTree tree("<r/>");
    EXPECT_EQ(AsBoolean(Node(tree.Top())), 1u);
    EXPECT_EQ(AsBoolean(Node(nullptr)), 0u);
}

TEST(ToBoolean, TakesNanAndWhatIsNearerToZeroThanTheEpsilonAsFalse)
{
    EXPECT_EQ(AsBoolean(Number(0.0)), 0u);
    EXPECT_EQ(AsBoolean(Number(kNan)), 0u);
    EXPECT_EQ(AsBoolean(Number(0x1p-53)), 0u);
    EXPECT_EQ(AsBoolean(Number(-0x1p-53)), 0u);
    EXPECT_EQ(AsBoolean(Number(0x1p-52)), 1u);
    EXPECT_EQ(AsBoolean(Number(-0x1p-52)), 1u);
    EXPECT_EQ(AsBoolean(Number(-5)), 1u);
    EXPECT_EQ(AsBoolean(Number(std::numeric_limits<double>::infinity())), 1u);
}

TEST(Conversions, RefuseNullAndUnknownKinds)
{
    ZrXpathObject object{4, {}};
    for (auto convert :
         {ZR_XPATH_FuncStringInner, ZR_XPATH_FuncNumberInner, ZR_XPATH_FuncBooleanInner}) {
        EXPECT_EQ(convert(nullptr), ZR_ERR_INVALID);
        EXPECT_EQ(convert(&object), ZR_ERR_INVALID);
    }
}

} // namespace
