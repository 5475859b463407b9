// SPDX-License-Identifier: Apache-2.0
#include "loader/statements/engine.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/statements/arguments.h"
#include "loader/statements/statements.h"
#include "model/node_record.h"
#include "model/scope.h"
#include "platform/xml.h"

namespace {

constexpr uint32_t kSchemaNodeStatements[] = {
    ZRS_STMT_LIST,      ZRS_STMT_NOTIFICATION, ZRS_STMT_OUTPUT, ZRS_STMT_RPC,
    ZRS_STMT_ACTION,    ZRS_STMT_ANYDATA,      ZRS_STMT_ANYXML, ZRS_STMT_CASE,
    ZRS_STMT_CHOICE,    ZRS_STMT_CONTAINER,    ZRS_STMT_INPUT,  ZRS_STMT_LEAF,
    ZRS_STMT_LEAF_LIST,
};

bool IsArray(const ZrsSubElem &row)
{
    return (row.flags & ZRS_ROW_ARRAY) != 0;
}

// Extension instances of a schema node go to the node, which keeps the array itself.
bool GoesToNode(const ZrsSubElem &row, uint32_t parentStatement)
{
    return row.statement == ZRS_STMT_EXTENSION_INSTANCE &&
           zr::IsSchemaNodeStatement(parentStatement);
}

void **ArrayOf(const ZrsSubElem &row, uint32_t parentStatement)
{
    if (GoesToNode(row, parentStatement))
        return reinterpret_cast<void **>(&static_cast<ZrNode *>(row.destination)->extInsts);
    return static_cast<void **>(row.destination);
}

// Takes back what was counted for arrays that do not exist.
void ForgetCounts(std::span<const ZrsSubElem> rows)
{
    for (const ZrsSubElem &row : rows)
        if (IsArray(row))
            *row.arrayCount = *row.indexCount;
}

// Counts one more item of an array row; false when a 16-bit count cannot take it.
bool CountItem(const ZrsSubElem &row)
{
    if (!IsArray(row))
        return true;
    if (*row.arrayCount == UINT16_MAX)
        return false;
    ++*row.arrayCount;
    return true;
}

// An extension instance that the application's filter skips loses its mark: a reader that asks
// nobody may have marked it before.
bool IsSkipped(const ZrMod *module, xmlNode *child, uint32_t statement)
{
    if (statement != ZRS_STMT_EXTENSION_INSTANCE ||
        ZRS_LOADER_IsExtInstNeedParse(module, child) != 0)
        return false;
    child->_private = nullptr;
    return true;
}

// Only the innermost failure says where it happened; the statements around it find an entry.
void RecordFailedChild(ZrMod *module, uint32_t statement, uint32_t parentStatement)
{
    const ZrErrModNode *recorded = ZR_CTX_GetErrNodeByModName(module->ctx, module->name);
    if (recorded != nullptr && recorded->entryCount != 0)
        return;
    ZR_CTX_AddModError(
        module->ctx, module->name, "Failed to parse statement \"%s\" under statement \"%s\".",
        ZRS_LOADER_GetKeywordByStmt(statement), ZRS_LOADER_GetKeywordByStmt(parentStatement));
}

uint32_t ParseChild(ZrMod *module, xmlNode *child, uint32_t parentStatement, ZrsSubElem *row,
                    ZrsParseFunc parse)
{
    if (ZRS_LOADER_CheckUniqueSubStmtRepeat(row->flags) != 0) {
        zr::RecordRepeated(module, row->statement, parentStatement);
        return ZR_ERR_FAILED;
    }
    row->flags |= ZRS_ROW_SEEN;
    uint32_t status =
        parse(module, child, parentStatement, ZRS_LOADER_GetSubParseDest(row, parentStatement));
    if (status != ZR_OK)
        RecordFailedChild(module, row->statement, parentStatement);
    return status;
}

} // namespace

bool zr::IsSchemaNodeStatement(uint32_t statement)
{
    return std::find(std::begin(kSchemaNodeStatements), std::end(kSchemaNodeStatements),
                     statement) != std::end(kSchemaNodeStatements);
}

void zr::RecordRepeated(ZrMod *module, uint32_t statement, uint32_t parentStatement)
{
    ZR_CTX_AddModError(
        module->ctx, module->name, "Statement \"%s\" under statement \"%s\" has repeated.",
        ZRS_LOADER_GetKeywordByStmt(statement), ZRS_LOADER_GetKeywordByStmt(parentStatement));
}

uint32_t ZRS_LOADER_GetXmlNodeYangStmt(const xmlNode *element)
{
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(element);
    if (ns == nullptr)
        return ZRS_STMT_UNKNOWN;
    if (std::strcmp(ns, zr::kYinNamespace) != 0)
        return ZRS_STMT_EXTENSION_INSTANCE;
    return ZRS_LOADER_GetStmtByKeyword(zr::LocalName(element));
}

ZrsSubElem *ZRS_LOADER_GetSubParseElem(uint32_t statement, ZrsSubElem *rows, uint32_t rowCount)
{
    for (ZrsSubElem &row : std::span(rows, rowCount))
        if (row.statement == statement)
            return &row;
    return nullptr;
}

uint32_t ZRS_LOADER_IsExtInstNeedParse(const ZrMod *module, const xmlNode *element)
{
    ZrExtInstFilterFunc filter = module->ctx->extInstFilterFunc;
    if (filter == nullptr)
        return 1;
    const char *moduleName = ZRS_MOD_GetModuleNameByPrefix(module, zr::NamespacePrefix(element));
    if (moduleName == nullptr)
        return 1; // nothing to ask about: the parser refuses it
    return filter(moduleName, zr::LocalName(element)) == 0 ? 1 : 0;
}

void ZRS_LOADER_MarkSubNode(xmlNode *element)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE)
            zr::AddMark(child, ZRS_LOADER_GetXmlNodeYangStmt(child));
}

uint32_t ZRS_LOADER_MarkSubNodeAndCountArraySize(ZrMod *module, xmlNode *element, ZrsSubElem *rows,
                                                 uint32_t rowCount)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        uint32_t statement = ZRS_LOADER_GetXmlNodeYangStmt(child);
        const ZrsSubElem *row = ZRS_LOADER_GetSubParseElem(statement, rows, rowCount);
        if (row == nullptr || IsSkipped(module, child, statement))
            continue;
        if (!CountItem(*row)) {
            ForgetCounts({rows, rowCount});
            RecordFailedChild(module, statement, ZRS_LOADER_GetXmlNodeYangStmt(element));
            return ZR_ERR_INVALID;
        }
        zr::AddMark(child, statement);
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_NewSubStatementsArray(uint32_t parentStatement, ZrsSubElem *rows,
                                          uint32_t rowCount)
{
    for (uint32_t i = 0; i < rowCount; ++i) {
        const ZrsSubElem &row = rows[i];
        if (!IsArray(row) || *row.arrayCount == 0)
            continue;
        uint32_t status =
            ZR_UTL_NewArray(ArrayOf(row, parentStatement), *row.arrayCount, row.elementSize);
        if (status != ZR_OK) {
            ForgetCounts({rows + i, rowCount - i});
            return status;
        }
    }
    return ZR_OK;
}

void *ZRS_LOADER_GetSubParseDest(ZrsSubElem *row, uint32_t parentStatement)
{
    if (!IsArray(*row) || GoesToNode(*row, parentStatement))
        return row->destination;
    auto *array = static_cast<char *>(*static_cast<void **>(row->destination));
    return array + size_t{row->elementSize} * (*row->indexCount)++;
}

uint32_t ZRS_LOADER_CheckUniqueSubStmtRepeat(uint32_t flags)
{
    constexpr uint32_t kUsedUp = ZRS_ROW_UNIQUE | ZRS_ROW_SEEN;
    return (flags & kUsedUp) == kUsedUp ? 1 : 0;
}

uint32_t ZRS_LOADER_ParseSubStatementsInner(ZrMod *module, xmlNode *element,
                                            uint32_t parentStatement, ZrsSubElem *rows,
                                            uint32_t rowCount)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE || zr::MarksOf(child) == 0)
            continue;
        ZrsSubElem *row = ZRS_LOADER_GetSubParseElem(zr::MarksOf(child), rows, rowCount);
        ZrsParseFunc parse = ZRS_LOADER_GetStmtParseFunc(zr::MarksOf(child));
        if (row == nullptr || parse == nullptr)
            continue;
        uint32_t status = ParseChild(module, child, parentStatement, row, parse);
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

uint32_t ZRS_LOADER_ParseSubStatements(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                       ZrsSubElem *rows, uint32_t rowCount)
{
    uint32_t status = ZRS_LOADER_MarkSubNodeAndCountArraySize(module, element, rows, rowCount);
    if (status == ZR_OK)
        status = ZRS_LOADER_NewSubStatementsArray(parentStatement, rows, rowCount);
    if (status == ZR_OK)
        status =
            ZRS_LOADER_ParseSubStatementsInner(module, element, parentStatement, rows, rowCount);
    return status;
}
