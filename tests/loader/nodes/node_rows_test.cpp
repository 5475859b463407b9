#include "loader/nodes/node_rows.h"
#include "loader/statements/statements.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory.h"
#include "schema/nodes/node.h"

namespace {

struct KindRows {
    uint32_t kind;
    // Keyword and kind of row: u at most once, a an array, r any number.
    const char *rows;
};

const KindRows kRows[] = {
    {ZR_NODE_UNKNOWN, ""},
    {ZR_NODE_CONTAINER,
     "when u, if-feature a, must a, presence u, config u, status u, description u, container r, "
     "leaf r, leaf-list r, list r, choice r, anydata r, anyxml r, action r, notification r, "
     "extension-instance a"},
    {ZR_NODE_LEAF,
     "when u, if-feature a, type u, must a, default u, config u, mandatory u, status u, "
     "description u, extension-instance a, units u"},
    {ZR_NODE_LEAF_LIST,
     "when u, if-feature a, type u, must a, default a, config u, ordered-by u, status u, "
     "description u, extension-instance a, units u"},
    {ZR_NODE_LIST,
     "when u, if-feature a, must a, key u, config u, ordered-by u, status u, description u, "
     "container r, leaf r, leaf-list r, list r, choice r, anydata r, anyxml r, action r, "
     "notification r, extension-instance a"},
    {ZR_NODE_CHOICE,
     "when u, if-feature a, default u, config u, mandatory u, status u, description u, choice r, "
     "container r, leaf r, leaf-list r, list r, anydata r, anyxml r, case r, "
     "extension-instance a"},
    {ZR_NODE_CASE,
     "when u, if-feature a, status u, description u, container r, leaf r, leaf-list r, list r, "
     "choice r, anydata r, anyxml r, extension-instance a"},
    {ZR_NODE_ANYDATA,
     "when u, if-feature a, must a, config u, mandatory u, status u, description u, "
     "extension-instance a"},
    {ZR_NODE_ANYXML,
     "when u, if-feature a, must a, config u, mandatory u, status u, description u, "
     "extension-instance a"},
    {ZR_NODE_ACTION,
     "if-feature a, status u, description u, input u, output u, extension-instance a"},
    {ZR_NODE_RPC, "if-feature a, status u, description u, input u, output u, extension-instance a"},
    {ZR_NODE_NOTIFICATION,
     "if-feature a, must a, status u, description u, container r, leaf r, leaf-list r, list r, "
     "choice r, anydata r, anyxml r, extension-instance a"},
    {ZR_NODE_INPUT,
     "must a, container r, leaf r, leaf-list r, list r, choice r, anydata r, anyxml r, "
     "extension-instance a"},
    {ZR_NODE_OUTPUT,
     "must a, container r, leaf r, leaf-list r, list r, choice r, anydata r, anyxml r, "
     "extension-instance a"},
    {ZR_NODE_AUGMENT,
     "when u, if-feature a, status u, description u, container r, leaf r, leaf-list r, list r, "
     "choice r, anydata r, anyxml r, case r, action r, notification r"},
    {15, ""},
    {UINT32_MAX, ""},
};

const char *Letter(const ZrsSubElem &row)
{
    if ((row.flags & ZRS_ROW_ARRAY) != 0)
        return " a";
    return (row.flags & ZRS_ROW_UNIQUE) != 0 ? " u" : " r";
}

TEST(NodeRows, AreThoseOfEachKindInTheirOrder)
{
    for (const KindRows &expected : kRows) {
        ZrNode *node = ZRS_NODE_New(expected.kind <= ZR_NODE_AUGMENT ? expected.kind : 0);
        zr::NodeWork work = {};
        work.node = node;
        std::string text;
        for (const zr::NodeRow &row : zr::NodeRows(expected.kind)) {
            ZrsSubElem made = row.make(row.statement, &work);
            EXPECT_EQ(made.statement, row.statement);
            text += text.empty() ? "" : ", ";
            text += ZRS_LOADER_GetKeywordByStmt(row.statement) + std::string(Letter(made));
        }
        EXPECT_EQ(text, expected.rows) << expected.kind;
        zr::Free(node->info);
        zr::Free(node);
    }
}

ZrsSubElem RowOf(zr::NodeWork *work, uint32_t statement)
{
    for (const zr::NodeRow &row : zr::NodeRows(work->node->kind))
        if (row.statement == statement)
            return row.make(statement, work);
    ADD_FAILURE() << statement;
    return {};
}

TEST(NodeRows, PointIntoTheNode)
{
    ZrNode node = {};
    node.kind = ZR_NODE_LIST;
    zr::NodeWork work = {};
    work.node = &node;
    EXPECT_EQ(RowOf(&work, ZRS_STMT_WHEN).destination, &node.when);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_DESCRIPTION).destination, &node.description);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_CONFIG).destination, &node.flags);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_ORDERED_BY).destination, &node.flags);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_KEY).destination, &work.keyText);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_LEAF).destination, &node);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_IF_FEATURE).destination, &node.ifFeatures);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_IF_FEATURE).arrayCount, &node.ifFeatureCount);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_IF_FEATURE).elementSize, sizeof(ZrsIfFeature));
    EXPECT_EQ(RowOf(&work, ZRS_STMT_MUST).destination, &node.musts);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_MUST).arrayCount, &node.mustCount);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_MUST).elementSize, sizeof(ZrsMust));
    EXPECT_EQ(RowOf(&work, ZRS_STMT_EXTENSION_INSTANCE).destination, &node);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_EXTENSION_INSTANCE).elementSize, sizeof(ZrsExtInst));
}

TEST(NodeRows, PointIntoTheInformationOfTheKind)
{
    ZrsLeafInfo leafInfo = {};
    ZrsLeafListInfo leafListInfo = {};
    ZrsChoiceInfo choiceInfo = {};
    ZrNode node = {};
    zr::NodeWork work = {};
    work.node = &node;
    node.kind = ZR_NODE_LEAF;
    node.info = &leafInfo;
    EXPECT_EQ(RowOf(&work, ZRS_STMT_TYPE).destination, &leafInfo.realType);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_DEFAULT).destination, &leafInfo.defaultValue);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_UNITS).destination, &leafInfo.units);
    node.kind = ZR_NODE_LEAF_LIST;
    node.info = &leafListInfo;
    EXPECT_EQ(RowOf(&work, ZRS_STMT_TYPE).destination, &leafListInfo.realType);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_DEFAULT).destination, &leafListInfo.defaults);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_DEFAULT).arrayCount, &leafListInfo.defaultCount);
    EXPECT_EQ(RowOf(&work, ZRS_STMT_UNITS).destination, &leafListInfo.units);
    node.kind = ZR_NODE_CHOICE;
    node.info = &choiceInfo;
    EXPECT_EQ(RowOf(&work, ZRS_STMT_DEFAULT).destination, &choiceInfo.defaultCase);
}

} // namespace
