#include "foundation/list.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Item {
    ZrListLink link;
    char name;
};

std::string Backwards(const ZrListLink &head)
{
    std::string names;
    for (const Item &item : zr::ItemsBackwards<Item>(&head))
        names += item.name;
    return names;
}

TEST(ItemsBackwards, ComeFromTheLastToTheFirst)
{
    ZrListLink head;
    zr::InitList(&head);
    Item items[] = {{{}, 'a'}, {{}, 'b'}, {{}, 'c'}};
    for (Item &item : items)
        zr::PushBack(&head, &item.link);
    EXPECT_EQ(Backwards(head), "cba");
}

TEST(ItemsBackwards, AreNoneInAnEmptyList)
{
    ZrListLink head;
    zr::InitList(&head);
    EXPECT_EQ(Backwards(head), "");
}

} // namespace
