// SPDX-License-Identifier: Apache-2.0
// An instance tree for evaluator tests, every element of which is a leaf of type string.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstring>
#include <string>

#include "model/module_records.h"
#include "model/node_record.h"
#include "xpath/evaluate.h"

namespace zrtest {

// A leaf of type string in a module of its own.
inline ZrNode *StringLeaf()
{
    static ZrMod module = [] {
        ZrMod made{};
        made.name = "m";
        made.prefix = "m";
        return made;
    }();
    static ZrsLeafInfo info = [] {
        ZrsLeafInfo made{};
        made.realType.baseType = ZRT_TYPE_STRING;
        return made;
    }();
    static ZrNode leaf = [] {
        ZrNode made{};
        made.kind = ZR_NODE_LEAF;
        made.name = "leaf";
        made.module = &module;
        made.info = &info;
        return made;
    }();
    return &leaf;
}

class DataTree {
public:
    explicit DataTree(const std::string &xml)
        : doc_(xmlReadMemory(xml.data(), static_cast<int>(xml.size()), nullptr, nullptr,
                             XML_PARSE_NONET))
    {
        for (xmlNode *node = Root()->children; node != nullptr; node = Next(node)) {
            if (node->type == XML_ELEMENT_NODE)
                node->_private = StringLeaf();
        }
    }
    ~DataTree() { xmlFreeDoc(doc_); }
    DataTree(const DataTree &) = delete;
    DataTree &operator=(const DataTree &) = delete;

    // The document node, which is the root node of evaluations.
    xmlNode *Root() const { return reinterpret_cast<xmlNode *>(doc_); }
    xmlNode *Top() const { return xmlDocGetRootElement(doc_); }
    // The first element of that local name, in document order.
    xmlNode *Find(const char *name) const
    {
        xmlNode *node = Root()->children;
        while (node != nullptr &&
               (node->type != XML_ELEMENT_NODE ||
                std::strcmp(reinterpret_cast<const char *>(node->name), name) != 0))
            node = Next(node);
        return node;
    }
    uint32_t Eval(const char *expression) const
    {
        return ZR_XPATH_EvalCondition(Root(), Top(), expression);
    }
    uint32_t EvalAt(const char *name, const char *expression) const
    {
        return ZR_XPATH_EvalCondition(Root(), Find(name), expression);
    }

private:
    static xmlNode *Next(xmlNode *node)
    {
        if (node->type == XML_ELEMENT_NODE && node->children != nullptr)
            return node->children;
        while (node != nullptr && node->next == nullptr)
            node = node->parent;
        return node != nullptr ? node->next : nullptr;
    }

    xmlDoc *doc_;
};

} // namespace zrtest
