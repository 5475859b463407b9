#include "data/element_conditions.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "model/node_record.h"
#include "support/run.h"

namespace {

using namespace zrtest;

TEST(WhenCond, OfInputAndOutputIsNeverAsked)
{
    Schema schema("<rpc name=\"op\"><input>" + Leaf("a", "string") + "</input></rpc>");
    ASSERT_EQ(schema.status, ZR_OK);
    // YANG has no "when" there; an augment's may be inherited.
    CheckRun run(schema, ZRD_MODE_RPC);
    Document document(Data("op"));
    run->root = document.top()->parent;
    for (uint32_t kind :
         {ZR_NODE_ACTION, ZR_NODE_RPC, ZR_NODE_NOTIFICATION, ZR_NODE_INPUT, ZR_NODE_OUTPUT}) {
        ZrNode node = {};
        node.kind = kind;
        node.when = "false"; // a child of that name, which is not there
        document.top()->_private = &node;
        uint32_t pass = 2;
        EXPECT_EQ(ZRD_PAS_EvalDataNodeWhenCond(run, document.top(), &pass), ZR_OK);
        EXPECT_EQ(pass, 1u) << kind;
        node.kind = ZR_NODE_CONTAINER;
        EXPECT_EQ(ZRD_PAS_EvalDataNodeWhenCond(run, document.top(), &pass), ZR_OK);
        EXPECT_EQ(pass, 0u);
    }
}

TEST(MustCond, GivesFalseOrTheEvaluatorsStatus)
{
    Schema schema(Rpc("op", Input(Leaf("a", "string"))));
    Document document(Data("op", "<a>no</a>"));
    document.Find("a")->_private = schema.Node("/m:op/input/a");
    ZrsMust musts[2] = {{". = 'yes'", nullptr, nullptr}, {nullptr, nullptr, nullptr}};
    ZrNode node = {};
    for (uint32_t mode : {1u, 2u}) {
        CheckRun run(nullptr, mode);
        run->root = document.top()->parent;
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.top(), nullptr), ZR_OK);
        node.musts = nullptr;
        node.mustCount = 1;
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.top(), &node), ZR_OK);
        node.musts = musts;
        node.mustCount = 0;
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.top(), &node), ZR_OK);
        node.mustCount = 2;
        musts[0].condition = ". = 'yes'";
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.Find("a"), &node),
                  uint32_t{ZR_XPATH_RESULT_FALSE});
        EXPECT_EQ(run.record() == Record{},
                  mode == ZRD_MODE_NOTIF); // a notification's leaves no record
        musts[0].condition = ". = 'no'";   // the second has no condition
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.Find("a"), &node), ZR_ERR_INVALID);
        musts[0].condition = "count(.)";
        EXPECT_EQ(ZRD_PAS_EvalDataNodeMustCond(run, document.Find("a"), &node),
                  uint32_t{ZR_XPATH_ERR_UNKNOWN_FUNCTION});
    }
}

} // namespace
