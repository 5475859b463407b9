// SPDX-License-Identifier: Apache-2.0
// A context without the folders above: nothing is loaded into it, and it is taken apart here.
#pragma once

#include <gtest/gtest.h>
#include <zrschema/context.h>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "model/context.h"

namespace zrtest {

inline void DestroyBareContext(ZrCtx *ctx)
{
    if (ctx == nullptr)
        return;
    ZR_CTX_DestroyErrMng(ctx->errMng);
    zr::DestroyContextParts(ctx);
}

class BareContextTest : public testing::Test {
protected:
    BareContextTest() : ctx_(ZR_CTX_Create(0)) {}
    ~BareContextTest() override { DestroyBareContext(ctx_); }
    ZrCtx *ctx_;
};

} // namespace zrtest
