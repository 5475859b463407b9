// SPDX-License-Identifier: Apache-2.0
// A module is read in three steps, and so is each submodule, but that it has no header of its own:
// the header statements, the linkage, with the included files in their places, and the body.
#include "loader/files/module_content.h"

#include <cstring>
#include <iterator>
#include <span>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/search_dirs.h"
#include "loader/files/linkage.h"
#include "loader/files/module_files.h"
#include "loader/statements/arguments.h"
#include "loader/statements/statements.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/module/module.h"

namespace {

// The root of a document when it is that statement, else null.
xmlNode *RootOf(xmlDoc *document, uint32_t statement)
{
    xmlNode *root = xmlDocGetRootElement(document);
    bool isThere = root != nullptr &&
                   std::strcmp(zr::LocalName(root), ZRS_LOADER_GetKeywordByStmt(statement)) == 0;
    return isThere ? root : nullptr;
}

} // namespace

// The header.

namespace {

enum HeadBit : uint32_t {
    HEAD_YANG_VERSION = 1,
    HEAD_NAMESPACE = 2,
    HEAD_PREFIX = 4,
    HEAD_ALL = HEAD_YANG_VERSION | HEAD_NAMESPACE | HEAD_PREFIX
};

struct HeadStatement {
    uint32_t statement;
    uint32_t bit;
    ZrsParseFunc parse;
    void *(*destination)(ZrMod *module);
};

// clang-format off
constexpr HeadStatement kHeadStatements[] = {
    // statement             bit                parser                       goes to
    {ZRS_STMT_YANG_VERSION, HEAD_YANG_VERSION, ZRS_LOADER_ParseYangVersion, [](ZrMod *module) -> void * { return &module->yangVersion; }},
    {ZRS_STMT_NAMESPACE,    HEAD_NAMESPACE,    ZRS_LOADER_ParseNamespace,   [](ZrMod *module) -> void * { return &module->ns; }},
    {ZRS_STMT_PREFIX,       HEAD_PREFIX,       ZRS_LOADER_ParsePrefix,      [](ZrMod *module) -> void * { return &module->prefix; }},
};
// clang-format on

const HeadStatement *FindHeadStatement(uint32_t statement)
{
    for (const HeadStatement &row : kHeadStatements)
        if (row.statement == statement)
            return &row;
    return nullptr;
}

uint32_t ParseHeadStatement(ZrMod *module, xmlNode *element, const HeadStatement &row)
{
    uint32_t status = row.parse(module, element, ZRS_STMT_MODULE, row.destination(module));
    if (status != ZR_OK)
        zr::RecordBadStatement(module, row.statement);
    return status;
}

} // namespace

uint32_t ZRS_LOADER_MapModuleHeadStmtToBit(uint32_t statement)
{
    const HeadStatement *row = FindHeadStatement(statement);
    return row != nullptr ? row->bit : 0;
}

uint32_t ZRS_LOADER_ParseModuleHeadStmts(ZrMod *module, xmlNode *root)
{
    uint32_t seen = 0;
    for (xmlNode *child = root->children; child != nullptr && seen != HEAD_ALL;
         child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        const HeadStatement *row = FindHeadStatement(ZRS_LOADER_GetXmlNodeYangStmt(child));
        if (row == nullptr)
            continue;
        if ((seen & row->bit) != 0) {
            zr::RecordRepeated(module, row->statement, ZRS_STMT_MODULE);
            return ZR_ERR_FAILED;
        }
        seen |= row->bit;
        uint32_t status = ParseHeadStatement(module, child, *row);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

// The body.

uint32_t ZRS_LOADER_CounterAndExpandBodyStmtArray(ZrMod *module, xmlNode *root, ZrsSubElem *rows,
                                                  uint32_t rowCount)
{
    uint32_t status = ZRS_LOADER_MarkSubNodeAndCountArraySize(module, root, rows, rowCount);
    if (status != ZR_OK)
        return status;
    for (ZrsSubElem &row : std::span(rows, rowCount)) {
        if ((row.flags & ZRS_ROW_ARRAY) == 0)
            continue;
        if (status == ZR_OK)
            status = ZR_UTL_ExpandArray(static_cast<void **>(row.destination), *row.indexCount,
                                        static_cast<uint32_t>(*row.arrayCount - *row.indexCount),
                                        row.elementSize);
        if (status != ZR_OK)
            *row.arrayCount = *row.indexCount; // the array is as long as it was
    }
    return status;
}

namespace {

// Where the statements go that describe the file itself.
struct Description {
    const char **revision, **description, **organization;
};

uint32_t ParseBody(ZrMod *module, xmlNode *root, const Description &own)
{
    uint16_t extensions = module->extensionCount;
    uint16_t features = module->featureCount;
    uint16_t identities = module->identityCount;
    uint16_t typedefs = module->typedefCount;
    uint16_t deviations = module->deviationCount;
    uint16_t extInsts = module->extInstCount;
    // clang-format off
    ZrsSubElem rows[] = {
        zr::RepeatedRow(ZRS_STMT_REVISION,        own.revision),
        zr::UniqueRow(ZRS_STMT_DESCRIPTION,       own.description),
        zr::ArrayRow(ZRS_STMT_EXTENSION,          &module->extensions, &extensions, &module->extensionCount),
        zr::ArrayRow(ZRS_STMT_FEATURE,            &module->features,   &features,   &module->featureCount),
        zr::ArrayRow(ZRS_STMT_IDENTITY,           &module->identities, &identities, &module->identityCount),
        zr::ArrayRow(ZRS_STMT_TYPEDEF,            &module->typedefs,   &typedefs,   &module->typedefCount),
        zr::RepeatedRow(ZRS_STMT_CONTAINER,       module),
        zr::RepeatedRow(ZRS_STMT_LEAF,            module),
        zr::RepeatedRow(ZRS_STMT_LEAF_LIST,       module),
        zr::RepeatedRow(ZRS_STMT_LIST,            module),
        zr::RepeatedRow(ZRS_STMT_CHOICE,          module),
        zr::RepeatedRow(ZRS_STMT_ANYDATA,         module),
        zr::RepeatedRow(ZRS_STMT_ANYXML,          module),
        zr::RepeatedRow(ZRS_STMT_AUGMENT,         module),
        zr::RepeatedRow(ZRS_STMT_RPC,             module),
        zr::RepeatedRow(ZRS_STMT_NOTIFICATION,    module),
        zr::ArrayRow(ZRS_STMT_DEVIATION,          &module->deviations, &deviations, &module->deviationCount),
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &module->extInsts,   &extInsts,   &module->extInstCount),
        zr::UniqueRow(ZRS_STMT_ORGANIZATION,      own.organization),
    };
    // clang-format on
    uint32_t status = ZRS_LOADER_CounterAndExpandBodyStmtArray(module, root, rows, std::size(rows));
    if (status != ZR_OK)
        return status;
    return ZRS_LOADER_ParseSubStatementsInner(module, root, ZRS_STMT_MODULE, rows, std::size(rows));
}

uint32_t ParseModuleBody(ZrMod *module, xmlNode *root)
{
    return ParseBody(module, root,
                     {&module->revision, &module->description, &module->organization});
}

// What describes the submodule is checked like the module's own, and describes nothing afterwards.
uint32_t ParseSubmoduleBody(ZrMod *module, xmlNode *root)
{
    const char *texts[3] = {};
    uint32_t status = ParseBody(module, root, {&texts[0], &texts[1], &texts[2]});
    for (const char *text : texts)
        ZR_DICT_Remove(&module->ctx->dict, text);
    return status;
}

} // namespace

// Submodules (RFC 7950, section 7.2): their statements become statements of the including module.

namespace {

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

const xmlNode *FindStatement(const xmlNode *element, uint32_t statement)
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
    const xmlNode *belongsTo = FindStatement(root, ZRS_STMT_BELONGS_TO);
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
    return status == ZR_OK ? ParseSubmoduleBody(module, root) : status;
}

uint32_t ParseDocument(ZrMod *module, xmlDoc *document, const char *submoduleName,
                       zr::Linkage *linkage)
{
    xmlNode *root = RootOf(document, ZRS_STMT_SUBMODULE);
    return root != nullptr ? ParseContent(module, root, submoduleName, linkage)
                           : uint32_t{ZR_ERR_INVALID};
}

// Reads one file; errors name it, and then again the file that includes it.
uint32_t LoadFile(ZrMod *module, const char *path, const char *submoduleName, zr::Linkage *linkage)
{
    ZrCtx *ctx = module->ctx;
    char includingFile[sizeof(ctx->curYinFile)];
    std::memcpy(includingFile, ctx->curYinFile, sizeof(includingFile));
    ZR_CTX_SetCurYinFile(ctx, path);
    zr::OwnedDoc document = zr::ReadYinFile(ctx, path, module->name);
    uint32_t status = document ? ParseDocument(module, document.get(), submoduleName, linkage)
                               : uint32_t{ZR_ERR_INVALID};
    ZR_CTX_SetCurYinFile(ctx, includingFile);
    return status;
}

// One file, or one for each suffix.
uint32_t LoadFiles(ZrMod *module, const char *submoduleName, ZrsPathCollection *collection,
                   ZrsLoadAssister *assister, zr::Linkage *linkage)
{
    uint32_t status = ZRS_LOADER_AddPathObjToLoadAssister(assister, collection);
    collection->limit = zr::kMaxFilesAtOnce;
    while (status == ZR_OK) {
        const ZrsPathObj *object = ZRS_LOADER_GetNextPathObjToProc(collection, assister);
        if (object == nullptr)
            break;
        status = LoadFile(module, object->path, submoduleName, linkage);
        ZRS_LOADER_ResetCurrentLoadingSuffix(assister, 1);
    }
    return status;
}

uint32_t LoadSubmodule(ZrMod *module, const char *submoduleName, zr::Linkage *linkage)
{
    if (linkage->depth >= kMaxIncludeDepth)
        return ZR_ERR_INVALID;
    zr::OwnedPaths paths;
    uint32_t status = zr::CollectPaths(module->ctx, submoduleName, paths);
    if (status != ZR_OK)
        return status;
    zr::LoadAssister assister(submoduleName);
    ++linkage->depth;
    status = LoadFiles(module, submoduleName, paths.get(), &assister, linkage);
    --linkage->depth;
    return status;
}

// Parses what belongs to the linkage of a module whose own file is not being read.
template <typename Parse> uint32_t ParseAlone(ZrMod *module, Parse parse)
{
    zr::Linkage linkage(module, LoadSubmodule);
    zr::FileScope record(module);
    uint32_t status = record.EnterRecord();
    if (status == ZR_OK)
        status = parse(&linkage);
    return status == ZR_OK ? linkage.Finish() : status;
}

} // namespace

uint32_t ZRS_LOADER_ParseSubmoduleContent(ZrMod *module, xmlNode *root, const char *submoduleName)
{
    return ParseAlone(module, [=](zr::Linkage *linkage) {
        linkage->depth = 1;
        return ParseContent(module, root, submoduleName, linkage);
    });
}

uint32_t ZRS_LOADER_LoadSubModule(ZrMod *module, const char *submoduleName)
{
    return ParseAlone(module, [=](zr::Linkage *linkage) {
        return LoadSubmodule(module, submoduleName, linkage);
    });
}

uint32_t ZRS_LOADER_ParseInclude(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                 void * /*destination*/)
{
    return ParseAlone(module, [=](zr::Linkage *linkage) { return linkage->Include(element); });
}

// The whole module.

uint32_t ZRS_LOADER_ParseLinkageStmts(ZrMod *module, xmlNode *root)
{
    zr::Linkage linkage(module, LoadSubmodule);
    zr::FileScope file(module);
    uint32_t status = file.Enter(root, module->prefix);
    if (status == ZR_OK)
        status = linkage.ParseFile(root);
    return status == ZR_OK ? linkage.Finish() : status;
}

uint32_t ZRS_LOADER_ParseModuleContent(ZrMod *module, xmlNode *root, const char * /*expectedName*/)
{
    ZRS_LOADER_MarkSubNode(root);
    uint32_t status = ZRS_LOADER_ParseModuleHeadStmts(module, root);
    if (status == ZR_OK)
        status = ZRS_LOADER_ParseLinkageStmts(module, root);
    zr::FileScope file(module);
    if (status == ZR_OK)
        status = file.EnterRecord();
    return status == ZR_OK ? ParseModuleBody(module, root) : status;
}

uint32_t ZRS_LOADER_CheckParsedModNameMatched(const char *parsedName, const char *expectedName)
{
    if (parsedName == nullptr || parsedName[0] == '\0')
        return ZR_ERR_INVALID;
    bool isExpected = expectedName == nullptr || std::strcmp(parsedName, expectedName) == 0;
    return isExpected ? ZR_OK : ZR_ERR_INVALID;
}

ZrMod *ZRS_LOADER_ParseYinDocToZrMod(ZrCtx *ctx, xmlNode *root, const char *expectedName)
{
    const char *name = ZR_XML_GetTargetPropertyValue(root, "name");
    if (ZRS_LOADER_CheckParsedModNameMatched(name, expectedName) != ZR_OK)
        return nullptr;
    zr::Owned<ZrMod, ZRS_MOD_Free> module(zr::NewModule(ctx));
    if (!module || !zr::Intern(&ctx->dict, module->name, name) ||
        zr::CheckName(module.get(), name, ZRS_STMT_MODULE) != ZR_OK ||
        ZRS_LOADER_ParseModuleContent(module.get(), root, expectedName) != ZR_OK)
        return nullptr;
    return module.release();
}

ZrMod *ZRS_LOADER_ParseYinContent(ZrCtx *ctx, xmlDoc *document, const char *expectedName)
{
    xmlNode *root = RootOf(document, ZRS_STMT_MODULE);
    return root != nullptr ? ZRS_LOADER_ParseYinDocToZrMod(ctx, root, expectedName) : nullptr;
}
