// SPDX-License-Identifier: Apache-2.0
#include "xpath/evaluate.h"

#include <gtest/gtest.h>

#include <string>

#include "support/alloc.h"
#include "support/context.h"
#include "xpath/evaluation.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

TEST(FunctionTable, FindsAFunctionByItsExactName)
{
    const std::pair<const char *, uint32_t (*)(ZrXpathEvalCtx *)> functions[] = {
        {"not", ZR_XPATH_FuncNot},
        {"derived-from", ZR_XPATH_FuncDerivedFrom},
        {"derived-from-or-self", ZR_XPATH_FuncDerivedFromOfSelf}};
    for (const auto &[name, run] : functions) {
        const zr::XpathFunction *found =
            zr::FindXpathFunction(name, static_cast<uint32_t>(std::strlen(name)));
        ASSERT_NE(found, nullptr) << name;
        EXPECT_EQ(found->run, run) << name;
    }
    EXPECT_EQ(zr::FindXpathFunction("not(", 3), zr::FindXpathFunction("not", 3));
}

TEST(FunctionTable, DoesNotKnowOtherNames)
{
    for (const char *name :
         {"", "no", "nott", "NOT", "derived", "derived-from-", "count", "current",
          "derived-from-or-self-", "position", "abcdefghijklmnopqrst"})
        EXPECT_EQ(zr::FindXpathFunction(name, static_cast<uint32_t>(std::strlen(name))), nullptr)
            << name;
}

TEST(FunctionTable, DoesNotKnowANameOf21CharactersOrMore)
{
    std::string name = "derived-from-or-self";
    ASSERT_EQ(name.size(), 20u);
    EXPECT_NE(zr::FindXpathFunction(name.c_str(), 20), nullptr);
    EXPECT_EQ(zr::FindXpathFunction((name + "x").c_str(), 21), nullptr);
    EXPECT_EQ(zr::FindXpathFunction(std::string(5000, 'x').c_str(), 5000), nullptr);
}

TEST(Not, NegatesTheObjectOnTopInPlace)
{
    DataTree tree("<r><a/></r>");
    Evaluation eval(tree, "1");
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), tree.Top());
    ZR_XPATH_PushStringToObjStack(eval.Ctx(), "", 0);
    EXPECT_EQ(ZR_XPATH_FuncNot(eval.Ctx()), ZR_OK);
    EXPECT_EQ(eval.Objects(), 2u);
    EXPECT_EQ(eval.Top()->kind, ZR_XPATH_OBJ_BOOLEAN);
    EXPECT_EQ(eval.Top()->value.boolean, 1u);
    EXPECT_EQ(ZR_XPATH_FuncNot(eval.Ctx()), ZR_OK);
    EXPECT_EQ(eval.Top()->value.boolean, 0u);
}

TEST(Not, NeedsAnObject)
{
    DataTree tree("<r/>");
    Evaluation eval(tree, "1");
    EXPECT_EQ(ZR_XPATH_FuncNot(eval.Ctx()), ZR_ERR_INVALID);
}

// Two modules: "base" defines animal, mammal (of animal) and dog (of mammal) and the leaves; "more"
// defines cat (of base's mammal) and a second identity "animal".
class DerivedFrom : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(ctx_.LoadBody("base", R"(
            <identity name="animal"/>
            <identity name="mammal"><base name="animal"/></identity>
            <identity name="dog"><base name="mammal"/></identity>
            <typedef name="kind"><type name="identityref"><base name="animal"/></type></typedef>
            <container name="top">
              <leaf name="pet"><type name="identityref"><base name="animal"/></type></leaf>
              <leaf name="typed"><type name="kind"/></leaf>
              <leaf name="text"><type name="string"/></leaf>
              <leaf name="member"><type name="union"><type name="kind"/></type></leaf>
              <leaf name="members"><type name="either"/></leaf>
            </container>
            <typedef name="either"><type name="union"><type name="kind"/><type name="int8"/></type>
            </typedef>)"),
                  ZR_OK);
        ASSERT_EQ(ctx_.LoadBody("more", R"(
            <import module="base"><prefix value="b"/></import>
            <identity name="animal"/>
            <identity name="cat"><base name="b:mammal"/></identity>)"),
                  ZR_OK);
    }

    // A tree <top><leaf>value</leaf></top> whose elements lead to their schema nodes.
    std::unique_ptr<DataTree> Tree(const std::string &leaf, const std::string &value)
    {
        auto tree = std::make_unique<DataTree>("<top xmlns='urn:base' xmlns:b='urn:base' "
                                               "xmlns:m='urn:more' xmlns:u='urn:unknown'><" +
                                               leaf + ">" + value + "</" + leaf + "></top>");
        tree->Top()->_private = ctx_.Node("/base:top");
        tree->Find(leaf.c_str())->_private = ctx_.Node(("/base:top/" + leaf).c_str());
        EXPECT_NE(tree->Find(leaf.c_str())->_private, nullptr);
        return tree;
    }
    uint32_t Eval(const std::string &value, const char *expression)
    {
        return Tree("pet", value)->Eval(expression);
    }

    zrtest::TestContext ctx_;
};

TEST_F(DerivedFrom, HoldsForABaseOfTheIdentity)
{
    EXPECT_EQ(Eval("b:mammal", "derived-from(pet, 'base:animal')"), ZR_OK);
    EXPECT_EQ(Eval("m:cat", "derived-from(pet, 'base:mammal')"), ZR_OK);
    EXPECT_EQ(Eval("b:mammal", "derived-from(pet, 'base:dog')"), ZR_XPATH_RESULT_FALSE);
}

TEST_F(DerivedFrom, DoesNotFollowTheBasesOfBases)
{
    EXPECT_EQ(Eval("b:dog", "derived-from(pet, 'base:mammal')"), ZR_OK);
    EXPECT_EQ(Eval("b:dog", "derived-from(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
}

TEST_F(DerivedFrom, HoldsForTheIdentityItselfOnlyOrSelf)
{
    EXPECT_EQ(Eval("b:mammal", "derived-from(pet, 'base:mammal')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("b:mammal", "derived-from-or-self(pet, 'base:mammal')"), ZR_OK);
    EXPECT_EQ(Eval("b:mammal", "derived-from-or-self(pet, 'base:animal')"), ZR_OK);
    EXPECT_EQ(Eval("b:mammal", "derived-from-or-self(pet, 'base:dog')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("m:animal", "derived-from-or-self(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
}

TEST_F(DerivedFrom, IsFalseForAValueThatNamesNoIdentity)
{
    EXPECT_EQ(Eval("hello world", "derived-from(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("hello world", "derived-from-or-self(pet, 'base:animal')"),
              ZR_XPATH_RESULT_FALSE);
}

TEST_F(DerivedFrom, TakesTheModuleOfTheNodeWhereANameHasNone)
{
    EXPECT_EQ(Eval("mammal", "derived-from(pet, 'animal')"), ZR_OK);
    EXPECT_EQ(Eval("m:cat", "derived-from(pet, 'mammal')"), ZR_OK);
    EXPECT_EQ(Eval("m:cat", "derived-from-or-self(pet, 'cat')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("m:cat", "derived-from-or-self(pet, 'more:cat')"), ZR_OK);
}

TEST_F(DerivedFrom, WorksOnATypeDerivedFromIdentityref)
{
    EXPECT_EQ(Tree("typed", "b:mammal")->Eval("derived-from(typed, 'animal')"), ZR_OK);
}

TEST_F(DerivedFrom, IsFalseWithoutAValue)
{
    EXPECT_EQ(Eval("", "derived-from(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("", "derived-from-or-self(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("u:mammal", "derived-from(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("x:mammal", "derived-from(pet, 'base:animal')"), ZR_XPATH_RESULT_FALSE);
}

TEST_F(DerivedFrom, TakesTheModuleOfTheNodeUpTo64Characters)
{
    for (size_t length : {64u, 65u}) {
        std::string name(length, 'n');
        ASSERT_EQ(ctx_.LoadBody(name, R"(
            <import module="base"><prefix value="b"/></import>
            <container name="top">
              <leaf name="pet"><type name="identityref"><base name="b:animal"/></type></leaf>
            </container>)"),
                  ZR_OK);
        auto tree = Tree("pet", "b:mammal");
        tree->Find("pet")->_private = ctx_.Module(name.c_str())->dataNodes->firstChild;
        EXPECT_EQ(tree->Eval("derived-from(pet, 'animal')"),
                  length == 64 ? uint32_t{ZR_XPATH_RESULT_FALSE} : uint32_t{ZR_ERR_INVALID});
        EXPECT_EQ(tree->Eval("derived-from(pet, 'base:animal')"), ZR_OK);
    }
}

TEST_F(DerivedFrom, RefusesAnIdentityThatIsNotDefined)
{
    EXPECT_EQ(Eval("b:horse", "derived-from(pet, 'base:animal')"), ZR_ERR_INVALID);
    EXPECT_EQ(Eval("m:dog", "derived-from(pet, 'base:animal')"), ZR_ERR_INVALID);
}

TEST_F(DerivedFrom, RefusesAMalformedName)
{
    EXPECT_EQ(Eval("b:mam mal", "derived-from(pet, 'base:animal')"), ZR_ERR_INVALID);
    EXPECT_EQ(Eval("b:mammal", "derived-from(pet, 'base:')"), ZR_ERR_INVALID);
    EXPECT_EQ(Eval("b:mammal", "derived-from(pet, 'a b')"), ZR_ERR_INVALID);
    std::string name(64, 'n');
    EXPECT_EQ(Eval("b:mammal", ("derived-from(pet, '" + name + "')").c_str()),
              ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("b:mammal", ("derived-from(pet, '" + name + "n')").c_str()), ZR_ERR_INVALID);
    EXPECT_EQ(Eval("b:mammal", ("derived-from(pet, '" + name + "n:x')").c_str()), ZR_ERR_INVALID);
}

TEST_F(DerivedFrom, NeedsAStringOnTopAndANodeBelow)
{
    for (const char *expression :
         {"derived-from()", "derived-from('base:animal')", "derived-from(pet)",
          "derived-from(pet, pet)", "derived-from(pet, 1)", "derived-from('a', 'b')",
          "derived-from(1, 'b')", "derived-from(none, 'base:animal')", "derived-from(pet, '')",
          "derived-from('base:animal', pet)", "derived-from-or-self()",
          "derived-from-or-self(none, 'x')"})
        EXPECT_EQ(Eval("b:mammal", expression), ZR_XPATH_ERR_BAD_ARGUMENT) << expression;
}

TEST_F(DerivedFrom, TakesWhatLiesOnTheStackWithoutCounting)
{
    EXPECT_EQ(Eval("b:mammal", "pet = derived-from('animal')"),
              ZR_ERR_INVALID); // the node is used up
    EXPECT_EQ(Eval("b:mammal", "1 = derived-from(0, pet, 'animal')"), ZR_ERR_INVALID);
}

// A union may take the value as something else, so that its identity is not known.
TEST_F(DerivedFrom, RefusesAUnionThatHoldsAnIdentityref)
{
    for (const char *leaf : {"member", "members"}) {
        EXPECT_EQ(Tree(leaf, "b:mammal")
                      ->Eval((std::string("derived-from(") + leaf + ", 'base:animal')").c_str()),
                  ZR_ERR_INVALID);
        EXPECT_EQ(Tree(leaf, "b:mammal")
                      ->Eval((std::string("derived-from-or-self(") + leaf + ", 'mammal')").c_str()),
                  ZR_ERR_INVALID);
        EXPECT_EQ(Tree(leaf, "b:mammal")->Eval((std::string(leaf) + " = 'base:mammal'").c_str()),
                  ZR_OK);
    }
}

TEST_F(DerivedFrom, NeedsASchemaNode)
{
    auto tree = Tree("pet", "b:mammal");
    tree->Find("pet")->_private = nullptr;
    EXPECT_EQ(tree->Eval("derived-from(pet, 'animal')"), ZR_XPATH_ERR_NO_SCHEMA);
    EXPECT_EQ(tree->Eval("derived-from(/, 'animal')"), ZR_XPATH_ERR_NO_SCHEMA);
    EXPECT_EQ(tree->Eval("derived-from-or-self(pet, 'animal')"), ZR_XPATH_ERR_NO_SCHEMA);
}

TEST_F(DerivedFrom, NeedsAnIdentityref)
{
    EXPECT_EQ(Tree("text", "b:mammal")->Eval("derived-from(text, 'animal')"), ZR_ERR_INVALID);
    EXPECT_EQ(Tree("text", "b:mammal")->Eval("derived-from(., 'animal')"),
              ZR_ERR_INVALID); // the container
}

TEST_F(DerivedFrom, ComparesAnIdentityrefByItsModuleNameForm)
{
    EXPECT_EQ(Eval("b:mammal", "pet = 'base:mammal'"), ZR_OK);
    EXPECT_EQ(Eval("mammal", "pet = 'base:mammal'"), ZR_OK);
    EXPECT_EQ(Eval("b:mammal", "pet = 'b:mammal'"), ZR_XPATH_RESULT_FALSE);
    EXPECT_EQ(Eval("u:mammal", "pet = ''"), ZR_OK); // its prefix means no loaded module
}

TEST_F(DerivedFrom, LeaksNothingWhenMemoryRunsOut)
{
    auto tree = Tree("pet", "b:mammal");
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return tree->Eval("derived-from-or-self(pet, 'base:mammal')"); });
        EXPECT_EQ(status != ZR_OK, memory.Failed());
    });
    EXPECT_GT(points, 10u);
}

} // namespace
