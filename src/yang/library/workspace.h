// SPDX-License-Identifier: Apache-2.0
// A workspace: everything between the public functions and the rooms, and the order in which a
// module goes through these.
#pragma once

#include "yang/check/checker.h"
#include "yang/expand/expander.h"
#include "yang/names/linkage.h"
#include "yang/types/type.h"

namespace zr::yang {

class Workspace {
public:
    explicit Workspace(const ZrYangMemory &memory);

    // Reads a module, NAME or NAME@REVISION, with all that it imports, and checks them. A
    // ZrYangStatus.
    uint32_t Read(std::string_view name, std::pmr::vector<Module *> &orderOut);
    // The prepared text of a module that was read last in `order`.
    std::pmr::string Write(Module &module);
    void Deliver() { reports_.Deliver(reportFunc, reportUser); }

    HookResource memory;

private:
    Arena arena_;
    Reports reports_;

public:
    Catalog catalog;
    FeatureStates features;
    ZrYangReportFunc reportFunc = nullptr;
    void *reportUser = nullptr;
    bool strip = false;
    uint64_t &nodeLimit() { return expander_.nodeLimit; }
    uint64_t &reportLimit() { return reports_.limit; }

private:
    void Work(Module &module);
    uint32_t StatusOf(Module &root, const std::pmr::vector<Module *> &order);

    NodeIndex index_;
    Scopes scopes_;
    Linkage linkage_;
    Links links_;
    TypeResolver types_;
    Expander expander_;
    Checker checker_;
};

} // namespace zr::yang
