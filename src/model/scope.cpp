// SPDX-License-Identifier: Apache-2.0
#include "model/scope.h"

#include "foundation/array.h"
#include "foundation/dict.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "platform/memory.h"
#include "platform/strings.h"

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
    zr::Owned<char> text(zr::New<char>(size));
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

bool zr::IsFeatureOn(const ZrCtx *ctx, const char *moduleName, const char *featureName)
{
    const ZrsFeature *feature =
        ctx != nullptr ? ZR_CTX_FindFeatureByModNameAndFeatName(ctx, moduleName, featureName)
                       : nullptr;
    return feature != nullptr && (feature->flags & ZRS_FEATURE_ENABLED) != 0;
}

bool zr::AreFeaturesOn(const ZrCtx *ctx, const ZrsIfFeature *conditions, uint32_t count)
{
    for (uint32_t i = 0; conditions != nullptr && i < count; ++i)
        if (!IsFeatureOn(ctx, conditions[i].moduleName, conditions[i].featureName))
            return false;
    return true;
}

uint32_t zr::ImportTable::Make(const ZrsImport *imports, uint32_t capacity, Key key)
{
    uint32_t size = 8;
    while (size < 2 * capacity)
        size *= 2;
    slots_.reset();
    slots_.reset(zr::New<uint32_t>(size));
    if (!slots_)
        return ZR_ERR_NO_MEMORY;
    imports_ = imports;
    key_ = key;
    mask_ = size - 1;
    return ZR_OK;
}

uint32_t zr::ImportTable::HashOf(const ZrsImport &import) const
{
    constexpr uint32_t kOdd = 2654435761U;
    uint32_t hash = ZR_DICT_HashVal(import.prefix, 0);
    return key_ == kPrefix ? hash : hash * kOdd + ZR_DICT_HashVal(import.moduleName, 0);
}

bool zr::ImportTable::HasKeyOf(const ZrsImport &a, const ZrsImport &b) const
{
    return TextEquals(a.prefix, b.prefix) &&
           (key_ == kPrefix || TextEquals(a.moduleName, b.moduleName));
}

uint32_t *zr::ImportTable::SlotOf(const ZrsImport &wanted) const
{
    uint32_t slot = HashOf(wanted) & mask_;
    while (slots_.get()[slot] != 0 && !HasKeyOf(imports_[slots_.get()[slot] - 1], wanted))
        slot = (slot + 1) & mask_;
    return &slots_.get()[slot];
}

const ZrsImport *zr::ImportTable::FindOrAdd(uint32_t index)
{
    uint32_t *slot = SlotOf(imports_[index]);
    if (*slot != 0)
        return &imports_[*slot - 1];
    *slot = index + 1;
    return nullptr;
}

const ZrsImport *zr::ImportTable::Find(const char *prefix) const
{
    if (!slots_ || prefix == nullptr)
        return nullptr;
    uint32_t index = *SlotOf({nullptr, prefix});
    return index != 0 ? &imports_[index - 1] : nullptr;
}

const char *zr::ModuleNameInFile(const ZrMod *module, const char *prefix)
{
    for (const ZrsFilePrefixes *file = module->file; file != nullptr; file = file->including) {
        if (TextEquals(file->modulePrefix, prefix))
            return module->name;
        if (const ZrsImport *import = file->imports.Find(prefix))
            return import->moduleName;
    }
    return nullptr;
}
