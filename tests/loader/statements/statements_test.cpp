// SPDX-License-Identifier: Apache-2.0
// The statements of YIN by their keywords, and which of them are read.
#include "loader/statements/statements.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "support/context.h"
#include "support/schema_dump.h"

namespace {

using testing::Contains;
using testing::IsEmpty;
using zrtest::TestContext;

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

struct Letter {
    char letter;
    uint32_t (*find)(const char *name);
};

// Every letter with which a keyword begins.
const Letter kLetters[] = {
    {'a', ZRS_LOADER_GetStmtByKeywordStartWithA}, {'b', ZRS_LOADER_GetStmtByKeywordStartWithB},
    {'c', ZRS_LOADER_GetStmtByKeywordStartWithC}, {'d', ZRS_LOADER_GetStmtByKeywordStartWithD},
    {'e', ZRS_LOADER_GetStmtByKeywordStartWithE}, {'f', ZRS_LOADER_GetStmtByKeywordStartWithF},
    {'g', ZRS_LOADER_GetStmtByKeywordStartWithG}, {'i', ZRS_LOADER_GetStmtByKeywordStartWithI},
    {'k', ZRS_LOADER_GetStmtByKeywordStartWithK}, {'l', ZRS_LOADER_GetStmtByKeywordStartWithL},
    {'m', ZRS_LOADER_GetStmtByKeywordStartWithM}, {'n', ZRS_LOADER_GetStmtByKeywordStartWithN},
    {'o', ZRS_LOADER_GetStmtByKeywordStartWithO}, {'p', ZRS_LOADER_GetStmtByKeywordStartWithP},
    {'r', ZRS_LOADER_GetStmtByKeywordStartWithR}, {'s', ZRS_LOADER_GetStmtByKeywordStartWithS},
    {'t', ZRS_LOADER_GetStmtByKeywordStartWithT}, {'u', ZRS_LOADER_GetStmtByKeywordStartWithU},
    {'v', ZRS_LOADER_GetStmtByKeywordStartWithV}, {'w', ZRS_LOADER_GetStmtByKeywordStartWithW},
    {'y', ZRS_LOADER_GetStmtByKeywordStartWithY},
};

TEST(Keyword, IsFoundByTheFunctionOfItsFirstLetter)
{
    for (const std::string keyword : kKeywords) {
        const Letter *letter =
            std::find_if(std::begin(kLetters), std::end(kLetters),
                         [&](const Letter &l) { return l.letter == keyword[0]; });
        ASSERT_NE(letter, std::end(kLetters)) << keyword;
        EXPECT_STREQ(ZRS_LOADER_GetKeywordByStmt(letter->find(keyword.c_str())), keyword.c_str());
    }
}

TEST(Keyword, IsNotFoundByAFunctionOfAnotherLetter)
{
    // These functions look at what follows the letter alone: "ase" is of "base" and of "case".
    for (const Letter &letter : kLetters)
        for (const std::string keyword : kKeywords) {
            std::string own = letter.letter + keyword.substr(1);
            if (keyword[0] != letter.letter &&
                ZRS_LOADER_GetStmtByKeyword(own.c_str()) == ZRS_STMT_UNKNOWN) {
                EXPECT_EQ(letter.find(keyword.c_str()), ZRS_STMT_UNKNOWN)
                    << letter.letter << " " << keyword;
            }
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

// A statement without its argument in a place where it may stand, and what is said of it where that
// is not what is said of most.
struct Bare {
    const char *keyword, *body, *message = nullptr;
};

const Bare kBareStatements[] = {
    {"action", "<container name='c'><action/></container>"},
    {"anydata", "<anydata/>"},
    {"anyxml", "<anyxml/>"},
    {"argument", "<extension name='e'><argument/></extension>"},
    {"augment", "<augment/>"},
    {"base", "<identity name='i'><base/></identity>"},
    {"case", "<choice name='c'><case/></choice>"},
    {"choice", "<choice/>"},
    {"config", "<container name='c'><config/></container>"},
    {"container", "<container/>"},
    {"default", "<leaf name='l'><type name='string'/><default/></leaf>"},
    {"deviate", "<deviation target-node='/m:l'><deviate/></deviation>"},
    {"deviation", "<deviation/>"},
    {"error-app-tag",
     "<container name='c'><must condition='1'><error-app-tag/></must></container>"},
    {"extension", "<extension/>"},
    {"feature", "<feature/>"},
    {"identity", "<identity/>"},
    {"if-feature", "<container name='c'><if-feature/></container>"},
    {"import", "<import/>"},
    {"include", "<include/>"},
    {"key", "<list name='l'><key/></list>"},
    {"leaf", "<leaf/>"},
    {"leaf-list", "<leaf-list/>"},
    {"list", "<list/>"},
    {"mandatory", "<anydata name='a'><mandatory/></anydata>"},
    {"must", "<container name='c'><must/></container>"},
    {"notification", "<notification/>"},
    {"ordered-by", "<list name='l'><ordered-by/></list>"},
    {"presence", "<container name='c'><presence/></container>",
     "Failed to parse value \"\" of statement \"presence\"."},
    {"revision", "<revision/>"},
    {"rpc", "<rpc/>"},
    {"status", "<container name='c'><status/></container>"},
    {"type", "<leaf name='l'><type/></leaf>", "Failed to get value of statement \"typeName\"."},
    {"typedef", "<typedef/>"},
    {"units", "<leaf name='l'><type name='string'/><units/></leaf>"},
    {"when", "<container name='c'><when/></container>"},
    {"yin-element", "<extension name='e'><argument name='a'><yin-element/></argument></extension>"},
};

TEST(Statement, ThatIsReadIsRefusedWithoutItsArgument)
{
    for (const Bare &row : kBareStatements) {
        TestContext ctx(ZR_CTX_KEEP_UNITS);
        EXPECT_EQ(ctx.LoadBody("m", row.body), ZR_ERR_FAILED) << row.keyword;
        std::string message =
            "Failed to get value of statement \"" + std::string(row.keyword) + "\".";
        EXPECT_THAT(ctx.Messages(), Contains(row.message != nullptr ? row.message : message));
    }
}

TEST(Statement, ThatIsNotReadMaySayAnything)
{
    TestContext without;
    ASSERT_EQ(without.LoadBody("m", "<container name='c'/>"), ZR_OK);
    for (const char *keyword : {"belongs-to",       "bit",           "contact",   "enum",
                                "fraction-digits",  "grouping",      "length",    "max-elements",
                                "min-elements",     "modifier",      "path",      "pattern",
                                "position",         "range",         "reference", "refine",
                                "require-instance", "revision-date", "unique",    "uses"}) {
        SCOPED_TRACE(keyword);
        std::string bare = "<" + std::string(keyword) + "/>";
        TestContext ctx;
        EXPECT_EQ(ctx.LoadBody("m", bare + "<container name='c'>" + bare + "</container>"), ZR_OK);
        EXPECT_THAT(ctx.Messages(), IsEmpty());
        EXPECT_EQ(DumpContext(ctx), DumpContext(without));
    }
}

TEST(Statement, WithAnUnknownKeywordIsPassedOver)
{
    TestContext ctx;
    EXPECT_EQ(ctx.LoadBody("m", "<Leaf name='a'/><leaves name='b'/><lea name='c'/>"), ZR_OK);
    EXPECT_THAT(ctx.Messages(), IsEmpty());
    for (const char *path : {"/m:a", "/m:b", "/m:c"})
        EXPECT_EQ(ctx.Node(path), nullptr) << path;
}

TEST(ParseTable, HasNoneAboveTheLastStatement)
{
    EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(ZRS_STMT_COUNT), nullptr);
    EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(UINT32_MAX), nullptr);
}

TEST(ParseTable, IsWhatTheFunctionReads)
{
    for (uint32_t statement = 0; statement < ZRS_STMT_COUNT; ++statement)
        EXPECT_EQ(ZRS_LOADER_GetStmtParseFunc(statement), g_zrStmtParseFuncMapTbl[statement])
            << ZRS_LOADER_GetKeywordByStmt(statement);
}

} // namespace
