#include "data/tree_changes.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

class DefaultListTest : public ::testing::Test {
protected:
    xmlNode *Add(xmlNode *parent, const char *name)
    {
        xmlNode *element =
            xmlNewChild(parent, nullptr, reinterpret_cast<const xmlChar *>(name), nullptr);
        zr::MarkAsDefault(element);
        return element;
    }
    std::string Listed()
    {
        std::string names;
        for (const ZrListLink *link = run_->defaults.next; link != &run_->defaults;
             link = link->next)
            names += NameOf(reinterpret_cast<const ZrdDefaultNodeEntry *>(link)->node);
        return names;
    }
    static std::string NameOf(const xmlNode *node)
    {
        return reinterpret_cast<const char *>(node->name);
    }
    static void Collect(void *element, void *userData)
    {
        *static_cast<std::string *>(userData) += NameOf(static_cast<xmlNode *>(element));
    }

    Document document_{"<top><own/></top>"};
    CheckRun run_{nullptr, ZRD_MODE_RPC};
};

TEST_F(DefaultListTest, TellsTheMarkAndNoOtherLine)
{
    xmlNode *element = Add(document_.top(), "a");
    EXPECT_EQ(element->line, 256);
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(element), 1u);
    for (uint16_t line : std::initializer_list<uint16_t>{0, 1, 255, 257, 512, 65535}) {
        element->line = line;
        EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(element), 0u) << line;
    }
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(nullptr), 0u);
    EXPECT_EQ(ZRD_PAS_IsDefaultAddNode(reinterpret_cast<xmlNode *>(document_.get())), 0u);
}

TEST_F(DefaultListTest, ClearsTheMarksOfASubtree)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *b = Add(a, "b");
    xmlNode *next = Add(document_.top(), "c");
    ZRD_PAS_ClearDefaultNodeTreeFlag(a);
    EXPECT_EQ(a->line, 0);
    EXPECT_EQ(b->line, 0);
    EXPECT_EQ(next->line, 256);
    ZRD_PAS_ClearDefaultNodeTreeFlag(nullptr);
}

TEST_F(DefaultListTest, HoldsTheRootsOfAddedSubtreesNewestFirst)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *inside = Add(a, "inside");
    xmlNode *b = Add(document_.top(), "b");
    EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, document_.Find("own")), ZR_OK);
    for (xmlNode *element : {a, inside, b})
        EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element), ZR_OK);
    EXPECT_EQ(Listed(), "ba");
}

TEST_F(DefaultListTest, SaysWhenThereIsNoMemoryForAnEntry)
{
    xmlNode *a = Add(document_.top(), "a");
    AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZRD_PAS_AddDefaultNodeToList(&run_->defaults, a), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(Listed(), "");
}

TEST_F(DefaultListTest, GivesUpTheEntryOfAnElement)
{
    xmlNode *elements[] = {Add(document_.top(), "a"), Add(document_.top(), "b"),
                           Add(document_.top(), "c")};
    for (xmlNode *element : elements)
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element);
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, elements[1]);
    EXPECT_EQ(Listed(), "ca");
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, elements[1]);
    ZRD_PAS_RemoveDefaultNodeFromList(&run_->defaults, document_.Find("own"));
    EXPECT_EQ(Listed(), "ca");
}

TEST_F(DefaultListTest, DeletesAnAddedElementFromTreeAndList)
{
    xmlNode *a = Add(document_.top(), "a");
    xmlNode *inside = Add(a, "inside");
    Add(a, "other");
    ZRD_PAS_AddDefaultNodeToList(&run_->defaults, a);
    ZRD_PAS_DeleteDefaultAddNode(run_, inside);
    EXPECT_EQ(Listed(), "a");
    EXPECT_NE(document_.Dump().find("<top><own/><a><other/></a></top>"), std::string::npos);
    ZRD_PAS_DeleteDefaultAddNode(run_, a);
    EXPECT_EQ(Listed(), "");
    EXPECT_NE(document_.Dump().find("<top><own/></top>"), std::string::npos);
}

TEST_F(DefaultListTest, KeptElementsStayUnmarkedAndGoToTheCallbackNewestFirst)
{
    std::string seen;
    run_->callback = Collect;
    run_->userData = &seen;
    for (const char *name : {"a", "b"}) {
        xmlNode *element = Add(document_.top(), name);
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, element);
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(element, "inside"));
    }
    ZRD_PAS_ClearDefaultNodeList(run_, 1);
    EXPECT_EQ(seen, "ba");
    EXPECT_EQ(Listed(), "");
    EXPECT_EQ(document_.Find("a")->line, 0);
    EXPECT_EQ(document_.Find("inside")->line, 0);
    EXPECT_EQ(document_.Find("a")->psvi, nullptr);
}

TEST_F(DefaultListTest, KeptElementsNeedNoCallback)
{
    ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(document_.top(), "a"));
    ZRD_PAS_ClearDefaultNodeList(run_, 1);
    EXPECT_NE(document_.Find("a"), nullptr);
}

TEST_F(DefaultListTest, DiscardedElementsLeaveTheTree)
{
    std::string seen;
    run_->callback = Collect;
    run_->userData = &seen;
    for (const char *name : {"a", "b"})
        ZRD_PAS_AddDefaultNodeToList(&run_->defaults, Add(document_.top(), name));
    ZRD_PAS_ClearDefaultNodeList(run_, 2);
    EXPECT_EQ(Listed(), "");
    EXPECT_EQ(seen, "");
    EXPECT_NE(document_.Dump().find("<top><own/></top>"), std::string::npos);
}

} // namespace
