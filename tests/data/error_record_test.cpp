#include "data/error_record.h"

#include <gtest/gtest.h>

#include "data/schema.h"
#include "support/alloc.h"
#include "support/run.h"

namespace {

using namespace zrtest;

TEST(ErrorRecord, OfNullHasNothing)
{
    EXPECT_EQ(ZR_GetErrorType(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorSeverity(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorTag(nullptr), 0u);
    EXPECT_EQ(ZR_GetErrorAppTag(nullptr), nullptr);
    EXPECT_EQ(ZR_GetErrorMessage(nullptr), nullptr);
    EXPECT_EQ(ZR_GetErrorPath(nullptr), nullptr);
    EXPECT_EQ(ZR_GetBadElement(nullptr), nullptr);
    EXPECT_EQ(ZR_GetBadAttribute(nullptr), nullptr);
    ZR_FreeErrNode(nullptr);
}

TEST(ErrorRecord, GivesEachOfItsFields)
{
    char appTag[] = "a", path[] = "p", message[] = "m", element[] = "e", attribute[] = "t";
    ZrdErrNode record = {4, 1, 20, appTag, path, message, element, attribute};
    EXPECT_EQ(ZR_GetErrorType(&record), ZR_ERROR_TYPE_APPLICATION);
    EXPECT_EQ(ZR_GetErrorSeverity(&record), ZR_ERROR_SEVERITY_ERROR);
    EXPECT_EQ(ZR_GetErrorTag(&record), ZR_ERROR_TAG_MALFORMED_MESSAGE);
    EXPECT_STREQ(ZR_GetErrorAppTag(&record), "a");
    EXPECT_STREQ(ZR_GetErrorPath(&record), "p");
    EXPECT_STREQ(ZR_GetErrorMessage(&record), "m");
    EXPECT_STREQ(ZR_GetBadElement(&record), "e");
    EXPECT_STREQ(ZR_GetBadAttribute(&record), "t");
}

class RecordTest : public ::testing::Test {
protected:
    void SetUp() override { record_ = ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr); }
    void TearDown() override
    {
        ZR_FreeErrNode(record_);
        EXPECT_EQ(guard_.LiveBlocks(), 0);
    }
    AllocGuard guard_;
    CheckRun run_{nullptr, ZRD_MODE_RPC};
    ZrdErrNode *record_ = nullptr;
};

TEST_F(RecordTest, WithoutADataNodeHasTheRootPath)
{
    EXPECT_STREQ(ZR_GetErrorPath(record_), "/");
    EXPECT_EQ(ZR_GetErrorType(record_), ZR_ERROR_TYPE_APPLICATION);
    EXPECT_EQ(ZR_GetErrorSeverity(record_), ZR_ERROR_SEVERITY_ERROR);
    EXPECT_EQ(ZR_GetErrorTag(record_), ZR_ERROR_TAG_OPERATION_FAILED);
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
    EXPECT_EQ(ZR_GetBadAttribute(record_), nullptr);
}

TEST_F(RecordTest, KeepsTheFirstMessageAppTagAndBadElement)
{
    for (const char *text : {"first", "second"}) {
        ZRD_ERR_SetErrorMsg(record_, "%s %d", text, 1);
        ZRD_ERR_SetErrorAppTag(record_, text);
        ZRD_ERR_SetBadElement(record_, text);
    }
    EXPECT_STREQ(ZR_GetErrorMessage(record_), "first 1");
    EXPECT_STREQ(ZR_GetErrorAppTag(record_), "first");
    EXPECT_STREQ(ZR_GetBadElement(record_), "first");
}

TEST_F(RecordTest, SettersIgnoreNull)
{
    ZRD_ERR_SetErrorMsg(nullptr, "%s", "text");
    ZRD_ERR_SetErrorMsg(record_, nullptr);
    ZRD_ERR_SetErrorAppTag(nullptr, "text");
    ZRD_ERR_SetErrorAppTag(record_, nullptr);
    ZRD_ERR_SetBadElement(nullptr, "text");
    ZRD_ERR_SetBadElement(record_, nullptr);
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
}

TEST_F(RecordTest, TakesAMessageOf10240CharactersAndNoLongerOne)
{
    ZRD_ERR_SetErrorMsg(record_, "%s", std::string(10241, 'x').c_str());
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    ZRD_ERR_SetErrorMsg(record_, "%s", std::string(10240, 'x').c_str());
    EXPECT_EQ(ZR_GetErrorMessage(record_), std::string(10240, 'x'));
}

TEST_F(RecordTest, TakesNoEmptyMessage)
{
    ZRD_ERR_SetErrorMsg(record_, "%s", "");
    EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
}

TEST_F(RecordTest, LeavesAFieldNullWhenItCannotBeStored)
{
    for (uint64_t n : {UINT64_C(0), UINT64_C(1)}) { // the scratch buffer, the copy
        guard_.FailAt(n);
        ZRD_ERR_SetErrorMsg(record_, "text");
        EXPECT_EQ(ZR_GetErrorMessage(record_), nullptr);
    }
    guard_.FailAt(0);
    ZRD_ERR_SetErrorAppTag(record_, "text");
    guard_.FailAt(0);
    ZRD_ERR_SetBadElement(record_, "text");
    guard_.FailNone();
    EXPECT_EQ(ZR_GetErrorAppTag(record_), nullptr);
    EXPECT_EQ(ZR_GetBadElement(record_), nullptr);
}

TEST_F(RecordTest, IsNullWhenMemoryRunsOut)
{
    guard_.FailAt(0);
    EXPECT_EQ(ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr), nullptr);
    guard_.FailAt(1);
    ZrdErrNode *withoutPath = ZRD_ERR_NewErrNode(run_, 4, 1, 18, nullptr);
    ASSERT_NE(withoutPath, nullptr);
    EXPECT_EQ(ZR_GetErrorPath(withoutPath), nullptr);
    ZR_FreeErrNode(withoutPath);
}

TEST(RecordFault, KeepsTheFirstFaultOfTheRun)
{
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(zr::RecordFault(run, zr::Fault::MissingElement, nullptr, "a", "a"), ZR_ERR_INVALID);
    EXPECT_EQ(zr::RecordFault(run, zr::Fault::WhenFalse, nullptr, "b", "b"), ZR_ERR_INVALID);
    EXPECT_EQ(run.record(),
              Fault(ZR_ERROR_TAG_MISSING_ELEMENT, "-", "/", "Missing element: a.", "a"));
}

TEST(TakeFailure, GivesTheRunsRecordOrTheGeneralOne)
{
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)), General());
    zr::RecordFault(run, zr::Fault::UnexpectedElement, nullptr, "x", "x");
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)),
              Fault(ZR_ERROR_TAG_UNKNOWN_ELEMENT, "-", "/", "Unexpected element: x.", "x"));
    EXPECT_EQ(run->error, nullptr);
}

TEST(TakeFailure, GivesARecordEvenWithoutMemory)
{
    AllocGuard guard;
    guard.FailAt(0, true);
    CheckRun run(nullptr, ZRD_MODE_RPC);
    EXPECT_EQ(TakeRecord(zr::TakeFailure(run)), General());
    EXPECT_EQ(guard.LiveBlocks(), 0);
}

} // namespace
