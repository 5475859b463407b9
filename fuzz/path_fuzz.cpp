// Schema paths over two fixed modules: lookups, splits, the module-name form, and the targets of
// augments, deviations and leafrefs.
#include "support.h"

#include <cstdlib>
#include <cstring>

#include "foundation/memory.h"
#include "schema/lookup.h"
#include "xpath/path_forms.h"

namespace {

using namespace zrfuzz;

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
    const ZrMod *module = ZR_CTX_GetModuleByModName(ctx, "m");
    ZRS_MOD_GetNodeBySchemaNodeId(module, nullptr, path);
    ZrNode *context = ZR_CTX_GetTargetNode(ctx, "/m:c/l/x/y/z", nullptr);
    Check(context != nullptr, "the fixed leaf is there");
    ZRS_MOD_GetNodeByXpath(module, context, path);
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
        if (form != nullptr)
            LookUp(ctx, form);
        zr::Free(form);
    }
}

void LoadWith(ZrCtx *ctx, const std::string &path)
{
    std::string text = AttributeText(path);
    uint32_t status = ZR_CTX_LoadMemory(
        ctx, ModuleText("o", "<import module=\"m\"><prefix value=\"m\"/></import><import "
                             "module=\"n\"><prefix value=\"n\"/></import><leaf name=\"q\"><type "
                             "name=\"leafref\"><path value=\"" +
                                 text + "\"/></type></leaf>")
                 .c_str());
    Check(IsLoadStatus(status), "loading has a stated status");
    ZR_NODE_GetLeafrefTargetNode(ZR_CTX_GetTargetNode(ctx, "/o:q", nullptr), 1);
    status = ZR_CTX_LoadMemory(
        ctx, ModuleText("s", "<import module=\"m\"><prefix value=\"m\"/></import><import "
                             "module=\"n\"><prefix value=\"n\"/></import><augment target-node=\"" +
                                 text +
                                 "\"><leaf name=\"new\"><type name=\"string\"/></leaf></augment>"
                                 "<deviation target-node=\"" +
                                 text + "\"><deviate value=\"not-supported\"/></deviation>")
                 .c_str());
    Check(IsLoadStatus(status), "loading has a stated status");
    WalkErrors(ctx);
    for (const char *name : {"m", "n", "o", "s"}) {
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
