// SPDX-License-Identifier: Apache-2.0
// The statements of YIN (RFC 7950, section 13): the row of each, which names its number, its
// keyword and its parser; the parsers; and the way from a name to a statement.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/statement_ids.h"

// A statement's parser. The comment on each group of parsers says what the destination is. A parser
// that fails has recorded why, unless the engine does so for it, and leaves nothing of its own
// behind.
using ZrsParser = uint32_t(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                           void *destination);
using ZrsParseFunc = ZrsParser *;

// Every statement in the order of the numbers; each reader of the list takes its column. Without a
// parser are those that the content of a module reads itself (files/module_content.cpp), those that
// "type" reads (types/), and those that are not read at all: "uses" and "grouping", for one, are
// expanded in prepared YIN.
//
//      number                       keyword               parser
// clang-format off
#define ZRS_STATEMENTS(ROW)                                                              \
    ROW(ZRS_STMT_UNKNOWN,            "unknown",            nullptr)                      \
    ROW(ZRS_STMT_ACTION,             "action",             ZRS_LOADER_ParseAction)       \
    ROW(ZRS_STMT_ANYDATA,            "anydata",            ZRS_LOADER_ParseAnydata)      \
    ROW(ZRS_STMT_ANYXML,             "anyxml",             ZRS_LOADER_ParseAnyxml)       \
    ROW(ZRS_STMT_ARGUMENT,           "argument",           ZRS_LOADER_ParseArgument)     \
    ROW(ZRS_STMT_AUGMENT,            "augment",            ZRS_LOADER_ParseAugment)      \
    ROW(ZRS_STMT_BASE,               "base",               ZRS_LOADER_ParseIdentBase)    \
    ROW(ZRS_STMT_BELONGS_TO,         "belongs-to",         nullptr)                      \
    ROW(ZRS_STMT_BIT,                "bit",                nullptr)                      \
    ROW(ZRS_STMT_CASE,               "case",               ZRS_LOADER_ParseCase)         \
    ROW(ZRS_STMT_CHOICE,             "choice",             ZRS_LOADER_ParseChoice)       \
    ROW(ZRS_STMT_CONFIG,             "config",             ZRS_LOADER_ParseConfig)       \
    ROW(ZRS_STMT_CONTACT,            "contact",            nullptr)                      \
    ROW(ZRS_STMT_CONTAINER,          "container",          ZRS_LOADER_ParseContainer)    \
    ROW(ZRS_STMT_DEFAULT,            "default",            ZRS_LOADER_ParseDefault)      \
    ROW(ZRS_STMT_DESCRIPTION,        "description",        ZRS_LOADER_ParseDescription)  \
    ROW(ZRS_STMT_DEVIATE,            "deviate",            ZRS_LOADER_ParseDeviate)      \
    ROW(ZRS_STMT_DEVIATION,          "deviation",          ZRS_LOADER_ParseDeviation)    \
    ROW(ZRS_STMT_ENUM,               "enum",               nullptr)                      \
    ROW(ZRS_STMT_ERROR_APP_TAG,      "error-app-tag",      ZRS_LOADER_ParseErrorAppTag)  \
    ROW(ZRS_STMT_ERROR_MESSAGE,      "error-message",      ZRS_LOADER_ParseErrorMessage) \
    ROW(ZRS_STMT_EXTENSION,          "extension",          ZRS_LOADER_ParseExtension)    \
    ROW(ZRS_STMT_FEATURE,            "feature",            ZRS_LOADER_ParseFeature)      \
    ROW(ZRS_STMT_FRACTION_DIGITS,    "fraction-digits",    nullptr)                      \
    ROW(ZRS_STMT_GROUPING,           "grouping",           nullptr)                      \
    ROW(ZRS_STMT_IDENTITY,           "identity",           ZRS_LOADER_ParseIdentity)     \
    ROW(ZRS_STMT_IF_FEATURE,         "if-feature",         ZRS_LOADER_ParseIfFeature)    \
    ROW(ZRS_STMT_IMPORT,             "import",             nullptr)                      \
    ROW(ZRS_STMT_INCLUDE,            "include",            nullptr)                      \
    ROW(ZRS_STMT_INPUT,              "input",              ZRS_LOADER_ParseInput)        \
    ROW(ZRS_STMT_KEY,                "key",                ZRS_LOADER_ParseKey)          \
    ROW(ZRS_STMT_LEAF,               "leaf",               ZRS_LOADER_ParseLeaf)         \
    ROW(ZRS_STMT_LEAF_LIST,          "leaf-list",          ZRS_LOADER_ParseLeafList)     \
    ROW(ZRS_STMT_LENGTH,             "length",             nullptr)                      \
    ROW(ZRS_STMT_LIST,               "list",               ZRS_LOADER_ParseList)         \
    ROW(ZRS_STMT_MANDATORY,          "mandatory",          ZRS_LOADER_ParseMandatory)    \
    ROW(ZRS_STMT_MAX_ELEMENTS,       "max-elements",       nullptr)                      \
    ROW(ZRS_STMT_MIN_ELEMENTS,       "min-elements",       nullptr)                      \
    ROW(ZRS_STMT_MODIFIER,           "modifier",           nullptr)                      \
    ROW(ZRS_STMT_MODULE,             "module",             nullptr)                      \
    ROW(ZRS_STMT_MUST,               "must",               ZRS_LOADER_ParseMust)         \
    ROW(ZRS_STMT_NAMESPACE,          "namespace",          nullptr)                      \
    ROW(ZRS_STMT_NOTIFICATION,       "notification",       ZRS_LOADER_ParseNotif)        \
    ROW(ZRS_STMT_ORDERED_BY,         "ordered-by",         ZRS_LOADER_ParseOrderedBy)    \
    ROW(ZRS_STMT_ORGANIZATION,       "organization",       ZRS_LOADER_ParseOrganization) \
    ROW(ZRS_STMT_OUTPUT,             "output",             ZRS_LOADER_ParseOutput)       \
    ROW(ZRS_STMT_PATH,               "path",               nullptr)                      \
    ROW(ZRS_STMT_PATTERN,            "pattern",            nullptr)                      \
    ROW(ZRS_STMT_POSITION,           "position",           nullptr)                      \
    ROW(ZRS_STMT_PREFIX,             "prefix",             ZRS_LOADER_ParsePrefix)       \
    ROW(ZRS_STMT_PRESENCE,           "presence",           ZRS_LOADER_ParsePresence)     \
    ROW(ZRS_STMT_RANGE,              "range",              nullptr)                      \
    ROW(ZRS_STMT_REFERENCE,          "reference",          nullptr)                      \
    ROW(ZRS_STMT_REFINE,             "refine",             nullptr)                      \
    ROW(ZRS_STMT_REQUIRE_INSTANCE,   "require-instance",   nullptr)                      \
    ROW(ZRS_STMT_REVISION,           "revision",           ZRS_LOADER_ParseRevision)     \
    ROW(ZRS_STMT_REVISION_DATE,      "revision-date",      nullptr)                      \
    ROW(ZRS_STMT_RPC,                "rpc",                ZRS_LOADER_ParseRpc)          \
    ROW(ZRS_STMT_STATUS,             "status",             ZRS_LOADER_ParseStatus)       \
    ROW(ZRS_STMT_SUBMODULE,          "submodule",          nullptr)                      \
    ROW(ZRS_STMT_TYPE,               "type",               ZRT_LOADER_ParseTypeStmt)     \
    ROW(ZRS_STMT_TYPEDEF,            "typedef",            ZRT_LOADER_ParseTypeDefStmt)  \
    ROW(ZRS_STMT_UNIQUE,             "unique",             nullptr)                      \
    ROW(ZRS_STMT_UNITS,              "units",              ZRS_LOADER_ParseUnits)        \
    ROW(ZRS_STMT_USES,               "uses",               nullptr)                      \
    ROW(ZRS_STMT_VALUE,              "value",              ZRS_LOADER_ParseValue)        \
    ROW(ZRS_STMT_WHEN,               "when",               ZRS_LOADER_ParseWhen)         \
    ROW(ZRS_STMT_YANG_VERSION,       "yang-version",       nullptr)                      \
    ROW(ZRS_STMT_YIN_ELEMENT,        "yin-element",        ZRS_LOADER_ParseYinElement)   \
    ROW(ZRS_STMT_TEXT,               "text",               ZRS_LOADER_ParseText)         \
    ROW(ZRS_STMT_EXTENSION_INSTANCE, "extension-instance", ZRS_LOADER_ParseExtInst)
// clang-format on

extern "C" {
// Module header. Destination: the place of a uint32_t; of an interned string.
ZR_API ZrsParser ZRS_LOADER_ParseYangVersion; // a ZrsYangVersion; UINT32_MAX for no version of YANG
ZR_API ZrsParser ZRS_LOADER_ParseNamespace;
ZR_API ZrsParser ZRS_LOADER_ParsePrefix;

// Linkage. Destination: not used, the module is changed. For callers outside the library.
ZR_API ZrsParser ZRS_LOADER_ParseImport;
ZR_API ZrsParser ZRS_LOADER_ParseInclude;

// Texts. Destination: the place of an interned string.
ZR_API ZrsParser ZRS_LOADER_ParseRevision; // the first one of a module is kept
ZR_API ZrsParser ZRS_LOADER_ParseOrganization;
ZR_API ZrsParser ZRS_LOADER_ParseDescription; // with ZR_CTX_KEEP_DESCRIPTIONS only
ZR_API ZrsParser ZRS_LOADER_ParseUnits;       // with ZR_CTX_KEEP_UNITS only
ZR_API ZrsParser ZRS_LOADER_ParseDefault;
ZR_API ZrsParser ZRS_LOADER_ParseWhen;
ZR_API ZrsParser ZRS_LOADER_ParseErrorMessage;
ZR_API ZrsParser ZRS_LOADER_ParseErrorAppTag;
ZR_API ZrsParser ZRS_LOADER_ParseText;  // the "text" child of a text statement
ZR_API ZrsParser ZRS_LOADER_ParseValue; // the "value" child of a text statement

// Properties. Destination: a 32-bit word of node flags, into which bits are ORed.
ZR_API ZrsParser ZRS_LOADER_ParseConfig;
ZR_API ZrsParser ZRS_LOADER_ParseMandatory;
ZR_API ZrsParser ZRS_LOADER_ParseOrderedBy;
ZR_API ZrsParser ZRS_LOADER_ParsePresence;
ZR_API ZrsParser ZRS_LOADER_ParseStatus;

// Destination: the place of a pointer that receives the document's own text.
ZR_API ZrsParser ZRS_LOADER_ParseKey;

// Members. Destination: the zeroed record named beside each.
ZR_API ZrsParser ZRS_LOADER_ParseExtension;  // ZrsExtension
ZR_API ZrsParser ZRS_LOADER_ParseArgument;   // ZrsExtension
ZR_API ZrsParser ZRS_LOADER_ParseYinElement; // uint32_t
ZR_API ZrsParser ZRS_LOADER_ParseFeature;    // ZrsFeature
ZR_API ZrsParser ZRS_LOADER_ParseIdentity;   // ZrsIdentity
ZR_API ZrsParser ZRS_LOADER_ParseIdentBase;  // ZrsIdentBase
ZR_API ZrsParser ZRS_LOADER_ParseIfFeature;  // ZrsIfFeature
ZR_API ZrsParser ZRS_LOADER_ParseMust;       // ZrsMust
ZR_API ZrsParser ZRS_LOADER_ParseDeviation;  // ZrsDeviation
ZR_API ZrsParser ZRS_LOADER_ParseDeviate;    // ZrsDeviate; UINT32_MAX for a kind that is none
// The sub-statements of one kind of deviate. Destination: ZrsDeviate.
ZR_API ZrsParser ZRS_LOADER_ParseDeviateAdd;
ZR_API ZrsParser ZRS_LOADER_ParseDeviateDelete;
ZR_API ZrsParser ZRS_LOADER_ParseDeviateReplace;
// ZrsExtInst, but under a schema-node statement the ZrNode, to whose own array it goes.
ZR_API ZrsParser ZRS_LOADER_ParseExtInst;

// Schema nodes. Destination: the parent ZrNode, or the ZrMod when the parent statement is "module".
ZR_API ZrsParser ZRS_LOADER_ParseContainer;
ZR_API ZrsParser ZRS_LOADER_ParseLeaf;
ZR_API ZrsParser ZRS_LOADER_ParseLeafList;
ZR_API ZrsParser ZRS_LOADER_ParseList;
ZR_API ZrsParser ZRS_LOADER_ParseChoice;
ZR_API ZrsParser ZRS_LOADER_ParseCase;
ZR_API ZrsParser ZRS_LOADER_ParseAnydata;
ZR_API ZrsParser ZRS_LOADER_ParseAnyxml;
ZR_API ZrsParser ZRS_LOADER_ParseAugment;
ZR_API ZrsParser ZRS_LOADER_ParseRpc;
ZR_API ZrsParser ZRS_LOADER_ParseAction;
ZR_API ZrsParser ZRS_LOADER_ParseInput;
ZR_API ZrsParser ZRS_LOADER_ParseOutput;
ZR_API ZrsParser ZRS_LOADER_ParseNotif;
// The parser of two kinds that are alike; `nodeKind` says which of them.
ZR_API uint32_t ZRS_LOADER_ParseAnydataInner(ZrMod *module, xmlNode *element,
                                             uint32_t parentStatement, void *destination,
                                             uint32_t nodeKind);
ZR_API uint32_t ZRS_LOADER_ParseRpcInner(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                         void *destination, uint32_t nodeKind);
ZR_API uint32_t ZRS_LOADER_ParseInout(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                      void *destination, uint32_t nodeKind);
// A new node of the module with its name, not linked anywhere; null on failure. For callers outside
// the library.
ZR_API ZrNode *ZRS_LOADER_ParseNodeCommon(ZrMod *module, const xmlNode *element, uint32_t nodeKind);
// The target of an augment in module-name form, freed with the free hook; null on failure.
ZR_API char *ZRS_LOADER_ParseAugmentTargetNode(ZrMod *module, const xmlNode *element);
// Puts a finished node under its parent: `destination` is as for the node parsers.
ZR_API uint32_t ZRS_LOADER_AddNodeToSchemaTree(uint32_t parentStatement, void *destination,
                                               ZrNode *node);

// Types. Destination: the zeroed record named beside each.
ZR_API ZrsParser ZRT_LOADER_ParseTypeStmt;    // ZrtRealType
ZR_API ZrsParser ZRT_LOADER_ParseTypeDefStmt; // ZrsTypDef

// A ZrsDeviateKind, or 0. For callers outside the library.
ZR_API uint32_t ZRS_LOADER_GetDeviateType(const char *name);

// The columns of the list, by number.
ZR_API extern const char *const g_zrsKeyWordTbl[ZRS_STMT_COUNT];
ZR_API extern const ZrsParseFunc g_zrStmtParseFuncMapTbl[ZRS_STMT_COUNT];
// "unknown" for a number above the last.
ZR_API const char *ZRS_LOADER_GetKeywordByStmt(uint32_t statement);
// Null for a statement without a parser and for a number above the last.
ZR_API ZrsParseFunc ZRS_LOADER_GetStmtParseFunc(uint32_t statement);
}

// One keyword of the map of a first letter.
struct ZrsStmtMap {
    const char *keyword;
    uint32_t statement;
};

extern "C" {
// ZRS_STMT_UNKNOWN for null and for a name that is no keyword.
ZR_API uint32_t ZRS_LOADER_GetStmtByKeyword(const char *name);
// The first row whose keyword equals `name` from the second character on, or ZRS_STMT_UNKNOWN: the
// caller has compared the first one.
ZR_API uint32_t ZRS_LOADER_GetStmtFromStmtMap(const ZrsStmtMap *map, uint32_t size,
                                              const char *name);
// The same in the map of one first letter, with which `name` begins. For callers outside the
// library.
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

namespace zr {
// The namespace of the statements; elements of any other are extension instances.
inline constexpr char kYinNamespace[] = "urn:ietf:params:xml:ns:yang:yin:1";
} // namespace zr
