// SPDX-License-Identifier: Apache-2.0
#include "instance/errors/rpc_error.h"

#include <algorithm>
#include <iterator>

#include "instance/base/text.h"
#include "instance/errors/path.h"
#include "shared/escapes.h"

namespace zr::data {

namespace {

using Text = std::pmr::string;

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
    bool hasAttribute, hasNamespace;
};
constexpr Info kInfos[] = {
    {ZR_ERROR_TAG_MISSING_ATTRIBUTE, true, false}, {ZR_ERROR_TAG_BAD_ATTRIBUTE, true, false},
    {ZR_ERROR_TAG_UNKNOWN_ATTRIBUTE, true, false}, {ZR_ERROR_TAG_MISSING_ELEMENT, false, false},
    {ZR_ERROR_TAG_BAD_ELEMENT, false, false},      {ZR_ERROR_TAG_UNKNOWN_ELEMENT, false, false},
    {ZR_ERROR_TAG_UNKNOWN_NAMESPACE, false, true},
};

constexpr std::string_view kOfYang = " xmlns=\"urn:ietf:params:xml:ns:yang:1\"";

void AppendElement(Text &out, std::string_view name, std::string_view content,
                   std::string_view attributes = {})
{
    (((out += '<') += name) += attributes) += '>';
    AppendEscaped(out, content, EscapeInText);
    ((out += "</") += name) += '>';
}

void AppendDeclaration(Text &out, const ZrDataPrefix &prefix)
{
    ((out += " xmlns:") += prefix.prefix) += "=\"";
    AppendEscaped(out, prefix.namespaceUri, EscapeInAttribute);
    out += '"';
}

std::string_view NamespaceOf(const Fault &fault)
{
    return fault.source == nullptr || fault.source->ns == nullptr ? std::string_view()
                                                                  : View(fault.source->ns->href);
}

// RFC 7950, section 15.1: the leafs that are the same as another entry's.
void AppendNotUnique(Text &out, const Element &leaf)
{
    Text path(out.get_allocator()), attributes(kOfYang, out.get_allocator());
    std::pmr::vector<ZrDataPrefix> prefixes(out.get_allocator().resource());
    AppendPath(leaf, path, prefixes);
    for (const ZrDataPrefix &prefix : prefixes)
        AppendDeclaration(attributes, prefix);
    AppendElement(out, "non-unique", path, attributes);
}

// The content of error-info; nothing where there is none.
void AppendInfo(Text &out, const Fault &fault, const ZrDataError &error)
{
    auto info = std::find_if(std::begin(kInfos), std::end(kInfos),
                             [&](const Info &row) { return row.tag == error.tag; });
    if (info != std::end(kInfos)) {
        if (info->hasAttribute && error.badAttribute != nullptr)
            AppendElement(out, "bad-attribute", error.badAttribute);
        if (error.badElement != nullptr)
            AppendElement(out, "bad-element", error.badElement);
        if (info->hasNamespace)
            AppendElement(out, "bad-namespace", NamespaceOf(fault));
    }
    for (const Element *leaf : fault.notUnique)
        AppendNotUnique(out, *leaf);
    if (fault.missingChoice != nullptr) // section 15.6
        AppendElement(out, "missing-choice", fault.missingChoice, kOfYang);
}

} // namespace

const char *NameOfTag(uint32_t tag)
{
    return tag < std::size(kTagNames) ? kTagNames[tag] : nullptr;
}

void AppendRpcError(Text &out, const Fault &fault, const ZrDataError &error)
{
    out += "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">";
    bool isOfRpc = fault.isOfEnvelope || error.tag == ZR_ERROR_TAG_MALFORMED_MESSAGE;
    AppendElement(out, "error-type", isOfRpc ? "rpc" : "application");
    AppendElement(out, "error-tag", NameOfTag(error.tag));
    AppendElement(out, "error-severity", "error");
    if (error.appTag != nullptr)
        AppendElement(out, "error-app-tag", error.appTag);
    Text declarations(out.get_allocator());
    for (size_t i = 0; i < error.prefixCount; ++i)
        AppendDeclaration(declarations, error.prefixes[i]);
    AppendElement(out, "error-path", error.path, declarations);
    AppendElement(out, "error-message", error.message, " xml:lang=\"en\"");
    Text info(out.get_allocator());
    AppendInfo(info, fault, error);
    if (!info.empty())
        ((out += "<error-info>") += info) += "</error-info>";
    out += "</rpc-error>";
}

} // namespace zr::data
