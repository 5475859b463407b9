// SPDX-License-Identifier: Apache-2.0
#include "model/navigation.h"

#include "schema/lookup/lookup.h"
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

// m: top (name; choice: case (inside); list (key; ref)), top-level choice: case (alone)
// n: box (item)
class DataPath : public zrtest::RecordTest {
protected:
    DataPath() : m_(NewModule("m")), n_(NewModule("n"))
    {
        top_ = AddData(m_, ZR_NODE_CONTAINER, "top");
        name_ = AddChild(top_, ZR_NODE_LEAF, "name");
        ZrNode *choice = AddChild(top_, ZR_NODE_CHOICE, "choice");
        inside_ = AddChild(AddChild(choice, ZR_NODE_CASE, "case"), ZR_NODE_LEAF, "inside");
        list_ = AddChild(top_, ZR_NODE_LIST, "list");
        key_ = AddChild(list_, ZR_NODE_LEAF, "key");
        ref_ = AddChild(list_, ZR_NODE_LEAF, "ref");
        ZrNode *topChoice = AddData(m_, ZR_NODE_CHOICE, "top-choice");
        alone_ = AddChild(AddChild(topChoice, ZR_NODE_CASE, "top-case"), ZR_NODE_LEAF, "alone");
        box_ = AddData(n_, ZR_NODE_CONTAINER, "box");
        item_ = AddChild(box_, ZR_NODE_LEAF, "item");
        added_ = NewNode(n_, ZR_NODE_LEAF, "added");
        ZRS_NODE_AddChild(top_, added_);
    }
    ZrNode *From(const ZrNode *node, const char *path)
    {
        return ZRS_MOD_GetNodeByXpath(m_, node, path);
    }

    ZrMod *m_, *n_;
    ZrNode *top_, *name_, *inside_, *list_, *key_, *ref_, *alone_, *box_, *item_, *added_;
};

TEST_F(DataPath, AnAbsolutePathStartsInTheModuleOfItsFirstStep)
{
    EXPECT_EQ(From(nullptr, "/m:top/name"), name_);
    EXPECT_EQ(From(ref_, "/n:box/item"), item_);
    EXPECT_EQ(From(nullptr, "/m:top/n:added"), added_);
}

TEST_F(DataPath, ChoiceAndCaseAreLookedThrough)
{
    EXPECT_EQ(From(nullptr, "/m:top/inside"), inside_);
    EXPECT_EQ(From(nullptr, "/m:top/choice/case/inside"), nullptr);
    EXPECT_EQ(From(nullptr, "/m:alone"), alone_);
}

TEST_F(DataPath, FromALeafInsideACaseOneParentStepLeadsToTheContainerOfTheChoice)
{
    EXPECT_EQ(From(inside_, "../m:name"), name_);
    EXPECT_EQ(From(inside_, "../name"), name_);
    EXPECT_EQ(From(inside_, "../m:inside"), inside_);
}

TEST_F(DataPath, ParentStepsClimbOneDataNodeEach)
{
    EXPECT_EQ(From(ref_, "../key"), key_);
    EXPECT_EQ(From(ref_, "../../m:name"), name_);
    EXPECT_EQ(From(ref_, "../../list/key"), key_);
}

TEST_F(DataPath, ARelativePathWithoutDotsStartsAtTheContextNode)
{
    EXPECT_EQ(From(top_, "list/key"), key_);
    EXPECT_EQ(From(top_, "m:name"), name_);
    EXPECT_EQ(From(name_, "name"), nullptr);
}

TEST_F(DataPath, AStepWithoutModuleNameMeansTheCurrentNodesModule)
{
    EXPECT_EQ(From(name_, "../added"), nullptr);
    EXPECT_EQ(From(name_, "../n:added"), added_);
    ZrNode *shadow = NewNode(n_, ZR_NODE_LEAF, "name");
    ZRS_NODE_AddAsFirstChild(top_, shadow);
    EXPECT_EQ(From(list_, "../name"), name_);
    EXPECT_EQ(From(list_, "../n:name"), shadow);
}

TEST_F(DataPath, PredicatesAreSkipped)
{
    EXPECT_EQ(From(nullptr, "/m:top/list[key='1']/ref"), ref_);
    EXPECT_EQ(From(ref_, "../../list[key=current()]/key"), key_);
}

TEST_F(DataPath, PathsThatLeadNowhereYieldNothing)
{
    for (const char *path : {"",
                             "/",
                             ".",
                             "./key",
                             "..",
                             "../",
                             "../..",
                             "../.",
                             "../../..",
                             "../../../m:top",
                             "../../../../x",
                             "...",
                             "..x",
                             "/top/name",
                             "/x:top",
                             "/m:top/",
                             "/m:top/nothing",
                             "../nothing",
                             "../key/..",
                             "/m:top/name/deeper",
                             "../ke y",
                             "/m:choice"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(From(ref_, path), nullptr);
    }
}

TEST_F(DataPath, ARelativePathNeedsAContextNode)
{
    EXPECT_EQ(From(nullptr, "../name"), nullptr);
    EXPECT_EQ(From(nullptr, "name"), nullptr);
}

TEST_F(DataPath, NullModuleOrPathYieldsNothing)
{
    EXPECT_EQ(ZRS_MOD_GetNodeByXpath(nullptr, ref_, "/m:top"), nullptr);
    EXPECT_EQ(From(ref_, nullptr), nullptr);
}

TEST_F(DataPath, NamesLongerThan64CharactersFail)
{
    std::string name(64, 'n');
    ZrNode *node = AddChild(top_, ZR_NODE_LEAF, name.c_str());
    EXPECT_EQ(From(nullptr, ("/m:top/" + name).c_str()), node);
    EXPECT_EQ(From(nullptr, ("/m:top/" + name + "n").c_str()), nullptr);
}

TEST_F(DataPath, TheStartOfAPathIsWhereItsFirstNamedStepIsLookedUp)
{
    const char *rest = nullptr;
    ZrNode *start = top_;
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "/m:top", &rest, &start), ZR_OK);
    EXPECT_EQ(start, nullptr);
    EXPECT_STREQ(rest, "/m:top");
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "a/b", &rest, &start), ZR_OK);
    EXPECT_EQ(start, ref_);
    EXPECT_STREQ(rest, "a/b");
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "../../a", &rest, &start), ZR_OK);
    EXPECT_EQ(start, top_);
    EXPECT_STREQ(rest, "a");
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "./a", &rest, &start), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(nullptr, "a", &rest, &start), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, nullptr, &rest, &start), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "a", nullptr, &start), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_GetStartPathAndNode(ref_, "a", &rest, nullptr), ZR_ERR_INVALID);
}

TEST_F(DataPath, ARunOfParentStepsEndsAtTheFirstOtherStep)
{
    ZrNode *start = nullptr;
    EXPECT_STREQ(ZRS_MOD_GetRelativePathRealStartNode(ref_, "../x/y", &start), "x/y");
    EXPECT_EQ(start, list_);
    EXPECT_EQ(ZRS_MOD_GetRelativePathRealStartNode(ref_, "../../../x", &start), nullptr);
    EXPECT_EQ(ZRS_MOD_GetRelativePathRealStartNode(nullptr, "../x", &start), nullptr);
    EXPECT_EQ(ZRS_MOD_GetRelativePathRealStartNode(ref_, nullptr, &start), nullptr);
    EXPECT_EQ(ZRS_MOD_GetRelativePathRealStartNode(ref_, "../x", nullptr), nullptr);
    EXPECT_EQ(start, list_);
}

TEST_F(DataPath, OneStepIsFoundByItsNames)
{
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, nullptr, "n", "box"), box_);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, nullptr, "x", "box"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, nullptr, "", "top"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, top_, "", "inside"), inside_);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, top_, "n", "added"), added_);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(nullptr, top_, "n", "added"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, top_, nullptr, "added"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetDataTreeNodeByNodeIdentifier(m_, top_, "n", nullptr), nullptr);
}

} // namespace
