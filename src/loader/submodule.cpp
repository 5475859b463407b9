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

uint32_t CheckSubmoduleName(ZrMod *module, const xmlNode *root, const char *submoduleName)
{
    const char *name = ZR_XML_GetTargetPropertyValue(root, "name");
    if (name == nullptr) {
        zr::RecordMissingValue(module, ZRS_STMT_SUBMODULE);
        return ZR_ERR_INVALID;
    }
    if (std::strcmp(name, submoduleName) == 0)
        return zr::CheckName(module, name, ZRS_STMT_SUBMODULE);
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

uint32_t ParseContent(ZrMod *module, xmlNode *root, const char *submoduleName, zr::Linkage *linkage)
{
    uint32_t status = CheckSubmoduleName(module, root, submoduleName);
    if (status != ZR_OK)
        return status;
    const char *prefix = CheckBelongsTo(module, root);
    if (prefix == nullptr)
        return ZR_ERR_INVALID;
    zr::FileScope file(module);
    status = file.Enter(root, prefix);
    if (status == ZR_OK)
        status = linkage->ParseFile(root);
    return status == ZR_OK ? zr::ParseSubmoduleBody(module, root) : status;
}

uint32_t ParseDocument(ZrMod *module, xmlDoc *document, const char *submoduleName,
                       zr::Linkage *linkage)
{
    xmlNode *root = xmlDocGetRootElement(document);
    if (root == nullptr || std::strcmp(reinterpret_cast<const char *>(root->name),
                                       ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_SUBMODULE)) != 0)
        return ZR_ERR_INVALID;
    return ParseContent(module, root, submoduleName, linkage);
}

// Reads one file; errors name it, and then again the file that includes it.
uint32_t LoadFile(ZrMod *module, const char *path, const char *submoduleName, zr::Linkage *linkage)
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
        status = ParseDocument(module, document, submoduleName, linkage);
    xmlFreeDoc(document);
    ZR_CTX_SetCurYinFile(ctx, includingFile);
    return status;
}

// One file, or one for each suffix.
uint32_t LoadFiles(ZrMod *module, const char *submoduleName, ZrsPathCollection *collection,
                   ZrsLoadAssister *assister, zr::Linkage *linkage)
{
    uint32_t status = ZRS_LOADER_AddPathObjToLoadAssister(assister, collection);
    collection->limit = kMaxFilesOfOneSubmodule;
    while (status == ZR_OK) {
        const ZrsPathObj *object = ZRS_LOADER_GetNextPathObjToProc(collection, assister);
        if (object == nullptr)
            break;
        status = LoadFile(module, object->path, submoduleName, linkage);
        ZRS_LOADER_ResetCurrentLoadingSuffix(assister, 1);
    }
    return status;
}

} // namespace

uint32_t zr::LoadSubmodule(ZrMod *module, const char *submoduleName, Linkage *linkage)
{
    if (linkage->depth >= kMaxIncludeDepth)
        return ZR_ERR_INVALID;
    ZrsPathCollection *collection = nullptr;
    uint32_t status = zr::CollectPaths(module->ctx, submoduleName, &collection);
    if (status != ZR_OK)
        return status;
    ZrsLoadAssister assister = {};
    assister.moduleName = submoduleName;
    ++linkage->depth;
    status = LoadFiles(module, submoduleName, collection, &assister, linkage);
    --linkage->depth;
    ZRS_LOADER_ClearLoadAssister(&assister);
    zr::FreePathCollection(collection);
    return status;
}

uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root, const char *submoduleName)
{
    return zr::ParseAlone(module, [=](zr::Linkage *linkage) {
        linkage->depth = 1;
        return ParseContent(module, root, submoduleName, linkage);
    });
}

uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName)
{
    return zr::ParseAlone(module, [=](zr::Linkage *linkage) {
        return zr::LoadSubmodule(module, submoduleName, linkage);
    });
}
