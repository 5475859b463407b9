// "deviate add": properties that the target does not have yet.
#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "platform/memory.h"
#include "schema/deviation/deviation_steps.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

namespace {

// clang-format off
constexpr zr::DeviateStep kAddSteps[] = {
    // property            step                          summary of a failure
    {zr::CarriesFlags,     ZRS_MOD_CoupleDevAddFlag,     "Failed to add config or mandatory to node \"%s\"."},
    {zr::CarriesDefaults,  ZRS_MOD_CoupleDevAddDefaults, "Failed to add default statements to node \"%s\"."},
    {zr::CarriesMusts,     ZRS_MOD_CoupleDevAddMusts,    "Failed to add must statements to node \"%s\"."},
    {zr::CarriesUnits,     ZRS_MOD_CoupleDevAddUnits,    "Failed to add units statement to node \"%s\"."},
    {zr::CarriesExtInsts,  ZRS_MOD_CoupleDevAddExtInsts, "Failed to deviate-add extension-instance to node \"%s\"."},
};
// clang-format on

constexpr zr::DefaultsByKind kAddDefaults = {ZRS_MOD_AddChoiceDefault, ZRS_MOD_AddLeafDefault,
                                             ZRS_MOD_AddLeaflistDefaults};

struct SingleDefaultMessages {
    const char *tooMany;
    const char *present;
};

uint32_t AddSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                          const SingleDefaultMessages &messages)
{
    if (deviate->defaultCount > 1) {
        zr::RefuseDeviate(module, target, messages.tooMany);
        return ZR_OK; // kept: recorded, but coupling goes on
    }
    const char **slot = zr::DefaultSlot(target);
    if (*slot != nullptr)
        return zr::RefuseDeviate(module, target, messages.present);
    return zr::ReplaceText(module, *slot, deviate->defaults[0]);
}

uint32_t AddConfig(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target)
{
    if ((target->flags & ZRS_FLAG_CONFIG_GIVEN) != 0)
        return zr::RefuseDeviate(
            module, target,
            "Failed to add config to node \"%s\", because it had been set config statement.");
    zr::SetDeviatedConfig(target, deviate->flags);
    return ZR_OK;
}

bool HasDefault(const ZrsLeafListInfo *info, const char *value)
{
    for (uint32_t i = 0; i < info->defaultCount; ++i) {
        if (zr::TextEquals(info->defaults[i], value))
            return true;
    }
    return false;
}

} // namespace

uint32_t ZRS_MOD_CoupleDevAdd(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunDeviateSteps(kAddSteps, module, deviate, target);
}

uint32_t ZRS_MOD_CoupleDevAddFlag(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t status = ZR_OK;
    if ((deviate->flags & ZRS_FLAGS_CONFIG) != 0)
        status = AddConfig(module, deviate, target);
    if (status == ZR_OK && (deviate->flags & ZRS_FLAGS_MANDATORY) != 0)
        status = ZRS_MOD_AddNodeMandatory(module, deviate, target);
    return status;
}

uint32_t ZRS_MOD_AddNodeMandatory(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    if ((target->flags & ZRS_FLAGS_MANDATORY) != 0)
        return zr::RefuseDeviate(module, target, "Failed to add mandatory flag to node \"%s\".");
    target->flags |= deviate->flags & ZRS_FLAGS_MANDATORY;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevAddDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunByKind(kAddDefaults, module, deviate, target);
}

uint32_t ZRS_MOD_AddChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return AddSingleDefault(
        module, deviate, target,
        {"Failed to add default to choice node \"%s\", because the number of default to be added > "
         "1.",
         "Failed to add default to choice node \"%s\", because it had been set default "
         "statement."});
}

uint32_t ZRS_MOD_AddLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    // Kept: two blanks after the comma of the first text.
    return AddSingleDefault(
        module, deviate, target,
        {"Failed to add default to leaf node \"%s\",  because the number of default to be added > "
         "1.",
         "Failed to add default to leaf node \"%s\", because it had been set default statement."});
}

uint32_t ZRS_MOD_AddLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrsLeafListInfo *info = zr::LeafListOf(target);
    for (uint32_t i = 0; i < deviate->defaultCount; ++i) {
        if (HasDefault(info, deviate->defaults[i]))
            return zr::RefuseDeviate(
                module, target,
                "Failed to add default to node \"%s\", because this value already exists.");
    }
    return ZRS_NODE_AppendLeaflistDefaults(&module->ctx->dict, info, deviate->defaults,
                                           deviate->defaultCount);
}

uint32_t ZRS_MOD_CoupleDevAddMusts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    for (uint32_t i = 0; i < deviate->mustCount; ++i) {
        uint32_t status = ZRS_NODE_AppendOneMust(&module->ctx->dict, &target->musts,
                                                 &target->mustCount, &deviate->musts[i]);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevAddUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    const char **units = zr::UnitsSlot(target);
    if (units == nullptr)
        return ZR_ERR_FAILED;
    if (*units != nullptr)
        return zr::RefuseDeviate(
            module, target, "Failed to add units to node \"%s\", because it already has units.");
    return zr::ReplaceText(module, *units, deviate->units);
}

void ZRS_NODE_NotifyBeforeExtInstsChange(ZrNode *node)
{
    if (node == nullptr || node->module == nullptr || node->module->ctx == nullptr)
        return;
    ZrCtx *ctx = node->module->ctx;
    if (ctx->beforeDeviateExtInstFunc != nullptr)
        ctx->beforeDeviateExtInstFunc(ctx, node, ctx);
}

uint32_t ZRS_MOD_CoupleDevAddExtInsts(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t status = ZR_OK;
    bool told = false;
    bool nacm = false;
    for (uint32_t i = 0; i < deviate->extInstCount && status == ZR_OK; ++i) {
        const ZrsExtInst *instance = &deviate->extInsts[i];
        if (ZRS_EXT_FindSameExtInstInArray(target->extInsts, target->extInstCount, instance) !=
            nullptr)
            continue;
        if (!told)
            ZRS_NODE_NotifyBeforeExtInstsChange(target);
        told = true;
        status = ZRS_EXT_MergeOneExtInstToArray(&module->ctx->dict, &target->extInsts,
                                                &target->extInstCount, instance);
        if (status == ZR_OK && zr::IsNacmInstance(instance)) {
            zr::AddDeviatedNacm(target, instance->moduleName, instance->extensionName);
            nacm = true;
        }
    }
    if (nacm)
        ZRS_NODE_UpdateFlag(target);
    return status;
}

// "deviate replace": other values for properties that the target has.

namespace {

// clang-format off
constexpr zr::DeviateStep kReplaceSteps[] = {
    // property            step                          summary of a failure
    {zr::CarriesDefaults,  ZRS_MOD_CoupleDevReplDefault, "Failed to replace default of node \"%s\"."},
    {zr::CarriesType,      ZRS_MOD_CoupleDevReplType,    "Failed to replace type of node \"%s\"."},
    {zr::CarriesUnits,     ZRS_MOD_CoupleDevReplUnits,   "Failed to replace units of node \"%s\"."},
};
// clang-format on

constexpr zr::DefaultsByKind kReplaceDefaults = {ZRS_MOD_ReplChoiceDefault, ZRS_MOD_ReplLeafDefault,
                                                 ZRS_MOD_ReplLeaflistDefaults};

uint32_t ReplaceSingleDefault(ZrMod *module, const ZrsDeviate *deviate, ZrNode *target,
                              const zr::SingleDefaultMessages &messages)
{
    return zr::ChangeSingleDefault(module, deviate, target, messages, [=](const char *&slot) {
        return zr::ReplaceText(module, slot, deviate->defaults[0]);
    });
}

void FreeDefaults(ZrDict *dict, ZrsLeafListInfo *info)
{
    zr::FreeRecords(info->defaults, info->defaultCount,
                    [dict](const char **value) { zr::Release(dict, *value); });
    info->defaults = nullptr;
    info->defaultCount = 0;
}

} // namespace

uint32_t ZRS_MOD_CoupleDevRepl(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    if (module == nullptr || deviate == nullptr || target == nullptr)
        return ZR_ERR_INVALID;
    ZRS_MOD_CoupleDevReplFlag(deviate, target);
    return zr::RunDeviateSteps(kReplaceSteps, module, deviate, target);
}

void ZRS_MOD_CoupleDevReplFlag(const ZrsDeviate *deviate, ZrNode *target)
{
    ZRS_MOD_ReplNodeConfig(deviate, target);
    ZRS_MOD_ReplNodeMandatory(deviate, target);
}

void ZRS_MOD_ReplNodeConfig(const ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t config = deviate->flags & ZRS_FLAGS_CONFIG;
    if (config == 0)
        return;
    // An equal one changes nothing now, but holds when another deviation changes the parent's.
    bool isEqual = config == (target->flags & ZRS_FLAGS_CONFIG);
    zr::SetDeviatedConfig(target, isEqual ? target->flags : deviate->flags);
}

void ZRS_MOD_ReplNodeMandatory(const ZrsDeviate *deviate, ZrNode *target)
{
    uint32_t mandatory = deviate->flags & ZRS_FLAGS_MANDATORY;
    if (mandatory != 0)
        target->flags = (target->flags & ~ZRS_FLAGS_MANDATORY) | mandatory;
}

uint32_t ZRS_MOD_CoupleDevReplDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return zr::RunByKind(kReplaceDefaults, module, deviate, target);
}

uint32_t ZRS_MOD_ReplChoiceDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return ReplaceSingleDefault(
        module, deviate, target,
        {"Failed to replace default of choice node \"%s\", because default number > 1.",
         "Failed to replace default of choice node \"%s\" without default value."});
}

uint32_t ZRS_MOD_ReplLeafDefault(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    return ReplaceSingleDefault(
        module, deviate, target,
        {"Failed to replace default of leaf node \"%s\", because the number of defaults to be "
         "deleted > 1.",
         "Failed to replace default of leaf node \"%s\" without default value."});
}

uint32_t ZRS_MOD_ReplLeaflistDefaults(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrDict *dict = &module->ctx->dict;
    ZrsLeafListInfo *info = zr::LeafListOf(target);
    if (info->defaultCount == 0)
        return zr::RefuseDeviate(module, target,
                                 "Failed to replace defaults of leaf-list node \"%s\".");
    // The new values first, so that the old ones stay when memory runs out.
    ZrsLeafListInfo fresh{};
    uint32_t status =
        ZRS_NODE_AppendLeaflistDefaults(dict, &fresh, deviate->defaults, deviate->defaultCount);
    if (status != ZR_OK)
        return status;
    FreeDefaults(dict, info);
    info->defaults = fresh.defaults;
    info->defaultCount = fresh.defaultCount;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevReplType(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    ZrtRealType *type = zr::RealTypeSlot(target);
    if (type == nullptr)
        return ZR_ERR_FAILED;
    ZrtRealType copy{};
    uint32_t status = ZRT_TYPE_CopyZrtRealTypeInner(module->ctx, &copy, deviate->type);
    if (status != ZR_OK)
        return status;
    // A copy holds no pointer to a typedef: its reference is looked up by name at each validation,
    // so that nothing is left behind when the deviating module goes.
    ZRT_TYPE_DestroyZrtRealTypeInner(module->ctx, type);
    *type = copy;
    return ZR_OK;
}

uint32_t ZRS_MOD_CoupleDevReplUnits(ZrMod *module, ZrsDeviate *deviate, ZrNode *target)
{
    const char **units = zr::UnitsSlot(target);
    if (units == nullptr || *units == nullptr)
        return ZR_ERR_FAILED;
    return zr::ReplaceText(module, *units, deviate->units);
}
