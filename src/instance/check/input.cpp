#include "instance/check/input.h"

#include "instance/tree/json.h"

namespace zr::data {

namespace {

const xmlNode *CheckRoot(Run &run, const xmlNode *root, const ParseFault &parseFault)
{
    if (root != nullptr) {
        CheckData(run, *root);
        return root;
    }
    Fault fault;
    fault.tag = ZR_ERROR_TAG_MALFORMED_MESSAGE;
    fault.line = parseFault.line;
    run.faults.Add(fault, {parseFault.message});
    return nullptr;
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
    return CheckRoot(run, ParseJson(run.plan, run.arena, run.memory, text, fault), fault);
}

} // namespace zr::data
