// SPDX-License-Identifier: Apache-2.0
#include "instance/plan/modules.h"

#include <algorithm>

#include "instance/base/text.h"
#include "instance/plan/scan.h"

namespace zr::data {

namespace {

void AddModule(Plan &plan, ZrMod *source)
{
    auto *module = plan.arena.New<PlanModule>();
    module->name = View(plan.arena.CopyText(View(ZR_MOD_GetModuleName(source))));
    module->source = source;
    module->xml.type = XML_NAMESPACE_DECL;
    module->xml.href = XmlText(plan.arena.CopyText(View(ZR_MOD_GetModuleNs(source))));
    module->xml.prefix = XmlText(module->name.data());
    plan.modules.push_back(module);
    plan.modulesByName.emplace(module->name, module);
    plan.modulesByNamespace.emplace(View(module->xml.href), module);
}

// One whose features are off is none: not as a value, not as a base of others (RFC 7950, section
// 7.20.1).
void AddIdentities(Plan &plan, PlanModule &module)
{
    Scan(ZR_MOD_ScanAllIdentity, module.source, [&](const ZrsIdentity *source) {
        if (ZR_MOD_IsIdentityEnabled(source, plan.ctx) == 0)
            return;
        std::pmr::string qualified(module.name, &plan.memory);
        (qualified += ':') += View(ZR_MOD_GetIdentityName(source));
        auto *identity = plan.arena.New<Identity>();
        identity->module = &module;
        identity->source = source;
        identity->qualified = {plan.arena.CopyText(qualified), qualified.size()};
        identity->name = identity->qualified.substr(module.name.size() + 1);
        plan.identities.emplace(identity->qualified, identity);
    });
}

void AddAnnotations(Plan &plan, PlanModule &module)
{
    std::pmr::vector<std::string_view> names(&plan.memory);
    auto add = [&](const ZrsExtInst *, const char *definer, const char *name,
                   const char *argument) {
        if (View(definer) == "ietf-yang-metadata" && View(name) == "annotation" &&
            argument != nullptr)
            names.push_back(plan.arena.Copy(argument));
    };
    Scan(ZR_MOD_ScanAllExtInsts, module.source, add);
    module.annotations = Keep(plan.arena, names);
}

// The bases of an identity, and theirs: each is looked at once.
void CloseIdentity(Plan &plan, Identity &identity)
{
    std::pmr::vector<const Identity *> ancestors(&plan.memory);
    auto addBase = [&](const char *module, const char *name) {
        std::pmr::string qualified(module, &plan.memory);
        const Identity *base = plan.FindIdentity((qualified += ':') += name);
        if (base != nullptr &&
            std::find(ancestors.begin(), ancestors.end(), base) == ancestors.end())
            ancestors.push_back(base);
    };
    Scan(ZR_MOD_ScanIdentityBase, identity.source, addBase);
    for (size_t next = 0; next < ancestors.size(); ++next)
        Scan(ZR_MOD_ScanIdentityBase, ancestors[next]->source, addBase);
    identity.ancestors = Keep(plan.arena, ancestors);
}

} // namespace

void MakeModules(Plan &plan)
{
    Scan(ZR_CTX_ScanAllModules, plan.ctx, [&](ZrMod *module) { AddModule(plan, module); });
    for (PlanModule *module : plan.modules) {
        AddIdentities(plan, *module);
        AddAnnotations(plan, *module);
    }
    for (auto &[name, identity] : plan.identities)
        CloseIdentity(plan, *identity);
}

} // namespace zr::data
