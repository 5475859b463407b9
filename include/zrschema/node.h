/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file node.h
 * Queries and scans on schema nodes.
 *
 * A schema node is one statement of a module's schema tree: container, leaf, leaf-list, list,
 * choice, case, anydata, anyxml, action, rpc, notification, input, output, or an augment itself.
 * Nodes belong to their module; they live until the module is unloaded or reloaded, or until a
 * deviation takes them away. All texts that the functions return belong to the schema and live as
 * long as the node.
 *
 * What only reads may run at the same time on any number of threads, as long as nothing is loaded,
 * unloaded or changed in the context meanwhile. The functions that change a node are marked; they
 * must not run while anything else uses the context.
 */
#ifndef ZRSCHEMA_NODE_H
#define ZRSCHEMA_NODE_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Returns a node's identifier.
 *
 * @param node  a schema node; null gives null
 * @return the name; of an augment node the path of its target in module-name form; of an input or
 *         output node "input" or "output"
 */
ZR_API const char *ZR_NODE_GetNodeName(const ZrNode *node);

/**
 * Returns a node's description (RFC 7950, section 7.21.3).
 *
 * @param node  a schema node; null gives null
 * @return the text; null when there is none or the context does not keep descriptions
 *         (#ZR_CTX_KEEP_DESCRIPTIONS)
 */
ZR_API const char *ZR_NODE_GetDescription(const ZrNode *node);

/**
 * Returns a node's "when" condition (RFC 7950, section 7.21.5).
 *
 * Prefixes are replaced by module names; a condition with a prefix that is not known is kept as it
 * was written. A node that an augment adds also carries the augment's condition, rewritten for the
 * node as its context node, but for actions and notifications.
 *
 * @param node  a schema node; null gives null
 * @return the XPath text, or null when the node has no condition
 */
ZR_API const char *ZR_NODE_GetWhenCond(const ZrNode *node);

/**
 * Returns the module that defines a node.
 *
 * @param node  a schema node; null gives null
 * @return the module; of a node that an augment has put into another module's tree, the augment's
 *         module
 */
ZR_API ZrMod *ZR_NODE_GetModule(const ZrNode *node);

/**
 * Returns a node's kind.
 *
 * @param node  a schema node; null gives #ZR_NODE_UNKNOWN
 * @return a ::ZrNodeKind
 */
ZR_API uint32_t ZR_NODE_GetNodeType(const ZrNode *node);

/**
 * Returns the number of a list's keys (RFC 7950, section 7.8.2).
 *
 * @param node  a schema node; null gives 0
 * @return 0 to 255; always 0 for a node that is no list
 */
ZR_API uint32_t ZR_NODE_GetNodeKeyNum(const ZrNode *node);

/**
 * Calls back for each key leaf of a list, in the order of its "key" statement (RFC 7950, section
 * 7.8.2), with #ZR_ARRIVAL_CHILD. A key that a deviation has taken away is left out.
 *
 * Without #ZR_CTX_STANDARD the order is not kept, and the keys come as their leafs stand in the
 * schema.
 *
 * @param list      a schema node; null gives #ZR_ERR_INVALID; one that is no list has no keys
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every key was visited, or there is none
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_ScanAllKeysInOrder(const ZrNode *list, ZrNodeScanFunc callback,
                                           void *userData);

/**
 * Returns how many entries a list or leaf-list must have (RFC 7950, section 7.7.5).
 *
 * @param node  a schema node; null gives 0
 * @return the number of its "min-elements", deviations included; 0 when it has none, for any other
 *         kind, and in a context without #ZR_CTX_STANDARD
 */
ZR_API uint32_t ZR_NODE_GetMinElements(const ZrNode *node);

/**
 * Returns how many entries a list or leaf-list may have (RFC 7950, section 7.7.6).
 *
 * @param node  a schema node; null gives 0
 * @return the number of its "max-elements", deviations included; 0 for any number of entries: for
 *         "unbounded", when it has none, for any other kind, and in a context without
 *         #ZR_CTX_STANDARD
 */
ZR_API uint32_t ZR_NODE_GetMaxElements(const ZrNode *node);

/**
 * Calls back for each "unique" of a list (RFC 7950, section 7.8.3), in order, those that deviations
 * have added last.
 *
 * Whether the leafs that it names are there is not checked while loading: augments and deviations
 * may still bring and take them.
 *
 * @param list      a schema node; null gives #ZR_ERR_INVALID; one that is no list has none, and
 *                  neither has any in a context without #ZR_CTX_STANDARD
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every one was visited, or there is none
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_ScanAllUniques(const ZrNode *list, ZrUniqueScanFunc callback,
                                       void *userData);

/**
 * Returns the application's pointer on a node.
 *
 * @param node  a schema node; null gives null
 * @return what ZR_NODE_SetPrivate() stored last, null before that and after the node was reloaded
 */
ZR_API void *ZR_NODE_GetPrivate(const ZrNode *node);

/**
 * Stores a pointer of the application on a node.
 *
 * The data stays the application's. When the node is freed, a pointer that is not null is handed
 * to the function set with ZR_CTX_SetPridataFreeFunc(). Storing another pointer does not release
 * the one that was there.
 *
 * @param node         a schema node; null does nothing
 * @param privateData  the pointer; null is allowed
 * @note Changes the node.
 */
ZR_API void ZR_NODE_SetPrivate(ZrNode *node, void *privateData);

/**
 * Returns a node's parent in the schema tree.
 *
 * Choice, case, input and output are parents like any other. A node in an augment has the
 * augment's target as its parent once the two are coupled, and none before.
 *
 * @param node  a schema node; null gives null
 * @return the parent, or null for a top-level node and for a node in an augment that is not coupled
 */
ZR_API ZrNode *ZR_NODE_GetParentNode(const ZrNode *node);

/**
 * Returns a node's nearest ancestor that is neither a choice nor a case.
 *
 * @param node  a schema node; null gives null
 * @return the ancestor, or null when there is none; the augment node itself for a node in an
 *         augment that is not coupled
 */
ZR_API ZrNode *ZR_NODE_GetNonChoiceCaseParent(const ZrNode *node);

/**
 * Returns the node that an augment node augments (RFC 7950, section 7.17).
 *
 * @param node  an augment node, coupled or not; any other node and null give null
 * @return the target, or null while its module, or a node of its path, is not loaded
 */
ZR_API ZrNode *ZR_NODE_GetAugmentTargetNode(const ZrNode *node);

/**
 * Returns the input of an rpc or action (RFC 7950, section 7.14.2).
 *
 * @param node  an rpc or action node; any other node and null give null
 * @return the input node, or null when the operation has none
 */
ZR_API ZrNode *ZR_NODE_GetInputNode(const ZrNode *node);

/**
 * Returns the output of an rpc or action (RFC 7950, section 7.14.3).
 *
 * @param node  an rpc or action node; any other node and null give null
 * @return the output node, or null when the operation has none
 */
ZR_API ZrNode *ZR_NODE_GetOutputNode(const ZrNode *node);

/**
 * Finds the schema node of a child element in instance data: a child of the node, also one inside
 * choices and cases, which are no elements. What augments have added is among the children, under
 * the name of the augment's module.
 *
 * Below an rpc or action stand the elements of a request, the children of its input; the children
 * of a reply are found below the output node (ZR_NODE_GetOutputNode()). Actions and notifications
 * inside data are found like any other child. A node counts whether or not its features are on
 * (ZR_NODE_IsEnabled()). ZR_CTX_FindTopDataNode() finds where a walk begins.
 *
 * @param node        a schema node; null gives null
 * @param moduleName  the module that defines the child; null or "" for the node's own module
 * @param name        the child's name; null gives null
 * @return the child, or null when there is none
 */
ZR_API ZrNode *ZR_NODE_FindDataChild(const ZrNode *node, const char *moduleName, const char *name);

/**
 * Tells whether a node is a key of the list that it stands in.
 *
 * @param node  a schema node; null gives 0
 * @retval 1  a key leaf directly below its list
 * @retval 0  anything else
 */
ZR_API uint32_t ZR_NODE_IsKey(const ZrNode *node);

/**
 * Tells whether a node is configuration (RFC 7950, section 7.21.1).
 *
 * @param node  a schema node; null gives 0
 * @retval 1  "config" is true, or nothing from the node upward says anything
 * @retval 0  "config" is false, by an own statement or by an ancestor's
 */
ZR_API uint32_t ZR_NODE_IsRwConfig(const ZrNode *node);

/**
 * Tells whether a node carries "mandatory" "true" (RFC 7950, section 7.6.5).
 *
 * @param node  a schema node; null gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_NODE_IsMandatory(const ZrNode *node);

/**
 * Tells whether a list's or leaf-list's entries are ordered by the user (RFC 7950, section 7.7.7).
 *
 * @param node  a schema node; null gives 0
 * @return 1 for "ordered-by" "user", else 0
 */
ZR_API uint32_t ZR_NODE_IsOrderedByNode(const ZrNode *node);

/**
 * Tells whether a node is a presence container (RFC 7950, section 7.5.1).
 *
 * @param node  a schema node; null gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_NODE_IsPresenceContainer(const ZrNode *node);

/**
 * Tells whether a node's own status is "deprecated" (RFC 7950, section 7.21.2).
 *
 * @param node  a schema node; null gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_NODE_IsDeprecatedNode(const ZrNode *node);

/**
 * Tells whether a node's own status is "obsolete" (RFC 7950, section 7.21.2).
 *
 * @param node  a schema node; null gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_NODE_IsObsoleteNode(const ZrNode *node);

/**
 * Tells whether access to a node is denied altogether by default (RFC 8341, "default-deny-all").
 *
 * The two defaults of access control follow the parent's: a node below one that says
 * "default-deny-write" or "default-deny-all" has what its parent has, whatever it says itself. So
 * "default-deny-all" below "default-deny-write" reads as write alone, here and further down. What a
 * node says itself is found with ZR_NODE_ScanAllExtInsts().
 *
 * With #ZR_CTX_STANDARD each of the two holds for the node that says it and for everything below,
 * whatever else is said above or there.
 *
 * @param node  a schema node; null gives 0
 * @return 1 when the topmost node that says either says so, be it an ancestor or the node itself;
 *         with #ZR_CTX_STANDARD when the node or any ancestor says so; else 0
 */
ZR_API uint32_t ZR_NODE_IsNacmDefaultDenyAll(const ZrNode *node);

/**
 * Tells whether writing a node is denied by default (RFC 8341, "default-deny-write").
 *
 * It follows the parent's like ZR_NODE_IsNacmDefaultDenyAll(). Without #ZR_CTX_STANDARD, where that
 * one is 1, this one is 0 unless a node says both.
 *
 * @param node  a schema node; null gives 0
 * @return 1 when the topmost node that says either says so, be it an ancestor or the node itself;
 *         with #ZR_CTX_STANDARD when the node or any ancestor says so; else 0
 */
ZR_API uint32_t ZR_NODE_IsNacmDefaultDenyWrite(const ZrNode *node);

/**
 * Tells whether every feature that a node depends on is enabled (RFC 7950, section 7.20.2).
 *
 * Only the node's own "if-feature" statements count, with those that it took over from its
 * augment; a node below a disabled one may still be enabled itself. A feature that is not known
 * counts as disabled.
 *
 * @param node  a schema node; null, or a node without a module, gives 0
 * @return 1 or 0
 */
ZR_API uint32_t ZR_NODE_IsEnabled(const ZrNode *node);

/**
 * Returns the type of a leaf or leaf-list (RFC 7950, section 7.4).
 *
 * @param node  a schema node; null gives null
 * @return the type as it is written at the node, owned by the node; null for any other kind
 */
ZR_API const ZrtRealType *ZR_NODE_GetRealType(const ZrNode *node);

/**
 * Returns the default value of a leaf (RFC 7950, section 7.6.1).
 *
 * @param node  a schema node; null gives null
 * @return the leaf's own default, else the first one along its chain of typedefs; null when there
 *         is none, for a mandatory leaf, and for any other kind, leaf-lists included
 */
ZR_API const char *ZR_NODE_GetDefaultValueStr(const ZrNode *node);

/**
 * Returns the units of a leaf or leaf-list (RFC 7950, section 7.3.3).
 *
 * @param node  a schema node; null gives null
 * @return the node's own units, else the first ones along its chain of typedefs; null when there
 *         are none, when the context does not keep them (#ZR_CTX_KEEP_UNITS), and for other kinds
 */
ZR_API const char *ZR_NODE_GetUnitsValueStr(const ZrNode *node);

/**
 * Returns the default value that the type of a leaf or leaf-list brings along (RFC 7950, sections
 * 7.3.4, 7.6.1 and 7.7.2), whatever the node says itself.
 *
 * @param node  a schema node; null gives null
 * @return the first default along the node's chain of typedefs; null when there is none, and for
 *         other kinds. It is in force only where the node has no default of its own, is not
 *         mandatory and, for a leaf-list, has no "min-elements".
 */
ZR_API const char *ZR_NODE_GetTypedefDefaultStr(const ZrNode *node);

/**
 * Returns the units that the type of a leaf or leaf-list brings along (RFC 7950, section 7.3.3),
 * whatever the node says itself.
 *
 * @param node  a schema node; null gives null
 * @return the first units along the node's chain of typedefs; null when there are none, when the
 *         context does not keep them (#ZR_CTX_KEEP_UNITS), and for other kinds
 */
ZR_API const char *ZR_NODE_GetTypedefUnitsStr(const ZrNode *node);

/**
 * Walks the chain of typedefs of a leaf or leaf-list, as ZR_TYPE_IterRealTypeDerivedName() does.
 *
 * @param node      a leaf or leaf-list; null or any other kind gives #ZR_ERR_INVALID
 * @param callback  called once a link, or once with null names for a built-in type; a result other
 *                  than 0 stops the walk; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           the chain was walked to its end, or to a typedef that is not loaded
 * @retval ZR_ERR_INVALID  a missing argument, a node without type, or a chain of more than 128
 *                         typedefs
 * @return else the callback's result
 */
ZR_API uint32_t ZR_NODE_ScanDerivedType(const ZrNode *node, ZrDerivedTypeScanFunc callback,
                                        void *userData);

/**
 * Returns the node that a leafref points to (RFC 7950, section 9.9).
 *
 * The type may be a leafref itself or a typedef of one. Predicates of the path play no part.
 *
 * @param node    a leaf or leaf-list; null, or one without a leafref type, gives null
 * @param follow  0 for the node that the path names; any other value goes on while that node is a
 *                leafref too, and returns the last one
 * @return the target; null when the path names no loaded node, and, when following, when 129 steps
 *         do not come to an end (leafrefs that point at each other)
 */
ZR_API ZrNode *ZR_NODE_GetLeafrefTargetNode(const ZrNode *node, uint32_t follow);

/**
 * Checks a value against the type of a leaf or leaf-list (RFC 7950, section 9).
 *
 * @param node       a leaf or leaf-list; null or any other kind gives #ZR_ERR_INVALID
 * @param inputKind  a ::ZrValueInput: what `value` points to; any other number counts as no value
 * @param value      a NUL-terminated string, or a libxml2 element (xmlNode *) whose text is the
 *                   value; it is only read
 * @retval ZR_OK                 the type takes the value
 * @retval ZR_ERR_INVALID        a missing argument, or a node without type
 * @retval ZR_ERR_VALUE_NO_BODY  to #ZR_ERR_VALUE_EMPTY: the type refuses the value; see ::ZrStatus
 * @return else a status of a failure inside the check, such as #ZR_ERR_NO_MEMORY
 */
ZR_API uint32_t ZR_NODE_ValidateValue(const ZrNode *node, uint32_t inputKind, const void *value);

/**
 * Checks a value like ZR_NODE_ValidateValue() and tells which type took it.
 *
 * @param node       a leaf or leaf-list; null or any other kind gives null
 * @param inputKind  a ::ZrValueInput: what `value` points to
 * @param value      as for ZR_NODE_ValidateValue()
 * @return the type that took the value: the member of a union, the innermost typedef's type, or
 *         else the node's own type; it belongs to the schema. Null when the value is refused.
 */
ZR_API const ZrtRealType *ZR_NODE_FindRealTypeMatchedValue(const ZrNode *node, uint32_t inputKind,
                                                           const void *value);

/**
 * Walks a whole subtree, parents before their children.
 *
 * The callback is called with #ZR_ARRIVAL_ROOT for the root, #ZR_ARRIVAL_CHILD for a first child,
 * #ZR_ARRIVAL_SIBLING for every other child, and once more with #ZR_ARRIVAL_PARENT for each node
 * whose children have all been visited. The root's own siblings are not visited; below an augment
 * node only the nodes that it adds are. The callback must not unlink nodes of the subtree.
 *
 * @param root      the node to start at; null gives #ZR_ERR_INVALID
 * @param callback  0 goes on, #ZR_SCAN_SKIP_SUBTREE goes on without the node's children, any other
 *                  value stops the walk; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           the subtree was walked to its end
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 */
ZR_API uint32_t ZR_NODE_TreeScanAllNode(ZrNode *root, ZrNodeScanFunc callback, void *userData);

/**
 * Calls back for each child of a node, in schema order, with #ZR_ARRIVAL_CHILD.
 *
 * Of an augment node only the nodes that it adds are visited, coupled or not. The callback may
 * unlink the child that it is called with.
 *
 * @param node      a schema node; null gives #ZR_ERR_INVALID
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every child was visited, or there is none
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 */
ZR_API uint32_t ZR_NODE_IterScanChildrenNode(const ZrNode *node, ZrNodeScanFunc callback,
                                             void *userData);

/**
 * Calls back for a node and each of its following siblings, with #ZR_ARRIVAL_SIBLING.
 *
 * The callback may unlink the node that it is called with.
 *
 * @param node      the node to start at; null gives #ZR_ERR_INVALID
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every sibling from the node on was visited
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 */
ZR_API uint32_t ZR_NODE_IterScanSiblingNode(ZrNode *node, ZrNodeScanFunc callback, void *userData);

/**
 * Calls back for each extension instance of a node (RFC 7950, section 7.19), in order.
 *
 * Instances inside an instance are reached with ZR_EXT_ScanAllChildExtInsts().
 *
 * @param node      a schema node; null gives #ZR_ERR_INVALID
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every instance was visited, or there is none
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 */
ZR_API uint32_t ZR_NODE_ScanAllExtInsts(const ZrNode *node, ZrExtInstScanFunc callback,
                                        void *userData);

/**
 * Calls back for each extension instance directly inside another one, in order.
 *
 * @param instance  an instance that a scan handed out; null gives #ZR_ERR_INVALID
 * @param callback  0 goes on, any other value stops the scan; null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK           every instance was visited, or there is none
 * @retval ZR_ERR_INVALID  a null argument
 * @return else the callback's result
 */
ZR_API uint32_t ZR_EXT_ScanAllChildExtInsts(const ZrsExtInst *instance, ZrExtInstScanFunc callback,
                                            void *userData);

/**
 * Adds an extension instance to a node, unless an equal one is there already.
 *
 * An instance of "ietf-netconf-acm" named "default-deny-all" or "default-deny-write" also sets that
 * default of access control, beside what the node has; everything below it follows (RFC 8341,
 * section 3.2.2).
 *
 * @param node           a schema node; null gives #ZR_ERR_INVALID
 * @param moduleName     the module that defines the extension; null gives #ZR_ERR_INVALID; the text
 *                       is copied
 * @param extensionName  the extension's name; null gives #ZR_ERR_INVALID; the text is copied
 * @param argument       the instance's argument, or null; the text is copied
 * @retval ZR_OK             the node has the instance
 * @retval ZR_ERR_NO_MEMORY  out of memory; nothing changed
 * @retval ZR_ERR_INVALID    a missing argument, a node without module or context, or more than
 *                           65,535 instances
 * @note Changes the node.
 */
ZR_API uint32_t ZR_NODE_AppendExtInst(ZrNode *node, const char *moduleName,
                                      const char *extensionName, const char *argument);

/**
 * Replaces a node's extension instances by copies of another node's, with all that is inside them.
 * Access control defaults stay as they are.
 *
 * @param destination  the node that receives them; null gives #ZR_ERR_INVALID
 * @param source       the node that is copied from; null, or a node without instances, gives
 *                     #ZR_ERR_INVALID
 * @retval ZR_OK             done
 * @retval ZR_ERR_NO_MEMORY  out of memory; the destination is as it was
 * @retval ZR_ERR_INVALID    a missing argument, or a destination without module or context; nothing
 *                           changed
 * @note Changes the destination.
 */
ZR_API uint32_t ZR_NODE_ReplaceDstExtInst(ZrNode *destination, const ZrNode *source);

/**
 * Removes all extension instances from a node.
 *
 * Access control defaults that an instance has set stay set; with #ZR_CTX_STANDARD until the node
 * takes over its parent's the next time.
 *
 * @param node  a schema node; null does nothing
 * @note Changes the node.
 */
ZR_API void ZR_NODE_CleanExtInsts(ZrNode *node);

/**
 * Scans the "must" conditions of a node in their order (RFC 7950, section 7.5.3).
 *
 * @param node      a node; null gives #ZR_ERR_INVALID
 * @param callback  called for each; null gives #ZR_ERR_INVALID
 * @param userData  passed to the callback
 * @return #ZR_OK after the last one, #ZR_ERR_INVALID, or the first non-zero result of the callback
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_ScanAllMusts(const ZrNode *node, ZrMustScanFunc callback, void *userData);

/**
 * Scans the "if-feature" entries of a node in their order, those that an augment passed on to it
 * included (RFC 7950, section 7.20.2). The node is enabled while all of these features are on.
 *
 * @param node      a node; null gives #ZR_ERR_INVALID
 * @param callback  called for each; null gives #ZR_ERR_INVALID
 * @param userData  passed to the callback
 * @return #ZR_OK after the last one, #ZR_ERR_INVALID, or the first non-zero result of the callback
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_ScanAllIfFeatures(const ZrNode *node, ZrIfFeatureScanFunc callback,
                                          void *userData);

/**
 * Scans the default values that a node gives itself: the one of a leaf, those of a leaf-list, the
 * default case of a choice. A typedef's default is not among them (see
 * ZR_NODE_GetDefaultValueStr()).
 *
 * @param node      a node; null gives #ZR_ERR_INVALID; a node of another kind has none
 * @param callback  called for each; null gives #ZR_ERR_INVALID
 * @param userData  passed to the callback
 * @return #ZR_OK after the last one, #ZR_ERR_INVALID, or the first non-zero result of the callback
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_ScanAllDefaults(const ZrNode *node, ZrTextScanFunc callback,
                                        void *userData);

/**
 * Writes the schema path of a node: one step for the node and each ancestor, qualified with the
 * module name where it differs from the step before. ZR_CTX_GetTargetNode() finds the node by it.
 *
 * @param node    a node; null gives #ZR_ERR_INVALID
 * @param buffer  receives the path and a NUL; null gives #ZR_ERR_INVALID; empty after a failure
 * @param size    the buffer's size in bytes; 512 are enough for those of real modules, 20,000
 *                for every path that can be looked up: the longest ones lead below an augment whose
 *                target has one of 3,095 characters, down as many levels as a file may nest
 * @retval ZR_OK             the path is in the buffer
 * @retval ZR_ERR_NO_MEMORY  the path does not fit
 * @retval ZR_ERR_INVALID    a null argument, or a size of 0
 * @note May run at the same time as other queries on the context.
 */
ZR_API uint32_t ZR_NODE_GetNodePath(const ZrNode *node, char *buffer, uint32_t size);

#ifdef __cplusplus
}
#endif

#endif
