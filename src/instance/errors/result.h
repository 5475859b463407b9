// SPDX-License-Identifier: Apache-2.0
// What a check hands out: faults and warnings as the public records, with their paths, and as XML.
#pragma once

#include "instance/errors/faults.h"

namespace zr::data {

class Result {
public:
    explicit Result(const ZrDataMemory &hooks)
        : memory(hooks), arena(&memory, kFirstBlock), errors(&memory), warnings(&memory),
          errorTexts(&memory)
    {
    }

    // Takes over what was found, while the tree is still there.
    void Take(Faults &faults, Faults &theWarnings);

    HookResource memory;
    Arena arena;
    std::pmr::vector<ZrDataError> errors, warnings;
    std::pmr::vector<const char *> errorTexts; // each as an rpc-error
    size_t errorsFound = 0, warningsFound = 0;

private:
    static constexpr size_t kFirstBlock = 1024;

    ZrDataError Record(const Fault &fault);
};

} // namespace zr::data
