// The stack that a schema needs that was made to be as deep as can be loaded. The guide says how
// much; a program that gives less to its threads ends here in the test's child process.
#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <pthread.h>
#include <zrschema/zrschema.h>

#include <cstdlib>
#include <functional>
#include <string>

namespace {

// What the guide tells for builds with optimisation, and enough for those without.
#if (defined(NDEBUG) || defined(__i386__)) && !defined(__SANITIZE_ADDRESS__)
constexpr size_t kStack = size_t{1} << 20;
#else
constexpr size_t kStack = size_t{16} << 20;
#endif

// A file has at most so many levels of containers, and the path of an augment so many characters.
constexpr uint32_t kLevelsOfOneAugment = 250;
constexpr size_t kLongestPath = 3095;

// Runs `work` on a thread with that stack, then ends the process with 0 if it gave 0.
[[noreturn]] void RunAndExit(const std::function<uint32_t()> &work)
{
    struct Run {
        const std::function<uint32_t()> &work;
        uint32_t result;
    } run = {work, 1};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread;
    auto start = [](void *at) -> void * {
        auto *self = static_cast<Run *>(at);
        self->result = self->work();
        return nullptr;
    };
    if (pthread_create(&thread, &attributes, start, &run) != 0)
        std::_Exit(2);
    pthread_join(thread, nullptr);
    std::_Exit(run.result == 0 ? 0 : 1);
}

std::string Repeat(const std::string &text, uint32_t count)
{
    std::string all;
    for (uint32_t i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string Augment(const std::string &path, uint32_t levels, const std::string &inner)
{
    return "<augment target-node=\"" + path + "\">" + Repeat("<container name=\"a\">", levels) +
           inner + Repeat("</container>", levels) + "</augment>";
}

// An rpc whose input goes down as far as augments of augments reach; `*levels` of containers.
std::string DeepestModule(const std::string &inner, uint32_t *levels)
{
    std::string body = "<rpc name=\"r\"><input/></rpc>";
    std::string path = "/m:r/m:input";
    size_t length = std::string("/m:r/input").size(); // as it is kept, without repeated prefixes
    for (*levels = 0; length + 2 <= kLongestPath;) {
        auto count = uint32_t((kLongestPath - length) / 2);
        count = count < kLevelsOfOneAugment ? count : kLevelsOfOneAugment;
        body += Augment(path, count, "");
        path += Repeat("/m:a", count);
        length += 2 * size_t{count};
        *levels += count;
    }
    body += Augment(path, kLevelsOfOneAugment, inner);
    *levels += kLevelsOfOneAugment;
    return R"(<module name="m" xmlns="urn:ietf:params:xml:ns:yang:yin:1">)"
           R"(<namespace uri="urn:m"/><prefix value="m"/>)" +
           body + "</module>";
}

// Leaves that refer to each other, each through a union, so that a value is handed on and on.
std::string Chain(uint32_t count)
{
    std::string leaves = R"(<leaf name="l0"><type name="int8"/></leaf>)";
    for (uint32_t i = 1; i < count; ++i)
        leaves += "<leaf name=\"l" + std::to_string(i) +
                  R"("><type name="union"><type name="leafref"><path value="../l)" +
                  std::to_string(i - 1) + "\"/></type></type></leaf>";
    return leaves;
}

xmlNode *Request(uint32_t levels, const char *leaf)
{
    xmlDoc *document = xmlNewDoc(BAD_CAST "1.0");
    xmlNode *top = xmlNewNode(nullptr, BAD_CAST "r");
    xmlDocSetRootElement(document, top);
    xmlNs *ns = xmlNewNs(top, BAD_CAST "urn:m", nullptr);
    xmlSetNs(top, ns);
    xmlNode *element = top;
    for (uint32_t i = 0; i < levels; ++i)
        element = xmlNewChild(element, ns, BAD_CAST "a", nullptr);
    xmlNewChild(element, ns, BAD_CAST leaf, BAD_CAST "1");
    return top;
}

uint32_t AddLength(const char *, uint32_t length, void *total)
{
    *static_cast<uint32_t *>(total) += length;
    return 0;
}

uint32_t LoadAndPrint()
{
    uint32_t levels = 0;
    ZrCtx *ctx = ZR_CTX_Create(0);
    uint32_t status = ZR_CTX_LoadMemory(ctx, DeepestModule("", &levels).c_str());
    uint32_t length = 0;
    if (status == ZR_OK)
        status = ZR_MOD_PrintModelTree(ZR_CTX_GetModuleByModName(ctx, "m"), AddLength, &length);
    if (levels < 1500 || length < levels)
        status = ZR_ERR_FAILED;
    if (status == ZR_OK)
        status = ZR_CTX_UnloadModule(ctx, "m");
    ZR_CTX_Delete(ctx);
    return status;
}

uint32_t Validate()
{
    constexpr uint32_t kChained = 1000; // each is two types; a value is handed on 2,048 times
    uint32_t levels = 0;
    ZrCtx *ctx = ZR_CTX_Create(0);
    uint32_t status = ZR_CTX_LoadMemory(ctx, DeepestModule(Chain(kChained), &levels).c_str());
    xmlNode *request = Request(levels, ("l" + std::to_string(kChained - 1)).c_str());
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, request, nullptr, nullptr);
    if (error != nullptr)
        status = ZR_ERR_INVALID;
    ZR_FreeErrNode(error);
    xmlFreeDoc(request->doc);
    ZR_CTX_Delete(ctx);
    return status;
}

} // namespace

TEST(StackDeathTest, OfOneMebibyteLoadsPrintsAndUnloadsTheDeepestSchema)
{
    EXPECT_EXIT(RunAndExit(LoadAndPrint), testing::ExitedWithCode(0), "");
}

TEST(StackDeathTest, OfOneMebibyteValidatesTheDeepestRequestWithTheLongestChainOfTypes)
{
    EXPECT_EXIT(RunAndExit(Validate), testing::ExitedWithCode(0), "");
}
