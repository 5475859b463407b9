// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(Tree, PrintsAModuleWithWhatIsCoupledToIt)
{
    ToolRun run = RunTool("tree " + kExampleModules + " example-routing example-router");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("module: example-routing\n"));
    EXPECT_THAT(run.out, HasSubstr("\nmodule: example-router\n"));
    EXPECT_THAT(run.out, HasSubstr("+--rw example-routing:routing"));
}

TEST(Tree, ShowsWhatAFeatureTurnsOn)
{
    std::string plain = RunTool("tree " + kExampleModules + " example-router").out;
    EXPECT_THAT(plain, Not(HasSubstr("tunnel")));
    EXPECT_THAT(plain, Not(HasSubstr("jumbo")));
    std::string one =
        RunTool("tree " + kExampleModules + " --feature example-router:tunnels example-router").out;
    EXPECT_THAT(one, HasSubstr("tunnel!"));
    EXPECT_THAT(one, Not(HasSubstr("jumbo")));
    std::string types =
        RunTool("tree " + kExampleModules + " --feature 'example-types:*' example-router").out;
    EXPECT_THAT(types, HasSubstr("jumbo"));
    std::string all = RunTool("tree " + kExampleModules + " --all-features example-router").out;
    EXPECT_THAT(all, HasSubstr("tunnel!"));
    EXPECT_THAT(all, HasSubstr("jumbo"));
}

TEST(Tree, NamesAFeatureThatIsNotThere)
{
    ToolRun run =
        RunTool("tree " + kExampleModules + " --feature example-router:wings example-router");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: no such feature: example-router:wings\n");
    EXPECT_THAT(run.out, StartsWith("module: example-router\n"));
}

TEST(Tree, PrintsTheOthersWhenOneCannotBeLoaded)
{
    ToolRun run = RunTool("tree " + kExampleModules + " no-such-module example-types");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "module: example-types\n");
    EXPECT_THAT(run.err, HasSubstr("zrschema: cannot load module no-such-module\n"));
}

TEST(Tree, ShowsCloseNamesOfAFeatureThatIsNotThere)
{
    ToolRun run =
        RunTool("tree " + kExampleModules + " --feature example-router:tunels example-router");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: no such feature: example-router:tunels; did you mean "
                       "example-router:tunnels?\n");
    run = RunTool("tree " + kExampleModules + " --feature example-vendor:x example-types");
    EXPECT_EQ(run.err, "zrschema: no such feature: example-vendor:x (module example-vendor is not "
                       "loaded)\n");
}

TEST(Tree, PrintsOneJsonObjectOnRequest)
{
    ToolRun run = RunTool("tree " + kExampleModules + " --json example-types no-such-module");
    EXPECT_EQ(run.status, 1);
    json document = json::parse(run.out);
    EXPECT_EQ(document["trees"],
              json::array({{{"module", "example-types"}, {"tree", "module: example-types\n"}},
                           {{"module", "no-such-module"}, {"tree", nullptr}}}));
    EXPECT_EQ(document["errors"][0]["message"], "cannot load module no-such-module");
}

TEST(Tree, WarnsOfAnImportThatIsNotThere)
{
    Folder folder;
    folder.AddModule("m.yin", "m", "<import module='gone'><prefix value='g'/></import>");
    ToolRun run = RunTool("tree m -p " + folder.path());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "zrschema: m: warning: imports gone, which the search directories do not "
                       "have\n");
}

TEST(Tree, LoadsByTheStandardOnRequest)
{
    Folder folder;
    folder.AddModule("wide.yin", "wide",
                     "<leaf name='f'><type name='bits'><bit name='a'>"
                     "<position value='4294967295'/></bit></type></leaf>");
    EXPECT_EQ(RunTool("tree -p " + folder.path() + " wide").status, 1);
    ToolRun run = RunTool("tree --standard -p " + folder.path() + " wide");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "module: wide\n+--rw f?   bits\n");
}
