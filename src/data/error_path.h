// The error path of a data node: module-qualified steps with key and value predicates.
#pragma once

#include "data/check_records.h"

extern "C" {
// The path from below the run's root node down to `dataNode`, to be freed through the hooks; null
// for the root node itself, for a path that does not fit and when memory runs out.
ZR_API char *ZRD_ERR_GeneralErrorPath(const ZrdCheckAux *check, const xmlNode *dataNode);

// The writers put their text in front of what stands in the buffer: `*space` is the number of
// free bytes at its start. 22 when a step does not fit, 12 when a predicate does not.
ZR_API uint32_t ZRD_ERR_PrintPath(const ZrdCheckAux *check, const xmlNode *dataNode, char *buffer,
                                  uint32_t *space);
ZR_API uint32_t ZRD_ERR_PrintElementNode(const ZrdCheckAux *check, const xmlNode *element,
                                         char *buffer, uint32_t *space);
ZR_API uint32_t ZRD_ERR_PrintXpathNode(const char *qualifier, const char *name, char *buffer,
                                       uint32_t *space);
// "[.='value']" for a leaf-list entry, "[key='value']" for a key leaf.
ZR_API uint32_t ZRD_ERR_PrintElementNodeAsPredicate(const xmlNode *element, char *buffer,
                                                    uint32_t *space);
// The name of the module that an element belongs to; null for a node that is no element and for a
// namespace of no loaded module.
ZR_API const char *ZRD_NODE_GetModuleName(const ZrCtx *ctx, const xmlNode *element);
}
