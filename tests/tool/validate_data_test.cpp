// SPDX-License-Identifier: Apache-2.0
// zrschema validate with the kinds of RFC 7950.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string kRequests = ZR_EXAMPLES_DIR "/requests/";

std::string Validate(const std::string &rest)
{
    return "validate " + kExampleModules + " -m example-router " + rest;
}

std::string Router(const std::string &inner)
{
    return "<config>\n<router xmlns=\"urn:example:router\" xmlns:t=\"urn:example:types\">\n" +
           inner + "</router>\n</config>";
}

const std::string kInterface = "<hostname>r1</hostname>\n<interfaces><interface><name>eth0</name>"
                               "<type>t:ethernet</type></interface></interfaces>\n";

} // namespace

TEST(ValidateData, SaysThatAConfigurationIsValid)
{
    ToolRun run = RunTool(Validate("--config -"), Router(kInterface));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "-: valid\n");
    EXPECT_EQ(run.err, "");
}

TEST(ValidateData, SaysAllFaultsWithTheirLines)
{
    ToolRun run = RunTool(Validate("--config -"),
                          Router("<max-load>101</max-load>\n<interfaces>\n<interface>\n"
                                 "<type>t:ethernet</type></interface>\n<x/></interfaces>\n"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "-: not valid\n");
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:2: error: /example-router:router/"
                                   "example-router:hostname: \"hostname\" is missing "
                                   "(missing-element)\n"));
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:3: error: /example-router:router/"
                                   "example-router:max-load: "));
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:5: error: "));
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:7: error: "));
}

TEST(ValidateData, PrintsAllFaultsInADocument)
{
    Folder folder;
    std::string file = folder.Add("bad.xml", Router("<hostname>r1</hostname><x/>\n"));
    json document = json::parse(RunTool(Validate("--config --json " + file)).out);
    EXPECT_EQ(document["valid"], false);
    ASSERT_EQ(document["errors"].size(), 1u);
    EXPECT_EQ(document["errors"][0]["tag"], "unknown-element");
    EXPECT_EQ(document["errors"][0]["app-tag"], nullptr);
    EXPECT_EQ(document["errors"][0]["path"], "/example-router:router/example-router:x");
    EXPECT_EQ(document["errors"][0]["message"], "element \"x\" is not in the schema here");
    EXPECT_EQ(document["errors"][0]["bad-element"], "x");
    EXPECT_EQ(document["errors"][0]["file"], file);
    EXPECT_EQ(document["errors"][0]["line"], 3);
    EXPECT_EQ(document["errors"][0]["kind"], "error");
    json good = json::parse(RunTool(Validate("--config --json -"), Router(kInterface)).out);
    EXPECT_EQ(good, json::parse(R"({"valid": true, "errors": []})"));
}

TEST(ValidateData, ChecksSeveralFiles)
{
    Folder folder;
    std::string good = folder.Add("good.xml", Router(kInterface));
    std::string bad = folder.Add("bad.xml", "<config><x/></config>");
    ToolRun run = RunTool(Validate("--config " + good + " " + bad));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, good + ": valid\n" + bad + ": not valid\n");
}

TEST(ValidateData, HoldsMessagesAgainstADatastore)
{
    Folder folder;
    std::string store = folder.Add("store.xml", Router(kInterface));
    std::string event = kRequests + "interface-down.xml";
    EXPECT_EQ(RunTool(Validate("--strict-notification --datastore " + store + " " + event)).out,
              event + ": valid\n");
    std::string empty = folder.Add("empty.xml", "<data/>");
    ToolRun run = RunTool(Validate("--strict-notification --datastore " + empty + " " + event));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("(data-missing, instance-required)"));
    EXPECT_EQ(RunTool(Validate("--strict-notification " + event)).status, 0)
        << "without a datastore what leads into it is not followed";
}

TEST(ValidateData, ChecksRequestsRepliesAndEdits)
{
    EXPECT_EQ(RunTool(Validate("--strict-rpc " + kRequests + "ping.xml")).status, 0);
    EXPECT_THAT(RunTool(Validate("--strict-rpc " + kRequests + "ping-too-large.xml")).err,
                HasSubstr("An echo request has at most 1472 octets. "
                          "(operation-failed, must-violation)"));
    std::string reply = "<rpc-reply xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><received "
                        "xmlns=\"urn:example:router\">5</received></rpc-reply>";
    EXPECT_EQ(RunTool(Validate("--strict-reply example-router:ping -"), reply).status, 0);
    EXPECT_EQ(RunTool(Validate("--edit -"), Router("<max-load>7</max-load>")).status, 0);
    EXPECT_EQ(RunTool(Validate("--data -"), Router(kInterface)).status, 0);
}

TEST(ValidateData, HoldsAnEditAgainstADatastore)
{
    Folder folder;
    std::string store = folder.Add("store.xml", Router("<hostname>r1</hostname>"));
    auto edit = [&](const char *operation) {
        return RunTool(Validate("--edit --datastore " + store + " -"),
                       Router(std::string("<hostname xmlns:nc='urn:ietf:params:xml:ns:netconf:base:"
                                          "1.0' nc:operation='") +
                              operation + "'>r2</hostname>"));
    };
    EXPECT_EQ(edit("replace").out, "-: valid\n");
    EXPECT_THAT(edit("create").err, HasSubstr("cannot be created (data-exists)"));
}

TEST(ValidateData, IsToldWhatItCannotDo)
{
    const std::pair<std::string, const char *> lines[] = {
        {"--config --edit -", "validate takes one of "},
        {"--strict-reply example-router:none -", "no rpc or action is called example-router:none"},
        {"--config --print -", "--print is for --rpc and --notification"},
        {"--rpc a b", "--rpc and --notification take one file"},
        {"--rpc --datastore a b", "--datastore is for "},
        {"--config --datastore a b", "--datastore is for "},
        {"--config /none", "cannot read /none: "},
    };
    for (const auto &[line, message] : lines) {
        ToolRun run = RunTool(Validate(line), "<a/>");
        EXPECT_EQ(run.status, 2) << line;
        EXPECT_THAT(run.err, StartsWith("zrschema: ")) << line;
        EXPECT_THAT(run.err, HasSubstr(message)) << line;
    }
}

TEST(ValidateData, RefusesADatastoreThatIsNoXml)
{
    Folder folder;
    std::string store = folder.Add("store.xml", "<data>\n");
    ToolRun run = RunTool(Validate("--strict-rpc --datastore " + store + " -"), "<a/>");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("zrschema: " + store + ":"));
    EXPECT_EQ(run.out, "");
}

namespace {

constexpr const char *kJson = R"({"example-router:router": {"hostname": "r1", "interfaces":
  {"interface": [{"name": "eth0", "type": "example-types:ethernet"}]}}})";

} // namespace

TEST(ValidateData, TakesJsonToo)
{
    EXPECT_EQ(RunTool(Validate("--config -"), kJson).out, "-: valid\n");
    ToolRun run = RunTool(Validate("--config -"), "{\n\"example-router:router\": {\n"
                                                  "\"hostname\": 1}}");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:3: error: /example-router:router/"
                                   "example-router:hostname: "));
    EXPECT_EQ(RunTool(Validate("--strict-rpc -"), R"({"example-router:ping": {}})").err,
              RunTool(Validate("--strict-rpc -"), "<ping xmlns=\"urn:example:router\"/>").err);
}

TEST(ValidateData, TakesADatastoreInJsonThatHasNoFaults)
{
    Folder folder;
    std::string store = folder.Add("store.json", kJson);
    std::string event = kRequests + "interface-down.xml";
    EXPECT_EQ(RunTool(Validate("--strict-notification --datastore " + store + " " + event)).out,
              event + ": valid\n");
    std::string faulty = folder.Add("faulty.json", R"({"example-router:none": 1})");
    ToolRun run = RunTool(Validate("--strict-notification --datastore " + faulty + " " + event));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("zrschema: " + faulty + ":1: error: /example-router:none: "));
    EXPECT_EQ(run.out, "");
}

TEST(ValidateData, SaysHowManyFaultsAreLeftOut)
{
    std::string many;
    for (int i = 0; i < 103; ++i)
        many += "<x/>";
    std::string data = Router("<hostname>r1</hostname>" + many);
    EXPECT_THAT(RunTool(Validate("--config -"), data).err, HasSubstr("-: error: 3 more faults\n"));
    json errors = json::parse(RunTool(Validate("--config --json -"), data).out)["errors"];
    ASSERT_EQ(errors.size(), 101u);
    EXPECT_EQ(errors[100]["message"], "3 more faults");
}
