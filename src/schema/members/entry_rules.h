// SPDX-License-Identifier: Apache-2.0
// What lists and leaf-lists say of their entries, in contexts with ZR_CTX_STANDARD: "min-elements",
// "max-elements", "unique" and the order of keys. The records stand in a tree of the context; their
// owners are nodes and deviates, which stay where they are as long as they live. Contexts without
// the bit have none, and every function takes them.
#pragma once

#include "model/node_record.h"

namespace zr {

// The owner's record, or null.
const ZrsEntryRules *EntryRulesOf(const ZrCtx *ctx, const void *owner);
// The owner's record, made when there is none; null without memory and without ZR_CTX_STANDARD.
ZrsEntryRules *NeedEntryRules(ZrCtx *ctx, const void *owner);
// Releases the owner's record, when it has one.
void DropEntryRules(ZrCtx *ctx, const void *owner);
// Gives `owner`, which has none, a copy of the record: ZR_OK, also when there is nothing to copy,
// or ZR_ERR_NO_MEMORY.
uint32_t CopyEntryRules(ZrCtx *ctx, const void *owner, const ZrsEntryRules *source);
// Each gets what the other has. Needs no memory.
void SwapEntryRules(ZrCtx *ctx, const void *a, const void *b);

// Sets the numbers of those of "min-elements" and "max-elements" that `from` gives.
void TakeElementNumbers(const ZrsEntryRules *from, ZrsEntryRules *rules);

// The place of an equal "unique" (an interned text), or the count.
uint32_t FindUnique(const ZrsEntryRules *rules, const char *unique);
// Appends all of the texts or none: ZR_OK, ZR_ERR_NO_MEMORY, or ZR_ERR_INVALID for more than
// 65,535 altogether.
uint32_t AppendUniques(ZrDict *dict, ZrsEntryRules *rules, const char *const *uniques,
                       uint32_t count);
// Takes one out; needs no memory.
void RemoveUnique(ZrDict *dict, ZrsEntryRules *rules, uint32_t index);

} // namespace zr
