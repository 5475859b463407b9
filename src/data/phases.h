// SPDX-License-Identifier: Apache-2.0
// A validation run and its phases, in the order in which a run goes through them.
//
// Each phase walks the tree by itself and calls no other; check_run.cpp shows how they follow one
// another. All give ZR_OK, or the status that ends the run; most faults leave a record in the run.
#pragma once

#include "data/check_records.h"

// The run.

extern "C" {
// Sets a run up: no fault, no action element, an empty list of defaults.
ZR_API void ZRD_PAS_InitCheckAux(ZrdCheckAux *check, ZrCtx *ctx, uint32_t mode,
                                 ZrDefaultNodeFunc callback, void *userData);
// All phases over the element and what stands below it, up to the first one that fails.
ZR_API uint32_t ZRD_PAS_ValidateDataTree(ZrdCheckAux *check, xmlNode *top);
// The two phases of the conditions. ZR_ERR_INVALID for an element without a schema node.
ZR_API uint32_t ZRD_PAS_EvalDataTreeWhenMust(ZrdCheckAux *check, xmlNode *element);
}

// Matching, the flush: every element is matched to its schema node, which goes into its private
// pointer, and is checked in document order.

extern "C" {
// The top element, with all that stands below it: among the top-level nodes of its namespace's
// module.
ZR_API uint32_t ZRD_PAS_FlushTreeWithSchema(ZrdCheckAux *check, xmlNode *top);
// One element below a matched one, with all that stands below it. An element that carries a schema
// node already is left as it is. For callers outside the library.
ZR_API uint32_t ZRD_PAS_FlushSubTreeWithSchema(ZrdCheckAux *check, xmlNode *element,
                                               ZrNode *parentSchema);
// The children of an element that was matched to the schema node, with all that stands below them.
ZR_API uint32_t ZRD_PAS_FlushAllElementChildNodeWithSchema(ZrdCheckAux *check, xmlNode *element,
                                                           ZrNode *schemaNode);

// The checks of one matched element: ZR_OK, or ZR_ERR_INVALID with the fault in the run's record.

// Settles the kind of run by the top element: an RPC run whose top is no rpc looks for an action.
ZR_API uint32_t ZRD_PAS_CheckTopSchemaNode(ZrdCheckAux *check, const xmlNode *top);
// No other element of the parent instantiates the node, unless it is a list or leaf-list.
ZR_API uint32_t ZRD_PAS_CheckMultipleInstanceNode(ZrdCheckAux *check, xmlNode *element);
// The value of a leaf or leaf-list; a refused one gives the status of ZR_NODE_ValidateValue().
ZR_API uint32_t ZRD_PAS_CheckDataNodeValue(ZrdCheckAux *check, xmlNode *element);
// Puts the refused value of an element into the run's record.
ZR_API void ZRD_PAS_SetInvalidValueErr(ZrdCheckAux *check, const xmlNode *element);
// Remembers the one element that instantiates an action. An action where none may be has no record.
ZR_API uint32_t ZRD_PAS_CheckActionNodeRepeat(ZrdCheckAux *check, xmlNode *element);
// Whether such an element was found.
ZR_API uint32_t ZRD_PAS_CheckActionNodeExist(ZrdCheckAux *check);
// The element before it does not come after it in the schema.
ZR_API uint32_t ZRD_PAS_CheckElementNodeOrder(ZrdCheckAux *check, xmlNode *element);
// No element before it has data of another case of the same choice. For callers outside the
// library.
ZR_API uint32_t ZRD_PAS_CheckMultiCases(ZrdCheckAux *check, xmlNode *element);
}

// Default completion: adds the default leaves that the data leaves out, and the non-presence
// containers that are needed to hold them (RFC 7950, sections 7.5.1 and 7.6.1).

extern "C" {
// Completes below an rpc's or action's element; does nothing outside of RPC runs. ZR_ERR_INVALID
// for another element.
ZR_API uint32_t ZRD_PAS_CompleteTree(ZrdCheckAux *check, xmlNode *element, uint32_t mode);
// Completes what one schema node leaves out below the parent element. `*added` becomes 1 when
// something was added, else it is left as it is.
ZR_API uint32_t ZRD_PAS_CompleteSubTree(ZrdCheckAux *check, xmlNode *parent, ZrNode *schemaNode,
                                        uint32_t *added);
// One a kind of schema node, with the arguments of ZRD_PAS_CompleteSubTree().
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForContainer(ZrdCheckAux *check, xmlNode *parent,
                                                     ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForLeaf(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForLeaflist(ZrdCheckAux *check, xmlNode *parent,
                                                    ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForList(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForChoice(ZrdCheckAux *check, xmlNode *parent,
                                                  ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForCase(ZrdCheckAux *check, xmlNode *parent,
                                                ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForRpc(ZrdCheckAux *check, xmlNode *parent,
                                               ZrNode *schemaNode, uint32_t *added);
ZR_API uint32_t ZRD_PAS_CompleteDataTreeForInput(ZrdCheckAux *check, xmlNode *parent,
                                                 ZrNode *schemaNode, uint32_t *added);
}

// "when" conditions (RFC 7950, section 7.21.5): a false one is a fault in a request, and takes the
// element out of a notification.

extern "C" {
// The element and everything below it.
ZR_API uint32_t ZRD_PAS_EvalDataTreeWhen(ZrdCheckAux *check, xmlNode *element);
// What follows from a false condition. `*node` is the element; afterwards it is the node at which
// the walk over `top`'s subtree goes on, reached in `*direction`; null at its end.
// ZR_XPATH_RESULT_FALSE for an element of the caller's in a request, with its record.
ZR_API uint32_t ZRD_PAS_ProcDataNodeWhenCondNoPass(ZrdCheckAux *check, const xmlNode *top,
                                                   xmlNode **node, uint32_t *direction);
// The same in a request: what completion added is taken out, with the added elements around it that
// hold nothing else.
ZR_API uint32_t ZRD_PAS_ProcWhenCondNoPassForRpc(ZrdCheckAux *check, const xmlNode *top,
                                                 xmlNode **node, uint32_t *direction);
// The same in a notification: the element is removed and freed.
ZR_API uint32_t ZRD_PAS_ProcWhenCondNoPassForNotif(const xmlNode *top, xmlNode **node,
                                                   uint32_t *direction);
// Puts the false condition into the run's record.
ZR_API void ZRD_PAS_SetWhenCondNoPassErrorInfo(ZrdCheckAux *check, const xmlNode *element);
}

// "must" conditions (RFC 7950, section 7.5.3): a false one is a fault in a request, and takes the
// element out of a notification.

extern "C" {
// A notification with everything below it; of an rpc or action the musts of its input on the
// element itself, then everything below. Nothing for an operation without input.
ZR_API uint32_t ZRD_PAS_EvalDataTreeMust(ZrdCheckAux *check, xmlNode *element);
// The musts of `schemaNode` on the element, then those of everything below.
ZR_API uint32_t ZRD_PAS_EvalDataTreeMustWithTopMustMdl(ZrdCheckAux *check, xmlNode *element,
                                                       const ZrNode *schemaNode);
// The element's own musts, then those below. In a notification an element whose must is false is
// removed and freed, and the status is ZR_OK.
ZR_API uint32_t ZRD_PAS_EvalDataSubtreeMust(ZrdCheckAux *check, xmlNode *element);
// The subtrees of all child elements.
ZR_API uint32_t ZRD_PAS_EvalAllChildDataNodeMust(ZrdCheckAux *check, xmlNode *element);
}

// Mandatory nodes: follows the schema below an element and reports the first mandatory node or
// choice that is missing (RFC 7950, section 8.1).

extern "C" {
// Below the element, against its own schema node; ZR_ERR_INVALID in a run that is neither RPC nor
// notification.
ZR_API uint32_t ZR_PAS_CheckTreeMandatory(ZrdCheckAux *check, xmlNode *element);
// One schema node below (or at) the element. A node that is not enabled is not missed.
ZR_API uint32_t ZR_PAS_CheckSubtreeMandatory(ZrdCheckAux *check, xmlNode *element,
                                             ZrNode *schemaNode);
// All children of the schema node.
ZR_API uint32_t ZRD_PAS_CheckAllSchemaChildMandatory(ZrdCheckAux *check, xmlNode *element,
                                                     ZrNode *schemaNode);
// One a kind of schema node, with the arguments of ZR_PAS_CheckSubtreeMandatory().
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
