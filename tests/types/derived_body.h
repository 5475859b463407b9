// SPDX-License-Identifier: Apache-2.0
// A reference to a typedef, as a body that stands in no type.
#pragma once

#include "foundation/dict.h"
#include "model/context.h"
#include "types/constraints.h"

namespace zrtest {

struct DerivedBody {
    DerivedBody(ZrCtx *owner, const char *moduleName, const char *typedefName)
        : ctx(owner), body(static_cast<ZrtConsDerived *>(ZRT_CONS_CreateConsDataBodyWithDerived(1)))
    {
        body->moduleName = ZR_DICT_Insert(&ctx->dict, moduleName);
        body->typedefName = ZR_DICT_Insert(&ctx->dict, typedefName);
    }
    ~DerivedBody() { ZRT_CONS_DestroyConsDataBodyWithDerived(ctx, body); }
    DerivedBody(const DerivedBody &) = delete;
    DerivedBody &operator=(const DerivedBody &) = delete;

    ZrCtx *ctx;
    ZrtConsDerived *body;
};

} // namespace zrtest
