#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;

namespace {

const std::string kInterface = "/example-router:router/interfaces/interface";

std::string Value(const std::string &rest)
{
    return "value " + kExampleModules + " -m example-router " + rest;
}

} // namespace

TEST(Value, SaysForEachValueWhetherTheLeafTakesIt)
{
    ToolRun run = RunTool(Value(kInterface + "/mtu 1500 1501 many"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "1500: accepted as uint16\n"
                       "1501: refused, 0x7008 ZR_ERR_VALUE_RANGE\n"
                       "many: refused, 0x7008 ZR_ERR_VALUE_RANGE\n");
    EXPECT_EQ(run.err, "");
}

TEST(Value, SucceedsWhenEveryValueIsTaken)
{
    EXPECT_EQ(RunTool(Value(kInterface + "/mtu 68 9000")).status, 0);
}

TEST(Value, NamesTheTypedefOrMemberThatTookTheValue)
{
    ToolRun run = RunTool(Value("/example-router:ping/input/destination 192.0.2.1 ANY"));
    EXPECT_EQ(run.out, "192.0.2.1: accepted as example-types:ipv4-address\n"
                       "ANY: accepted as enumeration\n");
}

TEST(Value, PrintsOneJsonArrayOnRequest)
{
    ToolRun run = RunTool(Value("--json " + kInterface + "/enabled true yes"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        json::parse(run.out),
        json::array({{{"value", "true"}, {"status", 0}, {"name", "ZR_OK"}, {"type", "boolean"}},
                     {{"value", "yes"},
                      {"status", 0x700A},
                      {"name", "ZR_ERR_VALUE_BOOLEAN"},
                      {"type", nullptr}}}));
}

TEST(Value, TakesNegativeNumbersBehindTwoDashes)
{
    ToolRun run = RunTool(Value("-- " + kInterface + "/speed -1.5"));
    EXPECT_EQ(run.out, "-1.5: refused, 0x7008 ZR_ERR_VALUE_RANGE\n");
}

TEST(Value, NamesAPathThatLeadsNowhereOrToNoLeaf)
{
    ToolRun run = RunTool(Value("/example-router:nowhere 1"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "zrschema: no such node: /example-router:nowhere\n");
    run = RunTool(Value("/example-router:router 1"));
    EXPECT_EQ(run.err, "zrschema: not a leaf or leaf-list: /example-router:router\n");
}
