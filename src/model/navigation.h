// SPDX-License-Identifier: Apache-2.0
// Ways through the schema tree: by name, and as the data tree goes, which passes through the nodes
// that have no instance in data (choice, case, input, output, augment) as if their children stood
// in their place.
#pragma once

#include <zrschema/context.h>
#include <zrschema/node.h>

#include "foundation/text.h"

extern "C" {
// The nearest ancestor that has an instance in data, or null.
ZR_API ZrNode *ZRS_NODE_GetParentDataTreeNode(const ZrNode *node);
// The first data node at the given place or after it, in schema order. It does not leave the data
// node around the start, nor, when one is given, the `stop` node.
// For callers outside the library.
ZR_API ZrNode *ZRS_NODE_GetFirstSlibingDataTreeNode(ZrNode *node, const ZrNode *stop);
// The first data node after a node, within the same bounds.
ZR_API ZrNode *ZRS_NODE_GetNextDataTreeNode(const ZrNode *node, const ZrNode *stop);
// The data node of that name below a node; without a module name, one of the node's own module.
ZR_API ZrNode *ZRS_NODE_FindChildDataTreeNodeByName(const ZrNode *node, const char *moduleName,
                                                    const char *name);

// By name, in the schema tree itself.
// The first data node, else RPC, else notification of that name; never an augment.
ZR_API ZrNode *ZRS_MOD_FindTopLevelSchemaNode(const ZrMod *module, const char *name);
// The first child of that name; of any module when the module name is null or empty. Choice, case,
// input and output are children like any other.
ZR_API ZrNode *ZRS_NODE_FindChildNodeByName(const ZrNode *parent, const char *moduleName,
                                            const char *name);
// The type of a leaf or leaf-list, else null.
ZR_API const ZrtRealType *ZRS_NODE_GetLeafSchemaRealType(const ZrNode *node);
}
namespace zr {
// Whether the node belongs to the module of that name.
bool IsOfModule(const ZrNode *node, const char *moduleName);
// Whether nodes of that kind stand in data, operations and notifications among them.
bool HasDataInstance(uint32_t kind);
} // namespace zr

// Schema nodes by a path through the data tree, the form of leafref paths (RFC 7950,
// section 9.9.2).

extern "C" {
// Through the data tree, as a leafref's path goes: choice and case are no steps. A relative path
// starts at the context node, with ".." for its parents (RFC 7950, section 9.9.2).
ZR_API ZrNode *ZRS_MOD_GetNodeByXpath(const ZrMod *module, const ZrNode *contextNode,
                                      const char *path);
// Where a path starts (null: above the top level) and what is left of it: ZR_OK or ZR_ERR_INVALID.
ZR_API uint32_t ZRS_MOD_GetStartPathAndNode(const ZrNode *contextNode, const char *path,
                                            const char **restOut, ZrNode **startOut);
// The same for a path that begins with ".": what is left of it, null when it leads nowhere.
ZR_API const char *ZRS_MOD_GetRelativePathRealStartNode(const ZrNode *contextNode, const char *path,
                                                        ZrNode **startOut);
// One step by names, from `current` or, when that is null, from above the top level.
ZR_API ZrNode *ZRS_MOD_GetDataTreeNodeByNodeIdentifier(const ZrMod *module, ZrNode *current,
                                                       const char *moduleName, const char *name);
}

namespace zr {

// Goes down a path, whose first "/" may be left out, from `node`, which may be null: each step is
// `step(node, moduleName, name)`, and the first null ends the walk, as a malformed step does.
template <typename Step> ZrNode *FollowSteps(ZrNode *node, const char *path, Step step)
{
    const char *rest = path;
    do {
        char moduleName[kNameSize];
        char name[kNameSize];
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(*rest == '/' ? rest + 1 : rest, moduleName,
                                                       sizeof(moduleName), name, sizeof(name));
        if (rest == nullptr)
            return nullptr;
        node = step(node, moduleName, name);
    } while (node != nullptr && *rest != '\0');
    return node;
}

} // namespace zr
