// SPDX-License-Identifier: Apache-2.0
#include <zrschema/type.h>

#include "loader/type_snippet.h"
#include "support/alloc.h"
#include "types/type_notes.h"

namespace {

using zrtest::SnippetModule;
using zrtest::TypeSnippet;
using zrtest::YinElement;
using Texts = std::vector<std::string>;

TEST(TypeNotes, AreReadOfTheRestrictionsThatCount)
{
    TypeSnippet snippet("<type name=\"int8\"><range value=\"1\"/>"
                        "<range value=\"2\"><error-app-tag value=\"two\"/></range>"
                        "<x:range value=\"3\"><error-app-tag value=\"x\"/></x:range></type>",
                        ZR_CTX_STANDARD);
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(zr::NotesOf(&snippet.type()), nullptr) << "the second range is none of the type's";
}

TEST(TypeNotes, LeaveWhatIsNoStatementAlone)
{
    TypeSnippet snippet("<type name=\"int8\"><range value=\"1\">"
                        "<x:error-message/><description/>text<reference/></range></type>",
                        ZR_CTX_STANDARD);
    EXPECT_EQ(snippet.status(), ZR_OK);
    EXPECT_EQ(zr::NotesOf(&snippet.type()), nullptr);
}

TEST(TypeNotes, ThatCannotBeReadAreAnError)
{
    struct Row {
        const char *inside;
        uint32_t status;
        const char *message;
    };
    const Row rows[] = {
        {"<error-message/>", ZR_ERR_INVALID, "Failed to get value of statement \"error-message\"."},
        {"<error-app-tag/>", ZR_ERR_INVALID, "Failed to get value of statement \"error-app-tag\"."},
        {"<error-app-tag value=\"a\"/><error-app-tag value=\"a\"/>", ZR_ERR_FAILED,
         "Statement \"error-app-tag\" under statement \"pattern\" has repeated."},
    };
    for (const Row &row : rows) {
        std::string text = std::string("<type name=\"string\"><pattern value=\"a\">") + row.inside +
                           "</pattern></type>";
        TypeSnippet snippet(text, ZR_CTX_STANDARD);
        EXPECT_EQ(snippet.status(), row.status) << row.inside;
        EXPECT_EQ(snippet.Messages(),
                  (Texts{row.message, "Failed to parse value \"string\" of statement \"type\"."}));
        EXPECT_EQ(TypeSnippet(text).status(), ZR_OK) << "passed over without the standard";
    }
}

TEST(TypeNotes, OfABitThatNamesNoFeatureAreAnError)
{
    for (const char *name : {"q:f", "a or b", ""}) {
        std::string text = std::string("<type name=\"bits\"><bit name=\"x\"><if-feature name=\"") +
                           name + "\"/></bit></type>";
        EXPECT_EQ(TypeSnippet(text, ZR_CTX_STANDARD).status(), ZR_ERR_INVALID) << name;
        EXPECT_EQ(TypeSnippet(text).status(), ZR_OK) << "passed over without the standard";
    }
}

TEST(TypeNotes, FailCleanlyWhicheverAllocationFails)
{
    YinElement element("<type name=\"string\"><length value=\"1\"><error-message>"
                       "<value>text</value></error-message><error-app-tag value=\"tag\"/></length>"
                       "<pattern value=\"p\"><error-app-tag value=\"other\"/></pattern>"
                       "<enum name=\"e\"><if-feature name=\"f\"/><if-feature name=\"g\"/></enum>"
                       "</type>");
    zrtest::FailEachAllocation([&](zrtest::FailPoint &memory) {
        SnippetModule module(ZR_CTX_STANDARD);
        ZrtRealType type = {};
        uint32_t status = memory.Run([&] {
            return ZRT_LOADER_ParseTypeStmt(module.module(), element.get(), ZRS_STMT_LEAF, &type);
        });
        EXPECT_EQ(status, memory.Failed() ? ZR_ERR_NO_MEMORY : ZR_OK);
        if (status == ZR_OK) {
            EXPECT_STREQ(ZR_TYPE_GetErrorAppTag(&type, ZR_RESTRICTION_PATTERN, 0), "other");
        }
        ZRT_TYPE_DestroyZrtRealTypeInner(module.context(), &type);
    });
}

} // namespace
