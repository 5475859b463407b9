// Targets of augments: the module that a target path ends in, and the "input" and "output" nodes
// that an rpc or action has without saying so (RFC 7950, section 7.14).
#include <cstring>
#include <string_view>

#include "model/module_record.h"
#include "platform/memory.h"
#include "schema/augment.h"
#include "schema/node.h"
#include "xpath/path_forms.h"

namespace {

ZrNode *NewInputOutput(ZrNode *rpc, const char *name, uint32_t kind)
{
    ZrNode *node = ZRS_NODE_New(kind);
    if (node == nullptr)
        return nullptr;
    node->module = rpc->module;
    node->name = ZR_DICT_Insert(&rpc->module->ctx->dict, name);
    if (node->name == nullptr) {
        ZRS_NODE_Free(node);
        return nullptr;
    }
    if (kind == ZR_NODE_INPUT)
        ZRS_NODE_AddAsFirstChild(rpc, node);
    else
        ZRS_NODE_AddChild(rpc, node);
    // Like one that was declared, whenever it comes.
    ZRS_NODE_UpdateConfigFlag(node);
    ZRS_NODE_UpdateNacmFlag(node);
    return node;
}

} // namespace

bool zr::LastNamedModule(const char *path, ModuleNameText &nameOut)
{
    return path != nullptr &&
           ZR_XPATH_SplitTargetNodeXpath(path, nameOut, sizeof(nameOut), nullptr, nullptr) == ZR_OK;
}

bool zr::StandsInSchema(const ZrNode *node)
{
    while (node->parent != nullptr)
        node = node->parent;
    return node->kind != ZR_NODE_AUGMENT;
}

bool zr::IsPathAtOrBelow(const char *path, const char *root)
{
    size_t length = std::strlen(root);
    return std::strncmp(path, root, length) == 0 && (path[length] == '\0' || path[length] == '/');
}

ZrNode *ZRS_NODE_GetAugRpcParentNodeAndChildType(ZrCtx *ctx, const char *headPath,
                                                 const char *lastStep, uint32_t *kindOut)
{
    if (ctx == nullptr || headPath == nullptr || lastStep == nullptr || kindOut == nullptr)
        return nullptr;
    std::string_view step(lastStep);
    if (step != "input" && step != "output")
        return nullptr;
    ZrNode *rpc = ZR_CTX_GetTargetNode(ctx, headPath, nullptr);
    if (rpc == nullptr || (rpc->kind != ZR_NODE_RPC && rpc->kind != ZR_NODE_ACTION))
        return nullptr;
    *kindOut = step == "input" ? ZR_NODE_INPUT : ZR_NODE_OUTPUT;
    return rpc;
}

ZrNode *ZRS_NODE_ConstructInputOutputNodeIfMatch(ZrCtx *ctx, const char *headPath,
                                                 const char *lastStep)
{
    uint32_t kind = ZR_NODE_UNKNOWN;
    ZrNode *rpc = ZRS_NODE_GetAugRpcParentNodeAndChildType(ctx, headPath, lastStep, &kind);
    return rpc != nullptr ? NewInputOutput(rpc, lastStep, kind) : nullptr;
}

ZrNode *ZRS_NODE_UpdateTargetPathWithInputOutput(ZrCtx *ctx, const char *targetPath)
{
    zr::ScopedBlock<char> head(targetPath != nullptr ? ZR_UTL_StrDup(targetPath) : nullptr);
    char *slash = head ? std::strrchr(head.get(), '/') : nullptr;
    if (slash == nullptr)
        return nullptr;
    *slash = '\0';
    return ZRS_NODE_ConstructInputOutputNodeIfMatch(ctx, head.get(), slash + 1);
}
