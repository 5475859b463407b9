// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 10: the functions of XPath expressions.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Function, CurrentIsTheNodeOfTheWholeExpression)
{
    Schema schema("list l { key k; leaf k { type string; } leaf on { type boolean; } }"
                  " leaf r { type string; must \"/l[k = current()]/on = 'true'\"; }");
    EXPECT_THAT(schema.Check("<l><k>a</k><on>true</on></l><r>a</r>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>a</k><on>true</on></l><r>b</r>").size(), 1u);
}

TEST(Function, ReMatchHasThePatternsOfYang)
{
    Schema schema("leaf a { type string; must \"re-match(., '1.\\\\d+')\"; }");
    EXPECT_THAT(schema.Check("<a>1.22</a>"), IsEmpty());
    EXPECT_EQ(schema.Check("<a>x1.22</a>").size(), 1u);
}

TEST(Function, DerefLeadsToWhatALeafrefMeans)
{
    Schema schema("list l { key k; leaf k { type string; } leaf on { type boolean; } }"
                  " leaf r { type leafref { path \"/l/k\"; } must \"deref(.)/../on = 'true'\"; }");
    EXPECT_THAT(schema.Check("<l><k>a</k><on>true</on></l><l><k>b</k></l><r>a</r>"), IsEmpty());
    EXPECT_EQ(schema.Check("<l><k>a</k><on>true</on></l><l><k>b</k></l><r>b</r>").size(), 1u);
}

TEST(Function, DerivedFromLooksAtIdentities)
{
    Schema schema(
        "identity base; identity one { base base; } identity two { base one; }"
        " leaf t { type identityref { base base; } must \"derived-from(., 'm:one')\"; }"
        " leaf s { type identityref { base base; } must \"derived-from-or-self(., 'one')\"; }");
    EXPECT_THAT(schema.Check("<t>two</t><s>one</s>"), IsEmpty());
    EXPECT_EQ(schema.Check("<t>one</t>").size(), 1u);
}

TEST(Function, EnumValueAndBitIsSet)
{
    Schema schema("leaf e { type enumeration { enum a { value 3; } enum b { value 7; } }"
                  "  must \"enum-value(.) > 5\"; }"
                  " leaf f { type bits { bit x; bit y; } must \"bit-is-set(., 'y')\"; }");
    EXPECT_THAT(schema.Check("<e>b</e><f>x y</f>"), IsEmpty());
    EXPECT_EQ(schema.Check("<e>a</e><f>x</f>").size(), 2u);
}

TEST(Expression, ThatCannotBeUsedIsAFaultAndAProblemOfThePlan)
{
    Schema schema;
    const char *yin =
        "<module name=\"m\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" xmlns:m=\"urn:m\">"
        "<namespace uri=\"urn:m\"/><prefix value=\"m\"/><leaf name=\"a\">"
        "<type name=\"string\"/><must condition=\"nothing(.)\"/></leaf></module>";
    ASSERT_EQ(ZR_CTX_LoadMemory(schema.ctx(), yin), ZR_OK);
    EXPECT_THAT(schema.Check("<a>1</a>"),
                ElementsAre("operation-failed /a: the condition \"nothing(.)\" cannot be used: "
                            "it calls a function that is not known"));
}

TEST(Expression, ThatTakesTooManyStepsIsAFaultOfItsOwn)
{
    Schema schema("leaf-list a { type int32; must \"count(../a[. = ../a]) > 0\"; }");
    std::string data;
    for (int i = 0; i < 100; ++i)
        data += "<a>" + std::to_string(i) + "</a>";
    std::string text = Wrap(data);
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    options.errorLimit = 1;
    options.stepLimit = 1000;
    ZrDataResult *result = nullptr;
    ZR_DATA_CheckText(schema.plan(), &options, text.data(), text.size(), &result);
    EXPECT_THAT(Describe(*ZR_DATA_GetError(result, 0)), StartsWith("resource-denied /a[.='0']"));
    ZR_DATA_DeleteResult(result);
}

TEST(Function, CurrentHasOneNodeOnly)
{
    Schema schema("leaf-list a { type int8; must 'count(current()) = 1 and current() = .'; }"
                  " leaf b { type int8; must 'current()/../a = current()'; }");
    EXPECT_THAT(schema.Check("<a>1</a><a>2</a><b>2</b>"), IsEmpty());
    EXPECT_THAT(schema.Check("<a>1</a><b>2</b>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /b: ")));
}

TEST(Function, ReMatchMatchesTheWholeText)
{
    Schema schema("list interface { key name; leaf name { type string; } }"
                  " leaf n { type int8;"
                  "  must \"count(/interface[re-match(name, 'eth0\\\\.\\\\d+')]) = .\"; }");
    const std::string entries = "<interface><name>eth0.1</name></interface>"
                                "<interface><name>eth0.22</name></interface>"
                                "<interface><name>eth0.</name></interface>"
                                "<interface><name>xeth0.1</name></interface>";
    EXPECT_THAT(schema.Check(entries + "<n>2</n>"), IsEmpty());
    EXPECT_THAT(schema.Check(entries + "<n>3</n>"), testing::SizeIs(1));
}

TEST(Function, DerefFollowsAnInstanceIdentifier)
{
    Schema schema("list l { key k; leaf k { type string; } leaf on { type boolean; } }"
                  " leaf r { type instance-identifier { require-instance false; }"
                  "  must \"deref(.)/on = 'true'\"; }");
    const std::string entries = "<l><k>a</k><on>true</on></l><l><k>b</k><on>false</on></l>";
    auto check = [&](const char *key) {
        return schema.Check(entries + "<r xmlns:m=\"urn:m\">/m:l[m:k='" + key + "']</r>");
    };
    EXPECT_THAT(check("a"), IsEmpty());
    EXPECT_THAT(check("b"), testing::SizeIs(1));
    EXPECT_THAT(check("c"), testing::SizeIs(1)) << "what is not there is no node";
}

TEST(Function, DerefOfAnyOtherTypeIsEmpty)
{
    Schema schema("leaf a { type string; must 'count(deref(.)) = 0 and count(deref(..)) = 0 and "
                  "count(deref(../none)) = 0'; } leaf none { type int8; }");
    EXPECT_THAT(schema.Check("<a>x</a>"), IsEmpty());
}

TEST(Function, DerefGivesAllNodesOfTheSameValue)
{
    Schema schema(
        "leaf-list v { config false; type int8; }"
        " leaf r { config false; type leafref { path /v; } must 'count(deref(.)) = 2'; }");
    EXPECT_THAT(schema.Check("<v>1</v><v>2</v><v>1</v><r>1</r>", ZR_DATA_CONFIG_AND_STATE),
                IsEmpty());
    EXPECT_THAT(schema.Check("<v>1</v><v>2</v><v>1</v><r>2</r>", ZR_DATA_CONFIG_AND_STATE),
                testing::SizeIs(1));
}

TEST(Function, DerivedFromLooksAtAnyOfTheNodes)
{
    Schema schema("identity base; identity one { base base; } identity two { base one; }"
                  " leaf-list t { type identityref { base base; } } leaf s { type string; }"
                  " leaf ok { type empty; must \"derived-from(../t, 'one')\"; }"
                  " leaf no { type empty; must \"derived-from(../s, 'one')\"; }"
                  " leaf none { type empty; must \"derived-from-or-self(../t, 'missing')\"; }");
    EXPECT_THAT(schema.Check("<t>one</t><t>two</t><ok/>"), IsEmpty());
    EXPECT_THAT(schema.Check("<t>one</t><ok/>"), testing::SizeIs(1));
    EXPECT_THAT(schema.Check("<ok/>"), testing::SizeIs(1)) << "of no node nothing is true";
    EXPECT_THAT(schema.Check("<s>two</s><no/>"), testing::SizeIs(1)) << "a string is no identity";
    EXPECT_THAT(schema.Check("<t>two</t><none/>"), testing::SizeIs(1));
}

TEST(Function, DerivedFromTakesThePrefixesOfTheModule)
{
    Schema schema;
    schema.Add("b", "identity ethernet; identity fast { base ethernet; }");
    schema.Add("m", "import b { prefix exif; } identity giga { base exif:fast; }"
                    " list l { key k; leaf k { type int8; }"
                    "  leaf type { type identityref { base exif:ethernet; } }"
                    "  leaf a { when \"derived-from(../type, 'exif:fast')\"; type int8; }"
                    "  leaf b { when \"derived-from-or-self(../type, 'exif:fast')\"; type int8; }"
                    "  leaf c { when \"derived-from-or-self(../type, 'm:giga')\"; type int8; } }");
    EXPECT_THAT(schema.Check("<l><k>1</k><type>giga</type><a>1</a><b>1</b><c>1</c></l>"),
                IsEmpty());
    EXPECT_THAT(schema.Check(
                    "<l xmlns:q=\"urn:b\"><k>1</k><type>q:fast</type><a>1</a><b>1</b><c>1</c></l>"),
                ElementsAre(StartsWith("unknown-element /l[k='1']/a: "),
                            StartsWith("unknown-element /l[k='1']/c: ")));
}

TEST(Function, EnumValueIsNoNumberForWhatIsNoEnumeration)
{
    Schema schema("list alarm { key k; leaf k { type int8; } leaf severity { type enumeration {"
                  "   enum cleared { value 1; } enum minor { value 3; } enum major { value 5; }"
                  "   enum critical { value 6; } } } }"
                  " leaf n { type int8; must '. = count(/alarm[enum-value(severity) >= 5])'; }"
                  " leaf s { type string; must \"string(enum-value(.)) = 'NaN' and "
                  "string(enum-value(../none)) = 'NaN'\"; } leaf none { type int8; }");
    const std::string alarms = "<alarm><k>1</k><severity>minor</severity></alarm>"
                               "<alarm><k>2</k><severity>major</severity></alarm>"
                               "<alarm><k>3</k><severity>critical</severity></alarm>"
                               "<alarm><k>4</k></alarm>";
    EXPECT_THAT(schema.Check(alarms + "<n>2</n><s>critical</s>"), IsEmpty());
    EXPECT_THAT(schema.Check(alarms + "<n>3</n>"), testing::SizeIs(1));
}

TEST(Function, EnumValueAndBitIsSetLookAtTheFirstNode)
{
    Schema schema(
        "leaf-list e { ordered-by user; type enumeration { enum a { value 3; } enum b; } }"
        " leaf-list f { ordered-by user; type bits { bit UP; bit DISABLED; } }"
        " leaf n { type int8; must '. = enum-value(../e)'; }"
        " leaf up { type boolean; must \". = string(bit-is-set(../f, 'UP'))\"; }"
        " leaf other { type boolean; must \". = string(bit-is-set(../f, 'U'))\"; }"
        " leaf none { type boolean; must \". = string(bit-is-set(../n, 'UP'))\"; }");
    EXPECT_THAT(schema.Check("<e>b</e><e>a</e><f>UP DISABLED</f><f/><n>4</n><up>true</up>"
                             "<other>false</other><none>false</none>"),
                IsEmpty());
    EXPECT_THAT(schema.Check("<e>a</e><e>b</e><f/><f>UP</f><n>4</n><up>true</up>"),
                testing::SizeIs(2));
}

TEST(Function, OfXPathIsThereToo)
{
    const std::pair<const char *, const char *> rows[] = {
        {"last()", "1"},
        {"position()", "1"},
        {"count(../l)", "2"},
        {"local-name(..)", "c"},
        {"namespace-uri(.)", "urn:m"},
        {"string(../l)", "3"},
        {"concat('a', 'b', 1)", "ab1"},
        {"starts-with('abc', 'ab')", "true"},
        {"contains('abc', 'd')", "false"},
        {"substring-before('a/b', '/')", "a"},
        {"substring-after('a/b', '/')", "b"},
        {"substring('12345', 2, 3)", "234"},
        {"string-length('abc')", "3"},
        {"normalize-space('  a  b ')", "a b"},
        {"translate('bar', 'abc', 'AB')", "BAr"},
        {"not(../l = 5)", "true"},
        {"boolean(../none)", "false"},
        {"number('x')", "NaN"},
        {"sum(../l)", "7"},
        {"floor(2.6)", "2"},
        {"ceiling(2.2)", "3"},
        {"round(2.5)", "3"},
        {"count(../l | ../l[1])", "2"},
        {"7 div 2 - 7 mod 2 * -1", "4.5"},
    };
    for (auto [call, result] : rows) {
        Schema schema(std::string("container c { leaf-list l { ordered-by user; type int8; }"
                                  " leaf none { type int8; } leaf v { type string;"
                                  " must \"string(") +
                      call + ") = .\"; } }");
        auto check = [&](const std::string &value) {
            return schema.Check("<c><l>3</l><l>4</l><v>" + value + "</v></c>");
        };
        EXPECT_THAT(check(result), IsEmpty()) << call;
        EXPECT_THAT(check(std::string("not ") + result), testing::SizeIs(1)) << call;
    }
}

} // namespace datatest
