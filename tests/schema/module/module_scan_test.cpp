#include "foundation/array.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class ModuleScan : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/n:a");
        AddTop(module_, module_->augments, ZR_NODE_AUGMENT, "/n:b");
        AddTop(module_, module_->notifications, ZR_NODE_NOTIFICATION, "event");
        AddTop(module_, module_->rpcs, ZR_NODE_RPC, "call");
        ZrNode *top = AddData(module_, ZR_NODE_CONTAINER, "top");
        AddData(module_, ZR_NODE_LEAF, "leaf");
        AddChild(top, ZR_NODE_LEAF, "inner");
    }
    // Scans with a callback that notes the names and gives `stopResult` at `stopAt`.
    std::string Scan(uint32_t (*scan)(const ZrMod *, ZrNodeScanFunc, void *), const char *stopAt,
                     uint32_t expectedResult)
    {
        Seen seen = {"", stopAt, 9};
        auto note = [](ZrNode *node, uint32_t arrival, void *userData) {
            auto *into = static_cast<Seen *>(userData);
            EXPECT_EQ(arrival, uint32_t{ZR_ARRIVAL_ROOT});
            into->names += std::string(node->name) + " ";
            return into->stopAt == node->name ? into->stopResult : 0;
        };
        EXPECT_EQ(scan(module_, note, &seen), expectedResult);
        return seen.names;
    }
    struct Seen {
        std::string names;
        std::string stopAt;
        uint32_t stopResult;
    };
    ZrMod *module_ = nullptr;
};

TEST_F(ModuleScan, OfTopNodesSeesDataThenRpcsThenNotifications)
{
    EXPECT_EQ(Scan(ZR_MOD_IterScanTopmostNode, "", 0), "top leaf call event ");
}

TEST_F(ModuleScan, OfTopNodesStopsAtANonZeroResult)
{
    EXPECT_EQ(Scan(ZR_MOD_IterScanTopmostNode, "leaf", 9), "top leaf ");
    EXPECT_EQ(Scan(ZR_MOD_IterScanTopmostNode, "call", 9), "top leaf call ");
    EXPECT_EQ(Scan(ZR_MOD_IterScanTopmostNode, "event", 9), "top leaf call event ");
}

TEST_F(ModuleScan, OfAugmentsSeesThemInOrder)
{
    EXPECT_EQ(Scan(ZR_MOD_IterScanAugmentNode, "", 0), "/n:a /n:b ");
    EXPECT_EQ(Scan(ZR_MOD_IterScanAugmentNode, "/n:a", 9), "/n:a ");
}

TEST_F(ModuleScan, OfNodesTakesNullArguments)
{
    auto never = [](ZrNode *, uint32_t, void *) { return uint32_t{1}; };
    EXPECT_EQ(ZR_MOD_IterScanTopmostNode(nullptr, never, nullptr), ZR_OK);
    EXPECT_EQ(ZR_MOD_IterScanAugmentNode(nullptr, never, nullptr), ZR_OK);
    EXPECT_EQ(ZR_MOD_IterScanTopmostNode(module_, nullptr, nullptr), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_IterScanAugmentNode(module_, nullptr, nullptr), ZR_ERR_INVALID);
    const ZrMod *empty = NewModule("empty");
    EXPECT_EQ(ZR_MOD_IterScanTopmostNode(empty, never, nullptr), ZR_OK);
    EXPECT_EQ(ZR_MOD_IterScanAugmentNode(empty, never, nullptr), ZR_OK);
}

TEST_F(ModuleScan, OfExtensionInstancesSeesThemInOrder)
{
    struct Noted {
        std::string text;
        uint32_t result;
    } noted = {"", 0};
    auto note = [](const ZrsExtInst *, const char *moduleName, const char *extensionName,
                   const char *argument, void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += std::string(moduleName) + ":" + extensionName + "(" +
                      (argument == nullptr ? "-" : argument) + ")";
        return into->result;
    };
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "");
    for (const char *argument : {"x", static_cast<const char *>(nullptr)})
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &module_->extInsts, &module_->extInstCount,
                                                  "n", "e", argument),
                  ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "n:e(x)n:e(-)");
    noted = {"", 4};
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(module_, note, &noted), 4u);
    EXPECT_EQ(noted.text, "n:e(x)");
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanAllExtInsts(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfIdentitiesSeesThemInOrder)
{
    struct Noted {
        std::string text;
        uint32_t result;
    } noted = {"", 0};
    auto note = [](const ZrsIdentity *identity, void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += ZR_MOD_GetIdentityName(identity);
        return into->result;
    };
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(module_, note, &noted), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module_, "i"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module_, "j"), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "ij");
    noted = {"", 3};
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(module_, note, &noted), 3u);
    EXPECT_EQ(noted.text, "i");
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(nullptr, note, &noted), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllIdentity(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfBasesSeesThemInOrderWithTheirArray)
{
    ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module_, "i"), ZR_OK);
    ZrsIdentity *identity = &module_->identities[0];
    for (const char *base : {"a", "b"})
        ASSERT_EQ(zr::AppendOne(&identity->bases, &identity->baseCount,
                                [&](ZrsIdentBase *record) {
                                    return ZRS_MOD_FillIdentBase(dict_, record, "n", base);
                                }),
                  ZR_OK);
    struct Noted {
        std::string text;
        uint32_t result;
        const ZrsIdentBase *bases;
    } noted = {"", 0, identity->bases};
    auto note = [](const char *moduleName, const char *identityName, void *userData,
                   const ZrsIdentBase *bases) {
        auto *into = static_cast<Noted *>(userData);
        EXPECT_EQ(bases, into->bases);
        into->text += std::string(moduleName) + ":" + identityName + " ";
        return into->result;
    };
    EXPECT_EQ(ZR_MOD_ScanIdentityBase(identity, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "n:a n:b ");
    noted = {"", 6, identity->bases};
    EXPECT_EQ(ZR_MOD_ScanIdentityBase(identity, note, &noted), 6u);
    EXPECT_EQ(noted.text, "n:a ");
    EXPECT_EQ(ZR_MOD_ScanIdentityBase(nullptr, note, &noted), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanIdentityBase(identity, nullptr, &noted), ZR_ERR_INVALID);
}

// What a scan's callback noted, and what it answers.
struct Noted {
    std::string text;
    uint32_t result;
};

TEST_F(ModuleScan, OfFeaturesTellsWhichAreOn)
{
    auto note = [](const char *name, uint32_t enabled, void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += name + std::string("=") + std::to_string(enabled) + " ";
        return into->result;
    };
    Noted noted = {"", 0};
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(module_, note, &noted), ZR_OK);
    for (const char *name : {"f", "g"})
        ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, name), ZR_OK);
    ASSERT_EQ(ZR_MOD_EnableFeature(module_, "g"), ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "f=0 g=1 ");
    noted = {"", 5};
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(module_, note, &noted), 5u);
    EXPECT_EQ(noted.text, "f=0 ");
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanAllFeatures(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfImportsTellsTheRevisionThatIsLoaded)
{
    auto note = [](const char *moduleName, const char *prefix, const char *revision,
                   void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += std::string(moduleName) + "/" + prefix + "@" +
                      (revision != nullptr ? revision : "-") + " ";
        return into->result;
    };
    NewModule("dated")->revision = ZR_DICT_Insert(dict_, "2020-02-02");
    NewModule("undated");
    for (const char *name : {"dated", "undated", "absent"})
        ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, name, std::string(name, 1).c_str()), ZR_OK);
    Noted noted = {"", 0};
    EXPECT_EQ(ZR_MOD_ScanAllImports(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "dated/d@2020-02-02 undated/u@- absent/a@- ");
    noted = {"", 5};
    EXPECT_EQ(ZR_MOD_ScanAllImports(module_, note, &noted), 5u);
    EXPECT_EQ(noted.text, "dated/d@2020-02-02 ");
    EXPECT_EQ(ZR_MOD_ScanAllImports(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanAllImports(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfSubmodulesSeesTheirNamesInOrder)
{
    auto note = [](const char *name, void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += std::string(name) + " ";
        return into->result;
    };
    for (const char *name : {"m-b", "m-a"})
        ASSERT_EQ(ZRS_MOD_AppendOneInclude(module_, name), ZR_OK);
    Noted noted = {"", 0};
    EXPECT_EQ(ZR_MOD_ScanAllSubmodules(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "m-b m-a ");
    noted = {"", 5};
    EXPECT_EQ(ZR_MOD_ScanAllSubmodules(module_, note, &noted), 5u);
    EXPECT_EQ(noted.text, "m-b ");
    EXPECT_EQ(ZR_MOD_ScanAllSubmodules(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanAllSubmodules(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfDeviationsTellsTargetTheModuleThatDefinesItAndWhetherItIsApplied)
{
    auto note = [](const char *path, const char *moduleName, uint32_t applied, void *userData) {
        auto *into = static_cast<Noted *>(userData);
        into->text += std::string(path) + " of " + (moduleName != nullptr ? moduleName : "-") +
                      "=" + std::to_string(applied) + ", ";
        return into->result;
    };
    for (const char *path : {"/a:top/x", "/a:top/b:added/y"})
        ASSERT_EQ(ZRS_MOD_AppendOneDeviation(module_, path), ZR_OK);
    module_->deviations[1].flags = ZRS_DEVIATION_COUPLED;
    Noted noted = {"", 0};
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(module_, note, &noted), ZR_OK);
    EXPECT_EQ(noted.text, "/a:top/x of a=0, /a:top/b:added/y of b=1, ");
    noted = {"", 5};
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(module_, note, &noted), 5u);
    EXPECT_EQ(noted.text, "/a:top/x of a=0, ");
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(module_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleScan, OfMembersOfAnEmptyModuleSeesNothing)
{
    const ZrMod *empty = NewModule("empty");
    EXPECT_EQ(
        ZR_MOD_ScanAllImports(
            empty, [](const char *, const char *, const char *, void *) { return 1u; }, nullptr),
        ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllSubmodules(
                  empty, [](const char *, void *) { return 1u; }, nullptr),
              ZR_OK);
    EXPECT_EQ(ZR_MOD_ScanAllDeviations(
                  empty, [](const char *, const char *, uint32_t, void *) { return 1u; }, nullptr),
              ZR_OK);
}

} // namespace
