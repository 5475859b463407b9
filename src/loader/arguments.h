// What most statement parsers share: reading the argument, keeping texts, recording what is wrong.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/text.h"

namespace zr {

// "Failed to get value of statement ..."
void RecordMissingValue(ZrMod *module, uint32_t statement);
// "Failed to parse value ... of statement ..."
void RecordBadValue(ZrMod *module, const char *value, uint32_t statement);

// The statement's argument, which is the element's first attribute whatever its name; a missing one
// is recorded and gives null.
const char *RequireArgument(ZrMod *module, const xmlNode *element, uint32_t statement);

// The argument of a statement that gives something its name: an identifier (RFC 7950, section 6.2)
// of any length. Anything else is recorded as a bad value and gives null.
const char *RequireName(ZrMod *module, const xmlNode *element, uint32_t statement);
// The check alone: 0 or 22.
uint32_t CheckName(ZrMod *module, const char *name, uint32_t statement);

// Interns a text into `*destination`, in place of what stands there; 0 or 12.
uint32_t KeepText(ZrMod *module, const char *text, const char **destination);
// The same for the required argument; 0, 12 or 22.
uint32_t KeepArgument(ZrMod *module, const xmlNode *element, uint32_t statement,
                      const char **destination);

// A reference of the form "prefix:name" or "name" to a definition of a module.
struct DefinitionRef {
    const char *moduleName; // the module that the prefix denotes, or the module itself
    char prefix[kNameSize]; // "" when there is none
    char name[kNameSize];
};
// Splits a reference and resolves its prefix; what is wrong is recorded. 0 or 22.
uint32_t ResolveDefinitionRef(ZrMod *module, const char *text, DefinitionRef *ref);

} // namespace zr
