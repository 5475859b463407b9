// SPDX-License-Identifier: Apache-2.0
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
    EXPECT_EQ(run.err,
              "zrschema: no such node: /example-router:nowhere: module example-router has no "
              "nowhere (a path is /MODULE:NAME/NAME/..., with MODULE: again where the module "
              "changes; choices, cases, input and output are steps too)\n");
}

TEST(Node, ShowsCloseNamesWhereThePathFails)
{
    const std::pair<const char *, const char *> paths[] = {
        {"/example-router:router/hostnam", "; did you mean hostname?"},
        {"/example-router:rooter/hostname", "; did you mean router?"},
        {"/example-router:router/interfaces/interface/encapsulation",
         "; did you mean link/plain/encapsulation?"},
        {"/example-router:router/interfaces/interface/optic",
         "; did you mean example-vendor:optics?"},
        {"/er:router", "no module er is loaded; did you mean example-router?"},
        {"/example-vender:router", "no module example-vender is loaded; did you mean "
                                   "example-vendor, example-router?"},
        {"/example-routing:routing", "no module example-routing is loaded; load it with -m "
                                     "example-routing"},
        {"/router", "it names no module at its start; did you mean example-router:router?"},
        {"router", "it names no module at its start; did you mean example-router:router?"},
    };
    for (const auto &[path, close] : paths) {
        ToolRun run = RunTool("node " + kExampleModules +
                              " --all-features -m example-router -m example-vendor " + path);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, HasSubstr(std::string("zrschema: no such node: ") + path + ": "));
        EXPECT_THAT(run.err, HasSubstr(close));
    }
}

TEST(Node, PrintsADocumentWithTheReasonWhenThereIsNoNode)
{
    ToolRun run = RunTool("node " + kExampleModules + " --json -m example-router /nowhere");
    EXPECT_EQ(run.status, 1);
    json document = json::parse(run.out);
    ASSERT_EQ(document.size(), 1u);
    EXPECT_THAT(document["errors"][0]["message"].get<std::string>(),
                HasSubstr("no such node: /nowhere"));
}

TEST(Node, HasNoErrorsInItsDocumentWhenAllIsWell)
{
    json node = Describe("example-router", "/example-router:router");
    EXPECT_EQ(node["errors"], json::array());
}

TEST(Node, ShowsTheTypeThatALeafrefInAUnionPointsTo)
{
    Folder folder;
    folder.AddModule("m.yin", "m",
                     "<typedef name='t'><type name='int8'><range value='-5..5'/></type></typedef>"
                     "<leaf name='a'><type name='t'/></leaf>"
                     "<leaf name='u'><type name='union'><type name='boolean'/>"
                     "<type name='leafref'><path value='/p:a'/></type></type></leaf>");
    ToolRun run = RunTool("node --json -m m /m:u -p " + folder.path());
    ASSERT_EQ(run.status, 0) << run.err;
    json type = json::parse(run.out)["type"][0];
    EXPECT_EQ(type["members"], json({"boolean", "leafref"}));
    EXPECT_EQ(type["leafrefs"],
              json::array({{{"path", "/m:a"}, {"target", "/m:a"}, {"type", "m:t"}}}));
}

TEST(Node, ShowsNegativeBoundsOfATypeThatNamesATypedef)
{
    Folder folder;
    folder.AddModule("m.yin", "m",
                     "<typedef name='t'><type name='int8'/></typedef>"
                     "<leaf name='a'><type name='t'><range value='-5..5'/></type></leaf>");
    json node = json::parse(RunTool("node --json -m m /m:a -p " + folder.path()).out);
    EXPECT_EQ(node["type"][0]["segments"], json::array({{-5, 5}}));
}
