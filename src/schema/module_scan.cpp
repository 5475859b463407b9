// Scans over what a module holds.
#include <initializer_list>

#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node_record.h"

namespace {

uint32_t ScanTopNodes(ZrNode *head, ZrNodeScanFunc callback, void *userData)
{
    for (ZrNode *node = head; node != nullptr; node = node->next) {
        uint32_t result = callback(node, ZR_ARRIVAL_ROOT, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

} // namespace

uint32_t ZR_MOD_ScanAllExtInsts(const ZrMod *module, ZrExtInstScanFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return zr::ScanExtInsts(module->extInsts, module->extInstCount, callback, userData);
}

uint32_t ZR_MOD_IterScanTopmostNode(const ZrMod *module, ZrNodeScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    for (ZrNode *head : {module->dataNodes, module->rpcs, module->notifications}) {
        uint32_t result = ScanTopNodes(head, callback, userData);
        if (result != 0)
            return result;
    }
    return 0;
}

uint32_t ZR_MOD_IterScanAugmentNode(const ZrMod *module, ZrNodeScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    return ScanTopNodes(module->augments, callback, userData);
}

uint32_t ZR_MOD_ScanAllIdentity(const ZrMod *module, ZrIdentityScanFunc callback, void *userData)
{
    if (module == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; module->identities != nullptr && i < module->identityCount; ++i) {
        uint32_t result = callback(&module->identities[i], userData);
        if (result != 0)
            return result;
    }
    return 0;
}

uint32_t ZR_MOD_ScanIdentityBase(const ZrsIdentity *identity, ZrIdentBaseScanFunc callback,
                                 void *userData)
{
    if (identity == nullptr)
        return 0;
    if (callback == nullptr)
        return ZR_ERR_INVALID;
    for (uint32_t i = 0; identity->bases != nullptr && i < identity->baseCount; ++i) {
        const ZrsIdentBase *base = &identity->bases[i];
        uint32_t result = callback(base->moduleName, base->identityName, userData, identity->bases);
        if (result != 0)
            return result;
    }
    return 0;
}
