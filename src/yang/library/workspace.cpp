// SPDX-License-Identifier: Apache-2.0
#include "yang/library/workspace.h"

#include "yang/yin/writer.h"

namespace zr::yang {

Workspace::Workspace(const ZrYangMemory &hooks)
    : memory(hooks), arena_(&memory), reports_(arena_, &memory), catalog(arena_, reports_, &memory),
      features(arena_, &memory), index_(&memory), scopes_(reports_, arena_),
      linkage_(catalog, reports_, arena_, &memory), links_(scopes_, reports_, arena_, &memory),
      types_(reports_, arena_), expander_(scopes_, reports_, arena_, features, index_),
      checker_(scopes_, reports_, index_, &memory)
{
}

// The road of one module; what it imports has gone it before.
void Workspace::Work(Module &module)
{
    if (module.stage == Stage::Checked)
        return;
    module.stage = Stage::Checked;
    scopes_.Collect(module);
    links_.Link(module);
    types_.Resolve(module);
    std::pmr::vector<Node *> unusedGroupings(&memory);
    expander_.Expand(module, unusedGroupings);
    if (!module.unit->isPrepared)
        checker_.Check(module, expander_, unusedGroupings);
}

uint32_t Workspace::StatusOf(Module &root, const std::pmr::vector<Module *> &order)
{
    if (root.Errors() > 0)
        return ZR_YANG_ERR_FAULTY;
    for (const Module *module : order) {
        if (module->Errors() == 0)
            continue;
        reports_.Error({root.unit, 0, 0}, ZR_YANG_CODE_LINKAGE,
                       {"it needs module \"", module->name, "\", which has errors"});
        return ZR_YANG_ERR_FAULTY;
    }
    return ZR_YANG_OK;
}

uint32_t Workspace::Read(std::string_view name, std::pmr::vector<Module *> &orderOut)
{
    size_t at = name.find('@');
    bool hasRevision = at != std::string_view::npos;
    Module *root = linkage_.Load(name.substr(0, at),
                                 hasRevision ? name.substr(at + 1) : std::string_view(), orderOut);
    if (root != nullptr && root->unit->isPrepared) {
        reports_.Error({}, ZR_YANG_CODE_FILE,
                       {"\"", root->name, "\" is there as prepared YIN alone: there is no source"});
        return ZR_YANG_ERR_NOT_FOUND;
    }
    if (root == nullptr)
        return catalog.Has(name.substr(0, at)) ? ZR_YANG_ERR_FAULTY : ZR_YANG_ERR_NOT_FOUND;
    for (Module *module : orderOut)
        Work(*module);
    return StatusOf(*root, orderOut);
}

std::pmr::string Workspace::Write(Module &module)
{
    return YinWriter(module, features, strip, arena_, &memory).Write();
}

} // namespace zr::yang
