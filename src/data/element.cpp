// SPDX-License-Identifier: Apache-2.0
#include "data/element.h"

#include <zrschema/context.h>
#include <zrschema/module.h>
#include <zrschema/node.h>

#include <cstring>

#include "model/navigation.h"
#include "platform/xml.h"

xmlNode *ZRD_PAS_FindChildDataNode(const xmlNode *element, const char *name)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (child->name != nullptr && std::strcmp(zr::NameOf(child), name) == 0)
            return child;
    }
    return nullptr;
}

xmlNode *ZRD_NODE_GetChildNodeWithSpecifyMdl(const xmlNode *element, const ZrNode *schemaNode)
{
    for (xmlNode *child = element->children; child != nullptr; child = child->next) {
        if (zr::SchemaOf(child) == schemaNode && child->type == XML_ELEMENT_NODE)
            return child;
    }
    return nullptr;
}

ZrNode *ZRD_NODE_GetChoiceInstanceCaseBranch(const xmlNode *element, const ZrNode *choice)
{
    for (const xmlNode *child = element->children; child != nullptr; child = child->next) {
        ZrNode *node = zr::SchemaOf(child);
        while (node != nullptr && ZR_NODE_GetParentNode(node) != choice) {
            node = ZR_NODE_GetParentNode(node);
            if (!ZRD_MDL_IsChoiceOrCaseNode(node))
                node = nullptr;
        }
        if (node != nullptr)
            return node;
    }
    return nullptr;
}

uint32_t ZRD_NODE_IsKeyLeafNode(const xmlNode *node)
{
    return ZR_NODE_IsKey(zr::SchemaOf(node));
}

const char *ZRD_NODE_GetModuleName(const ZrCtx *ctx, const xmlNode *element)
{
    if (element == nullptr || element->type != XML_ELEMENT_NODE)
        return nullptr;
    if (const ZrNode *schemaNode = zr::SchemaOf(element))
        return ZR_MOD_GetModuleName(ZR_NODE_GetModule(schemaNode));
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(element);
    return ns != nullptr ? ZR_MOD_GetModuleName(ZR_CTX_GetModuleByModNs(ctx, ns)) : nullptr;
}

ZrNode *ZRD_PAS_GetRpcSubTreeInputMdl(const xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    return schemaNode != nullptr ? zr::InputOf(schemaNode) : nullptr;
}

uint32_t ZRD_MDL_IsSchemaNodeDefineWithMountPoint(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if (kind != ZR_NODE_CONTAINER && kind != ZR_NODE_LIST)
        return 0;
    for (uint32_t i = 0; i < schemaNode->extInstCount; ++i) {
        const ZrsExtInst &instance = schemaNode->extInsts[i];
        if (instance.extensionName != nullptr && instance.moduleName != nullptr &&
            std::strcmp(instance.extensionName, "mount-point") == 0 &&
            std::strcmp(instance.moduleName, "ietf-yang-schema-mount") == 0)
            return 1;
    }
    return 0;
}

uint32_t ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML ||
           ZRD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode);
}

uint32_t ZRD_MDL_IsChoiceOrCaseNode(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind == ZR_NODE_CHOICE || kind == ZR_NODE_CASE;
}

uint32_t ZRD_MDL_IsNeedCheckWhenCond(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind < ZR_NODE_ACTION || kind > ZR_NODE_OUTPUT;
}

ZrNode *ZRD_MDL_GetChoiceCaseParentNode(ZrNode *schemaNode, ZrNode **caseOut)
{
    *caseOut = nullptr;
    ZrNode *parent = ZR_NODE_GetParentNode(schemaNode);
    uint32_t kind = ZR_NODE_GetNodeType(parent);
    if (kind == ZR_NODE_CHOICE) {
        *caseOut = schemaNode;
        return parent;
    }
    if (kind != ZR_NODE_CASE)
        return nullptr;
    *caseOut = parent;
    return ZR_NODE_GetParentNode(parent);
}

ZrNode *ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(const ZrNode *schemaNode)
{
    ZrNode *node = ZR_NODE_GetParentNode(schemaNode);
    while (ZRD_MDL_IsChoiceOrCaseNode(node))
        node = ZR_NODE_GetParentNode(node);
    return node;
}

ZrNode *ZRD_MDL_GetNextDataNodeInSameMod(const ZrNode *schemaNode, const ZrNode *ancestor)
{
    ZrNode *node = ZRS_NODE_GetNextDataTreeNode(schemaNode, ancestor);
    while (node != nullptr && (node->module != schemaNode->module || !ZR_NODE_IsEnabled(node)))
        node = ZRS_NODE_GetNextDataTreeNode(node, ancestor);
    return node;
}

ZrNode *ZRD_MDL_GetChoiceDefaultChildNode(const ZrNode *choice)
{
    if (ZR_NODE_GetNodeType(choice) != ZR_NODE_CHOICE || choice->info == nullptr)
        return nullptr;
    const char *name = static_cast<const ZrsChoiceInfo *>(choice->info)->defaultCase;
    return name != nullptr ? ZRS_NODE_FindChildNodeByName(choice, nullptr, name) : nullptr;
}

namespace zr {

xmlNode *NextElement(const xmlNode *top, xmlNode *element)
{
    if (xmlNode *child = ElementFrom(element->children))
        return child;
    for (xmlNode *node = element; node != nullptr && node != top; node = node->parent) {
        if (xmlNode *sibling = ElementFrom(node->next))
            return sibling;
    }
    return nullptr;
}

bool HasMatchedChildren(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind != ZR_NODE_UNKNOWN && kind != ZR_NODE_LEAF && kind != ZR_NODE_LEAF_LIST &&
           !ZRD_MDL_IsSchemaNodeNeedSkipProcChildNode(schemaNode);
}

// Both ways are walked a step at a time: elements in the right order are near each other in the
// schema, so that a long level need not be walked to its end for each of them.
bool ComesBefore(const ZrNode *earlier, const ZrNode *later)
{
    const ZrNode *ancestor = ZRD_MDL_GetClosestAncestorNodeNotChoiceCase(earlier);
    const ZrNode *fromEarlier = earlier;
    const ZrNode *fromLater = later;
    while (fromEarlier != nullptr) {
        fromEarlier = ZRD_MDL_GetNextDataNodeInSameMod(fromEarlier, ancestor);
        if (fromEarlier == later)
            return true;
        if (fromLater != nullptr)
            fromLater = ZRD_MDL_GetNextDataNodeInSameMod(fromLater, ancestor);
        if (fromLater == earlier)
            return false;
    }
    return false;
}

ZrNode *InputOf(const ZrNode *operation)
{
    for (ZrNode *child = operation->firstChild; child != nullptr; child = child->next) {
        if (child->kind == ZR_NODE_INPUT)
            return child;
    }
    return nullptr;
}

} // namespace zr
