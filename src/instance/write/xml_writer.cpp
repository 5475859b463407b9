// SPDX-License-Identifier: Apache-2.0
#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <new>
#include <vector>

#include "instance/base/text.h"
#include "instance/tree/json_node.h"
#include "instance/write/write.h"
#include "shared/escapes.h"
#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

std::string_view UriOf(const xmlNs *space)
{
    return space == nullptr ? std::string_view() : View(space->href);
}

// Elements are written without prefixes: each names its namespace where that is not the outer
// one's.
class XmlWriter final : public Listener {
public:
    XmlWriter(const WriteJob &job, Output &out)
        : job_(job), out_(out), tagPrefix_("wd", job.memory), declared_(job.memory)
    {
        while (job.plan.FindModule(tagPrefix_) != nullptr) // values declare names of modules
            tagPrefix_ += '_';
    }

    void Write()
    {
        std::string_view name = View(job_.wrapper.name);
        out_ << '<' << name;
        DeclareDefault(UriOf(job_.wrapper.ns), {});
        if (job_.defaults == ZR_DATA_REPORT_ALL_TAGGED)
            Declare(tagPrefix_, kDefaultsNamespace);
        isTagOpen_ = true;
        ++depth_;
        Walk(job_.plan, job_.tree, job_.defaults, job_.memory, *this);
        --depth_;
        EndElement(name);
        out_.BreakLine(job_.indent, 0);
    }

private:
    void Open(const Element &element) override
    {
        StartElement(element);
        ++depth_;
        isTagOpen_ = true;
    }
    void Close(const Element &element) override
    {
        --depth_;
        EndElement(element.plan->name);
    }
    void OpenGroup(const Element &) override {}
    void CloseGroup(const Element &) override {}
    void Leaf(const Element &leaf, bool isTagged) override
    {
        StartElement(leaf);
        DeclareModules(leaf);
        if (isTagged)
            WriteAttribute(tagPrefix_, "default", "true");
        if (leaf.value.empty()) {
            out_ << "/>";
            return;
        }
        out_ << '>';
        WriteEscaped(out_, leaf.value, EscapeInText);
        out_ << "</" << View(leaf.plan->name) << '>';
    }
    void Any(const Element &any) override;

    void StartElement(const Element &element)
    {
        CloseTag();
        out_.BreakLine(job_.indent, depth_);
        out_ << '<' << View(element.plan->name);
        DeclareDefault(View(element.plan->module->xml.href), OuterUri(element));
    }
    // The default namespace where an element stands.
    std::string_view OuterUri(const Element &element) const
    {
        bool isTop = element.parent == &job_.tree.root;
        return isTop ? UriOf(job_.wrapper.ns) : View(element.parent->plan->module->xml.href);
    }
    // Ends a start tag, which stays open as long as the element may be empty.
    void CloseTag()
    {
        if (isTagOpen_)
            out_ << '>';
        isTagOpen_ = false;
    }
    void EndElement(std::string_view name)
    {
        if (isTagOpen_) {
            out_ << "/>";
        } else {
            out_.BreakLine(job_.indent, depth_);
            out_ << "</" << name << '>';
        }
        isTagOpen_ = false;
    }
    void DeclareDefault(std::string_view uri, std::string_view outer)
    {
        if (uri != outer)
            WriteAttribute({}, "xmlns", uri);
    }
    void Declare(std::string_view prefix, std::string_view uri)
    {
        WriteAttribute("xmlns", prefix, uri);
    }
    void WriteAttribute(std::string_view prefix, std::string_view name, std::string_view value)
    {
        out_ << ' ' << prefix << (prefix.empty() ? "" : ":") << name << "=\"";
        WriteEscaped(out_, value, EscapeInAttribute);
        out_ << '"';
    }
    void DeclareModules(const Element &leaf);
    void DeclareModule(std::string_view name);
    void DeclareOuterPrefixes(const xmlNode &any);
    void DeclarePrefix(const xmlNs &space);
    bool IsDeclaredByRoot(const xmlNs &space) const
    {
        return job_.defaults == ZR_DATA_REPORT_ALL_TAGGED && View(space.prefix) == tagPrefix_ &&
               View(space.href) == kDefaultsNamespace;
    }
    void StartAny(const xmlNode &node, std::string_view outerUri);
    void WriteProperties(const xmlNode &node);
    void FinishAny(const xmlNode &top);

    const WriteJob &job_;
    Output &out_;
    std::pmr::string tagPrefix_;
    std::pmr::vector<std::string_view> declared_; // the prefixes of the element
    uint32_t depth_ = 0;
    bool isTagOpen_ = false;
};

void XmlWriter::DeclareModule(std::string_view name)
{
    const PlanModule *module = job_.plan.FindModule(name);
    if (module == nullptr || std::find(declared_.begin(), declared_.end(), name) != declared_.end())
        return;
    declared_.push_back(name);
    Declare(name, View(module->xml.href));
}

// Canonical values name modules, so that these are their prefixes.
void XmlWriter::DeclareModules(const Element &leaf)
{
    declared_.clear();
    uint32_t base = leaf.type == nullptr ? uint32_t{ZRT_TYPE_NONE} : leaf.type->base;
    if (base == ZRT_TYPE_IDENTITYREF)
        DeclareModule(SplitName(leaf.value).prefix);
    if (base == ZRT_TYPE_INSTANCE_IDENTIFIER)
        for (XPathTokens tokens(leaf.value); tokens.at().kind != XPathKind::End; tokens.Advance()) {
            std::string_view text = tokens.at().text;
            if (tokens.at().kind == XPathKind::Literal) // an identity may be a key
                text = text.substr(1, text.size() - 2);
            else if (tokens.at().kind != XPathKind::Name)
                continue;
            DeclareModule(SplitName(text).prefix);
        }
}

void XmlWriter::DeclarePrefix(const xmlNs &space)
{
    std::string_view prefix = View(space.prefix);
    if (prefix.empty() || prefix == "xml" ||
        std::find(declared_.begin(), declared_.end(), prefix) != declared_.end())
        return;
    declared_.push_back(prefix);
    Declare(prefix, View(space.href));
}

// Texts inside may use any prefix that is in scope.
void XmlWriter::DeclareOuterPrefixes(const xmlNode &any)
{
    for (const xmlNode *at = any.parent; at != nullptr && at->type == XML_ELEMENT_NODE;
         at = at->parent)
        for (const xmlNs *space = at->nsDef; space != nullptr; space = space->next)
            if (!IsDeclaredByRoot(*space))
                DeclarePrefix(*space);
}

void XmlWriter::WriteProperties(const xmlNode &node)
{
    for (const xmlAttr *at = node.properties; at != nullptr; at = at->next) {
        if (at->ns != nullptr && AsJson(&node) != nullptr)
            DeclarePrefix(*at->ns);
        std::pmr::string value(job_.memory);
        for (const xmlNode *text = at->children; text != nullptr; text = text->next)
            value += View(text->content);
        WriteAttribute(at->ns == nullptr ? std::string_view() : View(at->ns->prefix),
                       View(at->name), value);
    }
}

void XmlWriter::StartAny(const xmlNode &node, std::string_view outerUri)
{
    out_ << '<' << View(node.name);
    DeclareDefault(UriOf(node.ns), outerUri);
    declared_.clear();
    for (const xmlNs *space = node.nsDef; space != nullptr; space = space->next)
        DeclarePrefix(*space);
    WriteProperties(node);
}

// The content of a node and its end tag.
void XmlWriter::FinishAny(const xmlNode &top)
{
    const xmlNode *at = top.children;
    if (at == nullptr) {
        out_ << "/>";
        return;
    }
    out_ << '>';
    while (at != nullptr) {
        bool isElement = at->type == XML_ELEMENT_NODE;
        if (isElement) {
            StartAny(*at, UriOf(at->parent->ns));
            out_ << (at->children == nullptr ? "/>" : ">");
        } else if (at->type == XML_TEXT_NODE || at->type == XML_CDATA_SECTION_NODE) {
            WriteEscaped(out_, View(at->content), EscapeInText);
        }
        if (isElement && at->children != nullptr) {
            at = at->children;
            continue;
        }
        while (at->next == nullptr && at->parent != &top) {
            at = at->parent;
            out_ << "</" << View(at->name) << '>';
        }
        at = at->next;
    }
    out_ << "</" << View(top.name) << '>';
}

// As it was read, but for comments and processing instructions. An array of JSON becomes an element
// for each value, in one that stands for the whole.
void XmlWriter::Any(const Element &any)
{
    CloseTag();
    out_.BreakLine(job_.indent, depth_);
    const xmlNode &top = *any.source;
    StartAny(top, OuterUri(any));
    DeclareOuterPrefixes(top);
    const JsonNode *entry = AsJson(&top);
    if (entry == nullptr || !entry->isEntry) {
        FinishAny(top);
        return;
    }
    out_ << '>';
    for (; entry != nullptr; entry = NextEntry(*entry)) {
        StartAny(entry->node, UriOf(top.ns));
        FinishAny(entry->node);
    }
    out_ << "</" << View(top.name) << '>';
}

} // namespace

void WriteXml(const WriteJob &job, Output &out)
{
    XmlWriter(job, out).Write();
    out.Flush();
}

XmlDoc WriteXmlTree(const WriteJob &job)
{
    std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
        xmlCreatePushParserCtxt(nullptr, nullptr, nullptr, 0, nullptr), xmlFreeParserCtxt);
    if (!parser)
        throw std::bad_alloc();
    KeepBlanks(*parser);
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                        XML_PARSE_HUGE | XML_PARSE_BIG_LINES);
    // Pieces are as long as the longest value at most, which came from a text or a tree itself.
    auto take = [](const char *text, size_t length, void *user) {
        return length > INT_MAX ? XML_ERR_NO_MEMORY
                                : xmlParseChunk(static_cast<xmlParserCtxt *>(user), text,
                                                static_cast<int>(length), 0);
    };
    Output out(take, parser.get(), job.memory);
    bool isWhole = true;
    try {
        WriteXml(job, out);
        isWhole = xmlParseChunk(parser.get(), nullptr, 0, 1) == 0;
    } catch (const Stopped &) {
        isWhole = false;
    }
    XmlDoc doc(parser->myDoc, xmlFreeDoc);
    parser->myDoc = nullptr;
    if (parser->lastError.code == XML_ERR_NO_MEMORY)
        throw std::bad_alloc();
    if (!isWhole || parser->wellFormed == 0)
        doc.reset();
    return doc;
}

} // namespace zr::data
