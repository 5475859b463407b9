#include "schema/nodes/node.h"

#include "schema/record_fixture.h"

namespace {

class TopNodes : public zrtest::RecordTest {
protected:
    TopNodes() : module_(NewModule("m")) {}
    static std::string Chain(const ZrNode *head)
    {
        std::string names;
        for (; head != nullptr; head = head->next)
            names += std::string(head->name) + " ";
        return names;
    }

    ZrMod *module_;
};

struct PlaceCase {
    uint32_t kind;
    ZrNode *ZrMod::*head; // null: refused
};

const PlaceCase kPlaces[] = {
    {ZR_NODE_UNKNOWN, nullptr},
    {ZR_NODE_CONTAINER, &ZrMod::dataNodes},
    {ZR_NODE_LEAF, &ZrMod::dataNodes},
    {ZR_NODE_LEAF_LIST, &ZrMod::dataNodes},
    {ZR_NODE_LIST, &ZrMod::dataNodes},
    {ZR_NODE_CHOICE, &ZrMod::dataNodes},
    {ZR_NODE_CASE, nullptr},
    {ZR_NODE_ANYDATA, &ZrMod::dataNodes},
    {ZR_NODE_ANYXML, &ZrMod::dataNodes},
    {ZR_NODE_ACTION, nullptr},
    {ZR_NODE_RPC, &ZrMod::rpcs},
    {ZR_NODE_NOTIFICATION, &ZrMod::notifications},
    {ZR_NODE_INPUT, nullptr},
    {ZR_NODE_OUTPUT, nullptr},
    {ZR_NODE_AUGMENT, &ZrMod::augments},
};

TEST_F(TopNodes, EveryKindGoesToItsChainOrIsRefused)
{
    for (const PlaceCase &row : kPlaces) {
        SCOPED_TRACE(row.kind);
        ZrNode *node = NewNode(module_, row.kind, "x");
        if (row.head == nullptr) {
            EXPECT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(module_, node), ZR_ERR_INVALID);
        } else {
            EXPECT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(module_, node), ZR_OK);
            EXPECT_EQ(module_->*row.head, node);
            ZRS_NODE_Unlink(node);
            EXPECT_EQ(module_->*row.head, nullptr);
        }
        ZRS_NODE_Free(node);
    }
}

TEST_F(TopNodes, NodesOfOneChainStandInTheOrderOfTheirComing)
{
    for (const char *name : {"a", "b", "c"})
        ASSERT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(module_, NewNode(module_, ZR_NODE_LEAF, name)),
                  ZR_OK);
    EXPECT_EQ(Chain(module_->dataNodes), "a b c ");
}

TEST_F(TopNodes, AreAppendedAtTheEndWhateverLeftTheChainBefore)
{
    auto add = [this](const char *name) {
        ZrNode *node = NewNode(module_, ZR_NODE_LEAF, name);
        EXPECT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(module_, node), ZR_OK);
        return node;
    };
    auto drop = [](ZrNode *node) {
        ZRS_NODE_Unlink(node);
        ZRS_NODE_Free(node);
    };
    ZrNode *a = add("a"), *b = add("b"), *c = add("c");
    drop(c); // the last
    ZrNode *d = add("d");
    EXPECT_EQ(Chain(module_->dataNodes), "a b d ");
    drop(b);
    drop(d);
    ZRS_NODE_AddSibling(a, NewNode(module_, ZR_NODE_LEAF, "e"));
    add("f");
    EXPECT_EQ(Chain(module_->dataNodes), "a e f ");
    drop(a);
    add("g");
    EXPECT_EQ(Chain(module_->dataNodes), "e f g ");
    while (module_->dataNodes != nullptr)
        drop(module_->dataNodes);
    add("h");
    add("i");
    EXPECT_EQ(Chain(module_->dataNodes), "h i ");
}

TEST_F(TopNodes, ANullModuleOrNodeIsRefused)
{
    ZrNode *node = NewNode(module_, ZR_NODE_LEAF, "a");
    EXPECT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(nullptr, node), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AddTopNodeToSchemaTree(module_, nullptr), ZR_ERR_INVALID);
    ZRS_NODE_Free(node);
}

TEST_F(TopNodes, AreFoundByNameDataFirstThenRpcsThenNotificationsNeverAugments)
{
    AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "x");
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, "x"), nullptr);
    ZrNode *notification = AddTop(module_, module_->notifications, ZR_NODE_NOTIFICATION, "x");
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, "x"), notification);
    ZrNode *rpc = AddTop(module_, module_->rpcs, ZR_NODE_RPC, "x");
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, "x"), rpc);
    AddData(module_, ZR_NODE_LEAF, "other");
    ZrNode *leaf = AddData(module_, ZR_NODE_LEAF, "x");
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, "x"), leaf);
}

TEST_F(TopNodes, ANullModuleOrNameFindsNothing)
{
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(nullptr, "x"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_FindTopLevelSchemaNode(module_, "x"), nullptr);
}

} // namespace
