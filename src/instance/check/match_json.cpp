// What only a document in JSON has: its shapes, and members without a module.
#include "instance/base/text.h"
#include "instance/check/match.h"
#include "instance/tree/json_node.h"
#include "shared/names.h"

namespace zr::data {

namespace {

bool HasUnknownAnnotation(const xmlNode &node)
{
    for (const xmlAttr *at = node.properties; at != nullptr; at = at->next)
        if (at->ns == nullptr || !IsIdentifier(View(at->name)))
            return true;
    return false;
}

} // namespace

void Matcher::TellNoModule(const Element &parent, const JsonNode &member)
{
    if (!member.startsMember) // told of the array's first value
        return;
    Fault fault = At(parent, member.node, ZR_ERROR_TAG_UNKNOWN_NAMESPACE);
    if (member.name->prefix.empty())
        faults_.Add(fault, {"member \"", member.name->text, "\" names no module"});
    else
        faults_.Add(fault,
                    {"member \"", member.name->text, "\" names a module that is not ", "loaded"});
}

// Whether a value is to be read; what is wrong with it is told.
bool Matcher::IsShaped(Element &parent, const PlanNode &plan, const JsonNode &value)
{
    if (value.isRepeated) {
        faults_.Add(At(parent, value.node, ZR_ERROR_TAG_BAD_ELEMENT),
                    {"member \"", value.name->text, "\" stands here a second time"});
        return false;
    }
    bool isNothing = plan.IsRepeated() && value.kind == JsonKind::Array && !value.isEntry;
    bool isSeen = plan.kind == ZR_NODE_ANYXML && !value.startsMember; // it is one whole array
    if (isNothing || isSeen)
        return false;
    if (value.startsMember && value.name->module != nullptr &&
        value.name->module == parent.plan->module)
        warnings_.Add(At(parent, value.node, ZR_ERROR_TAG_BAD_ELEMENT),
                      {"member \"", value.name->text, "\" needs no name of a module here"});
    const char *fault = CheckShape(value, plan);
    if (fault == nullptr)
        return true;
    if (value.startsMember || plan.IsRepeated())
        faults_.Add(At(parent, value.node, ZR_ERROR_TAG_INVALID_VALUE),
                    {"the value of \"", plan.name, "\" does not fit: ", fault});
    // One entry that stands in no array is looked into all the same.
    return plan.kind == ZR_NODE_LIST && value.kind == JsonKind::Object;
}

// What JSON can write and data has no place for (RFC 7951, sections 5.5 and 5.6).
void Matcher::CheckAny(const Element &any)
{
    bool isData = any.plan->kind == ZR_NODE_ANYDATA;
    auto refuse = [&](const JsonNode &value, uint32_t tag, std::string_view reason) {
        Fault fault = At(any, value.node, tag);
        fault.child = {}; // the schema has no path into it
        fault.childModule = nullptr;
        faults_.Add(fault, {"member \"", value.name->text, "\" ", reason});
    };
    const xmlNode *at = any.source;
    while (at != nullptr) {
        if (at->type == XML_ELEMENT_NODE) {
            const JsonNode &value = *AsJson(at);
            bool isInner = at != any.source;
            if (isInner && value.isRepeated)
                refuse(value, ZR_ERROR_TAG_BAD_ELEMENT, "stands here a second time");
            if (isInner && !IsIdentifier(View(at->name)))
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "has a name that no node has");
            if (value.kind == JsonKind::Unfit)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "holds characters that no data has");
            if (isData && value.kind == JsonKind::Null)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "is null, which stands as [null] alone");
            if (isData && value.kind == JsonKind::Array && value.isEntry)
                refuse(value, ZR_ERROR_TAG_INVALID_VALUE, "is an array in an array");
            if (isInner && HasUnknownAnnotation(*at))
                refuse(value, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE,
                       "has an annotation of no module, or the same one twice");
        }
        at = NextNode(*at, *any.source);
    }
}

} // namespace zr::data
