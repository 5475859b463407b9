// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "types/real_type.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;

namespace {

// A deviate that is cleared at the end of the scope.
struct Deviate {
    explicit Deviate(ModuleUnderTest &m) : module(m) {}
    ~Deviate() { ZRS_MOD_ClearDeviate(module.ctx, &record); }
    uint32_t Parse(const std::string &kind, const std::string &content)
    {
        return zrtest::Parse(module, ZRS_LOADER_ParseDeviate,
                             "<deviate value='" + kind + "'>" + content + "</deviate>", &record);
    }
    ZrsDeviate *operator->() { return &record; }
    ModuleUnderTest &module;
    ZrsDeviate record = {};
};

// Every statement that any kind of deviate takes.
const char *const kEverything =
    "<config value='false'/><mandatory value='true'/><default value='d1'/><default value='d2'/>"
    "<must condition='x:a'/><units name='u'/><type name='int8'/><x:e><x:inner/></x:e><unique/>"
    "<min-elements value='1'/>";

TEST(DeviateType, IsKnownByName)
{
    EXPECT_EQ(ZRS_LOADER_GetDeviateType("add"), ZRS_DEVIATE_ADD);
    EXPECT_EQ(ZRS_LOADER_GetDeviateType("delete"), ZRS_DEVIATE_DELETE);
    EXPECT_EQ(ZRS_LOADER_GetDeviateType("not-supported"), ZRS_DEVIATE_NOT_SUPPORTED);
    EXPECT_EQ(ZRS_LOADER_GetDeviateType("replace"), ZRS_DEVIATE_REPLACE);
    for (const char *name : {"", "Add", "adds", "ad", "unknown"})
        EXPECT_EQ(ZRS_LOADER_GetDeviateType(name), 0u) << name;
    EXPECT_EQ(ZRS_LOADER_GetDeviateType(nullptr), 0u);
}

TEST(Deviate, AddTakesAllButAType)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("add", kEverything), ZR_OK);
    EXPECT_EQ(deviate->kind, ZRS_DEVIATE_ADD);
    EXPECT_EQ(deviate->flags, 0x4 | 0x8 | 0x10);
    ASSERT_EQ(deviate->defaultCount, 2);
    EXPECT_STREQ(deviate->defaults[0], "d1");
    EXPECT_STREQ(deviate->defaults[1], "d2");
    ASSERT_EQ(deviate->mustCount, 1);
    EXPECT_STREQ(deviate->musts[0].condition, "x-mod:a");
    EXPECT_STREQ(deviate->units, "u");
    ASSERT_EQ(deviate->extInstCount, 1);
    EXPECT_STREQ(deviate->extInsts[0].moduleName, "x-mod");
    EXPECT_EQ(deviate->extInsts[0].childCount, 1);
    EXPECT_EQ(deviate->type, nullptr);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(Deviate, DeleteTakesNoFlagsAndNoType)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("delete", kEverything), ZR_OK);
    EXPECT_EQ(deviate->kind, ZRS_DEVIATE_DELETE);
    EXPECT_EQ(deviate->flags, 0);
    EXPECT_EQ(deviate->defaultCount, 2);
    EXPECT_EQ(deviate->mustCount, 1);
    EXPECT_STREQ(deviate->units, "u");
    EXPECT_EQ(deviate->extInstCount, 1);
    EXPECT_EQ(deviate->type, nullptr);
}

TEST(Deviate, NotSupportedTakesNothing)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("not-supported", kEverything), ZR_OK);
    EXPECT_EQ(deviate->kind, ZRS_DEVIATE_NOT_SUPPORTED);
    EXPECT_EQ(deviate->flags, 0);
    EXPECT_EQ(deviate->defaultCount + deviate->mustCount + deviate->extInstCount, 0);
    EXPECT_EQ(deviate->units, nullptr);
    EXPECT_EQ(deviate->type, nullptr);
}

TEST(Deviate, ReplaceTakesATypeButNoMustsAndNoExtensionInstances)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("replace", kEverything), ZR_OK);
    EXPECT_EQ(deviate->kind, ZRS_DEVIATE_REPLACE);
    EXPECT_EQ(deviate->flags, 0x4 | 0x8 | 0x10);
    EXPECT_EQ(deviate->defaultCount, 2);
    EXPECT_EQ(deviate->mustCount, 0);
    EXPECT_EQ(deviate->extInstCount, 0);
    EXPECT_STREQ(deviate->units, "u");
    ASSERT_NE(deviate->type, nullptr);
    EXPECT_EQ(deviate->type->baseType, uint32_t{ZRT_TYPE_INT8});
}

TEST(Deviate, ReplaceWithoutATypeHasNone)
{
    ModuleUnderTest module;
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("replace", "<mandatory value='false'/>"), ZR_OK);
    EXPECT_EQ(deviate->type, nullptr);
    EXPECT_EQ(deviate->flags, ZRS_FLAG_MANDATORY_FALSE);
}

TEST(Deviate, UnitsAreNotKeptUnlessTheContextAsksForThem)
{
    ModuleUnderTest module;
    Deviate deviate(module);
    ASSERT_EQ(deviate.Parse("add", "<units name='u'/>"), ZR_OK);
    EXPECT_EQ(deviate->units, nullptr);
}

TEST(Deviate, OfAnUnknownKindFailsWithAllOnes)
{
    ModuleUnderTest module;
    Deviate deviate(module);
    EXPECT_EQ(deviate.Parse("remove", ""), UINT32_MAX);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse value \"remove\" of statement \"deviate\"."));
}

TEST(Deviate, WithoutAKindFailsWithAllOnes)
{
    ModuleUnderTest module;
    Deviate deviate(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDeviate, "<deviate/>", &deviate.record), UINT32_MAX);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"deviate\"."));
}

TEST(Deviate, IsClearedWhenAChildFails)
{
    struct {
        const char *kind, *content;
        uint32_t status;
        const char *message;
    } const rows[] = {
        {"add", "<default value='d'/><config value='yes'/>", ZR_ERR_INVALID,
         "Failed to parse value \"yes\" of statement \"config\"."},
        {"add", "<mandatory value='true'/><mandatory value='true'/>", ZR_ERR_FAILED,
         "Statement \"mandatory\" under statement \"deviate\" has repeated."},
        {"delete", "<must condition='a'/><default/>", ZR_ERR_INVALID,
         "Failed to get value of statement \"default\"."},
        {"delete", "<units name='u'/><units name='u'/>", ZR_ERR_FAILED,
         "Statement \"units\" under statement \"deviate\" has repeated."},
        {"replace", "<default value='d'/><type/>", ZR_ERR_INVALID,
         "Failed to get value of statement \"typeName\"."},
        {"replace", "<type name='int8'/><type name='int8'/>", ZR_ERR_FAILED,
         "Statement \"type\" under statement \"deviate\" has repeated."},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        Deviate deviate(module);
        EXPECT_EQ(deviate.Parse(row.kind, row.content), row.status) << row.content;
        EXPECT_EQ(deviate->defaults, nullptr);
        EXPECT_EQ(deviate->musts, nullptr);
        EXPECT_EQ(deviate->type, nullptr);
        EXPECT_THAT(module.Messages(),
                    ElementsAre(row.message, "Failed to parse value \"" + std::string(row.kind) +
                                                 "\" of statement \"deviate\"."));
    }
}

// ---- deviation

TEST(Deviation, KeepsItsTargetInModuleNameForm)
{
    ModuleUnderTest module;
    ZrsDeviation deviation = {};
    ASSERT_EQ(Parse(module, ZRS_LOADER_ParseDeviation,
                    "<deviation target-node='/x:a/x:b/t:c'><deviate value='not-supported'/>"
                    "<deviate value='add'/><reference/></deviation>",
                    &deviation),
              ZR_OK);
    EXPECT_STREQ(deviation.targetPath, "/x-mod:a/b/t:c");
    ASSERT_EQ(deviation.deviateCount, 2);
    EXPECT_EQ(deviation.deviates[0].kind, ZRS_DEVIATE_NOT_SUPPORTED);
    EXPECT_EQ(deviation.deviates[1].kind, ZRS_DEVIATE_ADD);
    EXPECT_EQ(deviation.flags, 0);
    EXPECT_THAT(module.Messages(), IsEmpty());
    ZRS_MOD_ClearDeviation(module.ctx, &deviation);
}

TEST(Deviation, WithoutAnAbsoluteTargetFails)
{
    for (const char *attribute :
         {"", "target-node=''", "target-node='interfaces/interface'", "target-node=' /x:a'"}) {
        ModuleUnderTest module;
        ZrsDeviation deviation = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDeviation,
                        "<deviation " + std::string(attribute) + "/>", &deviation),
                  ZR_ERR_INVALID)
            << attribute;
        EXPECT_THAT(module.Messages(),
                    ElementsAre("Failed to get value of statement \"deviation\"."));
    }
}

TEST(Deviation, OfATargetWithAnUnknownPrefixFails)
{
    ModuleUnderTest module;
    ZrsDeviation deviation = {};
    EXPECT_EQ(
        Parse(module, ZRS_LOADER_ParseDeviation, "<deviation target-node='/q:a'/>", &deviation),
        ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse \"deviation\" statement \"/q:a\"."));
}

TEST(Deviation, IsClearedWhenADeviateFails)
{
    ModuleUnderTest module;
    ZrsDeviation deviation = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseDeviation,
                    "<deviation target-node='/x:a'><deviate value='add'><default value='d'/>"
                    "</deviate><deviate value='none'/></deviation>",
                    &deviation),
              UINT32_MAX);
    EXPECT_EQ(deviation.targetPath, nullptr);
    EXPECT_EQ(deviation.deviates, nullptr);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse value \"none\" of statement \"deviate\".",
                            "Failed to parse \"deviation\" statement \"/x:a\"."));
}

TEST(Deviation, LeavesNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module(ZR_CTX_KEEP_UNITS);
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrsDeviation deviation = {};
        uint32_t status = memory.Run([&] {
            return Parse(module, ZRS_LOADER_ParseDeviation,
                         "<deviation target-node='/x:a1'><deviate value='add'><default value='d1'/>"
                         "<units name='u1'/><x:e1/></deviate><deviate value='replace'>"
                         "<type name='typedef1'/></deviate></deviation>",
                         &deviation);
        });
        ZRS_MOD_ClearDeviation(module.ctx, &deviation);
        EXPECT_EQ(status != ZR_OK, memory.Failed());
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

} // namespace
