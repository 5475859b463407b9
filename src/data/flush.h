// The flush: every element is matched to its schema node, which goes into its private pointer, and
// is checked in document order. The first fault ends it.
#pragma once

#include "data/check_run.h"

extern "C" {
ZR_API uint32_t ZRD_PAS_FlushTreeWithSchema(ZrdCheckAux *check, xmlNode *top);
// One element below a matched one, with all that stands below it. An element that carries a schema
// node already is left as it is.
ZR_API uint32_t ZRD_PAS_FlushSubTreeWithSchema(ZrdCheckAux *check, xmlNode *element,
                                               ZrNode *parentSchema);
ZR_API uint32_t ZRD_PAS_FlushAllElementChildNodeWithSchema(ZrdCheckAux *check, xmlNode *element,
                                                           ZrNode *schemaNode);
}
