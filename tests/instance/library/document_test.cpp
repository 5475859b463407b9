// SPDX-License-Identifier: Apache-2.0
// The public functions for documents: statuses, callbacks, memory.
#include <libxml/parser.h>

#include <cstdlib>
#include <thread>

#include "support/schema.h"

namespace datatest {

using testing::StartsWith;

namespace {

const ZrDataOptions kConfig = Options(ZR_DATA_CONFIG);
constexpr ZrDataWriteOptions kXml = {ZR_DATA_XML, ZR_DATA_EXPLICIT, 0};

struct Read {
    explicit Read(Schema &schema, const std::string &text, const ZrDataOptions &options = kConfig)
    {
        status =
            ZR_DATA_ReadXml(schema.plan(), &options, text.data(), text.size(), &document, &result);
    }
    ~Read()
    {
        ZR_DATA_DeleteDocument(document);
        ZR_DATA_DeleteResult(result);
    }
    Read(const Read &) = delete;
    Read &operator=(const Read &) = delete;

    uint32_t status;
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
};

} // namespace

TEST(Document, IsMadeOfValidDataAlone)
{
    Schema schema("leaf a { type int8; }");
    Read bad(schema, Wrap("<a>x</a>"));
    EXPECT_EQ(bad.status, ZR_DATA_ERR_FAULTY);
    EXPECT_EQ(bad.document, nullptr);
    EXPECT_THAT(Describe(*ZR_DATA_GetError(bad.result, 0)), StartsWith("invalid-value /a: "));
    Read malformed(schema, "<a>");
    EXPECT_EQ(malformed.status, ZR_DATA_ERR_FAULTY);
    Read unknown(schema, Wrap(""), Options(77));
    EXPECT_EQ(unknown.status, ZR_DATA_ERR_INVALID);
    EXPECT_EQ(unknown.result, nullptr);
    ZR_DATA_DeleteDocument(nullptr);
}

TEST(Document, IsNotMadeWithAPlanThatIsStale)
{
    Schema schema("leaf a { type int8; }");
    ZrDataPlan *plan = nullptr;
    ASSERT_EQ(ZR_DATA_CreatePlan(schema.ctx(), nullptr, &plan), ZR_DATA_OK);
    schema.Add("n", "leaf b { type string; }");
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
    EXPECT_EQ(ZR_DATA_ReadJson(plan, &kConfig, "{}", 2, &document, &result), ZR_DATA_ERR_STALE);
    EXPECT_EQ(ZR_DATA_CheckJson(plan, &kConfig, "{}", 2, &result), ZR_DATA_ERR_STALE);
    ZR_DATA_DeletePlan(plan);
}

TEST(Document, IsNotWrittenAsNobodyKnows)
{
    Schema schema("leaf a { type int8; }");
    Read read(schema, Wrap("<a>1</a>"));
    std::string text;
    for (ZrDataWriteOptions how :
         {ZrDataWriteOptions{0, 0, 0}, ZrDataWriteOptions{3, 0, 0},
          ZrDataWriteOptions{ZR_DATA_XML, 4, 0}, ZrDataWriteOptions{ZR_DATA_XML, 0, 17}})
        EXPECT_EQ(ZR_DATA_WriteText(read.document, &how, AppendTo, &text), ZR_DATA_ERR_INVALID);
    EXPECT_EQ(ZR_DATA_WriteText(nullptr, &kXml, AppendTo, &text), ZR_DATA_ERR_INVALID);
    EXPECT_EQ(ZR_DATA_WriteText(read.document, &kXml, nullptr, &text), ZR_DATA_ERR_INVALID);
    void *tree = nullptr;
    EXPECT_EQ(ZR_DATA_WriteTree(read.document, 4, &tree), ZR_DATA_ERR_INVALID);
    EXPECT_EQ(text, "");
}

TEST(Document, IsWrittenInPiecesUntilTheCallbackStopsIt)
{
    Schema schema("leaf-list a { type string; }");
    std::string data;
    for (int i = 0; i < 10000; ++i)
        data += "<a>" + std::to_string(i) + "</a>";
    data += "<a>" + std::string(100000, 'x') + "</a>";
    Read read(schema, Wrap(data));
    std::string text;
    EXPECT_EQ(ZR_DATA_WriteText(read.document, &kXml, AppendTo, &text), ZR_DATA_OK);
    EXPECT_EQ(text, Wrap(data));
    int calls = 0;
    auto stop = [](const char *, size_t length, void *user) {
        EXPECT_GT(length, 0u);
        return ++*static_cast<int *>(user) == 3 ? 77 : 0;
    };
    EXPECT_EQ(ZR_DATA_WriteText(read.document, &kXml, stop, &calls), 77u);
    EXPECT_EQ(calls, 3);
}

TEST(Document, OfATreeWithCharactersThatXmlCannotWriteMakesNoTree)
{
    Schema schema("leaf a { type string; }");
    xmlDoc *doc = xmlReadMemory("<c xmlns='urn:m'><a>x</a></c>", 29, nullptr, nullptr, 0);
    xmlNode *root = xmlDocGetRootElement(doc);
    root->children->children->content[0] = 1;
    ZrDataDocument *document = nullptr;
    ZrDataResult *result = nullptr;
    ASSERT_EQ(ZR_DATA_ReadTree(schema.plan(), &kConfig, root, &document, &result), ZR_DATA_OK);
    void *tree = nullptr;
    EXPECT_EQ(ZR_DATA_WriteTree(document, ZR_DATA_EXPLICIT, &tree), ZR_DATA_ERR_INVALID);
    EXPECT_EQ(tree, nullptr);
    ZR_DATA_DeleteDocument(document);
    ZR_DATA_DeleteResult(result);
    EXPECT_EQ(ZR_DATA_ReadTree(schema.plan(), &kConfig, doc, &document, &result),
              ZR_DATA_ERR_INVALID);
    xmlFreeDoc(doc);
}

TEST(Document, MakesATreeOfAnyDepth)
{
    Schema schema("anydata d;");
    std::string open, close;
    for (int i = 0; i < 100000; ++i) {
        open += "<a>";
        close += "</a>";
    }
    Read read(schema, Wrap("<d>" + open + close + "</d>"));
    void *tree = nullptr;
    EXPECT_EQ(ZR_DATA_WriteTree(read.document, ZR_DATA_EXPLICIT, &tree), ZR_DATA_OK);
    EXPECT_NE(tree, nullptr);
    xmlFreeDoc(static_cast<xmlDoc *>(tree));
}

TEST(Document, IsWrittenByManyThreadsAtOnce)
{
    Schema schema("list l { key k; leaf k { type int16; } leaf a { type int8; default 1; } }");
    std::string data;
    for (int i = 0; i < 1000; ++i)
        data += "<l><k>" + std::to_string(i) + "</k></l>";
    Read read(schema, Wrap(data));
    std::vector<std::string> texts(4);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < texts.size(); ++i)
        threads.emplace_back([&, i] {
            ZrDataWriteOptions how = {i % 2 == 0 ? ZR_DATA_XML : ZR_DATA_JSON, ZR_DATA_REPORT_ALL,
                                      0};
            ZR_DATA_WriteText(read.document, &how, AppendTo, &texts[i]);
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(texts[0], texts[2]);
    EXPECT_EQ(texts[1], texts[3]);
    EXPECT_EQ(schema.Write(texts[0], {ZR_DATA_JSON, ZR_DATA_EXPLICIT, 0}), texts[1]);
}

// The blocks that are held, and the allocation that fails.
struct Blocks {
    size_t held = 0, made = 0, failing = 0;
};

TEST(DocumentMemory, ThatRunsOutAnywhereLeavesNothingBehind)
{
    Schema schema("list l { key k; leaf k { type string; } leaf a { type int8; default 1; } }"
                  "anydata d; anyxml x; leaf-list v { type int8; default 1; }");
    Blocks blocks;
    ZrDataMemory memory = {[](size_t size, void *user) -> void * {
                               auto *count = static_cast<Blocks *>(user);
                               if (++count->made == count->failing)
                                   return nullptr;
                               ++count->held;
                               return std::malloc(size);
                           },
                           [](void *block, void *user) {
                               --static_cast<Blocks *>(user)->held;
                               std::free(block);
                           },
                           &blocks};
    std::string text = R"({"m:l": [{"k": "a text that is longer than a short one", "a": 1,
        "@a": {"ietf-netconf-with-defaults:default": true}}], "m:d": {"a": [{"b": 1}]},
        "m:x": [[1]]})";
    uint32_t status = ZR_DATA_ERR_NO_MEMORY;
    size_t written = 0;
    for (blocks.failing = 1; status == ZR_DATA_ERR_NO_MEMORY; ++blocks.failing) {
        blocks.made = 0;
        ZrDataPlan *plan = nullptr;
        ZrDataDocument *document = nullptr;
        ZrDataResult *result = nullptr;
        status = ZR_DATA_CreatePlan(schema.ctx(), &memory, &plan);
        if (status == ZR_DATA_OK)
            status = ZR_DATA_ReadJson(plan, &kConfig, text.data(), text.size(), &document, &result);
        for (uint32_t format : {ZR_DATA_XML, ZR_DATA_JSON}) {
            ZrDataWriteOptions how = {format, ZR_DATA_REPORT_ALL_TAGGED, 1};
            std::string out;
            if (status == ZR_DATA_OK)
                status = ZR_DATA_WriteText(document, &how, AppendTo, &out);
            written += out.size();
        }
        void *tree = nullptr;
        if (status == ZR_DATA_OK)
            status = ZR_DATA_WriteTree(document, ZR_DATA_TRIM, &tree);
        xmlFreeDoc(static_cast<xmlDoc *>(tree));
        ZR_DATA_DeleteResult(result);
        ZR_DATA_DeleteDocument(document);
        ZR_DATA_DeletePlan(plan);
        ASSERT_EQ(blocks.held, 0u) << "allocation " << blocks.failing;
    }
    EXPECT_EQ(status, ZR_DATA_OK);
    EXPECT_GT(written, 0u);
    EXPECT_GT(blocks.failing, 20u);
}

} // namespace datatest
