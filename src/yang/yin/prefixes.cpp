// SPDX-License-Identifier: Apache-2.0
#include "yang/yin/prefixes.h"

#include <charconv>

namespace zr::yang {

Prefixes::Prefixes(Module &module, Arena &arena, std::pmr::memory_resource *memory)
    : module_(module), arena_(arena), unit_(module.unit), entries_(memory), byPrefix_(memory),
      byModule_(memory)
{
    Add(module.unit->prefix, &module, module.name);
    for (const Unit *unit : module.units)
        for (const Import &import : unit->imports) {
            if (unit == module.unit)
                Add(import.prefix, import.module, import.statement->argument);
            else if (import.module != nullptr)
                Of(*import.module, import.prefix);
        }
}

void Prefixes::Add(std::string_view prefix, Module *module, std::string_view name)
{
    if (!byPrefix_.try_emplace(prefix, module).second)
        return; // in use: reported where it is imported
    entries_.push_back({prefix, module, name});
    if (module != nullptr)
        byModule_.try_emplace(module, prefix);
}

std::string_view Prefixes::Of(Module &module, std::string_view wish)
{
    auto found = byModule_.find(&module);
    if (found != byModule_.end())
        return found->second;
    std::pmr::string free(wish, arena_.resource());
    for (uint32_t number = 2; byPrefix_.contains(free); ++number) {
        char digits[16];
        auto [end, error] = std::to_chars(digits, digits + sizeof(digits), number);
        free.resize(wish.size());
        (free += '-').append(digits, end);
    }
    std::string_view prefix = arena_.Copy(free);
    Add(prefix, &module, module.name);
    return prefix;
}

std::string_view Prefixes::Written(std::string_view prefix)
{
    auto found = unit_->prefixes.find(prefix);
    if (found == unit_->prefixes.end() || found->second == nullptr)
        return prefix;
    auto same = byPrefix_.find(prefix);
    if (same != byPrefix_.end() && same->second == found->second)
        return prefix;
    return Of(*found->second, found->second->unit->prefix);
}

bool Prefixes::IsKnown(std::string_view prefix)
{
    return unit_->prefixes.contains(prefix);
}

std::string_view Prefixes::OfUnprefixedName()
{
    if (unit_->module == &module_)
        return {};
    return Of(*unit_->module, unit_->module->unit->prefix);
}

} // namespace zr::yang
