// SPDX-License-Identifier: Apache-2.0
// The YIN files of the search directories: which modules there are, what they import, and which
// file somebody means.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "run.h"
#include "sources.h"
#include "yin_file.h"

namespace tool {

// A module as somebody named it on the command line.
struct ModuleChoice {
    std::string name;
    std::string path;    // the file to load, "" for the one that the library finds by the name
    std::string problem; // "", or why nothing can be loaded
};

class ModuleFiles {
public:
    ModuleFiles(Run &run, const std::vector<std::string> &directories, Sources &sources);

    // Understands a module's name, NAME@REVISION, and the name or path of a file. From then on the
    // file that was chosen stands for the module.
    ModuleChoice Choose(const std::string &given);
    // The file that was chosen for a module, "" when none was.
    std::string ChosenPath(const std::string &name) const;

    // Prepares a module that is there as a source, which is preferred to a YIN file of its name:
    // from then on what was prepared stands for the module.
    void Take(const std::string &name) { Take(name, ""); }
    // The text of a file, or what was prepared of a source; "", or the reason why there is none.
    std::string ReadText(const std::string &path, std::string &text) const;

    // Every module found, by name.
    std::vector<std::string> Names();
    bool Has(const std::string &name) const;
    std::vector<std::string> CloseTo(const std::string &name) const;
    // The named modules and what they import, as far as it is there; imported modules first.
    std::vector<std::string> WithImports(const std::vector<std::string> &names);
    // The named modules alone, imported modules before those that import them.
    std::vector<std::string> InOrder(const std::vector<std::string> &names);

    // What a module with its submodules imports, and the features that it has.
    std::set<std::string> ImportsOf(const std::string &name);
    std::set<std::string> FeaturesOf(const std::string &name);
    // Why files of a module and of its submodules are no XML, of those that are loaded for it,
    // whether or not it could be.
    std::vector<Problem> FaultsOf(const std::string &name, bool isLoaded);
    // The same of the other files of its name.
    std::vector<Problem> FaultsBeside(const std::string &name);
    // What the library passes over in the files of a module and of its submodules.
    std::vector<Problem> PassedOverIn(const std::string &name);

    // Directories and entries of them that were left out, with the reason.
    const std::vector<Problem> &leftOut() const { return leftOut_; }

private:
    void Collect(const std::string &directory);
    const YinFile &Read(const std::string &path, Extent extent = Extent::Header);
    std::vector<Problem> FaultsIn(const std::vector<std::string> &paths);
    void Take(const std::string &name, const std::string &revision);
    ModuleChoice ChooseFile(const std::string &given);
    ModuleChoice ChooseSource(const std::string &name, const std::string &revision);
    ModuleChoice ChooseRevision(const std::string &name, const std::string &revision);
    // The files that the library reads for a module.
    std::vector<std::string> LoadedFiles(const std::string &name) const;
    // Those of the module and of the submodules that it includes.
    std::vector<std::string> LoadedParts(const std::string &name);
    bool IsLoadedByName(const std::string &name, const std::string &path) const;
    void Visit(const std::string &name, std::set<std::string> &seen,
               std::vector<std::string> &order);

    Run &run_;
    std::vector<std::string> directories_;
    std::map<std::string, std::vector<std::string>> files_; // by module or submodule name
    std::map<std::string, std::string> chosen_;             // path by name
    std::map<std::string, YinFile> read_;                   // by path
    Sources &sources_;
    std::map<std::string, std::vector<std::string>> sourceFiles_; // by module or submodule name
    std::set<std::string> taken_;                                 // that were tried
    std::map<std::string, std::string> prepared_;                 // texts by path
    std::vector<Problem> leftOut_;
};

} // namespace tool
