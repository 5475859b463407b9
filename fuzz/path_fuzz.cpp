// SPDX-License-Identifier: Apache-2.0
// Schema paths over two fixed modules: lookups, splits, the module-name form, and the targets of
// augments, deviations and leafrefs.
#include "support.h"

#include <cstdlib>
#include <cstring>

#include "platform/memory.h"
#include "schema/lookup/lookup.h"
#include "xpath/path_forms.h"

namespace {

using namespace zrfuzz;

Goal g_found("a path leads to a node");
Goal g_foundAugmented("a path leads to a node of an augment");
Goal g_foundFromModule("a schema node identifier leads to a node");
Goal g_foundFromLeaf("a relative path leads to a node");
Goal g_split("a path is split");
Goal g_transformed("a path is brought into the form with module names, and leads to a node");
Goal g_leafref("a leafref has a target");
Goal g_augmented("an augment is coupled");
Goal g_removed("a node is removed by a deviation");
Goal g_notCoupled("an augment or a deviation has no target");

std::string Fixed()
{
    return ModuleText(
        "m", "<container name=\"c\"><list name=\"l\"><key value=\"k\"/><leaf name=\"k\"><type "
             "name=\"string\"/></leaf><choice name=\"x\"><case name=\"y\"><leaf name=\"z\"><type "
             "name=\"int8\"/></leaf></case></choice><action name=\"a\"><input><leaf name=\"i\">"
             "<type name=\"string\"/></leaf></input></action></list></container><rpc name=\"r\">"
             "<output><leaf name=\"o\"><type name=\"string\"/></leaf></output></rpc>"
             "<notification name=\"n\"><leaf name=\"e\"><type name=\"string\"/></leaf>"
             "</notification>");
}

std::string Augmenting()
{
    return ModuleText(
        "n", "<import module=\"m\"><prefix value=\"p\"/></import>"
             "<augment target-node=\"/p:c/p:l\"><container name=\"d\"><leaf name=\"f\"><type "
             "name=\"string\"/></leaf></container></augment>"
             "<augment target-node=\"/p:c/p:l/n:d\"><leaf name=\"g\"><type name=\"string\"/>"
             "</leaf></augment>"
             "<augment target-node=\"/p:r/p:input\"><leaf name=\"h\"><type name=\"string\"/>"
             "</leaf></augment>");
}

void LookUp(const ZrCtx *ctx, const char *path)
{
    ZrNode *augment = nullptr;
    ZrNode *node = ZR_CTX_GetTargetNode(ctx, path, &augment);
    Check(augment == nullptr || node != nullptr, "an augment is named only with a node");
    g_found.MeetIf(node != nullptr);
    g_foundAugmented.MeetIf(augment != nullptr);
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, "m");
    g_foundFromModule.MeetIf(ZRS_MOD_GetNodeBySchemaNodeId(module, nullptr, path) != nullptr);
    ZrNode *context = ZR_CTX_GetTargetNode(ctx, "/m:c/l/x/y/z", nullptr);
    Check(context != nullptr, "the fixed leaf is there");
    const ZrNode *byXpath = ZRS_MOD_GetNodeByXpath(module, context, path);
    g_foundFromLeaf.MeetIf(byXpath != nullptr && path[0] == '.');
    if (node == nullptr)
        return;
    char printed[3096];
    Check(ZR_NODE_GetNodePath(node, printed, sizeof printed) == ZR_OK, "the node has a path");
    Check(ZR_CTX_GetTargetNode(ctx, printed, nullptr) == node, "the printed path leads back");
}

void Split(const char *path)
{
    for (uint32_t room : {65u, 4u, 1u}) {
        char module[65];
        char *head = nullptr;
        char *tail = nullptr;
        uint32_t status = ZR_XPATH_SplitTargetNodeXpath(path, module, room, &head, &tail);
        Check(status == ZR_OK || status == ZR_ERR_INVALID, "a split has a stated status");
        Check(status == ZR_OK || (head == nullptr && tail == nullptr), "a failed split gives none");
        g_split.MeetIf(status == ZR_OK && head != nullptr);
        if (status == ZR_OK) {
            Check(std::strlen(module) < room, "the module name fits");
            Check(tail != nullptr, "a split has a tail");
            Check((head != nullptr ? head : "") + std::string(tail) == path,
                  "head and tail are the whole path");
        }
        zr::Free(head);
        zr::Free(tail);
    }
}

void Transform(const ZrCtx *ctx, const char *path)
{
    for (const char *name : {"m", "n"}) {
        char *form = ZR_XPATH_TransformToJsonFormat(ZR_CTX_GetModuleByModName(ctx, name), path);
        Check(form == nullptr || std::strlen(form) <= 3095, "the form has at most 3095 characters");
        if (form != nullptr) {
            LookUp(ctx, form);
            g_transformed.MeetIf(ZR_CTX_GetTargetNode(ctx, form, nullptr) != nullptr);
        }
        zr::Free(form);
    }
}

const char *const kImports = "<import module=\"m\"><prefix value=\"m\"/></import>"
                             "<import module=\"n\"><prefix value=\"n\"/></import>";

void Load(ZrCtx *ctx, const char *name, const std::string &body)
{
    uint32_t status = ZR_CTX_LoadMemory(ctx, ModuleText(name, kImports + body).c_str());
    Check(IsLoadStatus(status), "loading has a stated status");
}

uint32_t CountNode(ZrNode *, uint32_t arrival, void *count)
{
    *static_cast<int *>(count) += arrival != ZR_ARRIVAL_PARENT;
    return 0;
}

uint32_t CountTree(ZrNode *root, uint32_t, void *count)
{
    return ZR_NODE_TreeScanAllNode(root, CountNode, count);
}

// The nodes of the fixed modules.
int Nodes(const ZrCtx *ctx)
{
    int count = 0;
    ZR_MOD_IterScanTopmostNode(ZR_CTX_GetModuleByModName(ctx, "m"), CountTree, &count);
    return count;
}

uint32_t CountError(const char *, const char *, uint32_t, const char *, uint32_t, void *count)
{
    ++*static_cast<int *>(count);
    return 0;
}

void LoadWith(ZrCtx *ctx, const std::string &path)
{
    std::string text = AttributeText(path);
    Load(ctx, "o",
         "<leaf name=\"q\"><type name=\"leafref\"><path value=\"" + text + "\"/></type></leaf>");
    const ZrNode *leafref = ZR_CTX_GetTargetNode(ctx, "/o:q", nullptr);
    g_leafref.MeetIf(ZR_NODE_GetLeafrefTargetNode(leafref, 1) != nullptr);
    int before = Nodes(ctx);
    Load(ctx, "r",
         "<augment target-node=\"" + text +
             "\"><leaf name=\"new\"><type name=\"string\"/></leaf></augment>");
    g_augmented.MeetIf(Nodes(ctx) > before);
    before = Nodes(ctx);
    Load(ctx, "s",
         "<deviation target-node=\"" + text + "\"><deviate value=\"not-supported\"/></deviation>");
    g_removed.MeetIf(Nodes(ctx) < before);
    int errors = 0;
    ZR_CTX_ScanAllSchemaLoadFail(ctx, CountError, &errors);
    g_notCoupled.MeetIf(errors != 0);
    WalkErrors(ctx);
    for (const char *name : {"m", "n", "o", "r", "s"}) {
        if (ZrMod *module = ZR_CTX_GetModuleByModName(ctx, name))
            WalkModule(ctx, module, path.size() > 1000);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    std::string path(reinterpret_cast<const char *>(data), size);
    path.resize(std::strlen(path.c_str()));
    Context ctx(0);
    LoadOrDie(ctx, Fixed());
    LoadOrDie(ctx, Augmenting());
    {
        BlockBalance balance("lookups keep no block");
        LookUp(ctx, path.c_str());
        Split(path.c_str());
        Transform(ctx, path.c_str());
    }
    LoadWith(ctx, path);
    return 0;
}
