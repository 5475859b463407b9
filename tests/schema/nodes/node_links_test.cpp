// SPDX-License-Identifier: Apache-2.0
#include "schema/record_fixture.h"

#include "schema/nodes/node.h"

namespace {

class NodeLinks : public zrtest::RecordTest {
protected:
    NodeLinks() : module_(NewModule("m")), parent_(AddData(module_, ZR_NODE_CONTAINER, "p")) {}

    ZrNode *New(const char *name) { return NewNode(module_, ZR_NODE_CONTAINER, name); }

    // The names from `first` on; every link back and up is checked on the way.
    static std::string Chain(const ZrNode *first, const ZrNode *parent)
    {
        std::string names;
        const ZrNode *prev = nullptr;
        for (const ZrNode *node = first; node != nullptr; node = node->next) {
            EXPECT_EQ(node->prev, prev);
            EXPECT_EQ(node->parent, parent);
            names += node->name;
            prev = node;
        }
        if (parent != nullptr) {
            EXPECT_EQ(parent->lastChild, prev);
        }
        return names;
    }
    std::string Children() const { return Chain(parent_->firstChild, parent_); }
    std::string Tops() const { return Chain(module_->dataNodes, nullptr); }

    ZrMod *module_;
    ZrNode *parent_;
};

TEST_F(NodeLinks, ChildrenAreAppendedInOrder)
{
    EXPECT_EQ(ZRS_NODE_AddChild(parent_, New("a")), ZR_OK);
    EXPECT_EQ(Children(), "a");
    EXPECT_EQ(ZRS_NODE_AddChild(parent_, New("b")), ZR_OK);
    EXPECT_EQ(ZRS_NODE_AddChild(parent_, New("c")), ZR_OK);
    EXPECT_EQ(Children(), "abc");
}

TEST_F(NodeLinks, AFirstChildGoesBeforeTheOthers)
{
    EXPECT_EQ(ZRS_NODE_AddAsFirstChild(parent_, New("b")), ZR_OK);
    EXPECT_EQ(Children(), "b");
    EXPECT_EQ(ZRS_NODE_AddAsFirstChild(parent_, New("a")), ZR_OK);
    ZRS_NODE_AddChild(parent_, New("c"));
    EXPECT_EQ(Children(), "abc");
}

TEST_F(NodeLinks, ASiblingGoesToTheEndOfTheChainWithItsParent)
{
    ZrNode *a = New("a");
    ZRS_NODE_AddChild(parent_, a);
    ZRS_NODE_AddChild(parent_, New("b"));
    EXPECT_EQ(ZRS_NODE_AddSibling(a, New("c")), ZR_OK);
    EXPECT_EQ(Children(), "abc");
    EXPECT_EQ(ZRS_NODE_AddSibling(parent_, New("q")), ZR_OK);
    EXPECT_EQ(ZRS_NODE_AddSibling(parent_, New("r")), ZR_OK);
    EXPECT_EQ(Tops(), "pqr");
}

TEST_F(NodeLinks, LinkModesAreChildAndSibling)
{
    ZrNode *a = New("a");
    EXPECT_EQ(ZRS_NODE_LinkTreeNode(parent_, a, ZRS_LINK_AS_CHILD), ZR_OK);
    EXPECT_EQ(ZRS_NODE_LinkTreeNode(a, New("b"), ZRS_LINK_AS_SIBLING), ZR_OK);
    EXPECT_EQ(Children(), "ab");
    ZrNode *c = New("c");
    EXPECT_EQ(ZRS_NODE_LinkTreeNode(parent_, c, 2), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_LinkTreeNode(nullptr, c, 0), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_LinkTreeNode(nullptr, c, 1), ZR_ERR_INVALID);
    EXPECT_EQ(Children(), "ab");
    ZRS_NODE_Free(c);
}

TEST_F(NodeLinks, NullArgumentsAreRefusedAndChangeNothing)
{
    ZrNode *a = New("a");
    ZRS_NODE_AddChild(parent_, a);
    EXPECT_EQ(ZRS_NODE_AddChild(parent_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AddChild(nullptr, a), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AddAsFirstChild(parent_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AddAsFirstChild(nullptr, a), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AddSibling(a, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_AddSibling(nullptr, a), ZR_ERR_INVALID);
    EXPECT_EQ(Children(), "a");
    ZRS_NODE_Unlink(nullptr);
    ZR_NODE_CalibrateTopNodeAddress(nullptr);
    EXPECT_EQ(ZRS_NODE_GetLastSibling(nullptr), nullptr);
}

TEST_F(NodeLinks, UnlinkingTakesANodeOutOfAnyPlaceAmongItsSiblings)
{
    for (const char *taken : {"a", "b", "c"}) {
        SCOPED_TRACE(taken);
        for (const char *name : {"a", "b", "c"})
            ZRS_NODE_AddChild(parent_, New(name));
        ZrNode *node = ZRS_NODE_FindChildNodeByName(parent_, nullptr, taken);
        ZRS_NODE_Unlink(node);
        EXPECT_EQ(node->parent, nullptr);
        EXPECT_EQ(node->next, nullptr);
        EXPECT_EQ(node->prev, nullptr);
        std::string expected = "abc";
        expected.erase(expected.find(taken), 1);
        EXPECT_EQ(Children(), expected);
        ZRS_NODE_Free(node);
        while (ZrNode *rest = parent_->firstChild) {
            ZRS_NODE_Unlink(rest);
            ZRS_NODE_Free(rest);
        }
        EXPECT_EQ(parent_->lastChild, nullptr);
    }
}

TEST_F(NodeLinks, UnlinkingTheFirstTopLevelNodeMovesTheModulesHead)
{
    ZRS_NODE_AddSibling(parent_, New("q"));
    ZrNode *rpc = AddTop(module_, module_->rpcs, ZR_NODE_RPC, "r");
    ZrNode *notification = AddTop(module_, module_->notifications, ZR_NODE_NOTIFICATION, "n");
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:p");
    ZrNode *second = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:q");
    for (ZrNode *node : {parent_, rpc, notification, augment}) {
        ZRS_NODE_Unlink(node);
        ZRS_NODE_Free(node);
    }
    EXPECT_EQ(Tops(), "q");
    EXPECT_EQ(module_->rpcs, nullptr);
    EXPECT_EQ(module_->notifications, nullptr);
    EXPECT_EQ(module_->augments, second);
}

TEST_F(NodeLinks, UnlinkingALaterTopLevelNodeKeepsTheHead)
{
    ZrNode *q = New("q");
    ZRS_NODE_AddSibling(parent_, q);
    ZRS_NODE_Unlink(q);
    EXPECT_EQ(Tops(), "p");
    ZRS_NODE_Free(q);
}

TEST_F(NodeLinks, ANodeWithoutAModuleOnlyLosesItsSiblings)
{
    ZrNode a = {}, b = {};
    ZRS_NODE_AddSibling(&a, &b);
    ZRS_NODE_Unlink(&a);
    EXPECT_EQ(a.next, nullptr);
    EXPECT_EQ(b.prev, nullptr);
    EXPECT_EQ(module_->dataNodes, parent_);
}

TEST_F(NodeLinks, OnlyTheFirstHeadThatMatchesMoves)
{
    ZrNode *q = New("q");
    ZRS_NODE_AddSibling(parent_, q);
    module_->rpcs = parent_; // never so in a schema
    ZR_NODE_CalibrateTopNodeAddress(parent_);
    EXPECT_EQ(module_->dataNodes, q);
    EXPECT_EQ(module_->rpcs, parent_);
    module_->dataNodes = parent_;
    module_->rpcs = nullptr;
}

TEST_F(NodeLinks, TheLastSiblingIsFoundWithAndWithoutAParent)
{
    ZrNode *a = New("a");
    ZrNode *b = New("b");
    ZRS_NODE_AddChild(parent_, a);
    ZRS_NODE_AddChild(parent_, b);
    EXPECT_EQ(ZRS_NODE_GetLastSibling(a), b);
    EXPECT_EQ(ZRS_NODE_GetLastSibling(b), b);
    ZrNode *q = New("q");
    ZRS_NODE_AddSibling(parent_, q);
    EXPECT_EQ(ZRS_NODE_GetLastSibling(parent_), q);
}

TEST_F(NodeLinks, AChildIsKnownByItsParentsChain)
{
    ZrNode *a = New("a");
    ZrNode *b = New("b");
    ZRS_NODE_AddChild(parent_, a);
    ZRS_NODE_AddChild(a, b);
    EXPECT_EQ(ZRS_NODE_IsChildNode(parent_, a), 1u);
    EXPECT_EQ(ZRS_NODE_IsChildNode(parent_, b), 0u);
    EXPECT_EQ(ZRS_NODE_IsChildNode(parent_, parent_), 0u);
    EXPECT_EQ(ZRS_NODE_IsChildNode(nullptr, a), 0u);
    EXPECT_EQ(ZRS_NODE_IsChildNode(parent_, nullptr), 0u);
}

TEST_F(NodeLinks, AChildIsFoundByNameAmongAllModulesOrOne)
{
    ZrMod *other = NewModule("other");
    ZrNode *own = New("x");
    ZrNode *foreign = NewNode(other, ZR_NODE_LEAF, "x");
    ZRS_NODE_AddChild(parent_, own);
    ZRS_NODE_AddChild(parent_, foreign);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, nullptr, "x"), own);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "", "x"), own);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "m", "x"), own);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "other", "x"), foreign);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "third", "x"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "m", "y"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "m", nullptr), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(nullptr, "m", "x"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(own, "m", "x"), nullptr);
}

TEST_F(NodeLinks, EveryOneOfManyChildrenIsFoundByNameAndModule)
{
    ZrMod *other = NewModule("other");
    std::vector<ZrNode *> own, foreign;
    for (int i = 0; i < 40; ++i) {
        std::string name = "child-" + std::to_string(i);
        own.push_back(New(name.c_str()));
        foreign.push_back(NewNode(other, ZR_NODE_LEAF, name.c_str()));
        ZRS_NODE_AddChild(parent_, own.back());
        ZRS_NODE_AddChild(parent_, foreign.back());
    }
    for (size_t i = 0; i < own.size(); ++i) {
        std::string name = "child-" + std::to_string(i);
        EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, nullptr, name.c_str()), own[i]);
        EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "m", name.c_str()), own[i]);
        EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, "other", name.c_str()), foreign[i]);
    }
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, nullptr, "child-40"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(parent_, nullptr, "other"), nullptr);
}

TEST_F(NodeLinks, TheSearchBelowACoupledAugmentEndsAtItsLastChild)
{
    ZrNode *a = New("a");
    ZrNode *b = New("b");
    ZRS_NODE_AddChild(parent_, a);
    ZRS_NODE_AddChild(parent_, b);
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:p");
    augment->firstChild = augment->lastChild = a;
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(augment, "m", "a"), a);
    EXPECT_EQ(ZRS_NODE_FindChildNodeByName(augment, "m", "b"), nullptr);
    augment->firstChild = augment->lastChild = nullptr;
}

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
