// SPDX-License-Identifier: Apache-2.0
// What a server tells of its schema, and how a client finds its way through data: the whole of it
// by the public interface.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <zrschema/zrschema.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

// The modules of a context as a server would list them in its YANG library (RFC 8525).
struct Inventory {
    std::ostringstream text;
};

uint32_t NoteFeature(const char *name, uint32_t enabled, void *userData)
{
    static_cast<Inventory *>(userData)->text << "  feature " << name << (enabled ? " on" : " off")
                                             << "\n";
    return 0;
}

uint32_t NoteImport(const char *moduleName, const char *prefix, const char *revision,
                    void *userData)
{
    static_cast<Inventory *>(userData)->text << "  import " << moduleName << " as " << prefix << " "
                                             << (revision ? revision : "(not loaded)") << "\n";
    return 0;
}

uint32_t NoteSubmodule(const char *name, void *userData)
{
    static_cast<Inventory *>(userData)->text << "  submodule " << name << "\n";
    return 0;
}

uint32_t NoteDeviation(const char *path, const char *moduleName, uint32_t applied, void *userData)
{
    static_cast<Inventory *>(userData)->text << "  deviation of " << moduleName << " " << path
                                             << (applied ? "" : " (pending)") << "\n";
    return 0;
}

uint32_t NoteModule(ZrMod *module, void *userData)
{
    const char *description = ZR_MOD_GetDescription(module);
    static_cast<Inventory *>(userData)->text
        << ZR_MOD_GetModuleName(module) << "@" << ZR_MOD_GetRevision(module) << " "
        << ZR_MOD_GetYangVersion(module) << " " << (description ? description : "-") << "\n";
    ZR_MOD_ScanAllSubmodules(module, NoteSubmodule, userData);
    ZR_MOD_ScanAllImports(module, NoteImport, userData);
    ZR_MOD_ScanAllFeatures(module, NoteFeature, userData);
    ZR_MOD_ScanAllDeviations(module, NoteDeviation, userData);
    return 0;
}

class Data : public testing::Test {
protected:
    Data() : ctx(ZR_CTX_Create(ZR_CTX_LOAD_IMPORTS | ZR_CTX_KEEP_DESCRIPTIONS))
    {
        EXPECT_EQ(ZR_CTX_SetSearchDir(ctx, ZR_EXAMPLE_MODULES), ZR_OK);
        EXPECT_EQ(ZR_CTX_LoadModule(ctx, "example-routing"), ZR_OK);
    }
    ~Data() override { ZR_CTX_Delete(ctx); }

    std::string ModuleOf(const xmlNode *element)
    {
        const char *ns = reinterpret_cast<const char *>(element->ns->href);
        const char *name = ZR_MOD_GetModuleName(ZR_CTX_GetModuleByModNs(ctx, ns));
        return name != nullptr ? name : "";
    }
    // The schema path of every element that has a schema node, in document order.
    void Walk(const xmlNode *element, const ZrNode *node, std::vector<std::string> &paths)
    {
        char path[512];
        ASSERT_NE(node, nullptr) << element->name;
        ASSERT_EQ(ZR_NODE_GetNodePath(node, path, sizeof(path)), ZR_OK);
        paths.emplace_back(path);
        for (const xmlNode *child = element->children; child != nullptr; child = child->next)
            if (child->type == XML_ELEMENT_NODE)
                Walk(child,
                     ZR_NODE_FindDataChild(node, ModuleOf(child).c_str(),
                                           reinterpret_cast<const char *>(child->name)),
                     paths);
    }
    std::vector<std::string> PathsOf(const std::string &xml)
    {
        std::vector<std::string> paths;
        xmlDoc *document =
            xmlReadMemory(xml.data(), int(xml.size()), nullptr, nullptr, XML_PARSE_NOBLANKS);
        const xmlNode *root = xmlDocGetRootElement(document);
        Walk(root,
             ZR_CTX_FindTopDataNode(ctx, ModuleOf(root).c_str(),
                                    reinterpret_cast<const char *>(root->name)),
             paths);
        xmlFreeDoc(document);
        return paths;
    }
    ZrCtx *ctx;
};

} // namespace

TEST_F(Data, OfAServerItsModulesCanBeListed)
{
    ASSERT_EQ(ZR_CTX_LoadModule(ctx, "example-vendor"), ZR_OK);
    ASSERT_EQ(ZR_MOD_EnableFeature(ZR_CTX_GetModuleByModName(ctx, "example-router"), "tunnels"),
              ZR_OK);
    Inventory inventory;
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx, NoteModule, &inventory), ZR_OK);
    EXPECT_EQ(inventory.text.str(),
              R"(example-router@2026-11-01 1.1 A small router with its interfaces.
  import example-types as ety 2026-11-01
  feature tunnels on
example-routing@2026-11-01 1.1 Routes of the example router.
  import example-router as er 2026-11-01
  import example-types as ety 2026-11-01
  feature metrics off
  feature multipath off
example-types@2026-11-01 1.1 Types and identities that the other example modules share.
  feature jumbo-frames off
example-vendor@2026-11-01 1.1 What the vendor's router does in its own way.
  import example-router as er 2026-11-01
  import example-types as ety 2026-11-01
  deviation of example-router /example-router:router/interfaces/interface/speed
  deviation of example-router /example-router:router/interfaces/interface/mtu
  deviation of example-router /example-router:router/max-load
)");
}

TEST_F(Data, InXmlLeadsToItsSchemaElementByElement)
{
    EXPECT_THAT(
        PathsOf(R"(<router xmlns="urn:example:router"><interfaces><interface>
                             <name>eth0</name><encapsulation>none</encapsulation>
                           </interface></interfaces>
                           <r:routing xmlns:r="urn:example:routing"><r:route/></r:routing></router>)"),
        testing::ElementsAre("/example-router:router", "/example-router:router/interfaces",
                             "/example-router:router/interfaces/interface",
                             "/example-router:router/interfaces/interface/name",
                             "/example-router:router/interfaces/interface/link/plain/encapsulation",
                             "/example-router:router/example-routing:routing",
                             "/example-router:router/example-routing:routing/route"));
    EXPECT_THAT(
        PathsOf(R"(<ping xmlns="urn:example:router"><destination>host</destination></ping>)"),
        testing::ElementsAre("/example-router:ping", "/example-router:ping/input/destination"));
}

TEST_F(Data, OfAReplyIsFoundBelowTheOutput)
{
    ZrNode *ping = ZR_CTX_FindTopDataNode(ctx, "example-router", "ping");
    ZrNode *loss = ZR_NODE_FindDataChild(ZR_NODE_GetOutputNode(ping), nullptr, "loss");
    ASSERT_NE(loss, nullptr);
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_GetNodeType(loss)), "leaf");
    EXPECT_STREQ(ZR_GetStatusName(ZR_NODE_ValidateValue(loss, ZR_VALUE_STRING, "101")),
                 "ZR_ERR_VALUE_RANGE");
    EXPECT_EQ(ZR_NODE_FindDataChild(ping, nullptr, "loss"), nullptr) << "not in a request";
}
