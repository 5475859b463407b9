// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/parse.h"

#include <libxml/parser.h>

#include <new>

#include "instance/base/text.h"

namespace zr::data {

namespace {

// Without a declaration there are no entities but XML's own, so that nothing is fetched and nothing
// grows; a text of any depth and size may be read then.
constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                         XML_PARSE_HUGE | XML_PARSE_BIG_LINES | XML_PARSE_COMPACT;

void RefuseDeclaration(void *user, const xmlChar *, const xmlChar *, const xmlChar *)
{
    auto *parser = static_cast<xmlParserCtxt *>(user);
    *static_cast<bool *>(parser->_private) = true;
    xmlStopParser(parser);
}

} // namespace

void KeepBlanks(xmlParserCtxt &parser)
{
    parser.keepBlanks = 1;
    parser.sax->ignorableWhitespace = parser.sax->characters;
}

XmlDoc ParseXml(const char *text, size_t length, ParseFault &fault)
{
    std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(),
                                                                        xmlFreeParserCtxt);
    if (!parser)
        throw std::bad_alloc();
    KeepBlanks(*parser);
    bool hasDeclaration = false;
    parser->_private = &hasDeclaration;
    parser->sax->internalSubset = RefuseDeclaration;
    XmlDoc doc(
        xmlCtxtReadMemory(parser.get(), text, static_cast<int>(length), nullptr, nullptr, kOptions),
        xmlFreeDoc);
    bool hasReason = doc || hasDeclaration || parser->lastError.message != nullptr;
    if (parser->lastError.code == XML_ERR_NO_MEMORY || !hasReason)
        throw std::bad_alloc();
    if (hasDeclaration) {
        fault.message = "a document type declaration is not taken";
        doc.reset();
    } else if (!doc) {
        fault.message = "the text is not well-formed XML: ";
        std::string_view reason = View(parser->lastError.message);
        fault.message += reason.substr(0, reason.find('\n'));
        fault.line = static_cast<uint32_t>(parser->lastError.line);
    }
    return doc;
}

} // namespace zr::data
