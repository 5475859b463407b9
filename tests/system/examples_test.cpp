// SPDX-License-Identifier: Apache-2.0
// The bundled example modules, loaded and asked about.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <string>
#include <vector>

namespace {

uint32_t AppendText(const char *text, uint32_t length, void *out)
{
    static_cast<std::string *>(out)->append(text, length);
    return 0;
}

uint32_t AppendName(ZrNode *node, uint32_t, void *out)
{
    static_cast<std::vector<std::string> *>(out)->emplace_back(ZR_NODE_GetNodeName(node));
    return 0;
}

class Examples : public testing::Test {
protected:
    Examples()
        : ctx(ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS | ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS))
    {
        EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, ZR_EXAMPLE_MODULES), ZR_OK);
    }
    ~Examples() override { ZR_CTX_Delete(ctx); }
    ZrNode *Node(const char *path) { return ZR_CTX_GetTargetNode(ctx, path, nullptr); }
    ZrCtx *ctx;
};

} // namespace

TEST_F(Examples, OfAModuleWithWhatItImportsAnswerEveryQuery)
{
    ASSERT_EQ(ZR_CTX_LoadModule(ctx, "example-routing"), ZR_OK);
    ZrMod *router = ZR_CTX_GetModuleByModName(ctx, "example-router");
    ASSERT_NE(router, nullptr) << "an import";
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx, "urn:example:router"), router);
    EXPECT_STREQ(ZR_MOD_GetModulePrefix(router), "er");
    EXPECT_STREQ(ZR_MOD_GetRevision(router), "2026-11-01") << "the first revision";
    EXPECT_STREQ(ZR_MOD_GetOrganization(router), "The example network");

    std::vector<std::string> names;
    EXPECT_EQ(ZR_MOD_IterScanTopmostNode(router, AppendName, &names), ZR_OK);
    EXPECT_THAT(names, testing::UnorderedElementsAre("router", "statistics", "ping",
                                                     "interface-state-changed"));

    ZrNode *mtu = Node("/example-router:router/interfaces/interface/mtu");
    ASSERT_NE(mtu, nullptr);
    EXPECT_EQ(ZR_NODE_GetNodeType(mtu), ZR_NODE_LEAF);
    EXPECT_STREQ(ZR_NODE_GetUnitsValueStr(mtu), "octets");
    EXPECT_STREQ(ZR_NODE_GetWhenCond(mtu),
                 "derived-from-or-self(../example-router:type, 'example-types:ethernet') or "
                 "../example-router:type = 'example-types:gigabit-ethernet'");
    EXPECT_EQ(ZR_NODE_ValidateValue(mtu, ZR_VALUE_STRING, "9000"), ZR_OK);
    EXPECT_EQ(ZR_NODE_ValidateValue(mtu, ZR_VALUE_STRING, "1501"), ZR_ERR_VALUE_RANGE);
    EXPECT_STREQ(ZR_NODE_GetDefaultValueStr(Node("/example-router:router/max-load")), "10")
        << "the typedef's";
}

TEST_F(Examples, ShowWhatAnotherModuleAddsAndChanges)
{
    ASSERT_EQ(ZR_CTX_LoadModule(ctx, "example-vendor"), ZR_OK);
    ASSERT_EQ(ZR_CTX_LoadModule(ctx, "example-routing"), ZR_OK);
    EXPECT_EQ(Node("/example-router:router/interfaces/interface/speed"), nullptr)
        << "not supported";
    ZrNode *mtu = Node("/example-router:router/interfaces/interface/mtu");
    EXPECT_STREQ(ZR_NODE_GetDefaultValueStr(mtu), "1500");
    ZrNode *cost = Node("/example-router:router/interfaces/interface/example-routing:cost");
    ASSERT_NE(cost, nullptr);
    EXPECT_STREQ(ZR_NODE_GetWhenCond(cost), "../example-router:enabled = 'true'");
    EXPECT_STREQ(ZR_MOD_GetModuleName(ZR_NODE_GetModule(cost)), "example-routing");
    EXPECT_EQ(ZR_NODE_GetParentNode(cost), ZR_NODE_GetParentNode(mtu));
}

TEST_F(Examples, OfAModuleOfTwoSuffixedFilesPrintAsOne)
{
    ASSERT_EQ(ZR_CTX_LoadModule(ctx, "example-services"), ZR_OK);
    std::string tree;
    EXPECT_EQ(ZR_MOD_PrintModelTree(ZR_CTX_GetModuleByModName(ctx, "example-services"), AppendText,
                                    &tree),
              ZR_OK);
    EXPECT_THAT(tree, testing::StartsWith("module: example-services\n+--rw services\n"));
    EXPECT_THAT(tree, testing::HasSubstr("+--rw time\n"));
    EXPECT_THAT(tree, testing::HasSubstr("+--rw dns\n"));
}
