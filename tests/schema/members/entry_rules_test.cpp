// SPDX-License-Identifier: Apache-2.0
#include "schema/members/entry_rules.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include "foundation/array.h"
#include "support/alloc.h"
#include "support/context.h"

using namespace zrtest;
using namespace zrtest::yin;

namespace {

class EntryRules : public testing::Test {
protected:
    EntryRules() : ctx_(ZR_CTX_Create(ZR_CTX_STANDARD)), dict_(&ctx_->dict) {}
    void TearDown() override
    {
        for (const int &owner : owners_)
            zr::DropEntryRules(ctx_, &owner);
        ZR_CTX_Delete(ctx_);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
    }
    // A record with a number, as many texts "u0", "u1", ..., and a key.
    ZrsEntryRules *Fill(const void *owner, uint32_t number, uint32_t uniques)
    {
        ZrsEntryRules *rules = zr::NeedEntryRules(ctx_, owner);
        rules->minElements = number;
        rules->given = ZRS_ENTRY_MIN;
        zr::Intern(dict_, rules->key, "a b");
        for (uint32_t i = 0; i < uniques; ++i) {
            std::string text = "u" + std::to_string(i);
            const char *unique = text.c_str();
            EXPECT_EQ(zr::AppendUniques(dict_, rules, &unique, 1), ZR_OK);
        }
        return rules;
    }
    std::vector<std::string> UniquesOf(const void *owner)
    {
        const ZrsEntryRules *rules = zr::EntryRulesOf(ctx_, owner);
        return {rules->uniques, rules->uniques + rules->uniqueCount};
    }

    AllocGuard guard_;
    ZrCtx *ctx_;
    ZrDict *dict_;
    int owners_[40] = {};
};

TEST_F(EntryRules, AreFoundByTheirOwners)
{
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[0]), nullptr);
    uint32_t number = 0;
    for (const int &owner : owners_)
        Fill(&owner, number++, 0);
    for (uint32_t i = 0; i < 40; ++i)
        EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[i])->minElements, i);
    EXPECT_EQ(zr::NeedEntryRules(ctx_, &owners_[3])->minElements, 3u) << "the same one again";
}

TEST_F(EntryRules, AreNotThereWithoutTheBit)
{
    TestContext other;
    EXPECT_EQ(zr::NeedEntryRules(other, &owners_[0]), nullptr);
    EXPECT_EQ(zr::EntryRulesOf(other, &owners_[0]), nullptr);
    zr::DropEntryRules(other, &owners_[0]);
    zr::SwapEntryRules(other, &owners_[0], &owners_[1]);
    EXPECT_EQ(zr::CopyEntryRules(other, &owners_[1], Fill(&owners_[0], 1, 1)), ZR_OK);
    EXPECT_EQ(zr::EntryRulesOf(nullptr, &owners_[0]), nullptr);
}

TEST_F(EntryRules, ACopyHasAllOfItOrIsNotThere)
{
    const ZrsEntryRules *source = Fill(&owners_[0], 7, 3);
    FailEachAllocation(guard_, [&](FailPoint &point) {
        uint32_t status =
            point.RunStatus([&] { return zr::CopyEntryRules(ctx_, &owners_[1], source); });
        const ZrsEntryRules *copy = zr::EntryRulesOf(ctx_, &owners_[1]);
        EXPECT_EQ(copy != nullptr, status == ZR_OK);
        if (copy == nullptr)
            return;
        EXPECT_EQ(copy->minElements, 7u);
        EXPECT_EQ(copy->given, ZRS_ENTRY_MIN);
        EXPECT_STREQ(copy->key, "a b");
        EXPECT_THAT(UniquesOf(&owners_[1]), testing::ElementsAre("u0", "u1", "u2"));
        zr::DropEntryRules(ctx_, &owners_[1]);
    });
    EXPECT_EQ(zr::CopyEntryRules(ctx_, &owners_[1], nullptr), ZR_OK);
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[1]), nullptr);
}

TEST_F(EntryRules, ASwapGivesEachWhatTheOtherHas)
{
    Fill(&owners_[0], 1, 0);
    Fill(&owners_[1], 2, 0);
    zr::SwapEntryRules(ctx_, &owners_[0], &owners_[1]);
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[0])->minElements, 2u);
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[1])->minElements, 1u);
    zr::SwapEntryRules(ctx_, &owners_[1], &owners_[2]);
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[1]), nullptr);
    EXPECT_EQ(zr::EntryRulesOf(ctx_, &owners_[2])->minElements, 1u);
}

TEST_F(EntryRules, UniquesAreAppendedFoundAndRemovedInOrder)
{
    ZrsEntryRules *rules = Fill(&owners_[0], 0, 3);
    EXPECT_EQ(zr::FindUnique(rules, zr::FindInterned(dict_, "u1")), 1u);
    zr::RemoveUnique(dict_, rules, 1);
    EXPECT_THAT(UniquesOf(&owners_[0]), testing::ElementsAre("u0", "u2"));
    EXPECT_EQ(zr::FindInterned(dict_, "u1"), nullptr) << "nobody holds it any more";
    EXPECT_EQ(zr::FindUnique(rules, "u1"), 2u);
    zr::RemoveUnique(dict_, rules, 0);
    zr::RemoveUnique(dict_, rules, 0);
    const char *const again[] = {"x", "y"};
    EXPECT_EQ(zr::AppendUniques(dict_, rules, again, 2), ZR_OK);
    EXPECT_THAT(UniquesOf(&owners_[0]), testing::ElementsAre("x", "y"));
}

TEST_F(EntryRules, UniquesThatCannotAllBeAppendedAreNot)
{
    ZrsEntryRules *rules = Fill(&owners_[0], 0, 1);
    const char *const more[] = {"x", "y", "z"};
    FailEachAllocation(guard_, [&](FailPoint &point) {
        if (point.RunStatus([&] { return zr::AppendUniques(dict_, rules, more, 3); }) == ZR_OK)
            while (rules->uniqueCount > 1)
                zr::RemoveUnique(dict_, rules, 1);
        EXPECT_THAT(UniquesOf(&owners_[0]), testing::ElementsAre("u0"));
    });
}

// What a context holds.

// The blocks and bytes that are held when a module with these statements in it is loaded.
std::pair<int64_t, int64_t> HeldBy(uint32_t flags, const std::string &list,
                                   const std::string &leafList)
{
    AllocGuard guard;
    TestContext ctx(flags);
    EXPECT_EQ(ctx.LoadBody("m", List("l", "k j", list + Leaf("j") + Leaf("k")) +
                                    LeafList("ll", "string", leafList)),
              ZR_OK);
    return {guard.LiveBlocks(), guard.LiveBytes()};
}

const std::string kNumbers = "<min-elements value=\"1\"/><max-elements value=\"2\"/>";
const std::string kUniques = "<unique tag=\"j\"/><unique tag=\"j k\"/>";

TEST(BytesHeld, AreTheSameWithoutTheBitWhateverIsSaidOfEntries)
{
    auto plain = HeldBy(0, "", "");
    EXPECT_EQ(HeldBy(0, kNumbers + kUniques, kNumbers), plain);
    EXPECT_EQ(HeldBy(0, kUniques, ""), plain);
    EXPECT_NE(HeldBy(ZR_CTX_STANDARD, kNumbers + kUniques, kNumbers),
              HeldBy(ZR_CTX_STANDARD, "", ""));
}

// The records that every context has are those of a library without the bit.
#if UINTPTR_MAX == UINT64_MAX
static_assert(sizeof(ZrNode) == 128);
static_assert(sizeof(ZrsLeafListInfo) == 40);
static_assert(sizeof(ZrsDeviate) == 56);
static_assert(sizeof(ZrCtx) == 464);
static_assert(sizeof(ZrStandardCtx) == sizeof(ZrCtx) + sizeof(PalAvlTree));
static_assert(sizeof(ZrsEntryRules) == 72);
#else
static_assert(sizeof(ZrsEntryRules) == 40);
#endif

TEST(BytesHeld, AreWhatTheyWereOnceAModuleIsUnloaded)
{
    AllocGuard guard;
    TempDir folder;
    folder.Write("m.yin",
                 ModuleText("m", List("l", "k j", kNumbers + kUniques + Leaf("j") + Leaf("k"))));
    folder.Write("d.yin", ModuleText("d", Import("m") + Deviation("/m:l", "replace", kNumbers) +
                                              Deviation("/m:l", "delete", kUniques)));
    TestContext ctx(ZR_CTX_STANDARD);
    ZR_CTX_SetSearchDir(ctx, folder.path().c_str());
    int64_t blocks = 0;
    int64_t bytes = 0;
    for (int round = 0; round < 3; ++round) {
        for (const char *name : {"m", "d"})
            EXPECT_EQ(ZR_CTX_LoadModule(ctx, name), ZR_OK);
        for (const char *name : {"d", "m"})
            EXPECT_EQ(ZR_CTX_UnloadModule(ctx, name), ZR_OK);
        if (round > 0) {
            EXPECT_EQ(guard.LiveBlocks(), blocks);
            EXPECT_EQ(guard.LiveBytes(), bytes);
        }
        blocks = guard.LiveBlocks();
        bytes = guard.LiveBytes();
    }
    auto *tree = &static_cast<ZrStandardCtx *>(ctx.get())->entryRules;
    EXPECT_EQ(tree->header.parent, nullptr) << "no record is left";
}

} // namespace
