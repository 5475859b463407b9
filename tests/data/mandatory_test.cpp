#include "data/phases.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "model/node_record.h"
#include "support/run.h"

namespace {

using namespace zrtest;

const std::string kM = Leaf("m", "string", Mandatory());

Record Missing(const std::string &path, const std::string &name)
{
    return Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", path, "Missing element: " + name + ".", name);
}

Record MissingChoice(const std::string &path, const std::string &parent)
{
    return Fault(ZR_ERROR_TAG_DATA_MISSING, "missing-choice", path,
                 "Mandatory choice w missing element.", parent);
}

struct Row {
    const char *name;
    std::string input; // of the rpc "op", and of the notification "event"
    std::string content;
    bool valid;
    Record record; // for the rpc
};

const Row kRows[] = {
    {"leaf missing", kM, "", false, Missing("/m:op", "m")},
    {"leaf present", kM, "<m/>", true, {}},
    {"anydata missing", "<anydata name=\"any\">" + Mandatory() + "</anydata>", "", false,
     Missing("/m:op", "any")},
    {"anyxml missing", "<anyxml name=\"xml\">" + Mandatory() + "</anyxml>", "", false,
     Missing("/m:op", "xml")},
    {"anyxml present", "<anyxml name=\"xml\">" + Mandatory() + "</anyxml>", "<xml/>", true, {}},
    {"disabled leaf missing",
     Leaf("m", "string", "<if-feature name=\"f\"/>" + Mandatory()),
     "",
     true,
     {}},
    {"leaf-list minimum not checked",
     "<leaf-list name=\"ll\"><type name=\"string\"/><min-elements value=\"1\"/></leaf-list>",
     "",
     true,
     {}},
    {"list minimum not checked",
     "<list name=\"l\"><key value=\"k\"/><min-elements value=\"1\"/>" + Leaf("k", "string") +
         "</list>",
     "",
     true,
     {}},
    {"in a present container", Container("c", kM), "<c/>", false, Missing("/m:op/c", "m")},
    {"in an absent container", Container("c", kM), "", false, Missing("/m:op/c", "m")},
    {"in absent containers", Container("c", Container("e", kM)), "", false,
     Missing("/m:op/c/e", "m")},
    {"in an absent presence container", Container("c", Presence() + kM), "", true, {}},
    {"in a present presence container", Container("c", Presence() + kM), "<c/>", false,
     Missing("/m:op/c", "m")},
    {"in the second list entry", List("l", "k", Leaf("k", "string") + kM),
     "<l><k>1</k><m/></l><l><k>2</k></l>", false, Missing("/m:op/l[k='2']", "m")},
    {"in a list without entries", List("l", "k", Leaf("k", "string") + kM), "", true, {}},
    {"leaf with a false when",
     Leaf("m", "string", When("../a = 'x'") + Mandatory()) + Leaf("a", "string"),
     "<a>y</a>",
     true,
     {}},
    {"leaf with a true when",
     Leaf("m", "string", When("../a = 'x'") + Mandatory()) + Leaf("a", "string"), "<a>x</a>", false,
     Missing("/m:op", "m")},
    {"in an absent container with a false when",
     "<container name=\"c\">" + When("../a = 'x'") + kM + "</container>" + Leaf("a", "string"),
     "<a>y</a>",
     true,
     {}},
    {"in an absent container with a true when",
     "<container name=\"c\">" + When("../a = 'x'") + kM + "</container>" + Leaf("a", "string"),
     "<a>x</a>", false, Missing("/m:op/c", "m")},
    {"leaf with a when that cannot be evaluated",
     Leaf("m", "string", When("count(a)") + Mandatory()), "", false,
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/m", "Failed to check when condition of m.",
           "m")},
    {"container with a when that cannot be evaluated",
     "<container name=\"c\">" + When("count(a)") + kM + "</container>", "", false,
     Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/m:op/c", "Failed to check when condition of c.",
           "c")},
    {"mandatory choice without data", Choice("w", Mandatory() + Case("one", Leaf("a", "string"))),
     "", false, MissingChoice("/m:op", "op")},
    {"mandatory choice with data",
     Choice("w", Mandatory() + Case("one", Leaf("a", "string"))),
     "<a/>",
     true,
     {}},
    {"mandatory choice with data of a choice inside",
     Choice("w",
            Mandatory() + Case("one", "<choice name=\"v\">" + Leaf("a", "string") + "</choice>")),
     "<a/>",
     true,
     {}},
    {"mandatory choice with a default case",
     Choice("w", Mandatory() + Default("one") + Case("one", Leaf("a", "string"))),
     "",
     true,
     {}},
    {"optional choice without data", Choice("w", Case("one", kM)), "", true, {}},
    {"leaf of the case in the data", Choice("w", Case("one", Leaf("a", "string") + kM)), "<a/>",
     false, Missing("/m:op", "m")},
    {"leaf of another case",
     Choice("w", Case("one", Leaf("a", "string")) + Case("two", kM)),
     "<a/>",
     true,
     {}},
    {"leaf of the default case",
     Choice("w", Default("two") + Case("one", Leaf("a", "string")) + Case("two", kM)), "", false,
     Missing("/m:op", "m")},
    {"leaf of a case whose when is false",
     Leaf("a", "string") +
         Choice("w", Default("one") + "<case name=\"one\">" + When("a = 'x'") + kM + "</case>"),
     "<a>y</a>",
     true,
     {}},
    {"mandatory choice in a container", Container("c", Choice("w", Mandatory() + kM)), "<c/>",
     false, MissingChoice("/m:op/c", "c")},
    {"mandatory choice in a list entry",
     List("l", "k", Leaf("k", "string") + Choice("w", Mandatory() + kM)), "<l><k>1</k></l>", false,
     MissingChoice("/m:op/l[k='1']", "l")},
    {"first in schema order", Leaf("m1", "string", Mandatory()) + Leaf("m2", "string", Mandatory()),
     "", false, Missing("/m:op", "m1")},
};

TEST(Mandatory, IsWhatTheSchemaDemands)
{
    for (const Row &row : kRows) {
        Schema schema("<feature name=\"f\"/>" + Rpc("op", Input(row.input)) +
                      Notification("event", row.input));
        ASSERT_EQ(schema.status, ZR_OK) << row.name;
        EXPECT_EQ(RpcRecord(schema, Data("op", row.content)), row.valid ? Valid() : row.record)
            << row.name;
        EXPECT_EQ(ValidateNotif(schema, Data("event", row.content)).status,
                  row.valid ? ZR_OK : ZR_ERR_INVALID)
            << row.name;
    }
}

TEST(Mandatory, IsNotDemandedOfAnOutput)
{
    Schema schema("<rpc name=\"op\"><output>" + kM + "</output></rpc><rpc name=\"bare\"/>");
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("op")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("bare")), Valid());
}

TEST(Mandatory, IsDemandedOfTheActionAndNotOfTheDataAroundIt)
{
    Schema schema(Container("state", Leaf("s", "string", Mandatory()) +
                                         "<action name=\"act\"><input>" + kM +
                                         "</input></action>"));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(RpcRecord(schema, Data("state", "<act><m/></act>")), Valid());
    EXPECT_EQ(RpcRecord(schema, Data("state", "<act/>")), Missing("/m:state/act", "m"));
}

TEST(Mandatory, IsSatisfiedByADefaultThatWasAdded)
{
    // A mandatory leaf takes no default; one that is not mandatory is completed before.
    Schema schema(Rpc("op", Input("<choice name=\"w\">" + Mandatory() + "<default value=\"one\"/>" +
                                  Case("one", Leaf("a", "string", Default("x"))) + "</choice>")));
    ASSERT_EQ(schema.status, ZR_OK);
    EXPECT_EQ(ValidateRpc(schema, Data("op")).defaults, std::vector<std::string>{"a=x"});
}

class MandatoryCallTest : public ::testing::Test {
protected:
    Schema schema_{Rpc("op", Input(kM))};
    Document document_{Data("op")};
};

TEST_F(MandatoryCallTest, TreeWantsARunOfEitherKind)
{
    for (uint32_t mode : {uint32_t{0}, uint32_t{ZRD_MODE_RPC}, uint32_t{ZRD_MODE_NOTIF},
                          uint32_t{ZRD_MODE_IN_ACTION}}) {
        CheckRun run(schema_, mode);
        document_.top()->_private = schema_.Node("/m:op");
        EXPECT_EQ(ZR_PAS_CheckTreeMandatory(run, document_.top()), ZR_ERR_INVALID);
        EXPECT_EQ(run.record() == Record{}, mode == 0 || mode == ZRD_MODE_IN_ACTION) << mode;
        EXPECT_EQ(xmlChildElementCount(document_.top()), 0u);
    }
    CheckRun run(schema_, ZRD_MODE_RPC);
    EXPECT_EQ(ZR_PAS_CheckTreeMandatory(run, nullptr), ZR_ERR_INVALID);
}

TEST_F(MandatoryCallTest, SubtreeRefusesNullAndPassesKindsWithoutACheck)
{
    CheckRun run(schema_, ZRD_MODE_RPC);
    EXPECT_EQ(ZR_PAS_CheckSubtreeMandatory(run, nullptr, schema_.Node("/m:op")), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_PAS_CheckSubtreeMandatory(run, document_.top(), nullptr), ZR_ERR_INVALID);
    ZrNode node = {};
    node.module = schema_.Module("m");
    for (uint32_t kind : {0u, 3u, 13u, 14u, 15u}) {
        node.kind = kind;
        EXPECT_EQ(ZR_PAS_CheckSubtreeMandatory(run, document_.top(), &node), ZR_OK) << kind;
    }
}

} // namespace
