// The query on a virtual port, with the test as the printer.
#include "pages/PrinterQuery.h"

#include <algorithm>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "VirtualPort.h"
#include "tests/support/Wakes.h"
#include "thread_count.h"

namespace qlx {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using testing::PortDirectory;
using testing::ThreadCount;
using testing::VirtualPort;

constexpr char kInformation[] = "\x1D\x49\x01";
constexpr char kCodePages[] = "\x1D\x4E\x05\x02";

std::string InformationOfType(char type) {
  return std::string(19, '\0') + type + "PRINTER 1.00\r";
}

std::string CodePageAnswer() {
  return std::string(18, '\0') + "\x00\x01\xB5"s + "\x80\x03\x52"s;
}

class Query : public ::testing::Test {
 protected:
  void Load(const std::wstring& code_page, const std::wstring& mode) {
    settings_.Load({{L"PRINTER_USB", L"COM8", {}, {}}},
                   {{L"Code_Page", code_page, {}, {}}, {L"Emulation_Mode", mode, {}, {}}});
  }

  bool AwaitAnswer() {
    wakes_.Await();
    return query_.TakeAnswers();
  }

  /// Opens, asks for the information and answers as a printer of type 9.
  void AnswerAsType9() {
    ASSERT_TRUE(query_.Open());
    query_.RequestInformation();
    ASSERT_EQ(printer_.Receive(3), kInformation);
    printer_.Send(InformationOfType(9));
    EXPECT_FALSE(AwaitAnswer());
  }

  PortDirectory directory_;
  VirtualPort printer_{directory_, "COM8"};
  testing::Wakes wakes_;
  std::vector<std::string> dumps_;
  PRINTERSettings settings_;
  PrinterQuery query_{
      settings_,
      platform::OpenSerialPort,
      {[](std::uint32_t, const std::string&) {},
       [this](std::uint32_t level, const std::string& caption, std::span<const std::uint8_t> bytes) {
         dumps_.push_back(std::to_string(level) + " " + caption + " " + std::to_string(bytes.size()));
       }},
      [this] { wakes_.Add(); }};
};

TEST_F(Query, WithoutAPortNothingIsAskedAndTheStandardListStays) {
  EXPECT_FALSE(query_.Open());
  query_.RequestInformation();
  EXPECT_EQ(settings_.code_page().chosen, 1);
  EXPECT_FALSE(settings_.shows_stored());
}

TEST_F(Query, APrinterOfType9FillsThePageFromItsOwnList) {
  Load(L"1", L"0");
  AnswerAsType9();
  query_.RequestCodePages();
  EXPECT_EQ(printer_.Receive(4), kCodePages);
  printer_.Send(CodePageAnswer());
  EXPECT_TRUE(AwaitAnswer());
  EXPECT_THAT(settings_.code_page().items, ElementsAre(L"437", L"850", L"Printer Default"));
  EXPECT_EQ(settings_.code_page().chosen, 1);
  EXPECT_TRUE(settings_.shows_stored());
}

TEST_F(Query, APrinterOfAnotherTypeFillsThePageFromTheStandardList) {
  Load(L"4", L"0");
  ASSERT_TRUE(query_.Open());
  query_.RequestInformation();
  printer_.Send(InformationOfType(8));
  EXPECT_TRUE(AwaitAnswer());
  EXPECT_EQ(settings_.code_page().chosen, 4);
  EXPECT_EQ(settings_.code_page().items.size(), 26U);
}

TEST_F(Query, APrinterThatDoesNotWorkNativelyIsSentNothing) {
  Load(L"18", L"2");
  ASSERT_TRUE(query_.Open());
  query_.RequestInformation();
  query_.RequestCodePages();
  EXPECT_EQ(printer_.Receive(1, 100), "");
  EXPECT_EQ(settings_.code_page().chosen, 18);
  EXPECT_EQ(settings_.emulation().chosen, 2);
}

TEST_F(Query, TheNextBlockCountsAsTheAnswerThoughNothingWasSent) {
  Load(L"4", L"1");
  ASSERT_TRUE(query_.Open());
  query_.RequestInformation();
  printer_.Send(InformationOfType(8));
  EXPECT_TRUE(AwaitAnswer());
  EXPECT_EQ(settings_.emulation().chosen, 1);
}

TEST_F(Query, ARequestThatIsNotAnsweredIsNotMadeAgain) {
  Load(L"1", L"0");
  ASSERT_TRUE(query_.Open());
  query_.RequestInformation();
  query_.RequestInformation();
  EXPECT_EQ(printer_.Receive(6, 100), kInformation);
}

TEST_F(Query, AnAnswerInTwoBurstsCountsAsTwoAnswers) {
  Load(L"1", L"0");
  AnswerAsType9();
  query_.RequestCodePages();
  printer_.Send(CodePageAnswer().substr(0, 21));
  EXPECT_TRUE(AwaitAnswer());
  printer_.Send(CodePageAnswer().substr(21));
  EXPECT_TRUE(AwaitAnswer());
  EXPECT_THAT(settings_.code_page().items, ElementsAre(L"437", L"Printer Default", L"Printer Default"));
}

TEST_F(Query, EveryBlockIsDumpedAndTheInformationOnItsOwn) {
  Load(L"1", L"0");
  AnswerAsType9();
  printer_.Send("unsolicited");
  AwaitAnswer();
  EXPECT_THAT(dumps_, ElementsAre("4 PRINTERDialog::ProcessReceiveData - Printer Status Bytes 33",
                                  "3 Printer Device Information 15",
                                  "4 PRINTERDialog::ProcessReceiveData - Printer Status Bytes 11"));
}

TEST_F(Query, NothingArrivesAfterTheClose) {
  Load(L"1", L"0");
  AnswerAsType9();
  query_.Close();
  printer_.Send(CodePageAnswer());
  EXPECT_FALSE(query_.TakeAnswers());
  EXPECT_EQ(dumps_.size(), 2U);
}

TEST_F(Query, RandomBlocksOfEverySizeAreTaken) {
  Load(L"1", L"0");
  AnswerAsType9();
  std::mt19937 random(11);
  for (int block = 0; block < 1000; ++block) {
    std::string bytes(random() % 4097, '\0');
    std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
    printer_.Send(bytes);
    query_.TakeAnswers();
  }
  EXPECT_LE(settings_.code_page().items.size(), 10'000U);
}

TEST_F(Query, APrinterThatIsUnpluggedAHundredTimesLeavesNothingBehind) {
  Load(L"1", L"0");
  printer_.Unplug();
  std::thread([] {}).join();  // a sanitizer's own thread begins with the first of ours
  const std::size_t threads = ThreadCount();
  for (int cycle = 0; cycle < 100; ++cycle) {
    VirtualPort printer(directory_, "COM8");
    ASSERT_TRUE(query_.Open());
    query_.RequestInformation();
    if (cycle % 3 == 0) printer.Send(InformationOfType(9));
    printer.Unplug();
    query_.RequestCodePages();
    query_.TakeAnswers();
    query_.Close();
  }
  EXPECT_EQ(ThreadCount(), threads);
}

}  // namespace
}  // namespace qlx
