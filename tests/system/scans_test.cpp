// SPDX-License-Identifier: Apache-2.0
// Scans: a callback is called for each of many; 0 goes on, any other result stops and comes back.
#include "application.h"

namespace {

using testing::ElementsAre;

class Scans : public Application {
protected:
    void SetUp() override { Start(ZR_CTX_KEEP_DESCRIPTIONS); }
    ZrNode *LeafOf(const std::string &type)
    {
        Have("typed", "<leaf name='leaf'>" + type + "</leaf>");
        return Node("/typed:leaf");
    }
    Texts seen_;
};

TEST_F(Scans, OfATreeTellHowTheyArriveAtANode)
{
    Have("box", R"(
        <container name='box'>
          <container name='lid'><leaf name='lock'><type name='string'/></leaf></container>
          <leaf name='size'><type name='uint8'/></leaf>
        </container>)");
    auto note = [](ZrNode *node, uint32_t arrival, void *out) {
        const char *const how[] = {"child", "sibling", "back at", "root"};
        static_cast<Texts *>(out)->push_back(std::string(how[arrival]) + " " +
                                             ZR_NODE_GetNodeName(node));
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(Node("/box:box"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("root box", "child lid", "child lock", "back at lid",
                                   "sibling size", "back at box"));
}

TEST_F(Scans, OfATreeCanLeaveASubtreeOutOrStop)
{
    Have("box", R"(
        <container name='box'>
          <container name='lid'><leaf name='lock'><type name='string'/></leaf></container>
          <leaf name='size'><type name='uint8'/></leaf>
          <leaf name='colour'><type name='string'/></leaf>
        </container>)");
    constexpr uint32_t kFound = 1000;
    auto findSize = [](ZrNode *node, uint32_t, void *out) -> uint32_t {
        std::string name = ZR_NODE_GetNodeName(node);
        static_cast<Texts *>(out)->push_back(name);
        if (name == "lid")
            return ZR_SCAN_SKIP_SUBTREE;
        return name == "size" ? kFound : 0;
    };
    EXPECT_EQ(ZR_NODE_TreeScanAllNode(Node("/box:box"), findSize, &seen_), kFound);
    EXPECT_THAT(seen_, ElementsAre("box", "lid", "size"));
}

TEST_F(Scans, OfAModuleGiveItsTopLevelNodesAndTheChildrenOfEach)
{
    Have("box", R"(
        <notification name='opened'/>
        <rpc name='open'/>
        <container name='box'>
          <leaf name='size'><type name='uint8'/></leaf>
          <leaf name='colour'><type name='string'/></leaf>
        </container>)");
    auto note = [](ZrNode *node, uint32_t, void *out) {
        static_cast<Texts *>(out)->push_back(ZR_NODE_GetNodeName(node));
        return 0u;
    };
    EXPECT_EQ(ZR_MOD_IterScanTopmostNode(Module("box"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("box", "open", "opened"));
    seen_.clear();
    EXPECT_EQ(ZR_NODE_IterScanChildrenNode(Node("/box:box"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("size", "colour"));
    seen_.clear();
    EXPECT_EQ(ZR_NODE_IterScanSiblingNode(Node("/box:box/colour"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("colour"));
}

TEST_F(Scans, OfMustsGiveTheConditionWithModuleNamesAndItsTexts)
{
    Have("box", R"(
        <container name='box'>
          <must condition='box:size &gt; 0'>
            <error-message><value>An empty box.</value></error-message>
            <error-app-tag value='empty'/>
          </must>
          <must condition='size &lt; 100'/>
          <leaf name='size'><type name='uint8'/></leaf>
        </container>)");
    auto note = [](const char *condition, const char *message, const char *tag, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(condition) + " | " + OrDash(message) +
                                             " | " + OrDash(tag));
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllMusts(Node("/box:box"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("box:size > 0 | An empty box. | empty", "size < 100 | - | -"));
}

TEST_F(Scans, OfDefaultsGiveThoseOfTheNodeItself)
{
    Have("box", R"(
        <leaf-list name='label'><type name='string'/><default value='fragile'/><default value='up'/></leaf-list>
        <choice name='closing'><default value='lid'/><leaf name='lid'><type name='empty'/></leaf></choice>)");
    auto note = [](const char *text, void *out) {
        static_cast<Texts *>(out)->push_back(text);
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(Node("/box:label"), note, &seen_), ZR_OK);
    EXPECT_EQ(ZR_NODE_ScanAllDefaults(Node("/box:closing"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("fragile", "up", "lid"));
}

// Instances with what is inside them, "name(inside ...)".
uint32_t NoteInstance(const ZrsExtInst *instance, const char *module, const char *name,
                      const char *argument, void *out)
{
    auto *text = static_cast<std::string *>(out);
    *text += std::string(module) + ":" + name + "=" + OrDash(argument) + "(";
    EXPECT_EQ(ZR_EXT_ScanAllChildExtInsts(instance, NoteInstance, text), ZR_OK);
    *text += ")";
    return 0;
}

TEST_F(Scans, OfExtensionInstancesLeadIntoThoseInside)
{
    Have("paint", R"(
        <extension name='colour'><argument name='name'/></extension>
        <extension name='gloss'/>)");
    WriteFile("box.yin", R"(
        <module name='box' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:p='urn:paint'>
          <namespace uri='urn:box'/>
          <prefix value='b'/>
          <import module='paint'><prefix value='p'/></import>
          <p:gloss/>
          <container name='box'><p:colour name='red'><p:gloss/></p:colour></container>
        </module>)");
    ASSERT_EQ(Load("box"), ZR_OK);
    std::string text;
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(Module("box"), NoteInstance, &text), ZR_OK);
    EXPECT_EQ(text, "paint:gloss=-()");
    text.clear();
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(Node("/box:box"), NoteInstance, &text), ZR_OK);
    EXPECT_EQ(text, "paint:colour=red(paint:gloss=-())");

    // An application may add instances of its own.
    EXPECT_EQ(ZR_NODE_AppendExtInst(Node("/box:box"), "mine", "seen", nullptr), ZR_OK);
    text.clear();
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(Node("/box:box"), NoteInstance, &text), ZR_OK);
    EXPECT_EQ(text, "paint:colour=red(paint:gloss=-())mine:seen=-()");
}

TEST_F(Scans, OfIdentitiesGiveEachWithItsBases)
{
    Have("wood", R"(
        <identity name='wood'/>
        <identity name='hard'/>
        <identity name='oak'><base name='wood'/><base name='hard'/></identity>)");
    auto note = [](const ZrsIdentity *identity, void *out) {
        std::string text = std::string(ZR_MOD_GetIdentityName(identity)) + " of";
        auto noteBase = [](const char *module, const char *name, void *base, const ZrsIdentBase *) {
            *static_cast<std::string *>(base) += std::string(" ") + module + ":" + name;
            return 0u;
        };
        EXPECT_EQ(ZR_MOD_ScanIdentityBase(identity, noteBase, &text), ZR_OK);
        static_cast<Texts *>(out)->push_back(text);
        return 0u;
    };
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(Module("wood"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("wood of", "hard of", "oak of wood:wood wood:hard"));
}

TEST_F(Scans, OfATypesTypedefsFollowTheChainToTheBuiltInType)
{
    Have("units", R"(
        <typedef name='litre'><type name='amount'/></typedef>
        <typedef name='amount'><type name='uint8'/></typedef>)");
    Have("box", R"(
        <import module='units'><prefix value='u'/></import>
        <leaf name='size'><type name='u:litre'/></leaf>)");
    auto note = [](const char *module, const char *name, const ZrtRealType *type, void *out) {
        static_cast<Texts *>(out)->push_back(
            OrDash(module) + ":" + OrDash(name) + " is " +
            ZR_GetBuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(type)));
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanDerivedType(Node("/box:size"), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("units:litre is derived", "units:amount is uint8"));
}

TEST_F(Scans, OfEnumsAndBitsGiveTheirNumbers)
{
    auto note = [](const char *name, const char *description, int64_t value, void *out) {
        static_cast<Texts *>(out)->push_back(std::string(name) + " " + std::to_string(value) + " " +
                                             OrDash(description));
        return 0u;
    };
    ZrNode *leaf = LeafOf(R"(
        <type name='enumeration'>
          <enum name='open'><description><text>No lid.</text></description></enum>
          <enum name='shut'><value value='-3'/></enum>
        </type>)");
    EXPECT_EQ(ZR_TYPE_ScanNameValuePair(ZR_NODE_GetRealType(leaf), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("open 0 No lid.", "shut -3 -"));
}

TEST_F(Scans, OfRangesGiveTheirSegments)
{
    auto note = [](uint64_t start, uint64_t end, void *out) {
        static_cast<Texts *>(out)->push_back(std::to_string(static_cast<int64_t>(start)) + ".." +
                                             std::to_string(static_cast<int64_t>(end)));
        return 0u;
    };
    ZrNode *leaf = LeafOf("<type name='int8'><range value='min..-1 | 5 | 10..20'/></type>");
    EXPECT_EQ(ZR_TYPE_ScanStartEndPair(ZR_NODE_GetRealType(leaf), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("-128..-1", "5..5", "10..20"));
}

TEST_F(Scans, OfPatternsTellWhichMustNotMatch)
{
    auto note = [](const char *pattern, uint32_t inverted, void *out, const ZrtPatternItem *) {
        static_cast<Texts *>(out)->push_back((inverted == 1 ? "not " : "") + std::string(pattern));
        return 0u;
    };
    ZrNode *leaf = LeafOf(R"(
        <type name='string'>
          <pattern value='[a-z]+'/>
          <pattern value='x.*'><modifier value='invert-match'/></pattern>
        </type>)");
    EXPECT_EQ(ZR_TYPE_ScanPatternInvertMatch(ZR_NODE_GetRealType(leaf), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("[a-z]+", "not x.*"));
}

TEST_F(Scans, OfAUnionGiveItsMembersInTheOrderInWhichTheyAreTried)
{
    auto note = [](const char *, const char *, const ZrtRealType *member, void *out) {
        static_cast<Texts *>(out)->push_back(
            ZR_GetBuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(member)));
        return 0u;
    };
    ZrNode *leaf = LeafOf(R"(
        <type name='union'><type name='uint8'/><type name='boolean'/><type name='string'/></type>)");
    EXPECT_EQ(ZR_TYPE_ScanUnionSubType(ZR_NODE_GetRealType(leaf), note, &seen_), ZR_OK);
    EXPECT_THAT(seen_, ElementsAre("uint8", "boolean", "string"));
}

} // namespace
