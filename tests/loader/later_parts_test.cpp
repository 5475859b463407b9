// SPDX-License-Identifier: Apache-2.0
// A part of a module that arrives when the module is loaded and coupled with others.
#include <filesystem>

#include "foundation/context_record.h"
#include "loader/unload_fixture.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kConfigFalse = "<config value=\"false\"/>";

// The module "m" in parts, one directory a part, and other modules, in the first directory.
class LaterParts : public testing::Test {
protected:
    explicit LaterParts(uint32_t flags = kKeepAll) : ctx(flags)
    {
        for (const TempDir &dir : dirs_)
            EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
    }
    void Part(const std::string &body)
    {
        dirs_[count_].Write("m@@" + std::to_string(count_) + ".yin", ModuleText("m", body));
        ++count_;
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_OK);
    }
    void Other(const std::string &name, const std::string &body)
    {
        dirs_[0].Write(name + ".yin", ModuleText(name, body));
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), ZR_OK);
        others_.push_back(name);
    }
    // The schema that all parts give when "m" is loaded before the others.
    std::string AtOnce()
    {
        TestContext fresh(ctx.get()->flags);
        for (const TempDir &dir : dirs_)
            EXPECT_EQ(ZR_CTX_SetSearchDir(fresh, dir.path().c_str()), ZR_OK);
        EXPECT_EQ(ZR_CTX_LoadModule(fresh, "m"), ZR_OK);
        for (const std::string &name : others_)
            EXPECT_EQ(ZR_CTX_LoadModule(fresh, name.c_str()), ZR_OK);
        return DumpContext(fresh);
    }
    void RewriteFirst(const std::string &body)
    {
        dirs_[0].Write("m@@0.yin", ModuleText("m", body));
    }
    std::string FirstFile() const { return dirs_[0].path() + "/m@@0.yin"; }

    TestContext ctx;

private:
    TempDir dirs_[3];
    size_t count_ = 0;
    std::vector<std::string> others_;
};

int relinked;

void CountRelinks(ZrCtx *, ZrNode *, ZrCtx *)
{
    ++relinked;
}

} // namespace

TEST_F(LaterParts, BringNodesThatStandBeforeThoseOfOtherModules)
{
    Part(Container("c", Leaf("a")));
    Other("x", Import("m") + Augment("/m:c", Leaf("x1")));
    Other("y", Import("m") + Augment("/m:c", Leaf("y1")));
    Part(Container("c", Leaf("a") + Leaf("b")) + Augment("/m:c", Leaf("own")));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("a", "b", "own", "x1", "y1"));
    EXPECT_EQ(DumpContext(ctx), AtOnce());
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST_F(LaterParts, LeaveModuleAndNodesWithTheirPrivateDataInPlace)
{
    Part(Container("c", Leaf("a")));
    Other("x", Import("m") + Augment("/m:c", Leaf("x1")) +
                   Deviation("/m:c/m:a", "add", "<must condition=\"1\"/>"));
    const ZrMod *module = ctx.Module("m");
    ZrNode *own = ctx.Node("/m:c/a");
    ZrNode *foreign = ctx.Node("/m:c/x:x1");
    int data = 0;
    ZR_MOD_SetPrivate(ctx.Module("m"), &data);
    ZR_NODE_SetPrivate(own, &data);
    ZR_NODE_SetPrivate(foreign, &data);
    relinked = 0;
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx, CountRelinks);
    Part(Container("c", Leaf("a") + Leaf("b")));
    EXPECT_EQ(ctx.Module("m"), module);
    EXPECT_EQ(ctx.Node("/m:c/a"), own);
    EXPECT_EQ(ctx.Node("/m:c/x:x1"), foreign);
    EXPECT_EQ(ZR_MOD_GetPrivate(module), &data);
    EXPECT_EQ(ZR_NODE_GetPrivate(own), &data);
    EXPECT_EQ(ZR_NODE_GetPrivate(foreign), &data);
    EXPECT_EQ(relinked, 0) << "an augment that only stepped aside is not coupled anew";
}

TEST_F(LaterParts, AddToAugmentsWhereTheyStand)
{
    Other("t", Container("c", kConfigFalse));
    Part(Import("t") + Augment("/t:c", Container("k", Leaf("a"))));
    Other("x", Import("t") + Augment("/t:c", Leaf("x1")));
    Part(Import("t") + Augment("/t:c", Container("k", Leaf("a") + Leaf("b")) + Leaf("n")));
    EXPECT_THAT(ChildNames(ctx.Node("/t:c")), ElementsAre("k", "n", "x1"));
    EXPECT_THAT(ChildNames(ctx.Node("/t:c/m:k")), ElementsAre("a", "b"));
    EXPECT_EQ(ZR_NODE_IsRwConfig(ctx.Node("/t:c/m:k/b")), 0u);
    EXPECT_EQ(ZR_NODE_IsRwConfig(ctx.Node("/t:c/m:n")), 0u);
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

TEST_F(LaterParts, GiveNodesToAnAugmentThatHadNone)
{
    Other("t", Container("c"));
    Part(Import("t") + Augment("/t:c", ""));
    Part(Import("t") + Augment("/t:c", Leaf("n")));
    EXPECT_THAT(ChildNames(ctx.Node("/t:c")), ElementsAre("n"));
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

TEST_F(LaterParts, MeetTheNodesAsTheyWereBeforeDeviations)
{
    Part(Container("c", Leaf("gone") + Leaf("a", "string", "<default value=\"1\"/>")));
    Other("d", Import("m") + Deviation("/m:c", "add", kConfigFalse) +
                   Deviation("/m:c/m:gone", "not-supported") +
                   Deviation("/m:c/m:a", "add", "<must condition=\"1\"/><units name=\"u\"/>") +
                   Deviation("/m:c/m:a", "delete", "<default value=\"1\"/>") +
                   Deviation("/m:c/m:late", "add", "<default value=\"2\"/>"));
    Part(Container("c",
                   Leaf("gone") + Leaf("a", "string", "<default value=\"1\"/>") + Leaf("late")));
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("a", "late"));
    EXPECT_EQ(ctx.Node("/m:c/a")->mustCount, 1);
    EXPECT_EQ(ZR_NODE_IsRwConfig(ctx.Node("/m:c/late")), 0u) << "as the deviation says";
    EXPECT_STREQ(ZR_NODE_GetDefaultValueStr(ctx.Node("/m:c/late")), "2");
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

class LaterPartsByTheStandard : public LaterParts {
protected:
    LaterPartsByTheStandard() : LaterParts(kKeepAll | ZR_CTX_STANDARD) {}
};

TEST_F(LaterPartsByTheStandard, MeetTheRulesOnEntriesAsTheyWereBeforeDeviations)
{
    const std::string list =
        List("l", "b a", "<min-elements value=\"1\"/><unique tag=\"a\"/>" + Leaf("a") + Leaf("b"));
    const std::string plain = LeafList("p");
    Part(Container("c", list + plain));
    Other("d", Import("m") + Deviation("/m:c/m:l", "replace", "<min-elements value=\"2\"/>") +
                   Deviation("/m:c/m:l", "delete", "<unique tag=\"m:a\"/>") +
                   Deviation("/m:c/m:p", "add", "<max-elements value=\"3\"/>") +
                   Deviation("/m:c/m:late", "add", "<max-elements value=\"4\"/>"));
    Part(Container("c", list + plain + LeafList("late")));
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EXPECT_EQ(ZR_NODE_GetMinElements(ctx.Node("/m:c/l")), 2u);
    EXPECT_EQ(ZR_NODE_GetMaxElements(ctx.Node("/m:c/p")), 3u);
    EXPECT_EQ(ZR_NODE_GetMaxElements(ctx.Node("/m:c/late")), 4u);
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

TEST_F(LaterParts, DoNotRepeatTheDeviationsOfTheirModule)
{
    Other("t", Container("c", Leaf("a")));
    Part(Import("t") + Leaf("own") + Deviation("/t:c/t:a", "add", "<must condition=\"1\"/>") +
         Deviation("/m:own", "add", "<must condition=\"1\"/>"));
    Part(Import("t") + Leaf("own") + Leaf("b") +
         Deviation("/t:c/t:a", "add", "<must condition=\"2\"/>"));
    EXPECT_EQ(ctx.Node("/t:c/a")->mustCount, 2);
    EXPECT_EQ(ctx.Node("/m:own")->mustCount, 1);
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

TEST_F(LaterParts, MeetAnAugmentThatADeviationDropped)
{
    Other("t", Container("c", Container("gone")) + Container("e"));
    Part(Import("t") + Augment("/t:c/t:gone", Leaf("a")) + Augment("/t:e", Leaf("b")));
    Other("d", Import("t") + Deviation("/t:c/t:gone", "not-supported"));
    Part(Import("t") + Augment("/t:c/t:gone", Leaf("a")) +
         Augment("/t:e", Leaf("b") + Leaf("late")));
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    EXPECT_THAT(ChildNames(ctx.Node("/t:e")), ElementsAre("b", "late"));
    EXPECT_EQ(DumpContext(ctx), AtOnce());
}

TEST_F(LaterParts, DeclareAnInputThatAnAugmentHadMade)
{
    Part("<rpc name=\"r\"/>");
    Other("x",
          Import("m") + Augment("/m:r/m:output", Leaf("o")) + Augment("/m:r/m:input", Leaf("i")));
    Other("d", Import("m") + Deviation("/m:r/m:input", "add", "<must condition=\"1\"/>"));
    Part("<rpc name=\"r\"><input>" + Leaf("own") + "</input></rpc>");
    EXPECT_THAT(ChildNames(ctx.Node("/m:r")), ElementsAre("input", "output"));
    EXPECT_THAT(ChildNames(ctx.Node("/m:r/input")), ElementsAre("own", "i"));
    EXPECT_EQ(ctx.Node("/m:r/input")->mustCount, 1);
    EXPECT_EQ(DumpContext(ctx), AtOnce());
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "x"), ZR_OK);
    EXPECT_THAT(ChildNames(ctx.Node("/m:r")), ElementsAre("input"));
}

TEST_F(LaterParts, CoupleWhatWaitedForThemInTheOrderOfTheModules)
{
    Part(Container("c"));
    Other("x", Import("m") + Augment("/m:c/m:late", Leaf("x1")));
    Other("y", Import("m") + Augment("/m:c/m:late", Leaf("y1")));
    Part(Container("c", Container("late", Leaf("own"))));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c/late")), ElementsAre("own", "x1", "y1"));
    EXPECT_EQ(DumpContext(ctx), AtOnce());
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST_F(LaterParts, ThatFailLeaveTheOthersWithTheirCouplings)
{
    Part(Container("c", Leaf("a")));
    Other("x", Import("m") + Augment("/m:c", Leaf("x1")) +
                   Deviation("/m:c/m:a", "add", "<must condition=\"1\"/>"));
    std::string before = DumpContext(ctx);
    Part(Container("c", kConfigFalse + Leaf("a")));
    EXPECT_EQ(DumpContext(ctx), before);
    EXPECT_THAT(ctx.Messages("m"),
                ElementsAre("Failed to merge node \"c\" with diff reason \"other\".",
                            "Failed to merge schema tree."));
    Part(Container("c", Leaf("a") + Leaf("b")));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("a", "b", "x1"));
    EXPECT_EQ(ctx.Node("/m:c/a")->mustCount, 1);
    EXPECT_THAT(ctx.Messages("m"), testing::SizeIs(2)) << "no message comes twice";
}

TEST_F(LaterParts, AreMergedIntoWhatStandsWhenTheEarlierFilesAreGone)
{
    Part(Container("c", Leaf("a")));
    Other("d", Import("m") + Deviation("/m:c/m:a", "add", "<must condition=\"1\"/>"));
    std::filesystem::remove(FirstFile());
    Part(Container("c", Leaf("a") + Leaf("b")));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("a", "b"));
    EXPECT_EQ(ctx.Node("/m:c/a")->mustCount, 1);
}

TEST_F(LaterParts, AreMergedIntoWhatStandsWhenTheEarlierFilesSayOtherwise)
{
    Part(Container("c", Leaf("a")));
    Other("d", Import("m") + Deviation("/m:c/m:a", "add", "<must condition=\"1\"/>"));
    RewriteFirst(Container("c", Leaf("other")));
    Part(Container("c", Leaf("a") + Leaf("b")));
    EXPECT_THAT(ChildNames(ctx.Node("/m:c")), ElementsAre("a", "b"));
    EXPECT_EQ(ctx.Node("/m:c/a")->mustCount, 1);
}

TEST_F(LaterParts, LeaveTheLoadStageOfTheApplication)
{
    Part(Container("c", Leaf("a")));
    Other("d", Import("m") + Deviation("/m:c/m:none", "add", "<must condition=\"1\"/>"));
    ZR_CTX_SetLoadStage(ctx, 7);
    Part("<typedef name=\"t\"><type name=\"int8\"/></typedef>");
    EXPECT_EQ(ctx.get()->loadStage, 7u);
}

TEST(LaterPart, EveryFailingAllocationLeavesASchemaThatALaterLoadCanFinish)
{
    TempDir first;
    TempDir second;
    first.Write("t.yin", ModuleText("t", Container("c")));
    first.Write("m@@0.yin",
                ModuleText("m", Import("t") + Container("c", Leaf("a")) + "<rpc name=\"r\"/>" +
                                    Augment("/t:c", Container("k", Leaf("a")))));
    first.Write("x.yin",
                ModuleText("x", Import("m") + Augment("/m:c", Leaf("x1")) +
                                    Augment("/m:r/m:input", Leaf("i")) +
                                    Deviation("/m:c/m:a", "add", "<must condition=\"1\"/>")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx(kKeepAll);
        ZR_CTX_SetSearchDir(ctx, first.path().c_str());
        ZR_CTX_SetSearchDir(ctx, second.path().c_str());
        for (const char *name : {"t", "m", "x"})
            ASSERT_EQ(ZR_CTX_LoadModule(ctx, name), ZR_OK);
        std::string late = second.Write(
            "m@@1.yin",
            ModuleText("m", Import("t") + Container("c", Leaf("a") + Leaf("b")) +
                                Augment("/t:c", Container("k", Leaf("a") + Leaf("b")))));
        memory.RunStatus([&] { return ZR_CTX_LoadModule(ctx, "m"); });
        EXPECT_NE(ctx.Node("/m:c/a"), nullptr);
        EXPECT_NE(ctx.Node("/m:c/x:x1"), nullptr);
        EXPECT_NE(ctx.Node("/t:c/m:k/a"), nullptr);
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_OK);
        EXPECT_TRUE(ctx.Node("/m:c/b") != nullptr || !ctx.Messages("m").empty());
        std::filesystem::remove(late);
    });
}
