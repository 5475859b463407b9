// SPDX-License-Identifier: Apache-2.0
// The public functions: statuses, results, memory.
#include <libxml/parser.h>

#include <cstdlib>
#include <memory>

#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Plan, OfNothingIsRefused)
{
    ZrDataPlan *plan = nullptr;
    EXPECT_EQ(ZR_DATA_CreatePlan(nullptr, nullptr, &plan), ZR_DATA_ERR_INVALID);
    EXPECT_EQ(plan, nullptr);
    EXPECT_EQ(ZR_DATA_IsPlanCurrent(nullptr), 0u);
    ZR_DATA_DeletePlan(nullptr);
    ZR_DATA_DeleteResult(nullptr);
}

TEST(Plan, IsStaleWhenModulesHaveChanged)
{
    Schema schema("leaf a { type string; }");
    ZrDataPlan *plan = nullptr;
    ASSERT_EQ(ZR_DATA_CreatePlan(schema.ctx(), nullptr, &plan), ZR_DATA_OK);
    EXPECT_EQ(ZR_DATA_IsPlanCurrent(plan), 1u);
    schema.Add("n", "leaf b { type string; }");
    EXPECT_EQ(ZR_DATA_IsPlanCurrent(plan), 0u);
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    ZrDataResult *result = nullptr;
    EXPECT_EQ(ZR_DATA_CheckText(plan, &options, "<c/>", 4, &result), ZR_DATA_ERR_STALE);
    EXPECT_EQ(result, nullptr);
    ZR_DATA_DeletePlan(plan);
}

TEST(Check, TellsAllFaultsInDocumentOrder)
{
    Schema schema("container c { leaf a { type int8; must \". > 5\"; } leaf b { type int8; }"
                  "  leaf d { type string; mandatory true; } }");
    EXPECT_THAT(schema.Check("<c><a>1</a><x/><b>y</b></c>"),
                ElementsAre(StartsWith("missing-element /c/d"),
                            StartsWith("operation-failed[must-"),
                            StartsWith("unknown-element /c/x"), StartsWith("invalid-value /c/b")));
}

TEST(Check, KeepsTheFirstFaultsUpToTheLimitAndCountsAll)
{
    Schema schema("leaf-list a { type int8; }");
    std::string text = Wrap("<a>x</a><a>1</a><a>y</a><a>z</a>");
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    options.errorLimit = 2;
    ZrDataResult *result = nullptr;
    EXPECT_EQ(ZR_DATA_CheckText(schema.plan(), &options, text.data(), text.size(), &result),
              ZR_DATA_ERR_FAULTY);
    size_t found = 0;
    EXPECT_EQ(ZR_DATA_GetErrorCount(result, &found), 2u);
    EXPECT_EQ(found, 3u);
    EXPECT_THAT(Describe(*ZR_DATA_GetError(result, 1)), HasSubstr("\"y\" is no value"));
    EXPECT_EQ(ZR_DATA_GetError(result, 2), nullptr);
    ZR_DATA_DeleteResult(result);
}

TEST(Check, RefusesTextThatIsNoXml)
{
    Schema schema("leaf a { type string; }");
    EXPECT_THAT(schema.CheckDocument("<a>\n<b></a>"),
                ElementsAre(StartsWith("malformed-message /: the text is not well-formed XML: ")));
    EXPECT_THAT(schema.lines(), ElementsAre(2));
    EXPECT_THAT(schema.CheckDocument("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"),
                ElementsAre("malformed-message /: a document type declaration is not taken"));
}

TEST(Check, LeavesTheCallersTreeAsItIs)
{
    Schema schema("container c { leaf a { type int8; } leaf b { type int8; default 1; } }");
    std::string text = Wrap("<c><a>+1</a></c>");
    xmlDoc *doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    ZrDataResult *result = nullptr;
    EXPECT_EQ(ZR_DATA_CheckTree(schema.plan(), &options, xmlDocGetRootElement(doc), &result),
              ZR_DATA_OK);
    ZR_DATA_DeleteResult(result);
    xmlChar *after = nullptr;
    xmlDocDumpMemory(doc, &after, nullptr);
    EXPECT_THAT(reinterpret_cast<char *>(after), HasSubstr(text));
    xmlFree(after);
    xmlFreeDoc(doc);
}

TEST(Check, TellsOfElementsThatNoModuleHas)
{
    Schema schema("container c { leaf a { type string; } }");
    EXPECT_THAT(schema.Check("<c><a xmlns=\"urn:x\"/><a xmlns=\"\"/></c>"),
                ElementsAre("unknown-namespace /c/a: no module has the namespace \"urn:x\"",
                            "unknown-namespace /c/a: element \"a\" has no namespace"));
    EXPECT_THAT(schema.Check("<c x=\"1\"/>"),
                ElementsAre("unknown-attribute /c: attribute \"x\" is not known"));
}

TEST(Check, FollowsDataOfAnyDepth)
{
    Schema schema("container c { anydata d; }");
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<x>";
    for (int i = 0; i < 100000; ++i)
        deep += "</x>";
    EXPECT_THAT(schema.Check("<c><d>" + deep + "</d></c>"), IsEmpty());
}

TEST(ErrorXml, IsAnRpcErrorThatDeclaresTheNamespacesOfItsPath)
{
    Schema schema("container c { leaf a { type string; mandatory true; } }");
    ZrDataOptions options = Options(ZR_DATA_CONFIG);
    ZrDataResult *result = nullptr;
    ZR_DATA_CheckText(schema.plan(), &options, "<config/>", 9, &result);
    EXPECT_STREQ(ZR_DATA_GetErrorXml(result, 0),
                 "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
                 "<error-type>application</error-type><error-tag>missing-element</error-tag>"
                 "<error-severity>error</error-severity>"
                 "<error-path xmlns:m=\"urn:m\">/m:c/m:a</error-path>"
                 "<error-message xml:lang=\"en\">\"a\" is missing</error-message>"
                 "<error-info><bad-element>a</bad-element></error-info></rpc-error>");
    EXPECT_EQ(ZR_DATA_GetErrorXml(result, 1), nullptr);
    ZR_DATA_DeleteResult(result);
}

namespace {

// The blocks that are held, and the allocation that fails.
struct Counter {
    size_t held = 0, made = 0, failing = 0;
};

// Makes a plan and checks a document with the first, the second, ... allocation failing, until it
// comes to its end. Nothing may be left each time. The status at the end.
uint32_t FailEachAllocation(const Schema &schema, const ZrDataOptions &options,
                            const std::string &text)
{
    Counter counter;
    ZrDataMemory memory = {[](size_t size, void *user) -> void * {
                               auto *count = static_cast<Counter *>(user);
                               if (++count->made == count->failing)
                                   return nullptr;
                               ++count->held;
                               return std::malloc(size);
                           },
                           [](void *block, void *user) {
                               --static_cast<Counter *>(user)->held;
                               std::free(block);
                           },
                           &counter};
    uint32_t status = ZR_DATA_ERR_NO_MEMORY;
    for (counter.failing = 1; status == ZR_DATA_ERR_NO_MEMORY; ++counter.failing) {
        counter.made = 0;
        ZrDataPlan *plan = nullptr;
        ZrDataResult *result = nullptr;
        status = ZR_DATA_CreatePlan(schema.ctx(), &memory, &plan);
        if (status == ZR_DATA_OK)
            status = ZR_DATA_CheckText(plan, &options, text.data(), text.size(), &result);
        ZR_DATA_DeleteResult(result);
        ZR_DATA_DeletePlan(plan);
        EXPECT_EQ(counter.held, 0u) << "allocation " << counter.failing;
    }
    EXPECT_GT(counter.failing, 10u);
    return status;
}

// The same of a message or an edit with a datastore.
uint32_t FailEachAllocation(const Schema &schema, ZrDataOptions options,
                            const std::string &datastore, const std::string &text)
{
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> doc(
        xmlReadMemory(datastore.data(), static_cast<int>(datastore.size()), nullptr, nullptr, 0),
        xmlFreeDoc);
    options.datastore = xmlDocGetRootElement(doc.get());
    return FailEachAllocation(schema, options, text);
}

} // namespace

TEST(Memory, ThatRunsOutAnywhereLeavesNothingBehind)
{
    Schema schema(
        "list l { key \"k j\"; unique a; leaf k { type string; } leaf j { type string; default x; }"
        "  leaf a { type int8; must \"../k\"; default 1; }"
        "  leaf r { type leafref { path \"../../l/k\"; }"
        "   must \"/l[k = current()][j = 'x']/a and derived-from(../i, 'b')\"; }"
        "  leaf i { type identityref { base b; } } }"
        " identity b; leaf s { config false; type string; }");
    EXPECT_EQ(FailEachAllocation(schema, Options(ZR_DATA_CONFIG_AND_STATE),
                                 Wrap("<s>x</s><l><k>1</k><j>x</j><r>2</r></l>"
                                      "<l><k>1</k><j>y</j><r>1</r></l><l/>")),
              ZR_DATA_ERR_FAULTY);
}

TEST(Memory, ThatRunsOutAmongReferencesLeavesNothingBehind)
{
    Schema schema(
        "list l { key \"k j\"; leaf k { type int8; } leaf j { type string; }"
        "  leaf-list v { type string; } }"
        " leaf-list of { type int8; } leaf j { type string; default x; }"
        " leaf r { type leafref { path \"../l[k = current()/../of][j = current()/../j]/v\"; }"
        "  must \"deref(.)/../j\"; }"
        " leaf-list id { type instance-identifier; must \"deref(.)\"; }"
        " leaf-list u { type union { type leafref { path \"/l/k\"; }"
        "  type instance-identifier; type string { length 2; } } must \"deref(.)\"; }");
    EXPECT_EQ(
        FailEachAllocation(schema, Options(ZR_DATA_CONFIG),
                           "<c xmlns=\"urn:m\" xmlns:m=\"urn:m\"><l><k>1</k><j>x</j><v>a</v></l>"
                           "<l><k>2</k><j>x</j></l><of>+2</of><of>1</of><r>a</r>"
                           "<id>/m:l[m:k='+1'][m:j='x']</id><id>/m:of[.='+3']</id>"
                           "<u>1</u><u>+3</u><u>300</u><u>/m:of[.='1']</u></c>"),
        ZR_DATA_ERR_FAULTY);
}

TEST(Memory, ThatRunsOutInAMessageLeavesNothingBehind)
{
    Schema schema("list l { key k; leaf k { type string; }"
                  "  action a { input { leaf v { type int8; must '../../k = 1'; } } } }");
    std::string store = Wrap("<l><k>1</k></l><l><k>2</k></l>");
    EXPECT_EQ(FailEachAllocation(schema, Options(ZR_DATA_REQUEST), store,
                                 "<rpc xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
                                 "<action xmlns=\"urn:ietf:params:xml:ns:yang:1\">"
                                 "<l xmlns=\"urn:m\"><k>2</k><a><v>1</v></a></l></action></rpc>"),
              ZR_DATA_ERR_FAULTY);
}

TEST(Memory, ThatRunsOutInAnEditLeavesNothingBehind)
{
    Schema schema("list l { key k; ordered-by user; leaf k { type string; } }");
    EXPECT_EQ(FailEachAllocation(schema, Options(ZR_DATA_EDIT),
                                 "<c xmlns:y=\"urn:ietf:params:xml:ns:yang:1\" xmlns:m=\"urn:m\">"
                                 "<l xmlns=\"urn:m\" y:insert=\"after\" y:key=\"[m:k='1']\">"
                                 "<k>2</k></l><l xmlns=\"urn:m\" y:insert=\"no\"/></c>"),
              ZR_DATA_ERR_FAULTY);
}

TEST(Memory, ThatRunsOutInAnEditOfADatastoreLeavesNothingBehind)
{
    Schema schema("list l { key \"k j\"; leaf k { type string; } leaf j { type string; }"
                  "  leaf-list v { type string; ordered-by user; } }");
    std::string store = Wrap("<l><k>1</k><j>1</j><v>a</v></l><x/>");
    EXPECT_EQ(FailEachAllocation(schema, Options(ZR_DATA_EDIT), store,
                                 "<c xmlns:y=\"urn:ietf:params:xml:ns:yang:1\" xmlns=\"urn:m\""
                                 " xmlns:n=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
                                 "<l><k>1</k><j>1</j><v y:insert=\"after\" y:value=\"a\">b</v></l>"
                                 "<l n:operation=\"delete\"><k>1</k><j>2</j></l></c>"),
              ZR_DATA_ERR_FAULTY);
}

} // namespace datatest
