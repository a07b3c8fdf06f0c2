#include "sim/receipt/Typesetter.h"

#include <gmock/gmock.h>

namespace qlx::receipt {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

Paper Set(const std::vector<PrintOperation>& operations) {
  Typesetter typesetter;
  for (const PrintOperation& operation : operations) typesetter.Add(operation);
  return typesetter.Finish();
}

Text Plain(const std::string& bytes) {
  return {bytes, {}, 30};
}

Dots Square(int side) {
  return {side, side, std::vector<bool>(static_cast<std::size_t>(side * side), true)};
}

TEST(Typesetter, ALineBelowAnotherIsOneLineSpacingDown) {
  const Paper paper = Set({Plain("one"), Feed{30}, Plain("two"), Feed{30}});
  EXPECT_EQ(paper.texts[0].y, 0);
  EXPECT_EQ(paper.texts[1].y, 30);
  EXPECT_EQ(paper.height, 60);
}

TEST(Typesetter, AFontAHas48ColumnsAndFontBHas64) {
  const Paper wide = Set({Plain(std::string(49, 'x'))});
  EXPECT_EQ(wide.texts[0].bytes.size(), 48U);
  EXPECT_EQ(wide.texts[1].y, 30);
  const Paper narrow = Set({Text{std::string(65, 'x'), {.font_b = true}, 30}});
  EXPECT_EQ(narrow.texts[0].bytes.size(), 64U);
}

TEST(Typesetter, TextsOfALineFollowEachOtherOnOneBaseline) {
  const Paper paper = Set({Plain("ab"), Text{"big", {.width = 2, .height = 2}, 30}});
  EXPECT_EQ(paper.texts[1].x, 24);
  EXPECT_EQ(paper.texts[0].y + CellAscent({}), paper.texts[1].y + CellAscent({.height = 2}));
}

TEST(Typesetter, AHighLinePushesTheNextOneDown) {
  EXPECT_EQ(Set({Text{"big", {.height = 4}, 30}, Feed{30}}).height, 96);
}

TEST(Typesetter, LinesAreAligned) {
  EXPECT_EQ(Set({Align{Alignment::kLeft}, Plain("1234")}).texts[0].x, 0);
  EXPECT_EQ(Set({Align{Alignment::kCentre}, Plain("1234")}).texts[0].x, (576 - 48) / 2);
  EXPECT_EQ(Set({Align{Alignment::kRight}, Plain("1234")}).texts[0].x, 576 - 48);
}

TEST(Typesetter, LinesStayInThePrintArea) {
  const Paper paper = Set({PrintArea{100, 240}, Align{Alignment::kRight}, Plain(std::string(21, 'x'))});
  EXPECT_EQ(paper.texts[0].x, 100);
  EXPECT_EQ(paper.texts[0].bytes.size(), 20U);
  EXPECT_EQ(paper.texts[1].x, 100 + 240 - 12);
}

TEST(Typesetter, AnAreaBesideThePaperIsBroughtBack) {
  const Paper paper = Set({PrintArea{60000, 0}, Plain("x")});
  EXPECT_LT(paper.texts[0].x, Paper::kWidth);
}

TEST(Typesetter, ACharacterWiderThanItsAreaIsSetAllTheSame) {
  EXPECT_THAT(Set({PrintArea{0, 5}, Plain("abc")}).texts, SizeIs(3));
}

TEST(Typesetter, ATabGoesToTheNextStopOfEightCharacters) {
  EXPECT_EQ(Set({Plain("a"), Tab{}, Plain("b")}).texts[1].x, 96);
  EXPECT_EQ(Set({Plain("12345678"), Tab{}, Plain("b")}).texts[1].x, 192);
}

TEST(Typesetter, APositionIsFromTheStartOrFromHere) {
  const Paper paper =
      Set({MoveTo{100, false}, Plain("a"), MoveTo{-12, true}, Plain("b"), MoveTo{9999, false}});
  EXPECT_EQ(paper.texts[0].x, 100);
  EXPECT_EQ(paper.texts[1].x, 100);
}

TEST(Typesetter, AnImageIsALineOfItsOwnUnlessItStandsInTheLine) {
  const Paper own = Set({Plain("a"), Image{Square(40), 1, 1, false}, Plain("b")});
  EXPECT_EQ(own.dots[0].y, 24);
  EXPECT_EQ(own.texts[1].y, 64);
  const Paper in_line = Set({Plain("a"), Image{Square(40), 2, 1, true}, Plain("b")});
  EXPECT_EQ(in_line.texts[1].x, 12 + 80);
}

TEST(Typesetter, BitImagesOfTheLineSpacingJoinWithoutAGap) {
  const Paper paper = Set({Image{Square(24), 1, 1, true}, Feed{24}, Image{Square(24), 1, 1, true}, Feed{24}});
  EXPECT_EQ(paper.dots[1].y, paper.dots[0].y + 24);
}

TEST(Typesetter, ABarCodeStandsBetweenItsTexts) {
  const Paper paper = Set({BarCode{Symbology::kEan8, "96385074", 2, 50, true, true, false}});
  ASSERT_THAT(paper.texts, SizeIs(2));
  EXPECT_LT(paper.texts[0].y + CellHeight({}), paper.dots[0].y);
  EXPECT_GT(paper.texts[1].y, paper.dots[0].y + 50);
  EXPECT_EQ(paper.dots[0].scale_x, 2);
  EXPECT_EQ(paper.dots[0].scale_y, 50);
}

TEST(Typesetter, ABarCodeThatCannotBePrintedIsNamed) {
  EXPECT_EQ(Set({BarCode{Symbology::kEan8, "x", 2, 50, true, true, false}}).texts[0].bytes,
            "EAN-8 is not printed");
  const Paper wide = Set({BarCode{Symbology::kCode39, "FAR TOO WIDE FOR THAT", 6, 50, true, true, false}});
  EXPECT_EQ(wide.texts[0].bytes, "Code 39 is too wide");
  EXPECT_THAT(wide.dots, IsEmpty());
}

TEST(Typesetter, ACutStandsBelowItsFeed) {
  const Paper paper = Set({Plain("x"), Cut{100, true}});
  ASSERT_THAT(paper.cuts, SizeIs(1));
  EXPECT_GE(paper.cuts[0].y, 24 + 100);
  EXPECT_TRUE(paper.cuts[0].partial);
}

TEST(Typesetter, WhatIsInTheLineAtTheEndIsOnThePaper) {
  EXPECT_THAT(Set({Plain("unfinished")}).texts, SizeIs(1));
}

TEST(Typesetter, AFloodOfLinesEndsWithThePaperAndANote) {
  Typesetter typesetter;
  for (int i = 0; i < 100'000 && !typesetter.full(); ++i) {
    typesetter.Add(Plain("x"));
    typesetter.Add(Feed{30});
  }
  ASSERT_TRUE(typesetter.full());
  const Paper paper = typesetter.Finish();
  EXPECT_LE(paper.height, Paper::kMostDots + 24);
  EXPECT_EQ(paper.texts.back().bytes, "the rest is not drawn");
}

TEST(Typesetter, AFeedPastTheEndOfThePaperStopsThere) {
  EXPECT_LE(Set({Plain("x"), Feed{65025}}).height, Paper::kMostDots + 24);
}

TEST(Typesetter, AFloodOfTextInOneLineEndsWithANote) {
  Typesetter typesetter;
  while (!typesetter.full()) {
    typesetter.Add(Plain("x"));
    typesetter.Add(MoveTo{0, false});
  }
  const Paper paper = typesetter.Finish();
  EXPECT_LE(paper.items(), Paper::kMostItems + 1);
  EXPECT_EQ(paper.texts.back().bytes, "the rest is not drawn");
}

TEST(Typesetter, AnEmptyImageLeavesNothing) {
  EXPECT_EQ(Set({Image{{}, 1, 1, true}, Image{{8, 0}, 1, 1, false}}).items(), 0U);
}

}  // namespace
}  // namespace qlx::receipt
