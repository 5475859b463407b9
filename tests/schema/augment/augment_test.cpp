// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kNotCoupled = "Failed to couple augment statements.";

// Module m with a container c (leafs x and y); module a adds p and q to it.
class CoupledPair : public testing::Test {
protected:
    CoupledPair()
    {
        EXPECT_EQ(ctx_.LoadBody("m", Container("c", Leaf("x") + Leaf("y"))), ZR_OK);
        EXPECT_EQ(ctx_.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p") + Leaf("q"))), ZR_OK);
        target_ = ctx_.Node("/m:c");
        augment_ = ctx_.Module("a")->augments;
    }

    TestContext ctx_;
    ZrNode *target_ = nullptr;
    ZrNode *augment_ = nullptr;
};

uint32_t g_relinked;
const ZrNode *g_relinkedNode;

void CountRelink(ZrCtx *ctx, ZrNode *node, ZrCtx *sameCtx)
{
    EXPECT_EQ(ctx, sameCtx);
    ++g_relinked;
    g_relinkedNode = node;
}

TEST_F(CoupledPair, TheNodesStandAtTheEndOfTheTargetsChildren)
{
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "p", "q"));
    EXPECT_NE(augment_->flags & ZRS_FLAG_COUPLED, 0u);
    EXPECT_EQ(augment_->firstChild, ctx_.Node("/m:c/a:p"));
    EXPECT_EQ(augment_->lastChild, ctx_.Node("/m:c/a:q"));
    EXPECT_EQ(augment_->firstChild->parent, target_);
    EXPECT_EQ(ZR_NODE_GetAugmentTargetNode(augment_), target_);
}

TEST_F(CoupledPair, CouplingTwiceChangesNothing)
{
    EXPECT_EQ(ZRS_NODE_CoupleAugmentNode(augment_), ZR_OK);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "p", "q"));
}

TEST_F(CoupledPair, UncouplingTakesTheNodesBackInOrder)
{
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment_), ZR_OK);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y"));
    EXPECT_THAT(ChildNames(augment_), ElementsAre("p", "q"));
    EXPECT_EQ(augment_->flags & ZRS_FLAG_COUPLED, 0u);
    EXPECT_EQ(augment_->firstChild->parent, augment_);
    EXPECT_EQ(ZR_NODE_GetParentNode(augment_->firstChild), nullptr);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment_), ZR_ERR_INVALID)
        << "it is not coupled any more";
}

TEST_F(CoupledPair, UncouplingNeedsNoMemory)
{
    AllocGuard guard;
    guard.FailAt(0, true);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment_), ZR_OK);
    EXPECT_EQ(guard.Count(), 0u);
}

TEST_F(CoupledPair, AnotherAugmentsNodesStayWhenOneIsUncoupled)
{
    ASSERT_EQ(ctx_.LoadBody("b", Import("m") + Augment("/m:c", Leaf("r"))), ZR_OK);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "p", "q", "r"));
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment_), ZR_OK);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "r"));
    EXPECT_EQ(ZRS_NODE_CoupleAugmentNode(augment_), ZR_OK);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "r", "p", "q"));
}

TEST_F(CoupledPair, ACoupledAugmentIsNotFreed)
{
    ZRS_NODE_Free(augment_);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "p", "q"));
}

TEST_F(CoupledPair, UncouplingFromAnotherTargetIsRefused)
{
    ZrNode *other = ctx_.Node("/m:c/x");
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(augment_, other), ZR_ERR_INVALID);
    EXPECT_THAT(ChildNames(target_), ElementsAre("x", "y", "p", "q"));
}

TEST_F(CoupledPair, AStretchWithOneEndOnlyIsRefused)
{
    ZrNode *last = augment_->lastChild;
    augment_->lastChild = nullptr;
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(augment_, target_), ZR_ERR_INVALID);
    augment_->lastChild = last;
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(augment_, target_), ZR_OK);
    augment_->flags &= ~ZRS_FLAG_COUPLED;
}

TEST_F(CoupledPair, AStretchWhoseEndIsMissingFromTheChainIsRefused)
{
    ZrNode *last = augment_->lastChild;
    augment_->lastChild = ctx_.Node("/m:c/x");
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(augment_, target_), ZR_ERR_INVALID);
    // The nodes were moved up to the end of the chain.
    augment_->flags &= ~ZRS_FLAG_COUPLED;
    EXPECT_EQ(augment_->lastChild, last);
}

TEST_F(CoupledPair, TheRelinkCallbackHearsOfTheFirstNode)
{
    g_relinked = 0;
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx_, CountRelink);
    const ZrNode *first = augment_->firstChild;
    ZRS_NODE_UnCoupleAugmentNode(augment_);
    EXPECT_EQ(g_relinked, 1u);
    EXPECT_EQ(g_relinkedNode, first);
    ZRS_NODE_CoupleAugmentNode(augment_);
    EXPECT_EQ(g_relinked, 2u);
    EXPECT_EQ(g_relinkedNode, first);
}

TEST_F(CoupledPair, TheStretchFollowsWhenItsFirstNodeLeaves)
{
    ZrNode *node = augment_->firstChild;
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, node);
    EXPECT_STREQ(augment_->firstChild->name, "q");
    EXPECT_STREQ(augment_->lastChild->name, "q");
    ZRS_NODE_Unlink(node);
    ZRS_NODE_Free(node);
}

TEST_F(CoupledPair, TheStretchFollowsWhenItsLastNodeLeaves)
{
    ZrNode *node = augment_->lastChild;
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, node);
    EXPECT_STREQ(augment_->firstChild->name, "p");
    EXPECT_STREQ(augment_->lastChild->name, "p");
    ZRS_NODE_Unlink(node);
    ZRS_NODE_Free(node);
}

TEST_F(CoupledPair, TheStretchIsEmptyWhenItsOnlyNodeLeaves)
{
    for (ZrNode *node : {augment_->firstChild, augment_->lastChild}) {
        ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, node);
        ZRS_NODE_Unlink(node);
        ZRS_NODE_Free(node);
    }
    EXPECT_EQ(augment_->firstChild, nullptr);
    EXPECT_EQ(augment_->lastChild, nullptr);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment_), ZR_OK) << "there is nothing to take back";
}

TEST_F(CoupledPair, TheStretchStaysWhenAnotherNodeLeaves)
{
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, target_->firstChild);
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, target_);
    EXPECT_STREQ(augment_->firstChild->name, "p");
    EXPECT_STREQ(augment_->lastChild->name, "q");
}

TEST_F(CoupledPair, AnUncoupledAugmentsLinksAreLeftToTheUnlinking)
{
    ZRS_NODE_UnCoupleAugmentNode(augment_);
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(augment_, augment_->firstChild);
    EXPECT_STREQ(augment_->firstChild->name, "p");
}

TEST_F(CoupledPair, ChildrenScansOfTheAugmentEndAtItsLastNode)
{
    ASSERT_EQ(ctx_.LoadBody("b", Import("m") + Augment("/m:c", Leaf("r"))), ZR_OK);
    EXPECT_THAT(ChildNames(augment_), ElementsAre("p", "q"));
}

TEST(CoupleAugment, NullIsRefused)
{
    EXPECT_EQ(ZRS_NODE_CoupleAugmentNode(nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_CoupleAugmentNodeAndTargetNode(nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNodeAndTargetNode(nullptr, nullptr), ZR_ERR_INVALID);
    ZRS_NODE_RemoveCoupledAugmentNodeChildLink(nullptr, nullptr);
    ZRS_NODE_NotifyAugmentFirstChildNodeRelink(nullptr);
}

TEST(CoupleAugment, WithoutATargetItStaysAsItWas)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ZrNode *augment = ctx.Module("a")->augments;
    EXPECT_EQ(ZRS_NODE_CoupleAugmentNode(augment), ZR_ERR_INVALID);
    EXPECT_EQ(augment->flags & ZRS_FLAG_COUPLED, 0u);
    EXPECT_THAT(ChildNames(augment), ElementsAre("p"));
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_ERR_INVALID);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre(kNotCoupled));
}

TEST(CoupleAugment, WithoutNodesItIsCoupledWithoutAChange)
{
    TestContext ctx;
    g_relinked = 0;
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx, CountRelink);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", "")), ZR_OK);
    EXPECT_NE(ctx.Module("a")->augments->flags & ZRS_FLAG_COUPLED, 0u);
    EXPECT_EQ(g_relinked, 0u);
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(ctx.Module("a")->augments), ZR_OK);
}

TEST(CoupleAugment, AnEmptyAugmentWhoseTargetIsGoneIsRefusedButFree)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", "")), ZR_OK);
    ZrNode *target = ctx.Node("/m:c");
    ZRS_NODE_Unlink(target);
    ZRS_NODE_Free(target);
    ZrNode *augment = ctx.Module("a")->augments;
    EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_ERR_INVALID);
    EXPECT_EQ(augment->flags & ZRS_FLAG_COUPLED, 0u);
}

TEST(CoupleAugment, PassesConfigAndAccessControlDownToTheNodes)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Import("ietf-netconf-acm") +
                                    Container("c", "<config value=\"false\"/>"
                                                   "<ietf-netconf-acm:default-deny-all "
                                                   "xmlns:ietf-netconf-acm=\"urn:acm\"/>")),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p", Leaf("q")))), ZR_OK);
    const ZrNode *leaf = ctx.Node("/m:c/a:p/q");
    EXPECT_EQ(leaf->flags & ZRS_FLAGS_CONFIG, uint32_t{ZRS_FLAG_CONFIG_FALSE});
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(leaf), 1u);
}

TEST(CoupleAugment, CasesCanBeAddedToAChoice)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<choice name=\"ch\"><case name=\"one\">" + Leaf("x") +
                                    "</case></choice>"),
              ZR_OK);
    ASSERT_EQ(
        ctx.LoadBody("a", Import("m") +
                              Augment("/m:ch", "<case name=\"two\">" + Leaf("p") + "</case>") +
                              Augment("/m:ch/one", Leaf("q"))),
        ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:ch")), ElementsAre("one", "two"));
    EXPECT_THAT(ChildNames(ctx.Node("/m:ch/one")), ElementsAre("x", "q"));
}

TEST(CoupleAugment, AnUnknownModuleOrNodeLeavesItUncoupled)
{
    for (const char *target : {"/m:none", "/m:c/m:none", "/m:c/m:x/m:none"}) {
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
        ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment(target, Leaf("p"))), ZR_OK);
        EXPECT_THAT(ctx.Messages("a"), ElementsAre(kNotCoupled)) << target;
        EXPECT_THAT(ChildNames(ctx.Module("a")->augments), ElementsAre("p"));
    }
}

TEST(CoupleAugment, ATargetInAModuleOfMoreThan64CharactersLeavesItUncoupled)
{
    std::string longName(65, 'm');
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody(longName, Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", "<import module=\"" + longName +
                                    "\"><prefix value=\"p\"/></import>" +
                                    Augment("/p:c", Leaf("p"))),
              ZR_OK);
    EXPECT_THAT(ctx.Messages("a"), ElementsAre(kNotCoupled));
    EXPECT_THAT(ChildNames(ctx.Module("a")->augments), ElementsAre("p"));
}

TEST(CoupleAugment, NodesThatTakeNoAugmentAreLikeMissingTargetsInEveryOrder)
{
    std::string m = ModuleText("m", Leaf("x") + LeafList("xs") + "<anydata name=\"any\"/>" +
                                        "<anyxml name=\"xml\"/><rpc name=\"r\"><input/></rpc>" +
                                        Container("c", "<action name=\"do\"><input/></action>"));
    for (const char *path : {"/m:x", "/m:xs", "/m:any", "/m:xml", "/m:r", "/m:c/do"}) {
        std::string a = ModuleText("a", Import("m") + Augment(path, Leaf("p")));
        for (const std::vector<std::string> &order : {std::vector{m, a}, {a, m}}) {
            TestContext ctx;
            for (const std::string &text : order)
                ASSERT_EQ(ctx.Load(text), ZR_OK);
            ZrNode *augment = ctx.Module("a")->augments;
            EXPECT_EQ(augment->flags & ZRS_FLAG_COUPLED, 0u) << path;
            EXPECT_THAT(ChildNames(augment), ElementsAre("p"));
            EXPECT_THAT(ChildNames(ctx.Node(path)), testing::Not(testing::Contains("p")));
            EXPECT_THAT(ctx.Messages("a"), ElementsAre("Failed to couple augment statements."));
            EXPECT_EQ(ZRS_NODE_CoupleAugmentNode(augment), ZR_ERR_INVALID);
            EXPECT_EQ(ZRS_NODE_UnCoupleAugmentNode(augment), ZR_ERR_INVALID);
        }
    }
}

TEST(CoupleAugment, EveryNodeThatTakesAnAugmentGetsItsNodes)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", "<action name=\"do\"/>") + "<list name=\"li\"/>" +
                                    ChoiceOfTwo("ch") +
                                    "<rpc name=\"r\"/><notification name=\"n\"/>"),
              ZR_OK);
    std::string augments;
    const std::vector<std::string> paths = {
        "/m:c", "/m:li", "/m:ch/one", "/m:r/input", "/m:r/output", "/m:c/do/input", "/m:n"};
    for (const std::string &path : paths)
        augments += Augment(path, Leaf("p"));
    augments += Augment("/m:ch", "<case name=\"p\"/>");
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + augments), ZR_OK);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    for (const std::string &path : paths) {
        ASSERT_NE(ctx.Node(path.c_str()), nullptr) << path;
        EXPECT_THAT(ChildNames(ctx.Node(path.c_str())), testing::Contains("p")) << path;
    }
    EXPECT_THAT(ChildNames(ctx.Node("/m:ch")), testing::Contains("p"));
}

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

} // namespace
