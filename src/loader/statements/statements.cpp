// SPDX-License-Identifier: Apache-2.0
// The keywords of YIN and the way from a name to its statement: the first letter selects a small
// map, so that a name is compared with a handful of keywords at the most.
#include <cstring>
#include <iterator>
#include <span>

#include "loader/statements/statements.h"

namespace {

#define ZRS_KEYWORD_OF(statement, keyword, parser) keyword,
#define ZRS_MAP_ROW_OF(statement, keyword, parser) {keyword, statement},

constexpr ZrsStmtMap kStatements[] = {ZRS_STATEMENTS(ZRS_MAP_ROW_OF)};

consteval bool RowsStandAtTheirNumbers()
{
    for (uint32_t i = 0; i < std::size(kStatements); ++i) {
        if (kStatements[i].statement != i)
            return false;
    }
    return std::size(kStatements) == ZRS_STMT_COUNT;
}
static_assert(RowsStandAtTheirNumbers());

// The maps of all letters, one behind the other: that of a letter begins at `first` of its number.
struct LetterMaps {
    ZrsStmtMap rows[ZRS_STMT_COUNT];
    uint32_t first['z' - 'a' + 2];
};

consteval LetterMaps MakeLetterMaps()
{
    LetterMaps maps = {};
    uint32_t count = 0;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        maps.first[letter - 'a'] = count;
        for (const ZrsStmtMap &row : kStatements) {
            bool isKeyword =
                row.statement != ZRS_STMT_UNKNOWN && row.statement != ZRS_STMT_EXTENSION_INSTANCE;
            if (isKeyword && row.keyword[0] == letter)
                maps.rows[count++] = row;
        }
    }
    maps.first['z' - 'a' + 1] = count;
    return maps;
}

constexpr LetterMaps kLetterMaps = MakeLetterMaps();

uint32_t FindKeyword(char letter, const char *name)
{
    uint32_t first = kLetterMaps.first[letter - 'a'];
    return ZRS_LOADER_GetStmtFromStmtMap(&kLetterMaps.rows[first],
                                         kLetterMaps.first[letter - 'a' + 1] - first, name);
}

} // namespace

const char *const g_zrsKeyWordTbl[ZRS_STMT_COUNT] = {ZRS_STATEMENTS(ZRS_KEYWORD_OF)};

const char *ZRS_LOADER_GetKeywordByStmt(uint32_t statement)
{
    return g_zrsKeyWordTbl[statement < ZRS_STMT_COUNT ? statement : ZRS_STMT_UNKNOWN];
}

uint32_t ZRS_LOADER_GetStmtByKeyword(const char *name)
{
    if (name == nullptr || name[0] < 'a' || name[0] > 'z')
        return ZRS_STMT_UNKNOWN;
    return FindKeyword(name[0], name);
}

uint32_t ZRS_LOADER_GetStmtFromStmtMap(const ZrsStmtMap *map, uint32_t size, const char *name)
{
    if (map == nullptr || name == nullptr || name[0] == '\0')
        return ZRS_STMT_UNKNOWN;
    for (const ZrsStmtMap &row : std::span(map, size))
        if (std::strcmp(row.keyword + 1, name + 1) == 0)
            return row.statement;
    return ZRS_STMT_UNKNOWN;
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithA(const char *name)
{
    return FindKeyword('a', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithB(const char *name)
{
    return FindKeyword('b', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithC(const char *name)
{
    return FindKeyword('c', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithD(const char *name)
{
    return FindKeyword('d', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithE(const char *name)
{
    return FindKeyword('e', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithF(const char *name)
{
    return FindKeyword('f', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithG(const char *name)
{
    return FindKeyword('g', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithI(const char *name)
{
    return FindKeyword('i', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithK(const char *name)
{
    return FindKeyword('k', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithL(const char *name)
{
    return FindKeyword('l', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithM(const char *name)
{
    return FindKeyword('m', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithN(const char *name)
{
    return FindKeyword('n', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithO(const char *name)
{
    return FindKeyword('o', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithP(const char *name)
{
    return FindKeyword('p', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithR(const char *name)
{
    return FindKeyword('r', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithS(const char *name)
{
    return FindKeyword('s', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithT(const char *name)
{
    return FindKeyword('t', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithU(const char *name)
{
    return FindKeyword('u', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithV(const char *name)
{
    return FindKeyword('v', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithW(const char *name)
{
    return FindKeyword('w', name);
}

uint32_t ZRS_LOADER_GetStmtByKeywordStartWithY(const char *name)
{
    return FindKeyword('y', name);
}

ZrsParseFunc ZRS_LOADER_GetStmtParseFunc(uint32_t statement)
{
    return statement < ZRS_STMT_COUNT ? g_zrStmtParseFuncMapTbl[statement] : nullptr;
}
