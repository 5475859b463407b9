// SPDX-License-Identifier: Apache-2.0
// Texts: libxml2's and the library's own, whole names, and characters.
#pragma once

#include <libxml/tree.h>

#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>

namespace zr::data {

inline std::string_view View(const xmlChar *text)
{
    return text == nullptr ? std::string_view() : reinterpret_cast<const char *>(text);
}
inline std::string_view View(const char *text)
{
    return text == nullptr ? std::string_view() : text;
}
inline const xmlChar *XmlText(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

inline bool IsText(const xmlNode &node)
{
    return node.type == XML_TEXT_NODE || node.type == XML_CDATA_SECTION_NODE;
}
// The text that stands directly in an element.
void AppendText(std::pmr::string &out, const xmlNode &element);

inline bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
bool IsBlank(std::string_view text);

// The characters of a text that is UTF-8.
uint64_t CountCharacters(std::string_view text);

// Takes the next word off the front of a text; "" when there is none.
std::string_view TakeWord(std::string_view &text);

// The namespaces of what carries requests and data (RFC 6241) and notifications (RFC 5277).
inline constexpr const char *kNetconfNamespace = "urn:ietf:params:xml:ns:netconf:base:1.0";
inline constexpr const char *kEventNamespace = "urn:ietf:params:xml:ns:netconf:notification:1.0";

// The namespace of the attribute "default" (RFC 6243, section 6).
inline constexpr std::string_view kDefaultsNamespace = "urn:ietf:params:xml:ns:netconf:default:1.0";
bool IsDefaultTag(const xmlAttr &attribute);

// The node behind one in document order, in the tree below `top`; null at its end.
const xmlNode *NextNode(const xmlNode &at, const xmlNode &top);

// Appends a literal of XPath that stands for the text: quotes that it does not hold, or a call of
// concat() where it holds both.
void AppendLiteral(std::pmr::string &out, std::string_view text);

} // namespace zr::data
