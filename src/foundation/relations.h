// SPDX-License-Identifier: Apache-2.0
// Which modules change which other modules.
//
// A relation says that the nodes of one module, the target, are added to or changed by another
// module's augment or deviation, so that unloading one finds everything that must be redone.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/dict.h"
#include "foundation/list.h"
#include "platform/avl.h"

enum ZrRelationKind : uint32_t {
    ZR_RELATION_AUGMENTED_BY = 0, // the other module's augment adds nodes to the target module
    ZR_RELATION_DEVIATED_BY = 1   // the other module's deviation changes the target module
};

struct ZrModRelItem {
    ZrListLink link;       // first, so that a link is its item
    uint32_t kind;         // ZrRelationKind
    const char *otherName; // interned
    uint32_t refCount;     // always 1: a relation is stored once however often it is added
};

struct ZrModRelTbl { // the relations of one target module; never empty
    PalAvlNode treeNode;
    const char *moduleName; // interned
    ZrDict *dict;           // the context's
    ZrListLink items;       // newest first
};

extern "C" {
// Makes the tree of relations empty; deletes every table in it.
ZR_API void ZR_CTX_InitModRelationTree(ZrCtx *ctx);
ZR_API void ZR_CTX_DeInitModRelationTree(ZrCtx *ctx);
// Orders two module names; equal pointers are equal without a look at the text.
ZR_API int32_t ZR_CTX_CompareModRelationTbl(const void *keyA, const void *keyB);
// Adds a relation; one that is there already is not added again. ZR_OK, ZR_ERR_NO_MEMORY, or
// ZR_ERR_INVALID for a null argument.
ZR_API uint32_t ZR_CTX_AddTwoModRelation(ZrCtx *ctx, const char *targetModuleName,
                                         const char *otherModuleName, uint32_t kind);
// Removes a relation, and with the last one of a target its table; unknown ones are ignored.
ZR_API void ZR_CTX_DelTwoModRelation(ZrCtx *ctx, const char *targetModuleName,
                                     const char *otherModuleName, uint32_t kind);
// The table of a target module, or null.
ZR_API ZrModRelTbl *ZR_CTX_FindModRelationTbl(const ZrCtx *ctx, const char *moduleName);
// The relation of that kind with another module, or null. `otherName` is interned: it is compared
// by pointer.
ZR_API ZrModRelItem *ZR_CTX_FindModRelationItem(const ZrModRelTbl *table, uint32_t kind,
                                                const char *otherName);
// Collects the modules that change a module, those that change them, and so on, nearest first and
// each once; the module itself only when a circle leads back to it. `*namesOut` becomes an array of
// interned names for the caller to release with zr::Free, null when there are none. ZR_OK,
// ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for a null argument.
// For callers outside the library.
ZR_API uint32_t ZR_CTX_CollectDepModNamesRecursive(ZrCtx *ctx, const char *moduleName,
                                                   uint32_t kind, const char ***namesOut,
                                                   uint32_t *countOut);
}

namespace zr {
// The tables of all target modules in the order of their names: the first, and the one after a
// table; null at the end.
const ZrModRelTbl *FirstRelationTable(const ZrCtx *ctx);
const ZrModRelTbl *NextRelationTable(const ZrCtx *ctx, const ZrModRelTbl *table);
} // namespace zr
