// SPDX-License-Identifier: Apache-2.0
#include "model/module_records.h"

#include "model/node_record.h"
#include "print/print_support.h"
#include "print/printer.h"
#include "schema/augment/augment.h"
#include "schema/nodes/node.h"
#include "support/alloc.h"

namespace {

using zrtest::NodeTree;
using zrtest::Pieces;
using zrtest::TakePiece;
using zrtest::TestContext;
using zrtest::Tree;
using zrtest::TreeOfBody;

TEST(PrintModelTree, AnEmptyModuleIsItsHeader)
{
    EXPECT_EQ(TreeOfBody(""), "module: m\n");
}

TEST(PrintModelTree, SectionsStandOnlyWhereThereIsSomething)
{
    EXPECT_EQ(TreeOfBody(R"(<leaf name="a"><type name="int8"/></leaf>)"),
              "module: m\n+--rw a?   int8\n");
    EXPECT_EQ(TreeOfBody(R"(<rpc name="r"/>)"), "module: m\nrpcs:\n+---x r\n");
    EXPECT_EQ(TreeOfBody(R"(<notification name="n"/>)"), "module: m\nnotifications:\n+---n n\n");
    EXPECT_EQ(TreeOfBody(R"(<notification name="n"/><rpc name="r"/><rpc name="s"/>)"),
              "module: m\nrpcs:\n+---x r\n+---x s\nnotifications:\n+---n n\n");
}

// The augmented module, and two that put nodes into it.
constexpr const char *kBase = R"(
  <container name="top">
    <leaf name="own"><type name="int8"/></leaf>
  </container>
  <rpc name="rpc"><input><leaf name="arg"><type name="int8"/></leaf></input></rpc>
  <notification name="event"/>)";
constexpr const char *kFirst = R"(
  <import module="base"><prefix value="b"/></import>
  <augment target-node="/b:top">
    <leaf name="one"><type name="int8"/></leaf>
    <container name="box"><leaf name="deep"><type name="int8"/></leaf></container>
  </augment>)";
constexpr const char *kSecond = R"(
  <import module="base"><prefix value="b"/></import>
  <augment target-node="/b:top"><leaf name="a-much-longer-name"><type name="int8"/></leaf></augment>
  <augment target-node="/b:rpc/b:input"><leaf name="in"><type name="int8"/></leaf></augment>
  <augment target-node="/b:rpc/b:output"><leaf name="out"><type name="int8"/></leaf></augment>
  <augment target-node="/b:event"><leaf name="what"><type name="int8"/></leaf></augment>)";

class PrintAugments : public ::testing::Test {
protected:
    void TearDown() override { ZR_CTX_Delete(ctx_); }
    void Load(const char *name, const char *body)
    {
        ASSERT_EQ(ZR_CTX_LoadMemory(ctx_, zrtest::ModuleText(name, body).c_str()), ZR_OK);
    }
    std::string TreeOf(const char *name) { return Tree(ZR_CTX_GetModuleByModName(ctx_, name)); }

    ZrCtx *ctx_ = ZR_CTX_Create(0);
};

TEST_F(PrintAugments, NodesOfOtherModulesAreQualifiedInTheTargetsTree)
{
    Load("base", kBase);
    Load("first", kFirst);
    EXPECT_EQ(TreeOf("base"), "module: base\n"
                              "+--rw top\n"
                              "   +--rw own?         int8\n"
                              "   +--rw first:one?   int8\n"
                              "   +--rw first:box\n"
                              "      +--rw first:deep?   int8\n"
                              "rpcs:\n"
                              "+---x rpc\n"
                              "   +---w input\n"
                              "      +---w arg?   int8\n"
                              "notifications:\n"
                              "+---n event\n");
}

TEST_F(PrintAugments, AnAugmentsSectionHoldsItsOwnNodesOnly)
{
    Load("base", kBase);
    Load("first", kFirst);
    Load("second", kSecond);
    EXPECT_EQ(TreeOf("first"), "module: first\n"
                               "augment /base:top:\n"
                               "+--rw one?   int8\n"
                               "+--rw box\n"
                               "   +--rw deep?   int8\n");
}

TEST_F(PrintAugments, TheAccessFollowsTheCoupledTarget)
{
    Load("base", kBase);
    Load("second", kSecond);
    EXPECT_EQ(TreeOf("second"), "module: second\n"
                                "augment /base:top:\n"
                                "+--rw a-much-longer-name?   int8\n"
                                "augment /base:rpc/input:\n"
                                "+---w in?   int8\n"
                                "augment /base:rpc/output:\n"
                                "+--ro out?   int8\n"
                                "augment /base:event:\n"
                                "+--ro what?   int8\n");
}

TEST_F(PrintAugments, WithoutItsTargetAnAugmentIsPrintedAsConfiguration)
{
    ZR_CTX_LoadMemory(ctx_, zrtest::ModuleText("first", kFirst).c_str());
    EXPECT_EQ(TreeOf("first"), "module: first\n"
                               "augment /base:top:\n"
                               "+--rw one?   int8\n"
                               "+--rw box\n"
                               "   +--rw deep?   int8\n");
}

TEST_F(PrintAugments, ADisabledAugmentPrintsNothing)
{
    Load("base", kBase);
    Load("third", R"(
      <import module="base"><prefix value="b"/></import>
      <feature name="f"/>
      <augment target-node="/b:top"><if-feature name="f"/>
        <leaf name="x"><type name="int8"/></leaf>
      </augment>
      <augment target-node="/b:top">
        <leaf name="y"><type name="int8"/></leaf>
        <leaf name="disabled"><if-feature name="f"/><type name="int8"/></leaf>
      </augment>)");
    EXPECT_EQ(TreeOf("third"), "module: third\n"
                               "augment /base:top:\n"
                               "+--rw y?          int8\n");
    ASSERT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, "third"), "f"), ZR_OK);
    EXPECT_EQ(TreeOf("third"), "module: third\n"
                               "augment /base:top:\n"
                               "+--rw x?   int8\n"
                               "augment /base:top:\n"
                               "+--rw y?          int8\n"
                               "+--rw disabled?   int8\n");
}

TEST_F(PrintAugments, ACaseIsImpliedForAShorthandNodePutIntoAChoice)
{
    Load("base", R"(
      <choice name="pick"><leaf name="a"><type name="int8"/></leaf></choice>)");
    Load("third", R"(
      <import module="base"><prefix value="b"/></import>
      <augment target-node="/b:pick">
        <leaf name="x"><type name="int8"/></leaf>
        <case name="both"><leaf name="y"><type name="int8"/></leaf></case>
      </augment>)");
    EXPECT_EQ(TreeOf("third"), "module: third\n"
                               "augment /base:pick:\n"
                               "+--:(x)\n"
                               "|  +--rw x?      int8\n"
                               "+--:(both)\n"
                               "   +--rw y?   int8\n");
    EXPECT_EQ(TreeOf("base"), "module: base\n"
                              "+--rw (pick)?\n"
                              "   +--:(a)\n"
                              "   |  +--rw a?            int8\n"
                              "   +--:(third:x)\n"
                              "   |  +--rw third:x?      int8\n"
                              "   +--:(third:both)\n"
                              "      +--rw third:y?   int8\n");
}

TEST_F(PrintAugments, OnesOwnAugmentsArePrintedInBothPlaces)
{
    Load("own", R"(
      <container name="top"/>
      <augment target-node="/own:top"><leaf name="x"><type name="int8"/></leaf></augment>
      <augment target-node="/own:top"/>)");
    EXPECT_EQ(TreeOf("own"), "module: own\n"
                             "+--rw top\n"
                             "   +--rw x?   int8\n"
                             "augment /own:top:\n"
                             "+--rw x?   int8\n"
                             "augment /own:top:\n");
}

std::string ManyLeafs(int count)
{
    std::string body;
    for (int i = 0; i < count; ++i)
        body += "<leaf name=\"leaf-" + std::to_string(1000 + i) + "\"><type name=\"int8\"/></leaf>";
    return body;
}

TEST(PrintPieces, ALongTreeComesInPiecesThatEndWithALine)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", ManyLeafs(1000)), ZR_OK);
    Pieces pieces;
    ASSERT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_OK);
    EXPECT_EQ(pieces.pieces.size(), 4u);
    std::string expected = "module: m\n";
    for (int i = 0; i < 1000; ++i)
        expected += "+--rw leaf-" + std::to_string(1000 + i) + "?   int8\n";
    EXPECT_EQ(pieces.Whole(), expected);
    for (const std::string &piece : pieces.pieces) {
        EXPECT_EQ(piece.back(), '\n');
        EXPECT_LT(piece.size(), 8192u);
    }
}

TEST(PrintPieces, ALongTreeOfOneBranchComesInPiecesToo)
{
    std::string open;
    std::string close;
    for (int i = 0; i < 120; ++i) {
        open += "<container name=\"" + std::string(60, 'a') + "\">";
        close += "</container>";
    }
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", open + close), ZR_OK);
    Pieces pieces;
    ASSERT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_OK);
    EXPECT_GT(pieces.pieces.size(), 3u);
    std::string expected = "module: m\n";
    for (size_t i = 0; i < 120; ++i)
        expected += std::string(3 * i, ' ') + "+--rw " + std::string(60, 'a') + "\n";
    EXPECT_EQ(pieces.Whole(), expected);
}

TEST(PrintPieces, ALineOfThousandsOfCharactersIsPrintedWhereverItFalls)
{
    std::string text(5000, 'd');
    std::string body = ManyLeafs(250) +
                       R"(<leaf name="long"><type name="string"/><default value=")" + text +
                       R"("/></leaf>)";
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", body), ZR_OK);
    Pieces pieces;
    ASSERT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_OK);
    EXPECT_NE(pieces.Whole().find("+--rw long?        string <" + text + ">\n"), std::string::npos);
}

TEST(PrintPieces, ALineLongerThanTheBufferFailsAndWhatWasHandedOverStays)
{
    std::string body = ManyLeafs(1) + R"(<leaf name="long"><type name="string"/><default value=")" +
                       std::string(8192, 'd') + R"("/></leaf>)";
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", body), ZR_OK);
    Pieces pieces;
    EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_ERR_FAILED);
    EXPECT_EQ(pieces.Whole(), "module: m\n+--rw leaf-1000?   int8\n");
}

TEST(PrintPieces, ACallbackThatRefusesAPieceEndsThePrintingWith1)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", ManyLeafs(1000)), ZR_OK);
    for (size_t failAt = 0; failAt < 4; ++failAt) {
        Pieces pieces;
        pieces.failAt = failAt;
        EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_ERR_FAILED);
        EXPECT_EQ(pieces.pieces.size(), failAt);
    }
}

TEST(PrintModelTree, NullArgumentsAreRefused)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", ""), ZR_OK);
    Pieces pieces;
    EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_PrintModelTree(nullptr, TakePiece, &pieces), ZR_ERR_INVALID);
    EXPECT_TRUE(pieces.pieces.empty());
}

TEST(PrintModelTree, NeedsOneAllocationAndFailsWith12WithoutIt)
{
    zrtest::AllocGuard guard;
    {
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("m", ManyLeafs(1000)), ZR_OK);
        int64_t blocks = guard.LiveBlocks();
        Pieces pieces;
        guard.FailAt(0);
        EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_ERR_NO_MEMORY);
        EXPECT_TRUE(pieces.pieces.empty());
        guard.FailAt(1);
        EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), TakePiece, &pieces), ZR_OK);
        EXPECT_EQ(guard.Count(), 1u);
        guard.Stop();
        EXPECT_EQ(guard.LiveBlocks(), blocks);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(PrintSubTree, AWidthThatIsExceededFailsWith22)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(<leaf name="name"><type name="int8"/></leaf>)"), ZR_OK);
    const ZrMod *module = ctx.Module("m");
    char buffer[64] = "";
    Pieces pieces;
    ZrsPrintCtx print = {0, 1, 3, 0, sizeof(buffer), 0, buffer, &pieces, 0, TakePiece};
    EXPECT_EQ(ZRS_NODE_PrintSubTree(module, module->dataNodes, &print), ZR_ERR_INVALID);
    EXPECT_EQ(print.usedLength, 0u);
    print.maxNameLength = 4;
    EXPECT_EQ(ZRS_NODE_PrintSubTree(module, module->dataNodes, &print), ZR_OK);
    EXPECT_STREQ(buffer, "+--rw name?   int8\n");
}

TEST(PrintSubTree, UnknownAndAugmentNodesPrintNothing)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(<container name="box"/>)"), ZR_OK);
    ZrMod *module = ctx.Module("m");
    char buffer[64] = "";
    Pieces pieces;
    ZrsPrintCtx print = {0, 1, 3, 0, sizeof(buffer), 0, buffer, &pieces, 0, TakePiece};
    for (uint32_t kind : {ZR_NODE_UNKNOWN, ZR_NODE_AUGMENT}) {
        ZrNode *node = ZRS_NODE_New(kind);
        node->module = module;
        EXPECT_EQ(ZRS_NODE_PrintSubTree(module, node, &print), ZR_OK);
        ZRS_NODE_Free(node);
    }
    EXPECT_EQ(print.usedLength, 0u);
}

TEST(PrintSubTree, TheSectionsOfAModuleCanBePrintedApart)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(<container name="box"/><rpc name="r"/>)"), ZR_OK);
    char buffer[64] = "";
    Pieces pieces;
    ZrsPrintCtx print = {0, 1, 3, 0, sizeof(buffer), 0, buffer, &pieces, 0, TakePiece};
    EXPECT_EQ(ZRS_MOD_PrintModelTreeRpcNotif(ctx.Module("m"), &print), ZR_OK);
    EXPECT_STREQ(buffer, "rpcs:\n+---x r\n");
    EXPECT_EQ(ZRS_MOD_PrintModelTreeDataAug(ctx.Module("m"), &print), ZR_OK);
    EXPECT_STREQ(buffer, "rpcs:\n+---x r\n+--rw box\n");
}

constexpr const char *kBody = R"(
  <yang-version value="1.1"/>
  <feature name="f"/>
  <container name="top"><presence value="x"/>
    <leaf name="before"><type name="int8"/></leaf>
    <list name="item"><key value="id"/>
      <leaf name="id"><type name="string"/></leaf>
      <container name="box">
        <leaf name="a"><type name="int8"/></leaf>
        <leaf name="bb"><type name="int8"/></leaf>
      </container>
      <action name="act">
        <input><leaf name="arg"><type name="int8"/></leaf></input>
        <output><leaf name="res"><type name="int8"/></leaf></output>
      </action>
    </list>
    <choice name="pick">
      <case name="one"><leaf name="x"><type name="int8"/></leaf></case>
      <container name="short"><leaf name="y"><type name="int8"/></leaf></container>
      <leaf name="other"><type name="int8"/></leaf>
    </choice>
    <container name="off"><if-feature name="f"/><leaf name="z"><type name="int8"/></leaf></container>
  </container>
  <leaf name="last"><type name="int8"/></leaf>
  <rpc name="rpc"><input><container name="in"><leaf name="p"><type name="int8"/></leaf></container></input></rpc>
  <notification name="event"><leaf name="q"><type name="int8"/></leaf></notification>)";

class PrintNodesTree : public ::testing::Test {
protected:
    PrintNodesTree()
    {
        EXPECT_EQ(ctx_.LoadBody("m", kBody), ZR_OK) << ::testing::PrintToString(ctx_.Messages());
    }
    std::string Of(const char *path)
    {
        EXPECT_NE(ctx_.Node(path), nullptr) << path;
        return NodeTree(ctx_.Node(path));
    }

    TestContext ctx_;
};

TEST_F(PrintNodesTree, ShowsTheAncestorsAndTheWholeSubtree)
{
    EXPECT_EQ(Of("/m:top/item/box"), "module: m\n"
                                     "+--rw top!\n"
                                     "   +--rw item* [id]\n"
                                     "      +--rw box\n"
                                     "         +--rw a?    int8\n"
                                     "         +--rw bb?   int8\n");
}

TEST_F(PrintNodesTree, DrawsBarsBelowTheNodeOnly)
{
    EXPECT_EQ(Of("/m:top/item"), "module: m\n"
                                 "+--rw top!\n"
                                 "   +--rw item* [id]\n"
                                 "      +--rw id     string\n"
                                 "      +--rw box\n"
                                 "      |  +--rw a?    int8\n"
                                 "      |  +--rw bb?   int8\n"
                                 "      +---x act\n"
                                 "         +---w input\n"
                                 "         |  +---w arg?   int8\n"
                                 "         +--ro output\n"
                                 "            +--ro res?   int8\n");
}

TEST_F(PrintNodesTree, AlignsALeafAsAmongItsSiblings)
{
    EXPECT_EQ(Of("/m:top/before"), "module: m\n"
                                   "+--rw top!\n"
                                   "   +--rw before?   int8\n");
    EXPECT_EQ(Of("/m:last"), "module: m\n"
                             "+--rw last?   int8\n");
    EXPECT_EQ(Of("/m:top/item/box/a"), "module: m\n"
                                       "+--rw top!\n"
                                       "   +--rw item* [id]\n"
                                       "      +--rw box\n"
                                       "         +--rw a?    int8\n");
}

TEST_F(PrintNodesTree, ShowsCasesGivenAndImplied)
{
    EXPECT_EQ(Of("/m:top/pick/one/x"), "module: m\n"
                                       "+--rw top!\n"
                                       "   +--rw (pick)?\n"
                                       "      +--:(one)\n"
                                       "         +--rw x?   int8\n");
    EXPECT_EQ(Of("/m:top/pick/short/y"), "module: m\n"
                                         "+--rw top!\n"
                                         "   +--rw (pick)?\n"
                                         "      +--:(short)\n"
                                         "         +--rw short\n"
                                         "            +--rw y?   int8\n");
    EXPECT_EQ(Of("/m:top/pick/short"), Of("/m:top/pick/short/y"));
    EXPECT_EQ(Of("/m:top/pick/other"), "module: m\n"
                                       "+--rw top!\n"
                                       "   +--rw (pick)?\n"
                                       "      +--:(other)\n"
                                       "         +--rw other?   int8\n");
    EXPECT_EQ(Of("/m:top/pick/one"), Of("/m:top/pick/one/x"));
}

TEST_F(PrintNodesTree, KeepsTheAccessOfInputOutputAndNotification)
{
    EXPECT_EQ(Of("/m:rpc/input/in/p"), "module: m\n"
                                       "rpcs:\n"
                                       "+---x rpc\n"
                                       "   +---w input\n"
                                       "      +---w in\n"
                                       "         +---w p?   int8\n");
    EXPECT_EQ(Of("/m:event/q"), "module: m\n"
                                "notifications:\n"
                                "+---n event\n"
                                "   +--ro q?   int8\n");
    EXPECT_EQ(Of("/m:top/item/act/output/res"), "module: m\n"
                                                "+--rw top!\n"
                                                "   +--rw item* [id]\n"
                                                "      +---x act\n"
                                                "         +--ro output\n"
                                                "            +--ro res?   int8\n");
}

TEST_F(PrintNodesTree, ShowsAWholeRpcOrNotificationUnderItsSection)
{
    EXPECT_EQ(Of("/m:rpc"), Of("/m:rpc/input/in/p"));
    EXPECT_EQ(Of("/m:event"), Of("/m:event/q"));
}

TEST_F(PrintNodesTree, LeavesOutADisabledNodeAndWhatIsBelowOne)
{
    EXPECT_EQ(Of("/m:top/off"), "module: m\n+--rw top!\n");
    EXPECT_EQ(Of("/m:top/off/z"), "module: m\n+--rw top!\n");
    ASSERT_EQ(ZR_MOD_EnableFeature(ctx_.Module("m"), "f"), ZR_OK);
    EXPECT_EQ(Of("/m:top/off/z"), "module: m\n"
                                  "+--rw top!\n"
                                  "   +--rw off\n"
                                  "      +--rw z?   int8\n");
}

TEST_F(PrintNodesTree, RefusesAnAugmentAndANodeInOneThatIsNotCoupled)
{
    ZR_CTX_LoadMemory(ctx_, zrtest::ModuleText("n", R"(
      <import module="nowhere"><prefix value="w"/></import>
      <augment target-node="/w:top"><leaf name="x"><type name="int8"/></leaf></augment>)")
                                .c_str());
    const ZrNode *augment = ctx_.Module("n")->augments;
    ASSERT_NE(augment, nullptr);
    EXPECT_EQ(NodeTree(augment), "status 1");
    EXPECT_EQ(NodeTree(augment->firstChild), "status 1");
    char buffer[64] = "";
    ZrsPrintCtx print = {0, 1, 0, 0, sizeof(buffer), 0, buffer, nullptr, 0, TakePiece};
    EXPECT_EQ(ZR_NODE_PrintNodeHeader(augment->firstChild, &print), ZR_ERR_INVALID);
    EXPECT_STREQ(buffer, "");
}

TEST_F(PrintNodesTree, ShowsANodeOfACoupledAugmentInTheTargetsModule)
{
    ASSERT_EQ(ctx_.LoadBody("n", R"(
      <import module="m"><prefix value="m"/></import>
      <augment target-node="/m:top"><leaf name="x"><type name="int8"/></leaf></augment>)"),
              ZR_OK);
    EXPECT_EQ(Of("/m:top/n:x"), "module: m\n"
                                "+--rw top!\n"
                                "   +--rw n:x?      int8\n");
}

TEST_F(PrintNodesTree, NullArgumentsAreRefused)
{
    Pieces pieces;
    EXPECT_EQ(ZR_NODE_PrintNodesTree(nullptr, TakePiece, &pieces), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_PrintNodesTree(ctx_.Node("/m:top"), nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_TRUE(pieces.pieces.empty());
}

TEST_F(PrintNodesTree, ACallbackThatRefusesTheTextFailsWith1)
{
    Pieces pieces;
    pieces.failAt = 0;
    EXPECT_EQ(ZR_NODE_PrintNodesTree(ctx_.Node("/m:top"), TakePiece, &pieces), ZR_ERR_FAILED);
}

TEST_F(PrintNodesTree, AnAncestorWhoseLineIsTooLongFails)
{
    ASSERT_EQ(
        ctx_.LoadBody("n", "<container name=\"" + std::string(8192, 'c') +
                               "\"><leaf name=\"x\"><type name=\"int8\"/></leaf></container>"),
        ZR_OK);
    EXPECT_EQ(NodeTree(ctx_.Module("n")->dataNodes->firstChild), "status 1");
}

TEST_F(PrintNodesTree, WithoutMemoryForTheBufferFailsWith12)
{
    zrtest::AllocGuard guard;
    Pieces pieces;
    const ZrNode *node = ctx_.Node("/m:top");
    guard.FailAt(0);
    EXPECT_EQ(ZR_NODE_PrintNodesTree(node, TakePiece, &pieces), ZR_ERR_NO_MEMORY);
    EXPECT_TRUE(pieces.pieces.empty());
    guard.Stop();
    EXPECT_EQ(ZR_NODE_PrintNodesTree(node, TakePiece, &pieces), ZR_OK);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(PrintNodesTree, AncestorsAreFoundByTheirLevel)
{
    const ZrNode *leaf = ctx_.Node("/m:top/item/box/a");
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(leaf, 1), ctx_.Node("/m:top"));
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(leaf, 3), ctx_.Node("/m:top/item/box"));
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(leaf, 4), leaf);
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(leaf, 5), nullptr);
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(leaf, 0), nullptr);
    EXPECT_EQ(ZRS_NODE_GetAncestorNodeBySpecifyLevel(nullptr, 1), nullptr);
}

} // namespace
