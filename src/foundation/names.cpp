// The names of the interface's numbers. Every enumeration starts at its first constant and has no
// holes, so a table is indexed by the number less that of its first row; statuses do have holes and
// are searched.
#include <zrschema/names.h>
#include <zrschema/version.h>

#include <iterator>

namespace {

struct Status {
    uint32_t number;
    const char *name;
    const char *text;
};

#define ZR_STATUS_ROW(constant, text)                                                              \
    {                                                                                              \
        constant, #constant, text                                                                  \
    }

// clang-format off
constexpr Status kStatuses[] = {
    ZR_STATUS_ROW(ZR_OK, "Done."),
    ZR_STATUS_ROW(ZR_ERR_FAILED, "The operation failed, or a rule was broken; load errors may say more."),
    ZR_STATUS_ROW(ZR_ERR_NOT_FOUND, "No module file was found in any search directory."),
    ZR_STATUS_ROW(ZR_ERR_NO_MEMORY, "Memory ran out, or a text did not fit into its buffer."),
    ZR_STATUS_ROW(ZR_ERR_REGISTERED, "Allocation hooks are registered already."),
    ZR_STATUS_ROW(ZR_ERR_BAD_DIR, "The search directory is no absolute path of an existing directory."),
    ZR_STATUS_ROW(ZR_ERR_INVALID, "An argument or the input is invalid."),
    ZR_STATUS_ROW(ZR_ERR_LOCK, "A lock could not be taken."),
    ZR_STATUS_ROW(ZR_ERR_COPY, "A segment could not be copied."),
    ZR_STATUS_ROW(ZR_ERR_OVERFLOW, "A bounded copy did not fit."),

    ZR_STATUS_ROW(ZR_ERR_VALUE_NO_BODY, "A restriction of the type has no content."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_DERIVED, "A typedef of the type is not loaded, or its chain of typedefs is too long."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_IDENTITY, "The value is no identity that the type's bases accept."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_BITS, "A bit name is unknown, repeated or malformed."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_ENUM, "The value is none of the enumeration's names."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_LENGTH, "The value's length is outside the allowed lengths."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_LEAFREF, "The leafref has no target leaf."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_PATTERN, "A pattern refuses the value."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_RANGE, "The value is no number of the type, or outside the allowed ranges."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_UNION, "No member of the union accepts the value."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_BOOLEAN, "The value is neither \"true\" nor \"false\"."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_BINARY, "The value is not base64."),
    ZR_STATUS_ROW(ZR_ERR_VALUE_EMPTY, "A leaf of type empty has a value."),

    ZR_STATUS_ROW(ZR_XPATH_RESULT_FALSE, "The condition is false."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_TOKENIZE, "The condition cannot be cut into tokens."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_PAREN, "The condition has a parenthesis too many or too few."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_UNSUPPORTED_OPERATOR, "The condition uses an operator that is not evaluated."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_BAD_OPERATION, "The condition has an unknown operator."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_BAD_PRIMARY, "The condition has something else where an operand is due."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_ROOT_STEP, "A path of the condition begins with \"//\"."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_BAD_STEP, "A path of the condition has something else where a step is due."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_UNKNOWN_FUNCTION, "The condition calls a function that is not known."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_BAD_ARGUMENT, "The condition calls a function with the wrong arguments."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_NO_SCHEMA, "The condition asks for the identity of an element without a schema node."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_SUBEXPR_START, "A sub-expression of the condition begins wrongly."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_SUBEXPR_END, "A sub-expression of the condition ends wrongly."),
    ZR_STATUS_ROW(ZR_XPATH_ERR_PREDICATE, "A predicate of the condition has no \"]\"."),
};

// From ZR_NODE_CONTAINER on.
constexpr const char *kNodeKinds[] = {
    "container", "leaf", "leaf-list", "list", "choice", "case", "anydata", "anyxml", "action", "rpc",
    "notification", "input", "output", "augment",
};

// From ZRT_TYPE_DERIVED on.
constexpr const char *kBuiltInTypes[] = {
    "derived", "binary", "bits", "boolean", "decimal64", "empty", "enumeration", "identityref",
    "instance-identifier", "int8", "int16", "int32", "int64", "leafref", "string", "uint8", "uint16",
    "uint32", "uint64", "union",
};

// From ZR_ERROR_TYPE_TRANSPORT on.
constexpr const char *kErrorTypes[] = {"transport", "rpc", "protocol", "application"};

// From ZR_ERROR_SEVERITY_ERROR on.
constexpr const char *kErrorSeverities[] = {"error", "warning"};

// From ZR_ERROR_TAG_IN_USE on.
constexpr const char *kErrorTags[] = {
    "in-use", "invalid-value", "too-big", "missing-attribute", "bad-attribute", "unknown-attribute",
    "missing-element", "bad-element", "unknown-element", "unknown-namespace", "access-denied",
    "lock-denied", "resource-denied", "rollback-failed", "data-exists", "data-missing",
    "operation-not-supported", "operation-failed", "partial-operation", "malformed-message",
};
// clang-format on

static_assert(std::size(kNodeKinds) == ZR_NODE_AUGMENT - ZR_NODE_CONTAINER + 1);
static_assert(std::size(kBuiltInTypes) == ZRT_TYPE_UNION - ZRT_TYPE_DERIVED + 1);
static_assert(std::size(kErrorTypes) == ZR_ERROR_TYPE_APPLICATION - ZR_ERROR_TYPE_TRANSPORT + 1);
static_assert(std::size(kErrorSeverities) ==
              ZR_ERROR_SEVERITY_WARNING - ZR_ERROR_SEVERITY_ERROR + 1);
static_assert(std::size(kErrorTags) == ZR_ERROR_TAG_MALFORMED_MESSAGE - ZR_ERROR_TAG_IN_USE + 1);

const Status *FindStatus(uint32_t number)
{
    for (const Status &status : kStatuses)
        if (status.number == number)
            return &status;
    return nullptr;
}

// A number below `first` wraps round to one behind the table.
template <size_t count>
const char *NameOf(const char *const (&names)[count], uint32_t first, uint32_t number)
{
    uint32_t row = number - first;
    return row < count ? names[row] : "unknown";
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
    return NameOf(kNodeKinds, ZR_NODE_CONTAINER, kind);
}

const char *ZR_GetBuiltInTypeName(uint32_t type)
{
    return NameOf(kBuiltInTypes, ZRT_TYPE_DERIVED, type);
}

const char *ZR_GetErrorTypeName(uint32_t type)
{
    return NameOf(kErrorTypes, ZR_ERROR_TYPE_TRANSPORT, type);
}

const char *ZR_GetErrorSeverityName(uint32_t severity)
{
    return NameOf(kErrorSeverities, ZR_ERROR_SEVERITY_ERROR, severity);
}

const char *ZR_GetErrorTagName(uint32_t tag)
{
    return NameOf(kErrorTags, ZR_ERROR_TAG_IN_USE, tag);
}

const char *ZR_GetVersion(void)
{
    return ZR_VERSION_STRING;
}
