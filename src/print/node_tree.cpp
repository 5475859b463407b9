// One node with its ancestors and everything below it.
#include "model/module_record.h"
#include "print/line.h"
#include "print/walk.h"
#include "schema/node.h"

namespace {

using zr::LineWriter;

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
        print->flags = ZRS_PRINT_LAST_SHOWN;
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
        print->flags = ZRS_PRINT_LINE_ONLY | ZRS_PRINT_LAST_SHOWN;
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
    return zr::RunPrint(callback, userData,
                        [&](ZrsPrintCtx *print) { return PrintNode(node, print); });
}
