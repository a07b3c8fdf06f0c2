#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/ProcessLog.h"
#include "log/levels.h"
#include "tests/log/fakes.h"

namespace qlx {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const std::string kHeader = "16/11/2026 02:27:47.123\tP[0a1c]\tT[1f20]\tMZP_PRINTER    \tLEVEL_ERROR   \t";
const std::string kBlanks(72, ' ');

class ProcessLogTest : public testing::Test {
 protected:
  ProcessLogTest() { current = this; }
  ~ProcessLogTest() override { log_.End(); }

  static std::unique_ptr<Logger> Create() {
    const auto read = [](const std::wstring& path) {
      current->read_paths_.push_back(path);
      return current->keys_;
    };
    return std::make_unique<Logger>(
        LoggerSystem{current->program_, current->debug_, read, test::SocketsOf(current->story_)});
  }

  void Message(std::uint32_t module, std::uint32_t level, const char* format, ...) QLX_PRINTF(4, 5) {
    std::va_list arguments;
    va_start(arguments, format);
    if (log_.Passes(module, level)) log_.Message(module, level, format, arguments);
    va_end(arguments);
  }

  void HexDump(const std::vector<unsigned char>& bytes, const char* format, ...) QLX_PRINTF(3, 4) {
    std::va_list arguments;
    va_start(arguments, format);
    if (log_.Passes(MZP_PRINTER, LEVEL_ERROR))
      log_.HexDump(MZP_PRINTER, LEVEL_ERROR, bytes.data(), static_cast<std::uint32_t>(bytes.size()), format,
                   arguments);
    va_end(arguments);
  }

  static void PrinterError(ProcessLog& log, const char* format, ...) QLX_PRINTF(2, 3) {
    std::va_list arguments;
    va_start(arguments, format);
    log.Message(MZP_PRINTER, LEVEL_ERROR, format, arguments);
    va_end(arguments);
  }

  static std::vector<unsigned char> Counting(std::size_t length) {
    std::vector<unsigned char> bytes(length);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    return bytes;
  }

  inline static ProcessLogTest* current = nullptr;

  test::FakeProgram program_;
  test::FakeDebugOutput debug_;
  test::SocketStory story_;
  std::vector<ConfigNode> keys_{{L"Log_Level", L"5", {}, {}}};
  std::vector<std::wstring> read_paths_;
  ProcessLog log_{&ProcessLogTest::Create};
};

TEST_F(ProcessLogTest, AMessageGoesOutAsOneRecord) {
  Message(MZP_PRINTER, LEVEL_ERROR, "PRINTERDialog::OpenPort - %s %d", "COM", 7);
  EXPECT_THAT(story_.sent, ElementsAre(kHeader + "PRINTERDialog::OpenPort - COM 7\r\n"));
}

TEST_F(ProcessLogTest, ThreeDebugLinesPathPortPathAppearOnce) {
  keys_.push_back({L"TCP_Port", L"00080", {}, {}});
  Message(MZP_PRINTER, LEVEL_ERROR, "one");
  Message(MZP_PRINTER, LEVEL_ERROR, "two");
  EXPECT_THAT(debug_.lines, ElementsAre(L"[MZP]: Log Library XML File Path = /opt/QLXConfig.xml",
                                        L"[MZP]: Log Library TCP Port = 80",
                                        L"[MZP]: Log Library XML File Path = /opt/QLXConfig.xml"));
  EXPECT_EQ(story_.port, 80);
}

TEST_F(ProcessLogTest, TheFileIsReadByEachReaderAndNeverAgain) {
  Message(MZP_PRINTER, LEVEL_ERROR, "one");
  keys_.clear();
  Message(MZP_PRINTER, LEVEL_ERROR, "two");
  EXPECT_THAT(read_paths_, ElementsAre(L"/opt/QLXConfig.xml", L"/opt/QLXConfig.xml"));
  EXPECT_EQ(story_.sent.size(), 2U);
}

TEST_F(ProcessLogTest, WithoutANameOfItsOwnTheProgramNamesTheDefaultPathAndReadsNoDriveLetterFile) {
  program_.has_name = false;
  Message(MZP_PRINTER, LEVEL_ERROR, "off");
  EXPECT_EQ(debug_.lines.front(),
            L"[MZP]: Log Library XML File Path = C:\\Program Files\\Harlune\\MZP\\BIN\\QLXConfig.xml");
  EXPECT_THAT(read_paths_, IsEmpty());
  EXPECT_EQ(story_.made, 0);
}

TEST_F(ProcessLogTest, WithoutALoggingSectionNothingIsLogged) {
  keys_.clear();
  Message(MZP_PRINTER, LEVEL_ERROR, "off");
  HexDump(Counting(20), "off");
  EXPECT_EQ(story_.made, 0);
}

TEST_F(ProcessLogTest, LevelsFromErrorToTheThresholdPass) {
  keys_ = {{L"Log_Level", L"3", {}, {}}};
  for (std::uint32_t level = 0; level < 8; ++level) Message(MZP_PRINTER, level, "%u", level);
  Message(MZP_PRINTER, 0xFFFFFFFF, "never");
  ASSERT_EQ(story_.sent.size(), 3U);
  EXPECT_THAT(story_.sent[0], EndsWith("LEVEL_ERROR   \t1\r\n"));
  EXPECT_THAT(story_.sent[2], EndsWith("LEVEL_INFO    \t3\r\n"));
}

TEST_F(ProcessLogTest, AFirstMessageOfLevelOffStillCreatesTheLogger) {
  Message(MZP_PRINTER, LEVEL_OFF, "never");
  EXPECT_EQ(debug_.lines.size(), 3U);
  EXPECT_EQ(story_.made, 0);
}

TEST_F(ProcessLogTest, AMaskedModuleIsSilentAndTheOthersAreNot) {
  keys_.push_back({L"Module_PRINTER_USB", L"", {}, {}});
  Message(MZP_PRINTER, LEVEL_ERROR, "off");
  HexDump(Counting(1), "off");
  Message(MZP_DRIVER, LEVEL_ERROR, "on");
  EXPECT_EQ(story_.sent.size(), 1U);
}

TEST_F(ProcessLogTest, AnUnknownModulePassesAndPrintsNoName) {
  Message(0x200, LEVEL_ERROR, "text");
  EXPECT_THAT(story_.sent.front(), EndsWith("T[1f20]\t\tLEVEL_ERROR   \ttext\r\n"));
}

TEST_F(ProcessLogTest, AModuleWordOfZeroIsNotLogged) {
  Message(0, LEVEL_ERROR, "never");
  EXPECT_THAT(story_.sent, IsEmpty());
}

TEST_F(ProcessLogTest, AContinuationLineOfAMaskedModulePassesByItsOwnBit) {
  keys_.push_back({L"Module_PRINTER_USB", L"", {}, {}});
  Message(MZP_PRINTER | kContinuation, LEVEL_ERROR, "row");
  EXPECT_THAT(story_.sent, ElementsAre(kBlanks + "row\r\n"));
}

TEST_F(ProcessLogTest, AMessageLongerThan1023BytesIsCut) {
  Message(MZP_PRINTER, LEVEL_ERROR, "%s", std::string(5000, 'x').c_str());
  EXPECT_THAT(story_.sent, ElementsAre(kHeader + std::string(1023, 'x') + "\r\n"));
}

TEST_F(ProcessLogTest, ADumpOf20BytesIsACaptionAFullRowAndAShortRow) {
  HexDump(Counting(20), "%s answered", "COM7");
  EXPECT_THAT(story_.sent,
              ElementsAre(kHeader + "COM7 answered (20 bytes)\r\n",
                          kBlanks + "001) 00 01 02 03   04 05 06 07   08 09 0a 0b   0c 0d 0e 0f   "
                                    "................\r\n",
                          kBlanks + "002) 10 11 12 13                                             ....\r\n"));
}

TEST_F(ProcessLogTest, ADumpOf16BytesIsACaptionAndOneRow) {
  HexDump(Counting(16), "sixteen");
  ASSERT_EQ(story_.sent.size(), 2U);
  EXPECT_EQ(story_.sent[0], kHeader + "sixteen (16 bytes)\r\n");
}

TEST_F(ProcessLogTest, ADumpOfNoBytesIsNothingNotEvenTheCaption) {
  HexDump({}, "never");
  EXPECT_THAT(story_.sent, IsEmpty());
}

TEST_F(ProcessLogTest, ACaptionThatFillsTheTextLosesItsByteCount) {
  HexDump(Counting(1), "%s", std::string(5000, 'x').c_str());
  EXPECT_EQ(story_.sent[0], kHeader + std::string(1023, 'x') + "\r\n");
}

TEST_F(ProcessLogTest, AfterTheEndEveryCallIsSilent) {
  Message(MZP_PRINTER, LEVEL_ERROR, "one");
  log_.End();
  EXPECT_EQ(story_.alive, 0);
  EXPECT_EQ(story_.calls.back(), "stop");
  Message(MZP_PRINTER, LEVEL_ERROR, "two");
  HexDump(Counting(20), "three");
  EXPECT_EQ(story_.sent.size(), 1U);
  EXPECT_EQ(story_.made, 1);
}

TEST_F(ProcessLogTest, ACreationThatFailsIsToldToTheCallerAndTriedAgain) {
  static bool fails = true;
  ProcessLog log([]() -> std::unique_ptr<Logger> {
    if (std::exchange(fails, false)) throw std::bad_alloc();
    return Create();
  });
  EXPECT_THROW(PrinterError(log, "one"), std::bad_alloc);
  PrinterError(log, "two");
  EXPECT_EQ(story_.sent.size(), 1U);
  log.End();
}

}  // namespace
}  // namespace qlx
