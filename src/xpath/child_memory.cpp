// SPDX-License-Identifier: Apache-2.0
#include "xpath/child_memory.h"

#include <cstddef>

#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "platform/xml.h"

// An entry stands for an element, and below it one for each name that was looked for in vain among
// its first children. The first children are always passed anew: most elements have no others, and
// need no memory.

namespace {

constexpr uint32_t kNearChildren = 32;

struct NameEntry {
    PalAvlNode link;
    const char *key; // `name`
    xmlNode *first;  // null: there is none
    char name[zr::kNameSize];
};

struct ParentEntry {
    PalAvlNode link;
    const xmlNode *parent;
    PalAvlTree names; // of NameEntry
};

int32_t CompareNames(const void *a, const void *b)
{
    return PAL_StrCmp(static_cast<const char *>(a), static_cast<const char *>(b));
}

int32_t CompareAddresses(const void *a, const void *b)
{
    auto left = reinterpret_cast<uintptr_t>(a);
    auto right = reinterpret_cast<uintptr_t>(b);
    return left < right ? -1 : left > right;
}

constexpr PalAvlInfo kByName = {CompareNames, offsetof(NameEntry, key), offsetof(NameEntry, link)};
constexpr PalAvlInfo kByParent = {CompareAddresses, offsetof(ParentEntry, parent),
                                  offsetof(ParentEntry, link)};

ParentEntry *FindParent(const PalAvlTree *parents, const xmlNode *parent)
{
    return static_cast<ParentEntry *>(PAL_AVL3_Find(parents, parent, &kByParent));
}

NameEntry *FindName(const ParentEntry *entry, const char *name)
{
    return entry != nullptr ? static_cast<NameEntry *>(PAL_AVL3_Find(&entry->names, name, &kByName))
                            : nullptr;
}

// The entry of the parent, made where it is missing; null without memory.
ParentEntry *EntryOf(PalAvlTree *parents, const xmlNode *parent)
{
    ParentEntry *entry = FindParent(parents, parent);
    if (entry != nullptr)
        return entry;
    entry = zr::New<ParentEntry>();
    if (entry == nullptr)
        return nullptr;
    entry->parent = parent;
    PAL_AVL3_Init(&entry->names);
    PAL_AVL3_Insert_Or_Find(parents, entry, &kByParent);
    return entry;
}

void Remember(ParentEntry *parent, const char *name, xmlNode *first)
{
    zr::Owned<NameEntry> entry(zr::New<NameEntry>());
    if (!entry || strcpy_s(entry->name, sizeof(entry->name), name) != 0)
        return;
    entry->key = entry->name;
    entry->first = first;
    PAL_AVL3_Insert_Or_Find(&parent->names, entry.release(), &kByName);
}

void FreeEntry(PalAvlTree *parents, ParentEntry *entry)
{
    while (void *name = PAL_AVL3_First(&entry->names, &kByName)) {
        PAL_AVL3_Delete(&entry->names, name, &kByName);
        zr::Free(name);
    }
    PAL_AVL3_Delete(parents, entry, &kByParent);
    zr::Free(entry);
}

const char *NameOf(const xmlNode *node)
{
    return reinterpret_cast<const char *>(node->name);
}

} // namespace

namespace zr {

bool HasName(const xmlNode *node, const char *name)
{
    return node->name != nullptr && PAL_StrCmp(NameOf(node), name) == 0;
}

xmlNode *FirstNamed(xmlNode *child, const char *name)
{
    while (child != nullptr && !HasName(child, name))
        child = child->next;
    return child;
}

ChildMemory::~ChildMemory()
{
    while (void *entry = PAL_AVL3_First(&parents_, &kByParent))
        FreeEntry(&parents_, static_cast<ParentEntry *>(entry));
}

xmlNode *ChildMemory::Find(const xmlNode *parent, const char *name)
{
    xmlNode *child = parent->children;
    for (uint32_t i = 0; i < kNearChildren && child != nullptr; ++i, child = child->next) {
        if (HasName(child, name))
            return child;
    }
    if (child == nullptr)
        return nullptr;
    ParentEntry *entry = EntryOf(&parents_, parent);
    if (const NameEntry *known = FindName(entry, name))
        return known->first;
    child = FirstNamed(child, name);
    if (entry != nullptr)
        Remember(entry, name, child);
    return child;
}

void ChildMemory::NoteAdded(xmlNode *child)
{
    NameEntry *known = FindName(FindParent(&parents_, child->parent), NameOf(child));
    if (known != nullptr && known->first == nullptr)
        known->first = child;
}

void ChildMemory::NoteRemoval(xmlNode *node)
{
    // Going on from the removed node, the search for the next one of its name passes each sibling
    // once, however many are removed.
    if (node->name != nullptr) {
        NameEntry *known = FindName(FindParent(&parents_, node->parent), NameOf(node));
        if (known != nullptr && known->first == node)
            known->first = FirstNamed(node->next, NameOf(node));
    }
    // The place in memory of what is freed may soon be that of another element.
    uint32_t direction = ZR_XML_TO_CHILD;
    for (xmlNode *below = node;
         below != nullptr && PAL_AVL3_First(&parents_, &kByParent) != nullptr;
         below = ZR_XML_GetXmlDomNextNode(node, below, &direction)) {
        if (direction != ZR_XML_TO_PARENT)
            Forget(below);
    }
}

void ChildMemory::Forget(const xmlNode *parent)
{
    if (ParentEntry *entry = FindParent(&parents_, parent))
        FreeEntry(&parents_, entry);
}

} // namespace zr
