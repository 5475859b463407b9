// Every fault that a run reports, through the public functions, each with its whole record.
#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kBody =
    Rpc("op", Leaf("must-have", "string", kMandatory) + Leaf("number", "uint8") +
                  Container("single", Leaf("x", "string"))) +
    Rpc("ordered", Leaf("first", "string") + Leaf("second", "string") + Leaf("third", "string")) +
    Rpc("pick", "<choice name=\"way\"><case name=\"one\">" + Leaf("a", "string") +
                    Leaf("b", "string") + "</case><case name=\"two\">" + Leaf("c", "string") +
                    "</case></choice>") +
    Rpc("pick-one", "<choice name=\"way\"><mandatory value=\"true\"/><case name=\"one\">" +
                        Leaf("a", "string") + "</case></choice>") +
    Rpc("musts",
        Leaf("plain", "string", Must(". = 'yes'")) +
            Leaf("texts", "string",
                 Must(". = 'yes'", "<error-message><value>Say yes, 100%s.</value></error-message>"
                                   "<error-app-tag value=\"not-yes\"/>")) +
            Leaf("broken", "string", Must("count(.) &gt; 1"))) +
    Rpc("whens", Leaf("mode", "string") + Leaf("when-b", "string", When("../mode = 'b'")) +
                     Leaf("when-broken", "string", When("current()"))) +
    Container("state",
              "<action name=\"reset\"><input>" + Leaf("delay", "uint8") + "</input></action>");

struct Row {
    const char *name;
    std::string request;
    Record expected;
};

// tag, app tag, path, message, bad element
const Row kRows[] = {
    {"mandatory node missing", Data("op"),
     Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:op", "Missing element: must-have.", "must-have")},
    {"value rejected by its type", Data("op", "<must-have/><number>256</number>"),
     Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/number", "number has invalid value 256.",
           "number")},
    {"element not in the schema", Data("op", "<must-have/><other/>"),
     Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/other", "Unexpected element: other.",
           "other")},
    {"single instance repeated", Data("op", "<must-have/><single/><single/>"),
     Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/single", "Unexpected element: single.",
           "single")},
    {"top element not in the schema", Data("nothing"),
     Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:nothing", "Unexpected element: nothing.",
           "nothing")},
    {"no action in the data", Data("state"),
     Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/", "Unexpected element: action.", "action")},
    {"namespace of no module", "<op xmlns=\"urn:other\"/>",
     Fault(ZR_ERROR_TAG_UNKNOWN_NAMESPACE, "-", "/op", "op has invalid namespace: urn:other.",
           "op")},
    {"mandatory choice missing", Data("pick-one"),
     Fault(ZR_ERROR_TAG_DATA_MISSING, "missing-choice", "/m:pick-one",
           "Mandatory choice way missing element.", "pick-one")},
    {"order", Data("ordered", "<second/><first/>"),
     Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/m:ordered/first",
           "Invalid element order between first and second.", "first")},
    {"two cases", Data("pick", "<a/><c/>"),
     Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:pick/c",
           "Data for more than one case branch of a choice is present.", "c")},
    {"must false", Data("musts", "<plain>no</plain>"),
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:musts/plain",
           "plain is not satisfied must condition.", "plain")},
    {"must false, with the schema's own texts", Data("musts", "<texts>no</texts>"),
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "not-yes", "/m:musts/texts", "Say yes, 100%s.", "texts")},
    {"must not evaluated", Data("musts", "<broken>no</broken>"),
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:musts/broken",
           "Failed to check must condition of broken.", "broken")},
    {"when not evaluated", Data("whens", "<when-broken/>"),
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:whens/when-broken",
           "Failed to check when condition of when-broken.", "when-broken")},
    {"when false", Data("whens", "<mode>a</mode><when-b/>"),
     Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:whens/when-b",
           "when-b is not satisfied when condition.", "when-b")},
    {"unparsable", "<op xmlns=\"urn:m\">", General()},
    {"valid", Data("op", "<must-have/><number>255</number><single/>"), Valid()},
};

TEST(Faults, AreEachReportedInOneWholeRecord)
{
    Schema schema(kBody);
    ASSERT_EQ(schema.status, ZR_OK);
    for (const Row &row : kRows)
        EXPECT_EQ(RpcRecord(schema, row.request), row.expected) << row.name;
}

TEST(Faults, EndTheRunAtTheFirstOne)
{
    Schema schema(kBody);
    EXPECT_EQ(RpcRecord(schema, Data("op", "<number>300</number><other/><other/>")),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/number", "number has invalid value 300.",
                    "number"));
}

TEST(Faults, LeaveACallersTreeThatWasParsedWithLineNumbersAsItWas)
{
    Schema schema(Rpc("op", Container("c", Leaf("d", "string", Default("x"))) +
                                Leaf("w", "string", When("../c/d = 'y'"))));
    ASSERT_EQ(schema.status, ZR_OK);
    // Line 256 is the mark of an added default: the elements there are not taken for one.
    std::string request = std::string(255, '\n') + Data("op", "<c></c><w/>");
    EXPECT_EQ(RpcRecord(schema, request), Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/w",
                                                "w is not satisfied when condition.", "w"));
    Outcome valid = ValidateRpc(schema, std::string(255, '\n') + Data("op", "<c></c>"));
    EXPECT_EQ(valid.record, Valid());
    EXPECT_EQ(valid.defaults, std::vector<std::string>{"d=x"});
    Outcome below = ValidateRpc(schema, std::string(254, '\n') + Data("op", "\n<c></c>"));
    EXPECT_EQ(below.record, Valid());
    EXPECT_EQ(below.defaults, std::vector<std::string>{"d=x"});
}

} // namespace
