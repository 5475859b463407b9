/* SPDX-License-Identifier: Apache-2.0 */
/* For the programs that run what the documents show: the sample modules, prepared and loaded. */
#ifndef TESTS_DOCS_MODULES_H
#define TESTS_DOCS_MODULES_H

#include <string.h>
#include <unistd.h>
#include <zrschema/zrschema.h>
#include <zryang/zryang.h>

#include "check.h"

/* Makes a folder in the current one; the result is its whole path, valid until the next call. */
static inline const char *empty_folder(void)
{
    static char folder[4096];
    CHECK(getcwd(folder, sizeof(folder) - 16) != NULL);
    strcat(folder, "/made-XXXXXX");
    CHECK(mkdtemp(folder) != NULL);
    return folder;
}

/* A folder with all of examples/modules in prepared form. */
static inline const char *prepared_modules(void)
{
    const char *folder = empty_folder();
    ZrYang *yang = ZR_YANG_Create(NULL);
    CHECK(ZR_YANG_AddDirectory(yang, "examples/modules") == ZR_YANG_OK);
    CHECK(ZR_YANG_PrepareAll(yang, folder, NULL, NULL) == ZR_YANG_OK);
    ZR_YANG_Delete(yang);
    return folder;
}

static inline void load_router(ZrCtx *ctx)
{
    CHECK(ZR_CTX_SetSearchDir(ctx, prepared_modules()) == ZR_OK);
    CHECK(ZR_CTX_LoadModule(ctx, "example-types") == ZR_OK);
    CHECK(ZR_CTX_LoadModule(ctx, "example-router") == ZR_OK);
}

#endif
