#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Features : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        for (const char *name : {"f", "g", "h"})
            ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, name), ZR_OK);
        NewModule("empty");
    }
    // The names of those that are on.
    std::string On()
    {
        std::string names;
        for (const char *name : {"f", "g", "h"}) {
            if (ZR_CTX_IsModFeatureEnable(ctx_, "m", name) == 1)
                names += name;
        }
        return names;
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Features, AreOffAtFirst)
{
    EXPECT_EQ(On(), "");
}

TEST_F(Features, AreTurnedOnAndOffByName)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(On(), "g");
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "h"), ZR_OK);
    EXPECT_EQ(On(), "gh");
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(On(), "h");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), ZR_OK);
    EXPECT_EQ(On(), "");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), ZR_OK);
}

TEST_F(Features, AreAllTurnedOnByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), ZR_OK);
    EXPECT_EQ(On(), "fgh");
    EXPECT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, "empty"), "*"), ZR_OK);
}

TEST_F(Features, AreNotTurnedOffByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), ZR_OK);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "*"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "*"), ZR_ERR_INVALID);
    EXPECT_EQ(On(), "fgh");
}

TEST_F(Features, ThatAreUnknownChangeNothing)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "**"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "x"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "x", "g"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", "x"), 0u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "x", "g"), 0u);
    EXPECT_EQ(On(), "g");
}

TEST_F(Features, NeedEveryArgument)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(nullptr, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(nullptr, "m", "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, nullptr, "f"), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", nullptr), ZR_ERR_INVALID);
}

TEST_F(Features, KeepTheirOtherFlags)
{
    module_->features[0].flags = 0x81;
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "f"), ZR_OK);
    EXPECT_EQ(module_->features[0].flags, 0x81 | ZRS_FEATURE_ENABLED);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "f"), ZR_OK);
    EXPECT_EQ(module_->features[0].flags, 0x81);
}

} // namespace
