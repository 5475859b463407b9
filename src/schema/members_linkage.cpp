// What a module names of others: imports, includes and the extensions that it defines for them.
#include "foundation/record_arrays.h"
#include "schema/members.h"

uint32_t ZRS_MOD_FillImport(ZrDict *dict, ZrsImport *record, const char *moduleName,
                            const char *prefix)
{
    if (dict == nullptr || record == nullptr || moduleName == nullptr || prefix == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsImport();
    if (zr::Intern(dict, record->moduleName, moduleName) &&
        zr::Intern(dict, record->prefix, prefix))
        return ZR_OK;
    ZRS_MOD_ClearImport(dict, record);
    return ZR_ERR_INVALID; // kept: an import without memory is an invalid import to its callers
}

uint32_t ZRS_MOD_AppendOneImport(ZrMod *module, const char *moduleName, const char *prefix)
{
    if (module == nullptr || moduleName == nullptr || prefix == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->imports, &module->importCount, [=](ZrsImport *record) {
        return ZRS_MOD_FillImport(&module->ctx->dict, record, moduleName, prefix);
    });
}

void ZRS_MOD_ClearImport(ZrDict *dict, ZrsImport *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->moduleName);
    zr::Release(dict, record->prefix);
}

void ZRS_MOD_FreeImports(ZrDict *dict, ZrsImport *array, uint32_t count)
{
    zr::FreeRecords(array, count, [dict](ZrsImport *record) { ZRS_MOD_ClearImport(dict, record); });
}

uint32_t ZRS_MOD_FillInclude(ZrDict *dict, ZrsInclude *record, const char *name)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::Intern(dict, record->submoduleName, name) ? ZR_OK : ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneInclude(ZrMod *module, const char *name)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->includes, &module->includeCount, [=](ZrsInclude *record) {
        return ZRS_MOD_FillInclude(&module->ctx->dict, record, name);
    });
}

void ZRS_MOD_ClearInclude(ZrDict *dict, ZrsInclude *record)
{
    if (record != nullptr)
        zr::Release(dict, record->submoduleName);
}

void ZRS_MOD_FreeIncludes(ZrDict *dict, ZrsInclude *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsInclude *record) { ZRS_MOD_ClearInclude(dict, record); });
}

uint32_t ZRS_MOD_SetExtension(ZrDict *dict, ZrsExtension *record, const char *name,
                              const char *argument, uint32_t yinElement)
{
    if (dict == nullptr || record == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    *record = ZrsExtension();
    record->yinElement = yinElement;
    if (zr::Intern(dict, record->name, name) && zr::Intern(dict, record->argument, argument))
        return ZR_OK;
    ZRS_MDL_ClearExtension(dict, record);
    return ZR_ERR_NO_MEMORY;
}

uint32_t ZRS_MOD_AppendOneExtension(ZrMod *module, const char *name, const char *argument,
                                    uint32_t yinElement)
{
    if (module == nullptr || name == nullptr)
        return ZR_ERR_INVALID;
    return zr::AppendOne(&module->extensions, &module->extensionCount, [=](ZrsExtension *record) {
        return ZRS_MOD_SetExtension(&module->ctx->dict, record, name, argument, yinElement);
    });
}

void ZRS_MDL_ClearExtension(ZrDict *dict, ZrsExtension *record)
{
    if (record == nullptr)
        return;
    zr::Release(dict, record->name);
    zr::Release(dict, record->argument);
}

void ZRS_MOD_FreeExtensions(ZrDict *dict, ZrsExtension *array, uint32_t count)
{
    zr::FreeRecords(array, count,
                    [dict](ZrsExtension *record) { ZRS_MDL_ClearExtension(dict, record); });
}

uint32_t ZRS_MOD_CheckTwoExtensionSame(const ZrsExtension *a, const ZrsExtension *b)
{
    return a != nullptr && b != nullptr && a->name == b->name && a->argument == b->argument &&
           a->yinElement == b->yinElement;
}
