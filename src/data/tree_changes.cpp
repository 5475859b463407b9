// SPDX-License-Identifier: Apache-2.0
#include "data/tree_changes.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>

#include "data/element.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "xpath/value_text.h"

// New elements, with their namespace declarations: what the tree says of them, its text says too.

namespace {

const xmlChar *AsXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

bool IsSame(const xmlChar *a, const char *b)
{
    return xmlStrEqual(a, AsXml(b)) != 0;
}

// A new declaration, the default one for a null prefix; null when memory runs out. libxml2 makes
// declarations also when it has no memory for their texts, and leaves those null.
xmlNs *Declare(xmlNode *element, const char *uri, const char *prefix)
{
    xmlNs *ns = xmlNewNs(element, AsXml(uri), AsXml(prefix));
    bool whole =
        ns != nullptr && ns->href != nullptr && (prefix == nullptr || ns->prefix != nullptr);
    return whole ? ns : nullptr;
}

// The search for the module that an identityref's default names. The loader keeps the default of
// an identityref in the form module:identity; under a typedef or in a union it stays as the module
// wrote it, with a prefix of that module's.
struct IdentitySearch {
    const ZrCtx *ctx;
    char qualifier[zr::kNameSize];
    char name[zr::kNameSize];
    const ZrMod *found;

    bool Take(const char *moduleName)
    {
        if (moduleName != nullptr &&
            ZR_CTX_FindIdentityByModNameAndIdentName(ctx, moduleName, name) != nullptr)
            found = ZR_CTX_GetModuleByModName(ctx, moduleName);
        return found != nullptr;
    }
    bool TakePrefixOf(const ZrMod *module)
    {
        return Take(ZRS_MOD_GetModuleNameByPrefix(module, qualifier));
    }
};

uint32_t TakePrefixOfTypedef(const char *moduleName, const char *, const ZrtRealType *,
                             void *userData)
{
    auto *search = static_cast<IdentitySearch *>(userData);
    bool found = moduleName != nullptr &&
                 search->TakePrefixOf(ZR_CTX_GetModuleByModName(search->ctx, moduleName));
    return found ? uint32_t{ZR_ERR_FAILED} : uint32_t{ZR_OK}; // to stop
}

bool TakesIdentities(const ZrNode *leaf)
{
    return ZRD_MDL_IsIdentityref(leaf) != 0 ||
           ZRD_MDL_IsIdentityref(ZR_NODE_GetLeafrefTargetNode(leaf, 1)) != 0;
}

const ZrMod *FindModule(IdentitySearch &search, const ZrNode *leaf)
{
    if (!search.Take(search.qualifier) && !search.TakePrefixOf(ZR_NODE_GetModule(leaf)))
        ZR_NODE_ScanDerivedType(leaf, TakePrefixOfTypedef, &search);
    return search.found;
}

// A prefix that the XML namespaces keep for themselves.
bool IsReserved(const char *prefix)
{
    return std::strcmp(prefix, "xml") == 0 || std::strcmp(prefix, "xmlns") == 0;
}

// Gives the element a declaration of its own when a new one of this prefix would change the meaning
// of its name.
bool KeepNamespace(xmlNode *element, const char *prefix)
{
    if (element->ns == nullptr || !IsSame(element->ns->prefix, prefix))
        return true;
    xmlNs *own = Declare(element, reinterpret_cast<const char *>(element->ns->href), nullptr);
    if (own != nullptr)
        element->ns = own;
    return own != nullptr;
}

// Puts an element whose parent belongs to another module into its own module's namespace, which it
// declares as the default one. False when memory runs out.
bool EnterModuleNamespace(xmlNode *element, const ZrNode *parentSchema, const ZrNode *schemaNode)
{
    const ZrMod *module = ZR_NODE_GetModule(schemaNode);
    if (ZR_NODE_GetModule(parentSchema) == module)
        return true;
    xmlNs *ns = Declare(element, ZR_MOD_GetModuleNs(module), nullptr);
    if (ns != nullptr)
        element->ns = ns;
    return ns != nullptr;
}

// Declares what the qualifier of an identityref's default stands for, so that the value means the
// identity in XML too (RFC 7950, section 9.10.3), unless the prefix is bound to that namespace
// there already. Any other value needs no declaration. False when memory runs out.
bool DeclareIdentityPrefix(xmlNode *leaf, const ZrNode *schemaNode, const char *value)
{
    IdentitySearch search = {};
    const ZrMod *own = ZR_NODE_GetModule(schemaNode);
    if (own == nullptr || std::strchr(value, ':') == nullptr ||
        ZR_UTL_GetXPathNextPrefixAndNode(value, search.qualifier, sizeof(search.qualifier),
                                         search.name, sizeof(search.name)) != ZR_OK ||
        search.qualifier[0] == '\0' || IsReserved(search.qualifier) || !TakesIdentities(schemaNode))
        return true;
    search.ctx = own->ctx;
    const ZrMod *module = FindModule(search, schemaNode);
    if (module == nullptr)
        return true;
    const char *uri = ZR_MOD_GetModuleNs(module);
    const xmlNs *bound = xmlSearchNs(leaf->doc, leaf, AsXml(search.qualifier));
    if (bound != nullptr && IsSame(bound->href, uri))
        return true;
    return KeepNamespace(leaf, search.qualifier) && Declare(leaf, uri, search.qualifier) != nullptr;
}

// libxml2 makes nodes also when it has no memory for their names or texts, and leaves those null.
bool HasText(const xmlNode *text)
{
    return text != nullptr && text->content != nullptr;
}

} // namespace

xmlNode *ZRD_NODE_CreateNewChildNode(xmlNode *element, ZrNode *schemaNode)
{
    zr::OwnedElement child(
        xmlNewChild(element, nullptr, AsXml(ZR_NODE_GetNodeName(schemaNode)), nullptr));
    if (!child)
        return nullptr;
    child->_private = schemaNode;
    bool whole = child->name != nullptr &&
                 EnterModuleNamespace(child.get(), zr::SchemaOf(element), schemaNode);
    return whole ? child.release() : nullptr;
}

xmlNode *ZRD_PAS_AddNewChildNodeWithValue(xmlNode *element, ZrNode *schemaNode, const char *value)
{
    zr::OwnedElement child(ZRD_NODE_CreateNewChildNode(element, schemaNode));
    if (!child || value == nullptr || value[0] == '\0')
        return child.release();
    // Not xmlNodeSetContent, which reads "&" and "<" of a default as markup.
    xmlNodeAddContent(child.get(), AsXml(value));
    bool whole = HasText(child->children) && DeclareIdentityPrefix(child.get(), schemaNode, value);
    return whole ? child.release() : nullptr;
}

// The mark and the list of what was added. A marked element points back at its entry through
// `psvi`, a field that libxml2 uses in text nodes and in schema validation alone: taking one of
// 100,000 out of the list needs no search.

namespace {

ZrdDefaultNodeEntry *EntryOf(const xmlNode *element)
{
    return static_cast<ZrdDefaultNodeEntry *>(element->psvi);
}

void FreeEntry(ZrdDefaultNodeEntry *entry)
{
    zr::Unlink(&entry->link);
    entry->node->psvi = nullptr;
    zr::Free(entry);
}

// The first sibling that an element added behind it should stand before, or the element itself.
xmlNode *PlaceOf(xmlNode *element)
{
    xmlNode *sibling = zr::ElementFrom(element->parent->children);
    while (sibling != element) {
        const ZrNode *schemaNode = zr::SchemaOf(sibling); // null below a mount point
        if (schemaNode != nullptr && zr::ComesBefore(zr::SchemaOf(element), schemaNode))
            break;
        sibling = zr::ElementFrom(sibling->next);
    }
    return sibling;
}

} // namespace

uint32_t ZRD_PAS_IsDefaultAddNode(const xmlNode *node)
{
    return node != nullptr && node->type == XML_ELEMENT_NODE && node->line == ZRD_DEFAULT_MARK;
}

void ZRD_PAS_ClearDefaultNodeTreeFlag(xmlNode *node)
{
    for (xmlNode *each = node; each != nullptr; each = zr::NextElement(node, each)) {
        each->line = 0;
        for (xmlNode *child = each->children; child != nullptr; child = child->next)
            child->line = 0;
    }
}

uint32_t ZRD_PAS_AddDefaultNodeToList(ZrListLink *list, xmlNode *element)
{
    if (!ZRD_PAS_IsDefaultAddNode(element) || ZRD_PAS_IsDefaultAddNode(element->parent))
        return ZR_OK;
    auto *entry = zr::New<ZrdDefaultNodeEntry>();
    if (entry == nullptr)
        return ZR_ERR_NO_MEMORY;
    entry->node = element;
    zr::PushFront(list, &entry->link);
    element->psvi = entry;
    return ZR_OK;
}

void ZRD_PAS_RemoveDefaultNodeFromList(ZrListLink *, xmlNode *element)
{
    if (ZRD_PAS_IsDefaultAddNode(element) && EntryOf(element) != nullptr)
        FreeEntry(EntryOf(element));
}

void ZRD_PAS_DeleteDefaultAddNode(ZrdCheckAux *check, xmlNode *element)
{
    if (!ZRD_PAS_IsDefaultAddNode(element->parent))
        ZRD_PAS_RemoveDefaultNodeFromList(&check->defaults, element);
    zr::RemoveNode(element);
}

void ZRD_PAS_ClearDefaultNodeList(ZrdCheckAux *check, uint32_t keep)
{
    while (!zr::IsEmpty(&check->defaults)) {
        ZrdDefaultNodeEntry &newest = *zr::ItemsOf<ZrdDefaultNodeEntry>(&check->defaults).begin();
        xmlNode *element = newest.node;
        FreeEntry(&newest);
        if (keep != ZRD_DEFAULTS_KEEP) {
            zr::RemoveNode(element);
            continue;
        }
        ZRD_PAS_ClearDefaultNodeTreeFlag(element);
        if (check->callback != nullptr)
            check->callback(element, check->userData);
    }
}

void ZRD_PAS_ClearXmlTreePrivate(xmlNode *element)
{
    if (element == nullptr || element->type != XML_ELEMENT_NODE)
        return;
    for (xmlNode *node = element; node != nullptr; node = zr::NextElement(element, node))
        node->_private = nullptr;
}

namespace zr {

void PlaceDefaults(const ZrdCheckAux *check)
{
    for (const auto &entry : ItemsOf<ZrdDefaultNodeEntry>(&check->defaults)) {
        xmlNode *place = PlaceOf(entry.node);
        if (place != entry.node)
            xmlAddPrevSibling(place, entry.node);
    }
}

void RemoveNode(xmlNode *node)
{
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

} // namespace zr
