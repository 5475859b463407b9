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

} // namespace datatest
