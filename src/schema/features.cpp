// Turning features on and off. The bit in the feature's record is all that there is: whoever needs
// to know reads it each time, so nothing has to be told of a change.
#include "foundation/record_arrays.h"
#include "schema/members.h"
#include "schema/module.h"

namespace {

uint32_t Disable(ZrsFeature *feature)
{
    if (feature == nullptr)
        return ZR_ERR_INVALID;
    feature->flags = uint16_t(feature->flags & ~ZRS_FEATURE_ENABLED);
    return ZR_OK;
}

void Enable(ZrsFeature *feature)
{
    feature->flags = uint16_t(feature->flags | ZRS_FEATURE_ENABLED);
}

} // namespace

uint32_t ZR_MOD_EnableFeature(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    if (zr::TextEquals(name, "*")) {
        for (uint32_t i = 0; i < module->featureCount; ++i)
            Enable(&module->features[i]);
        return ZR_OK;
    }
    ZrsFeature *feature = ZRS_MOD_FindFeatureByName(module, name);
    if (feature == nullptr)
        return ZR_ERR_INVALID;
    Enable(feature);
    return ZR_OK;
}

// Kept: "*" is a name like any other here, so that no caller turns everything off by accident.
uint32_t ZR_MOD_DisableFeature(ZrMod *module, const char *name)
{
    return Disable(ZRS_MOD_FindFeatureByName(module, name));
}

uint32_t ZR_CTX_IsModFeatureEnable(const ZrCtx *ctx, const char *moduleName,
                                   const char *featureName)
{
    if (ctx == nullptr || moduleName == nullptr || featureName == nullptr)
        return ZR_ERR_INVALID;
    const ZrsFeature *feature =
        ZR_CTX_FindFeatureByModNameAndFeatName(ctx, moduleName, featureName);
    return feature != nullptr && (feature->flags & ZRS_FEATURE_ENABLED) != 0;
}

uint32_t ZR_CTX_DisableModFeature(ZrCtx *ctx, const char *moduleName, const char *featureName)
{
    return Disable(ZR_CTX_FindFeatureByModNameAndFeatName(ctx, moduleName, featureName));
}
