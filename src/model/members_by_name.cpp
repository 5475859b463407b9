#include "model/members_by_name.h"

#include "foundation/record_arrays.h"
#include "foundation/text.h"
#include "model/file_prefixes.h"
#include "platform/memory.h"
#include "platform/secure.h"
#include "platform/text.h"

namespace {

// The module of that name in the context, or null.
const ZrMod *FindModule(const ZrCtx *ctx, const char *moduleName)
{
    return ctx == nullptr || moduleName == nullptr ? nullptr
                                                   : ZR_CTX_GetModuleByModName(ctx, moduleName);
}

} // namespace

ZrsImport *ZRS_MOD_FindImportByPrefix(ZrsImport *array, uint32_t count, const char *prefix)
{
    return zr::FindFirst(array, count, [prefix](const ZrsImport &record) {
        return zr::TextEquals(record.prefix, prefix);
    });
}

ZrsInclude *ZRS_MOD_FindIncludeBySubName(ZrsInclude *array, uint32_t count, const char *name)
{
    return zr::FindFirst(array, count, [name](const ZrsInclude &record) {
        return zr::TextEquals(record.submoduleName, name);
    });
}

ZrsExtension *ZRS_MOD_FindExtensionByName(const ZrMod *module, const char *name)
{
    if (module == nullptr)
        return nullptr;
    return zr::FindFirst(
        module->extensions, module->extensionCount,
        [name](const ZrsExtension &record) { return zr::TextEquals(record.name, name); });
}

ZrsFeature *ZRS_MOD_FindFeatureByName(const ZrMod *module, const char *name)
{
    if (module == nullptr)
        return nullptr;
    return zr::FindFirst(module->features, module->featureCount, [name](const ZrsFeature &record) {
        return zr::TextEquals(record.name, name);
    });
}

ZrsIdentity *ZRS_MOD_FindIdentityByName(const ZrMod *module, const char *name)
{
    if (module == nullptr)
        return nullptr;
    return zr::FindFirst(
        module->identities, module->identityCount,
        [name](const ZrsIdentity &record) { return zr::TextEquals(record.name, name); });
}

ZrsTypDef *ZRS_MOD_FindTypDefObjByName(ZrsTypDef *array, uint32_t count, const char *name)
{
    return zr::FindFirst(array, count, [name](const ZrsTypDef &record) {
        return zr::TextEquals(record.name, name);
    });
}

ZrsTypDef *ZRS_MOD_FindZrsTypDefByName(const ZrMod *module, const char *name)
{
    if (module == nullptr)
        return nullptr;
    return ZRS_MOD_FindTypDefObjByName(module->typedefs, module->typedefCount, name);
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
