// XML text to a libxml2 document, without a word on standard error.
#pragma once

#include <libxml/tree.h>

#include <cstddef>

namespace zr {

// Parses `length` bytes; null when the text is not well-formed or memory runs out. Blank text nodes
// are dropped: libxml2's process-wide keep-blanks default is switched off and left so. No external
// entity is loaded. The caller frees the document with xmlFreeDoc().
xmlDoc *ParseXmlText(const char *text, size_t length);

} // namespace zr
