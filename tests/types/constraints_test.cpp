// SPDX-License-Identifier: Apache-2.0
#include "types/constraints.h"

#include <gtest/gtest.h>

#include "model/node_record.h"
#include "support/alloc.h"
#include "types/default_checks.h"
#include "types/derived_body.h"
#include "types/leaf.h"

namespace {

using zrtest::DerivedBody;
using zrtest::Leaf;
using zrtest::Typedefs;
using zrtest::yin::Leafref;
namespace yin = zrtest::yin;

TEST(CreateBody, MakesAZeroedBodyWithAZeroedArray)
{
    zrtest::AllocGuard guard;
    auto *body = static_cast<ZrtConsEnum *>(
        ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), 3, sizeof(ZrtEnumItem)));
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->count, 0);
    ASSERT_NE(body->items, nullptr);
    EXPECT_EQ(body->items[2].name, nullptr);
    EXPECT_EQ(body->items[2].value, 0);
    EXPECT_EQ(guard.LiveBlocks(), 2);
    zr::Free(body->items);
    zr::Free(body);
}

TEST(CreateBody, MakesNoArrayWhenCountOrItemSizeIsZero)
{
    zrtest::AllocGuard guard;
    for (auto [count, size] : {std::pair(0u, 8u), std::pair(3u, 0u), std::pair(0u, 0u)}) {
        auto *body = static_cast<ZrtConsEnum *>(
            ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), count, size));
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(body->items, nullptr);
        zr::Free(body);
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateBody, FreesTheBodyWhenTheArrayCannotBeHad)
{
    uint64_t points = zrtest::FailEachAllocation([](zrtest::FailPoint &memory) {
        auto *body = static_cast<ZrtConsEnum *>(memory.Run(
            [] { return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsEnum), 3, 8); }));
        EXPECT_EQ(body == nullptr, memory.Failed());
        if (body != nullptr)
            zr::Free(body->items);
        zr::Free(body);
    });
    EXPECT_EQ(points, 2u);
}

TEST(CreateBody, OfEveryKindCanBeDestroyedAtOnce)
{
    zrtest::AllocGuard guard;
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        void *body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(3);
        ASSERT_NE(body, nullptr) << kind;
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, body);
        EXPECT_EQ(guard.LiveBlocks(), 0) << kind;
    }
}

TEST(CreateBody, OfEveryKindIsNullWhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        guard.FailAt(0, true);
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind)(3), nullptr) << kind;
    }
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST(CreateBody, OfCountedKindsHasTheItemCount)
{
    ZrCtx ctx = {};
    for (uint32_t kind :
         {ZRT_CONS_BASE, ZRT_CONS_BIT, ZRT_CONS_ENUM, ZRT_CONS_PATTERN, ZRT_CONS_UNION}) {
        void *body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(7);
        ASSERT_NE(body, nullptr);
        EXPECT_EQ(*static_cast<uint16_t *>(body), 7) << kind;
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, body);
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind)(65536), nullptr) << kind;
    }
}

TEST(DestroyBody, AcceptsNull)
{
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        ZRT_CONS_GetConsDataDestroyBodyFunc(kind)(&ctx, nullptr);
}

TEST(CopyBody, OfNullIsNull)
{
    ZrCtx ctx = {};
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind)
        EXPECT_EQ(ZRT_CONS_GetConsDataCopyBodyFunc(kind)(&ctx, nullptr), nullptr) << kind;
}

struct Restriction {
    uint32_t kind;
    const char *type;
    const char *good;
    const char *bad;
    uint32_t status; // of the bad value
};

const Restriction kRestrictions[] = {
    {ZRT_CONS_DERIVED, "<type name='t'/>", "5", "200", ZR_ERR_VALUE_RANGE},
    {ZRT_CONS_BASE, "<type name='identityref'><base name='wood'/></type>", "m:wood", "m:steel",
     ZR_ERR_VALUE_IDENTITY},
    {ZRT_CONS_BIT, "<type name='bits'><bit name='up'/></type>", "up", "down", ZR_ERR_VALUE_BITS},
    {ZRT_CONS_ENUM, "<type name='enumeration'><enum name='up'/></type>", "up", "down",
     ZR_ERR_VALUE_ENUM},
    {ZRT_CONS_FRACTION, "<type name='decimal64'><fraction-digits value='1'/></type>", "1.5", "1.55",
     ZR_ERR_VALUE_RANGE},
    {ZRT_CONS_LENGTH, "<type name='string'><length value='2'/></type>", "ab", "abc",
     ZR_ERR_VALUE_LENGTH},
    {ZRT_CONS_PATH, "<type name='leafref'><path value='/m:number'/></type>", "5", "200",
     ZR_ERR_VALUE_RANGE},
    {ZRT_CONS_PATTERN, "<type name='string'><pattern value='[ab]+'/></type>", "ab", "abc",
     ZR_ERR_VALUE_PATTERN},
    {ZRT_CONS_RANGE, "<type name='int8'><range value='1..5'/></type>", "5", "6",
     ZR_ERR_VALUE_RANGE},
    {ZRT_CONS_UNION, "<type name='union'><type name='int8'/><type name='boolean'/></type>", "true",
     "maybe", ZR_ERR_VALUE_UNION},
};

constexpr char kDefinitions[] = "<typedef name='t'><type name='int8'/></typedef>"
                                "<identity name='wood'/>"
                                "<leaf name='number'><type name='int8'/></leaf>";

TEST(KindTable, ARestrictionOfEveryKindIsCheckedAndCopiedAndFreedInItsOwnWay)
{
    ASSERT_EQ(std::size(kRestrictions), size_t{ZRT_CONS_KIND_COUNT});
    for (const Restriction &row : kRestrictions) {
        SCOPED_TRACE(row.type);
        zrtest::Leaf leaf(row.type, kDefinitions);
        ASSERT_NE(leaf.node(), nullptr);
        ZrtConsSlot *slot = leaf.type()->constraints;
        ASSERT_EQ(slot->kind, row.kind);
        EXPECT_EQ(leaf.Check(row.good), ZR_OK);
        EXPECT_EQ(leaf.Check(row.bad), row.status);

        // A copy stands for the body that it was made from.
        zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
            ZrCtx *ctx = leaf.context();
            void *copy = memory.Run(
                [&] { return ZRT_CONS_GetConsDataCopyBodyFunc(row.kind)(ctx, slot->body); });
            EXPECT_EQ(copy == nullptr, memory.Failed());
            if (copy == nullptr)
                return;
            std::swap(slot->body, copy);
            EXPECT_EQ(leaf.Check(row.good), ZR_OK);
            EXPECT_EQ(leaf.Check(row.bad), row.status);
            std::swap(slot->body, copy);
            ZRT_CONS_GetConsDataDestroyBodyFunc(row.kind)(ctx, copy);
        });
    }
}

TEST(KindTable, UpdatesOnlyDerivedTypesAndUnions)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        ZrtConsUpdateFunc expected = nullptr;
        if (kind == ZRT_CONS_DERIVED)
            expected = ZRT_CONS_UpdateConsDataDerFromWithDerived;
        if (kind == ZRT_CONS_UNION)
            expected = ZRT_CONS_UpdateConsDataDerFromWithUnion;
        EXPECT_EQ(ZRT_CONS_GetConsDataUpdateDerFromModFunc(kind), expected) << kind;
    }
}

TEST(KindTable, ScansNamesOfBitsAndEnumsAlone)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        ZrtConsScanNameValueFunc expected = nullptr;
        if (kind == ZRT_CONS_BIT)
            expected = ZRT_CONS_ScanNameValuePairsWithBit;
        if (kind == ZRT_CONS_ENUM)
            expected = ZRT_CONS_ScanNameValuePairsWithEnum;
        EXPECT_EQ(ZRT_CONS_GetConsDataScanNameValueFunc(kind), expected) << kind;
    }
}

TEST(KindTable, ScansBoundsOfLengthsAndRangesAlone)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        ZrtConsScanStartEndFunc expected = nullptr;
        if (kind == ZRT_CONS_LENGTH)
            expected = ZRT_CONS_ScanStartEndPairsWithLength;
        if (kind == ZRT_CONS_RANGE)
            expected = ZRT_CONS_ScanStartEndPairsWithRange;
        EXPECT_EQ(ZRT_CONS_GetConsDataScanStartEndFunc(kind), expected) << kind;
    }
}

TEST(KindTable, HasNothingAboveKind9)
{
    for (uint32_t kind : {10u, 11u, 100u, UINT32_MAX}) {
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataDestroyBodyFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataCopyBodyFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataValueRestricationCheckFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataUpdateDerFromModFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataScanNameValueFunc(kind), nullptr);
        EXPECT_EQ(ZRT_CONS_GetConsDataScanStartEndFunc(kind), nullptr);
    }
}

TEST(BaseTypeTable, HasTheDefaultCheckOfEveryType)
{
    const ZrtDefaultCheckFunc range = ZRT_CONS_CheckValStrAgainstDefRestrictRange;
    const ZrtDefaultCheckFunc rows[] = {
        nullptr,                                         // derived
        ZRT_CONS_CheckValStrAgainstDefRestrictBinary,    // binary
        nullptr,                                         // bits
        ZRT_CONS_CheckValStrAgainstDefRestrictBoolean,   // boolean
        ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64, // decimal64
        ZRT_CONS_CheckValStrAgainstDefRestrictEmpty,     // empty
        nullptr,                                         // enumeration
        nullptr,                                         // identityref
        nullptr,                                         // instance-identifier
        range,                                           // int8
        range,                                           // int16
        range,                                           // int32
        range,                                           // int64
        nullptr,                                         // leafref
        ZRT_CONS_CheckValStrAgainstDefRestrictLength,    // string
        range,                                           // uint8
        range,                                           // uint16
        range,                                           // uint32
        range,                                           // uint64
        nullptr,                                         // union
    };
    for (uint32_t type = 0; type < ZRT_TYPE_NONE; ++type)
        EXPECT_EQ(ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(type), rows[type]) << type;
    EXPECT_EQ(ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(20), nullptr);
    EXPECT_EQ(ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(UINT32_MAX), nullptr);
}

TEST(DerivedCopy, HasTheNamesAndIsNotResolved)
{
    zrtest::TestContext ctx;
    ASSERT_EQ(ctx.LoadBody("m", Typedefs(1, "int8")), ZR_OK);
    DerivedBody derived(ctx, "m", "t1");
    ASSERT_EQ(ZRT_CONS_UpdateConsDataDerFromWithDerived(derived.body, ctx.Module("m")), ZR_OK);
    auto *copy =
        static_cast<ZrtConsDerived *>(ZRT_CONS_CopyConsDataBodyWithDerived(ctx, derived.body));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->moduleName, derived.body->moduleName); // interned: the same text
    EXPECT_EQ(copy->typedefName, derived.body->typedefName);
    EXPECT_EQ(copy->resolved, nullptr);
    ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
}

TEST(DerivedCopy, IntoAnotherContextIsNullWhicheverAllocationFails)
{
    zrtest::TestContext ctx;
    ZrtConsDerived body = {"m", "t1", nullptr};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        void *copy = memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithDerived(ctx, &body); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, copy);
    });
    EXPECT_EQ(points, 5u); // the body, and two blocks for each name
}

TEST(DerivedName, IsReadFromTheBodyAndNullWithoutOne)
{
    zrtest::TestContext ctx;
    DerivedBody derived(ctx, "m", "t1");
    const char *moduleName = "?";
    EXPECT_STREQ(ZRT_CONS_GetConsDataInheritedTypDefName(derived.body, &moduleName), "t1");
    EXPECT_STREQ(moduleName, "m");
    EXPECT_EQ(ZRT_CONS_GetConsDataInheritedTypDefName(nullptr, &moduleName), nullptr);
    EXPECT_EQ(moduleName, nullptr);
    EXPECT_STREQ(ZRT_CONS_GetConsDataInheritedTypDefName(derived.body, nullptr), "t1");
}

TEST(LeafrefPath, IsReadFromTheBody)
{
    ZrtConsPath body = {"/m:a", 1};
    EXPECT_STREQ(ZRT_CONS_GetConsDataLeafrefPath(&body), "/m:a");
    EXPECT_EQ(ZRT_CONS_GetConsDataLeafrefPath(nullptr), nullptr);
}

TEST(LeafrefCopy, HasThePathAndRequireInstance)
{
    zrtest::TestContext ctx;
    ZrtConsPath body = {"/m:a", 1};
    auto *copy = static_cast<ZrtConsPath *>(ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body));
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy->path, "/m:a");
    EXPECT_NE(copy->path, body.path);
    EXPECT_EQ(copy->requireInstance, 1u);
    ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
}

TEST(LeafrefCopy, IsNullWhicheverAllocationFails)
{
    zrtest::TestContext ctx;
    ZrtConsPath body = {"/m:a", 1};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        void *copy = memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
    });
    EXPECT_EQ(points, 3u); // the body, and two blocks for the path
}

TEST(LeafrefCopy, HasThePredicatesOfAPathThatIsKeptWhole)
{
    zrtest::TestContext ctx;
    ZrtConsFullPath body = {{"/m:l/a", 1 | ZRT_PATH_HAS_PREDICATES}, "/m:l[m:k=current()/../b]/a"};
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        auto *copy = static_cast<ZrtConsPath *>(
            memory.Run([&] { return ZRT_CONS_CopyConsDataBodyWithPath(ctx, &body); }));
        ASSERT_EQ(copy == nullptr, memory.Failed());
        if (copy != nullptr) {
            EXPECT_STREQ(copy->path, body.path);
            EXPECT_STREQ(zr::FullPathOf(copy)->fullPath, body.fullPath);
            EXPECT_EQ(copy->requireInstance, body.requireInstance);
        }
        ZRT_CONS_DestroyConsDataBodyWithPath(ctx, copy);
    });
    EXPECT_EQ(points, 5u); // the body, and two blocks for each path
}

} // namespace
