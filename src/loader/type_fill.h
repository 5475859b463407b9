// Filling the constraint slots of a type from the children of its statement.
//
// Counting the children leaves each kind's mark bit in the `_private` word of the elements; the
// fill functions find the children of their kind by that mark, in document order.
#pragma once

#include <libxml/tree.h>

#include <cstdint>

#include "loader/statements.h"
#include "model/type_records.h"

// Fills a new body from the type statement `element`, which has `count` children of the kind.
typedef uint32_t (*ZrtConsFillFunc)(ZrMod *module, ZrtRealType *type, void *body, xmlNode *element,
                                    uint32_t count);

// Fills one item from its element. `isExplicit` is where enums and bits note that their number is
// given, null for other kinds.
typedef uint32_t (*ZrtItemLoadFunc)(ZrMod *module, xmlNode *element, void *item,
                                    uint8_t *isExplicit);

struct ZrtSegFiller { // one walk over the children of a kind
    uint32_t itemCount;
    uint32_t itemSize; // bytes
    uint32_t mark;
    ZrtItemLoadFunc loadItem;
};

extern "C" {
ZR_API uint32_t ZRT_LOADER_FillAllTypeConstraint(ZrMod *module, ZrtRealType *type, xmlNode *element,
                                                 const ZrtTypeSubElemCount *counters);
ZR_API ZrtConsFillFunc ZRT_LOADER_GetConsDataFillAllSegFunc(uint32_t kind);
// The first attribute of the first child element with that name, or null.
ZR_API const char *ZRT_LOADER_GetMatchChildFirstMatchedValStr(const xmlNode *element,
                                                              const char *name);

ZR_API void ZRT_LOADER_InitSegFiller(ZrtSegFiller *filler, uint32_t itemCount, uint32_t itemSize,
                                     uint32_t mark, ZrtItemLoadFunc loadItem);
// Loads one item per marked child, up to the item count. `explicitFlags` has a byte an item or is
// null.
ZR_API uint32_t ZRT_LOADER_FillTypeConstraintSeg(ZrMod *module, xmlNode *element,
                                                 const ZrtSegFiller *filler, void *items,
                                                 uint8_t *explicitFlags);

ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllDerivedSeg(ZrMod *module, ZrtRealType *type,
                                                        void *body, xmlNode *element,
                                                        uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllBaseSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                     xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllBitSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                    xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllEnumSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                     xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllFractionSeg(ZrMod *module, ZrtRealType *type,
                                                         void *body, xmlNode *element,
                                                         uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllLengthSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                       xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllPathSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                     xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllPatternSeg(ZrMod *module, ZrtRealType *type,
                                                        void *body, xmlNode *element,
                                                        uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllRangeSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                      xmlNode *element, uint32_t count);
ZR_API uint32_t ZRT_LOADER_FillConsDataAndAllUnionSeg(ZrMod *module, ZrtRealType *type, void *body,
                                                      xmlNode *element, uint32_t count);

ZR_API uint32_t ZRT_LOADER_FillOneConsSegBase(ZrMod *module, xmlNode *element, void *item,
                                              uint8_t *isExplicit);
ZR_API uint32_t ZRT_LOADER_FillOneConsSegBit(ZrMod *module, xmlNode *element, void *item,
                                             uint8_t *isExplicit);
ZR_API uint32_t ZRT_LOADER_FillOneConsSegEnum(ZrMod *module, xmlNode *element, void *item,
                                              uint8_t *isExplicit);
ZR_API uint32_t ZRT_LOADER_FillOneConsSegPattern(ZrMod *module, xmlNode *element, void *item,
                                                 uint8_t *isExplicit);
ZR_API uint32_t ZRT_LOADER_FillOneConsSegUnion(ZrMod *module, xmlNode *element, void *item,
                                               uint8_t *isExplicit);

// Gives each enum of the body its "description"; only called when descriptions are kept.
ZR_API uint32_t ZR_LOADER_FillDescWithAllEnum(ZrMod *module, ZrtConsEnum *body, xmlNode *element);
}

namespace zr {

// The mark bit of a constraint kind; 0 for the typedef reference, which has no element.
uint32_t TypeMarkOf(uint32_t kind);
// Counts the restrictions among the children of a type statement and marks them; 22 when there
// are more than 65,535 of a kind.
uint32_t CountAndMarkRestrictions(xmlNode *element, ZrtTypeSubElemCount *counters);
// The first child element with that name, or null.
xmlNode *FirstChildNamed(const xmlNode *element, const char *name);
bool HasTypeMark(const xmlNode *element, uint32_t mark);
// The argument of the first child with the kind's mark, or null.
const char *MarkedChildArgument(const xmlNode *element, uint32_t kind);

} // namespace zr

// The parsers of "type" and "typedef", and the names of the built-in types.

extern "C" {
ZR_API uint32_t ZRT_LOADER_ParseTypeStmt(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                         void *destination);
ZR_API uint32_t ZRT_LOADER_ParseTypeDefStmt(ZrMod *module, xmlNode *element,
                                            uint32_t parentStatement, void *destination);
// ZrtBuiltInType of exactly a built-in type's name; 0 for every other name.
ZR_API uint32_t ZRT_LOADER_GetBaseTypeFromTypeName(const char *name);
}
