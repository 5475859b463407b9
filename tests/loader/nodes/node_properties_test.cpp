// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "foundation/load_errors.h"
#include "loader/loader_fixture.h"
#include "schema/members/condition_records.h"

using testing::ElementsAre;
using testing::IsEmpty;
using zrtest::ModuleUnderTest;
using zrtest::OwnedText;

namespace {

struct FlagRow {
    const char *keyword;
    ZrsParseFunc parse;
    const char *value;
    uint32_t bits;
};

const FlagRow kFlags[] = {
    {"config", ZRS_LOADER_ParseConfig, "true", 0x08 | 0x02},
    {"config", ZRS_LOADER_ParseConfig, "false", 0x08 | 0x04},
    {"mandatory", ZRS_LOADER_ParseMandatory, "true", 0x10},
    {"mandatory", ZRS_LOADER_ParseMandatory, "false", 0x20},
    {"ordered-by", ZRS_LOADER_ParseOrderedBy, "user", 0x80},
    {"ordered-by", ZRS_LOADER_ParseOrderedBy, "system", 0},
    {"status", ZRS_LOADER_ParseStatus, "current", 0},
    {"status", ZRS_LOADER_ParseStatus, "deprecated", 0x200},
    {"status", ZRS_LOADER_ParseStatus, "obsolete", 0x400},
    {"presence", ZRS_LOADER_ParsePresence, "any text", 0x800},
    {"presence", ZRS_LOADER_ParsePresence, "", 0x800},
};

std::string FlagXml(const FlagRow &row, const std::string &value)
{
    return "<" + std::string(row.keyword) + " value='" + value + "'/>";
}

TEST(FlagStatement, OrsItsBitsIntoTheWord)
{
    for (const FlagRow &row : kFlags) {
        ModuleUnderTest module;
        uint32_t flags = 0x40000000;
        EXPECT_EQ(Parse(module, row.parse, FlagXml(row, row.value), &flags), ZR_OK);
        EXPECT_EQ(flags, 0x40000000 | row.bits) << row.keyword << " " << row.value;
        EXPECT_THAT(module.Messages(), IsEmpty());
    }
}

TEST(FlagStatement, OfAnyOtherValueFails)
{
    for (const FlagRow &row : kFlags)
        for (const char *value : {"yes", "TRUE", "1", "", "true ", "obsoleted"}) {
            if (row.parse == ZRS_LOADER_ParsePresence)
                continue; // every value is right
            ModuleUnderTest module;
            uint32_t flags = 0;
            EXPECT_EQ(Parse(module, row.parse, FlagXml(row, value), &flags), ZR_ERR_INVALID);
            EXPECT_EQ(flags, 0u);
            EXPECT_THAT(module.Messages(),
                        ElementsAre("Failed to parse value \"" + std::string(value) +
                                    "\" of statement \"" + row.keyword + "\"."));
        }
}

TEST(FlagStatement, WithAValueOfAnotherOneFails)
{
    ModuleUnderTest module;
    uint32_t flags = 0;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseConfig, "<config value='user'/>", &flags),
              ZR_ERR_INVALID);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseOrderedBy, "<ordered-by value='true'/>", &flags),
              ZR_ERR_INVALID);
    EXPECT_EQ(flags, 0u);
}

TEST(FlagStatement, WithoutAnArgumentFails)
{
    for (const FlagRow &row : kFlags) {
        ModuleUnderTest module;
        uint32_t flags = 0;
        EXPECT_EQ(Parse(module, row.parse, "<" + std::string(row.keyword) + "/>", &flags),
                  ZR_ERR_INVALID);
        EXPECT_EQ(flags, 0u);
        std::string keyword = row.keyword;
        std::string message = "Failed to get value of statement \"" + keyword + "\".";
        if (keyword == "presence")
            message = "Failed to parse value \"\" of statement \"presence\".";
        EXPECT_THAT(module.Messages(), ElementsAre(message));
    }
}

// ---- key

TEST(Key, IsTheDocumentsOwnText)
{
    ModuleUnderTest module;
    zrtest::Yin yin("<key value='a b'/>");
    const char *key = nullptr;
    EXPECT_EQ(ZRS_LOADER_ParseKey(module, yin.first(), ZRS_STMT_LIST, &key), ZR_OK);
    EXPECT_STREQ(key, "a b");
    EXPECT_EQ(key, reinterpret_cast<const char *>(yin.first()->properties->children->content));
}

TEST(Key, WithoutAnArgumentFails)
{
    ModuleUnderTest module;
    const char *key = nullptr;
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseKey, "<key/>", &key), ZR_ERR_INVALID);
    EXPECT_EQ(key, nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"key\"."));
}

// ---- when

TEST(When, IsKeptInModuleNameForm)
{
    ModuleUnderTest module;
    OwnedText when(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseWhen, "<when condition='../x:a = 1'/>", when.slot()),
              ZR_OK);
    EXPECT_STREQ(when.get(), "../x-mod:a = 1");
    EXPECT_THAT(module.Messages(), IsEmpty());
}

TEST(When, ThatCannotBeRewrittenIsKeptAsWrittenAndRecorded)
{
    for (const std::string &condition : {std::string("../q:a"), std::string("a ! b"),
                                         std::string("child::a"), std::string(3097, 'a')}) {
        ModuleUnderTest module;
        OwnedText when(module);
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseWhen, "<when condition='" + condition + "'/>",
                        when.slot()),
                  ZR_OK);
        EXPECT_EQ(when.get(), condition);
        EXPECT_THAT(module.Messages(),
                    ElementsAre("Failed to transfer prefix to module name in statement \"when\"."));
    }
}

TEST(When, WithoutAConditionFails)
{
    ModuleUnderTest module;
    OwnedText when(module);
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseWhen, "<when/>", when.slot()), ZR_ERR_INVALID);
    EXPECT_EQ(when.get(), nullptr);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"when\"."));
}

// ---- must

TEST(Must, KeepsConditionMessageAndTag)
{
    ModuleUnderTest module;
    ZrsMust must = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseMust,
                    "<must condition='x:a'><error-app-tag value='tag'/><error-message>"
                    "<value>text</value></error-message><description/></must>",
                    &must),
              ZR_OK);
    EXPECT_STREQ(must.condition, "x-mod:a");
    EXPECT_STREQ(must.errorMessage, "text");
    EXPECT_STREQ(must.errorAppTag, "tag");
    EXPECT_THAT(module.Messages(), IsEmpty());
    ZRS_NODE_ClearMust(module.dict(), &must);
}

TEST(Must, MayHaveAConditionOnly)
{
    ModuleUnderTest module;
    ZrsMust must = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseMust, "<must condition='a'/>", &must), ZR_OK);
    EXPECT_STREQ(must.condition, "a");
    EXPECT_EQ(must.errorMessage, nullptr);
    EXPECT_EQ(must.errorAppTag, nullptr);
    ZRS_NODE_ClearMust(module.dict(), &must);
}

TEST(Must, ThatCannotBeRewrittenIsKeptAsWrittenAndRecorded)
{
    ModuleUnderTest module;
    ZrsMust must = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseMust, "<must condition='q:a'/>", &must), ZR_OK);
    EXPECT_STREQ(must.condition, "q:a");
    EXPECT_THAT(module.Messages(),
                ElementsAre("Failed to transfer prefix to module name in statement \"must\"."));
    ZRS_NODE_ClearMust(module.dict(), &must);
}

TEST(Must, WithoutAConditionFails)
{
    ModuleUnderTest module;
    ZrsMust must = {};
    EXPECT_EQ(Parse(module, ZRS_LOADER_ParseMust, "<must/>", &must), ZR_ERR_INVALID);
    EXPECT_THAT(module.Messages(), ElementsAre("Failed to get value of statement \"must\"."));
}

TEST(Must, IsClearedWhenASubStatementFails)
{
    struct {
        const char *content;
        uint32_t status;
        const char *message;
    } const rows[] = {
        {"<error-message/>", 22, "Failed to get value of statement \"error-message\"."},
        {"<error-app-tag/>", 22, "Failed to get value of statement \"error-app-tag\"."},
        {"<error-message><value>a</value></error-message><error-message/>", 1,
         "Statement \"error-message\" under statement \"must\" has repeated."},
        {"<error-app-tag value='a'/><error-app-tag value='a'/>", 1,
         "Statement \"error-app-tag\" under statement \"must\" has repeated."},
    };
    for (const auto &row : rows) {
        ModuleUnderTest module;
        ZrsMust must = {};
        EXPECT_EQ(Parse(module, ZRS_LOADER_ParseMust,
                        "<must condition='a = 1'>" + std::string(row.content) + "</must>", &must),
                  row.status);
        EXPECT_EQ(must.condition, nullptr);
        EXPECT_EQ(must.errorMessage, nullptr);
        EXPECT_EQ(must.errorAppTag, nullptr);
        EXPECT_THAT(module.Messages(),
                    ElementsAre(row.message, "Failed to parse value \"a = 1\" of statement "
                                             "\"must\"."));
    }
}

// The rewrite of a condition may fail for want of memory too: then it is kept as written.
TEST(Must, LeavesNothingBehindWhenAnyAllocationFails)
{
    ModuleUnderTest module;
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        ZrsMust must = {};
        uint32_t status = memory.Run([&] {
            return Parse(module, ZRS_LOADER_ParseMust,
                         "<must condition='x:c1'><error-app-tag value='t1'/>"
                         "<error-message><value>m1</value></error-message></must>",
                         &must);
        });
        EXPECT_TRUE(status == ZR_OK || status == ZR_ERR_NO_MEMORY);
        EXPECT_EQ(must.condition != nullptr, status == ZR_OK);
        ZRS_NODE_ClearMust(module.dict(), &must);
        ZR_CTX_DeleteErrNodeByModName(module->ctx->errMng, "t");
    });
}

} // namespace
