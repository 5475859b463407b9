// SPDX-License-Identifier: Apache-2.0
// A leaf of a given type in a module of its own, its values through both kinds of input, and the
// typedefs and unions of such types.
#pragma once

#include <gtest/gtest.h>
#include <libxml/tree.h>

#include <string>

#include "schema/nodes/node.h"
#include "support/context.h"
#include "support/yin.h"
#include "types/constraints.h"
#include "types/real_type.h"

namespace zrtest {

// An element <v> in the namespace urn:m (also under the prefix m) whose text is `value`; no text
// node for an empty value or null, as libxml2 parses it.
class ValueElement {
public:
    explicit ValueElement(const char *value, const char *ns = "urn:m")
        : doc_(xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0")))
    {
        element_ = xmlNewDocNode(doc_, nullptr, reinterpret_cast<const xmlChar *>("v"), nullptr);
        xmlDocSetRootElement(doc_, element_);
        if (ns != nullptr)
            xmlSetNs(element_, Declare(nullptr, ns));
        if (value != nullptr && *value != '\0')
            xmlAddChild(element_, xmlNewDocText(doc_, reinterpret_cast<const xmlChar *>(value)));
    }
    ~ValueElement() { xmlFreeDoc(doc_); }
    ValueElement(const ValueElement &) = delete;
    ValueElement &operator=(const ValueElement &) = delete;

    xmlNs *Declare(const char *prefix, const char *ns)
    {
        return xmlNewNs(element_, reinterpret_cast<const xmlChar *>(ns),
                        reinterpret_cast<const xmlChar *>(prefix));
    }
    const xmlNode *get() const { return element_; }

private:
    xmlDoc *doc_;
    xmlNode *element_;
};

// Module "m" with the given definitions and a leaf "v" of the given type.
class Leaf {
public:
    explicit Leaf(const std::string &type, const std::string &definitions = "", uint32_t flags = 0)
        : ctx_(flags)
    {
        status_ = ctx_.LoadBody("m", definitions + "<leaf name=\"v\">" + type + "</leaf>");
        if (status_ == ZR_OK)
            node_ = ctx_.Node("/m:v");
    }
    uint32_t status() const { return status_; } // of loading the module
    TestContext &context() { return ctx_; }
    ZrNode *node() const { return node_; }
    const ZrtRealType *type() const { return ZR_NODE_GetRealType(node_); }

    uint32_t Check(const char *value) const
    {
        return ZR_NODE_ValidateValue(node_, ZR_VALUE_STRING, value);
    }
    uint32_t CheckElement(const char *value) const
    {
        ValueElement element(value);
        return ZR_NODE_ValidateValue(node_, ZR_VALUE_XML, element.get());
    }
    const ZrtRealType *Matched(const char *value) const
    {
        return ZR_NODE_FindRealTypeMatchedValue(node_, ZR_VALUE_STRING, value);
    }

private:
    TestContext ctx_;
    uint32_t status_ = 0;
    ZrNode *node_ = nullptr;
};

// Typedefs t1 to t`count`, each of the next one, the last of the built-in type.
inline std::string Typedefs(uint32_t count, const std::string &builtIn)
{
    std::string text;
    for (uint32_t i = 1; i <= count; ++i)
        text += yin::TypeDef("t" + std::to_string(i),
                             i < count ? "t" + std::to_string(i + 1) : builtIn);
    return text;
}

// A member of a union, or null.
inline const ZrtRealType *Member(const ZrtRealType *type, uint32_t index)
{
    uint16_t count = 0;
    const ZrtRealType *members = ZRT_CONS_GetConsUnionSubTypeData(
        ZRT_TYPE_GetTypeConsDataByConsType(type, ZRT_CONS_UNION), &count);
    return index < count ? &members[index] : nullptr;
}

} // namespace zrtest
