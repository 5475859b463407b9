// SPDX-License-Identifier: Apache-2.0
#include "memory/scenario.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>

namespace zrtest {

namespace {

uint32_t AppendPiece(const char *text, uint32_t length, void *userData)
{
    static_cast<std::string *>(userData)->append(text, length);
    return 0;
}

void CountDefault(void *, void *userData)
{
    ++*static_cast<int *>(userData);
}

uint32_t TakeDocument(const char *text, void *userData)
{
    *static_cast<std::string *>(userData) = text;
    return 0;
}

const char *OrDash(const char *text)
{
    return text != nullptr ? text : "-";
}

std::string Describe(const ZrdErrNode *error)
{
    if (error == nullptr)
        return "valid";
    return std::to_string(ZR_GetErrorTag(error)) + " " + OrDash(ZR_GetErrorPath(error)) + " " +
           OrDash(ZR_GetErrorMessage(error)) + " " + OrDash(ZR_GetErrorAppTag(error)) + " " +
           OrDash(ZR_GetBadElement(error));
}

// An element in the namespace urn:m, also under the prefix m, whose text is the value.
class ValueElement {
public:
    explicit ValueElement(const char *value)
    {
        std::string text = "<v xmlns='urn:m' xmlns:m='urn:m'>" + std::string(value) + "</v>";
        doc_ = xmlReadMemory(text.c_str(), static_cast<int>(text.size()), nullptr, nullptr, 0);
    }
    ~ValueElement() { xmlFreeDoc(doc_); }
    ValueElement(const ValueElement &) = delete;
    ValueElement &operator=(const ValueElement &) = delete;
    const xmlNode *get() const { return xmlDocGetRootElement(doc_); }

private:
    xmlDoc *doc_;
};

} // namespace

void World::Status(const char *operation, uint32_t status, std::initializer_list<uint32_t> stated)
{
    EXPECT_NE(std::find(stated.begin(), stated.end(), status), stated.end())
        << operation << " gives " << status;
    Note(std::string(operation) + " " + std::to_string(status));
}

ZrNode *World::Node(const char *path)
{
    ZrNode *node = ZR_CTX_GetTargetNode(ctx_, path, nullptr);
    Note(std::string(path) + (node != nullptr ? " is there" : " is not there"));
    return node;
}

void World::SetDir(const std::string &name)
{
    Status("set directory", ZR_CTX_SetSearchDir(ctx_, (folder_.path() + "/" + name).c_str()),
           {ZR_OK, ZR_ERR_NO_MEMORY, ZR_ERR_BAD_DIR, ZR_ERR_INVALID});
}

void World::UnsetDir(const std::string &name)
{
    Status("unset directory", ZR_CTX_UnSetSearchDir(ctx_, (folder_.path() + "/" + name).c_str()),
           {ZR_OK, ZR_ERR_BAD_DIR});
}

void World::Load(const char *module)
{
    Status("load", ZR_CTX_LoadModule(ctx_, module),
           {ZR_OK, ZR_ERR_FAILED, ZR_ERR_NOT_FOUND, ZR_ERR_NO_MEMORY, ZR_ERR_INVALID});
}

void World::LoadText(const std::string &yin)
{
    Status("load text", ZR_CTX_LoadMemory(ctx_, yin.c_str()),
           {ZR_OK, ZR_ERR_FAILED, ZR_ERR_NO_MEMORY, ZR_ERR_INVALID});
}

void World::LoadBody(const std::string &name, const std::string &body)
{
    LoadText(ModuleText(name, body));
}

void World::Unload(const char *module)
{
    // The statuses of the modules that are loaded again are put together, so that any may result.
    uint32_t status = ZR_CTX_UnloadModule(ctx_, module);
    Note("unload " + std::to_string(status));
}

void World::Enable(const char *module, const char *feature)
{
    Status("enable", ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx_, module), feature),
           {ZR_OK, ZR_ERR_INVALID});
}

void World::Print(std::initializer_list<const char *> modules)
{
    for (const char *name : modules) {
        const ZrMod *module = ZR_CTX_GetModuleByModName(ctx_, name);
        if (module == nullptr)
            continue;
        std::string text;
        Status("print", ZR_MOD_PrintModelTree(module, AppendPiece, &text),
               {ZR_OK, ZR_ERR_NO_MEMORY});
        Note(text);
    }
}

void World::PrintNode(const char *path)
{
    std::string text;
    if (const ZrNode *node = Node(path))
        Status("print node", ZR_NODE_PrintNodesTree(node, AppendPiece, &text),
               {ZR_OK, ZR_ERR_NO_MEMORY});
    Note(text);
}

void World::Value(const char *path, const char *value)
{
    const ZrNode *leaf = Node(path);
    if (leaf == nullptr)
        return;
    ValueElement element(value);
    for (uint32_t status : {ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value),
                            ZR_NODE_ValidateValue(leaf, ZR_VALUE_XML, element.get())}) {
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_NO_MEMORY ||
                    (status >= ZR_ERR_VALUE_NO_BODY && status <= ZR_ERR_VALUE_EMPTY))
            << path << " of " << value << " gives " << status;
        Note(std::to_string(status));
    }
    Note(ZR_NODE_FindRealTypeMatchedValue(leaf, ZR_VALUE_STRING, value) != nullptr ? "matched"
                                                                                   : "refused");
}

void World::Request(const std::string &xml)
{
    int defaults = 0;
    std::string text = xml;
    ZrdErrNode *error =
        ZR_CTX_ValidateRpcDataTree(ctx_, ZR_VALUE_STRING, text.data(), CountDefault, &defaults);
    if (error != nullptr) {
        EXPECT_EQ(ZR_GetErrorType(error), uint32_t{ZR_ERROR_TYPE_APPLICATION});
        EXPECT_EQ(ZR_GetErrorSeverity(error), uint32_t{ZR_ERROR_SEVERITY_ERROR});
        EXPECT_NE(ZR_GetErrorTag(error), 0u);
        EXPECT_EQ(defaults, 0);
    }
    Note(Describe(error) + " " + std::to_string(defaults));
    ZR_FreeErrNode(error);
}

void World::Notify(const std::string &xml)
{
    std::string document;
    Status("notify", ZR_CTX_ValidateNotifDataTree(ctx_, xml.c_str(), TakeDocument, &document),
           {ZR_OK, ZR_ERR_INVALID});
    Note(document);
}

} // namespace zrtest
