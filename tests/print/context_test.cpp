#include "model/module_records.h"
#include "print/nodes.h"
#include "print/print_support.h"
#include "print/printer.h"

namespace {

using zrtest::Pieces;
using zrtest::TakePiece;
using zrtest::TestContext;

TEST(PrintContext, PassesToTheLevelBelowWithoutItsFlags)
{
    char buffer[4] = "";
    int user = 0;
    ZrsPrintCtx parent = {5, 2, 17, ZRS_PRINT_INPUT, 4, 1, buffer, &user, 0x3, TakePiece};
    ZrsPrintCtx child = {};
    child.flags = 0x2;
    ZRS_NODE_InheritPrintPara(&child, &parent);
    EXPECT_EQ(child.retractMask, 5u);
    EXPECT_EQ(child.level, 2u);
    EXPECT_EQ(child.maxNameLength, 17u);
    EXPECT_EQ(child.accessMode, ZRS_PRINT_INPUT);
    EXPECT_EQ(child.bufferSize, 4u);
    EXPECT_EQ(child.usedLength, 1u);
    EXPECT_EQ(child.buffer, buffer);
    EXPECT_EQ(child.userData, &user);
    EXPECT_EQ(child.flags, 0u);
    EXPECT_EQ(child.callback, TakePiece);
}

TEST(PrintContext, OptionsOfThePrintingPassToEveryLevel)
{
    constexpr uint32_t kOption = 0x10000;
    ZrsPrintCtx print = {};
    print.level = 1;
    print.flags = kOption;
    zr::SetNodeFlags(&print, ZRS_PRINT_LINE_ONLY | ZRS_PRINT_LAST_SHOWN);
    EXPECT_EQ(print.flags, kOption | ZRS_PRINT_LINE_ONLY | ZRS_PRINT_LAST_SHOWN);
    ZrsPrintCtx below = zr::LevelBelow(&print);
    EXPECT_EQ(below.level, 2u);
    EXPECT_EQ(below.flags, kOption);
    EXPECT_EQ(zr::LevelBelow(&below).flags, kOption);
}

TEST(PrintContext, HandsTheBufferOverFrom7168CharactersOn)
{
    std::string buffer(8192, 'x');
    Pieces pieces;
    ZrsPrintCtx print = {};
    print.buffer = buffer.data();
    print.bufferSize = 8192;
    print.callback = TakePiece;
    print.userData = &pieces;
    print.usedLength = 7167;
    EXPECT_EQ(ZRS_NODE_PrintAllocBuffer(&print), ZR_OK);
    EXPECT_TRUE(pieces.pieces.empty());
    EXPECT_EQ(print.usedLength, 7167u);
    print.usedLength = 7168;
    buffer[7168] = '\0';
    EXPECT_EQ(ZRS_NODE_PrintAllocBuffer(&print), ZR_OK);
    EXPECT_EQ(pieces.Whole(), std::string(7168, 'x'));
    EXPECT_EQ(print.usedLength, 0u);
    print.usedLength = 7168;
    buffer[0] = 'x';
    pieces.failAt = 1;
    EXPECT_EQ(ZRS_NODE_PrintAllocBuffer(&print), ZR_ERR_INVALID);
}

TEST(PrintContext, TheWidthIsThatOfTheLongestNameOfAKindFromContainerToAnyxml)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(
      <yang-version value="1.1"/>
      <container name="box">
        <leaf name="four"><type name="int8"/></leaf>
        <anyxml name="seventy"/>
        <choice name="six-ch"><case name="a-case-name"/></choice>
        <action name="an-action-with-a-name"/>
        <notification name="a-notification-with-a-name"/>
      </container>)"),
              ZR_OK);
    const ZrMod *module = ctx.Module("m");
    const ZrNode *box = ctx.Node("/m:box");
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(module, box, nullptr), 3u);
    const ZrNode *four = ctx.Node("/m:box/four");
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(module, four, nullptr), 7u);
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(module, four, four), 4u);
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(module, ctx.Node("/m:box/six-ch/a-case-name"), nullptr), 11u);
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(module, nullptr, nullptr), 0u);
    // For another module every name carries "m:".
    EXPECT_EQ(ZRS_NODE_PrintGetMaxLen(nullptr, four, nullptr), 9u);
}

} // namespace
