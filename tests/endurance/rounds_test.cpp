// SPDX-License-Identifier: Apache-2.0
// A long-running process, of the engine and of checks of whole data: the memory held after many
// rounds is what it was after the first ones.
//
// ZR_ENDURANCE_ROUNDS sets the number of rounds, more than the hundred that come first.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <zrdata/write.h>
#include <zrschema/memory.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/context.h"

namespace {

using namespace zrtest;

// What the library holds through the registered hooks, and libxml2 for it, in the sizes that were
// asked for.
struct Held {
    int64_t blocks = 0;
    int64_t bytes = 0;
    bool operator==(const Held &other) const = default;
} g_held;

// The size stands before each block.
constexpr size_t kHeader = alignof(max_align_t);

void *Malloc(size_t size)
{
    auto *start = static_cast<char *>(std::malloc(size + kHeader));
    if (start == nullptr)
        return nullptr;
    std::memcpy(start, &size, sizeof size);
    ++g_held.blocks;
    g_held.bytes += static_cast<int64_t>(size);
    return start + kHeader;
}

void Free(void *block)
{
    if (block == nullptr)
        return;
    char *start = static_cast<char *>(block) - kHeader;
    size_t size;
    std::memcpy(&size, start, sizeof size);
    --g_held.blocks;
    g_held.bytes -= static_cast<int64_t>(size);
    std::free(start);
}

void *Realloc(void *block, size_t size)
{
    void *bigger = Malloc(size);
    if (bigger == nullptr || block == nullptr)
        return bigger;
    size_t old;
    std::memcpy(&old, static_cast<char *>(block) - kHeader, sizeof old);
    std::memcpy(bigger, block, old < size ? old : size);
    Free(block);
    return bigger;
}

char *Strdup(const char *text)
{
    size_t size = std::strlen(text) + 1;
    return static_cast<char *>(std::memcpy(Malloc(size), text, size));
}

constexpr long kFirstRounds = 100;
constexpr long kUsualRounds = 2000;

// The number that the text says, or 0 when after so many rounds there is nothing to compare.
long RoundsOf(const char *text)
{
    char *end = nullptr;
    long rounds = std::strtol(text, &end, 10);
    return *text != '\0' && *end == '\0' && rounds > kFirstRounds ? rounds : 0;
}

long Rounds()
{
    const char *wanted = std::getenv("ZR_ENDURANCE_ROUNDS");
    return wanted != nullptr ? RoundsOf(wanted) : kUsualRounds;
}

// Runs `round`(number) so often and compares what is held at the end with what was held after the
// first hundred rounds.
template <typename Round> void ExpectSteady(const char *name, long rounds, Round round)
{
    ASSERT_GT(rounds, kFirstRounds) << "ZR_ENDURANCE_ROUNDS must be a number above it";
    Held early;
    for (long number = 0; number < rounds; ++number) {
        round(number);
        if (number + 1 == kFirstRounds)
            early = g_held;
        ASSERT_FALSE(testing::Test::HasFailure()) << "round " << number;
    }
    EXPECT_TRUE(g_held == early) << g_held.blocks - early.blocks << " blocks and "
                                 << g_held.bytes - early.bytes << " bytes more are held";
    std::printf("%s: %ld rounds, %ld blocks and %ld bytes held\n", name, rounds,
                static_cast<long>(g_held.blocks), static_cast<long>(g_held.bytes));
}

class Endurance : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static const uint32_t status = ZR_MemRegisterCallBack(Malloc, Realloc, Free);
        ASSERT_EQ(status, ZR_OK);
        xmlMemSetup(Free, Malloc, Realloc, Strdup);
        xmlInitParser();
    }
};

const char *const kBody = R"yin(
<feature name="f"/><identity name="b"/>
<typedef name="t"><type name="int8"><range value="1..9"/></type><default value="5"/></typedef>
<container name="c"><leaf name="l"><type name="string"/></leaf></container>
<rpc name="op"><input>
  <leaf name="mode"><type name="string"><pattern value="[a-z]+"/></type><default value="on"/></leaf>
  <leaf name="speed"><when condition="../mode = 'on'"/><type name="t"/></leaf>
  <leaf name="kind"><type name="identityref"><base name="b"/></type></leaf>
  <list name="e"><key value="k"/><leaf name="k"><type name="string"/></leaf>
    <must condition="k != 'bad'"/></list></input></rpc>
<notification name="event"><leaf name="l"><type name="string"/></leaf></notification>)yin";

const char *const kAugmenting = R"yin(
<import module="m"><prefix value="m"/></import>
<augment target-node="/m:c"><when condition="m:l"/><leaf name="x"><type name="m:t"/></leaf></augment>
<augment target-node="/m:op/m:output"><leaf name="y"><type name="string"/></leaf></augment>
<deviation target-node="/m:c/m:l"><deviate value="add"><default value="d"/><must condition="."/>
  </deviate></deviation>)yin";

// Values that are new in every round: what is interned on the way must go again.
void Validate(ZrCtx *ctx, long number)
{
    std::string text = std::to_string(number);
    std::string good = "<op xmlns='urn:m'><mode>on</mode><speed>" + std::to_string(number % 9 + 1) +
                       "</speed><kind>b</kind><e><k>" + text + "</k></e></op>";
    EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, good.data(), nullptr, nullptr),
              nullptr);
    std::string bad = "<op xmlns='urn:m'><n" + text + "/></op>";
    ZrdErrNode *error =
        ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, bad.data(), nullptr, nullptr);
    EXPECT_EQ(ZR_GetErrorTag(error), uint32_t{ZR_ERROR_TAG_UNKNOWN_ELEMENT});
    ZR_FreeErrNode(error);
    std::string event = "<event xmlns='urn:m'><l>" + text + "</l></event>";
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(ctx, event.c_str(), nullptr, nullptr), ZR_OK);
}

TEST_F(Endurance, OneContextLoadsValidatesAndUnloads)
{
    TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS | ZR_CTX_KEEP_PATTERNS);
    ExpectSteady("one context", Rounds(), [&](long number) {
        EXPECT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
        EXPECT_EQ(ctx.LoadBody("n", kAugmenting), ZR_OK);
        Validate(ctx, number);
        ZR_CTX_UnloadModule(ctx, "n"); // "m" cannot come back: it has no file
        ZR_CTX_UnloadModule(ctx, "m");
        EXPECT_EQ(ctx.Module("m"), nullptr);
    });
}

TEST_F(Endurance, ModulesFromFilesAreReloadedWithWhatDependsOnThem)
{
    TempDir dir;
    dir.Write("m.yin", ModuleText("m", kBody));
    dir.Write("n@@part.yin", ModuleText("n", kAugmenting));
    TestContext ctx; // imports are loaded by hand: "n" would bring "m" back with it
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, dir.path().c_str()), ZR_OK);
    ExpectSteady("files", Rounds(), [&](long number) {
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, "m"), ZR_OK);
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, "n"), ZR_OK);
        ZR_MOD_EnableFeature(ctx.Module("m"), "f");
        Validate(ctx, number);
        EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "n"), ZR_OK); // is built again, being made of parts
        EXPECT_EQ(ZR_CTX_UnloadModule(ctx, "m"), ZR_OK);
        EXPECT_EQ(ctx.Module("m"), nullptr);
    });
}

TEST_F(Endurance, FailedLoadsOfEverNewNamesAreForgottenWithTheirModule)
{
    TestContext ctx;
    ExpectSteady("failed loads", Rounds(), [&](long number) {
        std::string name = "m" + std::to_string(number);
        EXPECT_EQ(ctx.LoadBody(name, "<leaf name='l'/>"), ZR_ERR_FAILED);
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, name.c_str()), uint32_t{ZR_ERR_NOT_FOUND});
        EXPECT_FALSE(ctx.Messages(name).empty());
        EXPECT_EQ(ZR_CTX_UnloadModule(ctx, name.c_str()), ZR_OK);
    });
}

TEST_F(Endurance, ContextsComeAndGo)
{
    Held before = g_held;
    ExpectSteady("contexts", Rounds(), [&](long number) {
        TestContext ctx(ZR_CTX_KEEP_PATTERNS);
        EXPECT_EQ(ctx.LoadBody("m", kBody), ZR_OK);
        Validate(ctx, number);
    });
    EXPECT_EQ(g_held, before);
}

// ---- whole data

const char *const kDataBody = R"yin(
<leaf name="mode"><type name="string"><pattern value="[a-z]+"/></type><default value="on"/></leaf>
<list name="l"><key value="k"/><unique tag="v"/><leaf name="k"><type name="string"/></leaf>
  <leaf name="v"><when condition="../../mode = 'on'"/><type name="int32"/>
    <must condition="re-match(., '[0-9]*') and . > -1"/></leaf>
  <leaf name="r"><type name="leafref"><path value="../../l/k"/></type>
    <must condition="/l[k = current()]/v"/></leaf></list>
<rpc name="op"><input><leaf name="to"><type name="leafref"><path value="/l/k"/></type></leaf></input>
  </rpc><anydata name="any"/>)yin";

const ZrDataMemory kCounted = {[](size_t size, void *) { return Malloc(size); },
                               [](void *block, void *) { Free(block); }, nullptr};

ZrDataOptions DataOptions(uint32_t kind, const xmlDoc *datastore = nullptr)
{
    ZrDataOptions options = {};
    options.kind = kind;
    if (datastore != nullptr)
        options.datastore = xmlDocGetRootElement(const_cast<xmlDoc *>(datastore));
    return options;
}

// Looks at all that came of a check, and forgets it.
void ExpectFaults(uint32_t status, ZrDataResult *result, size_t faults)
{
    EXPECT_EQ(status, faults == 0 ? uint32_t{ZR_DATA_OK} : uint32_t{ZR_DATA_ERR_FAULTY});
    EXPECT_EQ(ZR_DATA_GetErrorCount(result, nullptr), faults);
    for (size_t i = 0; i < ZR_DATA_GetErrorCount(result, nullptr); ++i)
        EXPECT_NE(ZR_DATA_GetErrorXml(result, i), nullptr);
    ZR_DATA_DeleteResult(result);
}

void CheckXml(const ZrDataPlan *plan, const ZrDataOptions &options, const std::string &text,
              size_t faults)
{
    ZrDataResult *result = nullptr;
    uint32_t status = ZR_DATA_CheckText(plan, &options, text.data(), text.size(), &result);
    ExpectFaults(status, result, faults);
}

int CountPiece(const char *, size_t length, void *count)
{
    *static_cast<size_t *>(count) += length;
    return 0;
}

// Reads data and writes it in all forms.
void WriteAll(const ZrDataPlan *plan, const std::string &text)
{
    ZrDataOptions options = DataOptions(ZR_DATA_CONFIG);
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
    auto *read = text.front() == '{' ? ZR_DATA_ReadJson : ZR_DATA_ReadXml;
    EXPECT_EQ(read(plan, &options, text.data(), text.size(), &document, &result), ZR_DATA_OK);
    ZR_DATA_DeleteResult(result);
    for (uint32_t format : {ZR_DATA_XML, ZR_DATA_JSON}) {
        size_t count = 0;
        ZrDataWriteOptions how = {format, ZR_DATA_REPORT_ALL_TAGGED, 2};
        EXPECT_EQ(ZR_DATA_WriteText(document, &how, CountPiece, &count), ZR_DATA_OK);
        EXPECT_GT(count, text.size() / 2);
    }
    void *tree = nullptr;
    EXPECT_EQ(ZR_DATA_WriteTree(document, ZR_DATA_REPORT_ALL, &tree), ZR_DATA_OK);
    xmlFreeDoc(static_cast<xmlDoc *>(tree));
    ZR_DATA_DeleteDocument(document);
}

void CheckData(const ZrDataPlan *plan, const std::string &number)
{
    const std::string data = "<c xmlns='urn:m'><any><x" + number + "/></any><l><k>" + number +
                             "</k><v>" + number + "</v></l><l><k>b</k><r>" + number + "</r></l>";
    CheckXml(plan, DataOptions(ZR_DATA_CONFIG), data + "</c>", 0);
    CheckXml(plan, DataOptions(ZR_DATA_CONFIG),
             data + "<l><k>b</k><v>-1</v><r>x</r></l><n" + number + "/><mode>9</mode></c>", 7);
    CheckXml(plan, DataOptions(ZR_DATA_CONFIG), data, 1);
    CheckXml(plan, DataOptions(ZR_DATA_EDIT),
             "<c xmlns='urn:m' xmlns:n='urn:ietf:params:xml:ns:netconf:base:1.0'>"
             "<l n:operation='none'><k>" +
                 number + "</k></l></c>",
             1);
    const std::string store = data + "</c>";
    xmlDoc *doc = xmlReadMemory(store.data(), static_cast<int>(store.size()), nullptr, nullptr, 0);
    const std::string open = "<op xmlns='urn:m'><to>", close = "</to></op>";
    CheckXml(plan, DataOptions(ZR_DATA_REQUEST, doc), open + number + close, 0);
    CheckXml(plan, DataOptions(ZR_DATA_REQUEST, doc), open + "-" + number + close, 1);
    ZrDataOptions options = DataOptions(ZR_DATA_CONFIG);
    ZrDataResult *result = nullptr;
    uint32_t status = ZR_DATA_CheckTree(plan, &options, xmlDocGetRootElement(doc), &result);
    ExpectFaults(status, result, 0);
    xmlFreeDoc(doc);
    const std::string json = R"({"m:l": [{"k": ")" + number + R"(", "v": )" + number + "}";
    WriteAll(plan, store);
    WriteAll(plan, json + "]}");
    const std::string faulty = json + R"(, {"v": "x)" + number + R"("}]})";
    status = ZR_DATA_CheckJson(plan, &options, faulty.data(), faulty.size(), &result);
    ExpectFaults(status, result, 2);
}

TEST_F(Endurance, DataIsCheckedAndWrittenWithOnePlan)
{
    TestContext ctx(ZR_CTX_STANDARD);
    ASSERT_EQ(ctx.LoadBody("m", kDataBody), ZR_OK);
    ZrDataPlan *plan = nullptr;
    ASSERT_EQ(ZR_DATA_CreatePlan(ctx, &kCounted, &plan), ZR_DATA_OK);
    ExpectSteady("data", Rounds(), [&](long number) { CheckData(plan, std::to_string(number)); });
    ZR_DATA_DeletePlan(plan);
}

TEST_F(Endurance, PlansComeAndGoWithTheirModules)
{
    Held before = g_held;
    ExpectSteady("plans", Rounds(), [&](long number) {
        TestContext ctx(ZR_CTX_STANDARD);
        EXPECT_EQ(ctx.LoadBody("m", kDataBody), ZR_OK);
        ZrDataPlan *plan = nullptr;
        EXPECT_EQ(ZR_DATA_CreatePlan(ctx, &kCounted, &plan), ZR_DATA_OK);
        CheckData(plan, std::to_string(number));
        ZR_DATA_DeletePlan(plan);
    });
    EXPECT_EQ(g_held, before);
}

// The check itself: what it is there for does not get past it.

TEST_F(Endurance, ABlockThatStaysAfterTheFirstRoundsIsReported)
{
    static void *kept;
    EXPECT_NONFATAL_FAILURE(ExpectSteady("a block kept", kFirstRounds + 1,
                                         [](long number) {
                                             if (number == kFirstRounds)
                                                 kept = Malloc(1);
                                         }),
                            "1 blocks and 1 bytes more are held");
    Free(kept);
}

TEST_F(Endurance, RoundsAfterWhichNothingWouldBeComparedAreRefused)
{
    EXPECT_FATAL_FAILURE(ExpectSteady("too few", kFirstRounds, [](long) {}),
                         "must be a number above it");
    for (const char *text : {"", "0", "-5", "1", "100", "many", "200x"})
        EXPECT_EQ(RoundsOf(text), 0) << text;
    EXPECT_EQ(RoundsOf("101"), 101);
}

} // namespace
