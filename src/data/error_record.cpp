// SPDX-License-Identifier: Apache-2.0
#include "data/error_record.h"

#include <zrschema/node.h>

#include <cstdarg>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include "data/element.h"
#include "foundation/array.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/strings.h"
#include "xpath/value_text.h"

// The record: its making and its fields.

namespace {

constexpr size_t kMessageLength = 10240;

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
    auto *record = zr::New<ZrdErrNode>();
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
    zr::Owned<char> text(zr::New<char>(kMessageLength + 1));
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

// The faults of a run.

namespace {

struct FaultRow {
    zr::Fault fault;
    ZrErrorTag tag;
    const char *appTag;
    const char *message;
};

// The irregular rows are part of the interface (docs/oddities.md): applications match on them.
// clang-format off
constexpr FaultRow kFaults[] = {
    // fault                          tag                             app tag           message
    {zr::Fault::MissingElement,       ZR_ERROR_TAG_MISSING_ELEMENT,   nullptr,          "Missing element: %s."},
    {zr::Fault::InvalidValue,         ZR_ERROR_TAG_BAD_ELEMENT,       nullptr,          "%s has invalid value %s."},
    {zr::Fault::UnexpectedElement,    ZR_ERROR_TAG_UNKNOWN_ELEMENT,   nullptr,          "Unexpected element: %s."},
    {zr::Fault::InvalidNamespace,     ZR_ERROR_TAG_UNKNOWN_NAMESPACE, nullptr,          "%s has invalid namespace: %s."},
    {zr::Fault::MissingChoice,        ZR_ERROR_TAG_DATA_MISSING,      "missing-choice", "Mandatory choice %s missing element."},
    {zr::Fault::ElementOrder,         ZR_ERROR_TAG_MISSING_ELEMENT,   nullptr,          "Invalid element order between %s and %s."},
    {zr::Fault::SeveralCases,         ZR_ERROR_TAG_BAD_ELEMENT,       nullptr,          "Data for more than one case branch of a choice is present."},
    {zr::Fault::MustFalse,            ZR_ERROR_TAG_OPERATION_FAILED,  "must-violation", "%s is not satisfied must condition."},
    {zr::Fault::MustNotEvaluated,     ZR_ERROR_TAG_OPERATION_FAILED,  nullptr,          "Failed to check must condition of %s."},
    {zr::Fault::WhenNotEvaluated,     ZR_ERROR_TAG_OPERATION_FAILED,  nullptr,          "Failed to check when condition of %s."},
    {zr::Fault::WhenFalse,            ZR_ERROR_TAG_UNKNOWN_ELEMENT,   nullptr,          "%s is not satisfied when condition."},
    {zr::Fault::General,              ZR_ERROR_TAG_OPERATION_FAILED,  nullptr,          nullptr},
};
// clang-format on
static_assert(std::size(kFaults) == static_cast<size_t>(zr::Fault::Count));
static_assert(zr::RowsInOrder(kFaults, &FaultRow::fault));

const FaultRow &RowOf(zr::Fault fault)
{
    return kFaults[static_cast<size_t>(fault)];
}

// The run's new record for a fault; null when an earlier fault stands there or memory ran out.
ZrdErrNode *NewRecord(ZrdCheckAux *check, zr::Fault fault, const xmlNode *dataNode)
{
    if (check->error != nullptr)
        return nullptr;
    check->error = ZRD_ERR_NewErrNode(check, ZR_ERROR_TYPE_APPLICATION, ZR_ERROR_SEVERITY_ERROR,
                                      RowOf(fault).tag, dataNode);
    return check->error;
}

void SetMessage(ZrdErrNode *record, zr::Fault fault, const char *first, const char *second)
{
    ZRD_ERR_SetErrorMsg(record, RowOf(fault).message, first, second);
}

void SetTexts(ZrdErrNode *record, zr::Fault fault, const char *badElement)
{
    ZRD_ERR_SetErrorAppTag(record, RowOf(fault).appTag);
    ZRD_ERR_SetBadElement(record, badElement);
}

} // namespace

namespace zr {

uint32_t RecordFault(ZrdCheckAux *check, Fault fault, const xmlNode *dataNode,
                     const char *badElement, const char *first, const char *second)
{
    ZrdErrNode *record = NewRecord(check, fault, dataNode);
    SetMessage(record, fault, first, second);
    SetTexts(record, fault, badElement);
    return ZR_ERR_INVALID;
}

uint32_t RecordFaultOf(ZrdCheckAux *check, Fault fault, const xmlNode *element, const char *second)
{
    return RecordFault(check, fault, element, NameOf(element), NameOf(element), second);
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

} // namespace zr

// The error path.

namespace {

constexpr uint32_t kPathBufferSize = 10240;

// Puts the pieces, in reading order, in front of the text in the buffer; all of them or none.
bool Prepend(char *buffer, uint32_t *space, std::initializer_list<std::string_view> pieces)
{
    size_t length = 0;
    for (std::string_view piece : pieces)
        length += piece.size();
    if (length > *space)
        return false;
    *space -= static_cast<uint32_t>(length);
    char *out = buffer + *space;
    for (std::string_view piece : pieces) {
        if (!piece.empty()) // memcpy takes no null, not even for no bytes
            std::memcpy(out, piece.data(), piece.size());
        out += piece.size();
    }
    return true;
}

uint32_t PrintPredicates(const xmlNode *element, char *buffer, uint32_t *space)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if (kind == ZR_NODE_LEAF_LIST)
        return ZRD_ERR_PrintElementNodeAsPredicate(element, buffer, space);
    if (kind != ZR_NODE_LIST)
        return ZR_OK;
    // Backwards, so that the keys end up in document order.
    for (const xmlNode *child = element->last; child != nullptr; child = child->prev) {
        if (!ZRD_NODE_IsKeyLeafNode(child))
            continue;
        uint32_t status = ZRD_ERR_PrintElementNodeAsPredicate(child, buffer, space);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

// The module name that a step shows: always on the top element, below it where the module changes.
const char *GetQualifier(const ZrdCheckAux *check, const xmlNode *element)
{
    const char *own = ZRD_NODE_GetModuleName(check->ctx, element);
    if (own == nullptr || element->parent == check->root)
        return own;
    const char *above = ZRD_NODE_GetModuleName(check->ctx, element->parent);
    return above != nullptr && std::strcmp(own, above) == 0 ? nullptr : own;
}

} // namespace

uint32_t ZRD_ERR_PrintXpathNode(const char *qualifier, const char *name, char *buffer,
                                uint32_t *space)
{
    bool fits = qualifier != nullptr ? Prepend(buffer, space, {"/", qualifier, ":", name})
                                     : Prepend(buffer, space, {"/", name});
    return fits ? ZR_OK : ZR_ERR_INVALID;
}

uint32_t ZRD_ERR_PrintElementNodeAsPredicate(const xmlNode *element, char *buffer, uint32_t *space)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    zr::Owned<char> content(ZRD_NODE_GetValueContent(element, schemaNode));
    std::string_view value = content ? content.get() : "";
    std::string_view quote = value.find('\'') == std::string_view::npos ? "'" : "\"";
    bool isEntry = ZR_NODE_GetNodeType(schemaNode) == ZR_NODE_LEAF_LIST;
    std::string_view name = isEntry ? "." : ZR_NODE_GetNodeName(schemaNode);
    return Prepend(buffer, space, {"[", name, "=", quote, value, quote, "]"}) ? ZR_OK
                                                                              : ZR_ERR_NO_MEMORY;
}

uint32_t ZRD_ERR_PrintElementNode(const ZrdCheckAux *check, const xmlNode *element, char *buffer,
                                  uint32_t *space)
{
    uint32_t status = PrintPredicates(element, buffer, space);
    if (status != ZR_OK)
        return status;
    const char *name = reinterpret_cast<const char *>(element->name);
    return ZRD_ERR_PrintXpathNode(GetQualifier(check, element), name, buffer, space);
}

uint32_t ZRD_ERR_PrintPath(const ZrdCheckAux *check, const xmlNode *dataNode, char *buffer,
                           uint32_t *space)
{
    uint32_t status = ZR_OK;
    for (const xmlNode *node = dataNode; node != nullptr && node != check->root;
         node = node->parent) {
        if (node->type != XML_ELEMENT_NODE) // the document, when the run has no root yet
            break;
        status = ZRD_ERR_PrintElementNode(check, node, buffer, space);
        if (status != ZR_OK)
            break;
    }
    return status;
}

char *ZRD_ERR_GeneralErrorPath(const ZrdCheckAux *check, const xmlNode *dataNode)
{
    zr::Owned<char> buffer(zr::New<char>(kPathBufferSize));
    if (!buffer)
        return nullptr;
    uint32_t space = kPathBufferSize - 1; // the last byte stays the terminating NUL
    if (ZRD_ERR_PrintPath(check, dataNode, buffer.get(), &space) != ZR_OK ||
        space == kPathBufferSize - 1)
        return nullptr;
    return ZR_UTL_StrDup(buffer.get() + space);
}
