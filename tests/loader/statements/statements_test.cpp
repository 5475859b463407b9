#include "loader/statements/statements.h"

#include <gtest/gtest.h>

namespace {

struct ParserRow {
    uint32_t statement;
    ZrsParseFunc parse;
};

// The statements that have a parse function; all others have none.
const ParserRow kParsers[] = {
    {1, ZRS_LOADER_ParseAction},       {2, ZRS_LOADER_ParseAnydata},
    {3, ZRS_LOADER_ParseAnyxml},       {4, ZRS_LOADER_ParseArgument},
    {5, ZRS_LOADER_ParseAugment},      {6, ZRS_LOADER_ParseIdentBase},
    {9, ZRS_LOADER_ParseCase},         {10, ZRS_LOADER_ParseChoice},
    {11, ZRS_LOADER_ParseConfig},      {13, ZRS_LOADER_ParseContainer},
    {14, ZRS_LOADER_ParseDefault},     {15, ZRS_LOADER_ParseDescription},
    {16, ZRS_LOADER_ParseDeviate},     {17, ZRS_LOADER_ParseDeviation},
    {19, ZRS_LOADER_ParseErrorAppTag}, {20, ZRS_LOADER_ParseErrorMessage},
    {21, ZRS_LOADER_ParseExtension},   {22, ZRS_LOADER_ParseFeature},
    {25, ZRS_LOADER_ParseIdentity},    {26, ZRS_LOADER_ParseIfFeature},
    {29, ZRS_LOADER_ParseInput},       {30, ZRS_LOADER_ParseKey},
    {31, ZRS_LOADER_ParseLeaf},        {32, ZRS_LOADER_ParseLeafList},
    {34, ZRS_LOADER_ParseList},        {35, ZRS_LOADER_ParseMandatory},
    {40, ZRS_LOADER_ParseMust},        {42, ZRS_LOADER_ParseNotif},
    {43, ZRS_LOADER_ParseOrderedBy},   {44, ZRS_LOADER_ParseOrganization},
    {45, ZRS_LOADER_ParseOutput},      {49, ZRS_LOADER_ParsePrefix},
    {50, ZRS_LOADER_ParsePresence},    {55, ZRS_LOADER_ParseRevision},
    {57, ZRS_LOADER_ParseRpc},         {58, ZRS_LOADER_ParseStatus},
    {60, ZRT_LOADER_ParseTypeStmt},    {61, ZRT_LOADER_ParseTypeDefStmt},
    {63, ZRS_LOADER_ParseUnits},       {65, ZRS_LOADER_ParseValue},
    {66, ZRS_LOADER_ParseWhen},        {68, ZRS_LOADER_ParseYinElement},
    {69, ZRS_LOADER_ParseText},        {70, ZRS_LOADER_ParseExtInst},
};

TEST(ParseTable, GivesEveryStatementItsParserOrNone)
{
    ZrsParseFunc expected[ZRS_STMT_COUNT] = {};
    for (const ParserRow &row : kParsers)
        expected[row.statement] = row.parse;
    for (uint32_t i = 0; i < ZRS_STMT_COUNT; ++i) {
        EXPECT_EQ(g_zrStmtParseFuncMapTbl[i], expected[i]) << ZRS_LOADER_GetKeywordByStmt(i);
        EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(i), expected[i]) << ZRS_LOADER_GetKeywordByStmt(i);
    }
}

TEST(ParseTable, HasNoneAboveTheLastStatement)
{
    EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(71), nullptr);
    EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(UINT32_MAX), nullptr);
}

} // namespace
