// SPDX-License-Identifier: Apache-2.0
// The parsers of the data-definition statements: each makes a schema node, parses its children by
// the table of its kind, and links the finished node into its parent.
#include "foundation/context_record.h"
#include "loader/nodes/node_rows.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/entry_statements.h"
#include "loader/statements/statements.h"
#include "model/node_record.h"
#include "platform/memory.h"
#include "platform/xml.h"
#include "schema/augment/augment.h"
#include "schema/members/entry_rules.h"
#include "schema/nodes/node.h"
#include "types/real_type.h"
#include "xpath/path_forms.h"

namespace {

using OwnedNode = zr::Owned<ZrNode, ZRS_NODE_Free>;

uint32_t StatementOf(const ZrNode *node)
{
    return ZRS_NODE_GetStmtByNodeType(node->kind);
}

// Input and output have no argument: they are named by their keyword.
uint32_t NameNode(ZrMod *module, const xmlNode *element, ZrNode *node)
{
    if (node->kind == ZR_NODE_INPUT || node->kind == ZR_NODE_OUTPUT)
        return zr::KeepText(module, ZRS_LOADER_GetKeywordByStmt(StatementOf(node)), &node->name);
    if (node->kind == ZR_NODE_AUGMENT) {
        zr::Owned<char> target(ZRS_LOADER_ParseAugmentTargetNode(module, element));
        if (!target)
            return ZR_ERR_INVALID;
        return zr::KeepText(module, target.get(), &node->name);
    }
    const char *name = zr::RequireName(module, element, StatementOf(node));
    return name != nullptr ? zr::KeepText(module, name, &node->name) : uint32_t{ZR_ERR_INVALID};
}

uint32_t MakeNode(ZrMod *module, const xmlNode *element, uint32_t nodeKind, OwnedNode &node)
{
    node.reset(ZRS_NODE_New(nodeKind));
    if (!node)
        return ZR_ERR_NO_MEMORY;
    node->module = module;
    return NameNode(module, element, node.get());
}

// The key leafs can only be marked once all children of the list are there.
uint32_t MarkKeys(ZrMod *module, ZrNode *list, const char *keyText)
{
    uint32_t status = ZRS_NODE_MarkKeyAttrToListLeafs(list, keyText, &list->keyCount);
    if (status != ZR_OK)
        zr::RecordBadValue(module, keyText, ZRS_STMT_KEY);
    return status;
}

// What other contexts do not keep of a list's keys is their order.
uint32_t KeepKeyOrder(ZrMod *module, const ZrNode *list, const char *keyText)
{
    if (!zr::IsStandard(module->ctx))
        return ZR_OK;
    ZrsEntryRules *rules = zr::NeedEntryRules(module->ctx, list);
    return rules != nullptr ? zr::KeepText(module, keyText, &rules->key)
                            : uint32_t{ZR_ERR_NO_MEMORY};
}

uint32_t ParseChildren(ZrMod *module, xmlNode *element, ZrNode *node)
{
    zr::NodeWork work = {};
    work.node = node;
    ZrsSubElem rows[zr::kMaxNodeRows];
    uint32_t rowCount = 0;
    for (const zr::NodeRow &row : zr::NodeRows(node->kind))
        rows[rowCount++] = row.make(row.statement, &work);
    uint32_t status =
        ZRS_LOADER_ParseSubStatements(module, element, StatementOf(node), rows, rowCount);
    if (status == ZR_OK && work.keyText != nullptr)
        status = MarkKeys(module, node, work.keyText);
    if (status == ZR_OK && work.keyText != nullptr)
        status = KeepKeyOrder(module, node, work.keyText);
    if (status == ZR_OK && zr::HasEntries(node->kind))
        status = zr::ReadEntryStatements(module, element, StatementOf(node), node);
    if (status != ZR_OK)
        zr::RecordBadDefinition(module, StatementOf(node), node->name);
    return status;
}

uint32_t RequireType(ZrMod *module, const ZrNode *node)
{
    if (ZRT_TYPE_IsInvalidType(ZRS_NODE_GetLeafSchemaRealType(node)) == 0)
        return ZR_OK;
    zr::RecordMissingType(module, StatementOf(node), node->name);
    return ZR_ERR_INVALID;
}

uint32_t FinishLeaf(ZrMod *module, ZrNode *leaf)
{
    uint32_t status = RequireType(module, leaf);
    return status == ZR_OK ? ZRS_LOADER_RefreshLeafDefaultValue(module, leaf) : status;
}

uint32_t FinishLeafList(ZrMod *module, ZrNode *leafList)
{
    uint32_t status = RequireType(module, leafList);
    return status == ZR_OK ? ZRS_LOADER_RefreshLeafListDefaultValue(module, leafList) : status;
}

// The children of an augment come under its conditions while they still stand alone.
uint32_t FinishAugment(ZrMod *module, ZrNode *augment)
{
    uint32_t status = ZRS_NODE_InheritAugNodeEvalToAllChildNode(&module->ctx->dict, augment);
    if (status != ZR_OK)
        zr::RecordBadDefinition(module, ZRS_STMT_AUGMENT, augment->name);
    return status;
}

uint32_t FinishNode(ZrMod *module, ZrNode *node)
{
    switch (node->kind) {
    case ZR_NODE_LEAF:
        return FinishLeaf(module, node);
    case ZR_NODE_LEAF_LIST:
        return FinishLeafList(module, node);
    case ZR_NODE_AUGMENT:
        return FinishAugment(module, node);
    default:
        return ZR_OK;
    }
}

// Every node parser: a failed node is freed with all that stands below it.
uint32_t ParseNode(ZrMod *module, xmlNode *element, uint32_t parentStatement, void *destination,
                   uint32_t nodeKind)
{
    OwnedNode node;
    uint32_t status = MakeNode(module, element, nodeKind, node);
    if (status == ZR_OK)
        status = ParseChildren(module, element, node.get());
    if (status == ZR_OK)
        status = FinishNode(module, node.get());
    if (status == ZR_OK)
        status = ZRS_LOADER_AddNodeToSchemaTree(parentStatement, destination, node.get());
    if (status == ZR_OK)
        ZRS_NODE_UpdateFlag(node.release());
    return status;
}

} // namespace

ZrNode *ZRS_LOADER_ParseNodeCommon(ZrMod *module, const xmlNode *element, uint32_t nodeKind)
{
    OwnedNode node;
    return MakeNode(module, element, nodeKind, node) == ZR_OK ? node.release() : nullptr;
}

char *ZRS_LOADER_ParseAugmentTargetNode(ZrMod *module, const xmlNode *element)
{
    const char *path = ZR_XML_GetFirstPropertyValue(element);
    if (path == nullptr || path[0] != '/') {
        zr::RecordMissingValue(module, ZRS_STMT_AUGMENT);
        return nullptr;
    }
    char *target = ZR_XPATH_TransformToJsonFormat(module, path);
    if (target == nullptr)
        zr::RecordBadDefinition(module, ZRS_STMT_AUGMENT, path);
    return target;
}

uint32_t ZRS_LOADER_AddNodeToSchemaTree(uint32_t parentStatement, void *destination, ZrNode *node)
{
    if (parentStatement == ZRS_STMT_MODULE)
        return ZRS_MOD_AddTopNodeToSchemaTree(static_cast<ZrMod *>(destination), node);
    return ZRS_NODE_LinkTreeNode(static_cast<ZrNode *>(destination), node, ZRS_LINK_AS_CHILD);
}

uint32_t ZRS_LOADER_ParseContainer(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                   void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_CONTAINER);
}

uint32_t ZRS_LOADER_ParseLeaf(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                              void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_LEAF);
}

uint32_t ZRS_LOADER_ParseLeafList(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                  void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_LEAF_LIST);
}

uint32_t ZRS_LOADER_ParseList(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                              void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_LIST);
}

uint32_t ZRS_LOADER_ParseChoice(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_CHOICE);
}

uint32_t ZRS_LOADER_ParseCase(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                              void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_CASE);
}

uint32_t ZRS_LOADER_ParseAugment(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                 void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_AUGMENT);
}

uint32_t ZRS_LOADER_ParseNotif(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                               void *destination)
{
    return ParseNode(module, element, parentStatement, destination, ZR_NODE_NOTIFICATION);
}

uint32_t ZRS_LOADER_ParseAnydata(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                 void *destination)
{
    return ZRS_LOADER_ParseAnydataInner(module, element, parentStatement, destination,
                                        ZR_NODE_ANYDATA);
}

uint32_t ZRS_LOADER_ParseAnyxml(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                void *destination)
{
    return ZRS_LOADER_ParseAnydataInner(module, element, parentStatement, destination,
                                        ZR_NODE_ANYXML);
}

uint32_t ZRS_LOADER_ParseRpc(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                             void *destination)
{
    return ZRS_LOADER_ParseRpcInner(module, element, parentStatement, destination, ZR_NODE_RPC);
}

uint32_t ZRS_LOADER_ParseAction(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                void *destination)
{
    return ZRS_LOADER_ParseRpcInner(module, element, parentStatement, destination, ZR_NODE_ACTION);
}

uint32_t ZRS_LOADER_ParseInput(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                               void *destination)
{
    return ZRS_LOADER_ParseInout(module, element, parentStatement, destination, ZR_NODE_INPUT);
}

uint32_t ZRS_LOADER_ParseOutput(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                void *destination)
{
    return ZRS_LOADER_ParseInout(module, element, parentStatement, destination, ZR_NODE_OUTPUT);
}

uint32_t ZRS_LOADER_ParseAnydataInner(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                      void *destination, uint32_t nodeKind)
{
    return ParseNode(module, element, parentStatement, destination, nodeKind);
}

uint32_t ZRS_LOADER_ParseRpcInner(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                                  void *destination, uint32_t nodeKind)
{
    return ParseNode(module, element, parentStatement, destination, nodeKind);
}

uint32_t ZRS_LOADER_ParseInout(ZrMod *module, xmlNode *element, uint32_t parentStatement,
                               void *destination, uint32_t nodeKind)
{
    return ParseNode(module, element, parentStatement, destination, nodeKind);
}
