// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::HasSubstr;
using testing::Not;
using yangtest::BodyOf;
using yangtest::Preparation;

TEST(Writer, WritesAModulesHeadInTheOrderOfYin)
{
    Preparation preparation;
    preparation.AddModule("m", "import t { prefix p; } organization o; contact c; description \"a "
                               "< b & \\\"c\\\"\"; reference r; "
                               "revision 2020-02-02 { description new; } revision 2019-01-01;");
    preparation.AddModule("t", "");
    ASSERT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_EQ(preparation.text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<module name="m" xmlns="urn:ietf:params:xml:ns:yang:yin:1" xmlns:m="urn:m" xmlns:p="urn:t">
  <yang-version value="1.1"/>
  <namespace uri="urn:m"/>
  <prefix value="m"/>
  <import module="t">
    <prefix value="p"/>
  </import>
  <organization>
    <text>o</text>
  </organization>
  <contact>
    <text>c</text>
  </contact>
  <description>
    <text>a &lt; b &amp; "c"</text>
  </description>
  <reference>
    <text>r</text>
  </reference>
  <revision date="2020-02-02">
    <description>
      <text>new</text>
    </description>
  </revision>
  <revision date="2019-01-01"/>
</module>
)");
}

TEST(Writer, KeepsWhiteSpaceInAttributes)
{
    EXPECT_EQ(BodyOf("typedef t { type string; units \"a\\tb\\nc\\\"<>&\"; }"),
              R"(  <typedef name="t">
    <type name="string"/>
    <units name="a&#9;b&#10;c&quot;&lt;&gt;&amp;"/>
  </typedef>
)");
}

TEST(Writer, LeavesDescriptionsOutWhereThatIsAsked)
{
    Preparation preparation;
    preparation.AddModule("m", "organization o; contact c; description d; leaf a { type string; "
                               "description d; reference r; }");
    ZR_YANG_SetOption(preparation.get(), ZR_YANG_OPTION_STRIP, 1);
    EXPECT_EQ(BodyOf(preparation), R"(  <organization>
    <text>o</text>
  </organization>
  <leaf name="a">
    <type name="string"/>
  </leaf>
)");
}

TEST(Writer, KeepsExtensionInstancesWithTheirContent)
{
    Preparation preparation;
    preparation.AddModule("m", "import t { prefix p; } leaf a { p:mark \"x y\" { description d; "
                               "p:flag; } type string { p:flag; } }");
    preparation.AddModule("t", "extension mark { argument text; } extension flag;");
    EXPECT_EQ(BodyOf(preparation), R"(  <leaf name="a">
    <p:mark text="x y">
      <description>
        <text>d</text>
      </description>
      <p:flag/>
    </p:mark>
    <type name="string">
      <p:flag/>
    </type>
  </leaf>
)");
}

TEST(Writer, WritesEveryRestrictionOfATypeAsYin)
{
    EXPECT_EQ(BodyOf("leaf a { type string { length 1..4 { error-message no; error-app-tag t; } "
                     "pattern 'a|b' { modifier invert-match; } } }"
                     "leaf b { type bits { bit x { position 4; } } }"),
              R"(  <leaf name="a">
    <type name="string">
      <length value="1..4">
        <error-message>
          <value>no</value>
        </error-message>
        <error-app-tag value="t"/>
      </length>
      <pattern value="a|b">
        <modifier value="invert-match"/>
      </pattern>
    </type>
  </leaf>
  <leaf name="b">
    <type name="bits">
      <bit name="x">
        <position value="4"/>
      </bit>
    </type>
  </leaf>
)");
}

TEST(Writer, LeavesOutWhatADecidedExpressionTurnsOff)
{
    Preparation preparation;
    preparation.AddModule("m", "feature f; container c { if-feature \"not f\"; leaf a { type "
                               "string; } } augment /m:c { leaf b { type string; } }");
    ZR_YANG_SetFeature(preparation.get(), "m", "f", 1);
    EXPECT_EQ(BodyOf(preparation), "  <feature name=\"f\"/>\n");
}
