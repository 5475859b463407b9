#include "types/constraints.h"

#include <gtest/gtest.h>

#include "support/alloc.h"
#include "types/default_checks.h"
#include "types/leaf.h"

namespace {

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

} // namespace
