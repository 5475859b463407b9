#include "loader/refresh.h"

#include "loader/arguments.h"
#include "platform/memory.h"
#include "schema/module.h"
#include "types/real_type.h"

namespace {

// An identity is written with a prefix of its file (RFC 7950, section 9.10.3) and compared as
// module:identity. The old text stays when the new one cannot be had.
uint32_t RefreshDefault(ZrMod *module, const ZrtRealType *type, const char **value)
{
    if (*value == nullptr || ZRT_TYPE_IsTypeWithIdentref(type) != 1)
        return ZR_OK;
    zr::ScopedBlock<char> qualified(ZRS_MOD_ConvertPrefixValToJsonFormat(module, *value));
    if (!qualified)
        return ZR_ERR_INVALID;
    return zr::KeepText(module, qualified.get(), value);
}

} // namespace

uint32_t ZRS_LOADER_RefreshLeafDefaultValue(ZrMod *module, ZrNode *leaf)
{
    auto *info = static_cast<ZrsLeafInfo *>(leaf->info);
    return RefreshDefault(module, &info->realType, &info->defaultValue);
}

uint32_t ZRS_LOADER_RefreshLeafListDefaultValue(ZrMod *module, ZrNode *leafList)
{
    auto *info = static_cast<ZrsLeafListInfo *>(leafList->info);
    for (uint32_t i = 0; i < info->defaultCount; ++i) {
        uint32_t status = RefreshDefault(module, &info->realType, &info->defaults[i]);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_RefreshTypeDefDefaultValue(ZrMod *module, ZrsTypDef *typeDef)
{
    return RefreshDefault(module, &typeDef->realType, &typeDef->defaultValue);
}
