// SPDX-License-Identifier: Apache-2.0
// The context record; every folder above reads it, the functions stand in the foundation's headers.
#pragma once

#include <cstdint>
#include <zrschema/types.h>

#include "foundation/dict.h"
#include "platform/avl.h"

struct ZrErrMng;

struct ZrCtx {
    PalAvlTree modulesByName;
    PalAvlTree modulesByNamespace;
    const char **searchDirs; // interned, in the order of the search
    uint32_t searchDirCount;
    uint32_t searchDirCapacity;
    char curYinFile[256]; // base name of the file being loaded, "" when none
    ZrErrMng *errMng;
    ZrDict dict;
    ZrPridataFreeFunc pridataFreeFunc;
    ZrNodeChangeFunc firstAugChildRelinkFunc;
    ZrNodeChangeFunc beforeDeviateNotSupportFunc;
    ZrNodeChangeFunc beforeDeviateExtInstFunc;
    ZrReloadModuleFunc reloadModuleFunc;
    ZrExtInstFilterFunc extInstFilterFunc;
    PalAvlTree modRelations;
    uint32_t flags; // ZrCtxFlag bits
    uint32_t loadStage;
    ZrPatternMatcher *patternMatcher; // owned; null for the built-in one
};

// The record of a context with ZR_CTX_STANDARD: what such a context keeps beside the records that
// all contexts have, so that it costs the others nothing.
struct ZrStandardCtx : ZrCtx {
    PalAvlTree entryRules; // ZrsEntryRules, by their owners
};

namespace zr {

inline bool IsStandard(const ZrCtx *ctx)
{
    return ctx != nullptr && (ctx->flags & ZR_CTX_STANDARD) != 0;
}

} // namespace zr
