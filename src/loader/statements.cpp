// The keywords of YIN (RFC 7950, section 13) and the way from a name to its statement: the first
// letter selects a small map, so that a name is compared with a handful of keywords at the most.
#include "loader/statements.h"

#include <cstring>
#include <span>

#include "loader/parsers.h"
#include "loader/type_fill.h"

// clang-format off
const char *const g_zrsKeyWordTbl[ZRS_STMT_COUNT] = {
    /*  0 */ "unknown",
    /*  1 */ "action",
    /*  2 */ "anydata",
    /*  3 */ "anyxml",
    /*  4 */ "argument",
    /*  5 */ "augment",
    /*  6 */ "base",
    /*  7 */ "belongs-to",
    /*  8 */ "bit",
    /*  9 */ "case",
    /* 10 */ "choice",
    /* 11 */ "config",
    /* 12 */ "contact",
    /* 13 */ "container",
    /* 14 */ "default",
    /* 15 */ "description",
    /* 16 */ "deviate",
    /* 17 */ "deviation",
    /* 18 */ "enum",
    /* 19 */ "error-app-tag",
    /* 20 */ "error-message",
    /* 21 */ "extension",
    /* 22 */ "feature",
    /* 23 */ "fraction-digits",
    /* 24 */ "grouping",
    /* 25 */ "identity",
    /* 26 */ "if-feature",
    /* 27 */ "import",
    /* 28 */ "include",
    /* 29 */ "input",
    /* 30 */ "key",
    /* 31 */ "leaf",
    /* 32 */ "leaf-list",
    /* 33 */ "length",
    /* 34 */ "list",
    /* 35 */ "mandatory",
    /* 36 */ "max-elements",
    /* 37 */ "min-elements",
    /* 38 */ "modifier",
    /* 39 */ "module",
    /* 40 */ "must",
    /* 41 */ "namespace",
    /* 42 */ "notification",
    /* 43 */ "ordered-by",
    /* 44 */ "organization",
    /* 45 */ "output",
    /* 46 */ "path",
    /* 47 */ "pattern",
    /* 48 */ "position",
    /* 49 */ "prefix",
    /* 50 */ "presence",
    /* 51 */ "range",
    /* 52 */ "reference",
    /* 53 */ "refine",
    /* 54 */ "require-instance",
    /* 55 */ "revision",
    /* 56 */ "revision-date",
    /* 57 */ "rpc",
    /* 58 */ "status",
    /* 59 */ "submodule",
    /* 60 */ "type",
    /* 61 */ "typedef",
    /* 62 */ "unique",
    /* 63 */ "units",
    /* 64 */ "uses",
    /* 65 */ "value",
    /* 66 */ "when",
    /* 67 */ "yang-version",
    /* 68 */ "yin-element",
    /* 69 */ "text",
    /* 70 */ "extension-instance",
};

namespace
{

// The keywords of each first letter, the frequent ones first.
//   keyword              statement
constexpr ZrsStmtMap kAKeywords[] = {
    {"augment",           ZRS_STMT_AUGMENT},
    {"argument",          ZRS_STMT_ARGUMENT},
    {"anydata",           ZRS_STMT_ANYDATA},
    {"anyxml",            ZRS_STMT_ANYXML},
    {"action",            ZRS_STMT_ACTION},
};
constexpr ZrsStmtMap kBKeywords[] = {
    {"base",              ZRS_STMT_BASE},
    {"bit",               ZRS_STMT_BIT},
    {"belongs-to",        ZRS_STMT_BELONGS_TO},
};
constexpr ZrsStmtMap kCKeywords[] = {
    {"container",         ZRS_STMT_CONTAINER},
    {"config",            ZRS_STMT_CONFIG},
    {"case",              ZRS_STMT_CASE},
    {"choice",            ZRS_STMT_CHOICE},
    {"contact",           ZRS_STMT_CONTACT},
};
constexpr ZrsStmtMap kDKeywords[] = {
    {"description",       ZRS_STMT_DESCRIPTION},
    {"default",           ZRS_STMT_DEFAULT},
    {"deviate",           ZRS_STMT_DEVIATE},
    {"deviation",         ZRS_STMT_DEVIATION},
};
constexpr ZrsStmtMap kEKeywords[] = {
    {"enum",              ZRS_STMT_ENUM},
    {"extension",         ZRS_STMT_EXTENSION},
    {"error-message",     ZRS_STMT_ERROR_MESSAGE},
    {"error-app-tag",     ZRS_STMT_ERROR_APP_TAG},
};
constexpr ZrsStmtMap kFKeywords[] = {
    {"fraction-digits",   ZRS_STMT_FRACTION_DIGITS},
    {"feature",           ZRS_STMT_FEATURE},
};
constexpr ZrsStmtMap kGKeywords[] = {
    {"grouping",          ZRS_STMT_GROUPING},
};
constexpr ZrsStmtMap kIKeywords[] = {
    {"import",            ZRS_STMT_IMPORT},
    {"identity",          ZRS_STMT_IDENTITY},
    {"input",             ZRS_STMT_INPUT},
    {"include",           ZRS_STMT_INCLUDE},
    {"if-feature",        ZRS_STMT_IF_FEATURE},
};
constexpr ZrsStmtMap kKKeywords[] = {
    {"key",               ZRS_STMT_KEY},
};
constexpr ZrsStmtMap kLKeywords[] = {
    {"leaf",              ZRS_STMT_LEAF},
    {"length",            ZRS_STMT_LENGTH},
    {"list",              ZRS_STMT_LIST},
    {"leaf-list",         ZRS_STMT_LEAF_LIST},
};
constexpr ZrsStmtMap kMKeywords[] = {
    {"must",              ZRS_STMT_MUST},
    {"mandatory",         ZRS_STMT_MANDATORY},
    {"module",            ZRS_STMT_MODULE},
    {"max-elements",      ZRS_STMT_MAX_ELEMENTS},
    {"min-elements",      ZRS_STMT_MIN_ELEMENTS},
    {"modifier",          ZRS_STMT_MODIFIER},
};
constexpr ZrsStmtMap kNKeywords[] = {
    {"namespace",         ZRS_STMT_NAMESPACE},
    {"notification",      ZRS_STMT_NOTIFICATION},
};
constexpr ZrsStmtMap kOKeywords[] = {
    {"organization",      ZRS_STMT_ORGANIZATION},
    {"ordered-by",        ZRS_STMT_ORDERED_BY},
    {"output",            ZRS_STMT_OUTPUT},
};
constexpr ZrsStmtMap kPKeywords[] = {
    {"prefix",            ZRS_STMT_PREFIX},
    {"path",              ZRS_STMT_PATH},
    {"pattern",           ZRS_STMT_PATTERN},
    {"presence",          ZRS_STMT_PRESENCE},
    {"position",          ZRS_STMT_POSITION},
};
constexpr ZrsStmtMap kRKeywords[] = {
    {"range",             ZRS_STMT_RANGE},
    {"reference",         ZRS_STMT_REFERENCE},
    {"revision",          ZRS_STMT_REVISION},
    {"rpc",               ZRS_STMT_RPC},
    {"revision-date",     ZRS_STMT_REVISION_DATE},
    {"require-instance",  ZRS_STMT_REQUIRE_INSTANCE},
    {"refine",            ZRS_STMT_REFINE},
};
constexpr ZrsStmtMap kSKeywords[] = {
    {"status",            ZRS_STMT_STATUS},
    {"submodule",         ZRS_STMT_SUBMODULE},
};
constexpr ZrsStmtMap kTKeywords[] = {
    {"text",              ZRS_STMT_TEXT},
    {"type",              ZRS_STMT_TYPE},
    {"typedef",           ZRS_STMT_TYPEDEF},
};
constexpr ZrsStmtMap kUKeywords[] = {
    {"units",             ZRS_STMT_UNITS},
    {"unique",            ZRS_STMT_UNIQUE},
    {"uses",              ZRS_STMT_USES},
};
constexpr ZrsStmtMap kVKeywords[] = {
    {"value",             ZRS_STMT_VALUE},
};
constexpr ZrsStmtMap kWKeywords[] = {
    {"when",              ZRS_STMT_WHEN},
};
constexpr ZrsStmtMap kYKeywords[] = {
    {"yang-version",      ZRS_STMT_YANG_VERSION},
    {"yin-element",       ZRS_STMT_YIN_ELEMENT},
};

using LetterFunc = uint32_t (*)(const char *name);

// By first letter, 'a' to 'z'; null where no keyword begins with it.
constexpr LetterFunc kLetters[] = {
    /* a */ ZRS_LOADER_GetStmtByKeywordStartWithA,
    /* b */ ZRS_LOADER_GetStmtByKeywordStartWithB,
    /* c */ ZRS_LOADER_GetStmtByKeywordStartWithC,
    /* d */ ZRS_LOADER_GetStmtByKeywordStartWithD,
    /* e */ ZRS_LOADER_GetStmtByKeywordStartWithE,
    /* f */ ZRS_LOADER_GetStmtByKeywordStartWithF,
    /* g */ ZRS_LOADER_GetStmtByKeywordStartWithG,
    /* h */ nullptr,
    /* i */ ZRS_LOADER_GetStmtByKeywordStartWithI,
    /* j */ nullptr,
    /* k */ ZRS_LOADER_GetStmtByKeywordStartWithK,
    /* l */ ZRS_LOADER_GetStmtByKeywordStartWithL,
    /* m */ ZRS_LOADER_GetStmtByKeywordStartWithM,
    /* n */ ZRS_LOADER_GetStmtByKeywordStartWithN,
    /* o */ ZRS_LOADER_GetStmtByKeywordStartWithO,
    /* p */ ZRS_LOADER_GetStmtByKeywordStartWithP,
    /* q */ nullptr,
    /* r */ ZRS_LOADER_GetStmtByKeywordStartWithR,
    /* s */ ZRS_LOADER_GetStmtByKeywordStartWithS,
    /* t */ ZRS_LOADER_GetStmtByKeywordStartWithT,
    /* u */ ZRS_LOADER_GetStmtByKeywordStartWithU,
    /* v */ ZRS_LOADER_GetStmtByKeywordStartWithV,
    /* w */ ZRS_LOADER_GetStmtByKeywordStartWithW,
    /* x */ nullptr,
    /* y */ ZRS_LOADER_GetStmtByKeywordStartWithY,
    /* z */ nullptr,
};
// clang-format on
static_assert(std::size(kLetters) == 'z' - 'a' + 1);

template <size_t size> uint32_t FindKeyword(const ZrsStmtMap (&map)[size], const char *name)
{
    return ZRS_LOADER_GetStmtFromStmtMap(map, static_cast<uint32_t>(size), name);
}

} // namespace

const char *ZRS_LOADER_GetKeywordByStmt(uint32_t statement)
{
    return g_zrsKeyWordTbl[statement < ZRS_STMT_COUNT ? statement : ZRS_STMT_UNKNOWN];
}

uint32_t ZRS_LOADER_GetStmtByKeyword(const char *name)
{
    if (name == nullptr || name[0] < 'a' || name[0] > 'z')
        return ZRS_STMT_UNKNOWN;
    LetterFunc find = kLetters[name[0] - 'a'];
    return find != nullptr ? find(name) : ZRS_STMT_UNKNOWN;
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
    return FindKeyword(kAKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithB(const char *name)
{
    return FindKeyword(kBKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithC(const char *name)
{
    return FindKeyword(kCKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithD(const char *name)
{
    return FindKeyword(kDKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithE(const char *name)
{
    return FindKeyword(kEKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithF(const char *name)
{
    return FindKeyword(kFKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithG(const char *name)
{
    return FindKeyword(kGKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithI(const char *name)
{
    return FindKeyword(kIKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithK(const char *name)
{
    return FindKeyword(kKKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithL(const char *name)
{
    return FindKeyword(kLKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithM(const char *name)
{
    return FindKeyword(kMKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithN(const char *name)
{
    return FindKeyword(kNKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithO(const char *name)
{
    return FindKeyword(kOKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithP(const char *name)
{
    return FindKeyword(kPKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithR(const char *name)
{
    return FindKeyword(kRKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithS(const char *name)
{
    return FindKeyword(kSKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithT(const char *name)
{
    return FindKeyword(kTKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithU(const char *name)
{
    return FindKeyword(kUKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithV(const char *name)
{
    return FindKeyword(kVKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithW(const char *name)
{
    return FindKeyword(kWKeywords, name);
}
uint32_t ZRS_LOADER_GetStmtByKeywordStartWithY(const char *name)
{
    return FindKeyword(kYKeywords, name);
}

// The parse function of every statement. The statements without one are read by the header code,
// by the type reader or not at all: "uses" and "grouping", for one, are expanded in prepared YIN.

// clang-format off
const ZrsParseFunc g_zrStmtParseFuncMapTbl[ZRS_STMT_COUNT] = {
    /*  0 unknown            */ nullptr,
    /*  1 action             */ ZRS_LOADER_ParseAction,
    /*  2 anydata            */ ZRS_LOADER_ParseAnydata,
    /*  3 anyxml             */ ZRS_LOADER_ParseAnyxml,
    /*  4 argument           */ ZRS_LOADER_ParseArgument,
    /*  5 augment            */ ZRS_LOADER_ParseAugment,
    /*  6 base               */ ZRS_LOADER_ParseIdentBase,
    /*  7 belongs-to         */ nullptr,
    /*  8 bit                */ nullptr,
    /*  9 case               */ ZRS_LOADER_ParseCase,
    /* 10 choice             */ ZRS_LOADER_ParseChoice,
    /* 11 config             */ ZRS_LOADER_ParseConfig,
    /* 12 contact            */ nullptr,
    /* 13 container          */ ZRS_LOADER_ParseContainer,
    /* 14 default            */ ZRS_LOADER_ParseDefault,
    /* 15 description        */ ZRS_LOADER_ParseDescription,
    /* 16 deviate            */ ZRS_LOADER_ParseDeviate,
    /* 17 deviation          */ ZRS_LOADER_ParseDeviation,
    /* 18 enum               */ nullptr,
    /* 19 error-app-tag      */ ZRS_LOADER_ParseErrorAppTag,
    /* 20 error-message      */ ZRS_LOADER_ParseErrorMessage,
    /* 21 extension          */ ZRS_LOADER_ParseExtension,
    /* 22 feature            */ ZRS_LOADER_ParseFeature,
    /* 23 fraction-digits    */ nullptr,
    /* 24 grouping           */ nullptr,
    /* 25 identity           */ ZRS_LOADER_ParseIdentity,
    /* 26 if-feature         */ ZRS_LOADER_ParseIfFeature,
    /* 27 import             */ nullptr,
    /* 28 include            */ nullptr,
    /* 29 input              */ ZRS_LOADER_ParseInput,
    /* 30 key                */ ZRS_LOADER_ParseKey,
    /* 31 leaf               */ ZRS_LOADER_ParseLeaf,
    /* 32 leaf-list          */ ZRS_LOADER_ParseLeafList,
    /* 33 length             */ nullptr,
    /* 34 list               */ ZRS_LOADER_ParseList,
    /* 35 mandatory          */ ZRS_LOADER_ParseMandatory,
    /* 36 max-elements       */ nullptr,
    /* 37 min-elements       */ nullptr,
    /* 38 modifier           */ nullptr,
    /* 39 module             */ nullptr,
    /* 40 must               */ ZRS_LOADER_ParseMust,
    /* 41 namespace          */ nullptr,
    /* 42 notification       */ ZRS_LOADER_ParseNotif,
    /* 43 ordered-by         */ ZRS_LOADER_ParseOrderedBy,
    /* 44 organization       */ ZRS_LOADER_ParseOrganization,
    /* 45 output             */ ZRS_LOADER_ParseOutput,
    /* 46 path               */ nullptr,
    /* 47 pattern            */ nullptr,
    /* 48 position           */ nullptr,
    /* 49 prefix             */ ZRS_LOADER_ParsePrefix,
    /* 50 presence           */ ZRS_LOADER_ParsePresence,
    /* 51 range              */ nullptr,
    /* 52 reference          */ nullptr,
    /* 53 refine             */ nullptr,
    /* 54 require-instance   */ nullptr,
    /* 55 revision           */ ZRS_LOADER_ParseRevision,
    /* 56 revision-date      */ nullptr,
    /* 57 rpc                */ ZRS_LOADER_ParseRpc,
    /* 58 status             */ ZRS_LOADER_ParseStatus,
    /* 59 submodule          */ nullptr,
    /* 60 type               */ ZRT_LOADER_ParseTypeStmt,
    /* 61 typedef            */ ZRT_LOADER_ParseTypeDefStmt,
    /* 62 unique             */ nullptr,
    /* 63 units              */ ZRS_LOADER_ParseUnits,
    /* 64 uses               */ nullptr,
    /* 65 value              */ ZRS_LOADER_ParseValue,
    /* 66 when               */ ZRS_LOADER_ParseWhen,
    /* 67 yang-version       */ nullptr,
    /* 68 yin-element        */ ZRS_LOADER_ParseYinElement,
    /* 69 text               */ ZRS_LOADER_ParseText,
    /* 70 extension-instance */ ZRS_LOADER_ParseExtInst,
};
// clang-format on

ZrsParseFunc ZRS_LOADER_GetStmtParseFunc(uint32_t statement)
{
    return statement < ZRS_STMT_COUNT ? g_zrStmtParseFuncMapTbl[statement] : nullptr;
}
