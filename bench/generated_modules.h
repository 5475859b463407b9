// SPDX-License-Identifier: Apache-2.0
// Modules as published ones are in their proportions, under names that all differ: what a server of
// a thousand modules loads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

struct GeneratedModule {
    std::string name;
    std::string text;               // YIN
    std::vector<std::string> paths; // of some of its nodes, as ZR_CTX_GetTargetNode() takes them
};

// The same modules for the same number on every machine. Each imports at most two of those before
// it, augments one of them, and derives identities from theirs.
std::vector<GeneratedModule> GenerateModules(uint32_t count);

// A module that augments one node of each of them.
std::string GenerateAugments(const std::vector<GeneratedModule> &modules);

// One module of so many leafs.
GeneratedModule GenerateLargeModule(uint32_t leafs);

size_t BytesOf(const std::vector<GeneratedModule> &modules);

} // namespace bench
