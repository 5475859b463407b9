// SPDX-License-Identifier: Apache-2.0
#include "foundation/dict.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/memory.h"
#include "support/alloc.h"

namespace {

class Dictionary : public testing::Test {
protected:
    Dictionary() { EXPECT_EQ(ZR_DICT_Init(&dict_), ZR_OK); }
    ~Dictionary() override { ZR_DICT_Destroy(&dict_); }

    const ZrDictBucket *BucketOf(const char *text) const
    {
        return &dict_.buckets[ZR_DICT_HashVal(text, 0) & (dict_.bucketCount - 1)];
    }
    uint32_t Entries() const
    {
        uint32_t entries = 0;
        for (uint32_t i = 0; i < dict_.bucketCount; ++i)
            entries += dict_.buckets[i].entryCount;
        return entries;
    }
    // So many texts that fall into one bucket.
    static std::vector<std::string> Colliding(size_t count)
    {
        std::vector<std::string> texts;
        for (int i = 0; texts.size() < count; ++i) {
            std::string text = "t" + std::to_string(i);
            if ((ZR_DICT_HashVal(text.c_str(), 0) & 1023) == 5)
                texts.push_back(text);
        }
        return texts;
    }

    zrtest::AllocGuard guard_;
    ZrDict dict_;
};

TEST_F(Dictionary, StartsWith1024EmptyBuckets)
{
    EXPECT_EQ(dict_.bucketCount, 1024u);
    EXPECT_EQ(dict_.headCount, 0u);
    EXPECT_EQ(Entries(), 0u);
    EXPECT_EQ(guard_.Count(), 1u);
    EXPECT_EQ(sizeof(ZrDictBucket) * 1024, sizeof(void *) == 4 ? 8192u : 16384u);
}

TEST_F(Dictionary, GivesOneCopyForEqualTexts)
{
    std::string text = "interface";
    const char *first = ZR_DICT_Insert(&dict_, text.c_str());
    EXPECT_STREQ(first, "interface");
    EXPECT_NE(first, text.c_str());
    EXPECT_EQ(ZR_DICT_Insert(&dict_, "interface"), first);
    EXPECT_NE(ZR_DICT_Insert(&dict_, "interfaces"), first);
    EXPECT_EQ(Entries(), 2u);
    for (const char *held : {"interface", "interface", "interfaces"})
        ZR_DICT_Remove(&dict_, held);
}

TEST_F(Dictionary, FreesATextWithItsLastReference)
{
    int64_t empty = guard_.LiveBlocks();
    const char *a = ZR_DICT_Insert(&dict_, "a");
    EXPECT_EQ(ZR_DICT_Insert(&dict_, "a"), a);
    EXPECT_EQ(BucketOf("a")->head->refCount, 2u);
    ZR_DICT_Remove(&dict_, "a");
    EXPECT_STREQ(a, "a");
    EXPECT_EQ(BucketOf("a")->head->refCount, 1u);
    ZR_DICT_Remove(&dict_, "a");
    EXPECT_EQ(guard_.LiveBlocks(), empty);
    EXPECT_EQ(Entries(), 0u);
}

TEST_F(Dictionary, FindsTheTextToRemoveByItsContent)
{
    ZR_DICT_Insert(&dict_, "a");
    std::string other = "a";
    ZR_DICT_Remove(&dict_, other.c_str());
    EXPECT_EQ(Entries(), 0u);
}

TEST_F(Dictionary, TakesTheInternedPointerItselfForRemoval)
{
    ZR_DICT_Remove(&dict_, ZR_DICT_Insert(&dict_, "a"));
    EXPECT_EQ(Entries(), 0u);
}

TEST_F(Dictionary, IgnoresNull)
{
    EXPECT_EQ(ZR_DICT_Insert(&dict_, nullptr), nullptr);
    ZR_DICT_Remove(&dict_, nullptr);
    EXPECT_EQ(Entries(), 0u);
    EXPECT_EQ(ZR_DICT_Insert(nullptr, "a"), nullptr);
    ZR_DICT_Remove(nullptr, "a");
    ZR_DICT_Destroy(nullptr);
    EXPECT_EQ(ZR_DICT_Init(nullptr), ZR_ERR_FAILED);
}

TEST_F(Dictionary, IgnoresTheRemovalOfATextThatIsNotThere)
{
    const char *a = ZR_DICT_Insert(&dict_, "a");
    ZR_DICT_Remove(&dict_, "b");
    EXPECT_EQ(Entries(), 1u);
    EXPECT_STREQ(a, "a");
    ZR_DICT_Remove(&dict_, "a");
    ZR_DICT_Remove(&dict_, "a");
    EXPECT_EQ(Entries(), 0u);
}

TEST_F(Dictionary, InternsTheEmptyTextLikeAnyOther)
{
    const char *empty = ZR_DICT_Insert(&dict_, "");
    EXPECT_STREQ(empty, "");
    EXPECT_EQ(ZR_DICT_Insert(&dict_, ""), empty);
    EXPECT_EQ(dict_.buckets[0].entryCount, 1u);
    ZR_DICT_Remove(&dict_, "");
    ZR_DICT_Remove(&dict_, "");
    EXPECT_EQ(Entries(), 0u);
}

TEST_F(Dictionary, FindsTheSharedCopyWithoutTakingAReference)
{
    EXPECT_EQ(zr::FindInterned(&dict_, "leaf"), nullptr);
    const char *text = ZR_DICT_Insert(&dict_, "leaf");
    EXPECT_EQ(zr::FindInterned(&dict_, "leaf"), text);
    EXPECT_EQ(zr::FindInterned(&dict_, "lea"), nullptr);
    EXPECT_EQ(zr::FindInterned(&dict_, nullptr), nullptr);
    EXPECT_EQ(zr::FindInterned(nullptr, "leaf"), nullptr);
    ZR_DICT_Remove(&dict_, "leaf");
    EXPECT_EQ(zr::FindInterned(&dict_, "leaf"), nullptr);
}

TEST_F(Dictionary, ReleaseGivesTheTextBackAndClearsTheField)
{
    const char *field = ZR_DICT_Insert(&dict_, "a");
    zr::Release(&dict_, field);
    EXPECT_EQ(field, nullptr);
    EXPECT_EQ(Entries(), 0u);
    zr::Release(&dict_, field);
}

TEST_F(Dictionary, AppendsCollidingTextsAtTheTailOfTheChain)
{
    std::vector<std::string> texts = Colliding(4);
    for (const std::string &text : texts)
        ZR_DICT_Insert(&dict_, text.c_str());
    const ZrDictBucket &bucket = dict_.buckets[5];
    EXPECT_EQ(bucket.entryCount, 4u);
    EXPECT_EQ(dict_.headCount, 1u);
    const ZrDictEntry *entry = bucket.head;
    for (const std::string &text : texts) {
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(text, entry->text);
        entry = entry->next;
    }
    for (const std::string &text : texts)
        ZR_DICT_Remove(&dict_, text.c_str());
}

TEST_F(Dictionary, UnlinksFromTheMiddleTheEndAndTheHeadOfAChain)
{
    std::vector<std::string> texts = Colliding(4);
    for (const std::string &text : texts)
        ZR_DICT_Insert(&dict_, text.c_str());
    for (size_t gone : {1u, 3u, 0u, 2u}) {
        ZR_DICT_Remove(&dict_, texts[gone].c_str());
        texts[gone].clear();
        const ZrDictEntry *entry = dict_.buckets[5].head;
        for (const std::string &text : texts) {
            if (text.empty())
                continue;
            ASSERT_NE(entry, nullptr);
            EXPECT_EQ(text, entry->text);
            entry = entry->next;
        }
        EXPECT_EQ(entry, nullptr);
    }
    EXPECT_EQ(dict_.buckets[5].head, nullptr);
    EXPECT_EQ(dict_.buckets[5].entryCount, 0u);
}

TEST_F(Dictionary, CountsHeadsThatCameAndHeadsThatWent)
{
    std::vector<std::string> texts = Colliding(2);
    ZR_DICT_Insert(&dict_, texts[0].c_str());
    ZR_DICT_Insert(&dict_, "");
    EXPECT_EQ(dict_.headCount, 2u);
    ZR_DICT_Insert(&dict_, texts[1].c_str());
    EXPECT_EQ(dict_.headCount, 2u);
    ZR_DICT_Remove(&dict_, texts[1].c_str());
    EXPECT_EQ(dict_.headCount, 2u);
    ZR_DICT_Remove(&dict_, texts[0].c_str());
    EXPECT_EQ(dict_.headCount, 1u);
    ZR_DICT_Remove(&dict_, "");
    EXPECT_EQ(dict_.headCount, 0u);
}

TEST_F(Dictionary, InsertIsNullWhenMemoryRunsOutAndLeavesTheBucketsCountRaised)
{
    uint64_t points = zrtest::FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        const char *text = memory.Run([&] { return ZR_DICT_Insert(&dict_, "a"); });
        EXPECT_EQ(text == nullptr, memory.Failed());
        EXPECT_EQ(BucketOf("a")->entryCount, memory.n() + 1);
        EXPECT_EQ(BucketOf("a")->head == nullptr, memory.Failed());
        EXPECT_EQ(dict_.headCount, memory.Failed() ? 0u : 1u);
        ZR_DICT_Remove(&dict_, text);
    });
    EXPECT_EQ(points, 2u);
}

TEST_F(Dictionary, AnotherReferenceToAKnownTextNeedsNoMemory)
{
    const char *a = ZR_DICT_Insert(&dict_, "a");
    guard_.FailAt(0, true);
    EXPECT_EQ(ZR_DICT_Insert(&dict_, "a"), a);
    guard_.Stop();
    ZR_DICT_Remove(&dict_, "a");
    ZR_DICT_Remove(&dict_, "a");
}

TEST_F(Dictionary, DestroyReleasesTheEntriesAndLeavesTextsToTheirHolders)
{
    const char *a = ZR_DICT_Insert(&dict_, "a");
    const char *b = ZR_DICT_Insert(&dict_, "b");
    ZR_DICT_Destroy(&dict_);
    EXPECT_EQ(dict_.buckets, nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), 2);
    EXPECT_STREQ(a, "a");
    EXPECT_STREQ(b, "b");
    zr::Free(const_cast<char *>(a));
    zr::Free(const_cast<char *>(b));
    EXPECT_EQ(guard_.LiveBlocks(), 0);
}

TEST_F(Dictionary, ADestroyedDictionaryTakesNothingAndGivesNothing)
{
    ZR_DICT_Destroy(&dict_);
    ZR_DICT_Destroy(&dict_);
    EXPECT_EQ(ZR_DICT_Insert(&dict_, "a"), nullptr);
    ZR_DICT_Remove(&dict_, "a");
    EXPECT_EQ(guard_.LiveBlocks(), 0);
}

TEST_F(Dictionary, InitIs1WhenMemoryRunsOut)
{
    ZrDict other;
    guard_.FailAt(0);
    EXPECT_EQ(ZR_DICT_Init(&other), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_DICT_Insert(&other, "a"), nullptr);
    ZR_DICT_Destroy(&other);
}

// A map of reference counts is the witness.
TEST_F(Dictionary, AgreesWithAMapOverRandomInsertionsAndRemovals)
{
    std::mt19937 random(1024);
    std::unordered_map<std::string, std::pair<const char *, int>> witness;
    for (int step = 0; step < 50000; ++step) {
        std::string text = "name-" + std::to_string(random() % 3000);
        auto &[copy, references] = witness[text];
        if (random() % 2 == 0) {
            const char *got = ZR_DICT_Insert(&dict_, text.c_str());
            ASSERT_EQ(text, got);
            ASSERT_TRUE(references == 0 || got == copy);
            copy = got;
            ++references;
        } else if (references > 0) {
            ZR_DICT_Remove(&dict_, text.c_str());
            --references;
        }
    }
    uint32_t live = 0;
    for (auto &[text, held] : witness)
        live += held.second > 0 ? 1 : 0;
    EXPECT_EQ(Entries(), live);
    for (auto &[text, held] : witness) {
        for (; held.second > 0; --held.second)
            ZR_DICT_Remove(&dict_, text.c_str());
    }
    EXPECT_EQ(Entries(), 0u);
    EXPECT_EQ(guard_.LiveBlocks(), 1);
}

TEST(HashVal, IsTheOneAtATimeHash)
{
    // Published values of Jenkins's function.
    EXPECT_EQ(ZR_DICT_HashVal("a", 0), 0xca2e9442u);
    EXPECT_EQ(ZR_DICT_HashVal("The quick brown fox jumps over the lazy dog", 0), 0x519e91f5u);
}

TEST(HashVal, OfTheEmptyTextAndOfNullIsZero)
{
    EXPECT_EQ(ZR_DICT_HashVal("", 0), 0u);
    EXPECT_EQ(ZR_DICT_HashVal(nullptr, 0), 0u);
}

TEST(HashVal, DoesNotReadTheLength)
{
    EXPECT_EQ(ZR_DICT_HashVal("abc", 1), ZR_DICT_HashVal("abc", 77));
}

// One byte of value -1, worked through by hand: h = 0xffffffff; h += h << 10 gives 0xfffffbff;
// h ^= h >> 6 gives 0xfc000410; then the three finishing steps.
TEST(HashVal, TakesBytesAsSigned)
{
    uint32_t h = 0xfc000410u;
    h += h << 3;
    h ^= h >> 11;
    h += h << 15;
    EXPECT_EQ(ZR_DICT_HashVal("\xff", 0), h);
}

} // namespace
