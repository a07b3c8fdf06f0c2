#include "pages/PrinterAnswers.h"

#include <algorithm>
#include <random>

#include <gmock/gmock.h>

namespace qlx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Block = std::vector<std::uint8_t>;

struct Entry {
  int kind;
  int number;
};

Block InformationOfType(std::uint8_t type) {
  Block block(33);
  block[19] = type;
  return block;
}

Block CodePageAnswer(const std::vector<Entry>& entries) {
  Block block(18);
  for (const Entry& entry : entries) {
    block.push_back(static_cast<std::uint8_t>(entry.kind));
    block.push_back(static_cast<std::uint8_t>(entry.number >> 8));
    block.push_back(static_cast<std::uint8_t>(entry.number & 0xFF));
  }
  return block;
}

PrinterAnswers OfType9() {
  PrinterAnswers answers;
  answers.ExpectInformation();
  answers.Process(InformationOfType(9));
  return answers;
}

std::vector<std::wstring> CodePagesOf(const Block& block) {
  PrinterAnswers answers = OfType9();
  EXPECT_EQ(answers.Process(block), CodePageList::kPrinter);
  return answers.code_pages();
}

TEST(PrinterAnswers, ABlockThatNobodyAskedForChangesNothing) {
  PrinterAnswers answers;
  EXPECT_EQ(answers.Process(InformationOfType(9)), CodePageList::kNone);
  EXPECT_EQ(answers.Process(CodePageAnswer({{0, 437}})), CodePageList::kNone);
  EXPECT_THAT(answers.code_pages(), IsEmpty());
}

TEST(PrinterAnswers, InformationIsAskedForOnceUntilItIsAnswered) {
  PrinterAnswers answers;
  EXPECT_TRUE(answers.ExpectInformation());
  EXPECT_FALSE(answers.ExpectInformation());
  answers.Process(InformationOfType(9));
  EXPECT_TRUE(answers.ExpectInformation());
}

TEST(PrinterAnswers, AnotherTypeThan9BringsTheStandardList) {
  for (const int type : {0, 8, 10, 255}) {
    PrinterAnswers answers;
    answers.ExpectInformation();
    EXPECT_EQ(answers.Process(InformationOfType(static_cast<std::uint8_t>(type))), CodePageList::kStandard)
        << type;
    EXPECT_EQ(answers.Process(CodePageAnswer({{0, 437}})), CodePageList::kNone) << type;
  }
}

TEST(PrinterAnswers, Type9WaitsForTheListOfCodePages) {
  PrinterAnswers answers;
  answers.ExpectInformation();
  EXPECT_EQ(answers.Process(InformationOfType(9)), CodePageList::kNone);
  EXPECT_EQ(answers.Process(CodePageAnswer({{0, 437}})), CodePageList::kPrinter);
}

TEST(PrinterAnswers, AnInformationBlockThatEndsBeforeTheTypeIsOfNoType9) {
  PrinterAnswers answers;
  answers.ExpectInformation();
  EXPECT_EQ(answers.Process(Block(19, 9)), CodePageList::kStandard);
}

TEST(PrinterAnswers, EmptyBlocksAreNoAnswer) {
  PrinterAnswers answers;
  answers.ExpectInformation();
  EXPECT_EQ(answers.Process({}), CodePageList::kNone);
  EXPECT_FALSE(answers.ExpectInformation()) << "still waiting";
}

TEST(PrinterAnswers, BlocksBeyondTheBufferAreNoAnswer) {
  PrinterAnswers answers;
  answers.ExpectInformation();
  EXPECT_EQ(answers.Process(Block(kAnswerBytes + 1, 9)), CodePageList::kNone);
  EXPECT_EQ(answers.Process(Block(kAnswerBytes, 8)), CodePageList::kStandard);
}

TEST(PrinterAnswers, NumbersAreReadHighByteFirstAndShownInDecimal) {
  EXPECT_THAT(CodePagesOf(CodePageAnswer({{0, 0x01B5}, {0, 1252}})),
              ElementsAre(L"437", L"1252", L"Printer Default"));
}

TEST(PrinterAnswers, AnUnknownNumberIsKeptForTheKinds80To82Only) {
  EXPECT_THAT(CodePagesOf(CodePageAnswer({{0x00, 850}})), ElementsAre(L"Printer Default"));
  EXPECT_THAT(CodePagesOf(CodePageAnswer({{0x7F, 850}, {0x83, 850}})), ElementsAre(L"Printer Default"));
  for (const int kind : {0x80, 0x81, 0x82}) {
    EXPECT_THAT(CodePagesOf(CodePageAnswer({{kind, 850}})), ElementsAre(L"850", L"Printer Default")) << kind;
  }
}

TEST(PrinterAnswers, NumbersThatAreInNoStandardListAreKnownAllTheSame) {
  EXPECT_THAT(CodePagesOf(CodePageAnswer({{0, 897}, {0, 853}, {0, 737}, {0, 813}})),
              ElementsAre(L"897", L"853", L"737", L"813", L"Printer Default"));
}

TEST(PrinterAnswers, AListOf18BytesOrFewerHoldsOnlyTheDefault) {
  for (const std::size_t length : {1U, 17U, 18U}) {
    EXPECT_THAT(CodePagesOf(Block(length, 0x80)), ElementsAre(L"Printer Default")) << length;
  }
}

TEST(PrinterAnswers, AListOf24BytesHoldsTwoEntries) {
  EXPECT_THAT(CodePagesOf(CodePageAnswer({{0x80, 1}, {0x80, 2}})),
              ElementsAre(L"1", L"2", L"Printer Default"));
}

TEST(PrinterAnswers, AThirdEntryThatReachesPastAListOf25BytesCountsWithZerosForWhatIsMissing) {
  Block block = CodePageAnswer({{0x80, 1}, {0x80, 2}});
  block.push_back(0x80);
  EXPECT_THAT(CodePagesOf(block), ElementsAre(L"1", L"2", L"0", L"Printer Default"));
  block.push_back(0x02);
  EXPECT_THAT(CodePagesOf(block), ElementsAre(L"1", L"2", L"512", L"Printer Default"));
}

TEST(PrinterAnswers, ASecondListAddsItsEntriesAndAnotherDefault) {
  PrinterAnswers answers = OfType9();
  answers.Process(CodePageAnswer({{0, 437}}));
  answers.Process(CodePageAnswer({{0, 858}}));
  EXPECT_THAT(answers.code_pages(), ElementsAre(L"437", L"Printer Default", L"858", L"Printer Default"));
}

TEST(PrinterAnswers, ListsGoOnBeingTakenAfterTheInformationWasAskedForAgain) {
  PrinterAnswers answers = OfType9();
  answers.ExpectInformation();
  EXPECT_EQ(answers.Process(InformationOfType(8)), CodePageList::kStandard);
  EXPECT_EQ(answers.Process(CodePageAnswer({})), CodePageList::kPrinter) << "type 9 is never forgotten";
}

TEST(PrinterAnswers, TheListStopsAt10000Items) {
  PrinterAnswers answers = OfType9();
  const Block block(kAnswerBytes, 0x80);
  for (int i = 0; i < 100; ++i) answers.Process(block);
  EXPECT_EQ(answers.code_pages().size(), 10'000U);
}

TEST(PrinterAnswers, TheInformationBytesAreThe15BehindTheHeader) {
  Block block(40);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<std::uint8_t>(i);
  EXPECT_THAT(InformationBytes(block),
              ElementsAre(18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32));
  block.resize(20);
  EXPECT_THAT(InformationBytes(block), ElementsAre(18, 19, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(PrinterAnswers, AnyBytesOfAnyLengthAreTaken) {
  std::mt19937 random(7);
  PrinterAnswers answers;
  for (int round = 0; round < 1000; ++round) {
    Block block(random() % 4097);
    std::ranges::generate(block, [&] { return static_cast<std::uint8_t>(random()); });
    if (round % 3 == 0) answers.ExpectInformation();
    if (round % 3 == 0 && block.size() > 19) block[19] = 9;
    answers.Process(block);
    ASSERT_EQ(InformationBytes(block).size(), 15U);
  }
  EXPECT_LE(answers.code_pages().size(), 10'000U);
  EXPECT_GT(answers.code_pages().size(), 300U);
}

}  // namespace
}  // namespace qlx
