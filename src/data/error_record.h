// SPDX-License-Identifier: Apache-2.0
// The making of error records. The first fault of a run wins: no field is ever overwritten.
#pragma once

#include <zrschema/validation.h>

#include <libxml/tree.h>

#include "data/check_records.h"

extern "C" {
// A record whose path is that of `dataNode`, or "/" without one; null when memory runs out.
ZR_API ZrdErrNode *ZRD_ERR_NewErrNode(const ZrdCheckAux *check, uint32_t type, uint32_t severity,
                                      uint32_t tag, const xmlNode *dataNode);
// The setters do nothing for a null record, a null text or a field that is set already; what
// cannot be stored stays null.

// A message of at most 10,240 bytes; a longer one stays null.
ZR_API void ZRD_ERR_SetErrorMsg(ZrdErrNode *record, const char *format, ...)
    __attribute__((format(printf, 2, 3)));
// Copies of the texts.
ZR_API void ZRD_ERR_SetErrorAppTag(ZrdErrNode *record, const char *text);
ZR_API void ZRD_ERR_SetBadElement(ZrdErrNode *record, const char *text);
}

namespace zr {

// Every fault that a validation run reports, in the order of the fault table.
enum class Fault : uint32_t {
    MissingElement,
    InvalidValue,
    UnexpectedElement,
    InvalidNamespace,
    MissingChoice,
    ElementOrder,
    SeveralCases,
    MustFalse,
    MustNotEvaluated,
    WhenNotEvaluated,
    WhenFalse,
    General,
    Count
};

// Puts the fault into the run's record unless an earlier one stands there. `dataNode` gives the
// path (null: "/"), the texts fill the message's "%s". Returns ZR_ERR_INVALID, as all of them do.
uint32_t RecordFault(ZrdCheckAux *check, Fault fault, const xmlNode *dataNode,
                     const char *badElement = nullptr, const char *first = nullptr,
                     const char *second = nullptr);
// A fault of the element itself, whose name is the bad element and the first text.
uint32_t RecordFaultOf(ZrdCheckAux *check, Fault fault, const xmlNode *element,
                       const char *second = nullptr);
// The same with an app tag and a message of the schema's own, where they are not null.
uint32_t RecordFaultWithTexts(ZrdCheckAux *check, Fault fault, const xmlNode *element,
                              const char *appTag, const char *message);
// Takes the run's record out of it, or makes the general one; never null.
ZrdErrNode *TakeFailure(ZrdCheckAux *check);

} // namespace zr

// The error path of a data node: module-qualified steps with key and value predicates.

extern "C" {
// The path from below the run's root node down to `dataNode`, to be freed through the hooks; null
// for the root node itself, for a path that does not fit and when memory runs out.
ZR_API char *ZRD_ERR_GeneralErrorPath(const ZrdCheckAux *check, const xmlNode *dataNode);

// The writers put their text in front of what stands in the buffer: `*space` is the number of
// free bytes at its start. ZR_ERR_INVALID when a step does not fit, ZR_ERR_NO_MEMORY when a
// predicate does not.

// The steps from below the run's root node down to `dataNode`.
ZR_API uint32_t ZRD_ERR_PrintPath(const ZrdCheckAux *check, const xmlNode *dataNode, char *buffer,
                                  uint32_t *space);
// One step with its predicates; the module is named at the top and where it changes.
ZR_API uint32_t ZRD_ERR_PrintElementNode(const ZrdCheckAux *check, const xmlNode *element,
                                         char *buffer, uint32_t *space);
// "/qualifier:name", or "/name" for a null qualifier.
ZR_API uint32_t ZRD_ERR_PrintXpathNode(const char *qualifier, const char *name, char *buffer,
                                       uint32_t *space);
// "[.='value']" for a leaf-list entry, "[key='value']" for a key leaf.
ZR_API uint32_t ZRD_ERR_PrintElementNodeAsPredicate(const xmlNode *element, char *buffer,
                                                    uint32_t *space);
}
