// The YIN files of the search directories, read only as far as is needed to order them.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tool {

// Which modules there are in the directories, and what each imports.
class ModuleFiles {
public:
    explicit ModuleFiles(const std::vector<std::string> &directories);

    // Every module found, by name.
    std::vector<std::string> Names() const;
    bool Has(const std::string &name) const;
    // The named modules and what they import, as far as it is there; imported modules first.
    std::vector<std::string> WithImports(const std::vector<std::string> &names);
    // The named modules alone, imported modules before those that import them.
    std::vector<std::string> InOrder(const std::vector<std::string> &names);

private:
    struct Links { // what one YIN file names
        std::string root;
        std::set<std::string> imports;
        std::set<std::string> includes;
    };

    const Links &ReadLinks(const std::string &path);
    std::set<std::string> ImportsOf(const std::string &name);
    void Visit(const std::string &name, std::set<std::string> &seen,
               std::vector<std::string> &order);

    std::map<std::string, std::vector<std::string>> files_; // by module or submodule name
    std::map<std::string, Links> links_;                    // by path
};

} // namespace tool
