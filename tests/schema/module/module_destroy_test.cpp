// SPDX-License-Identifier: Apache-2.0
#include "foundation/array.h"
#include "foundation/load_errors.h"
#include "schema/augment/augment.h"
#include "schema/members/condition_records.h"
#include "schema/members/ext_inst.h"
#include "schema/members/members.h"
#include "schema/record_fixture.h"

namespace {

class ModuleDestroy : public zrtest::RecordTest {
protected:
    // One member of every kind, and a node in every list.
    void FillEverything(ZrMod *module)
    {
        ZrtRealType type = {ZRT_TYPE_INT8, 0, 0, nullptr};
        module->organization = ZR_DICT_Insert(dict_, "organization of it");
        module->description = ZR_DICT_Insert(dict_, "description of it");
        module->revision = ZR_DICT_Insert(dict_, "2020-02-02");
        ASSERT_EQ(ZRS_MOD_AppendOneImport(module, "imported", "imp"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneInclude(module, "included"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneFeature(module, "feature of it"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneIdentity(module, "identity of it"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneExtension(module, "extension of it", "argument of it", 1),
                  ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneTypeDef(module, "typedef of it", &type, "default of it"), ZR_OK);
        ASSERT_EQ(ZRS_MOD_AppendOneDeviation(module, "/imp:deviated"), ZR_OK);
        ASSERT_EQ(ZRS_EXT_AppendOneExtInstToArray(dict_, &module->extInsts, &module->extInstCount,
                                                  "imported", "instance of it", "used"),
                  ZR_OK);
        auto fill = [&](const char **slot) -> uint32_t {
            return zr::Intern(dict_, *slot, "suffix") ? 0 : 12;
        };
        ASSERT_EQ(zr::AppendOne(&module->mergeSources, &module->mergeSourceCount, fill), ZR_OK);
        ZrNode *top = AddData(module, ZR_NODE_CONTAINER, "top");
        AddChild(top, ZR_NODE_LEAF, "below");
        AddData(module, ZR_NODE_LEAF, "second");
        AddTop(module, module->rpcs, ZR_NODE_RPC, "call");
        AddTop(module, module->notifications, ZR_NODE_NOTIFICATION, "event");
        AddTop(module, module->augments, ZR_NODE_AUGMENT, "/imp:augmented");
    }
    size_t ErrorCount(const char *moduleName)
    {
        struct Counter {
            std::string name;
            size_t count;
        } counter = {moduleName, 0};
        auto count = [](const char *name, const char *, uint32_t, const char *, uint32_t,
                        void *userData) {
            auto *into = static_cast<Counter *>(userData);
            into->count += into->name == name;
            return uint32_t{0};
        };
        ZR_CTX_ScanAllSchemaLoadFail(ctx_, count, &counter);
        return counter.count;
    }
};

TEST_F(ModuleDestroy, FreesAModuleWithoutAnything)
{
    int64_t blocks = guard_.LiveBlocks();
    ZRS_MOD_Free(zr::NewModule(ctx_));
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    ZRS_MOD_Free(nullptr);
}

TEST_F(ModuleDestroy, FreesAModuleWithEverything)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrMod *module = zr::NewModule(ctx_);
    module->name = ZR_DICT_Insert(dict_, "m");
    FillEverything(module);
    ZRS_MOD_Free(module);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
}

TEST_F(ModuleDestroy, LeavesNoMemberBehind)
{
    ZrMod *module = NewModule("m", false);
    FillEverything(module);
    ZRS_MOD_DestroyNonNodeMember(module);
    EXPECT_EQ(module->name, nullptr);
    EXPECT_EQ(module->ns, nullptr);
    EXPECT_EQ(module->prefix, nullptr);
    EXPECT_EQ(module->organization, nullptr);
    EXPECT_EQ(module->description, nullptr);
    EXPECT_EQ(module->revision, nullptr);
    EXPECT_EQ(module->imports, nullptr);
    EXPECT_EQ(module->typedefs, nullptr);
    EXPECT_EQ(module->extInsts, nullptr);
    EXPECT_EQ(module->extInstCount, 0);
    EXPECT_EQ(module->mergeSources, nullptr);
    EXPECT_NE(module->dataNodes, nullptr);
    ZRS_MOD_DestroyNodeMember(module);
    EXPECT_EQ(module->dataNodes, nullptr);
    EXPECT_EQ(module->augments, nullptr);
}

TEST_F(ModuleDestroy, FreesNodesListByListInOrder)
{
    static std::string s_freed;
    s_freed.clear();
    ZR_CTX_SetPridataFreeFunc(ctx_, [](ZrNode *node, void *) { s_freed += node->name; });
    ZrMod *module = NewModule("m", false);
    ZR_NODE_SetPrivate(AddTop(module, module->augments, ZR_NODE_AUGMENT, "g"), this);
    ZR_NODE_SetPrivate(AddTop(module, module->notifications, ZR_NODE_NOTIFICATION, "f"), this);
    ZR_NODE_SetPrivate(AddTop(module, module->rpcs, ZR_NODE_RPC, "e"), this);
    ZrNode *top = AddData(module, ZR_NODE_CONTAINER, "a");
    ZR_NODE_SetPrivate(top, this);
    ZR_NODE_SetPrivate(AddData(module, ZR_NODE_LEAF, "d"), this);
    ZR_NODE_SetPrivate(AddChild(top, ZR_NODE_LEAF, "b"), this);
    ZR_NODE_SetPrivate(AddChild(top, ZR_NODE_LEAF, "c"), this);
    ZRS_MOD_DestroyNodeMember(module);
    EXPECT_EQ(s_freed, "abcdefg");
}

TEST_F(ModuleDestroy, TakesTheModuleOutOfTheContext)
{
    ZrMod *module = NewModule("m");
    FillEverything(module);
    NewModule("other");
    ZR_CTX_AddModError(ctx_, "m", "broken");
    ZR_CTX_AddModError(ctx_, "other", "broken");
    ZR_CTX_DestroyModuleNode(ctx_, module);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
    EXPECT_EQ(ErrorCount("m"), 0u);
    EXPECT_NE(ZR_CTX_GetModuleByModName(ctx_, "other"), nullptr);
    EXPECT_EQ(ErrorCount("other"), 1u);
}

TEST_F(ModuleDestroy, LeavesTheModuleThatHoldsTheNamespace)
{
    ZrMod *first = NewModule("m");
    ZrMod *second = zr::NewModule(ctx_); // in no tree
    second->name = ZR_DICT_Insert(dict_, "n");
    second->ns = ZR_DICT_Insert(dict_, "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, second), ZR_ERR_FAILED);
    ZR_CTX_DestroyModuleNode(ctx_, second);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), first);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), first);
}

TEST_F(ModuleDestroy, TakesNullArguments)
{
    ZR_CTX_DestroyModuleNode(nullptr, nullptr);
    ZR_CTX_DestroyModuleNode(ctx_, nullptr);
    ZR_CTX_DeInitModuleTree(nullptr);
    ZR_CTX_Delete(nullptr);
}

TEST_F(ModuleDestroy, EmptiesTheModuleTree)
{
    for (const char *name : {"b", "a", "c"})
        FillEverything(NewModule(name));
    ZR_CTX_DeInitModuleTree(ctx_);
    EXPECT_EQ(zr::FirstModule(ctx_), nullptr);
    ZR_CTX_DeInitModuleTree(ctx_);
}

// Whichever of two modules goes first, the nodes that one has in the other are back home by then.
TEST_F(ModuleDestroy, UncouplesAugmentsBeforeAnyModuleGoes)
{
    ZrMod *a = NewModule("a");
    ZrMod *b = NewModule("b");
    ZrNode *inA = AddData(a, ZR_NODE_CONTAINER, "top");
    ZrNode *inB = AddData(b, ZR_NODE_CONTAINER, "top");
    ZrNode *aToB = AddTop(a, a->augments, ZR_NODE_AUGMENT, "/b:top");
    ZrNode *bToA = AddTop(b, b->augments, ZR_NODE_AUGMENT, "/a:top");
    AddChild(aToB, ZR_NODE_LEAF, "of-a");
    AddChild(bToA, ZR_NODE_LEAF, "of-b");
    ASSERT_EQ(ZRS_NODE_CoupleAugmentNodeAndTargetNode(aToB, inB), ZR_OK);
    ASSERT_EQ(ZRS_NODE_CoupleAugmentNodeAndTargetNode(bToA, inA), ZR_OK);
    aToB->flags |= ZRS_FLAG_COUPLED;
    bToA->flags |= ZRS_FLAG_COUPLED;
    ZR_CTX_DeInitModuleTree(ctx_);
    EXPECT_EQ(zr::FirstModule(ctx_), nullptr);
}

TEST_F(ModuleDestroy, OfAContextGivesEverythingBack)
{
    int64_t blocks = guard_.LiveBlocks();
    ZrCtx *ctx = ZR_CTX_Create(0);
    ZrMod *module = zr::NewModule(ctx);
    module->name = ZR_DICT_Insert(&ctx->dict, "m");
    module->ns = ZR_DICT_Insert(&ctx->dict, "urn:m");
    ASSERT_EQ(ZR_CTX_AddModuleNode(ctx, module), ZR_OK);
    ZR_CTX_AddModError(ctx, "m", "broken");
    ASSERT_EQ(ZR_CTX_SetSearchDir(ctx, "/"), ZR_OK);
    ZR_CTX_Delete(ctx);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
}

} // namespace
