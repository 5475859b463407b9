#include "data/tree_guard.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "data/tree_changes.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

// Takes the comments out of a tree, which leaves the texts around each of them side by side.
void RemoveComments(xmlNode *top)
{
    for (xmlNode *node = top->children; node != nullptr;) {
        xmlNode *next = node->next;
        if (node->type == XML_COMMENT_NODE) {
            xmlUnlinkNode(node);
            xmlFreeNode(node);
        } else if (node->type == XML_ELEMENT_NODE) {
            RemoveComments(node);
        }
        node = next;
    }
}

std::vector<const xmlNode *> Nodes(const xmlNode *parent)
{
    std::vector<const xmlNode *> nodes;
    for (const xmlNode *node = parent->children; node != nullptr; node = node->next)
        nodes.push_back(node);
    std::vector<const xmlNode *> backwards;
    for (const xmlNode *node = parent->last; node != nullptr; node = node->prev)
        backwards.insert(backwards.begin(), node);
    EXPECT_EQ(nodes, backwards);
    return nodes;
}

class AdjacentTexts : public ::testing::Test {
protected:
    Record Validate(Document &document)
    {
        return TakeRecord(
            ZR_CTX_ValidateRpcDataTree(schema_, ZR_VALUE_XML, document.top(), nullptr, nullptr));
    }

    Schema schema_{Rpc(
        "op",
        Input(Leaf("n", "uint8") +
              List("l", "k", Leaf("k", "string") + Leaf("v", "string", Must("../../n = '12'"))) +
              Container("c", Leaf("d", "string", Default("x")))))};
};

TEST_F(AdjacentTexts, AreOneValue)
{
    Document document(Data("op", "<n>4<!-- -->abc</n>"));
    RemoveComments(document.top());
    xmlNode *leaf = document.Find("n");
    std::vector<const xmlNode *> before = Nodes(leaf);
    ASSERT_EQ(before.size(), 2u);
    EXPECT_EQ(Validate(document),
              Fault(ZR_ERROR_TAG_BAD_ELEMENT, "-", "/m:op/n", "n has invalid value 4abc.", "n"));
    EXPECT_EQ(Nodes(leaf), before);
}

TEST_F(AdjacentTexts, AreOneValueForConditionsAndPaths)
{
    std::string entry = "<l><k>a<!-- -->b<!-- -->c</k><v/></l>";
    Document good(Data("op", "<n>1<!-- -->2</n>" + entry));
    RemoveComments(good.top());
    EXPECT_EQ(Validate(good), Valid());
    Document bad(Data("op", "<n>1</n>" + entry));
    RemoveComments(bad.top());
    EXPECT_EQ(Validate(bad),
              Fault(ZR_ERROR_TAG_OPERATION_FAILED, "must-violation", "/m:op/l[k='abc']/v",
                    "v is not satisfied must condition.", "v"));
}

TEST_F(AdjacentTexts, StayApartAndInPlaceBesideWhatIsAdded)
{
    Document document(Data("op", "<c>x<!-- -->y</c>"));
    RemoveComments(document.top());
    xmlNode *container = document.Find("c");
    std::vector<const xmlNode *> before = Nodes(container);
    EXPECT_EQ(Validate(document), Valid());
    std::vector<const xmlNode *> after = Nodes(container);
    ASSERT_EQ(after.size(), 3u);
    EXPECT_EQ(after[0], before[0]);
    EXPECT_EQ(after[1], before[1]);
    EXPECT_EQ(after[2], document.Find("d"));
}

TEST_F(AdjacentTexts, BesideSomethingElseAreNoValue)
{
    Document document(Data("op", "<n>1<!-- -->2<?p i?></n>"));
    RemoveComments(document.top());
    EXPECT_EQ(Validate(document),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/m:op/n", "Unexpected element: n.", "n"));
}

TEST_F(AdjacentTexts, MayBeEmptyAndMany)
{
    Document document(Data("op", "<n/>"));
    xmlNode *leaf = document.Find("n");
    for (int i = 0; i < 1000; ++i) {
        xmlNode *text = xmlNewText(nullptr); // xmlAddChild would merge it
        text->parent = leaf;
        text->doc = leaf->doc;
        text->prev = leaf->last;
        (leaf->last != nullptr ? leaf->last->next : leaf->children) = text;
        leaf->last = text;
    }
    xmlNodeSetContent(leaf->last, BAD_CAST "7");
    EXPECT_EQ(Validate(document), Valid());
    EXPECT_EQ(Nodes(leaf).size(), 1000u);
}

TEST_F(AdjacentTexts, AreAsTheyWereWhenMemoryRunsOut)
{
    Document document(Data("op", "<n>1<!-- -->2</n><c>x<!-- -->y</c>"));
    RemoveComments(document.top());
    document.Find("c")->line = ZRD_DEFAULT_MARK;
    std::vector<const xmlNode *> leaf = Nodes(document.Find("n"));
    std::vector<const xmlNode *> container = Nodes(document.Find("c"));
    AllocGuard guard;
    for (uint64_t n = 0; n < 3; ++n) { // the texts of both, the lines
        guard.FailAt(n);
        EXPECT_EQ(Validate(document), General()) << n;
        EXPECT_EQ(Nodes(document.Find("n")), leaf);
        EXPECT_EQ(Nodes(document.Find("c")), container);
        EXPECT_EQ(document.Find("c")->line, ZRD_DEFAULT_MARK);
        EXPECT_EQ(guard.LiveBlocks(), 0);
    }
}

} // namespace
