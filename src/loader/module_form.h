// Conditions in module-name form: prefixes mean something in one file only, module names
// everywhere.
#pragma once

#include <zrschema/types.h>

#include <cstdint>

#include "model/module_records.h"
#include "model/node_record.h"

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
// text freed with the free hook; null when the condition cannot be cut into tokens, a name has an
// unknown prefix, the result is longer than 3096 characters or memory runs out.
ZR_API char *ZRS_LOADER_TransPrefix2ModNameInLiteral(const ZrMod *module, const char *condition);
// Appends a piece of text; 0, or 22 when it does not fit.
ZR_API uint32_t ZRS_LOADER_CopyTokenIntoOutCondition(zr::ConditionText *out, const char *text,
                                                     uint32_t length);
// Appends the name of the module that a prefix of `length` characters denotes; 0, or 22 when there
// is none or it does not fit.
ZR_API uint32_t ZRS_LOADER_AddModuleNameIntoCondition(const ZrMod *module, zr::ConditionText *out,
                                                      const char *prefix, uint32_t length);
}

// Defaults brought into the form that their types compare: identityref defaults get module names.

extern "C" {
ZR_API uint32_t ZRS_LOADER_RefreshLeafDefaultValue(ZrMod *module, ZrNode *leaf);
ZR_API uint32_t ZRS_LOADER_RefreshLeafListDefaultValue(ZrMod *module, ZrNode *leafList);
ZR_API uint32_t ZRS_LOADER_RefreshTypeDefDefaultValue(ZrMod *module, ZrsTypDef *typeDef);
}
