// The restrictions that name something else: a typedef, an identity, a leaf or member types.
#include <cstring>

#include "foundation/load_errors.h"
#include "foundation/text.h"
#include "loader/type_fill.h"
#include "loader/type_statements.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/members.h"
#include "schema/module.h"
#include "xpath/path_forms.h"

namespace {

// A reference "prefix:name" or "name", taken apart.
struct Reference {
    const char *moduleName = nullptr;
    char name[zr::kNameSize];

    // 22 when the text is malformed or the prefix is unknown.
    uint32_t Read(const ZrMod *module, const char *text)
    {
        char prefix[zr::kNameSize];
        if (ZR_UTL_GetXPathNextPrefixAndNode(text, prefix, sizeof prefix, name, sizeof name) !=
            ZR_OK)
            return ZR_ERR_INVALID;
        moduleName =
            prefix[0] != '\0' ? ZRS_MOD_GetModuleNameByPrefix(module, prefix) : module->name;
        return moduleName != nullptr ? ZR_OK : ZR_ERR_INVALID;
    }
};

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllDerivedSeg(ZrMod *module, ZrtRealType *, void *body,
                                                 xmlNode *element, uint32_t)
{
    auto *derived = static_cast<ZrtConsDerived *>(body);
    const char *typeName = ZR_XML_GetFirstPropertyValue(element);
    Reference reference;
    if (typeName == nullptr || reference.Read(module, typeName) != ZR_OK)
        return ZR_ERR_INVALID;
    derived->moduleName = ZR_DICT_Insert(&module->ctx->dict, reference.moduleName);
    if (derived->moduleName == nullptr)
        return ZR_ERR_NO_MEMORY;
    derived->typedefName = ZR_DICT_Insert(&module->ctx->dict, reference.name);
    return derived->typedefName != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillOneConsSegBase(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    const char *name = ZR_XML_GetFirstPropertyValue(element);
    if (name == nullptr) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                           "base");
        return ZR_ERR_INVALID;
    }
    Reference reference;
    if (reference.Read(module, name) != ZR_OK)
        return ZR_ERR_INVALID;
    return ZRS_MOD_FillIdentBase(&module->ctx->dict, static_cast<ZrsIdentBase *>(item),
                                 reference.moduleName, reference.name);
}

uint32_t ZRT_LOADER_FillConsDataAndAllBaseSeg(ZrMod *module, ZrtRealType *, void *body,
                                              xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrsIdentBase), zr::TypeMarkOf(ZRT_CONS_BASE),
                             ZRT_LOADER_FillOneConsSegBase);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsBase *>(body)->items, nullptr);
}

namespace {

// "require-instance" is true unless it begins like "false"; nothing else of the word is read.
uint32_t ReadRequireInstance(const xmlNode *element)
{
    const char *value = ZRT_LOADER_GetMatchChildFirstMatchedValStr(element, "require-instance");
    return value == nullptr || value[0] != 'f';
}

} // namespace

uint32_t ZRT_LOADER_FillConsDataAndAllPathSeg(ZrMod *module, ZrtRealType *, void *body,
                                              xmlNode *element, uint32_t)
{
    auto *leafref = static_cast<ZrtConsPath *>(body);
    const char *path = zr::MarkedChildArgument(element, ZRT_CONS_PATH);
    if (path == nullptr || leafref->path != nullptr)
        return ZR_ERR_INVALID;
    leafref->requireInstance = ReadRequireInstance(element);
    if (path[0] != '.' && path[0] != '/')
        return ZR_ERR_INVALID;
    zr::ScopedBlock<char> jsonPath(ZR_XPATH_TransformToJsonFormat(module, path));
    if (!jsonPath)
        return ZR_ERR_INVALID;
    leafref->path = ZR_DICT_Insert(&module->ctx->dict, jsonPath.get());
    return leafref->path != nullptr ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRT_LOADER_FillOneConsSegUnion(ZrMod *module, xmlNode *element, void *item, uint8_t *)
{
    return ZRT_LOADER_ParseTypeStmt(module, element, ZRS_STMT_TYPE, item);
}

uint32_t ZRT_LOADER_FillConsDataAndAllUnionSeg(ZrMod *module, ZrtRealType *, void *body,
                                               xmlNode *element, uint32_t count)
{
    ZrtSegFiller filler;
    ZRT_LOADER_InitSegFiller(&filler, count, sizeof(ZrtRealType), zr::TypeMarkOf(ZRT_CONS_UNION),
                             ZRT_LOADER_FillOneConsSegUnion);
    return ZRT_LOADER_FillTypeConstraintSeg(module, element, &filler,
                                            static_cast<ZrtConsUnion *>(body)->items, nullptr);
}
