// SPDX-License-Identifier: Apache-2.0
// RFC 7950, section 7.14: the rpc statement. The envelope is that of RFC 6241, section 4.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr const char *kNc = "xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"";

const std::string kPing =
    "feature f; container system { leaf limit { type int8; default 5; } }"
    " list host { key name; leaf name { type string; } }"
    " rpc ping { input { must 'size <= /system/limit' { error-message 'too large'; }"
    "   leaf to { type leafref { path '/host/name'; } mandatory true; }"
    "   leaf size { type int8; default 1; must '. > 0'; }"
    "   leaf copy { type leafref { path '../size'; } }"
    "   list via { key name; leaf name { type string; } leaf n { type int8; } } }"
    "  output { leaf time { type int8; mandatory true; } leaf note { type string; } } }"
    " rpc reset; rpc off { if-feature f; } notification event;";

std::string Ping(const std::string &input)
{
    return "<ping xmlns=\"urn:m\">" + input + "</ping>";
}

std::string Reply(const std::string &output)
{
    return std::string("<rpc-reply message-id=\"1\" ") + kNc + ">" + output + "</rpc-reply>";
}

} // namespace

TEST(Rpc, IsTakenBareAndInItsEnvelope)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to>"), ZR_DATA_REQUEST), IsEmpty());
    EXPECT_THAT(schema.CheckMessage(std::string("<rpc message-id=\"1\" ") + kNc + ">" +
                                        Ping("<to>a</to>") + "</rpc>",
                                    ZR_DATA_REQUEST),
                IsEmpty());
}

TEST(Rpc, HasAMessageIdAndOneOperationInItsEnvelope)
{
    Schema schema(kPing);
    auto in = [&](const std::string &inner) {
        return schema.CheckMessage(std::string("<rpc ") + kNc + ">" + inner + "</rpc>",
                                   ZR_DATA_REQUEST);
    };
    EXPECT_THAT(in("<reset xmlns=\"urn:m\"/>"),
                ElementsAre("missing-attribute /nc:rpc: attribute \"message-id\" is missing"));
    EXPECT_THAT(schema.xml()[0], HasSubstr("<error-info><bad-attribute>message-id</bad-attribute>"
                                           "<bad-element>rpc</bad-element></error-info>"));
    EXPECT_THAT(schema.xml()[0], HasSubstr("<error-type>rpc</error-type>"));
    EXPECT_THAT(in(""),
                testing::Contains("missing-element /nc:rpc: no operation stands in \"rpc\""));
    EXPECT_THAT(in("<reset xmlns=\"urn:m\"/><x/>"),
                testing::Contains("bad-element /nc:x: \"rpc\" holds one operation alone"));
}

TEST(Rpc, OfAnotherNameOrADisabledFeatureIsUnknown)
{
    Schema schema(kPing);
    for (const char *name : {"off", "system", "event", "none"})
        EXPECT_THAT(
            schema.CheckMessage(std::string("<") + name + " xmlns=\"urn:m\"/>", ZR_DATA_REQUEST),
            ElementsAre(StartsWith(std::string("unknown-element /") + name + ": ")))
            << name;
    EXPECT_THAT(schema.CheckMessage("<ping xmlns=\"urn:x\"/>", ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-namespace /ping: ")));
    EXPECT_THAT(schema.Check("<ping><to>a</to></ping>"),
                ElementsAre(StartsWith("unknown-element /ping: ")))
        << "no operation stands in data";
}

TEST(Rpc, HasTheParametersOfItsInputAlone)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to><time>1</time>"), ZR_DATA_REQUEST),
                ElementsAre(StartsWith("unknown-element /ping/time: ")))
        << "a parameter of the output";
    EXPECT_THAT(schema.CheckMessage(Ping("<size>x</size>"), ZR_DATA_REQUEST),
                testing::IsSupersetOf({HasSubstr("missing-element /ping/to: \"to\" is missing"),
                                       HasSubstr("invalid-value /ping/size: ")}));
    EXPECT_THAT(schema.CheckMessage(Ping("<to a=\"1\">a</to>"), ZR_DATA_REQUEST),
                ElementsAre("unknown-attribute /ping/to: attribute \"a\" is not known"));
}

TEST(Rpc, KeepsTheConditionsOfItsInput)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to><size>0</size>"), ZR_DATA_REQUEST),
                ElementsAre("operation-failed[must-violation] /ping/size: the condition \". > 0\" "
                            "is false"));
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to><size>6</size>"), ZR_DATA_REQUEST),
                ElementsAre("operation-failed[must-violation] /ping: too large"))
        << "the default of the limit is in use";
    EXPECT_THAT(
        schema.CheckMessage(Ping("<to>a</to><size>1</size><copy>2</copy>"), ZR_DATA_REQUEST),
        ElementsAre(StartsWith("data-missing[instance-required] /ping/copy: ")));
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to><copy>1</copy>"), ZR_DATA_REQUEST), IsEmpty())
        << "defaults of parameters are in use";
}

TEST(Rpc, IsWarnedOfParametersInAnotherOrder)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Ping("<size>1</size><to>a</to>"
                                         "<via><n>1</n><name>x</name></via>"),
                                    ZR_DATA_REQUEST),
                IsEmpty());
    EXPECT_THAT(schema.warnings(),
                ElementsAre("bad-element /ping/to: \"to\" stands behind \"size\", which the schema "
                            "has behind it",
                            "bad-element /ping/via[name='x']/name: key \"name\" stands behind what "
                            "is no key"));
}

TEST(Rpc, LooksIntoTheDatastore)
{
    Schema schema(kPing);
    std::string store = Wrap("<system><limit>9</limit></system><host><name>a</name></host>");
    EXPECT_THAT(schema.CheckMessage(Ping("<to>a</to><size>9</size>"), ZR_DATA_REQUEST, store),
                IsEmpty());
    EXPECT_THAT(schema.CheckMessage(Ping("<to>b</to><size>10</size>"), ZR_DATA_REQUEST, store),
                ElementsAre("operation-failed[must-violation] /ping: too large",
                            "data-missing[instance-required] /ping/to: \"to\" refers to \"b\", "
                            "which is not there"));
}

TEST(Rpc, IsNotFaultedForItsDatastoreButWarned)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage("<reset xmlns=\"urn:m\"/>", ZR_DATA_REQUEST,
                                    Wrap("<system><limit>x</limit></system><none/>")),
                IsEmpty());
    EXPECT_THAT(schema.warnings(),
                ElementsAre("invalid-value /: the datastore has faults: what could not be read of "
                            "it is as if it was not there"));
}

TEST(RpcReply, HasTheParametersOfTheOutputAlone)
{
    Schema schema(kPing);
    auto check = [&](const std::string &reply) {
        return schema.CheckMessage(reply, ZR_DATA_REPLY, "", "m:ping");
    };
    EXPECT_THAT(check(Reply("<time xmlns=\"urn:m\">1</time>")), IsEmpty());
    EXPECT_THAT(check("<output xmlns=\"urn:m\"><time>1</time></output>"), IsEmpty())
        << "any wrapper does";
    EXPECT_THAT(check(Reply("<to xmlns=\"urn:m\">a</to>")),
                ElementsAre("missing-element /ping/time: \"time\" is missing",
                            StartsWith("unknown-element /ping/to: ")));
    EXPECT_THAT(check(Reply("<ok/>")), ElementsAre("missing-element /ping/time: "
                                                   "\"time\" is missing"));
    EXPECT_THAT(check(Reply("<ok/><time xmlns=\"urn:m\">1</time>")),
                ElementsAre("bad-element /nc:ok: \"ok\" stands beside output parameters"));
}

TEST(RpcReply, IsOkWhereThereIsNoOutput)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Reply("<ok/>"), ZR_DATA_REPLY, "", "m:reset"), IsEmpty());
    EXPECT_THAT(schema.CheckMessage(Reply(""), ZR_DATA_REPLY, "", "m:reset"),
                ElementsAre("missing-element /nc:rpc-reply: \"ok\" is missing where there are no "
                            "output parameters"));
}

TEST(RpcReply, IsNotAskedForOutputWhenItTellsAnError)
{
    Schema schema(kPing);
    EXPECT_THAT(schema.CheckMessage(Reply("<rpc-error><error-type>rpc</error-type></rpc-error>"),
                                    ZR_DATA_REPLY, "", "m:ping"),
                IsEmpty());
}

TEST(RpcReply, OfAnOperationThatIsNotThereIsNotChecked)
{
    Schema schema(kPing);
    ZrDataResult *result = nullptr;
    std::string text = Reply("<ok/>");
    for (const char *operation : {static_cast<const char *>(nullptr), "", "m:none", "ping",
                                  "m:event", "m:system", "/m:host/none"}) {
        ZrDataOptions options = Options(ZR_DATA_REPLY);
        options.operation = operation;
        EXPECT_EQ(ZR_DATA_CheckText(schema.plan(), &options, text.data(), text.size(), &result),
                  ZR_DATA_ERR_INVALID);
        EXPECT_EQ(result, nullptr);
    }
}

TEST(Rpc, HasItsInputsMandatoryLeafsWhereTheirParentIs)
{
    Schema schema(
        "rpc r { input { container n { leaf a { type int8; mandatory true; } }"
        "  container p { presence x; leaf b { type int8; mandatory true; } }"
        "  choice o { mandatory true; leaf x { type empty; } leaf y { type empty; } } } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage("<r xmlns=\"urn:m\">" + input + "</r>", ZR_DATA_REQUEST);
    };
    EXPECT_THAT(request("<n><a>1</a></n><x/>"), IsEmpty());
    EXPECT_THAT(request("<n><a>1</a></n><p/><x/>"),
                ElementsAre("missing-element /r/p/b: \"b\" is missing"));
    EXPECT_THAT(request("<x/>"), ElementsAre("missing-element /r/n/a: \"a\" is missing"));
    EXPECT_THAT(request("<n><a>1</a></n>"),
                ElementsAre("data-missing[missing-choice] /r: nothing of choice \"o\" is there"));
    EXPECT_THAT(request("<n><a>1</a></n><x/><y/>"), ElementsAre(StartsWith("bad-element /r/y: ")));
}

TEST(Rpc, HasItsInputsDefaultsInUse)
{
    Schema schema("rpc r { input { leaf a { type int8; default 1; }"
                  "  leaf-list l { type int8; default 2; default 3; }"
                  "  leaf sum { type int8; must '. = ../a + sum(../l)'; } } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage("<r xmlns=\"urn:m\">" + input + "</r>", ZR_DATA_REQUEST);
    };
    EXPECT_THAT(request("<sum>6</sum>"), IsEmpty());
    EXPECT_THAT(request("<l>9</l><sum>10</sum>"), IsEmpty());
    EXPECT_THAT(request("<l>9</l><sum>6</sum>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /r/sum: ")));
}

TEST(Rpc, HasNoParameterWhoseConditionIsFalse)
{
    Schema schema("rpc r { input { leaf a { type int8; } leaf b { when '../a'; type int8; } }"
                  "  output { leaf c { type int8; } leaf d { when '../c = 1'; type int8; } } }");
    auto request = [&](const std::string &input) {
        return schema.CheckMessage("<r xmlns=\"urn:m\">" + input + "</r>", ZR_DATA_REQUEST);
    };
    auto reply = [&](const std::string &output) {
        return schema.CheckMessage("<x xmlns=\"urn:m\">" + output + "</x>", ZR_DATA_REPLY, "",
                                   "m:r");
    };
    EXPECT_THAT(request("<a>1</a><b>1</b>"), IsEmpty());
    EXPECT_THAT(request("<b>1</b>"), ElementsAre(StartsWith("unknown-element /r/b: ")));
    EXPECT_THAT(reply("<c>1</c><d>1</d>"), IsEmpty());
    EXPECT_THAT(reply("<c>2</c><d>1</d>"), ElementsAre(StartsWith("unknown-element /r/d: ")));
}

TEST(RpcReply, HasItsOutputsDefaultsInUse)
{
    Schema schema("rpc r { output { leaf a { type int8; default 1; }"
                  "  leaf-list l { type int8; default 2; default 3; }"
                  "  leaf sum { type int8; must '. = ../a + sum(../l)'; } } }");
    auto reply = [&](const std::string &output) {
        return schema.CheckMessage("<x xmlns=\"urn:m\">" + output + "</x>", ZR_DATA_REPLY, "",
                                   "m:r");
    };
    EXPECT_THAT(reply("<sum>6</sum>"), IsEmpty());
    EXPECT_THAT(reply("<a>2</a><sum>6</sum>"),
                ElementsAre(StartsWith("operation-failed[must-violation] /r/sum: ")));
}

TEST(RpcReply, IsWarnedOfParametersInAnotherOrder)
{
    Schema schema("rpc r { output { leaf a { type int8; } leaf b { type int8; } } }");
    EXPECT_THAT(
        schema.CheckMessage("<x xmlns=\"urn:m\"><a>1</a><b>1</b></x>", ZR_DATA_REPLY, "", "m:r"),
        IsEmpty());
    EXPECT_THAT(schema.warnings(), IsEmpty());
    EXPECT_THAT(
        schema.CheckMessage("<x xmlns=\"urn:m\"><b>1</b><a>1</a></x>", ZR_DATA_REPLY, "", "m:r"),
        IsEmpty());
    EXPECT_THAT(schema.warnings(), ElementsAre(StartsWith("bad-element /r/a: ")));
}

} // namespace datatest
