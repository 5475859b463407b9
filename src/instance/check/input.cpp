#include "instance/check/input.h"

#include "instance/tree/json.h"

namespace zr::data {

namespace {

const xmlNode *CheckRoot(Run &run, const xmlNode *root, const ParseFault &parseFault)
{
    if (root != nullptr) {
        CheckDocument(run, *root);
        return root;
    }
    Fault fault;
    fault.tag = ZR_ERROR_TAG_MALFORMED_MESSAGE;
    fault.line = parseFault.line;
    run.faults.Add(fault, {parseFault.message});
    return nullptr;
}

// A message in JSON is the one member of the object.
const xmlNode *MessageIn(const xmlNode &wrapper)
{
    const xmlNode *member = xmlFirstElementChild(const_cast<xmlNode *>(&wrapper));
    bool isAlone =
        member != nullptr && member == xmlLastElementChild(const_cast<xmlNode *>(&wrapper));
    return isAlone ? member : &wrapper;
}

} // namespace

const xmlNode *CheckXml(Run &run, std::string_view text, XmlDoc &doc)
{
    ParseFault fault(run.memory);
    doc = ParseXml(text.data(), text.size(), fault);
    return CheckRoot(run, doc ? xmlDocGetRootElement(doc.get()) : nullptr, fault);
}

const xmlNode *CheckJson(Run &run, std::string_view text)
{
    ParseFault fault(run.memory);
    const xmlNode *root = ParseJson(run.plan, run.arena, run.memory, text, fault);
    bool isMessage =
        run.options.kind == ZR_DATA_REQUEST || run.options.kind == ZR_DATA_NOTIFICATION;
    return CheckRoot(run, root != nullptr && isMessage ? MessageIn(*root) : root, fault);
}

} // namespace zr::data
