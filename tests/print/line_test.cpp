// SPDX-License-Identifier: Apache-2.0
#include "print/line.h"

#include "print/print_support.h"

namespace {

using zr::LineWriter;
using zrtest::Pieces;
using zrtest::TakePiece;

class Line : public ::testing::Test {
protected:
    Line()
    {
        print_.buffer = buffer_;
        print_.bufferSize = sizeof(buffer_);
        print_.callback = TakePiece;
        print_.userData = &pieces_;
    }
    uint32_t Print(const std::string &text)
    {
        return zr::PrintLine(&print_, [&](LineWriter &line) { line.Put(text.c_str()); });
    }

    char buffer_[16] = "";
    ZrsPrintCtx print_ = {};
    Pieces pieces_;
};

TEST_F(Line, CollectsItsPieces)
{
    LineWriter line(&print_);
    line.Put("ab").Blanks(3).Put(std::string_view("cdef", 2)).Put("").Blanks(0);
    EXPECT_EQ(line.Finish(), ZR_OK);
    EXPECT_STREQ(buffer_, "ab   cd\n");
    EXPECT_EQ(print_.usedLength, 8u);
}

TEST_F(Line, MayFillTheBufferButForItsNul)
{
    EXPECT_EQ(Print("12345678901234"), ZR_OK);
    EXPECT_STREQ(buffer_, "12345678901234\n");
    EXPECT_EQ(print_.usedLength, 15u);
    EXPECT_TRUE(pieces_.pieces.empty());
}

TEST_F(Line, ThatIsLongerThanTheBufferFailsAndIsTakenBack)
{
    EXPECT_EQ(Print("123456789012345"), ZR_ERR_INVALID);
    EXPECT_STREQ(buffer_, "");
    EXPECT_EQ(print_.usedLength, 0u);
    EXPECT_EQ(Print(std::string(100, 'x')), ZR_ERR_INVALID);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(Line, ThatDoesNotFitBehindTheOthersHandsThemOverFirst)
{
    EXPECT_EQ(Print("12345"), ZR_OK);
    EXPECT_EQ(Print("1234567890"), ZR_OK);
    ASSERT_EQ(pieces_.pieces.size(), 1u);
    EXPECT_EQ(pieces_.pieces[0], "12345\n");
    EXPECT_STREQ(buffer_, "1234567890\n");
}

TEST_F(Line, FailsWhenTheTextBeforeItIsRefused)
{
    pieces_.failAt = 0;
    EXPECT_EQ(Print("12345"), ZR_OK);
    EXPECT_EQ(Print("1234567890"), ZR_ERR_INVALID);
}

TEST_F(Line, FailsForATextThatIsMissingOrWhenToldTo)
{
    EXPECT_EQ(zr::PrintLine(
                  &print_,
                  [](LineWriter &line) { line.Put(static_cast<const char *>(nullptr)).Put("x"); }),
              ZR_ERR_INVALID);
    EXPECT_EQ(zr::PrintLine(&print_, [](LineWriter &line) { line.Fail(); }), ZR_ERR_INVALID);
    EXPECT_STREQ(buffer_, "");
}

TEST_F(Line, FlushingEmptiesTheBuffer)
{
    ASSERT_EQ(Print("a"), ZR_OK);
    EXPECT_EQ(zr::FlushPrint(&print_), ZR_OK);
    EXPECT_EQ(pieces_.Whole(), "a\n");
    EXPECT_EQ(print_.usedLength, 0u);
    EXPECT_STREQ(buffer_, "");
}

} // namespace
