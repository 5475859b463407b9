// The structural checks of one matched element. Each gives 0, or 22 with the fault in the run's
// record (CheckDataNodeValue passes the value check's status on).
#pragma once

#include "data/check_run.h"

extern "C" {
// Settles the kind of run by the top element: an RPC run whose top is no rpc looks for an action.
ZR_API uint32_t ZRD_PAS_CheckTopSchemaNode(ZrdCheckAux *check, const xmlNode *top);
ZR_API uint32_t ZRD_PAS_CheckMultipleInstanceNode(ZrdCheckAux *check, xmlNode *element);
ZR_API uint32_t ZRD_PAS_CheckDataNodeValue(ZrdCheckAux *check, xmlNode *element);
ZR_API void ZRD_PAS_SetInvalidValueErr(ZrdCheckAux *check, const xmlNode *element);
ZR_API uint32_t ZRD_PAS_CheckActionNodeRepeat(ZrdCheckAux *check, xmlNode *element);
ZR_API uint32_t ZRD_PAS_CheckActionNodeExist(ZrdCheckAux *check);
ZR_API uint32_t ZRD_PAS_CheckElementNodeOrder(ZrdCheckAux *check, xmlNode *element);
ZR_API uint32_t ZRD_PAS_CheckMultiCases(ZrdCheckAux *check, xmlNode *element);
}

namespace zr {

// Whether `earlier` comes before `later` among the enabled data nodes of one module and level.
bool ComesBefore(const ZrNode *earlier, const ZrNode *later);
// CheckMultiCases for an element whose preceding siblings have all passed it: those with data of
// one choice then agree on the case, so that the nearest speaks for all.
uint32_t CheckCaseOfNearestSibling(ZrdCheckAux *check, xmlNode *element);
// "Unexpected element" for the element itself.
uint32_t RecordUnexpected(ZrdCheckAux *check, const xmlNode *element);

} // namespace zr
