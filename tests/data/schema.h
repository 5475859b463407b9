// The module "m" (namespace urn:m) that most tests of this folder validate against.
#pragma once

#include <string>

#include "support/context.h"

namespace zrtest {

// "<leaf name=NAME><type name=TYPE/>INSIDE</leaf>".
inline std::string Leaf(const std::string &name, const std::string &type,
                        const std::string &inside = "")
{
    return "<leaf name=\"" + name + "\"><type name=\"" + type + "\"/>" + inside + "</leaf>";
}

inline std::string When(const std::string &condition)
{
    return "<when condition=\"" + condition + "\"/>";
}

inline std::string Must(const std::string &condition, const std::string &inside = "")
{
    return "<must condition=\"" + condition + "\">" + inside + "</must>";
}

inline std::string Default(const std::string &value)
{
    return "<default value=\"" + value + "\"/>";
}

inline const std::string kMandatory = "<mandatory value=\"true\"/>";

inline std::string Rpc(const std::string &name, const std::string &input)
{
    return "<rpc name=\"" + name + "\"><input>" + input + "</input></rpc>";
}

inline std::string Container(const std::string &name, const std::string &inside)
{
    return "<container name=\"" + name + "\">" + inside + "</container>";
}

inline std::string List(const std::string &name, const std::string &keys, const std::string &inside)
{
    return "<list name=\"" + name + "\"><key value=\"" + keys + "\"/>" + inside + "</list>";
}

inline std::string Notification(const std::string &name, const std::string &inside)
{
    return "<notification name=\"" + name + "\">" + inside + "</notification>";
}

// "<NAME xmlns='urn:m'>INSIDE</NAME>".
inline std::string Data(const std::string &name, const std::string &inside = "")
{
    return "<" + name + " xmlns=\"urn:m\">" + inside + "</" + name + ">";
}

// A context with the module "m" of that body; the body must load.
class Schema : public TestContext {
public:
    explicit Schema(const std::string &body) { status = LoadBody("m", body); }
    uint32_t status;
};

} // namespace zrtest
