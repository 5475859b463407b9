// SPDX-License-Identifier: Apache-2.0
#include "foundation/list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Item {
    ZrListLink link;
    int number;
};

std::vector<int> Numbers(const ZrListLink &head)
{
    std::vector<int> numbers;
    for (const Item &item : zr::ItemsOf<Item>(&head))
        numbers.push_back(item.number);
    return numbers;
}

std::vector<int> NumbersBackwards(const ZrListLink &head)
{
    std::vector<int> numbers;
    for (const Item &item : zr::ItemsBackwards<Item>(&head))
        numbers.push_back(item.number);
    return numbers;
}

class List : public testing::Test {
protected:
    List() { zr::InitList(&head_); }

    ZrListLink head_;
    Item one_{{}, 1};
    Item two_{{}, 2};
    Item three_{{}, 3};
};

TEST_F(List, IsEmptyAtFirst)
{
    EXPECT_TRUE(zr::IsEmpty(&head_));
    EXPECT_THAT(Numbers(head_), IsEmpty());
    EXPECT_EQ(zr::FirstOf<Item>(&head_), nullptr);
}

TEST_F(List, KeepsWhatIsPushedBackInOrder)
{
    zr::PushBack(&head_, &one_.link);
    zr::PushBack(&head_, &two_.link);
    zr::PushBack(&head_, &three_.link);
    EXPECT_FALSE(zr::IsEmpty(&head_));
    EXPECT_THAT(Numbers(head_), ElementsAre(1, 2, 3));
    EXPECT_EQ(zr::FirstOf<Item>(&head_), &one_);
}

TEST_F(List, BeginsWithWhatWasPushedToTheFrontLast)
{
    zr::PushFront(&head_, &one_.link);
    zr::PushFront(&head_, &two_.link);
    zr::PushBack(&head_, &three_.link);
    EXPECT_THAT(Numbers(head_), ElementsAre(2, 1, 3));
}

TEST_F(List, TakesAnItemInBehindAnother)
{
    zr::PushBack(&head_, &one_.link);
    zr::PushBack(&head_, &three_.link);
    zr::InsertAfter(&one_.link, &two_.link);
    EXPECT_THAT(Numbers(head_), ElementsAre(1, 2, 3));
}

TEST_F(List, ClosesUpWhereAnItemIsTakenOut)
{
    for (Item *item : {&one_, &two_, &three_})
        zr::PushBack(&head_, &item->link);
    zr::Unlink(&two_.link);
    EXPECT_THAT(Numbers(head_), ElementsAre(1, 3));
    zr::Unlink(&one_.link);
    zr::Unlink(&three_.link);
    EXPECT_TRUE(zr::IsEmpty(&head_));
}

TEST_F(List, LetsALoopChangeItsItemsAndAppendToIt)
{
    zr::PushBack(&head_, &one_.link);
    for (Item &item : zr::ItemsOf<Item>(&head_)) {
        if (item.number == 1)
            zr::PushBack(&head_, &three_.link);
        item.number *= 10;
    }
    EXPECT_THAT(Numbers(head_), ElementsAre(10, 30));
}

TEST_F(List, IsTheSameReadBackwards)
{
    for (Item *item : {&one_, &two_, &three_})
        zr::PushBack(&head_, &item->link);
    EXPECT_EQ(head_.prev, &three_.link);
    EXPECT_EQ(three_.link.prev, &two_.link);
    EXPECT_EQ(two_.link.prev, &one_.link);
    EXPECT_EQ(one_.link.prev, &head_);
}

TEST(ItemsBackwards, ComeFromTheLastToTheFirst)
{
    ZrListLink head;
    zr::InitList(&head);
    Item items[] = {{{}, 1}, {{}, 2}, {{}, 3}};
    for (Item &item : items)
        zr::PushBack(&head, &item.link);
    EXPECT_THAT(NumbersBackwards(head), ElementsAre(3, 2, 1));
}

TEST(ItemsBackwards, AreNoneInAnEmptyList)
{
    ZrListLink head;
    zr::InitList(&head);
    EXPECT_THAT(NumbersBackwards(head), IsEmpty());
}

} // namespace
