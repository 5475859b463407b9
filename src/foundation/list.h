// SPDX-License-Identifier: Apache-2.0
// Circular doubly linked lists: the head stands in the owner, the link first in each item, under
// the name `link`, so that a link is its item. No other file turns links into items.
#pragma once

#include <cstddef>
#include <type_traits>

struct ZrListLink {
    ZrListLink *next;
    ZrListLink *prev;
};

namespace zr {

inline void InitList(ZrListLink *head)
{
    head->next = head;
    head->prev = head;
}

inline bool IsEmpty(const ZrListLink *head)
{
    return head->next == head;
}

inline void InsertAfter(ZrListLink *place, ZrListLink *link)
{
    link->prev = place;
    link->next = place->next;
    place->next->prev = link;
    place->next = link;
}

inline void PushFront(ZrListLink *head, ZrListLink *link)
{
    InsertAfter(head, link);
}

inline void PushBack(ZrListLink *head, ZrListLink *link)
{
    InsertAfter(head->prev, link);
}

inline void Unlink(ZrListLink *link)
{
    link->prev->next = link->next;
    link->next->prev = link->prev;
}

// The item of a link that is not a list's head.
template <typename Item, typename Link> Item *ItemOf(Link *link)
{
    static_assert(offsetof(Item, link) == 0);
    return reinterpret_cast<Item *>(link);
}

// The first item of a list, null when there is none.
template <typename Item> Item *FirstOf(const ZrListLink *head)
{
    return IsEmpty(head) ? nullptr : ItemOf<Item>(head->next);
}

// The items of a list in order, for a range-based loop. The loop may append to the list; it
// must leave the item that it has reached where it is.
template <typename Item> class ListRange {
    using Link = std::conditional_t<std::is_const_v<Item>, const ZrListLink, ZrListLink>;

    class Iterator {
    public:
        explicit Iterator(Link *at) : at_(at) {}
        Item &operator*() const { return *ItemOf<Item>(at_); }
        Iterator &operator++()
        {
            at_ = at_->next;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return at_ != other.at_; }

    private:
        Link *at_;
    };

public:
    explicit ListRange(Link *head) : head_(head) {}
    Iterator begin() const { return Iterator(head_->next); }
    Iterator end() const { return Iterator(head_); }

private:
    Link *head_;
};

template <typename Item> ListRange<Item> ItemsOf(ZrListLink *head)
{
    return ListRange<Item>(head);
}

template <typename Item> ListRange<const Item> ItemsOf(const ZrListLink *head)
{
    return ListRange<const Item>(head);
}

// The items from the last to the first, for a range-based loop that changes nothing.
template <typename Item> class BackwardListRange {
    class Iterator {
    public:
        explicit Iterator(const ZrListLink *at) : at_(at) {}
        const Item &operator*() const { return *ItemOf<const Item>(at_); }
        Iterator &operator++()
        {
            at_ = at_->prev;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return at_ != other.at_; }

    private:
        const ZrListLink *at_;
    };

public:
    explicit BackwardListRange(const ZrListLink *head) : head_(head) {}
    Iterator begin() const { return Iterator(head_->prev); }
    Iterator end() const { return Iterator(head_); }

private:
    const ZrListLink *head_;
};

template <typename Item> BackwardListRange<Item> ItemsBackwards(const ZrListLink *head)
{
    return BackwardListRange<Item>(head);
}

} // namespace zr
