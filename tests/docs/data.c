/* SPDX-License-Identifier: Apache-2.0 */
/* What docs/data.md shows: data is checked, and written with its defaults as JSON. */
#include <zrdata/write.h>

#include "modules.h"

static char faults[4096];

static void report(const ZrDataError *error)
{
    strcat(strcat(faults, error->path), "\n");
}

static int append(const char *text, size_t length, void *user)
{
    strncat(*(char **)user, text, length);
    return 0;
}

static uint32_t check_and_write(ZrCtx *ctx, const char *text, char *out)
{
    size_t length = strlen(text);
#include "data-1.inc"
#include "data-2.inc"
    return status;
}

int main(void)
{
    char written[4096] = "";
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD);
    load_router(ctx);
    CHECK(check_and_write(ctx, "<config><router xmlns='urn:example:router'/></config>", written) ==
          ZR_DATA_ERR_FAULTY);
    CHECK(strcmp(faults, "/example-router:router/example-router:hostname\n") == 0);
    CHECK(check_and_write(ctx,
                          "<config><router xmlns='urn:example:router'>"
                          "<hostname>r1</hostname></router></config>",
                          written) == ZR_DATA_OK);
    CHECK(strstr(written, "\"max-load\": 10") != NULL);
    ZR_CTX_Delete(ctx);
    return 0;
}
