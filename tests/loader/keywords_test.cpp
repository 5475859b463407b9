#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "loader/statements/statements.h"

namespace {

struct Keyword {
    uint32_t statement;
    const char *keyword;
};

constexpr Keyword kKeywords[] = {
    {0, "unknown"},
    {1, "action"},
    {2, "anydata"},
    {3, "anyxml"},
    {4, "argument"},
    {5, "augment"},
    {6, "base"},
    {7, "belongs-to"},
    {8, "bit"},
    {9, "case"},
    {10, "choice"},
    {11, "config"},
    {12, "contact"},
    {13, "container"},
    {14, "default"},
    {15, "description"},
    {16, "deviate"},
    {17, "deviation"},
    {18, "enum"},
    {19, "error-app-tag"},
    {20, "error-message"},
    {21, "extension"},
    {22, "feature"},
    {23, "fraction-digits"},
    {24, "grouping"},
    {25, "identity"},
    {26, "if-feature"},
    {27, "import"},
    {28, "include"},
    {29, "input"},
    {30, "key"},
    {31, "leaf"},
    {32, "leaf-list"},
    {33, "length"},
    {34, "list"},
    {35, "mandatory"},
    {36, "max-elements"},
    {37, "min-elements"},
    {38, "modifier"},
    {39, "module"},
    {40, "must"},
    {41, "namespace"},
    {42, "notification"},
    {43, "ordered-by"},
    {44, "organization"},
    {45, "output"},
    {46, "path"},
    {47, "pattern"},
    {48, "position"},
    {49, "prefix"},
    {50, "presence"},
    {51, "range"},
    {52, "reference"},
    {53, "refine"},
    {54, "require-instance"},
    {55, "revision"},
    {56, "revision-date"},
    {57, "rpc"},
    {58, "status"},
    {59, "submodule"},
    {60, "type"},
    {61, "typedef"},
    {62, "unique"},
    {63, "units"},
    {64, "uses"},
    {65, "value"},
    {66, "when"},
    {67, "yang-version"},
    {68, "yin-element"},
    {69, "text"},
    {70, "extension-instance"},
};

using LetterFunc = uint32_t (*)(const char *name);

struct Letter {
    char letter;
    LetterFunc find;
    std::vector<const char *> keywords;
};

const std::vector<Letter> &Letters()
{
    static const std::vector<Letter> letters = {
        {'a',
         ZRS_LOADER_GetStmtByKeywordStartWithA,
         {"augment", "argument", "anydata", "anyxml", "action"}},
        {'b', ZRS_LOADER_GetStmtByKeywordStartWithB, {"base", "bit", "belongs-to"}},
        {'c',
         ZRS_LOADER_GetStmtByKeywordStartWithC,
         {"container", "config", "case", "choice", "contact"}},
        {'d',
         ZRS_LOADER_GetStmtByKeywordStartWithD,
         {"description", "default", "deviate", "deviation"}},
        {'e',
         ZRS_LOADER_GetStmtByKeywordStartWithE,
         {"enum", "extension", "error-message", "error-app-tag"}},
        {'f', ZRS_LOADER_GetStmtByKeywordStartWithF, {"fraction-digits", "feature"}},
        {'g', ZRS_LOADER_GetStmtByKeywordStartWithG, {"grouping"}},
        {'i',
         ZRS_LOADER_GetStmtByKeywordStartWithI,
         {"import", "identity", "input", "include", "if-feature"}},
        {'k', ZRS_LOADER_GetStmtByKeywordStartWithK, {"key"}},
        {'l', ZRS_LOADER_GetStmtByKeywordStartWithL, {"leaf", "length", "list", "leaf-list"}},
        {'m',
         ZRS_LOADER_GetStmtByKeywordStartWithM,
         {"must", "mandatory", "module", "max-elements", "min-elements", "modifier"}},
        {'n', ZRS_LOADER_GetStmtByKeywordStartWithN, {"namespace", "notification"}},
        {'o', ZRS_LOADER_GetStmtByKeywordStartWithO, {"organization", "ordered-by", "output"}},
        {'p',
         ZRS_LOADER_GetStmtByKeywordStartWithP,
         {"prefix", "path", "pattern", "presence", "position"}},
        {'r',
         ZRS_LOADER_GetStmtByKeywordStartWithR,
         {"range", "reference", "revision", "rpc", "revision-date", "require-instance", "refine"}},
        {'s', ZRS_LOADER_GetStmtByKeywordStartWithS, {"status", "submodule"}},
        {'t', ZRS_LOADER_GetStmtByKeywordStartWithT, {"text", "type", "typedef"}},
        {'u', ZRS_LOADER_GetStmtByKeywordStartWithU, {"units", "unique", "uses"}},
        {'v', ZRS_LOADER_GetStmtByKeywordStartWithV, {"value"}},
        {'w', ZRS_LOADER_GetStmtByKeywordStartWithW, {"when"}},
        {'y', ZRS_LOADER_GetStmtByKeywordStartWithY, {"yang-version", "yin-element"}},
    };
    return letters;
}

uint32_t StatementOf(const std::string &keyword)
{
    for (const Keyword &row : kKeywords)
        if (keyword == row.keyword)
            return row.statement;
    ADD_FAILURE() << keyword;
    return 0;
}

TEST(KeywordTable, HasEveryStatementAtItsNumber)
{
    ASSERT_EQ(std::size(kKeywords), size_t{ZRS_STMT_COUNT});
    for (const Keyword &row : kKeywords) {
        EXPECT_STREQ(g_zrsKeyWordTbl[row.statement], row.keyword);
        EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(row.statement), row.keyword);
    }
}

TEST(KeywordTable, IsUnknownAboveTheLastStatement)
{
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(71), "unknown");
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(UINT32_MAX), "unknown");
}

TEST(Keyword, EveryOneButTwoIsFoundByItsName)
{
    for (const Keyword &row : kKeywords) {
        bool isKeyword =
            row.statement != ZRS_STMT_UNKNOWN && row.statement != ZRS_STMT_EXTENSION_INSTANCE;
        EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword(row.keyword), isKeyword ? row.statement : 0)
            << row.keyword;
    }
}

TEST(Keyword, StandsInExactlyOneMapThatOfItsFirstLetter)
{
    size_t total = 0;
    for (const Letter &letter : Letters()) {
        for (const char *keyword : letter.keywords) {
            EXPECT_EQ(keyword[0], letter.letter);
            EXPECT_EQ(letter.find(keyword), StatementOf(keyword)) << keyword;
        }
        total += letter.keywords.size();
    }
    EXPECT_EQ(total, size_t{ZRS_STMT_COUNT} - 2);
}

TEST(Keyword, OfAnotherLetterIsNotInTheMap)
{
    for (const Letter &letter : Letters())
        for (const Keyword &row : kKeywords)
            if (row.keyword[0] != letter.letter)
                for (const char *own : letter.keywords)
                    if (std::string(own).substr(1) != std::string(row.keyword).substr(1)) {
                        std::string name = letter.letter + std::string(row.keyword).substr(1) + "?";
                        EXPECT_EQ(letter.find(name.c_str()), 0u) << name;
                    }
}

TEST(Keyword, IsNotFoundByAPartOfIt)
{
    for (const Keyword &row : kKeywords) {
        if (row.statement == ZRS_STMT_UNKNOWN || row.statement == ZRS_STMT_EXTENSION_INSTANCE)
            continue;
        std::string longer = std::string(row.keyword) + "x";
        std::string shorter = std::string(row.keyword).substr(0, 2);
        EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword(longer.c_str()), ZRS_STMT_UNKNOWN) << longer;
        EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword(shorter.c_str()), ZRS_STMT_UNKNOWN) << shorter;
    }
}

TEST(Keyword, IsSensitiveToCase)
{
    EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword("Leaf"), ZRS_STMT_UNKNOWN);
    EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword("lEAF"), ZRS_STMT_UNKNOWN);
    EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword("LEAF"), ZRS_STMT_UNKNOWN);
}

TEST(Keyword, OfNoMapIsUnknown)
{
    for (const char *name :
         {"", "foo", "hello", "jump", "query", "xpath", "zone", "_leaf", "1leaf", "{", "`",
          "\xc3\xa4nderung", "leaf ", " leaf", "unknown", "extension-instance"})
        EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword(name), ZRS_STMT_UNKNOWN) << name;
    EXPECT_EQ(ZRS_LOADER_GetStmtByKeyword(nullptr), ZRS_STMT_UNKNOWN);
}

TEST(StatementMap, ComparesFromTheSecondCharacterOn)
{
    const ZrsStmtMap map[] = {
        {"leaf", ZRS_STMT_LEAF}, {"list", ZRS_STMT_LIST}, {"xeaf", ZRS_STMT_BELONGS_TO}};
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 3, "leaf"), ZRS_STMT_LEAF);
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 3, "zist"), ZRS_STMT_LIST);
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 3, "xeaf"), ZRS_STMT_LEAF); // the first match
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 3, "leaves"), ZRS_STMT_UNKNOWN);
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 0, "leaf"), ZRS_STMT_UNKNOWN);
}

TEST(StatementMap, IsNothingForNoMapOrName)
{
    const ZrsStmtMap map[] = {{"leaf", ZRS_STMT_LEAF}};
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(nullptr, 1, "leaf"), ZRS_STMT_UNKNOWN);
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 1, nullptr), ZRS_STMT_UNKNOWN);
    EXPECT_EQ(ZRS_LOADER_GetStmtFromStmtMap(map, 1, ""), ZRS_STMT_UNKNOWN);
}

} // namespace
