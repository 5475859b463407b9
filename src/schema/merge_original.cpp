#include "schema/merge_original.h"

#include <utility>

#include "foundation/load_errors.h"
#include "foundation/record_arrays.h"
#include "foundation/relations.h"
#include "schema/augment.h"
#include "schema/deviation.h"
#include "schema/merge_nodes.h"
#include "schema/merge_types.h"
#include "schema/node.h"

namespace {

bool IsSameStatement(const ZrNode *node, const ZrNode *original)
{
    return node->name == original->name && node->kind == original->kind;
}

// Whether every node of the list has its original, in the same order; the list may lack some.
bool HasOriginals(const ZrNode *node, const ZrNode *original)
{
    for (; original != nullptr && node != nullptr; original = original->next) {
        if (!IsSameStatement(node, original))
            continue;
        if (!HasOriginals(node->firstChild, original->firstChild))
            return false;
        node = node->next;
    }
    return node == nullptr;
}

void SwapInfo(ZrNode *node, ZrNode *original)
{
    switch (node->kind) {
    case ZR_NODE_LEAF:
        std::swap(*static_cast<ZrsLeafInfo *>(node->info),
                  *static_cast<ZrsLeafInfo *>(original->info));
        break;
    case ZR_NODE_LEAF_LIST:
        std::swap(*static_cast<ZrsLeafListInfo *>(node->info),
                  *static_cast<ZrsLeafListInfo *>(original->info));
        break;
    case ZR_NODE_CHOICE:
        std::swap(*static_cast<ZrsChoiceInfo *>(node->info),
                  *static_cast<ZrsChoiceInfo *>(original->info));
        break;
    default:
        break;
    }
    // The typedefs that the type refers to are those of the other record.
    zr::ForgetResolved(const_cast<ZrtRealType *>(ZRS_NODE_GetLeafSchemaRealType(node)));
}

// What a deviation can change, and what a node takes from its parent.
void SwapProperties(ZrNode *node, ZrNode *original)
{
    node->flags = (node->flags & zr::kFlagsOfCoupling) | (original->flags & ~zr::kFlagsOfCoupling);
    node->marks = original->marks;
    std::swap(node->musts, original->musts);
    std::swap(node->mustCount, original->mustCount);
    std::swap(node->extInsts, original->extInsts);
    std::swap(node->extInstCount, original->extInstCount);
    SwapInfo(node, original);
}

// One list of siblings: its head, and the parent that owns it or null.
struct List {
    ZrNode **head;
    ZrNode *parent;
};

// Moves a node out of the original's list into the list, behind `prev`, which may be null.
void Insert(ZrMod *module, const List &list, ZrNode *node, ZrNode *prev)
{
    ZRS_NODE_Unlink(node);
    ZRS_NODE_RefreshNodeTreeToZrMod(node, module); // a missing typedef shows with a value
    ZrNode *next = prev != nullptr ? prev->next : *list.head;
    node->parent = list.parent;
    node->prev = prev;
    node->next = next;
    (prev != nullptr ? prev->next : *list.head) = node;
    if (next != nullptr)
        next->prev = node;
    else if (list.parent != nullptr)
        list.parent->lastChild = node;
}

void BringBackList(ZrMod *module, const List &list, ZrNode *original)
{
    ZrNode *prev = nullptr;
    ZrNode *next = nullptr;
    for (; original != nullptr; original = next) {
        next = original->next;
        ZrNode *node = prev != nullptr ? prev->next : *list.head;
        if (node != nullptr && IsSameStatement(node, original)) {
            SwapProperties(node, original);
            BringBackList(module, {&node->firstChild, node}, original->firstChild);
            prev = node;
        } else {
            Insert(module, list, original, prev);
            prev = original;
        }
    }
}

bool EndsIn(const ZrsDeviation &deviation, const char *moduleName)
{
    zr::ModuleNameText name;
    return zr::LastNamedModule(deviation.targetPath, name) && zr::TextEquals(name, moduleName);
}

// The deviations will be applied again, and those that failed will say so again.
void ForgetDeviations(ZrMod *deviating, const char *moduleName)
{
    bool failed = false;
    for (uint32_t i = 0; deviating != nullptr && i < deviating->deviationCount; ++i) {
        ZrsDeviation &deviation = deviating->deviations[i];
        if (!EndsIn(deviation, moduleName))
            continue;
        failed = failed || (deviation.flags & ZRS_DEVIATION_FAILED) != 0;
        deviation.flags = 0;
    }
    if (failed)
        ZR_CTX_ClearModCoupleErr(deviating->ctx->errMng, deviating->name);
}

// Calls `visit`(module name) for every other module that deviates the module.
template <typename Visit> void ForEachDeviating(const ZrMod *module, Visit visit)
{
    const ZrModRelTbl *table = ZR_CTX_FindModRelationTbl(module->ctx, module->name);
    if (table == nullptr)
        return;
    for (const ZrListLink *link = table->items.next; link != &table->items; link = link->next) {
        const auto *item = reinterpret_cast<const ZrModRelItem *>(link);
        if (item->kind == ZR_RELATION_DEVIATED_BY)
            visit(item->otherName);
    }
}

} // namespace

bool zr::MayDifferFromFiles(const ZrMod *module)
{
    bool differs = false;
    ForEachDeviating(module, [&differs](const char *) { differs = true; });
    for (uint32_t i = 0; i < module->deviationCount; ++i)
        differs = differs || module->deviations[i].flags != 0;
    for (const ZrNode *augment = module->augments; augment != nullptr; augment = augment->next)
        differs = differs || (augment->flags & ZRS_FLAG_COUPLED) != 0;
    return differs;
}

bool zr::BringBackOriginal(ZrMod *module, ZrMod *original)
{
    for (ZrNode *ZrMod::*chain : kTopChains) {
        if (!HasOriginals(module->*chain, original->*chain))
            return false;
    }
    for (ZrNode *ZrMod::*chain : kTopChains)
        BringBackList(module, {&(module->*chain), nullptr}, original->*chain);
    ForgetDeviations(module, module->name);
    ForEachDeviating(module, [module](const char *name) {
        ForgetDeviations(ZR_CTX_GetModuleByModName(module->ctx, name), module->name);
    });
    return true;
}
