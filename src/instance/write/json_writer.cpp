// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <map>
#include <utility>
#include <vector>

#include "instance/base/text.h"
#include "instance/tree/json_node.h"
#include "instance/write/write.h"
#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

struct EscapeRow {
    char c, letter;
};
constexpr EscapeRow kEscapes[] = {
    {'"', '"'}, {'\\', '\\'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'},
};

// What stands for a character in a string of JSON (RFC 8259, section 7), NUL-terminated; "" for the
// character itself.
struct Escape {
    std::array<char, 8> value;
    operator std::string_view() const { return value.data(); }
};

Escape EscapeInString(char c)
{
    if (static_cast<unsigned char>(c) >= ' ' && c != '"' && c != '\\')
        return {};
    for (const EscapeRow &row : kEscapes)
        if (row.c == c)
            return {{'\\', row.letter}};
    constexpr std::string_view kDigits = "0123456789abcdef";
    auto code = static_cast<unsigned char>(c);
    return {{'\\', 'u', '0', '0', kDigits[code >> 4], kDigits[code & 15]}};
}

// Whether a value is written without quotes (RFC 7951, section 6).
bool IsLiteral(uint32_t base)
{
    switch (base) {
    case ZRT_TYPE_BOOLEAN:
    case ZRT_TYPE_INT8:
    case ZRT_TYPE_INT16:
    case ZRT_TYPE_INT32:
    case ZRT_TYPE_UINT8:
    case ZRT_TYPE_UINT16:
    case ZRT_TYPE_UINT32:
        return true;
    default:
        return false;
    }
}

using Nodes = std::pmr::vector<const xmlNode *>;

// Whether a node that comes behind another one is a further value of the same member.
bool IsSameMember(const xmlNode &before, const xmlNode &node)
{
    if (const JsonNode *json = AsJson(&node))
        return !json->startsMember;
    auto uri = [](const xmlNode &at) { return at.ns == nullptr ? View("") : View(at.ns->href); };
    return View(before.name) == View(node.name) && uri(before) == uri(node);
}

class JsonWriter final : public Listener {
public:
    JsonWriter(const WriteJob &job, Output &out)
        : job_(job), out_(out), tags_(job.memory), text_(job.memory), frames_(job.memory)
    {
    }

    void Write()
    {
        Begin('{');
        Walk(job_.plan, job_.tree, job_.defaults, job_.memory, *this);
        End('}');
        out_.BreakLine(job_.indent, 0);
    }

private:
    // An object or array of anydata or anyxml that is being written.
    struct Frame {
        Nodes nodes;
        size_t next;
        bool isArray;      // the values of an array, without names
        bool isInGroup;    // an array of an object's member is open
        const xmlNode *of; // the object
    };

    void Open(const Element &element) override
    {
        StartValue(element);
        Begin('{');
    }
    void Close(const Element &) override { End('}'); }
    void OpenGroup(const Element &first) override
    {
        WriteName(first, "");
        Begin('[');
        tags_.clear();
    }
    void CloseGroup(const Element &first) override
    {
        End(']');
        if (std::find(tags_.begin(), tags_.end(), true) == tags_.end())
            return;
        WriteName(first, "@");
        Begin('[');
        for (bool isTagged : tags_) {
            Separate();
            if (isTagged)
                WriteTag();
            else
                out_ << "null";
        }
        End(']');
    }
    void Leaf(const Element &leaf, bool isTagged) override
    {
        StartValue(leaf);
        WriteValue(leaf);
        if (leaf.plan->IsRepeated()) {
            tags_.push_back(isTagged);
        } else if (isTagged) {
            WriteName(leaf, "@");
            WriteTag();
        }
    }
    void Any(const Element &any) override;

    // What stands before the next member or value of the object or array that is open.
    void Separate()
    {
        if (isBehindValue_)
            out_ << ',';
        out_.BreakLine(job_.indent, depth_);
        isBehindValue_ = true;
    }
    void Begin(char bracket)
    {
        out_ << bracket;
        ++depth_;
        isBehindValue_ = false;
    }
    void End(char bracket)
    {
        --depth_;
        if (isBehindValue_) // it holds something
            out_.BreakLine(job_.indent, depth_);
        out_ << bracket;
        isBehindValue_ = true;
    }
    void WriteString(std::string_view text)
    {
        out_ << '"';
        WriteEscaped(out_, text, EscapeInString);
        out_ << '"';
    }
    void WriteColon() { out_ << (job_.indent == 0 ? ":" : ": "); }
    // RFC 7951, section 4: with the module where it is not that of the node around it.
    void WriteName(const Element &element, std::string_view mark)
    {
        const PlanModule *module = element.plan->module;
        bool isQualified = element.parent->plan->module != module;
        Separate();
        out_ << '"' << mark;
        if (isQualified)
            out_ << module->name << ':';
        out_ << View(element.plan->name) << '"';
        WriteColon();
    }
    void StartValue(const Element &element)
    {
        if (element.plan->IsRepeated())
            Separate();
        else
            WriteName(element, "");
    }
    // RFC 8040, section 4.8.9.
    void WriteTag()
    {
        Begin('{');
        Separate();
        WriteString("ietf-netconf-with-defaults:default");
        WriteColon();
        out_ << "true";
        End('}');
    }
    void WriteValue(const Element &leaf);
    std::string_view ShortenPath(std::string_view path);

    void WriteMemberName(const xmlNode &node, const xmlNode &object);
    void PushObject(const xmlNode &object);
    void PushArray(const JsonNode &first);
    void StartAnyValue(const xmlNode &node);
    void WriteAnyScalar(const xmlNode &node);
    void FinishAny();

    const WriteJob &job_;
    Output &out_;
    std::pmr::vector<bool> tags_; // of the values of the leaf-list that is open
    std::pmr::string text_;
    std::pmr::vector<Frame> frames_;
    uint32_t depth_ = 0;
    bool isBehindValue_ = false;
};

// A canonical instance-identifier names a module on every step; here only where it changes, and on
// the keys in predicates where it is not that of the list (RFC 7951, section 6.11).
std::string_view JsonWriter::ShortenPath(std::string_view path)
{
    text_.clear();
    std::string_view outer;
    bool isInPredicate = false;
    for (XPathTokens tokens(path); tokens.at().kind != XPathKind::End; tokens.Advance()) {
        const XPathToken &token = tokens.at();
        isInPredicate = token.kind == XPathKind::OpenBracket ||
                        (isInPredicate && token.kind != XPathKind::CloseBracket);
        QName name = SplitName(token.text);
        bool isName = token.kind == XPathKind::Name;
        text_ += isName && name.prefix == outer ? name.name : token.text;
        if (isName && !isInPredicate)
            outer = name.prefix;
    }
    return text_;
}

void JsonWriter::WriteValue(const Element &leaf)
{
    uint32_t base = leaf.type == nullptr ? uint32_t{ZRT_TYPE_NONE} : leaf.type->base;
    if (leaf.isFaulty) // a default that its own type refuses
        WriteString(leaf.value);
    else if (IsLiteral(base))
        out_ << leaf.value;
    else if (base == ZRT_TYPE_EMPTY)
        out_ << "[null]";
    else if (base == ZRT_TYPE_INSTANCE_IDENTIFIER)
        WriteString(ShortenPath(leaf.value));
    else
        WriteString(leaf.value);
}

void JsonWriter::WriteMemberName(const xmlNode &node, const xmlNode &object)
{
    Separate();
    if (const JsonNode *json = AsJson(&node)) {
        WriteString(json->name->text); // it is relative to the same object
    } else {
        auto moduleOf = [&](const xmlNode &at) {
            return at.ns == nullptr ? nullptr : job_.plan.FindNamespace(View(at.ns->href));
        };
        const PlanModule *module = moduleOf(node);
        out_ << '"';
        if (module != nullptr && module != moduleOf(object))
            out_ << module->name << ':';
        out_ << View(node.name) << '"';
    }
    WriteColon();
}

// The children of an object; those of one name are one array, at the place of the first.
void JsonWriter::PushObject(const xmlNode &object)
{
    Nodes nodes(job_.memory);
    for (const xmlNode *at = object.children; at != nullptr; at = at->next)
        if (at->type == XML_ELEMENT_NODE)
            nodes.push_back(at);
    if (AsJson(&object) == nullptr && nodes.size() > 1) {
        using Name = std::pair<std::string_view, std::string_view>;
        auto nameOf = [](const xmlNode &at) {
            return Name(at.ns == nullptr ? View("") : View(at.ns->href), View(at.name));
        };
        std::pmr::map<Name, size_t> places(job_.memory);
        for (const xmlNode *node : nodes)
            places.try_emplace(nameOf(*node), places.size());
        std::stable_sort(nodes.begin(), nodes.end(), [&](const xmlNode *a, const xmlNode *b) {
            return places[nameOf(*a)] < places[nameOf(*b)];
        });
    }
    frames_.push_back({std::move(nodes), 0, false, false, &object});
    Begin('{');
}

void JsonWriter::PushArray(const JsonNode &first)
{
    Nodes nodes(job_.memory);
    for (const JsonNode *at = &first; at != nullptr; at = NextEntry(*at))
        nodes.push_back(&at->node);
    frames_.push_back({std::move(nodes), 0, true, false, nullptr});
    Begin('[');
}

void JsonWriter::WriteAnyScalar(const xmlNode &node)
{
    const JsonNode *json = AsJson(&node);
    JsonKind kind = json == nullptr ? JsonKind::String : json->kind;
    if (kind == JsonKind::Null || kind == JsonKind::Empty || kind == JsonKind::Array) {
        out_ << (kind == JsonKind::Null ? "null" : kind == JsonKind::Empty ? "[null]" : "[]");
        return;
    }
    text_.clear();
    for (const xmlNode *at = node.children; at != nullptr; at = at->next)
        if (at->type == XML_TEXT_NODE || at->type == XML_CDATA_SECTION_NODE)
            text_ += View(at->content);
    if (kind == JsonKind::String)
        WriteString(text_);
    else
        out_ << text_;
}

// Writes a value; of an object or array what comes first, with a frame for the rest.
void JsonWriter::StartAnyValue(const xmlNode &node)
{
    const JsonNode *json = AsJson(&node);
    bool hasElements = false;
    for (const xmlNode *at = node.children; at != nullptr && !hasElements; at = at->next)
        hasElements = at->type == XML_ELEMENT_NODE;
    if (json != nullptr && json->kind == JsonKind::Array && hasElements)
        PushArray(*reinterpret_cast<const JsonNode *>(node.children));
    else if (hasElements || (json != nullptr && json->kind == JsonKind::Object))
        PushObject(node);
    else
        WriteAnyScalar(node);
}

void JsonWriter::FinishAny()
{
    while (!frames_.empty()) {
        Frame &frame = frames_.back();
        bool isEnd = frame.next == frame.nodes.size();
        const xmlNode *node = isEnd ? nullptr : frame.nodes[frame.next];
        const xmlNode *before = frame.next == 0 ? nullptr : frame.nodes[frame.next - 1];
        bool isFurther = !isEnd && before != nullptr && IsSameMember(*before, *node);
        if (frame.isInGroup && !isFurther) {
            End(']');
            frame.isInGroup = false;
        }
        if (isEnd) {
            End(frame.isArray ? ']' : '}');
            frames_.pop_back();
            continue;
        }
        ++frame.next;
        if (frame.isArray || isFurther) {
            Separate();
        } else {
            WriteMemberName(*node, *frame.of);
            const JsonNode *json = AsJson(node);
            frame.isInGroup = json != nullptr ? json->isEntry
                                              : frame.next != frame.nodes.size() &&
                                                    IsSameMember(*node, *frame.nodes[frame.next]);
            if (frame.isInGroup) {
                Begin('[');
                Separate();
            }
        }
        StartAnyValue(*node);
    }
}

void JsonWriter::Any(const Element &any)
{
    WriteName(any, "");
    const JsonNode *json = AsJson(any.source);
    if (json != nullptr && json->isEntry)
        PushArray(*json);
    else if (any.plan->kind == ZR_NODE_ANYDATA)
        PushObject(*any.source);
    else
        StartAnyValue(*any.source);
    FinishAny();
}

} // namespace

void WriteJson(const WriteJob &job, Output &out)
{
    JsonWriter(job, out).Write();
    out.Flush();
}

} // namespace zr::data
