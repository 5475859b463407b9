#include "loader/type_snippet.h"

namespace {

using zrtest::SnippetModule;
using zrtest::YinElement;

TEST(FillTable, HasAFunctionForEveryKind)
{
    const ZrtConsFillFunc rows[] = {
        ZRT_LOADER_FillConsDataAndAllDerivedSeg,  ZRT_LOADER_FillConsDataAndAllBaseSeg,
        ZRT_LOADER_FillConsDataAndAllBitSeg,      ZRT_LOADER_FillConsDataAndAllEnumSeg,
        ZRT_LOADER_FillConsDataAndAllFractionSeg, ZRT_LOADER_FillConsDataAndAllLengthSeg,
        ZRT_LOADER_FillConsDataAndAllPathSeg,     ZRT_LOADER_FillConsDataAndAllPatternSeg,
        ZRT_LOADER_FillConsDataAndAllRangeSeg,    ZRT_LOADER_FillConsDataAndAllUnionSeg,
    };
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        EXPECT_EQ(ZRT_LOADER_GetConsDataFillAllSegFunc(kind), rows[kind]) << kind;
    EXPECT_EQ(ZRT_LOADER_GetConsDataFillAllSegFunc(10), nullptr);
    EXPECT_EQ(ZRT_LOADER_GetConsDataFillAllSegFunc(UINT32_MAX), nullptr);
}

TEST(FillSlots, BeyondTheCountedKindsIs22)
{
    SnippetModule module;
    YinElement element("<type name=\"int8\"><range value=\"1\"/></type>");
    ZrtTypeSubElemCount counters = {};
    ASSERT_EQ(zr::CountAndMarkRestrictions(element.get(), &counters), ZR_OK);
    counters.counts[10] = 0;
    ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 1), ZR_OK);
    EXPECT_EQ(ZRT_LOADER_FillAllTypeConstraint(module.module(), &type, element.get(), &counters),
              ZR_ERR_INVALID);
    ZRT_TYPE_DestroyZrtRealTypeInner(module.context(), &type);
}

TEST(FillSlots, IntoASlotThatHasABodyIs22)
{
    SnippetModule module;
    YinElement element("<type name=\"int8\"><range value=\"1\"/></type>");
    ZrtTypeSubElemCount counters = {};
    ASSERT_EQ(zr::CountAndMarkRestrictions(element.get(), &counters), ZR_OK);
    ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 1), ZR_OK);
    int other = 0;
    type.constraints[0].body = &other;
    EXPECT_EQ(ZRT_LOADER_FillAllTypeConstraint(module.module(), &type, element.get(), &counters),
              ZR_ERR_INVALID);
    EXPECT_EQ(type.consCount, 0);
    ZRT_TYPE_DestroyZrtRealTypeInner(module.context(), &type);
}

struct Visit {
    xmlNode *element;
    uint32_t *item;
    uint8_t *isExplicit;
};

std::vector<Visit> g_visits;
size_t g_failAt;

uint32_t Remember(ZrMod *, xmlNode *element, void *item, uint8_t *isExplicit)
{
    g_visits.push_back({element, static_cast<uint32_t *>(item), isExplicit});
    return g_visits.size() == g_failAt ? 77 : 0;
}

class ItemWalk : public testing::Test {
protected:
    ItemWalk() : element_("<type name=\"t\"><enum/><bit/><enum/><range/><enum/></type>")
    {
        g_visits.clear();
        g_failAt = 0;
        ZrtTypeSubElemCount counters = {};
        zr::CountAndMarkRestrictions(element_.get(), &counters);
    }
    uint32_t Walk(uint32_t count, uint8_t *flags)
    {
        ZrtSegFiller filler;
        ZRT_LOADER_InitSegFiller(&filler, count, sizeof(uint32_t), 0x004, Remember);
        return ZRT_LOADER_FillTypeConstraintSeg(nullptr, element_.get(), &filler, items_, flags);
    }
    YinElement element_;
    uint32_t items_[4] = {};
};

TEST_F(ItemWalk, VisitsTheMarkedChildrenInDocumentOrder)
{
    uint8_t flags[3] = {};
    EXPECT_EQ(Walk(3, flags), ZR_OK);
    ASSERT_EQ(g_visits.size(), 3u);
    EXPECT_EQ(g_visits[0].element, element_.get()->children);
    EXPECT_EQ(g_visits[1].element, element_.get()->children->next->next);
    EXPECT_EQ(g_visits[2].element, element_.get()->last);
    for (uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(g_visits[i].item, items_ + i);
        EXPECT_EQ(g_visits[i].isExplicit, flags + i);
    }
}

TEST_F(ItemWalk, StopsAfterTheCountedItems)
{
    EXPECT_EQ(Walk(2, nullptr), ZR_OK);
    EXPECT_EQ(g_visits.size(), 2u);
    EXPECT_EQ(g_visits[0].isExplicit, nullptr);
}

TEST_F(ItemWalk, ReturnsAFailureAtOnce)
{
    g_failAt = 2;
    EXPECT_EQ(Walk(3, nullptr), 77u);
    EXPECT_EQ(g_visits.size(), 2u);
}

} // namespace
