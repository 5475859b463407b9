// SPDX-License-Identifier: Apache-2.0
#include "yang/names/catalog.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "yang/names/files.h"
#include "yang/syntax/arguments.h"
#include "yang/syntax/parser.h"
#include "yang/syntax/yin_reader.h"

namespace zr::yang {

namespace {

constexpr std::string_view kSource = ".yang", kPrepared = ".yin";

bool HasEnding(std::string_view file)
{
    return file.ends_with(kSource) || file.ends_with(kPrepared);
}

// "NAME@REVISION.yang" or "NAME.yang", in parts.
struct FileName {
    std::string_view name, revision;
};
FileName SplitFileName(std::string_view file)
{
    if (HasEnding(file))
        file = file.substr(0, file.rfind('.'));
    size_t at = file.find('@');
    if (at == std::string_view::npos)
        return {file, {}};
    return {file.substr(0, at), file.substr(at + 1)};
}

std::string_view WhyNotRead(int error, std::pmr::string &buffer)
{
    if (error == EINVAL)
        return "not a regular file";
    buffer = std::generic_category().message(error);
    return buffer;
}

} // namespace

Catalog::Catalog(Arena &arena, Reports &reports, std::pmr::memory_resource *memory)
    : arena_(arena), reports_(reports), memory_(memory), files_(memory)
{
}

Catalog::Candidate &Catalog::Add(std::string_view path, std::string_view fileName)
{
    std::pmr::string terminated(path, memory_);
    terminated += '\0';
    std::string_view copy = arena_.Copy(terminated);
    copy.remove_suffix(1);
    FileName parts = SplitFileName(fileName);
    auto found = files_.find(parts.name);
    if (found == files_.end())
        found = files_.try_emplace(arena_.Copy(parts.name)).first;
    Candidate &candidate = found->second.emplace_back();
    candidate.path = copy;
    candidate.isPrepared = fileName.ends_with(kPrepared);
    candidate.isPart = parts.revision.starts_with('@');
    if (IsDate(parts.revision))
        candidate.revision = arena_.Copy(parts.revision);
    return candidate;
}

int Catalog::AddDirectory(std::string_view directory)
{
    std::pmr::string path(directory, memory_);
    std::pmr::vector<std::pmr::string> names(memory_);
    int error = ListDirectory(path.c_str(), [&](const char *entry) {
        if (HasEnding(entry) && entry[0] != '.')
            names.emplace_back(entry);
    });
    if (error != 0)
        return error;
    std::sort(names.begin(), names.end()); // the same order everywhere
    if (!path.ends_with('/'))
        path += '/';
    size_t length = path.size();
    for (const std::pmr::string &name : names) {
        path.resize(length);
        path += name;
        Add(path, name);
    }
    return 0;
}

bool Catalog::AddFile(std::string_view path)
{
    std::string_view name = path.substr(path.rfind('/') + 1);
    if (!name.ends_with(kSource))
        return false;
    Add(path, name).isPreferred = true;
    return true;
}

void Catalog::AddText(std::string_view name, std::string_view text)
{
    Candidate &candidate = Add(name, name);
    candidate.text = arena_.Copy(text);
    candidate.isText = candidate.isPreferred = true;
}

void Catalog::ReadHead(Unit &unit, std::string_view name)
{
    Statement &root = *unit.root;
    unit.name = root.argument;
    unit.isSubmodule = root.keyword == Keyword::Submodule;
    unit.version = VersionOf(root);
    const Statement *naming = unit.isSubmodule ? SubStatement(root, Keyword::BelongsTo) : &root;
    if (naming != nullptr)
        unit.prefix = ArgumentOf(*naming, Keyword::Prefix);
    for (Statement &child : SubStatements(root))
        if (child.keyword == Keyword::Revision && IsDate(child.argument))
            unit.revision = std::max(unit.revision, child.argument);
    if (unit.name != name)
        reports_.Error(root.place(), ZR_YANG_CODE_FILE,
                       {"the file of \"", name, "\" holds \"", unit.name, "\""});
}

void Catalog::Read(std::string_view name, Candidate &candidate)
{
    candidate.isRead = true;
    auto *unit = arena_.New<Unit>(arena_.resource());
    unit->path = candidate.path;
    unit->order = ++read_;
    unit->text = candidate.text;
    candidate.unit = unit;
    int error = candidate.isText ? 0 : ReadFile(candidate.path.data(), arena_, unit->text);
    if (error != 0) {
        std::pmr::string why(memory_);
        reports_.Error({unit, 0, 0}, ZR_YANG_CODE_FILE,
                       {"cannot be read: ", WhyNotRead(error, why)});
        return;
    }
    Statement *root =
        candidate.isPrepared ? ReadYin(*unit, reports_, arena_) : Parse(*unit, reports_, arena_);
    if (root == nullptr)
        return;
    if (root->keyword != Keyword::Module && root->keyword != Keyword::Submodule) {
        reports_.Error(root->place(), ZR_YANG_CODE_FILE, {"the file holds no module"});
        return;
    }
    unit->root = root;
    ReadHead(*unit, name);
    unit->isPrepared = candidate.isPrepared;
    CheckGrammar(*root, reports_);
}

// Prepared modules stand in for sources that are not there.
Catalog::Candidate *Catalog::Choose(std::string_view name, Candidates &candidates,
                                    std::string_view revision)
{
    Candidate *source = ChooseOf(name, candidates, revision, false);
    return source != nullptr ? source : ChooseOf(name, candidates, revision, true);
}

// A file that was added by itself comes first; then the newest; then the one that was found first.
// A file that does not say its revision in its name is read for that where it matters.
Catalog::Candidate *Catalog::ChooseOf(std::string_view name, Candidates &candidates,
                                      std::string_view revision, bool isPrepared)
{
    Candidate *best = nullptr;
    for (Candidate &candidate : candidates) {
        if (candidate.isPrepared != isPrepared || candidate.isPart)
            continue;
        bool isAlone = candidates.size() == 1 && revision.empty();
        if (candidate.revision.empty() && !candidate.isRead && !isAlone) {
            Read(name, candidate);
            candidate.revision = candidate.unit->revision;
        }
        if (!revision.empty() && candidate.revision != revision)
            continue;
        bool isBetter =
            best == nullptr || candidate.isPreferred > best->isPreferred ||
            (candidate.isPreferred == best->isPreferred && candidate.revision > best->revision);
        if (isBetter)
            best = &candidate;
    }
    return best;
}

Unit *Catalog::Find(std::string_view name, std::string_view revision, const Place &where)
{
    auto found = files_.find(name);
    Candidate *chosen = found != files_.end() ? Choose(name, found->second, revision) : nullptr;
    if (chosen == nullptr) {
        bool hasParts = found != files_.end() && found->second.front().isPart;
        reports_.Error(where, ZR_YANG_CODE_LINKAGE,
                       {"no source of \"", name, revision.empty() ? "" : "@", revision,
                        "\" in the directories", hasParts ? ", only parts of it in YIN" : ""});
        return nullptr;
    }
    if (!chosen->isRead)
        Read(found->first, *chosen);
    if (!revision.empty() && chosen->unit->root != nullptr && chosen->unit->revision != revision)
        reports_.Error(chosen->unit->root->place(), ZR_YANG_CODE_FILE,
                       {"the file of revision ", revision, " holds revision ",
                        chosen->unit->revision.empty() ? "none" : chosen->unit->revision});
    if (chosen->unit->root != nullptr)
        return chosen->unit;
    if (where.source != nullptr) // who needs it has an error too
        reports_.Error(where, ZR_YANG_CODE_LINKAGE,
                       {"the source of \"", name, "\" cannot be read"});
    return nullptr;
}

std::pmr::vector<std::string_view> Catalog::ModuleNames()
{
    std::pmr::vector<std::string_view> names(memory_);
    for (auto &[name, candidates] : files_) {
        Candidate *chosen = ChooseOf(name, candidates, {}, false);
        if (chosen == nullptr)
            continue;
        if (!chosen->isRead)
            Read(name, *chosen);
        const Statement *root = chosen->unit->root;
        if (root == nullptr || root->keyword == Keyword::Module)
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace zr::yang
