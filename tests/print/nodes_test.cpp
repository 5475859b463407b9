// SPDX-License-Identifier: Apache-2.0
#include "print/nodes.h"

#include "model/module_records.h"
#include "print/print_support.h"
#include "print/printer.h"

namespace {

using zrtest::Pieces;
using zrtest::TakePiece;
using zrtest::TestContext;
using zrtest::Tree;
using zrtest::TreeOfBody;

TEST(PrintContainer, IsMarkedWhenItHasPresence)
{
    EXPECT_EQ(TreeOfBody(R"(
      <container name="plain"/>
      <container name="present"><presence value="on"/></container>)"),
              "module: m\n"
              "+--rw plain\n"
              "+--rw present!\n");
}

TEST(PrintLeaf, IsOptionalUnlessItIsAKeyOrMandatory)
{
    EXPECT_EQ(TreeOfBody(R"(
      <list name="list"><key value="key"/>
        <leaf name="key"><type name="string"/></leaf>
        <leaf name="needed"><type name="string"/><mandatory value="true"/></leaf>
        <leaf name="may"><type name="string"/><mandatory value="false"/></leaf>
      </list>)"),
              "module: m\n"
              "+--rw list* [key]\n"
              "   +--rw key       string\n"
              "   +--rw needed    string\n"
              "   +--rw may?      string\n");
}

TEST(PrintLeaf, ShowsItsOwnDefaultButNotItsTypedefs)
{
    EXPECT_EQ(TreeOfBody(R"(
      <typedef name="t"><type name="int8"/><default value="1"/></typedef>
      <leaf name="own"><type name="t"/><default value="2"/></leaf>
      <leaf name="typedef"><type name="t"/></leaf>
      <leaf name="empty"><type name="string"/><default value=""/></leaf>)"),
              "module: m\n"
              "+--rw own?       t <2>\n"
              "+--rw typedef?   t\n"
              "+--rw empty?     string <>\n");
}

TEST(PrintLeafList, IsMarkedAndShowsNoDefault)
{
    EXPECT_EQ(TreeOfBody(R"(
      <leaf-list name="many"><type name="int8"/></leaf-list>
      <leaf-list name="more"><type name="string"/><default value="x"/></leaf-list>
      <leaf name="longest-name"><type name="int8"/></leaf>)"),
              "module: m\n"
              "+--rw many*           int8\n"
              "+--rw more*           string\n"
              "+--rw longest-name?   int8\n");
}

TEST(PrintList, NamesItsKeysInSchemaOrder)
{
    EXPECT_EQ(TreeOfBody(R"(
      <list name="one"><key value="a"/><leaf name="a"><type name="int8"/></leaf></list>
      <list name="two"><key value="b a"/>
        <leaf name="a"><type name="int8"/></leaf>
        <leaf name="c"><type name="int8"/></leaf>
        <leaf name="b"><type name="int8"/></leaf>
      </list>)"),
              "module: m\n"
              "+--rw one* [a]\n"
              "|  +--rw a    int8\n"
              "+--rw two* [a b]\n"
              "   +--rw a    int8\n"
              "   +--rw c?   int8\n"
              "   +--rw b    int8\n");
}

TEST(PrintList, WithoutKeysHasEmptyBrackets)
{
    EXPECT_EQ(TreeOfBody(R"(
      <list name="log"><config value="false"/><leaf name="a"><type name="int8"/></leaf></list>)"),
              "module: m\n"
              "+--ro log* []\n"
              "   +--ro a?   int8\n");
}

TEST(PrintChoice, StandsInParenthesesWithItsDefaultCase)
{
    EXPECT_EQ(TreeOfBody(R"(
      <choice name="free"><default value="x"/><case name="x"/></choice>
      <choice name="forced"><mandatory value="true"/><case name="y"/></choice>
      <choice name="state"><config value="false"/><case name="z"/></choice>)"),
              "module: m\n"
              "+--rw (free)? <x>\n"
              "|  +--:(x)\n"
              "+--rw (forced)\n"
              "|  +--:(y)\n"
              "+--ro (state)?\n"
              "   +--:(z)\n");
}

TEST(PrintCase, WhoseLineIsTooLongFailsWithoutItsNodes)
{
    TestContext ctx;
    ASSERT_EQ(
        ctx.LoadBody("m", "<choice name=\"choice\"><case name=\"" + std::string(8192, 'c') +
                              "\"><leaf name=\"x\"><type name=\"int8\"/></leaf></case></choice>"),
        ZR_OK);
    zrtest::Pieces pieces;
    EXPECT_EQ(ZR_MOD_PrintModelTree(ctx.Module("m"), zrtest::TakePiece, &pieces), ZR_ERR_FAILED);
    EXPECT_EQ(pieces.Whole(), "module: m\n+--rw (choice)?\n");
}

TEST(PrintCase, HasAWidthOfItsOwnForItsNodes)
{
    EXPECT_EQ(TreeOfBody(R"(
      <choice name="choice">
        <case name="a-long-case-name">
          <leaf name="x"><type name="int8"/></leaf>
          <leaf name="yy"><type name="int8"/></leaf>
        </case>
        <case name="other"><leaf name="z"><type name="int8"/></leaf></case>
      </choice>)"),
              "module: m\n"
              "+--rw (choice)?\n"
              "   +--:(a-long-case-name)\n"
              "   |  +--rw x?    int8\n"
              "   |  +--rw yy?   int8\n"
              "   +--:(other)\n"
              "      +--rw z?   int8\n");
}

TEST(PrintCase, IsImpliedForAShorthandNode)
{
    EXPECT_EQ(TreeOfBody(R"(
      <choice name="choice">
        <leaf name="a"><type name="int8"/></leaf>
        <container name="box">
          <leaf name="in"><type name="int8"/></leaf>
          <leaf name="side"><type name="int8"/></leaf>
        </container>
        <leaf-list name="many"><type name="int8"/></leaf-list>
        <anyxml name="any"/>
      </choice>
      <leaf name="after"><type name="int8"/></leaf>)"),
              "module: m\n"
              "+--rw (choice)?\n"
              "|  +--:(a)\n"
              "|  |  +--rw a?      int8\n"
              "|  +--:(box)\n"
              "|  |  +--rw box\n"
              "|  |     +--rw in?     int8\n"
              "|  |     +--rw side?   int8\n"
              "|  +--:(many)\n"
              "|  |  +--rw many*   int8\n"
              "|  +--:(any)\n"
              "|     +--rw any?    anyxml\n"
              "+--rw after?    int8\n");
}

TEST(PrintCase, IsImpliedForAChoiceInAChoice)
{
    EXPECT_EQ(TreeOfBody(R"(
      <choice name="outer">
        <choice name="inner"><leaf name="a"><type name="int8"/></leaf></choice>
        <case name="last"/>
      </choice>)"),
              "module: m\n"
              "+--rw (outer)?\n"
              "   +--:(inner)\n"
              "   |  +--rw (inner)?\n"
              "   |     +--:(a)\n"
              "   |        +--rw a?   int8\n"
              "   +--:(last)\n");
}

TEST(PrintAnyDataXml, NamesTheStatementInTheTypeColumn)
{
    EXPECT_EQ(TreeOfBody(R"(
      <yang-version value="1.1"/>
      <anydata name="data"/>
      <anyxml name="xml"/>
      <anydata name="must-data"><mandatory value="true"/></anydata>)"),
              "module: m\n"
              "+--rw data?        anydata\n"
              "+--rw xml?         anyxml\n"
              "+--rw must-data    anydata\n");
}

TEST(PrintRpcAction, ShowsInputAndOutputWithTheirAccess)
{
    EXPECT_EQ(TreeOfBody(R"(
      <rpc name="restart">
        <input>
          <leaf name="delay"><type name="uint8"/></leaf>
          <container name="who"><leaf name="name"><type name="string"/></leaf></container>
          <choice name="how"><leaf name="hard"><type name="empty"/></leaf></choice>
        </input>
        <output><leaf name="done"><type name="boolean"/></leaf></output>
      </rpc>
      <rpc name="stop"/>)"),
              "module: m\n"
              "rpcs:\n"
              "+---x restart\n"
              "|  +---w input\n"
              "|  |  +---w delay?   uint8\n"
              "|  |  +---w who\n"
              "|  |  |  +---w name?   string\n"
              "|  |  +---w (how)?\n"
              "|  |     +--:(hard)\n"
              "|  |        +---w hard?   empty\n"
              "|  +--ro output\n"
              "|     +--ro done?   boolean\n"
              "+---x stop\n");
}

TEST(PrintRpcAction, ShowsAnActionInsideAList)
{
    EXPECT_EQ(TreeOfBody(R"(
      <yang-version value="1.1"/>
      <list name="server"><key value="name"/>
        <leaf name="name"><type name="string"/></leaf>
        <action name="reset">
          <input><leaf name="at"><type name="string"/></leaf></input>
          <output><leaf name="finished-at"><type name="string"/></leaf></output>
        </action>
        <leaf name="n"><type name="int8"/></leaf>
      </list>)"),
              "module: m\n"
              "+--rw server* [name]\n"
              "   +--rw name    string\n"
              "   +---x reset\n"
              "   |  +---w input\n"
              "   |  |  +---w at?   string\n"
              "   |  +--ro output\n"
              "   |     +--ro finished-at?   string\n"
              "   +--rw n?      int8\n");
}

TEST(PrintNotif, ShowsItsContentAsState)
{
    EXPECT_EQ(TreeOfBody(R"(
      <yang-version value="1.1"/>
      <container name="box">
        <notification name="moved"><leaf name="where"><type name="string"/></leaf></notification>
        <leaf name="x"><type name="int8"/></leaf>
      </container>
      <notification name="event">
        <leaf name="a"><type name="int8"/></leaf>
        <container name="more"><leaf-list name="b"><type name="int8"/></leaf-list></container>
      </notification>)"),
              "module: m\n"
              "+--rw box\n"
              "   +---n moved\n"
              "   |  +--ro where?   string\n"
              "   +--rw x?   int8\n"
              "notifications:\n"
              "+---n event\n"
              "   +--ro a?      int8\n"
              "   +--ro more\n"
              "      +--ro b*   int8\n");
}

TEST(PrintStatus, IsTheFirstCharacterOfEveryKindOfLine)
{
    EXPECT_EQ(TreeOfBody(R"(
      <yang-version value="1.1"/>
      <container name="old"><status value="deprecated"/>
        <leaf name="older"><type name="int8"/><status value="obsolete"/></leaf>
        <leaf name="now"><type name="int8"/><status value="current"/></leaf>
        <choice name="pick"><status value="obsolete"/>
          <case name="c"><status value="deprecated"/></case>
          <leaf name="d"><type name="int8"/><status value="obsolete"/></leaf>
        </choice>
        <action name="act"><status value="deprecated"/></action>
      </container>
      <rpc name="gone"><status value="obsolete"/><input><leaf name="x"><type name="int8"/></leaf></input></rpc>
      <notification name="going"><status value="deprecated"/></notification>)"),
              "module: m\n"
              "x--rw old\n"
              "   o--rw older?   int8\n"
              "   +--rw now?     int8\n"
              "   o--rw (pick)?\n"
              "   |  x--:(c)\n"
              "   |  o--:(d)\n"
              "   |     o--rw d?   int8\n"
              "   x---x act\n"
              "rpcs:\n"
              "o---x gone\n"
              "   +---w input\n"
              "      +---w x?   int8\n"
              "notifications:\n"
              "x---n going\n");
}

TEST(PrintAccess, FollowsConfigInDataNodes)
{
    EXPECT_EQ(TreeOfBody(R"(
      <container name="state"><config value="false"/>
        <container name="in"><leaf name="a"><type name="int8"/></leaf></container>
      </container>
      <container name="mixed">
        <leaf name="rw"><type name="int8"/></leaf>
        <leaf name="ro"><type name="int8"/><config value="false"/></leaf>
      </container>)"),
              "module: m\n"
              "+--ro state\n"
              "|  +--ro in\n"
              "|     +--ro a?   int8\n"
              "+--rw mixed\n"
              "   +--rw rw?   int8\n"
              "   +--ro ro?   int8\n");
}

TEST(PrintBars, GoOnToTheNextSiblingOfEveryLevel)
{
    EXPECT_EQ(TreeOfBody(R"(
      <container name="a">
        <container name="b">
          <container name="c"><leaf name="d"><type name="int8"/></leaf></container>
        </container>
        <leaf name="e"><type name="int8"/></leaf>
      </container>
      <container name="f"><container name="g"><container name="h"/></container></container>)"),
              "module: m\n"
              "+--rw a\n"
              "|  +--rw b\n"
              "|  |  +--rw c\n"
              "|  |     +--rw d?   int8\n"
              "|  +--rw e?   int8\n"
              "+--rw f\n"
              "   +--rw g\n"
              "      +--rw h\n");
}

TEST(PrintBars, EndAtTheThirtySecondLevel)
{
    // Every level has a second node, so that a bar stands on each level that can have one.
    std::string open;
    std::string close;
    for (int i = 1; i <= 35; ++i) {
        open += "<container name=\"a\">";
        close += "</container><container name=\"b\"/>";
    }
    std::string tree = TreeOfBody(open + close);
    std::string bars;
    for (int level = 1; level <= 32; ++level)
        bars += "|  ";
    EXPECT_NE(tree.find("\n" + bars + "      +--rw a\n"), std::string::npos);
    EXPECT_NE(tree.find("\n" + bars + "      +--rw b\n"), std::string::npos);
    EXPECT_EQ(tree.find(bars + "|"), std::string::npos);
}

constexpr const char *kFeatures = R"(
  <feature name="f"/>
  <container name="top">
    <leaf name="a"><type name="int8"/></leaf>
    <container name="disabled-container"><if-feature name="f"/>
      <leaf name="below"><type name="int8"/></leaf>
    </container>
    <choice name="pick">
      <leaf name="one"><type name="int8"/></leaf>
      <leaf name="two"><if-feature name="f"/><type name="int8"/></leaf>
    </choice>
  </container>
  <leaf name="last"><if-feature name="f"/><type name="int8"/></leaf>
  <rpc name="rpc"><if-feature name="f"/></rpc>)";

TEST(PrintFeatures, ADisabledNodeIsMissingWithItsSubtreeAndDrawsNoBarButKeepsItsWidth)
{
    EXPECT_EQ(TreeOfBody(kFeatures), "module: m\n"
                                     "+--rw top\n"
                                     "   +--rw a?                    int8\n"
                                     "   +--rw (pick)?\n"
                                     "      +--:(one)\n"
                                     "         +--rw one?   int8\n"
                                     "rpcs:\n");
}

TEST(PrintFeatures, EverythingIsPrintedOnceTheFeatureIsOn)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", kFeatures), ZR_OK);
    ASSERT_EQ(ZR_MOD_EnableFeature(ctx.Module("m"), "f"), ZR_OK);
    EXPECT_EQ(Tree(ctx.Module("m")), "module: m\n"
                                     "+--rw top\n"
                                     "|  +--rw a?                    int8\n"
                                     "|  +--rw disabled-container\n"
                                     "|  |  +--rw below?   int8\n"
                                     "|  +--rw (pick)?\n"
                                     "|     +--:(one)\n"
                                     "|     |  +--rw one?   int8\n"
                                     "|     +--:(two)\n"
                                     "|        +--rw two?   int8\n"
                                     "+--rw last?   int8\n"
                                     "rpcs:\n"
                                     "+---x rpc\n");
}

struct TypeCase {
    const char *type; // the YIN
    const char *text;
};

const TypeCase kTypes[] = {
    {R"(<type name="binary"/>)", "binary"},
    {R"(<type name="bits"><bit name="a"/></type>)", "bits"},
    {R"(<type name="boolean"/>)", "boolean"},
    {R"(<type name="decimal64"><fraction-digits value="2"/></type>)", "decimal64"},
    {R"(<type name="empty"/>)", "empty"},
    {R"(<type name="enumeration"><enum name="a"/></type>)", "enumeration"},
    {R"(<type name="identityref"><base name="i"/></type>)", "identityref"},
    {R"(<type name="instance-identifier"/>)", "instance-identifier"},
    {R"(<type name="int8"/>)", "int8"},
    {R"(<type name="int16"/>)", "int16"},
    {R"(<type name="int32"/>)", "int32"},
    {R"(<type name="int64"/>)", "int64"},
    {R"(<type name="leafref"><path value="/m:a"/></type>)", "-> /m:a"},
    {R"(<type name="leafref"><path value="../a"/></type>)", "-> ../m:a"},
    {R"(<type name="string"/>)", "string"},
    {R"(<type name="uint8"/>)", "uint8"},
    {R"(<type name="uint16"/>)", "uint16"},
    {R"(<type name="uint32"/>)", "uint32"},
    {R"(<type name="uint64"/>)", "uint64"},
    {R"(<type name="union"><type name="int8"/></type>)", "union"},
    {R"(<type name="own"/>)", "own"},
    {R"(<type name="m:own"/>)", "own"},
    {R"(<type name="ref"/>)", "ref"},
    {R"(<type name="far:their"/>)", "far:their"},
};

TEST(PrintType, EveryTypeHasItsText)
{
    for (const TypeCase &row : kTypes) {
        SCOPED_TRACE(row.type);
        TestContext ctx;
        ASSERT_EQ(ctx.LoadBody("far", R"(<typedef name="their"><type name="int8"/></typedef>)"),
                  ZR_OK);
        ASSERT_EQ(ctx.LoadBody("m", std::string(R"(
          <import module="far"><prefix value="far"/></import>
          <identity name="i"/>
          <typedef name="own"><type name="int8"/></typedef>
          <typedef name="ref"><type name="leafref"><path value="/m:a"/></type></typedef>
          <leaf name="a">)") + row.type +
                                        "</leaf>"),
                  ZR_OK)
            << ::testing::PrintToString(ctx.Messages());
        EXPECT_EQ(Tree(ctx.Module("m")), std::string("module: m\n+--rw a?   ") + row.text + "\n");
    }
}

std::string TextOf(const ZrtRealType &type)
{
    char name[] = "m";
    ZrMod module = {};
    module.name = name;
    char buffer[64] = "";
    ZrsPrintCtx print = {};
    print.buffer = buffer;
    print.bufferSize = sizeof(buffer);
    zr::LineWriter line(&print);
    zr::PutType(line, &module, &type);
    EXPECT_EQ(line.Finish(), ZR_OK);
    return buffer;
}

TEST(PrintType, WhatHasNoTextIsUnknown)
{
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_DERIVED, 0, 0, nullptr}), "unknown\n");
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_NONE, 0, 0, nullptr}), "unknown\n");
}

TEST(PrintType, ALeafrefWithoutPathIsNamedByItsKeyword)
{
    EXPECT_EQ(TextOf(ZrtRealType{ZRT_TYPE_LEAFREF, 0, 0, nullptr}), "leafref\n");
}

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
