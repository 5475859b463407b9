#include "schema/coupling_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kNotCoupled = "Failed to couple augment statements.";

} // namespace

TEST(TargetPaths, TheLastNamedModuleOwnsTheTarget)
{
    zr::ModuleNameText name;
    EXPECT_TRUE(zr::LastNamedModule("/m:c", name));
    EXPECT_STREQ(name, "m");
    EXPECT_TRUE(zr::LastNamedModule("/m:c/x/a:p/q", name));
    EXPECT_STREQ(name, "a");
    EXPECT_FALSE(zr::LastNamedModule("/c/x", name));
    EXPECT_FALSE(zr::LastNamedModule(nullptr, name));
    EXPECT_FALSE(zr::LastNamedModule(("/" + std::string(65, 'm') + ":c").c_str(), name));
}

TEST(TargetPaths, LeadIntoTheModuleThatTheyNameLast)
{
    EXPECT_TRUE(zr::LeadsIntoModule("/m:c/x/a:p/q", "a"));
    EXPECT_FALSE(zr::LeadsIntoModule("/m:c/x/a:p/q", "m"));
    EXPECT_FALSE(zr::LeadsIntoModule("/c/x", "m"));
    EXPECT_FALSE(zr::LeadsIntoModule(nullptr, "m"));
}

TEST(TargetPaths, OnePathIsBelowAnotherOnlyAtAStep)
{
    EXPECT_TRUE(zr::IsPathAtOrBelow("/m:c", "/m:c"));
    EXPECT_TRUE(zr::IsPathAtOrBelow("/m:c/x", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m:cx", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m:c-x/y", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m", "/m:c"));
}

TEST(MissingInput, IsMadeAsTheRpcsFirstChild)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r", Output(Leaf("o")))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:input", Leaf("i"))), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:r")), ElementsAre("input", "output"));
    const ZrNode *input = ctx.Node("/m:r/input");
    EXPECT_EQ(input->kind, uint32_t{ZR_NODE_INPUT});
    EXPECT_EQ(input->module, ctx.Module("m"));
    EXPECT_THAT(ChildNames(input), ElementsAre("i"));
}

TEST(MissingInput, AMissingOutputIsMadeAsTheLastChild)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r", Input(Leaf("i")))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:output", Leaf("o"))), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:r")), ElementsAre("input", "output"));
    EXPECT_EQ(ctx.Node("/m:r/output")->kind, uint32_t{ZR_NODE_OUTPUT});
}

TEST(MissingInput, IsMadeInAnActionToo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", "<action name=\"act\"/>")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c/m:act/m:input", Leaf("i"))), ZR_OK);
    EXPECT_NE(ctx.Node("/m:c/act/input/a:i"), nullptr);
}

TEST(MissingInput, IsSharedByLaterAugmentsAndStaysAfterUncoupling)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:input", Leaf("i")) +
                                    Augment("/m:r/m:input", Leaf("j"))),
              ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:r/input")), ElementsAre("i", "j"));
    for (ZrNode *augment = ctx.Module("a")->augments; augment != nullptr; augment = augment->next)
        EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_OK);
    ASSERT_NE(ctx.Node("/m:r/input"), nullptr);
    EXPECT_THAT(ChildNames(ctx.Node("/m:r/input")), IsEmpty());
}

TEST(MissingInput, IsNotMadeForOtherStepsOrInOtherNodes)
{
    for (const char *target : {"/m:r/m:inputs", "/m:c/m:input", "/m:c/m:output", "/m:none/m:input",
                               "/m:r/a:input", "/m:input"}) {
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("m", Rpc("r") + Container("c")), ZR_OK);
        ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment(target, Leaf("i"))), ZR_OK);
        EXPECT_THAT(ctx.Messages("a"), ElementsAre(kNotCoupled)) << target;
        EXPECT_THAT(ChildNames(ctx.Node("/m:r")), IsEmpty()) << target;
        EXPECT_THAT(ChildNames(ctx.Node("/m:c")), IsEmpty()) << target;
    }
}

TEST(MissingInput, GoesWithTheLastAugmentThatItWasMadeFor)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:input", Leaf("i"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:r/m:input", Leaf("j"))), ZR_OK);
    zr::UncoupleModuleAugments(ctx.Module("a"));
    ASSERT_NE(ctx.Node("/m:r/input"), nullptr) << "another augment uses it";
    zr::UncoupleModuleAugments(ctx.Module("b"));
    EXPECT_EQ(ctx.Node("/m:r/input"), nullptr);
}

TEST(MissingInput, StaysForAnAugmentThatReachesItByAnotherSpelling)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", "<action name=\"act\"/>")), ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("b", Import("m") + Import("a") + Augment("/m:c/a:act/a:input", Leaf("i"))),
        ZR_OK);
    // The step without a module name of its own matches the action that "a" added.
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Augment("/m:c/m:act/m:input", Leaf("j"))), ZR_OK);
    ASSERT_THAT(ChildNames(ctx.Node("/m:c/a:act/input")), ElementsAre("i", "j"));
    zr::UncoupleModuleAugments(ctx.Module("b"));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c/a:act/input")), ElementsAre("j"));
}

TEST(MissingInput, ADeclaredOneStaysWhenItsAugmentsGo)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r", "<input/>")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:input", Leaf("i"))), ZR_OK);
    zr::UncoupleModuleAugments(ctx.Module("a"));
    EXPECT_NE(ctx.Node("/m:r/input"), nullptr);
}

TEST(MissingInput, StaysForAnAugmentThatHasNoNodesLeft)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:r/m:input", "")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Augment("/m:r/m:input", Leaf("j"))), ZR_OK);
    zr::UncoupleModuleAugments(ctx.Module("b"));
    EXPECT_NE(ctx.Node("/m:r/input"), nullptr);
    zr::UncoupleModuleAugments(ctx.Module("a"));
    EXPECT_EQ(ctx.Node("/m:r/input"), nullptr);
}

TEST(MissingInput, TheStepsOfItsMakingRefuseWhatDoesNotFit)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Rpc("r")), ZR_OK);
    uint32_t kind = 0;
    EXPECT_EQ(ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, "/m:r", "inputs", &kind), nullptr);
    EXPECT_EQ(ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, "/m:none", "input", &kind), nullptr);
    EXPECT_EQ(ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, nullptr, "input", &kind), nullptr);
    EXPECT_EQ(ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, "/m:r", "output", &kind),
              ctx.Node("/m:r"));
    EXPECT_EQ(kind, uint32_t{ZR_NODE_OUTPUT});
    EXPECT_EQ(ZRS_NODE_UpdateTargetPathWithInputOutput(ctx, nullptr), nullptr);
    EXPECT_EQ(ZRS_NODE_UpdateTargetPathWithInputOutput(ctx, "input"), nullptr);
    EXPECT_EQ(ZRS_NODE_ConstructInputOutputNodeIfMatch(ctx, "/m:r", "x"), nullptr);
}
