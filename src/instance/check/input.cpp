// SPDX-License-Identifier: Apache-2.0
#include "instance/check/input.h"

#include "instance/tree/json.h"
#include "instance/tree/json_node.h"

namespace zr::data {

namespace {

void AddMalformed(Run &run, uint32_t line, std::string_view message)
{
    Fault fault;
    fault.tag = ZR_ERROR_TAG_MALFORMED_MESSAGE;
    fault.line = line;
    run.faults.Add(fault, {message});
}

bool IsMessage(uint32_t kind)
{
    return kind == ZR_DATA_REQUEST || kind == ZR_DATA_NOTIFICATION;
}

} // namespace

const xmlNode *CheckXml(Run &run, std::string_view text, XmlDoc &doc)
{
    ParseFault fault(run.memory);
    doc = ParseXml(text.data(), text.size(), fault);
    if (!doc) {
        AddMalformed(run, fault.line, fault.message);
        return nullptr;
    }
    const xmlNode *root = xmlDocGetRootElement(doc.get());
    CheckDocument(run, *root);
    return root;
}

const xmlNode *CheckJson(Run &run, std::string_view text)
{
    ParseFault fault(run.memory);
    const xmlNode *root = ParseJson(run.plan, run.arena, run.memory, text, fault);
    if (root == nullptr) {
        AddMalformed(run, fault.line, fault.message);
        return nullptr;
    }
    if (IsMessage(run.options.kind)) {
        const xmlNode *message = root->children;
        if (message == nullptr || message->next != nullptr) {
            AddMalformed(run, AsJson(root)->line, "a message is the one member of the object");
            return nullptr;
        }
        root = message;
    }
    CheckDocument(run, *root);
    return root;
}

} // namespace zr::data
