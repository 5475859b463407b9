// SPDX-License-Identifier: Apache-2.0
// The statements on the entries of lists and leaf-lists, which contexts with ZR_CTX_STANDARD keep:
// "min-elements", "max-elements" and "unique". The table of statements has no parser for them,
// since all other contexts pass them over.
#pragma once

#include <libxml/tree.h>

#include <zrschema/types.h>

#include "model/module_records.h"

namespace zr {

// Reads those that may stand in the element into the record of `owner`, a node or a deviate:
// `statement` is ZRS_STMT_LIST, ZRS_STMT_LEAF_LIST or, for a deviate of the kind, ZRS_STMT_DEVIATE.
// ZR_OK, also without the bit, ZR_ERR_NO_MEMORY, or ZR_ERR_FAILED or ZR_ERR_INVALID with a record
// of what is wrong. What was read before a failure is released with its owner.
uint32_t ReadEntryStatements(ZrMod *module, const xmlNode *element, uint32_t statement,
                             const void *owner, uint32_t deviateKind = 0);

} // namespace zr
