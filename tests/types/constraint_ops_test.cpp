#include "types/constraints.h"

#include <gtest/gtest.h>

#include "types/default_checks.h"

namespace {

struct KindRow {
    ZrtConsCreateFunc create;
    ZrtConsDestroyFunc destroy;
    ZrtConsCopyFunc copy;
    ZrtConsCheckFunc check;
};

const KindRow g_rows[] = {
    {ZRT_CONS_CreateConsDataBodyWithDerived, ZRT_CONS_DestroyConsDataBodyWithDerived,
     ZRT_CONS_CopyConsDataBodyWithDerived, ZRT_CONS_ValidateValueNodeAgainstDataDerived},
    {ZRT_CONS_CreateConsDataBodyWithBase, ZRT_CONS_DestroyConsDataBodyWithBase,
     ZRT_CONS_CopyConsDataBodyWithBase, ZRT_CONS_ValidateValueNodeAgainstDataBase},
    {ZRT_CONS_CreateConsDataBodyWithBit, ZRT_CONS_DestroyConsDataBodyWithBit,
     ZRT_CONS_CopyConsDataBodyWithBit, ZRT_CONS_ValidateValueNodeAgainstDataBit},
    {ZRT_CONS_CreateConsDataBodyWithEnum, ZRT_CONS_DestroyConsDataBodyWithEnum,
     ZRT_CONS_CopyConsDataBodyWithEnum, ZRT_CONS_ValidateValueNodeAgainstDataEnum},
    {ZRT_CONS_CreateConsDataBodyWithFraction, ZRT_CONS_DestroyConsDataBodyWithNoDynamic,
     ZRT_CONS_CopyConsDataBodyWithFraction, ZRT_CONS_ValidateValueNodeAgainstDataFraction},
    {ZRT_CONS_CreateConsDataBodyWithRange, ZRT_CONS_DestroyConsDataBodyWithRange,
     ZRT_CONS_CopyConsDataBodyWithRange, ZRT_CONS_ValidateValueNodeAgainstDataLength},
    {ZRT_CONS_CreateConsDataBodyWithPath, ZRT_CONS_DestroyConsDataBodyWithPath,
     ZRT_CONS_CopyConsDataBodyWithPath, ZRT_CONS_ValidateValueNodeAgainstDataPath},
    {ZRT_CONS_CreateConsDataBodyWithPattern, ZRT_CONS_DestroyConsDataBodyWithPattern,
     ZRT_CONS_CopyConsDataBodyWithPattern, ZRT_CONS_ValidateValueNodeAgainstDataPattern},
    {ZRT_CONS_CreateConsDataBodyWithRange, ZRT_CONS_DestroyConsDataBodyWithRange,
     ZRT_CONS_CopyConsDataBodyWithRange, ZRT_CONS_ValidateValueNodeAgainstDataRange},
    {ZRT_CONS_CreateConsDataBodyWithUnion, ZRT_CONS_DestroyConsDataBodyWithUnion,
     ZRT_CONS_CopyConsDataBodyWithUnion, ZRT_CONS_ValidateValueNodeAgainstDataUnion},
};

TEST(KindTable, HasTheOperationsOfEveryKind)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        EXPECT_EQ(ZRT_CONS_GetConsDataCreateBodyFunc(kind), g_rows[kind].create) << kind;
        EXPECT_EQ(ZRT_CONS_GetConsDataDestroyBodyFunc(kind), g_rows[kind].destroy) << kind;
        EXPECT_EQ(ZRT_CONS_GetConsDataCopyBodyFunc(kind), g_rows[kind].copy) << kind;
        EXPECT_EQ(ZRT_CONS_GetConsDataValueRestricationCheckFunc(kind), g_rows[kind].check) << kind;
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
