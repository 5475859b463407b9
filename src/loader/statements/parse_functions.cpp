// SPDX-License-Identifier: Apache-2.0
// The parser of every statement, a table and nothing else: the one way up in the loader. A
// statement holds statements, so that the engine, which every parser uses, calls the parsers
// through it.
#include "loader/statements/statements.h"

#define ZRS_PARSER_OF(statement, keyword, parser) parser,

const ZrsParseFunc g_zrStmtParseFuncMapTbl[ZRS_STMT_COUNT] = {ZRS_STATEMENTS(ZRS_PARSER_OF)};
