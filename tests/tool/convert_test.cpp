// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

ToolRun Convert(const std::string &options, const std::string &text)
{
    return RunTool("convert " + kExampleModules + " -m example-router " + options + " -", text);
}

constexpr const char *kXml =
    "<config><r:router xmlns:r='urn:example:router' xmlns:t='urn:example:types'><r:interfaces>\n"
    "<r:interface><r:mtu>+1500</r:mtu><r:name>eth0</r:name><r:type>t:ethernet</r:type>\n"
    "<r:address>192.0.2.1</r:address></r:interface></r:interfaces>\n"
    "<r:hostname>here</r:hostname></r:router></config>";

constexpr const char *kJson = R"({
  "example-router:router": {
    "hostname": "here",
    "interfaces": {
      "interface": [
        {
          "name": "eth0",
          "type": "example-types:ethernet",
          "mtu": 1500,
          "address": [
            "192.0.2.1"
          ]
        }
      ]
    }
  }
}
)";

} // namespace

TEST(Convert, WritesXmlAsJsonAndBack)
{
    ToolRun run = Convert("--to json", kXml);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, kJson);
    EXPECT_THAT(run.err, HasSubstr("warning: ")); // the key stands behind what is no key
    ToolRun back = Convert("--to xml", run.out);
    EXPECT_EQ(back.status, 0) << back.err;
    EXPECT_THAT(back.out, StartsWith("<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n"
                                     "  <router xmlns=\"urn:example:router\">\n"
                                     "    <hostname>here</hostname>\n"));
    EXPECT_EQ(Convert("--to json", back.out).out, kJson);
}

TEST(Convert, WritesDefaultsAsTheModeSays)
{
    EXPECT_EQ(Convert("--to json --defaults explicit", kJson).out, kJson);
    json all = json::parse(Convert("--to json --defaults report-all", kJson).out);
    json &interface = all["example-router:router"]["interfaces"]["interface"][0];
    EXPECT_EQ(interface["enabled"], true);
    EXPECT_EQ(interface["encapsulation"], "none");
    EXPECT_EQ(Convert("--to json --defaults trim", all.dump()).out, kJson);
    EXPECT_THAT(Convert("--to xml --defaults report-all-tagged", kJson).out,
                HasSubstr("<enabled wd:default=\"true\">true</enabled>"));
}

TEST(Convert, RefusesDataWithFaultsAndTellsThemAll)
{
    ToolRun run = Convert("--to xml", "{\n\"example-router:router\": {\n\"max-load\": \"x\"}}");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:2: error: /example-router:router/example-router:"
                                   "hostname: \"hostname\" is missing (missing-element)\n"));
    EXPECT_THAT(run.err, HasSubstr("zrschema: -:3: error: "));
    EXPECT_THAT(Convert("--to xml", "{").err, HasSubstr("(malformed-message)"));
}

TEST(Convert, TakesStateOnRequest)
{
    const std::string text = R"({"example-router:router": {"hostname": "here"},
                                 "example-router:statistics": {"packets-in": "5"}})";
    EXPECT_THAT(Convert("--to json", text).err, HasSubstr("is state data"));
    ToolRun run = Convert("--to json --data", text);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(json::parse(run.out), json::parse(text));
}

TEST(Convert, PrintsOneJsonObjectOnRequest)
{
    json good = json::parse(Convert("--to json --json", kJson).out);
    EXPECT_EQ(good["document"], kJson);
    EXPECT_EQ(good["errors"], json::array());
    json bad = json::parse(Convert("--to json --json", "{}[").out);
    EXPECT_EQ(bad["document"], nullptr);
    EXPECT_EQ(bad["errors"][0]["line"], 1);
    EXPECT_THAT(bad["errors"][0]["message"].get<std::string>(),
                StartsWith("/: the text is not well-formed JSON: column 3: "));
}
