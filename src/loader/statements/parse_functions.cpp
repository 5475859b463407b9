// The parser of every statement: the one place of the loader where a call leads up. A statement
// holds statements, so that the engine, which every parser uses, calls the parsers through this
// table.
#include "loader/statements/statements.h"

#define ZRS_PARSER_OF(statement, keyword, parser) parser,

const ZrsParseFunc g_zrStmtParseFuncMapTbl[ZRS_STMT_COUNT] = {ZRS_STATEMENTS(ZRS_PARSER_OF)};

ZrsParseFunc ZRS_LOADER_GetStmtParseFunc(uint32_t statement)
{
    return statement < ZRS_STMT_COUNT ? g_zrStmtParseFuncMapTbl[statement] : nullptr;
}
