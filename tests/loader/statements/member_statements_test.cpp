#include <string>

#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "schema/members/condition_records.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;

namespace {

const std::string kName64(64, 'n');
const std::string kName65(65, 'n');

// ---- feature

TEST(Feature, KeepsItsNameAndIfFeaturesAndStartsDisabled)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature,
                    "<feature name='f'><if-feature name='g'/><if-feature name='x:h'/>"
                    "<description/><status value='nonsense'/></feature>",
                    &feature),
              ZR_OK);
    EXPECT_STREQ(feature.name, "f");
    EXPECT_EQ(feature.flags, 0);
    ASSERT_EQ(feature.ifFeatureCount, 2);
    EXPECT_STREQ(feature.ifFeatures[0].moduleName, "t");
    EXPECT_STREQ(feature.ifFeatures[0].featureName, "g");
    EXPECT_STREQ(feature.ifFeatures[1].moduleName, "x-mod");
    EXPECT_STREQ(feature.ifFeatures[1].featureName, "h");
    EXPECT_THAT(module.Messages(), IsEmpty());
    ZRS_MDL_ClearFeature(module.dict(), &feature);
}

TEST(Feature, WithoutANameFails)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature, "<feature/>", &feature), ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"feature\"."));
}

TEST(Feature, IsClearedWhenAnIfFeatureFails)
{
    ModuleUnderTest module;
    ZrsFeature feature = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseFeature,
                    "<feature name='f'><if-feature name='g'/><if-feature name='q:h'/></feature>",
                    &feature),
              ZR_ERR_INVALID);
    EXPECT_EQ(feature.name, nullptr);
    EXPECT_EQ(feature.ifFeatures, nullptr);
    EXPECT_EQ(feature.ifFeatureCount, 0);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\".",
                                               "Failed to parse value \"f\" of statement "
                                               "\"feature\"."));
}

// ---- if-feature

TEST(IfFeature, NamesTheModuleOfItsPrefix)
{
    struct {
        const char *argument, *moduleName, *featureName;
    } const rows[] = {{"f", "t", "f"}, {"t:f", "t", "f"}, {"x:f-1.2_3", "x-mod", "f-1.2_3"}};
    for (const auto &row : rows) {
        ModuleUnderTest module;
        ZrsIfFeature entry = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIfFeature,
                        "<if-feature name='" + std::string(row.argument) + "'/>", &entry),
                  ZR_OK);
        EXPECT_STREQ(entry.moduleName, row.moduleName);
        EXPECT_STREQ(entry.featureName, row.featureName);
        ZRS_NODE_ClearIfFeature(module.dict(), &entry);
    }
}

struct Reference {
    const char *keyword;
    ZrsParseFunc parse;
};

const Reference kReferences[] = {{"if-feature", ZRS_LOADER_ParseIfFeature},
                                 {"base", ZRS_LOADER_ParseIdentBase}};

union ReferenceRecord {
    ZrsIfFeature ifFeature;
    ZrsIdentBase base;
};

std::string ReferenceXml(const Reference &row, const std::string &argument)
{
    return "<" + std::string(row.keyword) + " name='" + argument + "'/>";
}

TEST(Reference, ThatIsMalformedFails)
{
    for (const Reference &row : kReferences)
        for (const std::string &text :
             {std::string("a and b"), std::string("not a"), std::string(""), std::string(":a"),
              std::string("x:"), std::string("x:a:b"), std::string(" a"), std::string("a "),
              kName65, kName65 + ":a", "x:" + kName65}) {
            ModuleUnderTest module;
            ReferenceRecord record = {};
            EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, text), &record), ZR_ERR_INVALID)
                << text;
            EXPECT_THAT(module.Messages(), ElementsAre("Failed to parse xpath \"" + text + "\"."));
        }
}

TEST(Reference, TakesNamesOf64Characters)
{
    ModuleUnderTest module;
    ZrsIdentBase base = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentBase, "<base name='x:" + kName64 + "'/>", &base),
              ZR_OK);
    EXPECT_EQ(base.identityName, kName64);
    ZRS_MDL_ClearIdentBase(module.dict(), &base);
}

TEST(Reference, WithAnUnknownPrefixFails)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        ReferenceRecord record = {};
        EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, "q:a"), &record), ZR_ERR_INVALID);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\"."));
    }
}

TEST(Reference, WithoutAnArgumentFails)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        ReferenceRecord record = {};
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + "/>", &record),
                  ZR_ERR_INVALID);
        EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"" +
                                                   std::string(row.keyword) + "\"."));
    }
}

TEST(Reference, FailsWith12WhenItsNamesCannotBeKept)
{
    for (const Reference &row : kReferences) {
        ModuleUnderTest module;
        zrtest::AllocGuard guard;
        ReferenceRecord record = {};
        guard.FailAt(0);
        EXPECT_EQ(Parse(module, row.parse, ReferenceXml(row, "new-name"), &record),
                  ZR_ERR_NO_MEMORY);
        guard.Stop();
        EXPECT_THAT(module.Messages(),
                    ElementsAre("Failed to parse value \"new-name\" of statement \"" +
                                std::string(row.keyword) + "\"."));
    }
}

// ---- identity

TEST(Identity, KeepsItsBasesIfFeaturesAndDescription)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><base name='x:a'/><if-feature name='f'/><base name='b'/>"
                    "<description><text>d</text></description></identity>",
                    &identity),
              ZR_OK);
    EXPECT_STREQ(identity.name, "i");
    ASSERT_EQ(identity.baseCount, 2);
    EXPECT_STREQ(identity.bases[0].moduleName, "x-mod");
    EXPECT_STREQ(identity.bases[0].identityName, "a");
    EXPECT_STREQ(identity.bases[1].moduleName, "t");
    EXPECT_STREQ(identity.bases[1].identityName, "b");
    ASSERT_EQ(identity.ifFeatureCount, 1);
    EXPECT_STREQ(identity.ifFeatures[0].featureName, "f");
    EXPECT_STREQ(identity.description, "d");
    ZRS_MDL_ClearIdentity(module.dict(), &identity);
}

TEST(Identity, WithoutANameFails)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity, "<identity/>", &identity), ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"identity\"."));
}

TEST(Identity, IsClearedWhenABaseFails)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><if-feature name='f'/><base name='q:a'/></identity>",
                    &identity),
              ZR_ERR_INVALID);
    EXPECT_EQ(identity.name, nullptr);
    EXPECT_EQ(identity.bases, nullptr);
    EXPECT_EQ(identity.ifFeatures, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to find module by prefix \"q\"."));
}

TEST(Identity, TakesOneDescriptionOnly)
{
    ModuleUnderTest module;
    ZrsIdentity identity = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseIdentity,
                    "<identity name='i'><description/><description/></identity>", &identity),
              ZR_ERR_FAILED);
    EXPECT_THAT(
        module.Messages(),
        ElementsAre("Statement \"description\" under statement \"identity\" has repeated."));
}

// ---- extension

TEST(Extension, KeepsItsNameItsArgumentAndWhereYinPutsIt)
{
    struct {
        const char *content, *argument;
        uint32_t yinElement;
    } const rows[] = {
        {"", nullptr, 0},
        {"<argument name='a'/>", "a", 0},
        {"<argument name='a'><yin-element value='false'/></argument>", "a", 0},
        {"<argument name='a'><yin-element value='true'/></argument>", "a", 1},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        ZrsExtension extension = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtension,
                        "<extension name='e'>" + std::string(row.content) + "</extension>",
                        &extension),
                  ZR_OK);
        EXPECT_STREQ(extension.name, "e");
        EXPECT_STREQ(extension.argument, row.argument);
        EXPECT_EQ(extension.yinElement, row.yinElement);
        ZRS_MDL_ClearExtension(module.dict(), &extension);
    }
}

struct BadExtension {
    const char *xml;
    uint32_t status;
    const char *message;
};

const BadExtension kBadExtensions[] = {
    {"<extension/>", ZR_ERR_INVALID, "Failed to get value of statement \"extension\"."},
    {"<extension name='e'><argument/></extension>", ZR_ERR_INVALID,
     "Failed to get value of statement \"argument\"."},
    {"<extension name='e'><argument name='a'/><argument name='b'/></extension>", ZR_ERR_FAILED,
     "Statement \"argument\" under statement \"extension\" has repeated."},
    {"<extension name='e'><argument name='a'><yin-element/></argument></extension>", ZR_ERR_INVALID,
     "Failed to get value of statement \"yin-element\"."},
    {"<extension name='e'><argument name='a'><yin-element value='1'/></argument></extension>",
     ZR_ERR_INVALID, "Failed to parse value \"1\" of statement \"yin-element\"."},
    {"<extension name='e'><argument name='a'><yin-element value='true'/>"
     "<yin-element value='true'/></argument></extension>",
     ZR_ERR_FAILED, "Statement \"yin-element\" under statement \"argument\" has repeated."},
};

TEST(Extension, IsClearedWhenSomethingIsWrongWithIt)
{
    for (const BadExtension &row : kBadExtensions) {
        ModuleUnderTest module;
        ZrsExtension extension = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseExtension, row.xml, &extension), row.status)
            << row.xml;
        EXPECT_EQ(extension.name, nullptr);
        EXPECT_EQ(extension.argument, nullptr);
        EXPECT_THAT(module.Messages(), ElementsAre(row.message));
    }
}

// ---- memory

TEST(Definitions, LeaveNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module(ZR_CTX_KEEP_DESCRIPTIONS);
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrsFeature feature = {};
        ZrsIdentity identity = {};
        ZrsExtension extension = {};
        uint32_t status = memory.Run([&] {
            uint32_t first =
                Parse(module, ZRS_LOADER_ParseFeature,
                      "<feature name='f1'><if-feature name='f2'/></feature>", &feature);
            uint32_t second = Parse(module, ZRS_LOADER_ParseIdentity,
                                    "<identity name='i1'><base name='i2'/><if-feature name='f3'/>"
                                    "<description><text>d1</text></description></identity>",
                                    &identity);
            uint32_t third =
                Parse(module, ZRS_LOADER_ParseExtension,
                      "<extension name='e1'><argument name='a1'/></extension>", &extension);
            return std::max({first, second, third}); // one of them, or none, is short of memory
        });
        ZRS_MDL_ClearFeature(module.dict(), &feature);
        ZRS_MDL_ClearIdentity(module.dict(), &identity);
        ZRS_MDL_ClearExtension(module.dict(), &extension);
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

} // namespace
