// SPDX-License-Identifier: Apache-2.0
// The man pages that the build makes, beside what the program and the headers say.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const fs::path kPages = ZR_MAN_DIR;
const char *const kLibraries[] = {"zrschema", "zryang", "zrdata", "zrpatterns"};

std::string ReadFile(const fs::path &path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// What a command prints, on standard error too.
std::string OutputOf(const std::string &command)
{
    std::string text;
    FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    for (int c; pipe != nullptr && (c = fgetc(pipe)) != EOF;)
        text += char(c);
    if (pipe != nullptr)
        pclose(pipe);
    return text;
}

// A page as its reader sees it, but for fonts and line ends.
std::string PageText(const fs::path &path)
{
    std::string text = ReadFile(path);
    for (const auto &[escape, meaning] : {std::pair{"\\fB", ""},
                                          {"\\fI", ""},
                                          {"\\fP", ""},
                                          {"\\%", ""},
                                          {"\\&", ""},
                                          {"\\-", "-"},
                                          {"\\(aq", "'"}})
        for (size_t at = 0; (at = text.find(escape, at)) != std::string::npos;)
            text.replace(at, std::string_view(escape).size(), meaning);
    return text;
}

std::set<std::string> AllMatches(const std::string &text, const std::string &pattern)
{
    std::set<std::string> found;
    std::regex regex(pattern);
    for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at)
        found.insert((*at)[1]);
    return found;
}

// The commands that the help names.
std::set<std::string> Commands()
{
    std::string help = OutputOf(ZR_TOOL " --help");
    return AllMatches(help.substr(help.find("Subcommands:")), "\n  ([a-z]+) ");
}

std::set<std::string> OptionsOf(const std::string &command)
{
    std::string help = OutputOf(ZR_TOOL " " + command + " --help");
    std::set<std::string> options = AllMatches(help, "\n  (?:-[a-z],)?(--[a-z-]+)");
    options.merge(AllMatches(help, "\n  (-[a-z]),"));
    return options;
}

std::vector<fs::path> AllPages()
{
    std::vector<fs::path> pages;
    for (const auto &entry : fs::recursive_directory_iterator(kPages))
        if (entry.is_regular_file() &&
            entry.path().parent_path().filename().string().starts_with("man"))
            pages.push_back(entry.path());
    return pages;
}

bool IsLink(const fs::path &page)
{
    return ReadFile(page).starts_with(".so ");
}

// The page that a name of section 3 leads to.
std::string PageOf(const std::string &library, const std::string &name)
{
    fs::path folder = kPages / library;
    std::string text = ReadFile(folder / "man3" / (name + ".3"));
    if (text.starts_with(".so "))
        return PageText(folder / text.substr(4, text.find('\n') - 4));
    return text;
}

// The part of a page that tells of one declaration.
std::string PartOf(const std::string &page, const std::string &name)
{
    size_t start = page.find(".SS \"" + name + "\"\n");
    return start == std::string::npos ? ""
                                      : page.substr(start, page.find("\n.S", start + 1) - start);
}

struct Function {
    std::string library, name, comment;
};

std::vector<Function> PublicFunctions()
{
    std::vector<Function> functions;
    std::regex declaration(R"(/\*\*((?:[^*]|\*(?!/))*)\*/\s*ZR_(?:[A-Z]+_)?API [^;(]*?(\w+)\()");
    for (const char *library : kLibraries)
        for (const auto &header :
             fs::directory_iterator(fs::path(ZR_SOURCE_DIR "/include") / library)) {
            std::string text = ReadFile(header.path());
            for (std::sregex_iterator at(text.begin(), text.end(), declaration), end; at != end;
                 ++at)
                functions.push_back({library, (*at)[2], (*at)[1]});
        }
    return functions;
}

} // namespace

TEST(ManPages, EveryCommandHasAPageWithAllItsOptions)
{
    std::set<std::string> commands = Commands();
    EXPECT_THAT(commands, testing::Contains("validate"));
    for (const std::string &command : commands) {
        std::string page = PageText(kPages / "tool/man1" / ("zrschema-" + command + ".1"));
        EXPECT_THAT(page, HasSubstr("zrschema-" + command + " - ")) << command;
        EXPECT_THAT(OptionsOf(command), Not(IsEmpty())) << command;
        for (const std::string &option : OptionsOf(command))
            EXPECT_THAT(page, testing::ContainsRegex("[.\n, ]" + option + "[\n, ]")) << command;
        for (const char *section :
             {"SYNOPSIS", "DESCRIPTION", "EXIT STATUS", "EXAMPLES", "SEE ALSO"})
            EXPECT_THAT(page, HasSubstr(".SH \"" + std::string(section) + "\"\n")) << command;
    }
}

TEST(ManPages, ThePageOfTheProgramLeadsToEveryCommand)
{
    std::string page = PageText(kPages / "tool/man1/zrschema.1");
    for (const std::string &command : Commands())
        EXPECT_THAT(page, HasSubstr("zrschema-" + command + "(1)"));
}

TEST(ManPages, ExamplesUseOptionsThatTheirCommandsHave)
{
    size_t count = 0;
    for (const std::string &command : Commands()) {
        std::string page = PageText(kPages / "tool/man1" / ("zrschema-" + command + ".1"));
        std::set<std::string> options = OptionsOf(command);
        for (const std::string &line : AllMatches(page, "\n(zrschema " + command + " [^\n]*)"))
            for (const std::string &option : AllMatches(line, " (--?[a-z][a-z-]*)")) {
                EXPECT_EQ(options.count(option), 1u) << line;
                ++count;
            }
    }
    EXPECT_GT(count, 20u);
}

TEST(ManPages, EveryPublicFunctionHasAPageWithAllItsStatuses)
{
    std::vector<Function> functions = PublicFunctions();
    EXPECT_GT(functions.size(), 150u);
    for (const Function &function : functions) {
        std::string part = PartOf(PageOf(function.library, function.name), function.name);
        EXPECT_THAT(part, HasSubstr(function.name + "(")) << function.name;
        for (const std::string &status : AllMatches(function.comment, R"(@retval +(\w+))"))
            EXPECT_THAT(part, HasSubstr("\n" + status + "\n")) << function.name;
        for (const std::string &argument : AllMatches(function.comment, R"(@param +(\w+))"))
            EXPECT_THAT(part, HasSubstr("\n" + argument + "\n")) << function.name;
    }
}

TEST(ManPages, EveryLibraryHasAnEntrance)
{
    for (const char *library : kLibraries)
        EXPECT_THAT(PageOf(library, "lib" + std::string(library)), HasSubstr(".SH \"SYNOPSIS\""))
            << library;
    std::string entrance = PageText(kPages / "zrschema/man3/libzrschema.3");
    for (const auto &header : fs::directory_iterator(ZR_SOURCE_DIR "/include/zrschema")) {
        std::string family = header.path().filename().string();
        family.resize(family.find('.'));
        if (family == "zrschema") // it only includes all others
            continue;
        EXPECT_THAT(entrance, HasSubstr("zrschema_" + family + "(3)"));
    }
}

TEST(ManPages, EveryLinkLeadsToAPageOfItsFolder)
{
    for (const fs::path &page : AllPages())
        if (std::string text = ReadFile(page); IsLink(page)) {
            fs::path target = page.parent_path().parent_path() / text.substr(4, text.size() - 5);
            EXPECT_TRUE(fs::exists(target) && !IsLink(target)) << page;
        }
}

TEST(ManPages, NoneHasAFaultForWhatShowsThem)
{
    if (std::system("command -v mandoc >/dev/null && command -v groff >/dev/null") != 0)
        GTEST_SKIP() << "there is no mandoc or no groff here";
    for (const fs::path &page : AllPages())
        if (!IsLink(page)) {
            EXPECT_EQ(OutputOf("mandoc -T lint -W style " + page.string()), "");
            EXPECT_EQ(OutputOf("groff -man -Tutf8 -ww -z " + page.string()), "");
        }
}
