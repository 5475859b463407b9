/* SPDX-License-Identifier: Apache-2.0 */
/* Touches every library: a program that links with all of them. */
#include <stdio.h>
#include <zrdata/write.h>
#include <zrpatterns/zrpatterns.h>
#include <zrschema/zrschema.h>
#include <zryang/zryang.h>

static int append(const char *text, size_t length, void *user)
{
    (void)user;
    return fwrite(text, 1, length, stdout) == length ? 0 : 1;
}

int main(void)
{
    static const char module[] = "module m { namespace urn:m; prefix m;"
                                 "  leaf a { type string { pattern '[a-c]+'; } default abc; } }";
    static const char data[] = "<data/>";
    ZrDataWriteOptions how = {ZR_DATA_JSON, ZR_DATA_REPORT_ALL, 0};
    ZrDataOptions options = {0};
    ZrDataDocument *document = NULL;
    ZrDataPlan *plan = NULL;
    ZrDataResult *result = NULL;
    char *prepared = NULL;
    uint32_t status;
    ZrYang *yang = ZR_YANG_Create(NULL);
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_STANDARD);
    options.kind = ZR_DATA_CONFIG;
    ZR_CTX_SetPatternMatcher(ctx, ZR_PATTERNS_GetMatcher());
    status = ZR_YANG_AddText(yang, "m", module, sizeof(module) - 1);
    if (status == ZR_YANG_OK)
        status = ZR_YANG_PrepareToText(yang, "m", &prepared, NULL);
    if (status == ZR_YANG_OK)
        status = ZR_CTX_LoadMemory(ctx, prepared);
    if (status == ZR_OK)
        status = ZR_DATA_CreatePlan(ctx, NULL, &plan);
    if (status == ZR_DATA_OK)
        status = ZR_DATA_ReadXml(plan, &options, data, sizeof(data) - 1, &document, &result);
    if (status == ZR_DATA_OK)
        status = ZR_DATA_WriteText(document, &how, append, NULL);
    ZR_DATA_DeleteDocument(document);
    ZR_DATA_DeleteResult(result);
    ZR_DATA_DeletePlan(plan);
    ZR_YANG_FreeText(yang, prepared);
    ZR_CTX_Delete(ctx);
    ZR_YANG_Delete(yang);
    return status == 0 ? 0 : 1;
}
