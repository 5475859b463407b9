// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.7: the leaf-list statement, with the statements on numbers of entries.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char *kTooFew = "operation-failed[too-few-elements] /a: \"a\" has too few entries";
constexpr const char *kTooMany =
    "operation-failed[too-many-elements] /a: \"a\" has too many entries";

TEST(LeafList, OfConfigurationHasEachValueOnce)
{
    Schema schema("leaf-list a { type int8; } leaf-list s { config false; type int8; }");
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><a>+1</a>"),
                ElementsAre("bad-element /a[.='1']: the value \"1\" stands here a second time"));
    EXPECT_THAT(schema.Check("<s>1</s><s>1</s>", ZR_DATA_CONFIG_AND_STATE), IsEmpty());
}

TEST(LeafList, HasItsDefaultsInUseWhereItHasNoEntry)
{
    Schema schema("leaf-list a { type int8; default 1; default 2; must 'count(../a) = 2'; }"
                  " container c { must '../a = 2'; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<a>2</a><a>3</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>5</a>"), SizeIs(2)) << "none of the defaults is in use then";
}

TEST(LeafList, HasAsManyEntriesAsItMustHaveAtLeast)
{
    Schema schema("leaf-list a { type int8; min-elements 2; }");
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a>"), ElementsAre(kTooFew));
    EXPECT_THAT(schema.Check(""), ElementsAre(kTooFew)) << "also where it has none";
}

TEST(MinElements, AreAskedForBelowContainersThatAreThere)
{
    Schema schema("container p { presence x; list a { key k; min-elements 1;"
                  "  leaf k { type string; } } }"
                  " container n { container i { leaf-list a { type int8; min-elements 1; } } }"
                  " list l { key k; leaf k { type string; }"
                  "  leaf-list a { type int8; min-elements 1; } }");
    EXPECT_THAT(schema.Check(""),
                ElementsAre("operation-failed[too-few-elements] /n/i/a: \"a\" has too few entries"))
        << "a container without presence is always there";
    EXPECT_THAT(schema.Check("<p/><n><i><a>1</a></i></n><l><k>x</k></l>"),
                ElementsAre("operation-failed[too-few-elements] /p/a: \"a\" has too few entries",
                            "operation-failed[too-few-elements] /l[k='x']/a: "
                            "\"a\" has too few entries"));
}

TEST(MinElements, AreAskedForInTheChosenCaseAlone)
{
    Schema schema("choice c { case one { leaf x { type empty; }"
                  "  leaf-list a { type int8; min-elements 1; } } leaf two { type empty; } }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<two/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<x/>"), ElementsAre(kTooFew));
}

TEST(MinElements, AreNotAskedForWhereAConditionIsFalse)
{
    Schema schema("leaf on { type empty; }"
                  " leaf-list a { when '../on'; type int8; min-elements 1; }");
    EXPECT_THAT(schema.Check(""), IsEmpty());
    EXPECT_THAT(schema.Check("<on/>"), ElementsAre(kTooFew));
}

TEST(LeafList, HasAsManyEntriesAsItMayHaveAtMost)
{
    Schema schema("leaf-list a { type int8; max-elements 2; }");
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a><a>3</a><a>4</a>"), ElementsAre(kTooMany));
    Schema any("leaf-list a { type int8; max-elements unbounded; }");
    EXPECT_THAT(any.Check("<a>1</a><a>2</a><a>3</a>"), IsEmpty());
}

TEST(MaxElements, AreCountedForEachParent)
{
    Schema schema("list l { key k; leaf k { type int8; }"
                  "  list a { key k; max-elements 1; leaf k { type int8; } } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><a><k>1</k></a></l><l><k>2</k><a><k>1</k></a></l>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<l><k>1</k><a><k>1</k></a><a><k>2</k></a></l>"),
                ElementsAre("operation-failed[too-many-elements] /l[k='1']/a: "
                            "\"a\" has too many entries"));
}

TEST(Elements, AreCountedAsDeviationsSay)
{
    Schema schema("leaf-list a { type int8; min-elements 1; max-elements 9; }"
                  " list b { key k; leaf k { type int8; } }");
    schema.Add("d", "import m { prefix m; }"
                    " deviation /m:a { deviate replace { min-elements 0; max-elements 1; } }"
                    " deviation /m:b { deviate add { min-elements 1; } }");
    EXPECT_THAT(schema.Check("<b><k>1</k></b>"), IsEmpty());
    EXPECT_THAT(
        schema.Check("<a>1</a><a>2</a>"),
        ElementsAre("operation-failed[too-few-elements] /b: \"b\" has too few entries", kTooMany));
}

TEST(Elements, AreNotCountedInAContextThatDoesNotKeepTheirNumbers)
{
    Schema schema("leaf-list a { type int8; min-elements 2; max-elements 3; }", 0);
    EXPECT_THAT(schema.Check("<a>1</a>"), IsEmpty());
}

TEST(LeafList, HasItsDefaultsInTheChosenCaseAlone)
{
    Schema schema("container c { choice o { case x { leaf a { type empty; }"
                  "   leaf-list v { type int8; default 1; default 2; } } leaf y { type empty; } }"
                  "  must 'count(v) = 2 * count(a)'; }");
    EXPECT_THAT(schema.Check("<c/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><y/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><a/></c>"), IsEmpty());
    EXPECT_THAT(schema.Check("<c><v>1</v></c>"), SizeIs(1));
}

TEST(LeafList, HasItsDefaultsWhereItsParentIs)
{
    Schema schema("container p { presence x; leaf-list v { type int8; default 1; default 2; } }"
                  " leaf n { type int8; must '. = sum(../p/v)'; }");
    EXPECT_THAT(schema.Check("<n>0</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<p/><n>3</n>"), IsEmpty());
    EXPECT_THAT(schema.Check("<p><v>7</v></p><n>3</n>"), SizeIs(1));
}

TEST(LeafList, ComparesCanonicalValues)
{
    Schema schema("identity b; identity i { base b; } leaf-list a { type identityref { base b; } }"
                  " leaf-list d { type decimal64 { fraction-digits 2; } }");
    EXPECT_THAT(schema.Check("<d>1</d><d>1.01</d>"), IsEmpty());
    EXPECT_THAT(schema.Check("<d>1.50</d><d>+1.5</d>"), SizeIs(1));
    EXPECT_THAT(schema.Check("<a>i</a><a xmlns:x=\"urn:m\">x:i</a>"), SizeIs(1));
}

TEST(LeafList, OfParametersMayHoldAValueTwice)
{
    Schema schema(
        "rpc r { input { leaf-list a { type int8; } } output { leaf-list b { type int8; } } }");
    EXPECT_THAT(schema.CheckMessage("<r xmlns=\"urn:m\"><a>1</a><a>1</a></r>", ZR_DATA_REQUEST),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage("<x><b xmlns=\"urn:m\">1</b><b xmlns=\"urn:m\">1</b></x>",
                                    ZR_DATA_REPLY, "", "m:r"),
                IsEmpty());
}

TEST(LeafList, HasItsEntriesInTheOrderOfTheUser)
{
    Schema schema("leaf-list a { type int8; ordered-by user; } leaf b { type int8; }");
    EXPECT_EQ(
        schema.Write(Wrap("<a>3</a><b>9</b><a>1</a><a>2</a>"), {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0}),
        Wrap("<a>3</a><a>1</a><a>2</a><b>9</b>"))
        << "other nodes may stand between them";
}

} // namespace datatest
