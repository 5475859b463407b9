// SPDX-License-Identifier: Apache-2.0
#include "xpath/child_memory.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/alloc.h"

namespace {

using zr::ChildMemory;

constexpr int kMany = 100;

// A tree <r> that is built, asked and changed child by child.
class ChildMemoryTest : public testing::Test {
protected:
    ChildMemoryTest()
        : doc_(xmlNewDoc(nullptr)), root_(xmlNewDocNode(doc_, nullptr, Xml("r"), nullptr))
    {
        xmlDocSetRootElement(doc_, root_);
    }
    ~ChildMemoryTest() override { xmlFreeDoc(doc_); }

    static const xmlChar *Xml(const char *text) { return reinterpret_cast<const xmlChar *>(text); }

    xmlNode *Append(ChildMemory &memory, xmlNode *parent, const char *name)
    {
        xmlNode *child = xmlNewChild(parent, nullptr, Xml(name), nullptr);
        memory.NoteAdded(child);
        return child;
    }
    void AppendMany(ChildMemory &memory, xmlNode *parent, const char *name)
    {
        for (int i = 0; i < kMany; ++i)
            Append(memory, parent, name);
    }
    static void Remove(ChildMemory &memory, xmlNode *node)
    {
        memory.NoteRemoval(node);
        xmlUnlinkNode(node);
        xmlFreeNode(node);
    }

    zrtest::AllocGuard guard_; // first, so that it counts to the end
    xmlDoc *doc_;
    xmlNode *root_;
};

TEST_F(ChildMemoryTest, FindsTheFirstChildOfAName)
{
    ChildMemory memory;
    EXPECT_EQ(memory.Find(root_, "a"), nullptr);
    xmlNode *near = Append(memory, root_, "near");
    AppendMany(memory, root_, "e");
    xmlNode *far = Append(memory, root_, "far");
    Append(memory, root_, "near");
    Append(memory, root_, "far");
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(memory.Find(root_, "near"), near);
        EXPECT_EQ(memory.Find(root_, "e"), near->next);
        EXPECT_EQ(memory.Find(root_, "far"), far);
        EXPECT_EQ(memory.Find(root_, "none"), nullptr);
    }
}

TEST_F(ChildMemoryTest, FindsNodesOfAnyKind)
{
    ChildMemory memory;
    AppendMany(memory, root_, "e");
    xmlNode *comment = xmlAddChild(root_, xmlNewDocComment(doc_, Xml("x")));
    EXPECT_EQ(memory.Find(root_, "comment"), comment);
    EXPECT_EQ(memory.Find(root_, "comment"), comment);
}

TEST_F(ChildMemoryTest, HoldsNothingForAFewChildrenAndReleasesWhatItHolds)
{
    {
        ChildMemory memory;
        for (const char *name : {"a", "b", "c"})
            Append(memory, root_, name);
        EXPECT_EQ(memory.Find(root_, "none"), nullptr);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
        AppendMany(memory, root_, "e");
        EXPECT_EQ(memory.Find(root_, "none"), nullptr);
        int64_t blocks = guard_.LiveBlocks();
        EXPECT_GT(blocks, 0);
        for (int i = 0; i < kMany; ++i)
            EXPECT_EQ(memory.Find(root_, "none"), nullptr);
        EXPECT_EQ(guard_.LiveBlocks(), blocks);
    }
    EXPECT_EQ(guard_.LiveBlocks(), 0);
}

TEST_F(ChildMemoryTest, SeesAChildThatWasAddedAfterItWasMissed)
{
    ChildMemory memory;
    AppendMany(memory, root_, "e");
    EXPECT_EQ(memory.Find(root_, "late"), nullptr);
    xmlNode *late = Append(memory, root_, "late");
    EXPECT_EQ(memory.Find(root_, "late"), late);
    Append(memory, root_, "late");
    EXPECT_EQ(memory.Find(root_, "late"), late);
}

TEST_F(ChildMemoryTest, GoesOnToTheNextOneWhenTheFirstIsRemoved)
{
    ChildMemory memory;
    AppendMany(memory, root_, "e");
    std::vector<xmlNode *> modes;
    for (int i = 0; i < 3; ++i) {
        modes.push_back(Append(memory, root_, "mode"));
        Append(memory, root_, "other");
    }
    for (xmlNode *mode : modes) {
        EXPECT_EQ(memory.Find(root_, "mode"), mode);
        Remove(memory, mode);
    }
    EXPECT_EQ(memory.Find(root_, "mode"), nullptr);
}

TEST_F(ChildMemoryTest, KnowsNothingOfAnElementThatStandsWhereARemovedOneStood)
{
    ChildMemory memory;
    for (int i = 0; i < kMany; ++i) {
        xmlNode *box = Append(memory, root_, "box");
        xmlNode *inner = Append(memory, box, "inner");
        for (xmlNode *wide : {box, inner}) {
            AppendMany(memory, wide, "e");
            xmlNode *mode = Append(memory, wide, "mode");
            EXPECT_EQ(memory.Find(wide, "mode"), mode);
            EXPECT_EQ(memory.Find(wide, "none"), nullptr);
        }
        Remove(memory, box);
    }
}

TEST_F(ChildMemoryTest, GivesTheSameAnswersWithoutMemory)
{
    guard_.FailAt(0, true);
    ChildMemory memory;
    AppendMany(memory, root_, "e");
    xmlNode *mode = Append(memory, root_, "mode");
    for (int again = 0; again < 2; ++again) {
        EXPECT_EQ(memory.Find(root_, "mode"), mode);
        EXPECT_EQ(memory.Find(root_, "none"), nullptr);
    }
    Remove(memory, mode);
    EXPECT_EQ(memory.Find(root_, "mode"), nullptr);
}

// Whatever is added, removed and asked, with allocations failing now and then.
TEST_F(ChildMemoryTest, AgreesWithASearchAfterAnyChanges)
{
    const char *const names[] = {"a", "b", "c", "d", "e", "f"};
    std::mt19937 random(1);
    auto below = [&](size_t n) { return static_cast<size_t>(random() % n); };
    ChildMemory memory;
    std::vector<xmlNode *> boxes;
    for (int i = 0; i < 3; ++i)
        boxes.push_back(Append(memory, root_, "box"));
    for (int round = 0; round < 20000; ++round) {
        if (round % 500 == 0)
            guard_.FailAt(below(20));
        xmlNode *&box = boxes[below(boxes.size())];
        size_t what = below(100);
        if (what < 45) {
            Append(memory, box, names[below(5)]);
        } else if (what < 70 && box->children != nullptr) {
            xmlNode *child = box->children;
            for (size_t skip = below(xmlChildElementCount(box)); skip != 0; --skip)
                child = child->next;
            Remove(memory, child);
        } else if (what == 99 && round % 7 == 0) {
            Remove(memory, box);
            box = Append(memory, root_, "box");
        } else {
            const char *name = names[below(6)];
            ASSERT_EQ(memory.Find(box, name), zr::FirstNamed(box->children, name)) << round;
        }
    }
}

} // namespace
