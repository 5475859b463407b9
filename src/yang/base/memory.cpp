#include "yang/base/memory.h"

#include <cstring>
#include <new>

namespace zr::yang {

void *HookResource::do_allocate(size_t size, size_t)
{
    void *block = hooks_.allocate(size, hooks_.user);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void HookResource::do_deallocate(void *block, size_t, size_t)
{
    hooks_.release(block, hooks_.user);
}

std::string_view Arena::Copy(std::string_view text)
{
    if (text.empty())
        return {};
    char *copy = static_cast<char *>(pool_.allocate(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
}

} // namespace zr::yang
