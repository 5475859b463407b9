// The body that ranges and lengths share; a length is a range of unsigned counts.
#include "types/constraint_body.h"
#include "types/constraints.h"
#include "types/range_segments.h"

void *ZRT_CONS_CreateConsDataBodyWithRange(uint32_t)
{
    // The number of segments is known only when the expression is read.
    return ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(ZrtConsRange), 0, 0);
}

void ZRT_CONS_DestroyConsDataBodyWithRange(ZrCtx *, void *body)
{
    auto *range = static_cast<ZrtConsRange *>(body);
    if (range == nullptr)
        return;
    zr::Free(range->segments);
    zr::Free(range);
}

void *ZRT_CONS_CopyConsDataBodyWithRange(ZrCtx *, const void *body)
{
    static_assert(offsetof(ZrtConsRange, segments) == zr::kBodyArrayOffset);
    const auto *source = static_cast<const ZrtConsRange *>(body);
    if (source == nullptr)
        return nullptr;
    auto *copy = static_cast<ZrtConsRange *>(ZRT_CONS_CreateConsDataBodyAndSegSize(
        sizeof(ZrtConsRange), source->segCount, source->segSize));
    if (copy == nullptr)
        return nullptr;
    copy->segCount = source->segCount;
    copy->segSize = source->segSize;
    if (copy->segments != nullptr)
        std::memcpy(copy->segments, source->segments, size_t{source->segCount} * source->segSize);
    return copy;
}

namespace {

uint32_t ScanSegments(const void *body, uint32_t baseType, ZrStartEndScanFunc callback,
                      void *userData)
{
    const auto *range = static_cast<const ZrtConsRange *>(body);
    for (uint32_t i = 0; i < range->segCount; ++i) {
        ZrtGenericSeg segment = zr::ReadSegment(range, i, baseType);
        uint64_t start = segment.start;
        uint64_t end = segment.end;
        uint32_t result = callback(start, end, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace

uint32_t ZRT_CONS_ScanStartEndPairsWithLength(const void *body, uint32_t,
                                              ZrStartEndScanFunc callback, void *userData)
{
    return ScanSegments(body, ZRT_TYPE_UINT32, callback, userData);
}

uint32_t ZRT_CONS_ScanStartEndPairsWithRange(const void *body, uint32_t baseType,
                                             ZrStartEndScanFunc callback, void *userData)
{
    return ScanSegments(body, baseType, callback, userData);
}
