#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "foundation/search_dirs.h"
#include "loader/arguments.h"
#include "loader/discovery.h"
#include "loader/linkage.h"
#include "loader/load_state.h"
#include "loader/parsers.h"
#include "model/module_records.h"
#include "platform/text.h"
#include "platform/xml.h"
#include "schema/members/members.h"

namespace {

enum HeadBit : uint32_t {
    HEAD_YANG_VERSION = 1,
    HEAD_NAMESPACE = 2,
    HEAD_PREFIX = 4,
    HEAD_ALL = 7
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
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse statement \"%s\".",
                           ZRS_LOADER_GetKeywordByStmt(row.statement));
    return status;
}

constexpr uint32_t kBodyRowCount = 19;

// Where the statements go that describe the file itself.
struct Description {
    const char **revision, **description, **organization;
};

struct Body {
    uint16_t extensions, features, identities, typedefs, deviations, extInsts;
    ZrsSubElem rows[kBodyRowCount];
};

Body MakeBody(ZrMod *module)
{
    Body body = {};
    body.extensions = module->extensionCount;
    body.features = module->featureCount;
    body.identities = module->identityCount;
    body.typedefs = module->typedefCount;
    body.deviations = module->deviationCount;
    body.extInsts = module->extInstCount;
    return body;
}

// Takes the body in place: the rows point at its counters.
void FillRows(ZrMod *module, const Description &own, Body *body)
{
    // clang-format off
    const ZrsSubElem rows[] = {
        zr::RepeatedRow(ZRS_STMT_REVISION,        own.revision),
        zr::UniqueRow(ZRS_STMT_DESCRIPTION,       own.description),
        zr::ArrayRow(ZRS_STMT_EXTENSION,          &module->extensions, &body->extensions, &module->extensionCount),
        zr::ArrayRow(ZRS_STMT_FEATURE,            &module->features,   &body->features,   &module->featureCount),
        zr::ArrayRow(ZRS_STMT_IDENTITY,           &module->identities, &body->identities, &module->identityCount),
        zr::ArrayRow(ZRS_STMT_TYPEDEF,            &module->typedefs,   &body->typedefs,   &module->typedefCount),
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
        zr::ArrayRow(ZRS_STMT_DEVIATION,          &module->deviations, &body->deviations, &module->deviationCount),
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &module->extInsts,   &body->extInsts,   &module->extInstCount),
        zr::UniqueRow(ZRS_STMT_ORGANIZATION,      own.organization),
    };
    // clang-format on
    static_assert(std::size(rows) == kBodyRowCount);
    std::ranges::copy(rows, body->rows);
}

uint32_t ParseBody(ZrMod *module, xmlNode *root, const Description &own)
{
    Body body = MakeBody(module);
    FillRows(module, own, &body);
    uint32_t status =
        ZRS_LOADER_CounterAndExpandBodyStmtArray(module, root, body.rows, kBodyRowCount);
    if (status != ZR_OK)
        return status;
    return ZRS_LOADER_ParseSubStatementsInner(module, root, ZRS_STMT_MODULE, body.rows,
                                              kBodyRowCount);
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
            ZR_CTX_AddModError(module->ctx, module->name,
                               "Statement \"%s\" under statement \"%s\" has repeated.",
                               ZRS_LOADER_GetKeywordByStmt(row->statement),
                               ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_MODULE));
            return ZR_ERR_FAILED;
        }
        seen |= row->bit;
        uint32_t status = ParseHeadStatement(module, child, *row);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

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

uint32_t zr::ParseModuleBody(ZrMod *module, xmlNode *root)
{
    return ParseBody(module, root,
                     {&module->revision, &module->description, &module->organization});
}

// What describes the submodule is checked like the module's own, and describes nothing afterwards.
uint32_t zr::ParseSubmoduleBody(ZrMod *module, xmlNode *root)
{
    const char *texts[3] = {};
    uint32_t status = ParseBody(module, root, {&texts[0], &texts[1], &texts[2]});
    for (const char *text : texts)
        ZR_DICT_Remove(&module->ctx->dict, text);
    return status;
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
    return status == ZR_OK ? zr::ParseModuleBody(module, root) : status;
}

// Submodules (RFC 7950, section 7.2): their statements become statements of the including module.

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
