// SPDX-License-Identifier: Apache-2.0
// Flags that pass from a node to the nodes below it, "config" (RFC 7950, section 7.21.1) and the
// NACM defaults (RFC 8341, section 3.2.2); and the one that marks the keys of a list.
#include <cstring>
#include <string_view>

#include "foundation/text.h"
#include "schema/nodes/node.h"

namespace {

// Replaces flags by the parent's "config".
void TakeConfig(ZrNode *node, uint32_t cleared)
{
    node->flags = (node->flags & ~cleared) | (node->parent->flags & ZRS_FLAGS_CONFIG);
}

// A "config true" that gave way holds again once a deviation has made the parent configuration.
void TakeStatementBack(ZrNode *node)
{
    if ((node->marks & ZRS_MARK_CONFIG_YIELDED) == 0 || (node->flags & ZRS_FLAG_CONFIG_TRUE) == 0)
        return;
    node->flags |= ZRS_FLAG_CONFIG_GIVEN;
    node->marks &= static_cast<uint8_t>(~ZRS_MARK_CONFIG_YIELDED);
}

struct NacmMark {
    uint32_t flag;
    uint8_t mark; // that a deviation has set the flag
};

constexpr NacmMark kNacmMarks[] = {{ZRS_FLAG_DENY_WRITE, ZRS_MARK_WRITE_DEVIATED},
                                   {ZRS_FLAG_DENY_ALL, ZRS_MARK_ALL_DEVIATED}};

// The NACM flags that deviations added to the node, which stay beside those of its parent.
uint32_t DeviatedNacm(const ZrNode *node)
{
    uint32_t flags = 0;
    for (const NacmMark &row : kNacmMarks) {
        if ((node->marks & row.mark) != 0)
            flags |= row.flag;
    }
    return flags;
}

// The flag of a default-deny extension of "ietf-netconf-acm"; 0 for other names.
uint32_t NacmFlagOf(const char *moduleName, const char *extensionName)
{
    if (moduleName == nullptr || extensionName == nullptr ||
        std::string_view(moduleName) != "ietf-netconf-acm")
        return 0;
    std::string_view extension(extensionName);
    if (extension == "default-deny-all")
        return ZRS_FLAG_DENY_ALL;
    return extension == "default-deny-write" ? uint32_t{ZRS_FLAG_DENY_WRITE} : 0;
}

// The flags of the node's own extension instances. What came from a former parent is not among
// them, so that nodes of an augment lose it when they come to another one.
uint32_t OwnNacm(const ZrNode *node)
{
    uint32_t flags = 0;
    for (uint32_t i = 0; i < node->extInstCount; ++i)
        flags |= NacmFlagOf(node->extInsts[i].moduleName, node->extInsts[i].extensionName);
    return flags;
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
    if (inherited == 0 || (node->marks & ZRS_MARK_CONFIG_DEVIATED) != 0)
        return;
    if ((node->flags & ZRS_FLAG_CONFIG_GIVEN) == 0) {
        if (own == inherited)
            return;
        TakeConfig(node, ZRS_FLAGS_CONFIG);
        TakeStatementBack(node);
    } else {
        // Nothing below state data can be configuration: such a "config true" gives way, and the
        // node is like one without the statement as long as its parent is state data.
        if ((inherited & ZRS_FLAG_CONFIG_FALSE) == 0 || (own & ZRS_FLAG_CONFIG_TRUE) == 0)
            return;
        TakeConfig(node, ZRS_FLAGS_CONFIG | ZRS_FLAG_CONFIG_GIVEN);
        node->marks |= ZRS_MARK_CONFIG_YIELDED;
    }
    ZR_NODE_IterScanChildrenNode(node, UpdateConfigOfChild, nullptr);
}

void ZRS_NODE_UpdateNacmFlag(ZrNode *node)
{
    if (node == nullptr || node->parent == nullptr)
        return;
    bool isStandard = zr::IsStandard(zr::ContextOf(node));
    uint32_t inherited = node->parent->flags & ZRS_FLAGS_NACM;
    uint32_t wanted = inherited | (isStandard ? OwnNacm(node) : DeviatedNacm(node));
    if ((inherited == 0 && !isStandard) || wanted == (node->flags & ZRS_FLAGS_NACM))
        return;
    node->flags = (node->flags & ~ZRS_FLAGS_NACM) | wanted;
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

void zr::SetDeviatedConfig(ZrNode *node, uint32_t flags)
{
    constexpr uint32_t kConfig = ZRS_FLAGS_CONFIG | ZRS_FLAG_CONFIG_GIVEN;
    node->flags = (node->flags & ~kConfig) | (flags & kConfig);
    node->marks &= static_cast<uint8_t>(~ZRS_MARK_CONFIG_YIELDED);
    node->marks |= ZRS_MARK_CONFIG_DEVIATED;
    ZRS_NODE_UpdateFlag(node);
}

void zr::AddDeviatedNacm(ZrNode *node, const char *moduleName, const char *extensionName)
{
    uint32_t flag = NacmFlagOf(moduleName, extensionName);
    node->flags |= flag;
    for (const NacmMark &row : kNacmMarks) {
        if (row.flag == flag)
            node->marks |= row.mark;
    }
}

void ZRS_NODE_SetNacmFlag(ZrNode *node, const char *moduleName, const char *extensionName)
{
    if (node != nullptr)
        node->flags |= NacmFlagOf(moduleName, extensionName);
}

// The key leafs of a list (RFC 7950, section 7.8.2).

ZrNode *zr::KeyLeaf(const ZrNode *list, const char *text, uint32_t length)
{
    char name[zr::kNameSize] = {};
    if (length == 0 || length >= sizeof(name))
        return nullptr;
    std::memcpy(name, text, length);
    ZrNode *leaf = ZRS_NODE_FindChildNodeByName(list, nullptr, name);
    return leaf != nullptr && leaf->kind == ZR_NODE_LEAF ? leaf : nullptr;
}

uint32_t ZRS_NODE_MarkKeyAttrToListLeafs(ZrNode *list, const char *keyText, uint8_t *keyCount)
{
    if (keyText == nullptr)
        return ZR_OK;
    if (list == nullptr || list->firstChild == nullptr || keyCount == nullptr)
        return ZR_ERR_INVALID;
    zr::KeyNames keys(keyText);
    do {
        ZrNode *leaf = zr::KeyLeaf(list, keys.Name(), keys.Length());
        if (*keyCount == UINT8_MAX || leaf == nullptr)
            return ZRS_BAD_KEY;
        leaf->flags |= ZRS_FLAG_KEY;
        ++*keyCount;
        keys.Next();
    } while (!keys.AtEnd());
    return ZR_OK;
}
