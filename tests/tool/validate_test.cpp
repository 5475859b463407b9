// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string kRequests = ZR_EXAMPLES_DIR "/requests/";

std::string Validate(const std::string &rest)
{
    return "validate " + kExampleModules + " -m example-router " + rest;
}

ToolRun ValidateText(const std::string &text, const std::string &options)
{
    return RunTool(Validate(options + " -"), text);
}

constexpr const char *kPing =
    "<ping xmlns='urn:example:router'><destination>192.0.2.1</destination></ping>";

} // namespace

TEST(Validate, ShowsTheDefaultsOfAValidRequest)
{
    ToolRun run = RunTool(Validate("--rpc --print " + kRequests + "ping.xml"));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("valid\n"));
    EXPECT_THAT(run.out, HasSubstr("default: /example-router:ping/count\n"));
    EXPECT_THAT(run.out, HasSubstr("<ttl>64</ttl>"));
}

TEST(Validate, PrintsTheErrorRecordOneFieldALine)
{
    ToolRun run = RunTool(Validate("--rpc " + kRequests + "ping-too-large.xml"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "not valid\n"
                       "type: 4 (application)\n"
                       "severity: 1 (error)\n"
                       "tag: 18 (operation-failed)\n"
                       "app-tag: must-violation\n"
                       "path: /example-router:ping/size\n"
                       "message: An echo request has at most 1472 octets.\n"
                       "bad-element: size\n");
}

TEST(Validate, PrintsOneJsonObjectOnRequest)
{
    json bad =
        json::parse(RunTool(Validate("--rpc --json " + kRequests + "ping-too-large.xml")).out);
    EXPECT_EQ(bad["valid"], false);
    EXPECT_EQ(bad["error"]["tag"], 18);
    EXPECT_EQ(bad["error"]["tag-name"], "operation-failed");
    EXPECT_EQ(bad["error"]["app-tag"], "must-violation");
    EXPECT_EQ(bad["defaults"], json::array());
    EXPECT_EQ(bad["document"], nullptr);
    json good =
        json::parse(RunTool(Validate("--rpc --json --print " + kRequests + "ping.xml")).out);
    EXPECT_EQ(good["valid"], true);
    EXPECT_EQ(good["error"], nullptr);
    EXPECT_EQ(good["defaults"],
              json::array({"/example-router:ping/options", "/example-router:ping/count"}));
    EXPECT_THAT(good["document"].get<std::string>(), HasSubstr("<count>5</count>"));
}

TEST(Validate, TakesARequestOutOfItsNetconfEnvelope)
{
    ToolRun run =
        ValidateText("<rpc message-id='1' xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'>" +
                         std::string(kPing) + "</rpc>",
                     "--rpc");
    EXPECT_EQ(run.status, 0) << run.out;
}

TEST(Validate, TakesAnActionOutOfItsEnvelopes)
{
    ToolRun run = ValidateText(
        "<rpc message-id='1' xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'>"
        "<action xmlns='urn:ietf:params:xml:ns:yang:1'><router "
        "xmlns='urn:example:router'><interfaces>"
        "<interface><name>eth0</name><reset/></interface></interfaces></router></action></rpc>",
        "--rpc");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out, "valid\ndefault: /example-router:router/interfaces/interface/reset/delay\n");
}

TEST(Validate, RefusesAnEnvelopeWithoutOneOperation)
{
    for (const char *inside : {"", "<a/><b/>"}) {
        ToolRun run = ValidateText("<rpc xmlns='urn:ietf:params:xml:ns:netconf:base:1.0'>" +
                                       std::string(inside) + "</rpc>",
                                   "--rpc");
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "not valid\n");
        EXPECT_EQ(run.err,
                  "zrschema: the envelope does not hold exactly one element to validate\n");
    }
}

TEST(Validate, TakesANotificationOutOfItsEnvelope)
{
    ToolRun run = RunTool(Validate("--notification --print " + kRequests + "interface-down.xml"));
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("<reason>cable pulled</reason>"));
    EXPECT_THAT(run.out, Not(HasSubstr("eventTime")));
}

TEST(Validate, PrintsANotificationWithoutWhatItsConditionsRefuse)
{
    ToolRun run =
        ValidateText("<interface-state-changed xmlns='urn:example:router'><state>up</state>"
                     "<reason>none</reason></interface-state-changed>",
                     "--notification --print");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, Not(HasSubstr("<reason>")));
}

TEST(Validate, SaysWhyANotificationIsRefused)
{
    const char *text = "<interface-state-changed xmlns='urn:example:router'>"
                       "<colour>red</colour></interface-state-changed>";
    ToolRun run = ValidateText(text, "--notification");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("not valid\n"));
    EXPECT_THAT(run.out, HasSubstr("tag: 9 (unknown-element)\n"));
    EXPECT_THAT(run.out, HasSubstr("message: Unexpected element: colour.\n"));
    json document = json::parse(ValidateText(text, "--notification --json").out);
    EXPECT_EQ(document["valid"], false);
    EXPECT_EQ(document["error"]["bad-element"], "colour");
}

TEST(Validate, RefusesTextThatIsNoXml)
{
    ToolRun run = ValidateText("<ping", "--rpc");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("tag: 18 (operation-failed)\npath: /\n"));
    EXPECT_EQ(ValidateText("<ping", "--notification").status, 1);
}

TEST(Validate, NeedsToKnowWhatTheFileIs)
{
    for (const char *options : {"", "--rpc --notification "}) {
        ToolRun run = RunTool(Validate(options + kRequests + "ping.xml"));
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err,
                  "zrschema: validate takes one of --config, --data, --edit, --strict-rpc, "
                  "--strict-reply, --strict-notification, --rpc and --notification "
                  "(see zrschema --help)\n");
    }
    EXPECT_EQ(RunTool(Validate("--rpc /nonexistent.xml")).status, 2);
}

TEST(Validate, NamesFileLineAndReasonOfBrokenXml)
{
    Folder folder;
    std::string file = folder.Add("request.xml", "<ping xmlns='urn:example:router'>\n</pong>");
    ToolRun run = RunTool(Validate("--rpc " + file));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("not valid\n"));
    EXPECT_EQ(run.err, "zrschema: " + file +
                           ":2: error: Opening and ending tag mismatch: ping line 1 and pong\n");
    run = ValidateText("<a>\n\n</b>", "--notification --json");
    EXPECT_EQ(run.status, 1);
    json document = json::parse(run.out);
    EXPECT_EQ(document["valid"], false);
    EXPECT_EQ(document["errors"][0]["file"], "-");
    EXPECT_EQ(document["errors"][0]["line"], 3);
}

TEST(Validate, RefusesTextsThatTheLibraryDoesNotRead)
{
    std::string attributes;
    for (int i = 0; i < 40000; ++i)
        attributes += " a" + std::to_string(i) + "='<>'";
    const std::string ping = kPing;
    const std::pair<std::string, const char *> texts[] = {
        {ping + std::string("\0<x", 3), "the text holds a NUL byte"},
        {"<!DOCTYPE ping [<!ENTITY e 'x'>]>" + ping, "a document type declaration is not allowed"},
        {"<ping" + attributes + "/>", "a start tag has more than 1024 attributes"},
        {"", "Document is empty"},
    };
    for (const auto &[text, reason] : texts)
        for (const char *kind : {"--rpc", "--notification"}) {
            ToolRun run = ValidateText(text, kind);
            EXPECT_EQ(run.status, 1);
            EXPECT_THAT(run.out, StartsWith("not valid\n"));
            EXPECT_THAT(run.err, HasSubstr(reason));
        }
    ToolRun run = ValidateText("<!--" + attributes + "--><?x" + attributes + "?>" + ping, "--rpc");
    EXPECT_EQ(run.status, 0) << "what looks like attributes elsewhere does not count";
}

TEST(Validate, OpensNothingThatADocumentTypeNames)
{
    Folder folder;
    std::string pipe = folder.path() + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    ToolRun run =
        ValidateText("<!DOCTYPE ping SYSTEM '" + pipe + "' [<!ENTITY % p SYSTEM '" + pipe +
                         "'> %p; <!ENTITY e SYSTEM '" + pipe + "'>]>" + "<ping>&e;</ping>",
                     "--rpc");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("tag: 18 (operation-failed)\npath: /\n"));
}

TEST(Validate, GivesNoVerdictWhenTheModulesAreNotSetUp)
{
    const std::string ping = kRequests + "ping.xml";
    for (const char *what : {"-m no-such-module ", "--feature example-router:wings "}) {
        ToolRun run = RunTool(Validate("--rpc " + std::string(what) + ping));
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, StartsWith("zrschema: "));
        run = RunTool(Validate("--rpc --json " + std::string(what) + ping));
        EXPECT_EQ(run.status, 1);
        json document = json::parse(run.out);
        EXPECT_EQ(document["valid"], nullptr);
        EXPECT_EQ(document["error"], nullptr);
        EXPECT_FALSE(document["errors"].empty());
    }
}

TEST(Validate, SaysWhyAFileCannotBeRead)
{
    Folder folder;
    EXPECT_EQ(RunTool(Validate("--rpc " + folder.path())).err,
              "zrschema: cannot read " + folder.path() +
                  ": Is a directory (see zrschema --help)\n");
}
