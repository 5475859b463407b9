// A whole module as a tree.
#include "model/module_record.h"
#include "print/line.h"
#include "print/walk.h"
#include "schema/node.h"

namespace {

using zr::LineWriter;

// Nodes of a chain at the context's level.
uint32_t PrintChain(const ZrMod *module, const ZrNode *head, ZrsPrintCtx *print)
{
    uint32_t status = ZR_OK;
    for (const ZrNode *node = head; node != nullptr && status == ZR_OK; node = node->next)
        status = ZRS_NODE_PrintSubTree(module, node, print);
    return status;
}

uint32_t PrintSection(const ZrMod *module, const char *title, const ZrNode *head,
                      ZrsPrintCtx *print)
{
    if (head == nullptr)
        return ZR_OK;
    uint32_t status = ZRS_NODE_PrintAllocBuffer(print);
    if (status == ZR_OK)
        status = zr::PrintLine(print, [&](LineWriter &line) { line.Put(title); });
    return status == ZR_OK ? PrintChain(module, head, print) : status;
}

// The access mode inside a node: the nearest input, output or notification from it upward decides.
uint32_t ModeInside(const ZrNode *node)
{
    uint32_t mode = ZRS_PRINT_CONFIG;
    for (; node != nullptr && mode == ZRS_PRINT_CONFIG; node = node->parent)
        mode = zr::ModeBelow(node, mode);
    return mode;
}

// The nodes that an augment adds. Nodes of other modules may follow in a coupled augment's target;
// the last own one draws no bar towards them.
uint32_t PrintAddedNodes(const ZrMod *module, const ZrNode *augment, ZrsPrintCtx *print)
{
    const ZrNode *last = augment->lastChild;
    const ZrNode *node = zr::FirstPrinted(augment->firstChild, last);
    uint32_t status = ZR_OK;
    while (node != nullptr && status == ZR_OK) {
        const ZrNode *next = zr::NextPrinted(node, last);
        print->flags = 0;
        if (next == nullptr)
            print->flags = ZRS_PRINT_LAST_SHOWN;
        status = ZRS_NODE_PrintSubTree(module, node, print);
        node = next;
    }
    return status;
}

uint32_t PrintModule(const ZrMod *module, ZrsPrintCtx *print)
{
    uint32_t status =
        zr::PrintLine(print, [&](LineWriter &line) { line.Put("module: ").Put(module->name); });
    if (status == ZR_OK)
        status = ZRS_MOD_PrintModelTreeDataAug(module, print);
    if (status == ZR_OK)
        status = ZRS_MOD_PrintModelTreeRpcNotif(module, print);
    return status;
}

} // namespace

uint32_t ZRS_NODE_PrintAugmentTree(const ZrMod *module, const ZrNode *augment, ZrsPrintCtx *print)
{
    if (ZR_NODE_IsEnabled(augment) == 0)
        return ZR_OK;
    uint32_t status = ZRS_NODE_PrintAllocBuffer(print);
    if (status == ZR_OK)
        status = zr::PrintLine(
            print, [&](LineWriter &line) { line.Put("augment ").Put(augment->name).Put(":"); });
    if (status != ZR_OK || augment->firstChild == nullptr)
        return status;
    ZrsPrintCtx below;
    ZRS_NODE_InheritPrintPara(&below, print);
    below.retractMask = 0;
    below.level = 1;
    below.maxNameLength = ZRS_NODE_PrintGetMaxLen(module, augment->firstChild, augment->lastChild);
    below.accessMode = ModeInside(augment->firstChild->parent); // the target once it is coupled
    status = PrintAddedNodes(module, augment, &below);
    print->usedLength = below.usedLength;
    return status;
}

uint32_t ZRS_MOD_PrintModelTreeDataAug(const ZrMod *module, ZrsPrintCtx *print)
{
    uint32_t status = PrintChain(module, module->dataNodes, print);
    for (const ZrNode *augment = module->augments; augment != nullptr && status == ZR_OK;
         augment = augment->next)
        status = ZRS_NODE_PrintAugmentTree(module, augment, print);
    return status;
}

uint32_t ZRS_MOD_PrintModelTreeRpcNotif(const ZrMod *module, ZrsPrintCtx *print)
{
    uint32_t status = PrintSection(module, "rpcs:", module->rpcs, print);
    return status == ZR_OK ? PrintSection(module, "notifications:", module->notifications, print)
                           : status;
}

uint32_t ZR_MOD_PrintModelTree(const ZrMod *module, ZrPrintFunc callback, void *userData)
{
    if (module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return zr::RunPrint(callback, userData, [&](ZrsPrintCtx *print) {
        print->maxNameLength = ZRS_NODE_PrintGetMaxLen(module, module->dataNodes, nullptr);
        return PrintModule(module, print);
    });
}
