// SPDX-License-Identifier: Apache-2.0
#include "yang/xpath/rewrite.h"

#include <gtest/gtest.h>

namespace {

// "a" is "b" in the other module; "c" is the same in both; names without a prefix need "own".
class Map final : public zr::yang::PrefixMap {
public:
    std::string_view Written(std::string_view prefix) override
    {
        return prefix == "a" ? "b" : prefix;
    }
    bool IsKnown(std::string_view prefix) override { return prefix == "a" || prefix == "c"; }
    std::string_view OfUnprefixedName() override { return "own"; }
};

std::string Moved(const std::string &condition, bool climbs = false)
{
    Map map;
    std::pmr::string out;
    zr::yang::RewriteCondition(condition, climbs, map, out);
    return std::string(out);
}

std::string Path(const std::string &path)
{
    Map map;
    std::pmr::string out;
    zr::yang::RewriteLeafrefPath(path, "m", map, out);
    return std::string(out);
}

} // namespace

TEST(Rewrite, GivesNamesTheirOtherPrefixes)
{
    EXPECT_EQ(Moved("/a:x/c:y[a:z = ../a:*]/w"), "/b:x/c:y[b:z = ../b:*]/w");
}

TEST(Rewrite, GivesIdentitiesInLiteralsTheirOtherPrefixes)
{
    EXPECT_EQ(Moved("x = 'a:i' or x = \"c:i\""), "x = 'b:i' or x = \"c:i\"");
    EXPECT_EQ(Moved("x = 'http:i' or x = 'a:i:j' or x = 'a: i'"),
              "x = 'http:i' or x = 'a:i:j' or x = 'a: i'");
}

TEST(Rewrite, GivesIdentitiesWithoutAPrefixOneWhereTheyNeedIt)
{
    EXPECT_EQ(Moved("derived-from(x, 'i') and y = 'i'"), "derived-from(x, 'own:i') and y = 'i'");
}

TEST(Rewrite, KeepsBlanksAndQuotes)
{
    EXPECT_EQ(Moved("  a:x\n =  \"v\" "), "  b:x\n =  \"v\" ");
}

TEST(Rewrite, ClimbsFromAChildToItsParent)
{
    EXPECT_EQ(Moved("x = 1", true), "../x = 1");
    EXPECT_EQ(Moved("../x/y", true), "../../x/y");
    EXPECT_EQ(Moved(".", true), "..");
    EXPECT_EQ(Moved("./x", true), "../x");
    EXPECT_EQ(Moved("/x/y", true), "/x/y");
    EXPECT_EQ(Moved("@x or *", true), "../@x or ../*");
    EXPECT_EQ(Moved("not(a:x) and (y | z)", true), "not(../b:x) and (../y | ../z)");
}

TEST(Rewrite, LeavesWhatIsInBracketsToItsOwnContext)
{
    EXPECT_EQ(Moved("x[y = current()/z]/w", true), "../x[y = current()/../z]/w");
    EXPECT_EQ(Moved("/x[. = 1]", true), "/x[. = 1]");
}

TEST(Rewrite, GivesFunctionsOfTheContextNodeItsPlace)
{
    EXPECT_EQ(Moved("string-length() > 1", true), "string-length(..) > 1");
    EXPECT_EQ(Moved("x[string-length() > 1]", true), "../x[string-length() > 1]");
    EXPECT_EQ(Moved("true()", true), "true()");
}

TEST(Rewrite, GivesEachStepOfALeafrefAPrefix)
{
    EXPECT_EQ(Path("/a:x/y"), "/b:x/m:y");
    EXPECT_EQ(Path("../../x"), "../../m:x");
    EXPECT_EQ(Path("/x[k = current()/../n]/c:z"), "/m:x[k = current()/../n]/c:z");
}
