// SPDX-License-Identifier: Apache-2.0
#include "schema/record_fixture.h"

namespace {

constexpr uint32_t kTrue = ZRS_FLAG_CONFIG_TRUE;
constexpr uint32_t kFalse = ZRS_FLAG_CONFIG_FALSE;
constexpr uint32_t kGiven = ZRS_FLAG_CONFIG_GIVEN;

class NodeFlags : public zrtest::RecordTest {
protected:
    NodeFlags()
        : module_(NewModule("m")), top_(AddData(module_, ZR_NODE_CONTAINER, "top")),
          child_(AddChild(top_, ZR_NODE_CONTAINER, "child")),
          leaf_(AddChild(child_, ZR_NODE_LEAF, "leaf"))
    {
    }

    ZrMod *module_;
    ZrNode *top_;
    ZrNode *child_;
    ZrNode *leaf_;
};

struct ConfigCase {
    const char *about;
    uint32_t parent;
    uint32_t before;
    uint32_t after;
};

const ConfigCase kConfigCases[] = {
    {"a parent that says nothing", 0, kTrue, kTrue},
    {"a parent that says nothing, given below", 0, kFalse | kGiven, kFalse | kGiven},
    {"nothing given below config true", kTrue, 0, kTrue},
    {"nothing given below config false", kFalse, 0, kFalse},
    {"inherited true below what became false", kFalse, kTrue, kFalse},
    {"inherited false below what became true", kTrue, kFalse, kTrue},
    {"the parent's own mark stays with the parent", kFalse | kGiven, 0, kFalse},
    {"own true below config true", kTrue, kTrue | kGiven, kTrue | kGiven},
    {"own false below config true", kTrue, kFalse | kGiven, kFalse | kGiven},
    {"own false below config false", kFalse, kFalse | kGiven, kFalse | kGiven},
    {"own true below config false gives way", kFalse, kTrue | kGiven, kFalse},
};

TEST_F(NodeFlags, ConfigIsInheritedByTheRules)
{
    for (const ConfigCase &row : kConfigCases) {
        SCOPED_TRACE(row.about);
        top_->flags = row.parent;
        child_->flags = row.before;
        ZRS_NODE_UpdateConfigFlag(child_);
        EXPECT_EQ(child_->flags, row.after);
        EXPECT_EQ(top_->flags, row.parent);
    }
}

TEST_F(NodeFlags, ALeafWithItsOwnConfigTrueUnderConfigFalseIsNoConfiguration)
{
    top_->flags = kFalse | kGiven;
    child_->flags = kTrue | kGiven;
    leaf_->flags = kTrue | kGiven;
    ZRS_NODE_UpdateConfigFlag(child_);
    EXPECT_EQ(ZR_NODE_IsRwConfig(child_), 0u);
    EXPECT_EQ(ZR_NODE_IsRwConfig(leaf_), 0u);
    EXPECT_EQ(leaf_->flags, kFalse);
}

TEST_F(NodeFlags, ConfigStopsWhereNothingChanges)
{
    top_->flags = kFalse;
    child_->flags = kFalse;
    leaf_->flags = kTrue;
    ZRS_NODE_UpdateConfigFlag(child_); // equal already: the leaf is not looked at
    EXPECT_EQ(leaf_->flags, kTrue);
    ZRS_NODE_UpdateConfigFlag(top_); // no parent
    EXPECT_EQ(top_->flags, kFalse);
    ZRS_NODE_UpdateConfigFlag(nullptr);
}

TEST_F(NodeFlags, OtherFlagsAreKeptWhenConfigChanges)
{
    top_->flags = kFalse;
    leaf_->flags = ZRS_FLAG_MANDATORY_TRUE | ZRS_FLAG_DEPRECATED;
    ZRS_NODE_UpdateConfigFlag(child_);
    EXPECT_EQ(leaf_->flags, kFalse | ZRS_FLAG_MANDATORY_TRUE | ZRS_FLAG_DEPRECATED);
}

TEST_F(NodeFlags, NacmFlagsPassToEverythingBelow)
{
    top_->flags = ZRS_FLAG_DENY_ALL;
    ZRS_NODE_UpdateNacmFlag(child_);
    EXPECT_EQ(child_->flags, ZRS_FLAG_DENY_ALL);
    EXPECT_EQ(leaf_->flags, ZRS_FLAG_DENY_ALL);
}

TEST_F(NodeFlags, AParentsNacmPairReplacesTheNodesPair)
{
    top_->flags = ZRS_FLAG_DENY_WRITE;
    child_->flags = ZRS_FLAG_DENY_ALL | kTrue;
    ZRS_NODE_UpdateNacmFlag(child_);
    EXPECT_EQ(child_->flags, ZRS_FLAG_DENY_WRITE | kTrue);
}

TEST_F(NodeFlags, ANodeKeepsItsNacmFlagsBelowAParentWithoutAny)
{
    child_->flags = ZRS_FLAG_DENY_WRITE;
    ZRS_NODE_UpdateNacmFlag(child_);
    EXPECT_EQ(child_->flags, ZRS_FLAG_DENY_WRITE);
    ZRS_NODE_UpdateNacmFlag(top_);
    ZRS_NODE_UpdateNacmFlag(nullptr);
}

TEST_F(NodeFlags, UpdateFlagPushesBothGroupsDown)
{
    top_->flags = kFalse | kGiven | ZRS_FLAG_DENY_WRITE;
    ZRS_NODE_UpdateFlag(top_);
    EXPECT_EQ(child_->flags, kFalse | ZRS_FLAG_DENY_WRITE);
    EXPECT_EQ(leaf_->flags, kFalse | ZRS_FLAG_DENY_WRITE);
    EXPECT_EQ(top_->flags, kFalse | kGiven | ZRS_FLAG_DENY_WRITE);
}

TEST_F(NodeFlags, UpdateFlagDoesNothingForANodeWithoutInheritableFlags)
{
    top_->flags = ZRS_FLAG_PRESENCE;
    ZRS_NODE_UpdateFlag(top_);
    EXPECT_EQ(child_->flags, 0u);
    ZRS_NODE_UpdateFlag(nullptr);
}

TEST_F(NodeFlags, TheScanCallbackUpdatesOneChildAndGoesOn)
{
    top_->flags = kTrue | ZRS_FLAG_DENY_ALL;
    EXPECT_EQ(ZRS_NODE_ImplUpdateFlagCb(child_, 0, nullptr), 0u);
    EXPECT_EQ(child_->flags, kTrue | ZRS_FLAG_DENY_ALL);
}

struct NacmCase {
    const char *moduleName;
    const char *extensionName;
    uint32_t flags;
};

const NacmCase kNacmCases[] = {
    {"ietf-netconf-acm", "default-deny-all", ZRS_FLAG_DENY_ALL},
    {"ietf-netconf-acm", "default-deny-write", ZRS_FLAG_DENY_WRITE},
    {"ietf-netconf-acm", "default-deny", 0},
    {"ietf-netconf-acm", "default-deny-all-more", 0},
    {"ietf-netconf-acm2", "default-deny-all", 0},
    {"m", "default-deny-write", 0},
    {nullptr, "default-deny-write", 0},
    {"ietf-netconf-acm", nullptr, 0},
};

TEST_F(NodeFlags, OnlyTheTwoNacmExtensionsSetAFlag)
{
    for (const NacmCase &row : kNacmCases) {
        leaf_->flags = 0;
        ZRS_NODE_SetNacmFlag(leaf_, row.moduleName, row.extensionName);
        EXPECT_EQ(leaf_->flags, row.flags) << (row.moduleName ? row.moduleName : "null");
    }
    ZRS_NODE_SetNacmFlag(nullptr, "ietf-netconf-acm", "default-deny-all");
}

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
