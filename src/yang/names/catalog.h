// SPDX-License-Identifier: Apache-2.0
// The catalog: which sources there are under which names, and reading the one that is meant.
#pragma once

#include "yang/names/module.h"

namespace zr::yang {

class Catalog {
public:
    Catalog(Arena &arena, Reports &reports, std::pmr::memory_resource *memory);

    // 0, or errno when the directory cannot be listed.
    int AddDirectory(std::string_view directory);
    // False when the path does not end like one of a source.
    bool AddFile(std::string_view path);
    void AddText(std::string_view name, std::string_view text);

    // The file of a module or submodule, of that revision or, for "", of the newest; null when
    // there is none or it cannot be read, which is reported at `where`.
    Unit *Find(std::string_view name, std::string_view revision, const Place &where);

    // Whether there is any file of that name.
    bool Has(std::string_view name) const { return files_.contains(name); }

    // The names of all modules that have a source, sorted.
    std::pmr::vector<std::string_view> ModuleNames();

private:
    struct Candidate {
        std::string_view path; // NUL behind it
        std::string_view revision;
        std::string_view text; // of one that is no file
        bool isText = false;
        bool isPreferred = false;
        bool isPrepared = false; // YIN
        bool isPart = false;     // NAME@@SUFFIX.yin, which is merged with others when it is loaded
        bool isRead = false;
        Unit *unit = nullptr; // once it is read
    };
    using Candidates = std::pmr::vector<Candidate>;

    Candidate &Add(std::string_view path, std::string_view fileName);
    void Read(std::string_view name, Candidate &candidate);
    void ReadHead(Unit &unit, std::string_view name);
    Candidate *Choose(std::string_view name, Candidates &candidates, std::string_view revision);
    Candidate *ChooseOf(std::string_view name, Candidates &candidates, std::string_view revision,
                        bool isPrepared);

    Arena &arena_;
    Reports &reports_;
    std::pmr::memory_resource *memory_;
    std::pmr::unordered_map<std::string_view, Candidates> files_;
    uint32_t read_ = 0;
};

} // namespace zr::yang
