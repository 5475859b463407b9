// SPDX-License-Identifier: Apache-2.0
// Schema nodes: creation, destruction, copies, links, inherited flags, list keys, leaf-list
// defaults, extension instances, paths. What applications ask of a node stands in zrschema/node.h.
#pragma once

#include <zrschema/node.h>

#include "foundation/dict.h"
#include "foundation/text.h"
#include "model/navigation.h"
#include "model/node_record.h"

// Where a node goes from an anchor: to the end of its children, or of the chain it stands in.
enum ZrsLinkMode : uint32_t { ZRS_LINK_AS_CHILD = 0, ZRS_LINK_AS_SIBLING = 1 };

// What marking the keys of a list gives for a key that cannot be one.
enum : uint32_t { ZRS_BAD_KEY = UINT32_MAX };

extern "C" {
// Birth and death (node_create.cpp).

// A zeroed node with its zeroed per-kind information; null without memory or for no ZrNodeKind.
// The caller sets the module, without which the node cannot be freed.
ZR_API ZrNode *ZRS_NODE_New(uint32_t kind);
// Frees a node and everything below it; the caller has unlinked it. A coupled augment is left
// alone: its nodes stand in the target.
ZR_API void ZRS_NODE_Free(ZrNode *node);
// Frees the per-kind information and what it holds.
ZR_API void ZRS_NODE_DestroySchemaInfo(ZrNode *node);
// Bytes of a kind's information record, 0 when it has none. For callers outside the library.
ZR_API uint32_t ZRS_NODE_GetInfoSize(uint32_t kind);
// Hands the private pointer to the context's callback, when both are there, and clears it.
ZR_API void ZRS_NODE_DestroyPrivateData(ZrCtx *ctx, ZrNode *node);
// The ZrsStatement that makes nodes of the kind; ZRS_STMT_UNKNOWN for ZR_NODE_UNKNOWN and for no
// kind at all.
ZR_API uint32_t ZRS_NODE_GetStmtByNodeType(uint32_t kind);

// Copies into another module, linked nowhere. Kind, name, description, extension instances, key
// count and per-kind information are copied; flags, conditions, private data and links are not:
// the caller gives the copy what fits its new place. Null when anything fails.
ZR_API ZrNode *ZRS_NODE_CopyOneNodeToModule(const ZrNode *source, ZrMod *target);
// The per-kind information alone, between nodes of one kind: ZR_OK, ZR_ERR_NO_MEMORY or
// ZR_ERR_INVALID. After a failure the destination holds what was copied so far and releases it
// when it is freed.
ZR_API uint32_t ZRS_NODE_CopySchemaByType(ZrNode *destination, const ZrNode *source);
// A node with everything below it. For callers outside the library.
ZR_API ZrNode *ZRS_NODE_CopyNodeTreeToModule(ZrNode *root, ZrMod *target);

// Links (node_links.cpp). The adding functions take a node that is linked nowhere; ZR_ERR_INVALID
// for a null argument.

// Takes the node out of its chain, and out of its parent or of its module's top-level chain.
ZR_API void ZRS_NODE_Unlink(ZrNode *node);
// Moves the head of the module's top-level chain that starts with the node on to its next sibling.
ZR_API void ZR_NODE_CalibrateTopNodeAddress(ZrNode *node);
// Before the parent's other children.
ZR_API uint32_t ZRS_NODE_AddAsFirstChild(ZrNode *parent, ZrNode *node);
// Behind the parent's other children.
ZR_API uint32_t ZRS_NODE_AddChild(ZrNode *parent, ZrNode *node);
// At the end of the chain that `node` stands in.
ZR_API uint32_t ZRS_NODE_AddSibling(ZrNode *node, ZrNode *newNode);
// As the ZrsLinkMode says; ZR_ERR_INVALID for another mode.
ZR_API uint32_t ZRS_NODE_LinkTreeNode(ZrNode *anchor, ZrNode *node, uint32_t mode);
// At the end of the module's chain for the node's kind; ZR_ERR_INVALID for a kind that is no
// top-level one.
ZR_API uint32_t ZRS_MOD_AddTopNodeToSchemaTree(ZrMod *module, ZrNode *node);
// The end of the chain that the node stands in; null for null.
ZR_API ZrNode *ZRS_NODE_GetLastSibling(const ZrNode *node);
// 1 when the node stands among the parent's children, else 0. For callers outside the library.
ZR_API uint32_t ZRS_NODE_IsChildNode(const ZrNode *parent, const ZrNode *node);

// Inheritance from a parent that may have changed (node_flags.cpp).

// "config", for the node and, after a change, everything below it.
ZR_API void ZRS_NODE_UpdateConfigFlag(ZrNode *node);
// The default-deny flags of "ietf-netconf-acm", likewise.
ZR_API void ZRS_NODE_UpdateNacmFlag(ZrNode *node);
// Both, for the children of a node that has one of these flags.
ZR_API void ZRS_NODE_UpdateFlag(ZrNode *node);
// Both, for one node of a scan; the other arguments do not matter. Always 0.
ZR_API uint32_t ZRS_NODE_ImplUpdateFlagCb(ZrNode *node, uint32_t arrival, void *userData);
// Sets the flag of a default-deny extension of "ietf-netconf-acm"; other names change nothing.
ZR_API void ZRS_NODE_SetNacmFlag(ZrNode *node, const char *moduleName, const char *extensionName);

// Marks the leafs that a "key" argument names and counts them; a null text marks nothing.
// ZR_ERR_INVALID for a list without children, ZRS_BAD_KEY for a name that is empty, too long,
// missing, no leaf or the 256th: the keys before it stay marked.
ZR_API uint32_t ZRS_NODE_MarkKeyAttrToListLeafs(ZrNode *list, const char *keyText,
                                                uint8_t *keyCount);

// Defaults of a leaf-list (node_values.cpp).

// Appends copies of all values or none: ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for more than 65,535
// defaults.
ZR_API uint32_t ZRS_NODE_AppendLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                                const char *const *values, uint32_t count);
// Closes the gaps of the values that the caller has released (null entries). `newCount` says how
// many are left; ZR_ERR_INVALID, with nothing changed, when that is not so.
ZR_API uint32_t ZRS_NODE_SubtractLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                                  uint32_t newCount);

// Appends the extension instance to the node unless the node has it. One of ietf-netconf-acm also
// sets the node's access flags and those of everything below it (RFC 8341, section 3.4). ZR_OK,
// ZR_ERR_NO_MEMORY or ZR_ERR_INVALID.
ZR_API uint32_t ZRS_NODE_AppendOneExtInst(ZrDict *dict, ZrNode *node, const char *moduleName,
                                          const char *extensionName, const char *argument);

// A node's path as a new text, freed with the free hook; null when it is longer than 3095
// characters or memory runs out. ZR_CTX_GetTargetNode() finds the node by it again. For callers
// outside the library.
ZR_API char *ZRS_NODE_PrintPath(const ZrNode *node);
// Writes the path behind the first `*length` characters and adds to them: ZR_OK, ZR_ERR_INVALID
// for a null argument, ZR_ERR_NO_MEMORY when it does not fit.
ZR_API uint32_t ZRS_NODE_PrintJsonPathRecursive(const ZrNode *node, char *buffer, uint32_t size,
                                                uint32_t *length);
}

namespace zr {

// The context of the node's module, or null.
inline ZrCtx *ContextOf(const ZrNode *node)
{
    return node != nullptr && node->module != nullptr ? node->module->ctx : nullptr;
}

// Whether nodes of the kind stand for any number of entries.
inline bool HasEntries(uint32_t kind)
{
    return kind == ZR_NODE_LIST || kind == ZR_NODE_LEAF_LIST;
}

// Calls `visit`(child) for every child in order. A coupled augment's children go on into those of
// its target, so the last child ends the walk.
template <typename Visit> void ForEachChild(const ZrNode *parent, Visit visit)
{
    for (ZrNode *child = parent->firstChild; child != nullptr; child = child->next) {
        visit(child);
        if (child == parent->lastChild)
            break;
    }
}

// The names in the argument of a "key", one after another. At something that is no name, the
// length is 0 and Next() stays there.
class KeyNames {
public:
    explicit KeyNames(const char *argument) { StartAt(argument); }
    bool AtEnd() const { return *name_ == '\0'; }
    const char *Name() const { return name_; } // not terminated
    uint32_t Length() const { return length_; }
    void Next() { StartAt(name_ + length_); }

private:
    void StartAt(const char *text)
    {
        name_ = ZR_UTL_ConsumeAllSpaceChar(text);
        length_ = ZR_UTL_ConsumeIdentNameBestEffort(name_);
    }

    const char *name_;
    uint32_t length_;
};

// The leaf among the list's children that has the name; null when there is none.
ZrNode *KeyLeaf(const ZrNode *list, const char *text, uint32_t length);

// The "config" of a deviation; it holds whatever is inherited, before or after, and passes on to
// the nodes below.
void SetDeviatedConfig(ZrNode *node, uint32_t flags);
// A default-deny extension that a deviation added; it holds likewise for the node itself.
void AddDeviatedNacm(ZrNode *node, const char *moduleName, const char *extensionName);

} // namespace zr
