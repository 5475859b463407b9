#include "types/constraints.h"

#include <iterator>

#include "types/default_checks.h"

namespace {

struct KindOps {
    ZrtConsCreateFunc create;
    ZrtConsDestroyFunc destroy;
    ZrtConsCopyFunc copy;
    ZrtConsCheckFunc check;
    ZrtConsUpdateFunc update;
    ZrtConsScanNameValueFunc scanNameValue;
    ZrtConsScanStartEndFunc scanStartEnd;
};

// The names of a kind's functions differ by their suffix alone.
#define CREATE(suffix) ZRT_CONS_CreateConsDataBodyWith##suffix
#define DESTROY(suffix) ZRT_CONS_DestroyConsDataBodyWith##suffix
#define COPY(suffix) ZRT_CONS_CopyConsDataBodyWith##suffix
#define CHECK(suffix) ZRT_CONS_ValidateValueNodeAgainstData##suffix
#define UPDATE(suffix) ZRT_CONS_UpdateConsDataDerFromWith##suffix
#define NAMES(suffix) ZRT_CONS_ScanNameValuePairsWith##suffix
#define BOUNDS(suffix) ZRT_CONS_ScanStartEndPairsWith##suffix

// clang-format off
constexpr KindOps g_kindOps[] = {
//   create            destroy             copy            check            update           names & values  starts & ends
    {CREATE(Derived),  DESTROY(Derived),   COPY(Derived),  CHECK(Derived),  UPDATE(Derived), nullptr,        nullptr},        // derived
    {CREATE(Base),     DESTROY(Base),      COPY(Base),     CHECK(Base),     nullptr,         nullptr,        nullptr},        // base
    {CREATE(Bit),      DESTROY(Bit),       COPY(Bit),      CHECK(Bit),      nullptr,         NAMES(Bit),     nullptr},        // bit
    {CREATE(Enum),     DESTROY(Enum),      COPY(Enum),     CHECK(Enum),     nullptr,         NAMES(Enum),    nullptr},        // enum
    {CREATE(Fraction), DESTROY(NoDynamic), COPY(Fraction), CHECK(Fraction), nullptr,         nullptr,        nullptr},        // fraction-digits
    {CREATE(Range),    DESTROY(Range),     COPY(Range),    CHECK(Length),   nullptr,         nullptr,        BOUNDS(Length)}, // length
    {CREATE(Path),     DESTROY(Path),      COPY(Path),     CHECK(Path),     nullptr,         nullptr,        nullptr},        // path
    {CREATE(Pattern),  DESTROY(Pattern),   COPY(Pattern),  CHECK(Pattern),  nullptr,         nullptr,        nullptr},        // pattern
    {CREATE(Range),    DESTROY(Range),     COPY(Range),    CHECK(Range),    nullptr,         nullptr,        BOUNDS(Range)},  // range
    {CREATE(Union),    DESTROY(Union),     COPY(Union),    CHECK(Union),    UPDATE(Union),   nullptr,        nullptr},        // type
};
// clang-format on
static_assert(std::size(g_kindOps) == ZRT_CONS_KIND_COUNT);

#undef CREATE
#undef DESTROY
#undef COPY
#undef CHECK
#undef UPDATE
#undef NAMES
#undef BOUNDS

constexpr KindOps g_noOps = {};

const KindOps &OpsOf(uint32_t kind)
{
    return kind < std::size(g_kindOps) ? g_kindOps[kind] : g_noOps;
}

constexpr ZrtDefaultCheckFunc g_defaultChecks[] = {
    nullptr,                                         // derived
    ZRT_CONS_CheckValStrAgainstDefRestrictBinary,    // binary
    nullptr,                                         // bits
    ZRT_CONS_CheckValStrAgainstDefRestrictBoolean,   // boolean
    ZRT_CONS_CheckValStrAgainstDefRestrictDecimal64, // decimal64
    ZRT_CONS_CheckValStrAgainstDefRestrictEmpty,     // empty
    nullptr,                                         // enumeration
    nullptr,                                         // identityref
    nullptr,                                         // instance-identifier
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // int8
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // int16
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // int32
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // int64
    nullptr,                                         // leafref
    ZRT_CONS_CheckValStrAgainstDefRestrictLength,    // string
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // uint8
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // uint16
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // uint32
    ZRT_CONS_CheckValStrAgainstDefRestrictRange,     // uint64
    nullptr,                                         // union
};
static_assert(std::size(g_defaultChecks) == ZRT_TYPE_NONE);

} // namespace

ZrtConsCreateFunc ZRT_CONS_GetConsDataCreateBodyFunc(uint32_t kind)
{
    return OpsOf(kind).create;
}

ZrtConsDestroyFunc ZRT_CONS_GetConsDataDestroyBodyFunc(uint32_t kind)
{
    return OpsOf(kind).destroy;
}

ZrtConsCopyFunc ZRT_CONS_GetConsDataCopyBodyFunc(uint32_t kind)
{
    return OpsOf(kind).copy;
}

ZrtConsCheckFunc ZRT_CONS_GetConsDataValueRestricationCheckFunc(uint32_t kind)
{
    return OpsOf(kind).check;
}

ZrtConsUpdateFunc ZRT_CONS_GetConsDataUpdateDerFromModFunc(uint32_t kind)
{
    return OpsOf(kind).update;
}

ZrtConsScanNameValueFunc ZRT_CONS_GetConsDataScanNameValueFunc(uint32_t kind)
{
    return OpsOf(kind).scanNameValue;
}

ZrtConsScanStartEndFunc ZRT_CONS_GetConsDataScanStartEndFunc(uint32_t kind)
{
    return OpsOf(kind).scanStartEnd;
}

ZrtDefaultCheckFunc ZRT_CONS_GetBaseTypeDefRestrictCheckFunc(uint32_t baseType)
{
    return baseType < std::size(g_defaultChecks) ? g_defaultChecks[baseType] : nullptr;
}

void *ZRT_CONS_CreateConsDataBodyAndSegSize(uint32_t bodySize, uint32_t count, uint32_t itemSize)
{
    auto *body = static_cast<unsigned char *>(zr::AllocZeroed(bodySize));
    if (body == nullptr || count == 0 || itemSize == 0)
        return body;
    void *items = zr::AllocZeroed(size_t{count} * itemSize);
    if (items == nullptr) {
        zr::Free(body);
        return nullptr;
    }
    std::memcpy(body + zr::kBodyArrayOffset, &items, sizeof items);
    return body;
}
