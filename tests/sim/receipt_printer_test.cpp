#include <gmock/gmock.h>

#include "config/DeviceKind.h"
#include "demo/demo_commands.h"
#include "sim/ReceiptPrinter.h"

namespace qlx::sim {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::string_view kInformation = "\x1D\x49\x01";
constexpr std::string_view kCodePages = "\x1D\x4E\x05\x02";

class ReceiptPrinterTest : public testing::Test {
 protected:
  std::string Answer(std::string_view query) { return printer_.Receive(query).answer; }

  ReceiptPrinter printer_;
};

TEST_F(ReceiptPrinterTest, TheDeviceInformationHoldsFifteenBytesBehindItsHeader) {
  const std::string answer = Answer(kInformation);
  EXPECT_EQ(answer.size(), 33U);
  EXPECT_EQ(answer[19], 9);
}

TEST_F(ReceiptPrinterTest, TheDeviceInformationNamesTheTypeThatWasSet) {
  printer_.SetType(0xFF);
  EXPECT_EQ(Answer(kInformation)[19], '\xFF');
}

TEST_F(ReceiptPrinterTest, ACodePageIsItsKindAndItsNumberHighByteFirst) {
  printer_.SetCodePages({{0x01, 437}, {0x80, 850}});
  EXPECT_EQ(Answer(kCodePages).substr(18), "\x01\x01\xB5\x80\x03\x52");
}

TEST_F(ReceiptPrinterTest, WithoutACodePageTheListIsItsHeader) {
  printer_.SetCodePages({});
  EXPECT_EQ(Answer(kCodePages).size(), 18U);
}

TEST_F(ReceiptPrinterTest, AQueryIsNotPrinted) {
  printer_.Receive("before");
  printer_.Receive(kInformation);
  printer_.Receive(kCodePages);
  printer_.Receive("after");
  EXPECT_EQ(printer_.TakePaper(), "beforeafter");
}

TEST_F(ReceiptPrinterTest, AQueryMayComeByteByByte) {
  printer_.Receive("\x1D");
  printer_.Receive("\x49");
  EXPECT_EQ(Answer("\x01").size(), 33U);
  EXPECT_EQ(printer_.paper(), "");
}

TEST_F(ReceiptPrinterTest, TwoQueriesInOneWriteAreAnsweredInTheirOrder) {
  const std::string answer = Answer(std::string(kInformation) + std::string(kCodePages));
  EXPECT_EQ(answer[19], 9);
  EXPECT_EQ(answer.substr(33, 4), kCodePages);
}

TEST_F(ReceiptPrinterTest, TheDemosReceiptIsPrintedByteForByte) {
  std::string receipt;
  for (const std::string_view chunk : FirstDemoCommand(kPrinter).chunks) {
    EXPECT_EQ(Answer(chunk), "");
    receipt += chunk;
  }
  EXPECT_EQ(printer_.TakePaper(), receipt);
  EXPECT_EQ(receipt.size(), 564U);
}

TEST_F(ReceiptPrinterTest, SaysTheLengthOfEachPieceAndEachQuery) {
  EXPECT_THAT(printer_.Receive("12345").lines, ElementsAre("printer: 5 bytes"));
  EXPECT_THAT(printer_.Receive(kInformation).lines, Contains("printer: device information asked for"));
}

TEST_F(ReceiptPrinterTest, PaperIsTakenOnce) {
  printer_.Receive("once");
  printer_.TakePaper();
  EXPECT_EQ(printer_.TakePaper(), "");
}

}  // namespace
}  // namespace qlx::sim
