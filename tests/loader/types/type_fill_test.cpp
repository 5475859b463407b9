// SPDX-License-Identifier: Apache-2.0
#include "loader/type_snippet.h"

#include <utility>

#include "support/alloc.h"

namespace {

using zrtest::SnippetModule;
using zrtest::TypeSnippet;
using zrtest::YinElement;
using Texts = std::vector<std::string>;

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

std::string Message(const std::string &name)
{
    return "Failed to parse value \"" + name + "\" of statement \"type\".";
}

std::string Decimal(const std::string &digits)
{
    return "<type name=\"decimal64\"><fraction-digits value=\"" + digits + "\"/></type>";
}

TEST(FractionDigitsFill, TakesOneToEighteen)
{
    for (uint32_t digits = 1; digits <= 18; ++digits) {
        TypeSnippet snippet(Decimal(std::to_string(digits)));
        EXPECT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), digits);
    }
}

TEST(FractionDigitsFill, RefusesEverythingElse)
{
    for (const char *digits : {"0", "19", "-1", "x", "", "18446744073709551616", "256", "257"}) {
        TypeSnippet snippet(Decimal(digits));
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << digits;
        EXPECT_EQ(snippet.Messages(), Texts{Message("decimal64")});
    }
}

TEST(FractionDigitsFill, DoesNotLookAtWhatFollowsTheNumber)
{
    TypeSnippet snippet(Decimal("2x"));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), 2u);
}

TEST(FractionDigitsFill, TakesTheFirstOfSeveral)
{
    TypeSnippet snippet("<type name=\"decimal64\"><fraction-digits value=\"3\"/>"
                        "<fraction-digits value=\"5\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(&snippet.type()), 3u);
}

TEST(RangeFill, WithoutAnArgumentIsRefused)
{
    TypeSnippet range("<type name=\"int8\"><range/></type>");
    EXPECT_EQ(range.status(), ZR_ERR_INVALID);
    EXPECT_EQ(range.Messages(), Texts{Message("int8")});
    TypeSnippet length("<type name=\"string\"><length/></type>");
    EXPECT_EQ(length.status(), ZR_ERR_INVALID);
    EXPECT_EQ(length.Messages(), Texts{Message("string")});
}

TEST(RangeFill, OfADecimal64KnowsItsFractionDigitsWhereverTheyStand)
{
    TypeSnippet snippet("<type name=\"decimal64\"><range value=\"1.25..2\"/>"
                        "<fraction-digits value=\"2\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().flags, ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT);
    TypeSnippet none("<type name=\"decimal64\"><range value=\"1.25..2\"/></type>");
    EXPECT_EQ(none.status(), ZR_ERR_INVALID);
}

TEST(RangeFill, TogetherWithALengthSetsTheFlagsOfBoth)
{
    TypeSnippet snippet("<type name=\"t:a\"><range value=\"1..max\"/><length value=\"1\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().flags, ZRT_BOUNDS_GIVEN | ZRT_BOUNDS_EXPLICIT | ZRT_BOUNDS_RELATIVE);
}

std::string String(const std::string &pattern)
{
    return "<type name=\"string\">" + pattern + "</type>";
}

const char *PatternOf(const TypeSnippet &snippet)
{
    const auto *body = snippet.Get<ZrtConsPattern>(ZRT_CONS_PATTERN);
    return body != nullptr && body->count == 1 ? body->items[0].pattern : nullptr;
}

TEST(PatternFill, StripsAPairOfAnchors)
{
    struct Row {
        const char *written;
        const char *kept;
    };
    for (const Row &row :
         {Row{"^[a-z]+$", "[a-z]+"}, Row{"[a-z]+", "[a-z]+"}, Row{"^", "^"}, Row{"$", "$"},
          Row{"^$", ""}, Row{"^a", "^a"}, Row{"a$", "a$"}, Row{"^^a$$", "^a$"}}) {
        TypeSnippet snippet(String(std::string("<pattern value=\"") + row.written + "\"/>"));
        EXPECT_EQ(snippet.status(), ZR_OK);
        EXPECT_STREQ(PatternOf(snippet), row.kept) << row.written;
    }
}

TEST(PatternFill, IsInvertedByAnyModifier)
{
    struct Row {
        const char *child;
        uint32_t inverted;
    };
    for (const Row &row :
         {Row{"<modifier value=\"invert-match\"/>", 1}, Row{"<modifier value=\"anything\"/>", 1},
          Row{"<modifier/>", 1}, Row{"<error-message><value>no</value></error-message>", 0},
          Row{"", 0}}) {
        TypeSnippet snippet(
            String(std::string("<pattern value=\"a\">") + row.child + "</pattern>"));
        ASSERT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(snippet.Get<ZrtConsPattern>(ZRT_CONS_PATTERN)->items[0].invertMatch, row.inverted)
            << row.child;
    }
}

TEST(PatternFill, WithoutAnArgumentIsRefused)
{
    TypeSnippet snippet(String("<pattern/>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{Message("string")});
}

TEST(PatternFill, TakesAPatternThatDoesNotCompile)
{
    TypeSnippet snippet(String("<pattern value=\"[a-\"/>"));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_STREQ(PatternOf(snippet), "[a-");
}

constexpr char kBadEnumeration[] = "Failed to parse value \"enumeration\" of statement \"type\".";
constexpr char kBadBits[] = "Failed to parse value \"bits\" of statement \"type\".";

std::string Enum(const std::string &name, const std::string &value = "")
{
    return "<enum name=\"" + name + "\">" +
           (value.empty() ? "" : "<value value=\"" + value + "\"/>") + "</enum>";
}

std::string Bit(const std::string &name, const std::string &position = "")
{
    return "<bit name=\"" + name + "\">" +
           (position.empty() ? "" : "<position value=\"" + position + "\"/>") + "</bit>";
}

std::string Enumeration(const std::string &enums)
{
    return "<type name=\"enumeration\">" + enums + "</type>";
}

std::string Bits(const std::string &bits)
{
    return "<type name=\"bits\">" + bits + "</type>";
}

std::vector<int64_t> Values(const TypeSnippet &snippet)
{
    std::vector<int64_t> values;
    ZR_TYPE_ScanNameValuePair(
        &snippet.type(),
        [](const char *, const char *, int64_t value, void *out) {
            static_cast<std::vector<int64_t> *>(out)->push_back(value);
            return uint32_t{0};
        },
        &values);
    return values;
}

TEST(EnumFill, NumbersNamesAboveTheGreatestSoFar)
{
    TypeSnippet snippet(
        Enumeration(Enum("a") + Enum("b", "10") + Enum("c") + Enum("d", "3") + Enum("e")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{0, 10, 11, 3, 12}));
}

TEST(EnumFill, StartsAtZeroAfterNegativeValues)
{
    TypeSnippet snippet(Enumeration(Enum("a", "-5") + Enum("b") + Enum("c", "-1") + Enum("d")));
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{-5, 0, -1, 1}));
}

TEST(EnumFill, TakesDuplicateValuesAndNames)
{
    TypeSnippet snippet(Enumeration(Enum("a", "1") + Enum("b", "1") + Enum("a")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{1, 1, 2}));
}

TEST(EnumFill, TakesValuesBetweenTheEndsOf32Bits)
{
    TypeSnippet snippet(Enumeration(Enum("a", "2147483646") + Enum("b", "-2147483647") +
                                    Enum("c", " 7 ") + Enum("d", "+8") + Enum("e", "007")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{2147483646, -2147483647, 7, 8, 7}));
}

class BadEnumValue : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(Each, BadEnumValue,
                         testing::Values("2147483647", "-2147483648", "2147483648", "-2147483649",
                                         "9223372036854775808", "x", "1x", "1 2", "-", "0x1",
                                         "1.0"));

TEST_P(BadEnumValue, IsRefused)
{
    TypeSnippet snippet(Enumeration(Enum("a", GetParam())));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << GetParam();
    EXPECT_EQ(snippet.Messages(), Texts{kBadEnumeration});
}

TEST(EnumFill, RefusesANameThatWouldBeNumberedBeyond32Bits)
{
    TypeSnippet last(Enumeration(Enum("a", "2147483646") + Enum("b")));
    EXPECT_EQ(last.status(), ZR_OK);
    EXPECT_EQ(Values(last), (std::vector<int64_t>{2147483646, 2147483647}));
    TypeSnippet beyond(Enumeration(Enum("a", "2147483646") + Enum("b") + Enum("c")));
    EXPECT_EQ(beyond.status(), ZR_ERR_INVALID);
}

TEST(EnumFill, RefusesAnEnumWithoutAName)
{
    TypeSnippet snippet(Enumeration("<enum><value value=\"1\"/></enum>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{kBadEnumeration});
}

TEST(EnumFill, ReadsTheFirstValueAlone)
{
    TypeSnippet snippet(Enumeration("<enum name=\"a\"><value value=\"4\"/><value value=\"x\"/>"
                                    "</enum>"));
    EXPECT_EQ(Values(snippet), std::vector<int64_t>{4});
}

std::string Described(const std::string &name, const std::string &content)
{
    return "<enum name=\"" + name + "\"><description>" + content + "</description></enum>";
}

TEST(EnumDescriptions, AreKeptBesideTheirNames)
{
    TypeSnippet snippet(Enumeration(Described("a", "<text>About a.</text>") + Enum("b") +
                                    Described("c", "<text/>")),
                        ZR_CTX_KEEP_DESCRIPTIONS);
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsEnum>(ZRT_CONS_ENUM);
    ASSERT_NE(body->descriptions, nullptr);
    EXPECT_STREQ(body->descriptions[0], "About a.");
    EXPECT_EQ(body->descriptions[1], nullptr);
    EXPECT_STREQ(body->descriptions[2], "");
}

TEST(EnumDescriptions, AreNotKeptWithoutTheOption)
{
    TypeSnippet snippet(Enumeration(Described("a", "<text>About a.</text>")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.Get<ZrtConsEnum>(ZRT_CONS_ENUM)->descriptions, nullptr);
}

TEST(BitFill, NumbersNamesAboveTheGreatestSoFar)
{
    TypeSnippet snippet(Bits(Bit("x", "5") + Bit("y") + Bit("z", "1") + Bit("w")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{5, 6, 1, 7}));
}

TEST(BitFill, TakesPositionsUpTo4294967294)
{
    TypeSnippet snippet(Bits(Bit("x", "4294967294") + Bit("y")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{4294967294, 4294967295}));
}

TEST(BitFill, TakesDuplicatePositions)
{
    TypeSnippet snippet(Bits(Bit("x", "1") + Bit("y", "1")));
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(Values(snippet), (std::vector<int64_t>{1, 1}));
}

class BadBitPosition : public testing::TestWithParam<const char *> {};

INSTANTIATE_TEST_SUITE_P(Each, BadBitPosition,
                         testing::Values("4294967295", "4294967296", "18446744073709551616", "-1",
                                         "-0", "x", "1x", "1 2", "0x1"));

TEST_P(BadBitPosition, IsRefused)
{
    TypeSnippet snippet(Bits(Bit("a", GetParam())));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << GetParam();
    EXPECT_EQ(snippet.Messages(), Texts{kBadBits});
}

TEST(BitFill, RefusesANameThatWouldBePlacedBeyond32Bits)
{
    TypeSnippet snippet(Bits(Bit("x", "4294967294") + Bit("y") + Bit("z")));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
}

TEST(BitFill, RefusesABitWithoutAName)
{
    TypeSnippet snippet(Bits("<bit/>"));
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{kBadBits});
}

TEST(DerivedFill, MapsItsPrefix)
{
    struct Row {
        const char *name;
        const char *module;
        const char *typeDef;
    };
    for (const Row &row : {Row{"a", "m", "a"}, Row{"m:a", "m", "a"}, Row{"t:a", "types", "a"}}) {
        TypeSnippet snippet(std::string("<type name=\"") + row.name + "\"/>");
        EXPECT_EQ(snippet.status(), ZR_OK);
        const auto *body = snippet.Get<ZrtConsDerived>(ZRT_CONS_DERIVED);
        ASSERT_NE(body, nullptr);
        EXPECT_STREQ(body->moduleName, row.module);
        EXPECT_STREQ(body->typedefName, row.typeDef);
        EXPECT_EQ(body->resolved, nullptr);
    }
}

TEST(DerivedFill, TakesPrefixAndNameOf64Characters)
{
    std::string name(64, 'n');
    EXPECT_EQ(TypeSnippet("<type name=\"" + name + "\"/>").status(), ZR_OK);
    EXPECT_EQ(TypeSnippet("<type name=\"t:" + name + "\"/>").status(), ZR_OK);
}

TEST(DerivedFill, RefusesBadNames)
{
    std::string longName(65, 'n');
    for (const std::string &name :
         {std::string(""), std::string("u:a"), std::string("t:"), std::string(":a"),
          std::string("a b"), std::string("a:b:c"), longName, "t:" + longName, longName + ":a"}) {
        TypeSnippet snippet("<type name=\"" + name + "\"/>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << name;
        EXPECT_EQ(snippet.Messages(), Texts{Message(name)});
    }
}

// The name of a loaded module is interned; this one has to be.
TEST(DerivedFill, IsRefusedWithoutMemoryForANameThatIsNotInterned)
{
    SnippetModule snippet;
    YinElement element("<type name=\"a\"/>");
    ZrtConsDerived body = {};
    const char *name = std::exchange(snippet.module()->name, "not-interned");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] {
            return ZRT_LOADER_FillConsDataAndAllDerivedSeg(snippet.module(), nullptr, &body,
                                                           element.get(), 1);
        });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        zr::Release(&snippet.context().get()->dict, body.moduleName);
        zr::Release(&snippet.context().get()->dict, body.typedefName);
    });
    snippet.module()->name = name;
}

TEST(BaseFill, MapsItsPrefixes)
{
    TypeSnippet snippet("<type name=\"identityref\"><base name=\"a\"/><base name=\"t:b\"/>"
                        "<base name=\"m:c\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsBase>(ZRT_CONS_BASE);
    ASSERT_EQ(body->count, 3);
    EXPECT_STREQ(body->items[0].moduleName, "m");
    EXPECT_STREQ(body->items[0].identityName, "a");
    EXPECT_STREQ(body->items[1].moduleName, "types");
    EXPECT_STREQ(body->items[1].identityName, "b");
    EXPECT_STREQ(body->items[2].moduleName, "m");
}

TEST(BaseFill, WithoutANameRecordsItsKeyword)
{
    TypeSnippet snippet("<type name=\"identityref\"><base/></type>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(),
              (Texts{"Failed to get value of statement \"base\".", Message("identityref")}));
}

TEST(BaseFill, RefusesBadNames)
{
    std::string longName(65, 'n');
    for (const std::string &name : {std::string(""), std::string("u:a"), std::string("t:"),
                                    longName, "t:" + longName, longName + ":a"}) {
        TypeSnippet snippet("<type name=\"identityref\"><base name=\"" + name + "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << name;
        EXPECT_EQ(snippet.Messages(), Texts{Message("identityref")});
    }
}

TEST(PathFill, KeepsThePathInModuleNameForm)
{
    struct Row {
        const char *path;
        const char *kept;
    };
    for (const Row &row :
         {Row{"/m:a/m:b", "/m:a/b"}, Row{"/a/t:b", "/m:a/types:b"}, Row{"../a", "../m:a"},
          Row{"../../t:a/b", "../../types:a/b"}, Row{"/a[k='1']/b", "/m:a/b"}}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"") + row.path +
                            "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_OK) << row.path;
        EXPECT_STREQ(ZR_TYPE_GetTypeConsDataLeafrefPath(&snippet.type()), row.kept);
    }
}

TEST(PathFill, RefusesPathsThatAreNeitherRelativeNorAbsolute)
{
    for (const char *path : {"a", "a/b", "m:a", " /a", "*"}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"") + path +
                            "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << path;
        EXPECT_EQ(snippet.Messages(), Texts{Message("leafref")});
    }
}

TEST(PathFill, RefusesAMissingPathAndOneThatCannotBeConverted)
{
    for (const char *path :
         {"<path/>", "<path value=\"\"/>", "<path value=\"/u:a\"/>", "<path value=\"/a[b\"/>"}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\">") + path + "</type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << path;
    }
}

TEST(PathFill, IntoABodyWithAPathIs22)
{
    TypeSnippet snippet("<type name=\"leafref\"><path value=\"/a\"/></type>");
    ASSERT_EQ(snippet.status(), ZR_OK);
    ZrtConsPath body = {"/b", 0};
    EXPECT_EQ(ZRT_LOADER_FillConsDataAndAllPathSeg(snippet.module(), nullptr, &body,
                                                   snippet.element(), 1),
              ZR_ERR_INVALID);
    EXPECT_STREQ(body.path, "/b");
}

TEST(RequireInstance, IsFalseOnlyWhenItBeginsWithF)
{
    struct Row {
        const char *statement;
        uint32_t kept;
    };
    for (const Row &row :
         {Row{"<require-instance value=\"false\"/>", 0}, Row{"<require-instance value=\"f\"/>", 0},
          Row{"<require-instance value=\"fales\"/>", 0},
          Row{"<require-instance value=\"true\"/>", 1},
          Row{"<require-instance value=\"False\"/>", 1}, Row{"<require-instance value=\"no\"/>", 1},
          Row{"<require-instance/>", 1}, Row{"", 1}}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"/a\"/>") +
                            row.statement + "</type>");
        ASSERT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(snippet.Get<ZrtConsPath>(ZRT_CONS_PATH)->requireInstance, row.kept)
            << row.statement;
    }
}

TEST(UnionFill, ParsesItsMembersInOrder)
{
    TypeSnippet snippet("<type name=\"union\"><type name=\"int8\"><range value=\"1..2\"/></type>"
                        "<type name=\"t:a\"/><type name=\"union\"><type name=\"string\"/></type>"
                        "</type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsUnion>(ZRT_CONS_UNION);
    ASSERT_EQ(body->count, 3);
    EXPECT_EQ(body->items[0].baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_EQ(body->items[0].consCount, 1);
    EXPECT_EQ(body->items[1].baseType, ZRT_TYPE_DERIVED);
    EXPECT_EQ(body->items[2].baseType, uint32_t{ZRT_TYPE_UNION});
    EXPECT_EQ(body->items[2].consCount, 1);
}

TEST(UnionFill, FailsWithItsMember)
{
    TypeSnippet snippet("<type name=\"union\"><type name=\"int8\"><range value=\"x\"/></type>"
                        "</type>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), (Texts{Message("int8"), Message("union")}));
    TypeSnippet unnamed("<type name=\"union\"><type/></type>");
    EXPECT_EQ(unnamed.status(), ZR_ERR_INVALID);
    EXPECT_EQ(unnamed.Messages(),
              (Texts{"Failed to get value of statement \"typeName\".", Message("union")}));
}

} // namespace
