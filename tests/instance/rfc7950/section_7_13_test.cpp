// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.13: the uses statement; section 7.12: the grouping statement.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

// A grouping of another module, whose prefix there is another one than here.
constexpr const char *kEndpoint =
    "feature f; identity kind; identity tcp { base kind; }"
    " grouping endpoint { leaf ip { type string; } leaf port { type uint16; must '../ip'; }"
    "  leaf kind { type identityref { base kind; } }"
    "  leaf off { if-feature f; type empty; }"
    "  container tls { presence x; when \"../kind = 'g:tcp'\"; leaf a { type int8; } }"
    "  list user { key name; leaf name { type string; } } }";

} // namespace

TEST(Uses, HasTheNodesOfItsGroupingInItsOwnNamespace)
{
    Schema schema;
    schema.Add("g", kEndpoint);
    schema.Add("m", "import g { prefix other; } container server { uses other:endpoint; }");
    EXPECT_THAT(schema.Check("<server><ip>1</ip><port>80</port></server>"), IsEmpty());
    EXPECT_THAT(schema.Check("<server><ip xmlns=\"urn:g\">1</ip></server>"),
                ElementsAre(StartsWith("unknown-element /server/g:ip: ")));
}

TEST(Uses, HasConditionsThatNameItsOwnNodes)
{
    Schema schema;
    schema.Add("g", kEndpoint);
    schema.Add("m", "import g { prefix other; } container server { uses other:endpoint; }");
    EXPECT_THAT(schema.Check("<server><port>80</port></server>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /server/port: ")));
    EXPECT_THAT(schema.Check("<server xmlns:x=\"urn:g\"><kind>x:tcp</kind><tls/></server>"),
                IsEmpty())
        << "a prefix is that of the module of the grouping";
    EXPECT_THAT(schema.Check("<server><tls/></server>"),
                ElementsAre(StartsWith("unknown-element /server/tls: ")));
}

TEST(Uses, HasTheFeaturesOfTheModuleOfItsGrouping)
{
    Schema schema;
    schema.Add("g", kEndpoint);
    schema.Add("m",
               "import g { prefix other; } feature f; container server { uses other:endpoint; }");
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "m"), "f");
    EXPECT_THAT(schema.Check("<server><off/></server>"),
                ElementsAre(StartsWith("unknown-element /server/off: ")));
    ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema.ctx(), "g"), "f");
    EXPECT_THAT(schema.Check("<server><off/></server>"), IsEmpty());
}

TEST(Uses, HasItsNodesAsItRefinesThem)
{
    Schema schema;
    schema.Add("g", kEndpoint);
    schema.Add("m", "import g { prefix g; } container server { uses g:endpoint {"
                    "  refine ip { mandatory true; }"
                    "  refine port { default 80; must '. < 100'; }"
                    "  refine user { min-elements 1; max-elements 2; } }"
                    "  leaf seen { type uint16; must '. = ../port'; } }");
    const std::string user = "<user><name>a</name></user>";
    EXPECT_THAT(schema.Check("<server><ip>1</ip>" + user + "<seen>80</seen></server>"), IsEmpty());
    EXPECT_THAT(schema.Check("<server><ip>1</ip>" + user + "<seen>81</seen></server>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /server/seen: ")));
    EXPECT_THAT(schema.Check("<server><ip>1</ip><port>100</port>" + user + "</server>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /server/port: ")));
    EXPECT_THAT(
        schema.Check(""),
        UnorderedElementsAre("missing-element /server/ip: \"ip\" is missing",
                             StartsWith("operation-failed[too-few-elements] /server/user: "),
                             StartsWith("operation-failed[must-violation] /server/port: ")));
}

TEST(Uses, IsRefinedAsPresenceAndAsState)
{
    Schema schema("grouping g { container c { leaf a { type int8; mandatory true; } } }"
                  " container p { uses g { refine c { presence x; } } }"
                  " container s { uses g { refine c { config false; } } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<p><c/></p>"),
                ElementsAre("missing-element /p/c/a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<s><c><a>1</a></c></s>"),
                ElementsAre(StartsWith("unknown-element /s/c: ")));
}

TEST(Uses, WithAConditionHasItsNodesWhereItIsTrueAlone)
{
    Schema schema("grouping g { leaf a { type int8; mandatory true; } leaf b { type int8; } }"
                  " container c { leaf on { type boolean; } uses g { when \"on = 'true'\"; } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<c><on>true</on><a>1</a></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><on>true</on></c>"),
                ElementsAre("missing-element /c/a: \"a\" is missing"));
    EXPECT_THAT(schema.Check("<c><b>1</b></c>"), ElementsAre(StartsWith("unknown-element /c/b: ")));
}

TEST(Uses, AugmentsItsOwnNodesAlone)
{
    Schema schema("grouping g { container i { leaf a { type int8; } } }"
                  " container c { uses g { augment i { leaf b { type int8; must '../a'; } } } }"
                  " container d { uses g; }");
    EXPECT_THAT(schema.Check("<c><i><a>1</a><b>1</b></i></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><i><b>1</b></i></c>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /c/i/b: ")));
    EXPECT_THAT(schema.Check("<d><i><b>1</b></i></d>"),
                ElementsAre(StartsWith("unknown-element /d/i/b: ")));
}

} // namespace datatest
