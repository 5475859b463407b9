// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/arguments.h"

#include <string>

#include "loader/loader_fixture.h"
#include "platform/memory.h"

namespace {

using testing::ElementsAre;
using zrtest::ModuleUnderTest;

// The rewritten condition, or "(null)".
std::string Rewrite(ModuleUnderTest &module, const std::string &condition)
{
    zr::Owned<char> text(ZRS_LOADER_TransPrefix2ModNameInLiteral(module, condition.c_str()));
    return text ? text.get() : "(null)";
}

struct Row {
    const char *condition, *rewritten;
};

TEST(ConditionRewriting, ReplacesThePrefixesOfNames)
{
    const Row rows[] = {
        {"x:a", "x-mod:a"},
        {"t:a", "t:a"},
        {"a", "a"},
        {"../x:a/x:b[x:c = 1]/d", "../x-mod:a/x-mod:b[x-mod:c = 1]/d"},
        {"/x:a | //acm:b", "/x-mod:a | //ietf-netconf-acm:b"},
        {"x:* and t:*", "x-mod:* and t:*"},
        {"x:a or not(x:b) and @x:c", "x-mod:a or not(x-mod:b) and @x-mod:c"},
        {"count(x:a) > 1.5", "count(x-mod:a) > 1.5"},
        {"x:a-b.c_1", "x-mod:a-b.c_1"},
        {". = ../x:a", ". = ../x-mod:a"},
        {"x:and and x:or", "x-mod:and and x-mod:or"},
    };
    ModuleUnderTest module;
    for (const Row &row : rows)
        EXPECT_EQ(Rewrite(module, row.condition), row.rewritten);
}

TEST(ConditionRewriting, KeepsWhiteSpace)
{
    const Row rows[] = {
        {"  x:a\t=\n\r 1 ", "  x-mod:a\t=\n\r 1 "},
        {"", ""},
        {" \n ", " \n "},
    };
    ModuleUnderTest module;
    for (const Row &row : rows)
        EXPECT_EQ(Rewrite(module, row.condition), row.rewritten);
}

TEST(ConditionRewriting, LeavesAPrefixedFunctionNameAlone)
{
    ModuleUnderTest module;
    EXPECT_EQ(Rewrite(module, "x:f(x:a)"), "x:f(x-mod:a)");
    EXPECT_EQ(Rewrite(module, "q:f(a)"), "q:f(a)");
}

TEST(ConditionRewriting, RewritesALiteralThatIsAPrefixedName)
{
    const Row rows[] = {
        {"derived-from(../type, 'x:ethernet')", "derived-from(../type, 'x-mod:ethernet')"},
        {"x:type = \"x:ethernet\"", "x-mod:type = \"x-mod:ethernet\""},
        {"'t:a'", "'t:a'"},
    };
    ModuleUnderTest module;
    for (const Row &row : rows)
        EXPECT_EQ(Rewrite(module, row.condition), row.rewritten);
}

TEST(ConditionRewriting, CopiesAnyOtherLiteralAsItIs)
{
    ModuleUnderTest module;
    for (const char *condition : {"'q:a'", "'x:'", "':a'", "'x:a '", "' x:a'", "'x:a b'", "'x:a:b'",
                                  "'x'", "''", "'x:a/x:b'", "'http://x:a'", "\"x:'a'\"", "'x : a'"})
        EXPECT_EQ(Rewrite(module, condition), condition);
}

TEST(ConditionRewriting, FailsForANameOfAnUnknownPrefix)
{
    ModuleUnderTest module;
    EXPECT_EQ(Rewrite(module, "x:a = q:b"), "(null)");
    EXPECT_EQ(Rewrite(module, "q:*"), "(null)");
    EXPECT_EQ(Rewrite(module, std::string(64, 'p') + ":a"), "(null)");
    EXPECT_EQ(Rewrite(module, std::string(65, 'p') + ":a"), "(null)");
    EXPECT_EQ(Rewrite(module, std::string(3000, 'p') + ":a"), "(null)");
}

TEST(ConditionRewriting, CopiesALiteralWithAnOverlongPrefix)
{
    ModuleUnderTest module;
    std::string literal = "'" + std::string(65, 'p') + ":a'";
    EXPECT_EQ(Rewrite(module, literal), literal);
}

TEST(ConditionRewriting, FailsForWhatIsNoExpression)
{
    ModuleUnderTest module;
    for (const char *condition : {"a ! b", "'open", "child::a", "$a", "1.2.3", "a b"})
        EXPECT_EQ(Rewrite(module, condition), "(null)") << condition;
    EXPECT_EQ(ZRS_LOADER_TransPrefix2ModNameInLiteral(module, nullptr), nullptr);
}

TEST(ConditionRewriting, GivesAtMost3096Characters)
{
    ModuleUnderTest module;
    EXPECT_EQ(Rewrite(module, std::string(3096, 'a')), std::string(3096, 'a'));
    EXPECT_EQ(Rewrite(module, std::string(3097, 'a')), "(null)");
    EXPECT_EQ(Rewrite(module, std::string(3095, 'a') + " "), std::string(3095, 'a') + " ");
    EXPECT_EQ(Rewrite(module, std::string(3096, 'a') + " "), "(null)");
    EXPECT_EQ(Rewrite(module, std::string(3096, ' ') + "a"), "(null)");
    // "x" becomes "x-mod": four characters more.
    std::string name(3096 - 6, 'a');
    EXPECT_EQ(Rewrite(module, "x:" + name), "x-mod:" + name);
    EXPECT_EQ(Rewrite(module, "x:" + name + "a"), "(null)");
    EXPECT_EQ(Rewrite(module, "'" + std::string(3094, 'a') + "'"),
              "'" + std::string(3094, 'a') + "'");
    EXPECT_EQ(Rewrite(module, "'" + std::string(3095, 'a') + "'"), "(null)");
}

TEST(ConditionText, TakesWhatFits)
{
    char text[zr::kMaxConditionLength + 1] = {};
    zr::ConditionText out = {text, 0};
    EXPECT_EQ(ZRS_LOADER_CopyTokenIntoOutCondition(&out, "abc", 2), ZR_OK);
    EXPECT_STREQ(text, "ab");
    out.length = zr::kMaxConditionLength - 2;
    EXPECT_EQ(ZRS_LOADER_CopyTokenIntoOutCondition(&out, "abc", 3), ZR_ERR_INVALID);
    EXPECT_EQ(out.length, zr::kMaxConditionLength - 2);
    EXPECT_EQ(ZRS_LOADER_CopyTokenIntoOutCondition(&out, "abc", 2), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CopyTokenIntoOutCondition(&out, "", 0), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CopyTokenIntoOutCondition(&out, "a", 1), ZR_ERR_INVALID);
}

TEST(ConditionText, TakesTheModuleNameOfAPrefix)
{
    ModuleUnderTest module;
    char text[zr::kMaxConditionLength + 1] = {};
    zr::ConditionText out = {text, 0};
    EXPECT_EQ(ZRS_LOADER_AddModuleNameIntoCondition(module, &out, "x:a", 1), ZR_OK);
    EXPECT_STREQ(text, "x-mod");
    EXPECT_EQ(ZRS_LOADER_AddModuleNameIntoCondition(module, &out, "q:a", 1), ZR_ERR_INVALID);
    EXPECT_STREQ(text, "x-mod");
}

TEST(ConditionRewriting, FailsWhenAnyAllocationFails)
{
    ModuleUnderTest module;
    std::string condition = "x:a";
    for (int i = 0; i < 15; ++i)
        condition += " and x:a";
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        std::string text = memory.Run([&] { return Rewrite(module, condition); });
        EXPECT_EQ(text == "(null)", memory.Failed());
    });
}

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
