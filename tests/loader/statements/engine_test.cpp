// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/engine.h"

#include <algorithm>
#include <iterator>

#include "loader/loader_fixture.h"
#include "platform/memory.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::AllocGuard;
using zrtest::ModuleUnderTest;
using zrtest::Yin;

namespace {

uint32_t Mark(const xmlNode *element)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(element->_private));
}

uint32_t SkipX(const char *moduleName, const char *)
{
    return std::string(moduleName) == "x-mod" ? 1 : 0;
}

// ---- classification

TEST(Classify, AYinKeywordIsItsStatement)
{
    Yin yin("<leaf name='a'/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(yin.first()), uint32_t{ZRS_STMT_LEAF});
}

TEST(Classify, AnUnknownYinNameIsUnknown)
{
    Yin yin("<foo name='a'/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(yin.first()), uint32_t{ZRS_STMT_UNKNOWN});
}

TEST(Classify, AnElementOfAnotherNamespaceIsAnExtensionInstance)
{
    Yin foreign("<x:foo/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(foreign.first()),
              uint32_t{ZRS_STMT_EXTENSION_INSTANCE});
    Yin keyword("<x:leaf/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(keyword.first()),
              uint32_t{ZRS_STMT_EXTENSION_INSTANCE});
    Yin nearly("<leaf xmlns='urn:ietf:params:xml:ns:yang:yin:2'/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(nearly.first()), uint32_t{ZRS_STMT_EXTENSION_INSTANCE});
}

TEST(Classify, AKeywordInNoNamespaceIsUnknown)
{
    Yin yin("<leaf xmlns='' name='a'/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(yin.first()), uint32_t{ZRS_STMT_UNKNOWN});
}

TEST(Classify, TheYinNamespaceMayHaveAPrefix)
{
    Yin yin("<y:leaf xmlns:y='urn:ietf:params:xml:ns:yang:yin:1' name='a'/>");
    EXPECT_EQ(ZRS_LOADER_GetXmlNodeYangStmt(yin.first()), uint32_t{ZRS_STMT_LEAF});
}

// ---- rows

TEST(SubStatementRow, IsTheFirstOfItsStatement)
{
    ZrsSubElem rows[] = {zr::RepeatedRow(ZRS_STMT_LEAF, nullptr),
                         zr::UniqueRow(ZRS_STMT_WHEN, nullptr),
                         zr::RepeatedRow(ZRS_STMT_LEAF, nullptr)};
    EXPECT_EQ(ZRS_LOADER_GetSubParseElem(ZRS_STMT_LEAF, rows, 3), &rows[0]);
    EXPECT_EQ(ZRS_LOADER_GetSubParseElem(ZRS_STMT_WHEN, rows, 3), &rows[1]);
    EXPECT_EQ(ZRS_LOADER_GetSubParseElem(ZRS_STMT_MUST, rows, 3), nullptr);
    EXPECT_EQ(ZRS_LOADER_GetSubParseElem(ZRS_STMT_LEAF, rows, 0), nullptr);
}

TEST(SubStatementRow, IsUsedUpWhenItIsUniqueAndSeen)
{
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0x2), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0x8), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0x4 | 0x8), ZR_OK);
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0x2 | 0x8), ZR_ERR_FAILED);
    EXPECT_EQ(ZRS_LOADER_CheckUniqueSubStmtRepeat(0x2 | 0x4 | 0x8), ZR_ERR_FAILED);
}

// ---- marks

TEST(MarkSubNode, MarksEveryChildElementWithItsStatement)
{
    Yin yin("<leaf name='a'/>text<!-- comment --><foo/><x:ext/><leaf xmlns=''/><must/>");
    ZRS_LOADER_MarkSubNode(yin.wrap());
    std::vector<uint32_t> marks;
    for (xmlNode *child = yin.wrap()->children; child != nullptr; child = child->next)
        marks.push_back(Mark(child));
    EXPECT_THAT(marks, ElementsAre(31, 0, 0, 0, 70, 0, 40));
}

TEST(MarkSubNode, LeavesTheSameMarkWhenItRunsTwice)
{
    Yin yin("<leaf name='a'/>");
    ZRS_LOADER_MarkSubNode(yin.wrap());
    ZRS_LOADER_MarkSubNode(yin.wrap());
    EXPECT_EQ(Mark(yin.first()), uint32_t{ZRS_STMT_LEAF});
}

TEST(MarkAndCount, CountsOnlyWhatArrayRowsTake)
{
    ModuleUnderTest module;
    Yin yin("<must/><if-feature/><must/><when/><leaf/><must/>");
    ZrsMust *musts = nullptr;
    uint16_t filled = 0, count = 0;
    const char *when = nullptr;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_MUST, &musts, &filled, &count),
                         zr::UniqueRow(ZRS_STMT_WHEN, &when)};
    EXPECT_EQ(ZRS_LOADER_MarkSubNodeAndCountArraySize(module, yin.wrap(), rows, 2), ZR_OK);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(filled, 0);
    std::vector<uint32_t> marks;
    for (xmlNode *child = yin.first(); child != nullptr; child = child->next)
        marks.push_back(Mark(child));
    EXPECT_THAT(marks, ElementsAre(40, 0, 40, 66, 0, 40));
}

TEST(MarkAndCount, LeavesWhatTheFilterSkipsUnmarked)
{
    ModuleUnderTest module;
    ZR_CTX_SetExtInstFilterCbFunc(module.ctx, SkipX);
    Yin yin("<x:a/><acm:b/><q:c/><x:d/>");
    ZRS_LOADER_MarkSubNode(yin.wrap()); // a mark that stands already goes too
    ZrsExtInst *instances = nullptr;
    uint16_t filled = 0, count = 0;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &instances, &filled, &count)};
    EXPECT_EQ(ZRS_LOADER_MarkSubNodeAndCountArraySize(module, yin.wrap(), rows, 1), ZR_OK);
    EXPECT_EQ(count, 2);
    std::vector<uint32_t> marks;
    for (xmlNode *child = yin.first(); child != nullptr; child = child->next)
        marks.push_back(Mark(child));
    EXPECT_THAT(marks, ElementsAre(0, 70, 70, 0));
}

TEST(MarkAndCount, RefusesMoreThan65535OfOneKind)
{
    ModuleUnderTest module;
    Yin yin("<container><must/><must/></container>");
    ZrsMust *musts = nullptr;
    uint16_t filled = UINT16_MAX - 1, count = UINT16_MAX - 1;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_MUST, &musts, &filled, &count)};
    EXPECT_EQ(ZRS_LOADER_MarkSubNodeAndCountArraySize(module, yin.first(), rows, 1),
              ZR_ERR_INVALID);
    EXPECT_EQ(count, UINT16_MAX - 1);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse statement \"must\" under statement \"container\"."));
}

// ---- arrays

TEST(NewArrays, MakesZeroedOnesOfTheCountedLength)
{
    ZrsMust *musts = nullptr;
    ZrsIfFeature *features = nullptr;
    uint16_t filledMusts = 0, mustCount = 2, filledFeatures = 0, featureCount = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_MUST, &musts, &filledMusts, &mustCount),
        zr::ArrayRow(ZRS_STMT_IF_FEATURE, &features, &filledFeatures, &featureCount)};
    ASSERT_EQ(ZRS_LOADER_NewSubStatementsArray(ZRS_STMT_CONTAINER, rows, 2), ZR_OK);
    ASSERT_NE(musts, nullptr);
    EXPECT_EQ(musts[1].condition, nullptr);
    EXPECT_EQ(features, nullptr);
    zr::Free(musts);
}

TEST(NewArrays, ForgetsTheCountsOfArraysThatCouldNotBeMade)
{
    AllocGuard guard;
    ZrsMust *musts = nullptr;
    ZrsIfFeature *features = nullptr;
    uint16_t filledMusts = 0, mustCount = 2, filledFeatures = 0, featureCount = 3;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_MUST, &musts, &filledMusts, &mustCount),
        zr::ArrayRow(ZRS_STMT_IF_FEATURE, &features, &filledFeatures, &featureCount)};
    guard.FailAt(1);
    EXPECT_EQ(ZRS_LOADER_NewSubStatementsArray(ZRS_STMT_CONTAINER, rows, 2), ZR_ERR_NO_MEMORY);
    EXPECT_EQ(mustCount, 2);
    EXPECT_EQ(featureCount, 0);
    EXPECT_EQ(features, nullptr);
    guard.Stop();
    zr::Free(musts);
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

constexpr uint32_t kNodeStatements[] = {
    ZRS_STMT_LIST,    ZRS_STMT_NOTIFICATION, ZRS_STMT_OUTPUT,   ZRS_STMT_RPC,    ZRS_STMT_ACTION,
    ZRS_STMT_ANYDATA, ZRS_STMT_ANYXML,       ZRS_STMT_CASE,     ZRS_STMT_CHOICE, ZRS_STMT_CONTAINER,
    ZRS_STMT_INPUT,   ZRS_STMT_LEAF,         ZRS_STMT_LEAF_LIST};

TEST(NewArrays, PutsExtensionInstancesOfANodeIntoTheNode)
{
    for (uint32_t statement : kNodeStatements) {
        ZrNode node = {};
        uint16_t filled = 0, count = 3;
        ZrsSubElem rows[] = {{ZRS_STMT_EXTENSION_INSTANCE, &node, &filled, &count,
                              sizeof(ZrsExtInst), ZRS_ROW_ARRAY}};
        ASSERT_EQ(ZRS_LOADER_NewSubStatementsArray(statement, rows, 1), ZR_OK);
        EXPECT_NE(node.extInsts, nullptr) << ZRS_LOADER_GetKeywordByStmt(statement);
        EXPECT_EQ(node.extInstCount, 0);
        EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&rows[0], statement), &node);
        EXPECT_EQ(filled, 0);
        zr::Free(node.extInsts);
    }
}

TEST(NewArrays, PutsExtensionInstancesOfAnythingElseIntoTheRowsArray)
{
    for (uint32_t statement = 0; statement < ZRS_STMT_COUNT; ++statement) {
        if (std::ranges::find(kNodeStatements, statement) != std::end(kNodeStatements))
            continue;
        ZrsExtInst *instances = nullptr;
        uint16_t filled = 0, count = 2;
        ZrsSubElem rows[] = {
            zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &instances, &filled, &count)};
        ASSERT_EQ(ZRS_LOADER_NewSubStatementsArray(statement, rows, 1), ZR_OK);
        ASSERT_NE(instances, nullptr) << ZRS_LOADER_GetKeywordByStmt(statement);
        EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&rows[0], statement), &instances[0]);
        EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&rows[0], statement), &instances[1]);
        EXPECT_EQ(filled, 2);
        zr::Free(instances);
    }
}

TEST(Destination, OfARowWithoutArrayIsTheRowsOwn)
{
    uint32_t flags = 0;
    ZrsSubElem row = zr::UniqueRow(ZRS_STMT_CONFIG, &flags);
    EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&row, ZRS_STMT_CONTAINER), &flags);
    EXPECT_EQ(ZRS_LOADER_GetSubParseDest(&row, ZRS_STMT_CONTAINER), &flags);
}

// ---- parsing

TEST(SubStatements, FillTheSlotsOfAnArrayInDocumentOrder)
{
    ModuleUnderTest module;
    Yin yin("<if-feature name='b'/><config value='true'/><if-feature name='x:a'/>");
    ZrsIfFeature *features = nullptr;
    uint16_t filled = 0, count = 0;
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_IF_FEATURE, &features, &filled, &count),
                         zr::UniqueRow(ZRS_STMT_CONFIG, &flags)};
    ASSERT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 2),
              ZR_OK);
    ASSERT_EQ(count, 2);
    EXPECT_EQ(filled, 2);
    EXPECT_STREQ(features[0].moduleName, "t");
    EXPECT_STREQ(features[0].featureName, "b");
    EXPECT_STREQ(features[1].moduleName, "x-mod");
    EXPECT_STREQ(features[1].featureName, "a");
    EXPECT_EQ(flags, uint32_t{ZRS_FLAG_CONFIG_TRUE | ZRS_FLAG_CONFIG_GIVEN});
    EXPECT_EQ(rows[1].flags, uint32_t{ZRS_ROW_UNIQUE | ZRS_ROW_SEEN});
    ZRS_NODE_FreeIfFeatures(module.dict(), features, count);
}

TEST(SubStatements, ThatNoRowNamesAreSkippedWithoutAMessage)
{
    ModuleUnderTest module;
    Yin yin("<reference><text>r</text></reference><foo/><config xmlns='' value='yes'/>"
            "<x:config value='yes'/><config value='false'/>text<!-- c --><?pi p?>");
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_CONFIG, &flags)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1),
              ZR_OK);
    EXPECT_EQ(flags, uint32_t{ZRS_FLAG_CONFIG_FALSE | ZRS_FLAG_CONFIG_GIVEN});
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(SubStatements, WithoutAParserAreSkippedEvenWhenARowNamesThem)
{
    ModuleUnderTest module;
    Yin yin("<uses name='g'/><grouping name='g'/><uses name='g'/>");
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_USES, nullptr),
                         zr::UniqueRow(ZRS_STMT_GROUPING, nullptr)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 2),
              ZR_OK);
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(SubStatements, ThatAreNotMarkedAreSkipped)
{
    ModuleUnderTest module;
    Yin yin("<config value='nonsense'/>");
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_CONFIG, &flags)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatementsInner(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1),
              ZR_OK);
    EXPECT_EQ(flags, 0u);
}

TEST(SubStatements, RefuseASecondOneOfAUniqueKind)
{
    ModuleUnderTest module;
    Yin yin("<config value='true'/><config value='true'/>");
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_CONFIG, &flags)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1),
              ZR_ERR_FAILED);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Statement \"config\" under statement \"container\" has repeated."));
}

TEST(SubStatements, PassAFailingStatusUpUnchanged)
{
    ModuleUnderTest module;
    Yin yin("<deviate value='none'/>");
    ZrsDeviate *deviates = nullptr;
    uint16_t filled = 0, count = 0;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_DEVIATE, &deviates, &filled, &count)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_DEVIATION, rows, 1),
              UINT32_MAX);
    ZRS_MOD_FreeDeviate(module.ctx, deviates, count);
}

// A child that fails without a word of its own: its record cannot be allocated.
TEST(SubStatements, NameTheFailedStatementWhenNothingIsRecordedYet)
{
    ModuleUnderTest module;
    AllocGuard guard;
    Yin yin("<default value='a text that is new to the dictionary'/>");
    const char *value = nullptr;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_DEFAULT, &value)};
    guard.FailAt(0);
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_LEAF, rows, 1),
              ZR_ERR_NO_MEMORY);
    guard.Stop();
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse statement \"default\" under statement \"leaf\"."));
}

TEST(SubStatements, AddNothingWhenTheChildHasSaidWhy)
{
    ModuleUnderTest module;
    Yin yin("<config value='yes'/>");
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_CONFIG, &flags)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1),
              ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to parse value \"yes\" of statement \"config\"."));
}

TEST(SubStatements, StopAtTheFirstFailure)
{
    ModuleUnderTest module;
    Yin yin("<config value='yes'/><mandatory value='true'/>");
    uint32_t flags = 0;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_CONFIG, &flags),
                         zr::UniqueRow(ZRS_STMT_MANDATORY, &flags)};
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_LEAF, rows, 2),
              ZR_ERR_INVALID);
    EXPECT_EQ(flags, 0u);
}

TEST(SubStatements, FailWith12WhenAnArrayCannotBeMade)
{
    ModuleUnderTest module;
    AllocGuard guard;
    Yin yin("<must condition='a'/>");
    ZrsMust *musts = nullptr;
    uint16_t filled = 0, count = 0;
    ZrsSubElem rows[] = {zr::ArrayRow(ZRS_STMT_MUST, &musts, &filled, &count)};
    guard.FailAt(0);
    EXPECT_EQ(ZRS_LOADER_ParseSubStatements(module, yin.wrap(), ZRS_STMT_CONTAINER, rows, 1),
              ZR_ERR_NO_MEMORY);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(musts, nullptr);
}

TEST(Arguments, AreReadFromTheFirstAttributeWhateverItsName)
{
    ModuleUnderTest module;
    uint32_t flags = 0;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseConfig, "<config anything='true' value='no'/>", &flags),
              ZR_OK);
    EXPECT_EQ(flags, uint32_t{ZRS_FLAG_CONFIG_TRUE | ZRS_FLAG_CONFIG_GIVEN});
}

} // namespace
