// The print context: what passes to the level below, the buffer, the width of the names.
#include <cstring>

#include "model/module_record.h"
#include "model/node_record.h"
#include "print/line.h"
#include "print/walk.h"

namespace {

size_t TextLength(const char *text)
{
    return text != nullptr ? std::strlen(text) : 0;
}

} // namespace

namespace zr {

size_t PrintedNameLength(const ZrMod *module, const ZrNode *node)
{
    size_t length = TextLength(node->name);
    if (node->module != module && node->module != nullptr)
        length += TextLength(node->module->name) + 1;
    return length;
}

} // namespace zr

void ZRS_NODE_InheritPrintPara(ZrsPrintCtx *child, const ZrsPrintCtx *parent)
{
    *child = *parent;
    child->flags = 0;
}

uint32_t ZRS_NODE_PrintAllocBuffer(ZrsPrintCtx *print)
{
    if (print->usedLength < ZRS_PRINT_FLUSH_LENGTH)
        return ZR_OK;
    return zr::FlushPrint(print);
}

uint32_t ZRS_NODE_PrintGetMaxLen(const ZrMod *module, const ZrNode *first, const ZrNode *last)
{
    size_t longest = 0;
    for (const ZrNode *node = first; node != nullptr; node = node != last ? node->next : nullptr) {
        if (node->kind < ZR_NODE_CONTAINER || node->kind > ZR_NODE_ANYXML)
            continue;
        if (size_t length = zr::PrintedNameLength(module, node); length > longest)
            longest = length;
    }
    return static_cast<uint32_t>(longest);
}
