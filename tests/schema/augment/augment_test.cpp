#include "schema/coupling_fixture.h"

#include "foundation/load_errors.h"
#include "foundation/relations.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

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

} // namespace

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

TEST(CoupleAugment, IsTriedAgainWhenTheTargetsModuleLoads)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x"))), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("x", "p"));
    EXPECT_THAT(ctx.Messages(), IsEmpty()) << "the store tells of the schema as it is";
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
