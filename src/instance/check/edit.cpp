// SPDX-License-Identifier: Apache-2.0
#include "instance/check/edit.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "instance/base/text.h"
#include "instance/check/envelope.h"
#include "instance/tree/value.h"
#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

struct OperationName {
    std::string_view name;
    Operation operation;
};
constexpr OperationName kOperations[] = {
    {"none", Operation::None},     {"merge", Operation::Merge},   {"replace", Operation::Replace},
    {"create", Operation::Create}, {"delete", Operation::Delete}, {"remove", Operation::Remove},
};

struct AttributeName {
    const char *name;
    const char *ns;
};
constexpr AttributeName kOperation = {"operation", kNetconfNamespace};
constexpr AttributeName kInsert = {"insert", kYangNamespace};
constexpr AttributeName kKey = {"key", kYangNamespace};
constexpr AttributeName kValue = {"value", kYangNamespace};
constexpr AttributeName kAttributes[] = {kOperation, kInsert, kKey, kValue};

bool Is(const xmlAttr &attribute, const AttributeName &row)
{
    return attribute.ns != nullptr && View(attribute.name) == row.name &&
           View(attribute.ns->href) == row.ns;
}

class AttributeReader {
public:
    AttributeReader(Run &run, Element &element)
        : run_(run), element_(element), text_(run.memory), canonical_(run.memory)
    {
    }

    void Read()
    {
        ReadOperationOf();
        bool isOrdered = element_.plan->Is(PlanNode::kUserOrdered);
        const xmlAttr *insert = Take(kInsert);
        const AttributeName &own = element_.plan->kind == ZR_NODE_LIST ? kKey : kValue;
        const AttributeName &other = element_.plan->kind == ZR_NODE_LIST ? kValue : kKey;
        if (Take(other) != nullptr)
            AddUnknown(other, "has no place here");
        if (!isOrdered) {
            for (const AttributeName &row : {kInsert, own})
                if (Take(row) != nullptr)
                    AddUnknown(row, "is for entries that the user orders");
            return;
        }
        ReadPlace(insert, own);
    }

private:
    const xmlAttr *Take(const AttributeName &row) const
    {
        for (const xmlAttr *at = element_.source->properties; at != nullptr; at = at->next)
            if (Is(*at, row))
                return at;
        return nullptr;
    }
    std::string_view TextOf(const xmlAttr &attribute)
    {
        text_.clear();
        for (const xmlNode *at = attribute.children; at != nullptr; at = at->next)
            text_ += View(at->content);
        return text_;
    }
    Fault FaultOf(const AttributeName &row, uint32_t tag) const
    {
        Fault fault = FaultAt(element_, tag);
        fault.badAttribute = row.name;
        return fault;
    }
    void AddUnknown(const AttributeName &row, const char *why)
    {
        run_.faults.Add(FaultOf(row, ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE),
                        {"attribute \"", row.name, "\" ", why});
    }
    void AddBad(const AttributeName &row, std::string_view value, const char *why)
    {
        run_.faults.Add(FaultOf(row, ZR_ERROR_TAG_BAD_ATTRIBUTE),
                        {"\"", value, "\" is no value of attribute \"", row.name, "\": ", why});
    }

    void ReadOperationOf()
    {
        const xmlAttr *attribute = Take(kOperation);
        if (attribute == nullptr)
            return;
        std::string_view name = TextOf(*attribute);
        Operation inherited = element_.operation;
        if (name == "none" || !ReadOperation(name, element_.operation)) {
            AddBad(kOperation, name, "it is no operation");
        } else if (element_.plan->Is(PlanNode::kKey) && element_.IsDeleted() &&
                   inherited != element_.operation) {
            element_.operation = inherited;
            AddBad(kOperation, name, "a key goes with its entry alone");
        }
    }

    // Where an entry is put among the others.
    void ReadPlace(const xmlAttr *insert, const AttributeName &anchor)
    {
        std::string_view place = insert == nullptr ? std::string_view() : TextOf(*insert);
        bool isBeside = place == "before" || place == "after";
        if (insert != nullptr && !isBeside && place != "first" && place != "last") {
            AddBad(kInsert, place, "it is none of first, last, before and after");
            return;
        }
        if (insert != nullptr && element_.IsDeleted())
            AddBad(kInsert, place, "what is deleted is put nowhere");
        const xmlAttr *beside = Take(anchor);
        if (!isBeside && beside != nullptr)
            AddUnknown(anchor, "is for an entry before or after another one");
        if (!isBeside || beside != nullptr) {
            if (isBeside)
                ReadAnchor(anchor, *beside);
            return;
        }
        run_.faults.Add(FaultOf(anchor, ZR_ERROR_TAG_MISSING_ATTRIBUTE),
                        {"attribute \"", anchor.name, "\" is missing, which names the entry ",
                         place, " which this one stands"});
    }
    void ReadAnchor(const AttributeName &row, const xmlAttr &attribute)
    {
        std::string_view text = TextOf(attribute);
        const PlanNode &plan = *element_.plan;
        bool isList = plan.kind == ZR_NODE_LIST;
        std::span<std::string_view> values = NewValues(isList ? plan.keys.size() : 1);
        const char *fault = isList ? ReadKeys(text, values) : ReadFor(plan, text, values[0]);
        if (fault != nullptr)
            AddBad(row, text, fault);
        else
            run_.anchors.push_back({&element_, values, row.name});
    }
    std::span<std::string_view> NewValues(size_t count)
    {
        return {run_.arena.NewArray<std::string_view>(count), count};
    }
    const char *ReadFor(const PlanNode &leaf, std::string_view text, std::string_view &value)
    {
        const char *fault =
            ReadValue({run_.plan, leaf, element_.source}, *leaf.type, text, canonical_).fault;
        value = run_.arena.Copy(canonical_);
        return fault;
    }

    // "[p:type='fruit'][p:name='apple']": each key once, in any order.
    const char *ReadKeys(std::string_view text, std::span<std::string_view> values)
    {
        std::span<const PlanNode *const> keys = element_.plan->keys;
        constexpr const char *kMalformed = "it is no list of keys";
        std::pmr::vector<const PlanNode *> named(run_.memory);
        XPathTokens tokens(text);
        auto take = [&](XPathKind kind) {
            XPathToken token = tokens.at();
            if (token.kind != kind)
                return std::optional<std::string_view>();
            tokens.Advance();
            return std::optional(token.text);
        };
        while (tokens.at().kind != XPathKind::End) {
            if (!take(XPathKind::OpenBracket))
                return kMalformed;
            auto name = take(XPathKind::Name);
            auto equals = take(XPathKind::Operator);
            auto value = take(XPathKind::Literal);
            if (!name || equals != "=" || !value || !take(XPathKind::CloseBracket))
                return kMalformed;
            const PlanNode *key = FindKey(*name);
            if (key == nullptr || std::find(named.begin(), named.end(), key) != named.end())
                return "it names what is no key, or one twice";
            auto place =
                static_cast<size_t>(std::find(keys.begin(), keys.end(), key) - keys.begin());
            if (const char *fault =
                    ReadFor(*key, value->substr(1, value->size() - 2), values[place]))
                return fault;
            named.push_back(key);
        }
        return named.size() == keys.size() ? nullptr : "a key is missing";
    }
    const PlanNode *FindKey(std::string_view qualified) const
    {
        const PlanNode &list = *element_.plan;
        QName name = SplitName(qualified);
        if (name.prefix.empty())
            return nullptr;
        const PlanModule *module = FindPrefix({run_.plan, list, element_.source}, name.prefix);
        const PlanNode *child = run_.plan.FindChild(list, module, name.name);
        return child != nullptr && child->Is(PlanNode::kKey) ? child : nullptr;
    }

    Run &run_;
    Element &element_;
    std::pmr::string text_, canonical_;
};

} // namespace

bool IsEditAttribute(const xmlAttr &attribute)
{
    return std::any_of(std::begin(kAttributes), std::end(kAttributes),
                       [&](const AttributeName &row) { return Is(attribute, row); });
}

bool ReadOperation(std::string_view name, Operation &out)
{
    for (const OperationName &row : kOperations)
        if (row.name == name) {
            out = row.operation;
            return true;
        }
    return false;
}

void ReadEditAttributes(Run &run, Element &element)
{
    AttributeReader(run, element).Read();
}

} // namespace zr::data
