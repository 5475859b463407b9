// SPDX-License-Identifier: Apache-2.0
#include "loader/type_snippet.h"

namespace {

using zrtest::YinElement;

uintptr_t MarkOf(const xmlNode *element)
{
    return reinterpret_cast<uintptr_t>(element->_private);
}

TEST(TypeMarks, AreOnePerKind)
{
    struct Row {
        const char *keyword;
        uint32_t kind;
    };
    const Row rows[] = {
        {"base", ZRT_CONS_BASE},       {"bit", ZRT_CONS_BIT},
        {"enum", ZRT_CONS_ENUM},       {"fraction-digits", ZRT_CONS_FRACTION},
        {"length", ZRT_CONS_LENGTH},   {"path", ZRT_CONS_PATH},
        {"pattern", ZRT_CONS_PATTERN}, {"range", ZRT_CONS_RANGE},
        {"type", ZRT_CONS_UNION},
    };
    uintptr_t seen = 0;
    for (const Row &row : rows) {
        YinElement type(std::string("<type name=\"t\"><") + row.keyword + "/></type>");
        ZrtTypeSubElemCount counters = {};
        EXPECT_EQ(zr::CountAndMarkRestrictions(type.get(), &counters), ZR_OK);
        EXPECT_EQ(counters.counts[row.kind], 1) << row.keyword;
        EXPECT_EQ(counters.counts[ZRT_CONS_KIND_COUNT], 1) << row.keyword;
        uintptr_t mark = MarkOf(type.get()->children);
        EXPECT_EQ(zr::TypeMarkOf(row.kind), mark) << row.keyword;
        EXPECT_NE(mark, 0u) << row.keyword;
        EXPECT_EQ(seen & mark, 0u) << row.keyword;
        seen |= mark;
    }
    EXPECT_EQ(zr::TypeMarkOf(ZRT_CONS_DERIVED), 0u);
    EXPECT_EQ(zr::TypeMarkOf(ZRT_CONS_KIND_COUNT), 0u);
}

TEST(TypeMarks, CountEveryChildAndEveryKindOnce)
{
    YinElement type("<type name=\"t\"><range/><pattern/><length/><pattern/><enum/><pattern/>"
                    "</type>");
    ZrtTypeSubElemCount counters = {};
    EXPECT_EQ(zr::CountAndMarkRestrictions(type.get(), &counters), ZR_OK);
    EXPECT_EQ(counters.counts[ZRT_CONS_PATTERN], 3);
    EXPECT_EQ(counters.counts[ZRT_CONS_LENGTH], 1);
    EXPECT_EQ(counters.counts[ZRT_CONS_RANGE], 1);
    EXPECT_EQ(counters.counts[ZRT_CONS_ENUM], 1);
    EXPECT_EQ(counters.counts[ZRT_CONS_KIND_COUNT], 4);
}

TEST(TypeMarks, LeaveEverythingElseAlone)
{
    YinElement type("<type name=\"t\"><require-instance/><modifier/><description/><value/>"
                    "<position/><bits/><ranges/><pat/><x:range/><x:foo/><!-- range -->"
                    "<?range data?>range</type>");
    ZrtTypeSubElemCount counters = {};
    EXPECT_EQ(zr::CountAndMarkRestrictions(type.get(), &counters), ZR_OK);
    for (uint16_t count : counters.counts)
        EXPECT_EQ(count, 0);
    for (const xmlNode *child = type.get()->children; child != nullptr; child = child->next)
        EXPECT_EQ(MarkOf(child), 0u) << reinterpret_cast<const char *>(child->name);
}

TEST(TypeMarks, AreAddedToMarksThatAreThere)
{
    YinElement type("<type name=\"t\"><range/></type>");
    xmlNode *range = type.get()->children;
    range->_private = reinterpret_cast<void *>(uintptr_t{0x400});
    ZrtTypeSubElemCount counters = {};
    EXPECT_EQ(zr::CountAndMarkRestrictions(type.get(), &counters), ZR_OK);
    EXPECT_EQ(MarkOf(range), 0x480u);
    EXPECT_TRUE(zr::HasTypeMark(range, 0x080));
    EXPECT_FALSE(zr::HasTypeMark(range, 0x001));
}

TEST(ChildValue, IsTheFirstAttributeOfTheFirstChildOfThatName)
{
    YinElement type("<type name=\"t\"><other value=\"no\"/><value odd=\"1\" value=\"2\"/>"
                    "<value value=\"3\"/></type>");
    EXPECT_STREQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(type.get(), "value"), "1");
    EXPECT_STREQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(type.get(), "other"), "no");
}

TEST(ChildValue, IsNullWithoutSuchAChildOrAttribute)
{
    YinElement type("<type name=\"t\"><value/></type>");
    EXPECT_EQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(type.get(), "value"), nullptr);
    EXPECT_EQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(type.get(), "position"), nullptr);
    EXPECT_EQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(type.get(), nullptr), nullptr);
    EXPECT_EQ(ZRT_LOADER_GetMatchChildFirstMatchedValStr(nullptr, "value"), nullptr);
}

} // namespace
