// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/json.h"

#include <libxml/parserInternals.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>
#include <vector>

#include "instance/base/text.h"
#include "instance/tree/json_text.h"
#include "shared/names.h"

namespace zr::data {

namespace {

// XML has no way to write these, and they are no characters of YANG (RFC 7950, section 14).
bool IsUnfit(std::string_view text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        if (byte < ' ' && !IsBlank(text[i]))
            return true;
        if (byte == 0xEF && (text.substr(i, 3) == "\xEF\xBF\xBE" ||
                             text.substr(i, 3) == "\xEF\xBF\xBF")) // U+FFFE, U+FFFF
            return true;
    }
    return false;
}

// The namespaces of annotations that are attributes of NETCONF in XML: the second is not that of
// the module (RFC 6243, section 6; RFC 8040, section 4.8.9).
struct AnnotationSpace {
    std::string_view module;
    const char *uri;
};
constexpr AnnotationSpace kAnnotationSpaces[] = {
    {"ietf-netconf", kNetconfNamespace},
    {"ietf-netconf-with-defaults", kDefaultsNamespace.data()},
};
// The members that hold all else of a document of RESTCONF's (RFC 8040, sections 3.1 and 6.4). The
// elements of the second are those of NETCONF in XML.
constexpr std::string_view kRestconfData = "ietf-restconf:data";
constexpr std::string_view kRestconfNotification = "ietf-restconf:notification";

// What the parser calls; it builds the tree. Its functions have the names that nlohmann-json asks
// for.
class Builder {
public:
    Builder(const Plan &plan, Arena &arena, std::pmr::memory_resource *memory, ParseFault &fault)
        : plan_(plan), arena_(arena), fault_(fault), names_(memory), frames_(memory)
    {
        doc_ = arena_.NewArray<xmlDoc>(1);
        doc_->type = XML_DOCUMENT_NODE;
        doc_->doc = doc_;
        doc_->_private = const_cast<char *>(&kJsonMark);
        base_ = NewSpace(kNetconfNamespace, nullptr);
    }

    // The functions of a parser's listener.
    bool null() { return AddScalar(JsonKind::Null, {}); }
    bool boolean(bool value) { return AddScalar(JsonKind::Boolean, value ? "true" : "false"); }
    bool number_integer(int64_t value) { return AddInteger(value); }
    bool number_unsigned(uint64_t value) { return AddInteger(value); }
    bool number_float(double, std::string_view raw) { return AddScalar(JsonKind::Number, raw); }
    bool string(std::string_view value)
    {
        return IsUnfit(value) ? AddScalar(JsonKind::Unfit, {}) : AddScalar(JsonKind::String, value);
    }
    bool binary(const Json::binary_t &) { return false; } // not in texts
    bool start_object(size_t);
    bool key(std::string_view name);
    bool end_object();
    bool start_array(size_t);
    bool end_array();
    bool parse_error(size_t position, const std::string &token,
                     const nlohmann::detail::exception &error);

    const xmlNode *Root();

    uint32_t line = 1;     // of the last character that was read
    std::string_view text; // the whole

private:
    struct Frame {
        JsonNode *parent; // of the values
        JsonName *name;   // of the next value
        JsonNode *inner;  // of an array that stands in another: itself
        JsonNode *last;   // of an array: its last value
        uint32_t keyLine;
        bool isArray;
    };

    const xmlNs *NewSpace(const char *uri, const char *prefix)
    {
        auto *space = arena_.NewArray<xmlNs>(1);
        space->type = XML_NAMESPACE_DECL;
        space->href = XmlText(uri);
        space->prefix = XmlText(prefix);
        return space;
    }
    JsonName *Intern(std::string_view name);
    JsonNode *Add(JsonKind kind);
    bool AddScalar(JsonKind kind, std::string_view value);
    template <typename Number> bool AddInteger(Number value)
    {
        std::array<char, 24> digits;
        char *end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        return AddScalar(JsonKind::Number,
                         {digits.data(), static_cast<size_t>(end - digits.data())});
    }
    xmlNode *NewText(std::string_view value);
    void Append(xmlNode &parent, xmlNode &child);
    void Remove(xmlNode &child);
    void Annotate(JsonNode &object, JsonNode &annotation);
    void AddAttributes(JsonNode &target, const JsonNode &annotations);
    const xmlNs *SpaceOf(const JsonName &annotation);
    bool Refuse(std::string_view message);

    const Plan &plan_;
    Arena &arena_;
    ParseFault &fault_;
    xmlDoc *doc_;
    const xmlNs *base_;
    JsonNode *root_ = nullptr;
    std::pmr::unordered_map<std::string_view, JsonName *> names_;
    std::pmr::vector<Frame> frames_;
};

JsonName *Builder::Intern(std::string_view name)
{
    auto found = names_.find(name);
    if (found != names_.end())
        return found->second;
    auto *made = arena_.NewArray<JsonName>(1);
    made->text = {arena_.CopyText(name), name.size()};
    made->isAnnotation = name.starts_with('@');
    QName parts = SplitName(made->text);
    made->prefix = parts.prefix;
    made->local = parts.name.data();
    made->module = parts.prefix.empty() ? nullptr : plan_.FindModule(parts.prefix);
    if (name == kRestconfNotification)
        made->space = NewSpace(kEventNamespace, nullptr);
    else if (made->module != nullptr)
        made->space = &made->module->xml;
    names_.emplace(made->text, made);
    return made;
}

void Builder::Append(xmlNode &parent, xmlNode &child)
{
    child.parent = &parent;
    child.prev = parent.last;
    (parent.last != nullptr ? parent.last->next : parent.children) = &child;
    parent.last = &child;
}

void Builder::Remove(xmlNode &child)
{
    (child.prev != nullptr ? child.prev->next : child.parent->children) = child.next;
    (child.next != nullptr ? child.next->prev : child.parent->last) = child.prev;
}

xmlNode *Builder::NewText(std::string_view value)
{
    auto *made = arena_.NewArray<xmlNode>(1);
    made->type = XML_TEXT_NODE;
    made->name = xmlStringText;
    made->doc = doc_;
    made->content = const_cast<xmlChar *>(XmlText(arena_.CopyText(value)));
    return made;
}

// A value in the object or array that is open.
JsonNode *Builder::Add(JsonKind kind)
{
    auto *made = arena_.NewArray<JsonNode>(1);
    made->kind = kind;
    made->line = line;
    xmlNode &node = made->node;
    node.type = XML_ELEMENT_NODE;
    node.doc = doc_;
    if (frames_.empty()) {
        node.name = XmlText("data");
        node.ns = const_cast<xmlNs *>(base_); // only read, as all of them
        root_ = made;
        return made;
    }
    Frame &frame = frames_.back();
    made->name = frame.name;
    made->isEntry = frame.isArray;
    made->startsMember = !frame.isArray || frame.last == nullptr;
    if (!frame.isArray)
        made->line = frame.keyLine;
    frame.last = made;
    node.name = XmlText(frame.name->local);
    if (frame.name->space != nullptr)
        node.ns = const_cast<xmlNs *>(frame.name->space);
    else if (frame.name->prefix.empty() && frame.parent != root_)
        node.ns = frame.parent->node.ns; // RFC 7951, section 4
    Append(frame.parent->node, node);
    return made;
}

bool Builder::Refuse(std::string_view message)
{
    fault_.message = message;
    fault_.line = line;
    return false;
}

bool Builder::AddScalar(JsonKind kind, std::string_view value)
{
    if (frames_.empty())
        return Refuse("the text is no JSON object");
    xmlNode &node = Add(kind)->node;
    if (!value.empty())
        Append(node, *NewText(value));
    return true;
}

bool Builder::start_object(size_t)
{
    frames_.push_back({Add(JsonKind::Object), nullptr, nullptr, nullptr, 0, false});
    return true;
}

bool Builder::key(std::string_view name)
{
    if (IsUnfit(name))
        return Refuse("the name of a member holds a control character");
    frames_.back().name = Intern(name);
    frames_.back().keyLine = line;
    return true;
}

bool Builder::end_object()
{
    JsonNode &object = *frames_.back().parent;
    frames_.pop_back();
    bool hasAnnotations = false;
    // The objects inside are complete, so that a name still knows whether it was met in this one.
    for (xmlNode *at = object.node.children; at != nullptr; at = at->next) {
        auto &member = *reinterpret_cast<JsonNode *>(at);
        if (!member.startsMember)
            continue;
        JsonName &name = *member.name;
        member.isRepeated = name.object == &object.node;
        if (!member.isRepeated) {
            name.object = &object.node;
            name.first = &member;
        }
        hasAnnotations |= name.isAnnotation;
    }
    xmlNode *next = nullptr;
    for (xmlNode *at = object.node.children; hasAnnotations && at != nullptr; at = next) {
        auto &member = *reinterpret_cast<JsonNode *>(at);
        for (next = at->next; next != nullptr && !reinterpret_cast<JsonNode *>(next)->startsMember;)
            next = next->next;
        if (member.name->isAnnotation && !member.isRepeated)
            Annotate(object, member);
    }
    return true;
}

bool Builder::start_array(size_t)
{
    if (frames_.empty())
        return Refuse("the text is no JSON object");
    if (!frames_.back().isArray) {
        Frame outer = frames_.back();
        frames_.push_back({outer.parent, outer.name, nullptr, nullptr, outer.keyLine, true});
        return true;
    }
    JsonNode *inner = Add(JsonKind::Array);
    frames_.push_back({inner, inner->name, inner, nullptr, line, true});
    return true;
}

bool Builder::end_array()
{
    Frame array = frames_.back();
    frames_.pop_back();
    if (array.last == nullptr) {
        if (array.inner == nullptr)
            Add(JsonKind::Array);
        return true;
    }
    if (array.last->kind != JsonKind::Null || !array.last->startsMember)
        return true;
    if (array.inner != nullptr) {
        array.inner->kind = JsonKind::Empty;
        array.inner->node.children = array.inner->node.last = nullptr;
    } else {
        array.last->kind = JsonKind::Empty;
        array.last->isEntry = false;
    }
    return true;
}

bool Builder::parse_error(size_t position, const std::string &,
                          const nlohmann::detail::exception &error)
{
    // The position counts the characters up to the one at fault.
    size_t offset = std::min(position - (position != 0), text.size());
    std::string_view before = text.substr(0, offset);
    size_t start = before.rfind('\n') + 1; // 0 without one
    std::array<char, 24> column;
    char *columnEnd =
        std::to_chars(column.data(), column.data() + column.size(), offset - start + 1).ptr;
    // "[json.exception...] parse error at ...: syntax error while ... - REASON; last read: ..."
    std::string_view reason = error.what();
    size_t dash = reason.find(" - ");
    reason.remove_prefix(dash != reason.npos ? dash + 3
                                             : std::min(reason.find(' ') + 1, reason.size()));
    reason = reason.substr(0, reason.find("; last read"));
    Refuse("the text is not well-formed JSON: column ");
    fault_.line = 1 + static_cast<uint32_t>(std::count(before.begin(), before.end(), '\n'));
    fault_.message.append(column.data(), columnEnd);
    (fault_.message += ": ") += reason;
    return false;
}

const xmlNs *Builder::SpaceOf(const JsonName &annotation)
{
    for (const AnnotationSpace &row : kAnnotationSpaces)
        if (row.module == annotation.prefix)
            return NewSpace(row.uri, row.module.data());
    return annotation.module != nullptr ? &annotation.module->xml : nullptr;
}

void Builder::AddAttributes(JsonNode &target, const JsonNode &annotations)
{
    xmlAttr **end = &target.node.properties;
    while (*end != nullptr)
        end = &(*end)->next;
    for (xmlNode *at = annotations.node.children; at != nullptr; at = at->next) {
        auto *attribute = arena_.NewArray<xmlAttr>(1);
        attribute->type = XML_ATTRIBUTE_NODE;
        attribute->doc = doc_;
        attribute->parent = &target.node;
        attribute->name = at->name;
        auto &member = *reinterpret_cast<JsonNode *>(at);
        // One that stands twice is unknown the second time.
        attribute->ns = member.isRepeated ? nullptr : const_cast<xmlNs *>(SpaceOf(*member.name));
        bool hasText = at->children != nullptr && at->children->type == XML_TEXT_NODE;
        attribute->children = attribute->last = hasText ? at->children : nullptr;
        *end = attribute;
        end = &attribute->next;
    }
}

// Whether a value can stand for the annotations of one node: an object, or null in an array for
// none of them.
bool IsAnnotation(const JsonNode &value)
{
    return value.kind == JsonKind::Object || value.kind == JsonKind::Empty ||
           (value.kind == JsonKind::Null && value.isEntry);
}

// "@" says something of its object, "@a" of the member "a", value by value where that is an array.
// What says something of nothing stays where it is, and is told as unknown.
void Builder::Annotate(JsonNode &object, JsonNode &annotation)
{
    if (annotation.name->text == "@" && IsAnnotation(annotation)) {
        AddAttributes(object, annotation);
        Remove(annotation.node);
        return;
    }
    JsonName &name = *Intern(annotation.name->text.substr(1));
    JsonNode *target = name.object == &object.node ? name.first : nullptr;
    JsonNode *at = &annotation;
    while (at != nullptr && target != nullptr) {
        auto *next = const_cast<JsonNode *>(NextEntry(*at)); // of a tree that is still made
        if (IsAnnotation(*at)) {
            AddAttributes(*target, *at);
            Remove(at->node);
        }
        at = next;
        target = const_cast<JsonNode *>(NextEntry(*target));
    }
}

// A datastore in the member that RESTCONF has for it is taken out.
const xmlNode *Builder::Root()
{
    auto *only = reinterpret_cast<JsonNode *>(root_->node.children);
    if (only == nullptr || only->node.next != nullptr || only->name->text != kRestconfData ||
        only->kind != JsonKind::Object)
        return &root_->node;
    only->node.name = root_->node.name;
    only->node.ns = root_->node.ns;
    return &only->node;
}

} // namespace

const xmlNode *ParseJson(const Plan &plan, Arena &arena, std::pmr::memory_resource *memory,
                         std::string_view text, ParseFault &fault)
{
    MemoryScope scope(memory);
    Builder builder(plan, arena, memory, fault);
    builder.text = text;
    LineIterator first(text.data(), &builder.line);
    LineIterator last(text.data() + text.size(), &builder.line);
    return Json::sax_parse(first, last, &builder) ? builder.Root() : nullptr;
}

} // namespace zr::data
