// SPDX-License-Identifier: Apache-2.0
// The first phase: every element gets its schema node and is read into the instance tree.
#pragma once

#include <string>

#include "instance/check/run.h"
#include "instance/tree/value.h"

namespace zr::data {

class Matcher {
public:
    // Faults and warnings go where they are wanted: those of a datastore are not the message's.
    Matcher(Run &run, Faults &faults, Faults &warnings)
        : run_(run), faults_(faults), warnings_(warnings), text_(run.memory), value_(run.memory)
    {
    }
    explicit Matcher(Run &run) : Matcher(run, run.faults, run.warnings) {}

    // Reads what stands in an element.
    void WalkChildren(Element &parent, const xmlNode &source);
    // Reads a node of the caller's tree with all that stands in it, which may be of any depth.
    void Walk(Element &parent, const xmlNode &source);
    // Goes on to the next element of the document, for the order of faults.
    void CountElement() { ++order_; }
    // Makes an element without what stands in it.
    Element &Add(Element &parent, const PlanNode &plan, const xmlNode &source);

    // The module of an element's namespace; null, with a fault, when there is none.
    const PlanModule *ModuleOf(const Element &parent, const xmlNode &source);
    // A fault of an element that is not in the instance tree.
    Fault At(const Element &parent, const xmlNode &source, uint32_t tag) const;
    void AddUnknown(const Element &parent, const xmlNode &source);

    // From here on children come in the order of the schema; another order is a warning.
    void ExpectOrder() { isOrdered_ = true; }

private:
    // Returns an element that is to be entered, or null.
    Element *Visit(Element &parent, const xmlNode &source);
    const PlanNode *Match(const Element &parent, const xmlNode &source);
    bool IsTaken(Element &parent, const PlanNode &plan, const xmlNode &source);
    void CheckText(const Element &parent, const xmlNode &source);
    bool IsAnnotation(const xmlAttr &attribute) const;
    void CheckAttributes(Element &element);
    void ReadLeaf(Element &leaf);
    void AddInvalidValue(const Element &leaf, const ValueResult &result);
    void ReadDefaultTag(Element &leaf);
    std::string_view KeepValue(const Element &leaf, std::string_view value);
    void CheckPlace(const Element &element);
    void CheckKeyPlace(const Element &key, const PlanNode &before);

    Run &run_;
    Faults &faults_, &warnings_;
    std::pmr::string text_, value_;
    uint32_t order_ = 0;
    bool isOrdered_ = false;
    const xmlNs *lastNs_ = nullptr; // namespaces repeat: libxml2 shares their records
    const PlanModule *lastModule_ = nullptr;
};

} // namespace zr::data
