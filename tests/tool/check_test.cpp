// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

TEST(Check, LoadsEveryBundledModule)
{
    ToolRun run = RunTool("check " + kExampleModules + " --all");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "example-types: loaded 2026-11-01\n"
                       "example-router: loaded 2026-11-01\n"
                       "example-routing: loaded 2026-11-01\n"
                       "example-services: loaded 2026-11-01\n"
                       "example-vendor: loaded 2026-11-01\n"
                       "5 modules: 5 loaded, 0 failed, 0 errors, 0 warnings\n");
}

TEST(Check, PrintsOneJsonObjectOnRequest)
{
    ToolRun run = RunTool("check " + kExampleModules + " --json example-types no-such-module");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: cannot load module no-such-module\n");
    json whole = json::parse(run.out);
    EXPECT_EQ(whole["loaded"], 1);
    EXPECT_EQ(whole["failed"], 1);
    ASSERT_EQ(whole["modules"].size(), 2u);
    EXPECT_EQ(whole["modules"][0], json({{"name", "example-types"},
                                         {"revision", "2026-11-01"},
                                         {"namespace", "urn:example:types"},
                                         {"loaded", true},
                                         {"errors", json::array()}}));
    EXPECT_EQ(whole["modules"][1]["revision"], nullptr);
    EXPECT_EQ(whole["modules"][1]["loaded"], false);
    EXPECT_EQ(whole["modules"][1]["errors"][0],
              json({{"file", nullptr},
                    {"line", nullptr},
                    {"kind", "warning"},
                    {"message", "Module \"no-such-module\" not found from search directories."}}));
}

TEST(Check, GoesOnAfterAModuleThatCannotBeLoaded)
{
    ToolRun run = RunTool("check " + kExampleModules + " no-such-module example-types");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("no-such-module: not loaded\n"));
    EXPECT_THAT(run.out, HasSubstr("example-types: loaded 2026-11-01\n"));
}

TEST(Check, LoadsImportsOnRequest)
{
    ToolRun alone = RunTool("check " + kExampleModules + " example-vendor");
    EXPECT_THAT(alone.out, HasSubstr("Failed to couple augment statements."))
        << "its target is not loaded";
    EXPECT_EQ(alone.status, 1);
    ToolRun run = RunTool("check " + kExampleModules + " --imports example-vendor");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("1 modules: 1 loaded, 0 failed"));
}

TEST(Check, WithoutAnyModuleFailsAndSaysWhatItLookedFor)
{
    Folder folder;
    folder.Add("README", "no module");
    std::string message =
        "no module found: looked for module files NAME.yang, NAME.yin, NAME@*.yin in " +
        std::filesystem::canonical(folder.path()).string();
    ToolRun run = RunTool("check --all -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: " + message + "\n");
    run = RunTool("check --all --json -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(json::parse(run.out), json({{"modules", json::array()},
                                          {"loaded", 0},
                                          {"failed", 0},
                                          {"errors",
                                           {{{"module", nullptr},
                                             {"file", nullptr},
                                             {"line", nullptr},
                                             {"kind", "error"},
                                             {"message", message}}}}}));
}

TEST(Check, PassesOverWhatIsNoRegularFileAndSaysSo)
{
    Folder folder;
    folder.AddModule("good.yin", "good", "");
    ASSERT_EQ(mkfifo((folder.path() + "/pipe.yin").c_str(), 0600), 0);
    ASSERT_EQ(mkdir((folder.path() + "/folder.yin").c_str(), 0700), 0);
    std::filesystem::create_symlink("nowhere", folder.path() + "/dangling.yin");
    std::filesystem::create_symlink("pipe.yin", folder.path() + "/linked.yin");
    ToolRun run = RunTool("check --all -p " + folder.path());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out, "good: loaded\n1 modules: 1 loaded, 0 failed, 0 errors, 0 warnings\n");
    for (const char *name : {"pipe", "folder", "dangling", "linked"})
        EXPECT_THAT(run.err, HasSubstr(std::string("/") + name +
                                       ".yin: warning: not a regular file: passed over\n"));
    json whole = json::parse(RunTool("check --all --json -p " + folder.path()).out);
    EXPECT_EQ(whole["errors"].size(), 4u);
    EXPECT_EQ(whole["errors"][0]["kind"], "warning");
}

TEST(Check, OpensNoPipeThatStandsForANamedModule)
{
    Folder folder;
    ASSERT_EQ(mkfifo((folder.path() + "/pipe.yin").c_str(), 0600), 0);
    ToolRun run = RunTool("check pipe -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("/pipe.yin is not a regular file"));
}

TEST(Check, NamesFileLineAndReasonOfBrokenXml)
{
    Folder folder;
    folder.Add("bad.yin", "<module name='bad'>\n<prefix>\n</prefxi>\n</module>\n");
    const std::string reason = "Opening and ending tag mismatch: prefix line 2 and prefxi";
    for (const char *what : {"--all", "bad"}) {
        ToolRun run = RunTool(std::string("check ") + what + " -p " + folder.path());
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.out, HasSubstr("bad: not loaded\n"));
        EXPECT_THAT(run.out, HasSubstr("\n  bad.yin:3: error: " + reason + "\n"));
    }
    json whole = json::parse(RunTool("check bad --json -p " + folder.path()).out);
    EXPECT_EQ(whole["modules"][0]["errors"].back(),
              json({{"file", "bad.yin"}, {"line", 3}, {"kind", "error"}, {"message", reason}}));
}

TEST(Check, NamesBrokenXmlInASubmoduleAndInFilesThatAreNotLoaded)
{
    Folder folder, second;
    folder.AddModule("whole.yin", "whole", "<include module='part'/>");
    folder.Add("part.yin", "<submodule");
    second.Add("whole.yin", "<module>");
    std::string directories = " -p " + folder.path() + " -p " + second.path();
    EXPECT_THAT(RunTool("check whole" + directories).out, HasSubstr("\n  part.yin:1: error: "));
    EXPECT_THAT(RunTool("check whole" + directories).out, Not(HasSubstr("whole.yin:1:")));
    EXPECT_THAT(RunTool("check --all" + directories).out, HasSubstr("\n  whole.yin:1: error: "));
}

TEST(Check, OpensNothingThatADocumentTypeNames)
{
    Folder folder;
    ASSERT_EQ(mkfifo((folder.path() + "/pipe").c_str(), 0600), 0);
    folder.Add("typed.yin", "<!DOCTYPE module SYSTEM '" + folder.path() +
                                "/pipe' [<!ENTITY % p SYSTEM '" + folder.path() +
                                "/pipe'> %p;]>\n<module name='typed'/>");
    ToolRun run = RunTool("check --all -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("\n  typed.yin:1: error: a document type declaration is not "
                                   "allowed\n"));
}

TEST(Check, WarnsOfStatementsThatAreOnlyInUnpreparedYin)
{
    Folder folder;
    folder.AddModule("raw.yin", "raw",
                     "<grouping name='g'><uses name='h'/></grouping>\n"
                     "<container name='c'><uses name='g'/>\n"
                     "<typedef name='t'><type name='int8'/></typedef>\n"
                     "<leaff name='x'/><leaff name='y'/>\n"
                     "<leaf xmlns='' name='z'/>\n"
                     "</container>\n<p:own anything='goes'><p:more/></p:own>");
    ToolRun run = RunTool("check raw -p " + folder.path());
    EXPECT_EQ(run.status, 0) << "warnings are no failure";
    EXPECT_EQ(run.out,
              "raw: loaded\n"
              "  raw.yin:3: warning: statement \"grouping\" is passed over: groupings are to be "
              "expanded before\n"
              "  raw.yin:4: warning: statement \"uses\" is passed over: groupings are to be "
              "expanded before\n"
              "  raw.yin:5: warning: statement \"typedef\" below \"container\" is passed over: "
              "typedefs are to be moved to the top of their module before\n"
              "  raw.yin:6: warning: unknown statement \"leaff\" is passed over (2 of them)\n"
              "  raw.yin:7: warning: element \"leaf\" without a namespace is passed over\n"
              "1 modules: 1 loaded, 0 failed, 0 errors, 5 warnings\n");
}

TEST(Check, WarnsOfEachKindOfThemByItself)
{
    const char *const bodies[] = {
        "<grouping name='g'/>",
        "<rpc name='r'><input><uses name='g'/></input></rpc>",
        "<container name='c'><typedef name='t'><type name='int8'/></typedef></container>",
        "<leaff name='x'/>",
        "<container name='c' presence='> a sign in a value'><leaff name='x'/></container>",
        "<!-- <c> --><![CDATA[<c>]]><?c <c>?><leaff name='x'/>",
        "<container xmlns='' name='c'/>",
        "<y:grouping xmlns:y='urn:ietf:params:xml:ns:yang:yin:1' name='g'/>",
        "<p:own><leaf name='x'/></p:own><leaff name='x'/>",
    };
    for (const char *body : bodies) {
        Folder folder;
        folder.AddModule("raw.yin", "raw", body);
        EXPECT_THAT(RunTool("check raw -p " + folder.path()).out,
                    HasSubstr("1 loaded, 0 failed, 0 errors, 1 warnings"))
            << body;
    }
}

TEST(Check, WarnsOfNothingThatOnlyLooksLikeThem)
{
    Folder folder;
    folder.AddModule("plain.yin", "plain",
                     "<typedef name='t'><type name='int8'/></typedef>\n"
                     "<container name='c'><!-- <leaff name='x'/> --><description>"
                     "<text><![CDATA[<uses name='g'/>]]> &lt;grouping/></text></description>"
                     "<must condition=\"'a' &lt; 'b>'\"/></container>\n"
                     "<p:own><p:leaff/></p:own>");
    EXPECT_EQ(RunTool("check plain -p " + folder.path()).out,
              "plain: loaded\n1 modules: 1 loaded, 0 failed, 0 errors, 0 warnings\n");
}

TEST(Check, NamesTheFaultOfATextWhoseHeaderIsWhole)
{
    for (const char *body : {"<leaf name='l'><type name='int8'></leaf>", "<leaf name='l'>",
                             "<leaf name='l' name='l'/>", "</module><module>", "&x;"}) {
        Folder folder;
        folder.AddModule("broken.yin", "broken", body);
        ToolRun run = RunTool("check broken -p " + folder.path());
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.out, HasSubstr("\n  broken.yin:")) << body;
    }
}

TEST(Check, FindsAnImportBehindOtherStatements)
{
    Folder folder;
    folder.AddModule("late.yin", "late",
                     "<container name='c'/><import module='gone'><prefix value='g'/></import>");
    EXPECT_THAT(RunTool("tree late -p " + folder.path()).err,
                HasSubstr("imports gone, which the search directories do not have"));
}

TEST(Check, ShowsCloseNamesOfAModuleThatIsNotThere)
{
    ToolRun run = RunTool("check " + kExampleModules + " example-routre");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: cannot load module example-routre; did you mean example-router, "
                       "example-routing?\n");
    run = RunTool("check " + kExampleModules + " vendor");
    EXPECT_EQ(run.err, "zrschema: cannot load module vendor; did you mean example-vendor?\n");
}

namespace {

const char *const kWideEnum = "<leaf name='e'><type name='enumeration'><enum name='a'>"
                              "<value value='2147483647'/></enum></type></leaf>";

} // namespace

TEST(Check, NamesTheOptionThatAModuleWouldLoadWith)
{
    Folder folder;
    folder.AddModule("wide.yin", "wide", kWideEnum);
    folder.AddModule("bad.yin", "bad", "<leaf name='l'/>");
    ToolRun run = RunTool("check -p " + folder.path() + " wide bad");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: cannot load module wide; it loads with --standard\n"
                       "zrschema: cannot load module bad\n");
}

TEST(Check, LoadsByTheStandardOnRequest)
{
    Folder folder;
    folder.AddModule("wide.yin", "wide", kWideEnum);
    folder.AddModule("bad.yin", "bad", "<leaf name='l'/>");
    ToolRun run = RunTool("check --standard -p " + folder.path() + " wide");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "wide: loaded\n1 modules: 1 loaded, 0 failed, 0 errors, 0 warnings\n");
    run = RunTool("check --standard -p " + folder.path() + " bad");
    EXPECT_EQ(run.err, "zrschema: cannot load module bad\n");
}
