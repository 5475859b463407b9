// The conditions that hang on modules' members and nodes: if-feature entries (RFC 7950, section
// 7.20.2) and must records (section 7.5.3), in counted arrays. Strings are interned, so equality is
// equality of pointers. Statuses are 0, 22 for a bad argument and 12 when memory runs out; a
// failed Fill leaves no string behind.
#pragma once

#include <cstdint>

#include "foundation/dict.h"
#include "model/module_records.h"

extern "C" {
// Both names are required.
ZR_API uint32_t ZRS_NODE_FillIfFeature(ZrDict *dict, ZrsIfFeature *entry, const char *moduleName,
                                       const char *featureName);
ZR_API void ZRS_NODE_ClearIfFeature(ZrDict *dict, ZrsIfFeature *entry);
ZR_API void ZRS_NODE_FreeIfFeatures(ZrDict *dict, ZrsIfFeature *array, uint32_t count);
ZR_API uint32_t ZRS_NODE_CheckTwoIfFeatureSame(const ZrsIfFeature *a, const ZrsIfFeature *b);
// 1 when both arrays hold the same entries in the same order.
ZR_API uint32_t ZRS_NODE_CheckTwoIfFeatureArraySame(const ZrsIfFeature *a, uint32_t countA,
                                                    const ZrsIfFeature *b, uint32_t countB);
// The names are interned ones; null when there is no such entry.
ZR_API ZrsIfFeature *ZRS_NODE_FindIfFeature(ZrsIfFeature *array, uint32_t count,
                                            const char *moduleName, const char *featureName);
ZR_API uint32_t ZRS_NODE_AppendOneIfFeat(ZrDict *dict, ZrsIfFeature **array, uint16_t *count,
                                         const char *moduleName, const char *featureName);
// A copy of the array; null when it is empty or memory runs out.
ZR_API ZrsIfFeature *ZRS_NODE_CopyIfFeaturesArray(ZrDict *dict, const ZrsIfFeature *array,
                                                  uint32_t count);

// The condition is required, the others may be null.
ZR_API uint32_t ZRS_NODE_FillMust(ZrDict *dict, ZrsMust *record, const char *condition,
                                  const char *errorMessage, const char *errorAppTag);
ZR_API void ZRS_NODE_ClearMust(ZrDict *dict, ZrsMust *record);
ZR_API void ZRS_NODE_FreeMusts(ZrDict *dict, ZrsMust *array, uint32_t count);
// Moves the strings; the destination must hold none.
ZR_API void ZRS_NODE_AssignMoveMust(ZrsMust *destination, ZrsMust *source);
// 1 when the conditions are the same; message and tag do not matter.
ZR_API uint32_t ZRS_NODE_CheckTwoMustSame(const ZrsMust *a, const ZrsMust *b);
ZR_API uint32_t ZRS_NODE_AppendOneMust(ZrDict *dict, ZrsMust **array, uint16_t *count,
                                       const ZrsMust *source);
ZR_API ZrsMust *ZRS_NODE_CopyMustsArray(ZrDict *dict, const ZrsMust *array, uint32_t count);
// Rebuilds the array without the records whose condition is null. `newCount` is the number that is
// left, and what the caller then sets as the count. Failures that leave the array as it was: 12 for
// the new block, 22 when more records are left than `newCount`. A record that cannot be copied
// gives 12 with all musts lost: the slot is null then, and the owner must set its count to 0.
ZR_API uint32_t ZRS_NODE_SubtractMustsArray(ZrDict *dict, ZrsMust **array, uint32_t oldCount,
                                            uint32_t newCount);
}
