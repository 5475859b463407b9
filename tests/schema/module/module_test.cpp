#include "schema/module/module.h"

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

} // namespace
