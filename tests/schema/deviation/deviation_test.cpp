// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

#include "foundation/relations.h"
#include "foundation/statement_ids.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

} // namespace

TEST(CoupleDeviation, IsAppliedOnlyOnce)
{
    Deviated schema(Container("c"), Deviation("/m:c", "add", Must("a")));
    EXPECT_EQ(ZRS_MOD_CoupleDeviation(schema.ctx.Module("d"), &schema.First()), ZR_OK);
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a"));
    EXPECT_EQ(ZR_CTX_GetLoadStage(schema.ctx), ZRS_STAGE_LOADING);
}

TEST(CoupleDeviation, ATargetThatIsNotThereIsSkippedWithoutAMessage)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Deviation("/m:c", "add", Must("a"))), ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, 0);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
    EXPECT_EQ(ctx.Node("/m:c")->mustCount, 1);
}

TEST(CoupleDeviation, UnknownModulesAndNodesAreSkipped)
{
    for (const char *target : {"/m:none", "/m:c/m:none", "/e:c"}) {
        Deviated schema(Container("c"), Deviation(target, "add", Must("a")));
        EXPECT_EQ(schema.First().flags, 0) << target;
        EXPECT_THAT(schema.Messages(), IsEmpty()) << target;
    }
}

TEST(CoupleDeviation, AFailureStopsItAndIsNotTriedAgainOnTheSameNode)
{
    std::string both = "<deviation target-node=\"/m:x\"><deviate value=\"add\">" + Must("a") +
                       "</deviate><deviate value=\"add\">" + Default("w") +
                       "</deviate><deviate value=\"add\">" + Must("b") + "</deviate></deviation>";
    Deviated schema(Leaf("x", "string", Default("v")), both);
    EXPECT_TRUE(schema.HasFailed());
    EXPECT_EQ(ZR_CTX_GetLoadStage(schema.ctx), ZRS_STAGE_LOADING);
    EXPECT_THAT(schema.MustsOf("/m:x"), ElementsAre("a")) << "what was done stays";
    EXPECT_EQ(zr::CoupleModuleDeviations(schema.ctx.Module("d")), ZR_OK);
    EXPECT_THAT(schema.MustsOf("/m:x"), ElementsAre("a"));
}

TEST(CoupleDeviation, FurtherDeviationsAreAppliedAfterOneThatFailed)
{
    Deviated schema(Leaf("x", "string", Default("v")) + Container("c"),
                    Deviation("/m:x", "add", Default("w")) + Deviation("/m:c", "add", Must("a")));
    EXPECT_THAT(schema.MustsOf("/m:c"), ElementsAre("a"));
}

TEST(CoupleDeviation, ADirectCallTellsTheFailingStatus)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "add", Default("w")));
    EXPECT_EQ(ZRS_MOD_CoupleDeviation(schema.ctx.Module("d"), &schema.First()), ZR_ERR_FAILED);
    EXPECT_EQ(ZRS_MOD_CoupleDeviation(nullptr, &schema.First()), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_CoupleDeviation(schema.ctx.Module("d"), nullptr), ZR_ERR_INVALID);
}

TEST(CoupleDeviation, AnUnknownKindFails)
{
    Deviated schema(Container("c"), Deviation("/m:c", "add", Must("a")));
    ZrsDeviate deviate{};
    for (uint32_t kind : {0u, 5u}) {
        deviate.kind = kind;
        EXPECT_EQ(ZRS_MOD_CoupleDeviate(schema.ctx.Module("d"), &schema.First(), &deviate,
                                        schema.Node("/m:c"), nullptr),
                  ZR_ERR_FAILED);
    }
    EXPECT_EQ(ZRS_MOD_CoupleDeviate(nullptr, nullptr, nullptr, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST(CoupleDeviation, AModuleMayDeviateItself)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Container("c", Leaf("x")) + Deviation("/m:c", "add", Must("a")) +
                                    Deviation("/m:c/m:x", "not-supported")),
              ZR_OK);
    EXPECT_EQ(ctx.Node("/m:c")->mustCount, 1);
    EXPECT_EQ(ctx.Node("/m:c/x"), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx, "m"), nullptr) << "no relation with itself";
}

TEST(CoupleDeviation, WaitsForTheTargetOfTheAugmentThatAddsItsOwn)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Leaf("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("a") + Deviation("/m:c/a:p", "not-supported")),
              ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, 0);
    EXPECT_THAT(ChildNames(ctx.Module("a")->augments), ElementsAre("p"));
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, ZRS_DEVIATION_COUPLED);
    EXPECT_EQ(ctx.Node("/m:c/a:p"), nullptr);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
}

TEST(CoupleDeviation, OfANodeBelowAnotherModulesNodesWaitsForTheWholeChain)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("b", Import("m") + Import("a") + Augment("/m:c/a:p", Leaf("q"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("a", Import("m") + Augment("/m:c", Container("p"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Import("a") + Import("b") +
                                    Deviation("/m:c/a:p/b:q", "add", Must("x"))),
              ZR_OK);
    EXPECT_EQ(ctx.Module("d")->deviations[0].flags, 0);
    ASSERT_EQ(ctx.LoadBody("m", Container("c")), ZR_OK);
    EXPECT_EQ(ctx.Node("/m:c/a:p/b:q")->mustCount, 1);
}

TEST(CoupleDeviation, LeavesTheLoadStageOfTheApplicationAsItWas)
{
    TestContext ctx;
    ZR_CTX_SetLoadStage(ctx, 7);
    ASSERT_EQ(ctx.LoadBody("m", Leaf("x", "string", Default("v"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") + Augment("/m:none", Leaf("p")) +
                                    Deviation("/m:x", "add", Default("w"))),
              ZR_OK);
    EXPECT_EQ(ZR_CTX_GetLoadStage(ctx), 7u);
    ASSERT_EQ(ctx.LoadBody("e", Import("f") + Augment("/f:c", Leaf("p")) +
                                    Deviation("/f:x", "add", Default("w"))),
              ZR_OK);
    ASSERT_EQ(ctx.LoadBody("f", Leaf("x", "string", Default("v"))), ZR_OK);
    EXPECT_EQ(ZR_CTX_GetLoadStage(ctx), 7u);
}

TEST(CoupleDeviation, NodesOfAnAugmentAreReachedBeforeAndAfterItIsCoupled)
{
    std::string m = ModuleText("m", Container("c"));
    std::string a = ModuleText("a", Import("m") + Augment("/m:c", Leaf("p")));
    std::string d =
        ModuleText("d", Import("m") + Import("a") + Deviation("/m:c/a:p", "add", Must("x")));
    for (const std::vector<std::string> &order :
         {std::vector{m, a, d}, {m, d, a}, {a, m, d}, {a, d, m}, {d, m, a}, {d, a, m}}) {
        TestContext ctx;
        for (const std::string &text : order)
            ASSERT_EQ(ctx.Load(text), ZR_OK);
        EXPECT_EQ(ctx.Node("/m:c/a:p")->mustCount, 1);
        EXPECT_THAT(ctx.Messages(), IsEmpty());
    }
}

TEST(RefreshDeviateDefaults, IdentityDefaultsGetModuleNames)
{
    Deviated schema(Identity("base") + Leaf("x", Identityref("m:base")) +
                        Leaf("y", Identityref("m:base")),
                    Identity("own") + Deviation("/m:x", "add", Default("own")) +
                        Deviation("/m:y", "add", Default("m:base")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "d:own");
    EXPECT_STREQ(schema.LeafOf("/m:y")->defaultValue, "m:base");
}

TEST(RefreshDeviateDefaults, TheReplacementTypeDecidesWhenThereIsOne)
{
    Deviated schema(Identity("base") + Leaf("x", "string", Default("v")),
                    Deviation("/m:x", "replace",
                              Default("m:base") + "<type name=\"identityref\"><base "
                                                  "name=\"m:base\"/></type>"));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "m:base");
}

TEST(RefreshDeviateDefaults, DeletingComparesTheQualifiedForm)
{
    Deviated schema(Identity("base") + Leaf("x", Identityref("m:base"), Default("base")),
                    Deviation("/m:x", "delete", Default("m:base")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.LeafOf("/m:x")->defaultValue, nullptr);
}

TEST(RefreshDeviateDefaults, AnUnknownPrefixFails)
{
    Deviated schema(Identity("base") + Leaf("x", Identityref("m:base")),
                    Deviation("/m:x", "add", Default("q:own")));
    EXPECT_TRUE(schema.HasFailed());
    EXPECT_EQ(ZRS_MOD_RefreshDeviateDefaults(schema.ctx.Module("d"), schema.Node("/m:x"),
                                             schema.First().deviates),
              ZR_ERR_INVALID);
    EXPECT_STREQ(schema.First().deviates[0].defaults[0], "q:own");
}

TEST(RefreshDeviateDefaults, AreConvertedOnlyOnceHoweverOftenTheDeviationIsApplied)
{
    TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("long-name", Identity("i")), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("m", Identity("base") + Leaf("x", Identityref("m:base"))), ZR_OK);
    ASSERT_EQ(ctx.LoadBody("d", Import("m") +
                                    "<import module=\"long-name\"><prefix value=\"ln\"/></import>" +
                                    Deviation("/m:x", "add", Default("ln:i"))),
              ZR_OK);
    auto *leaf = static_cast<ZrsLeafInfo *>(ctx.Node("/m:x")->info);
    ASSERT_STREQ(leaf->defaultValue, "long-name:i");
    zr::Release(&ctx.get()->dict, leaf->defaultValue);
    ctx.Module("d")->deviations[0].flags = 0; // as when the target's module is loaded again
    EXPECT_EQ(zr::CoupleModuleDeviations(ctx.Module("d")), ZR_OK);
    EXPECT_STREQ(leaf->defaultValue, "long-name:i");
}

TEST(RefreshDeviateDefaults, OtherTypesAndNodesAreLeftAlone)
{
    Deviated schema(Leaf("x") + ChoiceOfTwo("ch"), Deviation("/m:x", "add", Default("q:v")) +
                                                       Deviation("/m:ch", "add", Default("one")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "q:v");
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "one");
    EXPECT_EQ(ZRS_MOD_RefreshDeviateDefaults(nullptr, nullptr, nullptr), ZR_ERR_INVALID);
}
