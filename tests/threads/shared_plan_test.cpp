// SPDX-License-Identifier: Apache-2.0
// One plan of libzrdata that eight threads check data with at the same time.
#include <gtest/gtest.h>
#include <zrdata/zrdata.h>

#include "support/context.h"
#include "threads/parallel.h"

namespace {

using namespace zrtest;

constexpr int kRounds = 20;

const char *const kBody = R"yin(
<identity name="b"/><identity name="d"><base name="b"/></identity>
<list name="entry"><key value="name"/><unique tag="port"/><min-elements value="2"/>
  <leaf name="name"><type name="string"><pattern value="[a-z]+"/></type></leaf>
  <leaf name="port"><type name="uint16"/><must condition=". &gt; 1024 and re-match(../name, '[a-z]+')"/>
  </leaf>
  <leaf name="next"><type name="leafref"><path value="/m:entry/m:name"/></type></leaf>
  <leaf name="kind"><type name="identityref"><base name="b"/></type></leaf>
  <leaf name="mode"><when condition="derived-from(../kind, 'm:b')"/><type name="string"/>
    <default value="on"/></leaf></list>
<rpc name="reset"><input><leaf name="entry"><type name="leafref"><path value="/m:entry/m:name"/></type>
  </leaf></input></rpc>)yin";

constexpr std::string_view kData =
    "<config xmlns='urn:m' xmlns:m='urn:m'>"
    "<entry><name>a</name><port>2000</port><next>b</next><kind>m:d</kind><mode>off</mode></entry>"
    "<entry><name>b</name><port>80</port><next>none</next></entry>"
    "<entry><name>C</name><port>2000</port><mode>off</mode><unknown/></entry></config>";
constexpr std::string_view kRequest = "<reset xmlns='urn:m'><entry>b</entry></reset>";

std::string FaultsOf(const ZrDataPlan *plan, uint32_t kind, std::string_view text)
{
    ZrDataOptions options = {};
    options.kind = kind;
    ZrDataResult *result = nullptr;
    std::string faults =
        std::to_string(ZR_DATA_CheckText(plan, &options, text.data(), text.size(), &result));
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i)
        faults += std::string("\n") + ZR_DATA_GetErrorXml(result, i);
    ZR_DATA_DeleteResult(result);
    return faults;
}

TEST(SharedPlan, GivesEachThreadWhatItGivesOneAlone)
{
    TestContext ctx(ZR_CTX_STANDARD);
    ASSERT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
    ZrDataPlan *plan = nullptr;
    ASSERT_EQ(ZR_DATA_CreatePlan(ctx, nullptr, &plan), ZR_DATA_OK);
    std::string data = FaultsOf(plan, ZR_DATA_CONFIG, kData);
    std::string request = FaultsOf(plan, ZR_DATA_REQUEST, kRequest);
    EXPECT_EQ(data.substr(0, 1), std::to_string(ZR_DATA_ERR_FAULTY));
    EXPECT_EQ(request, std::to_string(ZR_DATA_OK));
    auto results = CollectInParallel<bool>([&](int) {
        bool same = true;
        for (int round = 0; round < kRounds; ++round)
            same = ZR_DATA_IsPlanCurrent(plan) != 0 &&
                   FaultsOf(plan, ZR_DATA_CONFIG, kData) == data &&
                   FaultsOf(plan, ZR_DATA_REQUEST, kRequest) == request && same;
        return same;
    });
    for (bool same : results)
        EXPECT_TRUE(same);
    ZR_DATA_DeletePlan(plan);
}

} // namespace
