#include "loader/arguments.h"

#include "foundation/dict.h"
#include "foundation/load_errors.h"
#include "loader/statements.h"
#include "model/scope.h"
#include "platform/xml.h"

namespace zr {

void RecordMissingValue(ZrMod *module, uint32_t statement)
{
    ZR_CTX_AddModError(module->ctx, module->name, "Failed to get value of statement \"%s\".",
                       ZRS_LOADER_GetKeywordByStmt(statement));
}

void RecordBadValue(ZrMod *module, const char *value, uint32_t statement)
{
    ZR_CTX_AddModError(module->ctx, module->name,
                       "Failed to parse value \"%s\" of statement \"%s\".", value,
                       ZRS_LOADER_GetKeywordByStmt(statement));
}

const char *RequireArgument(ZrMod *module, const xmlNode *element, uint32_t statement)
{
    const char *argument = ZR_XML_GetFirstPropertyValue(element);
    if (argument == nullptr)
        RecordMissingValue(module, statement);
    return argument;
}

uint32_t CheckName(ZrMod *module, const char *name, uint32_t statement)
{
    if (IsIdentifier(name))
        return ZR_OK;
    RecordBadValue(module, name, statement);
    return ZR_ERR_INVALID;
}

const char *RequireName(ZrMod *module, const xmlNode *element, uint32_t statement)
{
    const char *name = RequireArgument(module, element, statement);
    return name != nullptr && CheckName(module, name, statement) == ZR_OK ? name : nullptr;
}

uint32_t KeepText(ZrMod *module, const char *text, const char **destination)
{
    const char *kept = ZR_DICT_Insert(&module->ctx->dict, text);
    if (kept == nullptr)
        return ZR_ERR_NO_MEMORY;
    ZR_DICT_Remove(&module->ctx->dict, *destination);
    *destination = kept;
    return ZR_OK;
}

uint32_t KeepArgument(ZrMod *module, const xmlNode *element, uint32_t statement,
                      const char **destination)
{
    const char *argument = RequireArgument(module, element, statement);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    return KeepText(module, argument, destination);
}

uint32_t ResolveDefinitionRef(ZrMod *module, const char *text, DefinitionRef *ref)
{
    if (ZR_UTL_GetXPathNextPrefixAndNode(text, ref->prefix, sizeof(ref->prefix), ref->name,
                                         sizeof(ref->name)) != ZR_OK) {
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse xpath \"%s\".", text);
        return ZR_ERR_INVALID;
    }
    ref->moduleName =
        ref->prefix[0] == '\0' ? module->name : ZRS_MOD_GetModuleNameByPrefix(module, ref->prefix);
    if (ref->moduleName != nullptr)
        return ZR_OK;
    ZR_CTX_AddModError(module->ctx, module->name, "Failed to find module by prefix \"%s\".",
                       ref->prefix);
    return ZR_ERR_INVALID;
}

} // namespace zr
