#include "schema/module.h"

#include "foundation/text.h"
#include "platform/secure.h"
#include "schema/file_prefixes.h"
#include "schema/members.h"
#include "schema/record_arrays.h"

namespace {

template <typename T> T FieldOf(const ZrMod *module, T ZrMod::*field)
{
    return module == nullptr ? nullptr : module->*field;
}

// The module of that name in the context, or null.
const ZrMod *FindModule(const ZrCtx *ctx, const char *moduleName)
{
    return ctx == nullptr || moduleName == nullptr ? nullptr
                                                   : ZR_CTX_GetModuleByModName(ctx, moduleName);
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

const char *ZRS_MOD_GetImportModNameByPrefix(const ZrMod *module, const char *prefix)
{
    if (module == nullptr)
        return nullptr;
    const ZrsImport *import =
        ZRS_MOD_FindImportByPrefix(module->imports, module->importCount, prefix);
    return import == nullptr ? nullptr : import->moduleName;
}

const char *ZRS_MOD_GetModuleNameByPrefix(const ZrMod *module, const char *prefix)
{
    if (module == nullptr)
        return nullptr;
    if (module->file != nullptr)
        return zr::ModuleNameInFile(module, prefix);
    if (zr::TextEquals(module->prefix, prefix))
        return module->name;
    return ZRS_MOD_GetImportModNameByPrefix(module, prefix);
}

char *ZRS_MOD_ConvertPrefixValToJsonFormat(const ZrMod *module, const char *value)
{
    char prefix[zr::kNameSize];
    char name[zr::kNameSize];
    if (module == nullptr || value == nullptr ||
        ZR_UTL_GetXPathNextPrefixAndNode(value, prefix, sizeof(prefix), name, sizeof(name)) !=
            ZR_OK)
        return nullptr;
    const char *moduleName =
        prefix[0] == '\0' ? module->name : ZRS_MOD_GetModuleNameByPrefix(module, prefix);
    if (moduleName == nullptr)
        return nullptr;
    size_t size = PAL_StrLen(moduleName) + 1 + PAL_StrLen(name) + 1;
    zr::ScopedBlock<char> text(static_cast<char *>(zr::AllocZeroed(size)));
    if (!text || sprintf_s(text.get(), size, "%s:%s", moduleName, name) < 0)
        return nullptr;
    return text.release();
}

ZrsIdentity *ZR_CTX_FindIdentityByModNameAndIdentName(const ZrCtx *ctx, const char *moduleName,
                                                      const char *identityName)
{
    return ZRS_MOD_FindIdentityByName(FindModule(ctx, moduleName), identityName);
}

ZrsTypDef *ZR_CTX_FindTdefObjByModAndTdefName(const ZrCtx *ctx, const char *moduleName,
                                              const char *typedefName)
{
    return ZRS_MOD_FindZrsTypDefByName(FindModule(ctx, moduleName), typedefName);
}

ZrsFeature *ZR_CTX_FindFeatureByModNameAndFeatName(const ZrCtx *ctx, const char *moduleName,
                                                   const char *featureName)
{
    return ZRS_MOD_FindFeatureByName(FindModule(ctx, moduleName), featureName);
}
