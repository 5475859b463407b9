// SPDX-License-Identifier: Apache-2.0
// Extension instances in counted arrays: uses of "extension" statements (RFC 7950, section 7.19),
// each with the instances that stand below it. Strings are interned, so equality is equality of
// pointers. Statuses are ZR_OK, ZR_ERR_INVALID for a bad argument and ZR_ERR_NO_MEMORY.
#pragma once

#include <zrschema/node.h>

#include "foundation/dict.h"
#include "model/module_records.h"

extern "C" {
// Interns the names, both of them required, and the argument, which may be null. A failure leaves
// no string behind.
ZR_API uint32_t ZRS_EXT_FillExtInst(ZrDict *dict, ZrsExtInst *record, const char *moduleName,
                                    const char *extensionName, const char *argument);
// Releases the strings and the children; the record itself stays.
ZR_API void ZRS_EXT_ClearExtInst(ZrDict *dict, ZrsExtInst *record);
// Clears every record and frees the array; null is accepted.
ZR_API void ZRS_EXT_FreeExtInsts(ZrDict *dict, ZrsExtInst *array, uint32_t count);
// 1 when names and argument are the same pointers; the children are not compared.
ZR_API uint32_t ZRS_EXT_CheckTwoExtInstSame(const ZrsExtInst *a, const ZrsExtInst *b);
// The first record equal to `record`, or null.
ZR_API ZrsExtInst *ZRS_EXT_FindSameExtInstInArray(ZrsExtInst *array, uint32_t count,
                                                  const ZrsExtInst *record);
// Appends one without children. ZR_ERR_INVALID also for the 65,536th.
ZR_API uint32_t ZRS_EXT_AppendOneExtInstToArray(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                                                const char *moduleName, const char *extensionName,
                                                const char *argument);
// A copy of the array with everything below it; null when it is empty or memory runs out.
ZR_API ZrsExtInst *ZRS_EXT_CopyExtInsts(ZrDict *dict, const ZrsExtInst *source, uint32_t count);
// Gives the record, which must have no children yet, a copy of `children`.
ZR_API uint32_t ZRS_EXT_UpdateExtInstChildInsts(ZrDict *dict, ZrsExtInst *record,
                                                const ZrsExtInst *children, uint32_t childCount);
// Appends a copy of `source` with its children. When the children cannot be copied, the record
// stays in the array, counted and empty.
ZR_API uint32_t ZRS_EXT_MergeOneExtInstToArray(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                                               const ZrsExtInst *source);
// Appends copies of those source records that have no equal in the array, up to a first failure.
ZR_API uint32_t ZRS_EXT_MergeExtInsts(ZrDict *dict, ZrsExtInst **array, uint16_t *count,
                                      const ZrsExtInst *source, uint32_t sourceCount);
// Rebuilds the array without the records whose extension name is null. `newCount` is the number
// that stay, and what the caller then sets as the count. When more are left, the old array stays
// and the result is still ZR_OK; it also stays when a copy fails.
ZR_API uint32_t ZRS_EXT_SubtractExtInstArray(ZrDict *dict, ZrsExtInst **array, uint32_t oldCount,
                                             uint32_t newCount);
}

namespace zr {
// Hands every record to the callback until it gives a non-zero result, which is returned.
uint32_t ScanExtInsts(const ZrsExtInst *array, uint32_t count, ZrExtInstScanFunc callback,
                      void *userData);
} // namespace zr
