// SPDX-License-Identifier: Apache-2.0
#include "module_files.h"

#include <algorithm>
#include <filesystem>

#include "close_names.h"
#include "xml_text.h"

namespace fs = std::filesystem;

namespace tool {

namespace {

constexpr const char *kExtension = ".yin";
constexpr const char *kSuffixMark = "@@"; // in the name of a file that is one part of its module

std::string ModuleNameOf(const fs::path &path)
{
    std::string stem = path.stem().string();
    return stem.substr(0, stem.find('@'));
}

bool IsPart(const std::string &path)
{
    return fs::path(path).filename().string().find(kSuffixMark) != std::string::npos;
}

} // namespace

ModuleFiles::ModuleFiles(Run &run, const std::vector<std::string> &directories, Sources &sources)
    : run_(run), directories_(directories), sources_(sources)
{
    for (const std::string &directory : directories) {
        size_t before = leftOut_.size();
        Collect(directory);
        if (leftOut_.size() == before || leftOut_.back().warning)
            sources_.AddDirectory(directory);
    }
}

void ModuleFiles::Collect(const std::string &directory)
{
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path &path = entry->path();
        bool isSource = path.extension() == kSourceExtension;
        if (path.extension() != kExtension && !isSource)
            continue;
        std::error_code unknown;
        if (entry->is_regular_file(unknown))
            (isSource ? sourceFiles_ : files_)[ModuleNameOf(path)].push_back(path.string());
        else
            leftOut_.push_back({"not a regular file: passed over", "", path.string(), 0, true});
    }
    if (error)
        leftOut_.push_back({"cannot be listed: " + error.message(), "", directory, 0, false});
}

const YinFile &ModuleFiles::Read(const std::string &path, Extent extent)
{
    auto [found, isNew] = read_.try_emplace(path);
    YinFile &file = found->second;
    if (!isNew && (file.isWhole || extent == Extent::Header))
        return file;
    auto prepared = prepared_.find(path);
    file = prepared == prepared_.end() ? ReadYinFile(path, extent)
                                       : ReadYinText(prepared->second, path, extent);
    return file;
}

ModuleChoice ModuleFiles::Choose(const std::string &given)
{
    if (fs::path(given).extension() == kSourceExtension) {
        if (given.find('/') != std::string::npos)
            sources_.AddFile(given);
        std::string name = ModuleNameOf(given);
        sourceFiles_[name].push_back(given);
        size_t at = given.find('/') == std::string::npos ? given.find('@') : std::string::npos;
        return ChooseSource(
            name, at == std::string::npos ? "" : fs::path(given.substr(at + 1)).stem().string());
    }
    if (given.find('/') != std::string::npos || fs::path(given).extension() == kExtension)
        return ChooseFile(given);
    size_t at = given.find('@');
    std::string name = given.substr(0, at),
                revision = at == std::string::npos ? "" : given.substr(at + 1);
    if (sourceFiles_.count(name) != 0)
        return ChooseSource(name, revision);
    if (at == std::string::npos)
        return {given, "", ""};
    return ChooseRevision(name, revision);
}

ModuleChoice ModuleFiles::ChooseSource(const std::string &name, const std::string &revision)
{
    Take(name, revision);
    std::string path = ChosenPath(name);
    return {name, path, path.empty() ? "its source has errors" : ""};
}

void ModuleFiles::Take(const std::string &name, const std::string &revision)
{
    if (sourceFiles_.count(name) == 0 || !taken_.insert(name).second)
        return;
    std::string text;
    if (!sources_.Prepare(revision.empty() ? name : name + "@" + revision, text))
        return;
    std::string path = sourceFiles_[name].front();
    prepared_[path] = std::move(text);
    chosen_[name] = path;
}

std::string ModuleFiles::ReadText(const std::string &path, std::string &text) const
{
    auto found = prepared_.find(path);
    if (found == prepared_.end())
        return ReadRegularFile(path, text);
    text = found->second;
    return "";
}

ModuleChoice ModuleFiles::ChooseFile(const std::string &given)
{
    std::string path = given;
    for (const auto &[name, paths] : files_) // a bare file name is one of the search directories
        for (const std::string &file : paths)
            if (fs::path(file).filename() == given && path == given)
                path = file;
    const YinFile &file = Read(path, Extent::Whole);
    if (!file.faults.empty()) {
        const Problem &fault = file.faults.front();
        std::string line = fault.line > 0 ? "line " + std::to_string(fault.line) + ": " : "";
        return {given, "", line + fault.message + DidYouMean(CloseTo(ModuleNameOf(given)))};
    }
    if (file.root == "submodule")
        return {given, "", "the file holds a submodule: name the module that it belongs to"};
    if (file.root != "module")
        return {given, "", "the file holds no module, but \"" + file.root + "\""};
    if (IsLoadedByName(file.name, path))
        return {file.name, "", ""};
    if (IsPart(path))
        return {given, "",
                "the file is one part of module " + file.name +
                    ": name the module, and the file's directory with -p"};
    chosen_[file.name] = path;
    return {file.name, path, ""};
}

ModuleChoice ModuleFiles::ChooseRevision(const std::string &name, const std::string &revision)
{
    if (!Has(name))
        return {name, "", ""}; // fails like any module that is not there
    std::string given = name + "@" + revision, others;
    for (const std::string &path : files_[name]) {
        const std::string &found = Read(path).revision;
        if (found != revision) {
            others += (others.empty() ? "" : ", ") + (found.empty() ? "none" : found);
            continue;
        }
        if (IsLoadedByName(name, path))
            return {name, "", ""};
        if (!IsPart(path))
            return {name, chosen_[name] = path, ""};
    }
    return {given, "", "the directories have no such revision of " + name + ", but " + others};
}

std::string ModuleFiles::ChosenPath(const std::string &name) const
{
    auto found = chosen_.find(name);
    return found != chosen_.end() ? found->second : "";
}

// As the library chooses: the first directory with NAME.yin ends the search; of the files with
// more in their names all parts count, or else the first file alone.
std::vector<std::string> ModuleFiles::LoadedFiles(const std::string &name) const
{
    auto chosen = chosen_.find(name);
    if (chosen != chosen_.end())
        return {chosen->second};
    auto files = files_.find(name);
    if (files == files_.end())
        return {};
    std::vector<std::string> collected, parts;
    for (const std::string &directory : directories_) {
        std::string plain = (fs::path(directory) / (name + kExtension)).string();
        bool isThere =
            std::find(files->second.begin(), files->second.end(), plain) != files->second.end();
        if (isThere)
            collected.push_back(plain);
        for (const std::string &path : files->second)
            if (!isThere && fs::path(path).parent_path() == directory)
                collected.push_back(path);
        if (isThere)
            break;
    }
    std::copy_if(collected.begin(), collected.end(), std::back_inserter(parts), IsPart);
    if (parts.empty() && !collected.empty())
        parts.push_back(collected.front());
    return parts;
}

std::vector<std::string> ModuleFiles::LoadedParts(const std::string &name)
{
    std::vector<std::string> paths;
    std::set<std::string> seen = {name};
    for (std::vector<std::string> todo = {name}; !todo.empty();) {
        std::vector<std::string> files = LoadedFiles(todo.back());
        todo.pop_back();
        for (const std::string &path : files) {
            paths.push_back(path);
            for (const std::string &include : Read(path).includes)
                if (seen.insert(include).second)
                    todo.push_back(include);
        }
    }
    return paths;
}

bool ModuleFiles::IsLoadedByName(const std::string &name, const std::string &path) const
{
    std::error_code error;
    for (const std::string &file : LoadedFiles(name))
        if (fs::equivalent(file, path, error))
            return true;
    return false;
}

std::vector<std::string> ModuleFiles::Names()
{
    std::vector<std::string> names;
    for (const auto &[name, paths] : files_)
        if (Read(paths.front()).root != "submodule" && sourceFiles_.count(name) == 0)
            names.push_back(name);
    if (!sourceFiles_.empty())
        for (const std::string &name : sources_.Names())
            names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

bool ModuleFiles::Has(const std::string &name) const
{
    return files_.count(name) != 0 || chosen_.count(name) != 0 || sourceFiles_.count(name) != 0;
}

std::vector<std::string> ModuleFiles::CloseTo(const std::string &name) const
{
    std::vector<std::string> names;
    for (const auto *files : {&files_, &sourceFiles_})
        for (const auto &entry : *files)
            names.push_back(entry.first);
    return CloseNames(name, names);
}

std::set<std::string> ModuleFiles::ImportsOf(const std::string &name)
{
    std::set<std::string> imports;
    for (const std::string &path : LoadedParts(name))
        imports.insert(Read(path).imports.begin(), Read(path).imports.end());
    return imports;
}

std::set<std::string> ModuleFiles::FeaturesOf(const std::string &name)
{
    std::set<std::string> features;
    for (const std::string &path : LoadedParts(name))
        features.merge(std::set(Read(path, Extent::Whole).features));
    return features;
}

std::vector<Problem> ModuleFiles::FaultsIn(const std::vector<std::string> &paths)
{
    std::vector<Problem> faults;
    for (const std::string &path : paths) {
        const std::vector<Problem> &found = Read(path, Extent::Whole).faults;
        faults.insert(faults.end(), found.begin(), found.end());
    }
    return faults;
}

std::vector<Problem> ModuleFiles::FaultsOf(const std::string &name, bool isLoaded)
{
    std::vector<std::string> parts = LoadedParts(name);
    // A module that is there has been read, but parts of it may not have been.
    return isLoaded && parts.size() <= 1 ? std::vector<Problem>() : FaultsIn(parts);
}

std::vector<Problem> ModuleFiles::FaultsBeside(const std::string &name)
{
    auto files = files_.find(name);
    if (files == files_.end())
        return {};
    std::vector<std::string> loaded = LoadedParts(name), beside;
    std::ranges::copy_if(files->second, std::back_inserter(beside), [&](const std::string &path) {
        return std::ranges::find(loaded, path) == loaded.end();
    });
    return FaultsIn(beside);
}

std::vector<Problem> ModuleFiles::PassedOverIn(const std::string &name)
{
    std::vector<Problem> problems;
    for (const std::string &path : LoadedParts(name))
        problems.insert(problems.end(), Read(path).passedOver.begin(), Read(path).passedOver.end());
    return problems;
}

void ModuleFiles::Visit(const std::string &name, std::set<std::string> &seen,
                        std::vector<std::string> &order)
{
    if (!seen.insert(name).second)
        return;
    Take(name);
    for (const std::string &import : ImportsOf(name))
        if (Has(import))
            Visit(import, seen, order);
    order.push_back(name);
}

std::vector<std::string> ModuleFiles::WithImports(const std::vector<std::string> &names)
{
    std::set<std::string> seen;
    std::vector<std::string> order;
    for (size_t i = 0; i < names.size(); ++i) {
        run_.ShowProgress("reading", i + 1, names.size(), names[i]);
        Visit(names[i], seen, order);
    }
    return order;
}

std::vector<std::string> ModuleFiles::InOrder(const std::vector<std::string> &names)
{
    std::vector<std::string> order = WithImports(names);
    std::set<std::string> named(names.begin(), names.end());
    auto unnamed = [&](const std::string &name) { return named.count(name) == 0; };
    order.erase(std::remove_if(order.begin(), order.end(), unnamed), order.end());
    return order;
}

} // namespace tool
