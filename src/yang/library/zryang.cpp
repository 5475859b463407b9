// SPDX-License-Identifier: Apache-2.0
// The public functions. Nothing that is thrown goes beyond them: memory that runs out becomes a
// status.
#include <cerrno>
#include <cstring>
#include <new>
#include <string>

#include "shared/guard.h"
#include "yang/library/workspace.h"
#include "yang/names/files.h"

using namespace zr::yang;

struct ZrYang {
    explicit ZrYang(const ZrYangMemory &memory) : workspace(memory) {}
    Workspace workspace;
};

namespace {

constexpr ZrYangMemory kMalloc = zr::MallocHooks<ZrYangMemory>();

// Runs a piece of work and turns memory that runs out into a status.
template <typename Work> uint32_t Guard(Work work) noexcept
{
    return zr::Guard<ZR_YANG_ERR_NO_MEMORY>(work);
}

// The same for what makes reports, which are told at its end.
template <typename Work> uint32_t GuardAndDeliver(ZrYang &yang, Work work) noexcept
{
    uint32_t status = Guard(work);
    int error = errno;
    uint32_t told = Guard([&] {
        yang.workspace.Deliver();
        return uint32_t{ZR_YANG_OK};
    });
    errno = error;
    return status != ZR_YANG_OK ? status : told;
}

uint32_t PrepareText(Workspace &workspace, const char *module, std::pmr::string &textOut,
                     std::string_view &nameOut)
{
    std::pmr::vector<Module *> order(&workspace.memory);
    uint32_t status = workspace.Read(module, order);
    if (status != ZR_YANG_OK)
        return status;
    nameOut = order.back()->name;
    textOut = workspace.Write(*order.back());
    return ZR_YANG_OK;
}

uint32_t PrepareFile(Workspace &workspace, const char *module, const char *directory)
{
    std::pmr::string text(&workspace.memory);
    std::string_view name;
    uint32_t status = PrepareText(workspace, module, text, name);
    if (status != ZR_YANG_OK)
        return status;
    std::pmr::string path(directory, &workspace.memory);
    ((path += '/') += name) += ".yin";
    int error = WriteFile(path.c_str(), text, &workspace.memory);
    errno = error;
    return error == 0 ? ZR_YANG_OK : ZR_YANG_ERR_IO;
}

} // namespace

ZrYang *ZR_YANG_Create(const ZrYangMemory *memory)
{
    const ZrYangMemory &hooks = memory != nullptr ? *memory : kMalloc;
    if (hooks.allocate == nullptr || hooks.release == nullptr)
        return nullptr;
    void *place = hooks.allocate(sizeof(ZrYang), hooks.user);
    if (place == nullptr)
        return nullptr;
    try {
        return new (place) ZrYang(hooks);
    } catch (const std::bad_alloc &) {
        hooks.release(place, hooks.user);
        return nullptr;
    }
}

void ZR_YANG_Delete(ZrYang *yang)
{
    if (yang == nullptr)
        return;
    ZrYangMemory hooks = yang->workspace.memory.hooks();
    yang->~ZrYang();
    hooks.release(yang, hooks.user);
}

uint32_t ZR_YANG_AddDirectory(ZrYang *yang, const char *directory)
{
    if (yang == nullptr || directory == nullptr)
        return ZR_YANG_ERR_INVALID;
    return Guard([&]() -> uint32_t {
        errno = yang->workspace.catalog.AddDirectory(directory);
        return errno == 0 ? ZR_YANG_OK : ZR_YANG_ERR_IO;
    });
}

uint32_t ZR_YANG_AddFile(ZrYang *yang, const char *path)
{
    if (yang == nullptr || path == nullptr)
        return ZR_YANG_ERR_INVALID;
    return Guard([&]() -> uint32_t {
        return yang->workspace.catalog.AddFile(path) ? ZR_YANG_OK : ZR_YANG_ERR_INVALID;
    });
}

uint32_t ZR_YANG_AddText(ZrYang *yang, const char *name, const char *text, size_t length)
{
    if (yang == nullptr || name == nullptr || text == nullptr)
        return ZR_YANG_ERR_INVALID;
    return Guard([&]() -> uint32_t {
        yang->workspace.catalog.AddText(name, {text, length});
        return ZR_YANG_OK;
    });
}

void ZR_YANG_SetReportFunc(ZrYang *yang, ZrYangReportFunc func, void *user)
{
    if (yang == nullptr)
        return;
    yang->workspace.reportFunc = func;
    yang->workspace.reportUser = user;
}

uint32_t ZR_YANG_SetFeature(ZrYang *yang, const char *module, const char *feature, int isOn)
{
    if (yang == nullptr || module == nullptr || feature == nullptr)
        return ZR_YANG_ERR_INVALID;
    return Guard([&]() -> uint32_t {
        yang->workspace.features.Set(module, feature, isOn != 0);
        return ZR_YANG_OK;
    });
}

uint32_t ZR_YANG_SetOption(ZrYang *yang, uint32_t option, uint64_t value)
{
    if (yang == nullptr)
        return ZR_YANG_ERR_INVALID;
    if (option == ZR_YANG_OPTION_STRIP)
        yang->workspace.strip = value != 0;
    else if (option == ZR_YANG_OPTION_NODE_LIMIT && value != 0)
        yang->workspace.nodeLimit() = value;
    else if (option == ZR_YANG_OPTION_REPORT_LIMIT && value != 0)
        yang->workspace.reportLimit() = value;
    else
        return ZR_YANG_ERR_INVALID;
    return ZR_YANG_OK;
}

uint32_t ZR_YANG_ScanModules(ZrYang *yang, ZrYangNameFunc func, void *user)
{
    if (yang == nullptr || func == nullptr)
        return ZR_YANG_ERR_INVALID;
    return GuardAndDeliver(*yang, [&]() -> uint32_t {
        std::pmr::string terminated(&yang->workspace.memory);
        for (std::string_view name : yang->workspace.catalog.ModuleNames()) {
            terminated = name;
            if (func(terminated.c_str(), user) != 0)
                return ZR_YANG_ERR_STOPPED;
        }
        return ZR_YANG_OK;
    });
}

uint32_t ZR_YANG_ScanDependencies(ZrYang *yang, const char *module, ZrYangNameFunc func, void *user)
{
    if (yang == nullptr || module == nullptr || func == nullptr)
        return ZR_YANG_ERR_INVALID;
    return GuardAndDeliver(*yang, [&]() -> uint32_t {
        std::pmr::vector<Module *> order(&yang->workspace.memory);
        uint32_t status = yang->workspace.Read(module, order);
        for (size_t i = order.size(); i > 0; --i) // the module itself comes last
            for (const Unit *unit : order[i - 1]->units)
                if (func(unit->path.data(), user) != 0)
                    return ZR_YANG_ERR_STOPPED;
        return status;
    });
}

uint32_t ZR_YANG_PrepareToText(ZrYang *yang, const char *module, char **textOut, size_t *lengthOut)
{
    if (yang == nullptr || module == nullptr || textOut == nullptr)
        return ZR_YANG_ERR_INVALID;
    *textOut = nullptr;
    return GuardAndDeliver(*yang, [&]() -> uint32_t {
        std::pmr::string text(&yang->workspace.memory);
        std::string_view name;
        uint32_t status = PrepareText(yang->workspace, module, text, name);
        if (status != ZR_YANG_OK)
            return status;
        char *copy = static_cast<char *>(yang->workspace.memory.allocate(text.size() + 1));
        std::memcpy(copy, text.c_str(), text.size() + 1);
        *textOut = copy;
        if (lengthOut != nullptr)
            *lengthOut = text.size();
        return ZR_YANG_OK;
    });
}

void ZR_YANG_FreeText(ZrYang *yang, char *text)
{
    if (yang == nullptr || text == nullptr)
        return;
    const ZrYangMemory &hooks = yang->workspace.memory.hooks();
    hooks.release(text, hooks.user);
}

uint32_t ZR_YANG_PrepareToFile(ZrYang *yang, const char *module, const char *directory)
{
    if (yang == nullptr || module == nullptr || directory == nullptr)
        return ZR_YANG_ERR_INVALID;
    return GuardAndDeliver(*yang, [&] { return PrepareFile(yang->workspace, module, directory); });
}

uint32_t ZR_YANG_PrepareAll(ZrYang *yang, const char *directory, ZrYangProgressFunc progress,
                            void *user)
{
    if (yang == nullptr || directory == nullptr)
        return ZR_YANG_ERR_INVALID;
    return GuardAndDeliver(*yang, [&]() -> uint32_t {
        std::pmr::vector<std::string_view> names = yang->workspace.catalog.ModuleNames();
        std::pmr::string name(&yang->workspace.memory);
        uint32_t result = ZR_YANG_OK;
        for (size_t i = 0; i <= names.size(); ++i) {
            name = i < names.size() ? names[i] : std::string_view();
            if (progress != nullptr && progress(i, names.size(), name.c_str(), user) != 0)
                return ZR_YANG_ERR_STOPPED;
            uint32_t status = i < names.size()
                                  ? PrepareFile(yang->workspace, name.c_str(), directory)
                                  : uint32_t{ZR_YANG_OK};
            if (status == ZR_YANG_ERR_IO)
                return status;
            if (status != ZR_YANG_OK)
                result = ZR_YANG_ERR_FAULTY;
        }
        return result;
    });
}
