// SPDX-License-Identifier: Apache-2.0
// The public queries and scans on types.
#include <zrschema/type.h>

#include <iterator>

#include "foundation/array.h"
#include "model/scope.h"
#include "types/chains.h"
#include "types/constraints.h"
#include "types/range.h"
#include "types/real_type.h"
#include "types/type_notes.h"

namespace {

struct ScanRow {
    ZrtConsKind kind;
    ZrtConsScanNameValueFunc names;
    ZrtConsScanStartEndFunc bounds;
};

// clang-format off
constexpr ScanRow kScans[] = {
    {ZRT_CONS_DERIVED,  nullptr,                             nullptr},
    {ZRT_CONS_BASE,     nullptr,                             nullptr},
    {ZRT_CONS_BIT,      ZRT_CONS_ScanNameValuePairsWithBit,  nullptr},
    {ZRT_CONS_ENUM,     ZRT_CONS_ScanNameValuePairsWithEnum, nullptr},
    {ZRT_CONS_FRACTION, nullptr,                             nullptr},
    {ZRT_CONS_LENGTH,   nullptr,                             ZRT_CONS_ScanStartEndPairsWithLength},
    {ZRT_CONS_PATH,     nullptr,                             nullptr},
    {ZRT_CONS_PATTERN,  nullptr,                             nullptr},
    {ZRT_CONS_RANGE,    nullptr,                             ZRT_CONS_ScanStartEndPairsWithRange},
    {ZRT_CONS_UNION,    nullptr,                             nullptr},
};
// clang-format on
static_assert(zr::RowsInOrder(kScans, &ScanRow::kind, 0, ZRT_CONS_KIND_COUNT));

template <typename Body> const Body *BodyOf(const ZrtRealType *type, uint32_t kind)
{
    return static_cast<const Body *>(ZRT_TYPE_GetTypeConsDataByConsType(type, kind));
}

// Calls `scan(slot)` per slot until it returns non-zero.
template <typename Scan> uint32_t ScanSlots(const ZrtRealType *type, Scan scan)
{
    for (uint32_t i = 0; i < type->consCount; ++i) {
        uint32_t result = scan(type->constraints[i]);
        if (result != 0)
            return result;
    }
    return 0;
}

// Calls `scan(item)` per item of a counted body, which may be null, until it returns non-zero.
template <typename Body, typename Scan> uint32_t ScanItems(const Body *body, Scan scan)
{
    if (body == nullptr)
        return 0;
    for (uint32_t i = 0; i < body->count; ++i) {
        uint32_t result = scan(body->items[i]);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace

ZrtConsScanNameValueFunc ZRT_CONS_GetConsDataScanNameValueFunc(uint32_t kind)
{
    return kind < std::size(kScans) ? kScans[kind].names : nullptr;
}

ZrtConsScanStartEndFunc ZRT_CONS_GetConsDataScanStartEndFunc(uint32_t kind)
{
    return kind < std::size(kScans) ? kScans[kind].bounds : nullptr;
}

uint32_t ZR_TYPE_GetBuiltInBaseType(const ZrtRealType *type)
{
    return type != nullptr ? type->baseType : uint32_t{ZRT_TYPE_NONE};
}

uint32_t ZR_TYPE_GetDecimal64Fraction(const ZrtRealType *type)
{
    return ZRT_TYPE_GetTypeConsDataFractionVal(type);
}

const char *ZR_TYPE_GetTypeConsDataLeafrefPath(const ZrtRealType *type)
{
    return ZRT_CONS_GetConsDataLeafrefPath(ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_PATH));
}

const char *ZR_TYPE_GetLeafrefPathWithPredicates(const ZrtRealType *type)
{
    const auto *path = BodyOf<ZrtConsPath>(type, ZRT_CONS_PATH);
    const ZrtConsFullPath *full = zr::FullPathOf(path);
    return full != nullptr ? full->fullPath : ZRT_CONS_GetConsDataLeafrefPath(path);
}

uint32_t ZR_TYPE_GetLeafrefRequireInstance(const ZrtRealType *type)
{
    const auto *path = BodyOf<ZrtConsPath>(type, ZRT_CONS_PATH);
    return path != nullptr ? path->requireInstance & ~ZRT_PATH_HAS_PREDICATES : 0;
}

uint32_t ZR_TYPE_GetRequireInstance(const ZrtRealType *type)
{
    if (type == nullptr || (type->flags & ZRT_INSTANCE_BITS) == 0)
        return ZR_INSTANCE_NOT_SAID;
    return (type->flags & ZRT_INSTANCE_REQUIRED) != 0 ? ZR_INSTANCE_REQUIRED : ZR_INSTANCE_OPTIONAL;
}

uint32_t ZR_TYPE_IterRealTypeDerivedName(const ZrtRealType *type, const ZrCtx *ctx,
                                         ZrDerivedTypeScanFunc callback, void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    if (type->baseType != ZRT_TYPE_DERIVED)
        return callback(nullptr, nullptr, type, userData);
    zr::TypedefChain chain(ctx, type, zr::TypedefChain::kByName);
    while (chain.Next()) {
        if (chain.ModuleName() == nullptr || chain.TypedefName() == nullptr)
            return ZR_ERR_INVALID;
        uint32_t result = callback(chain.ModuleName(), chain.TypedefName(), chain.Type(), userData);
        if (result != 0)
            return result;
    }
    // The longest chain that is followed counts as one without an end.
    return chain.Links() < zr::kMaxChainLinks ? uint32_t{ZR_OK} : uint32_t{ZR_ERR_INVALID};
}

uint32_t ZR_TYPE_ScanNameValuePair(const ZrtRealType *type, ZrNameValueScanFunc callback,
                                   void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanSlots(type, [=](const ZrtConsSlot &slot) -> uint32_t {
        ZrtConsScanNameValueFunc scan = ZRT_CONS_GetConsDataScanNameValueFunc(slot.kind);
        return scan != nullptr && slot.body != nullptr ? scan(slot.body, callback, userData) : 0;
    });
}

uint32_t ZR_TYPE_ScanStartEndPair(const ZrtRealType *type, ZrStartEndScanFunc callback,
                                  void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanSlots(type, [=](const ZrtConsSlot &slot) -> uint32_t {
        ZrtConsScanStartEndFunc scan = ZRT_CONS_GetConsDataScanStartEndFunc(slot.kind);
        return scan != nullptr && slot.body != nullptr
                   ? scan(slot.body, type->baseType, callback, userData)
                   : 0;
    });
}

namespace {

ZrTypeBound Bound(uint64_t number, uint32_t flags, uint32_t minFlag, uint32_t maxFlag,
                  uint32_t fractionDigits)
{
    if ((flags & (minFlag | maxFlag)) != 0)
        return {(flags & minFlag) != 0 ? uint32_t{ZR_BOUND_MIN} : uint32_t{ZR_BOUND_MAX}, 0, 0};
    return {ZR_BOUND_NUMBER, fractionDigits, number};
}

uint32_t ScanBoundsOf(const ZrtConsRange *range, uint32_t baseType, uint32_t fractionDigits,
                      ZrBoundsScanFunc callback, void *userData)
{
    for (uint32_t i = 0; i < range->segCount; ++i) {
        ZrtGenericSeg segment = zr::ReadSegment(range, i, baseType);
        uint32_t flags = segment.flags;
        bool isOwn = (flags & ZRT_SEG_DECIMAL) != 0;
        auto digits = [&](uint32_t shift) {
            return isOwn ? flags >> shift & ZRT_SEG_DIGITS_MASK : fractionDigits;
        };
        ZrTypeBound start = Bound(segment.start, flags, ZRT_SEG_START_MIN, ZRT_SEG_START_MAX,
                                  digits(ZRT_SEG_START_DIGITS_SHIFT));
        ZrTypeBound end = Bound(segment.end, flags, ZRT_SEG_END_MIN, ZRT_SEG_END_MAX,
                                digits(ZRT_SEG_END_DIGITS_SHIFT));
        uint32_t result = callback(&start, &end, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace

uint32_t ZR_TYPE_ScanBounds(const ZrtRealType *type, ZrBoundsScanFunc callback, void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    uint32_t fractionDigits = ZR_TYPE_GetDecimal64Fraction(type);
    return ScanSlots(type, [=](const ZrtConsSlot &slot) -> uint32_t {
        bool isLength = slot.kind == ZRT_CONS_LENGTH;
        if (slot.body == nullptr || (!isLength && slot.kind != ZRT_CONS_RANGE))
            return 0;
        return ScanBoundsOf(static_cast<const ZrtConsRange *>(slot.body),
                            isLength ? uint32_t{ZRT_TYPE_UINT32} : type->baseType,
                            isLength ? 0 : fractionDigits, callback, userData);
    });
}

uint32_t ZR_TYPE_ScanUnionSubType(const ZrtRealType *type, ZrUnionScanFunc callback, void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanItems(BodyOf<ZrtConsUnion>(type, ZRT_CONS_UNION), [=](const ZrtRealType &member) {
        return callback(nullptr, nullptr, &member, userData);
    });
}

uint32_t ZR_TYPE_ScanIdentRefBase(const ZrtRealType *type, ZrIdentBaseScanFunc callback,
                                  void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    const auto *bases = BodyOf<ZrtConsBase>(type, ZRT_CONS_BASE);
    return ScanItems(bases, [=](const ZrsIdentBase &base) {
        return callback(base.moduleName, base.identityName, userData, bases->items);
    });
}

uint32_t ZR_TYPE_ScanPatternInvertMatch(const ZrtRealType *type, ZrPatternScanFunc callback,
                                        void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    const auto *patterns = BodyOf<ZrtConsPattern>(type, ZRT_CONS_PATTERN);
    return ScanItems(patterns, [=](const ZrtPatternItem &item) {
        return callback(item.pattern, item.invertMatch != 0, userData, patterns->items);
    });
}

// The features that bits and enums depend on.

namespace {

struct Name {
    uint32_t kind; // ZRT_CONS_BIT or ZRT_CONS_ENUM; ZRT_CONS_KIND_COUNT when there is none
    uint32_t index;
};

// The name at a place in the order in which ZR_TYPE_ScanNameValuePair() lists names: bits first.
Name NameAt(const ZrtRealType *type, uint32_t index)
{
    const auto *bits = BodyOf<ZrtConsBit>(type, ZRT_CONS_BIT);
    const auto *enums = BodyOf<ZrtConsEnum>(type, ZRT_CONS_ENUM);
    uint32_t bitCount = bits != nullptr ? bits->count : 0;
    if (index < bitCount)
        return {ZRT_CONS_BIT, index};
    if (enums != nullptr && index - bitCount < enums->count)
        return {ZRT_CONS_ENUM, index - bitCount};
    return {ZRT_CONS_KIND_COUNT, 0};
}

// Calls `work(module, feature)` for each feature that a name depends on, until it returns non-zero.
template <typename Work>
uint32_t ForEachFeature(const ZrtRealType *type, const Name &name, Work work)
{
    const ZrtTypeNotes *notes = zr::NotesOf(type);
    uint32_t result = 0;
    for (uint32_t i = 0; notes != nullptr && i < notes->count && result == 0; ++i) {
        const ZrtTypeNote &note = notes->items[i];
        if (note.kind == name.kind && note.index == name.index)
            result = work(note.texts[ZRT_NOTE_MODULE], note.texts[ZRT_NOTE_FEATURE]);
    }
    return result;
}

} // namespace

uint32_t ZR_TYPE_ScanNameIfFeatures(const ZrtRealType *type, uint32_t index,
                                    ZrIfFeatureScanFunc callback, void *userData)
{
    if (type == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return ForEachFeature(type, NameAt(type, index), [=](const char *module, const char *feature) {
        return callback(module, feature, userData);
    });
}

uint32_t ZR_TYPE_IsNameEnabled(const ZrtRealType *type, const ZrCtx *ctx, uint32_t index)
{
    const Name name = NameAt(type, index);
    if (ctx == nullptr || name.kind == ZRT_CONS_KIND_COUNT)
        return 0;
    auto isOff = [=](const char *module, const char *feature) -> uint32_t {
        return !zr::IsFeatureOn(ctx, module, feature);
    };
    return ForEachFeature(type, name, isOff) == 0;
}
