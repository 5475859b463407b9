#include "platform/xml_parse.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <climits>

#include "platform/xml_errors.h"

namespace zr {

xmlDoc *ParseXmlText(const char *text, size_t length)
{
    if (text == nullptr || length == 0 || length > INT_MAX)
        return nullptr;
    XmlErrors errors;
    xmlKeepBlanksDefault(0);
    xmlParserCtxt *parser = xmlCreateMemoryParserCtxt(text, static_cast<int>(length));
    if (parser == nullptr)
        return nullptr;
    // Whatever the application has set for the process: no entity is put in, none is fetched.
    parser->replaceEntities = 0;
    parser->loadsubset = 0;
    // Short texts stand inside their nodes: one allocation less for most arguments.
    parser->options |= XML_PARSE_NONET | XML_PARSE_COMPACT;
    xmlParseDocument(parser);
    xmlDoc *document = parser->myDoc;
    parser->myDoc = nullptr;
    // Short of memory, libxml2 leaves parts out of a document that it calls well-formed.
    if (parser->wellFormed == 0 || errors.outOfMemory()) {
        xmlFreeDoc(document);
        document = nullptr;
    }
    xmlFreeParserCtxt(parser);
    return document;
}

} // namespace zr
