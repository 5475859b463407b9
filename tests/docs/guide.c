/* SPDX-License-Identifier: Apache-2.0 */
/* What docs/guide.md shows, in its order: prepare, load, turn features on, ask, validate. */
#include <libxml/parser.h>
#include <zrdata/zrdata.h>
#include <zrpatterns/zrpatterns.h>

#include "modules.h"

/* clang-format off */
#include "guide-1.inc"
#include "guide-5.inc"
/* clang-format on */

static void prepare_in_memory(ZrCtx *ctx)
{
#include "guide-2.inc"
}

static char *prepared_text(const char *name)
{
    char *text = NULL;
    char *copy;
    ZrYang *yang = ZR_YANG_Create(NULL);
    ZR_YANG_AddDirectory(yang, "examples/modules");
    CHECK(ZR_YANG_PrepareToText(yang, name, &text, NULL) == ZR_YANG_OK);
    copy = strdup(text);
    ZR_YANG_FreeText(yang, text);
    ZR_YANG_Delete(yang);
    return copy;
}

static void load(ZrCtx *ctx)
{
    const char *directory = prepared_modules();
    char *yin_text = prepared_text("example-routing");
#include "guide-4.inc"
    CHECK(status == ZR_OK);
    CHECK(ZR_CTX_GetModuleByModName(ctx, "example-types") != NULL); /* an import */
    CHECK(ZR_CTX_GetModuleByModName(ctx, "example-routing") != NULL);
    free(yin_text);
}

static void fail_to_load(ZrCtx *ctx)
{
    uint32_t status = ZR_CTX_LoadModule(ctx, "no-such-module");
    CHECK(status == ZR_ERR_NOT_FOUND);
#include "guide-6.inc"
}

static void turn_features_on(ZrCtx *ctx)
{
    CHECK(ZR_CTX_IsModFeatureEnable(ctx, "example-router", "tunnels") == 0);
#include "guide-7.inc"
    CHECK(ZR_CTX_IsModFeatureEnable(ctx, "example-router", "tunnels") == 1);
}

static void ask(ZrCtx *ctx)
{
#include "guide-8.inc"
    CHECK(ZR_NODE_GetNodeType(node) == ZR_NODE_LEAF);
    CHECK(ZR_NODE_GetDefaultValueStr(node) == NULL);
    CHECK(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "9000") == ZR_OK);
    CHECK(ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, "9001") == ZR_ERR_VALUE_RANGE);
}

static void walk_data(ZrCtx *ctx)
{
    static const char text[] =
        "<router xmlns='urn:example:router'><hostname>r1</hostname></router>";
    xmlDoc *document = xmlReadMemory(text, sizeof(text) - 1, NULL, NULL, 0);
    xmlNode *element = xmlDocGetRootElement(document)->children;
    ZrNode *node = ZR_CTX_FindTopDataNode(ctx, "example-router", "router");
#include "guide-9.inc"
    CHECK(child != NULL && ZR_NODE_IsMandatory(child) == 1);
    xmlFreeDoc(document);
}

static void count(void *element, void *user)
{
    (void)element;
    ++*(int *)user;
}

static int validate(ZrCtx *ctx, const char *request)
{
    char *xml_text = strdup(request);
    int defaults = 0;
    ZrDefaultNodeFunc on_default = count;
    void *user = &defaults;
#include "guide-10.inc"
    free(xml_text);
    return defaults;
}

static void set_matcher(void)
{
    ZrCtx *ctx = ZR_CTX_Create(0);
#include "guide-11.inc"
    CHECK(ZR_CTX_SetPatternMatcher(ctx, ZR_PATTERNS_GetMatcher()) == ZR_OK);
    ZR_CTX_Delete(ctx);
}

static void load_modules(ZrCtx *ctx)
{
    load_router(ctx);
}

static void check_by_rfc7950(const char *text, size_t length)
{
#include "guide-12.inc"
}

int main(void)
{
    static const char data[] = "<data><router xmlns='urn:example:router'/></data>";
    ZrCtx *from_memory = ZR_CTX_Create(0);
    prepare_in_memory(from_memory);
    CHECK(ZR_CTX_GetModuleByModName(from_memory, "example-router") != NULL);
    ZR_CTX_Delete(from_memory);
    {
#include "guide-3.inc"
        CHECK(ctx != NULL);
        load(ctx);
        fail_to_load(ctx);
        turn_features_on(ctx);
        ask(ctx);
        walk_data(ctx);
        CHECK(validate(ctx, "<ping xmlns='urn:example:router'>"
                            "<destination>192.0.2.1</destination></ping>") == 2);
        CHECK(validate(ctx, "<ping xmlns='urn:example:router'/>") == 0);
        ZR_CTX_Delete(ctx);
    }
    set_matcher();
    check_by_rfc7950(data, strlen(data));
    return 0;
}
