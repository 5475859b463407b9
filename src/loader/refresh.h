// Defaults brought into the form that their types compare: identityref defaults get module names.
#pragma once

#include "model/module_record.h"
#include "model/node_record.h"

extern "C" {
ZR_API uint32_t ZRS_LOADER_RefreshLeafDefaultValue(ZrMod *module, ZrNode *leaf);
ZR_API uint32_t ZRS_LOADER_RefreshLeafListDefaultValue(ZrMod *module, ZrNode *leafList);
ZR_API uint32_t ZRS_LOADER_RefreshTypeDefDefaultValue(ZrMod *module, ZrsTypDef *typeDef);
}
