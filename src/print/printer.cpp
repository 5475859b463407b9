// SPDX-License-Identifier: Apache-2.0
#include "print/printer.h"

#include "model/module_records.h"
#include "model/node_record.h"
#include "platform/memory.h"
#include "print/line.h"
#include "print/nodes.h"
#include "schema/nodes/node.h"

namespace {

using zr::LineWriter;

// One printing from the empty buffer to the last piece: ZR_ERR_NO_MEMORY for the buffer,
// ZR_ERR_FAILED when `body`, called with the context of a top-level node, or the last callback
// fails.
template <typename Body> uint32_t RunPrint(ZrPrintFunc callback, void *userData, Body body)
{
    zr::Owned<char> buffer(zr::New<char>(ZRS_PRINT_BUFFER_SIZE));
    if (!buffer)
        return ZR_ERR_NO_MEMORY;
    ZrsPrintCtx print = {};
    print.level = 1;
    print.bufferSize = ZRS_PRINT_BUFFER_SIZE;
    print.buffer = buffer.get();
    print.userData = userData;
    print.callback = callback;
    if (body(&print) != ZR_OK || zr::FlushPrint(&print) != ZR_OK)
        return ZR_ERR_FAILED;
    return ZR_OK;
}

} // namespace

// A whole module as a tree.

namespace {

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
        zr::SetNodeFlags(print, next == nullptr ? uint32_t{ZRS_PRINT_LAST_SHOWN} : 0);
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
    ZrsPrintCtx below = zr::LevelBelow(print);
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
    return RunPrint(callback, userData, [&](ZrsPrintCtx *print) {
        print->maxNameLength = ZRS_NODE_PrintGetMaxLen(module, module->dataNodes, nullptr);
        return PrintModule(module, print);
    });
}

// One node with its ancestors and everything below it.

namespace {

uint32_t DepthOf(const ZrNode *node)
{
    uint32_t depth = 0;
    for (; node != nullptr; node = node->parent)
        ++depth;
    return depth;
}

const ZrNode *TopOf(const ZrNode *node)
{
    while (node->parent != nullptr)
        node = node->parent;
    return node;
}

const ZrNode *FirstSibling(const ZrNode *node)
{
    if (node->parent != nullptr)
        return node->parent->firstChild;
    while (node->prev != nullptr)
        node = node->prev;
    return node;
}

bool AncestorsAreEnabled(const ZrNode *node)
{
    for (const ZrNode *parent = node->parent; parent != nullptr; parent = parent->parent) {
        if (ZR_NODE_IsEnabled(parent) == 0)
            return false;
    }
    return true;
}

// The line that opens the part of the tree where the top-level node stands, null for data nodes.
const char *SectionTitle(const ZrNode *top)
{
    switch (top->kind) {
    case ZR_NODE_RPC:
        return "rpcs:";
    case ZR_NODE_NOTIFICATION:
        return "notifications:";
    default:
        return nullptr;
    }
}

// The tree is that of the module where the node stands: a node that another module's augment has
// put there is printed with that module's name, as in the whole module's tree.
uint32_t PrintNode(const ZrNode *node, ZrsPrintCtx *print)
{
    const ZrMod *module = TopOf(node)->module;
    uint32_t status = ZR_NODE_PrintNodeHeader(node, print);
    if (status == ZR_OK)
        status = ZRS_NODE_PrintAncestorNodes(module, node, print);
    if (status == ZR_OK && AncestorsAreEnabled(node)) {
        print->maxNameLength = ZRS_NODE_PrintGetMaxLen(module, FirstSibling(node), nullptr);
        zr::SetNodeFlags(print, ZRS_PRINT_LAST_SHOWN);
        status = ZRS_NODE_PrintSubTree(module, node, print);
    }
    return status;
}

} // namespace

const ZrNode *ZRS_NODE_GetAncestorNodeBySpecifyLevel(const ZrNode *node, uint32_t level)
{
    uint32_t depth = DepthOf(node);
    if (level == 0 || level > depth)
        return nullptr;
    for (; depth > level; --depth)
        node = node->parent;
    return node;
}

uint32_t ZR_NODE_PrintNodeHeader(const ZrNode *node, ZrsPrintCtx *print)
{
    const ZrNode *top = TopOf(node);
    if (top->kind == ZR_NODE_AUGMENT || top->module == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = zr::PrintLine(
        print, [&](LineWriter &line) { line.Put("module: ").Put(top->module->name); });
    const char *title = SectionTitle(top);
    if (status != ZR_OK || title == nullptr)
        return status;
    return zr::PrintLine(print, [&](LineWriter &line) { line.Put(title); });
}

uint32_t ZRS_NODE_PrintAncestorNodes(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    uint32_t depth = DepthOf(node);
    for (uint32_t level = 1; level < depth; ++level) {
        const ZrNode *ancestor = ZRS_NODE_GetAncestorNodeBySpecifyLevel(node, level);
        if (ZR_NODE_IsEnabled(ancestor) == 0)
            return ZR_OK; // nothing below a disabled node is printed
        zr::SetNodeFlags(print, ZRS_PRINT_LINE_ONLY | ZRS_PRINT_LAST_SHOWN);
        if (uint32_t status = ZRS_NODE_PrintSubTree(module, ancestor, print); status != ZR_OK)
            return status;
        print->level += zr::HasImpliedCase(ancestor) ? 2 : 1;
        print->accessMode = zr::ModeBelow(ancestor, print->accessMode);
    }
    return ZR_OK;
}

uint32_t ZR_NODE_PrintNodesTree(const ZrNode *node, ZrPrintFunc callback, void *userData)
{
    if (node == nullptr || node->module == nullptr || callback == nullptr)
        return ZR_ERR_INVALID;
    return RunPrint(callback, userData, [&](ZrsPrintCtx *print) { return PrintNode(node, print); });
}
