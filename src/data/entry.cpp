// SPDX-License-Identifier: Apache-2.0
// The entry points for applications: what comes in, what is kept and what is taken back.
#include <zrschema/validation.h>

#include <libxml/parser.h>

#include <cstring>

#include "data/element_conditions.h"
#include "data/error_record.h"
#include "data/phases.h"
#include "data/tree_changes.h"
#include "data/tree_guard.h"
#include "platform/xml.h"

namespace {

enum InputKind : uint32_t { kInputTree = 2 }; // any other kind is a text

using OwnedDocument = zr::Owned<xmlDoc, xmlFreeDoc>;

void FreeXmlText(xmlChar *text)
{
    xmlFree(text);
}
using OwnedXmlText = zr::Owned<xmlChar, FreeXmlText>;

// Settles the defaults of a run by its status, and gives its record: null when the data is valid.
ZrdErrNode *FinishRun(ZrdCheckAux *check, uint32_t status)
{
    if (status != ZR_OK) {
        ZRD_PAS_ClearDefaultNodeList(check, ZRD_DEFAULTS_REMOVE);
        return zr::TakeFailure(check);
    }
    ZR_FreeErrNode(check->error);
    ZRD_PAS_ClearDefaultNodeList(check, ZRD_DEFAULTS_KEEP);
    return nullptr;
}

// One run, in which libxml2 prints nothing about nodes that it has no memory for.
uint32_t Run(ZrdCheckAux *check, xmlNode *top)
{
    zr::XmlErrors errors;
    return ZRD_PAS_ValidateDataTree(check, top);
}

// Where the defaults of a valid request stay.
enum class Additions { Last, InOrder };

uint32_t RunOnTree(ZrdCheckAux *check, xmlNode *top, Additions additions)
{
    zr::TreeGuard guard(top);
    uint32_t status = guard.failed() ? uint32_t{ZR_ERR_NO_MEMORY} : Run(check, top);
    if (status == ZR_OK && additions == Additions::InOrder)
        zr::PlaceDefaults(check);
    return status;
}

// The callback sees the tree as the caller will have it: no private pointers, no marks.
ZrdErrNode *ValidateTree(ZrdCheckAux *check, xmlNode *top)
{
    bool isElement = top != nullptr && top->type == XML_ELEMENT_NODE;
    return FinishRun(check,
                     isElement ? RunOnTree(check, top, Additions::Last) : uint32_t{ZR_ERR_INVALID});
}

// The document as formatted UTF-8; null when it cannot be written.
OwnedXmlText Dump(xmlDoc *document)
{
    zr::XmlErrors errors;
    OwnedXmlText text;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document, zr::Out(text), &size, "UTF-8", 1);
    if (size <= 0)
        text.reset();
    return text;
}

uint32_t RunOnDocument(ZrdCheckAux *check, xmlDoc *document)
{
    xmlNode *top = xmlDocGetRootElement(document);
    // A notification is given no defaults, and its elements may go while it is checked.
    if ((check->mode & ZRD_MODE_NOTIF) != 0)
        return Run(check, top);
    uint32_t status = RunOnTree(check, top, Additions::InOrder);
    ZRD_PAS_ClearDefaultNodeList(check, status == ZR_OK ? ZRD_DEFAULTS_KEEP : ZRD_DEFAULTS_REMOVE);
    return status;
}

// A run on a text, whose document goes to the callback as the run left it. `errorOut`, which may be
// null, receives the record of a failed run.
uint32_t RunAndHandOut(ZrCtx *ctx, uint32_t mode, const char *xmlText, ZrDocumentFunc callback,
                       void *userData, ZrdErrNode **errorOut)
{
    zr::ValidationRun check;
    ZRD_PAS_InitCheckAux(&check, ctx, mode | ZRD_MODE_REMEMBERS, nullptr, nullptr);
    OwnedDocument document;
    if (ctx != nullptr && xmlText != nullptr)
        document.reset(zr::ParseXmlText(xmlText, std::strlen(xmlText)));
    uint32_t status = document ? RunOnDocument(&check, document.get()) : uint32_t{ZR_ERR_INVALID};
    OwnedXmlText text;
    if (status == ZR_OK)
        text = Dump(document.get());
    if (errorOut != nullptr)
        *errorOut = text ? nullptr : zr::TakeFailure(&check);
    ZR_FreeErrNode(check.error);
    if (!text)
        return ZR_ERR_INVALID;
    return callback != nullptr ? callback(reinterpret_cast<const char *>(text.get()), userData)
                               : uint32_t{ZR_OK};
}

} // namespace

ZrdErrNode *ZR_CTX_ValidateRpcDataTree(ZrCtx *ctx, uint32_t inputKind, void *data,
                                       ZrDefaultNodeFunc callback, void *userData)
{
    zr::ValidationRun check;
    ZRD_PAS_InitCheckAux(&check, ctx, ZRD_MODE_RPC | ZRD_MODE_REMEMBERS, callback, userData);
    if (ctx == nullptr || data == nullptr)
        return FinishRun(&check, ZR_ERR_INVALID);
    if (inputKind == kInputTree)
        return ValidateTree(&check, static_cast<xmlNode *>(data));
    const char *text = static_cast<const char *>(data);
    OwnedDocument document(zr::ParseXmlText(text, std::strlen(text)));
    if (!document)
        return FinishRun(&check, ZR_ERR_INVALID);
    // The callback is given its elements while the document is there.
    return ValidateTree(&check, xmlDocGetRootElement(document.get()));
}

uint32_t ZR_CTX_CompleteRpcDataTree(ZrCtx *ctx, const char *xmlText, ZrDocumentFunc callback,
                                    void *userData, ZrdErrNode **errorOut)
{
    return RunAndHandOut(ctx, ZRD_MODE_RPC, xmlText, callback, userData, errorOut);
}

uint32_t ZR_CTX_ValidateNotifDataTree(ZrCtx *ctx, const char *xmlText, ZrDocumentFunc callback,
                                      void *userData)
{
    return RunAndHandOut(ctx, ZRD_MODE_NOTIF, xmlText, callback, userData, nullptr);
}

uint32_t ZR_CTX_ValidateNotifDataTreeWithError(ZrCtx *ctx, const char *xmlText,
                                               ZrDocumentFunc callback, void *userData,
                                               ZrdErrNode **errorOut)
{
    return RunAndHandOut(ctx, ZRD_MODE_NOTIF, xmlText, callback, userData, errorOut);
}
