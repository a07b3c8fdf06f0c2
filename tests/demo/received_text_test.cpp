#include "demo/received_text.h"

#include <numeric>
#include <string_view>

#include <gmock/gmock.h>

namespace qlx {
namespace {

using namespace std::string_view_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::wstring> Describe(DeviceKind kind, std::string_view bytes, bool hex) {
  std::vector<std::wstring> lines;
  for (const Message& line :
       DescribeReceived(kind, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, hex)) {
    lines.push_back(InEnglish(line));
  }
  return lines;
}

std::wstring DataLine(DeviceKind kind, std::string_view bytes, bool hex) {
  return Describe(kind, bytes, hex).at(1);
}

TEST(ReceivedText, NothingReceivedShowsNothing) {
  EXPECT_THAT(Describe(kMsr, "", false), IsEmpty());
  EXPECT_THAT(Describe(kCashDrawer1, "", true), IsEmpty());
}

TEST(ReceivedText, ACountLineComesBeforeTheData) {
  EXPECT_THAT(Describe(kIButton, "abc", false), ElementsAre(L"3 Byte(s) Received:", L"abc"));
}

TEST(ReceivedText, AFullBlockIsShown) {
  EXPECT_EQ(Describe(kIButton, std::string(2048, 'x'), false).front(), L"2048 Byte(s) Received:");
}

TEST(ReceivedText, MoreThanABlockIsAnOverflowAndNothingElse) {
  EXPECT_THAT(Describe(kCashDrawer1, std::string(2049, '\x58'), true),
              ElementsAre(L"<Read Buffer Overflow>"));
}

TEST(ReceivedText, ACarriageReturnOfACardBreaksTheLine) {
  EXPECT_THAT(Describe(kMsr, "A\r", false), ElementsAre(L"2 Byte(s) Received:", L"A\n"));
}

TEST(ReceivedText, ACardWithoutCarriageReturnIsBrokenAfterEvery51Characters) {
  const std::string card(120, 'x');
  EXPECT_EQ(DataLine(kMsr, card, false),
            std::wstring(51, 'x') + L"\n" + std::wstring(51, 'x') + L"\n" + std::wstring(18, 'x'));
}

TEST(ReceivedText, AfterACarriageReturnTheColumnsCountAnew) {
  const std::string card = std::string(40, 'x') + "\r" + std::string(51, 'y') + "z";
  EXPECT_EQ(DataLine(kMsr, card, false),
            std::wstring(40, 'x') + L"\n" + std::wstring(51, 'y') + L"\n" + L"z");
}

TEST(ReceivedText, ACardsDisplayStopsAt2047Bytes) {
  // 39 breaks of two bytes each fit with 1989 + 19 characters; the rest of 2048 is not shown.
  const std::wstring shown = DataLine(kMsr, std::string(2048, 'x'), false);
  EXPECT_EQ(std::ranges::count(shown, L'x'), 2047 - 2 * 38);
  EXPECT_EQ(std::ranges::count(shown, L'\n'), 38);
}

TEST(ReceivedText, ACardInHexIsShownAsItCame) {
  EXPECT_EQ(DataLine(kMsr, "A\r", true), L"41 0D");
}

TEST(ReceivedText, OnlyCardsAreBrokenIntoLines) {
  EXPECT_EQ(DataLine(kIButton, std::string(120, 'x'), false), std::wstring(120, 'x'));
}

TEST(ReceivedText, HexIsOneLineWithTwoBlanksBeforeEveryEighthByte) {
  std::string bytes(17, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  EXPECT_EQ(DataLine(kIButton, bytes, true), L"00 01 02 03 04 05 06 07  08 09 0A 0B 0C 0D 0E 0F  10");
}

TEST(ReceivedText, HexHasCapitalsAndEveryByte) {
  EXPECT_EQ(DataLine(kPrinter, "\xFF\x00\xAB"sv, true), L"FF 00 AB");
}

TEST(ReceivedText, TextIsLatin1AndNulShowsAsNothing) {
  EXPECT_EQ(DataLine(kLineDisplay, "a\0b\x1B\x80\xE9\xFF"sv, false), L"ab\x1B\x80\u00E9\u00FF");
}

TEST(ReceivedText, CarriageReturnWithOrWithoutLineFeedIsOneBreak) {
  EXPECT_EQ(DataLine(kLineDisplay, "a\r\nb\rc\nd", false), L"a\nb\nc\nd");
}

TEST(ReceivedText, StatusOfDrawer1OpenAndDrawer2Closed) {
  EXPECT_THAT(Describe(kCashDrawer1, "\x58", true),
              ElementsAre(L"1 Byte(s) Received:", L"58", L"<Cash Drawer 1 is Opened.>",
                          L"<Cash Drawer 2 is Closed.>"));
}

TEST(ReceivedText, StatusOfNoDrawerPresent) {
  EXPECT_THAT(Describe(kCashDrawer2, "\x00"sv, true),
              ElementsAre(L"1 Byte(s) Received:", L"00", L"<Cash Drawer 1 is Not Present.>",
                          L"<Cash Drawer 2 is Not Present.>"));
}

TEST(ReceivedText, OpenBitsOfAbsentDrawersCountForNothing) {
  const auto lines = Describe(kCashDrawerPci, "\x60", true);
  EXPECT_EQ(lines[2], L"<Cash Drawer 1 is Not Present.>");
  EXPECT_EQ(lines[3], L"<Cash Drawer 2 is Not Present.>");
}

TEST(ReceivedText, Drawer2sOpenBitComesFromTheFirstByteOfTheReply) {
  const auto lines = Describe(kCashDrawer1, "\x20\x18", true);
  EXPECT_EQ(lines[2], L"<Cash Drawer 1 is Closed.>");
  EXPECT_EQ(lines[3], L"<Cash Drawer 2 is Opened.>");
  EXPECT_EQ(Describe(kCashDrawer1, "\x18\x38", true)[3], L"<Cash Drawer 2 is Closed.>");
}

TEST(ReceivedText, EveryDrawerKindAndNoOtherShowsTheStatus) {
  for (int kind = 0; kind < kDeviceKinds; ++kind) {
    const bool drawer = kind >= kCashDrawer1 && kind <= kCashDrawerPci;
    EXPECT_EQ(Describe(static_cast<DeviceKind>(kind), "\x58", true).size(), drawer ? 4U : 2U) << kind;
  }
}

}  // namespace
}  // namespace qlx
