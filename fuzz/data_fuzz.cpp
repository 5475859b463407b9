// Requests, actions and notifications against a fixed schema: as text, as the caller's tree, and as
// a notification.
#include "support.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

#include "platform/xml_parse.h"

namespace {

using namespace zrfuzz;

// The statements of an rpc's input, an action's input and a notification alike.
const char *const kContent = R"yin(
<leaf name="mode"><type name="enumeration"><enum name="on"/><enum name="off"/></type>
  <default value="on"/></leaf>
<leaf name="size"><type name="int8"><range value="1..50"/></type><must condition="../mode = 'on'">
  <error-message><value>Only when on.</value></error-message><error-app-tag value="size-off"/>
  </must></leaf>
<leaf name="kind"><type name="identityref"><base name="base"/></type></leaf>
<leaf name="speed"><when condition="derived-from-or-self(../kind, 'm:fast')"/>
  <type name="uint32"/><default value="7"/></leaf>
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

std::string Dump(xmlDoc *doc)
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpMemory(doc, &text, &size);
    std::string result(reinterpret_cast<const char *>(text), static_cast<size_t>(size));
    xmlFree(text);
    return result;
}

void CheckRecord(const ZrdErrNode *error)
{
    uint32_t tag = ZR_GetErrorTag(error);
    Check(tag >= ZR_ERROR_TAG_IN_USE && tag <= ZR_ERROR_TAG_MALFORMED_MESSAGE,
          "a record has a tag");
    Check(ZR_GetErrorType(error) == ZR_ERROR_TYPE_APPLICATION, "a record has a type");
    Check(ZR_GetErrorSeverity(error) == ZR_ERROR_SEVERITY_ERROR, "a record has a severity");
    for (const char *text :
         {ZR_GetErrorPath(error), ZR_GetErrorMessage(error), ZR_GetErrorAppTag(error),
          ZR_GetBadElement(error), ZR_GetBadAttribute(error)})
        Check(text == nullptr || std::strlen(text) < 10240, "a record's texts are bounded");
}

std::string Summary(const ZrdErrNode *error)
{
    if (error == nullptr)
        return "valid";
    std::string text = std::to_string(ZR_GetErrorTag(error));
    for (const char *part : {ZR_GetErrorPath(error), ZR_GetErrorMessage(error),
                             ZR_GetErrorAppTag(error), ZR_GetBadElement(error)})
        text += std::string("\n") + (part != nullptr ? part : "-");
    return text;
}

void CheckDefault(void *element, void *userData)
{
    auto *node = static_cast<xmlNode *>(element);
    Check(node->type == XML_ELEMENT_NODE && node->parent != nullptr, "a default is an element");
    Check(node->_private == nullptr, "a default carries no private pointer");
    ++*static_cast<uint32_t *>(userData);
}

std::string RunText(ZrCtx *ctx, std::string text)
{
    uint32_t defaults = 0;
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, 1, text.data(), CheckDefault, &defaults);
    if (error != nullptr)
        CheckRecord(error);
    Check(error == nullptr || defaults == 0, "a failed run adds no default");
    std::string summary = Summary(error);
    ZR_FreeErrNode(error);
    return summary;
}

void CheckClean(const xmlNode *element)
{
    for (const xmlNode *node = element; node != nullptr; node = node->next) {
        Check(node->_private == nullptr, "a run leaves no private pointer");
        if (node->type == XML_ELEMENT_NODE)
            CheckClean(node->children);
    }
}

void RunTree(ZrCtx *ctx, xmlDoc *doc, const std::string &asText)
{
    std::string before = Dump(doc);
    uint32_t defaults = 0;
    ZrdErrNode *error =
        ZR_CTX_ValidateRpcDataTree(ctx, 2, xmlDocGetRootElement(doc), CheckDefault, &defaults);
    Check(Summary(error) == asText, "text and tree give the same record");
    Check(error == nullptr || Dump(doc) == before, "a failed run leaves the tree as it was");
    CheckClean(doc->children);
    bool valid = error == nullptr;
    ZR_FreeErrNode(error);
    if (!valid)
        return;
    // The elements that were added are valid themselves, except for their order.
    ZR_FreeErrNode(ZR_CTX_ValidateRpcDataTree(ctx, 2, xmlDocGetRootElement(doc), nullptr, nullptr));
    CheckClean(doc->children);
}

uint32_t TakeDocument(const char *text, void *)
{
    return std::strlen(text) != 0 ? 5 : 0;
}

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
    std::string asText = RunText(schema->get(), text);
    FailAllocation(PickBy(text, 40));
    std::string shortOfMemory = RunText(schema->get(), text);
    FailAllocation(-1);
    Check(asText == "valid" || shortOfMemory != "valid", "a failure never makes a request valid");
    if (xmlDoc *doc = zr::ParseXmlText(text.c_str(), text.size())) {
        RunTree(schema->get(), doc, asText);
        xmlFreeDoc(doc);
    }
    uint32_t status =
        ZR_CTX_ValidateNotifDataTree(schema->get(), text.c_str(), TakeDocument, nullptr);
    Check(status == 5 || status == ZR_ERR_INVALID, "a notification passes or fails with 22");
    return 0;
}
