// Extension instances: the elements outside the YIN namespace (RFC 7950, sections 6.3.1 and 7.19).
#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/engine.h"
#include "loader/parsers.h"
#include "platform/xml.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node.h"

namespace {

const char *LocalName(const xmlNode *element)
{
    return reinterpret_cast<const char *>(element->name);
}

const char *NamespacePrefix(const xmlNode *element)
{
    if (element->ns == nullptr || element->ns->prefix == nullptr)
        return "";
    return reinterpret_cast<const char *>(element->ns->prefix);
}

uint32_t FillInstance(ZrMod *module, xmlNode *element, const char *moduleName, ZrsExtInst *instance)
{
    uint32_t status =
        ZRS_EXT_FillExtInst(&module->ctx->dict, instance, moduleName, LocalName(element),
                            ZR_XML_GetFirstPropertyValue(element));
    if (status != ZR_OK)
        return status;
    uint16_t filled = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &instance->children, &filled,
                     &instance->childCount),
    };
    return ZRS_LOADER_ParseSubStatements(module, element, ZRS_STMT_EXTENSION_INSTANCE, rows, 1);
}

uint32_t ParseInstance(ZrMod *module, xmlNode *element, ZrsExtInst *instance)
{
    const char *prefix = NamespacePrefix(element);
    const char *moduleName = ZRS_MOD_GetModuleNameByPrefix(module, prefix);
    if (moduleName == nullptr) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to find module by prefix \"%s\".",
                           prefix);
        return ZR_ERR_INVALID;
    }
    uint32_t status = FillInstance(module, element, moduleName, instance);
    if (status != ZR_OK) {
        ZRS_EXT_ClearExtInst(&module->ctx->dict, instance);
        // The missing full stop is kept: applications match the text.
        ZR_CTX_AddModError(module->ctx, module->name,
                           "Failed to parse extension instance \"%s:%s\"", moduleName,
                           LocalName(element));
    }
    return status;
}

// The engine has made room for all instances of the node; its count says how many are filled.
uint32_t ParseInstanceOfNode(ZrMod *module, xmlNode *element, ZrNode *node)
{
    if (node->extInsts == nullptr && zr::NewArray(&node->extInsts, 1) != ZR_OK)
        return ZR_ERR_NO_MEMORY;
    ZrsExtInst *instance = &node->extInsts[node->extInstCount];
    uint32_t status = ParseInstance(module, element, instance);
    if (status != ZR_OK) {
        ZRS_EXT_FreeExtInsts(&module->ctx->dict, node->extInsts, node->extInstCount);
        node->extInsts = nullptr;
        node->extInstCount = 0;
        return status;
    }
    ++node->extInstCount;
    ZRS_NODE_SetNacmFlag(node, instance->moduleName, instance->extensionName);
    return ZR_OK;
}

} // namespace

uint32_t ZRS_LOADER_IsExtInstNeedParse(const ZrMod *module, const xmlNode *element)
{
    ZrExtInstFilterFunc filter = module->ctx->extInstFilterFunc;
    if (filter == nullptr)
        return 1;
    const char *moduleName = ZRS_MOD_GetModuleNameByPrefix(module, NamespacePrefix(element));
    if (moduleName == nullptr)
        return 1; // nothing to ask about: the parser refuses it
    return filter(moduleName, LocalName(element)) == 0 ? 1 : 0;
}

uint32_t ZRS_LOADER_ParseExtInst(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                 void *destination)
{
    if (zr::IsSchemaNodeStatement(parentStatement))
        return ParseInstanceOfNode(module, element, static_cast<ZrNode *>(destination));
    return ParseInstance(module, element, static_cast<ZrsExtInst *>(destination));
}
