// SPDX-License-Identifier: Apache-2.0
#include "platform/avl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

struct Record {
    int payload;
    const char *key;
    PalAvlNode link;
    const char *otherKey;
    PalAvlNode otherLink;
};

int32_t CompareText(const void *a, const void *b)
{
    return std::strcmp(static_cast<const char *>(a), static_cast<const char *>(b));
}

constexpr PalAvlInfo kByKey = {CompareText, offsetof(Record, key), offsetof(Record, link)};
constexpr PalAvlInfo kByOtherKey = {CompareText, offsetof(Record, otherKey),
                                    offsetof(Record, otherLink)};

Record MakeRecord(const char *key, const char *otherKey = "")
{
    Record record{};
    record.key = key;
    record.otherKey = otherKey;
    PAL_AVL3_InitNode(&record.link);
    PAL_AVL3_InitNode(&record.otherLink);
    return record;
}

std::vector<std::string> Keys(const PalAvlTree *tree)
{
    std::vector<std::string> keys;
    for (void *record = PAL_AVL3_First(tree, &kByKey); record != nullptr;
         record = PAL_AVL3_Next(tree, record, &kByKey))
        keys.emplace_back(static_cast<Record *>(record)->key);
    return keys;
}

// The depth of a subtree, or -1 when links, balances or depths are wrong.
int CheckedDepth(const PalAvlNode *node, const PalAvlNode *parent)
{
    if (node == nullptr)
        return 0;
    int left = CheckedDepth(node->left, node);
    int right = CheckedDepth(node->right, node);
    constexpr int kBalanceOfDifference[] = {2, 0, 1}; // left deeper, even, right deeper
    int difference = right - left;
    if (left < 0 || right < 0 || node->parent != parent || difference < -1 || difference > 1 ||
        node->balance != kBalanceOfDifference[difference + 1])
        return -1;
    return 1 + std::max(left, right);
}

bool IsBalanced(const PalAvlTree *tree)
{
    return CheckedDepth(tree->header.parent, &tree->header) >= 0;
}

class AvlTree : public testing::Test {
protected:
    AvlTree() { PAL_AVL3_Init(&tree_); }
    PalAvlTree tree_{};
};

TEST_F(AvlTree, IsEmptyAfterInit)
{
    EXPECT_EQ(PAL_AVL3_First(&tree_, &kByKey), nullptr);
    EXPECT_EQ(PAL_AVL3_Find(&tree_, "a", &kByKey), nullptr);
}

TEST_F(AvlTree, ReadsAsEmptyWhenItIsZeroFilled)
{
    PalAvlTree zero{};
    EXPECT_EQ(PAL_AVL3_First(&zero, &kByKey), nullptr);
    EXPECT_EQ(PAL_AVL3_Find(&zero, "a", &kByKey), nullptr);
}

TEST_F(AvlTree, FindsWhatWasInsertedByTextNotByPointer)
{
    Record a = MakeRecord("a");
    EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &a, &kByKey), nullptr);
    std::string key = "a";
    EXPECT_EQ(PAL_AVL3_Find(&tree_, key.c_str(), &kByKey), &a);
    EXPECT_EQ(PAL_AVL3_Find(&tree_, "b", &kByKey), nullptr);
}

TEST_F(AvlTree, InsertReturnsTheRecordWithAnEqualKeyAndLeavesTheNewOneOut)
{
    Record first = MakeRecord("a");
    Record second = MakeRecord("a");
    EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &first, &kByKey), nullptr);
    EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &second, &kByKey), &first);
    EXPECT_EQ(second.link.balance, -1);
    EXPECT_EQ(Keys(&tree_), (std::vector<std::string>{"a"}));
}

TEST_F(AvlTree, WalksInKeyOrder)
{
    Record records[] = {MakeRecord("m"), MakeRecord("a"), MakeRecord("z"), MakeRecord("b")};
    for (Record &record : records)
        PAL_AVL3_Insert_Or_Find(&tree_, &record, &kByKey);
    EXPECT_EQ(Keys(&tree_), (std::vector<std::string>{"a", "b", "m", "z"}));
    EXPECT_EQ(PAL_AVL3_First(&tree_, &kByKey), &records[1]);
    EXPECT_EQ(PAL_AVL3_Next(&tree_, &records[2], &kByKey), nullptr);
}

TEST_F(AvlTree, MarksTheLinkOfARecordThatStandsInNoTreeWithMinusOne)
{
    Record a = MakeRecord("a");
    EXPECT_EQ(a.link.balance, -1);
    PAL_AVL3_Insert_Or_Find(&tree_, &a, &kByKey);
    EXPECT_EQ(a.link.balance, 0);
    PAL_AVL3_Delete(&tree_, &a, &kByKey);
    EXPECT_EQ(a.link.balance, -1);
    EXPECT_EQ(PAL_AVL3_First(&tree_, &kByKey), nullptr);
}

TEST_F(AvlTree, DeletingARecordThatStandsInNoTreeChangesNothing)
{
    Record a = MakeRecord("a");
    Record stranger = MakeRecord("a");
    PAL_AVL3_Insert_Or_Find(&tree_, &a, &kByKey);
    PAL_AVL3_Delete(&tree_, &stranger, &kByKey);
    PAL_AVL3_Delete(&tree_, &stranger, &kByKey);
    EXPECT_EQ(PAL_AVL3_Find(&tree_, "a", &kByKey), &a);
}

TEST_F(AvlTree, DeletingAZeroFilledRecordChangesNothing)
{
    Record a = MakeRecord("a");
    PAL_AVL3_Insert_Or_Find(&tree_, &a, &kByKey);
    Record zero{};
    zero.key = "a";
    PAL_AVL3_Delete(&tree_, &zero, &kByKey);
    EXPECT_EQ(Keys(&tree_), (std::vector<std::string>{"a"}));
}

TEST_F(AvlTree, NextOfARecordThatStandsInNoTreeIsNull)
{
    Record a = MakeRecord("a");
    EXPECT_EQ(PAL_AVL3_Next(&tree_, &a, &kByKey), nullptr);
}

TEST_F(AvlTree, HoldsARecordInTwoTreesAtOnce)
{
    PalAvlTree other{};
    PAL_AVL3_Init(&other);
    Record a = MakeRecord("a", "z");
    Record b = MakeRecord("b", "y");
    for (Record *record : {&a, &b}) {
        EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, record, &kByKey), nullptr);
        EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&other, record, &kByOtherKey), nullptr);
    }
    EXPECT_EQ(PAL_AVL3_First(&tree_, &kByKey), &a);
    EXPECT_EQ(PAL_AVL3_First(&other, &kByOtherKey), &b);
    PAL_AVL3_Delete(&tree_, &a, &kByKey);
    EXPECT_EQ(PAL_AVL3_Find(&other, "z", &kByOtherKey), &a);
    EXPECT_EQ(PAL_AVL3_Find(&tree_, "a", &kByKey), nullptr);
}

TEST_F(AvlTree, TakesARecordBackAfterItWasDeleted)
{
    Record a = MakeRecord("a");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &a, &kByKey), nullptr);
        PAL_AVL3_Delete(&tree_, &a, &kByKey);
    }
    EXPECT_EQ(PAL_AVL3_First(&tree_, &kByKey), nullptr);
}

TEST_F(AvlTree, StaysBalancedWhenKeysComeInOrder)
{
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i)
        names.push_back(std::to_string(10000 + i));
    std::vector<Record> records;
    for (const std::string &name : names)
        records.push_back(MakeRecord(name.c_str()));
    for (Record &record : records) {
        ASSERT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &record, &kByKey), nullptr);
        ASSERT_TRUE(IsBalanced(&tree_));
    }
    EXPECT_LE(CheckedDepth(tree_.header.parent, &tree_.header), 14); // 1.44 log2(1002)
    EXPECT_EQ(Keys(&tree_), names);
}

// A std::map that is changed in the same way is the witness.
TEST_F(AvlTree, AgreesWithAMapOverRandomInsertionsAndDeletions)
{
    std::mt19937 random(20240501);
    std::vector<std::string> names;
    for (int i = 0; i < 300; ++i)
        names.push_back("k" + std::to_string(i));
    std::vector<Record> records;
    for (const std::string &name : names)
        records.push_back(MakeRecord(name.c_str()));
    std::map<std::string, Record *> witness;
    for (int step = 0; step < 5000; ++step) {
        Record &record = records[random() % records.size()];
        if (random() % 2 == 0) {
            bool isNew = witness.emplace(record.key, &record).second;
            ASSERT_EQ(PAL_AVL3_Insert_Or_Find(&tree_, &record, &kByKey), isNew ? nullptr : &record);
        } else {
            witness.erase(record.key);
            PAL_AVL3_Delete(&tree_, &record, &kByKey);
        }
        ASSERT_TRUE(IsBalanced(&tree_)) << step;
        auto found = witness.find(record.key);
        ASSERT_EQ(PAL_AVL3_Find(&tree_, record.key, &kByKey),
                  found != witness.end() ? found->second : nullptr);
    }
    std::vector<std::string> expected;
    for (const auto &[key, record] : witness)
        expected.push_back(key);
    EXPECT_EQ(Keys(&tree_), expected);
}

} // namespace
