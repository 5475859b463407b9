// SPDX-License-Identifier: Apache-2.0
#include "types/type_notes.h"

#include <zrschema/module.h>
#include <zrschema/type.h>

#include "support/alloc.h"
#include "types/leaf.h"

namespace {

using namespace zrtest::yin;
using zrtest::Leaf;

std::string OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

// "MESSAGE, APP-TAG".
std::string Said(const ZrtRealType *type, uint32_t restriction, uint32_t index = 0)
{
    return OrDash(ZR_TYPE_GetErrorMessage(type, restriction, index)) + ", " +
           OrDash(ZR_TYPE_GetErrorAppTag(type, restriction, index));
}

const std::string kName = Type(
    "string", Length("1..8", ErrorMessage("Long.") + ErrorAppTag("long")) + Pattern("a.*") +
                  Pattern("[a-z]*", ErrorAppTag("case")) + Pattern(".*z", ErrorMessage("No z.")));

TEST(ErrorOfARestriction, IsWhatTheRestrictionSays)
{
    Leaf leaf(kName, "", ZR_CTX_STANDARD);
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_LENGTH), "Long., long");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_RANGE), "-, -");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 0), "-, -");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 1), "-, case");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 2), "No z., -");
    Leaf number(Type("int8", Range("1", ErrorAppTag("one"))), "", ZR_CTX_STANDARD);
    EXPECT_EQ(Said(number.type(), ZR_RESTRICTION_RANGE), "-, one");
    EXPECT_EQ(Said(number.type(), ZR_RESTRICTION_LENGTH), "-, -");
}

TEST(ErrorOfARestriction, IsNullForARestrictionThatIsNotThere)
{
    Leaf leaf(kName, "", ZR_CTX_STANDARD);
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_LENGTH, 1), "-, -");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 3), "-, -");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 65537), "-, -");
    EXPECT_EQ(Said(leaf.type(), 3), "-, -");
    EXPECT_EQ(Said(nullptr, ZR_RESTRICTION_LENGTH), "-, -");
}

TEST(ErrorOfARestriction, IsNotKeptWithoutTheStandard)
{
    Leaf leaf(kName);
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_LENGTH), "-, -");
    EXPECT_EQ(Said(leaf.type(), ZR_RESTRICTION_PATTERN, 1), "-, -");
    EXPECT_EQ(leaf.type()->flags & ZRT_TYPE_HAS_NOTES, 0);
}

TEST(Notes, StandInNoSlotThatCounts)
{
    Leaf leaf(kName, "", ZR_CTX_STANDARD);
    ASSERT_EQ(leaf.type()->consCount, 2);
    EXPECT_EQ(leaf.type()->constraints[0].kind, uint32_t{ZRT_CONS_LENGTH});
    EXPECT_EQ(leaf.type()->constraints[1].kind, uint32_t{ZRT_CONS_PATTERN});
    ASSERT_NE(zr::NotesOf(leaf.type()), nullptr);
    EXPECT_EQ(zr::NotesOf(leaf.type())->count, 3);
    EXPECT_EQ(leaf.Check("abz"), ZR_OK);
    EXPECT_EQ(leaf.Check("abc"), ZR_ERR_VALUE_PATTERN);
}

TEST(Notes, AreCopiedWithTheTypeWhicheverAllocationFails)
{
    Leaf leaf(kName, "", ZR_CTX_STANDARD);
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrtRealType copy = {};
        uint32_t status = memory.Run(
            [&] { return ZRT_TYPE_CopyZrtRealTypeInner(leaf.context(), &copy, leaf.type()); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        if (status == ZR_OK) {
            EXPECT_EQ(Said(&copy, ZR_RESTRICTION_LENGTH), "Long., long");
            EXPECT_EQ(Said(&copy, ZR_RESTRICTION_PATTERN, 2), "No z., -");
            EXPECT_NE(zr::NotesOf(&copy), zr::NotesOf(leaf.type()));
        } else {
            EXPECT_EQ(copy.constraints, nullptr);
            EXPECT_EQ(copy.flags, 0);
        }
        ZRT_TYPE_DestroyZrtRealTypeInner(leaf.context(), &copy);
    });
}

// What the names of an enumeration depend on, as "MODULE:FEATURE " each.
std::string Features(const ZrtRealType *type, uint32_t index)
{
    std::string text;
    auto append = [](const char *module, const char *feature, void *out) {
        *static_cast<std::string *>(out) += std::string(module) + ":" + feature + " ";
        return 0u;
    };
    EXPECT_EQ(ZR_TYPE_ScanNameIfFeatures(type, index, append, &text), ZR_OK);
    return text;
}

std::string IfFeature(const std::string &name)
{
    return Statement("if-feature", "name", name);
}

const std::string kFeatures = Statement("feature", "name", "f") + Statement("feature", "name", "g");
const std::string kNames =
    Type("enumeration", Statement("enum", "name", "a") +
                            Statement("enum", "name", "b", IfFeature("f") + IfFeature("m:g")) +
                            Statement("enum", "name", "c", IfFeature("g")));

TEST(FeaturesOfAName, AreThoseOfTheEnumOrBit)
{
    Leaf leaf(kNames, kFeatures, ZR_CTX_STANDARD);
    EXPECT_EQ(Features(leaf.type(), 0), "");
    EXPECT_EQ(Features(leaf.type(), 1), "m:f m:g ");
    EXPECT_EQ(Features(leaf.type(), 2), "m:g ");
    EXPECT_EQ(Features(leaf.type(), 3), "");
    Leaf bits(Type("bits", Statement("bit", "name", "x", IfFeature("f"))), kFeatures,
              ZR_CTX_STANDARD);
    EXPECT_EQ(Features(bits.type(), 0), "m:f ");
    auto stop = [](const char *, const char *, void *) { return 7u; };
    EXPECT_EQ(ZR_TYPE_ScanNameIfFeatures(leaf.type(), 1, stop, nullptr), 7u);
    EXPECT_EQ(ZR_TYPE_ScanNameIfFeatures(nullptr, 1, stop, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_TYPE_ScanNameIfFeatures(leaf.type(), 1, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST(FeaturesOfAName, AllHaveToBeOn)
{
    Leaf leaf(kNames, kFeatures, ZR_CTX_STANDARD);
    ZrCtx *ctx = leaf.context();
    ZrMod *module = ZR_CTX_GetModuleByModName(ctx, "m");
    auto enabled = [&](uint32_t index) { return ZR_TYPE_IsNameEnabled(leaf.type(), ctx, index); };
    EXPECT_EQ(enabled(0), 1u);
    EXPECT_EQ(enabled(1), 0u);
    ZR_MOD_EnableFeature(module, "g");
    EXPECT_EQ(enabled(1), 0u);
    EXPECT_EQ(enabled(2), 1u);
    ZR_MOD_EnableFeature(module, "f");
    EXPECT_EQ(enabled(1), 1u);
    EXPECT_EQ(enabled(3), 0u) << "there is no fourth";
    EXPECT_EQ(ZR_TYPE_IsNameEnabled(leaf.type(), nullptr, 0), 0u);
    EXPECT_EQ(ZR_TYPE_IsNameEnabled(nullptr, ctx, 0), 0u);
    EXPECT_EQ(leaf.Check("b"), ZR_OK);
}

TEST(FeaturesOfAName, AreNotKeptWithoutTheStandard)
{
    Leaf leaf(kNames, kFeatures);
    EXPECT_EQ(Features(leaf.type(), 1), "");
    EXPECT_EQ(ZR_TYPE_IsNameEnabled(leaf.type(), leaf.context(), 1), 1u);
    EXPECT_EQ(zr::NotesOf(leaf.type()), nullptr);
}

} // namespace
