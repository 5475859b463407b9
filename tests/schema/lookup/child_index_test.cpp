// SPDX-License-Identifier: Apache-2.0
#include "schema/lookup/child_index.h"

#include <random>

#include "schema/coupling_fixture.h"
#include "schema/lookup/lookup.h"
#include "schema/nodes/node.h"
#include "schema/record_fixture.h"
#include "support/alloc.h"

namespace {

using zrtest::AllocGuard;

class ChildIndex : public zrtest::RecordTest {
protected:
    ChildIndex() : module_(NewModule("m")), other_(NewModule("other")) {}

    ZrNode *NewParent(const char *name, int children)
    {
        ZrNode *parent = AddData(module_, ZR_NODE_CONTAINER, name);
        for (int i = 0; i < children; ++i)
            AddChild(parent, ZR_NODE_LEAF, Name(i).c_str());
        return parent;
    }
    static std::string Name(int number) { return "child-" + std::to_string(number); }

    // The index and the search among siblings must agree for every child and for what is none.
    static void ExpectAgreement(zr::ChildIndex &index, const ZrNode *parent)
    {
        std::vector<std::string> names = {"none", "m", ""};
        for (const ZrNode *child = parent->firstChild; child != nullptr; child = child->next)
            names.push_back(child->name);
        for (const std::string &name : names) {
            for (const char *module : {static_cast<const char *>(nullptr), "", "m", "other", "x"})
                EXPECT_EQ(index.Find(parent, module, name.c_str()),
                          ZRS_NODE_FindChildNodeByName(parent, module, name.c_str()))
                    << name;
        }
    }

    ZrMod *module_;
    ZrMod *other_;
};

TEST_F(ChildIndex, FindsWhatTheSearchAmongSiblingsFinds)
{
    zr::ChildIndex index;
    for (int children : {0, 1, 63, 64, 65, 1000}) {
        SCOPED_TRACE(children);
        ExpectAgreement(index, NewParent(("p" + std::to_string(children)).c_str(), children));
    }
    EXPECT_EQ(index.Find(nullptr, "m", "child-1"), nullptr);
    EXPECT_EQ(index.Find(module_->dataNodes, "m", nullptr), nullptr);
}

TEST_F(ChildIndex, TellsModulesApartAndFindsTheFirstOfSeveral)
{
    zr::ChildIndex index;
    ZrNode *parent = NewParent("p", 100);
    for (int i = 0; i < 100; i += 2)
        ZRS_NODE_AddChild(parent, NewNode(other_, ZR_NODE_LEAF, Name(i).c_str()));
    ExpectAgreement(index, parent);
}

TEST_F(ChildIndex, NoticesChildrenThatComeAndAnotherParent)
{
    zr::ChildIndex index;
    ZrNode *parent = NewParent("p", 100), *second = NewParent("q", 200);
    EXPECT_EQ(index.Find(parent, nullptr, "late"), nullptr);
    ZrNode *late = AddChild(parent, ZR_NODE_LEAF, "late");
    EXPECT_EQ(index.Find(parent, nullptr, "late"), late);
    ZrNode *early = NewNode(module_, ZR_NODE_LEAF, "early");
    ZRS_NODE_AddAsFirstChild(parent, early);
    EXPECT_EQ(index.Find(parent, nullptr, "early"), early);
    ExpectAgreement(index, second);
    ExpectAgreement(index, parent);
}

TEST_F(ChildIndex, ForgetsTheChildrenOfAParent)
{
    zr::ChildIndex index;
    ZrNode *parent = NewParent("p", 100);
    ZrNode *child = index.Find(parent, nullptr, "child-50");
    ASSERT_NE(child, nullptr);
    ZRS_NODE_Unlink(child);
    ZRS_NODE_Free(child);
    index.ForgetChildrenOf(parent);
    EXPECT_EQ(index.Find(parent, nullptr, "child-50"), nullptr);
    ExpectAgreement(index, parent);
}

TEST_F(ChildIndex, FollowsWhatItIsToldToLeave)
{
    zr::ChildIndex index;
    ZrNode *parent = NewParent("p", 200);
    for (int i = 0; i < 200; i += 5) // several of one name
        ZRS_NODE_AddChild(parent, NewNode(other_, ZR_NODE_LEAF, Name(i).c_str()));
    EXPECT_NE(index.Find(parent, nullptr, "child-0"), nullptr);
    std::mt19937 random(1);
    for (int left = 240; left != 0; --left) {
        ZrNode *child = parent->firstChild;
        // Often the first or the last, which the index knows the parent by.
        for (uint32_t skip = left % 3 == 0 ? 0 : static_cast<uint32_t>(random()) % 240;
             skip != 0 && child->next != nullptr; --skip)
            child = child->next;
        index.Leave(child, nullptr);
        ZRS_NODE_Unlink(child);
        ZRS_NODE_Free(child);
        if (left % 7 == 0)
            ExpectAgreement(index, parent);
    }
    EXPECT_EQ(index.Find(parent, nullptr, "child-0"), nullptr);
}

TEST_F(ChildIndex, LeavesAParentThatGoes)
{
    zr::ChildIndex index;
    ZrNode *top = AddData(module_, ZR_NODE_CONTAINER, "top");
    ZrNode *inner = AddChild(top, ZR_NODE_CONTAINER, "inner");
    for (int i = 0; i < 100; ++i)
        AddChild(inner, ZR_NODE_LEAF, Name(i).c_str());
    EXPECT_NE(index.Find(inner, nullptr, "child-7"), nullptr);
    index.Leave(top, nullptr);
    ZRS_NODE_Unlink(top);
    ZRS_NODE_Free(top);
    ExpectAgreement(index, NewParent("q", 100));
}

TEST_F(ChildIndex, FindsTopLevelNodesInTheOrderOfTheChains)
{
    zr::ChildIndex index;
    for (int i = 0; i < 100; ++i)
        AddData(module_, ZR_NODE_CONTAINER, Name(i).c_str());
    for (int i = 50; i < 150; ++i)
        ZRS_MOD_AddTopNodeToSchemaTree(module_, NewNode(module_, ZR_NODE_RPC, Name(i).c_str()));
    for (int i = 100; i < 200; ++i)
        ZRS_MOD_AddTopNodeToSchemaTree(module_,
                                       NewNode(module_, ZR_NODE_NOTIFICATION, Name(i).c_str()));
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 210; ++i)
            EXPECT_EQ(index.FindTop(module_, Name(i).c_str()),
                      ZRS_MOD_FindTopLevelSchemaNode(module_, Name(i).c_str()))
                << i;
        // The rpc, then the notification of that name, then one that only the first chain has.
        ZrNode *node = ZRS_MOD_FindTopLevelSchemaNode(module_, round < 2 ? "child-120" : "child-7");
        index.Leave(node, nullptr);
        ZRS_NODE_Unlink(node);
        ZRS_NODE_Free(node);
    }
    EXPECT_EQ(index.FindTop(other_, "child-1"), nullptr);
    EXPECT_EQ(index.FindTop(module_, nullptr), nullptr);
    EXPECT_EQ(index.FindTop(nullptr, "child-1"), nullptr);
}

TEST_F(ChildIndex, NeedsMemoryOnlyToBeQuick)
{
    zr::ChildIndex index;
    ZrNode *parent = NewParent("p", 100);
    guard_.FailAt(0, true);
    ExpectAgreement(index, parent);
    EXPECT_GT(guard_.Count(), 0u);
    guard_.Stop();
}

TEST(Coupling, OfAugmentsToANodeAndToItsManyChildrenReachesEach)
{
    std::string containers, augments;
    for (int i = 0; i < 300; ++i) {
        std::string name = "c" + std::to_string(i);
        containers += zrtest::Container(name);
        augments += zrtest::Augment("/m:top/m:" + name, zrtest::Leaf("p")) +
                    zrtest::Augment("/m:top", zrtest::Container("a" + name)) +
                    zrtest::Augment("/m:top/a:a" + name, zrtest::Leaf("q"));
    }
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", zrtest::Container("top", containers)), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", zrtest::Import("m") + augments), ZR_OK);
    EXPECT_TRUE(ctx.Messages().empty());
    for (int i = 0; i < 300; ++i) {
        std::string name = "c" + std::to_string(i);
        EXPECT_NE(ctx.Node(("/m:top/" + name + "/a:p").c_str()), nullptr) << name;
        EXPECT_NE(ctx.Node(("/m:top/a:a" + name + "/q").c_str()), nullptr) << name;
    }
}

TEST(Coupling, OfAugmentsToEveryOneOfManyChildrenReachesEach)
{
    std::string containers, augments;
    for (int i = 0; i < 300; ++i) {
        std::string name = "c" + std::to_string(i * 7 % 300);
        containers += zrtest::Container("c" + std::to_string(i));
        augments += zrtest::Augment("/m:top/m:" + name, zrtest::Leaf("a" + name));
    }
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", zrtest::Container("top", containers)), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", zrtest::Import("m") + augments), ZR_OK);
    EXPECT_TRUE(ctx.Messages().empty());
    for (int i = 0; i < 300; ++i) {
        std::string name = "c" + std::to_string(i);
        EXPECT_NE(ctx.Node(("/m:top/" + name + "/a:a" + name).c_str()), nullptr) << name;
    }
}

} // namespace
