#include <utility>

#include "loader/type_snippet.h"
#include "support/alloc.h"

namespace {

using zrtest::SnippetModule;
using zrtest::TypeSnippet;
using zrtest::YinElement;
using Texts = std::vector<std::string>;

std::string Message(const std::string &name)
{
    return "Failed to parse value \"" + name + "\" of statement \"type\".";
}

TEST(DerivedFill, MapsItsPrefix)
{
    struct Row {
        const char *name;
        const char *module;
        const char *typeDef;
    };
    for (const Row &row : {Row{"a", "m", "a"}, Row{"m:a", "m", "a"}, Row{"t:a", "types", "a"}}) {
        TypeSnippet snippet(std::string("<type name=\"") + row.name + "\"/>");
        EXPECT_EQ(snippet.status(), ZR_OK);
        const auto *body = snippet.Get<ZrtConsDerived>(ZRT_CONS_DERIVED);
        ASSERT_NE(body, nullptr);
        EXPECT_STREQ(body->moduleName, row.module);
        EXPECT_STREQ(body->typedefName, row.typeDef);
        EXPECT_EQ(body->resolved, nullptr);
    }
}

TEST(DerivedFill, TakesPrefixAndNameOf64Characters)
{
    std::string name(64, 'n');
    EXPECT_EQ(TypeSnippet("<type name=\"" + name + "\"/>").status(), ZR_OK);
    EXPECT_EQ(TypeSnippet("<type name=\"t:" + name + "\"/>").status(), ZR_OK);
}

TEST(DerivedFill, RefusesBadNames)
{
    std::string longName(65, 'n');
    for (const std::string &name :
         {std::string(""), std::string("u:a"), std::string("t:"), std::string(":a"),
          std::string("a b"), std::string("a:b:c"), longName, "t:" + longName, longName + ":a"}) {
        TypeSnippet snippet("<type name=\"" + name + "\"/>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << name;
        EXPECT_EQ(snippet.Messages(), Texts{Message(name)});
    }
}

// The name of a loaded module is interned; this one has to be.
TEST(DerivedFill, IsRefusedWithoutMemoryForANameThatIsNotInterned)
{
    SnippetModule snippet;
    YinElement element("<type name=\"a\"/>");
    ZrtConsDerived body = {};
    const char *name = std::exchange(snippet.module()->name, "not-interned");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        uint32_t status = memory.Run([&] {
            return ZRT_LOADER_FillConsDataAndAllDerivedSeg(snippet.module(), nullptr, &body,
                                                           element.get(), 1);
        });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        zr::Release(&snippet.context().get()->dict, body.moduleName);
        zr::Release(&snippet.context().get()->dict, body.typedefName);
    });
    snippet.module()->name = name;
}

TEST(BaseFill, MapsItsPrefixes)
{
    TypeSnippet snippet("<type name=\"identityref\"><base name=\"a\"/><base name=\"t:b\"/>"
                        "<base name=\"m:c\"/></type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsBase>(ZRT_CONS_BASE);
    ASSERT_EQ(body->count, 3);
    EXPECT_STREQ(body->items[0].moduleName, "m");
    EXPECT_STREQ(body->items[0].identityName, "a");
    EXPECT_STREQ(body->items[1].moduleName, "types");
    EXPECT_STREQ(body->items[1].identityName, "b");
    EXPECT_STREQ(body->items[2].moduleName, "m");
}

TEST(BaseFill, WithoutANameRecordsItsKeyword)
{
    TypeSnippet snippet("<type name=\"identityref\"><base/></type>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(),
              (Texts{"Failed to get value of statement \"base\".", Message("identityref")}));
}

TEST(BaseFill, RefusesBadNames)
{
    std::string longName(65, 'n');
    for (const std::string &name : {std::string(""), std::string("u:a"), std::string("t:"),
                                    longName, "t:" + longName, longName + ":a"}) {
        TypeSnippet snippet("<type name=\"identityref\"><base name=\"" + name + "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << name;
        EXPECT_EQ(snippet.Messages(), Texts{Message("identityref")});
    }
}

TEST(PathFill, KeepsThePathInModuleNameForm)
{
    struct Row {
        const char *path;
        const char *kept;
    };
    for (const Row &row :
         {Row{"/m:a/m:b", "/m:a/b"}, Row{"/a/t:b", "/m:a/types:b"}, Row{"../a", "../m:a"},
          Row{"../../t:a/b", "../../types:a/b"}, Row{"/a[k='1']/b", "/m:a/b"}}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"") + row.path +
                            "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_OK) << row.path;
        EXPECT_STREQ(ZR_TYPE_GetTypeConsDataLeafrefPath(&snippet.type()), row.kept);
    }
}

TEST(PathFill, RefusesPathsThatAreNeitherRelativeNorAbsolute)
{
    for (const char *path : {"a", "a/b", "m:a", " /a", "*"}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"") + path +
                            "\"/></type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << path;
        EXPECT_EQ(snippet.Messages(), Texts{Message("leafref")});
    }
}

TEST(PathFill, RefusesAMissingPathAndOneThatCannotBeConverted)
{
    for (const char *path :
         {"<path/>", "<path value=\"\"/>", "<path value=\"/u:a\"/>", "<path value=\"/a[b\"/>"}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\">") + path + "</type>");
        EXPECT_EQ(snippet.status(), ZR_ERR_INVALID) << path;
    }
}

TEST(PathFill, IntoABodyWithAPathIs22)
{
    TypeSnippet snippet("<type name=\"leafref\"><path value=\"/a\"/></type>");
    ASSERT_EQ(snippet.status(), ZR_OK);
    ZrtConsPath body = {"/b", 0};
    EXPECT_EQ(ZRT_LOADER_FillConsDataAndAllPathSeg(snippet.module(), nullptr, &body,
                                                   snippet.element(), 1),
              ZR_ERR_INVALID);
    EXPECT_STREQ(body.path, "/b");
}

TEST(RequireInstance, IsFalseOnlyWhenItBeginsWithF)
{
    struct Row {
        const char *statement;
        uint32_t kept;
    };
    for (const Row &row :
         {Row{"<require-instance value=\"false\"/>", 0}, Row{"<require-instance value=\"f\"/>", 0},
          Row{"<require-instance value=\"fales\"/>", 0},
          Row{"<require-instance value=\"true\"/>", 1},
          Row{"<require-instance value=\"False\"/>", 1}, Row{"<require-instance value=\"no\"/>", 1},
          Row{"<require-instance/>", 1}, Row{"", 1}}) {
        TypeSnippet snippet(std::string("<type name=\"leafref\"><path value=\"/a\"/>") +
                            row.statement + "</type>");
        ASSERT_EQ(snippet.status(), ZR_OK);
        EXPECT_EQ(snippet.Get<ZrtConsPath>(ZRT_CONS_PATH)->requireInstance, row.kept)
            << row.statement;
    }
}

TEST(UnionFill, ParsesItsMembersInOrder)
{
    TypeSnippet snippet("<type name=\"union\"><type name=\"int8\"><range value=\"1..2\"/></type>"
                        "<type name=\"t:a\"/><type name=\"union\"><type name=\"string\"/></type>"
                        "</type>");
    EXPECT_EQ(snippet.status(), ZR_OK);
    const auto *body = snippet.Get<ZrtConsUnion>(ZRT_CONS_UNION);
    ASSERT_EQ(body->count, 3);
    EXPECT_EQ(body->items[0].baseType, uint32_t{ZRT_TYPE_INT8});
    EXPECT_EQ(body->items[0].consCount, 1);
    EXPECT_EQ(body->items[1].baseType, ZRT_TYPE_DERIVED);
    EXPECT_EQ(body->items[2].baseType, uint32_t{ZRT_TYPE_UNION});
    EXPECT_EQ(body->items[2].consCount, 1);
}

TEST(UnionFill, FailsWithItsMember)
{
    TypeSnippet snippet("<type name=\"union\"><type name=\"int8\"><range value=\"x\"/></type>"
                        "</type>");
    EXPECT_EQ(snippet.status(), ZR_ERR_INVALID);
    EXPECT_EQ(snippet.Messages(), (Texts{Message("int8"), Message("union")}));
    TypeSnippet unnamed("<type name=\"union\"><type/></type>");
    EXPECT_EQ(unnamed.status(), ZR_ERR_INVALID);
    EXPECT_EQ(unnamed.Messages(),
              (Texts{"Failed to get value of statement \"typeName\".", Message("union")}));
}

} // namespace
