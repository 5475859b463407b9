#include "names.h"

namespace tool {

namespace {

struct Name {
    uint32_t number;
    const char *name;
};

// clang-format off
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

} // namespace

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

} // namespace tool
