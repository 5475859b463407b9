// SPDX-License-Identifier: Apache-2.0
#include "loader/part_sets.h"

#include <libxml/tree.h>

#include <set>

#include "platform/xml.h"

namespace zrtest {

namespace {

std::string NameOf(const xmlNode *element)
{
    return reinterpret_cast<const char *>(element->name);
}

bool IsNode(const xmlNode *element)
{
    static const std::set<std::string> kNodes = {"container", "list",    "leaf",        "leaf-list",
                                                 "choice",    "case",    "rpc",         "input",
                                                 "output",    "augment", "notification"};
    return kNodes.count(NameOf(element)) != 0;
}

std::string Dump(xmlNode *element)
{
    xmlBuffer *buffer = xmlBufferCreate();
    xmlNodeDump(buffer, element->doc, element, 0, 0);
    std::string text = reinterpret_cast<const char *>(xmlBufferContent(buffer));
    xmlBufferFree(buffer);
    return text;
}

// The start tag of a statement with its one attribute.
std::string StartTag(const xmlNode *element)
{
    const xmlAttr *attribute = element->properties;
    if (attribute == nullptr)
        return "<" + NameOf(element) + ">";
    return "<" + NameOf(element) + " " + reinterpret_cast<const char *>(attribute->name) + "=\"" +
           reinterpret_cast<const char *>(attribute->children->content) + "\">";
}

class Splitter {
public:
    Splitter(size_t count, Random &random) : parts_(count), random_(random) {}

    std::vector<std::string> Split(const xmlNode *module)
    {
        Children(module);
        return parts_;
    }

private:
    void ToAll(const std::string &text)
    {
        for (std::string &part : parts_)
            part += text;
    }

    void ToOne(const std::string &text)
    {
        parts_[random_.Below(static_cast<uint32_t>(parts_.size()))] += text;
    }

    void Children(const xmlNode *parent)
    {
        std::vector<std::string> single;
        for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
            if (child->type != XML_ELEMENT_NODE)
                continue;
            bool isDeviation = NameOf(child) == "deviation";
            if (isDeviation || (IsNode(child) && random_.Chance(50))) {
                single.push_back(Dump(child));
            } else if (IsNode(child)) {
                ToAll(StartTag(child));
                Children(child);
                ToAll("</" + NameOf(child) + ">");
            } else {
                ToAll(Dump(child));
            }
        }
        for (const std::string &text : single)
            ToOne(text);
    }

    std::vector<std::string> parts_;
    Random &random_;
};

} // namespace

std::vector<std::string> SplitIntoParts(const std::string &moduleText, size_t count, Random &random)
{
    xmlDoc *document = zr::ParseXmlText(moduleText.c_str(), moduleText.size());
    std::vector<std::string> parts = Splitter(count, random).Split(xmlDocGetRootElement(document));
    xmlFreeDoc(document);
    size_t bodyStart = moduleText.find('>') + 1;
    for (std::string &part : parts)
        part = moduleText.substr(0, bodyStart) + part + "</module>";
    return parts;
}

} // namespace zrtest
