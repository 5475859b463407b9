#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;

namespace {

const std::string kInterface = "/example-router:router/interfaces/interface";

json Describe(const std::string &module, const std::string &path, const std::string &more = "")
{
    ToolRun run = RunTool("node " + kExampleModules + " -m " + module + " --json " + more + path);
    EXPECT_EQ(run.status, 0) << run.err;
    return json::parse(run.out, nullptr, false);
}

} // namespace

TEST(Node, DescribesALeafWithTheRestrictionsOfItsTypeChain)
{
    json leaf = Describe("example-router", "/example-router:router/max-load");
    EXPECT_EQ(leaf["kind"], "leaf");
    EXPECT_EQ(leaf["config"], true);
    EXPECT_EQ(leaf["status"], "current");
    EXPECT_EQ(leaf["default"], json::array({"10"})) << "the typedef's";
    EXPECT_EQ(leaf["units"], "percent") << "of the typedef below";
    ASSERT_EQ(leaf["type"].size(), 3u);
    EXPECT_EQ(leaf["type"][0]["type"], "example-types:load-percent");
    EXPECT_EQ(leaf["type"][2], json({{"type", "uint8"}, {"segments", {{0, 100}}}}));
}

TEST(Node, DescribesConditionsKeysAndFeatures)
{
    json list = Describe("example-router", kInterface);
    EXPECT_EQ(list["kind"], "list");
    EXPECT_EQ(list["key"], json::array({"name"}));
    EXPECT_EQ(list["must"][0]["condition"], "not(example-router:mtu) or example-router:enabled");
    EXPECT_EQ(list["must"][0]["error-app-tag"], "mtu-without-state");
    json jumbo = Describe("example-router", kInterface + "/jumbo");
    EXPECT_EQ(jumbo["if-feature"], json::array({"example-types:jumbo-frames"}));
    EXPECT_EQ(jumbo["enabled"], false);
    jumbo = Describe("example-router", kInterface + "/jumbo", "--all-features ");
    EXPECT_EQ(jumbo["enabled"], true);
}

TEST(Node, DescribesWhatALeafrefPointsTo)
{
    json leaf = Describe("example-router", "/example-router:ping/input/interface");
    EXPECT_EQ(leaf["leafref-target"], kInterface + "/name");
    EXPECT_EQ(leaf["type"][0]["path"], kInterface + "/name");
}

TEST(Node, DescribesExtensionInstances)
{
    json leaf = Describe("example-router", "/example-router:router/hostname");
    EXPECT_EQ(leaf["mandatory"], true);
    EXPECT_EQ(leaf["extensions"], json::array({{{"name", "example-types:shown-as"},
                                                {"argument", "Name of the router"}}}));
}

TEST(Node, ShowsWhatADeviationChanged)
{
    json leaf = Describe("example-vendor", kInterface + "/mtu");
    EXPECT_EQ(leaf["default"], json::array({"1500"}));
}

TEST(Node, PrintsOneFieldALine)
{
    ToolRun run =
        RunTool("node " + kExampleModules + " -m example-router /example-router:statistics");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "path: /example-router:statistics\n"
                       "kind: container\n"
                       "module: example-router\n"
                       "config: false\n"
                       "status: current\n"
                       "enabled: true\n");
}

TEST(Node, NamesAPathThatLeadsNowhere)
{
    ToolRun run = RunTool("node " + kExampleModules + " -m example-router /example-router:nowhere");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: no such node: /example-router:nowhere\n");
}
