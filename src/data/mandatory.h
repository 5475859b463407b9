// The mandatory walk: follows the schema below an element and reports the first mandatory node or
// choice that is missing (RFC 7950, section 8.1).
#pragma once

#include "data/check_run.h"

extern "C" {
// Below the element, against its own schema node; 22 in a run that is neither RPC nor notification.
ZR_API uint32_t ZR_PAS_CheckTreeMandatory(ZrdCheckAux *check, xmlNode *element);
// One schema node below (or at) the element. A node that is not enabled is not missed.
ZR_API uint32_t ZR_PAS_CheckSubtreeMandatory(ZrdCheckAux *check, xmlNode *element,
                                             ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckAllSchemaChildMandatory(ZrdCheckAux *check, xmlNode *element,
                                                     ZrNode *schemaNode);
// One a kind of schema node, with the arguments of CheckSubtreeMandatory.
ZR_API uint32_t ZRD_PAS_CheckDataNodeWithMandatory(ZrdCheckAux *check, xmlNode *parent,
                                                   ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckContainerMandatory(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckListMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckChoiceMandatory(ZrdCheckAux *check, xmlNode *parent,
                                             ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckCaseMandatory(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckRpcMandatory(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckNotifMandatory(ZrdCheckAux *check, xmlNode *element,
                                            ZrNode *schemaNode);
ZR_API uint32_t ZRD_PAS_CheckInputMandatory(ZrdCheckAux *check, xmlNode *element,
                                            ZrNode *schemaNode);
}

namespace zr {
// The input among an rpc's or action's schema children, or null.
ZrNode *InputOf(const ZrNode *operation);
} // namespace zr
