// SPDX-License-Identifier: Apache-2.0
// The public functions. Nothing that is thrown goes beyond them: memory that runs out becomes a
// status.
#include <zrdata/zrdata.h>

#include <climits>

#include "instance/check/input.h"
#include "instance/errors/result.h"
#include "instance/errors/rpc_error.h"
#include "instance/library/boundary.h"
#include "instance/plan/maker.h"

using namespace zr::data;

namespace {

constexpr ZrDataMemory kMalloc = zr::MallocHooks<ZrDataMemory>();

bool IsUsable(const Plan &plan, const ZrDataOptions &options)
{
    auto *datastore = static_cast<const xmlNode *>(options.datastore);
    if (datastore != nullptr && datastore->type != XML_ELEMENT_NODE)
        return false;
    if (options.kind == ZR_DATA_REPLY)
        return options.operation != nullptr && plan.FindOperation(options.operation) != nullptr;
    return IsKnownKind(options.kind);
}

// Makes a result of what `work` finds.
template <typename Work>
uint32_t Check(const ZrDataPlan *plan, const ZrDataOptions *options, ZrDataResult **resultOut,
               Work work)
{
    if (resultOut == nullptr)
        return ZR_DATA_ERR_INVALID;
    *resultOut = nullptr;
    if (plan == nullptr || options == nullptr)
        return ZR_DATA_ERR_INVALID;
    if (StampOf(plan->plan.ctx) != plan->plan.stamp)
        return ZR_DATA_ERR_STALE;
    if (!IsUsable(plan->plan, *options))
        return ZR_DATA_ERR_INVALID;
    const ZrDataMemory &hooks = plan->plan.memory.hooks();
    ZrDataResult *result = Construct<ZrDataResult>(hooks);
    if (result == nullptr)
        return ZR_DATA_ERR_NO_MEMORY;
    uint32_t status = Guard([&]() -> uint32_t {
        Run run(plan->plan, *options, &result->result.memory);
        work(run);
        result->result.Take(run.faults, run.warnings);
        return result->result.errorsFound == 0 ? ZR_DATA_OK : ZR_DATA_ERR_FAULTY;
    });
    if (status == ZR_DATA_ERR_NO_MEMORY)
        Destroy(result, hooks);
    else
        *resultOut = result;
    return status;
}

} // namespace

uint32_t ZR_DATA_CreatePlan(const ZrCtx *ctx, const ZrDataMemory *memory, ZrDataPlan **planOut)
{
    if (planOut == nullptr)
        return ZR_DATA_ERR_INVALID;
    *planOut = nullptr;
    const ZrDataMemory &hooks = memory != nullptr ? *memory : kMalloc;
    if (ctx == nullptr || hooks.allocate == nullptr || hooks.release == nullptr)
        return ZR_DATA_ERR_INVALID;
    ZrDataPlan *plan = Construct<ZrDataPlan>(hooks);
    if (plan == nullptr)
        return ZR_DATA_ERR_NO_MEMORY;
    uint32_t status = Guard([&]() -> uint32_t {
        MakePlan(plan->plan, ctx);
        return ZR_DATA_OK;
    });
    if (status == ZR_DATA_OK)
        *planOut = plan;
    else
        Destroy(plan, hooks);
    return status;
}

void ZR_DATA_DeletePlan(ZrDataPlan *plan)
{
    if (plan != nullptr)
        Destroy(plan, ZrDataMemory(plan->plan.memory.hooks()));
}

uint32_t ZR_DATA_IsPlanCurrent(const ZrDataPlan *plan)
{
    return plan != nullptr && StampOf(plan->plan.ctx) == plan->plan.stamp;
}

uint32_t ZR_DATA_ScanPlanProblems(const ZrDataPlan *plan, ZrDataProblemFunc callback, void *user)
{
    if (plan == nullptr || callback == nullptr)
        return ZR_DATA_ERR_INVALID;
    for (const Problem &problem : plan->plan.problems) {
        int answer = callback(problem.path, problem.expression, problem.message, user);
        if (answer != 0)
            return static_cast<uint32_t>(answer);
    }
    return ZR_DATA_OK;
}

uint32_t ZR_DATA_CheckText(const ZrDataPlan *plan, const ZrDataOptions *options, const char *text,
                           size_t length, ZrDataResult **resultOut)
{
    if (resultOut != nullptr)
        *resultOut = nullptr;
    if (text == nullptr || length > INT_MAX)
        return ZR_DATA_ERR_INVALID;
    XmlDoc doc(nullptr, xmlFreeDoc); // there until the lines of the faults are known
    return Check(plan, options, resultOut, [&](Run &run) { CheckXml(run, {text, length}, doc); });
}

uint32_t ZR_DATA_CheckJson(const ZrDataPlan *plan, const ZrDataOptions *options, const char *text,
                           size_t length, ZrDataResult **resultOut)
{
    if (resultOut != nullptr)
        *resultOut = nullptr;
    if (text == nullptr || length > INT_MAX)
        return ZR_DATA_ERR_INVALID;
    return Check(plan, options, resultOut, [&](Run &run) { CheckJson(run, {text, length}); });
}

uint32_t ZR_DATA_CheckTree(const ZrDataPlan *plan, const ZrDataOptions *options, const void *root,
                           ZrDataResult **resultOut)
{
    if (resultOut != nullptr)
        *resultOut = nullptr;
    auto *wrapper = static_cast<const xmlNode *>(root);
    if (wrapper == nullptr || wrapper->type != XML_ELEMENT_NODE)
        return ZR_DATA_ERR_INVALID;
    return Check(plan, options, resultOut, [&](Run &run) { CheckDocument(run, *wrapper); });
}

void ZR_DATA_DeleteResult(ZrDataResult *result)
{
    if (result != nullptr)
        Destroy(result, ZrDataMemory(result->result.memory.hooks()));
}

namespace {

template <typename List> size_t Count(const List &kept, size_t found, size_t *foundOut)
{
    if (foundOut != nullptr)
        *foundOut = found;
    return kept.size();
}

template <typename List> const ZrDataError *At(const List &kept, size_t index)
{
    return index < kept.size() ? &kept[index] : nullptr;
}

} // namespace

size_t ZR_DATA_GetErrorCount(const ZrDataResult *result, size_t *foundOut)
{
    if (foundOut != nullptr)
        *foundOut = 0;
    return result == nullptr ? 0
                             : Count(result->result.errors, result->result.errorsFound, foundOut);
}

const ZrDataError *ZR_DATA_GetError(const ZrDataResult *result, size_t index)
{
    return result == nullptr ? nullptr : At(result->result.errors, index);
}

size_t ZR_DATA_GetWarningCount(const ZrDataResult *result, size_t *foundOut)
{
    if (foundOut != nullptr)
        *foundOut = 0;
    return result == nullptr
               ? 0
               : Count(result->result.warnings, result->result.warningsFound, foundOut);
}

const ZrDataError *ZR_DATA_GetWarning(const ZrDataResult *result, size_t index)
{
    return result == nullptr ? nullptr : At(result->result.warnings, index);
}

const char *ZR_DATA_GetTagName(uint32_t tag)
{
    return NameOfTag(tag);
}

const char *ZR_DATA_GetErrorXml(const ZrDataResult *result, size_t index)
{
    return result == nullptr || index >= result->result.errorTexts.size()
               ? nullptr
               : result->result.errorTexts[index];
}
