// SPDX-License-Identifier: Apache-2.0
// Queries: what a module, a node and a type say of themselves, and how one leads to the other.
#include "application.h"

namespace {

using testing::ElementsAre;

class Queries : public Application {
protected:
    void SetUp() override
    {
        Start(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
        Have("box", R"(
            <yang-version value='1.1'/>
            <organization><text>Carpenters</text></organization>
            <description><text>Boxes and what is in them.</text></description>
            <revision date='2026-11-01'/>
            <typedef name='litre'>
              <type name='decimal64'><fraction-digits value='2'/></type>
              <units name='l'/>
              <default value='1.5'/>
            </typedef>
            <container name='store'>
              <list name='box'>
                <key value='room number'/>
                <leaf name='room'><type name='string'/></leaf>
                <leaf name='number'><type name='uint8'/></leaf>
                <leaf name='size'><type name='litre'/></leaf>
                <leaf name='weight'><config value='false'/><status value='obsolete'/><type name='uint32'/></leaf>
                <leaf-list name='label'><ordered-by value='user'/><type name='string'/></leaf-list>
                <choice name='closing'>
                  <mandatory value='true'/>
                  <case name='by-lid'><container name='lid'><presence value='closed'/></container></case>
                  <leaf name='rope'><type name='empty'/></leaf>
                </choice>
                <leaf name='beside'>
                  <type name='leafref'><path value='../../box/number'/></type>
                </leaf>
              </list>
            </container>
            <rpc name='open'>
              <input><leaf name='number'><type name='uint8'/></leaf></input>
              <output><leaf name='done'><type name='boolean'/></leaf></output>
            </rpc>)");
    }
    const std::string kBox = "/box:store/box";
};

TEST_F(Queries, AModuleTellsWhatStandsInItsHeader)
{
    ZrMod *box = Module("box");
    EXPECT_STREQ(ZR_MOD_GetModuleName(box), "box");
    EXPECT_STREQ(ZR_MOD_GetModuleNs(box), "urn:box");
    EXPECT_STREQ(ZR_MOD_GetModulePrefix(box), "box");
    EXPECT_STREQ(ZR_MOD_GetOrganization(box), "Carpenters");
    EXPECT_STREQ(ZR_MOD_GetDescription(box), "Boxes and what is in them.");
    EXPECT_STREQ(ZR_MOD_GetRevision(box), "2026-11-01");
    EXPECT_STREQ(ZR_MOD_GetYangVersion(box), "1.1");
}

TEST_F(Queries, AModuleTellsOfItsTypedefs)
{
    const ZrtRealType *litre = ZR_MOD_GetRealTypeByTypDefName(Module("box"), "litre");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(litre), ZRT_TYPE_DECIMAL64);
    EXPECT_EQ(ZR_TYPE_GetDecimal64Fraction(litre), 2u);
    EXPECT_STREQ(ZR_MOD_GetTypedefDefault(Module("box"), "litre"), "1.5");
    EXPECT_STREQ(ZR_MOD_GetTypedefUnits(Module("box"), "litre"), "l");
    EXPECT_EQ(ZR_MOD_GetRealTypeByTypDefName(Module("box"), "gallon"), nullptr);
}

TEST_F(Queries, ANodeTellsItsKindAndItsProperties)
{
    EXPECT_EQ(ZR_NODE_GetNodeType(Node(kBox)), ZR_NODE_LIST);
    EXPECT_EQ(ZR_NODE_GetNodeKeyNum(Node(kBox)), 2u);
    EXPECT_EQ(ZR_NODE_IsKey(Node(kBox + "/number")), 1u);
    EXPECT_EQ(ZR_NODE_IsKey(Node(kBox + "/size")), 0u);
    EXPECT_EQ(ZR_NODE_IsRwConfig(Node(kBox + "/size")), 1u);
    EXPECT_EQ(ZR_NODE_IsRwConfig(Node(kBox + "/weight")), 0u);
    EXPECT_EQ(ZR_NODE_IsMandatory(Node(kBox + "/closing")), 1u);
    EXPECT_EQ(ZR_NODE_IsOrderedByNode(Node(kBox + "/label")), 1u);
    EXPECT_EQ(ZR_NODE_IsPresenceContainer(Node(kBox + "/closing/by-lid/lid")), 1u);
    EXPECT_EQ(ZR_NODE_IsObsoleteNode(Node(kBox + "/weight")), 1u);
    EXPECT_EQ(ZR_NODE_GetNodeType(Node(kBox + "/wheels")), ZR_NODE_UNKNOWN) << "there is none";
}

TEST_F(Queries, ALeafTakesDefaultAndUnitsFromItsTypedef)
{
    ZrNode *size = Node(kBox + "/size");
    EXPECT_EQ(ZR_TYPE_GetBuiltInBaseType(ZR_NODE_GetRealType(size)), ZRT_TYPE_DERIVED);
    EXPECT_STREQ(ZR_NODE_GetDefaultValueStr(size), "1.5");
    EXPECT_STREQ(ZR_NODE_GetUnitsValueStr(size), "l");
    EXPECT_EQ(ZR_NODE_GetDefaultValueStr(Node(kBox + "/number")), nullptr);
}

TEST_F(Queries, TheParentsOfANodeLeadUpToTheTop)
{
    Texts names;
    for (ZrNode *node = Node(kBox + "/closing/by-lid/lid"); node != nullptr;
         node = ZR_NODE_GetParentNode(node))
        names.emplace_back(ZR_NODE_GetNodeName(node));
    EXPECT_THAT(names, ElementsAre("lid", "by-lid", "closing", "box", "store"));
    EXPECT_EQ(ZR_NODE_GetNonChoiceCaseParent(Node(kBox + "/closing/by-lid/lid")), Node(kBox))
        << "the parent of its data";
}

TEST_F(Queries, AnOperationHasAnInputAndAnOutput)
{
    ZrNode *open = Node("/box:open");
    EXPECT_EQ(ZR_NODE_GetNodeType(open), ZR_NODE_RPC);
    EXPECT_EQ(ZR_NODE_GetInputNode(open), Node("/box:open/input"));
    EXPECT_EQ(ZR_NODE_GetOutputNode(open), Node("/box:open/output"));
    EXPECT_EQ(ZR_NODE_GetInputNode(Node(kBox)), nullptr) << "no operation";
}

TEST_F(Queries, ALeafrefLeadsToItsTarget)
{
    ZrNode *beside = Node(kBox + "/beside");
    EXPECT_STREQ(ZR_TYPE_GetTypeConsDataLeafrefPath(ZR_NODE_GetRealType(beside)),
                 "../../box:box/number");
    EXPECT_EQ(ZR_NODE_GetLeafrefTargetNode(beside, 0), Node(kBox + "/number"));
}

TEST_F(Queries, APathIsWrittenAsItIsLookedUp)
{
    char path[64];
    ASSERT_EQ(ZR_NODE_GetNodePath(Node(kBox + "/closing/by-lid/lid"), path, sizeof(path)), ZR_OK);
    EXPECT_STREQ(path, "/box:store/box/closing/by-lid/lid");
    EXPECT_EQ(Node(path), Node(kBox + "/closing/by-lid/lid"));
    char small[8];
    EXPECT_EQ(ZR_NODE_GetNodePath(Node(kBox), small, sizeof(small)), ZR_ERR_NO_MEMORY)
        << "it does not fit";
}

TEST_F(Queries, DataIsFollowedDownWithoutTheStepsThatAreNoElements)
{
    ZrNode *store = ZR_CTX_FindTopDataNode(ctx_, "box", "store");
    ZrNode *box = ZR_NODE_FindDataChild(store, "box", "box");
    EXPECT_EQ(ZR_NODE_FindDataChild(box, nullptr, "lid"), Node(kBox + "/closing/by-lid/lid"));
    EXPECT_EQ(ZR_NODE_FindDataChild(box, nullptr, "by-lid"), nullptr) << "a case";
}

TEST_F(Queries, NoPathLeadsThroughAPredicateOrTheSameModuleAgain)
{
    EXPECT_NE(Node("/box:store/box/size"), nullptr);
    EXPECT_EQ(Node("/box:store/box[number='1']/size"), nullptr);
    EXPECT_EQ(Node("/box:store/box:box/size"), nullptr);
    EXPECT_EQ(Node("/store/box/size"), nullptr) << "the first step names its module";
}

TEST_F(Queries, NoPathLeadsThroughANameOfMoreThan64Characters)
{
    for (size_t length : {64u, 65u}) {
        std::string name(length, 'n');
        Have(name, "<container name='top'/><container name='" + name + "'/>");
        EXPECT_NE(Module(name), nullptr) << length;
        EXPECT_EQ(Node("/" + name + ":top") != nullptr, length == 64) << length;
        EXPECT_EQ(Node("/" + name + ":" + name) != nullptr, length == 64) << length;
    }
}

TEST_F(Queries, ADenialOfAccessFollowsTheTopmostNodeThatStatesOne)
{
    Have("ietf-netconf-acm", "");
    WriteFile("vault.yin", R"(
        <module name='vault' xmlns='urn:ietf:params:xml:ns:yang:yin:1'
                xmlns:nacm='urn:ietf-netconf-acm'>
          <namespace uri='urn:vault'/>
          <prefix value='v'/>
          <import module='ietf-netconf-acm'><prefix value='nacm'/></import>
          <container name='write'>
            <nacm:default-deny-write/>
            <container name='all'><nacm:default-deny-all/><container name='below'/></container>
          </container>
        </module>)");
    ASSERT_EQ(Load("vault"), ZR_OK);
    for (const char *path : {"/vault:write", "/vault:write/all", "/vault:write/all/below"}) {
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(Node(path)), 1u) << path;
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(Node(path)), 0u) << path;
    }
    std::string stated;
    auto append = [](const ZrsExtInst *, const char *, const char *name, const char *, void *out) {
        *static_cast<std::string *>(out) += name;
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(Node("/vault:write/all"), append, &stated), ZR_OK);
    EXPECT_EQ(stated, "default-deny-all") << "what the node says itself";
}

std::string g_released;

TEST_F(Queries, ANodeCarriesAPointerOfTheApplicationUntilItGoes)
{
    int tag = 0;
    ZR_NODE_SetPrivate(Node(kBox), &tag);
    EXPECT_EQ(ZR_NODE_GetPrivate(Node(kBox)), &tag);
    ZR_CTX_SetPridataFreeFunc(ctx_, [](ZrNode *node, void *privateData) {
        EXPECT_NE(privateData, nullptr);
        g_released += ZR_NODE_GetNodeName(node);
    });
    EXPECT_EQ(Unload("box"), ZR_OK);
    EXPECT_EQ(g_released, "box");
}

} // namespace
