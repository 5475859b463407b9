#include "module_files.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace tool {

namespace {

constexpr const char *kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";

std::string Text(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

std::string FirstAttribute(const xmlNode *element)
{
    const xmlAttr *attribute = element->properties;
    return attribute != nullptr && attribute->children != nullptr
               ? Text(attribute->children->content)
               : "";
}

} // namespace

ModuleFiles::ModuleFiles(const std::vector<std::string> &directories)
{
    std::error_code error;
    for (const std::string &directory : directories)
        for (const fs::directory_entry &entry : fs::directory_iterator(directory, error)) {
            if (entry.path().extension() != ".yin")
                continue;
            std::string stem = entry.path().stem().string();
            files_[stem.substr(0, stem.find('@'))].push_back(entry.path().string());
        }
}

const ModuleFiles::Links &ModuleFiles::ReadLinks(const std::string &path)
{
    auto [entry, fresh] = links_.try_emplace(path);
    Links &links = entry->second;
    if (!fresh)
        return links;
    xmlDoc *document = xmlReadFile(path.c_str(), nullptr,
                                   XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET);
    const xmlNode *root = document != nullptr ? xmlDocGetRootElement(document) : nullptr;
    if (root != nullptr)
        links.root = Text(root->name);
    for (const xmlNode *child = root != nullptr ? root->children : nullptr; child != nullptr;
         child = child->next) {
        if (child->type != XML_ELEMENT_NODE || child->ns == nullptr ||
            Text(child->ns->href) != kYinNamespace)
            continue;
        if (Text(child->name) == "import")
            links.imports.insert(FirstAttribute(child));
        else if (Text(child->name) == "include")
            links.includes.insert(FirstAttribute(child));
    }
    xmlFreeDoc(document);
    return links;
}

std::vector<std::string> ModuleFiles::Names() const
{
    std::vector<std::string> names;
    auto *self = const_cast<ModuleFiles *>(this);
    for (const auto &[name, paths] : files_)
        if (self->ReadLinks(paths.front()).root != "submodule")
            names.push_back(name);
    return names;
}

bool ModuleFiles::Has(const std::string &name) const
{
    return files_.count(name) != 0;
}

std::set<std::string> ModuleFiles::ImportsOf(const std::string &name)
{
    std::set<std::string> imports;
    std::set<std::string> parts = {name};
    for (std::vector<std::string> todo = {name}; !todo.empty();) {
        auto found = files_.find(todo.back());
        todo.pop_back();
        if (found == files_.end())
            continue;
        for (const std::string &path : found->second) {
            const Links &links = ReadLinks(path);
            imports.insert(links.imports.begin(), links.imports.end());
            for (const std::string &include : links.includes)
                if (parts.insert(include).second)
                    todo.push_back(include);
        }
    }
    return imports;
}

void ModuleFiles::Visit(const std::string &name, std::set<std::string> &seen,
                        std::vector<std::string> &order)
{
    if (!seen.insert(name).second)
        return;
    for (const std::string &import : ImportsOf(name))
        if (Has(import))
            Visit(import, seen, order);
    order.push_back(name);
}

std::vector<std::string> ModuleFiles::WithImports(const std::vector<std::string> &names)
{
    std::set<std::string> seen;
    std::vector<std::string> order;
    for (const std::string &name : names)
        Visit(name, seen, order);
    return order;
}

std::vector<std::string> ModuleFiles::InOrder(const std::vector<std::string> &names)
{
    std::vector<std::string> order = WithImports(names);
    auto unnamed = [&](const std::string &name) {
        return std::find(names.begin(), names.end(), name) == names.end();
    };
    order.erase(std::remove_if(order.begin(), order.end(), unnamed), order.end());
    return order;
}

} // namespace tool
