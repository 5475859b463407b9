// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using yangtest::BodyOf;
using yangtest::Preparation;
using yangtest::ReportsOf;

TEST(Expander, PutsTheNodesOfAGroupingInThePlaceOfItsUse)
{
    EXPECT_EQ(
        BodyOf("grouping g { leaf a { type string; } container c { uses h; } } grouping h { leaf b "
               "{ type int8; } }"
               "container top { leaf first { type string; } uses g; leaf last { type string; } }"),
        R"Y(  <container name="top">
    <leaf name="first">
      <type name="string"/>
    </leaf>
    <leaf name="a">
      <type name="string"/>
    </leaf>
    <container name="c">
      <leaf name="b">
        <type name="int8"/>
      </leaf>
    </container>
    <leaf name="last">
      <type name="string"/>
    </leaf>
  </container>
)Y");
}

TEST(Expander, RefinesNodesInOneUseAlone)
{
    EXPECT_EQ(BodyOf("grouping g { leaf a { type string; default x; description d; must '1'; } }"
                     "container c { uses g { refine a { default y; mandatory false; must '2'; "
                     "config false; } } }"
                     "container d { uses g; }"),
              R"Y(  <container name="c">
    <leaf name="a">
      <type name="string"/>
      <description>
        <text>d</text>
      </description>
      <must condition="1"/>
      <default value="y"/>
      <mandatory value="false"/>
      <must condition="2"/>
      <config value="false"/>
    </leaf>
  </container>
  <container name="d">
    <leaf name="a">
      <type name="string"/>
      <default value="x"/>
      <description>
        <text>d</text>
      </description>
      <must condition="1"/>
    </leaf>
  </container>
)Y");
}

TEST(Expander, TheOutermostRefineWins)
{
    EXPECT_THAT(
        BodyOf("grouping g { leaf a { type string; } } grouping h { uses g { refine a { default "
               "inner; } } }"
               "uses h { refine a { default outer; } }"),
        testing::AllOf(HasSubstr("<default value=\"outer\"/>"), testing::Not(HasSubstr("inner"))));
}

TEST(Expander, HandsConditionsOfAUseDownToItsNodes)
{
    EXPECT_EQ(
        BodyOf("feature f; grouping g { leaf a { when '../k'; type string; } choice h { leaf "
               "b { type string; } } } container c { leaf k { type string; } uses g { when \"k = "
               "'x' or ../k\"; if-feature f; } }"),
        R"Y(  <feature name="f"/>
  <container name="c">
    <leaf name="k">
      <type name="string"/>
    </leaf>
    <leaf name="a">
      <when condition="(../k = 'x' or ../../k) and (../k)"/>
      <if-feature name="f"/>
      <type name="string"/>
    </leaf>
    <choice name="h">
      <when condition="k = 'x' or ../k"/>
      <if-feature name="f"/>
      <case name="b">
        <leaf name="b">
          <type name="string"/>
        </leaf>
      </case>
    </choice>
  </container>
)Y");
}

TEST(Expander, AugmentsTheNodesOfAUse)
{
    EXPECT_EQ(BodyOf("grouping g { container a { container b; } } uses g { augment a/b { when "
                     "'../x'; leaf c { type string; } } }"),
              R"Y(  <container name="a">
    <container name="b">
      <leaf name="c">
        <when condition="../../x"/>
        <type name="string"/>
      </leaf>
    </container>
  </container>
)Y");
}

TEST(Expander, NamesWhatAnotherModuleDefinesWithThePrefixOfThisOne)
{
    Preparation preparation;
    preparation.AddModule("m", "import g { prefix other; } uses other:all;");
    preparation.AddModule(
        "g",
        "import t { prefix t; } feature f; identity i; typedef own { type string; }"
        "grouping all { typedef local { type string; } leaf a { type own; if-feature f; }"
        "leaf b { type t:kind; } leaf c { type local; } leaf d { type identityref { base i; } "
        "default g:j; } leaf e { type leafref { path ../a; } must \"derived-from(../d, 'i')\"; } }"
        "identity j { base i; }");
    preparation.AddModule("t", "typedef kind { type int8; }");
    ASSERT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_EQ(preparation.text(), R"Y(<?xml version="1.0" encoding="UTF-8"?>
<module name="m" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:m="urn:m" xmlns:other="urn:g" xmlns:t="urn:t">
  <yang-version value="1.1"/>
  <namespace uri="urn:m"/>
  <prefix value="m"/>
  <import module="g">
    <prefix value="other"/>
  </import>
  <import module="t">
    <prefix value="t"/>
  </import>
  <leaf name="a">
    <type name="other:own"/>
    <if-feature name="other:f"/>
  </leaf>
  <leaf name="b">
    <type name="t:kind"/>
  </leaf>
  <leaf name="c">
    <type name="other:all-local"/>
  </leaf>
  <leaf name="d">
    <type name="identityref">
      <base name="other:i"/>
    </type>
    <default value="other:j"/>
  </leaf>
  <leaf name="e">
    <type name="leafref">
      <path value="../m:a"/>
    </type>
    <must condition="derived-from(../d, 'other:i')"/>
  </leaf>
</module>
)Y");
}

TEST(Expander, FindsAFreePrefixForAnImportThatItAdds)
{
    Preparation preparation;
    preparation.AddModule("m", "import g { prefix t; } uses t:all;");
    preparation.AddModule("g", "import t { prefix x; } grouping all { leaf b { type x:kind; } }");
    preparation.AddModule("t", "typedef kind { type int8; }");
    ASSERT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.text(),
                HasSubstr("<import module=\"t\">\n    <prefix value=\"t-2\"/>"));
    EXPECT_THAT(preparation.text(), HasSubstr("<type name=\"t-2:kind\"/>"));
}

TEST(Expander, MovesTypedefsToTheTopUnderReadableNames)
{
    std::string body = BodyOf(
        "typedef c-t { type string; } container c { typedef t { type string; } leaf a { type t; } "
        "container d { typedef u { type t; } leaf b { type u; } } }"
        "container e { container c { typedef t { type int8; } leaf a { type t; } } }");
    EXPECT_THAT(body, HasSubstr("<typedef name=\"c-t\">"));
    EXPECT_THAT(body, HasSubstr("<typedef name=\"c-t-2\">"));
    EXPECT_THAT(body, HasSubstr("<typedef name=\"d-u\">\n    <type name=\"c-t-2\"/>"));
    EXPECT_THAT(body, HasSubstr("<typedef name=\"e-c-t\">"));
    EXPECT_THAT(body, HasSubstr("<leaf name=\"b\">\n        <type name=\"d-u\"/>"));
}

TEST(Expander, GivesEachNodeOfAChoiceACase)
{
    EXPECT_EQ(BodyOf("choice h { leaf a { type string; } case b { leaf c { type string; } } choice "
                     "i { container j; } }"),
              R"Y(  <choice name="h">
    <case name="a">
      <leaf name="a">
        <type name="string"/>
      </leaf>
    </case>
    <case name="b">
      <leaf name="c">
        <type name="string"/>
      </leaf>
    </case>
    <case name="i">
      <choice name="i">
        <case name="j">
          <container name="j"/>
        </case>
      </choice>
    </case>
  </choice>
)Y");
}

TEST(Expander, AugmentsTargetsThatOtherAugmentsAdd)
{
    Preparation preparation;
    preparation.AddModule(
        "m", "import o { prefix p; } augment /p:top/mid/low { leaf a { type string; } }"
             "augment /p:top { container mid { container low; } } augment /p:act/p:input { leaf i "
             "{ type string; } }"
             "augment /p:top/p:h/p:x { leaf y { type string; } }");
    preparation.AddModule("o", "container top { choice h { leaf x { type string; } } } rpc act;");
    std::string body = BodyOf(preparation);
    EXPECT_THAT(preparation.reports(), IsEmpty());
    EXPECT_THAT(body, HasSubstr("<augment target-node=\"/p:top/m:mid/m:low\">"));
    EXPECT_THAT(body, HasSubstr("<augment target-node=\"/p:act/p:input\">"));
    EXPECT_THAT(body, testing::Not(HasSubstr("rpc")));
}

TEST(Expander, ReportsTargetsThatAreNotThere)
{
    EXPECT_THAT(
        ReportsOf(
            "\naugment /m:a { leaf x { type string; } }\ngrouping g { leaf b { type string; } }\n"
            "container c { uses g { refine c { description d; } augment b { leaf y { type string; "
            "} } } }"
            "\naugment /m:c/m:d/m:e { container x; }"),
        testing::IsSupersetOf(
            {"2:1: error: \"/m:a\" leads to nothing: there is no \"a\"",
             "4:24: error: \"c\" leads to nothing: there is no \"c\"",
             "5:1: error: \"/m:c/m:d/m:e\" leads to nothing: there is no \"d\""}));
}

TEST(Expander, ReportsTargetsThatCannotBeAugmented)
{
    EXPECT_THAT(
        ReportsOf(
            "\nleaf a { type string; } augment /m:a { leaf x { type string; } }\ncontainer c;\n"
            "augment /m:c { case k { leaf y { type string; } } }"),
        ElementsAre("2:25: error: \"/m:a\" is a leaf, which cannot be augmented",
                    "4:16: error: a case cannot be added to a container"));
}

TEST(Expander, ReportsMandatoryNodesThatAForeignAugmentAdds)
{
    Preparation preparation;
    preparation.AddModule("m",
                          "import o { prefix p; }\naugment /p:c { leaf a { type string; mandatory "
                          "true; } container b { "
                          "leaf-list d { type string; min-elements 1; } } leaf e { type string; "
                          "mandatory true; config false; } }\n"
                          "augment /p:c { when \"p:x\"; leaf f { type string; mandatory true; } }");
    preparation.AddModule("o", "container c { leaf x { type string; } }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:2:16: error: mandatory node \"a\" is added to another module "
                            "by an augment without \"when\"",
                            "m.yang:2:56: error: mandatory node \"b\" is added to another module "
                            "by an augment without \"when\""));
}

TEST(Expander, ReportsNamesThatAreUsedTwice)
{
    EXPECT_THAT(
        ReportsOf(
            "\ncontainer c { leaf a { type string; } container a; }\n"
            "choice h { case x { leaf p { type string; } } case y { leaf p { type string; } } }\n"
            "leaf q { type string; } choice i { leaf q { type string; } }\nrpc q;\n"
            "augment /m:c { leaf a { type string; } }"),
        ElementsAre("2:39: error: container \"a\" has the name of another node here",
                    "3:56: error: leaf \"p\" has the name of another node here",
                    "4:36: error: leaf \"q\" has the name of another node here",
                    "5:1: error: rpc \"q\" has the name of another node here",
                    "6:16: error: leaf \"a\" has the name of another node here"));
}

TEST(Expander, AChoiceMayHaveTheNameOfANodeInIt)
{
    EXPECT_THAT(ReportsOf("choice a { leaf a { type string; } } container c { choice x { case x { "
                          "leaf x { type string; } } } }"),
                IsEmpty());
}

TEST(Expander, ReportsWhatCannotBeRefined)
{
    EXPECT_THAT(ReportsOf("\ngrouping g { container c; leaf l { type string; } }\nuses g { refine "
                          "c { default x; }\n"
                          "refine l { presence x; min-elements 1; } }"),
                ElementsAre("3:21: error: \"default\" cannot be refined in container \"c\"",
                            "4:12: error: \"presence\" cannot be refined in leaf \"l\"",
                            "4:24: error: \"min-elements\" cannot be refined in leaf \"l\""));
}

TEST(Expander, StopsAtTheLimitOfNodes)
{
    std::string body = "grouping g0 { leaf a { type string; } }";
    for (int i = 1; i < 60; ++i) {
        std::string inner = "uses g" + std::to_string(i - 1) + ";";
        body += "grouping g" + std::to_string(i) + " { container a { " + inner +
                " } container b { " + inner + " } }";
    }
    Preparation preparation;
    preparation.AddModule("m", body + "uses g59;");
    ZR_YANG_SetOption(preparation.get(), ZR_YANG_OPTION_NODE_LIMIT, 10000);
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    ASSERT_EQ(preparation.reports().size(), 1u);
    EXPECT_THAT(preparation.reports().front(),
                HasSubstr("module \"m\" expands to more nodes than are allowed"));
    EXPECT_THAT(preparation.codes(), ElementsAre(ZR_YANG_CODE_LIMIT));
}

TEST(Expander, StopsWhereGroupingsWithoutNodesUseEachOther)
{
    std::string body = "grouping g0;";
    for (int i = 1; i < 100; ++i) {
        std::string inner = "uses g" + std::to_string(i - 1) + ";";
        body += "grouping g" + std::to_string(i) + " { " + inner + inner + " }";
    }
    EXPECT_EQ(ReportsOf(body + "uses g99;").size(), 1u);
}

TEST(Expander, ReportsNodesThatStandTooDeep)
{
    std::string body = "grouping g0 { leaf a { type string; } }";
    for (int i = 1; i < 400; ++i)
        body += "grouping g" + std::to_string(i) + " { container c { uses g" +
                std::to_string(i - 1) + "; } }";
    std::vector<std::string> reports = ReportsOf(body + "uses g399;");
    ASSERT_FALSE(reports.empty());
    EXPECT_THAT(reports.front(), HasSubstr("200 deep"));
}

TEST(Expander, ExpandsTheNodesOfExtensionInstances)
{
    EXPECT_EQ(BodyOf("extension data { argument name { yin-element true; } } grouping g { leaf a { "
                     "type string; } }"
                     "m:data x { container c { uses g; } }"),
              R"Y(  <extension name="data">
    <argument name="name">
      <yin-element value="true"/>
    </argument>
  </extension>
  <m:data>
    <m:name>x</m:name>
    <container name="c">
      <leaf name="a">
        <type name="string"/>
      </leaf>
    </container>
  </m:data>
)Y");
}
