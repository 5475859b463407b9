// SPDX-License-Identifier: Apache-2.0
#include "support/value.h"

namespace datatest {

std::string Leaf(const std::string &type, const std::string &inner)
{
    return "leaf v { type " + type + (type.ends_with('}') ? " " : "; ") + inner + "} ";
}

bool Takes(const std::string &type, const std::string &text, const std::string &rest)
{
    Schema schema(Leaf(type) + rest);
    return schema.Check("<v xmlns:m=\"urn:m\">" + text + "</v>").empty();
}

bool Reads(const std::string &type, const std::string &text, const std::string &canonical,
           const std::string &rest)
{
    Schema schema(Leaf(type, "must \"string(.) = '" + canonical + "'\"; ") + rest);
    return schema.Check("<v xmlns:m=\"urn:m\">" + text + "</v>").empty();
}

} // namespace datatest
