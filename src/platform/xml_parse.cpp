#include "platform/xml_parse.h"

#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include "platform/xml_errors.h"
#include "platform/xml_look.h"

namespace {

// Short texts stand inside their nodes: one allocation less for most arguments. The encoding is the
// one that the look at the text has found.
constexpr int kOptions =
    XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_COMPACT | XML_PARSE_IGNORE_ENC;

// A new parser begins with the defaults of the process, which are the application's affair: all of
// them are replaced. False when the encoding is unknown.
bool SetUp(xmlParserCtxt *parser, const char *encoding)
{
    parser->options = 0;
    xmlCtxtUseOptions(parser, kOptions);
    parser->linenumbers = 0;
    if (encoding[0] == '\0')
        return true;
    xmlCharEncodingHandler *handler = xmlFindCharEncodingHandler(encoding);
    return handler != nullptr && xmlSwitchToEncoding(parser, handler) == 0;
}

xmlDoc *Parse(xmlParserCtxt *parser)
{
    xmlParseDocument(parser);
    xmlDoc *document = parser->myDoc;
    parser->myDoc = nullptr;
    return document;
}

} // namespace

xmlDoc *zr::ParseXmlText(const char *text, size_t length)
{
    xmlKeepBlanksDefault(0);
    if (text == nullptr || length > kMaxXmlLength)
        return nullptr;
    XmlLook look = LookAtXml({text, length});
    if (!look.accepted)
        return nullptr;
    XmlErrors errors;
    xmlParserCtxt *parser = xmlCreateMemoryParserCtxt(text, static_cast<int>(length));
    if (parser == nullptr)
        return nullptr;
    xmlDoc *document = SetUp(parser, look.encoding) ? Parse(parser) : nullptr;
    // Short of memory, libxml2 leaves parts out of a document that it calls well-formed.
    if (parser->wellFormed == 0 || errors.outOfMemory()) {
        xmlFreeDoc(document);
        document = nullptr;
    }
    xmlFreeParserCtxt(parser);
    return document;
}
