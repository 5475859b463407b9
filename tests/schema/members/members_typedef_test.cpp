#include "schema/members/members.h"
#include "schema/record_fixture.h"
#include "types/real_type.h"

namespace {

class TypeDef : public zrtest::RecordTest {
protected:
    void SetUp() override { module_ = NewModule("m"); }
    void TearDown() override
    {
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &derived_);
        RecordTest::TearDown();
    }
    // A type derived from the module's typedef of that name.
    const ZrtRealType *DerivedFrom(const char *name)
    {
        ZRT_TYPE_DestroyZrtRealTypeInner(ctx_, &derived_);
        auto *body = zr::New<ZrtConsDerived>();
        body->moduleName = ZR_DICT_Insert(dict_, "m");
        body->typedefName = ZR_DICT_Insert(dict_, name);
        EXPECT_EQ(ZRT_TYPE_ExpandConstraintArray(&derived_, 1), ZR_OK);
        derived_.constraints[0] = {ZRT_CONS_DERIVED, body};
        derived_.consCount = 1;
        return &derived_;
    }
    ZrMod *module_ = nullptr;
    ZrtRealType plain_ = {ZRT_TYPE_INT8, 0, 0, nullptr};
    ZrtRealType derived_ = {};
};

TEST_F(TypeDef, NeedsNameAndType)
{
    ZrsTypDef record = {};
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, nullptr, &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", nullptr, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, nullptr, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_FillTypeDef(nullptr, &record, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(nullptr, "t", &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, nullptr, &plain_, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", nullptr, "1"), ZR_ERR_INVALID);
}

TEST_F(TypeDef, HoldsACopyOfTheTypeAndNoUnits)
{
    const ZrtRealType *source = DerivedFrom("base");
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", source, "1"), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "u", &plain_, nullptr), ZR_OK);
    const ZrsTypDef *array = module_->typedefs;
    EXPECT_STREQ(array[0].name, "t");
    EXPECT_STREQ(array[0].defaultValue, "1");
    EXPECT_EQ(array[0].units, nullptr);
    ASSERT_EQ(array[0].realType.consCount, 1);
    EXPECT_NE(array[0].realType.constraints, source->constraints);
    EXPECT_STREQ(ZRT_TYPE_GetTypeConsDataDerived(&array[0].realType)->typedefName, "base");
    EXPECT_EQ(array[1].defaultValue, nullptr);
    EXPECT_EQ(array[1].realType.baseType, ZRT_TYPE_INT8);
}

TEST_F(TypeDef, WithoutMemoryHoldsNothing)
{
    const ZrtRealType *source = DerivedFrom("base");
    ZrsTypDef record;
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        uint32_t status =
            memory.Run([&] { return ZRS_MOD_FillTypeDef(ctx_, &record, "t", source, "1"); });
        // the strings first (12), then the type (22)
        EXPECT_EQ(status != ZR_OK, memory.Failed());
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_NO_MEMORY || status == ZR_ERR_INVALID)
            << status;
        EXPECT_EQ(record.name == nullptr, memory.Failed());
        EXPECT_EQ(record.defaultValue == nullptr, memory.Failed());
        ZRS_TYPE_DestroyTypDefInner(ctx_, &record);
    });
}

TEST_F(TypeDef, OfATypeThatCannotBeCopiedIsInvalid)
{
    ZrtConsSlot slot = {ZRT_CONS_RANGE, nullptr}; // a slot without a body
    ZrtRealType broken = {ZRT_TYPE_INT8, 0, 1, &slot};
    ZrsTypDef record;
    EXPECT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", &broken, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.defaultValue, nullptr);
    EXPECT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &broken, "1"), ZR_ERR_INVALID);
    EXPECT_EQ(module_->typedefCount, 0);
}

TEST_F(TypeDef, IsFoundByItsName)
{
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "t", &plain_, nullptr), ZR_OK);
    ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module_, "u", &plain_, nullptr), ZR_OK);
    std::string name = "u";
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(module_->typedefs, 2, name.c_str()),
              &module_->typedefs[1]);
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(module_->typedefs, 1, "u"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindTypDefObjByName(nullptr, 2, "u"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(module_, name.c_str()), &module_->typedefs[1]);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(module_, "v"), nullptr);
    EXPECT_EQ(ZRS_MOD_FindZrsTypDefByName(nullptr, "u"), nullptr);
}

TEST_F(TypeDef, IsDestroyedWithItsUnits)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrsTypDef record;
    ASSERT_EQ(ZRS_MOD_FillTypeDef(ctx_, &record, "t", &plain_, "1"), ZR_OK);
    record.units = ZR_DICT_Insert(dict_, "seconds");
    ZRS_TYPE_DestroyTypDefInner(ctx_, &record);
    EXPECT_EQ(record.name, nullptr);
    EXPECT_EQ(record.units, nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_TYPE_DestroyTypDefInner(ctx_, nullptr);
    ZRS_TYPE_FreeTypDefArray(ctx_, nullptr, 0);
}

} // namespace
