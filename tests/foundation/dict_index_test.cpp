// SPDX-License-Identifier: Apache-2.0
// A dictionary of many texts: what can be seen of it is what it would be without its index.
#include "foundation/dict_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/alloc.h"

namespace {

constexpr int kMany = 6000; // more than are needed for an index, not enough to make it grow
constexpr int kMore = 20000;

std::string TextOf(int number)
{
    return "name-" + std::to_string(number);
}

class LargeDictionary : public testing::Test {
protected:
    LargeDictionary() : chains_(1024) { EXPECT_EQ(ZR_DICT_Init(&dict_), ZR_OK); }
    ~LargeDictionary() override
    {
        for (const std::vector<std::string> &chain : chains_)
            for (const std::string &text : chain)
                ZR_DICT_Remove(&dict_, text.c_str());
        EXPECT_EQ(dict_.index, nullptr);
        ZR_DICT_Destroy(&dict_);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
    }

    std::vector<std::string> &ChainOf(const std::string &text)
    {
        return chains_[ZR_DICT_HashVal(text.c_str(), 0) & 1023];
    }
    void Insert(int number)
    {
        std::string text = TextOf(number);
        ASSERT_EQ(text, ZR_DICT_Insert(&dict_, text.c_str()));
        ChainOf(text).push_back(text);
    }
    void InsertUpTo(int count)
    {
        for (int i = 0; i < count; ++i)
            Insert(i);
    }
    void Remove(int number)
    {
        std::string text = TextOf(number);
        ZR_DICT_Remove(&dict_, text.c_str());
        std::erase(ChainOf(text), text);
    }
    // Whether every chain holds what was inserted and not removed, in the order of insertion.
    void CompareChains() const
    {
        for (size_t i = 0; i < chains_.size(); ++i) {
            std::vector<std::string> texts;
            for (const ZrDictEntry *at = dict_.buckets[i].head; at != nullptr; at = at->next)
                texts.emplace_back(at->text);
            ASSERT_EQ(texts, chains_[i]) << "bucket " << i;
            ASSERT_EQ(dict_.buckets[i].entryCount, texts.size());
        }
    }

    zrtest::AllocGuard guard_;
    ZrDict dict_;
    std::vector<std::vector<std::string>> chains_; // what is expected
};

TEST_F(LargeDictionary, HasAnIndexOnceItsTextsAreMany)
{
    InsertUpTo(4000);
    EXPECT_EQ(dict_.index, nullptr);
    for (int i = 4000; i < kMany; ++i)
        Insert(i);
    EXPECT_NE(dict_.index, nullptr);
    CompareChains();
}

TEST_F(LargeDictionary, NeedsNoIndexForFewTextsInOneChain)
{
    for (int i = 0, found = 0; found < 64; ++i) {
        if ((ZR_DICT_HashVal(TextOf(i).c_str(), 0) & 1023) != 5)
            continue;
        Insert(i);
        ++found;
    }
    EXPECT_EQ(dict_.index, nullptr);
}

TEST_F(LargeDictionary, GivesTheIndexUpWhenItsTextsAreFewAgain)
{
    InsertUpTo(kMany);
    for (int i = 1000; i < kMany; ++i)
        Remove(i);
    EXPECT_EQ(dict_.index, nullptr);
    CompareChains();
}

TEST_F(LargeDictionary, KeepsItsChainsInTheOrderOfInsertionThroughRandomChanges)
{
    std::mt19937 random(7950);
    InsertUpTo(kMany);
    std::vector<bool> isThere(kMany, true);
    for (int step = 0; step < 60000; ++step) {
        auto number = static_cast<size_t>(random() % kMany);
        isThere[number] ? Remove(static_cast<int>(number)) : Insert(static_cast<int>(number));
        isThere[number] = !isThere[number];
        if (step % 10000 == 0)
            CompareChains();
    }
    CompareChains();
}

TEST_F(LargeDictionary, FindsEveryTextWhileItsIndexGrows)
{
    InsertUpTo(kMore);
    for (int i = 0; i < kMore; ++i)
        ASSERT_NE(zr::FindInterned(&dict_, TextOf(i).c_str()), nullptr);
    EXPECT_EQ(zr::FindInterned(&dict_, TextOf(kMore).c_str()), nullptr);
    CompareChains();
}

TEST_F(LargeDictionary, CountsReferencesOfTextsInTheIndex)
{
    InsertUpTo(kMany);
    const char *copy = ZR_DICT_Insert(&dict_, TextOf(17).c_str());
    ZR_DICT_Remove(&dict_, copy);
    EXPECT_EQ(zr::FindInterned(&dict_, TextOf(17).c_str()), copy);
    CompareChains();
}

TEST_F(LargeDictionary, ReleasesItsTextsAtOnceWhenItIsClosedFirst)
{
    InsertUpTo(kMany);
    zr::CloseDict(&dict_);
    ZR_DICT_Remove(&dict_, TextOf(17).c_str());
    EXPECT_EQ(zr::FindInterned(&dict_, TextOf(17).c_str()), TextOf(17));
    EXPECT_EQ(ZR_DICT_Insert(&dict_, TextOf(kMany).c_str()), nullptr);
    ZR_DICT_Destroy(&dict_);
    EXPECT_EQ(guard_.LiveBlocks(), 0);
    chains_.clear(); // nothing to give back
    chains_.resize(1024);
}

TEST_F(LargeDictionary, GivesTextsBackSinglyWhenItIsClosedWithoutAnIndex)
{
    InsertUpTo(100);
    zr::CloseDict(&dict_);
    Remove(17);
    EXPECT_EQ(zr::FindInterned(&dict_, TextOf(17).c_str()), nullptr);
    CompareChains();
}

// Runs every insertion with the index's own allocations failing, which are those of large blocks.
TEST_F(LargeDictionary, GoesOnWithoutAnIndexForWhichThereIsNoMemory)
{
    InsertUpTo(4000);
    for (int i = 4000; i < kMore; ++i) {
        std::string text = TextOf(i);
        // The entry and its text come first; whatever else is asked for is the index's.
        guard_.FailAt(2, true);
        const char *copy = ZR_DICT_Insert(&dict_, text.c_str());
        guard_.Stop();
        ASSERT_EQ(text, copy);
        ChainOf(text).push_back(text);
        ASSERT_EQ(dict_.index, nullptr);
    }
    CompareChains();
}

TEST_F(LargeDictionary, DropsAnIndexThatCannotGrow)
{
    InsertUpTo(kMany);
    ASSERT_NE(dict_.index, nullptr);
    uint32_t slots = dict_.index->slotCount;
    int number = kMany;
    for (; dict_.index != nullptr && dict_.index->slotCount == slots; ++number) {
        ASSERT_LT(number, kMore);
        std::string text = TextOf(number);
        guard_.FailAt(2, true);
        ASSERT_EQ(text, ZR_DICT_Insert(&dict_, text.c_str()));
        guard_.Stop();
        ChainOf(text).push_back(text);
    }
    EXPECT_EQ(dict_.index, nullptr);
    CompareChains();
    for (; number < kMore; ++number)
        Insert(number);
    EXPECT_NE(dict_.index, nullptr) << "made again when a chain has doubled";
    CompareChains();
}

} // namespace
