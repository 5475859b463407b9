// SPDX-License-Identifier: Apache-2.0
#include "reference/checker.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace datatest::reference {

namespace {

using Elements = std::vector<const Element *>;

const Element kNothing;

// The data nodes of a node: those of cases stand in place of their choice.
std::vector<const Node *> DataNodesOf(const Node &schema)
{
    std::vector<const Node *> nodes;
    for (const auto &child : schema.children) {
        if (child->kind != Kind::kChoice && child->kind != Kind::kCase) {
            nodes.push_back(child.get());
            continue;
        }
        for (const Node *inner : DataNodesOf(*child))
            nodes.push_back(inner);
    }
    return nodes;
}

const Node *Find(const Node &schema, const std::string &name)
{
    for (const Node *node : DataNodesOf(schema))
        if (node->name == name)
            return node;
    return nullptr;
}

Elements InstancesOf(const Element &parent, const std::string &name)
{
    Elements found;
    for (const Element &child : parent.children)
        if (child.name == name)
            found.push_back(&child);
    return found;
}

// The canonical form of a value, or the value as it is when the type does not take it.
struct Value {
    std::string text;
    bool isValid;
};
Value Read(const Node &parent, const Node &leaf, const std::string &text)
{
    if (!leaf.list.empty()) {
        const Node &list = *Find(parent, leaf.list);
        return Read(list, *Find(list, leaf.reference), text);
    }
    if (!leaf.reference.empty())
        return Read(parent, *Find(parent, leaf.reference), text);
    if (!leaf.words.empty())
        return {text, std::count(leaf.words.begin(), leaf.words.end(), text) != 0};
    char *end = nullptr;
    long number = std::strtol(text.c_str(), &end, 10);
    bool isValid = !text.empty() && *end == '\0' && number >= leaf.low && number <= leaf.high;
    return {isValid ? std::to_string(number) : text, isValid};
}

class Checker {
public:
    std::vector<std::string> faults;

    // Everything in an element, which may be one that is not there: a container without presence.
    void CheckContent(const Node &schema, const Element &element, const std::string &path)
    {
        for (const Element &child : element.children)
            if (Find(schema, child.name) == nullptr)
                faults.push_back("unknown-element " + path + "/" + child.name);
        for (const Node *node : DataNodesOf(schema))
            CheckInstances(schema, *node, element, path);
        for (const auto &child : schema.children)
            if (child->kind == Kind::kChoice)
                CheckChoice(*child, element, path);
    }

private:
    // ---- what is there

    static bool Exists(const Element &parent, const Node &inner)
    {
        for (const Node *node : DataNodesOf(inner))
            if (!InstancesOf(parent, node->name).empty())
                return true;
        return false;
    }
    // The case of a choice that is in use: the first that has an instance, else the default one.
    static const Node *CaseInUse(const Node &choice, const Element &parent)
    {
        for (const auto &one : choice.children)
            if (Exists(parent, *one))
                return one.get();
        for (const auto &one : choice.children)
            if (one->name == choice.defaultCase)
                return one.get();
        return nullptr;
    }
    // Whether a node may be asked for or stand by default: not in a case that is not in use.
    static bool IsInUse(const Node &schema, const Node &node, const Element &parent)
    {
        for (const auto &child : schema.children) {
            if (child->kind != Kind::kChoice || Find(*child, node.name) == nullptr)
                continue;
            const Node *one = CaseInUse(*child, parent);
            return one != nullptr && Find(*one, node.name) != nullptr;
        }
        return true;
    }
    // Values with the default in use.
    static std::vector<std::string> ValuesOf(const Node &schema, const std::string &name,
                                             const Element &parent)
    {
        std::vector<std::string> values;
        const Node &node = *Find(schema, name);
        for (const Element *instance : InstancesOf(parent, name))
            values.push_back(Read(schema, node, instance->value).text);
        if (values.empty() && !node.defaultValue.empty() && IsInUse(schema, node, parent) &&
            IsTrue(node.when, schema, parent))
            values.push_back(node.defaultValue);
        return values;
    }
    // Those of the entries that the chooser names.
    static std::vector<std::string> ChosenValues(const Node &schema, const Node &leaf,
                                                 const Element &parent)
    {
        std::vector<std::string> choosers = ValuesOf(schema, leaf.chooser, parent), values;
        const Node &list = *Find(schema, leaf.list);
        for (const Element *entry : InstancesOf(parent, leaf.list))
            for (const std::string &key : ValuesOf(list, leaf.key, *entry))
                if (std::count(choosers.begin(), choosers.end(), key) != 0)
                    for (const std::string &value : ValuesOf(list, leaf.reference, *entry))
                        values.push_back(value);
        return values;
    }
    static bool IsTrue(const Condition &condition, const Node &schema, const Element &parent)
    {
        if (condition.sibling.empty())
            return true;
        for (const std::string &value : ValuesOf(schema, condition.sibling, parent))
            if ((value == condition.value) == condition.equal)
                return true;
        return false;
    }

    // ---- paths

    static std::string PathOf(const Node &schema, const Node &node, const Element &parent,
                              const Element &instance, const std::string &path)
    {
        std::string text = path + "/" + node.name;
        if (node.kind == Kind::kLeafList)
            return text + "[.='" + Read(schema, node, instance.value).text + "']";
        if (node.kind != Kind::kList)
            return text;
        std::string keys;
        for (size_t i = 0; i < node.keys; ++i) {
            const Node &key = *node.children[i];
            Elements values = InstancesOf(instance, key.name);
            if (values.empty()) { // the entry has no name but its place
                Elements all = InstancesOf(parent, node.name);
                auto place = std::find(all.begin(), all.end(), &instance) - all.begin();
                return text + "[" + std::to_string(place + 1) + "]";
            }
            keys += "[" + key.name + "='" + Read(node, key, values[0]->value).text + "']";
        }
        return text + keys;
    }

    // ---- rules

    void CheckInstances(const Node &schema, const Node &node, const Element &parent,
                        const std::string &path)
    {
        Elements instances = InstancesOf(parent, node.name);
        bool isWanted = IsTrue(node.when, schema, parent);
        for (size_t i = 0; i < instances.size(); ++i) {
            std::string at = PathOf(schema, node, parent, *instances[i], path);
            if (i > 0 && !node.HasEntries())
                faults.push_back("bad-element " + at); // what it holds is not judged
            else
                CheckOne(schema, node, parent, *instances[i], at, isWanted);
        }
        CheckCase(schema, node, parent, instances, path);
        if (node.HasEntries())
            CheckEntries(schema, node, instances, parent, path);
        if (instances.empty())
            CheckAbsence(schema, node, parent, path, isWanted);
    }

    void CheckOne(const Node &schema, const Node &node, const Element &parent,
                  const Element &instance, const std::string &path, bool isWanted)
    {
        if (!isWanted)
            faults.push_back("unknown-element " + path);
        if (!node.IsLeaf() && !instance.value.empty())
            faults.push_back("bad-element " + path);
        Value value = node.IsLeaf() ? Read(schema, node, instance.value) : Value{"", true};
        if (!value.isValid)
            faults.push_back("invalid-value " + path);
        else if (isWanted)
            CheckDemands(schema, node, parent, value.text, path);
        if (!node.IsLeaf())
            CheckContent(node, instance, path);
    }
    // What a node that is wanted and has a value of its type is judged by besides.
    void CheckDemands(const Node &schema, const Node &node, const Element &parent,
                      const std::string &value, const std::string &path)
    {
        if (!IsTrue(node.must, schema, parent))
            faults.push_back("operation-failed[must-violation] " + path);
        if (node.reference.empty())
            return;
        std::vector<std::string> targets = node.list.empty()
                                               ? ValuesOf(schema, node.reference, parent)
                                               : ChosenValues(schema, node, parent);
        if (std::count(targets.begin(), targets.end(), value) == 0)
            faults.push_back("data-missing[instance-required] " + path);
    }

    void CheckAbsence(const Node &schema, const Node &node, const Element &parent,
                      const std::string &path, bool isWanted)
    {
        bool isAsked = IsInUse(schema, node, parent) && isWanted;
        if (isAsked && (node.mandatory || IsKey(schema, node)))
            faults.push_back("missing-element " + path + "/" + node.name);
        if (isAsked && node.kind == Kind::kContainer)
            CheckContent(node, kNothing, path + "/" + node.name);
        // A default in use is a node like any other.
        if (isAsked && !node.defaultValue.empty() && !IsTrue(node.must, schema, parent))
            faults.push_back("operation-failed[must-violation] " + path + "/" + node.name);
        if (isAsked && node.minimum != 0)
            faults.push_back("operation-failed[too-few-elements] " + path + "/" + node.name);
    }
    static bool IsKey(const Node &list, const Node &node)
    {
        for (size_t i = 0; i < list.keys; ++i)
            if (list.children[i].get() == &node)
                return true;
        return false;
    }

    // A node whose case is not the one in use.
    void CheckCase(const Node &schema, const Node &node, const Element &parent,
                   const Elements &instances, const std::string &path)
    {
        if (IsInUse(schema, node, parent))
            return;
        for (const Element *instance : instances)
            faults.push_back("bad-element " + PathOf(schema, node, parent, *instance, path));
    }

    void CheckChoice(const Node &choice, const Element &parent, const std::string &path)
    {
        if (choice.mandatory && CaseInUse(choice, parent) == nullptr)
            faults.push_back("data-missing[missing-choice] " + (path.empty() ? "/" : path));
    }

    void CheckEntries(const Node &schema, const Node &node, const Elements &instances,
                      const Element &parent, const std::string &path)
    {
        if (node.maximum != 0 && instances.size() > node.maximum)
            faults.push_back("operation-failed[too-many-elements] " + path + "/" + node.name);
        std::set<std::vector<std::string>> names;
        std::set<std::string> uniques;
        for (const Element *instance : instances) {
            std::string at = PathOf(schema, node, parent, *instance, path);
            std::vector<std::string> name = NameOf(schema, node, *instance);
            if (!name.empty() && !names.insert(name).second)
                faults.push_back("bad-element " + at);
            if (node.unique.empty())
                continue;
            std::vector<std::string> values = ValuesOf(node, node.unique, *instance);
            if (!values.empty() && !uniques.insert(values[0]).second)
                faults.push_back("operation-failed[data-not-unique] " + at);
        }
    }
    // The keys of an entry, or the value of one of a leaf-list; nothing where one is missing or no
    // value of its type.
    static std::vector<std::string> NameOf(const Node &schema, const Node &node,
                                           const Element &instance)
    {
        if (node.kind == Kind::kLeafList)
            return {Read(schema, node, instance.value).text};
        std::vector<Value> values;
        for (size_t i = 0; i < node.keys; ++i) {
            const Node &key = *node.children[i];
            Elements given = InstancesOf(instance, key.name);
            values.push_back(given.empty() ? Value{"", false} : Read(node, key, given[0]->value));
        }
        std::vector<std::string> name;
        for (const Value &value : values) {
            if (!value.isValid)
                return {};
            name.push_back(value.text);
        }
        return name;
    }
};

} // namespace

std::vector<std::string> FaultsOf(const Node &schema, const Element &document)
{
    Checker checker;
    checker.CheckContent(schema, document, "");
    return checker.faults;
}

} // namespace datatest::reference
