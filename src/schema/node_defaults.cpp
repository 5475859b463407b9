// The defaults of a leaf-list (RFC 7950, section 7.7.4), which deviations add and take away.
#include "foundation/array.h"
#include "platform/memory.h"
#include "schema/node.h"

uint32_t ZRS_NODE_AppendLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info,
                                         const char *const *values, uint32_t count)
{
    if (dict == nullptr || info == nullptr || (values == nullptr && count != 0) ||
        count > UINT32_C(0xffff) - info->defaultCount)
        return ZR_ERR_INVALID;
    uint32_t oldCount = info->defaultCount;
    if (uint32_t status = zr::ExpandArray(&info->defaults, oldCount, count); status != ZR_OK)
        return status;
    for (uint32_t i = 0; i < count; ++i) {
        const char *value = ZR_DICT_Insert(dict, values[i]);
        if (value == nullptr) {
            while (i > 0)
                zr::Release(dict, info->defaults[oldCount + --i]);
            if (oldCount == 0) {
                zr::Free(info->defaults);
                info->defaults = nullptr;
            }
            return ZR_ERR_NO_MEMORY;
        }
        info->defaults[oldCount + i] = value;
    }
    info->defaultCount = static_cast<uint16_t>(oldCount + count);
    return ZR_OK;
}

uint32_t ZRS_NODE_SubtractLeaflistDefaults(ZrDict *dict, ZrsLeafListInfo *info, uint32_t newCount)
{
    if (dict == nullptr || info == nullptr)
        return ZR_ERR_INVALID;
    uint32_t kept = 0;
    for (uint32_t i = 0; i < info->defaultCount; ++i)
        kept += info->defaults[i] != nullptr ? 1 : 0;
    if (kept != newCount)
        return ZR_ERR_INVALID;
    // Closing up in place cannot fail, so a deviation never ends half done for want of memory.
    uint32_t filled = 0;
    for (uint32_t i = 0; i < info->defaultCount; ++i) {
        const char *value = info->defaults[i];
        if (value != nullptr)
            info->defaults[filled++] = value;
    }
    info->defaultCount = static_cast<uint16_t>(newCount);
    if (newCount == 0) {
        zr::Free(info->defaults);
        info->defaults = nullptr;
    }
    return ZR_OK;
}
