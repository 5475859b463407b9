// SPDX-License-Identifier: Apache-2.0
#include "schema/coupling_fixture.h"

#include "schema/deviation/deviation_steps.h"

using namespace zrtest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DeviateReplace, ConfigIsReplacedAndPassedDown)
{
    Deviated schema(Container("c", Config("true") + Container("k", Leaf("x"))),
                    Deviation("/m:c", "replace", Config("false")));
    EXPECT_EQ(schema.Node("/m:c")->flags & kConfigBits,
              ZRS_FLAG_CONFIG_FALSE | ZRS_FLAG_CONFIG_GIVEN);
    EXPECT_EQ(schema.Node("/m:c/k/x")->flags & kConfigBits, ZRS_FLAG_CONFIG_FALSE);
}

TEST(DeviateReplace, EqualConfigChangesNothing)
{
    Deviated schema(Container("c", Config("false") + Container("k")),
                    Deviation("/m:c/m:k", "replace", Config("false")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.Node("/m:c/k")->flags & kConfigBits, ZRS_FLAG_CONFIG_FALSE)
        << "no statement of its own";
}

TEST(DeviateReplace, ConfigOnANodeWithoutOneIsNoFailure)
{
    Deviated schema(Container("c"), Deviation("/m:c", "replace", Config("false")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_EQ(schema.Node("/m:c")->flags & kConfigBits,
              ZRS_FLAG_CONFIG_FALSE | ZRS_FLAG_CONFIG_GIVEN);
}

TEST(DeviateReplace, MandatoryIsReplaced)
{
    Deviated schema(Leaf("x", "string", Mandatory("true")) + Leaf("y"),
                    Deviation("/m:x", "replace", Mandatory("false")) +
                        Deviation("/m:y", "replace", Mandatory("true")));
    EXPECT_EQ(schema.Node("/m:x")->flags & kMandatoryBits, ZRS_FLAG_MANDATORY_FALSE);
    EXPECT_EQ(schema.Node("/m:y")->flags & kMandatoryBits, ZRS_FLAG_MANDATORY_TRUE);
}

TEST(DeviateReplace, AChoicesDefaultIsReplaced)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")),
                    Deviation("/m:ch", "replace", Default("two")));
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "two");
}

TEST(DeviateReplace, TwoDefaultsOfAChoiceAreRecordedButCountAsApplied)
{
    Deviated schema(ChoiceOfTwo("ch", Default("one")),
                    Deviation("/m:ch", "replace", Default("one") + Default("two")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_STREQ(schema.ChoiceDefault("/m:ch"), "one");
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to replace default of choice node \"ch\", "
                                               "because default number > 1."));
}

TEST(DeviateReplace, ADefaultOfAChoiceWithoutOneFails)
{
    Deviated schema(ChoiceOfTwo("ch"), Deviation("/m:ch", "replace", Default("two")));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to replace default of choice node \"ch\" without default "
                            "value.",
                            "Failed to replace default of node \"ch\"."));
}

TEST(DeviateReplace, ALeafsDefaultIsReplaced)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "replace", Default("w")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "w");
}

TEST(DeviateReplace, TheSameDefaultSucceedsAndChangesNothing)
{
    Deviated schema(Leaf("x", "string", Default("v")), Deviation("/m:x", "replace", Default("v")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_STREQ(schema.LeafOf("/m:x")->defaultValue, "v");
    EXPECT_THAT(schema.Messages(), IsEmpty());
}

TEST(DeviateReplace, TwoDefaultsOfALeafAreRecordedButCountAsApplied)
{
    Deviated schema(Leaf("x", "string", Default("v")),
                    Deviation("/m:x", "replace", Default("v") + Default("w")));
    EXPECT_TRUE(schema.IsApplied());
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to replace default of leaf node \"x\", "
                                               "because the number of defaults to be deleted > "
                                               "1."));
}

TEST(DeviateReplace, ADefaultOfALeafWithoutOneFails)
{
    Deviated schema(Leaf("x"), Deviation("/m:x", "replace", Default("v")));
    EXPECT_EQ(schema.LeafOf("/m:x")->defaultValue, nullptr);
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to replace default of leaf node \"x\" without default value.",
                            "Failed to replace default of node \"x\"."));
}

TEST(DeviateReplace, ALeafListsDefaultsAreReplacedAsAWhole)
{
    Deviated schema(LeafList("l", "string", Default("a") + Default("b")),
                    Deviation("/m:l", "replace", Default("c") + Default("b") + Default("d")));
    EXPECT_THAT(schema.DefaultsOf("/m:l"), ElementsAre("c", "b", "d"));
}

TEST(DeviateReplace, DefaultsOfALeafListWithoutAnyFail)
{
    Deviated schema(LeafList("l"), Deviation("/m:l", "replace", Default("a")));
    EXPECT_THAT(schema.Messages(),
                ElementsAre("Failed to replace defaults of leaf-list node \"l\".",
                            "Failed to replace default of node \"l\"."));
}

TEST(DeviateReplace, ADefaultOfAnotherKindOfNodeFails)
{
    Deviated schema(Container("c"), Deviation("/m:c", "replace", Default("v")));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to replace default of node \"c\".",
                                               "Failed to couple deviation statements."));
}

TEST(DeviateReplace, TheTypeOfALeafIsReplacedByACopy)
{
    Deviated schema(
        Leaf("x") + LeafList("l"),
        "<typedef name=\"t\"><type name=\"uint8\"/></typedef>" +
            Deviation("/m:x", "replace", "<type name=\"int8\"><range value=\"1..5\"/></type>") +
            Deviation("/m:l", "replace", "<type name=\"t\"/>"));
    EXPECT_EQ(ZR_NODE_ValidateValue(schema.Node("/m:x"), ZR_VALUE_STRING, "5"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(schema.Node("/m:x"), ZR_VALUE_STRING, "6"), ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(ZR_NODE_ValidateValue(schema.Node("/m:l"), ZR_VALUE_STRING, "255"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(schema.Node("/m:l"), ZR_VALUE_STRING, "256"),
              ZR_ERR_VALUE_RANGE);
    EXPECT_EQ(DumpType(&schema.LeafOf("/m:x")->realType),
              DumpType(schema.First().deviates[0].type));
}

TEST(DeviateReplace, AReplacedTypeDoesNotPointIntoTheDeviatingModule)
{
    Deviated schema(Leaf("x"), "<typedef name=\"t\"><type name=\"uint8\"/></typedef>" +
                                   Deviation("/m:x", "replace", "<type name=\"t\"/>"));
    const ZrtRealType &type = schema.LeafOf("/m:x")->realType;
    ASSERT_EQ(type.consCount, 1);
    EXPECT_EQ(static_cast<ZrtConsDerived *>(type.constraints[0].body)->resolved, nullptr);
}

TEST(DeviateReplace, TheTypeOfAnotherKindOfNodeFails)
{
    Deviated schema(Container("c"), Deviation("/m:c", "replace", "<type name=\"int8\"/>"));
    EXPECT_THAT(schema.Messages(), ElementsAre("Failed to replace type of node \"c\".",
                                               "Failed to couple deviation statements."));
}

TEST(DeviateReplace, UnitsAreReplaced)
{
    Deviated schema(Leaf("x", "string", Units("s")) + LeafList("l", "string", Units("s")),
                    Deviation("/m:x", "replace", Units("m")) +
                        Deviation("/m:l", "replace", Units("kg")));
    EXPECT_STREQ(schema.LeafOf("/m:x")->units, "m");
    EXPECT_STREQ(schema.LeafListOf("/m:l")->units, "kg");
}

TEST(DeviateReplace, UnitsOfANodeWithoutThemFail)
{
    for (const std::string &body : {Leaf("n"), LeafList("n"), Container("n")}) {
        Deviated schema(body, Deviation("/m:n", "replace", Units("m")));
        EXPECT_THAT(schema.Messages(), ElementsAre("Failed to replace units of node \"n\".",
                                                   "Failed to couple deviation statements."))
            << body;
    }
}

TEST(DeviateReplace, NullArgumentsAreRefused)
{
    EXPECT_EQ(ZRS_MOD_CoupleDevRepl(nullptr, nullptr, nullptr), ZR_ERR_INVALID);
}

TEST(DeviateReplace, EveryFailingAllocationIsAStatusAndLosesNoProperty)
{
    std::string m = ModuleText("m", LeafList("l", "string", Default("a") + Units("s")) +
                                        Leaf("x", "string", Default("v")));
    std::string d = ModuleText("d", Import("m") +
                                        Deviation("/m:l", "replace",
                                                  Default("b") + Default("c") +
                                                      "<type name=\"string\"><length "
                                                      "value=\"1..9\"/></type>" +
                                                      Units("m")) +
                                        Deviation("/m:x", "replace", Default("w")));
    FailEachAllocation([&](FailPoint &memory) {
        TestContext ctx(ZR_CTX_KEEP_UNITS);
        ASSERT_EQ(ctx.Load(m), ZR_OK);
        memory.RunStatus([&] { return ctx.Load(d); });
        const auto *info = static_cast<const ZrsLeafListInfo *>(ctx.Node("/m:l")->info);
        EXPECT_GE(info->defaultCount, 1);
        EXPECT_EQ(info->realType.baseType, uint32_t{ZRT_TYPE_STRING});
        EXPECT_NE(info->units, nullptr);
        EXPECT_NE(static_cast<const ZrsLeafInfo *>(ctx.Node("/m:x")->info)->defaultValue, nullptr);
    });
}

TEST(DeviateReplace, ATextThatCannotBeInternedLeavesTheOldOne)
{
    Deviated schema(Leaf("x", "string", Units("s")), "");
    ZrsLeafInfo *info = schema.LeafOf("/m:x");
    FailEachAllocation([&](FailPoint &memory) {
        uint32_t status = memory.Run(
            [&] { return zr::ReplaceText(schema.ctx.Module("d"), info->units, "not interned"); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_STREQ(info->units, memory.Failed() ? "s" : "not interned");
    });
}
