// XML text to a libxml2 document, without a word on standard error.
#pragma once

#include <libxml/tree.h>

#include <climits>
#include <cstddef>

namespace zr {

constexpr size_t kMaxXmlLength = INT_MAX; // bytes that libxml2 can count

// Parses `length` bytes; null when the text is not well-formed, is longer than kMaxXmlLength, has a
// NUL or a document type declaration, is refused by the look of xml_look.h for another reason, or
// memory runs out. Blank text nodes are dropped: libxml2's process-wide keep-blanks default is
// switched off and left so. No other default of the process has a say, nothing but the text is
// read, and elements have no line numbers. The caller frees the document with xmlFreeDoc().
xmlDoc *ParseXmlText(const char *text, size_t length);

} // namespace zr
