// SPDX-License-Identifier: Apache-2.0
#include "generated_modules.h"

#include <algorithm>
#include <iterator>

namespace {

// Words of which the names of published modules are made.
constexpr const char *kWords[] = {
    "access",   "address",   "admin",     "alarm",      "area",     "auth",        "bandwidth",
    "bfd",      "bgp",       "bridge",    "cache",      "cell",     "channel",     "class",
    "client",   "clock",     "config",    "counter",    "delay",    "destination", "device",
    "discard",  "domain",    "dscp",      "egress",     "enable",   "entry",       "ethernet",
    "event",    "filter",    "flow",      "forwarding", "group",    "hello",       "host",
    "identity", "ingress",   "instance",  "interface",  "interval", "ipv4",        "ipv6",
    "isis",     "keepalive", "label",     "lag",        "lease",    "level",       "limit",
    "link",     "lsp",       "mac",       "mask",       "metric",   "mode",        "mpls",
    "mtu",      "multicast", "neighbor",  "network",    "next-hop", "node",        "ospf",
    "packet",   "path",      "peer",      "policy",     "port",     "prefix",      "priority",
    "profile",  "protocol",  "qos",       "queue",      "radius",   "range",       "rate",
    "route",    "router",    "rule",      "schedule",   "security", "server",      "service",
    "session",  "source",    "state",     "statistics", "status",   "subnet",      "syslog",
    "table",    "tag",       "threshold", "timeout",    "timer",    "topology",    "traffic",
    "tunnel",   "unicast",   "user",      "vlan",       "vpn",      "vrf",
};

class Generator {
public:
    std::vector<bench::GeneratedModule> Run(uint32_t count)
    {
        for (uint32_t i = 0; i < count; ++i)
            Module(i);
        return std::move(modules_);
    }

    bench::GeneratedModule RunLarge(uint32_t leafs)
    {
        constexpr uint32_t kLeafsOfOne = 100;
        own_ = "m";
        Head("large-module");
        Identities();
        Typedefs();
        for (uint32_t i = 0; i < leafs; i += kLeafsOfOne) {
            std::string name = Name() + "-" + std::to_string(i);
            Open("container name=\"" + name + "\"");
            for (uint32_t leaf = i; leaf < std::min(leafs, i + kLeafsOfOne); ++leaf)
                Leaf(Name() + "-" + std::to_string(leaf));
            Close("container");
            paths_.push_back("/large-module:" + name);
        }
        Close("module");
        return {"large-module", std::move(text_), std::move(paths_)};
    }

private:
    uint32_t Random(uint32_t below)
    {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>(state_ >> 33) % below;
    }

    std::string Word() { return kWords[Random(std::size(kWords))]; }
    // Two words are often met again, three seldom.
    std::string Name() { return Word() + "-" + Word() + (Random(2) == 0 ? "-" + Word() : ""); }
    std::string Sentence(uint32_t words)
    {
        std::string text = "The";
        for (uint32_t i = 0; i < words; ++i)
            text += (i % 9 == 8 ? "\n       " : " ") + Word();
        return text + ".";
    }

    void Open(const std::string &tag) { text_ += "<" + tag + ">\n"; }
    void Close(const std::string &name) { text_ += "</" + name + ">\n"; }
    void Element(const std::string &tag) { text_ += "<" + tag + "/>\n"; }
    void Text(const std::string &element, uint32_t words)
    {
        text_ += "<" + element + "><text>" + Sentence(words) + "</text></" + element + ">\n";
    }

    void Type()
    {
        static constexpr const char *kTypes[] = {"string", "boolean", "uint32", "uint8",
                                                 "uint64", "int32",   "empty",  "string"};
        uint32_t kind = Random(12);
        if (kind < std::size(kTypes)) {
            Element(std::string("type name=\"") + kTypes[kind] + "\"");
        } else if (kind == 8) {
            Element("type name=\"" + own_ + ":" + typedefs_[Random(4)] + "\"");
        } else if (kind == 9) {
            Open("type name=\"identityref\"");
            Element("base name=\"" + own_ + ":" + base_ + "\"");
            Close("type");
        } else if (kind == 10) {
            Open("type name=\"uint16\"");
            Element("range value=\"1.." + std::to_string(1 + Random(4000)) + "\"");
            Close("type");
        } else {
            Enumeration(4);
        }
    }

    void Enumeration(uint32_t names)
    {
        Open("type name=\"enumeration\"");
        for (uint32_t i = 0; i < names; ++i) {
            Open("enum name=\"" + Name() + "-" + std::to_string(i) + "\"");
            Text("description", 6);
            Close("enum");
        }
        Close("type");
    }

    void Leaf(const std::string &name)
    {
        bool isList = Random(18) == 0;
        std::string kind = isList ? "leaf-list" : "leaf";
        Open(kind + " name=\"" + name + "\"");
        if (Random(6) == 0)
            Element("if-feature name=\"" + own_ + ":" + feature_ + "\"");
        Type();
        if (!isList && Random(5) == 0)
            Element("mandatory value=\"true\"");
        Text("description", 12);
        if (Random(3) == 0)
            Text("reference", 3);
        Close(kind);
    }

    // Containers and lists with leafs, each name once in its parent.
    void Nodes(uint32_t depth, uint32_t count, const std::string &path)
    {
        for (uint32_t i = 0; i < count; ++i) {
            std::string name = Name() + "-" + std::to_string(i);
            bool isList = Random(4) == 0;
            std::string kind = isList ? "list" : "container";
            Open(kind + " name=\"" + name + "\"");
            if (isList) {
                Element("key value=\"name\"");
                Open("leaf name=\"name\"");
                Element("type name=\"string\"");
                Close("leaf");
            }
            Text("description", 10);
            std::string inner = path + (path.ends_with(':') ? "" : "/") + name;
            paths_.push_back(inner);
            if (Random(12) == 0)
                Choice();
            for (uint32_t leaf = 0; leaf < 3; ++leaf)
                Leaf(Name() + "-" + std::to_string(leaf));
            if (depth > 0)
                Nodes(depth - 1, 1 + Random(2), inner);
            Close(kind);
        }
    }

    void Choice()
    {
        Open("choice name=\"" + Name() + "-choice\"");
        for (uint32_t i = 0; i < 3; ++i) {
            Open("case name=\"" + Name() + "-case-" + std::to_string(i) + "\"");
            Leaf(Name() + "-of-case-" + std::to_string(i));
            Close("case");
        }
        Close("choice");
    }

    void Identities()
    {
        base_ = Name() + "-base";
        Element("identity name=\"" + base_ + "\"");
        for (uint32_t i = 0; i < 12; ++i) {
            Open("identity name=\"" + Name() + "-" + std::to_string(i) + "\"");
            bool isForeign = imported_ != kNone && i % 4 == 0;
            Element("base name=\"" + (isForeign ? "p0:" + bases_[imported_] : own_ + ":" + base_) +
                    "\"");
            Text("description", 8);
            Close("identity");
        }
        bases_.push_back(base_);
    }

    void Typedefs()
    {
        for (uint32_t i = 0; i < 4; ++i) {
            typedefs_[i] = Name() + "-type-" + std::to_string(i);
            Open("typedef name=\"" + typedefs_[i] + "\"");
            if (i == 0)
                Enumeration(8);
            else
                Element("type name=\"string\"");
            Text("description", 10);
            Close("typedef");
        }
    }

    void Operation(const std::string &kind, bool hasInput)
    {
        Open(kind + " name=\"" + Name() + "-" + kind + "\"");
        Text("description", 10);
        if (hasInput)
            Open("input");
        for (uint32_t i = 0; i < 4; ++i)
            Leaf(Name() + "-" + std::to_string(i));
        if (hasInput)
            Close("input");
        Close(kind);
    }

    // An augment of one of the imported module's nodes.
    void Augment(const std::string &name)
    {
        const std::vector<std::string> &paths = modules_[imported_].paths;
        std::string path = paths[Random(static_cast<uint32_t>(paths.size()))], target;
        for (char c : path.substr(path.find(':') + 1))
            target += c == '/' ? std::string("/p0:") : std::string(1, c);
        Open("augment target-node=\"/p0:" + target + "\"");
        for (uint32_t i = 0; i < 3; ++i)
            Leaf(name + "-" + Word() + "-" + std::to_string(i));
        Close("augment");
    }

    void Head(const std::string &name)
    {
        Open("module name=\"" + name + "\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\"");
        Element("namespace uri=\"urn:example:yang:" + name + "\"");
        Element("prefix value=\"" + own_ + "\"");
        if (imported_ != kNone) {
            Open("import module=\"" + modules_[imported_].name + "\"");
            Element("prefix value=\"p0\"");
            Close("import");
        }
        for (const char *text : {"organization", "contact", "description"})
            Text(text, 30);
        Element("revision date=\"2026-01-31\"");
        feature_ = Name() + "-feature";
        Element("feature name=\"" + feature_ + "\"");
    }

    void Module(uint32_t number)
    {
        std::string name = Name() + "-" + std::to_string(number);
        own_ = "m" + std::to_string(number);
        text_.clear();
        paths_.clear();
        imported_ = number > 0 && Random(4) != 0 ? Random(number) : kNone;
        Head(name);
        Identities();
        Typedefs();
        Nodes(2, 3, "/" + name + ":");
        Operation("rpc", true);
        Operation("notification", false);
        if (imported_ != kNone)
            Augment(name);
        Close("module");
        modules_.push_back({name, std::move(text_), std::move(paths_)});
    }

    static constexpr uint32_t kNone = UINT32_MAX;

    uint64_t state_ = 7950;
    std::vector<bench::GeneratedModule> modules_;
    std::vector<std::string> bases_; // of the modules' identities
    std::string text_, own_, base_, feature_, typedefs_[4];
    std::vector<std::string> paths_;
    uint32_t imported_ = kNone; // the module that is imported as p0
};

} // namespace

std::vector<bench::GeneratedModule> bench::GenerateModules(uint32_t count)
{
    return Generator().Run(count);
}

std::string bench::GenerateAugments(const std::vector<GeneratedModule> &modules)
{
    std::string imports, augments;
    for (size_t i = 0; i < modules.size(); ++i) {
        std::string prefix = "p" + std::to_string(i);
        imports += "<import module=\"" + modules[i].name + "\"><prefix value=\"" + prefix +
                   "\"/></import>\n";
        augments += "<augment target-node=\"/" + prefix + ":" +
                    modules[i].paths.front().substr(modules[i].name.size() + 2) +
                    "\"><leaf name=\"added\"><type name=\"string\"/></leaf></augment>\n";
    }
    return "<module name=\"augments\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\">\n"
           "<namespace uri=\"urn:example:yang:augments\"/><prefix value=\"a\"/>\n" +
           imports + augments + "</module>\n";
}

bench::GeneratedModule bench::GenerateLargeModule(uint32_t leafs)
{
    return Generator().RunLarge(leafs);
}

size_t bench::BytesOf(const std::vector<GeneratedModule> &modules)
{
    size_t bytes = 0;
    for (const GeneratedModule &module : modules)
        bytes += module.text.size();
    return bytes;
}
