#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Features : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        for (const char *name : {"f", "g", "h"})
            ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, name), 0u);
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
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), 0u);
    EXPECT_EQ(On(), "g");
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), 0u);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "h"), 0u);
    EXPECT_EQ(On(), "gh");
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "g"), 0u);
    EXPECT_EQ(On(), "h");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), 0u);
    EXPECT_EQ(On(), "");
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "h"), 0u);
}

TEST_F(Features, AreAllTurnedOnByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), 0u);
    EXPECT_EQ(On(), "fgh");
    EXPECT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, "empty"), "*"), 0u);
}

TEST_F(Features, AreNotTurnedOffByAStar)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "*"), 0u);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "*"), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "*"), 22u);
    EXPECT_EQ(On(), "fgh");
}

TEST_F(Features, ThatAreUnknownChangeNothing)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "g"), 0u);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "x"), 22u);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "**"), 22u);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "x"), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", "x"), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "x", "g"), 22u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", "x"), 0u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "x", "g"), 0u);
    EXPECT_EQ(On(), "g");
}

TEST_F(Features, NeedEveryArgument)
{
    EXPECT_EQ(ZR_MOD_EnableFeature(nullptr, "f"), 22u);
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, nullptr), 22u);
    EXPECT_EQ(ZR_MOD_DisableFeature(nullptr, "f"), 22u);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, nullptr), 22u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(nullptr, "m", "f"), 22u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, nullptr, "f"), 22u);
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "m", nullptr), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(nullptr, "m", "f"), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, nullptr, "f"), 22u);
    EXPECT_EQ(ZR_CTX_DisableModFeature(ctx_, "m", nullptr), 22u);
}

TEST_F(Features, KeepTheirOtherFlags)
{
    module_->features[0].flags = 0x81;
    EXPECT_EQ(ZR_MOD_EnableFeature(module_, "f"), 0u);
    EXPECT_EQ(module_->features[0].flags, 0x81 | ZRS_FEATURE_ENABLED);
    EXPECT_EQ(ZR_MOD_DisableFeature(module_, "f"), 0u);
    EXPECT_EQ(module_->features[0].flags, 0x81);
}

} // namespace
