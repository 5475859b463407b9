// Flags that pass from a node to the nodes below it: "config" (RFC 7950, section 7.21.1) and the
// NACM defaults (RFC 8341, section 3.2.2).
#include <string_view>

#include "schema/node.h"

namespace {

// Replaces a group of flags by the parent's.
void TakeFromParent(ZrNode *node, uint32_t cleared, uint32_t group)
{
    node->flags = (node->flags & ~cleared) | (node->parent->flags & group);
}

uint32_t UpdateConfigOfChild(ZrNode *child, uint32_t, void *)
{
    ZRS_NODE_UpdateConfigFlag(child);
    return 0;
}

uint32_t UpdateNacmOfChild(ZrNode *child, uint32_t, void *)
{
    ZRS_NODE_UpdateNacmFlag(child);
    return 0;
}

} // namespace

void ZRS_NODE_UpdateConfigFlag(ZrNode *node)
{
    if (node == nullptr || node->parent == nullptr)
        return;
    uint32_t inherited = node->parent->flags & ZRS_FLAGS_CONFIG;
    uint32_t own = node->flags & ZRS_FLAGS_CONFIG;
    if (inherited == 0)
        return;
    if ((node->flags & ZRS_FLAG_CONFIG_GIVEN) == 0) {
        if (own == inherited)
            return;
        TakeFromParent(node, ZRS_FLAGS_CONFIG, ZRS_FLAGS_CONFIG);
    } else {
        // Nothing below state data can be configuration: such a "config true" gives way, and the
        // node is from then on like one without the statement.
        if ((inherited & ZRS_FLAG_CONFIG_FALSE) == 0 || (own & ZRS_FLAG_CONFIG_TRUE) == 0)
            return;
        TakeFromParent(node, ZRS_FLAGS_CONFIG | ZRS_FLAG_CONFIG_GIVEN, ZRS_FLAGS_CONFIG);
    }
    ZR_NODE_IterScanChildrenNode(node, UpdateConfigOfChild, nullptr);
}

void ZRS_NODE_UpdateNacmFlag(ZrNode *node)
{
    if (node == nullptr || node->parent == nullptr)
        return;
    uint32_t inherited = node->parent->flags & ZRS_FLAGS_NACM;
    if (inherited == 0 || inherited == (node->flags & ZRS_FLAGS_NACM))
        return;
    TakeFromParent(node, ZRS_FLAGS_NACM, ZRS_FLAGS_NACM);
    ZR_NODE_IterScanChildrenNode(node, UpdateNacmOfChild, nullptr);
}

uint32_t ZRS_NODE_ImplUpdateFlagCb(ZrNode *node, uint32_t, void *)
{
    ZRS_NODE_UpdateConfigFlag(node);
    ZRS_NODE_UpdateNacmFlag(node);
    return 0;
}

void ZRS_NODE_UpdateFlag(ZrNode *node)
{
    if (node != nullptr && (node->flags & (ZRS_FLAGS_CONFIG | ZRS_FLAGS_NACM)) != 0)
        ZR_NODE_IterScanChildrenNode(node, ZRS_NODE_ImplUpdateFlagCb, nullptr);
}

void ZRS_NODE_SetNacmFlag(ZrNode *node, const char *moduleName, const char *extensionName)
{
    if (node == nullptr || moduleName == nullptr || extensionName == nullptr ||
        std::string_view(moduleName) != "ietf-netconf-acm")
        return;
    std::string_view extension(extensionName);
    if (extension == "default-deny-all")
        node->flags |= ZRS_FLAG_DENY_ALL;
    else if (extension == "default-deny-write")
        node->flags |= ZRS_FLAG_DENY_WRITE;
}
