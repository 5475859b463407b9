// SPDX-License-Identifier: Apache-2.0
#include "instance/check/envelope.h"

#include <string>

#include "instance/base/text.h"
#include "instance/check/edit.h"
#include "instance/tree/value.h"

namespace zr::data {

namespace {

constexpr std::string_view kDateAndTime =
    "\\d{4}-\\d{2}-\\d{2}T\\d{2}:\\d{2}:\\d{2}(\\.\\d+)?(Z|[\\+\\-]\\d{2}:\\d{2})";

struct EnvelopePrefix {
    const char *prefix;
    std::string_view ns;
};
// What paths of faults call the namespaces of envelopes.
constexpr EnvelopePrefix kPrefixes[] = {
    {"nc", kNetconfNamespace},
    {"yang", kYangNamespace},
    {"ncEvent", kEventNamespace},
    {"ncds", kNmdaNamespace},
};

const PlanModule *MakeModule(Run &run, const xmlNs *ns)
{
    for (const EnvelopePrefix &row : kPrefixes) {
        if (ns == nullptr || View(ns->href) != row.ns)
            continue;
        auto *module = run.arena.New<PlanModule>();
        module->name = row.prefix;
        module->xml.href = XmlText(row.ns.data());
        return module;
    }
    return nullptr;
}

std::pmr::string TextOf(Run &run, const xmlNode &element)
{
    std::pmr::string text(run.memory);
    AppendText(text, element);
    return text;
}

void AddMissing(Run &run, const xmlNode &envelope, const char *name)
{
    Fault fault = FaultOfEnvelope(run, envelope, ZR_ERROR_TAG_MISSING_ELEMENT);
    fault.badElement = name;
    run.faults.Add(fault, {"\"", name, "\" is missing in \"", View(envelope.name), "\""});
}

void AddInvalid(Run &run, const xmlNode &element, const char *why)
{
    std::pmr::string text = TextOf(run, element);
    run.faults.Add(FaultOfEnvelope(run, element, ZR_ERROR_TAG_INVALID_VALUE),
                   {"\"", text, "\" is no value of \"", View(element.name), "\": ", why});
}

bool HasAttribute(const xmlNode &element, std::string_view name)
{
    for (const xmlAttr *at = element.properties; at != nullptr; at = at->next)
        if (at->ns == nullptr && View(at->name) == name)
            return true;
    return false;
}

} // namespace

bool IsNamed(const xmlNode &element, std::string_view name, std::string_view ns)
{
    return element.type == XML_ELEMENT_NODE && element.ns != nullptr &&
           View(element.name) == name && View(element.ns->href) == ns;
}

const xmlNode *FindInner(const xmlNode &element, std::string_view name, std::string_view ns)
{
    for (const xmlNode *at = element.children; at != nullptr; at = at->next)
        if (IsNamed(*at, name, ns))
            return at;
    return nullptr;
}

Fault FaultOfEnvelope(Run &run, const xmlNode &element, uint32_t tag)
{
    Fault fault;
    fault.source = &element;
    fault.tag = tag;
    fault.childModule = MakeModule(run, element.ns);
    fault.child = View(element.name);
    fault.badElement = reinterpret_cast<const char *>(element.name);
    fault.isOfEnvelope = true;
    return fault;
}

const xmlNode *TakeOnly(Run &run, const xmlNode &envelope, const xmlNode *passedOver,
                        const char *what)
{
    const xmlNode *found = nullptr;
    for (const xmlNode *at = envelope.children; at != nullptr; at = at->next) {
        if (IsText(*at) && !IsBlank(View(at->content)))
            run.faults.Add(FaultOfEnvelope(run, envelope, ZR_ERROR_TAG_BAD_ELEMENT),
                           {"text stands among elements"});
        if (at->type != XML_ELEMENT_NODE || at == passedOver)
            continue;
        if (found != nullptr) {
            run.faults.Add(FaultOfEnvelope(run, *at, ZR_ERROR_TAG_BAD_ELEMENT),
                           {"\"", View(envelope.name), "\" holds one ", what, " alone"});
            return nullptr;
        }
        found = at;
    }
    if (found == nullptr) {
        Fault fault = FaultOfEnvelope(run, envelope, ZR_ERROR_TAG_MISSING_ELEMENT);
        run.faults.Add(fault, {"no ", what, " stands in \"", View(envelope.name), "\""});
    }
    return found;
}

const xmlNode *OpenRpc(Run &run, const xmlNode &root)
{
    if (!IsNamed(root, "rpc", kNetconfNamespace))
        return &root;
    if (!HasAttribute(root, "message-id")) { // RFC 6241, section 4.1
        Fault fault = FaultOfEnvelope(run, root, ZR_ERROR_TAG_MISSING_ATTRIBUTE);
        fault.badAttribute = "message-id";
        run.faults.Add(fault, {"attribute \"message-id\" is missing"});
    }
    return TakeOnly(run, root, nullptr, "operation");
}

const xmlNode *OpenEdit(Run &run, const xmlNode &root, Operation &defaultOperation)
{
    const xmlNode *operation = OpenRpc(run, root);
    if (operation == nullptr)
        return nullptr;
    const char *ns = IsNamed(*operation, "edit-config", kNetconfNamespace) ? kNetconfNamespace
                     : IsNamed(*operation, "edit-data", kNmdaNamespace)    ? kNmdaNamespace
                                                                           : nullptr;
    if (ns == nullptr)
        return operation;
    if (const xmlNode *given = FindInner(*operation, "default-operation", ns)) {
        bool isKnown =
            ReadOperation(TextOf(run, *given), defaultOperation) &&
            (defaultOperation == Operation::None || defaultOperation == Operation::Merge ||
             defaultOperation == Operation::Replace);
        if (!isKnown) {
            defaultOperation = Operation::Merge;
            AddInvalid(run, *given, "it is none of merge, replace and none");
        }
    }
    const xmlNode *config = FindInner(*operation, "config", ns);
    if (config == nullptr)
        AddMissing(run, *operation, "config");
    return config;
}

const xmlNode *OpenNotification(Run &run, const xmlNode &root)
{
    if (!IsNamed(root, "notification", kEventNamespace))
        return &root;
    const xmlNode *time = FindInner(root, "eventTime", kEventNamespace);
    if (time == nullptr) // RFC 5277, section 2.2.1
        AddMissing(run, root, "eventTime");
    else if (!Matches(run.evaluator.patterns.Get(kDateAndTime), TextOf(run, *time).c_str()))
        AddInvalid(run, *time, "it is no date and time");
    return TakeOnly(run, root, time, "notification");
}

} // namespace zr::data
