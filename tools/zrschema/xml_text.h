// SPDX-License-Identifier: Apache-2.0
// Texts from files and standard input, and XML documents from texts.
#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>

namespace tool {

// Why a text is no document: where reading it stopped, and for what reason ("": it did not).
struct XmlFault {
    long line = 0;
    std::string reason;
};

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc *)>;

std::string Text(const xmlChar *text); // "" for null

// Reads a file that somebody named, whatever its kind, or standard input for "-". "", or the reason
// why it cannot be read.
std::string ReadInput(const std::string &file, std::string &text);
// Reads a file that was met in a directory: a regular one only, so that a pipe holds nobody up.
std::string ReadRegularFile(const std::string &path, std::string &text);

// Parses a text as the library does, which means without document types and so without entities.
// Null when it is not well-formed, with the reason.
Document ParseXml(const std::string &text, XmlFault &fault);

} // namespace tool
