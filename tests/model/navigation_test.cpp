#include "model/navigation.h"

#include "schema/record_fixture.h"

namespace {

// top: a; empty-choice; choice: case one (b; inner choice: c), case none, case two (d); e
class Navigation : public zrtest::RecordTest {
protected:
    Navigation() : module_(NewModule("m")), top_(AddData(module_, ZR_NODE_CONTAINER, "top"))
    {
        a_ = AddChild(top_, ZR_NODE_LEAF, "a");
        empty_ = AddChild(top_, ZR_NODE_CHOICE, "empty-choice");
        choice_ = AddChild(top_, ZR_NODE_CHOICE, "choice");
        ZrNode *one = AddChild(choice_, ZR_NODE_CASE, "one");
        b_ = AddChild(one, ZR_NODE_LEAF, "b");
        inner_ = AddChild(one, ZR_NODE_CHOICE, "inner");
        c_ = AddChild(inner_, ZR_NODE_LEAF, "c");
        AddChild(choice_, ZR_NODE_CASE, "none");
        two_ = AddChild(choice_, ZR_NODE_CASE, "two");
        d_ = AddChild(two_, ZR_NODE_LEAF, "d");
        e_ = AddChild(top_, ZR_NODE_LEAF, "e");
        AddData(module_, ZR_NODE_LEAF, "after");
    }
    // The data nodes from a place on.
    static std::string From(ZrNode *start, const ZrNode *stop)
    {
        std::string names;
        for (const ZrNode *node = ZRS_NODE_GetFirstSlibingDataTreeNode(start, stop);
             node != nullptr; node = ZRS_NODE_GetNextDataTreeNode(node, stop))
            names += std::string(node->name) + " ";
        return names;
    }

    ZrMod *module_;
    ZrNode *top_, *a_, *empty_, *choice_, *b_, *inner_, *c_, *two_, *d_, *e_;
};

TEST_F(Navigation, NineKindsHaveAnInstanceInData)
{
    std::string kinds;
    for (uint32_t kind = 0; kind < 40; ++kind) {
        if (zr::HasDataInstance(kind))
            kinds += std::to_string(kind) + " ";
    }
    EXPECT_EQ(kinds, "1 2 3 4 7 8 9 10 11 ");
    EXPECT_FALSE(zr::HasDataInstance(UINT32_MAX));
}

TEST_F(Navigation, TheParentInDataIsAboveChoicesAndCases)
{
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(c_), top_);
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(choice_), top_);
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(a_), top_);
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(top_), nullptr);
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(nullptr), nullptr);
}

TEST_F(Navigation, TheParentInDataIsAboveInputAndOutput)
{
    ZrNode *rpc = AddTop(module_, module_->rpcs, ZR_NODE_RPC, "rpc");
    ZrNode *leaf = AddChild(AddChild(rpc, ZR_NODE_INPUT, "input"), ZR_NODE_LEAF, "leaf");
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(leaf), rpc);
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:top");
    EXPECT_EQ(ZRS_NODE_GetParentDataTreeNode(AddChild(augment, ZR_NODE_LEAF, "x")), nullptr);
}

TEST_F(Navigation, ChildrenOfChoicesAndCasesStandInTheirPlace)
{
    EXPECT_EQ(From(top_->firstChild, top_), "a b c d e ");
    EXPECT_EQ(From(top_->firstChild, nullptr), "a b c d e ");
}

TEST_F(Navigation, AWalkMayStartAnywhere)
{
    EXPECT_EQ(From(empty_, top_), "b c d e ");
    EXPECT_EQ(From(inner_, top_), "c d e ");
    EXPECT_EQ(From(e_, top_), "e ");
    EXPECT_EQ(From(top_, nullptr), "top after ");
    EXPECT_EQ(From(nullptr, nullptr), "");
}

TEST_F(Navigation, TheStopNodeIsNotLeft)
{
    EXPECT_EQ(From(choice_->firstChild, choice_), "b c d ");
    EXPECT_EQ(From(two_->firstChild, two_), "d ");
    EXPECT_EQ(ZRS_NODE_GetNextDataTreeNode(d_, choice_), nullptr);
    EXPECT_EQ(ZRS_NODE_GetNextDataTreeNode(d_, top_), e_);
    EXPECT_EQ(ZRS_NODE_GetNextDataTreeNode(nullptr, top_), nullptr);
}

TEST_F(Navigation, ADataNodeIsNeverLeft)
{
    EXPECT_EQ(ZRS_NODE_GetNextDataTreeNode(e_, nullptr), nullptr);
}

TEST_F(Navigation, TransparentNodesWithoutChildrenAtTheEndYieldNothing)
{
    ZrNode *box = AddData(module_, ZR_NODE_CONTAINER, "box");
    AddChild(AddChild(box, ZR_NODE_CHOICE, "x"), ZR_NODE_CASE, "y");
    EXPECT_EQ(From(box->firstChild, box), "");
    ZrNode *leaf = AddChild(box, ZR_NODE_LEAF, "z");
    EXPECT_EQ(ZRS_NODE_GetFirstSlibingDataTreeNode(box->firstChild, box), leaf);
}

TEST_F(Navigation, ALeafInsideACaseIsFoundAsIfItWereADirectChild)
{
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", "b"), b_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", "c"), c_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "", "d"), d_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, nullptr, "a"), a_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(choice_, "m", "c"), c_);
}

TEST_F(Navigation, ChoicesCasesAndOtherModulesNodesAreNotFoundByName)
{
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", "choice"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", "one"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "other", "a"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", "missing"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(choice_, "m", "a"), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "m", nullptr), nullptr);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(nullptr, "m", "a"), nullptr);
}

TEST_F(Navigation, AnEmptyModuleNameMeansTheNodesOwnModule)
{
    ZrMod *other = NewModule("other");
    ZrNode *foreign = NewNode(other, ZR_NODE_LEAF, "a");
    ZRS_NODE_AddAsFirstChild(top_, foreign);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "", "a"), a_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(top_, "other", "a"), foreign);
}

TEST_F(Navigation, TheSearchBelowACoupledAugmentEndsAtItsLastChild)
{
    ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/m:top");
    augment->firstChild = a_;
    augment->lastChild = choice_;
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(augment, "m", "d"), d_);
    EXPECT_EQ(ZRS_NODE_FindChildDataTreeNodeByName(augment, "m", "e"), nullptr);
    augment->firstChild = augment->lastChild = nullptr;
}

} // namespace
