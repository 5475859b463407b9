#include "schema/merge/merge.h"

#include "schema/coupling_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class AugmentsAside : public testing::Test {
protected:
    AugmentsAside()
    {
        ctx.LoadBody("t", Container("c", Leaf("a")) + "<rpc name=\"r\"/>");
        ctx.LoadBody("x", Import("t") + Augment("/t:c", Leaf("x1") + Leaf("x2")));
        ctx.LoadBody("m", Import("t") + Container("own") + Augment("/t:c", Leaf("m1")) +
                              Augment("/t:r/t:input", Leaf("i")) + Augment("/m:own", Leaf("o")));
        ctx.LoadBody("y", Import("t") + Import("m") + Augment("/t:c", Leaf("y1")) +
                              Augment("/m:own", Leaf("y2")));
    }
    std::vector<std::string> Of(const char *path) { return ChildNames(ctx.Node(path)); }

    TestContext ctx;
};

} // namespace

TEST_F(AugmentsAside, OfTheModuleAndInItLeaveTheirTargetsAndComeBack)
{
    std::string before = DumpContext(ctx);
    zr::AugmentsAside aside(ctx.Module("m"));
    ASSERT_EQ(aside.TakeOut(), ZR_OK);
    EXPECT_THAT(Of("/t:c"), ElementsAre("a", "x1", "x2", "y1")) << "others stay";
    EXPECT_THAT(Of("/m:own"), IsEmpty());
    const ZrNode *first = ctx.Module("m")->augments;
    EXPECT_THAT(ChildNames(first), ElementsAre("m1"));
    EXPECT_EQ(first->firstChild->parent, first);
    EXPECT_NE(first->flags & ZRS_FLAG_COUPLED, 0u) << "it is not uncoupled";
    aside.PutBack();
    EXPECT_THAT(Of("/t:c"), ElementsAre("a", "x1", "x2", "m1", "y1"));
    EXPECT_THAT(Of("/m:own"), ElementsAre("o", "y2"));
    EXPECT_EQ(DumpContext(ctx), before);
}

TEST_F(AugmentsAside, ComeBackInFrontOfWhatStoodBehindThemWhenTheyHaveGrown)
{
    zr::AugmentsAside aside(ctx.Module("m"));
    ASSERT_EQ(aside.TakeOut(), ZR_OK);
    ZrNode *first = ctx.Module("m")->augments;
    ZRS_NODE_AddChild(first, ZRS_NODE_CopyNodeTreeToModule(ctx.Node("/t:c/a"), first->module));
    aside.PutBack();
    EXPECT_THAT(Of("/t:c"), ElementsAre("a", "x1", "x2", "m1", "a", "y1"));
}

TEST_F(AugmentsAside, OfInputsThatCouplingMadeInTheModuleAreUncoupledAndTheInputsGo)
{
    zr::AugmentsAside aside(ctx.Module("t"));
    ASSERT_EQ(aside.TakeOut(), ZR_OK);
    EXPECT_EQ(ctx.Node("/t:r/input"), nullptr);
    EXPECT_EQ(ctx.Module("m")->augments->next->flags & ZRS_FLAGS_COUPLING, 0u);
    EXPECT_THAT(Of("/t:c"), ElementsAre("a"));
    aside.PutBack();
    EXPECT_THAT(Of("/t:c"), ElementsAre("a", "x1", "x2", "m1", "y1"));
    EXPECT_EQ(ctx.Node("/t:r/input"), nullptr) << "until the module is coupled again";
}

TEST_F(AugmentsAside, StayWhereTheyAreWithoutMemory)
{
    std::string before = DumpContext(ctx);
    zr::AugmentsAside aside(ctx.Module("t"));
    {
        AllocGuard guard;
        guard.FailAt(0);
        EXPECT_EQ(aside.TakeOut(), ZR_ERR_NO_MEMORY);
    }
    aside.PutBack();
    EXPECT_EQ(DumpContext(ctx), before);
}

TEST(AugmentsAsideOfNone, NeedNoMemory)
{
    TestContext ctx;
    ctx.LoadBody("m", Container("c"));
    AllocGuard guard;
    guard.FailAt(0);
    zr::AugmentsAside aside(ctx.Module("m"));
    EXPECT_EQ(aside.TakeOut(), ZR_OK);
    aside.PutBack();
}
