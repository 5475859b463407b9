#include "data/error_record.h"

#include <cstdarg>
#include <iterator>

#include "data/error_path.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/secure.h"

namespace {

constexpr size_t kMessageLength = 10240;

struct FaultRow {
    uint32_t tag; // ZrErrorTag
    const char *appTag;
    const char *message;
};

// The irregular rows are part of the interface: an invalid value is "bad-element", a wrong order
// "missing-element", a false "when" "unknown-element"; applications match on them.
// clang-format off
constexpr FaultRow kFaults[] = {
    // tag                             app tag           message
    {ZR_ERROR_TAG_MISSING_ELEMENT,     nullptr,          "Missing element: %s."},
    {ZR_ERROR_TAG_BAD_ELEMENT,         nullptr,          "%s has invalid value %s."},
    {ZR_ERROR_TAG_UNKNOWN_ELEMENT,     nullptr,          "Unexpected element: %s."},
    {ZR_ERROR_TAG_UNKNOWN_NAMESPACE,   nullptr,          "%s has invalid namespace: %s."},
    {ZR_ERROR_TAG_DATA_MISSING,        "missing-choice", "Mandatory choice %s missing element."},
    {ZR_ERROR_TAG_MISSING_ELEMENT,     nullptr,          "Invalid element order between %s and %s."},
    {ZR_ERROR_TAG_BAD_ELEMENT,         nullptr,          "Data for more than one case branch of a choice is present."},
    {ZR_ERROR_TAG_OPERATION_FAILED,    "must-violation", "%s is not satisfied must condition."},
    {ZR_ERROR_TAG_OPERATION_FAILED,    nullptr,          "Failed to check must condition of %s."},
    {ZR_ERROR_TAG_OPERATION_FAILED,    nullptr,          "Failed to check when condition of %s."},
    {ZR_ERROR_TAG_UNKNOWN_ELEMENT,     nullptr,          "%s is not satisfied when condition."},
    {ZR_ERROR_TAG_OPERATION_FAILED,    nullptr,          nullptr},
};
// clang-format on
static_assert(std::size(kFaults) == static_cast<size_t>(zr::Fault::Count));

// Stands for the general record when there is no memory for one: a failed run must never look like
// a successful one. It is never written to and never freed.
char g_rootPath[] = "/";
ZrdErrNode g_noMemoryRecord = {ZR_ERROR_TYPE_APPLICATION,
                               ZR_ERROR_SEVERITY_ERROR,
                               ZR_ERROR_TAG_OPERATION_FAILED,
                               nullptr,
                               g_rootPath,
                               nullptr,
                               nullptr,
                               nullptr};

void StoreCopy(char *&field, const char *text)
{
    if (field == nullptr && text != nullptr)
        field = ZR_UTL_StrDup(text);
}

} // namespace

ZrdErrNode *ZRD_ERR_NewErrNode(const ZrdCheckAux *check, uint32_t type, uint32_t severity,
                               uint32_t tag, const xmlNode *dataNode)
{
    auto *record = zr::AllocRecord<ZrdErrNode>();
    if (record == nullptr)
        return nullptr;
    record->type = type;
    record->severity = severity;
    record->tag = tag;
    record->path =
        dataNode != nullptr ? ZRD_ERR_GeneralErrorPath(check, dataNode) : ZR_UTL_StrDup("/");
    return record;
}

void ZRD_ERR_SetErrorMsg(ZrdErrNode *record, const char *format, ...)
{
    if (record == nullptr || record->message != nullptr || format == nullptr)
        return;
    zr::ScopedBlock<char> text(static_cast<char *>(zr::AllocZeroed(kMessageLength + 1)));
    if (!text)
        return;
    va_list args;
    va_start(args, format);
    int length = vsnprintf_s(text.get(), kMessageLength + 1, kMessageLength, format, args);
    va_end(args);
    if (length > 0)
        record->message = ZR_UTL_StrDup(text.get());
}

void ZRD_ERR_SetErrorAppTag(ZrdErrNode *record, const char *text)
{
    if (record != nullptr)
        StoreCopy(record->appTag, text);
}

void ZRD_ERR_SetBadElement(ZrdErrNode *record, const char *text)
{
    if (record != nullptr)
        StoreCopy(record->badElement, text);
}

uint32_t ZR_GetErrorType(const ZrdErrNode *error)
{
    return error != nullptr ? error->type : 0;
}

uint32_t ZR_GetErrorSeverity(const ZrdErrNode *error)
{
    return error != nullptr ? error->severity : 0;
}

uint32_t ZR_GetErrorTag(const ZrdErrNode *error)
{
    return error != nullptr ? error->tag : 0;
}

const char *ZR_GetErrorAppTag(const ZrdErrNode *error)
{
    return error != nullptr ? error->appTag : nullptr;
}

const char *ZR_GetErrorMessage(const ZrdErrNode *error)
{
    return error != nullptr ? error->message : nullptr;
}

const char *ZR_GetErrorPath(const ZrdErrNode *error)
{
    return error != nullptr ? error->path : nullptr;
}

const char *ZR_GetBadElement(const ZrdErrNode *error)
{
    return error != nullptr ? error->badElement : nullptr;
}

const char *ZR_GetBadAttribute(const ZrdErrNode *error)
{
    return error != nullptr ? error->badAttribute : nullptr;
}

void ZR_FreeErrNode(ZrdErrNode *error)
{
    if (error == nullptr || error == &g_noMemoryRecord)
        return;
    zr::Free(error->appTag);
    zr::Free(error->path);
    zr::Free(error->message);
    zr::Free(error->badElement);
    zr::Free(error->badAttribute);
    zr::Free(error);
}

namespace zr {

namespace {

// The run's new record for a fault; null when an earlier fault stands there or memory ran out.
ZrdErrNode *NewRecord(ZrdCheckAux *check, Fault fault, const xmlNode *dataNode)
{
    if (check->error != nullptr)
        return nullptr;
    check->error = ZRD_ERR_NewErrNode(check, ZR_ERROR_TYPE_APPLICATION, ZR_ERROR_SEVERITY_ERROR,
                                      kFaults[static_cast<size_t>(fault)].tag, dataNode);
    return check->error;
}

void SetMessage(ZrdErrNode *record, Fault fault, const char *first, const char *second)
{
    ZRD_ERR_SetErrorMsg(record, kFaults[static_cast<size_t>(fault)].message, first, second);
}

void SetTexts(ZrdErrNode *record, Fault fault, const char *badElement)
{
    ZRD_ERR_SetErrorAppTag(record, kFaults[static_cast<size_t>(fault)].appTag);
    ZRD_ERR_SetBadElement(record, badElement);
}

} // namespace

uint32_t RecordFault(ZrdCheckAux *check, Fault fault, const xmlNode *dataNode,
                     const char *badElement, const char *first, const char *second)
{
    ZrdErrNode *record = NewRecord(check, fault, dataNode);
    SetMessage(record, fault, first, second);
    SetTexts(record, fault, badElement);
    return ZR_ERR_INVALID;
}

uint32_t RecordFaultWithTexts(ZrdCheckAux *check, Fault fault, const xmlNode *element,
                              const char *appTag, const char *message)
{
    ZrdErrNode *record = NewRecord(check, fault, element);
    ZRD_ERR_SetErrorAppTag(record, appTag);
    // A message of the schema's that cannot be shown is not replaced by another.
    if (message != nullptr)
        ZRD_ERR_SetErrorMsg(record, "%s", message);
    else
        SetMessage(record, fault, NameOf(element), nullptr);
    SetTexts(record, fault, NameOf(element));
    return ZR_ERR_INVALID;
}

ZrdErrNode *TakeFailure(ZrdCheckAux *check)
{
    RecordFault(check, Fault::General, nullptr);
    ZrdErrNode *record = check->error;
    check->error = nullptr;
    return record != nullptr ? record : &g_noMemoryRecord;
}

const char *NameOf(const xmlNode *node)
{
    return node != nullptr && node->name != nullptr ? reinterpret_cast<const char *>(node->name)
                                                    : "";
}

} // namespace zr
