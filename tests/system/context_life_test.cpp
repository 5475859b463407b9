// What the interface says of contexts over time: loading again, unloading, callbacks, long names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zrschema/zrschema.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

std::vector<std::string> g_events;

void OnRelink(ZrCtx *, ZrNode *node, ZrCtx *)
{
    const ZrNode *parent = ZR_NODE_GetParentNode(node);
    g_events.push_back(std::string(ZR_NODE_GetNodeName(node)) + " below " +
                       (parent != nullptr ? ZR_NODE_GetNodeName(parent) : "nothing"));
}

void OnUnload(ZrCtx *ctx, const char *moduleName)
{
    EXPECT_NE(ZR_CTX_GetModuleByModName(ctx, moduleName), nullptr);
    g_events.push_back(std::string("unload ") + moduleName);
}

uint32_t AppendModule(ZrMod *module, void *names)
{
    static_cast<std::vector<std::string> *>(names)->emplace_back(ZR_MOD_GetModuleName(module));
    return 0;
}

class ContextLife : public testing::Test {
protected:
    ContextLife()
    {
        char name[] = "/tmp/zrschema-XXXXXX";
        folder_ = mkdtemp(name);
        g_events.clear();
    }
    ~ContextLife() override
    {
        ZR_CTX_Delete(ctx_);
        for (const std::string &file : files_)
            std::remove(file.c_str());
        std::remove(folder_.c_str());
    }
    void Start(uint32_t flags)
    {
        ctx_ = ZR_CTX_Create(flags);
        ASSERT_EQ(ZR_CTX_SetSearchDir(ctx_, folder_.c_str()), ZR_OK);
    }
    void Write(const std::string &file, const std::string &content)
    {
        files_.push_back(folder_ + "/" + file);
        std::ofstream(files_.back()) << content;
    }
    void WriteModule(const std::string &name, const std::string &body)
    {
        Write(name + ".yin",
              "<module name=\"" + name +
                  R"(" xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:)" + name +
                  R"("/><prefix value="self"/>)" + body + "</module>");
    }
    void WriteTargetAndAugmenter()
    {
        WriteModule("target", R"(<container name="top"/>)");
        WriteModule("augmenter", R"(<import module="target"><prefix value="t"/></import>
            <feature name="f"/>
            <augment target-node="/t:top"><leaf name="added"><type name="string"/></leaf></augment>)");
    }
    std::vector<std::string> Loaded()
    {
        std::vector<std::string> names;
        ZR_CTX_ScanAllModules(ctx_, AppendModule, &names);
        return names;
    }
    uint32_t Load(const char *name) { return ZR_CTX_LoadModule(ctx_, name); }
    ZrNode *Node(const std::string &path)
    {
        return ZR_CTX_GetTargetNode(ctx_, path.c_str(), nullptr);
    }

    ZrCtx *ctx_ = nullptr;
    std::string folder_;
    std::vector<std::string> files_;
};

} // namespace

TEST_F(ContextLife, LoadingAgainTriesTheImportsThatFailed)
{
    Start(ZR_CTX_LOAD_IMPORTS);
    WriteModule("m", R"(<import module="late"><prefix value="l"/></import>)");
    EXPECT_EQ(Load("m"), uint32_t{ZR_ERR_NOT_FOUND});
    EXPECT_THAT(Loaded(), ElementsAre("m"));
    WriteModule("late", "");
    EXPECT_EQ(Load("m"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("late", "m"));
    std::remove((folder_ + "/m.yin").c_str());
    EXPECT_EQ(Load("m"), uint32_t{ZR_ERR_NOT_FOUND});
    EXPECT_THAT(Loaded(), ElementsAre("late", "m"));
}

TEST_F(ContextLife, AnAugmentIsToldOfWithItsTargetWhenItIsCoupledAndWhenItIsUncoupled)
{
    Start(0);
    WriteTargetAndAugmenter();
    ZR_CTX_SetFirstAugChildRelinkFunc(ctx_, OnRelink);
    ASSERT_EQ(Load("augmenter"), ZR_OK);
    EXPECT_THAT(g_events, ElementsAre());
    ASSERT_EQ(Load("target"), ZR_OK);
    EXPECT_THAT(g_events, ElementsAre("added below top"));
    ZR_CTX_Delete(ctx_);
    ctx_ = nullptr;
    EXPECT_THAT(g_events, ElementsAre("added below top", "added below top"));
}

TEST_F(ContextLife, UnloadingReplacesTheModulesThatReachIntoTheModule)
{
    Start(0);
    WriteTargetAndAugmenter();
    WriteModule("user", R"(<import module="target"><prefix value="t"/></import>)");
    for (const char *name : {"target", "augmenter", "user"})
        ASSERT_EQ(Load(name), ZR_OK);
    ZrMod *user = ZR_CTX_GetModuleByModName(ctx_, "user");
    ZrMod *augmenter = ZR_CTX_GetModuleByModName(ctx_, "augmenter");
    ZR_MOD_SetPrivate(user, this);
    ZR_MOD_SetPrivate(augmenter, this);
    ASSERT_EQ(ZR_MOD_EnableFeature(augmenter, "f"), ZR_OK);
    ZR_CTX_SetReloadModuleCbFunc(ctx_, OnUnload);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx_, "target"), ZR_OK);
    EXPECT_THAT(g_events, ElementsAre("unload target", "unload augmenter"));
    EXPECT_THAT(Loaded(), ElementsAre("augmenter", "user"));
    EXPECT_EQ(ZR_MOD_GetPrivate(user), this) << "it merely imports the module";
    augmenter = ZR_CTX_GetModuleByModName(ctx_, "augmenter");
    EXPECT_EQ(ZR_MOD_GetPrivate(augmenter), nullptr) << "a new module";
    EXPECT_EQ(ZR_CTX_IsModFeatureEnable(ctx_, "augmenter", "f"), 1u);
}

TEST_F(ContextLife, UnloadingAnAugmentersModuleLeavesItsTargetAsItIs)
{
    Start(0);
    WriteTargetAndAugmenter();
    for (const char *name : {"target", "augmenter"})
        ASSERT_EQ(Load(name), ZR_OK);
    ZR_MOD_SetPrivate(ZR_CTX_GetModuleByModName(ctx_, "target"), this);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx_, "augmenter"), ZR_OK);
    EXPECT_EQ(ZR_MOD_GetPrivate(ZR_CTX_GetModuleByModName(ctx_, "target")), this);
    EXPECT_EQ(Node("/target:top/augmenter:added"), nullptr);
}

TEST_F(ContextLife, AModuleComesBackAsAnImportOfOneThatIsLoadedAgain)
{
    Start(ZR_CTX_LOAD_IMPORTS);
    WriteTargetAndAugmenter();
    ASSERT_EQ(Load("augmenter"), ZR_OK);
    ZR_MOD_SetPrivate(ZR_CTX_GetModuleByModName(ctx_, "target"), this);
    EXPECT_EQ(ZR_CTX_UnloadModule(ctx_, "target"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre("augmenter", "target"));
    EXPECT_EQ(ZR_MOD_GetPrivate(ZR_CTX_GetModuleByModName(ctx_, "target")), nullptr);
    EXPECT_NE(Node("/target:top/augmenter:added"), nullptr);
}

TEST_F(ContextLife, AModuleFromMemoryDoesNotComeBack)
{
    Start(0);
    WriteTargetAndAugmenter();
    ASSERT_EQ(Load("target"), ZR_OK);
    ASSERT_EQ(ZR_CTX_LoadMemory(ctx_, R"(<module name="mine"
        xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:mine"/><prefix value="mine"/>
        <import module="target"><prefix value="t"/></import>
        <augment target-node="/t:top"><leaf name="x"><type name="string"/></leaf></augment>
        </module>)"),
              ZR_OK);
    EXPECT_NE(ZR_CTX_UnloadModule(ctx_, "target"), ZR_OK);
    EXPECT_THAT(Loaded(), ElementsAre());
}

TEST_F(ContextLife, SubmodulesAreLookedForInEveryDirectoryAlsoForTextFromMemory)
{
    Start(0);
    Write("part.yin", R"(<submodule name="part" xmlns="urn:ietf:params:xml:ns:yang:yin:1">
        <belongs-to module="m"><prefix value="m"/></belongs-to>
        <leaf name="x"><type name="string"/></leaf></submodule>)");
    EXPECT_EQ(ZR_CTX_LoadMemory(ctx_, R"(<module name="m"
        xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:m"/><prefix value="m"/>
        <include module="part"/></module>)"),
              ZR_OK);
    EXPECT_NE(Node("/m:x"), nullptr);
}

TEST_F(ContextLife, NoPathLeadsThroughANameOfMoreThan64Characters)
{
    Start(0);
    for (size_t length : {64u, 65u}) {
        std::string name(length, 'n');
        WriteModule(name, "<container name=\"top\"/><container name=\"" + name + "\"/>");
        ASSERT_EQ(Load(name.c_str()), ZR_OK) << length;
        EXPECT_NE(ZR_CTX_GetModuleByModName(ctx_, name.c_str()), nullptr) << length;
        EXPECT_EQ(Node("/" + name + ":top") != nullptr, length == 64) << length;
        EXPECT_EQ(Node("/" + name + ":" + name) != nullptr, length == 64) << length;
    }
}

TEST_F(ContextLife, APathIsNotFoundWithAPredicateOrWithTheSameModuleAgain)
{
    Start(0);
    WriteModule("m", R"(<list name="top"><key value="k"/><leaf name="k"><type name="string"/></leaf>
                        </list>)");
    ASSERT_EQ(Load("m"), ZR_OK);
    EXPECT_NE(Node("/m:top/k"), nullptr);
    EXPECT_EQ(Node("/m:top[k='1']/k"), nullptr);
    EXPECT_EQ(Node("/m:top[1]"), nullptr);
    EXPECT_EQ(Node("/m:top/m:k"), nullptr);
}

TEST_F(ContextLife, ADenialOfAccessFollowsTheTopmostNodeThatStatesOne)
{
    Start(0);
    WriteModule("ietf-netconf-acm", "");
    ASSERT_EQ(Load("ietf-netconf-acm"), ZR_OK);
    ASSERT_EQ(ZR_CTX_LoadMemory(ctx_, R"(<module name="m" xmlns:nacm="urn:nacm"
        xmlns="urn:ietf:params:xml:ns:yang:yin:1"><namespace uri="urn:m"/><prefix value="m"/>
        <import module="ietf-netconf-acm"><prefix value="nacm"/></import>
        <container name="write"><nacm:default-deny-write/>
          <container name="all"><nacm:default-deny-all/><container name="below"/></container>
        </container></module>)"),
              ZR_OK);
    for (const char *path : {"/m:write", "/m:write/all", "/m:write/all/below"}) {
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyWrite(Node(path)), 1u) << path;
        EXPECT_EQ(ZR_NODE_IsNacmDefaultDenyAll(Node(path)), 0u) << path;
    }
    std::string stated;
    auto append = [](const ZrsExtInst *, const char *, const char *name, const char *, void *out) {
        *static_cast<std::string *>(out) += name;
        return 0u;
    };
    EXPECT_EQ(ZR_NODE_ScanAllExtInsts(Node("/m:write/all"), append, &stated), ZR_OK);
    EXPECT_EQ(stated, "default-deny-all") << "what the node says itself";
}
