// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/arguments.h"

#include <cstring>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/statements/statements.h"
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

void RecordBadStatement(ZrMod *module, uint32_t statement)
{
    ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse statement \"%s\".",
                       ZRS_LOADER_GetKeywordByStmt(statement));
}

void RecordBadDefinition(ZrMod *module, uint32_t statement, const char *name)
{
    ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse \"%s\" statement \"%s\".",
                       ZRS_LOADER_GetKeywordByStmt(statement), name);
}

void RecordMissingType(ZrMod *module, uint32_t statement, const char *name)
{
    ZR_CTX_AddModError(module->ctx, module->name, "%s \"%s\" must define with type statement.",
                       ZRS_LOADER_GetKeywordByStmt(statement), name);
}

void RecordUnknownPrefix(ZrMod *module, const char *prefix)
{
    ZR_CTX_AddModError(module->ctx, module->name, "Failed to find module by prefix \"%s\".",
                       prefix);
}

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

xmlNode *FirstChildNamed(const xmlNode *element, const char *name)
{
    xmlNode *child = element->children;
    while (child != nullptr &&
           (child->type != XML_ELEMENT_NODE || std::strcmp(LocalName(child), name) != 0))
        child = child->next;
    return child;
}

const char *ArgumentOfChild(const xmlNode *element, const char *name)
{
    return ZR_XML_GetFirstPropertyValue(FirstChildNamed(element, name));
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

const char *RequirePrefixChild(ZrMod *module, const xmlNode *element, uint32_t statement,
                               const char *value)
{
    const char *prefix = ArgumentOfChild(element, ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_PREFIX));
    if (prefix == nullptr) {
        RecordMissingValue(module, ZRS_STMT_PREFIX);
        RecordBadValue(module, value, statement);
    }
    return prefix;
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

uint32_t ReadDefinitionRef(const ZrMod *module, const char *text, DefinitionRef *ref)
{
    if (ZR_UTL_GetXPathNextPrefixAndNode(text, ref->prefix, sizeof(ref->prefix), ref->name,
                                         sizeof(ref->name)) != ZR_OK)
        return ZR_ERR_INVALID;
    ref->moduleName =
        ref->prefix[0] == '\0' ? module->name : ZRS_MOD_GetModuleNameByPrefix(module, ref->prefix);
    return ref->moduleName != nullptr ? ZR_OK : ZR_ERR_NOT_FOUND;
}

uint32_t ResolveDefinitionRef(ZrMod *module, const char *text, DefinitionRef *ref)
{
    uint32_t status = ReadDefinitionRef(module, text, ref);
    if (status == ZR_OK)
        return ZR_OK;
    if (status == ZR_ERR_NOT_FOUND)
        RecordUnknownPrefix(module, ref->prefix);
    else
        ZR_CTX_AddModError(module->ctx, module->name, "Failed to parse xpath \"%s\".", text);
    return ZR_ERR_INVALID;
}

} // namespace zr
