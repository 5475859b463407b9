// The statements of YIN: ids, keywords and the shape of every statement parser.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

enum ZrsStatement : uint32_t {
    ZRS_STMT_UNKNOWN = 0,
    ZRS_STMT_ACTION = 1,
    ZRS_STMT_ANYDATA = 2,
    ZRS_STMT_ANYXML = 3,
    ZRS_STMT_ARGUMENT = 4,
    ZRS_STMT_AUGMENT = 5,
    ZRS_STMT_BASE = 6,
    ZRS_STMT_BELONGS_TO = 7,
    ZRS_STMT_BIT = 8,
    ZRS_STMT_CASE = 9,
    ZRS_STMT_CHOICE = 10,
    ZRS_STMT_CONFIG = 11,
    ZRS_STMT_CONTACT = 12,
    ZRS_STMT_CONTAINER = 13,
    ZRS_STMT_DEFAULT = 14,
    ZRS_STMT_DESCRIPTION = 15,
    ZRS_STMT_DEVIATE = 16,
    ZRS_STMT_DEVIATION = 17,
    ZRS_STMT_ENUM = 18,
    ZRS_STMT_ERROR_APP_TAG = 19,
    ZRS_STMT_ERROR_MESSAGE = 20,
    ZRS_STMT_EXTENSION = 21,
    ZRS_STMT_FEATURE = 22,
    ZRS_STMT_FRACTION_DIGITS = 23,
    ZRS_STMT_GROUPING = 24,
    ZRS_STMT_IDENTITY = 25,
    ZRS_STMT_IF_FEATURE = 26,
    ZRS_STMT_IMPORT = 27,
    ZRS_STMT_INCLUDE = 28,
    ZRS_STMT_INPUT = 29,
    ZRS_STMT_KEY = 30,
    ZRS_STMT_LEAF = 31,
    ZRS_STMT_LEAF_LIST = 32,
    ZRS_STMT_LENGTH = 33,
    ZRS_STMT_LIST = 34,
    ZRS_STMT_MANDATORY = 35,
    ZRS_STMT_MAX_ELEMENTS = 36,
    ZRS_STMT_MIN_ELEMENTS = 37,
    ZRS_STMT_MODIFIER = 38,
    ZRS_STMT_MODULE = 39,
    ZRS_STMT_MUST = 40,
    ZRS_STMT_NAMESPACE = 41,
    ZRS_STMT_NOTIFICATION = 42,
    ZRS_STMT_ORDERED_BY = 43,
    ZRS_STMT_ORGANIZATION = 44,
    ZRS_STMT_OUTPUT = 45,
    ZRS_STMT_PATH = 46,
    ZRS_STMT_PATTERN = 47,
    ZRS_STMT_POSITION = 48,
    ZRS_STMT_PREFIX = 49,
    ZRS_STMT_PRESENCE = 50,
    ZRS_STMT_RANGE = 51,
    ZRS_STMT_REFERENCE = 52,
    ZRS_STMT_REFINE = 53,
    ZRS_STMT_REQUIRE_INSTANCE = 54,
    ZRS_STMT_REVISION = 55,
    ZRS_STMT_REVISION_DATE = 56,
    ZRS_STMT_RPC = 57,
    ZRS_STMT_STATUS = 58,
    ZRS_STMT_SUBMODULE = 59,
    ZRS_STMT_TYPE = 60,
    ZRS_STMT_TYPEDEF = 61,
    ZRS_STMT_UNIQUE = 62,
    ZRS_STMT_UNITS = 63,
    ZRS_STMT_USES = 64,
    ZRS_STMT_VALUE = 65,
    ZRS_STMT_WHEN = 66,
    ZRS_STMT_YANG_VERSION = 67,
    ZRS_STMT_YIN_ELEMENT = 68,
    ZRS_STMT_TEXT = 69,
    ZRS_STMT_EXTENSION_INSTANCE = 70,
    ZRS_STMT_COUNT = 71
};

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
