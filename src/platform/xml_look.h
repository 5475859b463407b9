// A look at an XML text before libxml2 parses it: one pass that keeps out what the library does not
// read and what would cost the parser more than its length is worth.
#pragma once

#include <cstdint>
#include <string_view>

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
