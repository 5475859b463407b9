#include "data/flush.h"

#include <zrschema/context.h>
#include <zrschema/node.h>

#include <cstring>

#include "data/data_tree.h"
#include "data/error_record.h"
#include "data/schema_query.h"
#include "data/structure.h"
#include "model/module_records.h"
#include "model/navigation.h"
#include "model/node_record.h"
#include "platform/xml.h"

// Matching follows the schema down, one function call a level: an element that matches nothing
// ends the flush, so the schema bounds the depth whatever the document holds.

namespace {

struct ElementCheck {
    uint32_t (*check)(ZrdCheckAux *check, xmlNode *element);
    bool amongSiblings; // compares the element with its siblings
};

constexpr ElementCheck kElementChecks[] = {
    {ZRD_PAS_CheckMultipleInstanceNode, true}, {ZRD_PAS_CheckDataNodeValue, false},
    {ZRD_PAS_CheckActionNodeRepeat, false},    {ZRD_PAS_CheckElementNodeOrder, true},
    {zr::CheckCaseOfNearestSibling, true},
};

bool MayRepeat(const ZrNode *schemaNode)
{
    return schemaNode->kind == ZR_NODE_LIST || schemaNode->kind == ZR_NODE_LEAF_LIST;
}

// By the element's module and local name, through choices, cases, input and output.
ZrNode *FindSchemaNode(const ZrdCheckAux *check, const xmlNode *element, const ZrNode *parentSchema)
{
    const char *moduleName = ZRD_NODE_GetModuleName(check->ctx, element);
    // An unknown or missing namespace; to the search, no name would be the parent's own module.
    if (moduleName == nullptr)
        return nullptr;
    return ZRS_NODE_FindChildDataTreeNodeByName(parentSchema, moduleName, zr::NameOf(element));
}

bool HaveSameNamespace(const xmlNode *a, const xmlNode *b)
{
    return a->ns == b->ns ||
           (a->ns != nullptr && b->ns != nullptr && xmlStrEqual(a->ns->href, b->ns->href) != 0);
}

// Where the matching of one element's children stands. Data mostly comes in schema order, so the
// next child is first looked for at and after the place of the one before. As long as every child
// was found that way there can be no second instance, no wrong order and, the nodes of choices
// being left to the full search, no second case: the checks among siblings need not be made, which
// keeps the cost of 100,000 siblings in proportion to their number.
class SiblingCursor {
public:
    SiblingCursor(const ZrdCheckAux *check, ZrNode *parentSchema)
        : check_(check), parent_(parentSchema)
    {
    }

    // The schema node of the child, or null.
    ZrNode *Match(const xmlNode *child)
    {
        ZrNode *node = MatchAhead(child);
        if (node != nullptr) {
            place_ = node;
            return node;
        }
        inOrder_ = false;
        node = FindSchemaNode(check_, child, parent_);
        place_ = node;
        while (place_ != nullptr && place_->parent != parent_)
            place_ = place_->parent;
        return node;
    }

    // A sibling was matched elsewhere.
    void Pass() { inOrder_ = false; }

    // Whether every child so far stands after, or repeats, the one before.
    bool inOrder() const { return inOrder_; }

private:
    ZrNode *MatchAhead(const xmlNode *child) const
    {
        // The names below an rpc or action may stand twice, in its input and in its output.
        if (parent_->kind == ZR_NODE_RPC || parent_->kind == ZR_NODE_ACTION)
            return nullptr;
        // The parent was matched by its namespace, so the same one leads to the same module.
        if (child->ns == nullptr || !HaveSameNamespace(child, child->parent))
            return nullptr;
        ZrNode *node = place_ == nullptr ? parent_->firstChild : place_;
        if (place_ != nullptr && !MayRepeat(place_))
            node = place_->next;
        for (; node != nullptr; node = node->next) {
            if (node->module == parent_->module && zr::HasDataInstance(node->kind) &&
                std::strcmp(node->name, zr::NameOf(child)) == 0)
                return node;
        }
        return nullptr;
    }

    const ZrdCheckAux *check_;
    ZrNode *parent_;
    ZrNode *place_ = nullptr; // the parent's child at or below which the last match stands
    bool inOrder_ = true;
};

// What stands beside the text of a leaf, if only a comment, would part the value that was checked
// from the content that an application reads.
bool HoldsTextAlone(const xmlNode *element)
{
    const xmlNode *child = element->children;
    while (child != nullptr && child->type == XML_TEXT_NODE)
        child = child->next;
    return child == nullptr;
}

uint32_t FlushMatched(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode, bool inOrder)
{
    if (schemaNode == nullptr)
        return zr::RecordUnexpected(check, element);
    element->_private = schemaNode;
    for (const ElementCheck &row : kElementChecks) {
        if (row.amongSiblings && inOrder)
            continue;
        uint32_t status = row.check(check, element);
        if (status != ZR_OK)
            return status;
    }
    return ZRD_PAS_FlushAllElementChildNodeWithSchema(check, element, schemaNode);
}

// The children of an element, each against the same schema node.
uint32_t FlushChildren(ZrdCheckAux *check, xmlNode *element, ZrNode *schemaNode)
{
    SiblingCursor cursor(check, schemaNode);
    for (xmlNode *child = zr::ElementFrom(element->children); child != nullptr;
         child = zr::ElementFrom(child->next)) {
        if (child->_private != nullptr) {
            cursor.Pass();
            continue;
        }
        ZrNode *node = cursor.Match(child);
        uint32_t status = FlushMatched(check, child, node, cursor.inOrder());
        if (status != ZR_OK)
            return status;
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRD_PAS_FlushTreeWithSchema(ZrdCheckAux *check, xmlNode *top)
{
    if (top == nullptr || top->type != XML_ELEMENT_NODE)
        return ZR_ERR_INVALID;
    if (top->_private != nullptr)
        return ZR_OK;
    const char *ns = ZR_XML_GetXmlNodeDefaultNs(top);
    if (ns == nullptr)
        return ZR_ERR_INVALID;
    const ZrMod *module = ZR_CTX_GetModuleByModNs(check->ctx, ns);
    if (module == nullptr)
        return zr::RecordFault(check, zr::Fault::InvalidNamespace, top, zr::NameOf(top),
                               zr::NameOf(top), ns);
    ZrNode *schemaNode = ZRS_MOD_FindTopLevelSchemaNode(module, zr::NameOf(top));
    // A top-level choice is found by its name too, but has no element of its own.
    if (schemaNode == nullptr || !zr::HasDataInstance(schemaNode->kind))
        return zr::RecordUnexpected(check, top);
    top->_private = schemaNode;
    uint32_t status = ZRD_PAS_CheckTopSchemaNode(check, top);
    if (status != ZR_OK)
        return status;
    return ZRD_PAS_FlushAllElementChildNodeWithSchema(check, top, schemaNode);
}

uint32_t ZRD_PAS_FlushSubTreeWithSchema(ZrdCheckAux *check, xmlNode *element, ZrNode *parentSchema)
{
    if (element == nullptr || parentSchema == nullptr)
        return ZR_ERR_INVALID;
    if (element->_private != nullptr)
        return ZR_OK;
    return FlushMatched(check, element, FindSchemaNode(check, element, parentSchema), false);
}

uint32_t ZRD_PAS_FlushAllElementChildNodeWithSchema(ZrdCheckAux *check, xmlNode *element,
                                                    ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if (ZRD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode)) {
        check->mode |= ZRD_MODE_MOUNT_POINT;
        return ZR_OK;
    }
    if (kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML)
        return ZR_OK;
    if (kind == ZR_NODE_LEAF || kind == ZR_NODE_LEAF_LIST)
        return HoldsTextAlone(element) ? uint32_t{ZR_OK} : zr::RecordUnexpected(check, element);
    if (kind == ZR_NODE_ACTION)
        check->mode |= ZRD_MODE_IN_ACTION;
    uint32_t status = FlushChildren(check, element, schemaNode);
    if (kind == ZR_NODE_ACTION)
        check->mode &= ~ZRD_MODE_IN_ACTION;
    return status;
}
