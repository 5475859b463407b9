// SPDX-License-Identifier: Apache-2.0
#include "instance/check/match.h"

#include <algorithm>

#include "instance/base/text.h"
#include "instance/check/edit.h"
#include "instance/check/match_json.h"
#include "instance/tree/value.h"

namespace zr::data {

void Matcher::WalkChildren(Element &parent, const xmlNode &source)
{
    for (const xmlNode *at = source.children; at != nullptr; at = at->next)
        Walk(parent, *at);
}

void Matcher::Walk(Element &top, const xmlNode &source)
{
    Element *parent = &top;
    const xmlNode *at = &source;
    while (true) {
        Element *inner = Visit(*parent, *at);
        if (inner != nullptr && at->children != nullptr) {
            parent = inner;
            at = at->children;
            continue;
        }
        while (at != &source && at->next == nullptr) {
            at = at->parent;
            parent = parent->parent;
        }
        if (at == &source)
            return;
        at = at->next;
    }
}

Fault Matcher::At(const Element &parent, const xmlNode &source, uint32_t tag) const
{
    Fault fault;
    fault.at = &parent;
    fault.source = &source;
    fault.order = order_;
    fault.tag = tag;
    fault.child = View(source.name);
    fault.badElement = reinterpret_cast<const char *>(source.name);
    if (source.ns != nullptr)
        fault.childModule = run_.plan.FindNamespace(View(source.ns->href));
    return fault;
}

// Text between elements.
void Matcher::CheckText(const Element &parent, const xmlNode &source)
{
    if (!IsText(source) || IsBlank(View(source.content)))
        return;
    Fault fault;
    fault.at = &parent;
    fault.source = &source;
    fault.order = order_;
    fault.tag = ZR_ERROR_TAG_BAD_ELEMENT;
    fault.badElement = parent.plan->name;
    faults_.Add(fault, {"text stands among elements"});
}

const PlanModule *Matcher::ModuleOf(const Element &parent, const xmlNode &source)
{
    if (source.ns == nullptr || source.ns != lastNs_) {
        lastNs_ = source.ns;
        lastModule_ = lastNs_ == nullptr ? nullptr : run_.plan.FindNamespace(View(source.ns->href));
    }
    if (lastModule_ != nullptr)
        return lastModule_;
    if (const JsonNode *member = AsJson(&source)) {
        TellNoModule(faults_, At(parent, source, 0), *member);
    } else {
        Fault fault = At(parent, source, ZR_ERROR_TAG_UNKNOWN_NAMESPACE);
        if (source.ns == nullptr)
            faults_.Add(fault, {"element \"", View(source.name), "\" has no namespace"});
        else
            faults_.Add(fault, {"no module has the namespace \"", View(source.ns->href), "\""});
    }
    return lastModule_;
}

void Matcher::AddUnknown(const Element &parent, const xmlNode &source)
{
    faults_.Add(At(parent, source, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                {"element \"", View(source.name), "\" is not in the schema here"});
}

namespace {

// Children mostly come in the order of the schema: the one behind the last is looked at first.
const PlanNode *FindChild(const Plan &plan, const Element &parent, const PlanModule *module,
                          std::string_view name)
{
    auto isIt = [&](const PlanNode &node) { return node.module == module && node.name == name; };
    const PlanNode *last = nullptr;
    if (parent.node.last != nullptr && parent.parent != nullptr) // a root has its children apart
        last = reinterpret_cast<const Element *>(parent.node.last)->plan;
    if (last != nullptr && isIt(*last))
        return last;
    std::span<PlanNode *> children = parent.plan->dataChildren;
    size_t next = last == nullptr ? 0 : last->slot + size_t{1};
    if (next < children.size() && isIt(*children[next]))
        return children[next];
    return plan.FindChild(*parent.plan, module, name);
}

} // namespace

const PlanNode *Matcher::Match(const Element &parent, const xmlNode &source)
{
    const PlanModule *module = ModuleOf(parent, source);
    if (module == nullptr)
        return nullptr;
    const PlanNode *plan = FindChild(run_.plan, parent, module, View(source.name));
    if (plan == nullptr)
        AddUnknown(parent, source);
    return plan;
}

bool Matcher::IsTaken(Element &parent, const PlanNode &plan, const xmlNode &source)
{
    if (!run_.Holds(plan)) {
        faults_.Add(At(parent, source, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                    {"\"", plan.name, "\" is state data, which a configuration does not hold"});
        return false;
    }
    if (!plan.IsRepeated() && run_.tree.First(parent, plan) != nullptr) {
        faults_.Add(At(parent, source, ZR_ERROR_TAG_BAD_ELEMENT),
                    {"\"", plan.name, "\" stands here a second time"});
        return false;
    }
    return true;
}

// Of a type that the engine does not keep, so that any value is taken (RFC 7952, section 3).
bool Matcher::IsAnnotation(const xmlAttr &attribute) const
{
    return attribute.ns != nullptr &&
           run_.plan.HasAnnotation(View(attribute.ns->href), View(attribute.name));
}

namespace {

uint32_t FindFilterMark(const ZrsExtInst *, const char *moduleName, const char *extensionName,
                        const char *, void *userData)
{
    *static_cast<bool *>(userData) = std::string_view(moduleName) == "ietf-netconf" &&
                                     View(extensionName) == "get-filter-element-attributes";
    return *static_cast<bool *>(userData) ? 1 : 0;
}

// What the filter of a retrieval may carry (RFC 6241, sections 7.1 and 8.9.5.1).
bool IsFilterAttribute(const PlanNode &plan, const xmlAttr &attribute)
{
    std::string_view name = View(attribute.name);
    bool isFilter = false;
    if (attribute.ns == nullptr && (name == "type" || name == "select"))
        ZR_NODE_ScanAllExtInsts(plan.source, FindFilterMark, &isFilter);
    return isFilter;
}

} // namespace

void Matcher::CheckAttributes(Element &element)
{
    for (const xmlAttr *attribute = element.source->properties; attribute != nullptr;
         attribute = attribute->next) {
        bool isKnown = run_.IsEdit() ? IsEditAttribute(*attribute)
                                     : element.plan->IsLeaf() && IsDefaultTag(*attribute);
        if (isKnown || IsAnnotation(*attribute) || IsFilterAttribute(*element.plan, *attribute))
            continue;
        Fault fault = FaultAt(element, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE);
        fault.badAttribute = reinterpret_cast<const char *>(attribute->name);
        faults_.Add(fault, {"attribute \"", View(attribute->name), "\" is not known"});
    }
    if (run_.IsEdit())
        ReadEditAttributes(run_, element);
}

// RFC 6243, sections 4.5.2 and 6.
void Matcher::ReadDefaultTag(Element &leaf)
{
    for (const xmlAttr *attribute = leaf.source->properties; attribute != nullptr;
         attribute = attribute->next) {
        if (!IsDefaultTag(*attribute))
            continue;
        std::string_view text =
            attribute->children == nullptr ? "" : View(attribute->children->content);
        leaf.isTagged = text == "true" || text == "1";
        if (!leaf.isTagged && text != "false" && text != "0")
            faults_.Add(FaultAt(leaf, ZR_ERROR_TAG_BAD_ATTRIBUTE),
                        {"attribute \"default\" is neither true nor false"});
        if (leaf.isTagged && !leaf.isFaulty && !IsDefaultValue(run_.plan, *leaf.plan, leaf.value))
            faults_.Add(FaultAt(leaf, ZR_ERROR_TAG_INVALID_VALUE),
                        {"\"", leaf.value, "\" is tagged as the default of \"", leaf.plan->name,
                         "\", which it is not"});
    }
}

// A value that stands in the caller's tree as it is needs no copy.
std::string_view Matcher::KeepValue(const Element &leaf, std::string_view value)
{
    const xmlNode *text = leaf.source->children;
    if (text != nullptr && text->next == nullptr && View(text->content) == value)
        return View(text->content);
    return {run_.arena.CopyText(value), value.size()};
}

void Matcher::ReadLeaf(Element &leaf)
{
    text_.clear();
    for (const xmlNode *at = leaf.source->children; at != nullptr; at = at->next) {
        if (IsText(*at)) {
            text_ += View(at->content);
        } else if (at->type == XML_ELEMENT_NODE) {
            leaf.isFaulty = true;
            faults_.Add(At(leaf, *at, ZR_ERROR_TAG_BAD_ELEMENT),
                        {"an element stands in leaf \"", leaf.plan->name, "\""});
            return;
        }
    }
    // Whoever deletes a leaf need not know its value.
    if (leaf.IsDeleted() && text_.empty() && leaf.plan->kind == ZR_NODE_LEAF &&
        !leaf.plan->Is(PlanNode::kKey))
        return;
    ValueResult result =
        ReadValue({run_.plan, *leaf.plan, leaf.source}, *leaf.plan->type, text_, value_);
    leaf.isFaulty = result.fault != nullptr;
    std::string_view value = leaf.isFaulty ? text_ : value_;
    run_.tree.SetValue(leaf, KeepValue(leaf, value), result.type);
    if (!leaf.isFaulty)
        run_.tree.SetMember(leaf, result.member, {});
    else
        AddInvalidValue(leaf, result);
}

// What the schema says of a value that a constraint refuses comes first (RFC 7950, section 8.3.1).
void Matcher::AddInvalidValue(const Element &leaf, const ValueResult &result)
{
    Fault fault = FaultAt(leaf, ZR_ERROR_TAG_INVALID_VALUE);
    const char *message = nullptr;
    if (result.refusal != nullptr) {
        fault.appTag = result.refusal->appTag;
        message = result.refusal->message;
    }
    if (message != nullptr)
        faults_.Add(fault, {message});
    else
        faults_.Add(fault,
                    {"\"", text_, "\" is no value of \"", leaf.plan->name, "\": ", result.fault});
}

// RFC 7950, section 7.8.5: keys come first, in the order in which the list names them.
void Matcher::CheckKeyPlace(const Element &key, const PlanNode &before)
{
    std::span<const PlanNode *> keys = key.parent->plan->keys;
    Fault fault = FaultAt(key, ZR_ERROR_TAG_BAD_ELEMENT);
    auto place = std::find(keys.begin(), keys.end(), &before);
    if (place == keys.end())
        warnings_.Add(fault, {"key \"", key.plan->name, "\" stands behind what is no key"});
    else if (std::find(place, keys.end(), key.plan) == keys.end())
        warnings_.Add(fault,
                      {"key \"", key.plan->name, "\" stands behind key \"", before.name, "\""});
}

// The parameters of an operation come in the order of the schema, and so does what is in them
// (RFC 7950, sections 7.5.7, 7.8.5 and 7.14.4).
void Matcher::CheckPlace(const Element &element)
{
    const PlanNode &plan = *element.plan;
    if (element.node.prev == nullptr || !(isOrdered_ || plan.Is(PlanNode::kKey)))
        return;
    const PlanNode &before = *reinterpret_cast<const Element *>(element.node.prev)->plan;
    if (plan.Is(PlanNode::kKey))
        CheckKeyPlace(element, before);
    else if (!before.Is(PlanNode::kKey) && before.slot > plan.slot)
        warnings_.Add(FaultAt(element, ZR_ERROR_TAG_BAD_ELEMENT),
                      {"\"", plan.name, "\" stands behind \"", before.name,
                       "\", which the schema has behind it"});
}

Element &Matcher::Add(Element &parent, const PlanNode &plan, const xmlNode &source)
{
    Element *element = run_.tree.Add(parent, plan, &source, order_);
    if (source.properties != nullptr)
        CheckAttributes(*element);
    return *element;
}

Element *Matcher::Visit(Element &parent, const xmlNode &source)
{
    if (source.type != XML_ELEMENT_NODE) {
        CheckText(parent, source);
        return nullptr;
    }
    CountElement();
    const PlanNode *plan = Match(parent, source);
    const JsonNode *json = AsJson(&source);
    if (plan == nullptr ||
        (json != nullptr && !IsShaped(faults_, warnings_, At(parent, source, 0), *plan, *json)) ||
        !IsTaken(parent, *plan, source))
        return nullptr;
    Element &element = Add(parent, *plan, source);
    if (plan->IsLeaf())
        ReadLeaf(element);
    if (plan->IsLeaf() && source.properties != nullptr && !run_.IsEdit())
        ReadDefaultTag(element);
    if (plan->IsAny() && json != nullptr)
        CheckAny(faults_, FaultAt(element, 0), element);
    if (json == nullptr) // its members have no order
        CheckPlace(element);
    return plan->IsLeaf() || plan->IsAny() ? nullptr : &element;
}

} // namespace zr::data
