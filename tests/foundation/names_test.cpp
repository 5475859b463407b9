// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <zrschema/names.h>
#include <zrschema/version.h>

#include <set>
#include <string>

namespace {

constexpr uint32_t kErrnoStatuses[] = {
    ZR_OK,          ZR_ERR_FAILED,  ZR_ERR_NOT_FOUND, ZR_ERR_NO_MEMORY, ZR_ERR_REGISTERED,
    ZR_ERR_BAD_DIR, ZR_ERR_INVALID, ZR_ERR_LOCK,      ZR_ERR_COPY,      ZR_ERR_OVERFLOW};

// Every status of the interface.
std::set<uint32_t> AllStatuses()
{
    std::set<uint32_t> all(std::begin(kErrnoStatuses), std::end(kErrnoStatuses));
    for (uint32_t status = ZR_ERR_VALUE_NO_BODY; status <= ZR_ERR_VALUE_EMPTY; ++status)
        all.insert(status);
    for (uint32_t status = ZR_XPATH_RESULT_FALSE; status <= ZR_XPATH_ERR_PREDICATE; ++status)
        all.insert(status);
    return all;
}

TEST(Names, AStatusHasTheNameOfItsConstant)
{
    EXPECT_STREQ(ZR_GetStatusName(ZR_OK), "ZR_OK");
    EXPECT_STREQ(ZR_GetStatusName(ZR_ERR_FAILED), "ZR_ERR_FAILED");
    EXPECT_STREQ(ZR_GetStatusName(22), "ZR_ERR_INVALID");
    EXPECT_STREQ(ZR_GetStatusName(126), "ZR_ERR_OVERFLOW");
    EXPECT_STREQ(ZR_GetStatusName(0x7008), "ZR_ERR_VALUE_RANGE");
    EXPECT_STREQ(ZR_GetStatusName(0x7100), "ZR_XPATH_RESULT_FALSE");
    EXPECT_STREQ(ZR_GetStatusName(0x710D), "ZR_XPATH_ERR_PREDICATE");
}

TEST(Names, EveryStatusHasANameAndASentenceOfItsOwn)
{
    std::set<std::string> names;
    std::set<std::string> texts;
    for (uint32_t status : AllStatuses()) {
        std::string name = ZR_GetStatusName(status);
        EXPECT_EQ(name.rfind("ZR_", 0), 0u) << status;
        EXPECT_TRUE(names.insert(name).second) << name;
        std::string text = ZR_GetStatusText(status);
        EXPECT_NE(text, "Unknown status.") << status;
        EXPECT_EQ(text.back(), '.') << status;
        EXPECT_TRUE(texts.insert(text).second) << text;
    }
}

TEST(Names, NoOtherNumberIsAStatus)
{
    std::set<uint32_t> all = AllStatuses();
    for (uint32_t number = 0; number < 0x8000; ++number) {
        bool isStatus = all.count(number) != 0;
        EXPECT_EQ(std::string(ZR_GetStatusName(number)) != "unknown", isStatus) << number;
        EXPECT_EQ(std::string(ZR_GetStatusText(number)) != "Unknown status.", isStatus) << number;
    }
    EXPECT_STREQ(ZR_GetStatusName(UINT32_MAX), "unknown");
}

TEST(Names, AKindOfNodeHasItsKeyword)
{
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_CONTAINER), "container");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_LEAF), "leaf");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_LEAF_LIST), "leaf-list");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_LIST), "list");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_CHOICE), "choice");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_CASE), "case");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_ANYDATA), "anydata");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_ANYXML), "anyxml");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_ACTION), "action");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_RPC), "rpc");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_NOTIFICATION), "notification");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_INPUT), "input");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_OUTPUT), "output");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_AUGMENT), "augment");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_UNKNOWN), "unknown");
    EXPECT_STREQ(ZR_GetNodeKindName(ZR_NODE_AUGMENT + 1), "unknown");
}

TEST(Names, ABuiltInTypeHasItsKeyword)
{
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_DERIVED), "derived");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_BINARY), "binary");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_DECIMAL64), "decimal64");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_INSTANCE_IDENTIFIER), "instance-identifier");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_INT8), "int8");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_LEAFREF), "leafref");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_UINT64), "uint64");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_UNION), "union");
    EXPECT_STREQ(ZR_GetBuiltInTypeName(ZRT_TYPE_NONE), "unknown");
}

TEST(Names, TheFieldsOfAnErrorRecordHaveTheNamesOfNetconf)
{
    EXPECT_STREQ(ZR_GetErrorTypeName(ZR_ERROR_TYPE_TRANSPORT), "transport");
    EXPECT_STREQ(ZR_GetErrorTypeName(ZR_ERROR_TYPE_APPLICATION), "application");
    EXPECT_STREQ(ZR_GetErrorTypeName(0), "unknown");
    EXPECT_STREQ(ZR_GetErrorTypeName(ZR_ERROR_TYPE_APPLICATION + 1), "unknown");
    EXPECT_STREQ(ZR_GetErrorSeverityName(ZR_ERROR_SEVERITY_ERROR), "error");
    EXPECT_STREQ(ZR_GetErrorSeverityName(ZR_ERROR_SEVERITY_WARNING), "warning");
    EXPECT_STREQ(ZR_GetErrorSeverityName(0), "unknown");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_IN_USE), "in-use");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_MISSING_ELEMENT), "missing-element");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_UNKNOWN_NAMESPACE), "unknown-namespace");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_DATA_MISSING), "data-missing");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_OPERATION_FAILED), "operation-failed");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_MALFORMED_MESSAGE), "malformed-message");
    EXPECT_STREQ(ZR_GetErrorTagName(0), "unknown");
    EXPECT_STREQ(ZR_GetErrorTagName(ZR_ERROR_TAG_MALFORMED_MESSAGE + 1), "unknown");
}

TEST(Version, OfTheHeadersIsWrittenOnceAsNumbersAndOnceAsText)
{
    EXPECT_EQ(std::string(ZR_VERSION_STRING), std::to_string(ZR_VERSION_MAJOR) + "." +
                                                  std::to_string(ZR_VERSION_MINOR) + "." +
                                                  std::to_string(ZR_VERSION_PATCH));
}

TEST(Version, OfTheLibraryIsThatOfTheHeadersItWasBuiltWith)
{
    EXPECT_STREQ(ZR_GetVersion(), ZR_VERSION_STRING);
}

} // namespace
