// SPDX-License-Identifier: Apache-2.0
#include "print/nodes.h"

#include <zrschema/names.h>

#include <cstring>
#include <iterator>

#include "foundation/array.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "platform/strings.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"

// From node to node: which nodes are printed, the bars between them, and the levels below.

namespace {

using zr::LineWriter;

using PrintFunc = uint32_t (*)(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print);

struct PrintRow {
    ZrNodeKind kind;
    PrintFunc print; // null for the kinds that are not printed as nodes
};

constexpr PrintRow kPrintRows[] = {
    {ZR_NODE_UNKNOWN, nullptr},
    {ZR_NODE_CONTAINER, ZRS_NODE_PrintContainer},
    {ZR_NODE_LEAF, ZRS_NODE_PrintLeaf},
    {ZR_NODE_LEAF_LIST, ZRS_NODE_PrintLeafList},
    {ZR_NODE_LIST, ZRS_NODE_PrintList},
    {ZR_NODE_CHOICE, ZRS_NODE_PrintChoice},
    {ZR_NODE_CASE, ZRS_NODE_PrintCase},
    {ZR_NODE_ANYDATA, ZRS_NODE_PrintAnyDataXml},
    {ZR_NODE_ANYXML, ZRS_NODE_PrintAnyDataXml},
    {ZR_NODE_ACTION, ZRS_NODE_PrintRpcAction},
    {ZR_NODE_RPC, ZRS_NODE_PrintRpcAction},
    {ZR_NODE_NOTIFICATION, ZRS_NODE_PrintNotif},
    {ZR_NODE_INPUT, ZRS_NODE_PrintInout},
    {ZR_NODE_OUTPUT, ZRS_NODE_PrintInout},
    {ZR_NODE_AUGMENT, nullptr},
};
static_assert(std::size(kPrintRows) == ZR_NODE_AUGMENT + 1);
static_assert(zr::RowsInOrder(kPrintRows, &PrintRow::kind));

PrintFunc PrintFuncOf(const ZrNode *node)
{
    return node->kind < std::size(kPrintRows) ? kPrintRows[node->kind].print : nullptr;
}

bool IsPrinted(const ZrNode *node)
{
    return PrintFuncOf(node) != nullptr && ZR_NODE_IsEnabled(node) != 0;
}

// The bit of the mask for a level; 0 past the mask's end, where no bar is drawn
// (docs/oddities.md).
uint32_t LevelBit(uint32_t level)
{
    return level >= 1 && level <= 32 ? UINT32_C(1) << (level - 1) : 0;
}

// The mask below a node: its own level's bar goes on past its subtree when a sibling follows.
uint32_t MaskBelow(const ZrNode *node, const ZrsPrintCtx *print)
{
    bool hasBar =
        (print->flags & ZRS_PRINT_LAST_SHOWN) == 0 && zr::NextPrinted(node, nullptr) != nullptr;
    return hasBar ? print->retractMask | LevelBit(print->level) : print->retractMask;
}

// Characters of a node's printed name, with the module name and colon of another module's node.
size_t PrintedNameLength(const ZrMod *module, const ZrNode *node)
{
    size_t length = PAL_StrLen(node->name);
    if (node->module != module && node->module != nullptr)
        length += PAL_StrLen(node->module->name) + 1;
    return length;
}

// The node's children, unless only its line is asked for.
uint32_t PrintChildren(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    if ((print->flags & ZRS_PRINT_LINE_ONLY) != 0 || node->firstChild == nullptr)
        return ZR_OK;
    ZrsPrintCtx below = zr::LevelBelow(print);
    below.retractMask = MaskBelow(node, print);
    below.maxNameLength = ZRS_NODE_PrintGetMaxLen(module, node->firstChild, nullptr);
    below.accessMode = zr::ModeBelow(node, print->accessMode);
    uint32_t status = ZR_OK;
    for (const ZrNode *child = node->firstChild; child != nullptr && status == ZR_OK;
         child = child->next)
        status = ZRS_NODE_PrintSubTree(module, child, &below);
    print->usedLength = below.usedLength;
    return status;
}

// The node one level below the line of its implied case. The case's line has drawn the bar towards
// the next case, so the node draws none; its width is that of the choice's children.
uint32_t PrintUnderImpliedCase(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    ZrsPrintCtx below = zr::LevelBelow(print);
    below.retractMask = MaskBelow(node, print);
    zr::SetNodeFlags(&below, ZRS_PRINT_LAST_SHOWN | (print->flags & ZRS_PRINT_LINE_ONLY));
    uint32_t status = PrintFuncOf(node)(module, node, &below);
    print->usedLength = below.usedLength;
    return status;
}

} // namespace

namespace zr {

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

ZrsPrintCtx LevelBelow(const ZrsPrintCtx *print)
{
    ZrsPrintCtx below;
    ZRS_NODE_InheritPrintPara(&below, print);
    below.flags = print->flags & ZRS_PRINT_OPTIONS;
    below.level = print->level + 1;
    return below;
}

} // namespace zr

void ZRS_NODE_InheritPrintPara(ZrsPrintCtx *child, const ZrsPrintCtx *parent)
{
    *child = *parent;
    child->flags = 0;
}

uint32_t ZRS_NODE_PrintGetMaxLen(const ZrMod *module, const ZrNode *first, const ZrNode *last)
{
    size_t longest = 0;
    for (const ZrNode *node = first; node != nullptr; node = node != last ? node->next : nullptr) {
        if (node->kind < ZR_NODE_CONTAINER || node->kind > ZR_NODE_ANYXML)
            continue;
        if (size_t length = PrintedNameLength(module, node); length > longest)
            longest = length;
    }
    return static_cast<uint32_t>(longest);
}

uint32_t ZRS_NODE_PrintSubTree(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    if (!IsPrinted(node))
        return ZR_OK;
    if (uint32_t status = ZRS_NODE_PrintAllocBuffer(print); status != ZR_OK)
        return status;
    return zr::HasImpliedCase(node) ? ZRS_NODE_PrintCase(module, node, print)
                                    : PrintFuncOf(node)(module, node, print);
}

// The lines of the node kinds.

namespace {

void PutIndent(LineWriter &line, const ZrsPrintCtx *print)
{
    for (uint32_t level = 1; level < print->level; ++level)
        line.Put((print->retractMask & LevelBit(level)) != 0 ? "|  " : "   ");
}

const char *StatusText(const ZrNode *node)
{
    if ((node->flags & ZRS_FLAG_OBSOLETE) != 0)
        return "o";
    return (node->flags & ZRS_FLAG_DEPRECATED) != 0 ? "x" : "+";
}

const char *AccessText(const ZrNode *node, uint32_t mode)
{
    switch (mode) {
    case ZRS_PRINT_INPUT:
        return "-w ";
    case ZRS_PRINT_OUTPUT:
        return "ro ";
    default:
        return (node->flags & ZRS_FLAG_CONFIG_FALSE) != 0 ? "ro " : "rw ";
    }
}

void PutName(LineWriter &line, const ZrMod *module, const ZrNode *node)
{
    if (node->module != module && node->module != nullptr)
        line.Put(node->module->name).Put(":");
    line.Put(node->name);
}

// Indentation, status, branch, access field and name, as a data node's line begins.
void PutDataNode(LineWriter &line, const ZrMod *module, const ZrNode *node,
                 const ZrsPrintCtx *print)
{
    PutIndent(line, print);
    line.Put(StatusText(node)).Put("--").Put(AccessText(node, print->accessMode));
    PutName(line, module, node);
}

// The one-character suffix, and blanks up to the type column.
void PutSuffix(LineWriter &line, const ZrMod *module, const ZrNode *node, const ZrsPrintCtx *print,
               const char *suffix)
{
    size_t length = PrintedNameLength(module, node);
    if (length > print->maxNameLength)
        line.Fail();
    else
        line.Put(suffix).Blanks(print->maxNameLength - static_cast<uint32_t>(length) + 3);
}

void PutDefault(LineWriter &line, const char *text)
{
    if (text != nullptr)
        line.Put(" <").Put(text).Put(">");
}

// The key leafs of a list in schema order (docs/oddities.md), each followed by a blank but the
// last.
void PutKeys(LineWriter &line, const ZrNode *list)
{
    const char *separator = " [";
    for (const ZrNode *child = list->firstChild; child != nullptr; child = child->next) {
        if (child->kind == ZR_NODE_LEAF && (child->flags & ZRS_FLAG_KEY) != 0) {
            line.Put(separator).Put(child->name);
            separator = " ";
        }
    }
    line.Put(separator[1] == '[' ? " []" : "]");
}

// A line that `write` fills, and the node's children below it.
template <typename Write>
uint32_t PrintWithChildren(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print, Write write)
{
    uint32_t status = zr::PrintLine(print, write);
    return status == ZR_OK ? PrintChildren(module, node, print) : status;
}

bool IsMandatory(const ZrNode *node)
{
    return (node->flags & ZRS_FLAG_MANDATORY_TRUE) != 0;
}

void PutTypedefName(zr::LineWriter &line, const ZrMod *module, const ZrtRealType *type)
{
    const char *moduleName = nullptr;
    const char *typedefName = ZRT_TYPE_GetInheritedTypDefName(type, &moduleName);
    if (typedefName == nullptr) {
        line.Put("unknown");
        return;
    }
    if (moduleName != nullptr && std::strcmp(moduleName, module->name) != 0)
        line.Put(moduleName).Put(":");
    line.Put(typedefName);
}

} // namespace

namespace zr {

void PutType(LineWriter &line, const ZrMod *module, const ZrtRealType *type)
{
    if (type->baseType == ZRT_TYPE_DERIVED) {
        PutTypedefName(line, module, type);
        return;
    }
    const char *path =
        type->baseType == ZRT_TYPE_LEAFREF ? ZR_TYPE_GetTypeConsDataLeafrefPath(type) : nullptr;
    if (path != nullptr)
        line.Put("-> ").Put(path);
    else
        line.Put(ZR_GetBuiltInTypeName(type->baseType));
}

} // namespace zr

uint32_t ZRS_NODE_PrintContainer(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        if ((node->flags & ZRS_FLAG_PRESENCE) != 0)
            line.Put("!");
    });
}

uint32_t ZRS_NODE_PrintLeaf(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    const auto *leaf = static_cast<const ZrsLeafInfo *>(node->info);
    bool required = (node->flags & ZRS_FLAG_KEY) != 0 || IsMandatory(node);
    return zr::PrintLine(print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        PutSuffix(line, module, node, print, required ? " " : "?");
        zr::PutType(line, module, &leaf->realType);
        PutDefault(line, leaf->defaultValue);
    });
}

uint32_t ZRS_NODE_PrintLeafList(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    const auto *leafList = static_cast<const ZrsLeafListInfo *>(node->info);
    return zr::PrintLine(print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        PutSuffix(line, module, node, print, "*");
        zr::PutType(line, module, &leafList->realType);
    });
}

uint32_t ZRS_NODE_PrintList(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        line.Put("*");
        PutKeys(line, node);
    });
}

uint32_t ZRS_NODE_PrintChoice(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    const auto *choice = static_cast<const ZrsChoiceInfo *>(node->info);
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("--").Put(AccessText(node, print->accessMode)).Put("(");
        PutName(line, module, node);
        line.Put(IsMandatory(node) ? ")" : ")?");
        PutDefault(line, choice->defaultCase);
    });
}

uint32_t ZRS_NODE_PrintCase(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("--:(");
        PutName(line, module, node);
        line.Put(")");
    });
    if (status != ZR_OK)
        return status;
    return node->kind == ZR_NODE_CASE ? PrintChildren(module, node, print)
                                      : PrintUnderImpliedCase(module, node, print);
}

uint32_t ZRS_NODE_PrintAnyDataXml(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return zr::PrintLine(print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        PutSuffix(line, module, node, print, IsMandatory(node) ? " " : "?");
        line.Put(node->kind == ZR_NODE_ANYDATA ? "anydata" : "anyxml");
    });
}

uint32_t ZRS_NODE_PrintRpcAction(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("---x ");
        PutName(line, module, node);
    });
}

uint32_t ZRS_NODE_PrintNotif(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("---n ");
        PutName(line, module, node);
    });
}

uint32_t ZRS_NODE_PrintInout(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    return PrintWithChildren(module, node, print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(node->kind == ZR_NODE_INPUT ? "+---w input" : "+--ro output");
    });
}
