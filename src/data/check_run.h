// One validation run over an element and all that stands below it.
#pragma once

#include "data/check_records.h"

extern "C" {
ZR_API void ZRD_PAS_InitCheckAux(ZrdCheckAux *check, ZrCtx *ctx, uint32_t mode,
                                 ZrDefaultNodeFunc callback, void *userData);
// Matching, completion, "when", "must" and mandatory nodes, in this order. 0, or the first phase's
// failure; most failures leave a record in the run.
ZR_API uint32_t ZRD_PAS_ValidateDataTree(ZrdCheckAux *check, xmlNode *top);
}
