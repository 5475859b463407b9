// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::Preparation;
using yangtest::ReportsOf;
using yangtest::ReportsOf1;

TEST(Grammar, ReportsWhatStandsInTheWrongPlace)
{
    EXPECT_THAT(ReportsOf("\ncontainer c { type string; key a; }\nleaf l { type string; leaf x; }"),
                ElementsAre("2:15: error: \"type\" may not stand in \"container\"",
                            "2:28: error: \"key\" may not stand in \"container\"",
                            "3:23: error: \"leaf\" may not stand in \"leaf\"",
                            "3:23: error: \"leaf\" without \"type\""));
}

TEST(Grammar, ReportsWhatStandsTwice)
{
    EXPECT_THAT(ReportsOf("\ncontainer c { presence a; presence b; }"),
                ElementsAre("2:27: error: \"presence\" stands in \"container\" more than once"));
}

TEST(Grammar, ReportsWhatIsMissing)
{
    Preparation preparation;
    preparation.Add("m.yang", "module m { yang-version 1.1; leaf a { } import b { } }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:1:1: error: \"module\" without \"namespace\"",
                            "m.yang:1:1: error: \"module\" without \"prefix\"",
                            "m.yang:1:30: error: \"leaf\" without \"type\"",
                            "m.yang:1:41: error: \"import\" without \"prefix\"",
                            "m.yang:1:41: error: \"import\" behind \"leaf\"",
                            "m.yang:1:41: error: no source of \"b\" in the directories"));
}

TEST(Grammar, ASubmoduleOfVersion11SaysSo)
{
    Preparation preparation;
    preparation.AddModule("m", "include s;");
    preparation.Add("s.yang", "submodule s { belongs-to m { prefix m; } }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:1:56: error: module and submodule \"s\" are of different YANG "
                            "versions"));
}

TEST(Grammar, KeepsTheOrderOfSections)
{
    EXPECT_THAT(ReportsOf("\nrevision 2020-01-01;\norganization me;\nleaf a { type string; }\n"
                          "revision 2019-01-01;"),
                ElementsAre("3:1: error: \"organization\" behind \"revision\"",
                            "5:1: error: \"revision\" behind \"leaf\""));
}

TEST(Grammar, KnowsWhatVersion11Brought)
{
    EXPECT_THAT(
        ReportsOf1("\nanydata a;\ncontainer c { action x; notification n; }\n"
                   "choice h { choice i; }\nleaf-list l { type string; default a; }\n"
                   "notification n { must true(); }\nidentity i { if-feature f; }\nfeature f;\n"
                   "leaf p { type string { pattern a { modifier invert-match; } } }"),
        ElementsAre("2:1: error: \"anydata\" in \"module\" needs \"yang-version 1.1\"",
                    "3:15: error: \"action\" in \"container\" needs \"yang-version 1.1\"",
                    "3:25: error: \"notification\" in \"container\" needs \"yang-version 1.1\"",
                    "4:12: error: \"choice\" in \"choice\" needs \"yang-version 1.1\"",
                    "5:28: error: \"default\" in \"leaf-list\" needs \"yang-version 1.1\"",
                    "6:18: error: \"must\" in \"notification\" needs \"yang-version 1.1\"",
                    "7:14: error: \"if-feature\" in \"identity\" needs \"yang-version 1.1\"",
                    "9:36: error: \"modifier\" in \"pattern\" needs \"yang-version 1.1\""));
}

TEST(Grammar, TakesSeveralBasesInVersion11Alone)
{
    const char *body = "\nidentity a; identity b;\nidentity c { base a; base b; }";
    EXPECT_THAT(ReportsOf(body), IsEmpty());
    EXPECT_THAT(ReportsOf1(body),
                ElementsAre("3:22: error: \"base\" stands in \"identity\" more than once"));
}

TEST(Grammar, KnowsTheFourWaysToDeviate)
{
    EXPECT_THAT(
        ReportsOf("\nleaf a { type string; }\ndeviation /a { deviate not-supported { units x; "
                  "} deviate add { type string; } deviate delete { config true; } }"),
        testing::IsSupersetOf({"3:40: error: \"units\" may not stand in \"deviate not-supported\"",
                               "3:65: error: \"type\" may not stand in \"deviate add\"",
                               "3:97: error: \"config\" may not stand in \"deviate delete\""}));
}

// Everything that may stand anywhere, once (RFC 7950, section 14).
TEST(Grammar, AcceptsEveryStatementInItsPlace)
{
    EXPECT_THAT(ReportsOf(R"Y(
  organization o; contact c; description d; reference r;
  revision 2020-01-01 { description d; reference r; }
  extension e { argument a { yin-element true; } status current; description d; reference r; }
  feature f { if-feature g; status current; description d; reference r; }
  feature g;
  identity i { if-feature f; base j; status current; description d; reference r; }
  identity j;
  typedef t { type int8 { range "1..4" { error-message m; error-app-tag a; description d;
      reference r; } } units u; default 2; status current; description d; reference r; }
  typedef d { type decimal64 { fraction-digits 2; range "1.5..max"; } }
  typedef s { type string { length "1..8" { error-message m; error-app-tag a; }
      pattern a* { modifier invert-match; error-message m; error-app-tag a; description d;
      reference r; } pattern b; } }
  typedef n { type enumeration { enum a { if-feature f; value 4; status current; description d;
      reference r; } enum b; } }
  typedef b { type bits { bit a { if-feature f; position 4; status current; description d;
      reference r; } bit b; } }
  typedef l { type leafref { path /top/k; require-instance false; } }
  typedef y { type identityref { base i; base j; } }
  typedef p { type instance-identifier { require-instance true; } }
  typedef u { type union { type t; type binary { length 4; } } }
  grouping h { status current; description d; reference r; typedef x { type string; } grouping z;
      leaf q { type x; default v; } container w { presence p; } leaf-list ll { type string; }
      choice hh { case c1 { leaf c1 { type string; } } }
      action ga { input { must true(); } } notification gn { leaf g { type string; } } }
  container top {
    when "true()" { description d; reference r; } if-feature "f and (g or not f)";
    must "true()" { error-message m; error-app-tag a; description d; reference r; }
    presence p; config true; status current; description d; reference r;
    typedef tt { type string; } grouping gg { leaf in-gg { type tt; } }
    leaf k { type string; }
    leaf r { when "../k"; if-feature f; type string; units u; must "1"; default d; config true;
        status current; description d; reference r; }
    leaf m { type string; mandatory true; }
    leaf-list o { type string; min-elements 0; max-elements unbounded; ordered-by user; }
    leaf-list v { type string; default a; default b; }
    list qq { when "../k"; if-feature f; must "1"; key "a b"; unique "c d/e"; config true;
        min-elements 1; max-elements 4; ordered-by system; status current; description d;
        leaf a { type string; } leaf b { type string; } leaf c { type string; }
        container d { leaf e { type string; } } action act { status current; description d;
        typedef at { type string; } grouping ag { leaf a { type at; } }
        input { must "1"; uses ag; } output { leaf z { type at; } } } }
    choice ch { when "k"; if-feature f; default x; config true; status current; description d;
        case x { when "1"; if-feature f; status current; description d; reference r;
          leaf x1 { type string; } anyxml x2; anydata x3; uses gg; }
        container c2 { choice inner { leaf i1 { type string; } } } }
    anydata ad { when "1"; if-feature f; must "1"; config true; mandatory false; status current;
        description d; reference r; }
    anyxml ax { when "1"; if-feature f; must "1"; config true; mandatory false; }
    uses h { when "k"; if-feature f; status current; description d; reference r;
        refine q { default w; if-feature f; must "1"; config true; mandatory false; description d;
        reference r; } refine w { presence z; } refine ll { min-elements 0; max-elements 3;
        default a; default b; }
        augment w { when "1"; if-feature f; status current; description d; reference r;
          leaf aug { type string; } } }
    notification nn { if-feature f; must "1"; status current; description d; reference r;
        typedef nt { type string; } grouping ng { leaf x { type nt; } } uses ng; }
  }
  rpc rr { if-feature f; status current; description d; reference r; typedef rt { type string; }
      grouping rg { leaf a { type rt; } } input { uses rg; } output { uses rg; } }
  augment /top { when "k"; if-feature f; status current; description d; reference r;
      leaf added { type string; } action aa; notification an; }
  augment /top/ch { case another { leaf y { type string; } } }
  m:e "x" { description d; m:e y; }
)Y"),
                testing::Each(testing::HasSubstr("cannot be expressed and is not decided")));
}
