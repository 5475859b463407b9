#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "loader/statements/statements.h"

namespace {

// The keywords of YANG and those that YIN adds (RFC 7950, sections 13 and 14).
constexpr const char *kKeywords[] = {
    "action",
    "anydata",
    "anyxml",
    "argument",
    "augment",
    "base",
    "belongs-to",
    "bit",
    "case",
    "choice",
    "config",
    "contact",
    "container",
    "default",
    "description",
    "deviate",
    "deviation",
    "enum",
    "error-app-tag",
    "error-message",
    "extension",
    "feature",
    "fraction-digits",
    "grouping",
    "identity",
    "if-feature",
    "import",
    "include",
    "input",
    "key",
    "leaf",
    "leaf-list",
    "length",
    "list",
    "mandatory",
    "max-elements",
    "min-elements",
    "modifier",
    "module",
    "must",
    "namespace",
    "notification",
    "ordered-by",
    "organization",
    "output",
    "path",
    "pattern",
    "position",
    "prefix",
    "presence",
    "range",
    "reference",
    "refine",
    "require-instance",
    "revision",
    "revision-date",
    "rpc",
    "status",
    "submodule",
    "type",
    "typedef",
    "unique",
    "units",
    "uses",
    "value",
    "when",
    "yang-version",
    "yin-element",
    "text",
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

TEST(KeywordTable, NamesEveryStatementThatIsFoundByItsKeyword)
{
    std::set<uint32_t> statements;
    for (const char *keyword : kKeywords) {
        uint32_t statement = ZRS_LOADER_GetStmtByKeyword(keyword);
        EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(statement), keyword);
        EXPECT_STREQ(g_zrsKeyWordTbl[statement], keyword);
        statements.insert(statement);
    }
    // Two more have an entry and no keyword: what is unknown, and an extension instance.
    EXPECT_EQ(statements.size(), size_t{ZRS_STMT_COUNT} - 2);
    EXPECT_EQ(statements.count(ZRS_STMT_UNKNOWN), 0u);
    EXPECT_EQ(statements.count(ZRS_STMT_EXTENSION_INSTANCE), 0u);
}

TEST(KeywordTable, NamesTheStatementsThatTheirConstantsName)
{
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_ACTION), "action");
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_LEAF_LIST), "leaf-list");
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_YIN_ELEMENT), "yin-element");
}

TEST(KeywordTable, IsUnknownAboveTheLastStatement)
{
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_COUNT), "unknown");
    EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(UINT32_MAX), "unknown");
}

TEST(Keyword, StandsInExactlyOneMapThatOfItsFirstLetter)
{
    size_t total = 0;
    for (const Letter &letter : Letters()) {
        for (const char *keyword : letter.keywords) {
            EXPECT_EQ(keyword[0], letter.letter);
            EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(letter.find(keyword)), keyword);
        }
        total += letter.keywords.size();
    }
    EXPECT_EQ(total, size_t{ZRS_STMT_COUNT} - 2);
}

TEST(Keyword, OfAnotherLetterIsNotInTheMap)
{
    for (const Letter &letter : Letters())
        for (const std::string keyword : kKeywords)
            if (keyword[0] != letter.letter)
                for (const char *own : letter.keywords)
                    if (std::string(own).substr(1) != keyword.substr(1)) {
                        std::string name = letter.letter + keyword.substr(1) + "?";
                        EXPECT_EQ(letter.find(name.c_str()), 0u) << name;
                    }
}

TEST(Keyword, IsNotFoundByAPartOfIt)
{
    for (const std::string keyword : kKeywords) {
        std::string longer = keyword + "x";
        std::string shorter = keyword.substr(0, 2);
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
