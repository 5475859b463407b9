// SPDX-License-Identifier: Apache-2.0
#include "requests.h"

#include "support.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>

#include "platform/xml.h"

namespace zrfuzz {

namespace {

constexpr uint32_t kAllocations = 40; // about as many as a small request takes
constexpr uint32_t kTaken = 5;        // what the callback of notifications gives back

std::string Dump(xmlDoc *doc)
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpMemory(doc, &text, &size);
    std::string result(reinterpret_cast<const char *>(text), static_cast<size_t>(size));
    xmlFree(text);
    return result;
}

void CheckRecord(const ZrdErrNode *error)
{
    uint32_t tag = ZR_GetErrorTag(error);
    Check(tag >= ZR_ERROR_TAG_IN_USE && tag <= ZR_ERROR_TAG_MALFORMED_MESSAGE,
          "a record has a tag");
    Check(ZR_GetErrorType(error) == ZR_ERROR_TYPE_APPLICATION, "a record has a type");
    Check(ZR_GetErrorSeverity(error) == ZR_ERROR_SEVERITY_ERROR, "a record has a severity");
    for (const char *text :
         {ZR_GetErrorPath(error), ZR_GetErrorMessage(error), ZR_GetErrorAppTag(error),
          ZR_GetBadElement(error), ZR_GetBadAttribute(error)})
        Check(text == nullptr || std::strlen(text) < 10240, "a record's texts are bounded");
}

std::string Summary(const ZrdErrNode *error)
{
    if (error == nullptr)
        return "valid";
    std::string text = std::to_string(ZR_GetErrorTag(error));
    for (const char *part : {ZR_GetErrorPath(error), ZR_GetErrorMessage(error),
                             ZR_GetErrorAppTag(error), ZR_GetBadElement(error)})
        text += std::string("\n") + (part != nullptr ? part : "-");
    return text;
}

void CheckDefault(void *element, void *userData)
{
    auto *node = static_cast<xmlNode *>(element);
    Check(node->type == XML_ELEMENT_NODE && node->parent != nullptr, "a default is an element");
    Check(node->_private == nullptr, "a default carries no private pointer");
    ++*static_cast<uint32_t *>(userData);
}

std::string RunText(ZrCtx *ctx, std::string text, uint32_t &defaults)
{
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, 1, text.data(), CheckDefault, &defaults);
    if (error != nullptr)
        CheckRecord(error);
    Check(error == nullptr || defaults == 0, "a failed run adds no default");
    std::string summary = Summary(error);
    ZR_FreeErrNode(error);
    return summary;
}

void CheckClean(const xmlNode *element)
{
    for (const xmlNode *node = element; node != nullptr; node = node->next) {
        Check(node->_private == nullptr, "a run leaves no private pointer");
        if (node->type == XML_ELEMENT_NODE)
            CheckClean(node->children);
    }
}

void RunTree(ZrCtx *ctx, xmlDoc *doc, const std::string &asText)
{
    std::string before = Dump(doc);
    uint32_t defaults = 0;
    ZrdErrNode *error =
        ZR_CTX_ValidateRpcDataTree(ctx, 2, xmlDocGetRootElement(doc), CheckDefault, &defaults);
    Check(Summary(error) == asText, "text and tree give the same record");
    Check(error == nullptr || Dump(doc) == before, "a failed run leaves the tree as it was");
    CheckClean(doc->children);
    bool valid = error == nullptr;
    ZR_FreeErrNode(error);
    if (!valid)
        return;
    // The elements that were added are valid themselves, except for their order.
    ZR_FreeErrNode(ZR_CTX_ValidateRpcDataTree(ctx, 2, xmlDocGetRootElement(doc), nullptr, nullptr));
    CheckClean(doc->children);
}

uint32_t TakeDocument(const char *text, void *)
{
    return std::strlen(text) != 0 ? kTaken : 0;
}

uint32_t KeepDocument(const char *text, void *userData)
{
    *static_cast<std::string *>(userData) = text;
    return 0;
}

// Checking and completing agree. The completed text is judged again, and where the schema's
// defaults are values of their types, nothing is left to add.
void Complete(ZrCtx *ctx, const std::string &text, const std::string &verdict)
{
    std::string completed;
    ZrdErrNode *error = nullptr;
    uint32_t status =
        ZR_CTX_CompleteRpcDataTree(ctx, text.c_str(), KeepDocument, &completed, &error);
    Check((status == ZR_OK) == (error == nullptr), "a record comes with a failure, and only then");
    Check(Summary(error) == verdict, "checking and completing give the same record");
    ZR_FreeErrNode(error);
    if (status != ZR_OK)
        return;
    uint32_t defaults = 0;
    bool isValid = RunText(ctx, completed, defaults) == "valid";
    Check(!isValid || defaults == 0, "a completed request has its defaults");
}

// The two ways to check a notification agree; only one tells why.
bool IsNotification(ZrCtx *ctx, const std::string &text)
{
    uint32_t status = ZR_CTX_ValidateNotifDataTree(ctx, text.c_str(), TakeDocument, nullptr);
    Check(status == kTaken || status == ZR_ERR_INVALID,
          "a notification passes or fails with the status of invalid data");
    ZrdErrNode *error = nullptr;
    uint32_t again =
        ZR_CTX_ValidateNotifDataTreeWithError(ctx, text.c_str(), TakeDocument, nullptr, &error);
    Check(again == status, "a notification is judged alike with and without a record");
    Check((error != nullptr) == (status != kTaken), "a refused notification has a record");
    if (error != nullptr)
        CheckRecord(error);
    ZR_FreeErrNode(error);
    return status == kTaken;
}

} // namespace

Verdicts ValidateInEveryWay(ZrCtx *ctx, const std::string &text)
{
    Verdicts verdicts;
    verdicts.request = RunText(ctx, text, verdicts.defaults);
    uint32_t ignored = 0;
    FailAllocation(PickBy(text, kAllocations));
    std::string shortOfMemory = RunText(ctx, text, ignored);
    FailAllocation(-1);
    Check(verdicts.request == "valid" || shortOfMemory != "valid",
          "a failure never makes a request valid");
    if (xmlDoc *doc = zr::ParseXmlText(text.c_str(), text.size())) {
        RunTree(ctx, doc, verdicts.request);
        xmlFreeDoc(doc);
    }
    Complete(ctx, text, verdicts.request);
    verdicts.notification = IsNotification(ctx, text);
    return verdicts;
}

} // namespace zrfuzz
