// The slots of a type, kind by kind.
#include "loader/type_fill.h"

#include <iterator>

#include "types/constraint_ops.h"

namespace {

constexpr ZrtConsFillFunc g_fillFuncs[] = {
    ZRT_LOADER_FillConsDataAndAllDerivedSeg,  // derived
    ZRT_LOADER_FillConsDataAndAllBaseSeg,     // base
    ZRT_LOADER_FillConsDataAndAllBitSeg,      // bit
    ZRT_LOADER_FillConsDataAndAllEnumSeg,     // enum
    ZRT_LOADER_FillConsDataAndAllFractionSeg, // fraction-digits
    ZRT_LOADER_FillConsDataAndAllLengthSeg,   // length
    ZRT_LOADER_FillConsDataAndAllPathSeg,     // path
    ZRT_LOADER_FillConsDataAndAllPatternSeg,  // pattern
    ZRT_LOADER_FillConsDataAndAllRangeSeg,    // range
    ZRT_LOADER_FillConsDataAndAllUnionSeg,    // type
};
static_assert(std::size(g_fillFuncs) == ZRT_CONS_KIND_COUNT);

// The segments of a length or range are counted only when the expression is read.
uint32_t ItemsToCreate(uint32_t kind, uint32_t count)
{
    return kind == ZRT_CONS_LENGTH || kind == ZRT_CONS_RANGE ? 0 : count;
}

uint32_t FillSlot(ZrMod *module, ZrtRealType *type, uint32_t kind, uint32_t count, xmlNode *element)
{
    ZrtConsSlot &slot = type->constraints[type->consCount];
    if (slot.body != nullptr)
        return ZR_ERR_INVALID;
    slot.body = ZRT_CONS_GetConsDataCreateBodyFunc(kind)(ItemsToCreate(kind, count));
    if (slot.body == nullptr)
        return ZR_ERR_NO_MEMORY;
    slot.kind = kind;
    ++type->consCount;
    return ZRT_LOADER_GetConsDataFillAllSegFunc(kind)(module, type, slot.body, element, count);
}

} // namespace

ZrtConsFillFunc ZRT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind)
{
    return kind < std::size(g_fillFuncs) ? g_fillFuncs[kind] : nullptr;
}

uint32_t ZRT_LOADER_FillAllTypeConstraint(ZrMod *module, ZrtRealType *type, xmlNode *element,
                                          const ZrtTypeSubElemCount *counters)
{
    for (uint32_t kind = 0; kind < ZRT_CONS_KIND_COUNT; ++kind) {
        uint32_t count = counters->counts[kind];
        if (count == 0 || ZRT_LOADER_GetConsDataFillAllSegFunc(kind) == nullptr)
            continue;
        if (type->consCount >= counters->counts[ZRT_CONS_KIND_COUNT])
            return ZR_ERR_INVALID;
        uint32_t status = FillSlot(module, type, kind, count, element);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

void ZRT_LOADER_InitSegFiller(ZrtSegFiller *filler, uint32_t itemCount, uint32_t itemSize,
                              uint32_t mark, ZrtItemLoadFunc loadItem)
{
    *filler = {itemCount, itemSize, mark, loadItem};
}

uint32_t ZRT_LOADER_FillTypeConstraintSeg(ZrMod *module, xmlNode *element,
                                          const ZrtSegFiller *filler, void *items,
                                          uint8_t *explicitFlags)
{
    auto *item = static_cast<unsigned char *>(items);
    uint32_t index = 0;
    for (xmlNode *child = element->children; child != nullptr && index < filler->itemCount;
         child = child->next) {
        if (!zr::HasTypeMark(child, filler->mark))
            continue;
        uint8_t *isExplicit = explicitFlags != nullptr ? explicitFlags + index : nullptr;
        uint32_t status = filler->loadItem(module, child, item, isExplicit);
        if (status != ZR_OK)
            return status;
        item += filler->itemSize;
        ++index;
    }
    return ZR_OK;
}
