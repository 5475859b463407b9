// SPDX-License-Identifier: Apache-2.0
// Contexts: their taking apart, and their modules. The functions of an application stand in
// zrschema/context.h.
#pragma once

#include <zrschema/context.h>

namespace zr {

// Records under another load stage; at the end of the scope the stage is what it was.
class ScopedLoadStage {
public:
    ScopedLoadStage(ZrCtx *ctx, uint32_t stage) : ctx_(ctx), before_(ZR_CTX_GetLoadStage(ctx))
    {
        ZR_CTX_SetLoadStage(ctx, stage);
    }
    ~ScopedLoadStage() { ZR_CTX_SetLoadStage(ctx_, before_); }
    ScopedLoadStage(const ScopedLoadStage &) = delete;
    ScopedLoadStage &operator=(const ScopedLoadStage &) = delete;

private:
    ZrCtx *ctx_;
    uint32_t before_;
};

// Destroys the relation tree, the search directories, the dictionary and the record itself, in
// that order; the error store and the modules are gone before. A half-built context is accepted.
void DestroyContextParts(ZrCtx *ctx);

} // namespace zr

// The two trees of a context's modules, by name and by namespace.

extern "C" {
// Makes both trees empty.
ZR_API void ZR_CTX_InitModuleTree(ZrCtx *ctx);
// Orders two names or two namespaces byte by byte; a null key equals every other.
ZR_API int32_t ZR_CTX_ModTreeKeyCompare(const void *keyA, const void *keyB);
// Puts a module into both trees: ZR_OK, or ZR_ERR_FAILED for null and when its name or its
// namespace is taken, and then it stands in neither.
ZR_API uint32_t ZR_CTX_AddModuleNode(ZrCtx *ctx, ZrMod *module);
}

namespace zr {
// Takes the module out of both trees; one that is not in them changes nothing.
void RemoveModuleNode(ZrCtx *ctx, ZrMod *module);
// Modules in name order: the first, and the one after `module`; null at the end.
ZrMod *FirstModule(const ZrCtx *ctx);
ZrMod *NextModule(const ZrCtx *ctx, const ZrMod *module);

// All of them, for a range-based loop that leaves the module at hand in the trees.
class ModuleRange {
    class Iterator {
    public:
        Iterator(const ZrCtx *ctx, ZrMod *module) : ctx_(ctx), module_(module) {}
        ZrMod *operator*() const { return module_; }
        Iterator &operator++()
        {
            module_ = NextModule(ctx_, module_);
            return *this;
        }
        bool operator!=(const Iterator &other) const { return module_ != other.module_; }

    private:
        const ZrCtx *ctx_;
        ZrMod *module_;
    };

public:
    explicit ModuleRange(const ZrCtx *ctx) : ctx_(ctx) {}
    Iterator begin() const { return Iterator(ctx_, FirstModule(ctx_)); }
    Iterator end() const { return Iterator(ctx_, nullptr); }

private:
    const ZrCtx *ctx_;
};

inline ModuleRange ModulesOf(const ZrCtx *ctx)
{
    return ModuleRange(ctx);
}

} // namespace zr
