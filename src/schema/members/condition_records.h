// SPDX-License-Identifier: Apache-2.0
// The conditions that hang on modules' members and nodes: if-feature entries (RFC 7950, section
// 7.20.2) and must records (section 7.5.3), in counted arrays. Strings are interned, so equality is
// equality of pointers. Statuses are ZR_OK, ZR_ERR_INVALID for a bad argument and
// ZR_ERR_NO_MEMORY; a failed Fill leaves no string behind.
#pragma once

#include <cstdint>

#include "foundation/dict.h"
#include "model/module_records.h"

extern "C" {
// If-features.

// Interns both names, which are required.
ZR_API uint32_t ZRS_NODE_FillIfFeature(ZrDict *dict, ZrsIfFeature *entry, const char *moduleName,
                                       const char *featureName);
// Releases the names; null is accepted.
ZR_API void ZRS_NODE_ClearIfFeature(ZrDict *dict, ZrsIfFeature *entry);
// Clears every entry and frees the array; null is accepted.
ZR_API void ZRS_NODE_FreeIfFeatures(ZrDict *dict, ZrsIfFeature *array, uint32_t count);
// 1 when both names are the same, else 0.
ZR_API uint32_t ZRS_NODE_CheckTwoIfFeatureSame(const ZrsIfFeature *a, const ZrsIfFeature *b);
// 1 when both arrays hold the same entries in the same order.
ZR_API uint32_t ZRS_NODE_CheckTwoIfFeatureArraySame(const ZrsIfFeature *a, uint32_t countA,
                                                    const ZrsIfFeature *b, uint32_t countB);
// The names are interned ones; null when there is no such entry.
ZR_API ZrsIfFeature *ZRS_NODE_FindIfFeature(ZrsIfFeature *array, uint32_t count,
                                            const char *moduleName, const char *featureName);
// Appends one entry. ZR_ERR_INVALID also for the 65,536th.
ZR_API uint32_t ZRS_NODE_AppendOneIfFeat(ZrDict *dict, ZrsIfFeature **array, uint16_t *count,
                                         const char *moduleName, const char *featureName);
// A copy of the array; null when it is empty or memory runs out.
ZR_API ZrsIfFeature *ZRS_NODE_CopyIfFeaturesArray(ZrDict *dict, const ZrsIfFeature *array,
                                                  uint32_t count);

// Musts.

// Interns the condition, which is required, and the others, which may be null.
ZR_API uint32_t ZRS_NODE_FillMust(ZrDict *dict, ZrsMust *record, const char *condition,
                                  const char *errorMessage, const char *errorAppTag);
// Releases the strings; null is accepted.
ZR_API void ZRS_NODE_ClearMust(ZrDict *dict, ZrsMust *record);
// Clears every record and frees the array; null is accepted.
ZR_API void ZRS_NODE_FreeMusts(ZrDict *dict, ZrsMust *array, uint32_t count);
// Moves the strings; the destination must hold none. For callers outside the library.
ZR_API void ZRS_NODE_AssignMoveMust(ZrsMust *destination, ZrsMust *source);
// 1 when the conditions are the same; message and tag do not matter.
ZR_API uint32_t ZRS_NODE_CheckTwoMustSame(const ZrsMust *a, const ZrsMust *b);
// Appends a copy of the record. ZR_ERR_INVALID also for the 65,536th.
ZR_API uint32_t ZRS_NODE_AppendOneMust(ZrDict *dict, ZrsMust **array, uint16_t *count,
                                       const ZrsMust *source);
// A copy of the array; null when it is empty or memory runs out.
ZR_API ZrsMust *ZRS_NODE_CopyMustsArray(ZrDict *dict, const ZrsMust *array, uint32_t count);
// Rebuilds the array without the records whose condition is null. `newCount` is the number that is
// left, and what the caller then sets as the count. Failures that leave the array as it was:
// ZR_ERR_NO_MEMORY for the new block, ZR_ERR_INVALID when more records are left than `newCount`. A
// record that cannot be copied gives ZR_ERR_NO_MEMORY with all musts lost: the slot is null then,
// and the owner must set its count to 0.
ZR_API uint32_t ZRS_NODE_SubtractMustsArray(ZrDict *dict, ZrsMust **array, uint32_t oldCount,
                                            uint32_t newCount);
}
