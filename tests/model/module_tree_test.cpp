#include "model/context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/bare_context.h"
#include "model/module_records.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A module record with nothing in it but its keys; the test owns it.
ZrMod MakeModule(const char *name, const char *ns)
{
    ZrMod module{};
    module.name = name;
    module.ns = ns;
    PAL_AVL3_InitNode(&module.byNameLink);
    PAL_AVL3_InitNode(&module.byNamespaceLink);
    return module;
}

class ModuleTree : public zrtest::BareContextTest {
protected:
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (ZrMod *module = zr::FirstModule(ctx_); module != nullptr;
             module = zr::NextModule(ctx_, module))
            names.emplace_back(module->name);
        return names;
    }
};

TEST_F(ModuleTree, FindsAModuleByNameAndByNamespace)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &m), ZR_OK);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), &m);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &m);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "urn:m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "m"), nullptr);
}

TEST_F(ModuleTree, IsScannedInTheOrderOfNames)
{
    struct Noted {
        std::vector<std::string> names;
        std::string stopAt;
    } noted;
    auto note = [](ZrMod *module, void *userData) -> uint32_t {
        auto *into = static_cast<Noted *>(userData);
        into->names.emplace_back(module->name);
        return into->stopAt == module->name ? 9 : 0;
    };
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), ZR_OK);
    EXPECT_THAT(noted.names, IsEmpty());
    ZrMod b = MakeModule("b", "urn:1");
    ZrMod c = MakeModule("c", "urn:0");
    ZrMod a = MakeModule("a", "urn:2");
    for (ZrMod *module : {&b, &c, &a})
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, module), ZR_OK);
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), ZR_OK);
    EXPECT_THAT(noted.names, ElementsAre("a", "b", "c"));
    noted = {{}, "b"};
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, note, &noted), 9u);
    EXPECT_THAT(noted.names, ElementsAre("a", "b"));
    EXPECT_EQ(ZR_CTX_ScanAllModules(nullptr, note, &noted), ZR_ERR_INVALID);
    EXPECT_EQ(ZR_CTX_ScanAllModules(ctx_, nullptr, &noted), ZR_ERR_INVALID);
}

TEST_F(ModuleTree, LookupsOfNullAreNull)
{
    EXPECT_EQ(ZR_CTX_GetModuleByModName(nullptr, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, nullptr), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(nullptr, "urn:m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, nullptr), nullptr);
}

TEST_F(ModuleTree, WalksModulesInTheOrderOfTheirNames)
{
    ZrMod modules[] = {MakeModule("m", "urn:1"), MakeModule("a", "urn:3"),
                       MakeModule("z", "urn:2")};
    for (ZrMod &module : modules)
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &module), ZR_OK);
    EXPECT_THAT(Names(), ElementsAre("a", "m", "z"));
}

TEST_F(ModuleTree, IsWalkedByARangeInTheSameOrder)
{
    ZrMod z = MakeModule("z", "urn:1");
    ZrMod a = MakeModule("a", "urn:2");
    std::vector<const ZrMod *> walked;
    for (const ZrMod *module : zr::ModulesOf(ctx_))
        walked.push_back(module);
    EXPECT_TRUE(walked.empty());
    ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &z), ZR_OK);
    ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &a), ZR_OK);
    for (const ZrMod *module : zr::ModulesOf(ctx_))
        walked.push_back(module);
    EXPECT_THAT(walked, ElementsAre(&a, &z));
}

TEST_F(ModuleTree, WalksOfNullAreEmpty)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(zr::FirstModule(nullptr), nullptr);
    EXPECT_EQ(zr::FirstModule(ctx_), nullptr);
    EXPECT_EQ(zr::NextModule(nullptr, &m), nullptr);
    EXPECT_EQ(zr::NextModule(ctx_, nullptr), nullptr);
}

TEST_F(ModuleTree, RefusesASecondModuleOfTheSameName)
{
    ZrMod first = MakeModule("m", "urn:1");
    ZrMod second = MakeModule("m", "urn:2");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &first), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &second), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), &first);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:2"), nullptr);
}

TEST_F(ModuleTree, RefusesASecondModuleOfTheSameNamespaceAndTakesItsNameOutAgain)
{
    ZrMod first = MakeModule("a", "urn:m");
    ZrMod second = MakeModule("b", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &first), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &second), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "b"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &first);
    EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ModuleTree, TakingOutARefusedModuleLeavesTheOneThatWasThereFirst)
{
    ZrMod first = MakeModule("a", "urn:m");
    ZrMod second = MakeModule("b", "urn:m");
    ZR_CTX_AddModuleNode(ctx_, &first);
    ZR_CTX_AddModuleNode(ctx_, &second);
    zr::RemoveModuleNode(ctx_, &second);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "a"), &first);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), &first);
}

TEST_F(ModuleTree, TakesAModuleOutOfBothTreesAndInAgain)
{
    ZrMod m = MakeModule("m", "urn:m");
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(ZR_CTX_AddModuleNode(ctx_, &m), ZR_OK);
        zr::RemoveModuleNode(ctx_, &m);
        EXPECT_THAT(Names(), IsEmpty());
        EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
    }
    zr::RemoveModuleNode(ctx_, &m);
    zr::RemoveModuleNode(ctx_, nullptr);
    zr::RemoveModuleNode(nullptr, &m);
}

TEST_F(ModuleTree, AModuleWithoutANamespaceIsTheOnlyOne)
{
    ZrMod without = MakeModule("a", nullptr);
    ZrMod with = MakeModule("b", "urn:b");
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &without), ZR_OK);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, &with), ZR_ERR_FAILED);
    EXPECT_THAT(Names(), ElementsAre("a"));
}

TEST_F(ModuleTree, NullArgumentsAre1)
{
    ZrMod m = MakeModule("m", "urn:m");
    EXPECT_EQ(ZR_CTX_AddModuleNode(nullptr, &m), ZR_ERR_FAILED);
    EXPECT_EQ(ZR_CTX_AddModuleNode(ctx_, nullptr), ZR_ERR_FAILED);
    ZR_CTX_InitModuleTree(nullptr);
}

TEST_F(ModuleTree, InitMakesBothTreesEmpty)
{
    ZrMod m = MakeModule("m", "urn:m");
    ZR_CTX_AddModuleNode(ctx_, &m);
    ZR_CTX_InitModuleTree(ctx_);
    EXPECT_EQ(ZR_CTX_GetModuleByModName(ctx_, "m"), nullptr);
    EXPECT_EQ(ZR_CTX_GetModuleByModNs(ctx_, "urn:m"), nullptr);
}

TEST(ModTreeKeyCompare, ComparesBytesAndTakesNullAsEqualToEverything)
{
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare("a", std::string("a").c_str()), 0);
    EXPECT_LT(ZR_CTX_ModTreeKeyCompare("a", "b"), 0);
    EXPECT_GT(ZR_CTX_ModTreeKeyCompare("b", "a"), 0);
    EXPECT_GT(ZR_CTX_ModTreeKeyCompare("\xff", "a"), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare(nullptr, "a"), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare("a", nullptr), 0);
    EXPECT_EQ(ZR_CTX_ModTreeKeyCompare(nullptr, nullptr), 0);
}

} // namespace
