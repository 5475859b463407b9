// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include "types/constraints.h"
#include "types/leaf.h"

namespace {

using zrtest::Leaf;
using zrtest::Typedefs;
using Texts = std::vector<std::string>;

// What a callback has seen; the n-th call returns n when that is `stopAt`.
struct Seen {
    Texts texts;
    uint32_t stopAt = 0;

    uint32_t Add(const std::string &text)
    {
        texts.push_back(text);
        return texts.size() == stopAt ? stopAt : 0;
    }
};

uint32_t SeeName(const char *name, const char *description, int64_t value, void *seen)
{
    return static_cast<Seen *>(seen)->Add(std::string(name) + "=" + std::to_string(value) + " " +
                                          (description != nullptr ? description : "-"));
}

uint32_t SeeBounds(uint64_t start, uint64_t end, void *seen)
{
    return static_cast<Seen *>(seen)->Add(std::to_string(start) + ".." + std::to_string(end));
}

uint32_t SeeMember(const char *moduleName, const char *typedefName, const ZrtRealType *member,
                   void *seen)
{
    EXPECT_EQ(moduleName, nullptr);
    EXPECT_EQ(typedefName, nullptr);
    return static_cast<Seen *>(seen)->Add(std::to_string(ZR_TYPE_GetBuiltInBaseType(member)));
}

uint32_t SeeBase(const char *moduleName, const char *identityName, void *seen,
                 const ZrsIdentBase *bases)
{
    EXPECT_NE(bases, nullptr);
    return static_cast<Seen *>(seen)->Add(std::string(moduleName) + ":" + identityName);
}

uint32_t SeePattern(const char *pattern, uint32_t invertMatch, void *seen,
                    const ZrtPatternItem *patterns)
{
    EXPECT_NE(patterns, nullptr);
    return static_cast<Seen *>(seen)->Add(std::string(pattern) + " " + std::to_string(invertMatch));
}

TEST(BuiltInBaseType, IsTheNumberOfEveryName)
{
    const char *const names[] = {"t",           "binary",      "bits",
                                 "boolean",     "decimal64",   "empty",
                                 "enumeration", "identityref", "instance-identifier",
                                 "int8",        "int16",       "int32",
                                 "int64",       "leafref",     "string",
                                 "uint8",       "uint16",      "uint32",
                                 "uint64",      "union"};
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type) {
        Leaf leaf(std::string("<type name=\"") + names[type] + "\"/>",
                  "<typedef name=\"t\"><type name=\"string\"/></typedef>");
        EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(leaf.type()), type) << names[type];
    }
}

TEST(BuiltInBaseType, OfNullIs20)
{
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(nullptr), ZRT_TYPE_NONE);
}

TEST(Decimal64Fraction, IsReadFromTheStatementItself)
{
    Leaf leaf("<type name=\"decimal64\"><fraction-digits value=\"7\"/></type>");
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(leaf.type()), 7u);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(nullptr), 0u);
    Leaf other("<type name=\"int8\"/>");
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(other.type()), 0u);
}

TEST(LeafrefPath, IsInModuleNameForm)
{
    Leaf leaf("<type name=\"leafref\"><path value=\"../m:a/b\"/></type>");
    EXPECT_STREQ(ZR_TYPE_GetTypeConsDataLeafrefPath(leaf.type()), "../m:a/b");
    EXPECT_EQ(ZR_TYPE_GetTypeConsDataLeafrefPath(nullptr), nullptr);
    Leaf other("<type name=\"int8\"/>");
    EXPECT_EQ(ZR_TYPE_GetTypeConsDataLeafrefPath(other.type()), nullptr);
}

TEST(LeafrefRequireInstance, IsTrueUnlessTheTypeSaysOtherwise)
{
    Leaf silent("<type name=\"leafref\"><path value=\"../a\"/></type>");
    EXPECT_EQ(ZR_TYPE_GetLeafrefRequireInstance(silent.type()), 1u);
    Leaf loose(
        "<type name=\"leafref\"><path value=\"../a\"/><require-instance value=\"false\"/></type>");
    EXPECT_EQ(ZR_TYPE_GetLeafrefRequireInstance(loose.type()), 0u);
    Leaf other("<type name=\"int8\"/>");
    EXPECT_EQ(ZR_TYPE_GetLeafrefRequireInstance(other.type()), 0u);
    EXPECT_EQ(ZR_TYPE_GetLeafrefRequireInstance(nullptr), 0u);
}

TEST(PathWithPredicates, IsThePathAloneWhereNoneAreKept)
{
    Leaf leaf("<type name=\"leafref\"><path value=\"../l[k = current()/../b]/a\"/></type>");
    EXPECT_STREQ(ZR_TYPE_GetLeafrefPathWithPredicates(leaf.type()),
                 ZR_TYPE_GetTypeConsDataLeafrefPath(leaf.type()));
    Leaf other("<type name=\"int8\"/>");
    EXPECT_EQ(ZR_TYPE_GetLeafrefPathWithPredicates(other.type()), nullptr);
    EXPECT_EQ(ZR_TYPE_GetLeafrefPathWithPredicates(nullptr), nullptr);
}

TEST(RequireInstance, IsNotSaidWhereItIsNotKept)
{
    Leaf leaf("<type name=\"instance-identifier\"><require-instance value=\"false\"/></type>");
    EXPECT_EQ(ZR_TYPE_GetRequireInstance(leaf.type()), ZR_INSTANCE_NOT_SAID);
    EXPECT_EQ(ZR_TYPE_GetRequireInstance(nullptr), ZR_INSTANCE_NOT_SAID);
}

TEST(NameValueScan, ListsEnumsWithSignedValues)
{
    Leaf leaf("<type name=\"enumeration\"><enum name=\"a\"><value value=\"-5\"/></enum>"
              "<enum name=\"b\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(leaf.type(), SeeName, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"a=-5 -", "b=0 -"}));
}

TEST(NameValueScan, ListsBitsWithUnsignedPositionsAndNoDescription)
{
    Leaf leaf("<type name=\"bits\"><bit name=\"a\"><position value=\"4294967294\"/>"
              "<description><text>About a.</text></description></bit><bit name=\"b\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(leaf.type(), SeeName, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"a=4294967294 -", "b=4294967295 -"}));
}

TEST(NameValueScan, GivesDescriptionsOfEnumsWhenTheyAreKept)
{
    zrtest::TestContext ctx(ZR_CTX_KEEP_DESCRIPTIONS);
    ASSERT_EQ(ctx.LoadBody("m", "<leaf name=\"v\"><type name=\"enumeration\">"
                                "<enum name=\"a\"><description><text>About a.</text></description>"
                                "</enum><enum name=\"b\"/></type></leaf>"),
              ZR_OK);
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(ZR_NODE_GetRealType(ctx.Node("/m:v")), SeeName, &seen),
              ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"a=0 About a.", "b=1 -"}));
}

TEST(StartEndScan, ListsTheLengthBeforeTheRange)
{
    Leaf leaf("<type name=\"int8\"><range value=\"-1..5\"/><length value=\"1..2|4\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanStartEndPair(leaf.type(), SeeBounds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"1..2", "4..4", "18446744073709551615..5"}));
}

TEST(StartEndScan, GivesDecimal64BoundsScaled)
{
    Leaf leaf("<type name=\"decimal64\"><fraction-digits value=\"2\"/>"
              "<range value=\"0.5..2\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanStartEndPair(leaf.type(), SeeBounds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, Texts{"50..200"});
}

TEST(StartEndScan, ReadsMinAndMaxOfADerivedTypeAsZero)
{
    Leaf leaf("<type name=\"t\"><range value=\"min..5|7..max\"/></type>",
              "<typedef name=\"t\"><type name=\"int8\"/></typedef>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanStartEndPair(leaf.type(), SeeBounds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"0..5", "7..0"}));
}

uint32_t SeeBoundKinds(const ZrTypeBound *start, const ZrTypeBound *end, void *userData)
{
    auto text = [](const ZrTypeBound &bound) {
        if (bound.kind != ZR_BOUND_NUMBER)
            return std::string(bound.kind == ZR_BOUND_MIN ? "min" : "max");
        std::string number = std::to_string(static_cast<int64_t>(bound.number));
        return bound.fractionDigits == 0 ? number
                                         : number + "e-" + std::to_string(bound.fractionDigits);
    };
    return static_cast<Seen *>(userData)->Add(text(*start) + ".." + text(*end));
}

TEST(BoundsScan, TellsMinAndMaxOfADerivedType)
{
    Leaf leaf("<type name=\"t\"><range value=\"min..5|7..max\"/></type>",
              "<typedef name=\"t\"><type name=\"int8\"/></typedef>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanBounds(leaf.type(), SeeBoundKinds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"min..5", "7..max"}));
}

TEST(BoundsScan, KnowsMinAndMaxOfABuiltInInteger)
{
    Leaf leaf("<type name=\"int8\"><range value=\"min..-1|1..max\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanBounds(leaf.type(), SeeBoundKinds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"-128..-1", "1..127"}));
}

TEST(BoundsScan, TellsHowTheBoundsOfADecimal64AreScaled)
{
    Leaf leaf("<type name=\"decimal64\"><fraction-digits value=\"2\"/>"
              "<range value=\"0.5..2\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanBounds(leaf.type(), SeeBoundKinds, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, Texts{"50e-2..200e-2"});
}

TEST(UnionScan, ListsMembersInOrder)
{
    Leaf leaf("<type name=\"union\"><type name=\"string\"/><type name=\"int8\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanUnionSubType(leaf.type(), SeeMember, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"14", "9"}));
}

TEST(BaseScan, ListsBasesInOrder)
{
    Leaf leaf("<type name=\"identityref\"><base name=\"b\"/><base name=\"m:a\"/></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanIdentRefBase(leaf.type(), SeeBase, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"m:b", "m:a"}));
}

TEST(PatternScan, ListsPatternsInOrderWithTheirMark)
{
    Leaf leaf("<type name=\"string\"><pattern value=\"^a$\"/>"
              "<pattern value=\"b\"><modifier value=\"invert-match\"/></pattern></type>");
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanPatternInvertMatch(leaf.type(), SeePattern, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, (Texts{"a 0", "b 1"}));
}

TEST(PatternScan, ReducesTheMarkToOne)
{
    ZrtPatternItem item = {"a", 8};
    ZrtConsPattern body = {1, &item, nullptr};
    ZrtConsSlot slot = {ZRT_CONS_PATTERN, &body};
    ZrtRealType type = {ZRT_TYPE_STRING, 0, 1, &slot};
    Seen seen;
    EXPECT_EQ(ZR_TYPE_ScanPatternInvertMatch(&type, SeePattern, &seen), ZR_OK);
    EXPECT_EQ(seen.texts, Texts{"a 1"});
}

// A type that every scan finds three items in.
constexpr char kThrees[] =
    "<type name=\"t\"><base name=\"a\"/><base name=\"b\"/><base name=\"c\"/>"
    "<enum name=\"a\"/><enum name=\"b\"/><enum name=\"c\"/><range value=\"1|2|3\"/>"
    "<pattern value=\"a\"/><pattern value=\"b\"/><pattern value=\"c\"/>"
    "<type name=\"int8\"/><type name=\"int8\"/><type name=\"int8\"/></type>";

template <typename Scan, typename Callback>
void ExpectScanRules(const ZrtRealType *type, Scan scan, Callback callback)
{
    Seen seen;
    seen.stopAt = 2;
    EXPECT_EQ(scan(type, callback, &seen), 2u); // the callback's result ends the scan
    EXPECT_EQ(seen.texts.size(), 2u);
    seen = {};
    EXPECT_EQ(scan(type, callback, &seen), ZR_OK);
    EXPECT_EQ(seen.texts.size(), 3u);
    ZrtRealType plain = {ZRT_TYPE_STRING, 0, 0, nullptr};
    seen = {};
    EXPECT_EQ(scan(&plain, callback, &seen), ZR_OK); // a type without data of the kind
    EXPECT_TRUE(seen.texts.empty());
    EXPECT_EQ(scan(nullptr, callback, &seen), ZR_ERR_INVALID);
    EXPECT_EQ(scan(type, static_cast<Callback>(nullptr), &seen), ZR_ERR_INVALID);
    EXPECT_TRUE(seen.texts.empty());
}

TEST(EveryScan, StopsAtANonZeroResultAndRefusesNull)
{
    Leaf leaf(kThrees);
    ASSERT_NE(leaf.type(), nullptr);
    ExpectScanRules<decltype(&ZR_TYPE_ScanNameValuePair), ZrNameValueScanFunc>(
        leaf.type(), ZR_TYPE_ScanNameValuePair, SeeName);
    ExpectScanRules<decltype(&ZR_TYPE_ScanStartEndPair), ZrStartEndScanFunc>(
        leaf.type(), ZR_TYPE_ScanStartEndPair, SeeBounds);
    ExpectScanRules<decltype(&ZR_TYPE_ScanBounds), ZrBoundsScanFunc>(
        leaf.type(), ZR_TYPE_ScanBounds, SeeBoundKinds);
    ExpectScanRules<decltype(&ZR_TYPE_ScanUnionSubType), ZrUnionScanFunc>(
        leaf.type(), ZR_TYPE_ScanUnionSubType, SeeMember);
    ExpectScanRules<decltype(&ZR_TYPE_ScanIdentRefBase), ZrIdentBaseScanFunc>(
        leaf.type(), ZR_TYPE_ScanIdentRefBase, SeeBase);
    ExpectScanRules<decltype(&ZR_TYPE_ScanPatternInvertMatch), ZrPatternScanFunc>(
        leaf.type(), ZR_TYPE_ScanPatternInvertMatch, SeePattern);
}

TEST(EveryScan, PassesOverASlotWithoutABody)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        ZrtConsSlot slot = {kind, nullptr};
        ZrtRealType type = {ZRT_TYPE_STRING, 0, 1, &slot};
        Seen seen;
        EXPECT_EQ(ZR_TYPE_ScanNameValuePair(&type, SeeName, &seen), ZR_OK);
        EXPECT_EQ(ZR_TYPE_ScanStartEndPair(&type, SeeBounds, &seen), ZR_OK);
        EXPECT_EQ(ZR_TYPE_ScanBounds(&type, SeeBoundKinds, &seen), ZR_OK);
        EXPECT_EQ(ZR_TYPE_ScanUnionSubType(&type, SeeMember, &seen), ZR_OK);
        EXPECT_EQ(ZR_TYPE_ScanIdentRefBase(&type, SeeBase, &seen), ZR_OK);
        EXPECT_EQ(ZR_TYPE_ScanPatternInvertMatch(&type, SeePattern, &seen), ZR_OK);
        EXPECT_TRUE(seen.texts.empty());
    }
}

struct Walk {
    std::vector<std::string> names;
    const ZrtRealType *last = nullptr;
    uint32_t result = 0;
};

uint32_t Remember(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                  void *userData)
{
    auto *walk = static_cast<Walk *>(userData);
    walk->names.push_back(std::string(moduleName != nullptr ? moduleName : "-") + ":" +
                          (typedefName != nullptr ? typedefName : "-"));
    walk->last = type;
    return walk->result;
}

TEST(DerivedChain, WalkReportsEveryLinkOf128)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(128, "int8"));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    ASSERT_EQ(walk.names.size(), 128u);
    EXPECT_EQ(walk.names.front(), "m:t1");
    EXPECT_EQ(walk.names.back(), "m:t128");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(walk.last), ZRT_TYPE_INT8);
}

TEST(DerivedChain, WalkReturns22AtThe129thLinkEvenWhenThatIsBuiltIn)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(129, "int8"));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(walk.names.size(), 129u);
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(walk.last), ZRT_TYPE_INT8);
}

TEST(DerivedChain, WalkReportsAtMost129Links)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(130, "int8"));
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    ASSERT_EQ(walk.names.size(), 129u);
    EXPECT_EQ(walk.names.back(), "m:t129");
}

TEST(DerivedChain, InACircleIsRefusedAndWalkedToTheBound)
{
    Leaf leaf("<type name=\"a\"/>", "<typedef name=\"a\"><type name=\"b\"/></typedef>"
                                    "<typedef name=\"b\"><type name=\"a\"/></typedef>");
    ASSERT_NE(leaf.node(), nullptr);
    EXPECT_EQ(leaf.Check("x"), ZR_ERR_VALUE_DERIVED);
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(walk.names.size(), 129u);
}

TEST(DerivedChain, WalkReportsABuiltInTypeOnceWithoutNames)
{
    Leaf leaf("<type name=\"int8\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    EXPECT_EQ(walk.names, std::vector<std::string>{"-:-"});
    EXPECT_EQ(walk.last, leaf.type());
    walk.result = 7;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), 7u);
}

TEST(DerivedChain, WalkReportsATypedefThatIsNotLoadedWithANullTypeAndEnds)
{
    Leaf leaf("<type name=\"unknown\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), ZR_OK);
    EXPECT_EQ(walk.names, std::vector<std::string>{"m:unknown"});
    EXPECT_EQ(walk.last, nullptr);
}

TEST(DerivedChain, WalkStopsAtTheFirstNonZeroResult)
{
    Leaf leaf("<type name=\"t1\"/>", Typedefs(5, "int8"));
    Walk walk;
    walk.result = 9;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), Remember, &walk), 9u);
    EXPECT_EQ(walk.names.size(), 1u);
}

TEST(DerivedChain, WalkReturns22ForNullArgumentsAndForATypeWithoutReference)
{
    Leaf leaf("<type name=\"int8\"/>");
    Walk walk;
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(nullptr, leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(leaf.type(), leaf.context(), nullptr, &walk),
              ZR_ERR_INVALID);
    ZrtRealType empty = {};
    EXPECT_EQ(ZR_TYPE_IterRealTypeDerivedName(&empty, leaf.context(), Remember, &walk),
              ZR_ERR_INVALID);
    EXPECT_TRUE(walk.names.empty());
}

} // namespace
