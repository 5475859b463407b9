// Submodules (RFC 7950, section 7.2): their statements become statements of the including module.
#include <cstring>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/search_dirs.h"
#include "loader/arguments.h"
#include "loader/assister.h"
#include "loader/discovery.h"
#include "loader/header.h"
#include "loader/parsers.h"
#include "platform/secure.h"
#include "platform/xml.h"
#include "schema/members.h"

namespace {

constexpr uint16_t kMaxFilesOfOneSubmodule = 10;

// Each file is open while those that it includes are read: the depth is bounded like that of other
// chains, so that no set of files can use up the stack.
constexpr uint32_t kMaxIncludeDepth = 128;

// Prefixes are local to a file: while a submodule is read, its own prefix (that of "belongs-to")
// and its own imports stand in the module record.
struct PrefixScope {
    const char *prefix;
    ZrsImport *imports;
    uint16_t importCount;
};

uint32_t EnterPrefixScope(ZrMod *module, const char *prefix, PrefixScope *outer)
{
    const char *kept = ZR_DICT_Insert(&module->ctx->dict, prefix);
    if (kept == nullptr)
        return ZR_ERR_NO_MEMORY;
    *outer = {module->prefix, module->imports, module->importCount};
    module->prefix = kept;
    module->imports = nullptr;
    module->importCount = 0;
    return ZR_OK;
}

bool HasImport(const ZrMod *module, const ZrsImport &import)
{
    for (uint32_t i = 0; i < module->importCount; ++i)
        if (std::strcmp(module->imports[i].moduleName, import.moduleName) == 0 &&
            std::strcmp(module->imports[i].prefix, import.prefix) == 0)
            return true;
    return false;
}

// The submodule's imports become the module's, behind its own: they are loaded with it, and a
// prefix that the module uses itself keeps its meaning there.
uint32_t LeavePrefixScope(ZrMod *module, const PrefixScope &outer)
{
    ZrDict *dict = &module->ctx->dict;
    PrefixScope inner = {module->prefix, module->imports, module->importCount};
    module->prefix = outer.prefix;
    module->imports = outer.imports;
    module->importCount = outer.importCount;
    ZR_DICT_Remove(dict, inner.prefix);
    uint32_t status = ZR_OK;
    for (uint32_t i = 0; i < inner.importCount && status == ZR_OK; ++i)
        if (!HasImport(module, inner.imports[i]))
            status = ZRS_MOD_AppendOneImport(module, inner.imports[i].moduleName,
                                             inner.imports[i].prefix);
    ZRS_MOD_FreeImports(dict, inner.imports, inner.importCount);
    return status;
}

uint32_t CheckName(ZrMod *module, const xmlNode *root, const char *submoduleName)
{
    const char *name = ZR_XML_GetTargetPropertyValue(root, "name");
    if (name == nullptr) {
        zr::RecordMissingValue(module, ZRS_STMT_SUBMODULE);
        return ZR_ERR_INVALID;
    }
    if (std::strcmp(name, submoduleName) == 0)
        return ZR_OK;
    zr::RecordBadValue(module, name, ZRS_STMT_SUBMODULE);
    return ZR_ERR_INVALID;
}

const xmlNode *FindChild(const xmlNode *element, uint32_t statement)
{
    for (const xmlNode *child = element->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE && ZRS_LOADER_GetXmlNodeYangStmt(child) == statement)
            return child;
    return nullptr;
}

// The prefix that the submodule gives the module that it belongs to; null when it belongs to none
// or to another one, which is recorded.
const char *CheckBelongsTo(ZrMod *module, const xmlNode *root)
{
    const xmlNode *belongsTo = FindChild(root, ZRS_STMT_BELONGS_TO);
    const char *owner = belongsTo != nullptr ? ZR_XML_GetFirstPropertyValue(belongsTo) : nullptr;
    if (owner == nullptr) {
        zr::RecordMissingValue(module, ZRS_STMT_BELONGS_TO);
        return nullptr;
    }
    if (std::strcmp(owner, module->name) != 0) {
        zr::RecordBadValue(module, owner, ZRS_STMT_BELONGS_TO);
        return nullptr;
    }
    return zr::RequirePrefixChild(module, belongsTo, ZRS_STMT_BELONGS_TO, owner);
}

uint32_t ParseContent(ZrMod *module, xmlNode *root, const char *submoduleName, uint32_t depth)
{
    uint32_t status = CheckName(module, root, submoduleName);
    if (status != ZR_OK)
        return status;
    const char *prefix = CheckBelongsTo(module, root);
    if (prefix == nullptr)
        return ZR_ERR_INVALID;
    PrefixScope outer;
    status = EnterPrefixScope(module, prefix, &outer);
    if (status != ZR_OK)
        return status;
    status = zr::ParseLinkage(module, root, depth);
    if (status == ZR_OK)
        status = zr::ParseSubmoduleBody(module, root);
    uint32_t leaveStatus = LeavePrefixScope(module, outer);
    return status != ZR_OK ? status : leaveStatus;
}

uint32_t ParseDocument(ZrMod *module, xmlDoc *document, const char *submoduleName, uint32_t depth)
{
    xmlNode *root = xmlDocGetRootElement(document);
    if (root == nullptr || std::strcmp(reinterpret_cast<const char *>(root->name),
                                       ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_SUBMODULE)) != 0)
        return ZR_ERR_INVALID;
    return ParseContent(module, root, submoduleName, depth);
}

// Reads one file; errors name it, and then again the file that includes it.
uint32_t LoadFile(ZrMod *module, const char *path, const char *submoduleName, uint32_t depth)
{
    ZrCtx *ctx = module->ctx;
    char includingFile[sizeof(ctx->curYinFile)];
    std::memcpy(includingFile, ctx->curYinFile, sizeof(includingFile));
    ZR_CTX_SetCurYinFile(ctx, path);
    uint32_t status = ZR_ERR_INVALID;
    xmlDoc *document = ZRS_LOADER_ReadYinFileToXmlDoc(path);
    if (document == nullptr)
        ZR_CTX_AddModError(ctx, module->name, "Failed to read content from the yin file.");
    else
        status = ParseDocument(module, document, submoduleName, depth);
    xmlFreeDoc(document);
    ZR_CTX_SetCurYinFile(ctx, includingFile);
    return status;
}

// One file, or one for each suffix.
uint32_t LoadFiles(ZrMod *module, const char *submoduleName, ZrsPathCollection *collection,
                   ZrsLoadAssister *assister, uint32_t depth)
{
    uint32_t status = ZRS_LOADER_AddPathObjToLoadAssister(assister, collection);
    collection->limit = kMaxFilesOfOneSubmodule;
    while (status == ZR_OK) {
        const ZrsPathObj *object = ZRS_LOADER_GetNextPathObjToProc(collection, assister);
        if (object == nullptr)
            break;
        status = LoadFile(module, object->path, submoduleName, depth);
        ZRS_LOADER_ResetCurrentLoadingSuffix(assister, 1);
    }
    return status;
}

} // namespace

uint32_t zr::LoadSubmodule(ZrMod *module, const char *submoduleName, uint32_t depth)
{
    if (depth >= kMaxIncludeDepth)
        return ZR_ERR_INVALID;
    ZrsPathCollection *collection = nullptr;
    uint32_t status = zr::CollectPaths(module->ctx, submoduleName, &collection);
    if (status != ZR_OK)
        return status;
    ZrsLoadAssister assister = {};
    assister.moduleName = submoduleName;
    status = LoadFiles(module, submoduleName, collection, &assister, depth + 1);
    ZRS_LOADER_ClearLoadAssister(&assister);
    zr::FreePathCollection(collection);
    return status;
}

uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root, const char *submoduleName)
{
    return ParseContent(module, root, submoduleName, 1);
}

uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName)
{
    return zr::LoadSubmodule(module, submoduleName, 0);
}
