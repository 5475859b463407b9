#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

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
