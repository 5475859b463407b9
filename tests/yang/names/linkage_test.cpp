// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/preparation.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using yangtest::BodyOf;
using yangtest::Module1Text;
using yangtest::ModuleText;
using yangtest::Preparation;
using yangtest::ReportsOf;

TEST(Linkage, TakesTheNewestRevisionUnlessOneIsNamed)
{
    Preparation preparation;
    preparation.Add("m@2020-01-01.yang",
                    ModuleText("m", "revision 2020-01-01; leaf old { type string; }"));
    preparation.Add("m@2021-01-01.yang",
                    ModuleText("m", "revision 2021-01-01; leaf new { type string; }"));
    EXPECT_THAT(BodyOf(preparation), testing::HasSubstr("leaf name=\"new\""));
    EXPECT_EQ(preparation.Prepare("m@2020-01-01"), ZR_YANG_OK);
    EXPECT_THAT(preparation.text(), testing::HasSubstr("leaf name=\"old\""));
    EXPECT_EQ(preparation.Prepare("m@1999-01-01"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre(": error: no source of \"m@1999-01-01\" in the directories"));
}

TEST(Linkage, ReadsTheRevisionOfAFileThatDoesNotSayIt)
{
    Preparation preparation;
    preparation.Add("m.yang", ModuleText("m", "revision 2022-01-01; leaf new { type string; }"));
    preparation.Add("m@2021-01-01.yang", ModuleText("m", "revision 2021-01-01;"));
    EXPECT_THAT(BodyOf(preparation), testing::HasSubstr("leaf name=\"new\""));
}

TEST(Linkage, ReportsAModuleThatIsNotThere)
{
    Preparation preparation;
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_NOT_FOUND);
    EXPECT_THAT(preparation.reports(),
                ElementsAre(": error: no source of \"m\" in the directories"));
    EXPECT_THAT(ReportsOf("\nimport x { prefix x; }"),
                ElementsAre("2:1: error: no source of \"x\" in the directories"));
}

TEST(Linkage, ReportsAFileWithAnotherContent)
{
    Preparation preparation;
    preparation.Add("m.yang", ModuleText("other", ""));
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:1:1: error: the file of \"m\" holds \"other\""));
}

TEST(Linkage, ReportsARevisionWithAnotherContent)
{
    Preparation preparation;
    preparation.Add("m@2020-01-01.yang", ModuleText("m", "revision 2021-01-01;"));
    EXPECT_EQ(preparation.Prepare("m@2020-01-01"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m@2020-01-01.yang:1:1: error: the file of revision 2020-01-01 holds "
                            "revision 2021-01-01"));
}

TEST(Linkage, ReportsCirclesOfImportsOnce)
{
    Preparation preparation;
    preparation.AddModule("a", "\nimport b { prefix b; }");
    preparation.AddModule("b", "\nimport c { prefix c; }");
    preparation.AddModule("c", "\nimport a { prefix a; }");
    EXPECT_EQ(preparation.Prepare("a"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                Contains("c.yang:2:1: error: circle of imports: a, b, c, a"));
    EXPECT_THAT(ReportsOf("\nimport m { prefix x; }"),
                ElementsAre("2:1: error: the module imports itself"));
}

TEST(Linkage, FollowsALongChainOfImports)
{
    Preparation preparation;
    constexpr int kLength = 3000;
    for (int i = 0; i < kLength; ++i)
        preparation.AddModule(
            "m" + std::to_string(i),
            i + 1 < kLength ? "import m" + std::to_string(i + 1) + " { prefix x; }" : "");
    EXPECT_EQ(preparation.Prepare("m0"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
}

TEST(Linkage, AnErrorInAnImportedModuleStopsThoseThatNeedIt)
{
    Preparation preparation;
    preparation.AddModule("m", "import t { prefix t; }");
    preparation.AddModule("t", "\nfoo;");
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang: error: it needs module \"t\", which has errors",
                            "t.yang:2:1: error: unknown statement \"foo\""));
}

TEST(Linkage, AnImportThatCannotBeReadIsAnErrorWhereItIsNeeded)
{
    Preparation preparation;
    preparation.AddModule("m", "\nimport t { prefix t; }");
    preparation.Add("t.yang", "\xFF");
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_ERR_FAULTY);
    EXPECT_THAT(preparation.reports(),
                ElementsAre("m.yang:2:1: error: the source of \"t\" cannot be read",
                            "t.yang:1:1: error: the file is not UTF-8"));
}

TEST(Linkage, ReportsPrefixesThatAreInUse)
{
    Preparation preparation;
    preparation.AddModule(
        "m", "\nimport t { prefix m; }\nimport u { prefix u; }\nimport v { prefix u; }");
    for (const char *name : {"t", "u", "v"})
        preparation.AddModule(name, "");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(), ElementsAre("m.yang:2:1: error: prefix \"m\" is in use",
                                                   "m.yang:4:1: error: prefix \"u\" is in use"));
}

TEST(Linkage, SubmodulesBecomeAPartOfTheirModule)
{
    Preparation preparation;
    preparation.AddModule("m", "include s; include t; leaf a { type from-t; }");
    preparation.Add("s.yang", "submodule s { yang-version 1.1; belongs-to m { prefix x; } include "
                              "t; import i { prefix i; } "
                              "leaf b { type x:from-t; } leaf c { type i:type; } }");
    preparation.Add("t.yang", "submodule t { yang-version 1.1; belongs-to m { prefix m; } typedef "
                              "from-t { type string; } }");
    preparation.AddModule("i", "typedef type { type string; }");
    EXPECT_EQ(BodyOf(preparation), R"(  <typedef name="from-t">
    <type name="string"/>
  </typedef>
  <leaf name="b">
    <type name="from-t"/>
  </leaf>
  <leaf name="c">
    <type name="i:type"/>
  </leaf>
  <leaf name="a">
    <type name="from-t"/>
  </leaf>
)");
}

TEST(Linkage, SubmodulesOfSubmodulesBelongToAYang1Module)
{
    Preparation preparation;
    preparation.Add("m.yang", Module1Text("m", "include s;"));
    preparation.Add(
        "s.yang", "submodule s { belongs-to m { prefix m; } include t; leaf b { type from-t; } }");
    preparation.Add("t.yang",
                    "submodule t { belongs-to m { prefix m; } typedef from-t { type string; } }");
    EXPECT_EQ(preparation.Prepare("m"), ZR_YANG_OK);
    EXPECT_THAT(preparation.reports(), IsEmpty());
}

TEST(Linkage, AYang1FileSeesWhatItIncludesAlone)
{
    Preparation preparation;
    preparation.Add("m.yang", Module1Text("m", "\ninclude s; leaf a { type from-t; }"));
    preparation.Add("s.yang", "submodule s { belongs-to m { prefix m; } include t; }");
    preparation.Add("t.yang",
                    "submodule t { belongs-to m { prefix m; } typedef from-t { type string; } }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(), ElementsAre("m.yang:2:21: error: typedef \"from-t\" stands "
                                                   "in a submodule that \"m\" does not include"));
}

TEST(Linkage, AModuleOfVersion11IncludesAllItsSubmodules)
{
    Preparation preparation;
    preparation.AddModule("m", "include s;");
    preparation.Add("s.yang",
                    "submodule s { yang-version 1.1; belongs-to m { prefix m; }\ninclude t; }");
    preparation.Add("t.yang", "submodule t { yang-version 1.1; belongs-to m { prefix m; } }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                ElementsAre("s.yang:2:1: error: the module does not include \"t\" itself"));
}

TEST(Linkage, ReportsWhatCannotBeIncludedOrImported)
{
    Preparation preparation;
    preparation.AddModule("m", "\ninclude s;\ninclude o;\nimport s { prefix s; }");
    preparation.Add("s.yang", "submodule s { yang-version 1.1; belongs-to other { prefix m; } }");
    preparation.AddModule("o", "");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                testing::IsSupersetOf(
                    {"m.yang:2:1: error: submodule \"s\" belongs to \"other\", not to \"m\"",
                     "m.yang:3:1: error: \"o\" is no submodule",
                     "m.yang:4:1: error: \"s\" is a submodule"}));
}

TEST(Linkage, ReportsSubmodulesThatIncludeEachOther)
{
    Preparation preparation;
    preparation.AddModule("m", "include s; include t;");
    preparation.Add("s.yang",
                    "submodule s { yang-version 1.1; belongs-to m { prefix m; } include t; }");
    preparation.Add("t.yang",
                    "submodule t { yang-version 1.1; belongs-to m { prefix m; } include s; }");
    preparation.Prepare("m");
    EXPECT_THAT(preparation.reports(),
                Contains("s.yang:1:1: error: \"s\" includes itself through \"t\""));
}

TEST(Linkage, WarnsOfRevisionsThatAreOutOfOrder)
{
    EXPECT_THAT(ReportsOf("\nrevision 2020-01-01;\nrevision 2021-01-01;\nrevision 2021-01-01;"),
                ElementsAre("3:1: warning: revision 2021-01-01 stands behind the older 2020-01-01",
                            "4:1: error: revision 2021-01-01 stands here twice"));
}

TEST(Linkage, AYang1ModuleImportsNoRevisionOfANewerOne)
{
    Preparation preparation;
    preparation.Add("m.yang",
                    Module1Text("m", "\nimport t { prefix t; revision-date 2020-01-01; }"));
    preparation.AddModule("t", "revision 2020-01-01;");
    preparation.Prepare("m");
    EXPECT_THAT(
        preparation.reports(),
        ElementsAre("m.yang:2:1: error: YANG 1 may not import a revision of a YANG 1.1 module"));
}
