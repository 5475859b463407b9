// SPDX-License-Identifier: Apache-2.0
// Requests, actions and notifications against a fixed schema: as text, as the caller's tree, and as
// a notification.
#include "requests.h"
#include "support.h"

#include <cstring>

namespace {

using namespace zrfuzz;

Goal g_valid("a request is valid");
Goal g_completed("a request is completed");
Goal g_validAction("an action is valid");
Goal g_validNotification("a notification is valid");

// Every fault that a request can have.
struct FaultGoal {
    const char *message;
    Goal met;
} g_faults[] = {
    {"Missing element: ", Goal("an element is missing")},
    {" has invalid value ", Goal("a value is invalid")},
    {"Unexpected element: ", Goal("an element is not expected")},
    {" has invalid namespace: ", Goal("a namespace is invalid")},
    {" missing element.", Goal("a mandatory choice is left out")},
    {"Invalid element order", Goal("elements are out of order")},
    {"more than one case", Goal("two cases are there")},
    {"Only when on.", Goal("a must is false")},
    {" is not satisfied when", Goal("a when is false")},
    {"Failed to check when", Goal("a when cannot be evaluated")},
};

// The statements of an rpc's input, an action's input and a notification alike.
const char *const kContent = R"yin(
<leaf name="mode"><type name="enumeration"><enum name="on"/><enum name="off"/></type>
  <default value="on"/></leaf>
<leaf name="size"><type name="int8"><range value="1..50"/></type><must condition="../mode = 'on'">
  <error-message><value>Only when on.</value></error-message><error-app-tag value="size-off"/>
  </must></leaf>
<leaf name="kind"><type name="identityref"><base name="base"/></type></leaf>
<leaf name="speed"><when condition="../mode = 'on'"/><type name="uint32"/><default value="7"/>
  </leaf>
<leaf name="boost"><when condition="derived-from-or-self(../kind, 'm:fast')"/>
  <type name="uint32"/></leaf>
<container name="box"><leaf name="in"><type name="string"/><default value="d"/></leaf>
  <leaf name="flags"><type name="bits"><bit name="a"/><bit name="b"/></type></leaf></container>
<container name="there"><presence value="p"/><leaf name="must-be"><type name="string"/>
  <mandatory value="true"/></leaf></container>
<choice name="way"><default value="road"/>
  <case name="road"><leaf name="lane"><type name="uint8"/><default value="1"/></leaf>
    <container name="side"/></case>
  <case name="rail"><leaf name="track"><type name="string"/></leaf>
    <choice name="gauge"><mandatory value="true"/><leaf name="wide"><type name="empty"/></leaf>
      <leaf name="narrow"><type name="empty"/></leaf></choice></case>
  <leaf-list name="sea"><type name="string"/></leaf-list></choice>
<list name="entry"><key value="id sub"/><leaf name="id"><type name="string"/></leaf>
  <leaf name="sub"><type name="union"><type name="int8"/><type name="string"/></type></leaf>
  <leaf name="ref"><type name="leafref"><path value="../id"/></type></leaf>
  <leaf name="opt"><when condition="../ref"/><type name="string"/><default value="o"/></leaf>
  <must condition="id != 'bad' and not(ref = 'x')"/></list>
<leaf-list name="many"><type name="decimal64"><fraction-digits value="2"/></type></leaf-list>
<anydata name="any"/><anyxml name="xml"/>
<leaf name="gated"><if-feature name="gate"/><type name="string"/></leaf>)yin";

std::string Fixed()
{
    std::string content = kContent;
    return ModuleText(
        "m", "<import module=\"ietf-yang-schema-mount\"><prefix value=\"yangmnt\"/></import>"
             "<feature name=\"gate\"/><identity name=\"base\"/><identity name=\"fast\"><base "
             "name=\"base\"/></identity><identity name=\"faster\"><base name=\"fast\"/></identity>"
             "<rpc name=\"op\"><input>" +
                 content +
                 "</input><output><leaf name=\"done\"><type name=\"string\"/></leaf></output></rpc>"
                 "<rpc name=\"bare\"/><notification name=\"event\">" +
                 content +
                 "</notification><container name=\"top\"><list name=\"item\"><key value=\"k\"/>"
                 "<leaf name=\"k\"><type name=\"string\"/></leaf><action name=\"act\"><input>" +
                 content +
                 "</input></action></list><container name=\"mount\"><yangmnt:mount-point "
                 "xmlns:yangmnt=\"urn:mount\" label=\"l\"/></container></container>");
}

std::string Augmenting()
{
    return ModuleText(
        "n", "<import module=\"m\"><prefix value=\"m\"/></import>"
             "<augment target-node=\"/m:op/m:input/m:box\"><when condition=\"m:in = 'd'\"/>"
             "<leaf name=\"extra\"><type name=\"string\"/><default value=\"e\"/></leaf>"
             "<leaf name=\"need\"><when condition=\"../../m:size &gt; 5\"/><type name=\"string\"/>"
             "<mandatory value=\"true\"/></leaf></augment>");
}

class Schema {
public:
    Schema() : ctx_(0)
    {
        LoadOrDie(ctx_, Fixed());
        LoadOrDie(ctx_, Augmenting());
    }
    ZrCtx *get() const { return ctx_; }

private:
    Context ctx_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    static const Schema *schema = new Schema;
    std::string text(reinterpret_cast<const char *>(data), size);
    text.resize(std::strlen(text.c_str()));
    ZR_CTX_DisableModFeature(schema->get(), "m", "gate");
    if (size % 2 != 0)
        ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(schema->get(), "m"), "gate");
    BlockBalance balance("a validation keeps no block");
    Verdicts verdicts = ValidateInEveryWay(schema->get(), text);
    g_valid.MeetIf(verdicts.request == "valid");
    g_completed.MeetIf(verdicts.defaults != 0);
    g_validAction.MeetIf(verdicts.request == "valid" && text.starts_with("<top"));
    g_validNotification.MeetIf(verdicts.notification);
    for (FaultGoal &goal : g_faults)
        goal.met.MeetIf(verdicts.request.find(goal.message) != std::string::npos);
    return 0;
}
