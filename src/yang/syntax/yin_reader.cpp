// SPDX-License-Identifier: Apache-2.0
#include "yang/syntax/yin_reader.h"

#include <libxml/parser.h>

#include <memory>

#include "yang/syntax/parser.h"

namespace zr::yang {

namespace {

constexpr std::string_view kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";

// Nothing beyond the text itself is read.
constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOCDATA | XML_PARSE_COMPACT;

using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;
using Document = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

std::string_view View(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : std::string_view();
}

bool IsYin(const xmlNode &element)
{
    return element.ns != nullptr && View(element.ns->href) == kYinNamespace;
}

// The first fault of a document, where the parser tells it.
struct Fault {
    uint32_t line = 0, column = 0;
    std::pmr::string message;
};

void KeepFirst(void *user, const xmlError *error)
{
    auto &fault = *static_cast<Fault *>(static_cast<xmlParserCtxt *>(user)->_private);
    if (fault.line != 0 || error->message == nullptr || error->level == XML_ERR_WARNING)
        return;
    fault.line = error->line > 0 ? static_cast<uint32_t>(error->line) : 1;
    fault.column = error->int2 > 0 ? static_cast<uint32_t>(error->int2) : 1;
    fault.message = error->message;
    fault.message.resize(fault.message.find_last_not_of('\n') + 1);
}

class Reader {
public:
    Reader(Source &source, Reports &reports, Arena &arena)
        : source_(source), reports_(reports), arena_(arena)
    {
    }

    Statement *Run()
    {
        Document document = Parse();
        if (document == nullptr)
            return nullptr;
        if (document->intSubset != nullptr)
            return Fail({&source_, 1, 1}, "a document type");
        return Make(*xmlDocGetRootElement(document.get()), nullptr, 0);
    }

private:
    Statement *Fail(const Place &place, std::string_view what)
    {
        reports_.Error(place, ZR_YANG_CODE_SYNTAX, {"bad XML: ", what});
        return nullptr;
    }

    Document Parse()
    {
        Fault fault{0, 0, std::pmr::string(arena_.resource())};
        Context context(xmlNewParserCtxt(), xmlFreeParserCtxt);
        if (context == nullptr)
            throw std::bad_alloc();
        context->_private = &fault;
        context->sax->serror = [](void *user, auto *error) { KeepFirst(user, error); };
        Document document(xmlCtxtReadMemory(context.get(), source_.text.data(),
                                            static_cast<int>(source_.text.size()), nullptr, "UTF-8",
                                            kOptions),
                          xmlFreeDoc);
        if (document == nullptr)
            Fail({&source_, fault.line, fault.column}, fault.message);
        return document;
    }

    static Place PlaceOf(Source &source, const xmlNode &element)
    {
        return {&source, static_cast<uint32_t>(xmlGetLineNo(&element)), 1};
    }

    // The statement of an element with all that stands in it.
    Statement *Make(const xmlNode &element, Statement *parent, uint32_t depth)
    {
        Place place = PlaceOf(source_, element);
        if (depth > kDepthLimit)
            return Fail(place, "elements stand more than 200 deep in each other");
        auto *statement = arena_.New<Statement>();
        statement->parent = parent;
        statement->source = &source_;
        statement->line = place.line;
        statement->column = place.column;
        ReadName(*statement, element);
        ReadAttribute(*statement, element);
        Statement *last = nullptr;
        for (const xmlNode *child = element.children; child != nullptr; child = child->next) {
            if (child->type != XML_ELEMENT_NODE || TakeArgument(*statement, *child))
                continue;
            Statement *inner = Make(*child, statement, depth + 1);
            if (inner == nullptr)
                return nullptr;
            (last != nullptr ? last->next : statement->first) = inner;
            last = inner;
        }
        return statement;
    }

    void ReadName(Statement &statement, const xmlNode &element)
    {
        std::pmr::string word(arena_.resource());
        if (!IsYin(element) && element.ns != nullptr && element.ns->prefix != nullptr)
            (word = View(element.ns->prefix)) += ':';
        statement.word = arena_.Copy(word += View(element.name));
        statement.keyword = IsYin(element) ? FindKeyword(statement.word) : Keyword::Unknown;
        statement.isFaulty =
            statement.IsExtension() && statement.word.find(':') == std::string_view::npos;
        if (statement.parent != nullptr &&
            (statement.keyword == Keyword::Typedef || statement.keyword == Keyword::Grouping))
            statement.parent->hasDefinitions = true;
    }

    // An extension instance has its argument in the only attribute that is its own.
    void ReadAttribute(Statement &statement, const xmlNode &element)
    {
        std::string_view wanted = InfoOf(statement.keyword).yinArgument;
        for (const xmlAttr *at = element.properties; at != nullptr; at = at->next)
            if (at->ns == nullptr && (statement.IsExtension() || View(at->name) == wanted))
                SetArgument(statement, at->children);
    }

    // Whether an element is the argument of the statement in which it stands.
    bool TakeArgument(Statement &statement, const xmlNode &element)
    {
        const KeywordInfo &info = InfoOf(statement.keyword);
        bool isArgument = info.isElement && !statement.hasArgument && IsYin(element) &&
                          View(element.name) == info.yinArgument;
        if (isArgument)
            SetArgument(statement, element.children);
        return isArgument;
    }

    void SetArgument(Statement &statement, const xmlNode *pieces)
    {
        std::pmr::string text(arena_.resource());
        for (; pieces != nullptr; pieces = pieces->next)
            if (pieces->type == XML_TEXT_NODE)
                text += View(pieces->content);
        statement.argument = arena_.Copy(text);
        statement.hasArgument = true;
    }

    Source &source_;
    Reports &reports_;
    Arena &arena_;
};

} // namespace

Statement *ReadYin(Source &source, Reports &reports, Arena &arena)
{
    TextFault fault = FindTextFault(source.text);
    if (fault.what != nullptr) {
        reports.Error(PlaceOf(source, fault.offset), ZR_YANG_CODE_ENCODING, {fault.what});
        return nullptr;
    }
    return Reader(source, reports, arena).Run();
}

} // namespace zr::yang
