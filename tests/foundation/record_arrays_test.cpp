#include "foundation/array.h"

#include "schema/record_fixture.h"

namespace {

struct Pair {
    const char *text;
    uint32_t number;
};

class RecordArrays : public zrtest::RecordTest {
protected:
    auto Fill(uint32_t number)
    {
        return [this, number](Pair *record) -> uint32_t {
            record->number = number;
            return zr::Intern(dict_, record->text, std::to_string(number).c_str()) ? 0 : 12;
        };
    }
    auto Clear()
    {
        return [this](Pair *record) { zr::Release(dict_, record->text); };
    }
    auto Copy()
    {
        return [this](Pair *copy, const Pair *from) -> uint32_t {
            copy->number = from->number;
            return zr::Intern(dict_, copy->text, from->text) ? 0 : 12;
        };
    }
    void TearDown() override
    {
        zr::FreeRecords(array_, count_, Clear());
        RecordTest::TearDown();
    }

    Pair *array_ = nullptr;
    uint16_t count_ = 0;
};

TEST_F(RecordArrays, AppendRecordsOneByOne)
{
    for (uint32_t number : {7u, 8u, 9u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    ASSERT_EQ(count_, 3);
    EXPECT_EQ(array_[0].number, 7u);
    EXPECT_STREQ(array_[2].text, "9");
}

TEST_F(RecordArrays, PassTheStatusOfAFillOnAndDoNotCount)
{
    ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(7)), ZR_OK);
    auto refuse = [](Pair *) { return uint32_t{99}; };
    EXPECT_EQ(zr::AppendOne(&array_, &count_, refuse), 99u);
    EXPECT_EQ(count_, 1);
    EXPECT_EQ(zr::AppendOne(&array_, &count_, Fill(8)), ZR_OK);
    EXPECT_EQ(count_, 2);
}

TEST_F(RecordArrays, FindTheFirstMatch)
{
    for (uint32_t number : {7u, 8u, 8u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    auto isEight = [](const Pair &record) { return record.number == 8; };
    EXPECT_EQ(zr::FindFirst(array_, 3, isEight), &array_[1]);
    EXPECT_EQ(zr::FindFirst(array_, 1, isEight), nullptr);
    EXPECT_EQ(zr::FindFirst(static_cast<Pair *>(nullptr), 3, isEight), nullptr);
}

TEST_F(RecordArrays, AreCopiedWholeOrNotAtAll)
{
    for (uint32_t number : {7u, 8u})
        ASSERT_EQ(zr::AppendOne(&array_, &count_, Fill(number)), ZR_OK);
    FailEachAllocation(guard_, [&](zrtest::FailPoint &memory) {
        Pair *copy = memory.Run([&] { return zr::CopyRecords(array_, count_, Copy(), Clear()); });
        EXPECT_EQ(copy == nullptr, memory.Failed());
        zr::FreeRecords(copy, copy == nullptr ? 0 : 2, Clear());
    });
    // the second of two cannot be filled: the first is released again
    int64_t blocks = guard_.LiveBlocks();
    auto refuseSecond = [&](Pair *copy, const Pair *from) {
        return from->number == 8 ? uint32_t{ZR_ERR_INVALID} : Copy()(copy, from);
    };
    EXPECT_EQ(zr::CopyRecords(array_, count_, refuseSecond, Clear()), nullptr);
    EXPECT_EQ(guard_.LiveBlocks(), blocks);
    EXPECT_EQ(zr::CopyRecords(array_, 0, Copy(), Clear()), nullptr);
}

TEST_F(RecordArrays, AreComparedInOrder)
{
    const Pair a[] = {{nullptr, 1}, {nullptr, 2}};
    const Pair b[] = {{nullptr, 2}, {nullptr, 1}};
    auto same = [](const Pair *x, const Pair *y) { return x->number == y->number; };
    EXPECT_TRUE(zr::RecordsSame(a, 2, a, 2, same));
    EXPECT_FALSE(zr::RecordsSame(a, 2, b, 2, same));
    EXPECT_FALSE(zr::RecordsSame(a, 2, a, 1, same));
    EXPECT_TRUE(zr::RecordsSame(a, 0, b, 0, same));
}

TEST_F(RecordArrays, TextsAreCopiedAndFreedTogether)
{
    const char *const texts[] = {ZR_DICT_Insert(dict_, "a"), ZR_DICT_Insert(dict_, "b")};
    const char **copy = zr::CopyTexts(dict_, texts, 2);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy[0], texts[0]);
    EXPECT_EQ(copy[1], texts[1]);
    ZR_DICT_Remove(dict_, texts[0]);
    ZR_DICT_Remove(dict_, texts[1]);
    EXPECT_STREQ(copy[1], "b"); // a reference of its own to each
    zr::Release(dict_, copy[0]);
    zr::FreeTexts(dict_, copy, 2); // a text that is gone already is passed over
    EXPECT_EQ(zr::FindInterned(dict_, "b"), nullptr);
}

TEST_F(RecordArrays, AnEmptyArrayOfTextsIsNull)
{
    EXPECT_EQ(zr::CopyTexts(dict_, nullptr, 0), nullptr);
    zr::FreeTexts(dict_, nullptr, 0);
}

TEST_F(RecordArrays, InternNullAsNull)
{
    const char *field = "old";
    EXPECT_TRUE(zr::Intern(dict_, field, nullptr));
    EXPECT_EQ(field, nullptr);
}

TEST_F(RecordArrays, TextsAreEqualByContentAndNeverWhenNull)
{
    std::string a = "same";
    std::string b = "same";
    EXPECT_TRUE(zr::TextEquals(a.c_str(), b.c_str()));
    EXPECT_TRUE(zr::TextEquals(a.c_str(), a.c_str()));
    EXPECT_FALSE(zr::TextEquals("a", "b"));
    EXPECT_FALSE(zr::TextEquals(nullptr, "b"));
    EXPECT_FALSE(zr::TextEquals("a", nullptr));
    EXPECT_FALSE(zr::TextEquals(nullptr, nullptr));
}

} // namespace
