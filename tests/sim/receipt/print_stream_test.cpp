#include <gmock/gmock.h>

#include "sim/receipt/PrintStream.h"
#include "tests/sim/receipt/PrintedOperations.h"

namespace qlx::receipt {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// The style of the "x" behind `commands`.
TextStyle StyleAfter(std::string_view commands) {
  const std::string bytes = std::string(commands) + "x";
  return std::get<Text>(Operations(bytes).back()).style;
}

BarCode CodeAfter(std::string_view commands) {
  return std::get<BarCode>(Operations(commands).back());
}

TEST(PrintStream, TextIsOneOperationUpToTheNextCommand) {
  EXPECT_THAT(Operations("two words\nx"),
              ElementsAre(Text{"two words", {}, 30}, Feed{30}, Text{"x", {}, 30}));
}

TEST(PrintStream, NothingIsNothing) {
  EXPECT_THAT(Operations(""), IsEmpty());
}

TEST(PrintStream, ThePrintModeSetsFontWeightSizeAndUnderlineAtOnce) {
  EXPECT_EQ(StyleAfter("\033!\x09"), (TextStyle{.font_b = true, .bold = true}));
  EXPECT_EQ(StyleAfter("\033!\x10"), (TextStyle{.height = 2}));
  EXPECT_EQ(StyleAfter("\033!\x20"), (TextStyle{.width = 2}));
  EXPECT_EQ(StyleAfter("\033!\x81"), (TextStyle{.font_b = true, .underline = 1}));
  EXPECT_EQ(StyleAfter("\035!\x35\033!\0"sv), TextStyle{});
}

TEST(PrintStream, TheSizeIsUpToEightTimesInBothDirections) {
  EXPECT_EQ(StyleAfter("\035!\x35"), (TextStyle{.width = 4, .height = 6}));
  EXPECT_EQ(StyleAfter("\035!\x77"), (TextStyle{.width = 8, .height = 8}));
}

TEST(PrintStream, EachStyleHasItsOwnCommand) {
  EXPECT_TRUE(StyleAfter("\033E\x01").bold);
  EXPECT_TRUE(StyleAfter("\033M1").font_b);
  EXPECT_TRUE(StyleAfter("\035B\x01").reverse);
  EXPECT_EQ(StyleAfter("\033-2").underline, 2);
  EXPECT_EQ(StyleAfter("\033t\x13").table, 19);
}

TEST(PrintStream, TheInitialisationTakesEverythingBack) {
  EXPECT_EQ(StyleAfter("\033!\xFF\035B\x01\033t\x13\033@"), TextStyle{});
  EXPECT_THAT(Operations("\0333\x10\033@\n"), ElementsAre(Reset{}, Feed{30}));
}

TEST(PrintStream, TheLineSpacingCountsForFeedsAndForLinesOfText) {
  EXPECT_THAT(Operations("\0333\x40x\n\0332\n"), ElementsAre(Text{"x", {}, 64}, Feed{64}, Feed{30}));
}

TEST(PrintStream, PaperIsFedByDotsAndByLines) {
  EXPECT_THAT(Operations("\033J\x64\033d\x05"), ElementsAre(Feed{100}, Feed{150}));
}

TEST(PrintStream, AlignmentIsANumberOrADigit) {
  EXPECT_THAT(Operations("\033a\x01\033a2\033a9"),
              ElementsAre(Align{Alignment::kCentre}, Align{Alignment::kRight}));
}

TEST(PrintStream, PositionsAreAbsoluteOrRelativeAndCanGoBack) {
  EXPECT_THAT(Operations("\033$\x10\x01\033\\\xF0\xFF\t"sv),
              ElementsAre(MoveTo{272, false}, MoveTo{-16, true}, Tab{}));
}

TEST(PrintStream, ThePrintAreaKeepsWhatIsNotSet) {
  EXPECT_THAT(Operations("\035L\x20\0\035W\x00\x01"sv), ElementsAre(PrintArea{32, 576}, PrintArea{32, 256}));
}

TEST(PrintStream, PaperIsCutWhereItIsOrBehindAFeed) {
  EXPECT_THAT(Operations("\035V0\035V\x01\033i\033m"),
              ElementsAre(Cut{0, false}, Cut{0, true}, Cut{0, false}, Cut{0, true}));
  EXPECT_THAT(Operations("\035V\x41\x0A\035V\x42\x0A"), ElementsAre(Cut{100, false}, Cut{100, true}));
}

TEST(PrintStream, AFormFeedBringsTheReceiptToTheKnife) {
  EXPECT_THAT(Operations("\f"), ElementsAre(Cut{90, false}));
}

TEST(PrintStream, CommandsThatPrintNothingAreSkippedWithTheirParameters) {
  for (const std::string_view skipped : {"\033p\x00\x40\x50"sv, "\033R\x07"sv, "\033=A"sv, "\033{A"sv,
                                         "\035r1"sv, "\035^ABC"sv, "\x10\x04\x01"sv, "\033D\x08\x10\0"sv,
                                         "\033&\x03\x41\x42\x01"
                                         "ABC\x02"
                                         "ABCDEF"sv,
                                         "\035(E\x03\x00"
                                         "ABC"sv,
                                         "\033(A\x02\x00"
                                         "AB"sv,
                                         "\034g1A1234\x02\x00"
                                         "AB"sv,
                                         "\033\x76"sv, "\r"sv, "\0"sv}) {
    EXPECT_THAT(Operations(std::string(skipped) + "x"), ElementsAre(Text{"x", {}, 30})) << skipped;
  }
}

TEST(PrintStream, UnknownCommandsAreNotedWithTheirBytes) {
  EXPECT_THAT(Operations("\037\x7A\033\x7F\x01text"sv),
              ElementsAre(Note{"1F 7A 1B 7F 01"}, Text{"text", {}, 30}));
}

TEST(PrintStream, ACommandThatIsCutOffIsDropped) {
  for (const std::string_view whole :
       {"\033*\x21\xFF\x01"sv, "\035v0\x00\xFF\xFF\xFF\xFF"sv, "\035(k\x03\x00"sv}) {
    for (std::size_t length = 3; length < whole.size(); ++length) {
      EXPECT_THAT(Operations(whole.substr(0, length)), IsEmpty());
    }
  }
}

TEST(PrintStream, ABarCodeTakesItsSettingsAndItsDataUpToNul) {
  EXPECT_EQ(CodeAfter("\035w\x02\035h\x64\035H\x02\035f\x01\035k\x00"
                      "750101739438\0"sv),
            (BarCode{Symbology::kUpcA, "750101739438", 2, 100, false, true, true}));
}

TEST(PrintStream, ABarCodeOfTheSecondFormIsFollowedByTheLengthOfItsData) {
  EXPECT_EQ(CodeAfter("\035k\x49\x05{B\x00x1"sv),
            (BarCode{Symbology::kCode128, "{B\0x1"s, 3, 162, false, false, false}));
}

TEST(PrintStream, ABarCodeWithoutItsNulEndsWithTheStream) {
  EXPECT_EQ(CodeAfter("\035k\x04"
                      "ABC")
                .data,
            "ABC");
}

TEST(PrintStream, ABarCodeKindThatIsNotKnownIsSkippedWithItsDataAndNoted) {
  EXPECT_THAT(Operations("\035k\x4F\x03"
                         "123x"),
              ElementsAre(Note{"bar code of kind 79"}, Text{"x", {}, 30}));
}

TEST(PrintStream, AQrCodeIsStoredAndThenPrinted) {
  EXPECT_EQ(CodeAfter("\035(k\x03\x00\x31\x43\x05\035(k\x05\x00\x31\x50\x30qr\035(k\x03\x00\x31\x51\x30"sv),
            (BarCode{Symbology::kQr, "qr", 5, 0, false, false, false}));
}

}  // namespace
}  // namespace qlx::receipt
