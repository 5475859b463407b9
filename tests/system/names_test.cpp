// SPDX-License-Identifier: Apache-2.0
// Names: the numbers of the interface in words, for logs and for protocols.
#include "application.h"

namespace {

TEST(Names, OfAStatusAreItsConstantAndASentence)
{
    EXPECT_STREQ(ZR_GetStatusName(ZR_ERR_NOT_FOUND), "ZR_ERR_NOT_FOUND");
    EXPECT_STREQ(ZR_GetStatusText(ZR_ERR_NOT_FOUND),
                 "No module file was found in any search directory.");
    EXPECT_STREQ(ZR_GetStatusName(4711), "unknown") << "an application's own";
}

TEST(Names, OfKindsAndTypesAreTheirKeywords)
{
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_LEAF_LIST), "leaf-list");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_INSTANCE_IDENTIFIER), "instance-identifier");
}

TEST(Names, OfAnErrorRecordAreThoseOfNetconf)
{
    EXPECT_STREQ(ZR_GetErrorTypeName(ZR_ERROR_TYPE_APPLICATION), "application");
    EXPECT_STREQ(ZR_GetErrorSeverityName(ZR_ERROR_SEVERITY_ERROR), "error");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_OPERATION_FAILED), "operation-failed");
}

} // namespace
