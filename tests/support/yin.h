// SPDX-License-Identifier: Apache-2.0
// YIN from small pieces, for tests that put a module together; and the requests for its data.
#pragma once

#include <initializer_list>
#include <string>

namespace zrtest {

namespace yin {

// <KEYWORD NAME="ARGUMENT">INSIDE</KEYWORD>: every function below is one of these.
inline std::string Statement(const std::string &keyword, const std::string &name,
                             const std::string &argument, const std::string &inside = "")
{
    std::string start = "<" + keyword + " " + name + "=\"" + argument + "\"";
    return inside.empty() ? start + "/>" : start + ">" + inside + "</" + keyword + ">";
}

// ---- modules

inline std::string Import(const std::string &module, const std::string &prefix)
{
    return Statement("import", "module", module, Statement("prefix", "value", prefix));
}
inline std::string Import(const std::string &module)
{
    return Import(module, module);
}
inline std::string Include(const std::string &submodule)
{
    return Statement("include", "module", submodule);
}
// A submodule of the module "m" (namespace urn:m), which it calls "p".
inline std::string SubmoduleText(const std::string &name, const std::string &body)
{
    return "<submodule name=\"" + name +
           "\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" xmlns:p=\"urn:m\">" +
           Statement("belongs-to", "module", "m", Statement("prefix", "value", "p")) + body +
           "</submodule>";
}

// ---- types

inline std::string Type(const std::string &name, const std::string &restrictions = "")
{
    return Statement("type", "name", name, restrictions);
}
inline std::string Range(const std::string &value, const std::string &inside = "")
{
    return Statement("range", "value", value, inside);
}
inline std::string Length(const std::string &value, const std::string &inside = "")
{
    return Statement("length", "value", value, inside);
}
inline std::string Pattern(const std::string &value, const std::string &inside = "")
{
    return Statement("pattern", "value", value, inside);
}
// What a range, length, pattern or must says of a violation.
inline std::string ErrorMessage(const std::string &text)
{
    return "<error-message><value>" + text + "</value></error-message>";
}
inline std::string ErrorAppTag(const std::string &tag)
{
    return Statement("error-app-tag", "value", tag);
}
inline std::string Leafref(const std::string &path)
{
    return Type("leafref", Statement("path", "value", path));
}
inline std::string Identityref(const std::string &base)
{
    return Type("identityref", Statement("base", "name", base));
}
inline std::string Identity(const std::string &name, std::initializer_list<std::string> bases = {})
{
    std::string inside;
    for (const std::string &base : bases)
        inside += Statement("base", "name", base);
    return Statement("identity", "name", name, inside);
}
// `type` is the name of a type or a whole type statement, here and in leafs.
inline std::string TypeText(const std::string &type)
{
    return type[0] == '<' ? type : Type(type);
}
inline std::string TypeDef(const std::string &name, const std::string &type,
                           const std::string &inside = "")
{
    return Statement("typedef", "name", name, TypeText(type) + inside);
}

// ---- nodes

inline std::string Leaf(const std::string &name, const std::string &type = "string",
                        const std::string &inside = "")
{
    return Statement("leaf", "name", name, TypeText(type) + inside);
}
inline std::string LeafList(const std::string &name, const std::string &type = "string",
                            const std::string &inside = "")
{
    return Statement("leaf-list", "name", name, TypeText(type) + inside);
}
inline std::string Container(const std::string &name, const std::string &inside = "")
{
    return Statement("container", "name", name, inside);
}
inline std::string List(const std::string &name, const std::string &keys, const std::string &inside)
{
    return Statement("list", "name", name, Statement("key", "value", keys) + inside);
}
inline std::string Choice(const std::string &name, const std::string &inside)
{
    return Statement("choice", "name", name, inside);
}
inline std::string Case(const std::string &name, const std::string &inside)
{
    return Statement("case", "name", name, inside);
}
inline std::string Input(const std::string &inside)
{
    return "<input>" + inside + "</input>";
}
inline std::string Output(const std::string &inside)
{
    return "<output>" + inside + "</output>";
}
inline std::string Rpc(const std::string &name, const std::string &inside = "")
{
    return Statement("rpc", "name", name, inside);
}
inline std::string Action(const std::string &name, const std::string &inside = "")
{
    return Statement("action", "name", name, inside);
}
inline std::string Notification(const std::string &name, const std::string &inside = "")
{
    return Statement("notification", "name", name, inside);
}

// ---- properties of nodes

inline std::string Default(const std::string &value)
{
    return Statement("default", "value", value);
}
inline std::string Units(const std::string &name)
{
    return Statement("units", "name", name);
}
inline std::string Must(const std::string &condition, const std::string &inside = "")
{
    return Statement("must", "condition", condition, inside);
}
inline std::string When(const std::string &condition)
{
    return Statement("when", "condition", condition);
}
inline std::string IfFeature(const std::string &name)
{
    return Statement("if-feature", "name", name);
}
inline std::string Config(const std::string &value)
{
    return Statement("config", "value", value);
}
inline std::string Mandatory(const std::string &value = "true")
{
    return Statement("mandatory", "value", value);
}
inline std::string Presence()
{
    return Statement("presence", "value", "p");
}

// ---- what changes other modules

inline std::string Augment(const std::string &target, const std::string &inside)
{
    return Statement("augment", "target-node", target, inside);
}
inline std::string Deviate(const std::string &kind, const std::string &inside = "")
{
    return Statement("deviate", "value", kind, inside);
}
inline std::string Deviation(const std::string &target, const std::string &kind,
                             const std::string &inside = "")
{
    return Statement("deviation", "target-node", target, Deviate(kind, inside));
}

} // namespace yin

// The YIN text of a module: namespace urn:NAME, prefix NAME, then the body.
inline std::string ModuleText(const std::string &name, const std::string &body)
{
    return "<module name=\"" + name +
           "\" xmlns=\"urn:ietf:params:xml:ns:yang:yin:1\" xmlns:" + name + "=\"urn:" + name +
           "\">" + yin::Statement("namespace", "uri", "urn:" + name) +
           yin::Statement("prefix", "value", name) + body + "</module>";
}

// Data of the module "m": <NAME xmlns="urn:m">INSIDE</NAME>.
inline std::string Data(const std::string &name, const std::string &inside = "")
{
    return "<" + name + " xmlns=\"urn:m\">" + inside + "</" + name + ">";
}

} // namespace zrtest
