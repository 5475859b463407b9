// Questions that a validation run asks of schema nodes; null is answered like a plain node that
// has nothing.
#pragma once

#include "data/check_run.h"

extern "C" {
// A container or list with "mount-point" of ietf-yang-schema-mount (RFC 8528, section 3).
ZR_API uint32_t ZRD_MDL_IsSchemaNodeDefineWithMountPoint(const ZrNode *schemaNode);
// Anydata, anyxml and mount points: what stands below their elements has no schema here.
ZR_API uint32_t ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(const ZrNode *schemaNode);
ZR_API uint32_t ZRD_MDL_IsChoiceOrCaseNode(const ZrNode *schemaNode);
// Whether a "when" of the node is evaluated: not for operations, notifications, input and output.
ZR_API uint32_t ZRD_MDL_IsNeedCheckWhenCond(const ZrNode *schemaNode);
// The choice that a node stands in, and its branch there: the case, or the node itself in a
// shorthand case. Null, and a null branch, when the node stands in none.
ZR_API ZrNode *ZRD_MDL_GetChoiceCaseParentNode(ZrNode *schemaNode, ZrNode **caseOut);
ZR_API ZrNode *ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(const ZrNode *schemaNode);
// The next enabled data node of the same module below `ancestor`, in schema order.
ZR_API ZrNode *ZRD_MDL_GetNextDataNodeInSameMod(const ZrNode *schemaNode, const ZrNode *ancestor);
ZR_API ZrNode *ZRD_MDL_GetChoiceDefaultChildNode(const ZrNode *choice);
}

namespace zr {
// Whether elements below one of this schema node carry schema nodes: not below leaves, nor where
// NeedSkipProcChildNode says so, nor below an element that has none itself.
bool HasMatchedChildren(const ZrNode *schemaNode);
} // namespace zr
