// The statements of YIN: ids, keywords and the shape of every statement parser.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/statement_ids.h"

// Every statement parser: the module being loaded, the statement's element, the parent statement's
// id, and where the result goes.
typedef uint32_t (*ZrsParseFunc)(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                 void *destination);

// One keyword of the map of a first letter.
struct ZrsStmtMap {
    const char *keyword;
    uint32_t statement;
};

extern "C" {
ZR_API extern const char *const g_zrsKeyWordTbl[ZRS_STMT_COUNT];
ZR_API extern const ZrsParseFunc g_zrStmtParseFuncMapTbl[ZRS_STMT_COUNT];
// "unknown" for an id above the last.
ZR_API const char *ZRS_LOADER_GetKeywordByStmt(uint32_t statement);
// Null for a statement that is not parsed on its own and for an id above the last.
ZR_API ZrsParseFunc ZRS_LOADER_GetStmtParseFunc(uint32_t statement);
// 0 for null and for a name that is no keyword.
ZR_API uint32_t ZRS_LOADER_GetStmtByKeyword(const char *name);

// The first row whose keyword equals `name` from the second character on, or 0: the caller has
// compared the first one.
ZR_API uint32_t ZRS_LOADER_GetStmtFromStmtMap(const ZrsStmtMap *map, uint32_t size,
                                              const char *name);
// One a first letter; `name` begins with it.
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithA(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithB(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithC(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithD(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithE(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithF(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithG(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithI(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithK(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithL(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithM(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithN(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithO(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithP(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithR(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithS(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithT(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithU(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithV(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithW(const char *name);
ZR_API uint32_t ZRS_LOADER_GetStmtByKeywordStartWithY(const char *name);
}
