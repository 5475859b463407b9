#include "model/module_records.h"
#include "model/node_record.h"
#include "print/print_support.h"
#include "print/printer.h"
#include "support/alloc.h"

namespace {

using zrtest::NodeTree;
using zrtest::Pieces;
using zrtest::TakePiece;
using zrtest::TestContext;

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
