#include <zrschema/validation.h>

#include <libxml/parser.h>

#include <cstring>

#include "data/check_run.h"
#include "data/default_list.h"
#include "data/error_record.h"
#include "data/tree_guard.h"
#include "platform/xml_errors.h"
#include "platform/xml_parse.h"

namespace {

enum InputKind : uint32_t { kInputTree = 2 };
enum Defaults : uint32_t { kDiscard = 0, kKeep = 1 };

// Settles the defaults of a run by its status, and gives its record: null when the data is valid.
ZrdErrNode *FinishRun(ZrdCheckAux *check, uint32_t status)
{
    if (status != ZR_OK) {
        ZRD_PAS_ClearDefaultNodeList(check, kDiscard);
        return zr::TakeFailure(check);
    }
    ZR_FreeErrNode(check->error);
    ZRD_PAS_ClearDefaultNodeList(check, kKeep);
    return nullptr;
}

// One run, in which libxml2 prints nothing about nodes that it has no memory for.
uint32_t Run(ZrdCheckAux *check, xmlNode *top)
{
    zr::XmlErrors errors;
    return ZRD_PAS_ValidateDataTree(check, top);
}

uint32_t RunOnTree(ZrdCheckAux *check, xmlNode *top)
{
    zr::TreeGuard guard(top);
    return guard.failed() ? uint32_t{ZR_ERR_NO_MEMORY} : Run(check, top);
}

// The callback sees the tree as the caller will have it: no private pointers, no marks.
ZrdErrNode *ValidateTree(ZrdCheckAux *check, xmlNode *top)
{
    bool isElement = top != nullptr && top->type == XML_ELEMENT_NODE;
    return FinishRun(check, isElement ? RunOnTree(check, top) : uint32_t{ZR_ERR_INVALID});
}

void Dump(xmlDoc *document, xmlChar **text, int *size)
{
    zr::XmlErrors errors;
    xmlDocDumpFormatMemoryEnc(document, text, size, "UTF-8", 1);
}

// The document as the run left it, to the callback.
uint32_t HandOut(xmlDoc *document, ZrDocumentFunc callback, void *userData)
{
    xmlChar *text = nullptr;
    int size = 0;
    Dump(document, &text, &size);
    if (text == nullptr || size <= 0) {
        xmlFree(text);
        return ZR_ERR_INVALID;
    }
    uint32_t status = ZR_OK;
    if (callback != nullptr)
        status = callback(reinterpret_cast<const char *>(text), userData);
    xmlFree(text);
    return status;
}

} // namespace

ZrdErrNode *ZR_CTX_ValidateRpcDataTree(ZrCtx *ctx, uint32_t inputKind, void *data,
                                       ZrDefaultNodeFunc callback, void *userData)
{
    ZrdCheckAux check;
    ZRD_PAS_InitCheckAux(&check, ctx, ZRD_MODE_RPC, callback, userData);
    if (ctx == nullptr || data == nullptr)
        return FinishRun(&check, ZR_ERR_INVALID);
    if (inputKind == kInputTree)
        return ValidateTree(&check, static_cast<xmlNode *>(data));
    const char *text = static_cast<const char *>(data);
    xmlDoc *document = zr::ParseXmlText(text, std::strlen(text));
    if (document == nullptr)
        return FinishRun(&check, ZR_ERR_INVALID);
    // The callback is given its elements while the document is there.
    ZrdErrNode *error = ValidateTree(&check, xmlDocGetRootElement(document));
    xmlFreeDoc(document);
    return error;
}

uint32_t ZR_CTX_ValidateNotifDataTree(ZrCtx *ctx, const char *xmlText, ZrDocumentFunc callback,
                                      void *userData)
{
    if (ctx == nullptr || xmlText == nullptr)
        return ZR_ERR_INVALID;
    ZrdCheckAux check;
    ZRD_PAS_InitCheckAux(&check, ctx, ZRD_MODE_NOTIF, nullptr, nullptr);
    xmlDoc *document = zr::ParseXmlText(xmlText, std::strlen(xmlText));
    if (document == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = Run(&check, xmlDocGetRootElement(document));
    ZR_FreeErrNode(check.error);
    status = status == ZR_OK ? HandOut(document, callback, userData) : uint32_t{ZR_ERR_INVALID};
    xmlFreeDoc(document);
    return status;
}
