// The definitions of a module that are no data: features, identities, extensions, and the
// references to features and identities.
#include <string_view>

#include "loader/arguments.h"
#include "loader/engine.h"
#include "loader/parsers.h"
#include "platform/xml.h"
#include "schema/conditions.h"
#include "schema/members.h"

namespace {

ZrDict *DictOf(ZrMod *module)
{
    return &module->ctx->dict;
}

template <size_t rowCount>
uint32_t ParseChildren(ZrMod *module, xmlNode *element, uint32_t statement,
                       ZrsSubElem (&rows)[rowCount])
{
    return ZRS_LOADER_ParseSubStatements(module, element, statement, rows, rowCount);
}

uint32_t ParseFeatureInto(ZrMod *module, xmlNode *element, const char *name, ZrsFeature *feature)
{
    uint32_t status = ZRS_MOD_FillFeature(DictOf(module), feature, name);
    if (status != ZR_OK)
        return status;
    uint16_t filled = 0;
    ZrsSubElem rows[] = {
        zr::ArrayRow(ZRS_STMT_IF_FEATURE, &feature->ifFeatures, &filled, &feature->ifFeatureCount),
    };
    return ParseChildren(module, element, ZRS_STMT_FEATURE, rows);
}

uint32_t ParseIdentityInto(ZrMod *module, xmlNode *element, const char *name, ZrsIdentity *identity)
{
    uint32_t status = ZRS_MOD_FillIdentity(DictOf(module), identity, name);
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
    return ParseChildren(module, element, ZRS_STMT_IDENTITY, rows);
}

uint32_t ParseExtensionInto(ZrMod *module, xmlNode *element, const char *name,
                            ZrsExtension *extension)
{
    uint32_t status = ZRS_MOD_SetExtension(DictOf(module), extension, name, nullptr, 0);
    if (status != ZR_OK)
        return status;
    ZrsSubElem rows[] = {zr::UniqueRow(ZRS_STMT_ARGUMENT, extension)};
    return ParseChildren(module, element, ZRS_STMT_EXTENSION, rows);
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
        ZRS_MDL_ClearFeature(DictOf(module), feature);
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
        ZRS_MDL_ClearIdentity(DictOf(module), identity);
    return status;
}

uint32_t ZRS_LOADER_ParseIdentBase(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_BASE);
    zr::DefinitionRef ref;
    if (argument == nullptr || zr::ResolveDefinitionRef(module, argument, &ref) != ZR_OK)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_MOD_FillIdentBase(
        DictOf(module), static_cast<ZrsIdentBase *>(destination), ref.moduleName, ref.name);
    if (status != ZR_OK)
        zr::RecordBadValue(module, argument, ZRS_STMT_BASE);
    return status;
}

uint32_t ZRS_LOADER_ParseIfFeature(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_IF_FEATURE);
    zr::DefinitionRef ref;
    if (argument == nullptr || zr::ResolveDefinitionRef(module, argument, &ref) != ZR_OK)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_NODE_FillIfFeature(
        DictOf(module), static_cast<ZrsIfFeature *>(destination), ref.moduleName, ref.name);
    if (status != ZR_OK)
        zr::RecordBadValue(module, argument, ZRS_STMT_IF_FEATURE);
    return status;
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
        ZRS_MDL_ClearExtension(DictOf(module), extension);
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
    return ParseChildren(module, element, ZRS_STMT_ARGUMENT, rows);
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
