// Schema nodes: creation, destruction, links, flags, keys, copies.
#pragma once

#include <zrschema/node.h>

#include "foundation/dict.h"
#include "model/navigation.h"
#include "model/node_record.h"

enum ZrsLinkMode : uint32_t { ZRS_LINK_AS_CHILD = 0, ZRS_LINK_AS_SIBLING = 1 };

extern "C" {
// A zeroed node with its zeroed per-kind information; null without memory or for a kind above 14.
// The caller sets the module, without which the node cannot be freed.
ZR_API ZrNode *ZRS_NODE_New(uint32_t kind);
// Frees a node and everything below it; the caller has unlinked it. A coupled augment is left
// alone: its nodes stand in the target.
ZR_API void ZRS_NODE_Free(ZrNode *node);
ZR_API void ZRS_NODE_DestroySchemaInfo(ZrNode *node);
// Bytes of a kind's information record, 0 when it has none.
ZR_API uint32_t ZRS_NODE_GetInfoSize(uint32_t kind);
// Hands the private pointer to the context's callback, when both are there, and clears it.
ZR_API void ZRS_NODE_DestroyPrivateData(ZrCtx *ctx, ZrNode *node);
// The keyword table's id of the kind's statement; 0 for kind 0 and for no kind at all.
ZR_API uint32_t ZRS_NODE_GetStmtByNodeType(uint32_t kind);

// Links. The adding functions take a node that is linked nowhere; 22 for a null argument.
ZR_API void ZRS_NODE_Unlink(ZrNode *node);
// Moves the head of the module's top-level chain that starts with the node on to its next sibling.
ZR_API void ZR_NODE_CalibrateTopNodeAddress(ZrNode *node);
ZR_API uint32_t ZRS_NODE_AddAsFirstChild(ZrNode *parent, ZrNode *node);
ZR_API uint32_t ZRS_NODE_AddChild(ZrNode *parent, ZrNode *node);
// At the end of the chain that `node` stands in.
ZR_API uint32_t ZRS_NODE_AddSibling(ZrNode *node, ZrNode *newNode);
ZR_API uint32_t ZRS_NODE_LinkTreeNode(ZrNode *anchor, ZrNode *node, uint32_t mode); // ZrsLinkMode
ZR_API ZrNode *ZRS_NODE_GetLastSibling(const ZrNode *node);
ZR_API uint32_t ZRS_NODE_IsChildNode(const ZrNode *parent, const ZrNode *node); // 1 or 0

// Inheritance from a parent that may have changed, for the node and, after a change, everything
// below it. ImplUpdateFlagCb does both for one node; UpdateFlag does both for a node's children.
ZR_API void ZRS_NODE_UpdateConfigFlag(ZrNode *node);
ZR_API void ZRS_NODE_UpdateNacmFlag(ZrNode *node);
ZR_API void ZRS_NODE_UpdateFlag(ZrNode *node);
ZR_API uint32_t ZRS_NODE_ImplUpdateFlagCb(ZrNode *node, uint32_t arrival, void *userData);
// Sets the flag of a default-deny extension of "ietf-netconf-acm"; other names change nothing.
ZR_API void ZRS_NODE_SetNacmFlag(ZrNode *node, const char *moduleName, const char *extensionName);
// Marks the leafs that a "key" argument names and counts them; a null text marks nothing. 22 for a
// list without children, UINT32_MAX for a name that is empty, too long, missing, no leaf or the
// 256th: the keys before it stay marked.
ZR_API uint32_t ZRS_NODE_MarkKeyAttrToListLeafs(ZrNode *list, const char *keyText,
                                                uint8_t *keyCount);

// Appends copies of all values or none: 12 without memory, 22 for more than 65,535 defaults.
ZR_API uint32_t ZRS_NODE_AppendLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                                const char *const *values, uint32_t count);
// Closes the gaps of the values that the caller has released (null entries). `newCount` says how
// many are left; 22, with nothing changed, when that is not so.
ZR_API uint32_t ZRS_NODE_SubtractLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                                  uint32_t newCount);

// Copies into another module, linked nowhere. Kind, name, description, extension instances, key
// count and per-kind information are copied; flags, conditions, private data and links are not:
// the caller gives the copy what fits its new place. Null when anything fails.
ZR_API ZrNode *ZRS_NODE_CopyOneNodeToModule(const ZrNode *source, ZrMod *target);
// The per-kind information alone, between nodes of one kind: 0, 12 or 22. After a failure the
// destination holds what was copied so far and releases it when it is freed.
ZR_API uint32_t ZRS_NODE_CopySchemaByType(ZrNode *destination, const ZrNode *source);
ZR_API ZrNode *ZRS_NODE_CopyNodeTreeToModule(ZrNode *root, ZrMod *target);
}

namespace zr {

// The "config" of a deviation, and a default-deny extension that one added. Both hold whatever is
// inherited, before or after; the first passes on to the nodes below.
void SetDeviatedConfig(ZrNode *node, uint32_t flags);
void AddDeviatedNacm(ZrNode *node, const char *moduleName, const char *extensionName);
} // namespace zr
