// SPDX-License-Identifier: Apache-2.0
// The sub-statement engine: rows of allowed sub-statements drive the parsing of an element's
// children. An element carries the id of its statement in its application field (`_private`) once
// it has been classified and accepted; an element without that mark is skipped.
#pragma once

#include <libxml/tree.h>

#include <cstddef>
#include <cstdint>
#include <zrschema/types.h>

// Bits of ZrsSubElem::flags.
enum : uint32_t {
    ZRS_ROW_UNIQUE = 0x2, // at most once
    ZRS_ROW_ARRAY = 0x4,  // all occurrences go into a fresh array
    ZRS_ROW_SEEN = 0x8    // the engine has parsed one
};

struct ZrsSubElem { // one row
    uint32_t statement;
    void *destination;    // array rows: the address of the array pointer
    uint16_t *indexCount; // array rows: slots filled
    uint16_t *arrayCount; // array rows: occurrences counted, the array's length
    uint32_t elementSize; // array rows: bytes
    uint32_t flags;       // ZRS_ROW_...
};

namespace zr {

// The rows of a table, one a line: what each statement is and where it goes.
inline ZrsSubElem UniqueRow(uint32_t statement, void *destination)
{
    return {statement, destination, nullptr, nullptr, 0, ZRS_ROW_UNIQUE};
}
inline ZrsSubElem RepeatedRow(uint32_t statement, void *destination)
{
    return {statement, destination, nullptr, nullptr, 0, 0};
}
// `index` counts the slots that are filled, `count` becomes the array's length.
template <typename T>
ZrsSubElem ArrayRow(uint32_t statement, T **array, uint16_t *index, uint16_t *count)
{
    return {statement, array, index, count, sizeof(T), ZRS_ROW_ARRAY};
}

// True for the statements whose extension instances are kept on a schema node.
bool IsSchemaNodeStatement(uint32_t statement);

} // namespace zr

extern "C" {
// The statement of an element: ZRS_STMT_UNKNOWN without a namespace, ZRS_STMT_EXTENSION_INSTANCE
// outside the YIN namespace, else by its local name.
ZR_API uint32_t ZRS_LOADER_GetXmlNodeYangStmt(const xmlNode *element);
// The first row of the statement, or null.
ZR_API ZrsSubElem *ZRS_LOADER_GetSubParseElem(uint32_t statement, ZrsSubElem *rows,
                                              uint32_t rowCount);
// 1 unless the application's filter skips the instance.
ZR_API uint32_t ZRS_LOADER_IsExtInstNeedParse(const ZrMod *module, const xmlNode *element);
// Marks every child element with its statement id.
ZR_API void ZRS_LOADER_MarkSubNode(xmlNode *element);
// Marks the child elements that the rows accept and counts those of array rows. ZR_ERR_INVALID when
// an array would have more than 65,535 items, which is recorded like a failed child; the counts are
// then what they were.
ZR_API uint32_t ZRS_LOADER_MarkSubNodeAndCountArraySize(ZrMod *module, xmlNode *element,
                                                        ZrsSubElem *rows, uint32_t rowCount);
// Allocates the arrays that were counted: ZR_OK or ZR_ERR_NO_MEMORY, when the counts of those that
// are missing are 0.
ZR_API uint32_t ZRS_LOADER_NewSubStatementsArray(uint32_t parentStatement, ZrsSubElem *rows,
                                                 uint32_t rowCount);
// Where the next child of the row goes; takes a slot of an array row.
ZR_API void *ZRS_LOADER_GetSubParseDest(ZrsSubElem *row, uint32_t parentStatement);
// 1 when the flags of a row say that its statement must not come once more, else 0.
ZR_API uint32_t ZRS_LOADER_CheckUniqueSubStmtRepeat(uint32_t flags);
// Parses the marked children in document order; stops at the first failure, which is recorded when
// nothing has been recorded for the module yet.
ZR_API uint32_t ZRS_LOADER_ParseSubStatementsInner(ZrMod *module, xmlNode *element,
                                                   uint32_t parentStatement, ZrsSubElem *rows,
                                                   uint32_t rowCount);
// All of it: mark and count, allocate, parse.
ZR_API uint32_t ZRS_LOADER_ParseSubStatements(ZrMod *module, xmlNode *element,
                                              uint32_t parentStatement, ZrsSubElem *rows,
                                              uint32_t rowCount);
}

namespace zr {

// Parses the children of a statement's element by all rows of a table.
template <size_t rowCount>
uint32_t ParseRows(ZrMod *module, xmlNode *element, uint32_t statement,
                   ZrsSubElem (&rows)[rowCount])
{
    return ZRS_LOADER_ParseSubStatements(module, element, statement, rows, rowCount);
}

// "Statement ... under statement ... has repeated."
void RecordRepeated(ZrMod *module, uint32_t statement, uint32_t parentStatement);

} // namespace zr
