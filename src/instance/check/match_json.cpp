// SPDX-License-Identifier: Apache-2.0
#include "instance/check/match_json.h"

#include "instance/base/text.h"
#include "instance/tree/json_node.h"
#include "shared/names.h"

namespace zr::data {

namespace {

Fault Tagged(Fault fault, uint32_t tag)
{
    fault.tag = tag;
    return fault;
}

bool HasUnknownAnnotation(const xmlNode &node)
{
    for (const xmlAttr *at = node.properties; at != nullptr; at = at->next)
        if (at->ns == nullptr || !IsIdentifier(View(at->name)))
            return true;
    return false;
}

} // namespace

void TellNoModule(Faults &faults, const Fault &at, const JsonNode &member)
{
    if (!member.startsMember) // told of the array's first value
        return;
    Fault fault = Tagged(at, ZR_ERROR_TAG_UNKNOWN_NAMESPACE);
    if (member.name->prefix.empty())
        faults.Add(fault, {"member \"", member.name->text, "\" names no module"});
    else
        faults.Add(fault,
                   {"member \"", member.name->text, "\" names a module that is not ", "loaded"});
}

bool IsShaped(Faults &faults, Faults &warnings, const Fault &at, const PlanNode &plan,
              const JsonNode &value)
{
    if (value.isRepeated) {
        faults.Add(Tagged(at, ZR_ERROR_TAG_BAD_ELEMENT),
                   {"member \"", value.name->text, "\" stands here a second time"});
        return false;
    }
    bool isNothing = plan.IsRepeated() && value.kind == JsonKind::Array && !value.isEntry;
    bool isSeen = plan.kind == ZR_NODE_ANYXML && !value.startsMember; // it is one whole array
    if (isNothing || isSeen)
        return false;
    if (value.startsMember && value.name->module != nullptr &&
        value.name->module == at.at->plan->module)
        warnings.Add(Tagged(at, ZR_ERROR_TAG_BAD_ELEMENT),
                     {"member \"", value.name->text, "\" needs no name of a module here"});
    const char *fault = CheckShape(value, plan);
    if (fault == nullptr)
        return true;
    if (value.startsMember || plan.IsRepeated())
        faults.Add(Tagged(at, ZR_ERROR_TAG_INVALID_VALUE),
                   {"the value of \"", plan.name, "\" does not fit: ", fault});
    // One entry that stands in no array is looked into all the same.
    return plan.kind == ZR_NODE_LIST && value.kind == JsonKind::Object;
}

void CheckAny(Faults &faults, const Fault &at, const Element &any)
{
    bool isData = any.plan->kind == ZR_NODE_ANYDATA;
    auto refuse = [&](const JsonNode &value, uint32_t tag, std::string_view reason) {
        Fault fault = Tagged(at, tag);
        fault.source = &value.node;
        fault.badElement = reinterpret_cast<const char *>(value.node.name);
        faults.Add(fault, {"member \"", value.name->text, "\" ", reason});
    };
    const xmlNode *node = any.source;
    while (node != nullptr) {
        if (node->type == XML_ELEMENT_NODE) {
            const JsonNode &value = *AsJson(node);
            bool isInner = node != any.source;
            if (isInner && value.isRepeated)
                refuse(value, ZR_ERROR_TAG_BAD_ELEMENT, "stands here a second time");
            if (isInner && !IsIdentifier(View(node->name)))
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "has a name that no node has");
            if (value.kind == JsonKind::Unfit)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "holds characters that no data has");
            if (isData && value.kind == JsonKind::Null)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "is null, which stands as [null] alone");
            if (isData && value.kind == JsonKind::Array && value.isEntry)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "is an array in an array");
            if (isInner && HasUnknownAnnotation(*node))
                refuse(value, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE,
                       "has an annotation of no module, or the same one twice");
        }
        node = NextNode(*node, *any.source);
    }
}

} // namespace zr::data
