#include "schema/module.h"

#include "foundation/record_arrays.h"
#include "foundation/text.h"
#include "model/file_prefixes.h"
#include "platform/secure.h"
#include "schema/members.h"

namespace {

template <typename T> T FieldOf(const ZrMod *module, T ZrMod::*field)
{
    return module == nullptr ? nullptr : module->*field;
}

} // namespace

namespace zr {

ZrMod *NewModule(ZrCtx *ctx)
{
    auto *module = AllocRecord<ZrMod>();
    if (module == nullptr)
        return nullptr;
    module->ctx = ctx;
    PAL_AVL3_InitNode(&module->byNameLink);
    PAL_AVL3_InitNode(&module->byNamespaceLink);
    return module;
}

} // namespace zr

const char *ZR_MOD_GetModuleName(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::name);
}

const char *ZR_MOD_GetModuleNs(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::ns);
}

const char *ZR_MOD_GetModulePrefix(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::prefix);
}

const char *ZR_MOD_GetOrganization(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::organization);
}

const char *ZR_MOD_GetRevision(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::revision);
}

const char *ZR_MOD_GetYangVersion(const ZrMod *module)
{
    if (module == nullptr)
        return nullptr;
    return module->yangVersion == ZRS_YANG_VERSION_1_1 ? "1.1" : "1";
}

const char *ZR_MOD_GetDescription(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::description);
}

void *ZR_MOD_GetPrivate(const ZrMod *module)
{
    return FieldOf(module, &ZrMod::privateData);
}

void ZR_MOD_SetPrivate(ZrMod *module, void *privateData)
{
    if (module != nullptr)
        module->privateData = privateData;
}

const ZrtRealType *ZR_MOD_GetRealTypeByTypDefName(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : &found->realType;
}

const char *ZR_MOD_GetTypedefDefault(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : found->defaultValue;
}

const char *ZR_MOD_GetTypedefUnits(const ZrMod *module, const char *name)
{
    const ZrsTypDef *found = ZRS_MOD_FindZrsTypDefByName(module, name);
    return found == nullptr ? nullptr : found->units;
}

const char *ZR_MOD_GetIdentityName(const ZrsIdentity *identity)
{
    return identity == nullptr ? nullptr : identity->name;
}

const char *ZR_MOD_GetIdentityDescription(const ZrsIdentity *identity)
{
    return identity == nullptr ? nullptr : identity->description;
}
