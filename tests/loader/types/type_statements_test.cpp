// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "loader/type_snippet.h"
#include "loader/types/type_fill.h"
#include "support/alloc.h"

namespace {

using zrtest::SnippetModule;
using zrtest::TypeSnippet;
using zrtest::YinElement;
using Texts = std::vector<std::string>;

TEST(BaseTypeName, OfEveryBuiltInTypeGivesItsNumber)
{
    const char *const names[] = {"binary",  "bits",        "boolean",     "decimal64",
                                 "empty",   "enumeration", "identityref", "instance-identifier",
                                 "int8",    "int16",       "int32",       "int64",
                                 "leafref", "string",      "uint8",       "uint16",
                                 "uint32",  "uint64",      "union"};
    uint32_t number = ZRT_TYPE_BINARY;
    for (const char *name : names)
        EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(name), number++) << name;
    EXPECT_EQ(number, uint32_t{ZRT_TYPE_NONE});
}

TEST(BaseTypeName, OfAnythingElseIsDerived)
{
    for (const char *name : {"",
                             "t:int8",
                             "int8x",
                             "int",
                             "uint",
                             "Int8",
                             "INT8",
                             " int8",
                             "int8 ",
                             "int128",
                             "strings",
                             "str",
                             "derived",
                             "my-type",
                             "b",
                             "u",
                             "bit",
                             "boolea",
                             "instance-identifie",
                             "type",
                             "x",
                             "enum",
                             "\xC3\xBC"})
        EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(name), 0u) << name;
    EXPECT_EQ(ZRT_LOADER_GetBaseTypeFromTypeName(nullptr), 0u);
}

constexpr char kNoTypeName[] = "Failed to get value of statement \"typeName\".";

TEST(TypeStatement, OfABuiltInTypeHasNoSlots)
{
    TypeSnippet snippet("<type name=\"int8\"/>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().baseType, ZRT_TYPE_INT8);
    EXPECT_EQ(snippet.type().consCount, 0);
    EXPECT_EQ(snippet.type().constraints, nullptr);
    EXPECT_EQ(snippet.Messages(), Texts{});
}

TEST(TypeStatement, OfAnotherNameIsDerivedFromATypedefOfTheModule)
{
    TypeSnippet snippet("<type name=\"uint\"/>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.type().baseType, ZRT_TYPE_DERIVED);
    ASSERT_EQ(snippet.type().consCount, 1);
    EXPECT_EQ(snippet.type().constraints[0].kind, uint32_t{ZRT_CONS_DERIVED});
    const char *moduleName = nullptr;
    EXPECT_STREQ(ZRT_TYPE_GetInheritedTypDefName(&snippet.type(), &moduleName), "uint");
    EXPECT_STREQ(moduleName, "m");
}

TEST(TypeStatement, OfAPrefixedNameIsDerivedFromATypedefOfTheImportedModule)
{
    TypeSnippet snippet("<type name=\"t:my-type\"/>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    const char *moduleName = nullptr;
    EXPECT_STREQ(ZRT_TYPE_GetInheritedTypDefName(&snippet.type(), &moduleName), "my-type");
    EXPECT_STREQ(moduleName, "types");
}

TEST(TypeStatement, OrdersItsSlotsByKindWhateverTheOrderOfTheChildren)
{
    TypeSnippet snippet("<type name=\"int32\"><range value=\"1..2\"/><pattern value=\"a\"/>"
                        "<length value=\"3\"/><pattern value=\"b\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    ASSERT_EQ(snippet.type().consCount, 3);
    EXPECT_EQ(snippet.type().constraints[0].kind, ZRT_CONS_LENGTH);
    EXPECT_EQ(snippet.type().constraints[1].kind, ZRT_CONS_PATTERN);
    EXPECT_EQ(snippet.type().constraints[2].kind, ZRT_CONS_RANGE);
    EXPECT_EQ(snippet.Get<ZrtConsPattern>(ZRT_CONS_PATTERN)->count, 2);
}

TEST(TypeStatement, TakesItsNameFromTheFirstAttributeWhateverThatIsCalled)
{
    TypeSnippet snippet("<type odd=\"int8\" name=\"string\"/>");
    EXPECT_EQ(snippet.type().baseType, ZRT_TYPE_INT8);
}

TEST(TypeStatement, WithoutANameIsRefused)
{
    for (const char *text : {"<type/>", "<type><range value=\"1\"/></type>"}) {
        TypeSnippet snippet(text);
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
        EXPECT_EQ(snippet.Messages(), Texts{kNoTypeName});
    }
}

TEST(TypeStatement, WithoutADestinationIsRefusedWithoutAMessage)
{
    SnippetModule module;
    YinElement element("<type name=\"int8\"/>");
    EXPECT_EQ(ZRT_LOADER_ParseTypeStmt(module.module(), element.get(), ZRS_STMT_LEAF, nullptr),
              ZR_ERR_INVALID);
    EXPECT_EQ(module.Messages(), Texts{});
}

TEST(TypeStatement, IntoATypeThatHasSlotsAlreadyIsRefused)
{
    SnippetModule module;
    YinElement element("<type name=\"int8\"><range value=\"1\"/></type>");
    ZrtRealType type = {};
    ASSERT_EQ(ZRT_TYPE_ExpandConstraintArray(&type, 1), ZR_OK);
    EXPECT_EQ(ZRT_LOADER_ParseTypeStmt(module.module(), element.get(), ZRS_STMT_LEAF, &type),
              ZR_ERR_INVALID);
    ZRT_TYPE_DestroyZrtRealTypeInner(module.context(), &type);
}

TEST(TypeStatement, ThatFailsNamesTheTypeInItsMessage)
{
    TypeSnippet snippet("<type name=\"string\"><range value=\"1..2\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{"Failed to parse value \"string\" of statement \"type\"."});
}

TEST(TypeStatement, TakesRestrictionsOnAnyBaseType)
{
    for (const char *restriction :
         {"<length value=\"1\"/>", "<pattern value=\"a\"/>", "<enum name=\"a\"/>",
          "<bit name=\"a\"/>", "<base name=\"a\"/>", "<path value=\"/m:a\"/>",
          "<fraction-digits value=\"1\"/>", "<type name=\"int8\"/>"}) {
        TypeSnippet snippet(std::string("<type name=\"boolean\">") + restriction + "</type>");
        EXPECT_EQ(snippet.status(), ZR_OK) << restriction;
        EXPECT_EQ(snippet.type().consCount, 1) << restriction;
    }
}

TEST(TypeStatement, WithMoreThan65535ChildrenOfAKindIsRefused)
{
    std::string enums;
    for (int i = 0; i < 65535; ++i)
        enums += "<enum name=\"e" + std::to_string(i) + "\"/>";
    TypeSnippet most("<type name=\"enumeration\">" + enums + "</type>");
    EXPECT_EQ(most.status(), ZR_OK);
    EXPECT_EQ(most.Get<ZrtConsEnum>(ZRT_CONS_ENUM)->count, 65535);
    TypeSnippet tooMany("<type name=\"enumeration\">" + enums + "<enum name=\"x\"/></type>");
    EXPECT_EQ(tooMany.status(), ZR_ERR_INVALID);
    EXPECT_EQ(tooMany.Messages(),
              Texts{"Failed to parse value \"enumeration\" of statement \"type\"."});
}

// A restriction of every kind that allocates.
constexpr char kEverything[] = R"(<type name="t:everything">
  <base name="t:b"/><bit name="b0"/>
  <enum name="e0"><description><text>About e0.</text></description></enum><enum name="e1"/>
  <fraction-digits value="3"/><length value="1..5|9"/>
  <path value="/t:other"/><pattern value="^a.*$"/><range value="1..max"/>
  <type name="union"><type name="t:member"/><type name="string"><length value="3"/></type></type>
</type>)";

TEST(TypeStatement, FailsCleanlyWhicheverAllocationFails)
{
    YinElement element(kEverything);
    uint64_t points = zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        SnippetModule module(ZR_CTX_KEEP_DESCRIPTIONS);
        ZrtRealType type = {};
        uint32_t status = memory.RunStatus([&] {
            return ZRT_LOADER_ParseTypeStmt(module.module(), element.get(), ZRS_STMT_LEAF, &type);
        });
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_NO_MEMORY || status == ZR_ERR_INVALID)
            << status;
        ZRT_TYPE_DestroyZrtRealTypeInner(module.context(), &type);
    });
    EXPECT_GT(points, 30u);
}

// A typedef statement that is parsed and given back.
class TypeDefSnippet : public SnippetModule {
public:
    explicit TypeDefSnippet(const std::string &text, uint32_t flags = 0)
        : SnippetModule(flags), element_(text),
          status_(ZRT_LOADER_ParseTypeDefStmt(module(), element_.get(), ZRS_STMT_MODULE, &typeDef_))
    {
    }
    ~TypeDefSnippet() { ZRS_TYPE_DestroyTypDefInner(context(), &typeDef_); }
    uint32_t status() const { return status_; }
    const ZrsTypDef &typeDef() const { return typeDef_; }

private:
    YinElement element_;
    ZrsTypDef typeDef_ = {};
    uint32_t status_;
};

TEST(TypeDefStatement, HasNameTypeDefaultAndUnits)
{
    TypeDefSnippet snippet("<typedef name=\"percent\"><type name=\"uint8\">"
                           "<range value=\"0..100\"/></type><units name=\"percent\"/>"
                           "<default value=\"5\"/></typedef>",
                           ZR_CTX_KEEP_UNITS);
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_STREQ(snippet.typeDef().name, "percent");
    EXPECT_STREQ(snippet.typeDef().defaultValue, "5");
    EXPECT_STREQ(snippet.typeDef().units, "percent");
    EXPECT_EQ(snippet.typeDef().realType.baseType, uint32_t{ZRT_TYPE_UINT8});
    EXPECT_EQ(snippet.typeDef().realType.consCount, 1);
    EXPECT_EQ(snippet.Messages(), Texts{});
}

TEST(TypeDefStatement, WithoutUnitsKeptHasNone)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><type name=\"uint8\"/><units name=\"u\"/>"
                           "</typedef>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.typeDef().units, nullptr);
}

TEST(TypeDefStatement, WithoutANameIsRefused)
{
    TypeDefSnippet snippet("<typedef><type name=\"uint8\"/></typedef>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{"Failed to get value of statement \"typedef\"."});
}

TEST(TypeDefStatement, WithoutATypeIsRefused)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><default value=\"1\"/></typedef>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), Texts{"typedef \"a\" must define with type statement."});
    EXPECT_EQ(snippet.typeDef().name, nullptr);
    EXPECT_EQ(snippet.typeDef().defaultValue, nullptr);
}

TEST(TypeDefStatement, WithABadTypeIsRefused)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><type name=\"int8\"><range value=\"x\"/></type>"
                           "</typedef>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), (Texts{"Failed to parse value \"int8\" of statement \"type\".",
                                         "Failed to parse value \"a\" of statement \"typedef\"."}));
    EXPECT_EQ(snippet.typeDef().name, nullptr);
    EXPECT_EQ(snippet.typeDef().realType.constraints, nullptr);
}

TEST(TypeDefStatement, WithTwoTypesIsRefused)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><type name=\"int8\"/><type name=\"string\"/>"
                           "</typedef>");
    EXPECT_EQ(snippet.status(), ZR_ERR_FAILED);
    EXPECT_EQ(snippet.Messages(),
              (Texts{"Statement \"type\" under statement \"typedef\" has repeated.",
                     "Failed to parse value \"a\" of statement \"typedef\"."}));
}

TEST(TypeDefStatement, BringsItsIdentityDefaultIntoModuleNameForm)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><type name=\"identityref\"><base name=\"t:b\"/>"
                           "</type><default value=\"t:c\"/></typedef>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_STREQ(snippet.typeDef().defaultValue, "types:c");
}

TEST(TypeDefStatement, WithAnIdentityDefaultOfAnUnknownPrefixIsRefused)
{
    TypeDefSnippet snippet("<typedef name=\"a\"><type name=\"identityref\"><base name=\"t:b\"/>"
                           "</type><default value=\"u:c\"/></typedef>");
    EXPECT_NE(snippet.status(), ZR_OK);
    EXPECT_EQ(snippet.typeDef().name, nullptr);
}

TEST(TypeDefStatement, WithoutADestinationIsRefused)
{
    SnippetModule module;
    YinElement element("<typedef name=\"a\"><type name=\"int8\"/></typedef>");
    EXPECT_EQ(ZRT_LOADER_ParseTypeDefStmt(module.module(), element.get(), ZRS_STMT_MODULE, nullptr),
              ZR_ERR_INVALID);
}

TEST(TypeDefStatement, FailsCleanlyWhicheverAllocationFails)
{
    YinElement element(std::string("<typedef name=\"td\">") + kEverything +
                       "<default value=\"d\"/><units name=\"u\"/></typedef>");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        SnippetModule module(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS);
        ZrsTypDef typeDef = {};
        uint32_t status = memory.RunStatus([&] {
            return ZRT_LOADER_ParseTypeDefStmt(module.module(), element.get(), ZRS_STMT_MODULE,
                                               &typeDef);
        });
        if (status != ZR_OK) {
            EXPECT_EQ(typeDef.name, nullptr);
        }
        ZRS_TYPE_DestroyTypDefInner(module.context(), &typeDef);
    });
}

} // namespace
