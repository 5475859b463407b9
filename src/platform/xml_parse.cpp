#include "platform/xml_parse.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>

namespace zr {

xmlDoc *ParseXmlText(const char *text, size_t length)
{
    if (text == nullptr || length == 0 || length > INT_MAX)
        return nullptr;
    xmlKeepBlanksDefault(0);
    xmlParserCtxt *parser = xmlCreateMemoryParserCtxt(text, static_cast<int>(length));
    if (parser == nullptr)
        return nullptr;
    // The default handlers would write to standard error.
    parser->sax->error = nullptr;
    parser->sax->warning = nullptr;
    parser->sax->fatalError = nullptr;
    // Whatever the application has set for the process: no entity is put in, none is fetched.
    parser->replaceEntities = 0;
    parser->loadsubset = 0;
    // Short texts stand inside their nodes: one allocation less for most arguments.
    parser->options |= XML_PARSE_NONET | XML_PARSE_COMPACT;
    xmlParseDocument(parser);
    xmlDoc *document = parser->myDoc;
    parser->myDoc = nullptr;
    if (parser->wellFormed == 0) {
        xmlFreeDoc(document);
        document = nullptr;
    }
    xmlFreeParserCtxt(parser);
    return document;
}

} // namespace zr
