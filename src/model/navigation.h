// Data-tree navigation: passes through the nodes that have no instance in data (choice, case,
// input, output, augment) as if their children stood in their place.
#pragma once

#include <zrschema/node.h>

extern "C" {
// The nearest ancestor that has an instance in data, or null.
ZR_API ZrNode *ZRS_NODE_GetParentDataTreeNode(const ZrNode *node);
// The first data node at the given place or after it, and the one after a node, in schema order.
// Neither leaves the data node around the start; nor, when one is given, the `stop` node.
ZR_API ZrNode *ZRS_NODE_GetFirstSlibingDataTreeNode(ZrNode *node, const ZrNode *stop);
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
bool HasDataInstance(uint32_t kind); // kinds 1, 2, 3, 4, 7, 8, 9, 10 and 11
} // namespace zr
