// SPDX-License-Identifier: Apache-2.0
#include "instance/tree/value.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "instance/base/text.h"
#include "instance/tree/json_node.h"
#include "instance/tree/number.h"
#include "shared/names.h"
#include "shared/xpath_tokens.h"

namespace zr::data {

namespace {

// A leafref may point to a leafref; who points at himself is stopped here.
constexpr uint32_t kMostLeafrefs = 64;

using ReadFunc = ValueFault (*)(const ValueScope &, const Type &, std::string_view, Canonical &);

constexpr const char *kWrongLength = "its length is out of range";

// ---- texts

// U+FDD0 to U+FDEF and the last two of each plane, which XML takes (RFC 7950, section 9.4).
bool HasNoncharacter(std::string_view text)
{
    auto isHigh = [](char c) { return static_cast<unsigned char>(c) >= 0xEF; };
    for (auto at = std::find_if(text.begin(), text.end(), isHigh); at != text.end();
         at = std::find_if(at + 1, text.end(), isHigh)) {
        auto byte = [&](int i) { // what XML takes is whole
            return static_cast<unsigned char>(text.end() - at > i ? at[i] : 0);
        };
        if (byte(0) == 0xEF && byte(1) == 0xB7 && byte(2) >= 0x90 && byte(2) <= 0xAF)
            return true;
        if (byte(0) >= 0xF0 && (byte(1) & 0x0F) == 0x0F && byte(2) == 0xBF && byte(3) >= 0xBE)
            return true;
    }
    return false;
}

ValueFault ReadString(const ValueScope &, const Type &type, std::string_view text, Canonical &out)
{
    out += text;
    if (HasNoncharacter(text))
        return "it holds a character that is none";
    if (!type.restrictions.empty())
        if (ValueFault fault = CheckRanges(type, CountCharacters(text), false, kWrongLength);
            fault.text != nullptr)
            return fault;
    for (const PatternUse &use : type.patterns)
        if (Matches(*use.pattern, out.c_str()) == use.inverted)
            return {"a pattern refuses it", &use.refusal};
    return {};
}

// Base64 (RFC 4648, section 4); lines may be broken.
ValueFault ReadBinary(const ValueScope &, const Type &type, std::string_view text, Canonical &out)
{
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::copy_if(text.begin(), text.end(), std::back_inserter(out),
                 [](char c) { return !IsBlank(c); });
    size_t digits = out.size();
    while (digits != 0 && out[digits - 1] == '=' && out.size() - digits < 2)
        --digits;
    if (out.size() % 4 != 0 || std::string_view(out).substr(0, digits).find_first_not_of(
                                   kAlphabet) != std::string_view::npos)
        return "it is not base64";
    uint64_t octets = digits / 4 * 3 + (digits % 4 == 0 ? 0 : digits % 4 - 1);
    return CheckRanges(type, octets, false, kWrongLength);
}

ValueFault ReadBoolean(const ValueScope &, const Type &, std::string_view text, Canonical &out)
{
    out = text;
    return text == "true" || text == "false" ? nullptr : "it is neither true nor false";
}

ValueFault ReadEmpty(const ValueScope &, const Type &, std::string_view text, Canonical &)
{
    return text.empty() ? nullptr : "the type empty takes no text";
}

// ---- names

// One whose features are off is none.
const NamedValue *FindName(const Type &type, std::string_view name)
{
    auto found = std::find_if(type.names.begin(), type.names.end(), [&](const NamedValue &row) {
        return row.name == name && row.isEnabled;
    });
    return found == type.names.end() ? nullptr : &*found;
}

ValueFault ReadEnumeration(const ValueScope &, const Type &type, std::string_view text,
                           Canonical &out)
{
    out = text;
    return FindName(type, text) != nullptr ? nullptr : "it is none of the enums";
}

// The canonical order is that of the positions (RFC 7950, section 9.7.2).
ValueFault ReadBits(const ValueScope &, const Type &type, std::string_view text, Canonical &out)
{
    std::pmr::vector<const NamedValue *> bits(out.get_allocator().resource());
    for (std::string_view word = TakeWord(text); !word.empty(); word = TakeWord(text)) {
        const NamedValue *bit = FindName(type, word);
        if (bit == nullptr)
            return "it names a bit that is not there";
        bits.push_back(bit);
    }
    std::sort(bits.begin(), bits.end(),
              [](const NamedValue *a, const NamedValue *b) { return a->value < b->value; });
    if (std::adjacent_find(bits.begin(), bits.end()) != bits.end())
        return "it names a bit twice";
    for (const NamedValue *bit : bits)
        (out += out.empty() ? "" : " ") += bit->name;
    return nullptr;
}

} // namespace

const PlanModule *FindPrefix(const ValueScope &scope, std::string_view prefix)
{
    const Plan &plan = scope.plan;
    if (scope.element == nullptr) {
        const PlanModule *own = scope.leaf.module;
        if (prefix.empty() || prefix == View(ZR_MOD_GetModulePrefix(own->source)))
            return own;
        return plan.FindModule(prefix);
    }
    if (AsJson(scope.element) != nullptr) // RFC 7951, section 6.8
        return prefix.empty() ? plan.FindNamespace(View(scope.element->ns->href))
                              : plan.FindModule(prefix);
    // Only read: the declaration of "xml" alone would be added to the tree.
    if (prefix == "xml")
        return nullptr;
    std::pmr::string name(prefix, &plan.memory);
    auto *element = const_cast<xmlNode *>(scope.element);
    const xmlNs *ns =
        xmlSearchNs(element->doc, element, prefix.empty() ? nullptr : XmlText(name.c_str()));
    return ns == nullptr ? nullptr : plan.FindNamespace(View(ns->href));
}

namespace {

ValueFault ReadIdentity(const ValueScope &scope, const Type &type, std::string_view text,
                        Canonical &out)
{
    const Identity *identity = FindIdentity(scope, text);
    if (identity == nullptr)
        return "there is no such identity";
    out = identity->qualified;
    bool isDerived = std::all_of(
        type.identityBases.begin(), type.identityBases.end(),
        [&](const Identity *base) { return base != nullptr && IsDerived(*identity, *base); });
    return isDerived ? nullptr : "the identity is not derived from the base";
}

// ---- instance-identifiers

// Reads "/p:a/p:b[p:key='x'][p:other='y']/p:c[.='z']/p:d[3]" (RFC 7950, section 9.13) into a path
// with names of modules, spaces left out.
class PathReader {
public:
    PathReader(const ValueScope &scope, std::string_view text, Canonical &out)
        : scope_(scope), tokens_(text), out_(out)
    {
    }

    const char *Read()
    {
        const PlanNode *at = &scope_.plan.root;
        do {
            if (!Take(XPathKind::Slash, "/"))
                return kMalformed;
            at = TakeName(*at);
            if (at == nullptr || !TakePredicates(*at))
                return fault_;
        } while (tokens_.at().kind != XPathKind::End);
        return nullptr;
    }

private:
    static constexpr const char *kMalformed = "it is no instance-identifier";

    bool Take(XPathKind kind, std::string_view text = {})
    {
        const XPathToken &token = tokens_.at();
        if (token.kind != kind || (!text.empty() && token.text != text))
            return false;
        out_ += token.text;
        tokens_.Advance();
        return true;
    }
    // Every name has a prefix in XML. In a default it may be left out, and in JSON where the module
    // is that of the node before (RFC 7951, section 6.11).
    const PlanNode *TakeName(const PlanNode &parent)
    {
        fault_ = kMalformed;
        XPathToken token = tokens_.at();
        if (token.kind != XPathKind::Name)
            return nullptr;
        QName name = SplitName(token.text);
        bool inherits = AsJson(scope_.element) != nullptr && parent.module != nullptr;
        if (name.prefix.empty() && scope_.element != nullptr && !inherits)
            return nullptr;
        fault_ = "it leads to no node of the schema";
        const PlanModule *module =
            name.prefix.empty() && inherits ? parent.module : FindPrefix(scope_, name.prefix);
        if (module == nullptr)
            return nullptr;
        ((out_ += module->name) += ':') += name.name;
        tokens_.Advance();
        const PlanNode *child = scope_.plan.FindChild(parent, module, name.name);
        return child != nullptr ? child
                                : Plan::FindOwnMessage(scope_.leaf, parent, module, name.name);
    }
    // All keys of a list, the value of a leaf-list, or the position in a list without keys.
    bool TakePredicates(const PlanNode &node)
    {
        bool hasPosition = node.kind == ZR_NODE_LIST && node.keys.empty();
        std::pmr::vector<const PlanNode *> named(out_.get_allocator().resource());
        while (tokens_.at().kind == XPathKind::OpenBracket) {
            Take(XPathKind::OpenBracket);
            fault_ = kMalformed;
            const PlanNode *leaf = hasPosition ? &node : TakeTested(node);
            if (leaf == nullptr || std::find(named.begin(), named.end(), leaf) != named.end())
                return false;
            named.push_back(leaf);
            bool isTaken = hasPosition ? Take(XPathKind::Number)
                                       : Take(XPathKind::Operator, "=") && TakeValue(*leaf);
            if (!isTaken || !Take(XPathKind::CloseBracket))
                return false;
        }
        fault_ = "it does not name all keys of a list";
        return named.size() >= node.keys.size();
    }
    // What a predicate tests: a leaf-list itself, or a key.
    const PlanNode *TakeTested(const PlanNode &node)
    {
        if (node.kind == ZR_NODE_LEAF_LIST)
            return Take(XPathKind::Dot) ? &node : nullptr;
        const PlanNode *leaf = TakeName(node);
        if (leaf != nullptr)
            fault_ = kMalformed;
        bool isKey = std::find(node.keys.begin(), node.keys.end(), leaf) != node.keys.end();
        return isKey ? leaf : nullptr;
    }
    // A value in its canonical form. One that its type does not take is none of any instance.
    bool TakeValue(const PlanNode &leaf)
    {
        const XPathToken token = tokens_.at();
        if (token.kind != XPathKind::Literal)
            return false;
        std::string_view text = token.text.substr(1, token.text.size() - 2);
        std::pmr::string value(out_.get_allocator());
        ValueScope scope = scope_;
        scope.isQuoted = true;
        bool isValue = ReadValue(scope, *leaf.type, text, value).fault == nullptr;
        ((out_ += token.text.front()) += isValue ? std::string_view(value) : text) +=
            token.text.front();
        tokens_.Advance();
        return true;
    }

    const ValueScope &scope_;
    XPathTokens tokens_;
    Canonical &out_;
    const char *fault_ = kMalformed;
};

ValueFault ReadPath(const ValueScope &scope, const Type &, std::string_view text, Canonical &out)
{
    return PathReader(scope, text, out).Read();
}

// By ZrtBuiltInType; null where ReadValue() itself knows.
constexpr ReadFunc kReaders[] = {
    nullptr,         // derived
    ReadBinary,      // binary
    ReadBits,        // bits
    ReadBoolean,     // boolean
    ReadDecimal,     // decimal64
    ReadEmpty,       // empty
    ReadEnumeration, // enumeration
    ReadIdentity,    // identityref
    ReadPath,        // instance-identifier
    ReadInteger,     // int8
    ReadInteger,     // int16
    ReadInteger,     // int32
    ReadInteger,     // int64
    nullptr,         // leafref
    ReadString,      // string
    ReadInteger,     // uint8
    ReadInteger,     // uint16
    ReadInteger,     // uint32
    ReadInteger,     // uint64
    nullptr,         // union
    nullptr,         // none
};
static_assert(std::size(kReaders) == ZRT_TYPE_NONE + 1);

} // namespace

bool Matches(const Pattern &pattern, const char *text)
{
    xmlRegexp *compiled = pattern.compiled.load(std::memory_order_acquire);
    if (compiled == nullptr) {
        xmlRegexp *made = xmlRegexpCompile(XmlText(pattern.text.data()));
        if (made == nullptr) // the loader of sources refuses those that are no patterns
            return false;
        if (pattern.compiled.compare_exchange_strong(compiled, made))
            compiled = made;
        else
            xmlRegFreeRegexp(made);
    }
    return xmlRegexpExec(compiled, XmlText(text)) == 1;
}

PatternCache::~PatternCache()
{
    for (auto &[text, pattern] : patterns_)
        xmlRegFreeRegexp(pattern->compiled.load());
}

const Pattern &PatternCache::Get(std::string_view text)
{
    auto found = patterns_.find(text);
    if (found != patterns_.end())
        return *found->second;
    auto *pattern = arena_.New<Pattern>();
    pattern->text = {arena_.CopyText(text), text.size()};
    patterns_.emplace(pattern->text, pattern);
    return *pattern;
}

const Identity *FindIdentity(const ValueScope &scope, std::string_view text)
{
    QName name = SplitName(text);
    bool isName = name.prefix.empty() == (name.name.size() == text.size()); // ":x" is none
    const PlanModule *module = isName ? FindPrefix(scope, name.prefix) : nullptr;
    if (module == nullptr)
        return nullptr;
    std::pmr::string qualified(module->name, &scope.plan.memory);
    return scope.plan.FindIdentity((qualified += ':') += name.name);
}

ValueResult ReadValue(const ValueScope &scope, const Type &given, std::string_view text,
                      std::pmr::string &canonical)
{
    const Type *type = &given;
    const PlanNode *leaf = &scope.leaf;
    for (uint32_t steps = 0; type->base == ZRT_TYPE_LEAFREF; ++steps) {
        canonical = text;
        if (type->target == nullptr || steps == kMostLeafrefs)
            return {nullptr, type};
        leaf = type->target;
        type = leaf->type;
    }
    canonical.clear();
    // Prefixes of a default are those of the node that has it.
    ValueScope inner{scope.plan, scope.element == nullptr ? scope.leaf : *leaf, scope.element,
                     scope.isQuoted};
    if (type->base == ZRT_TYPE_UNION)
        return ReadMember(inner, *type, 0, text, canonical);
    if (const JsonNode *value = scope.isQuoted ? nullptr : AsJson(scope.element))
        if (const char *fault = CheckKind(*value, type->base))
            return {fault, type};
    ReadFunc read = kReaders[type->base];
    if (read != nullptr) {
        ValueFault fault = read(inner, *type, text, canonical);
        return {fault.text, type, 0, fault.refusal};
    }
    canonical = text;
    return {nullptr, type};
}

ValueResult ReadMember(const ValueScope &scope, const Type &type, uint32_t first,
                       std::string_view text, std::pmr::string &canonical)
{
    for (uint32_t number = first; number < type.members.size(); ++number) {
        ValueResult result = ReadValue(scope, *type.members[number], text, canonical);
        result.member = number;
        if (result.fault == nullptr)
            return result;
    }
    return {"no member of the union takes it", &type};
}

bool IsDefaultValue(const Plan &plan, const PlanNode &leaf, std::string_view canonical)
{
    std::pmr::string value(&plan.memory);
    return std::any_of(leaf.defaults.begin(), leaf.defaults.end(), [&](std::string_view text) {
        return ReadValue({plan, leaf, nullptr}, *leaf.type, text, value).fault == nullptr &&
               value == canonical;
    });
}

} // namespace zr::data
