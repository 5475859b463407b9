// SPDX-License-Identifier: Apache-2.0
// Checks of whole data while libxml2's n-th allocation fails, for every n: each gives the verdict
// that it gives with all its memory, or says that memory ran out. Nothing crashes or stays behind.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <zrdata/write.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "support/alloc.h"
#include "support/context.h"

namespace {

using namespace zrtest;

constexpr const char *kBody = R"yin(
<identity name="b"/><identity name="d"><base name="b"/></identity>
<leaf name="mode"><type name="string"><pattern value="(on|of+)*"/><pattern value="x.*"><modifier
  value="invert-match"/></pattern></type><default value="on"/></leaf>
<leaf name="kind"><type name="identityref"><base name="b"/></type>
  <when condition="re-match(../mode, 'o.?')"/></leaf>
<list name="l"><key value="k"/><unique tag="v"/><leaf name="k"><type name="string"/></leaf>
  <leaf name="v"><type name="int8"/><must condition="count(../../l[v > current()]) &lt; 2"/></leaf>
  <leaf name="r"><type name="leafref"><path value="../../l/k"/></type>
    <must condition="deref(.)/../v = /l[k = current()]/v or contains(concat(., 'x'), 'ax')"/></leaf>
  <must condition="not(v) or sum(../l/v) &lt; 100"><error-message><value>Too much.</value>
  </error-message></must></list>
<rpc name="op"><input><leaf name="to"><type name="leafref"><path value="/l/k"/></type>
  <must condition="/l[k = current()]/v = 1 and derived-from(/kind, 'b')"/></leaf></input></rpc>
<notification name="event"><leaf name="x"><type name="string"/>
  <must condition="string-length(normalize-space(.)) > 1"/></leaf></notification>)yin";

struct Input {
    const char *name;
    uint32_t kind;
    const char *text; // JSON when it begins with a brace
};
const Input kInputs[] = {
    {"valid", ZR_DATA_CONFIG,
     "<c xmlns='urn:m' xmlns:p='urn:m'><mode>on</mode><kind>p:d</kind><l><k>a</k><v>1</v></l>"
     "<l><k>b</k><v>2</v><r>a</r></l></c>"},
    {"faulty", ZR_DATA_CONFIG,
     "<c xmlns='urn:m'><mode>xx</mode><kind>none</kind><l><k>a</k><v>1</v></l><l><k>a</k><v>1</v>"
     "</l><l><k>b</k><v>99</v><r>c</r></l><l><k>d</k><v>98</v></l><none/></c>"},
    {"malformed", ZR_DATA_CONFIG, "<c xmlns='urn:m'><mode>on</mod></c>"},
    {"edit", ZR_DATA_EDIT,
     "<c xmlns='urn:m' xmlns:n='urn:ietf:params:xml:ns:netconf:base:1.0'><l n:operation='delete'>"
     "<k>a</k></l><l n:operation='no'><k>b</k></l></c>"},
    {"request", ZR_DATA_REQUEST, "<op xmlns='urn:m'><to>a</to></op>"},
    {"notification", ZR_DATA_NOTIFICATION, "<event xmlns='urn:m'><x> a b </x></event>"},
    {"JSON", ZR_DATA_CONFIG,
     R"({"m:mode": "of", "m:l": [{"k": "a", "v": 1}, {"k": "b", "r": "b"}, {"v": 300}]})"},
};

using Verdict = std::vector<std::string>; // the status, and what was found

Verdict TakeVerdict(uint32_t status, ZrDataResult *result)
{
    Verdict verdict = {std::to_string(status)};
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i)
        verdict.emplace_back(ZR_DATA_GetErrorXml(result, i));
    ZR_DATA_DeleteResult(result);
    return verdict;
}

using XmlDoc = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

class DataChecks : public testing::Test {
protected:
    DataChecks() : context_(ZR_CTX_STANDARD)
    {
        EXPECT_EQ(context_.LoadBody("m", kBody), ZR_OK);
        store_ = Parse("<c xmlns='urn:m' xmlns:p='urn:m'><kind>p:d</kind><l><k>a</k><v>1</v></l>"
                       "</c>");
    }
    ~DataChecks() override { ZR_DATA_DeletePlan(plan_); }

    static XmlDoc Parse(const std::string &text)
    {
        return {xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0),
                xmlFreeDoc};
    }
    uint32_t MakePlan()
    {
        ZR_DATA_DeletePlan(plan_);
        plan_ = nullptr;
        const ZrDataMemory counted = {Allocate, Release, &blocks_};
        return ZR_DATA_CreatePlan(context_, &counted, &plan_);
    }
    ZrDataOptions OptionsOf(const Input &input) const
    {
        ZrDataOptions options = {};
        options.kind = input.kind;
        if (input.kind == ZR_DATA_REQUEST)
            options.datastore = xmlDocGetRootElement(store_.get());
        return options;
    }
    Verdict CheckText(const Input &input) const
    {
        ZrDataOptions options = OptionsOf(input);
        ZrDataResult *result = nullptr;
        auto *check = *input.text == '{' ? ZR_DATA_CheckJson : ZR_DATA_CheckText;
        uint32_t status =
            check(plan_, &options, input.text, std::string_view(input.text).size(), &result);
        return TakeVerdict(status, result);
    }
    Verdict CheckTree(const Input &input, const xmlDoc &doc) const
    {
        ZrDataOptions options = OptionsOf(input);
        ZrDataResult *result = nullptr;
        uint32_t status = ZR_DATA_CheckTree(
            plan_, &options, xmlDocGetRootElement(const_cast<xmlDoc *>(&doc)), &result);
        return TakeVerdict(status, result);
    }
    // Runs `check` with each allocation of libxml2's failing in turn.
    template <typename Work> void FailEach(const char *name, Work check)
    {
        const Verdict expected = check();
        const Verdict noMemory = {std::to_string(ZR_DATA_ERR_NO_MEMORY)};
        int64_t held = blocks_;
        uint64_t points = FailEachAllocation(xml_, [&](FailPoint &point) {
            Verdict verdict = point.Run(check);
            if (verdict != noMemory) {
                EXPECT_EQ(verdict, expected) << name;
            }
            EXPECT_EQ(blocks_, held) << name;
        });
        EXPECT_EQ(check(), expected) << "with all its memory again";
        std::printf("%-14s %5lu allocation points of libxml2\n", name,
                    static_cast<unsigned long>(points));
    }

    int64_t blocks_ = 0; // of the plan and of results
    XmlAllocGuard xml_;
    TestContext context_;
    XmlDoc store_{nullptr, xmlFreeDoc};
    ZrDataPlan *plan_ = nullptr;

private:
    static void *Allocate(size_t size, void *blocks)
    {
        ++*static_cast<int64_t *>(blocks);
        return std::malloc(size);
    }
    static void Release(void *block, void *blocks)
    {
        --*static_cast<int64_t *>(blocks);
        std::free(block);
    }
};

TEST_F(DataChecks, OfTextsGiveTheirVerdictOrSayThatMemoryRanOut)
{
    ASSERT_EQ(MakePlan(), ZR_DATA_OK);
    for (const Input &input : kInputs)
        FailEach(input.name, [&] { return CheckText(input); });
}

TEST_F(DataChecks, OfTreesGiveTheirVerdictOrSayThatMemoryRanOut)
{
    ASSERT_EQ(MakePlan(), ZR_DATA_OK);
    for (const Input &input : kInputs) {
        XmlDoc doc = *input.text == '{' ? XmlDoc(nullptr, xmlFreeDoc) : Parse(input.text);
        if (doc)
            FailEach(input.name, [&] { return CheckTree(input, *doc); });
    }
}

TEST_F(DataChecks, HaveAPlanThatIsWholeOrNone)
{
    ASSERT_EQ(MakePlan(), ZR_DATA_OK);
    const Verdict expected = CheckText(kInputs[1]);
    FailEachAllocation(xml_, [&](FailPoint &point) {
        uint32_t status = point.Run([&] { return MakePlan(); });
        if (status != ZR_DATA_OK) {
            EXPECT_EQ(status, uint32_t{ZR_DATA_ERR_NO_MEMORY});
            EXPECT_EQ(blocks_, 0);
            return;
        }
        EXPECT_EQ(CheckText(kInputs[1]), expected);
    });
}

TEST_F(DataChecks, HaveDataThatIsWrittenWholeOrNotAtAll)
{
    ASSERT_EQ(MakePlan(), ZR_DATA_OK);
    ZrDataOptions options = OptionsOf(kInputs[0]);
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
    ASSERT_EQ(ZR_DATA_ReadXml(plan_, &options, kInputs[0].text,
                              std::string_view(kInputs[0].text).size(), &document, &result),
              ZR_DATA_OK);
    ZR_DATA_DeleteResult(result);
    FailEach("written tree", [&] {
        void *tree = nullptr;
        uint32_t status = ZR_DATA_WriteTree(document, ZR_DATA_REPORT_ALL, &tree);
        Verdict verdict = {std::to_string(status)};
        if (tree != nullptr) {
            XmlAllocGuard::Pause pause;
            xmlChar *text = nullptr;
            int length = 0;
            xmlDocDumpMemory(static_cast<xmlDoc *>(tree), &text, &length);
            verdict.emplace_back(reinterpret_cast<char *>(text));
            xmlFree(text);
            xmlFreeDoc(static_cast<xmlDoc *>(tree));
        }
        return verdict;
    });
    ZR_DATA_DeleteDocument(document);
}

} // namespace
