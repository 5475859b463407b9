#include "loader/statements/arguments.h"

#include <string>

#include "loader/loader_fixture.h"

using testing::ElementsAre;
using zrtest::ModuleUnderTest;

namespace {

// A leaf whose type has the given base.
struct Leaf {
    Leaf(ModuleUnderTest &module, uint32_t baseType, const char *value)
    {
        node.info = &info;
        info.realType.baseType = baseType;
        info.defaultValue = module.Text(value);
    }
    ZrNode node = {};
    ZrsLeafInfo info = {};
};

TEST(RefreshLeafDefault, GivesAnIdentityItsModuleName)
{
    ModuleUnderTest module;
    struct {
        const char *value, *refreshed;
    } const rows[] = {{"x:a", "x-mod:a"}, {"a", "t:a"}, {"t:a", "t:a"}};
    for (const auto &row : rows) {
        Leaf leaf(module, ZRT_TYPE_IDENTITYREF, row.value);
        EXPECT_EQ(ZRS_LOADER_RefreshLeafDefaultValue(module, &leaf.node), ZR_OK);
        EXPECT_STREQ(leaf.info.defaultValue, row.refreshed);
        ZR_DICT_Remove(module.dict(), leaf.info.defaultValue);
    }
}

TEST(RefreshLeafDefault, LeavesTheDefaultsOfOtherTypesAlone)
{
    ModuleUnderTest module;
    for (uint32_t baseType = 0; baseType <= ZRT_TYPE_NONE; ++baseType) {
        if (baseType == ZRT_TYPE_IDENTITYREF)
            continue;
        Leaf leaf(module, baseType, "q:a");
        EXPECT_EQ(ZRS_LOADER_RefreshLeafDefaultValue(module, &leaf.node), ZR_OK);
        EXPECT_STREQ(leaf.info.defaultValue, "q:a");
        ZR_DICT_Remove(module.dict(), leaf.info.defaultValue);
    }
}

TEST(RefreshLeafDefault, DoesNothingWithoutADefault)
{
    ModuleUnderTest module;
    Leaf leaf(module, ZRT_TYPE_IDENTITYREF, nullptr);
    EXPECT_EQ(ZRS_LOADER_RefreshLeafDefaultValue(module, &leaf.node), ZR_OK);
    EXPECT_EQ(leaf.info.defaultValue, nullptr);
}

TEST(RefreshLeafDefault, FailsForAnUnknownPrefixAndKeepsTheText)
{
    ModuleUnderTest module;
    for (const char *value : {"q:a", "", "a b"}) {
        Leaf leaf(module, ZRT_TYPE_IDENTITYREF, value);
        EXPECT_EQ(ZRS_LOADER_RefreshLeafDefaultValue(module, &leaf.node), ZR_ERR_INVALID);
        EXPECT_STREQ(leaf.info.defaultValue, value);
        ZR_DICT_Remove(module.dict(), leaf.info.defaultValue);
    }
}

TEST(RefreshLeafListDefaults, RefreshesEachUpToTheFirstFailure)
{
    ModuleUnderTest module;
    const char *values[] = {module.Text("x:a"), module.Text("q:b"), module.Text("x:c")};
    ZrsLeafListInfo info = {};
    info.realType.baseType = ZRT_TYPE_IDENTITYREF;
    info.defaults = values;
    info.defaultCount = 3;
    ZrNode node = {};
    node.info = &info;
    EXPECT_EQ(ZRS_LOADER_RefreshLeafListDefaultValue(module, &node), ZR_ERR_INVALID);
    EXPECT_THAT(values, ElementsAre(testing::StrEq("x-mod:a"), testing::StrEq("q:b"),
                                    testing::StrEq("x:c")));
    info.defaultCount = 0;
    EXPECT_EQ(ZRS_LOADER_RefreshLeafListDefaultValue(module, &node), ZR_OK);
    for (const char *value : values)
        ZR_DICT_Remove(module.dict(), value);
}

TEST(RefreshTypedefDefault, GivesAnIdentityItsModuleName)
{
    ModuleUnderTest module;
    ZrsTypDef typeDef = {};
    typeDef.realType.baseType = ZRT_TYPE_IDENTITYREF;
    typeDef.defaultValue = module.Text("x:a");
    EXPECT_EQ(ZRS_LOADER_RefreshTypeDefDefaultValue(module, &typeDef), ZR_OK);
    EXPECT_STREQ(typeDef.defaultValue, "x-mod:a");
    ZR_DICT_Remove(module.dict(), typeDef.defaultValue);
}

} // namespace
