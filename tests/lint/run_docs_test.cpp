// SPDX-License-Identifier: Apache-2.0
// tools/run_docs on pages of their own: what is shown has to be what happens, and no block is
// passed over.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

// A tree with one page, page.md, and a prefix in which a program that is called zrschema is
// installed.
class RunDocs : public testing::Test {
protected:
    RunDocs()
    {
        std::string pattern = (fs::temp_directory_path() / "zrschema-run-docs-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        fs::create_directories(root_ / "tools");
        fs::copy_file(ZR_SOURCE_DIR "/tools/run_docs", root_ / "tools/run_docs");
        Write("examples/sample.txt", "sample\n");
        WriteProgram("dev", "printf '  test [-R TEXT]\\n      runs\\n  docs\\n      writes\\n'");
        WriteProgram("prefix/bin/zrschema", "case $1 in --help) echo '  tree   prints';;"
                                            " tree) echo '  -p,--path DIR';;"
                                            " *) echo \"no such command: $1\";; esac");
        for (const char *library : {"zrschema", "zryang", "zrdata", "zrpatterns"})
            Write("prefix/lib/pkgconfig/" + std::string(library) + ".pc",
                  "Name: x\nDescription: x\nVersion: 1\n");
    }
    ~RunDocs() override { fs::remove_all(root_); }

    void Write(const fs::path &name, const std::string &text) const
    {
        fs::create_directories((root_ / name).parent_path());
        std::ofstream(root_ / name, std::ios::binary) << text;
    }
    void WriteProgram(const fs::path &name, const std::string &commands) const
    {
        Write(name, "#!/bin/sh\n" + commands + "\n");
        fs::permissions(root_ / name, fs::perms::owner_all);
    }

    // The exit status; what was printed goes to printed_.
    int Run(const std::string &page)
    {
        Write("page.md", page);
        const std::string to = (root_ / "printed").string();
        const std::string command = ZR_PYTHON " '" + (root_ / "tools/run_docs").string() + "' '" +
                                    (root_ / "prefix").string() + "' >'" + to + "' 2>&1";
        const int status = std::system(command.c_str());
        std::stringstream text;
        text << std::ifstream(to).rdbuf();
        printed_ = text.str();
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    fs::path root_;
    std::string printed_;
};

TEST_F(RunDocs, PassesASessionThatPrintsWhatThePageShows)
{
    EXPECT_EQ(Run("```console\n$ cat examples/sample.txt\nsample\n$ mkdir -p a\n$ cd a\n$ export "
                  "B=c\n```\n\n"
                  "```console\n$ basename $PWD-$B\na-c\n```\n"),
              0)
        << printed_;
}

TEST_F(RunDocs, RefusesASessionThatPrintsSomethingElse)
{
    EXPECT_EQ(Run("# Page\n\n```console\n$ echo one\ntwo\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:4: not what is printed:"));
    EXPECT_THAT(printed_, HasSubstr("-two\n+one\n"));
}

TEST_F(RunDocs, RefusesASessionThatPrintsMoreOrLess)
{
    EXPECT_EQ(Run("```console\n$ printf 'one\\ntwo\\n'\none\n```\n"), 1);
    EXPECT_EQ(Run("```console\n$ echo one\none\ntwo\n```\n"), 1);
    EXPECT_EQ(Run("```console\n$ true\none\n```\n"), 1);
}

TEST_F(RunDocs, TakesThreeDotsForAnyLinesAndATildeForANumberThatIsAboutThat)
{
    const std::string session = "```console\n$ printf 'one\\ntwo\\nholds 110 KB\\n'\n";
    EXPECT_EQ(Run(session + "...\nholds ~100 KB\n```\n"), 0) << printed_;
    EXPECT_EQ(Run(session + "...\nholds ~200 KB\n```\n"), 1);
    EXPECT_EQ(Run(session + "o...e\nt...\n...KB\n```\n"), 0) << printed_;
    EXPECT_EQ(Run(session + "o...x\n...\n```\n"), 1);
    EXPECT_EQ(Run(session + "two\n...\n```\n"), 1);
}

TEST_F(RunDocs, RefusesACommandThatFailsWithoutAWordUnlessItsStatusIsShown)
{
    EXPECT_EQ(Run("```console\n$ false\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:2: the command failed without a word, with status 1"));
    EXPECT_EQ(Run("```console\n$ false\n$ echo $?\n1\n```\n"), 0) << printed_;
}

TEST_F(RunDocs, RefusesASessionThatBeginsWithOutput)
{
    EXPECT_EQ(Run("```console\nechoed\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:2: output of no command"));
}

TEST_F(RunDocs, RefusesCommandsOneOfWhichFails)
{
    EXPECT_EQ(Run("```sh\nfalse\ntrue\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:1: the commands ended with status 1"));
    EXPECT_EQ(Run("```sh\ntrue # does\ntrue\n```\n"), 0) << printed_;
}

TEST_F(RunDocs, WritesABlockWithAFileNameBeforeItToThatFile)
{
    EXPECT_EQ(
        Run("Into `a/b.json`:\n\n```json\n{}\n```\n\nAdd to `a/b.json`:\n\n```json\n[]\n```\n\n"
            "`run`:\n\n```sh\n#!/bin/sh\ncat a/b.json\n```\n\n```console\n$ ./run\n{}\n[]\n```\n"),
        0)
        << printed_;
}

TEST_F(RunDocs, RefusesABlockThatNothingRuns)
{
    EXPECT_EQ(Run("```json\n{}\n```\n"), 1);
    EXPECT_THAT(printed_,
                HasSubstr("page.md:1: nothing says what is to be done with a block of \"json\""));
    EXPECT_EQ(Run("```\nplain\n```\n"), 1);
    EXPECT_EQ(Run("```python\nprint()\n```\n"), 1);
    EXPECT_EQ(Run("Text\n\n    true\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:3: indented code"));
}

TEST_F(RunDocs, RefusesAFragmentThatNoProgramIncludes)
{
    EXPECT_EQ(Run("```c\nint a;\n```\n"), 1);
    EXPECT_THAT(
        printed_,
        HasSubstr("page.md:1: no program of tests/docs includes this fragment, page-1.inc"));
}

TEST_F(RunDocs, RunsTheProgramThatIncludesTheFragments)
{
    const std::string page = "# Page\n\n```c\nint a = 1;\n```\n";
    Write("tests/docs/page.c",
          "#include \"page-1.inc\"\nint main(void)\n{\n    return a != 1;\n}\n");
    EXPECT_EQ(Run(page), 0) << printed_;
    Write("tests/docs/page.c",
          "#include \"page-1.inc\"\nint main(void)\n{\n    return a != 2;\n}\n");
    EXPECT_EQ(Run(page), 1);
    EXPECT_THAT(printed_, HasSubstr("tests/docs/page.c ended with status 1"));
    EXPECT_EQ(Run("# Page\n\n```c\nint a = ;\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:4:9: error")); // the place in the page
}

TEST_F(RunDocs, RefusesUnknownCommandsAndOptions)
{
    EXPECT_EQ(
        Run("`zrschema tree -p DIR`, `./dev test -R TEXT`, `./dev`\n\n```sh\n./dev docs\n```\n"), 0)
        << printed_;
    EXPECT_EQ(Run("Text\n`zrschema trees`\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:2: no such command: zrschema trees"));
    EXPECT_EQ(Run("`zrschema tree --pathway`\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:1: no such option: zrschema tree --pathway"));
    EXPECT_EQ(Run("```sh\n./dev fly\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:2: no such command: ./dev fly"));
    EXPECT_EQ(Run("```console\n$ ./dev docs -R TEXT\n```\n"), 1);
    EXPECT_THAT(printed_, HasSubstr("page.md:2: no such option: ./dev docs -R"));
    EXPECT_EQ(Run("```console\n$ ln -s `which true` device\n$ ./device\nnothing\n```\n"),
              1); // another program
}

TEST_F(RunDocs, EndsWithStatusTwoWithoutAnInstalledProgram)
{
    fs::remove(root_ / "prefix/bin/zrschema");
    EXPECT_EQ(Run("# Page\n"), 2);
    EXPECT_THAT(printed_, HasSubstr("run_docs: nothing is installed in"));
}

} // namespace
