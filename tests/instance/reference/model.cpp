// SPDX-License-Identifier: Apache-2.0
#include "reference/model.h"

#include <algorithm>
#include <functional>

namespace datatest::reference {

namespace {

constexpr const char *kWords[] = {"red", "green", "blue"};

class SchemaMaker {
public:
    explicit SchemaMaker(Chance &chance) : chance_(chance) {}

    void Fill(Node &parent, uint32_t depth)
    {
        for (uint32_t count = 2 + chance_.Of(3); count > 0; --count)
            parent.children.push_back(Make(parent, depth));
    }

private:
    std::unique_ptr<Node> New(Kind kind)
    {
        auto node = std::make_unique<Node>();
        node->kind = kind;
        node->name = "n" + std::to_string(++names_);
        return node;
    }

    std::unique_ptr<Node> Make(const Node &parent, uint32_t depth)
    {
        constexpr Kind kKinds[] = {Kind::kLeaf, Kind::kLeaf,      Kind::kLeafList, Kind::kChoice,
                                   Kind::kList, Kind::kContainer, Kind::kPresence};
        Kind kind = kKinds[chance_.Of(depth < 3 ? 7 : 3)];
        std::unique_ptr<Node> node = New(kind);
        if (node->IsLeaf())
            MakeLeaf(*node, parent);
        else if (kind == Kind::kChoice)
            MakeChoice(*node, depth);
        else if (kind == Kind::kList)
            MakeList(*node, depth);
        else
            Fill(*node, depth + 1);
        if (node->HasEntries())
            MakeBounds(*node);
        if (kind != Kind::kChoice && kind != Kind::kContainer) {
            node->when = ConditionOn(parent);
            node->must = ConditionOn(parent);
        }
        return node;
    }

    void MakeType(Node &node)
    {
        if (chance_.In(2)) {
            node.words.assign(std::begin(kWords), std::end(kWords));
        } else {
            node.low = -static_cast<int>(chance_.Of(3));
            node.high = 4 + static_cast<int>(chance_.Of(6));
        }
    }
    // A reference into a list, whose key is an enumeration like the leaf that chooses the entry.
    bool MakeChosen(Node &node, const Node &parent)
    {
        const Node *list = nullptr;
        const Node *chooser = nullptr;
        for (const auto &sibling : parent.children) {
            if (sibling->kind == Kind::kList && !sibling->children[0]->words.empty())
                list = sibling.get();
            if (sibling->kind == Kind::kLeaf && !sibling->words.empty())
                chooser = sibling.get();
        }
        if (list == nullptr || chooser == nullptr)
            return false;
        std::vector<const Node *> targets;
        for (const auto &child : list->children)
            if (child->IsLeaf() && child->reference.empty())
                targets.push_back(child.get());
        node.reference = targets[chance_.Of(static_cast<uint32_t>(targets.size()))]->name;
        node.list = list->name;
        node.key = list->children[0]->name;
        node.chooser = chooser->name;
        return true;
    }
    void MakeLeaf(Node &node, const Node &parent)
    {
        if (MakeChosen(node, parent))
            return;
        const Node *target = nullptr;
        for (const auto &sibling : parent.children)
            if (sibling->kind == Kind::kLeafList && chance_.In(2))
                target = sibling.get();
        if (target != nullptr)
            node.reference = target->name;
        else
            MakeType(node);
        if (node.kind == Kind::kLeafList || target != nullptr)
            return;
        if (chance_.In(3))
            node.mandatory = true;
        else if (chance_.In(2))
            node.defaultValue = node.words.empty() ? std::to_string(node.high) : node.words[0];
    }
    void MakeChoice(Node &node, uint32_t depth)
    {
        for (uint32_t count = 1 + chance_.Of(2); count > 0; --count) {
            std::unique_ptr<Node> one = New(Kind::kCase);
            for (uint32_t inner = 1 + chance_.Of(2); inner > 0; --inner) {
                bool isContainer = depth < 2 && chance_.In(3);
                std::unique_ptr<Node> child = New(isContainer ? Kind::kPresence : Kind::kLeaf);
                if (isContainer)
                    Fill(*child, depth + 1);
                else
                    MakeLeaf(*child, *one);
                one->children.push_back(std::move(child));
            }
            node.children.push_back(std::move(one));
        }
        const Node &first = *node.children.front();
        bool asks = std::any_of(first.children.begin(), first.children.end(),
                                [](const auto &child) { return child->mandatory; });
        if (chance_.In(3))
            node.mandatory = true;
        else if (!asks && chance_.In(2))
            node.defaultCase = first.name;
    }
    void MakeList(Node &node, uint32_t depth)
    {
        node.keys = 1 + chance_.Of(2);
        for (size_t i = 0; i < node.keys; ++i) {
            node.children.push_back(New(Kind::kLeaf));
            MakeType(*node.children.back());
        }
        Fill(node, depth + 1);
        for (size_t i = node.keys; i < node.children.size(); ++i)
            if (node.children[i]->kind == Kind::kLeaf && chance_.In(2))
                node.unique = node.children[i]->name;
    }
    void MakeBounds(Node &node)
    {
        node.minimum = chance_.In(3) ? 1 : 0;
        node.maximum = chance_.In(3) ? 2 : 0;
    }

    // A condition on an enumeration beside the node.
    Condition ConditionOn(const Node &parent)
    {
        if (parent.kind == Kind::kCase || !chance_.In(4))
            return {};
        for (const auto &sibling : parent.children)
            if (sibling->kind == Kind::kLeaf && !sibling->words.empty() && chance_.In(2))
                return {sibling->name, !chance_.In(3), kWords[chance_.Of(2)]};
        return {};
    }

    Chance &chance_;
    uint32_t names_ = 0;
};

std::string TextOf(const Condition &condition)
{
    return "\"../" + condition.sibling + (condition.equal ? " = '" : " != '") + condition.value +
           "'\";";
}

std::string TypeOf(const Node &node)
{
    if (!node.list.empty())
        return "type leafref { path \"../" + node.list + "[" + node.key + " = current()/../" +
               node.chooser + "]/" + node.reference + "\"; }";
    if (!node.reference.empty())
        return "type leafref { path \"../" + node.reference + "\"; }";
    if (node.words.empty())
        return "type int8 { range \"" + std::to_string(node.low) + ".." +
               std::to_string(node.high) + "\"; }";
    std::string text = "type enumeration {";
    for (const std::string &word : node.words)
        text += " enum " + word + ";";
    return text + " }";
}

std::string YangOfNode(const Node &node)
{
    static constexpr const char *kKeywords[] = {"container", "container", "leaf", "leaf-list",
                                                "list",      "choice",    "case"};
    std::string text = std::string(kKeywords[static_cast<int>(node.kind)]) + " " + node.name + " {";
    if (node.kind == Kind::kPresence)
        text += " presence yes;";
    if (node.keys != 0) {
        text += " key \"";
        for (size_t i = 0; i < node.keys; ++i)
            text += (i == 0 ? "" : " ") + node.children[i]->name;
        text += "\";";
    }
    if (!node.unique.empty())
        text += " unique " + node.unique + ";";
    if (node.IsLeaf())
        text += " " + TypeOf(node);
    if (!node.defaultValue.empty())
        text += " default " + node.defaultValue + ";";
    if (!node.defaultCase.empty())
        text += " default " + node.defaultCase + ";";
    if (node.mandatory)
        text += " mandatory true;";
    if (node.minimum != 0)
        text += " min-elements " + std::to_string(node.minimum) + ";";
    if (node.maximum != 0)
        text += " max-elements " + std::to_string(node.maximum) + ";";
    if (!node.when.sibling.empty())
        text += " when " + TextOf(node.when);
    if (!node.must.sibling.empty())
        text += " must " + TextOf(node.must);
    return text + "\n" + YangOf(node) + "}\n";
}

// ---- documents

class DocumentMaker {
public:
    explicit DocumentMaker(Chance &chance) : chance_(chance) {}

    void Fill(Element &parent, const Node &schema)
    {
        for (const auto &child : schema.children)
            Add(parent, schema, *child);
    }

private:
    void Add(Element &parent, const Node &schema, const Node &node)
    {
        if (node.kind == Kind::kChoice) {
            if (node.mandatory || chance_.In(2))
                Fill(parent,
                     *node.children[chance_.Of(static_cast<uint32_t>(node.children.size()))]);
            return;
        }
        if (!node.HasEntries()) {
            if (IsKey(schema, node) || node.mandatory || chance_.In(2))
                AddOne(parent, node);
            return;
        }
        size_t count = node.minimum + chance_.Of(2);
        for (size_t i = 0; i < count; ++i)
            AddOne(parent, node);
    }
    static bool IsKey(const Node &list, const Node &node)
    {
        for (size_t i = 0; i < list.keys; ++i)
            if (list.children[i].get() == &node)
                return true;
        return false;
    }
    void AddOne(Element &parent, const Node &node)
    {
        Element element;
        element.name = node.name;
        if (node.IsLeaf())
            element.value = ValueOf(parent, node);
        else
            Fill(element, node);
        if (node.IsLeaf() && element.value.empty())
            return; // there is nothing to refer to
        parent.children.push_back(std::move(element));
    }
    // Mostly that of the entry which is chosen; now and then of the last one.
    std::string ChosenValue(const Element &parent, const Node &node)
    {
        std::string wanted, value;
        for (const Element &sibling : parent.children)
            if (sibling.name == node.chooser)
                wanted = sibling.value;
        bool isAny = chance_.In(4);
        for (const Element &sibling : parent.children) {
            if (sibling.name != node.list || (!isAny && sibling.children[0].value != wanted))
                continue;
            for (const Element &leaf : sibling.children)
                if (leaf.name == node.reference)
                    value = leaf.value;
        }
        return value;
    }
    std::string ValueOf(const Element &parent, const Node &node)
    {
        if (!node.list.empty())
            return ChosenValue(parent, node);
        if (!node.reference.empty()) {
            for (const Element &sibling : parent.children)
                if (sibling.name == node.reference)
                    return sibling.value;
            return "";
        }
        if (!node.words.empty())
            return node.words[chance_.Of(static_cast<uint32_t>(node.words.size()))];
        auto width = static_cast<uint32_t>(node.high - node.low + 1);
        int number = node.low + static_cast<int>(chance_.Of(width));
        bool isLong = number >= 0 && chance_.In(8); // another form of the same value
        return (isLong ? "+0" : "") + std::to_string(number);
    }

    Chance &chance_;
};

// Every element below the root, with what holds it.
void ForEach(Element &parent, const std::function<void(Element &parent, size_t place)> &visit)
{
    for (size_t i = 0; i < parent.children.size(); ++i) {
        visit(parent, i);
        ForEach(parent.children[i], visit);
    }
}

void MakeMistake(Element &root, Chance &chance)
{
    uint32_t count = 0;
    ForEach(root, [&](Element &, size_t) { ++count; });
    if (count == 0) {
        root.children.push_back({"unknown", "", {}});
        return;
    }
    uint32_t chosen = chance.Of(count), at = 0;
    Element *parent = nullptr;
    size_t place = 0;
    ForEach(root, [&](Element &found, size_t index) {
        if (at++ == chosen) {
            parent = &found;
            place = index;
        }
    });
    std::vector<Element> &children = parent->children;
    auto where = children.begin() + static_cast<std::ptrdiff_t>(place);
    switch (chance.Of(5)) {
    case 0:
        children.erase(where);
        break;
    case 1:
        children.insert(where, Element(*where));
        break;
    case 2:
        where->name = "unknown";
        break;
    case 3:
        if (where->children.empty())
            where->value = "99";
        else
            children.erase(where);
        break;
    default:
        if (where->children.empty())
            where->value = kWords[chance.Of(3)];
        else
            children.insert(where, Element(*where));
    }
}

} // namespace

std::unique_ptr<Node> MakeSchema(Chance &chance)
{
    auto root = std::make_unique<Node>();
    root->kind = Kind::kContainer;
    SchemaMaker(chance).Fill(*root, 0);
    return root;
}

std::string YangOf(const Node &schema)
{
    std::string text;
    for (const auto &child : schema.children)
        text += YangOfNode(*child);
    return text;
}

Element MakeDocument(const Node &schema, Chance &chance, uint32_t mistakes)
{
    Element root;
    DocumentMaker(chance).Fill(root, schema);
    for (; mistakes > 0; --mistakes)
        MakeMistake(root, chance);
    return root;
}

std::string XmlOf(const Element &document)
{
    std::string text;
    for (const Element &child : document.children)
        text += "<" + child.name + ">" + child.value + XmlOf(child) + "</" + child.name + ">";
    return text;
}

} // namespace datatest::reference
