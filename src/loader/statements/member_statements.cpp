// SPDX-License-Identifier: Apache-2.0
// The members of a module that are no data: features, identities, extensions, the references to
// features and identities, and the instances of extensions.
#include <string_view>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/xml.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/nodes/node.h"

namespace {

uint32_t ParseFeatureInto(ZrMod *module, xmlNode *element, const char *name, ZrsFeature *feature)
{
    uint32_t status = ZRS_MOD_FillFeature(&module->ctx->dict, feature, name);
    if (status != ZR_OK)
        return status;
    uint16_t filled = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_IF_FEATURE, &feature->ifFeatures, &filled, &feature->ifFeatureCount),
    };
    return zr::ParseRows(module, element, ZRS_STMT_FEATURE, rows);
}

uint32_t ParseIdentityInto(ZrMod *module, xmlNode *element, const char *name, ZrsIdentity *identity)
{
    uint32_t status = ZRS_MOD_FillIdentity(&module->ctx->dict, identity, name);
    if (status != ZR_OK)
        return status;
    uint16_t bases = 0;
    uint16_t ifFeatures = 0;
    // clang-format off
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_BASE,        &identity->bases,      &bases,      &identity->baseCount),
        zr::ArrayRow(ZRS_STMT_IF_FEATURE,  &identity->ifFeatures, &ifFeatures, &identity->ifFeatureCount),
        zr::UniqueRow(ZRS_STMT_DESCRIPTION, &identity->description),
    };
    // clang-format on
    return zr::ParseRows(module, element, ZRS_STMT_IDENTITY, rows);
}

uint32_t ParseExtensionInto(ZrMod *module, xmlNode *element, const char *name,
                            ZrsExtension *extension)
{
    uint32_t status = ZRS_MOD_SetExtension(&module->ctx->dict, extension, name, nullptr, 0);
    if (status != ZR_OK)
        return status;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_ARGUMENT, extension)};
    return zr::ParseRows(module, element, ZRS_STMT_EXTENSION, rows);
}

// A statement whose argument refers to a definition.
template <typename Record>
uint32_t ParseReference(ZrMod *module, const xmlNode *element, uint32_t statement,
                        uint32_t (*fill)(ZrDict *, Record *, const char *, const char *),
                        void *destination)
{
    const char *argument = zr::RequireArgument(module, element, statement);
    zr::DefinitionRef ref;
    if (argument == nullptr || zr::ResolveDefinitionRef(module, argument, &ref) != ZR_OK)
        return ZR_ERR_INVALID;
    uint32_t status =
        fill(&module->ctx->dict, static_cast<Record *>(destination), ref.moduleName, ref.name);
    if (status != ZR_OK)
        zr::RecordBadValue(module, argument, statement);
    return status;
}

} // namespace

uint32_t ZRS_LOADER_ParseFeature(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                 void *destination)
{
    const char *name = zr::RequireName(module, element, ZRS_STMT_FEATURE);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    auto *feature = static_cast<ZrsFeature *>(destination);
    uint32_t status = ParseFeatureInto(module, element, name, feature);
    if (status != ZR_OK) {
        ZRS_MDL_ClearFeature(&module->ctx->dict, feature);
        zr::RecordBadValue(module, name, ZRS_STMT_FEATURE);
    }
    return status;
}

uint32_t ZRS_LOADER_ParseIdentity(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                  void *destination)
{
    const char *name = zr::RequireName(module, element, ZRS_STMT_IDENTITY);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    auto *identity = static_cast<ZrsIdentity *>(destination);
    uint32_t status = ParseIdentityInto(module, element, name, identity);
    if (status != ZR_OK)
        ZRS_MDL_ClearIdentity(&module->ctx->dict, identity);
    return status;
}

uint32_t ZRS_LOADER_ParseIdentBase(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    return ParseReference(module, element, ZRS_STMT_BASE, ZRS_MOD_FillIdentBase, destination);
}

uint32_t ZRS_LOADER_ParseIfFeature(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    return ParseReference(module, element, ZRS_STMT_IF_FEATURE, ZRS_NODE_FillIfFeature,
                          destination);
}

uint32_t ZRS_LOADER_ParseExtension(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    const char *name = zr::RequireName(module, element, ZRS_STMT_EXTENSION);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    auto *extension = static_cast<ZrsExtension *>(destination);
    uint32_t status = ParseExtensionInto(module, element, name, extension);
    if (status != ZR_OK)
        ZRS_MDL_ClearExtension(&module->ctx->dict, extension);
    return status;
}

uint32_t ZRS_LOADER_ParseArgument(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                  void *destination)
{
    auto *extension = static_cast<ZrsExtension *>(destination);
    uint32_t status = zr::KeepArgument(module, element, ZRS_STMT_ARGUMENT, &extension->argument);
    if (status != ZR_OK)
        return status;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_YIN_ELEMENT, &extension->yinElement)};
    return zr::ParseRows(module, element, ZRS_STMT_ARGUMENT, rows);
}

uint32_t ZRS_LOADER_ParseYinElement(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                    void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_YIN_ELEMENT);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    std::string_view value = argument;
    if (value != "true" && value != "false") {
        zr::RecordBadValue(module, argument, ZRS_STMT_YIN_ELEMENT);
        return ZR_ERR_INVALID;
    }
    *static_cast<uint32_t *>(destination) = value == "true" ? 1 : 0;
    return ZR_OK;
}

// Extension instances: the elements outside the YIN namespace (RFC 7950, sections 6.3.1 and 7.19).

namespace {

uint32_t FillInstance(ZrMod *module, xmlNode *element, const char *moduleName, ZrsExtInst *instance)
{
    uint32_t status =
        ZRS_EXT_FillExtInst(&module->ctx->dict, instance, moduleName, zr::LocalName(element),
                            ZR_XML_GetFirstPropertyValue(element));
    if (status != ZR_OK)
        return status;
    uint16_t filled = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_EXTENSION_INSTANCE, &instance->children, &filled,
                     &instance->childCount),
    };
    return zr::ParseRows(module, element, ZRS_STMT_EXTENSION_INSTANCE, rows);
}

uint32_t ParseInstance(ZrMod *module, xmlNode *element, ZrsExtInst *instance)
{
    const char *prefix = zr::NamespacePrefix(element);
    const char *moduleName = ZRS_MOD_GetModuleNameByPrefix(module, prefix);
    if (moduleName == nullptr) {
        zr::RecordUnknownPrefix(module, prefix);
        return ZR_ERR_INVALID;
    }
    uint32_t status = FillInstance(module, element, moduleName, instance);
    if (status != ZR_OK) {
        ZRS_EXT_ClearExtInst(&module->ctx->dict, instance);
        // The text ends without a full stop (docs/oddities.md).
        ZR_CTX_AddModError(module->ctx, module->name,
                           "Failed to parse extension instance \"%s:%s\"", moduleName,
                           zr::LocalName(element));
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

uint32_t ZRS_LOADER_ParseExtInst(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                 void *destination)
{
    if (zr::IsSchemaNodeStatement(parentStatement))
        return ParseInstanceOfNode(module, element, static_cast<ZrNode *>(destination));
    return ParseInstance(module, element, static_cast<ZrsExtInst *>(destination));
}
