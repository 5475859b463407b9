#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/node.h>

#include "support/context.h"

using testing::ElementsAre;
using zrtest::TestContext;

namespace {

using Texts = std::vector<std::string>;

std::string OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

uint32_t CollectMust(const char *condition, const char *message, const char *appTag, void *out)
{
    static_cast<Texts *>(out)->push_back(OrDash(condition) + "|" + OrDash(message) + "|" +
                                         OrDash(appTag));
    return 0;
}

uint32_t CollectIfFeature(const char *moduleName, const char *featureName, void *out)
{
    static_cast<Texts *>(out)->push_back(std::string(moduleName) + ":" + featureName);
    return 0;
}

uint32_t CollectText(const char *text, void *out)
{
    static_cast<Texts *>(out)->emplace_back(text);
    return 0;
}

uint32_t Stop(const char *, void *)
{
    return 7;
}

class NodeLists : public testing::Test {
protected:
    NodeLists()
    {
        ctx.LoadBody("m", R"(
            <feature name="f"/><feature name="g"/>
            <container name="c">
              <must condition="a"><error-message><value>why</value></error-message></must>
              <must condition="b"><error-app-tag value="tag"/></must>
              <leaf name="l"><if-feature name="f"/><if-feature name="m:g"/>
                <type name="string"/><default value="x"/></leaf>
              <leaf name="plain"><type name="string"/></leaf>
              <leaf-list name="ll"><type name="string"/><default value="1"/><default value="2"/>
              </leaf-list>
              <choice name="ch"><default value="k"/><case name="k"/></choice>
            </container>)");
    }
    Texts Defaults(const char *path)
    {
        Texts texts;
        EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node(path), CollectText, &texts), ZR_OK);
        return texts;
    }
    TestContext ctx;
};

} // namespace

TEST_F(NodeLists, MustsAreScannedInTheirOrder)
{
    Texts texts;
    EXPECT_EQ(ZR_NODE_ScanAllMusts(ctx.Node("/m:c"), CollectMust, &texts), ZR_OK);
    EXPECT_THAT(texts, ElementsAre("a|why|-", "b|-|tag"));
    EXPECT_EQ(ZR_NODE_ScanAllMusts(nullptr, CollectMust, &texts), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllMusts(ctx.Node("/m:c"), nullptr, &texts), ZR_ERR_INVALID);
}

TEST_F(NodeLists, IfFeaturesAreScannedWithTheirModules)
{
    Texts texts;
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(ctx.Node("/m:c/l"), CollectIfFeature, &texts), ZR_OK);
    EXPECT_THAT(texts, ElementsAre("m:f", "m:g"));
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(nullptr, CollectIfFeature, &texts), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllIfFeatures(ctx.Node("/m:c/l"), nullptr, &texts), ZR_ERR_INVALID);
}

TEST_F(NodeLists, DefaultsOfLeafLeafListAndChoiceAreScanned)
{
    EXPECT_THAT(Defaults("/m:c/l"), ElementsAre("x"));
    EXPECT_THAT(Defaults("/m:c/ll"), ElementsAre("1", "2"));
    EXPECT_THAT(Defaults("/m:c/ch"), ElementsAre("k"));
    EXPECT_THAT(Defaults("/m:c/plain"), ElementsAre());
    EXPECT_THAT(Defaults("/m:c"), ElementsAre());
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(nullptr, CollectText, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node("/m:c/l"), nullptr, nullptr), ZR_ERR_INVALID);
}

TEST_F(NodeLists, AScanStopsAtTheFirstResultThatIsNotZero)
{
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(ctx.Node("/m:c/ll"), Stop, nullptr), 7u);
}

TEST_F(NodeLists, ThePathOfANodeFitsOrIsRefused)
{
    char path[64];
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, sizeof(path)), ZR_OK);
    EXPECT_STREQ(path, "/m:c/ch/k");
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, 10), ZR_OK) << "with its NUL";
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c/ch/k"), path, 9), ZR_ERR_NO_MEMORY);
    EXPECT_STREQ(path, "");
    EXPECT_EQ(ZR_NODE_GetNodePath(nullptr, path, sizeof(path)), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c"), nullptr, 1), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_NODE_GetNodePath(ctx.Node("/m:c"), path, 0), ZR_ERR_INVALID);
}
