// SPDX-License-Identifier: Apache-2.0
// Sets of modules that augment and deviate each other, made from a seed.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

namespace zrtest {

// Between three and seven modules. The deviations of different modules never touch the same
// property of a node, so that the schema does not depend on who comes first.
struct ModuleSet {
    std::vector<std::string> names;
    std::map<std::string, std::string> texts;

    // What the set contains, to see that the sets of a run are worth something.
    int augmentsOnAugments = 0;
    int deviationsOnAugmented = 0;
    int sharedNodes = 0; // deviated by more than one module
    int madeInputs = 0;  // augments of an input or output that no statement declares
    int notSupported = 0;
    int changedConfig = 0; // by "replace", or by "add" of either value
    int deniedByDeviation = 0;
};

// A set of so many modules; 0 leaves the number to chance.
ModuleSet MakeModuleSet(uint32_t seed, uint32_t count = 0);

// Values below a bound, the same on every platform.
class Random {
public:
    explicit Random(uint32_t seed) : engine_(seed) {}
    uint32_t Below(uint32_t bound) { return static_cast<uint32_t>(engine_() % bound); }
    bool Chance(uint32_t percent) { return Below(100) < percent; }
    template <typename T> void Shuffle(std::vector<T> &items)
    {
        for (size_t i = items.size(); i > 1; --i)
            std::swap(items[i - 1], items[Below(static_cast<uint32_t>(i))]);
    }

private:
    std::mt19937 engine_;
};

} // namespace zrtest
