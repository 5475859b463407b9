// The first phase: every element gets its schema node and is read into the instance tree.
#include "instance/base/text.h"
#include "instance/check/run.h"
#include "instance/tree/json_node.h"
#include "instance/tree/value.h"
#include "shared/names.h"

namespace zr::data {

namespace {

class Matcher {
public:
    explicit Matcher(Run &run) : run_(run), text_(run.memory), value_(run.memory) {}

    // A walk over the caller's tree, which may be of any depth.
    void Walk(const xmlNode &wrapper)
    {
        Element *parent = &run_.tree.root;
        const xmlNode *at = wrapper.children;
        while (at != nullptr || parent != &run_.tree.root) {
            if (at == nullptr) {
                at = parent->source->next;
                parent = parent->parent;
                continue;
            }
            Element *inner = Visit(*parent, *at);
            if (inner != nullptr && at->children != nullptr) {
                parent = inner;
                at = at->children;
            } else {
                at = at->next;
            }
        }
    }

private:
    // Returns an element that is to be entered, or null.
    Element *Visit(Element &parent, const xmlNode &source);
    const PlanNode *Match(const Element &parent, const xmlNode &source);
    bool IsTaken(Element &parent, const PlanNode &plan, const xmlNode &source);
    void CheckText(const Element &parent, const xmlNode &source);
    void CheckAttributes(const Element &element);
    void ReadLeaf(Element &leaf);
    void ReadDefaultTag(Element &leaf);
    // The same for JSON alone.
    void TellNoModule(const Element &parent, const JsonNode &member);
    bool IsShaped(Element &parent, const PlanNode &plan, const JsonNode &value);
    void CheckAny(const Element &any);
    Fault At(const Element &parent, const xmlNode &source, uint32_t tag) const;

    Run &run_;
    std::pmr::string text_, value_;
    uint32_t order_ = 0;
    const xmlNs *lastNs_ = nullptr; // namespaces repeat: libxml2 shares their records
    const PlanModule *lastModule_ = nullptr;
};

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
    bool isText = source.type == XML_TEXT_NODE || source.type == XML_CDATA_SECTION_NODE;
    if (!isText || IsBlank(View(source.content)))
        return;
    Fault fault;
    fault.at = &parent;
    fault.source = &source;
    fault.order = order_;
    fault.tag = ZR_ERROR_TAG_BAD_ELEMENT;
    fault.badElement = parent.plan->name;
    run_.faults.Add(fault, {"text stands among elements"});
}

const PlanNode *Matcher::Match(const Element &parent, const xmlNode &source)
{
    if (source.ns == nullptr || source.ns != lastNs_) {
        lastNs_ = source.ns;
        lastModule_ = lastNs_ == nullptr ? nullptr : run_.plan.FindNamespace(View(source.ns->href));
    }
    if (lastModule_ == nullptr) {
        if (const JsonNode *member = AsJson(&source)) {
            TellNoModule(parent, *member);
            return nullptr;
        }
        Fault fault = At(parent, source, ZR_ERROR_TAG_UNKNOWN_NAMESPACE);
        if (source.ns == nullptr)
            run_.faults.Add(fault, {"element \"", View(source.name), "\" has no namespace"});
        else
            run_.faults.Add(fault, {"no module has the namespace \"", View(source.ns->href), "\""});
        return nullptr;
    }
    const PlanNode *plan = run_.plan.FindChild(*parent.plan, lastModule_, View(source.name));
    if (plan == nullptr)
        run_.faults.Add(At(parent, source, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                        {"element \"", View(source.name), "\" is not in the schema here"});
    return plan;
}

bool Matcher::IsTaken(Element &parent, const PlanNode &plan, const xmlNode &source)
{
    if (!run_.Holds(plan)) {
        run_.faults.Add(At(parent, source, ZR_ERROR_TAG_UNKNOWN_ELEMENT),
                        {"\"", plan.name, "\" is state data, which a configuration does not hold"});
        return false;
    }
    if (!plan.IsRepeated() && run_.tree.First(parent, plan) != nullptr) {
        run_.faults.Add(At(parent, source, ZR_ERROR_TAG_BAD_ELEMENT),
                        {"\"", plan.name, "\" stands here a second time"});
        return false;
    }
    return true;
}

void Matcher::CheckAttributes(const Element &element)
{
    for (const xmlAttr *attribute = element.source->properties; attribute != nullptr;
         attribute = attribute->next)
        if (!element.plan->IsLeaf() || !IsDefaultTag(*attribute))
            run_.faults.Add(FaultAt(element, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE),
                            {"attribute \"", View(attribute->name), "\" is not known"});
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
            run_.faults.Add(FaultAt(leaf, ZR_ERROR_TAG_BAD_ATTRIBUTE),
                            {"attribute \"default\" is neither true nor false"});
        if (leaf.isTagged && !leaf.isFaulty && !IsDefaultValue(run_.plan, *leaf.plan, leaf.value))
            run_.faults.Add(FaultAt(leaf, ZR_ERROR_TAG_INVALID_VALUE),
                            {"\"", leaf.value, "\" is tagged as the default of \"", leaf.plan->name,
                             "\", which it is not"});
    }
}

void Matcher::TellNoModule(const Element &parent, const JsonNode &member)
{
    if (!member.startsMember) // told of the array's first value
        return;
    Fault fault = At(parent, member.node, ZR_ERROR_TAG_UNKNOWN_NAMESPACE);
    if (member.name->prefix.empty())
        run_.faults.Add(fault, {"member \"", member.name->text, "\" names no module"});
    else
        run_.faults.Add(
            fault, {"member \"", member.name->text, "\" names a module that is not ", "loaded"});
}

// Whether a value is to be read; what is wrong with it is told.
bool Matcher::IsShaped(Element &parent, const PlanNode &plan, const JsonNode &value)
{
    if (value.isRepeated) {
        run_.faults.Add(At(parent, value.node, ZR_ERROR_TAG_BAD_ELEMENT),
                        {"member \"", value.name->text, "\" stands here a second time"});
        return false;
    }
    bool isNothing = plan.IsRepeated() && value.kind == JsonKind::Array && !value.isEntry;
    bool isSeen = plan.kind == ZR_NODE_ANYXML && !value.startsMember; // it is one whole array
    if (isNothing || isSeen)
        return false;
    if (value.startsMember && value.name->module != nullptr &&
        value.name->module == parent.plan->module)
        run_.warnings.Add(At(parent, value.node, ZR_ERROR_TAG_BAD_ELEMENT),
                          {"member \"", value.name->text, "\" needs no name of a module here"});
    const char *fault = CheckShape(value, plan);
    if (fault == nullptr)
        return true;
    if (value.startsMember || plan.IsRepeated())
        run_.faults.Add(At(parent, value.node, ZR_ERROR_TAG_INVALID_VALUE),
                        {"the value of \"", plan.name, "\" does not fit: ", fault});
    // One entry that stands in no array is looked into all the same.
    return plan.kind == ZR_NODE_LIST && value.kind == JsonKind::Object;
}

bool HasUnknownAnnotation(const xmlNode &node)
{
    for (const xmlAttr *at = node.properties; at != nullptr; at = at->next)
        if (at->ns == nullptr || !IsIdentifier(View(at->name)))
            return true;
    return false;
}

// What JSON can write and data has no place for (RFC 7951, sections 5.5 and 5.6).
void Matcher::CheckAny(const Element &any)
{
    bool isData = any.plan->kind == ZR_NODE_ANYDATA;
    auto refuse = [&](const JsonNode &value, uint32_t tag, std::string_view reason) {
        Fault fault = At(any, value.node, tag);
        fault.child = {}; // the schema has no path into it
        fault.childModule = nullptr;
        run_.faults.Add(fault, {"member \"", value.name->text, "\" ", reason});
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

void Matcher::ReadLeaf(Element &leaf)
{
    text_.clear();
    for (const xmlNode *at = leaf.source->children; at != nullptr; at = at->next) {
        if (at->type == XML_TEXT_NODE || at->type == XML_CDATA_SECTION_NODE) {
            text_ += View(at->content);
        } else if (at->type == XML_ELEMENT_NODE) {
            leaf.isFaulty = true;
            run_.faults.Add(At(leaf, *at, ZR_ERROR_TAG_BAD_ELEMENT),
                            {"an element stands in leaf \"", leaf.plan->name, "\""});
            return;
        }
    }
    ValueResult result =
        ReadValue({run_.plan, *leaf.plan, leaf.source}, *leaf.plan->type, text_, value_);
    leaf.isFaulty = result.fault != nullptr;
    run_.tree.SetValue(leaf, leaf.isFaulty ? text_ : value_, result.type);
    if (leaf.isFaulty)
        run_.faults.Add(
            FaultAt(leaf, ZR_ERROR_TAG_INVALID_VALUE),
            {"\"", text_, "\" is no value of \"", leaf.plan->name, "\": ", result.fault});
}

Element *Matcher::Visit(Element &parent, const xmlNode &source)
{
    if (source.type != XML_ELEMENT_NODE) {
        CheckText(parent, source);
        return nullptr;
    }
    ++order_;
    const PlanNode *plan = Match(parent, source);
    const JsonNode *json = AsJson(&source);
    if (plan == nullptr || (json != nullptr && !IsShaped(parent, *plan, *json)) ||
        !IsTaken(parent, *plan, source))
        return nullptr;
    Element *element = run_.tree.Add(parent, *plan, &source, order_);
    if (source.properties != nullptr)
        CheckAttributes(*element);
    if (plan->IsLeaf())
        ReadLeaf(*element);
    if (plan->IsLeaf() && source.properties != nullptr)
        ReadDefaultTag(*element);
    if (plan->IsAny() && json != nullptr)
        CheckAny(*element);
    // RFC 7950, section 7.8.5: keys come first. The members of JSON have no order.
    auto *before = reinterpret_cast<Element *>(element->node.prev);
    if (json == nullptr && plan->Is(PlanNode::kKey) && before != nullptr &&
        !before->plan->Is(PlanNode::kKey))
        run_.warnings.Add(FaultAt(*element, ZR_ERROR_TAG_BAD_ELEMENT),
                          {"key \"", plan->name, "\" stands behind what is no key"});
    return plan->IsLeaf() || plan->IsAny() ? nullptr : element;
}

} // namespace

void MatchElements(Run &run, const xmlNode &wrapper)
{
    Matcher(run).Walk(wrapper);
}

} // namespace zr::data
