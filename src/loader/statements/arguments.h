// SPDX-License-Identifier: Apache-2.0
// What most statement parsers share: reading arguments and children, keeping texts, recording what
// is wrong, and bringing texts into module-name form.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/text.h"
#include "model/module_records.h"

namespace zr {

// "Failed to get value of statement ..."
void RecordMissingValue(ZrMod *module, uint32_t statement);
// "Failed to parse value ... of statement ..."
void RecordBadValue(ZrMod *module, const char *value, uint32_t statement);
// "Failed to parse statement ..."
void RecordBadStatement(ZrMod *module, uint32_t statement);
// "Failed to parse ... statement ..."
void RecordBadDefinition(ZrMod *module, uint32_t statement, const char *name);
// "... must define with type statement."
void RecordMissingType(ZrMod *module, uint32_t statement, const char *name);
// "Failed to find module by prefix ..."
void RecordUnknownPrefix(ZrMod *module, const char *prefix);

// An element's name without its prefix; the document's own text.
const char *LocalName(const xmlNode *element);
// The prefix of the name, "" without one; the document's own text.
const char *NamespacePrefix(const xmlNode *element);
// The first child element of that name, whatever its namespace, or null.
xmlNode *FirstChildNamed(const xmlNode *element, const char *name);
// Its argument, or null.
const char *ArgumentOfChild(const xmlNode *element, const char *name);

// What a reader has noted on an element, in its application field: the engine the statement's
// number, the reader of "type" the marks of restrictions.
inline uint32_t MarksOf(const xmlNode *element)
{
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(element->_private));
}
// Adds to the marks that the element has.
inline void AddMark(xmlNode *element, uint32_t mark)
{
    element->_private =
        reinterpret_cast<void *>(reinterpret_cast<uintptr_t>(element->_private) | mark);
}

// The statement's argument, which is the element's first attribute whatever its name; a missing one
// is recorded and gives null.
const char *RequireArgument(ZrMod *module, const xmlNode *element, uint32_t statement);

// The argument of a statement that gives something its name: an identifier (RFC 7950, section 6.2)
// of any length. Anything else is recorded as a bad value and gives null.
const char *RequireName(ZrMod *module, const xmlNode *element, uint32_t statement);
// The check alone: ZR_OK or ZR_ERR_INVALID.
uint32_t CheckName(ZrMod *module, const char *name, uint32_t statement);

// The argument of an element's "prefix". A missing one is recorded together with the value of the
// statement that needs it, and gives null.
const char *RequirePrefixChild(ZrMod *module, const xmlNode *element, uint32_t statement,
                               const char *value);

// Interns a text into `*destination`, in place of what stands there: ZR_OK or ZR_ERR_NO_MEMORY.
uint32_t KeepText(ZrMod *module, const char *text, const char **destination);
// The same for the required argument; also ZR_ERR_INVALID when there is none.
uint32_t KeepArgument(ZrMod *module, const xmlNode *element, uint32_t statement,
                      const char **destination);

// A reference of the form "prefix:name" or "name" to a definition of a module.
struct DefinitionRef {
    const char *moduleName; // the module that the prefix denotes, or the module itself
    char prefix[kNameSize]; // "" when there is none
    char name[kNameSize];
};
// Splits a reference and resolves its prefix: ZR_OK, ZR_ERR_INVALID for a malformed one, or
// ZR_ERR_NOT_FOUND for an unknown prefix.
uint32_t ReadDefinitionRef(const ZrMod *module, const char *text, DefinitionRef *ref);
// The same with a record of what is wrong: ZR_OK or ZR_ERR_INVALID.
uint32_t ResolveDefinitionRef(ZrMod *module, const char *text, DefinitionRef *ref);

} // namespace zr

// Module-name form: prefixes mean something in one file only, module names everywhere
// (module_form.cpp).

namespace zr {

constexpr uint32_t kMaxConditionLength = 3096;

// The condition that is being written.
struct ConditionText {
    char *text; // kMaxConditionLength + 1 bytes
    uint32_t length;
};

} // namespace zr

extern "C" {
// Rewrites "prefix:name" into "module:name", in names and in literals that hold nothing else. A new
// text for the caller to release with zr::Free; null when the condition cannot be cut into tokens,
// a name has an unknown prefix, the result is longer than zr::kMaxConditionLength characters or
// memory runs out.
ZR_API char *ZRS_LOADER_TransPrefix2ModNameInLiteral(const ZrMod *module, const char *condition);
// Appends a piece of text: ZR_OK, or ZR_ERR_INVALID when it does not fit.
ZR_API uint32_t ZRS_LOADER_CopyTokenIntoOutCondition(zr::ConditionText *out, const char *text,
                                                     uint32_t length);
// Appends the name of the module that a prefix of `length` characters denotes: ZR_OK, or
// ZR_ERR_INVALID when there is none or it does not fit.
ZR_API uint32_t ZRS_LOADER_AddModuleNameIntoCondition(const ZrMod *module, zr::ConditionText *out,
                                                      const char *prefix, uint32_t length);

// Bring the defaults of identityref types into the form in which values are compared, and leave all
// others alone: ZR_OK, ZR_ERR_INVALID for a default that cannot be brought there, which stays as it
// is, or ZR_ERR_NO_MEMORY.
ZR_API uint32_t ZRS_LOADER_RefreshLeafDefaultValue(ZrMod *module, ZrNode *leaf);
ZR_API uint32_t ZRS_LOADER_RefreshLeafListDefaultValue(ZrMod *module, ZrNode *leafList);
ZR_API uint32_t ZRS_LOADER_RefreshTypeDefDefaultValue(ZrMod *module, ZrsTypDef *typeDef);
}
