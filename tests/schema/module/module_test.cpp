// SPDX-License-Identifier: Apache-2.0
#include "schema/module/module.h"

#include "foundation/array.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class Module : public zrtest::RecordTest {
protected:
    void SetUp() override
    {
        module_ = NewModule("m");
        ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "other", "o"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "third", "t"), ZR_OK);
    }
    // The value in module-name form, or "(none)".
    std::string Json(const char *value)
    {
        char *text = ZRS_MOD_ConvertPrefixValToJsonFormat(module_, value);
        std::string result = text == nullptr ? "(none)" : text;
        zr::Free(text);
        return result;
    }
    ZrMod *module_ = nullptr;
};

TEST_F(Module, IsNewWithoutAnything)
{
    ZrMod *fresh = zr::NewModule(ctx_);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(fresh->ctx, ctx_);
    EXPECT_EQ(fresh->byNameLink.balance, -1);
    EXPECT_EQ(fresh->byNamespaceLink.balance, -1);
    EXPECT_EQ(fresh->name, nullptr);
    ZRS_MOD_Free(fresh);
    guard_.FailAt(0);
    EXPECT_EQ(zr::NewModule(ctx_), nullptr);
    guard_.Stop();
}

TEST_F(Module, TellsItsHeader)
{
    module_->organization = ZR_DICT_Insert(dict_, "org");
    module_->revision = ZR_DICT_Insert(dict_, "2020-02-02");
    EXPECT_STREQ(ZR_MOD_GetModuleName(module_), "m");
    EXPECT_STREQ(ZR_MOD_GetModuleNs(module_), "urn:m");
    EXPECT_STREQ(ZR_MOD_GetModulePrefix(module_), "m");
    EXPECT_STREQ(ZR_MOD_GetOrganization(module_), "org");
    EXPECT_STREQ(ZR_MOD_GetRevision(module_), "2020-02-02");
    module_->description = ZR_DICT_Insert(dict_, "what it is");
    EXPECT_STREQ(ZR_MOD_GetDescription(module_), "what it is");
    EXPECT_STREQ(ZR_MOD_GetYangVersion(module_), "1") << "nothing is said";
    module_->yangVersion = ZRS_YANG_VERSION_1_1;
    EXPECT_STREQ(ZR_MOD_GetYangVersion(module_), "1.1");
}

TEST_F(Module, ThatIsNullTellsNothing)
{
    EXPECT_EQ(ZR_MOD_GetModuleName(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetModuleNs(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetModulePrefix(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetOrganization(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetRevision(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetYangVersion(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetDescription(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetTypedefDefault(nullptr, "t"), nullptr);
    EXPECT_EQ(ZR_MOD_GetTypedefUnits(nullptr, "t"), nullptr);
    EXPECT_EQ(ZR_MOD_GetPrivate(nullptr), nullptr);
    ZR_MOD_SetPrivate(nullptr, this);
    EXPECT_EQ(ZR_MOD_GetRealTypeByTypDefName(nullptr, "t"), nullptr);
    EXPECT_EQ(ZR_MOD_GetIdentityName(nullptr), nullptr);
    EXPECT_EQ(ZR_MOD_GetIdentityDescription(nullptr), nullptr);
    EXPECT_EQ(ZRS_MOD_GetImportModNameByPrefix(nullptr, "o"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetModuleNameByPrefix(nullptr, "o"), nullptr);
    EXPECT_EQ(ZRS_MOD_ConvertPrefixValToJsonFormat(nullptr, "o:x"), nullptr);
    ZRS_MOD_DestroyNonNodeMember(nullptr);
    ZRS_MOD_DestroyNodeMember(nullptr);
    ZRS_MOD_Free(nullptr);
}

TEST_F(Module, KeepsThePrivatePointer)
{
    EXPECT_EQ(ZR_MOD_GetPrivate(module_), nullptr);
    ZR_MOD_SetPrivate(module_, this);
    EXPECT_EQ(ZR_MOD_GetPrivate(module_), this);
    ZR_MOD_SetPrivate(module_, nullptr);
    EXPECT_EQ(ZR_MOD_GetPrivate(module_), nullptr);
}

TEST_F(Module, GivesTheTypeOfATypedef)
{
    ZrtRealType type = {ZRT_TYPE_INT16, 0, 0, nullptr};
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &type, nullptr), ZR_OK);
    const ZrtRealType *found = ZR_MOD_GetRealTypeByTypDefName(module_, "t");
    ASSERT_EQ(found, &module_->typedefs[0].realType);
    EXPECT_EQ(found->baseType, ZRT_TYPE_INT16);
    EXPECT_EQ(ZR_MOD_GetRealTypeByTypDefName(module_, "u"), nullptr);
    EXPECT_EQ(ZR_MOD_GetRealTypeByTypDefName(module_, nullptr), nullptr);
}

TEST_F(Module, GivesTheDefaultAndTheUnitsThatATypedefStatesItself)
{
    ZrtRealType type = {ZRT_TYPE_INT16, 0, 0, nullptr};
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "bare", &type, nullptr), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "full", &type, "7"), ZR_OK);
    module_->typedefs[1].units = ZR_DICT_Insert(dict_, "metres");
    EXPECT_STREQ(ZR_MOD_GetTypedefDefault(module_, "full"), "7");
    EXPECT_STREQ(ZR_MOD_GetTypedefUnits(module_, "full"), "metres");
    for (const char *name : {"bare", "absent", static_cast<const char *>(nullptr)}) {
        EXPECT_EQ(ZR_MOD_GetTypedefDefault(module_, name), nullptr);
        EXPECT_EQ(ZR_MOD_GetTypedefUnits(module_, name), nullptr);
    }
}

TEST_F(Module, GivesNameAndDescriptionOfAnIdentity)
{
    ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module_, "i"), ZR_OK);
    ZrsIdentity *identity = &module_->identities[0];
    EXPECT_STREQ(ZR_MOD_GetIdentityName(identity), "i");
    EXPECT_EQ(ZR_MOD_GetIdentityDescription(identity), nullptr);
    identity->description = ZR_DICT_Insert(dict_, "text");
    EXPECT_STREQ(ZR_MOD_GetIdentityDescription(identity), "text");
}

TEST_F(Module, ResolvesPrefixesOfImports)
{
    EXPECT_STREQ(ZRS_MOD_GetImportModNameByPrefix(module_, "o"), "other");
    EXPECT_STREQ(ZRS_MOD_GetImportModNameByPrefix(module_, "t"), "third");
    EXPECT_EQ(ZRS_MOD_GetImportModNameByPrefix(module_, "m"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetImportModNameByPrefix(module_, "x"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetImportModNameByPrefix(module_, nullptr), nullptr);
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(module_, "o"), "other");
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(module_, "m"), "m");
    EXPECT_EQ(ZRS_MOD_GetModuleNameByPrefix(module_, "x"), nullptr);
    EXPECT_EQ(ZRS_MOD_GetModuleNameByPrefix(module_, nullptr), nullptr);
}

TEST_F(Module, TakesItsOwnPrefixBeforeAnImportsEqualOne)
{
    ASSERT_EQ(ZRS_MOD_AppendOneImport(module_, "impostor", "m"), ZR_OK);
    EXPECT_STREQ(ZRS_MOD_GetModuleNameByPrefix(module_, "m"), "m");
    EXPECT_STREQ(ZRS_MOD_GetImportModNameByPrefix(module_, "m"), "impostor");
}

TEST_F(Module, WritesValuesInModuleNameForm)
{
    const std::string name64(64, 'n');
    const std::string name65(65, 'n');
    EXPECT_EQ(Json("x"), "m:x");
    EXPECT_EQ(Json("m:x"), "m:x");
    EXPECT_EQ(Json("o:x"), "other:x");
    EXPECT_EQ(Json(("o:" + name64).c_str()), "other:" + name64);
    EXPECT_EQ(Json(name64.c_str()), "m:" + name64);
    EXPECT_EQ(Json("unknown:x"), "(none)");
    EXPECT_EQ(Json(name65.c_str()), "(none)");
    EXPECT_EQ(Json(("o:" + name65).c_str()), "(none)");
    EXPECT_EQ(Json((name65 + ":x").c_str()), "(none)");
    EXPECT_EQ(Json(""), "(none)");
    EXPECT_EQ(Json("o:"), "(none)");
    EXPECT_EQ(Json("o x"), "(none)");
    EXPECT_EQ(Json(nullptr), "(none)");
}

TEST_F(Module, WritesNoValueWithoutMemory)
{
    guard_.FailAt(0);
    EXPECT_EQ(Json("o:x"), "(none)");
    guard_.Stop();
}

TEST_F(Module, MembersAreFoundByModuleAndName)
{
    ZrtRealType type = {ZRT_TYPE_INT16, 0, 0, nullptr};
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &type, nullptr), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module_, "i"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneFeature(module_, "f"), ZR_OK);
    EXPECT_EQ(ZR_CTX_FindTdefObjByModAndTdefName(ctx_, "m", "t"), &module_->typedefs[0]);
    EXPECT_EQ(ZR_CTX_FindIdentityByModNameAndIdentName(ctx_, "m", "i"), &module_->identities[0]);
    EXPECT_EQ(ZR_CTX_FindFeatureByModNameAndFeatName(ctx_, "m", "f"), &module_->features[0]);
}

TEST_F(Module, MembersAreNotFoundByAnythingElse)
{
    struct {
        ZrCtx *ctx;
        const char *module;
        const char *name;
    } const rows[] = {{nullptr, "m", "x"},
                      {ctx_, nullptr, "x"},
                      {ctx_, "m", nullptr},
                      {ctx_, "x", "x"},
                      {ctx_, "m", "x"}};
    for (const auto &row : rows) {
        EXPECT_EQ(ZR_CTX_FindTdefObjByModAndTdefName(row.ctx, row.module, row.name), nullptr);
        EXPECT_EQ(ZR_CTX_FindIdentityByModNameAndIdentName(row.ctx, row.module, row.name), nullptr);
        EXPECT_EQ(ZR_CTX_FindFeatureByModNameAndFeatName(row.ctx, row.module, row.name), nullptr);
    }
}

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
