/* SPDX-License-Identifier: Apache-2.0 */
/**
 * @file print.h
 * Printing a schema as an indented text tree, in the style of YANG tree diagrams (RFC 8340).
 *
 *     module: box
 *     +--rw box
 *        +--rw item* [name]
 *        |  +--rw name    string
 *        |  +--rw size?   uint8 <1>
 *        +--ro (state)?
 *           +--:(open)
 *              +--ro open?   boolean
 *     rpcs:
 *     +---x reset
 *
 * A line's first character is the node's status: "+" current, "x" deprecated, "o" obsolete. Then
 * come "rw" for configuration, "ro" for state and for the content of outputs and notifications,
 * "-w" for the content of inputs, "-x" for RPCs and actions, "-n" for notifications and ":" for
 * cases. After the name stand "?" for an optional node, "*" for a list or leaf-list, "!" for a
 * presence container, a list's keys, the type, and the node's own default in angle brackets. Nodes
 * and typedefs of other modules carry their module's name. Nodes whose features are not all
 * enabled are left out with everything below them.
 *
 * Both functions hand the text over in pieces of at most 8191 bytes, each ending with a line. They
 * read the schema only, and may run at the same time as other functions that do.
 */
#ifndef ZRSCHEMA_PRINT_H
#define ZRSCHEMA_PRINT_H

#include <zrschema/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Prints a module: its data nodes, with what other modules' augments have put among them, then the
 * augments that it declares, its RPCs and its notifications.
 *
 * @param module    a loaded module; null gives #ZR_ERR_INVALID
 * @param callback  receives the text piece by piece; a result other than 0 stops the printing;
 *                  null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK             the whole tree was handed over
 * @retval ZR_ERR_FAILED     the callback stopped the printing, or a line is longer than 8191 bytes;
 *                           what was handed over before stays so
 * @retval ZR_ERR_NO_MEMORY  out of memory; nothing was printed
 * @retval ZR_ERR_INVALID    a null argument; nothing was printed
 */
ZR_API uint32_t ZR_MOD_PrintModelTree(const ZrMod *module, ZrPrintFunc callback, void *userData);

/**
 * Prints one node with everything below it, under the lines of its ancestors.
 *
 * The header names the module in whose tree the node stands, so that a node of a coupled augment is
 * printed as it is within the augmented module. A node below a disabled one is left out with all
 * that follows it.
 *
 * @param node      a schema node; null, or a node without module, gives #ZR_ERR_INVALID
 * @param callback  receives the text piece by piece; a result other than 0 stops the printing;
 *                  null gives #ZR_ERR_INVALID
 * @param userData  handed to the callback; null is allowed
 * @retval ZR_OK             the node was handed over
 * @retval ZR_ERR_FAILED     the node is an augment or stands in one that is not coupled, the
 *                           callback stopped the printing, or a line is longer than 8191 bytes
 * @retval ZR_ERR_NO_MEMORY  out of memory; nothing was printed
 * @retval ZR_ERR_INVALID    a null argument; nothing was printed
 */
ZR_API uint32_t ZR_NODE_PrintNodesTree(const ZrNode *node, ZrPrintFunc callback, void *userData);

#ifdef __cplusplus
}
#endif

#endif
