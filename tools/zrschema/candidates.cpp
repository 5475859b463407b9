// SPDX-License-Identifier: Apache-2.0
#include "candidates.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "lookup.h"
#include "session.h"

namespace fs = std::filesystem;

namespace tool {

namespace {

struct Request {
    const Given &given;
    const std::string &word;
    Session &session;
};

Candidates Plain(const std::vector<std::string> &texts)
{
    Candidates candidates;
    for (const std::string &text : texts)
        candidates.push_back({text, ""});
    return candidates;
}

Candidates Files(const Request &)
{
    return {{":files", ""}};
}

Candidates Directories(const Request &)
{
    return {{":directories", ""}};
}

// NAME@REVISION of each file that has its revision in its name.
std::vector<std::string> NamesWithRevisions(const Given &given)
{
    std::set<std::string> names;
    for (const std::string &directory : given.directories)
        for (const fs::directory_entry &entry : fs::directory_iterator(directory)) {
            std::string stem = entry.path().stem().string(),
                        end = entry.path().extension().string();
            size_t at = stem.find('@');
            if ((end == ".yang" || end == ".yin") && at != std::string::npos && stem[at + 1] != '@')
                names.insert(stem);
        }
    return {names.begin(), names.end()};
}

Candidates Modules(const Request &request)
{
    if (request.word.find_first_of("/.~") != std::string::npos)
        return Files(request);
    return Plain(request.word.find('@') != std::string::npos ? NamesWithRevisions(request.given)
                                                             : request.session.files().Names());
}

// "/dir/NAME@REVISION.yang" as NAME.
std::string NameOf(const std::string &module)
{
    fs::path path(module);
    bool isFile = path.extension() == ".yang" || path.extension() == ".yin";
    std::string name = (isFile ? path.stem() : path.filename()).string();
    return name.substr(0, name.find('@'));
}

// The start of a word that begins with a module's name: those of the modules that were given, or
// else of all.
Candidates ModuleStarts(const Request &request, const std::string &before)
{
    std::vector<std::string> names;
    for (const std::string &module : request.given.modules)
        names.push_back(NameOf(module));
    if (names.empty())
        names = request.session.files().Names();
    for (std::string &name : names)
        name = before + name + ":";
    return Plain(names);
}

// Loads the modules that were given, and the one that a word names.
void Load(const Request &request, const std::string &name)
{
    ModuleOptions options;
    options.modules = request.given.modules;
    options.allFeatures = true;
    std::vector<std::string> names;
    for (const std::string &module : options.modules)
        names.push_back(NameOf(module));
    if (std::find(names.begin(), names.end(), name) == names.end())
        options.modules.push_back(name);
    request.session.SetUp(options, names);
}

// MODULE:NAME, and MODULE:NAME,NAME... where a command takes it.
Candidates Features(const Request &request)
{
    size_t colon = request.word.find(':');
    if (colon == std::string::npos)
        return ModuleStarts(request, "");
    std::string name = request.word.substr(0, colon);
    request.session.files().Choose(name);
    std::string before = request.word.substr(0, request.word.find_last_of(":,") + 1);
    Candidates candidates = {{before + "*", "all of them"}};
    for (const std::string &feature : request.session.files().FeaturesOf(name))
        candidates.push_back({before + feature, ""});
    return candidates;
}

// "/MODULE:NAME/NAME/...", one step at a time.
Candidates Paths(const Request &request)
{
    size_t colon = request.word.find(':');
    if (colon == std::string::npos)
        return ModuleStarts(request, "/");
    Load(request, request.word.substr(1, colon - 1));
    size_t slash = request.word.rfind('/');
    return Plain(
        PathsBelow(request.session, request.word.substr(0, slash == 0 ? colon + 1 : slash)));
}

// MODULE:RPC, or the path of an action.
Candidates Operations(const Request &request)
{
    if (request.word.starts_with('/'))
        return Paths(request);
    size_t colon = request.word.find(':');
    if (colon == std::string::npos)
        return ModuleStarts(request, "");
    std::string start = request.word.substr(0, colon + 1);
    Load(request, request.word.substr(0, colon));
    Candidates candidates;
    for (std::string path : PathsBelow(request.session, "/" + start)) {
        path.resize(path.find_last_not_of('/') + 1);
        const ZrNode *node = ZR_CTX_GetTargetNode(request.session.ctx(), path.c_str(), nullptr);
        if (ZR_NODE_GetNodeType(node) == ZR_NODE_RPC)
            candidates.push_back({start + ZR_NODE_GetNodeName(node), ""});
    }
    return candidates;
}

// By what the help calls a value. Of other values nothing is known.
struct Row {
    const char *value;
    Candidates (*list)(const Request &request);
};
// clang-format off
constexpr Row kRows[] = {
    {"DIR",                 Directories},
    {"OUTDIR",              Directories},
    {"FILE",                Files},
    {"FILE|-",              Files},
    {"MODULE",              Modules},
    {"MODULE:NAME",         Features},
    {"MODULE:NAME,NAME...", Features},
    {"MODULE:RPC",          Operations},
    {"PATH",                Paths},
};
// clang-format on

} // namespace

Candidates ValuesOf(const OptionHelp &option, const Given &given, const std::string &word)
{
    if (!option.choices.empty())
        return Plain(option.choices);
    for (const Row &row : kRows)
        if (option.value == row.value) {
            Run run(false);
            run.Silence();
            Session session(run, ZR_CTX_STANDARD, given.directories);
            return row.list({given, word, session});
        }
    return {};
}

} // namespace tool
