// "when" conditions (RFC 7950, section 7.21.5): a false one is a fault in a request, and takes the
// element out of a notification.
#pragma once

#include "data/check_run.h"

extern "C" {
// The "when" pass and then the "must" pass over the element's subtree.
ZR_API uint32_t ZRD_PAS_EvalDataTreeWhenMust(ZrdCheckAux *check, xmlNode *element);
ZR_API uint32_t ZRD_PAS_EvalDataTreeWhen(ZrdCheckAux *check, xmlNode *element);
// The conditions that apply to one element: its own and those of the choices and cases around it.
// `*pass` is 1 when all hold, else 0; the status tells whether they could be evaluated.
ZR_API uint32_t ZRD_PAS_EvalDataNodeWhenCond(ZrdCheckAux *check, xmlNode *element, uint32_t *pass);
ZR_API uint32_t ZRD_PAS_EvalDataNodeOneWhenCond(ZrdCheckAux *check, xmlNode *contextNode,
                                                const char *condition, uint32_t *pass);
// What follows from a false condition. `*node` is the element; afterwards it is the node at which
// the walk over `top`'s subtree goes on, reached in `*direction`; null at its end.
ZR_API uint32_t ZRD_PAS_ProcDataNodeWhenCondNoPass(ZrdCheckAux *check, const xmlNode *top,
                                                   xmlNode **node, uint32_t *direction);
ZR_API uint32_t ZRD_PAS_ProcWhenCondNoPassForRpc(ZrdCheckAux *check, const xmlNode *top,
                                                 xmlNode **node, uint32_t *direction);
ZR_API uint32_t ZRD_PAS_ProcWhenCondNoPassForNotif(const xmlNode *top, xmlNode **node,
                                                   uint32_t *direction);
ZR_API void ZRD_PAS_SetWhenCondNoPassErrorInfo(ZrdCheckAux *check, const xmlNode *element);
}
