// SPDX-License-Identifier: Apache-2.0
#include "xpath/value_text.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "platform/memory.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

class ValueTextTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(schema_.status, ZR_OK);
        ASSERT_EQ(schema_.LoadBody("longer", ""), ZR_OK);
    }

    // The value of <id>CONTENT</id>, as the leaf's.
    std::string Value(const std::string &content, const char *leaf = "/m:top/id")
    {
        Document document(
            "<top xmlns=\"urn:m\" xmlns:p=\"urn:longer\" xmlns:u=\"urn:unknown\"><id>" + content +
            "</id></top>");
        zr::Owned<char> value(ZRD_NODE_GetValueContent(document.Find("id"), schema_.Node(leaf)));
        return value ? value.get() : "-";
    }

    Schema schema_{"<identity name=\"b\"/>" +
                   Container("top", "<leaf name=\"id\"><type name=\"identityref\">"
                                    "<base name=\"b\"/></type></leaf>" +
                                        Leaf("text", "string"))};
};

TEST_F(ValueTextTest, IsTheContentOfALeaf)
{
    EXPECT_EQ(Value("p:name", "/m:top/text"), "p:name");
    EXPECT_EQ(Value(" x ", "/m:top/text"), " x ");
    EXPECT_EQ(Value("", "/m:top/text"), "-");
    EXPECT_EQ(Value("<x/>", "/m:top/text"), "-");
}

TEST_F(ValueTextTest, OfAnIdentityNamesItsModule)
{
    EXPECT_EQ(Value("p:name"), "longer:name");
    EXPECT_EQ(Value("name"), "m:name"); // the module of the leaf
    EXPECT_EQ(Value(""), "-");
}

TEST_F(ValueTextTest, IsNothingForAPrefixThatLeadsNowhere)
{
    EXPECT_EQ(Value("q:name"), "-"); // not declared
    EXPECT_EQ(Value("u:name"), "-"); // no module of that namespace
}

TEST_F(ValueTextTest, TakesPrefixesOf127CharactersAndNamesOf64)
{
    std::string name(64, 'n');
    EXPECT_EQ(Value(name), "m:" + name);
    EXPECT_EQ(Value(name + "n"), name + "n");
    EXPECT_EQ(Value("p:" + name), "longer:" + name);
    EXPECT_EQ(Value("p:" + name + "n"), "p:" + name + "n");

    for (size_t length : {127u, 128u}) {
        std::string prefix(length, 'q');
        Document document("<id xmlns:" + prefix + "=\"urn:m\">" + prefix + ":x</id>");
        zr::Owned<char> value(ZRD_NODE_GetValueContent(document.top(), schema_.Node("/m:top/id")));
        EXPECT_EQ(value.get(), length == 127 ? "m:x" : prefix + ":x");
    }
}

TEST_F(ValueTextTest, IsAsItStandsWhenItIsNoNameOfAnIdentity)
{
    for (const char *text : {"hello world", "p:", ":x", "p::x", "p:x:y", " p:x", "p:x ", "p: x",
                             "1+1", "eth0/1", "p:eth0/1", "/m:a"})
        EXPECT_EQ(Value(text), text);
}

TEST_F(ValueTextTest, TellsWhetherThereIsAValueText)
{
    Document document("<id xmlns:p=\"urn:longer\"/>");
    const ZrNode *leaf = schema_.Node("/m:top/id");
    EXPECT_TRUE(zr::HasModuleForm(document.top(), leaf, "p:x"));
    EXPECT_TRUE(zr::HasModuleForm(document.top(), leaf, "x"));
    EXPECT_FALSE(zr::HasModuleForm(document.top(), leaf, "q:x"));
    EXPECT_TRUE(zr::HasModuleForm(document.top(), leaf, "hello world"));
    EXPECT_FALSE(zr::HasModuleForm(document.top(), leaf, nullptr));
}

TEST_F(ValueTextTest, IsNothingForNullOrWithoutMemory)
{
    Document document("<id>p:x</id>");
    const ZrNode *leaf = schema_.Node("/m:top/id");
    EXPECT_EQ(ZRD_NODE_GetValueContent(nullptr, leaf), nullptr);
    EXPECT_EQ(ZRD_NODE_ConvertPrefixValueToModValue(document.top(), leaf, nullptr), nullptr);
    EXPECT_EQ(ZRD_NODE_ConvertPrefixValueToModValue(document.top(), nullptr, "x"), nullptr);
    EXPECT_EQ(ZRD_NODE_ConvertPrefixValueToModValue(nullptr, leaf, "x"), nullptr);
    AllocGuard guard;
    guard.FailAt(0);
    EXPECT_EQ(ZRD_NODE_ConvertPrefixValueToModValue(document.top(), leaf, "x"), nullptr);
    guard.FailAt(0);
    EXPECT_EQ(ZRD_NODE_GetValueContent(document.top(), nullptr), nullptr);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

} // namespace
