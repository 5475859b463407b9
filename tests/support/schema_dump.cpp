// SPDX-License-Identifier: Apache-2.0
#include "support/schema_dump.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "model/context.h"
#include "model/module_records.h"
#include "model/node_record.h"
#include "schema/augment/augment.h"
#include "schema/deviation/deviation.h"
#include "schema/members/entry_rules.h"
#include "schema/nodes/node.h"
#include "types/constraints.h"
#include "types/type_notes.h"

namespace zrtest {

namespace {

std::string Text(const char *text)
{
    return text == nullptr ? "-" : "'" + std::string(text) + "'";
}

std::string Hex(const void *bytes, size_t size)
{
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        char pair[3];
        std::snprintf(pair, sizeof(pair), "%02x", static_cast<const unsigned char *>(bytes)[i]);
        text += pair;
    }
    return text;
}

std::string DumpSlot(const ZrtConsSlot &slot)
{
    std::string text = " {" + std::to_string(slot.kind);
    switch (slot.kind) {
    case ZRT_CONS_DERIVED: {
        const auto *body = static_cast<const ZrtConsDerived *>(slot.body);
        text += " " + Text(body->moduleName) + Text(body->typedefName);
        break;
    }
    case ZRT_CONS_BASE: {
        const auto *body = static_cast<const ZrtConsBase *>(slot.body);
        for (int i = 0; i < body->count; ++i)
            text += " " + Text(body->items[i].moduleName) + Text(body->items[i].identityName);
        break;
    }
    case ZRT_CONS_BIT: {
        const auto *body = static_cast<const ZrtConsBit *>(slot.body);
        for (int i = 0; i < body->count; ++i)
            text += " " + Text(body->items[i].name) + std::to_string(body->items[i].position);
        break;
    }
    case ZRT_CONS_ENUM: {
        const auto *body = static_cast<const ZrtConsEnum *>(slot.body);
        for (int i = 0; i < body->count; ++i) {
            text += " " + Text(body->items[i].name) + std::to_string(body->items[i].value);
            if (body->descriptions != nullptr)
                text += Text(body->descriptions[i]);
        }
        break;
    }
    case ZRT_CONS_FRACTION:
        text +=
            " " + std::to_string(static_cast<const ZrtConsFraction *>(slot.body)->fractionDigits);
        break;
    case ZRT_CONS_LENGTH:
    case ZRT_CONS_RANGE: {
        const auto *body = static_cast<const ZrtConsRange *>(slot.body);
        text += " " + Hex(body->segments, size_t{body->segCount} * body->segSize);
        break;
    }
    case ZRT_CONS_PATH: {
        const auto *body = static_cast<const ZrtConsPath *>(slot.body);
        text += " " + Text(body->path) + std::to_string(body->requireInstance);
        if (const ZrtConsFullPath *full = zr::FullPathOf(body))
            text += Text(full->fullPath);
        break;
    }
    case ZRT_CONS_PATTERN: {
        const auto *body = static_cast<const ZrtConsPattern *>(slot.body);
        for (int i = 0; i < body->count; ++i)
            text += " " + Text(body->items[i].pattern) + std::to_string(body->items[i].invertMatch);
        break;
    }
    case ZRT_CONS_UNION: {
        const auto *body = static_cast<const ZrtConsUnion *>(slot.body);
        for (int i = 0; i < body->count; ++i)
            text += " " + DumpType(&body->items[i]);
        break;
    }
    default:
        break;
    }
    return text + "}";
}

std::string DumpExtInst(const ZrsExtInst &instance)
{
    std::string text =
        Text(instance.moduleName) + Text(instance.extensionName) + Text(instance.argument);
    for (int i = 0; i < instance.childCount; ++i)
        text += "(" + DumpExtInst(instance.children[i]) + ")";
    return text;
}

std::string DumpIfFeatures(const ZrsIfFeature *entries, int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += " if " + Text(entries[i].moduleName) + Text(entries[i].featureName);
    return text;
}

std::string Sorted(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string &line : lines)
        text += line;
    return text;
}

std::string DumpMusts(const ZrNode *node)
{
    std::vector<std::string> lines;
    for (int i = 0; i < node->mustCount; ++i)
        lines.push_back(" must " + Text(node->musts[i].condition) +
                        Text(node->musts[i].errorMessage) + Text(node->musts[i].errorAppTag));
    return Sorted(lines);
}

std::string DumpExtInsts(const ZrsExtInst *instances, int count)
{
    std::vector<std::string> lines;
    for (int i = 0; i < count; ++i)
        lines.push_back(" ext " + DumpExtInst(instances[i]));
    return Sorted(lines);
}

std::string DumpInfo(const ZrNode *node)
{
    if (node->kind == ZR_NODE_LEAF) {
        const auto *info = static_cast<const ZrsLeafInfo *>(node->info);
        return " type " + DumpType(&info->realType) + " default " + Text(info->defaultValue) +
               " units " + Text(info->units);
    }
    if (node->kind == ZR_NODE_LEAF_LIST) {
        const auto *info = static_cast<const ZrsLeafListInfo *>(node->info);
        std::string text = " type " + DumpType(&info->realType) + " units " + Text(info->units);
        for (int i = 0; i < info->defaultCount; ++i)
            text += " default " + Text(info->defaults[i]);
        return text;
    }
    if (node->kind == ZR_NODE_CHOICE)
        return " default " + Text(static_cast<const ZrsChoiceInfo *>(node->info)->defaultCase);
    return "";
}

std::string DumpChildren(const ZrNode *node, int indent)
{
    std::vector<const ZrNode *> children;
    for (const ZrNode *child = node->firstChild; child != nullptr; child = child->next) {
        children.push_back(child);
        if (child == node->lastChild)
            break;
    }
    std::stable_sort(children.begin(), children.end(), [](const ZrNode *a, const ZrNode *b) {
        return std::string(a->module->name) < b->module->name;
    });
    std::string text;
    for (const ZrNode *child : children)
        text += DumpNode(child, indent);
    return text;
}

std::string DumpChain(const char *title, const ZrNode *head)
{
    std::string text = "  " + std::string(title) + "\n";
    for (const ZrNode *node = head; node != nullptr; node = node->next)
        text += DumpNode(node, 4);
    return text;
}

// Nothing in a context that keeps nothing of it.
std::string DumpEntryRules(const ZrNode *node)
{
    const ZrsEntryRules *rules = zr::EntryRulesOf(zr::ContextOf(node), node);
    if (rules == nullptr)
        return "";
    std::string text = " entries " + std::to_string(rules->given) + " " +
                       std::to_string(rules->minElements) + ".." +
                       std::to_string(rules->maxElements) + " key " + Text(rules->key);
    for (int i = 0; i < rules->uniqueCount; ++i)
        text += " unique " + Text(rules->uniques[i]);
    return text;
}

} // namespace

std::string DumpType(const ZrtRealType *type)
{
    std::string text = "[" + std::to_string(type->baseType) + "/" + std::to_string(type->flags);
    for (int i = 0; i < type->consCount; ++i)
        text += DumpSlot(type->constraints[i]);
    const ZrtTypeNotes *notes = zr::NotesOf(type);
    for (int i = 0; notes != nullptr && i < notes->count; ++i) {
        const ZrtTypeNote &note = notes->items[i];
        text += " note " + std::to_string(note.kind) + "." + std::to_string(note.index) +
                Text(note.texts[0]) + Text(note.texts[1]);
    }
    return text + "]";
}

std::string DumpNode(const ZrNode *node, int indent)
{
    std::string text(static_cast<size_t>(indent), ' ');
    uint32_t flags = node->flags & ~uint32_t{ZRS_FLAG_MADE_TARGET};
    // A "replace" by the same "config" leaves out this mark; which it is may depend on the order.
    if ((node->marks & ZRS_MARK_CONFIG_DEVIATED) != 0)
        flags |= ZRS_FLAG_CONFIG_GIVEN;
    text += std::to_string(node->kind) + " " + (node->module != nullptr ? node->module->name : "") +
            ":" + (node->name != nullptr ? node->name : "") + " flags " + std::to_string(flags) +
            (node->marks != 0 ? " marks " + std::to_string(node->marks) : "") + " keys " +
            std::to_string(node->keyCount) + " when " + Text(node->when) + " description " +
            Text(node->description) + DumpIfFeatures(node->ifFeatures, node->ifFeatureCount) +
            DumpMusts(node) + DumpExtInsts(node->extInsts, node->extInstCount) + DumpInfo(node) +
            DumpEntryRules(node) + "\n";
    // The nodes of a coupled augment are shown where they stand.
    if ((node->flags & ZRS_FLAG_COUPLED) == 0)
        text += DumpChildren(node, indent + 2);
    return text;
}

std::string DumpModule(const ZrMod *module)
{
    std::string text = "module " + Text(module->name) + Text(module->ns) + Text(module->prefix) +
                       Text(module->revision) + "\n";
    for (int i = 0; i < module->importCount; ++i)
        text += "  import " + Text(module->imports[i].moduleName) + "\n";
    for (int i = 0; i < module->featureCount; ++i)
        text += "  feature " + Text(module->features[i].name) +
                std::to_string(module->features[i].flags) +
                DumpIfFeatures(module->features[i].ifFeatures, module->features[i].ifFeatureCount) +
                "\n";
    for (int i = 0; i < module->identityCount; ++i)
        text += "  identity " + Text(module->identities[i].name) + "\n";
    for (int i = 0; i < module->typedefCount; ++i)
        text += "  typedef " + Text(module->typedefs[i].name) +
                Text(module->typedefs[i].defaultValue) + Text(module->typedefs[i].units) +
                DumpType(&module->typedefs[i].realType) + "\n";
    text += "  extensions" + DumpExtInsts(module->extInsts, module->extInstCount) + "\n";
    text += DumpChain("data", module->dataNodes) + DumpChain("rpcs", module->rpcs) +
            DumpChain("notifications", module->notifications) +
            DumpChain("augments", module->augments);
    return text;
}

std::string DumpContext(const ZrCtx *ctx)
{
    std::string text;
    for (const ZrMod *module = zr::FirstModule(ctx); module != nullptr;
         module = zr::NextModule(ctx, module))
        text += DumpModule(module);
    return text;
}

} // namespace zrtest
