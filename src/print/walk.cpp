// From node to node: which nodes are printed, the bars between them, and the levels below.
#include "print/walk.h"

#include <iterator>

#include "model/module_records.h"
#include "print/line.h"
#include "schema/nodes/node.h"

namespace {

using PrintFunc = uint32_t (*)(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);

// Indexed by node kind; null for the kinds that are not printed as nodes.
constexpr PrintFunc kPrintFuncs[] = {
    nullptr,                  // unknown
    ZRS_NODE_PrintContainer,  // container
    ZRS_NODE_PrintLeaf,       // leaf
    ZRS_NODE_PrintLeafList,   // leaf-list
    ZRS_NODE_PrintList,       // list
    ZRS_NODE_PrintChoice,     // choice
    ZRS_NODE_PrintCase,       // case
    ZRS_NODE_PrintAnyDataXml, // anydata
    ZRS_NODE_PrintAnyDataXml, // anyxml
    ZRS_NODE_PrintRpcAction,  // action
    ZRS_NODE_PrintRpcAction,  // rpc
    ZRS_NODE_PrintNotif,      // notification
    ZRS_NODE_PrintInout,      // input
    ZRS_NODE_PrintInout,      // output
    nullptr,                  // augment
};
static_assert(std::size(kPrintFuncs) == ZR_NODE_AUGMENT + 1);

PrintFunc PrintFuncOf(const ZrNode *node)
{
    return node->kind < std::size(kPrintFuncs) ? kPrintFuncs[node->kind] : nullptr;
}

bool IsPrinted(const ZrNode *node)
{
    return PrintFuncOf(node) != nullptr && ZR_NODE_IsEnabled(node) != 0;
}

// The mask below a node: its own level's bar goes on past its subtree when a sibling follows.
uint32_t MaskBelow(const ZrNode *node, const ZrsPrintCtx *print)
{
    bool hasBar =
        (print->flags & ZRS_PRINT_LAST_SHOWN) == 0 && zr::NextPrinted(node, nullptr) != nullptr;
    return hasBar ? print->retractMask | zr::LevelBit(print->level) : print->retractMask;
}

} // namespace

namespace zr {

uint32_t LevelBit(uint32_t level)
{
    return level >= 1 && level <= 32 ? UINT32_C(1) << (level - 1) : 0;
}

const ZrNode *FirstPrinted(const ZrNode *first, const ZrNode *last)
{
    return first == nullptr || IsPrinted(first) ? first : NextPrinted(first, last);
}

const ZrNode *NextPrinted(const ZrNode *node, const ZrNode *last)
{
    while (node != last && node->next != nullptr) {
        node = node->next;
        if (IsPrinted(node))
            return node;
    }
    return nullptr;
}

bool HasImpliedCase(const ZrNode *node)
{
    return node->kind != ZR_NODE_CASE && node->parent != nullptr &&
           node->parent->kind == ZR_NODE_CHOICE;
}

uint32_t ModeBelow(const ZrNode *node, uint32_t mode)
{
    switch (node->kind) {
    case ZR_NODE_INPUT:
        return ZRS_PRINT_INPUT;
    case ZR_NODE_OUTPUT:
    case ZR_NODE_NOTIFICATION:
        return ZRS_PRINT_OUTPUT;
    default:
        return mode;
    }
}

uint32_t PrintChildren(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    if ((print->flags & ZRS_PRINT_LINE_ONLY) != 0 || node->firstChild == nullptr)
        return ZR_OK;
    ZrsPrintCtx below;
    ZRS_NODE_InheritPrintPara(&below, print);
    below.retractMask = MaskBelow(node, print);
    below.level = print->level + 1;
    below.maxNameLength = ZRS_NODE_PrintGetMaxLen(module, node->firstChild, nullptr);
    below.accessMode = ModeBelow(node, print->accessMode);
    uint32_t status = ZR_OK;
    for (const ZrNode *child = node->firstChild; child != nullptr && status == ZR_OK;
         child = child->next)
        status = ZRS_NODE_PrintSubTree(module, child, &below);
    print->usedLength = below.usedLength;
    return status;
}

uint32_t PrintUnderImpliedCase(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    ZrsPrintCtx below;
    ZRS_NODE_InheritPrintPara(&below, print);
    below.retractMask = MaskBelow(node, print);
    below.level = print->level + 1;
    below.flags = ZRS_PRINT_LAST_SHOWN | (print->flags & ZRS_PRINT_LINE_ONLY);
    uint32_t status = PrintFuncOf(node)(module, node, &below);
    print->usedLength = below.usedLength;
    return status;
}

} // namespace zr

uint32_t ZRS_NODE_PrintSubTree(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    if (!IsPrinted(node))
        return ZR_OK;
    if (uint32_t status = ZRS_NODE_PrintAllocBuffer(print); status != ZR_OK)
        return status;
    return zr::HasImpliedCase(node) ? ZRS_NODE_PrintCase(module, node, print)
                                    : PrintFuncOf(node)(module, node, print);
}
