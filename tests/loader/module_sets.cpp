// SPDX-License-Identifier: Apache-2.0
#include "loader/module_sets.h"

#include <set>

#include "support/context.h"

namespace zrtest {

namespace {

enum class Kind { Container, List, Leaf, LeafList, Choice, Case, Rpc, Input, Output };

// A node that augments and deviations can name.
struct Node {
    std::string path; // every step with its module, which is its prefix too
    int module;       // that defines it
    int depth;        // augments between it and its top-level node
    Kind kind;

    Node(std::string itsPath, int itsModule, int itsDepth, Kind itsKind)
        : path(std::move(itsPath)), module(itsModule), depth(itsDepth), kind(itsKind)
    {
    }
    bool hasDefault = false;
    bool hasMust = false;
    bool hasUnits = false;
    bool hasTag = false;
    bool ownMandatory = false;
    bool ownConfig = false;
    bool declared = true;        // false: an input or output that no statement declares
    std::set<std::string> taken; // properties that a deviation has changed
    std::set<int> deviators;
};

// A use of an extension that means nothing to anyone.
constexpr char kTag[] = "<p-e:tag xmlns:p-e=\"urn:e\"/>";

class Maker {
public:
    explicit Maker(uint32_t seed) : random_(seed) {}

    ModuleSet Make(uint32_t count)
    {
        if (count == 0)
            count = 3 + random_.Below(5);
        for (uint32_t i = 0; i < count; ++i) {
            set_.names.push_back("m" + std::to_string(i));
            bodies_.push_back(Own(static_cast<int>(i)));
        }
        for (uint32_t i = 0, wanted = count + random_.Below(2 * count); i < wanted; ++i)
            AddAugment(static_cast<int>(random_.Below(count)));
        for (uint32_t i = 0, wanted = random_.Below(5 * count); i < wanted; ++i)
            AddDeviation(static_cast<int>(random_.Below(count)));
        for (uint32_t i = 0; i < count; ++i)
            set_.texts[set_.names[i]] = ModuleText(set_.names[i], Imports() + bodies_[i]);
        return set_;
    }

private:
    // Every module may refer to every other; imports are not followed.
    std::string Imports() const
    {
        std::string text;
        for (const char *name : {"m0", "m1", "m2", "m3", "m4", "m5", "m6", "e", "ietf-netconf-acm"})
            text += "<import module=\"" + std::string(name) + "\"><prefix value=\"p-" + name +
                    "\"/></import>";
        return text;
    }

    std::string Own(int module)
    {
        std::string text =
            "<feature name=\"f\"/><identity name=\"id\"/>"
            "<typedef name=\"t\"><type name=\"uint8\"><range value=\"1..9\"/></type></typedef>";
        text += Element(module, "", Kind::Container, 0, 0);
        if (random_.Chance(60))
            text += Rpc(module);
        return text;
    }

    std::string Rpc(int module)
    {
        std::string name = NewName("r");
        std::string path = "/" + Step(module, name);
        nodes_.emplace_back(path, module, 0, Kind::Rpc);
        std::string text = "<rpc name=\"" + name + "\">";
        text += InputOrOutput(module, path, Kind::Input);
        text += InputOrOutput(module, path, Kind::Output);
        return text + "</rpc>";
    }

    std::string InputOrOutput(int module, const std::string &rpc, Kind kind)
    {
        std::string name = kind == Kind::Input ? "input" : "output";
        Node node(rpc + "/" + Step(module, name), module, 0, kind);
        node.declared = random_.Chance(50);
        nodes_.push_back(node);
        if (!node.declared)
            return "";
        return "<" + name + ">" + Element(module, node.path, Kind::Leaf, 0, 0) + "</" + name + ">";
    }

    std::string Step(int module, const std::string &name) const
    {
        return "p-" + set_.names[static_cast<size_t>(module)] + ":" + name;
    }

    std::string NewName(const char *stem) { return stem + std::to_string(counter_++); }

    Kind RandomChild()
    {
        const Kind kinds[] = {Kind::Container, Kind::Container, Kind::List,  Kind::Leaf,
                              Kind::Leaf,      Kind::LeafList,  Kind::Choice};
        return kinds[random_.Below(7)];
    }

    // A statement below `parent`, noted with all that is in it.
    std::string Element(int module, const std::string &parent, Kind kind, int level, int depth)
    {
        static const std::map<Kind, std::string> kKeywords = {
            {Kind::Container, "container"}, {Kind::List, "list"},     {Kind::Leaf, "leaf"},
            {Kind::LeafList, "leaf-list"},  {Kind::Choice, "choice"}, {Kind::Case, "case"}};
        const std::string &keyword = kKeywords.at(kind);
        std::string name = NewName(keyword.substr(0, 2).c_str());
        Node node(parent + "/" + Step(module, name), module, depth, kind);
        std::string text = "<" + keyword + " name=\"" + name + "\">" + Properties(&node);
        std::string path = node.path;
        nodes_.push_back(node);
        text += Children(module, path, kind, level, depth);
        return text + "</" + keyword + ">";
    }

    std::string Properties(Node *node)
    {
        std::string text;
        bool isLeaf = node->kind == Kind::Leaf || node->kind == Kind::LeafList;
        if (isLeaf)
            text += random_.Chance(50) ? "<type name=\"t\"/>" : "<type name=\"string\"/>";
        if (isLeaf && random_.Chance(40)) {
            text += "<default value=\"1\"/>";
            node->hasDefault = true;
        }
        if (random_.Chance(20))
            text += "<if-feature name=\"f\"/>";
        if (random_.Chance(20))
            text += "<when condition=\"../w\"/>";
        if (node->kind != Kind::Case && node->kind != Kind::Choice && random_.Chance(20)) {
            text += "<must condition=\"x\"/>";
            node->hasMust = true;
        }
        if (isLeaf && random_.Chance(20)) {
            text += "<units name=\"u\"/>";
            node->hasUnits = true;
        }
        if (node->kind == Kind::Leaf && random_.Chance(20)) {
            text += "<mandatory value=\"true\"/>";
            node->ownMandatory = true;
        }
        if (random_.Chance(10)) {
            text += kTag;
            node->hasTag = true;
        }
        if (random_.Chance(10))
            text += Deny();
        if (node->kind != Kind::Case && random_.Chance(20)) {
            text += random_.Chance(50) ? "<config value=\"false\"/>" : "<config value=\"true\"/>";
            node->ownConfig = true;
        }
        return text;
    }

    std::string Children(int module, const std::string &path, Kind kind, int level, int depth)
    {
        if (kind == Kind::Leaf || kind == Kind::LeafList)
            return "";
        std::string text;
        uint32_t count = level == 0 ? 2 + random_.Below(3) : random_.Below(3);
        if (level > 2)
            count = 0;
        for (uint32_t i = 0; i < count; ++i) {
            Kind child = kind == Kind::Choice ? Kind::Case : RandomChild();
            text += Element(module, path, child, level + 1, depth);
        }
        return text;
    }

    static bool CanBeAugmented(Kind kind)
    {
        return kind != Kind::Leaf && kind != Kind::LeafList && kind != Kind::Rpc;
    }

    size_t PickNode(bool forAugment)
    {
        for (;;) {
            size_t i = random_.Below(static_cast<uint32_t>(nodes_.size()));
            if (!forAugment || CanBeAugmented(nodes_[i].kind))
                return i;
        }
    }

    void AddAugment(int module)
    {
        Node target = nodes_[PickNode(true)];
        std::string text = "<augment target-node=\"" + target.path + "\">";
        if (random_.Chance(20))
            text += "<when condition=\"w = 1\"/>";
        if (random_.Chance(20))
            text += "<if-feature name=\"f\"/>";
        for (uint32_t i = 0, wanted = 1 + random_.Below(3); i < wanted; ++i) {
            Kind kind = target.kind == Kind::Choice ? Kind::Case : RandomChild();
            text += Element(module, target.path, kind, 1, target.depth + 1);
        }
        // Augments of one module stand in any order.
        std::string &body = bodies_[static_cast<size_t>(module)];
        text += "</augment>";
        body = random_.Chance(50) ? body + text : text + body;
        set_.augmentsOnAugments += target.depth > 0;
        set_.madeInputs += !target.declared;
    }

    void AddDeviation(int module)
    {
        // Often a node that is deviated already.
        size_t at = deviated_.empty() || random_.Chance(60)
                        ? PickNode(false)
                        : deviated_[random_.Below(static_cast<uint32_t>(deviated_.size()))];
        std::string property;
        std::string deviate = Deviate(&nodes_[at], &property);
        if (deviate.empty() || !nodes_[at].taken.insert(property).second)
            return;
        Node &node = nodes_[at];
        node.deviators.insert(module);
        deviated_.push_back(at);
        bodies_[static_cast<size_t>(module)] +=
            "<deviation target-node=\"" + node.path + "\">" + deviate + "</deviation>";
        set_.deviationsOnAugmented += node.depth > 0;
        set_.sharedNodes += node.deviators.size() == 2;
        set_.notSupported += property == "node";
        set_.changedConfig += property == "config";
        set_.deniedByDeviation += property.starts_with("deny");
    }

    // One deviate of a property that fits the node, or nothing.
    std::string Deviate(Node *node, std::string *property)
    {
        bool isLeaf = node->kind == Kind::Leaf || node->kind == Kind::LeafList;
        bool takesMust = node->kind != Kind::Case && node->kind != Kind::Choice;
        switch (random_.Below(11)) {
        case 0:
            *property = "node";
            return random_.Chance(50) ? "<deviate value=\"not-supported\"/>" : "";
        case 1:
            *property = "default";
            return isLeaf ? DeviateDefault(*node) : "";
        case 2:
            *property = NewName("must"); // any number of them
            return takesMust ? In("add", "<must condition=\"" + *property + "\"/>") : "";
        case 3:
            *property = "own must";
            return node->hasMust ? In("delete", "<must condition=\"x\"/>") : "";
        case 4:
        case 5:
            *property = "config";
            return In(node->ownConfig || random_.Chance(30) ? "replace" : "add",
                      random_.Chance(50) ? "<config value=\"false\"/>"
                                         : "<config value=\"true\"/>");
        case 6:
            *property = "type";
            return isLeaf ? In("replace", "<type name=\"t\"/>") : "";
        case 7:
            *property = "units";
            return isLeaf ? DeviateUnits(*node) : "";
        case 8:
            *property = "mandatory";
            return node->kind != Kind::Leaf
                       ? ""
                       : In(node->ownMandatory ? "replace" : "add", "<mandatory value=\"false\"/>");
        case 9:
            *property = "tag";
            return In(node->hasTag ? "delete" : "add", kTag);
        default:
            return DeviateDeny(property);
        }
    }

    static std::string In(const std::string &kind, const std::string &property)
    {
        return "<deviate value=\"" + kind + "\">" + property + "</deviate>";
    }

    // One of the two extensions of access control.
    std::string Deny() { return random_.Chance(50) ? Deny("all") : Deny("write"); }
    static std::string Deny(const std::string &what)
    {
        return "<p-ietf-netconf-acm:default-deny-" + what +
               " xmlns:p-ietf-netconf-acm=\"urn:acm\"/>";
    }

    std::string DeviateDeny(std::string *property)
    {
        std::string what = random_.Chance(50) ? "all" : "write";
        *property = "deny " + what;
        return In("add", Deny(what));
    }

    std::string DeviateUnits(const Node &node)
    {
        if (!node.hasUnits)
            return In("add", "<units name=\"v\"/>");
        return random_.Chance(50) ? In("replace", "<units name=\"v\"/>")
                                  : In("delete", "<units name=\"u\"/>");
    }

    std::string DeviateDefault(const Node &node)
    {
        if (!node.hasDefault)
            return "<deviate value=\"add\"><default value=\"3\"/></deviate>";
        return random_.Chance(50) ? "<deviate value=\"replace\"><default value=\"2\"/></deviate>"
                                  : "<deviate value=\"delete\"><default value=\"1\"/></deviate>";
    }

    Random random_;
    ModuleSet set_;
    std::vector<std::string> bodies_;
    std::vector<Node> nodes_;
    std::vector<size_t> deviated_;
    int counter_ = 0;
};

} // namespace

ModuleSet MakeModuleSet(uint32_t seed, uint32_t count)
{
    return Maker(seed).Make(count);
}

} // namespace zrtest
