// SPDX-License-Identifier: Apache-2.0
#include "schema/module/module.h"

#include "foundation/relations.h"
#include "schema/coupling_fixture.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kNotCoupled = "Failed to couple augment statements.";

TEST(CoupleAugment, IsTriedAgainWhenTheTargetsModuleLoads)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("x", "p"));
    EXPECT_THAT(ctx.Messages(), IsEmpty()) << "the store tells of the schema as it is";
}

TEST(CoupleAugment, AnAugmentOfItsOwnModuleMayWaitForALaterOne)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + Augment("/m:c/m:p/m:q", Leaf("r")) +
                                    Augment("/m:c/m:p", Container("q")) +
                                    Augment("/m:c", Container("p"))),
              ZR_OK);
    EXPECT_NE(ctx.Node("/m:c/p/q/r"), nullptr);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(CoupleAugment, OneFailureDoesNotStopTheOthers)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:none", Leaf("n")) +
                                    Augment("/m:c", Leaf("p")) + Augment("/m:c/m:no", Leaf("o")) +
                                    Augment("/m:c", Leaf("q"))),
              ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("p", "q"));
    EXPECT_THAT(ctx.Messages("a"), ElementsAre(kNotCoupled)) << "once, however many are left";
}

TEST(CoupleAugment, AManyStepChainInReverseOrderIsCoupledWithFewTries)
{
    constexpr int kDepth = 60;
    std::string body = Container("c");
    std::string augments;
    std::string path = "/m:c";
    for (int i = 0; i < kDepth; ++i) {
        std::string name = "n" + std::to_string(i);
        augments = Augment(path, Container(name)) + augments;
        path += "/m:" + name;
    }
    TestContext ctx;
    AllocGuard guard;
    ASSERT_EQ(ctx.LoadBody("m", Container("c") + augments), ZR_OK);
    uint64_t withChain = guard.Count();
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    // Each lookup of a target costs a few allocations; trying all in every pass would need
    // thousands of lookups.
    EXPECT_LT(withChain, 60u * kDepth);
}

TEST(CoupleAugment, TwoModulesMayAugmentEachOther)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("b") + Container("ca") + Augment("/b:cb", Container("pa")) +
                                    Augment("/b:cb/a:pa/b:pb", Leaf("deep"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("a") + Container("cb") + Augment("/a:ca", Leaf("x")) +
                                    Augment("/b:cb/a:pa", Container("pb"))),
              ZR_OK);
    EXPECT_NE(ctx.Node("/b:cb/a:pa/b:pb/a:deep"), nullptr);
    EXPECT_NE(ctx.Node("/a:ca/b:x"), nullptr);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(CoupleAugment, NodesInAModuleThatThePathDoesNotNameAreRelatedToItToo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:c/m:p", Leaf("q"))), ZR_OK);
    ASSERT_NE(ctx.Node("/m:c/a:p/q"), nullptr);
    EXPECT_NE(ZR_CTX_FindModRelationItem(ZR_CTX_FindModRelationTbl(ctx, "a"),
                                         ZR_RELATION_AUGMENTED_BY, ctx.Module("b")->name),
              nullptr);
}

TEST(CoupleAugment, WithoutMemoryForThatRelationTheNodesAreTakenBack)
{
    std::string m = ModuleText("m", Container("c"));
    std::string a = ModuleText("a", Import("m") + Augment("/m:c", Container("p")));
    std::string b = ModuleText("b", Import("m") + Augment("/m:c/m:p", Leaf("q")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx;
        ASSERT_EQ(ctx.Load(m), ZR_OK);
        ASSERT_EQ(ctx.Load(a), ZR_OK);
        memory.RunStatus([&] { return ctx.Load(b); });
        EXPECT_EQ(ctx.Node("/m:c/a:p/q") != nullptr,
                  ZR_CTX_FindModRelationTbl(ctx, "a") != nullptr);
    });
}

TEST(CoupleAugment, EveryFailingAllocationLeavesAUsableContext)
{
    std::string m = ModuleText("m", Container("c") + "<rpc name=\"r\"/>");
    std::string a = ModuleText("a", Import("m") + Augment("/m:c", Leaf("p")) +
                                        Augment("/m:r/m:input", Leaf("i")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx;
        ASSERT_EQ(ctx.Load(m), ZR_OK);
        uint32_t status = memory.RunStatus([&] { return ctx.Load(a); });
        if (status == ZR_OK && memory.Failed())
            ZRS_NODE_CoupleAugmentNode(ctx.Module("a")->augments);
    });
}

} // namespace
