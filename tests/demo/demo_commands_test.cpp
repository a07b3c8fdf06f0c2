#include "demo/demo_commands.h"

#include <numeric>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "demo/demo_kinds.h"

namespace qlx {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

/// Turns "1B 61 01 'text' 0A" into bytes: pairs of hex digits and quoted text.
std::string Bytes(const std::string& listing) {
  std::string bytes;
  for (std::size_t at = 0; at < listing.size();) {
    if (listing[at] == ' ') {
      ++at;
    } else if (listing[at] == '\'') {
      const std::size_t end = listing.find('\'', at + 1);
      bytes += listing.substr(at + 1, end - at - 1);
      at = end + 1;
    } else {
      bytes += static_cast<char>(std::stoi(listing.substr(at, 2), nullptr, 16));
      at += 2;
    }
  }
  return bytes;
}

// Written down a second time, in another notation than the program's.
// NOLINTBEGIN(bugprone-suspicious-missing-comma): long chunks go on over several lines
const char* const kReceipt[] = {
    "1B 61 01",
    "1B 21 09 1D 21 35 'Harlune' 0A",
    "1D 21 00 0A 0A 1D 21 01 'TICKET STORE' 0A",
    "1D 21 00 1B 21 01 'MMM/DD/YY' 20 20 'HH:MM' 0A 0A",
    "1B 21 09 'Store Number:' 1B 21 01 ' 8888' 0A 1B 21 09 'Seller:' 1B 21 01 ' Your Name' 0A 0A",
    "1B 21 81 'Description' 1B 21 01 20 20 20 1B 21 81 'No.Items' 1B 21 01 20 1B 21 81 'Sub-Total' 1B 21 01 "
    "0A 'Computer Harlune' 20 20 20 20 '1' 20 20 20 20 20 1B 21 09 '433.90' 0A "
    "1B 21 01 'Laptop Harlune' 20 20 20 20 20 20 '1' 20 20 20 20 20 1B 21 09 '689.70' 0A "
    "1D 21 01 'TOTAL AMOUNT' 1D 21 00 20 20 20 20 20 20 20 20 20 20 20 20 20 1D 21 01 '1123.60'",
    "1B 21 01 1D 21 01 0A 0A 1D 21 00 'CreditCard (####-####-####-####)' 0A 1B 21 09 1D 21 01 "
    "'Amount of Charge' 1D 21 00 20 20 20 20 20 20 20 20 20 '1123.60' 1B 21 01 0A 0A",
    "'(  # sold items:    2  )' 0A",
    "'TAXES INCLUDED' 0A 1B 61 01 1D 77 03 1D 68 64 1D 48 02 1D 66 01 1D 6B 00 '750101739438' 00",
    "20 1B 21 09 'This ticket is needed for any return or exchange' 0A 0A 20 20 1B 21 01 "
    "'THANK YOU FOR YOUR BUSINESS' 0A 0A 1B 21 41 1D 21 11 ' HARLUNE ' 0A 0A",
    "0C",
    "1B 61 00",
    "1B 21 00",
    "1D 21 00",
    "1D 68 A2",
    "1D 48 00",
    "1D 66 00",
};
// NOLINTEND(bugprone-suspicious-missing-comma)

TEST(DemoCommands, TheReceiptIsSeventeenChunks) {
  const auto chunks = FirstDemoCommand(kPrinter).chunks;
  ASSERT_EQ(chunks.size(), std::size(kReceipt));
  for (std::size_t i = 0; i < chunks.size(); ++i)
    EXPECT_EQ(chunks[i], Bytes(kReceipt[i])) << "chunk " << i + 1;
}

TEST(DemoCommands, TheReceiptsChunksHaveTheirLengths) {
  std::vector<std::size_t> lengths;
  for (const std::string_view chunk : FirstDemoCommand(kPrinter).chunks) lengths.push_back(chunk.size());
  EXPECT_THAT(lengths, ElementsAre(3, 14, 21, 24, 50, 167, 90, 25, 46, 105, 1, 3, 3, 3, 3, 3, 3));
  EXPECT_EQ(std::accumulate(lengths.begin(), lengths.end(), std::size_t{0}), 564U);
}

TEST(DemoCommands, TheReceiptIsNotAnnounced) {
  EXPECT_EQ(FirstDemoCommand(kPrinter).announcement, L"");
}

TEST(DemoCommands, TheDisplaysTextIsAnnouncedAndHasTheLineFeedBeforeTheCarriageReturn) {
  const DemoCommand command = FirstDemoCommand(kLineDisplay);
  EXPECT_EQ(command.announcement, L"<Sending \"HARLUNE TEST<LF><CR>0123456789\">");
  EXPECT_THAT(command.chunks, ElementsAre("\x1F\x10\x04HARLUNE TEST\x0A\x0D"s + "0123456789"));
  EXPECT_EQ(command.chunks.front().size(), 27U);
}

TEST(DemoCommands, EveryDrawerKindOpensBothDrawersAndAsksForTheStatus) {
  for (const DeviceKind kind : {kCashDrawer1, kCashDrawer2, kCashDrawerPci}) {
    EXPECT_THAT(FirstDemoCommand(kind).chunks, ElementsAre("\x07\x1B\x07"));
    EXPECT_THAT(SecondDemoCommand(kind).chunks, ElementsAre("\x06"));
    EXPECT_EQ(FirstDemoCommand(kind).announcement, L"");
    EXPECT_EQ(SecondDemoCommand(kind).announcement, L"");
  }
}

TEST(DemoCommands, ThePrintersSecondCommandAsksForItsStatus) {
  EXPECT_THAT(SecondDemoCommand(kPrinter).chunks, ElementsAre("\x1B\x76"));
}

TEST(DemoCommands, ReadersAreSentNothing) {
  for (const DeviceKind kind : {kMsr, kIButton}) {
    EXPECT_TRUE(FirstDemoCommand(kind).chunks.empty());
    EXPECT_TRUE(SecondDemoCommand(kind).chunks.empty());
  }
  EXPECT_TRUE(SecondDemoCommand(kLineDisplay).chunks.empty());
}

TEST(DemoCommands, AButtonIsShownExactlyWhereItSendsSomething) {
  for (int row = 0; row < kDeviceKinds; ++row) {
    const auto kind = static_cast<DeviceKind>(row);
    EXPECT_EQ(kDemoKinds[row].command.empty(), FirstDemoCommand(kind).chunks.empty()) << row;
    if (kind == kPrinter) continue;  // its second button stays hidden
    EXPECT_EQ(kDemoKinds[row].command2.empty(), SecondDemoCommand(kind).chunks.empty()) << row;
  }
}

}  // namespace
}  // namespace qlx
