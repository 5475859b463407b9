// "must" conditions (RFC 7950, section 7.5.3): a false one is a fault in a request, and takes the
// element out of a notification.
#pragma once

#include "data/check_run.h"

extern "C" {
ZR_API uint32_t ZRD_PAS_EvalDataTreeMust(ZrdCheckAux *check, xmlNode *element);
// The musts of `schemaNode` on the element, then those of everything below.
ZR_API uint32_t ZRD_PAS_EvalDataTreeMustWithTopMustMdl(ZrdCheckAux *check, xmlNode *element,
                                                       const ZrNode *schemaNode);
// The element's own musts, then those below. In a notification an element whose must is false is
// removed and freed, and the status is 0.
ZR_API uint32_t ZRD_PAS_EvalDataSubtreeMust(ZrdCheckAux *check, xmlNode *element);
ZR_API uint32_t ZRD_PAS_EvalAllChildDataNodeMust(ZrdCheckAux *check, xmlNode *element);
// 0x7100 for a false must, in a request with its record.
ZR_API uint32_t ZRD_PAS_EvalDataNodeMustCond(ZrdCheckAux *check, xmlNode *element,
                                             const ZrNode *schemaNode);
ZR_API ZrNode *ZRD_PAS_GetRpcSubTreeInputMdl(const xmlNode *element);
}
