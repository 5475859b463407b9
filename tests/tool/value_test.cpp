// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

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
                       "1501: refused, 0x7008 ZR_ERR_VALUE_RANGE; expected uint16 68..1500 | "
                       "9000\n"
                       "many: refused, 0x7008 ZR_ERR_VALUE_RANGE; expected uint16 68..1500 | "
                       "9000\n");
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
    EXPECT_EQ(json::parse(run.out), json::array({{{"value", "true"},
                                                  {"status", 0},
                                                  {"name", "ZR_OK"},
                                                  {"type", "boolean"},
                                                  {"expected", nullptr},
                                                  {"errors", json::array()}},
                                                 {{"value", "yes"},
                                                  {"status", 0x700A},
                                                  {"name", "ZR_ERR_VALUE_BOOLEAN"},
                                                  {"type", nullptr},
                                                  {"expected", "true or false"},
                                                  {"errors", json::array()}}}));
}

TEST(Value, TakesNegativeNumbersBehindTwoDashes)
{
    ToolRun run = RunTool(Value("-- " + kInterface + "/speed -1.5"));
    EXPECT_EQ(run.out, "-1.5: refused, 0x7008 ZR_ERR_VALUE_RANGE; expected decimal64 with 2 "
                       "fraction digits 0.01..400.0\n");
}

TEST(Value, NamesAPathThatLeadsNowhereOrToNoLeaf)
{
    ToolRun run = RunTool(Value("/example-router:nowhere 1"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("zrschema: no such node: /example-router:nowhere: module "
                                    "example-router has no nowhere"));
    run = RunTool(Value("/example-router:router 1"));
    EXPECT_EQ(run.err, "zrschema: not a leaf or leaf-list: /example-router:router\n");
}

TEST(Value, SaysWhatWasExpected)
{
    const std::pair<const char *, const char *> types[] = {
        {"<type name='int8'/>", "int8 -128..127"},
        {"<type name='t'><range value='min..5'/></type>", "int32 -10..5"},
        {"<type name='t'><range value='0..max'/></type>", "int32 0..100"},
        {"<type name='t'><range value='min | 7 | max'/></type>", "int32 -10 | 7 | 100"},
        {"<type name='t'/>", "int32 -10..100"},
        {"<type name='decimal64'><fraction-digits value='2'/><range value='-1.5..0.25 | 1.0'/>"
         "</type>",
         "decimal64 with 2 fraction digits -1.5..0.25 | 1.0"},
        {"<type name='s'><pattern value='[x-z]'><modifier value='invert-match'/></pattern></type>",
         "string of length 1..3 | 5 not matching [x-z] matching [a-z]*"},
        {"<type name='binary'><length value='4'/></type>", "binary (base64) of length 4"},
        {"<type name='enumeration'><enum name='one'/><enum name='two'/></type>", "one of one, two"},
        {"<type name='bits'><bit name='up'/><bit name='down'/></type>",
         "any of up, down with spaces between them"},
        {"<type name='identityref'><base name='animal'/></type>",
         "an identity derived from m:animal"},
        {"<type name='boolean'/>", "true or false"},
        {"<type name='empty'/>", "no value"},
        {"<type name='leafref'><path value='../p:target'/></type>",
         "as ../m:target: int32 -10..100"},
        {"<type name='union'><type name='boolean'/><type name='leafref'><path "
         "value='/p:c/p:target'/>"
         "</type></type>",
         "true or false; or as /m:c/target: int32 -10..100"},
    };
    for (const auto &[type, expected] : types) {
        Folder folder;
        folder.AddModule(
            "m.yin", "m",
            std::string("<identity name='animal'/>"
                        "<typedef name='t'><type name='int32'><range "
                        "value='-10..100'/></type></typedef>"
                        "<typedef name='s'><type name='string'><length value='1..3 | "
                        "5'/><pattern value='[a-z]*'/></type></typedef>"
                        "<container name='c'><leaf name='target'><type name='t'/></leaf>"
                        "<leaf name='v'>") +
                type + "</leaf></container>");
        ToolRun run = RunTool("value -m m /m:c/v '?!' -p " + folder.path());
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out.substr(run.out.find("; ")), std::string("; expected ") + expected + "\n")
            << type << run.err;
    }
}

TEST(Value, NamesTheTypeOfTheTargetOfALeafrefInAUnion)
{
    Folder folder;
    folder.AddModule(
        "m.yin", "m",
        "<typedef name='t'><type name='int8'/></typedef>"
        "<container name='c'><leaf name='a'><type name='t'/></leaf>"
        "<leaf name='u'><type name='union'><type name='boolean'/>"
        "<type name='leafref'><path value='../p:a'/></type></type></leaf></container>");
    EXPECT_EQ(RunTool("value -m m /m:c/u true 5 -p " + folder.path()).out,
              "true: accepted as boolean\n5: accepted as m:t\n");
}

TEST(Value, TellsOfTypesThatLeadBackToThemselves)
{
    Folder folder;
    folder.AddModule("m.yin", "m",
                     "<leaf name='l'><type name='union'><type name='leafref'><path value='/p:l'/>"
                     "</type><type name='int8'/></type></leaf>");
    ToolRun run = RunTool("value -m m /m:l none -p " + folder.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("; expected as /m:l: union; or int8 -128..127\n"));
}

TEST(Value, GivesNoVerdictWhenTheModulesAreNotSetUp)
{
    Folder folder;
    folder.Add("bad.yin", "<module>\n<");
    const std::string lines[] = {
        Value("-m no-such-module " + kInterface + "/mtu 1500"),
        Value("-m bad -p " + folder.path() + " " + kInterface + "/mtu 1500")};
    for (const std::string &line : lines) {
        ToolRun run = RunTool(line);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, HasSubstr("zrschema: cannot load module "));
        json document = json::parse(RunTool(line + " --json").out);
        ASSERT_EQ(document.size(), 1u);
        EXPECT_EQ(document[0]["value"], nullptr);
        EXPECT_EQ(document[0]["status"], nullptr);
        EXPECT_FALSE(document[0]["errors"].empty());
    }
    EXPECT_THAT(RunTool(lines[1]).err, HasSubstr("bad (bad.yin:2): error: "));
}

TEST(Value, NamesTheStatusOfEveryKindOfRefusal)
{
    const std::pair<const char *, const char *> types[] = {
        {"<type name='n:gone'/>", "0x7001 ZR_ERR_VALUE_DERIVED"},
        {"<type name='identityref'><base name='animal'/></type>", "0x7002 ZR_ERR_VALUE_IDENTITY"},
        {"<type name='bits'><bit name='up'/></type>", "0x7003 ZR_ERR_VALUE_BITS"},
        {"<type name='enumeration'><enum name='up'/></type>", "0x7004 ZR_ERR_VALUE_ENUM"},
        {"<type name='string'><length value='9'/></type>", "0x7005 ZR_ERR_VALUE_LENGTH"},
        {"<type name='leafref'><path value='/p:gone'/></type>", "0x7006 ZR_ERR_VALUE_LEAFREF"},
        {"<type name='string'><pattern value='[a-z]'/></type>", "0x7007 ZR_ERR_VALUE_PATTERN"},
        {"<type name='uint8'/>", "0x7008 ZR_ERR_VALUE_RANGE"},
        {"<type name='union'><type name='uint8'/></type>", "0x7009 ZR_ERR_VALUE_UNION"},
        {"<type name='boolean'/>", "0x700a ZR_ERR_VALUE_BOOLEAN"},
        {"<type name='binary'/>", "0x700b ZR_ERR_VALUE_BINARY"},
        {"<type name='empty'/>", "0x700c ZR_ERR_VALUE_EMPTY"},
    };
    for (const auto &[type, status] : types) {
        Folder folder;
        folder.AddModule("m.yin", "m",
                         std::string("<import module='n'><prefix value='n'/></import>"
                                     "<identity name='animal'/><leaf name='v'>") +
                             type + "</leaf>");
        ToolRun run = RunTool("value -m m /m:v '?!' -p " + folder.path());
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.out, StartsWith(std::string("?!: refused, ") + status + "; expected "))
            << run.err;
    }
}
