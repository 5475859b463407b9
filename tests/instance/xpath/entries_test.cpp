// SPDX-License-Identifier: Apache-2.0
// Conditions that name entries by their keys, which an index answers: the same as the steps say.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

const std::string kLists =
    "container a { list l { key \"k j\"; leaf k { type int8; } leaf j { type string; }"
    "  leaf v { type string; default d; } leaf-list n { type int8; } } }";

// Whether a condition on a leaf "t" whose value is 1 holds over some entries.
bool Holds(const std::string &condition, const std::string &kind = "type int8;")
{
    Schema schema(kLists + " leaf t { " + kind + " must \"" + condition + "\"; }");
    Texts faults = schema.Check("<a><l><k>+1</k><j>x</j><n>4</n><n>5</n></l>"
                                "<l><k>1</k><j>y</j><v>w</v></l><l><k>2</k><j>x</j></l></a>"
                                "<t>1</t>");
    return faults.empty();
}

} // namespace

TEST(Entries, AreFoundByCanonicalValues)
{
    EXPECT_TRUE(Holds("count(/a/l[k = current()]) = 2"));
    EXPECT_TRUE(Holds("count(/a/l[k = '1']) = 2"));
    EXPECT_FALSE(Holds("/a/l[k = '+1']"));
    EXPECT_TRUE(Holds("/a/l[k = current()]/v = 'w'"));
}

TEST(Entries, AreFoundBySeveralLeafs)
{
    EXPECT_TRUE(Holds("/a/l[k = current()][j = 'y']/v = 'w'"));
    EXPECT_TRUE(Holds("/a/l[j = 'y' and k = '1']/v = 'w'"));
    EXPECT_FALSE(Holds("/a/l[k = '2'][j = 'y']"));
    EXPECT_TRUE(Holds("count(/a/l[k = '1'][j = 'x'][v = 'd']) = 1")) << "a default in use";
    EXPECT_FALSE(Holds("/a/l[k = '1'][j = 'x'][v = 'w']"));
}

TEST(Entries, AreFoundByAnyOfSeveralValues)
{
    EXPECT_TRUE(Holds("count(/a/l[k = /a/l/k]) = 3"));
    EXPECT_TRUE(Holds("count(/a/l[n = '5']) = 1"));
    EXPECT_FALSE(Holds("/a/l[n = '6']"));
    EXPECT_FALSE(Holds("/a/l[k = /a/none]")) << "no value, no entry";
}

TEST(Entries, ComeInDocumentOrder)
{
    EXPECT_TRUE(Holds("string(/a/l[k = '1']/j) = 'x'"));
    EXPECT_TRUE(Holds("/a/l[k = '1'][2]/j = 'y'"));
}

TEST(Entries, OfAnotherParentAreNotFound)
{
    Schema schema("list o { key i; leaf i { type int8; } list l { key k; leaf k { type int8; } }"
                  "  leaf t { type int8; must '../l[k = current()]'; } }");
    EXPECT_THAT(schema.Check("<o><i>1</i><l><k>1</k></l><t>1</t></o>"
                             "<o><i>2</i><l><k>2</k></l><t>2</t></o>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<o><i>1</i><l><k>1</k></l><t>2</t></o>"
                             "<o><i>2</i><l><k>2</k></l><t>1</t></o>"),
                SizeIs(2));
}

TEST(Entries, OfStateAreNotSeenByConfiguration)
{
    Schema schema("list l { config false; leaf k { type int8; } }"
                  " leaf t { type int8; must 'not(/l[k = current()])'; }"
                  " leaf s { config false; type int8; must '/l[k = current()]'; }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><t>1</t><s>1</s>", ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
}

TEST(Entries, AreSeenWhileDefaultsComeIntoUse)
{
    Schema schema(
        "list l { key k; leaf k { type int8; } leaf a { type int8; default 1; }"
        "  leaf b { when \"/l[k = current()/../k]/a = '1'\"; type int8; default 2; } }"
        " leaf t { type int8; must 'count(/l/b) = .'; must \"count(/l[a = '1']) = .\"; }");
    EXPECT_THAT(schema.Check("<l><k>1</k></l><l><k>2</k><a>3</a></l><l><k>3</k></l><t>2</t>"),
                IsEmpty());
}

} // namespace datatest
