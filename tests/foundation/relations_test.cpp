// SPDX-License-Identifier: Apache-2.0
#include "foundation/relations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "bare_context.h"
#include "platform/memory.h"
#include "support/alloc.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr uint32_t kAugmentedBy = ZR_RELATION_AUGMENTED_BY;
constexpr uint32_t kDeviatedBy = ZR_RELATION_DEVIATED_BY;

std::vector<std::string> Collect(ZrCtx *ctx, const std::string &moduleName, uint32_t kind)
{
    const char **names = nullptr;
    uint32_t count = 0;
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx, moduleName.c_str(), kind, &names, &count),
              ZR_OK);
    std::vector<std::string> collected(names, names + count);
    zr::Free(names);
    return collected;
}

class Relations : public zrtest::BareContextTest {
protected:
    // Names come as texts of their own, as an application's would.
    uint32_t Add(const std::string &target, const std::string &other, uint32_t kind = kAugmentedBy)
    {
        return ZR_CTX_AddTwoModRelation(ctx_, target.c_str(), other.c_str(), kind);
    }
    void Delete(const std::string &target, const std::string &other, uint32_t kind = kAugmentedBy)
    {
        ZR_CTX_DelTwoModRelation(ctx_, target.c_str(), other.c_str(), kind);
    }
    // The relations of a target, newest first, each as kind and other name.
    std::vector<std::string> Items(const char *target) const
    {
        std::vector<std::string> items;
        const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx_, target);
        if (table == nullptr)
            return items;
        for (const ZrListLink *link = table->items.next; link != &table->items; link = link->next) {
            EXPECT_EQ(link->next->prev, link);
            const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
            EXPECT_EQ(item->refCount, 1u);
            items.push_back(std::to_string(item->kind) + item->otherName);
        }
        return items;
    }
};

TEST_F(Relations, AreKeptPerTargetNewestFirst)
{
    EXPECT_EQ(Add("a", "b"), ZR_OK);
    EXPECT_EQ(Add("a", "c", kDeviatedBy), ZR_OK);
    EXPECT_EQ(Add("x", "b"), ZR_OK);
    EXPECT_THAT(Items("a"), ElementsAre("1c", "0b"));
    EXPECT_THAT(Items("x"), ElementsAre("0b"));
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, "b"), nullptr);
}

TEST_F(Relations, AreStoredOnceHoweverOftenTheyAreAdded)
{
    EXPECT_EQ(Add("a", "b"), ZR_OK);
    EXPECT_EQ(Add("a", "b"), ZR_OK);
    EXPECT_THAT(Items("a"), ElementsAre("0b"));
    EXPECT_EQ(Add("a", "b", kDeviatedBy), ZR_OK);
    EXPECT_THAT(Items("a"), ElementsAre("1b", "0b"));
}

TEST_F(Relations, TheLastOneOfATargetTakesItsTableAlong)
{
    Add("a", "b");
    Add("a", "c");
    Delete("a", "b");
    EXPECT_THAT(Items("a"), ElementsAre("0c"));
    Delete("a", "c");
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, "a"), nullptr);
}

TEST_F(Relations, DeletingOneThatIsNotThereChangesNothing)
{
    Add("a", "b");
    Delete("a", "b", kDeviatedBy);
    Delete("a", "x");
    Delete("x", "b");
    ZR_CTX_DelTwoModRelation(nullptr, "a", "b", kAugmentedBy);
    ZR_CTX_DelTwoModRelation(ctx_, nullptr, "b", kAugmentedBy);
    ZR_CTX_DelTwoModRelation(ctx_, "a", nullptr, kAugmentedBy);
    EXPECT_THAT(Items("a"), ElementsAre("0b"));
}

TEST_F(Relations, GiveTheirStringsBack)
{
    Add("a", "b");
    Add("a", "b");
    Delete("a", "b");
    for (uint32_t i = 0; i < ctx_->dict.bucketCount; ++i)
        EXPECT_EQ(ctx_->dict.buckets[i].head, nullptr);
}

TEST_F(Relations, AnItemIsFoundByKindAndInternedName)
{
    Add("a", "b");
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx_, "a");
    ASSERT_NE(table, nullptr);
    EXPECT_STREQ(table->moduleName, "a");
    EXPECT_EQ(table->dict, &ctx_->dict);
    const char *interned = ZR_DICT_Insert(&ctx_->dict, "b");
    EXPECT_NE(ZR_CTX_FindModRelationItem(table, kAugmentedBy, interned), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationItem(table, kDeviatedBy, interned), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationItem(table, kAugmentedBy, std::string("b").c_str()), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationItem(nullptr, kAugmentedBy, interned), nullptr);
    ZR_DICT_Remove(&ctx_->dict, interned);
}

TEST_F(Relations, NullArguments)
{
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(nullptr, "a", "b", kAugmentedBy), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(ctx_, nullptr, "b", kAugmentedBy), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(ctx_, "a", nullptr, kAugmentedBy), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(nullptr, "a"), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, nullptr), nullptr);
    ZR_CTX_InitModRelationTree(nullptr);
    ZR_CTX_DeInitModRelationTree(nullptr);
}

TEST_F(Relations, DeInitDeletesEveryTable)
{
    Add("a", "b");
    Add("b", "c", kDeviatedBy);
    ZR_CTX_DeInitModRelationTree(ctx_);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, "a"), nullptr);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx_, "b"), nullptr);
    EXPECT_EQ(Add("a", "b"), ZR_OK);
}

TEST(CompareModRelationTbl, TakesEqualPointersAsEqualAndElseComparesBytes)
{
    std::string a = "a";
    EXPECT_EQ(ZR_CTX_CompareModRelationTbl(a.c_str(), a.c_str()), 0);
    EXPECT_EQ(ZR_CTX_CompareModRelationTbl(a.c_str(), "a"), 0);
    EXPECT_LT(ZR_CTX_CompareModRelationTbl("a", "b"), 0);
    EXPECT_GT(ZR_CTX_CompareModRelationTbl("\xff", "b"), 0);
}

TEST_F(Relations, CollectingFollowsChains)
{
    Add("a", "b");
    Add("b", "c");
    EXPECT_THAT(Collect(ctx_, "a", kAugmentedBy), ElementsAre("b", "c"));
    EXPECT_THAT(Collect(ctx_, "b", kAugmentedBy), ElementsAre("c"));
    EXPECT_THAT(Collect(ctx_, "c", kAugmentedBy), IsEmpty());
}

TEST_F(Relations, CollectingGoesBreadthFirstAndListsEachModuleOnce)
{
    for (auto [target, other] :
         {std::pair("a", "c"), {"a", "b"}, {"b", "d"}, {"c", "d"}, {"c", "e"}})
        Add(target, other);
    EXPECT_THAT(Collect(ctx_, "a", kAugmentedBy), ElementsAre("b", "c", "d", "e"));
}

TEST_F(Relations, CollectingFollowsOneKindOnly)
{
    Add("a", "b", kDeviatedBy);
    Add("b", "c", kAugmentedBy);
    EXPECT_THAT(Collect(ctx_, "a", kDeviatedBy), ElementsAre("b"));
    EXPECT_THAT(Collect(ctx_, "a", kAugmentedBy), IsEmpty());
}

TEST_F(Relations, CollectingListsTheStartOnlyWhenACircleLeadsBackToIt)
{
    Add("a", "b");
    Add("b", "a");
    EXPECT_THAT(Collect(ctx_, "a", kAugmentedBy), ElementsAre("b", "a"));
}

TEST_F(Relations, CollectingGrowsBeyondTheFirst32Names)
{
    std::set<std::string> expected;
    for (int i = 0; i < 100; ++i) {
        std::string other = "m" + std::to_string(i);
        Add(i % 2 == 0 ? "a" : "m0", other);
        expected.insert(other);
    }
    std::vector<std::string> collected = Collect(ctx_, "a", kAugmentedBy);
    EXPECT_EQ(collected.size(), 100u);
    EXPECT_EQ(std::set<std::string>(collected.begin(), collected.end()), expected);
}

TEST_F(Relations, CollectingNothingGivesNoArray)
{
    const char *junk = "junk";
    const char **names = &junk;
    uint32_t count = 9;
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx_, "a", kAugmentedBy, &names, &count), ZR_OK);
    EXPECT_EQ(names, nullptr);
    EXPECT_EQ(count, 0u);
}

TEST_F(Relations, CollectingWithANullArgumentIs22)
{
    const char **names = nullptr;
    uint32_t count = 0;
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(nullptr, "a", 0, &names, &count), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx_, nullptr, 0, &names, &count), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx_, "a", 0, nullptr, &count), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx_, "a", 0, &names, nullptr), ZR_ERR_INVALID);
}

TEST_F(Relations, CollectingAnUnnamedFirstModuleIs22)
{
    Add("a", "b");
    ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(ctx_, "a");
    auto *item = reinterpret_cast<ZrModRelItem *>(table->items.next);
    const char *name = item->otherName;
    item->otherName = nullptr;
    const char **names = nullptr;
    uint32_t count = 0;
    EXPECT_EQ(ZR_CTX_CollectDepModNamesRecursive(ctx_, "a", kAugmentedBy, &names, &count),
              ZR_ERR_INVALID);
    EXPECT_EQ(names, nullptr);
    item->otherName = name;
}

// Adds a relation and takes it away again.
auto Adding(ZrCtx *ctx, const char *target, const char *other)
{
    return [=](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZR_CTX_AddTwoModRelation(ctx, target, other, kAugmentedBy); });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        ZR_CTX_DelTwoModRelation(ctx, target, other, kAugmentedBy);
    };
}

TEST(RelationsMemory, AddingFailsCleanlyWhenAnyAllocationFails)
{
    zrtest::AllocGuard guard;
    ZrCtx *ctx = ZR_CTX_Create(0);
    // The table and its name, two blocks, then the other name, two blocks, and the item.
    EXPECT_EQ(zrtest::FailEachAllocation(guard, Adding(ctx, "a", "b")), 6u);
    ZR_CTX_AddTwoModRelation(ctx, "a", "b", kAugmentedBy);
    EXPECT_EQ(zrtest::FailEachAllocation(guard, Adding(ctx, "a", "c")), 3u);
    guard.FailAt(0, true);
    EXPECT_EQ(ZR_CTX_AddTwoModRelation(ctx, "a", "b", kAugmentedBy), ZR_OK) << "known already";
    ZR_CTX_DelTwoModRelation(ctx, "a", "b", kAugmentedBy);
    EXPECT_EQ(ZR_CTX_FindModRelationTbl(ctx, "a"), nullptr) << "deleting needs no memory";
    guard.Stop();
    zrtest::DestroyBareContext(ctx);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

TEST_F(Relations, WithoutMemoryDeletingOneThatIsNotThereChangesNothing)
{
    Add("a", "b");
    {
        zrtest::AllocGuard guard;
        guard.FailAt(0);
        Delete("a", "unknown");
        EXPECT_EQ(guard.LiveBlocks(), 0);
    }
    EXPECT_THAT(Items("a"), ElementsAre("0b"));
}

TEST(RelationsMemory, CollectingIs12WhenMemoryRunsOut)
{
    zrtest::AllocGuard guard;
    ZrCtx *ctx = ZR_CTX_Create(0);
    for (int i = 0; i < 40; ++i)
        ZR_CTX_AddTwoModRelation(ctx, "a", std::to_string(i).c_str(), kAugmentedBy);
    zrtest::FailEachAllocation(guard, [&](zrtest::FailPoint &memory) {
        const char **names = nullptr;
        uint32_t count = 0;
        uint32_t status = memory.Run([&] {
            return ZR_CTX_CollectDepModNamesRecursive(ctx, "a", kAugmentedBy, &names, &count);
        });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        EXPECT_EQ(names == nullptr, memory.Failed());
        zr::Free(names);
    });
    zrtest::DestroyBareContext(ctx);
}

} // namespace
