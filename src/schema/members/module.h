// Module records: prefix resolution, lookups by names, destruction. What applications ask of a
// module stands in zrschema/module.h.
#pragma once

#include <zrschema/context.h>
#include <zrschema/module.h>

#include "model/scope.h"

extern "C" {

// The two halves of freeing a module: its header and member arrays, and its four node lists.
// Coupled augments must be uncoupled before.
ZR_API void ZRS_MOD_DestroyNonNodeMember(ZrMod *module);
ZR_API void ZRS_MOD_DestroyNodeMember(ZrMod *module);
// Frees the record with everything in it; null is accepted. The module stands in no tree any more.
ZR_API void ZRS_MOD_Free(ZrMod *module);

// Takes the module out of the context's trees, deletes its load errors and frees it.
ZR_API void ZR_CTX_DestroyModuleNode(ZrCtx *ctx, ZrMod *module);
// Uncouples all augments of all modules, then destroys every module in name order.
ZR_API void ZR_CTX_DeInitModuleTree(ZrCtx *ctx);
}

namespace zr {
// A zeroed module record of the context, standing in no tree; null when memory runs out.
ZrMod *NewModule(ZrCtx *ctx);
} // namespace zr
