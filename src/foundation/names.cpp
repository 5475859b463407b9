// SPDX-License-Identifier: Apache-2.0
// The names of the interface's numbers.
#include <zrschema/names.h>
#include <zrschema/version.h>

#include <cstddef>
#include <cstdint>

#include "foundation/array.h"

namespace {

// Statuses have holes between their numbers and are searched.
struct Status {
    uint32_t number;
    const char *name;
    const char *text;
};

// An enumeration without holes: a table of these is indexed by the number.
struct Named {
    uint32_t number;
    const char *name;
};

// clang-format off
constexpr Status kStatuses[] = {
    {ZR_OK,                             "ZR_OK",                             "Done."},
    {ZR_ERR_FAILED,                     "ZR_ERR_FAILED",                     "The operation failed, or a rule was broken; load errors may say more."},
    {ZR_ERR_NOT_FOUND,                  "ZR_ERR_NOT_FOUND",                  "No module file was found in any search directory."},
    {ZR_ERR_NO_MEMORY,                  "ZR_ERR_NO_MEMORY",                  "Memory ran out, or a text did not fit into its buffer."},
    {ZR_ERR_REGISTERED,                 "ZR_ERR_REGISTERED",                 "Allocation hooks are registered already."},
    {ZR_ERR_BAD_DIR,                    "ZR_ERR_BAD_DIR",                    "The search directory is no absolute path of an existing directory."},
    {ZR_ERR_INVALID,                    "ZR_ERR_INVALID",                    "An argument or the input is invalid."},
    {ZR_ERR_LOCK,                       "ZR_ERR_LOCK",                       "A lock could not be taken."},
    {ZR_ERR_COPY,                       "ZR_ERR_COPY",                       "A segment could not be copied."},
    {ZR_ERR_OVERFLOW,                   "ZR_ERR_OVERFLOW",                   "A bounded copy did not fit."},

    {ZR_ERR_VALUE_NO_BODY,              "ZR_ERR_VALUE_NO_BODY",              "A restriction of the type has no content."},
    {ZR_ERR_VALUE_DERIVED,              "ZR_ERR_VALUE_DERIVED",              "A typedef of the type is not loaded, or its chain of typedefs is too long."},
    {ZR_ERR_VALUE_IDENTITY,             "ZR_ERR_VALUE_IDENTITY",             "The value is no identity that the type's bases accept."},
    {ZR_ERR_VALUE_BITS,                 "ZR_ERR_VALUE_BITS",                 "A bit name is unknown, repeated or malformed."},
    {ZR_ERR_VALUE_ENUM,                 "ZR_ERR_VALUE_ENUM",                 "The value is none of the enumeration's names."},
    {ZR_ERR_VALUE_LENGTH,               "ZR_ERR_VALUE_LENGTH",               "The value's length is outside the allowed lengths."},
    {ZR_ERR_VALUE_LEAFREF,              "ZR_ERR_VALUE_LEAFREF",              "The leafref has no target leaf."},
    {ZR_ERR_VALUE_PATTERN,              "ZR_ERR_VALUE_PATTERN",              "A pattern refuses the value."},
    {ZR_ERR_VALUE_RANGE,                "ZR_ERR_VALUE_RANGE",                "The value is no number of the type, or outside the allowed ranges."},
    {ZR_ERR_VALUE_UNION,                "ZR_ERR_VALUE_UNION",                "No member of the union accepts the value."},
    {ZR_ERR_VALUE_BOOLEAN,              "ZR_ERR_VALUE_BOOLEAN",              "The value is neither \"true\" nor \"false\"."},
    {ZR_ERR_VALUE_BINARY,               "ZR_ERR_VALUE_BINARY",               "The value is not base64."},
    {ZR_ERR_VALUE_EMPTY,                "ZR_ERR_VALUE_EMPTY",                "A leaf of type empty has a value."},

    {ZR_XPATH_RESULT_FALSE,             "ZR_XPATH_RESULT_FALSE",             "The condition is false."},
    {ZR_XPATH_ERR_TOKENIZE,             "ZR_XPATH_ERR_TOKENIZE",             "The condition cannot be cut into tokens."},
    {ZR_XPATH_ERR_PAREN,                "ZR_XPATH_ERR_PAREN",                "The condition has a parenthesis too many or too few."},
    {ZR_XPATH_ERR_UNSUPPORTED_OPERATOR, "ZR_XPATH_ERR_UNSUPPORTED_OPERATOR", "The condition uses an operator that is not evaluated."},
    {ZR_XPATH_ERR_BAD_OPERATION,        "ZR_XPATH_ERR_BAD_OPERATION",        "The condition has an unknown operator."},
    {ZR_XPATH_ERR_BAD_PRIMARY,          "ZR_XPATH_ERR_BAD_PRIMARY",          "The condition has something else where an operand is due."},
    {ZR_XPATH_ERR_ROOT_STEP,            "ZR_XPATH_ERR_ROOT_STEP",            "A path of the condition begins with \"//\"."},
    {ZR_XPATH_ERR_BAD_STEP,             "ZR_XPATH_ERR_BAD_STEP",             "A path of the condition has something else where a step is due."},
    {ZR_XPATH_ERR_UNKNOWN_FUNCTION,     "ZR_XPATH_ERR_UNKNOWN_FUNCTION",     "The condition calls a function that is not known."},
    {ZR_XPATH_ERR_BAD_ARGUMENT,         "ZR_XPATH_ERR_BAD_ARGUMENT",         "The condition calls a function with the wrong arguments."},
    {ZR_XPATH_ERR_NO_SCHEMA,            "ZR_XPATH_ERR_NO_SCHEMA",            "The condition asks for the identity of an element without a schema node."},
    {ZR_XPATH_ERR_SUBEXPR_START,        "ZR_XPATH_ERR_SUBEXPR_START",        "A sub-expression of the condition begins wrongly."},
    {ZR_XPATH_ERR_SUBEXPR_END,          "ZR_XPATH_ERR_SUBEXPR_END",          "A sub-expression of the condition ends wrongly."},
    {ZR_XPATH_ERR_PREDICATE,            "ZR_XPATH_ERR_PREDICATE",            "A predicate of the condition has no \"]\"."},
};

constexpr Named kNodeKinds[] = {
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

constexpr Named kBuiltInTypes[] = {
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

constexpr Named kErrorTypes[] = {
    {ZR_ERROR_TYPE_TRANSPORT,   "transport"},
    {ZR_ERROR_TYPE_RPC,         "rpc"},
    {ZR_ERROR_TYPE_PROTOCOL,    "protocol"},
    {ZR_ERROR_TYPE_APPLICATION, "application"},
};

constexpr Named kErrorSeverities[] = {
    {ZR_ERROR_SEVERITY_ERROR,   "error"},
    {ZR_ERROR_SEVERITY_WARNING, "warning"},
};

constexpr Named kErrorTags[] = {
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

static_assert(zr::RowsInOrder(kNodeKinds, &Named::number, ZR_NODE_CONTAINER, ZR_NODE_AUGMENT + 1));
static_assert(zr::RowsInOrder(kBuiltInTypes, &Named::number, ZRT_TYPE_DERIVED, ZRT_TYPE_NONE));
static_assert(zr::RowsInOrder(kErrorTypes, &Named::number, ZR_ERROR_TYPE_TRANSPORT,
                              ZR_ERROR_TYPE_APPLICATION + 1));
static_assert(zr::RowsInOrder(kErrorSeverities, &Named::number, ZR_ERROR_SEVERITY_ERROR,
                              ZR_ERROR_SEVERITY_WARNING + 1));
static_assert(zr::RowsInOrder(kErrorTags, &Named::number, ZR_ERROR_TAG_IN_USE,
                              ZR_ERROR_TAG_MALFORMED_MESSAGE + 1));

const Status *FindStatus(uint32_t number)
{
    for (const Status &status : kStatuses)
        if (status.number == number)
            return &status;
    return nullptr;
}

// A number below that of the first row wraps round to one behind the table.
template <size_t count> const char *NameOf(const Named (&names)[count], uint32_t number)
{
    uint32_t row = number - names[0].number;
    return row < count ? names[row].name : "unknown";
}

} // namespace

const char *ZR_GetStatusName(uint32_t status)
{
    const Status *found = FindStatus(status);
    return found != nullptr ? found->name : "unknown";
}

const char *ZR_GetStatusText(uint32_t status)
{
    const Status *found = FindStatus(status);
    return found != nullptr ? found->text : "Unknown status.";
}

const char *ZR_GetNodeKindName(uint32_t kind)
{
    return NameOf(kNodeKinds, kind);
}

const char *ZR_GetBuiltInTypeName(uint32_t type)
{
    return NameOf(kBuiltInTypes, type);
}

const char *ZR_GetErrorTypeName(uint32_t type)
{
    return NameOf(kErrorTypes, type);
}

const char *ZR_GetErrorSeverityName(uint32_t severity)
{
    return NameOf(kErrorSeverities, severity);
}

const char *ZR_GetErrorTagName(uint32_t tag)
{
    return NameOf(kErrorTags, tag);
}

const char *ZR_GetVersion(void)
{
    return ZR_VERSION_STRING;
}
