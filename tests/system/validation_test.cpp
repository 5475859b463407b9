// SPDX-License-Identifier: Apache-2.0
// Validation: a request or notification is held against the schema; the first fault is described
// in one record, from which an rpc-error is written.
#include <libxml/parser.h>

#include "application.h"

namespace {

using testing::ElementsAre;

// A record as an application writes it (RFC 6241, section 4.3); frees it.
std::string TakeError(ZrdErrNode *error)
{
    if (error == nullptr)
        return "valid";
    std::string text = std::string(ZR_GetErrorTypeName(ZR_GetErrorType(error))) + " " +
                       ZR_GetErrorSeverityName(ZR_GetErrorSeverity(error)) + " " +
                       ZR_GetErrorTagName(ZR_GetErrorTag(error)) + " " +
                       OrDash(ZR_GetErrorAppTag(error)) + " " + OrDash(ZR_GetErrorPath(error)) +
                       " " + OrDash(ZR_GetBadElement(error)) + ": " +
                       OrDash(ZR_GetErrorMessage(error));
    ZR_FreeErrNode(error);
    return text;
}

uint32_t KeepText(const char *text, void *out)
{
    *static_cast<std::string *>(out) = text;
    return 0;
}

class Validation : public Application {
protected:
    void SetUp() override
    {
        Start();
        Have("box", R"(
            <rpc name='pack'>
              <input>
                <leaf name='number'><type name='uint8'/><mandatory value='true'/></leaf>
                <leaf name='room'><type name='string'/><default value='cellar'/></leaf>
                <container name='options'>
                  <leaf name='wrap'><type name='boolean'/><default value='false'/></leaf>
                  <leaf name='tape'>
                    <when condition="../wrap = 'true'"/>
                    <type name='string'/>
                  </leaf>
                </container>
                <list name='item'>
                  <key value='name'/>
                  <leaf name='name'><type name='string'/></leaf>
                  <leaf name='weight'>
                    <must condition='. &lt;= 20'>
                      <error-message><value>Too heavy.</value></error-message>
                      <error-app-tag value='too-heavy'/>
                    </must>
                    <type name='uint8'/>
                  </leaf>
                </list>
              </input>
            </rpc>
            <container name='store'>
              <list name='box'>
                <key value='number'/>
                <leaf name='number'><type name='uint8'/></leaf>
                <action name='move'>
                  <input><leaf name='to'><type name='string'/><mandatory value='true'/></leaf></input>
                </action>
              </list>
            </container>
            <notification name='moved'>
              <leaf name='number'><type name='uint8'/></leaf>
              <leaf name='by'>
                <when condition="../number &gt; 9"/>
                <type name='string'/>
              </leaf>
            </notification>)");
    }
    std::string Validate(const std::string &xml)
    {
        std::string text = xml;
        return TakeError(
            ZR_CTX_ValidateRpcDataTree(ctx_, ZR_VALUE_STRING, text.data(), nullptr, nullptr));
    }
    std::string Pack(const std::string &content)
    {
        return Validate("<pack xmlns='urn:box'>" + content + "</pack>");
    }
};

TEST_F(Validation, FindsNothingWrongWithARequestThatFollowsTheSchema)
{
    EXPECT_EQ(Pack("<number>7</number>"), "valid");
    EXPECT_EQ(Pack("<number>7</number><item><name>lamp</name><weight>3</weight></item>"), "valid");
}

TEST_F(Validation, DescribesTheFirstFaultInOneRecord)
{
    EXPECT_EQ(Pack(""),
              "application error missing-element - /box:pack number: Missing element: number.");
    EXPECT_EQ(
        Pack("<number>700</number>"),
        "application error bad-element - /box:pack/number number: number has invalid value 700.");
    EXPECT_EQ(
        Pack("<number>7</number><colour>red</colour>"),
        "application error unknown-element - /box:pack/colour colour: Unexpected element: colour.");
    EXPECT_EQ(
        Pack("<number>7</number><number>8</number>"),
        "application error unknown-element - /box:pack/number number: Unexpected element: number.");
    EXPECT_EQ(Pack("<room>attic</room><number>7</number>"),
              "application error missing-element - /box:pack/number number: Invalid element order "
              "between number and room.");
    EXPECT_EQ(
        Validate("<unpack xmlns='urn:box'/>"),
        "application error unknown-element - /box:unpack unpack: Unexpected element: unpack.");
    EXPECT_EQ(
        Validate("<pack xmlns='urn:crate'/>"),
        "application error unknown-namespace - /pack pack: pack has invalid namespace: urn:crate.");
    EXPECT_EQ(Validate("<pack"), "application error operation-failed - / -: -");
}

TEST_F(Validation, EvaluatesTheConditionsOfTheSchema)
{
    EXPECT_EQ(Pack("<number>7</number><options><wrap>true</wrap><tape>wide</tape></options>"),
              "valid");
    EXPECT_EQ(Pack("<number>7</number><options><tape>wide</tape></options>"),
              "application error unknown-element - /box:pack/options/tape tape: tape is not "
              "satisfied when condition.");
    EXPECT_EQ(Pack("<number>7</number><item><name>anvil</name><weight>90</weight></item>"),
              "application error operation-failed too-heavy /box:pack/item[name='anvil']/weight "
              "weight: Too heavy.");
}

TEST_F(Validation, AddsTheDefaultsToACallersTreeAndNamesWhatItAdded)
{
    const char xml[] = "<pack xmlns='urn:box'><number>7</number></pack>";
    xmlDoc *document = xmlParseDoc(reinterpret_cast<const xmlChar *>(xml));
    Texts added;
    auto note = [](void *element, void *out) {
        static_cast<Texts *>(out)->push_back(
            reinterpret_cast<const char *>(static_cast<xmlNode *>(element)->name));
    };
    EXPECT_EQ(ZR_CTX_ValidateRpcDataTree(ctx_, ZR_VALUE_XML, xmlDocGetRootElement(document), note,
                                         &added),
              nullptr);
    EXPECT_THAT(added, ElementsAre("options", "room")) << "the one added last first";
    xmlChar *text = nullptr;
    xmlDocDumpMemory(document, &text, nullptr);
    EXPECT_STREQ(reinterpret_cast<char *>(text),
                 "<?xml version=\"1.0\"?>\n"
                 "<pack xmlns=\"urn:box\"><number>7</number><room>cellar</room>"
                 "<options><wrap>false</wrap></options></pack>\n");
    xmlFree(text);
    xmlFreeDoc(document);
}

TEST_F(Validation, HandsTheCompletedTextOutInTheSchemasOrder)
{
    std::string completed;
    ZrdErrNode *error = nullptr;
    EXPECT_EQ(ZR_CTX_CompleteRpcDataTree(ctx_,
                                         "<pack xmlns='urn:box'><number>7</number>"
                                         "<item><name>lamp</name></item></pack>",
                                         KeepText, &completed, &error),
              ZR_OK);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(completed, R"(<?xml version="1.0" encoding="UTF-8"?>
<pack xmlns="urn:box">
  <number>7</number>
  <room>cellar</room>
  <options>
    <wrap>false</wrap>
  </options>
  <item>
    <name>lamp</name>
  </item>
</pack>
)");
    EXPECT_EQ(
        ZR_CTX_CompleteRpcDataTree(ctx_, "<pack xmlns='urn:box'/>", KeepText, &completed, &error),
        ZR_ERR_INVALID);
    EXPECT_EQ(TakeError(error),
              "application error missing-element - /box:pack number: Missing element: number.");
}

TEST_F(Validation, FollowsDataToTheActionInIt)
{
    auto move = [&](const std::string &content) {
        return Validate("<store xmlns='urn:box'><box><number>7</number><move>" + content +
                        "</move></box></store>");
    };
    EXPECT_EQ(move("<to>attic</to>"), "valid");
    EXPECT_EQ(move(""), "application error missing-element - /box:store/box[number='7']/move to: "
                        "Missing element: to.");
    EXPECT_EQ(Validate("<store xmlns='urn:box'/>"),
              "application error unknown-element - / action: Unexpected element: action.")
        << "no action in it";
}

TEST_F(Validation, TakesOutOfANotificationWhatItsConditionsDoNotAllow)
{
    std::string left;
    EXPECT_EQ(
        ZR_CTX_ValidateNotifDataTree(
            ctx_, "<moved xmlns='urn:box'><number>7</number><by>me</by></moved>", KeepText, &left),
        ZR_OK);
    EXPECT_EQ(left, R"(<?xml version="1.0" encoding="UTF-8"?>
<moved xmlns="urn:box">
  <number>7</number>
</moved>
)");
}

TEST_F(Validation, TellsWhyANotificationIsRefused)
{
    const char *const xml = "<moved xmlns='urn:box'><where>attic</where></moved>";
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTree(ctx_, xml, nullptr, nullptr), ZR_ERR_INVALID);
    ZrdErrNode *error = nullptr;
    EXPECT_EQ(ZR_CTX_ValidateNotifDataTreeWithError(ctx_, xml, nullptr, nullptr, &error),
              ZR_ERR_INVALID);
    EXPECT_EQ(
        TakeError(error),
        "application error unknown-element - /box:moved/where where: Unexpected element: where.");
}

} // namespace
