// SPDX-License-Identifier: Apache-2.0
#include "support/run.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <cstring>
#include <functional>

#include "data/phases.h"
#include "data/tree_changes.h"

namespace zrtest {

namespace {

std::string Text(const char *text)
{
    return text != nullptr ? text : "-";
}

Record Read(const ZrdErrNode *error)
{
    Record record;
    if (error == nullptr)
        return record;
    record.type = ZR_GetErrorType(error);
    record.severity = ZR_GetErrorSeverity(error);
    record.tag = ZR_GetErrorTag(error);
    record.appTag = Text(ZR_GetErrorAppTag(error));
    record.path = Text(ZR_GetErrorPath(error));
    record.message = Text(ZR_GetErrorMessage(error));
    record.badElement = Text(ZR_GetBadElement(error));
    record.badAttribute = Text(ZR_GetBadAttribute(error));
    return record;
}

void ForEachNode(xmlNode *top, const std::function<void(xmlNode *)> &visit)
{
    for (xmlNode *node = top; node != nullptr;) {
        visit(node);
        if (node->children != nullptr && node->type == XML_ELEMENT_NODE) {
            node = node->children;
            continue;
        }
        while (node != top && node->next == nullptr)
            node = node->parent;
        node = node == top ? nullptr : node->next;
    }
}

struct NodeState {
    const xmlNode *node;
    unsigned short line;
    const void *psvi;
    bool operator==(const NodeState &other) const = default;
};

std::vector<NodeState> States(xmlNode *top)
{
    std::vector<NodeState> states;
    ForEachNode(top, [&](xmlNode *node) { states.push_back({node, node->line, node->psvi}); });
    return states;
}

void CollectDefault(void *element, void *userData)
{
    auto *node = static_cast<xmlNode *>(element);
    std::string text = reinterpret_cast<const char *>(node->name);
    if (node->children != nullptr && node->children->type == XML_TEXT_NODE)
        text += std::string("=") + reinterpret_cast<const char *>(node->children->content);
    EXPECT_EQ(node->_private, nullptr);
    EXPECT_EQ(node->line, 0);
    EXPECT_NE(node->parent, nullptr);
    static_cast<std::vector<std::string> *>(userData)->push_back(text);
}

uint32_t CollectDocument(const char *text, void *userData)
{
    *static_cast<std::string *>(userData) = text;
    return 0;
}

} // namespace

void PrintTo(const Record &record, std::ostream *out)
{
    if (record == Record{}) {
        *out << "valid";
        return;
    }
    *out << "{type " << ZR_GetErrorTypeName(record.type) << ", severity "
         << ZR_GetErrorSeverityName(record.severity) << ", tag " << ZR_GetErrorTagName(record.tag)
         << ", app tag " << record.appTag << ", path " << record.path << ", message "
         << record.message << ", bad element " << record.badElement << ", bad attribute "
         << record.badAttribute << "}";
}

Record Valid()
{
    return Record{};
}

Record Fault(uint32_t tag, const std::string &appTag, const std::string &path,
             const std::string &message, const std::string &badElement)
{
    return Record{4, 1, tag, appTag, path, message, badElement, "-"};
}

Record General()
{
    return Fault(ZR_ERROR_TAG_OPERATION_FAILED, "-", "/", "-", "-");
}

Record TakeRecord(ZrdErrNode *error)
{
    Record record = Read(error);
    ZR_FreeErrNode(error);
    return record;
}

Document::Document(const std::string &text)
    : doc_(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                         XML_PARSE_NOERROR | XML_PARSE_NOWARNING))
{
}

std::string Document::Dump() const
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpMemory(doc_, &text, &size);
    std::string result(reinterpret_cast<const char *>(text), static_cast<size_t>(size));
    xmlFree(text);
    return result;
}

xmlNode *Document::Find(const char *name) const
{
    xmlNode *found = nullptr;
    ForEachNode(top(), [&](xmlNode *node) {
        if (found == nullptr && node->type == XML_ELEMENT_NODE &&
            std::strcmp(reinterpret_cast<const char *>(node->name), name) == 0)
            found = node;
    });
    return found;
}

Outcome ValidateRpc(ZrCtx *ctx, const std::string &text)
{
    Outcome asText;
    std::string copy = text;
    asText.record = TakeRecord(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, copy.data(),
                                                          CollectDefault, &asText.defaults));

    Document document(text);
    if (document.get() == nullptr)
        return asText;
    std::string before = document.Dump();
    std::vector<NodeState> statesBefore = States(document.top());
    Outcome asTree;
    asTree.record = TakeRecord(ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_XML, document.top(),
                                                          CollectDefault, &asTree.defaults));
    asTree.document = document.Dump();
    EXPECT_EQ(asTree.record, asText.record) << text;
    EXPECT_EQ(asTree.defaults, asText.defaults) << text;
    if (asTree.record != Valid()) {
        EXPECT_EQ(asTree.document, before);
        EXPECT_TRUE(States(document.top()) == statesBefore) << text;
        EXPECT_TRUE(asTree.defaults.empty());
    }
    ForEachNode(document.top(), [](xmlNode *node) { EXPECT_EQ(node->_private, nullptr); });
    return asTree;
}

Record RpcRecord(ZrCtx *ctx, const std::string &text)
{
    return ValidateRpc(ctx, text).record;
}

NotifOutcome ValidateNotif(ZrCtx *ctx, const std::string &text)
{
    NotifOutcome outcome;
    outcome.status =
        ZR_CTX_ValidateNotifDataTree(ctx, text.c_str(), CollectDocument, &outcome.document);
    return outcome;
}

CheckRun::CheckRun(ZrCtx *ctx, uint32_t mode)
{
    ZRD_PAS_InitCheckAux(&check_, ctx, mode, nullptr, nullptr);
}

CheckRun::~CheckRun()
{
    ZR_FreeErrNode(check_.error);
    ZRD_PAS_ClearDefaultNodeList(&check_, 0);
}

Record CheckRun::record() const
{
    return Read(check_.error);
}

} // namespace zrtest
