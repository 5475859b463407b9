// SPDX-License-Identifier: Apache-2.0
#include "yin_file.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "xml_text.h"
#include "yin_look.h"

namespace tool {

namespace {

struct Seen {
    long line; // of the first one
    size_t count;
};

std::string FirstAttribute(const xmlNode *element)
{
    const xmlAttr *attribute = element->properties;
    return attribute != nullptr && attribute->children != nullptr
               ? Text(attribute->children->content)
               : "";
}

std::string FileName(const std::string &path)
{
    return path.substr(path.rfind('/') + 1);
}

bool IsYin(const xmlNode *element)
{
    return element->ns != nullptr && Text(element->ns->href) == kYinNamespace;
}

void ReadHeader(const xmlNode *root, YinFile &file)
{
    file.root = Text(root->name);
    file.name = FirstAttribute(root);
    const std::pair<const char *, std::set<std::string> *> lists[] = {
        {"import", &file.imports}, {"include", &file.includes}, {"feature", &file.features}};
    for (const xmlNode *child = root->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE || !IsYin(child))
            continue;
        for (const auto &[keyword, names] : lists)
            if (Text(child->name) == keyword)
                names->insert(FirstAttribute(child));
        if (file.revision.empty() && Text(child->name) == "revision")
            file.revision = FirstAttribute(child);
    }
}

// Why the library passes an element over; "" when it does not.
std::string WhyPassedOver(const xmlNode *element)
{
    std::string name = Text(element->name);
    if (element->ns == nullptr)
        return "element \"" + name + "\" without a namespace is passed over";
    if (!IsYin(element))
        return ""; // an extension's
    if (name == "uses" || name == "grouping")
        return "statement \"" + name + "\" is passed over: groupings are to be expanded before";
    if (name == "typedef" && Text(element->parent->name) != "module" &&
        Text(element->parent->name) != "submodule")
        return "statement \"typedef\" below \"" + Text(element->parent->name) +
               "\" is passed over: typedefs are to be moved to the top of their module before";
    return IsKeyword(name) ? "" : "unknown statement \"" + name + "\" is passed over";
}

const xmlNode *NextElement(const xmlNode *root, const xmlNode *node, bool intoChildren)
{
    if (intoChildren && node->children != nullptr)
        return node->children;
    while (node != root && node->next == nullptr)
        node = node->parent;
    return node != root ? node->next : nullptr;
}

// One warning for all that is passed over for the same reason, in the order of their lines.
std::vector<Problem> FindPassedOver(const xmlNode *root, const std::string &fileName)
{
    std::map<std::string, Seen> seen;
    bool intoChildren = true;
    for (const xmlNode *node = root; node != nullptr;
         node = NextElement(root, node, intoChildren)) {
        std::string why = node->type == XML_ELEMENT_NODE ? WhyPassedOver(node) : "";
        intoChildren = node->type == XML_ELEMENT_NODE && why.empty();
        if (!why.empty())
            ++seen.try_emplace(why, Seen{xmlGetLineNo(node), 0}).first->second.count;
    }
    std::vector<Problem> problems;
    problems.reserve(seen.size());
    for (const auto &[why, where] : seen)
        problems.push_back(
            {where.count > 1 ? why + " (" + std::to_string(where.count) + " of them)" : why, "",
             fileName, where.line, true});
    std::stable_sort(problems.begin(), problems.end(),
                     [](const Problem &a, const Problem &b) { return a.line < b.line; });
    return problems;
}

} // namespace

YinFile ReadYinFile(const std::string &path, Extent extent)
{
    std::string text, reason = ReadRegularFile(path, text);
    if (reason.empty())
        return ReadYinText(text, path, extent);
    YinFile file;
    file.faults.push_back({reason, "", FileName(path), 0});
    file.isWhole = true;
    return file;
}

YinFile ReadYinText(const std::string &text, const std::string &path, Extent extent)
{
    YinFile file;
    YinLook look = extent == Extent::Header ? LookAtYin(text) : YinLook();
    XmlFault fault;
    Document document(nullptr, xmlFreeDoc);
    if (look.isPlain)
        document =
            ParseXml(text.substr(0, look.headerEnd) + "</" + std::string(look.root) + ">", fault);
    file.isWhole = document == nullptr;
    if (file.isWhole)
        document = ParseXml(text, fault);
    if (document == nullptr) {
        file.faults.push_back({fault.reason, "", FileName(path), fault.line});
        return file;
    }
    const xmlNode *root = xmlDocGetRootElement(document.get());
    ReadHeader(root, file);
    if (file.isWhole && (file.root == "module" || file.root == "submodule"))
        file.passedOver = FindPassedOver(root, FileName(path));
    return file;
}

} // namespace tool
