#include <gmock/gmock.h>

#include "tests/sim/receipt/PrintedOperations.h"

namespace qlx::receipt {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

/// Dots from rows of '#' and '.'.
Dots Picture(const std::vector<std::string>& rows) {
  Dots dots{static_cast<int>(rows.front().size()), static_cast<int>(rows.size())};
  for (const std::string& row : rows) {
    for (const char c : row) dots.black.push_back(c == '#');
  }
  return dots;
}

Image ImageOf(std::string_view bytes) {
  return std::get<Image>(Operations(bytes).back());
}

TEST(PrintStreamImages, ARasterImageIsRowsOfBytesTheHighestBitFirst) {
  EXPECT_EQ(ImageOf("\035v0\x00\x01\x00\x02\x00\xC1\x0F"sv),
            (Image{Picture({"##.....#", "....####"}), 1, 1, false}));
}

TEST(PrintStreamImages, ARasterImageCanBeDoubledInBothDirections) {
  const Image image = ImageOf("\035v0\x03\x01\x00\x01\x00\xC1"sv);
  EXPECT_EQ(image.scale_x, 2);
  EXPECT_EQ(image.scale_y, 2);
}

TEST(PrintStreamImages, ABitImageIsColumnsInTheLine) {
  EXPECT_EQ(ImageOf("\033*\x01\x02\x00\x81\x01"sv),
            (Image{Picture({"#.", "..", "..", "..", "..", "..", "..", "##"}), 1, 3, true}));
}

TEST(PrintStreamImages, ATallBitImageHasThreeBytesAColumn) {
  const Image image = ImageOf("\033*\x20\x01\x00\x80\x00\x01"sv);
  EXPECT_EQ(image.dots.height, 24);
  EXPECT_TRUE(image.dots.black.front() && image.dots.black.back());
  EXPECT_EQ(image.scale_x, 2);
}

TEST(PrintStreamImages, ADefinedImageIsPrintedAsOftenAsItIsAskedFor) {
  const std::string define =
      "\035*\x01\x01"
      "ABCDEFGH";
  EXPECT_EQ(Operations(define + "\035/1\035/1").size(), 2U);
  EXPECT_THAT(Operations("\035/1"), testing::IsEmpty());
}

TEST(PrintStreamImages, ALogoOfThisReceiptIsDrawnAndOneOfThePrintersIsNoted) {
  const std::string stored("\034q\x01\x01\x00\x01\x00\xFF\x00\x00\x00\x00\x00\x00\xFF", 15);
  EXPECT_EQ(ImageOf(stored + "\034p\x01\x01").scale_x, 2);
  EXPECT_THAT(Operations("\034p\x02\x01"), ElementsAre(Note{"logo 2"}));
}

TEST(PrintStreamImages, GraphicsAreStoredAndThenPrinted) {
  EXPECT_EQ(ImageOf("\035(L\x0B\x00\x30\x70\x30\x01\x01\x31\x08\x00\x01\x00\xA5\035(L\x02\x00\x30\x32"sv),
            (Image{Picture({"#.#..#.#"}), 1, 1, false}));
  EXPECT_EQ(
      ImageOf("\0358L\x0B\x00\x00\x00\x30\x70\x30\x02\x01\x31\x08\x00\x01\x00\xA5\035(L\x02\x00\x30\x32"sv)
          .scale_x,
      2);
}

TEST(PrintStreamImages, RowsThatAreMissingAreLeftOutHoweverManyAreClaimed) {
  EXPECT_EQ(ImageOf("\035v0\x00\x01\x00\xFF\xFF\xC1\x0F"sv).dots.height, 2);
  EXPECT_EQ(ImageOf("\033*\x21\xFF\xFF\x01\x02\x03\x04"sv).dots.width, 2);
}

TEST(PrintStreamImages, ARowIsNoWiderThanAnyPaper) {
  const std::string row(65535, '\xFF');
  const Image image = ImageOf(std::string("\035v0\x00\xFF\xFF\x01\x00"sv) + row);
  EXPECT_EQ(image.dots.width, 2048);
}

}  // namespace
}  // namespace qlx::receipt
