#include "schema/lookup/lookup.h"

#include "schema/record_fixture.h"

namespace {

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
