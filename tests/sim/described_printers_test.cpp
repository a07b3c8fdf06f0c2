#include "sim/described_printers.h"

#include <set>

#include <gmock/gmock.h>

#include "sim/ReceiptPrinter.h"

namespace qlx::sim {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::string_view kInformation = "\x1D\x49\x01";
constexpr std::string_view kCodePages = "\x1D\x4E\x05\x02";

/// The reaction of the printer `name` to `query`.
Reaction Ask(std::string_view name, std::string_view query) {
  ReceiptPrinter printer;
  printer.Become(*FindDescribedPrinter(name));
  return printer.Receive(query);
}

TEST(DescribedPrinters, EachHasANameOfItsOwn) {
  std::set<std::string_view> names;
  for (const DescribedPrinter& printer : kDescribedPrinters) names.insert(printer.name);
  EXPECT_THAT(names, SizeIs(std::size(kDescribedPrinters)));
  EXPECT_EQ(FindDescribedPrinter("none"), nullptr);
}

TEST(DescribedPrinters, ManyPagesAreTwentyFiveOfATypeNine) {
  EXPECT_EQ(Ask("many-pages", kInformation).answer[19], 9);
  const std::string answer = Ask("many-pages", kCodePages).answer;
  EXPECT_EQ(answer.size(), 18U + 25 * 3);
  EXPECT_EQ(answer.substr(18, 3), std::string("\x00\x01\xB5", 3));
}

TEST(DescribedPrinters, ManyPagesHoldUnknownNumbersThatTheirKindLetsPassAndOneThatItDoesNot) {
  const std::string answer = Ask("many-pages", kCodePages).answer;
  EXPECT_EQ(answer.substr(answer.size() - 9), std::string("\x80\x03\x52\x82\x03\x6A\x00\x03\x53", 9));
}

TEST(DescribedPrinters, NoPagesAreAnAnswerOfEighteenBytesFromATypeNine) {
  EXPECT_EQ(Ask("no-pages", kInformation).answer[19], 9);
  EXPECT_EQ(Ask("no-pages", kCodePages).answer.size(), 18U);
}

TEST(DescribedPrinters, TheOtherTypeIsEight) {
  EXPECT_EQ(Ask("other-type", kInformation).answer[19], 8);
}

TEST(DescribedPrinters, TheSilentOneSaysThatItWasAskedAndAnswersNothing) {
  for (const std::string_view query : {kInformation, kCodePages}) {
    const Reaction reaction = Ask("silent", query);
    EXPECT_EQ(reaction.answer, "");
    EXPECT_THAT(reaction.later, IsEmpty());
    EXPECT_THAT(reaction.lines, SizeIs(2));
  }
}

TEST(DescribedPrinters, GarbageIsEveryByteValueFromNulOn) {
  for (const std::string_view query : {kInformation, kCodePages}) {
    const std::string answer = Ask("garbage", query).answer;
    ASSERT_EQ(answer.size(), 256U);
    EXPECT_EQ(answer[0], '\0');
    EXPECT_EQ(std::set<char>(answer.begin(), answer.end()).size(), 256U);
  }
}

TEST(DescribedPrinters, ASplitAnswerIsTheProperOneInTwoBursts) {
  for (const std::string_view query : {kInformation, kCodePages}) {
    const Reaction reaction = Ask("split", query);
    ASSERT_THAT(reaction.later, SizeIs(1));
    EXPECT_EQ(reaction.answer + reaction.later[0], Ask("many-pages", query).answer);
  }
}

TEST(DescribedPrinters, TheTypeIsInTheFirstBurstUnlessItIsSplitEarly) {
  EXPECT_EQ(Ask("split", kInformation).answer.size(), 20U);
  EXPECT_EQ(Ask("split-early", kInformation).answer.size(), 10U);
}

TEST(DescribedPrinters, TwoQueriesInOneWriteAreAnsweredBurstAfterBurst) {
  const Reaction both = Ask("split", std::string(kInformation) + std::string(kCodePages));
  const Reaction first = Ask("split", kInformation);
  const Reaction second = Ask("split", kCodePages);
  EXPECT_EQ(both.answer, first.answer);
  EXPECT_THAT(both.later, ElementsAre(first.later[0], second.answer, second.later[0]));
}

TEST(DescribedPrinters, TheLongListIsAnAnswerOf4096Bytes) {
  const std::string answer = Ask("long-list", kCodePages).answer;
  EXPECT_EQ(answer.size(), 4096U);
  EXPECT_EQ(answer.substr(18 + 75, 75), answer.substr(18, 75));
  EXPECT_EQ(Ask("long-list", kInformation).answer.size(), 33U);
}

TEST(DescribedPrinters, ALongListWithoutAPageIsFilledUpWithZeros) {
  ReceiptPrinter printer;
  printer.Become(*FindDescribedPrinter("long-list"));
  printer.SetCodePages({});
  EXPECT_EQ(printer.Receive(kCodePages).answer.substr(18), std::string(4078, '\0'));
}

TEST(DescribedPrinters, WhoBecomesAnotherLosesItsDepartures) {
  ReceiptPrinter printer;
  printer.SetType(7);
  printer.SetCodePages({});
  printer.Become(kDescribedPrinters[0]);
  EXPECT_EQ(printer.Receive(kInformation).answer[19], 9);
  EXPECT_EQ(printer.Receive(kCodePages).answer.size(), 18U + 8 * 3);
}

}  // namespace
}  // namespace qlx::sim
