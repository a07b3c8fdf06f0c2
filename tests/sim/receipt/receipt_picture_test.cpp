#include "sim/receipt/receipt_picture.h"

#include <fstream>

#include <gmock/gmock.h>

#include "config/DeviceKind.h"
#include "demo/demo_commands.h"
#include "tests/sim/PlayedServices.h"
#include "tests/sim/receipt/ReadPicture.h"

namespace qlx::receipt {
namespace {

using sim::ScratchDirectory;

using namespace std::string_view_literals;

class ReceiptPicture : public testing::Test {
 protected:
  /// What is drawn of `bytes`.
  ReadPicture Draw(std::string_view bytes) const {
    EXPECT_TRUE(DrawPaper(SetReceipt(bytes), path_));
    return ReadPicture(path_);
  }

  static constexpr int kTop = 24;
  ScratchDirectory directory_;
  std::filesystem::path path_ = directory_.path() / "receipt.png";
};

TEST_F(ReceiptPicture, IsARollOf80MillimetresAndAsLongAsItsPaper) {
  const ReadPicture picture = Draw("one\ntwo\n");
  ASSERT_TRUE(picture.opened());
  EXPECT_EQ(picture.width(), 640);
  EXPECT_EQ(picture.height(), 60 + 2 * kTop);
}

TEST_F(ReceiptPicture, TextIsInkInItsCellsAndNowhereElse) {
  const ReadPicture picture = Draw("MMMM\n");
  EXPECT_GT(picture.Ink(kPaperMargin, kTop, 48, 24), 0.1);
  EXPECT_EQ(picture.Ink(0, 0, 640, kTop), 0);
  EXPECT_EQ(picture.Ink(0, kTop, kPaperMargin, 24), 0);
  EXPECT_EQ(picture.Ink(kPaperMargin + 49, kTop, 500, 24), 0);
}

TEST_F(ReceiptPicture, CharactersKeepTheirColumnToTheEndOfTheLine) {
  const ReadPicture picture = Draw(std::string(46, ' ') + "MM");
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop, 46 * 12, 24), 0);
  EXPECT_GT(picture.Ink(kPaperMargin + 46 * 12, kTop, 24, 24), 0.1);
}

TEST_F(ReceiptPicture, BoldTextTakesMoreInk) {
  const double plain = Draw("MMMM\n").Ink(kPaperMargin, kTop, 48, 24);
  const double bold = Draw("\033E\x01MMMM\n").Ink(kPaperMargin, kTop, 48, 24);
  EXPECT_GT(bold, plain * 1.1);
}

TEST_F(ReceiptPicture, DoubleSizeIsDrawnTwiceAsWideAndHigh) {
  const ReadPicture picture = Draw("\035!\x11MM\n");
  EXPECT_GT(picture.Ink(kPaperMargin + 24, kTop, 24, 48), 0.1);
  EXPECT_GT(picture.Ink(kPaperMargin, kTop + 12, 48, 8), 0.1);
  EXPECT_EQ(picture.Ink(kPaperMargin + 49, kTop, 100, 48), 0);
}

TEST_F(ReceiptPicture, ReverseTextIsWhiteOnBlack) {
  const double ink = Draw("\035B\x01MMMM").Ink(kPaperMargin, kTop, 48, 24);
  EXPECT_GT(ink, 0.5);
  EXPECT_LT(ink, 0.9);
}

TEST_F(ReceiptPicture, AnUnderlineGoesBelowBlanks) {
  const ReadPicture picture = Draw("\033-\x02    ");
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop + 22, 48, 2), 1);
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop, 48, 22), 0);
}

TEST_F(ReceiptPicture, ARasterImageIsDrawnDotForDot) {
  const ReadPicture picture = Draw("\035v0\x00\x01\x00\x02\x00\xF0\x0F"sv);
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop, 4, 1), 1);
  EXPECT_EQ(picture.Ink(kPaperMargin + 4, kTop, 4, 1), 0);
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop + 1, 4, 1), 0);
  EXPECT_EQ(picture.Ink(kPaperMargin + 4, kTop + 1, 4, 1), 1);
}

TEST_F(ReceiptPicture, ARasterImageWiderThanThePaperEndsAtItsMargin) {
  const ReadPicture picture = Draw(std::string("\035v0\x00\x64\x00\x01\x00"sv) + std::string(100, '\xFF'));
  EXPECT_EQ(picture.Ink(kPaperMargin, kTop, 576, 1), 1);
  EXPECT_EQ(picture.Ink(kPaperMargin + 576, kTop, kPaperMargin, 1), 0);
}

TEST_F(ReceiptPicture, ACutGoesAcrossThePaperAndAPartialOneLeavesItsMiddle) {
  const int y = kTop + 16;
  EXPECT_GT(Draw("\035V0").Ink(0, y, 640, 1), 0.4);
  const ReadPicture partial = Draw("\035V1");
  EXPECT_GT(partial.Ink(0, y, 200, 1), 0.4);
  EXPECT_EQ(partial.Ink(310, y, 20, 1), 0);
}

TEST_F(ReceiptPicture, NoPaperIsAPictureOfItsEnds) {
  EXPECT_EQ(Draw("").height(), 2 * kTop);
}

TEST_F(ReceiptPicture, TheDemosReceiptHasItsNameItsBarCodeAndItsCut) {
  std::string receipt;
  for (const std::string_view chunk : FirstDemoCommand(kPrinter).chunks) receipt += chunk;
  const Paper paper = SetReceipt(receipt);
  ASSERT_EQ(paper.dots.size(), 1U);
  ASSERT_EQ(paper.cuts.size(), 1U);
  const ReadPicture picture = Draw(receipt);
  const int left = kPaperMargin + (576 - 95 * 3) / 2;
  EXPECT_NEAR(picture.Ink(left, kTop + paper.dots[0].y, 95 * 3, 100), 0.5, 0.1);
  EXPECT_GT(picture.Ink(kPaperMargin + 162, kTop, 252, 102), 0.1);
  EXPECT_GT(picture.Ink(0, kTop + paper.cuts[0].y, 640, 1), 0.4);
  EXPECT_LT(picture.height(), 1300);
}

TEST_F(ReceiptPicture, AFloodOfLineFeedsIsAPictureOfBoundedHeight) {
  EXPECT_LE(Draw(std::string(1'000'000, '\n')).height(), Paper::kMostDots + 24 + 2 * kTop);
}

TEST_F(ReceiptPicture, AFileThatCannotBeWrittenIsTold) {
  EXPECT_FALSE(DrawPaper(SetReceipt("x"), directory_.path() / "none" / "receipt.png"));
}

}  // namespace
}  // namespace qlx::receipt
