// SPDX-License-Identifier: Apache-2.0
// The static checks of tools/lint, in a small tree of their own: each finds what is planted for it,
// and a tool that does not do its work is never taken for one that found nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

struct LintRun {
    int status;
    std::string text;
};

std::string ReadFile(const fs::path &path)
{
    std::stringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// Tools that the checks need and every machine with a compiler has, and those that stand in for
// the ones that not every machine has: they find nothing.
constexpr const char *kRealTools[] = {"git", "gcc", "g++", "nm", "sh", "as", "ld"};
constexpr const char *kFakeTools[] = {"clang-format", "clang-tidy", "cppcheck", "cmake"};
constexpr const char *kFindsNothing = "exit 0";

// A tree with the project's tools and as much code as they need. Its PATH leads to a folder that
// holds the tools that a test puts there.
class Lint : public testing::Test {
protected:
    Lint()
    {
        std::string pattern = (fs::temp_directory_path() / "zrschema-lint-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        for (const char *tool : {"lint", "check_layers", "check_docs", "exported_names"}) {
            fs::create_directories(root_ / "tools");
            fs::copy_file(fs::path(ZR_SOURCE_DIR "/tools") / tool, root_ / "tools" / tool);
        }
        for (const char *tool : kRealTools)
            Link(tool);
        for (const char *tool : kFakeTools)
            Fake(tool, kFindsNothing);
        Write("src/platform/text.cpp", "int unused;\n");
        Write("src/platform/text.h", "#pragma once\n");
        Write("tools/zrschema/main.cpp", "int main() {}\n");
        Write("include/zrschema/types.h",
              "#define ZR_API __attribute__((visibility(\"default\")))\n"
              "ZR_API int ZR_One(int number);\n");
        Write("include/zryang/zryang.h",
              "#define ZR_YANG_API __attribute__((visibility(\"default\")))\n"
              "ZR_YANG_API int ZR_YANG_One(int number);\n");
        Write("include/zrdata/zrdata.h",
              "#define ZR_DATA_API __attribute__((visibility(\"default\")))\n"
              "ZR_DATA_API int ZR_DATA_One(int number);\n");
        Write("include/zrpatterns/zrpatterns.h",
              "#define ZR_PATTERNS_API __attribute__((visibility(\"default\")))\n"
              "ZR_PATTERNS_API int ZR_PATTERNS_One(int number);\n");
        Shell("git init -q . && mkdir build");
    }
    ~Lint() override { fs::remove_all(root_); }

    void Write(const fs::path &name, const std::string &text) const
    {
        fs::create_directories((root_ / name).parent_path());
        std::ofstream(root_ / name, std::ios::binary) << text;
    }

    // Takes the code of the project, whose layers are checked as they are.
    void CopySources() const
    {
        for (const char *folder : {"src", "include"})
            fs::copy(fs::path(ZR_SOURCE_DIR) / folder, root_ / folder,
                     fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    }

    // Compiles every file of src/ to where the build leaves it.
    void CompileSources() const
    {
        const fs::path objects = root_ / "build/release/src/CMakeFiles/zr_objects.dir";
        for (const auto &entry : fs::recursive_directory_iterator(root_ / "src")) {
            if (entry.path().extension() != ".cpp")
                continue;
            fs::path object = objects / fs::relative(entry.path(), root_ / "src");
            fs::create_directories(object.parent_path());
            ASSERT_EQ(
                Shell("g++ -c '" + entry.path().string() + "' -o '" + object.string() + ".o'"), 0);
        }
    }

    void Append(const fs::path &name, const std::string &text) const
    {
        Write(name, ReadFile(root_ / name) + text);
    }

    void Fake(const std::string &tool, const std::string &does) const
    {
        fs::path file = fs::path("bin") / tool;
        fs::remove(root_ / file);
        Write(file, "#!/bin/sh\n" + does + "\n");
        fs::permissions(root_ / file, fs::perms::owner_all);
    }

    void Link(const std::string &tool) const
    {
        fs::path found = Find(tool);
        fs::create_directories(root_ / "bin");
        fs::remove(root_ / "bin" / tool);
        if (!found.empty())
            fs::create_symlink(found, root_ / "bin" / tool);
    }

    void Restore(const std::string &tool) const
    {
        if (std::count(std::begin(kFakeTools), std::end(kFakeTools), tool) != 0)
            Fake(tool, kFindsNothing);
        else
            Link(tool);
    }

    void BuildLibrary(const std::string &code = "int ZR_One(int n) { return n; }") const
    {
        fs::create_directories(root_ / "build/release/lib");
        BuildLibraryNamed("zrschema", code);
        BuildYangLibrary("int ZR_YANG_One(int n) { return n; }");
        BuildLibraryNamed("zrpatterns", "int ZR_PATTERNS_One(int n) { return n; }");
        BuildLibraryNamed("zrdata", "int ZR_DATA_One(int n) { return n; }");
    }
    void BuildYangLibrary(const std::string &code) const { BuildLibraryNamed("zryang", code); }
    void BuildLibraryNamed(const std::string &name, const std::string &code) const
    {
        Write("library.c", code);
        Write("library.map", exports_);
        ASSERT_EQ(
            Shell("gcc -shared -fPIC -Wl,--version-script=library.map -o build/release/lib/lib" +
                  name + ".so library.c"),
            0);
        fs::remove(root_ / "library.c");
    }

    static fs::path Find(const std::string &tool)
    {
        std::stringstream folders(std::getenv("PATH"));
        for (std::string folder; std::getline(folders, folder, ':');)
            if (fs::exists(fs::path(folder) / tool))
                return fs::path(folder) / tool;
        return {};
    }

    int Shell(const std::string &command) const
    {
        return std::system(("cd '" + root_.string() + "' && " + command).c_str());
    }

    LintRun RunTool(const std::string &tool) const
    {
        int status = Shell("env PATH='" + (root_ / "bin").string() + "' " ZR_PYTHON " tools/" +
                           tool + " >build/out 2>&1");
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(root_ / "build/out")};
    }
    LintRun Run(const std::string &check) const { return RunTool("lint " + check); }
    LintRun CheckLayers(const std::string &folders) const
    {
        return RunTool("check_layers " + folders);
    }

    void ExpectFinds(const std::string &check, const std::string &what) const
    {
        LintRun run = Run(check);
        EXPECT_EQ(run.status, 1) << check;
        EXPECT_THAT(run.text, HasSubstr("FAILED"));
        EXPECT_THAT(run.text, HasSubstr(what));
    }

    // None of the checks was made, and the run says each of `why`.
    void ExpectNotChecked(const std::string &checks, const std::vector<std::string> &why) const
    {
        LintRun run = Run(checks);
        EXPECT_EQ(run.status, 1) << checks;
        EXPECT_EQ(Count(run.text, "NOT CHECKED"), Count(checks, " ") + 1 - Count(checks, "--"))
            << run.text;
        for (const std::string &reason : why)
            EXPECT_THAT(run.text, HasSubstr(reason));
    }

    static size_t Count(const std::string &text, const std::string &part)
    {
        size_t count = 0;
        for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++count;
        return count;
    }

    fs::path root_;
    // How the names of libraries that are built next are exported.
    std::string exports_ = "V_1.0 { global: ZR_One; ZR_Two; ZR_YANG_One; ZR_PATTERNS_One; "
                           "ZR_DATA_One; }; V_INTERNAL_1 { global: ZR_*; };";
};

// Tools, and the checks that cannot be made without them.
const struct {
    std::string checks;
    std::vector<std::string> tools;
} kTools[] = {
    {"format tidy cppcheck headers exports",
     {"clang-format", "clang-tidy", "cppcheck", "gcc", "nm"}},
    {"tidy headers", {"cmake"}},
    {"headers", {"g++"}},
    {"format sizes headers tidy docs", {"git"}},
};

TEST_F(Lint, PassesACleanTree)
{
    BuildLibrary();
    LintRun run = Run("format exports headers sizes cppcheck tidy");
    EXPECT_EQ(run.status, 0) << run.text;
    EXPECT_THAT(run.text, Not(HasSubstr("FAILED")));
}

TEST_F(Lint, FailsWhenAToolIsMissing)
{
    BuildLibrary();
    for (const auto &row : kTools) {
        for (const std::string &tool : row.tools)
            fs::rename(root_ / "bin" / tool, root_ / "bin" / (tool + "-away"));
        ExpectNotChecked(row.checks, row.tools);
        for (const std::string &tool : row.tools)
            fs::rename(root_ / "bin" / (tool + "-away"), root_ / "bin" / tool);
    }
}

TEST_F(Lint, FailsWhenAToolFailsOrCrashes)
{
    BuildLibrary();
    for (const auto &row : kTools) {
        for (const char *does : {"echo 'no such option' >&2; exit 3", "exit 1", "kill -SEGV $$"}) {
            for (const std::string &tool : row.tools)
                Fake(tool, does);
            ExpectNotChecked(row.checks, row.tools);
        }
        for (const std::string &tool : row.tools)
            Restore(tool);
    }
}

TEST_F(Lint, SaysHowAToolFailed)
{
    Fake("cppcheck", "echo 'no such option' >&2; exit 3");
    ExpectNotChecked("cppcheck", {"cppcheck ended with status 3\nno such option"});
    Fake("cppcheck", "kill -SEGV $$");
    ExpectNotChecked("cppcheck", {"cppcheck was ended by SIGSEGV"});
    Fake("clang-tidy", "exit 1");
    ExpectNotChecked("tidy", {"clang-tidy ended with status 1 and names nothing"});
}

TEST_F(Lint, FailsWhenThereIsNothingToLookAt)
{
    fs::remove_all(root_ / "src");
    ExpectNotChecked("sizes", {"no file to check"});
    ExpectNotChecked("layers", {"holds no code"});
    ExpectNotChecked("exports", {"no build/release/lib/libzrschema.so"});
}

TEST_F(Lint, KnowsNoOtherChecks)
{
    LintRun run = Run("formats");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, HasSubstr("no such check: formats"));
}

TEST_F(Lint, RepeatsWhatTheToolsReport)
{
    const std::string report = "src/platform/text.cpp:1:5: warning: ";
    Fake("clang-format", "echo '" + report + "code should be clang-formatted' >&2; exit 1");
    ExpectFinds("format", "src/platform/text.cpp");
    Fake("clang-tidy", "echo '" + report + "unused variable'; exit 1");
    ExpectFinds("tidy", report + "unused variable");
    Fake("clang-tidy", "echo '" + report + "unused variable'; exit 0");
    ExpectFinds("tidy", report + "unused variable");
    Fake("cppcheck", "echo 'src/platform/text.cpp:1:5: style: unused' >&2");
    ExpectFinds("cppcheck", "style: unused");
}

// A commit is what later changes are compared with.
TEST_F(Lint, ReadsOnlyWhatChangedWhenAsked)
{
    Write("src/platform/old.cpp", "int old;\n");
    Write("src/platform/user.cpp", "#include \"platform/text.h\"\n");
    Shell("git add . && git -c user.name=a -c user.email=b commit -q -m c");
    const std::string eachFile = "for f in \"$@\"; do echo \"$f:1:1: warning: seen\"; done";
    Fake("clang-tidy", eachFile);
    EXPECT_EQ(Run("--changed tidy format cppcheck").status, 0) << "nothing changed";

    Write("src/platform/new.cpp", "int fresh;\n");
    Write("src/platform/text.h", "#pragma once\nextern int more;\n");
    LintRun run = Run("--changed tidy");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("src/platform/new.cpp:1:1"));
    EXPECT_THAT(run.text, HasSubstr("src/platform/user.cpp:1:1")) << "it includes a changed header";
    EXPECT_THAT(run.text, Not(HasSubstr("src/platform/old.cpp")));
    EXPECT_THAT(Run("tidy").text, HasSubstr("src/platform/old.cpp:1:1"));

    Shell("git add . && git -c user.name=a -c user.email=b commit -q -m d");
    EXPECT_EQ(Run("--changed tidy").status, 0);
    EXPECT_EQ(Run("--changed=HEAD~1 tidy").status, 1);
    ExpectNotChecked("--changed=nothing tidy", {"git"});
}

TEST_F(Lint, TellsWhatItIsDoing)
{
    LintRun run = Run("sizes tidy");
    EXPECT_THAT(run.text, HasSubstr("file sizes ..."));
    EXPECT_THAT(run.text, HasSubstr("clang-tidy: 2 of 2 files"));
}

TEST_F(Lint, FindsCodeThatIsNotFormatted)
{
    if (Find("clang-format").empty())
        GTEST_SKIP() << "no clang-format here";
    Link("clang-format");
    EXPECT_EQ(Run("format").status, 0);
    Write("src/platform/untidy.cpp", "int   untidy ;\n");
    ExpectFinds("format", "src/platform/untidy.cpp");
}

TEST_F(Lint, FindsFaultsOfTheCode)
{
    if (Find("cppcheck").empty())
        GTEST_SKIP() << "no cppcheck here";
    Link("cppcheck");
    Write("src/platform/fault.cpp", "int Get() { int numbers[2] = {0, 0}; return numbers[2]; }\n");
    ExpectFinds("cppcheck", "src/platform/fault.cpp:1");
}

TEST_F(Lint, FindsHeadersThatAreNoC99)
{
    Write("include/zrschema/extra.h", "bool ZR_IsTrue(void);\n");
    ExpectFinds("headers", "include/zrschema/extra.h:1");
}

TEST_F(Lint, FindsFilesOfTwoSubjects)
{
    std::string text;
    for (int line = 0; line < 451; ++line)
        text += "int number" + std::to_string(line) + ";\n";
    Write("src/platform/long.cpp", text);
    ExpectFinds("sizes", "src/platform/long.cpp: 451 lines");
}

TEST_F(Lint, FindsSourcesThatDoNotNameTheirLicence)
{
    const std::string line = "SPDX-License-Identifier: Apache-2.0\n";
    for (const fs::path name :
         {"tools/zrschema/main.cpp", "src/platform/text.cpp", "src/platform/text.h",
          "include/zrschema/types.h", "include/zryang/zryang.h", "include/zrdata/zrdata.h",
          "include/zrpatterns/zrpatterns.h"})
        Write(name, "// " + line + ReadFile(root_ / name));
    EXPECT_EQ(Run("licence").status, 0) << Run("licence").text;
    Write("src/platform/script.py", "#!/usr/bin/env python3\n# " + line);
    EXPECT_EQ(Run("licence").status, 0);
    Write("src/platform/text.h", "#pragma once\n\n// " + line);
    ExpectFinds("licence", "src/platform/text.h: no");
}

TEST_F(Lint, FindsNamesThatAreDeclaredOrExportedOnly)
{
    BuildLibrary();
    Append("include/zrschema/types.h", "ZR_API int ZR_Two(int number,\n    int other);\n");
    ExpectFinds("exports", "declared but not exported: ZR_Two");
    BuildLibrary("int ZR_One(int n) { return n; }\nint ZR_Two(int n) { return n; }\nint ZR_Three;");
    ExpectFinds("exports", "exported but not declared: ZR_Three");
    Write("src/platform/three.h", "extern \"C\" {\nZR_API extern int ZR_Three;\n}\n");
    EXPECT_EQ(Run("exports").status, 0);
    exports_ = "V_1.0 { global: ZR_*; };";
    BuildLibrary("int ZR_One(int n) { return n; }\nint ZR_Two(int n) { return n; }\nint ZR_Three;");
    ExpectFinds("exports", "internal name of version V_1.0: ZR_Three");
    exports_ = "V_INTERNAL_1 { global: ZR_*; };";
    BuildLibrary("int ZR_One(int n) { return n; }\nint ZR_Two(int n) { return n; }\nint ZR_Three;");
    ExpectFinds("exports", "public name of version V_INTERNAL_1: ZR_One");
    exports_ = "{ global: ZR_*; };";
    BuildLibrary("int ZR_One(int n) { return n; }\nint ZR_Two(int n) { return n; }\nint ZR_Three;");
    ExpectFinds("exports", "exported without a version: ZR_One");
    Append("src/platform/three.h", "ZR_API int (*ZR_Function(int))(int);\n");
    ExpectNotChecked("exports", {"src/platform/three.h"});
}

TEST_F(Lint, FindsNamesInDocumentsThatLeadNowhere)
{
    Write("docs/guide.md", "`src/platform/text.h`, `text.cpp`, `src/platform/` and `ZR_One()`\n"
                           "[here](../docs/guide.md) and `build/made.h`, [there](other.md)\n");
    Write("docs/other.md",
          "```\n`no/such.h` in an example\n```\n"
          "Written here, `written.c`:\n\n```c\n```\n\n`written.c` can be named.\n");
    EXPECT_EQ(Run("docs").status, 0) << Run("docs").text;
    Write("docs/other.md",
          "as\n`src/platform/no.h` says,\n`src/gone/`, `ZR_GetNothing()`\n[x](no.md)\n");
    Write("src/platform/comment.cpp", "// See gone.h and text.h.\nint used;\n");
    LintRun run = Run("docs");
    EXPECT_EQ(run.status, 1);
    for (const char *finding :
         {"docs/other.md:2: src/platform/no.h is not there",
          "docs/other.md:3: src/gone/ is not there", "docs/other.md:3: ZR_GetNothing is not there",
          "docs/other.md:4: no.md is not there", "src/platform/comment.cpp:1: gone.h is not there"})
        EXPECT_THAT(run.text, HasSubstr(finding));
    EXPECT_EQ(Count(run.text, "is not there"), 5u) << run.text;
}

TEST_F(Lint, PassesTheLayersOfTheProject)
{
    LintRun run = CheckLayers(ZR_SOURCE_DIR " " ZR_OBJECTS_DIR);
    EXPECT_EQ(run.status, 0) << run.text;
}

TEST_F(Lint, FindsUsesThatPointUpOrSideways)
{
    // clang-format off
    //  the file                    what it includes               as the finding names it
    constexpr struct {
        const char *user;
        const char *include;
        const char *used;
    } rows[] = {
        {"src/platform/system.cpp",     "\"foundation/text.h\"",       "foundation/text.h"},
        {"src/foundation/dict.cpp",     "\"model/node_record.h\"",     "model/node_record.h"},
        {"src/model/context.cpp",       "\"types/real_type.h\"",       "types/real_type.h"},
        {"src/types/real_type.cpp",     "\"schema/nodes/node.h\"",     "schema/nodes/node.h"},
        {"src/schema/merge/merge.cpp",  "\"loader/unload.h\"",         "loader/unload.h"},
        {"src/schema/module/module.h",  "<data/entry.cpp>",            "data/entry.cpp"},
        {"src/xpath/lex.cpp",           "\"schema/nodes/node.h\"",     "schema/nodes/node.h"},
        {"src/xpath/path_forms.cpp",    "\"schema/nodes/node.h\"",     "schema/nodes/node.h"},
        {"src/xpath/steps.cpp",         "\"data/element.h\"",        "data/element.h"},
        {"src/data/when.cpp",           "\"loader/pipeline.h\"",       "loader/pipeline.h"},
        {"src/loader/coupling.cpp",     "\"../print/printer.h\"",      "print/printer.h"},
        {"src/loader/pending.cpp",      "\"data/phases.h\"",        "data/phases.h"},
        {"src/platform/new/room.h",     "\"print/printer.h\"",         "print/printer.h"},
        {"src/unknown/file.cpp",        "\"platform/strings.h\"",         "no layer is known"},
        {"src/yang/names/links.cpp",    "\"yang/xpath/expression.h\"", "yang/xpath/expression.h"},
        {"src/yang/check/nodes.cpp",    "\"yang/yin/writer.h\"",      "yang/yin/writer.h"},
        {"src/yang/base/source.cpp",    "\"platform/strings.h\"",     "platform/strings.h"},
        {"src/schema/new.cpp",          "\"yang/base/source.h\"",     "yang/base/source.h"},
        {"src/patterns/utf8.cpp",       "\"platform/strings.h\"",     "platform/strings.h"},
        {"src/types/patterns.cpp",      "\"patterns/utf8.h\"",        "patterns/utf8.h"},
        {"src/patterns/utf8.cpp",       "\"shared/memory.h\"",         "shared/memory.h"},
        {"src/types/base.cpp",          "\"shared/memory.h\"",         "shared/memory.h"},
        {"src/instance/tree/parse.cpp", "\"instance/check/run.h\"",    "instance/check/run.h"},
        {"src/instance/tree/value.cpp", "\"yang/base/source.h\"",      "yang/base/source.h"},
        {"src/print/line.cpp",          "\"platform/no_such_file.h\"", "leads to no file"},
        {"src/print/line.cpp",          "NAME_OF_A_FILE",              "leads to no file"},
        {"tools/zrschema/main.cpp",     "\"schema/nodes/node.h\"",     "schema/nodes/node.h"},
    };
    // clang-format on
    CopySources();
    for (const auto &row : rows)
        Append(row.user, std::string(" #  include ") + row.include + "\n");
    LintRun run = CheckLayers(".");
    EXPECT_EQ(run.status, 1);
    for (const auto &row : rows)
        EXPECT_THAT(run.text, ContainsRegex(std::string(row.user) + ":[0-9]+: .*" + row.used));
    EXPECT_EQ(std::count(run.text.begin(), run.text.end(), '\n'), std::ssize(rows));
}

TEST_F(Lint, FindsCallsThatPointUp)
{
    Write("src/foundation/tree.cpp", "int Grow();\nint Grow() { return 1; }\n");
    Write("src/platform/text.cpp", "int Grow();\nint Text();\nint Text() { return Grow(); }\n");
    CompileSources();
    ExpectFinds("layers", "src/platform/text.cpp: platform/text.cpp (platform) uses "
                          "foundation/tree.cpp (foundation) for _Z4Growv");
    Write("src/platform/text.cpp", "int Text();\nint Text() { return 1; }\n");
    CompileSources();
    EXPECT_EQ(Run("layers").status, 0);
}

TEST_F(Lint, FindsFilesThatCallInARing)
{
    Write("src/model/one.cpp", "int Two();\nint One();\nint One() { return Two(); }\n");
    Write("src/model/two.cpp", "int Three();\nint Two();\nint Two() { return Three(); }\n");
    Write("src/model/three.cpp", "int One();\nint Three();\nint Three() { return One(); }\n");
    CompileSources();
    ExpectFinds("layers", "a ring: model/one.cpp, model/three.cpp, model/two.cpp");
    // A table of functions is how a lower file reaches a higher one.
    Write("src/model/three.cpp", "int One();\nextern int (*const g_table[])();\n"
                                 "int (*const g_table[])() = {One};\n");
    Write("src/model/two.cpp", "extern int (*const g_table[])();\nint Two();\n"
                               "int Two() { return g_table[0](); }\n");
    CompileSources();
    EXPECT_EQ(Run("layers").status, 0) << Run("layers").text;
}

TEST_F(Lint, FindsRoomsThatCallInARing)
{
    Write("src/model/a/one.cpp", "int Two();\nint One();\nint One() { return Two(); }\n");
    Write("src/model/b/two.cpp", "int Two();\nint Two() { return 2; }\n");
    CompileSources();
    EXPECT_EQ(Run("layers").status, 0) << Run("layers").text;
    Write("src/model/b/other.cpp", "int One();\nint Other();\nint Other() { return One(); }\n");
    CompileSources();
    ExpectFinds("layers", "a ring: model/a, model/b");
}

TEST_F(Lint, DoesNotCheckCallsOfCodeThatIsNotCompiled)
{
    CompileSources();
    Write("src/platform/new.cpp", "int unused_too;\n");
    ExpectNotChecked("layers", {"nm cannot read"});
}

} // namespace
