// SPDX-License-Identifier: Apache-2.0
// XML through libxml2: reads of a tree, a walk over it without recursion, and the way from text to
// tree.
#pragma once

#include <zrschema/types.h>

#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>

// How a step of the walk reached its node.
enum ZrXmlDirection : uint32_t { ZR_XML_TO_CHILD = 0, ZR_XML_TO_SIBLING = 1, ZR_XML_TO_PARENT = 2 };

extern "C" {
// Reads of one element. The returned texts and nodes belong to the tree; a null element gives null.

// The text of the first attribute of that name that has a value, else null. Prefixes do not count.
ZR_API const char *ZR_XML_GetTargetPropertyValue(const xmlNode *element, const char *attributeName);
// The text of the element's first attribute, whatever its name, else null.
ZR_API const char *ZR_XML_GetFirstPropertyValue(const xmlNode *element);
// The URI of the namespace in which the element stands, or null.
ZR_API const char *ZR_XML_GetXmlNodeDefaultNs(const xmlNode *element);
// The element's text when its first child is a text node, else null.
ZR_API const char *ZR_XML_GetElemNodeContent(const xmlNode *element);
// The first child whose mark in `_private` shares a bit with the mask, or null.
ZR_API xmlNode *ZR_XML_GetFirstChildNodeWithPriVal(const xmlNode *element, uint32_t mask);

// A depth-first walk of the subtree of `root`. `*direction` says on entry how `node` was reached
// (ZR_XML_TO_CHILD at the start, with `node` the root) and on return how the result was: a node
// that comes with ZR_XML_TO_PARENT was visited before, and only its siblings are still to come.
// Null at the end. Attributes and the content of unexpanded entities are not walked.
ZR_API xmlNode *ZR_XML_GetXmlDomNextNode(const xmlNode *root, xmlNode *node, uint32_t *direction);
// The same step without a look at the children of `node`: leaves its subtree out.
ZR_API xmlNode *ZR_XML_GetXmlDomSibOrParent(const xmlNode *root, xmlNode *node,
                                            uint32_t *direction);
// The parent of `node` with ZR_XML_TO_PARENT, or null.
ZR_API xmlNode *ZR_XML_GetParentNodeByTraverse(xmlNode *node, uint32_t *direction);
}

// What libxml2 reports while it works for the library: nothing of it is printed or reaches the
// application's handler, and a shortage of memory is noticed.

namespace zr {

// Takes libxml2's reports for the length of a scope. Its error handlers belong to the thread, so
// that other threads keep theirs.
class XmlErrors {
public:
    XmlErrors() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, Take);
    }
    ~XmlErrors() { xmlSetStructuredErrorFunc(context_, handler_); }
    XmlErrors(const XmlErrors &) = delete;
    XmlErrors &operator=(const XmlErrors &) = delete;

    // Whether libxml2 was short of memory. What it made meanwhile may lack a part.
    bool outOfMemory() const { return outOfMemory_; }

private:
    // A template, because libxml2's releases differ in whether the error is const.
    template <typename Error> static void Take(void *self, Error error)
    {
        if (error != nullptr && error->code == XML_ERR_NO_MEMORY)
            static_cast<XmlErrors *>(self)->outOfMemory_ = true;
    }

    xmlStructuredErrorFunc handler_;
    void *context_;
    bool outOfMemory_ = false;
};

} // namespace zr

// XML text to a libxml2 document, without a word on standard error.

namespace zr {

constexpr size_t kMaxXmlLength = INT_MAX; // bytes that libxml2 can count

// Parses `length` bytes; null when the text is not well-formed, is longer than kMaxXmlLength, has a
// NUL or a document type declaration, is refused by LookAtXml() for another reason, or
// memory runs out. Blank text nodes are dropped: libxml2's process-wide keep-blanks default is
// switched off and left so. No other default of the process has a say, nothing but the text is
// read, and elements have no line numbers. The caller owns the document.
xmlDoc *ParseXmlText(const char *text, size_t length);

} // namespace zr

// A look at an XML text before libxml2 parses it: one pass that keeps out what the library does not
// read and what would cost the parser more than its length is worth.

namespace zr {

// Namespace declarations count as attributes.
constexpr uint32_t kMaxAttributes = 1024;     // of one start tag
constexpr uint32_t kMaxOpenAttributes = 4096; // of all elements that are open at one place
constexpr uint32_t kMaxDepth = 257;           // of elements: what libxml2 takes, unless it is told

struct XmlLook {
    bool accepted;
    char encoding[20]; // the name under which libxml2 converts the text; "" for UTF-8
};

// Accepts every well-formed text without a document type declaration (RFC 6241, section 3) that is
// in UTF-8 or in ASCII, a part of ISO 8859, a Windows code page, KOI8, EUC or GB 2312, keeps to the
// numbers above, and has no comment, instruction or CDATA section of more than 10,000,000 bytes (a
// third of it outside of UTF-8), which is what libxml2 takes. Texts that are not well-formed may be
// accepted: the parser finds out.
XmlLook LookAtXml(std::string_view text);

} // namespace zr
