/* SPDX-License-Identifier: Apache-2.0 */
/* What docs/yang.md shows: a source goes into a context through memory. */
#include "modules.h"

static void print_report(const ZrYangReport *report, void *user)
{
    (void)user;
    fprintf(stderr, "%s: %s\n", report->file, report->message);
}

int main(void)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
#include "yang-1.inc"
    CHECK(ZR_CTX_GetModuleByModName(ctx, "example-router") != NULL);
    ZR_CTX_Delete(ctx);
    return 0;
}
