// SPDX-License-Identifier: Apache-2.0
// Schema nodes by path, and what a target path says of its target.
//
// Paths are in module-name form: a step carries a module's name where the path enters that module,
// so the first step always does. Predicates are passed over. A path that does not resolve yields
// null; the caller knows what to say about it.
#pragma once

#include <zrschema/context.h>

#include "foundation/text.h"
#include "model/navigation.h"

extern "C" {
// By schema node identifier, from `start` or else from the module's top-level nodes: every schema
// node is a step, choice, case, input and output too (RFC 7950, section 6.5). For callers outside
// the library.
ZR_API ZrNode *ZRS_MOD_GetNodeBySchemaNodeId(const ZrMod *module, ZrNode *start, const char *path);
// Below the module's own augments of exactly that target; `*augmentOut`, which may be left out,
// becomes the augment in which the node was found, or null. For callers outside the library.
ZR_API ZrNode *ZRS_MOD_GetNodeUnderAugmentBySchemaNodeId(const ZrMod *module,
                                                         const char *augmentTarget,
                                                         const char *restPath, ZrNode **augmentOut);
// The target of an augment of the module's own nodes, without the context. ZR_OK with null when
// the target lies in another module or is not there; ZR_ERR_INVALID for a null argument or a path
// without a named step, and then `*nodeOut` is left alone. For callers outside the library.
ZR_API uint32_t ZRS_MOD_FindAugNodeTargetInSelfMod(const ZrMod *module, const ZrNode *augment,
                                                   ZrNode **nodeOut);
}

namespace zr {
class ChildIndex;

// ZR_CTX_GetTargetNode() for many paths in a row, with an index that may be null.
ZrNode *FindTarget(const ZrCtx *ctx, const char *path, ZrNode **augmentOut, ChildIndex *index);

using ModuleNameText = char[kNameSize];

// The module that a target path names last, which owns the target: false for a path without one.
bool LastNamedModule(const char *path, ModuleNameText &nameOut);
// Whether the target path names that module last.
bool LeadsIntoModule(const char *path, const char *moduleName);

// Whether `path` is `root` or leads to something below it.
bool IsPathAtOrBelow(const char *path, const char *root);

// Whether the node is part of a schema; one that hangs in an augment without a target is not yet.
bool StandsInSchema(const ZrNode *node);

} // namespace zr
