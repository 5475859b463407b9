#include "instance/errors/result.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "instance/base/text.h"
#include "instance/tree/json_node.h"

namespace zr::data {

namespace {

constexpr const char *kTagNames[] = {
    nullptr,
    "in-use",
    "invalid-value",
    "too-big",
    "missing-attribute",
    "bad-attribute",
    "unknown-attribute",
    "missing-element",
    "bad-element",
    "unknown-element",
    "unknown-namespace",
    "access-denied",
    "lock-denied",
    "resource-denied",
    "rollback-failed",
    "data-exists",
    "data-missing",
    "operation-not-supported",
    "operation-failed",
    "partial-operation",
    "malformed-message",
};
static_assert(std::size(kTagNames) == ZR_ERROR_TAG_MALFORMED_MESSAGE + 1);

// The error-info elements that appendix A of RFC 6241 asks for.
struct Info {
    uint32_t tag;
    bool hasElement, hasNamespace;
};
constexpr Info kInfos[] = {
    {ZR_ERROR_TAG_MISSING_ELEMENT, true, false},   {ZR_ERROR_TAG_BAD_ELEMENT, true, false},
    {ZR_ERROR_TAG_UNKNOWN_ELEMENT, true, false},   {ZR_ERROR_TAG_UNKNOWN_NAMESPACE, true, true},
    {ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE, true, false}, {ZR_ERROR_TAG_BAD_ATTRIBUTE, true, false},
};

using Text = std::pmr::string;

class PathWriter {
public:
    PathWriter(Text &out, std::pmr::vector<ZrDataPrefix> &prefixes) : out_(out), prefixes_(prefixes)
    {
    }

    void Write(const Fault &fault)
    {
        std::pmr::vector<const Element *> steps(out_.get_allocator().resource());
        for (const Element *at = fault.at; at != nullptr && at->parent != nullptr; at = at->parent)
            steps.push_back(at);
        for (auto step = steps.rbegin(); step != steps.rend(); ++step)
            WriteStep(**step);
        if (!fault.child.empty()) {
            out_ += '/';
            WriteName(fault.childModule, fault.child);
        }
        if (out_.empty())
            out_ += '/';
    }

private:
    void WriteName(const PlanModule *module, std::string_view name)
    {
        if (module != nullptr) {
            (out_ += module->name) += ':';
            auto isKnown = [&](const ZrDataPrefix &known) { return known.prefix == module->name; };
            if (std::none_of(prefixes_.begin(), prefixes_.end(), isKnown))
                prefixes_.push_back(
                    {module->name.data(), reinterpret_cast<const char *>(module->xml.href)});
        }
        out_ += name;
    }
    void WriteStep(const Element &element)
    {
        const PlanNode &plan = *element.plan;
        out_ += '/';
        WriteName(plan.module, plan.name);
        if (plan.kind == ZR_NODE_LEAF_LIST) {
            out_ += "[.=";
            AppendLiteral(out_, element.value);
            out_ += ']';
        } else if (plan.kind == ZR_NODE_LIST) {
            WriteEntry(element);
        }
    }
    // By the keys, or by the position where there are none, or not all are there.
    void WriteEntry(const Element &entry)
    {
        std::span<const PlanNode *> keys = entry.plan->keys;
        bool isWhole = std::all_of(keys.begin(), keys.end(), [&](const PlanNode *key) {
            return entry.firsts[key->slot] != nullptr;
        });
        if (keys.empty() || !isWhole) {
            uint32_t position = 1;
            for (const Element *at = entry.parent->firsts[entry.plan->slot]; at != &entry;
                 at = at->nextSame)
                ++position;
            std::array<char, 12> digits;
            out_ += '[';
            out_.append(digits.data(),
                        std::to_chars(digits.data(), digits.data() + digits.size(), position).ptr);
            out_ += ']';
            return;
        }
        for (const PlanNode *key : keys) {
            out_ += '[';
            WriteName(key->module, key->name);
            out_ += '=';
            AppendLiteral(out_, entry.firsts[key->slot]->value);
            out_ += ']';
        }
    }

    Text &out_;
    std::pmr::vector<ZrDataPrefix> &prefixes_;
};

void AppendEscaped(Text &out, std::string_view text)
{
    for (char c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
}

void AppendElement(Text &out, std::string_view name, std::string_view content,
                   std::string_view attributes = {})
{
    (((out += '<') += name) += attributes) += '>';
    AppendEscaped(out, content);
    ((out += "</") += name) += '>';
}

void AppendInfo(Text &out, const ZrDataError &error, std::string_view badNamespace)
{
    auto info = std::find_if(std::begin(kInfos), std::end(kInfos),
                             [&](const Info &row) { return row.tag == error.tag; });
    if (info == std::end(kInfos) || error.badElement == nullptr)
        return;
    out += "<error-info>";
    AppendElement(out, "bad-element", error.badElement);
    if (info->hasNamespace)
        AppendElement(out, "bad-namespace", badNamespace);
    out += "</error-info>";
}

std::string_view NamespaceOf(const Fault &fault)
{
    return fault.source == nullptr || fault.source->ns == nullptr ? std::string_view()
                                                                  : View(fault.source->ns->href);
}

void AppendRpcError(Text &out, const ZrDataError &error, std::string_view badNamespace)
{
    out += "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">";
    bool isOfText = error.tag == ZR_ERROR_TAG_MALFORMED_MESSAGE;
    AppendElement(out, "error-type", isOfText ? "rpc" : "application");
    AppendElement(out, "error-tag", NameOfTag(error.tag));
    AppendElement(out, "error-severity", "error");
    if (error.appTag != nullptr)
        AppendElement(out, "error-app-tag", error.appTag);
    Text declarations(out.get_allocator());
    for (size_t i = 0; i < error.prefixCount; ++i) {
        ((declarations += " xmlns:") += error.prefixes[i].prefix) += "=\"";
        AppendEscaped(declarations, error.prefixes[i].namespaceUri);
        declarations += '"';
    }
    AppendElement(out, "error-path", error.path, declarations);
    AppendElement(out, "error-message", error.message, " xml:lang=\"en\"");
    AppendInfo(out, error, badNamespace);
    out += "</rpc-error>";
}

uint32_t LineOf(const Fault &fault)
{
    const xmlNode *source = fault.source;
    for (const Element *at = fault.at; source == nullptr && at != nullptr; at = at->parent)
        source = at->source; // a default has the line of what it stands in
    if (source == nullptr)
        return fault.line;
    if (const JsonNode *json = AsJson(source))
        return json->line;
    long line = xmlGetLineNo(const_cast<xmlNode *>(source));
    return line > 0 ? static_cast<uint32_t>(line) : 0;
}

} // namespace

const char *NameOfTag(uint32_t tag)
{
    return tag < std::size(kTagNames) ? kTagNames[tag] : nullptr;
}

ZrDataError Result::Record(const Fault &fault)
{
    Text path(&memory);
    std::pmr::vector<ZrDataPrefix> prefixes(&memory);
    PathWriter(path, prefixes).Write(fault);
    auto *kept = arena.NewArray<ZrDataPrefix>(prefixes.size());
    for (size_t i = 0; i < prefixes.size(); ++i)
        kept[i] = {arena.CopyText(prefixes[i].prefix), arena.CopyText(prefixes[i].namespaceUri)};
    auto copy = [&](const char *text) { return text == nullptr ? nullptr : arena.CopyText(text); };
    return {fault.tag,       copy(fault.appTag),  arena.CopyText(path),   kept,
            prefixes.size(), copy(fault.message), copy(fault.badElement), LineOf(fault)};
}

void Result::Take(Faults &faults, Faults &theWarnings)
{
    Text text(&memory);
    for (const Fault &fault : faults.Sorted()) {
        errors.push_back(Record(fault));
        text.clear();
        AppendRpcError(text, errors.back(), NamespaceOf(fault));
        errorTexts.push_back(arena.CopyText(text));
    }
    for (const Fault &warning : theWarnings.Sorted())
        warnings.push_back(Record(warning));
    errorsFound = faults.found();
    warningsFound = theWarnings.found();
}

} // namespace zr::data
