// SPDX-License-Identifier: Apache-2.0
#include "schema/members/entry_rules.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "foundation/array.h"
#include "platform/memory.h"

namespace {

int32_t CompareOwners(const void *a, const void *b)
{
    auto first = reinterpret_cast<uintptr_t>(a);
    auto second = reinterpret_cast<uintptr_t>(b);
    return first < second ? -1 : int32_t{first > second};
}

constexpr PalAvlInfo kByOwner = {CompareOwners, offsetof(ZrsEntryRules, owner),
                                 offsetof(ZrsEntryRules, link)};

PalAvlTree *TreeOf(ZrCtx *ctx)
{
    return zr::IsStandard(ctx) ? &static_cast<ZrStandardCtx *>(ctx)->entryRules : nullptr;
}

ZrsEntryRules *Find(ZrCtx *ctx, const void *owner)
{
    PalAvlTree *tree = TreeOf(ctx);
    return tree != nullptr ? static_cast<ZrsEntryRules *>(PAL_AVL3_Find(tree, owner, &kByOwner))
                           : nullptr;
}

void GiveTo(PalAvlTree *tree, ZrsEntryRules *rules, const void *owner)
{
    if (rules == nullptr)
        return;
    rules->owner = owner;
    PAL_AVL3_Insert_Or_Find(tree, rules, &kByOwner);
}

} // namespace

namespace zr {

const ZrsEntryRules *EntryRulesOf(const ZrCtx *ctx, const void *owner)
{
    return Find(const_cast<ZrCtx *>(ctx), owner);
}

ZrsEntryRules *NeedEntryRules(ZrCtx *ctx, const void *owner)
{
    PalAvlTree *tree = TreeOf(ctx);
    ZrsEntryRules *rules = Find(ctx, owner);
    if (tree == nullptr || rules != nullptr)
        return rules;
    rules = New<ZrsEntryRules>();
    GiveTo(tree, rules, owner);
    return rules;
}

void DropEntryRules(ZrCtx *ctx, const void *owner)
{
    ZrsEntryRules *rules = Find(ctx, owner);
    if (rules == nullptr)
        return;
    PAL_AVL3_Delete(TreeOf(ctx), rules, &kByOwner);
    FreeTexts(&ctx->dict, rules->uniques, rules->uniqueCount);
    Release(&ctx->dict, rules->key);
    Free(rules);
}

uint32_t CopyEntryRules(ZrCtx *ctx, const void *owner, const ZrsEntryRules *source)
{
    if (source == nullptr || !IsStandard(ctx))
        return ZR_OK;
    ZrsEntryRules *copy = NeedEntryRules(ctx, owner);
    if (copy == nullptr)
        return ZR_ERR_NO_MEMORY;
    copy->minElements = source->minElements;
    copy->maxElements = source->maxElements;
    copy->given = source->given;
    uint32_t status = AppendUniques(&ctx->dict, copy, source->uniques, source->uniqueCount);
    if (status == ZR_OK && !Intern(&ctx->dict, copy->key, source->key))
        status = ZR_ERR_NO_MEMORY;
    if (status != ZR_OK)
        DropEntryRules(ctx, owner);
    return status;
}

void SwapEntryRules(ZrCtx *ctx, const void *a, const void *b)
{
    PalAvlTree *tree = TreeOf(ctx);
    ZrsEntryRules *ofA = Find(ctx, a);
    ZrsEntryRules *ofB = Find(ctx, b);
    for (ZrsEntryRules *rules : {ofA, ofB}) {
        if (rules != nullptr)
            PAL_AVL3_Delete(tree, rules, &kByOwner);
    }
    GiveTo(tree, ofA, b);
    GiveTo(tree, ofB, a);
}

void TakeElementNumbers(const ZrsEntryRules *from, ZrsEntryRules *rules)
{
    if ((from->given & ZRS_ENTRY_MIN) != 0)
        rules->minElements = from->minElements;
    if ((from->given & ZRS_ENTRY_MAX) != 0)
        rules->maxElements = from->maxElements;
    rules->given |= from->given;
}

uint32_t FindUnique(const ZrsEntryRules *rules, const char *unique)
{
    const char **end = rules->uniques + rules->uniqueCount;
    return static_cast<uint32_t>(std::find(rules->uniques, end, unique) - rules->uniques);
}

uint32_t AppendUniques(ZrDict *dict, ZrsEntryRules *rules, const char *const *uniques,
                       uint32_t count)
{
    uint16_t before = rules->uniqueCount;
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < count && status == ZR_OK; ++i)
        status =
            AppendOne(&rules->uniques, &rules->uniqueCount, [=](const char **text) -> uint32_t {
                return Intern(dict, *text, uniques[i]) ? ZR_OK : ZR_ERR_NO_MEMORY;
            });
    while (status != ZR_OK && rules->uniqueCount > before)
        RemoveUnique(dict, rules, rules->uniqueCount - 1u);
    return status;
}

void RemoveUnique(ZrDict *dict, ZrsEntryRules *rules, uint32_t index)
{
    const char **unique = rules->uniques + index;
    Release(dict, *unique);
    std::move(unique + 1, rules->uniques + rules->uniqueCount, unique);
    --rules->uniqueCount;
}

} // namespace zr
