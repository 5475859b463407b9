// SPDX-License-Identifier: Apache-2.0
#include "xpath/evaluate.h"

#include <gtest/gtest.h>

#include <string>

#include "xpath/evaluation.h"

namespace {

using zrtest::DataTree;
using zrtest::Evaluation;

// Where a path of the tree leads: an element's name, "/" for the document, "" for no node.
std::string PathTo(const DataTree &tree, const char *path, const char *context = nullptr)
{
    Evaluation eval(tree, path, context);
    EXPECT_EQ(ZR_XPATH_PushNodeToObjStack(eval.Ctx(), nullptr), ZR_OK);
    uint32_t status = eval.Run(path[0] == '/' ? ZR_XPATH_EvalAbsoluteLocationPath
                                              : ZR_XPATH_EvalRelativeLocationPath);
    if (status != ZR_OK)
        return "status " + std::to_string(status);
    EXPECT_EQ(eval.Cursor(), ZR_XPATH_GetTokenNumber(eval.Lex())) << path;
    const xmlNode *node = ZR_XPATH_GetStackTopObjNode(eval.Ctx());
    if (node == nullptr)
        return "";
    return node == tree.Root() ? "/" : reinterpret_cast<const char *>(node->name);
}

const char *const kXml = "<r><a><x>1</x><x>2</x></a><b><y/></b></r>";

TEST(Steps, StartAtNamesAndDots)
{
    for (uint32_t type = 0; type <= 21; ++type) {
        EXPECT_EQ(zr::StartsStep(type), type == 4 || type == 5 || type == 8 || type == 9) << type;
    }
}

TEST(AbsolutePath, StartsAtTheRootNode)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "/"), "/");
    EXPECT_EQ(PathTo(tree, "/r"), "r");
    EXPECT_EQ(PathTo(tree, "/r/b/y", "a"), "y");
    EXPECT_EQ(PathTo(tree, "/b"), "");
}

TEST(AbsolutePath, RefusesADoubleSlash)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "//r"), "status " + std::to_string(0x7106));
}

TEST(AbsolutePath, NeedsANodeObjectOnTop)
{
    DataTree tree(kXml);
    Evaluation eval(tree, "/r");
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalAbsoluteLocationPath), ZR_ERR_INVALID);
    ZR_XPATH_PushNumberToObjStack(eval.Ctx(), 1);
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalAbsoluteLocationPath), ZR_ERR_INVALID);
}

TEST(RelativePath, StartsAtTheContextNode)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a"), "a");
    EXPECT_EQ(PathTo(tree, "x", "a"), "x");
    EXPECT_EQ(PathTo(tree, ".", "a"), "a");
    EXPECT_EQ(PathTo(tree, "../b/y", "a"), "y");
    EXPECT_EQ(PathTo(tree, "./a/../b", "r"), "b");
}

TEST(RelativePath, ReadsADoubleSlashAsASingleOne)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a//x"), "x");
    EXPECT_EQ(PathTo(tree, ".//x"), "");
}

TEST(RelativePath, PassesOverASlashAtItsEnd)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a/"), "a");
    EXPECT_EQ(PathTo(tree, "a//"), "a");
}

TEST(RelativePath, NeedsANodeObjectOnTop)
{
    DataTree tree(kXml);
    Evaluation eval(tree, "a");
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalRelativeLocationPath), ZR_ERR_INVALID);
}

TEST(NameTest, TakesTheFirstChildOfThatName)
{
    DataTree tree(kXml);
    Evaluation eval(tree, "x", "a");
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), tree.Find("a"));
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalNameTest), ZR_OK);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), tree.Find("x"));
    EXPECT_EQ(eval.Cursor(), 1u);
}

TEST(NameTest, DoesNotCompareThePrefix)
{
    DataTree tree("<r xmlns:p='urn:p'><p:a/><q xmlns='urn:q'/></r>");
    EXPECT_EQ(PathTo(tree, "a"), "a");
    EXPECT_EQ(PathTo(tree, "other:a"), "a");
    EXPECT_EQ(PathTo(tree, "p:q"), "q");
}

TEST(NameTest, TakesAStarForNoWildcard)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "*"), "");
    EXPECT_EQ(PathTo(tree, "p:*"), "");
    xmlNewChild(tree.Top(), nullptr, reinterpret_cast<const xmlChar *>("*"), nullptr);
    EXPECT_EQ(PathTo(tree, "*"), "*");
    EXPECT_EQ(PathTo(tree, "p:*"), "*");
}

TEST(NameTest, LooksAtChildrenOfEveryKind)
{
    DataTree tree("<r>some text<?target data?><!-- note --><a/></r>");
    EXPECT_EQ(PathTo(tree, "text"), "text");
    EXPECT_EQ(PathTo(tree, "target"), "target");
    EXPECT_EQ(PathTo(tree, "comment"), "comment");
    EXPECT_EQ(PathTo(tree, "a"), "a");
}

TEST(NameTest, LeavesAMissingNodeMissing)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a/none/x"), "");
    EXPECT_EQ(PathTo(tree, "none/.."), "");
    EXPECT_EQ(PathTo(tree, "none/."), "");
    EXPECT_EQ(PathTo(tree, ("none/" + std::string(100, 'n')).c_str()), "");
}

TEST(NameTest, TakesNamesOfUpTo64Characters)
{
    std::string name(64, 'n');
    DataTree tree("<r><" + name + "/></r>");
    EXPECT_EQ(PathTo(tree, name.c_str()), name);
    EXPECT_EQ(PathTo(tree, (std::string(64, 'p') + ":" + name).c_str()), name);
    EXPECT_EQ(PathTo(tree, (name + "n").c_str()), "status 22");
    EXPECT_EQ(PathTo(tree, (std::string(65, 'p') + ":" + name).c_str()), "status 22");
    EXPECT_EQ(PathTo(tree, ("p:" + std::string(500, 'n')).c_str()), "status 22");
}

TEST(NameTest, RefusesAPrefixWithoutAName)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a:"), "status 22");
}

TEST(ParentStep, StaysBelowTheRootNode)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "..", "x"), "a");
    EXPECT_EQ(PathTo(tree, "../..", "x"), "r");
    EXPECT_EQ(PathTo(tree, "../../..", "x"), "r");
    EXPECT_EQ(PathTo(tree, "../../../../b", "x"), "b");
}

TEST(ParentStep, ClimbsToTheChildOfARootThatIsAnElement)
{
    DataTree tree("<rpc><r><a/></r></rpc>");
    ZrXpathEvalCtx ctx;
    ZrXpathLex *lex = ZR_XPATH_ExprTokenize("../../..");
    ASSERT_EQ(ZR_XPATH_InitEvalCtx(&ctx, tree.Find("rpc"), tree.Find("a"), 9), ZR_OK);
    uint32_t cursor = 0;
    ZR_XPATH_PushNodeToObjStack(&ctx, nullptr);
    EXPECT_EQ(ZR_XPATH_EvalRelativeLocationPath(&ctx, lex, &cursor), ZR_OK);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(&ctx), tree.Find("r"));
    ZR_XPATH_DestroyEvalCtx(&ctx);
    ZR_XPATH_FreeXpathLex(lex);
}

TEST(DotStep, StaysAndMovesTheCursor)
{
    DataTree tree(kXml);
    Evaluation eval(tree, ".");
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), tree.Find("b"));
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalDot), ZR_OK);
    EXPECT_EQ(ZR_XPATH_GetStackTopObjNode(eval.Ctx()), tree.Find("b"));
    EXPECT_EQ(eval.Cursor(), 1u);
}

TEST(Step, RefusesEveryOtherToken)
{
    DataTree tree(kXml);
    for (const char *expression :
         {"(", ")", "[", "]", "@", ",", "'a'", "1", "/", "|", "+", "<", "=", "f("}) {
        Evaluation eval(tree, expression);
        ZR_XPATH_PushNodeToObjStack(eval.Ctx(), tree.Top());
        EXPECT_EQ(eval.Run(ZR_XPATH_EvalStep), ZR_XPATH_ERR_BAD_STEP) << expression;
    }
    Evaluation empty(tree, "");
    EXPECT_EQ(empty.Run(ZR_XPATH_EvalStep), ZR_XPATH_ERR_BAD_STEP);
}

TEST(Step, RefusesTheReservedTokenThatStartsARelativePath)
{
    DataTree tree(kXml);
    Evaluation eval(tree, "a");
    eval.Lex()->tokens[0].type = ZR_XPATH_TOKEN_RESERVED9;
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), nullptr);
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalRelativeLocationPath), ZR_XPATH_ERR_BAD_STEP);
}

TEST(Predicate, IsPassedOverUpToTheFirstBracket)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a[x='2']/x"), "x");
    EXPECT_EQ(PathTo(tree, "a[1 'such' (, 'things' = or ]/x[']']"), "x");
    EXPECT_EQ(PathTo(tree, "a[]"), "a");
    EXPECT_EQ(PathTo(tree, "none[1]/x"), "");
    Evaluation nested(tree, "a[b[c]]");
    ZR_XPATH_PushNodeToObjStack(nested.Ctx(), nullptr);
    EXPECT_EQ(nested.Run(ZR_XPATH_EvalRelativeLocationPath), ZR_OK);
    EXPECT_EQ(nested.Cursor(), 6u); // on the last bracket
}

TEST(Predicate, IsSkippedOnlyAfterAName)
{
    DataTree tree(kXml);
    Evaluation eval(tree, ".[1]");
    ZR_XPATH_PushNodeToObjStack(eval.Ctx(), nullptr);
    EXPECT_EQ(eval.Run(ZR_XPATH_EvalRelativeLocationPath), ZR_OK);
    EXPECT_EQ(eval.Cursor(), 1u);
}

TEST(Predicate, NeedsItsEnd)
{
    DataTree tree(kXml);
    EXPECT_EQ(PathTo(tree, "a[x"), "status " + std::to_string(0x710D));
    EXPECT_EQ(PathTo(tree, "a["), "status " + std::to_string(0x710D));
    Evaluation eval(tree, "[1");
    EXPECT_EQ(eval.Run(ZR_XPATH_SkipPredicate), ZR_XPATH_ERR_PREDICATE);
}

TEST(Predicate, IsNotLookedForElsewhere)
{
    DataTree tree(kXml);
    Evaluation eval(tree, "a");
    EXPECT_EQ(eval.Run(ZR_XPATH_SkipPredicate), ZR_OK);
    EXPECT_EQ(eval.Cursor(), 0u);
}

} // namespace
