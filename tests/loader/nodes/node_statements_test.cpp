// What each kind of schema node keeps of its statements.
#include <string>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "model/module_records.h"
#include "model/node_record.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::TestContext;

namespace {

// ---- container

TEST(Container, KeepsAllOfItsStatements)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS);
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <container name='c'>
          <when condition='m:a'/> <if-feature name='f'/> <must condition='m:b'/>
          <presence value='p'/> <config value='false'/> <status value='deprecated'/>
          <description><text>d</text></description>
          <container name='c1'/>
          <leaf name='c2'><type name='string'/></leaf>
          <leaf-list name='c3'><type name='string'/></leaf-list>
          <list name='c4'/> <choice name='c5'/> <anydata name='c6'/> <anyxml name='c7'/>
          <action name='c8'/> <notification name='c9'/>
          <if-feature name='g'/> <must condition='m:c'/>
          <m:ext/>
        </container>)"),
              ZR_OK);
    const ZrNode *node = ctx.Module("m")->dataNodes;
    EXPECT_STREQ(node->when, "m:a");
    ASSERT_EQ(node->ifFeatureCount, 2);
    EXPECT_STREQ(node->ifFeatures[1].featureName, "g");
    ASSERT_EQ(node->mustCount, 2);
    EXPECT_STREQ(node->musts[1].condition, "m:c");
    EXPECT_EQ(node->flags, 0x800u | 0x8 | 0x4 | 0x200);
    EXPECT_STREQ(node->description, "d");
    EXPECT_EQ(node->extInstCount, 1);
    std::string children;
    for (const ZrNode *child = node->firstChild; child != nullptr; child = child->next)
        children += child->name;
    EXPECT_EQ(children, "c1c2c3c4c5c6c7c8c9");
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(Container, WithTwoConfigsFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><config value='true'/>"
                                "<config value='true'/></container>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Statement \"config\" under statement \"container\" has repeated.",
                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(Container, WithAWrongConfigFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><config value='yes'/></container>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Failed to parse value \"yes\" of statement \"config\".",
                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(Container, GivesItsConfigToWhatStandsInIt)
{
    TestContext ctx;
    // The config statement may stand behind the children.
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <container name='c'>
          <container name='d'><leaf name='l'><type name='string'/></leaf></container>
          <config value='false'/>
        </container>)"),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:c/d/l")->flags, uint32_t{ZRS_FLAG_CONFIG_FALSE});
}

TEST(Container, GivesItsNacmFlagsToWhatStandsInIt)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(R"(
        <module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:nacm='urn:nacm'>
          <namespace uri='urn:m'/> <prefix value='m'/>
          <import module='ietf-netconf-acm'><prefix value='nacm'/></import>
          <container name='c'>
            <container name='d'><leaf name='l'><type name='string'/></leaf></container>
            <nacm:default-deny-all/>
          </container>
        </module>)"),
              ZR_OK);
    EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(ctx.Node("/m:c/d/l")), 1u);
}

// ---- leaf and leaf-list

TEST(Leaf, KeepsAllOfItsStatements)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <leaf name='l'>
          <units name='u'/> <default value='7'/> <type name='int8'/> <config value='true'/>
          <mandatory value='false'/> <status value='obsolete'/>
          <when condition='a'/> <must condition='b'/> <if-feature name='f'/> <m:ext/>
          <description><text>d</text></description>
        </leaf>)"),
              ZR_OK);
    const ZrNode *node = ctx.Node("/m:l");
    const auto *info = static_cast<const ZrsLeafInfo *>(node->info);
    EXPECT_EQ(info->realType.baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_STREQ(info->defaultValue, "7");
    EXPECT_STREQ(info->units, "u");
    EXPECT_EQ(node->flags, 0x8u | 0x2 | 0x20 | 0x400);
    EXPECT_STREQ(node->when, "a");
    EXPECT_EQ(node->mustCount, 1);
    EXPECT_EQ(node->ifFeatureCount, 1);
    EXPECT_EQ(node->extInstCount, 1);
    EXPECT_STREQ(node->description, "d");
}

TEST(Leaf, WithoutATypeFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<container name='c'><leaf name='l'/></container>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("leaf \"l\" must define with type statement.",
                                            "Failed to parse \"container\" statement \"c\"."));
}

TEST(LeafList, WithoutATypeFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf-list name='l'><default value='a'/></leaf-list>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("leaf-list \"l\" must define with type statement."));
}

TEST(LeafList, KeepsAllDefaultsInOrder)
{
    TestContext ctx(ZR_CTX_KEEP_UNITS);
    ASSERT_EQ(ctx.LoadBody("m", "<leaf-list name='l'><default value='b'/><type name='string'/>"
                                "<ordered-by value='user'/><default value='a'/><units name='u'/>"
                                "<default value='b'/></leaf-list>"),
              ZR_OK);
    const ZrNode *node = ctx.Node("/m:l");
    const auto *info = static_cast<const ZrsLeafListInfo *>(node->info);
    ASSERT_EQ(info->defaultCount, 3);
    EXPECT_STREQ(info->defaults[0], "b");
    EXPECT_STREQ(info->defaults[1], "a");
    EXPECT_STREQ(info->defaults[2], "b");
    EXPECT_STREQ(info->units, "u");
    EXPECT_EQ(node->flags, ZRS_FLAG_ORDERED_BY_USER);
}

TEST(Leaf, HasOneDefaultOnly)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<leaf name='l'><default value='b'/><type name='string'/>"
                                "<default value='b'/></leaf>"),
              ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(),
                ElementsAre("Statement \"default\" under statement \"leaf\" has repeated.",
                            "Failed to parse \"leaf\" statement \"l\"."));
}

TEST(LeafDefault, OfAnIdentityrefIsKeptInModuleNameForm)
{
    TestContext ctx;
    ASSERT_EQ(ctx.Load(R"(
        <module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>
          <namespace uri='urn:m'/> <prefix value='p'/>
          <leaf name='l'><default value='p:i'/><type name='identityref'><base name='i'/></type>
          </leaf>
          <leaf-list name='ll'><default value='j'/><type name='identityref'><base name='i'/></type>
          </leaf-list>
          <identity name='i'/>
        </module>)"),
              ZR_OK);
    const auto *leaf = static_cast<const ZrsLeafInfo *>(ctx.Node("/m:l")->info);
    EXPECT_STREQ(leaf->defaultValue, "m:i");
    const auto *leafList = static_cast<const ZrsLeafListInfo *>(ctx.Node("/m:ll")->info);
    EXPECT_STREQ(leafList->defaults[0], "m:j");
}

TEST(LeafDefault, OfAnIdentityrefWithAnUnknownPrefixFails)
{
    for (const char *keyword : {"leaf", "leaf-list"}) {
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", "<" + std::string(keyword) +
                                        " name='l'><type name='identityref'><base name='i'/>"
                                        "</type><default value='q:i'/></" +
                                        keyword + ">"),
                  ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(),
                    ElementsAre("Failed to parse statement \"" + std::string(keyword) +
                                "\" under statement \"module\"."));
    }
}

// ---- list

TEST(List, MarksItsKeys)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", R"(
        <list name='l'>
          <key value='b  a'/> <ordered-by value='user'/>
          <leaf name='a'><type name='string'/></leaf>
          <leaf name='b'><type name='string'/></leaf>
          <leaf name='c'><type name='string'/></leaf>
        </list>)"),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:l")->keyCount, 2);
    EXPECT_EQ(ctx.Node("/m:l")->flags, ZRS_FLAG_ORDERED_BY_USER);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/a")), 1u);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/b")), 1u);
    EXPECT_EQ(ZR_NODE_IsKey(ctx.Node("/m:l/c")), 0u);
}

TEST(List, MayHaveNoKey)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<list name='l'><config value='false'/></list>"), ZR_OK);
    EXPECT_EQ(ctx.Node("/m:l")->keyCount, 0);
}

TEST(List, WithAKeyThatIsNoLeafOfItFails)
{
    for (const char *content :
         {"", "<leaf name='b'><type name='string'/></leaf>",
          "<leaf-list name='a'><type name='string'/></leaf-list>", "<container name='a'/>"}) {
        TestContext ctx;
        EXPECT_EQ(
            ctx.LoadBody("m", "<list name='l'><key value='a'/>" + std::string(content) + "</list>"),
            ZR_ERR_FAILED)
            << content;
        EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse value \"a\" of statement \"key\".",
                                                "Failed to parse \"list\" statement \"l\"."));
    }
}

// ---- choice, rpc, augment

TEST(Choice, KeepsItsDefaultCase)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<choice name='c'><default value='b'/><mandatory value='true'/>"
                                "<case name='a'><leaf name='x'><type name='string'/></leaf></case>"
                                "<case name='b'/><container name='d'/></choice>"),
              ZR_OK);
    const ZrNode *choice = ctx.Module("m")->dataNodes;
    EXPECT_STREQ(static_cast<const ZrsChoiceInfo *>(choice->info)->defaultCase, "b");
    EXPECT_EQ(choice->flags, ZRS_FLAG_MANDATORY_TRUE);
    EXPECT_EQ(choice->firstChild->kind, uint32_t{ZR_NODE_CASE});
    EXPECT_EQ(choice->lastChild->kind, uint32_t{ZR_NODE_CONTAINER});
}

TEST(Rpc, HasOneInputAndOneOutput)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", "<rpc name='r'><output><leaf name='o'><type name='string'/></leaf>"
                                "</output><input><must condition='i'/></input></rpc>"),
              ZR_OK);
    const ZrNode *rpc = ctx.Module("m")->rpcs;
    EXPECT_STREQ(rpc->firstChild->name, "output");
    EXPECT_STREQ(rpc->lastChild->name, "input");
    EXPECT_EQ(rpc->lastChild->mustCount, 1);
    for (const char *keyword : {"input", "output"}) {
        std::string element = "<" + std::string(keyword) + "/>";
        EXPECT_EQ(ctx.LoadBody("n", "<rpc name='r'>" + element + element + "</rpc>"),
                  ZR_ERR_FAILED);
        EXPECT_EQ(ctx.Messages("n")[0], "Statement \"" + std::string(keyword) +
                                            "\" under statement \"rpc\" has repeated.");
        ZR_CTX_DeleteErrNodeByModName(ctx.get()->errMng, "n");
    }
}

TEST(Augment, PutsItsChildrenUnderItsConditions)
{
    ModuleUnderTest module;
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseAugment,
                    "<augment target-node='/x:a'><leaf name='l'><type name='string'/></leaf>"
                    "<when condition='x:b'/><if-feature name='f'/></augment>",
                    module.get(), ZRS_STMT_MODULE),
              ZR_OK);
    const ZrNode *augment = module->augments;
    EXPECT_STREQ(augment->when, "x-mod:b");
    EXPECT_STREQ(augment->firstChild->when, "../x-mod:b");
    ASSERT_EQ(augment->firstChild->ifFeatureCount, 1);
    EXPECT_STREQ(augment->firstChild->ifFeatures[0].featureName, "f");
}

TEST(Augment, WithoutAnAbsoluteTargetFails)
{
    for (const char *attribute : {"", "target-node=''", "target-node='x:a'"}) {
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", "<augment " + std::string(attribute) + "/>"), ZR_ERR_FAILED);
        EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to get value of statement \"augment\"."));
    }
}

TEST(Augment, OfATargetWithAnUnknownPrefixFails)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<augment target-node='/q:a'/>"), ZR_ERR_FAILED);
    EXPECT_THAT(ctx.Messages(), ElementsAre("Failed to parse \"augment\" statement \"/q:a\"."));
}

} // namespace
