// SPDX-License-Identifier: Apache-2.0
// Matching: every element is matched to its schema node and checked. The first fault ends it.
#include <zrschema/context.h>
#include <zrschema/node.h>

#include <cstring>

#include "data/element.h"
#include "data/error_record.h"
#include "data/phases.h"
#include "model/module_records.h"
#include "model/navigation.h"
#include "platform/strings.h"
#include "platform/xml.h"

// The checks of one matched element.

namespace {

constexpr size_t kShownValueSize = 257; // a longer value is cut to 253 characters and "..."
constexpr int kCutValueLength = 253;

// Order and cases matter where data is an operation's input: in an rpc's data and inside the
// action element, not in the data that leads to an action and not in notifications.
bool IsOperationInput(const ZrdCheckAux *check)
{
    if ((check->mode & ZRD_MODE_RPC) == 0)
        return false;
    return (check->mode & ZRD_MODE_ACTION) == 0 || (check->mode & ZRD_MODE_IN_ACTION) != 0;
}

// "Unexpected element" for the element itself.
uint32_t RecordUnexpected(ZrdCheckAux *check, const xmlNode *element)
{
    return zr::RecordFaultOf(check, zr::Fault::UnexpectedElement, element);
}

enum class Siblings { All, Nearest };

uint32_t CheckCases(ZrdCheckAux *check, xmlNode *element, Siblings which)
{
    ZrNode *ownCase = nullptr;
    const ZrNode *choice = ZRD_MDL_GetChoiceCaseParentNode(zr::SchemaOf(element), &ownCase);
    if (!IsOperationInput(check) || choice == nullptr)
        return ZR_OK;
    for (const xmlNode *sibling = zr::ElementUpTo(element->prev); sibling != nullptr;
         sibling = zr::ElementUpTo(sibling->prev)) {
        ZrNode *otherCase = nullptr;
        if (ZRD_MDL_GetChoiceCaseParentNode(zr::SchemaOf(sibling), &otherCase) != choice)
            continue;
        if (otherCase != ownCase)
            return zr::RecordFaultOf(check, zr::Fault::SeveralCases, element);
        if (which == Siblings::Nearest)
            return ZR_OK;
    }
    return ZR_OK;
}

} // namespace

uint32_t ZRD_PAS_CheckTopSchemaNode(ZrdCheckAux *check, const xmlNode *top)
{
    uint32_t kind = ZR_NODE_GetNodeType(zr::SchemaOf(top));
    if ((check->mode & ZRD_MODE_RPC) != 0 && kind != ZR_NODE_RPC)
        check->mode |= ZRD_MODE_ACTION;
    if ((check->mode & ZRD_MODE_NOTIF) != 0 && kind != ZR_NODE_NOTIFICATION)
        return RecordUnexpected(check, top);
    return ZR_OK;
}

uint32_t ZRD_PAS_CheckMultipleInstanceNode(ZrdCheckAux *check, xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    const xmlNode *parent = element->parent;
    if (parent == nullptr || parent == check->root || zr::MayRepeat(schemaNode))
        return ZR_OK;
    for (const xmlNode *other = parent->children; other != nullptr; other = other->next) {
        if (other != element && other->type == XML_ELEMENT_NODE &&
            zr::SchemaOf(other) == schemaNode)
            return RecordUnexpected(check, element);
    }
    return ZR_OK;
}

uint32_t ZRD_PAS_CheckDataNodeValue(ZrdCheckAux *check, xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    if ((check->mode & ZRD_MODE_NOTIF) != 0 || (kind != ZR_NODE_LEAF && kind != ZR_NODE_LEAF_LIST))
        return ZR_OK;
    uint32_t status = ZR_NODE_ValidateValue(schemaNode, ZR_VALUE_XML, element);
    if (status != ZR_OK)
        ZRD_PAS_SetInvalidValueErr(check, element);
    return status;
}

void ZRD_PAS_SetInvalidValueErr(ZrdCheckAux *check, const xmlNode *element)
{
    const char *content = ZR_XML_GetElemNodeContent(element);
    const char *text = content != nullptr ? content : "";
    char shown[kShownValueSize];
    if (strcpy_s(shown, sizeof(shown), text) < 0)
        sprintf_s(shown, sizeof(shown), "%.*s...", kCutValueLength, text);
    zr::RecordFaultOf(check, zr::Fault::InvalidValue, element, shown);
}

uint32_t ZRD_PAS_CheckActionNodeRepeat(ZrdCheckAux *check, xmlNode *element)
{
    if (ZR_NODE_GetNodeType(zr::SchemaOf(element)) != ZR_NODE_ACTION)
        return ZR_OK;
    if ((check->mode & ZRD_MODE_ACTION) == 0)
        return ZR_ERR_INVALID;
    if (check->actionElement != nullptr)
        return RecordUnexpected(check, element);
    check->actionElement = element;
    return ZR_OK;
}

uint32_t ZRD_PAS_CheckActionNodeExist(ZrdCheckAux *check)
{
    if (check->actionElement != nullptr)
        return ZR_OK;
    return zr::RecordFault(check, zr::Fault::UnexpectedElement, nullptr, "action", "action");
}

uint32_t ZRD_PAS_CheckElementNodeOrder(ZrdCheckAux *check, xmlNode *element)
{
    // Blanks and comments between elements are no data, so they do not part them.
    const xmlNode *sibling = zr::ElementUpTo(element->prev);
    if (!IsOperationInput(check) || sibling == nullptr)
        return ZR_OK;
    const ZrNode *own = zr::SchemaOf(element);
    const ZrNode *other = zr::SchemaOf(sibling);
    if (own == nullptr || other == nullptr || own == other || !zr::ComesBefore(own, other))
        return ZR_OK;
    return zr::RecordFaultOf(check, zr::Fault::ElementOrder, element, zr::NameOf(sibling));
}

uint32_t ZRD_PAS_CheckMultiCases(ZrdCheckAux *check, xmlNode *element)
{
    return CheckCases(check, element, Siblings::All);
}

// From element to element. Matching follows the schema down, one function call a level: an element
// that matches nothing ends the flush, so the schema bounds the depth whatever the document holds.

namespace {

// CheckMultiCases for an element whose preceding siblings have all passed it: those with data of
// one choice then agree on the case, so that the nearest speaks for all.
uint32_t CheckCaseOfNearestSibling(ZrdCheckAux *check, xmlNode *element)
{
    return CheckCases(check, element, Siblings::Nearest);
}

struct ElementCheck {
    uint32_t (*check)(ZrdCheckAux *check, xmlNode *element);
    bool amongSiblings; // compares the element with its siblings
};

// clang-format off
constexpr ElementCheck kElementChecks[] = {
    // check                            among siblings
    {ZRD_PAS_CheckMultipleInstanceNode, true},
    {ZRD_PAS_CheckDataNodeValue,        false},
    {ZRD_PAS_CheckActionNodeRepeat,     false},
    {ZRD_PAS_CheckElementNodeOrder,     true},
    {CheckCaseOfNearestSibling,         true},
};
// clang-format on

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
        if (place_ != nullptr && !zr::MayRepeat(place_))
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
        return RecordUnexpected(check, element);
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
        return zr::RecordFaultOf(check, zr::Fault::InvalidNamespace, top, ns);
    ZrNode *schemaNode = ZRS_MOD_FindTopLevelSchemaNode(module, zr::NameOf(top));
    // A top-level choice is found by its name too, but has no element of its own.
    if (schemaNode == nullptr || !zr::HasDataInstance(schemaNode->kind))
        return RecordUnexpected(check, top);
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
    if (kind == ZR_NODE_LEAF || kind == ZR_NODE_LEAF_LIST)
        return HoldsTextAlone(element) ? uint32_t{ZR_OK} : RecordUnexpected(check, element);
    if (ZRD_MDL_IsSchemaNodeDefineWithMountPoint(schemaNode)) {
        check->mode |= ZRD_MODE_MOUNT_POINT;
        return ZR_OK;
    }
    if (kind == ZR_NODE_ANYDATA || kind == ZR_NODE_ANYXML)
        return ZR_OK;
    if (kind == ZR_NODE_ACTION)
        check->mode |= ZRD_MODE_IN_ACTION;
    uint32_t status = FlushChildren(check, element, schemaNode);
    if (kind == ZR_NODE_ACTION)
        check->mode &= ~ZRD_MODE_IN_ACTION;
    return status;
}
