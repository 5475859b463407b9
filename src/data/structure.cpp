#include "data/structure.h"

#include <zrschema/node.h>

#include "data/data_tree.h"
#include "data/error_record.h"
#include "data/schema_query.h"
#include "platform/text.h"
#include "platform/xml.h"

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

bool MayRepeat(const ZrNode *schemaNode)
{
    uint32_t kind = ZR_NODE_GetNodeType(schemaNode);
    return kind == ZR_NODE_LIST || kind == ZR_NODE_LEAF_LIST;
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
            return zr::RecordFault(check, zr::Fault::SeveralCases, element, zr::NameOf(element));
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
        return zr::RecordUnexpected(check, top);
    return ZR_OK;
}

uint32_t ZRD_PAS_CheckMultipleInstanceNode(ZrdCheckAux *check, xmlNode *element)
{
    const ZrNode *schemaNode = zr::SchemaOf(element);
    const xmlNode *parent = element->parent;
    if (parent == nullptr || parent == check->root || MayRepeat(schemaNode))
        return ZR_OK;
    for (const xmlNode *other = parent->children; other != nullptr; other = other->next) {
        if (other != element && other->type == XML_ELEMENT_NODE &&
            zr::SchemaOf(other) == schemaNode)
            return zr::RecordUnexpected(check, element);
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
    zr::RecordFault(check, zr::Fault::InvalidValue, element, zr::NameOf(element),
                    zr::NameOf(element), shown);
}

uint32_t ZRD_PAS_CheckActionNodeRepeat(ZrdCheckAux *check, xmlNode *element)
{
    if (ZR_NODE_GetNodeType(zr::SchemaOf(element)) != ZR_NODE_ACTION)
        return ZR_OK;
    if ((check->mode & ZRD_MODE_ACTION) == 0)
        return ZR_ERR_INVALID;
    if (check->actionElement != nullptr)
        return zr::RecordUnexpected(check, element);
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
    return zr::RecordFault(check, zr::Fault::ElementOrder, element, zr::NameOf(element),
                           zr::NameOf(element), zr::NameOf(sibling));
}

uint32_t ZRD_PAS_CheckMultiCases(ZrdCheckAux *check, xmlNode *element)
{
    return CheckCases(check, element, Siblings::All);
}

namespace zr {

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

uint32_t CheckCaseOfNearestSibling(ZrdCheckAux *check, xmlNode *element)
{
    return CheckCases(check, element, Siblings::Nearest);
}

uint32_t RecordUnexpected(ZrdCheckAux *check, const xmlNode *element)
{
    return RecordFault(check, Fault::UnexpectedElement, element, NameOf(element), NameOf(element));
}

} // namespace zr
