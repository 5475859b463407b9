#include "data/namespaces.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>

#include "data/schema_query.h"
#include "foundation/text.h"
#include "schema/module.h"
#include "xpath/value_text.h"

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

} // namespace

namespace zr {

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

} // namespace zr
