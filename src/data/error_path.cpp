#include "data/error_path.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>
#include <initializer_list>
#include <string_view>

#include "data/data_tree.h"
#include "foundation/text.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "xpath/value_text.h"

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

const char *ZRD_NODE_GetModuleName(const ZrCtx *ctx, const xmlNode *element)
{
    if (element == nullptr || element->type != XML_ELEMENT_NODE)
        return nullptr;
    if (const ZrNode *schemaNode = zr::SchemaOf(element))
        return ZR_MOD_GetModuleName(ZR_NODE_GetModule(schemaNode));
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(element);
    return ns != nullptr ? ZR_MOD_GetModuleName(ZR_CTX_GetModuleByModNs(ctx, ns)) : nullptr;
}

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
    zr::ScopedBlock<char> content(ZRD_NODE_GetValueContent(element, schemaNode));
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
    zr::ScopedBlock<char> buffer(static_cast<char *>(zr::AllocZeroed(kPathBufferSize)));
    if (!buffer)
        return nullptr;
    uint32_t space = kPathBufferSize - 1; // the last byte stays the terminating NUL
    if (ZRD_ERR_PrintPath(check, dataNode, buffer.get(), &space) != ZR_OK ||
        space == kPathBufferSize - 1)
        return nullptr;
    return ZR_UTL_StrDup(buffer.get() + space);
}
