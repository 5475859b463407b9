/* SPDX-License-Identifier: Apache-2.0 */
/* Loads a module and prints each of its nodes with its path: a walk over a schema in C99. */
#include <stdio.h>
#include <zrschema/zrschema.h>

static uint32_t show_error(const char *module, const char *file, uint32_t kind, const char *message,
                           uint32_t time, void *user)
{
    (void)time;
    (void)user;
    fprintf(stderr, "%s (%s): %s: %s\n", module, file != NULL ? file : "-",
            kind == ZR_LOAD_WARNING ? "warning" : "error", message);
    return 0;
}

static uint32_t show_node(ZrNode *node, uint32_t arrival, void *user)
{
    char path[4096];
    (void)user;
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0; /* on the way back up: shown already */
    if (ZR_NODE_GetNodePath(node, path, sizeof(path)) == ZR_OK)
        printf("%s%s\n", path, ZR_NODE_IsRwConfig(node) ? "" : " (read-only)");
    return 0;
}

static uint32_t show_tree(ZrNode *top, uint32_t arrival, void *user)
{
    (void)arrival;
    return ZR_NODE_TreeScanAllNode(top, show_node, user);
}

int main(int argc, char **argv)
{
    uint32_t status;
    ZrCtx *ctx;
    if (argc != 3) {
        fprintf(stderr, "usage: show_schema ABSOLUTE_DIRECTORY MODULE\n");
        return 2;
    }
    ctx = ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS);
    status = ZR_CTX_SetSearchDir(ctx, argv[1]);
    if (status == ZR_OK)
        status = ZR_CTX_LoadModule(ctx, argv[2]);
    if (status == ZR_OK)
        status =
            ZR_MOD_IterScanTopmostNode(ZR_CTX_GetModuleByModName(ctx, argv[2]), show_tree, NULL);
    else
        ZR_CTX_ScanAllSchemaLoadFail(ctx, show_error, NULL);
    if (status != ZR_OK)
        fprintf(stderr, "show_schema: %s (%s)\n", ZR_GetStatusText(status),
                ZR_GetStatusName(status));
    ZR_CTX_Delete(ctx);
    return status == ZR_OK ? 0 : 1;
}
