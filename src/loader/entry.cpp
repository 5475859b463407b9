// The public entry points that load and unload modules.
#include <zrschema/context.h>

#include <cstring>

#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/pipeline.h"
#include "loader/unload.h"
#include "platform/xml_parse.h"
#include "schema/change_events.h"
#include "schema/module.h"

uint32_t ZR_CTX_LoadModule(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr || moduleName == nullptr)
        return ZR_ERR_INVALID;
    uint32_t status = ZRS_LOADER_LoadModuleByModName(ctx, moduleName);
    if (status != ZR_OK) {
        if (ZR_CTX_GetErrNodeByModName(ctx, moduleName) == nullptr)
            ZR_CTX_AddModError(ctx, moduleName, "Failed to load module \"%s\".", moduleName);
        return status;
    }
    if ((ctx->flags & ZR_CTX_LOAD_IMPORTS) != 0)
        return ZRS_LOADER_LoadModuleImportedNames(ctx, moduleName);
    ZRS_MOD_NotifyModuleChangeEvent(ctx, moduleName, ZRS_MODULE_LOADED, nullptr);
    return ZR_OK;
}

uint32_t ZR_CTX_LoadMemory(ZrCtx *ctx, const char *yinText)
{
    if (ctx == nullptr || yinText == nullptr)
        return ZR_ERR_INVALID;
    xmlDoc *document = zr::ParseXmlText(yinText, std::strlen(yinText));
    if (document == nullptr)
        return ZR_ERR_INVALID;
    ZrMod *module = ZRS_LOADER_ParseYinContent(ctx, document, nullptr);
    xmlFreeDoc(document);
    if (module == nullptr)
        return ZR_ERR_FAILED;
    if (ZR_CTX_GetModuleByModName(ctx, module->name) != nullptr) {
        ZRS_MOD_Free(module); // the module that is loaded stays
        return ZR_OK;
    }
    uint32_t status = ZRS_LOADER_AppendModuleToCtx(ctx, module, nullptr);
    if (status != ZR_OK) {
        ZR_CTX_DestroyModuleNode(ctx, module);
        return status;
    }
    ZRS_MOD_NotifyModuleChangeEvent(ctx, module->name, ZRS_MODULE_LOADED, nullptr);
    return ZR_OK;
}

uint32_t ZR_CTX_UnloadModule(ZrCtx *ctx, const char *moduleName)
{
    if (ctx == nullptr)
        return ZR_OK;
    return ZRS_LOADER_UnloadModuleProc(ctx, moduleName);
}
