// The first phase: every element gets its schema node and is read into the instance tree.
#include <algorithm>

#include "instance/base/text.h"
#include "instance/check/run.h"
#include "instance/tree/value.h"

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
    void CheckKeyPlace(const Element &key);
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
        run_.faults.Add(FaultAt(element, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE),
                        {"attribute \"", View(attribute->name), "\" is not known"});
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

// RFC 7950, section 7.8.5: keys come first, in the order in which the list names them.
void Matcher::CheckKeyPlace(const Element &key)
{
    auto *before = reinterpret_cast<const Element *>(key.node.prev);
    if (before == nullptr)
        return;
    std::span<const PlanNode *> keys = key.parent->plan->keys;
    Fault fault = FaultAt(key, ZR_ERROR_TAG_BAD_ELEMENT);
    auto place = std::find(keys.begin(), keys.end(), before->plan);
    if (place == keys.end())
        run_.warnings.Add(fault, {"key \"", key.plan->name, "\" stands behind what is no key"});
    else if (std::find(place, keys.end(), key.plan) == keys.end())
        run_.warnings.Add(
            fault, {"key \"", key.plan->name, "\" stands behind key \"", before->plan->name, "\""});
}

Element *Matcher::Visit(Element &parent, const xmlNode &source)
{
    if (source.type != XML_ELEMENT_NODE) {
        CheckText(parent, source);
        return nullptr;
    }
    ++order_;
    const PlanNode *plan = Match(parent, source);
    if (plan == nullptr || !IsTaken(parent, *plan, source))
        return nullptr;
    Element *element = run_.tree.Add(parent, *plan, &source, order_);
    if (source.properties != nullptr)
        CheckAttributes(*element);
    if (plan->IsLeaf())
        ReadLeaf(*element);
    if (plan->Is(PlanNode::kKey))
        CheckKeyPlace(*element);
    return plan->IsLeaf() || plan->IsAny() ? nullptr : element;
}

} // namespace

void MatchElements(Run &run, const xmlNode &wrapper)
{
    Matcher(run).Walk(wrapper);
}

} // namespace zr::data
