#include "names.h"

#include <iterator>

namespace tool {

namespace {

struct Name {
    uint32_t number;
    const char *name;
};

// clang-format off
constexpr Name kStatuses[] = {
    {ZR_OK,                 "ZR_OK"},
    {ZR_ERR_FAILED,         "ZR_ERR_FAILED"},
    {ZR_ERR_NO_MEMORY,      "ZR_ERR_NO_MEMORY"},
    {ZR_ERR_INVALID,        "ZR_ERR_INVALID"},
    {ZR_ERR_VALUE_NO_BODY,  "ZR_ERR_VALUE_NO_BODY"},
    {ZR_ERR_VALUE_DERIVED,  "ZR_ERR_VALUE_DERIVED"},
    {ZR_ERR_VALUE_IDENTITY, "ZR_ERR_VALUE_IDENTITY"},
    {ZR_ERR_VALUE_BITS,     "ZR_ERR_VALUE_BITS"},
    {ZR_ERR_VALUE_ENUM,     "ZR_ERR_VALUE_ENUM"},
    {ZR_ERR_VALUE_LENGTH,   "ZR_ERR_VALUE_LENGTH"},
    {ZR_ERR_VALUE_LEAFREF,  "ZR_ERR_VALUE_LEAFREF"},
    {ZR_ERR_VALUE_PATTERN,  "ZR_ERR_VALUE_PATTERN"},
    {ZR_ERR_VALUE_RANGE,    "ZR_ERR_VALUE_RANGE"},
    {ZR_ERR_VALUE_UNION,    "ZR_ERR_VALUE_UNION"},
    {ZR_ERR_VALUE_BOOLEAN,  "ZR_ERR_VALUE_BOOLEAN"},
    {ZR_ERR_VALUE_BINARY,   "ZR_ERR_VALUE_BINARY"},
    {ZR_ERR_VALUE_EMPTY,    "ZR_ERR_VALUE_EMPTY"},
};

constexpr Name kTypes[] = {
    {ZRT_TYPE_DERIVED,             "derived"},
    {ZRT_TYPE_BINARY,              "binary"},
    {ZRT_TYPE_BITS,                "bits"},
    {ZRT_TYPE_BOOLEAN,             "boolean"},
    {ZRT_TYPE_DECIMAL64,           "decimal64"},
    {ZRT_TYPE_EMPTY,               "empty"},
    {ZRT_TYPE_ENUMERATION,         "enumeration"},
    {ZRT_TYPE_IDENTITYREF,         "identityref"},
    {ZRT_TYPE_INSTANCE_IDENTIFIER, "instance-identifier"},
    {ZRT_TYPE_INT8,                "int8"},
    {ZRT_TYPE_INT16,               "int16"},
    {ZRT_TYPE_INT32,               "int32"},
    {ZRT_TYPE_INT64,               "int64"},
    {ZRT_TYPE_LEAFREF,             "leafref"},
    {ZRT_TYPE_STRING,              "string"},
    {ZRT_TYPE_UINT8,               "uint8"},
    {ZRT_TYPE_UINT16,              "uint16"},
    {ZRT_TYPE_UINT32,              "uint32"},
    {ZRT_TYPE_UINT64,              "uint64"},
    {ZRT_TYPE_UNION,               "union"},
};

constexpr Name kNodeKinds[] = {
    {ZR_NODE_CONTAINER,    "container"},
    {ZR_NODE_LEAF,         "leaf"},
    {ZR_NODE_LEAF_LIST,    "leaf-list"},
    {ZR_NODE_LIST,         "list"},
    {ZR_NODE_CHOICE,       "choice"},
    {ZR_NODE_CASE,         "case"},
    {ZR_NODE_ANYDATA,      "anydata"},
    {ZR_NODE_ANYXML,       "anyxml"},
    {ZR_NODE_ACTION,       "action"},
    {ZR_NODE_RPC,          "rpc"},
    {ZR_NODE_NOTIFICATION, "notification"},
    {ZR_NODE_INPUT,        "input"},
    {ZR_NODE_OUTPUT,       "output"},
    {ZR_NODE_AUGMENT,      "augment"},
};

constexpr Name kErrorTypes[] = {
    {ZR_ERROR_TYPE_TRANSPORT,   "transport"},
    {ZR_ERROR_TYPE_RPC,         "rpc"},
    {ZR_ERROR_TYPE_PROTOCOL,    "protocol"},
    {ZR_ERROR_TYPE_APPLICATION, "application"},
};

constexpr Name kErrorSeverities[] = {
    {ZR_ERROR_SEVERITY_ERROR,   "error"},
    {ZR_ERROR_SEVERITY_WARNING, "warning"},
};

constexpr Name kErrorTags[] = {
    {ZR_ERROR_TAG_IN_USE,                  "in-use"},
    {ZR_ERROR_TAG_INVALID_VALUE,           "invalid-value"},
    {ZR_ERROR_TAG_TOO_BIG,                 "too-big"},
    {ZR_ERROR_TAG_MISSING_ATTRIBUTE,       "missing-attribute"},
    {ZR_ERROR_TAG_BAD_ATTRIBUTE,           "bad-attribute"},
    {ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE,       "unknown-attribute"},
    {ZR_ERROR_TAG_MISSING_ELEMENT,         "missing-element"},
    {ZR_ERROR_TAG_BAD_ELEMENT,             "bad-element"},
    {ZR_ERROR_TAG_UNKNOWN_ELEMENT,         "unknown-element"},
    {ZR_ERROR_TAG_UNKNOWN_NAMESPACE,       "unknown-namespace"},
    {ZR_ERROR_TAG_ACCESS_DENIED,           "access-denied"},
    {ZR_ERROR_TAG_LOCK_DENIED,             "lock-denied"},
    {ZR_ERROR_TAG_RESOURCE_DENIED,         "resource-denied"},
    {ZR_ERROR_TAG_ROLLBACK_FAILED,         "rollback-failed"},
    {ZR_ERROR_TAG_DATA_EXISTS,             "data-exists"},
    {ZR_ERROR_TAG_DATA_MISSING,            "data-missing"},
    {ZR_ERROR_TAG_OPERATION_NOT_SUPPORTED, "operation-not-supported"},
    {ZR_ERROR_TAG_OPERATION_FAILED,        "operation-failed"},
    {ZR_ERROR_TAG_PARTIAL_OPERATION,       "partial-operation"},
    {ZR_ERROR_TAG_MALFORMED_MESSAGE,       "malformed-message"},
};
// clang-format on

template <size_t count> std::string Find(const Name (&names)[count], uint32_t number)
{
    for (const Name &name : names)
        if (name.number == number)
            return name.name;
    return "unknown";
}

struct Search {
    const ZrCtx *ctx;
    const ZrtRealType *wanted;
    const ZrtRealType *last; // where the chain ended
    std::string name;        // "" until found
};

uint32_t FirstName(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                   void *userData)
{
    *static_cast<std::string *>(userData) = typedefName != nullptr
                                                ? std::string(moduleName) + ":" + typedefName
                                                : BuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(type));
    return 1;
}

uint32_t CompareLink(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                     void *userData)
{
    auto *search = static_cast<Search *>(userData);
    search->last = type;
    if (type != search->wanted)
        return 0;
    search->name = typedefName != nullptr ? std::string(moduleName) + ":" + typedefName
                                          : BuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(type));
    return 1;
}

void SearchType(Search &search, const ZrtRealType *type);

uint32_t SearchMember(const char *, const char *, const ZrtRealType *member, void *userData)
{
    auto *search = static_cast<Search *>(userData);
    SearchType(*search, member);
    return search->name.empty() ? 0 : 1;
}

void SearchType(Search &search, const ZrtRealType *type)
{
    if (type == search.wanted) {
        search.name = TypeName(search.ctx, type);
        return;
    }
    search.last = nullptr;
    ZR_TYPE_IterRealTypeDerivedName(type, search.ctx, CompareLink, &search);
    if (search.name.empty())
        ZR_TYPE_ScanUnionSubType(search.last, SearchMember, &search);
}

} // namespace

std::string StatusName(uint32_t status)
{
    return Find(kStatuses, status);
}
std::string BuiltInTypeName(uint32_t baseType)
{
    return Find(kTypes, baseType);
}
std::string NodeKindName(uint32_t kind)
{
    return Find(kNodeKinds, kind);
}
std::string ErrorTypeName(uint32_t type)
{
    return Find(kErrorTypes, type);
}
std::string ErrorSeverityName(uint32_t severity)
{
    return Find(kErrorSeverities, severity);
}
std::string ErrorTagName(uint32_t tag)
{
    return Find(kErrorTags, tag);
}

std::string TypeName(const ZrCtx *ctx, const ZrtRealType *type)
{
    std::string name;
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, FirstName, &name);
    return name;
}

std::string MatchedTypeName(const ZrCtx *ctx, const ZrNode *leaf, const ZrtRealType *matched)
{
    Search search{ctx, matched, nullptr, ""};
    SearchType(search, ZR_NODE_GetRealType(leaf));
    if (search.name.empty())
        SearchType(search, ZR_NODE_GetRealType(ZR_NODE_GetLeafrefTargetNode(leaf, 1)));
    return search.name.empty() ? BuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(matched)) : search.name;
}

} // namespace tool
