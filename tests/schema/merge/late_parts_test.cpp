// SPDX-License-Identifier: Apache-2.0
#include "schema/merge/merge.h"

#include "loader/files/module_content.h"
#include "platform/xml.h"
#include "schema/coupling_fixture.h"
#include "schema/module/module.h"

namespace {

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

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

const std::string kBody =
    Container("c", Leaf("a", "string", "<default value=\"1\"/>") + Leaf("gone") +
                       "<leaf-list name=\"l\"><type name=\"t\"/>"
                       "<default value=\"1\"/></leaf-list>"
                       "<choice name=\"h\"><default value=\"k\"/>"
                       "<case name=\"k\"/></choice>") +
    Container("top") + Leaf("end") + "<typedef name=\"t\"><type name=\"int8\"/></typedef>";

class BringBack : public testing::Test {
protected:
    ~BringBack() override { ZRS_MOD_Free(original); }

    // Loads the module "m", and reads the body of its original, which is the same unless given.
    void Load(const std::string &originalBody = kBody)
    {
        ASSERT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
        plain = DumpContext(ctx);
        std::string text = ModuleText("m", originalBody);
        xmlDoc *document = zr::ParseXmlText(text.c_str(), text.size());
        original = ZRS_LOADER_ParseYinContent(ctx, document, "m");
        xmlFreeDoc(document);
        ASSERT_NE(original, nullptr);
    }
    void Deviate(const std::string &deviations)
    {
        ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("ietf-netconf-acm") + deviations), ZR_OK);
    }
    std::string DumpOfM() { return DumpModule(ctx.Module("m")); }

    TestContext ctx;
    ZrMod *original = nullptr;
    std::string plain;
};

TEST_F(BringBack, UndoesWhatDeviationsChanged)
{
    Load();
    const ZrNode *node = ctx.Node("/m:c/a");
    const ZrtRealType *type = ZR_NODE_GetRealType(node);
    EXPECT_FALSE(zr::MayDifferFromFiles(ctx.Module("m")));
    Deviate(Deviation("/m:c", "add", "<config value=\"false\"/><must condition=\"1\"/>") +
            Deviation("/m:c/m:a", "replace", "<type name=\"int8\"/><default value=\"2\"/>") +
            Deviation("/m:c/m:l", "delete", "<default value=\"1\"/>") +
            Deviation("/m:c/m:h", "delete", "<default value=\"k\"/>") +
            Deviation("/m:top", "add",
                      "<ietf-netconf-acm:default-deny-all xmlns:ietf-netconf-acm=\"urn:acm\"/>"));
    EXPECT_TRUE(zr::MayDifferFromFiles(ctx.Module("m")));
    EXPECT_NE(DumpOfM(), plain);
    EXPECT_TRUE(zr::BringBackOriginal(ctx.Module("m"), original));
    EXPECT_EQ(DumpOfM(), plain);
    EXPECT_EQ(ctx.Node("/m:c/a"), node) << "nodes stay where they are";
    EXPECT_EQ(ZR_NODE_GetRealType(node), type);
    ZRS_MOD_NotifyModuleChangeEvent(ctx, "m", ZRS_MODULE_LOADED, nullptr);
    EXPECT_EQ(ctx.Node("/m:c")->mustCount, 1) << "the deviations can be applied again";
    EXPECT_EQ(ZR_NODE_ValidateValue(ctx.Node("/m:c/l"), ZR_VALUE_STRING, "127"), ZR_OK);
    EXPECT_NE(ZR_NODE_ValidateValue(ctx.Node("/m:c/l"), ZR_VALUE_STRING, "128"), ZR_OK);
}

TEST_F(BringBack, GivesBackNodesThatWereRemovedAtTheirPlaces)
{
    Load();
    Deviate(Deviation("/m:c/m:a", "not-supported") + Deviation("/m:c/m:gone", "not-supported") +
            Deviation("/m:top", "not-supported") + Deviation("/m:end", "not-supported"));
    EXPECT_TRUE(zr::BringBackOriginal(ctx.Module("m"), original));
    EXPECT_EQ(DumpOfM(), plain);
    EXPECT_EQ(ctx.Node("/m:c/gone")->module, ctx.Module("m"));
    EXPECT_EQ(ctx.Node("/m:end")->prev, ctx.Node("/m:top"));
}

TEST_F(BringBack, GivesBackAChainOfWhichNothingIsLeft)
{
    Load();
    Deviate(Deviation("/m:c", "not-supported") + Deviation("/m:top", "not-supported") +
            Deviation("/m:end", "not-supported"));
    EXPECT_EQ(ctx.Module("m")->dataNodes, nullptr);
    EXPECT_TRUE(zr::BringBackOriginal(ctx.Module("m"), original));
    EXPECT_EQ(DumpOfM(), plain);
}

TEST_F(BringBack, LetsFailedDeviationsFailAgainWithTheirMessages)
{
    Load();
    Deviate(Deviation("/m:c/m:a", "add", "<default value=\"2\"/>"));
    std::vector<std::string> messages = ctx.Messages("d");
    ASSERT_FALSE(messages.empty());
    EXPECT_TRUE(zr::BringBackOriginal(ctx.Module("m"), original));
    ZRS_MOD_NotifyModuleChangeEvent(ctx, "m", ZRS_MODULE_LOADED, nullptr);
    EXPECT_EQ(ctx.Messages("d"), messages);
}

TEST_F(BringBack, ChangesNothingWhenAnotherModuleIsGiven)
{
    Load(Container("c", Leaf("a")) + Container("top") + Leaf("end"));
    Deviate(Deviation("/m:c", "add", "<must condition=\"1\"/>"));
    std::string before = DumpContext(ctx);
    EXPECT_FALSE(zr::BringBackOriginal(ctx.Module("m"), original));
    EXPECT_EQ(DumpContext(ctx), before);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, uint16_t{ZRS_DEVIATION_COUPLED});
}

TEST(MayDiffer, FromItsFilesAModuleWhoseNodesStandElsewhere)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("t", Container("c")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Import("t") + Augment("/t:c", Leaf("a"))), ZR_OK);
    EXPECT_TRUE(zr::MayDifferFromFiles(ctx.Module("m"))) << "flags of the target pass to them";
    EXPECT_FALSE(zr::MayDifferFromFiles(ctx.Module("t")));
    ASSERT_EQ(ctx.LoadBody("d", Leaf("a") + Deviation("/d:a", "add", "<must condition=\"1\"/>")),
              ZR_OK);
    EXPECT_TRUE(zr::MayDifferFromFiles(ctx.Module("d"))) << "it deviates itself";
}

} // namespace
