#include "schema/coupling_fixture.h"

using namespace zrtest;

TEST(TargetPaths, TheLastNamedModuleOwnsTheTarget)
{
    zr::ModuleNameText name;
    EXPECT_TRUE(zr::LastNamedModule("/m:c", name));
    EXPECT_STREQ(name, "m");
    EXPECT_TRUE(zr::LastNamedModule("/m:c/x/a:p/q", name));
    EXPECT_STREQ(name, "a");
    EXPECT_FALSE(zr::LastNamedModule("/c/x", name));
    EXPECT_FALSE(zr::LastNamedModule(nullptr, name));
    EXPECT_FALSE(zr::LastNamedModule(("/" + std::string(65, 'm') + ":c").c_str(), name));
}

TEST(TargetPaths, OnePathIsBelowAnotherOnlyAtAStep)
{
    EXPECT_TRUE(zr::IsPathAtOrBelow("/m:c", "/m:c"));
    EXPECT_TRUE(zr::IsPathAtOrBelow("/m:c/x", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m:cx", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m:c-x/y", "/m:c"));
    EXPECT_FALSE(zr::IsPathAtOrBelow("/m", "/m:c"));
}
