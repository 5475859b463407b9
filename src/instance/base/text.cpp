// SPDX-License-Identifier: Apache-2.0
#include "instance/base/text.h"

#include <algorithm>

namespace zr::data {

void AppendText(std::pmr::string &out, const xmlNode &element)
{
    for (const xmlNode *at = element.children; at != nullptr; at = at->next)
        if (IsText(*at))
            out += View(at->content);
}

bool IsBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return IsBlank(c); });
}

uint64_t CountCharacters(std::string_view text)
{
    return static_cast<uint64_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string_view TakeWord(std::string_view &text)
{
    auto isBlank = [](char c) { return IsBlank(c); };
    auto start = std::find_if_not(text.begin(), text.end(), isBlank);
    auto end = std::find_if(start, text.end(), isBlank);
    std::string_view word(start, end);
    text = std::string_view(end, text.end());
    return word;
}

bool IsDefaultTag(const xmlAttr &attribute)
{
    return attribute.ns != nullptr && View(attribute.ns->href) == kDefaultsNamespace &&
           View(attribute.name) == "default";
}

const xmlNode *NextNode(const xmlNode &at, const xmlNode &top)
{
    if (at.children != nullptr)
        return at.children;
    const xmlNode *next = &at;
    while (next != &top && next->next == nullptr)
        next = next->parent;
    return next == &top ? nullptr : next->next;
}

void AppendLiteral(std::pmr::string &out, std::string_view text)
{
    if (text.find('\'') == std::string_view::npos) {
        ((out += '\'') += text) += '\'';
        return;
    }
    if (text.find('"') == std::string_view::npos) {
        ((out += '"') += text) += '"';
        return;
    }
    out += "concat(''";
    while (!text.empty()) {
        size_t length = std::min(text.find('\''), text.size());
        if (length != 0)
            ((out += ",'") += text.substr(0, length)) += '\'';
        if (length == text.size())
            break;
        out += ",\"'\"";
        text.remove_prefix(length + 1);
    }
    out += ')';
}

} // namespace zr::data
