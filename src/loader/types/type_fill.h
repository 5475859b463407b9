// SPDX-License-Identifier: Apache-2.0
// Filling the constraint slots of a type from the children of its statement.
//
// Counting the children leaves each kind's mark bit in the `_private` word of the elements; the
// fill functions find the children of their kind by that mark, in document order.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "model/type_records.h"

// The marks of the constraint kinds, bits of an element's `_private` word.
enum ZrtTypeMark : uint32_t {
    ZRT_MARK_BASE = 0x001,
    ZRT_MARK_BIT = 0x002,
    ZRT_MARK_ENUM = 0x004,
    ZRT_MARK_FRACTION = 0x008,
    ZRT_MARK_LENGTH = 0x010,
    ZRT_MARK_PATH = 0x020,
    ZRT_MARK_PATTERN = 0x040,
    ZRT_MARK_RANGE = 0x080,
    ZRT_MARK_UNION = 0x200
};

// Fills a new body from the type statement `element`, which has `count` children of the kind.
using ZrtConsFillFunction = uint32_t(ZrMod *module, ZrtRealType *type, void *body, xmlNode *element,
                                     uint32_t count);
using ZrtConsFillFunc = ZrtConsFillFunction *;

// Fills one item from its element. `isExplicit` is where enums and bits note that their number is
// given, null for other kinds.
using ZrtItemLoadFunction = uint32_t(ZrMod *module, xmlNode *element, void *item,
                                     uint8_t *isExplicit);
using ZrtItemLoadFunc = ZrtItemLoadFunction *;

struct ZrtSegFiller { // one walk over the children of a kind
    uint32_t itemCount;
    uint32_t itemSize; // bytes
    uint32_t mark;
    ZrtItemLoadFunc loadItem;
};

// The children of a type statement (type_marks.cpp).

namespace zr {

// The mark of a ZrtConsKind; 0 for the typedef reference, which has no element, and for no kind.
uint32_t TypeMarkOf(uint32_t kind);
// Counts the restrictions among the children of a type statement and marks them: ZR_OK, or
// ZR_ERR_INVALID when there are more than 65,535 of a kind.
uint32_t CountAndMarkRestrictions(xmlNode *element, ZrtTypeSubElemCount *counters);
bool HasTypeMark(const xmlNode *element, uint32_t mark);
// The argument of the first child with the kind's mark, or null.
const char *MarkedChildArgument(const xmlNode *element, uint32_t kind);
// What a type of that ZrtBuiltInType says with "require-instance", as a bit of ZrtRealType::flags;
// 0 where it says nothing, and in contexts without ZR_CTX_STANDARD (type_fill.cpp).
uint16_t ReadInstanceFlags(const ZrMod *module, const xmlNode *element, uint32_t baseType);

// What the parts of a type say beside themselves (type_notes.cpp).

// How many notes the marked children of a type statement make; 0 in contexts without
// ZR_CTX_STANDARD.
uint32_t CountTypeNotes(const ZrMod *module, const xmlNode *element);
// Fills the notes of a type that has room for them behind its slots. ZR_OK; ZR_ERR_NO_MEMORY;
// ZR_ERR_INVALID for a statement that is malformed or repeated, which is recorded, and for more
// than 65,535 notes.
uint32_t FillTypeNotes(ZrMod *module, ZrtRealType *type, xmlNode *element, uint32_t count);

} // namespace zr

extern "C" {
// The first attribute of the first child element with that name; null without one and for null
// arguments. For callers outside the library.
ZR_API const char *ZRT_LOADER_GetMatchChildFirstMatchedValStr(const xmlNode *element,
                                                              const char *name);
// Sets the four fields.
ZR_API void ZRT_LOADER_InitSegFiller(ZrtSegFiller *filler, uint32_t itemCount, uint32_t itemSize,
                                     uint32_t mark, ZrtItemLoadFunc loadItem);
// Loads one item per marked child, up to the item count: ZR_OK or the first failure of an item.
// `explicitFlags` has a byte an item or is null.
ZR_API uint32_t ZRT_LOADER_FillTypeConstraintSeg(ZrMod *module, xmlNode *element,
                                                 const ZrtSegFiller *filler, void *items,
                                                 uint8_t *explicitFlags);

// The kinds (type_fill.cpp).

// Makes and fills a slot for every kind that was counted, in the order of the kinds. ZR_OK,
// ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for a restriction that is malformed or refers to a prefix
// that is not known.
ZR_API uint32_t ZRT_LOADER_FillAllTypeConstraint(ZrMod *module, ZrtRealType *type, xmlNode *element,
                                                 const ZrtTypeSubElemCount *counters);
// The fill function of a ZrtConsKind; null for no kind. For callers outside the library.
ZR_API ZrtConsFillFunc ZRT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind);

// The fill functions; the same statuses as for all kinds together.
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllDerivedSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllBaseSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllBitSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllEnumSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllFractionSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllLengthSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllPathSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllPatternSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllRangeSeg;
ZR_API ZrtConsFillFunction ZRT_LOADER_FillConsDataAndAllUnionSeg;

// One item of the kinds that hold several: a zeroed ZrsIdentBase, ZrtBitItem, ZrtEnumItem,
// ZrtPatternItem or ZrtRealType.
ZR_API ZrtItemLoadFunction ZRT_LOADER_FillOneConsSegBase;
ZR_API ZrtItemLoadFunction ZRT_LOADER_FillOneConsSegBit;
ZR_API ZrtItemLoadFunction ZRT_LOADER_FillOneConsSegEnum;
ZR_API ZrtItemLoadFunction ZRT_LOADER_FillOneConsSegPattern;
ZR_API ZrtItemLoadFunction ZRT_LOADER_FillOneConsSegUnion;

// Gives each enum of the body its "description"; only called when descriptions are kept.
ZR_API uint32_t ZR_LOADER_FillDescWithAllEnum(ZrMod *module, ZrtConsEnum *body, xmlNode *element);

// The ZrtBuiltInType of exactly a built-in type's name; ZRT_TYPE_DERIVED for every other name
// (type_statements.cpp).
ZR_API uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name);
}
