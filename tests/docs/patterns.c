/* SPDX-License-Identifier: Apache-2.0 */
/* What docs/patterns.md shows: a context with the matcher, in which a pattern still says what it
 * said. */
#include "modules.h"

int main(void)
{
    ZrNode *address;
#include "patterns-1.inc"
    load_router(ctx);
    CHECK(ZR_CTX_SetPatternMatcher(ctx, ZR_PATTERNS_GetMatcher()) == ZR_ERR_INVALID); /* too late */
    address =
        ZR_CTX_GetTargetNode(ctx, "/example-router:router/interfaces/interface/address", NULL);
    CHECK(ZR_NODE_ValidateValue(address, ZR_VALUE_STRING, "192.0.2.1") == ZR_OK);
    CHECK(ZR_NODE_ValidateValue(address, ZR_VALUE_STRING, "192.0.2.256") == ZR_ERR_VALUE_PATTERN);
    ZR_CTX_Delete(ctx);
    return 0;
}
