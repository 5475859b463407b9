// What the shared library gives to the dynamic linker, and what it asks of it.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Lines(const std::string &command)
{
    std::vector<std::string> lines;
    FILE *pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (pipe != nullptr && fgets(buffer, sizeof(buffer), pipe) != nullptr) {
        lines.emplace_back(buffer);
        lines.back().pop_back();
    }
    if (pipe != nullptr)
        pclose(pipe);
    return lines;
}

bool StartsWithOneOf(const std::string &text, const std::vector<std::string> &starts)
{
    for (const std::string &start : starts)
        if (text.compare(0, start.size(), start) == 0)
            return true;
    return false;
}

} // namespace

TEST(Exports, EveryNameOfTheInterfaceIsExported)
{
    void *library = dlopen(ZR_LIBRARY, RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    std::ifstream names(ZR_TEST_SOURCE_DIR "/abi/exported_names.txt");
    std::vector<std::string> missing;
    size_t count = 0;
    for (std::string name; std::getline(names, name); ++count)
        if (dlsym(library, name.c_str()) == nullptr)
            missing.push_back(name);
    EXPECT_GT(count, 800u);
    EXPECT_THAT(missing, testing::IsEmpty());
    dlclose(library);
}

TEST(Exports, NothingElseIsExported)
{
    std::vector<std::string> foreign;
    std::vector<std::string> symbols =
        Lines("nm -D --defined-only -P '" ZR_LIBRARY "' | cut -d' ' -f1");
    EXPECT_GT(symbols.size(), 800u);
    for (const std::string &symbol : symbols)
        if (!StartsWithOneOf(symbol, {"ZR", "ZT_CTX_IgnoreImportModError", "g_zr", "__asan",
                                      "__odr", "_init", "_fini", "__ubsan"}))
            foreign.push_back(symbol);
    EXPECT_THAT(foreign, testing::IsEmpty());
}

TEST(Exports, TheLibraryNeedsLibxml2AndTheCLibraryOnly)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer brings libraries of its own";
#endif
    for (const std::string &line : Lines("readelf -d '" ZR_LIBRARY "' | grep NEEDED"))
        EXPECT_THAT(
            line, testing::AnyOf(testing::HasSubstr("[libxml2.so"), testing::HasSubstr("[libc.so"),
                                 testing::HasSubstr("[ld-linux"), testing::HasSubstr("[libm.so"),
                                 testing::HasSubstr("[libgcc_s.so")));
}

TEST(Exports, TheLibraryDoesNotTouchTheCxxHeap)
{
    EXPECT_THAT(Lines("nm -D --undefined-only '" ZR_LIBRARY "' | grep -E ' (_Znw|_Zna|_Zdl|_Zda)'"),
                testing::IsEmpty());
}
