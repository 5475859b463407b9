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

} // namespace
