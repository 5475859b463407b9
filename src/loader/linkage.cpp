// "import" and "include": which other modules a prefix denotes, and which submodules belong here.
#include <cstring>
#include <utility>

#include "foundation/load_errors.h"
#include "loader/arguments.h"
#include "loader/header.h"
#include "loader/parsers.h"
#include "platform/xml.h"
#include "schema/members.h"
#include "schema/module.h"

namespace {

// Moves the last import to `position`, so that the module's own imports stand before those that its
// submodules brought: the first import of a prefix is the one that counts.
void MoveLastImport(ZrMod *module, uint32_t position)
{
    for (uint32_t i = module->importCount - 1U; i > position; --i)
        std::swap(module->imports[i], module->imports[i - 1]);
}

// The include is noted before the submodule is read, so that includes in a circle end.
uint32_t Include(ZrMod *module, const xmlNode *element, uint32_t depth)
{
    const char *name = zr::RequireArgument(module, element, ZRS_STMT_INCLUDE);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    if (ZRS_MOD_FindIncludeBySubName(module->includes, module->includeCount, name) != nullptr)
        return ZR_OK;
    uint32_t status = ZRS_MOD_AppendOneInclude(module, name);
    if (status == ZR_OK)
        status = zr::LoadSubmodule(module, name, depth);
    if (status != ZR_OK)
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to load submodule \"%s\".", name);
    return status;
}

uint32_t ParseLinkageStatement(ZrMod *module, xmlNode *element, uint32_t statement, uint32_t depth)
{
    uint32_t status = statement == ZRS_STMT_IMPORT
                          ? ZRS_LOADER_ParseImport(module, element, ZRS_STMT_MODULE, module)
                          : Include(module, element, depth);
    if (status != ZR_OK)
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse statement \"%s\".",
                           ZRS_LOADER_GetKeywordByStmt(statement));
    return status;
}

} // namespace

const char *zr::RequirePrefixChild(ZrMod *module, const xmlNode *element, uint32_t statement,
                                   const char *value)
{
    for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE ||
            ZRS_LOADER_GetXmlNodeYangStmt(child) != ZRS_STMT_PREFIX)
            continue;
        if (const char *prefix = ZR_XML_GetFirstPropertyValue(child))
            return prefix;
        break;
    }
    zr::RecordMissingValue(module, ZRS_STMT_PREFIX);
    zr::RecordBadValue(module, value, statement);
    return nullptr;
}

uint32_t zr::ParseLinkage(ZrMod *module, xmlNode *root, uint32_t depth)
{
    uint32_t ownImports = module->importCount;
    for (xmlNode *child = root->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        uint32_t statement = ZRS_LOADER_GetXmlNodeYangStmt(child);
        if (statement != ZRS_STMT_IMPORT && statement != ZRS_STMT_INCLUDE)
            continue;
        uint32_t importsBefore = module->importCount;
        uint32_t status = ParseLinkageStatement(module, child, statement, depth);
        if (status != ZR_OK)
            return status;
        if (statement == ZRS_STMT_IMPORT && module->importCount > importsBefore)
            MoveLastImport(module, ownImports++);
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_ParseLinkageStmts(ZrMod *module, xmlNode *root)
{
    return zr::ParseLinkage(module, root, 0);
}

// The revision of an import is not read: the module that is loaded is the one that is meant.
uint32_t ZRS_LOADER_ParseImport(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                void * /*destination*/)
{
    const char *name = zr::RequireArgument(module, element, ZRS_STMT_IMPORT);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    const char *prefix = zr::RequirePrefixChild(module, element, ZRS_STMT_IMPORT, name);
    if (prefix == nullptr)
        return ZR_ERR_INVALID;
    const char *known = ZRS_MOD_GetModuleNameByPrefix(module, prefix);
    if (known != nullptr && std::strcmp(known, name) == 0)
        return ZR_OK;
    return ZRS_MOD_AppendOneImport(module, name, prefix);
}

uint32_t ZRS_LOADER_ParseInclude(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                 void * /*destination*/)
{
    return Include(module, element, 0);
}
