// SPDX-License-Identifier: Apache-2.0
// XML text to a tree of libxml2's.
#pragma once

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>

namespace zr::data {

using XmlDoc = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

struct ParseFault {
    explicit ParseFault(std::pmr::memory_resource *memory) : message(memory) {}

    std::pmr::string message; // one line
    uint32_t line = 0;
};

// Makes a parser keep text that is blank: a leaf may hold it, and libxml2's default is the
// process's, which anybody may have changed.
void KeepBlanks(xmlParserCtxt &parser);

// Returns null, with what is wrong, for a text that is not well-formed or has a document type
// declaration. Throws std::bad_alloc. The text has at most INT_MAX bytes.
XmlDoc ParseXml(const char *text, size_t length, ParseFault &fault);

} // namespace zr::data
