// SPDX-License-Identifier: Apache-2.0
#include "schema/record_fixture.h"

namespace {

struct Visit {
    std::string text; // "name:arrival " for every call
    const char *stopAt = nullptr;
    uint32_t arrival = 0; // the arrival at which `result` is returned
    uint32_t result = 0;
};

uint32_t Note(ZrNode *node, uint32_t arrival, void *userData)
{
    auto *visit = static_cast<Visit *>(userData);
    visit->text += std::string(node->name) + ":" + std::to_string(arrival) + " ";
    bool stop = visit->stopAt != nullptr && std::string(node->name) == visit->stopAt &&
                arrival == visit->arrival;
    return stop ? visit->result : 0;
}

uint32_t UnlinkAndFree(ZrNode *node, uint32_t, void *userData)
{
    *static_cast<std::string *>(userData) += node->name;
    ZRS_NODE_Unlink(node);
    ZRS_NODE_Free(node);
    return 0;
}

// top: a (a1, a2), b, c (c1)
class NodeScan : public zrtest::RecordTest {
protected:
    NodeScan() : module_(NewModule("m")), top_(AddData(module_, ZR_NODE_CONTAINER, "top"))
    {
        ZrNode *a = AddChild(top_, ZR_NODE_CONTAINER, "a");
        AddChild(a, ZR_NODE_LEAF, "a1");
        AddChild(a, ZR_NODE_LEAF, "a2");
        AddChild(top_, ZR_NODE_LEAF, "b");
        AddChild(AddChild(top_, ZR_NODE_CONTAINER, "c"), ZR_NODE_LEAF, "c1");
        AddData(module_, ZR_NODE_LEAF, "next");
    }
    ZrNode *Child(const char *name) { return ZRS_NODE_FindChildNodeByName(top_, nullptr, name); }
    // An augment that has put "a" and "b" into "top".
    ZrNode *AddCoupledAugment()
    {
        ZrNode *augment = AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "aug");
        augment->firstChild = Child("a");
        augment->lastChild = Child("b");
        augment->flags |= ZRS_FLAG_COUPLED;
        return augment;
    }
    static void Uncouple(ZrNode *augment)
    {
        augment->firstChild = augment->lastChild = nullptr;
        augment->flags = 0;
    }

    ZrMod *module_;
    ZrNode *top_;
};

TEST_F(NodeScan, ATreeWalkVisitsInnerNodesTwiceAndNeverTheRootsSiblings)
{
    Visit visit;
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:3 a:0 a1:0 a2:1 a:2 b:1 c:1 c1:0 c:2 top:2 ");
}

TEST_F(NodeScan, ATreeWalkOverALeafVisitsItOnce)
{
    Visit visit;
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(Child("b"), Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "b:3 ");
}

TEST_F(NodeScan, TheSkipCodeKeepsATreeWalkOutOfASubtree)
{
    Visit visit{"", "a", ZR_ARRIVAL_CHILD, 0x5a6b7c8d};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:3 a:0 b:1 c:1 c1:0 c:2 top:2 ");
    visit = Visit{"", "c", ZR_ARRIVAL_SIBLING, ZR_SCAN_SKIP_SUBTREE};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:3 a:0 a1:0 a2:1 a:2 b:1 c:1 top:2 ");
}

TEST_F(NodeScan, SkippingTheRootEndsATreeWalk)
{
    Visit visit{"", "top", ZR_ARRIVAL_ROOT, ZR_SCAN_SKIP_SUBTREE};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:3 ");
    visit = Visit{"", "top", ZR_ARRIVAL_PARENT, ZR_SCAN_SKIP_SUBTREE};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
}

TEST_F(NodeScan, SkippingOnTheWayBackChangesNothing)
{
    Visit visit{"", "a", ZR_ARRIVAL_PARENT, ZR_SCAN_SKIP_SUBTREE};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:3 a:0 a1:0 a2:1 a:2 b:1 c:1 c1:0 c:2 top:2 ");
}

TEST_F(NodeScan, AnyOtherResultEndsATreeWalkAndIsReturned)
{
    Visit visit{"", "a2", ZR_ARRIVAL_SIBLING, 7};
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, Note, &visit), 7u);
    EXPECT_EQ(visit.text, "top:3 a:0 a1:0 a2:1 ");
}

TEST_F(NodeScan, ATreeWalkFromACoupledAugmentStaysInItsStretch)
{
    ZrNode *augment = AddCoupledAugment();
    Visit visit;
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(augment, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "aug:3 a:0 a1:0 a2:1 a:2 b:1 aug:2 ");
    Uncouple(augment);
}

TEST_F(NodeScan, ChildrenAreVisitedInOrder)
{
    Visit visit;
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "a:0 b:0 c:0 ");
    visit = Visit{};
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(Child("b"), Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "");
}

TEST_F(NodeScan, ChildrenOfAnAugmentAreOnlyItsOwn)
{
    ZrNode *augment = AddCoupledAugment();
    Visit visit;
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(augment, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "a:0 b:0 ");
    Uncouple(augment);
}

TEST_F(NodeScan, SiblingsAreVisitedFromTheNodeOn)
{
    Visit visit;
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(Child("b"), Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "b:1 c:1 ");
    visit = Visit{};
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(top_, Note, &visit), ZR_OK);
    EXPECT_EQ(visit.text, "top:1 next:1 ");
}

TEST_F(NodeScan, ACallbacksResultStopsScansOfChildrenAndSiblings)
{
    Visit visit{"", "b", ZR_ARRIVAL_CHILD, 9};
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(top_, Note, &visit), 9u);
    EXPECT_EQ(visit.text, "a:0 b:0 ");
    visit = Visit{"", "b", ZR_ARRIVAL_SIBLING, ZR_SCAN_SKIP_SUBTREE};
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(Child("a"), Note, &visit), ZR_SCAN_SKIP_SUBTREE);
    EXPECT_EQ(visit.text, "a:1 b:1 ");
}

TEST_F(NodeScan, TheCallbackMayTakeTheVisitedNodeAway)
{
    std::string names;
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(Child("a"), UnlinkAndFree, &names), ZR_OK);
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(Child("b"), UnlinkAndFree, &names), ZR_OK);
    EXPECT_EQ(names, "a1a2bc");
    EXPECT_EQ(Child("a")->firstChild, nullptr);
    EXPECT_EQ(top_->lastChild, Child("a"));
}

TEST_F(NodeScan, NullArgumentsAreRefused)
{
    Visit visit;
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(nullptr, Note, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(top_, nullptr, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(nullptr, Note, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(top_, nullptr, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(nullptr, Note, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(top_, nullptr, &visit), ZR_ERR_INVALID);
    EXPECT_EQ(visit.text, "");
}

} // namespace
