// The lines of the node kinds.
#include <zrschema/names.h>

#include <cstring>

#include "model/module_records.h"
#include "model/node_record.h"
#include "print/line.h"
#include "print/walk.h"
#include "types/real_type.h"

namespace {

using zr::LineWriter;

void PutIndent(LineWriter &line, const ZrsPrintCtx *print)
{
    for (uint32_t level = 1; level < print->level; ++level)
        line.Put((print->retractMask & zr::LevelBit(level)) != 0 ? "|  " : "   ");
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
    size_t length = zr::PrintedNameLength(module, node);
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

// The key leafs of a list in schema order, each followed by a blank but the last.
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

bool IsMandatory(const ZrNode *node)
{
    return (node->flags & ZRS_FLAG_MANDATORY_TRUE) != 0;
}

} // namespace

uint32_t ZRS_NODE_PrintContainer(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        if ((node->flags & ZRS_FLAG_PRESENCE) != 0)
            line.Put("!");
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
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
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutDataNode(line, module, node, print);
        line.Put("*");
        PutKeys(line, node);
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
}

uint32_t ZRS_NODE_PrintChoice(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    const auto *choice = static_cast<const ZrsChoiceInfo *>(node->info);
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("--").Put(AccessText(node, print->accessMode)).Put("(");
        PutName(line, module, node);
        line.Put(IsMandatory(node) ? ")" : ")?");
        PutDefault(line, choice->defaultCase);
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
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
    return node->kind == ZR_NODE_CASE ? zr::PrintChildren(module, node, print)
                                      : zr::PrintUnderImpliedCase(module, node, print);
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
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("---x ");
        PutName(line, module, node);
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
}

uint32_t ZRS_NODE_PrintNotif(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(StatusText(node)).Put("---n ");
        PutName(line, module, node);
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
}

uint32_t ZRS_NODE_PrintInout(const ZrMod *module, const ZrNode *node, ZrsPrintCtx *print)
{
    uint32_t status = zr::PrintLine(print, [&](LineWriter &line) {
        PutIndent(line, print);
        line.Put(node->kind == ZR_NODE_INPUT ? "+---w input" : "+--ro output");
    });
    return status == ZR_OK ? zr::PrintChildren(module, node, print) : status;
}

namespace {

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
