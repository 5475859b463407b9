// SPDX-License-Identifier: Apache-2.0
// Loads, couples, prints, validates and unloads with a C++ heap that aborts when it is touched.
#include <zrschema/zrschema.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <new>

void *operator new(std::size_t)
{
    std::abort();
}
void *operator new[](std::size_t)
{
    std::abort();
}
void *operator new(std::size_t, const std::nothrow_t &) noexcept
{
    std::abort();
}
void operator delete(void *) noexcept
{
    std::abort();
}
void operator delete(void *, std::size_t) noexcept
{
    std::abort();
}
void operator delete[](void *) noexcept
{
    std::abort();
}
void operator delete[](void *, std::size_t) noexcept
{
    std::abort();
}

namespace {

uint32_t CountText(const char *, uint32_t length, void *total)
{
    *static_cast<uint32_t *>(total) += length;
    return 0;
}

int Fail(const char *what)
{
    std::fprintf(stderr, "failed: %s\n", what);
    return 1;
}

} // namespace

int main()
{
    char request[] =
        "<ping xmlns=\"urn:example:router\"><destination>192.0.2.1</destination></ping>";
    uint32_t printed = 0;
    ZrCtx *ctx = ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS | ZR_CTX_KEEP_DESCRIPTIONS);
    if (ZR_CTX_SetSearchDir(ctx, ZR_EXAMPLE_MODULES) != ZR_OK)
        return Fail("search directory");
    for (const char *name : {"example-routing", "example-vendor", "example-services"})
        if (ZR_CTX_LoadModule(ctx, name) != ZR_OK)
            return Fail(name);
    ZrMod *router = ZR_CTX_GetModuleByModName(ctx, "example-router");
    if (ZR_MOD_EnableFeature(router, "*") != ZR_OK ||
        ZR_MOD_PrintModelTree(router, CountText, &printed) != ZR_OK || printed == 0)
        return Fail("print");
    ZrdErrNode *error = ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, request, nullptr, nullptr);
    if (error != nullptr)
        return Fail(ZR_GetErrorMessage(error));
    if (ZR_CTX_UnloadModule(ctx, "example-vendor") != ZR_OK)
        return Fail("unload");
    ZR_CTX_Delete(ctx);
    return 0;
}
