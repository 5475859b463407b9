// SPDX-License-Identifier: Apache-2.0
#include "support/alloc.h"

#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;

constexpr char kAb[] = "<type name=\"bits\"><bit name=\"a\"/><bit name=\"b\"/></type>";

TEST(Bits, AreTakenInAnyOrderButOnlyOnce)
{
    Leaf leaf(kAb);
    EXPECT_EQ(leaf.Check("b a"), ZR_OK);
    EXPECT_EQ(leaf.Check("a a"), ZR_ERR_VALUE_BITS);
    EXPECT_EQ(leaf.Check("a c"), ZR_ERR_VALUE_BITS);
}

TEST(Bits, MayBeNoneAtAll)
{
    EXPECT_EQ(Leaf(kAb).Check(""), ZR_OK);
    EXPECT_EQ(Leaf(kAb).Check(nullptr), ZR_ERR_VALUE_BITS);
}

TEST(Bits, RefuseABlankBeforeTheFirstNameAndTakeBlanksAfterTheLast)
{
    Leaf leaf(kAb);
    EXPECT_EQ(leaf.Check(" a"), ZR_ERR_VALUE_BITS);
    EXPECT_EQ(leaf.Check("a "), ZR_OK);
    EXPECT_EQ(leaf.Check("a b \n"), ZR_OK);
}

TEST(Bits, TakeNamesOf64Characters)
{
    std::string name(64, 'n');
    Leaf leaf("<type name=\"bits\"><bit name=\"" + name + "\"/></type>");
    EXPECT_EQ(leaf.Check(name.c_str()), ZR_OK);
}

TEST(Bits, RefuseANameOf65CharactersEvenWhenThereIsSuchABit)
{
    std::string name(65, 'n');
    Leaf leaf("<type name=\"bits\"><bit name=\"" + name + "\"/></type>");
    EXPECT_EQ(leaf.Check(name.c_str()), ZR_ERR_VALUE_BITS);
}

TEST(Bits, OfATypeWithoutBitsAreOnlyNone)
{
    ZrtConsBit body = {};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataBit(&body, ZR_VALUE_STRING, "", &validation),
              ZR_OK);
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataBit(&body, ZR_VALUE_STRING, "a", &validation),
              ZR_ERR_VALUE_BITS);
}

TEST(Bits, AreRefusedWhenMemoryRunsOut)
{
    Leaf leaf(kAb);
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(leaf.Check("a"), ZR_ERR_VALUE_BITS);
    guard.Stop();
    EXPECT_EQ(leaf.Check("a"), ZR_OK);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(Bits, TakeOneSmallBlockPerCheck)
{
    Leaf leaf(kAb);
    zrtest::AllocGuard guard;
    guard.Stop();
    EXPECT_EQ(leaf.Check("b a"), ZR_OK);
    EXPECT_EQ(guard.Count(), 1u);
}

TEST(Bits, AreScannedUntilACallbackStopsIt)
{
    Leaf leaf(kAb);
    auto stopAtB = [](const char *name, const char *, int64_t position, void *calls) {
        ++*static_cast<int *>(calls);
        return *name == 'b' ? static_cast<uint32_t>(position) + 6 : 0;
    };
    int calls = 0;
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(leaf.type(), stopAtB, &calls), 7u);
    EXPECT_EQ(calls, 2);
    Leaf more("<type name=\"bits\"><bit name=\"b\"/><bit name=\"a\"/></type>");
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(more.type(), stopAtB, &calls), 6u);
    EXPECT_EQ(calls, 3);
}

TEST(Enumeration, ComparesWholeNamesByteForByte)
{
    Leaf leaf("<type name=\"enumeration\"><enum name=\"one\"/><enum name=\"two\"/></type>");
    EXPECT_EQ(leaf.Check("two"), ZR_OK);
    for (const char *bad : {"on", "ones", "One", "", " one", "0"})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_ENUM) << bad;
    EXPECT_EQ(leaf.Check(nullptr), ZR_ERR_VALUE_ENUM);
}

TEST(Enumeration, WithoutEnumsInItsSlotRefusesEverything)
{
    ZrtConsEnum body = {};
    ZrtValidateCtx validation = {};
    EXPECT_EQ(ZRT_CONS_ValidateValueNodeAgainstDataEnum(&body, ZR_VALUE_STRING, "a", &validation),
              ZR_ERR_VALUE_ENUM);
}

TEST(Enumeration, OfManyNamesFindsEachOfThem)
{
    std::string enums;
    for (int i = 0; i < 3000; ++i)
        enums += "<enum name=\"n" + std::to_string(i) + "\"/>";
    Leaf leaf("<type name=\"enumeration\">" + enums + "</type>");
    for (int i = 0; i < 3000; i += 7)
        EXPECT_EQ(leaf.Check(("n" + std::to_string(i)).c_str()), ZR_OK) << i;
    EXPECT_EQ(leaf.Check("n3000"), ZR_ERR_VALUE_ENUM);
    // Other names of the context are names of the enumeration no more than any text.
    for (const char *bad : {"v", "m", "n3000", "n", ""})
        EXPECT_EQ(leaf.Check(bad), ZR_ERR_VALUE_ENUM) << bad;
}

TEST(Enumeration, AllocatesNothingPerCheck)
{
    Leaf leaf("<type name=\"enumeration\"><enum name=\"one\"/></type>");
    zrtest::AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(leaf.Check("one"), ZR_OK);
    EXPECT_EQ(guard.Count(), 0u);
}

TEST(EnumerationCopy, HasNamesValuesAndDescriptions)
{
    zrtest::TestContext ctx;
    ZrtEnumItem items[] = {{"a", -7}, {"b", 9}};
    const char *descriptions[] = {"About a.", nullptr};
    ZrtConsEnum body = {2, items, descriptions};
    auto *copy = static_cast<ZrtConsEnum *>(ZRT_CONS_CopyConsDataBodyWithEnum(ctx, &body));
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->count, 2);
    EXPECT_STREQ(copy->items[0].name, "a");
    EXPECT_EQ(copy->items[0].value, -7);
    EXPECT_STREQ(copy->items[1].name, "b");
    EXPECT_EQ(copy->items[1].value, 9);
    ASSERT_NE(copy->descriptions, nullptr);
    EXPECT_STREQ(copy->descriptions[0], "About a.");
    EXPECT_EQ(copy->descriptions[1], nullptr);
    ZRT_CONS_DestroyConsDataBodyWithEnum(ctx, copy);
}

TEST(EnumerationCopy, IsNullWhicheverAllocationFails)
{
    zrtest::TestContext ctx;
    ZrtEnumItem items[] = {{"a", 0}};
    const char *descriptions[] = {"About a."};
    ZrtConsEnum body = {1, items, descriptions};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        void *copy = memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithEnum(ctx, &body); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithEnum(ctx, copy);
    });
    // The body, its items and their descriptions, and two blocks for each text.
    EXPECT_EQ(points, 7u);
}

} // namespace
