#include "schema/record_fixture.h"

namespace {

constexpr uint32_t kBadKey = static_cast<uint32_t>(-1);

class NodeKeys : public zrtest::RecordTest {
protected:
    NodeKeys() : module_(NewModule("m")), list_(AddData(module_, ZR_NODE_LIST, "list"))
    {
        for (const char *name : {"a", "b", "c"})
            AddChild(list_, ZR_NODE_LEAF, name);
        AddChild(list_, ZR_NODE_LEAF_LIST, "many");
    }
    uint32_t Mark(const char *keys)
    {
        return ZRS_NODE_MarkKeyAttrToListLeafs(list_, keys, &list_->keyCount);
    }
    // The names of the children that are keys.
    std::string Marked() const
    {
        std::string names;
        for (const ZrNode *child = list_->firstChild; child != nullptr; child = child->next) {
            if ((child->flags & ZRS_FLAG_KEY) != 0)
                names += child->name;
        }
        return names;
    }

    ZrMod *module_;
    ZrNode *list_;
};

TEST_F(NodeKeys, OneKeyIsMarked)
{
    EXPECT_EQ(Mark("b"), ZR_OK);
    EXPECT_EQ(Marked(), "b");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 1u);
}

TEST_F(NodeKeys, TwoNamesSeparatedByTwoSpacesAreTwoKeys)
{
    EXPECT_EQ(Mark("a  c"), ZR_OK);
    EXPECT_EQ(Marked(), "ac");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 2u);
}

TEST_F(NodeKeys, NamesMayBeSeparatedByTabsAndNewlinesAndSurroundedByBlanks)
{
    EXPECT_EQ(Mark(" \n c\t\n a \t"), ZR_OK);
    EXPECT_EQ(Marked(), "ac");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 2u);
}

TEST_F(NodeKeys, WithoutAKeyTextNothingIsMarked)
{
    EXPECT_EQ(Mark(nullptr), ZR_OK);
    EXPECT_EQ(Marked(), "");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 0u);
}

TEST_F(NodeKeys, AListWithoutChildrenIsRefused)
{
    ZrNode *empty = AddData(module_, ZR_NODE_LIST, "empty");
    EXPECT_EQ(ZRS_NODE_MarkKeyAttrToListLeafs(empty, "a", &empty->keyCount), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MarkKeyAttrToListLeafs(nullptr, "a", &empty->keyCount), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_NODE_MarkKeyAttrToListLeafs(list_, "a", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(Marked(), "");
}

TEST_F(NodeKeys, AKeyThatIsNoLeafOrNotThereIsRefusedAndEarlierKeysStay)
{
    EXPECT_EQ(Mark("a many"), kBadKey);
    EXPECT_EQ(Marked(), "a");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 1u);
    EXPECT_EQ(Mark("b missing c"), kBadKey);
    EXPECT_EQ(Marked(), "ab");
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 2u);
}

TEST_F(NodeKeys, AnEmptyNameIsRefused)
{
    for (const char *keys : {"", " \t\n", "a,b", "m:a", "a /b"}) {
        SCOPED_TRACE(keys);
        EXPECT_EQ(Mark(keys), kBadKey);
    }
}

TEST_F(NodeKeys, ANameOfSixtyFourCharactersIsTakenAndALongerOneRefused)
{
    std::string name(64, 'x');
    AddChild(list_, ZR_NODE_LEAF, name.c_str());
    EXPECT_EQ(Mark(name.c_str()), ZR_OK);
    EXPECT_EQ(Marked(), name);
    name += 'x';
    AddChild(list_, ZR_NODE_LEAF, name.c_str());
    EXPECT_EQ(Mark(name.c_str()), kBadKey);
}

TEST_F(NodeKeys, MoreThan255KeysAreRefused)
{
    std::string keys;
    for (int i = 0; i < 256; ++i) {
        std::string name = "k" + std::to_string(i);
        AddChild(list_, ZR_NODE_LEAF, name.c_str());
        keys += name + " ";
    }
    EXPECT_EQ(Mark(keys.c_str()), kBadKey);
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 255u);
    list_->keyCount = 0;
    EXPECT_EQ(Mark(keys.substr(0, keys.find("k255")).c_str()), ZR_OK);
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(list_), 255u);
}

} // namespace
