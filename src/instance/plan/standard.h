// What lists and leaf-lists are asked beyond their keys' names. It is the one place of the library
// that depends on how much of this a context keeps.
#pragma once

#include <zrschema/zrschema.h>

#include <cstdint>
#include <memory_resource>
#include <string>
#include <vector>

namespace zr::data {

struct ListConstraints {
    explicit ListConstraints(std::pmr::memory_resource *memory) : uniques(memory) {}

    uint32_t minElements = 0;
    uint32_t maxElements = 0; // 0: unbounded
    bool isUserOrdered = false;
    std::pmr::vector<std::pmr::string> uniques; // each "m:a/m:b m:c"
};

using ReadConstraintsFunc = void (*)(const ZrNode *node, ListConstraints &constraints);

// Reads what the node's context keeps.
void ReadConstraints(const ZrNode *node, ListConstraints &constraints);

} // namespace zr::data
