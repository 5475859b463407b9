// SPDX-License-Identifier: Apache-2.0
#include "xpath/path_forms.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "model/module_records.h"
#include "platform/memory.h"
#include "support/alloc.h"

namespace {

// A module "own" with the prefix "o" that imports m1 as p and m2 as q.
struct OwnModule : ZrMod {
    ZrsImport table[2] = {{"m1", "p"}, {"m2", "q"}};
    OwnModule() : ZrMod{}
    {
        name = "own";
        prefix = "o";
        imports = table;
        importCount = 2;
    }
};

// The module-name form, or "null".
std::string Form(const std::string &path)
{
    OwnModule module;
    char *form = ZR_XPATH_TransformToJsonFormat(&module, path.c_str());
    std::string text = form != nullptr ? form : "null";
    zr::Free(form);
    return text;
}

TEST(TransformToJsonFormat, NamesTheModuleWhereThePrefixChanges)
{
    EXPECT_EQ(Form("/p:x/y/q:z"), "/m1:x/y/m2:z");
    EXPECT_EQ(Form("/p:x/p:y/q:z/q:w/p:v"), "/m1:x/y/m2:z/w/m1:v");
}

TEST(TransformToJsonFormat, QualifiesAFirstStepWithoutPrefixByThePathsOwnModule)
{
    EXPECT_EQ(Form("/x"), "/own:x");
    EXPECT_EQ(Form("/x/o:y/p:z/o:w"), "/own:x/y/m1:z/own:w");
    EXPECT_EQ(Form("x/y"), "own:x/y");
}

TEST(TransformToJsonFormat, LeavesAStepThatRepeatsThePrefixUnqualified)
{
    EXPECT_EQ(Form("/p:x/p:y"), "/m1:x/y");
    EXPECT_EQ(Form("/o:x/o:y"), "/own:x/y");
}

TEST(TransformToJsonFormat, KeepsParentSteps)
{
    EXPECT_EQ(Form("../x"), "../own:x");
    EXPECT_EQ(Form("../../p:x/../y"), "../../m1:x/../y");
    EXPECT_EQ(Form(".."), "..");
}

TEST(TransformToJsonFormat, KeepsStepsToTheNodeItself)
{
    EXPECT_EQ(Form("./x"), "./own:x");
    EXPECT_EQ(Form("."), ".");
}

TEST(TransformToJsonFormat, DropsPredicates)
{
    EXPECT_EQ(Form("/p:x[p:k = current()/../k]/y[1]/q:z[a][b]"), "/m1:x/y/m2:z");
    EXPECT_EQ(Form("../x[k='a/b']"), "../own:x");
}

TEST(TransformToJsonFormat, ClosesAPredicateAtTheFirstBracketEvenInALiteral)
{
    EXPECT_EQ(Form("/x[k=']']/y"), "null");
    EXPECT_EQ(Form("/x[a = current()/../b[c]/d]/y"), "null");
}

TEST(TransformToJsonFormat, RefusesAnUnknownPrefix)
{
    EXPECT_EQ(Form("/u:x"), "null");
    EXPECT_EQ(Form("/p:x/u:y"), "null");
}

TEST(TransformToJsonFormat, RefusesMalformedPaths)
{
    for (const char *path : {"", "/", "//x", "/x//y", "/x/", "x/", "/x[", "/x[a]y", "/:x",
                             "/p:", "/p:x:y", "/x y", "/x|/y", "deref(../x)/../y", " /x", "/p:*"})
        EXPECT_EQ(Form(path), "null") << path;
}

TEST(TransformToJsonFormat, RefusesNull)
{
    OwnModule module;
    EXPECT_EQ(ZR_XPATH_TransformToJsonFormat(nullptr, "/x"), nullptr);
    EXPECT_EQ(ZR_XPATH_TransformToJsonFormat(&module, nullptr), nullptr);
}

TEST(TransformToJsonFormat, TakesNamesOfUpTo64Characters)
{
    std::string name(64, 'n');
    EXPECT_EQ(Form("/" + name), "/own:" + name);
    EXPECT_EQ(Form("/" + name + "n"), "null");
    EXPECT_EQ(Form("/" + std::string(65, 'p') + ":x"), "null");
}

TEST(TransformToJsonFormat, TakesResultsOfUpTo3095Characters)
{
    std::string path = "/ab";
    std::string form = "/own:ab";
    while (form.size() + 4 <= 3095) {
        path += "/abc";
        form += "/abc";
    }
    ASSERT_EQ(form.size(), 3095u);
    EXPECT_EQ(Form(path), form);
    EXPECT_EQ(Form(path + "d"), "null");
    EXPECT_EQ(Form(path + "/d"), "null");
    EXPECT_EQ(Form(path + "[predicates do not count]"), form);
}

TEST(TransformToJsonFormat, RefusesAModuleWithoutPrefixOnlyWhereItIsNeeded)
{
    OwnModule module;
    module.prefix = nullptr;
    EXPECT_EQ(ZR_XPATH_TransformToJsonFormat(&module, "/x"), nullptr);
    char *form = ZR_XPATH_TransformToJsonFormat(&module, "/p:x");
    EXPECT_STREQ(form, "/m1:x");
    zr::Free(form);
}

TEST(TransformToJsonFormat, RefusesAPrefixOfMoreThan64CharactersOnlyWhereItIsNeeded)
{
    OwnModule module;
    std::string prefix(65, 'p');
    module.prefix = prefix.c_str();
    EXPECT_EQ(ZR_XPATH_TransformToJsonFormat(&module, "/x"), nullptr);
    char *form = ZR_XPATH_TransformToJsonFormat(&module, "/p:x");
    EXPECT_STREQ(form, "/m1:x");
    zr::Free(form);
}

TEST(TransformToJsonFormat, AllocatesTheExactSizeAndSurvivesWithoutMemory)
{
    OwnModule module;
    zrtest::AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZR_XPATH_TransformToJsonFormat(&module, "/x"), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
    guard.Stop();
    char *form = ZR_XPATH_GetJsonFormatXpath(&module, "/x/p:y");
    EXPECT_STREQ(form, "/own:x/m1:y");
    EXPECT_EQ(guard.LiveBlocks(), 1);
    zr::Free(form);
}

// A path on the heap without a byte to spare, so that a read outside of it is noticed.
std::unique_ptr<char[]> Exact(const std::string &path)
{
    auto copy = std::make_unique<char[]>(path.size() + 1);
    path.copy(copy.get(), path.size());
    return copy;
}

struct Split {
    uint32_t status;
    std::string module;
    std::string head; // "null" when there is none
    std::string tail;
};

Split SplitOf(const std::string &path, uint32_t size = 65)
{
    auto text = Exact(path);
    auto buffer = std::make_unique<char[]>(size);
    char *head = nullptr;
    char *tail = nullptr;
    Split split;
    split.status = ZR_XPATH_SplitTargetNodeXpath(text.get(), buffer.get(), size, &head, &tail);
    if (split.status == ZR_OK)
        split.module = buffer.get();
    split.head = head != nullptr ? head : "null";
    split.tail = tail != nullptr ? tail : "null";
    zr::Free(head);
    zr::Free(tail);
    return split;
}

void ExpectSplit(const std::string &path, const char *module, const char *head, const char *tail)
{
    Split split = SplitOf(path);
    EXPECT_EQ(split.status, ZR_OK) << path;
    EXPECT_EQ(split.module, module) << path;
    EXPECT_EQ(split.head, head) << path;
    EXPECT_EQ(split.tail, tail) << path;
}

TEST(SplitTargetNodeXpath, SplitsAtTheLastStepThatNamesAModule)
{
    ExpectSplit("/m:a/b/n:c/d", "n", "/m:a/b", "/n:c/d");
    ExpectSplit("/m:a/n:b", "n", "/m:a", "/n:b");
    ExpectSplit("/m:a/n:b/o:c", "o", "/m:a/n:b", "/o:c");
}

TEST(SplitTargetNodeXpath, HasNoHeadWhenTheFirstStepIsTheOnlyOneWithAModule)
{
    ExpectSplit("/m:a/b", "m", "null", "/m:a/b");
    ExpectSplit("/m:a", "m", "null", "/m:a");
    ExpectSplit("/ietf-x_1.2:a-b", "ietf-x_1.2", "null", "/ietf-x_1.2:a-b");
}

TEST(SplitTargetNodeXpath, DoesNotLookAtWhatStandsBeforeThatStep)
{
    ExpectSplit("//m:a", "m", "/", "/m:a");
    ExpectSplit("x[1]/m:a/b", "m", "x[1]", "/m:a/b");
}

TEST(SplitTargetNodeXpath, RefusesMalformedPathsWithoutReadingBeforeThem)
{
    for (const char *path :
         {"",      "/",  ":",   "a",     "/a",      "a/b",       "/a/b",   "m:a",    ":a",
          "/:a",   "m:", "/m:", "/m:a/", "/m:a//b", "/m:a/b[c]", "/m:a b", "a:b:c",  "/a:b:c",
          "/m::a", "::", "//",  "-",     "/m:a/b:", "x:y/z",     "[m:a",   "/m:a/ b"}) {
        Split split = SplitOf(path);
        EXPECT_EQ(split.status, ZR_ERR_INVALID) << path;
        EXPECT_EQ(split.head, "null") << path;
        EXPECT_EQ(split.tail, "null") << path;
    }
}

TEST(SplitTargetNodeXpath, RefusesNull)
{
    char module[65];
    char *head = nullptr;
    char *tail = nullptr;
    EXPECT_EQ(ZR_XPATH_SplitTargetNodeXpath(nullptr, module, 65, &head, &tail), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_XPATH_SplitTargetNodeXpath("/m:a", nullptr, 65, &head, &tail), ZR_ERR_INVALID);
    EXPECT_EQ(head, nullptr);
    EXPECT_EQ(tail, nullptr);
}

TEST(SplitTargetNodeXpath, RefusesAModuleNameThatDoesNotFit)
{
    EXPECT_EQ(SplitOf("/abcd:x", 5).status, ZR_OK);
    EXPECT_EQ(SplitOf("/abcd:x", 4).status, ZR_ERR_INVALID);
    EXPECT_EQ(SplitOf("/m:x", 0).status, ZR_ERR_INVALID);
    EXPECT_EQ(SplitOf("/" + std::string(64, 'm') + ":x").status, ZR_OK);
    EXPECT_EQ(SplitOf("/" + std::string(65, 'm') + ":x").status, ZR_ERR_INVALID);
}

TEST(SplitTargetNodeXpath, GivesTheModuleNameAloneWhenAnOutArgumentIsNull)
{
    zrtest::AllocGuard guard;
    char module[65];
    char *text = nullptr;
    EXPECT_EQ(ZR_XPATH_SplitTargetNodeXpath("/m:a/n:b", module, 65, nullptr, nullptr), ZR_OK);
    EXPECT_STREQ(module, "n");
    EXPECT_EQ(ZR_XPATH_SplitTargetNodeXpath("/m:a/n:b", module, 65, &text, nullptr), ZR_OK);
    EXPECT_EQ(ZR_XPATH_SplitTargetNodeXpath("/m:a/n:b", module, 65, nullptr, &text), ZR_OK);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(SplitTargetNodeXpath, FreesWhatItMadeWhenMemoryRunsOut)
{
    uint64_t points = zrtest::FailEachAllocation([](zrtest::FailPoint &memory) {
        char module[65];
        char *head = nullptr;
        char *tail = nullptr;
        uint32_t status = memory.Run(
            [&] { return ZR_XPATH_SplitTargetNodeXpath("/m:a/n:b", module, 65, &head, &tail); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_INVALID : ZR_OK);
        EXPECT_EQ(head == nullptr, memory.Failed());
        EXPECT_EQ(tail == nullptr, memory.Failed());
        zr::Free(head);
        zr::Free(tail);
    });
    EXPECT_EQ(points, 2u);
}

} // namespace
