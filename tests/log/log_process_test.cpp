// The log of a whole process: a child program with its own configuration file beside its executable.
#include <filesystem>
#include <fstream>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/LoopbackListener.h"
#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

namespace fs = std::filesystem;
using test::ChildProcess;
using testing::EndsWith;
using testing::HasSubstr;

class LogProcessTest : public testing::Test {
 protected:
  LogProcessTest() { fs::copy_file(QLX_LOG_CHILD, Program()); }

  fs::path Program() const { return directory_.path() / fs::path(QLX_LOG_CHILD).filename(); }
  fs::path ConfigFile() const { return directory_.path() / "QLXConfig.xml"; }

  void Configure(const std::string& text) const { std::ofstream(ConfigFile()) << text; }

  /// The port of the listener, level trace, and `more` keys.
  void ConfigureLogging(const std::string& more = {}) const {
    Configure("<MZP><Logging_Configuration><TCP_Port>" + std::to_string(listener_.port()) +
              "</TCP_Port><Log_Level>5</Log_Level>" + more + "</Logging_Configuration></MZP>");
  }

  ChildProcess Start(const char* task) const {
    return ChildProcess(Program(), {task}, test::DebugLines::kKept);
  }

  bool AnyConnection() const { return listener_.HasConnection(0); }

  const test::TemporaryDirectory directory_;
  const test::LoopbackListener listener_;
};

TEST_F(LogProcessTest, AMessageReachesTheServiceWithTheProcessesOwnIdentifiers) {
  ConfigureLogging();
  auto child = Start("say");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(child.Wait(), 0);
  char identifiers[64];
  std::snprintf(identifiers, sizeof identifiers, "\tP[%04x]\tT[%04x]\t", child.id(), child.main_thread_id());
  EXPECT_TRUE(std::regex_search(stream, std::regex(R"(^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d\.\d{3}\t)"))) << stream;
  EXPECT_EQ(stream.substr(23),
            std::string(identifiers) + "MZP_PRINTER    \tLEVEL_ERROR   \tChild::Say - text 7\r\n");
}

TEST_F(LogProcessTest, ADumpReachesTheServiceAsCaptionAndRows) {
  ConfigureLogging();
  auto child = Start("dump");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(child.Wait(), 0);
  const std::string blanks(72, ' ');
  EXPECT_THAT(stream,
              EndsWith("LEVEL_TRACE   \tChild::Dump (20 bytes)\r\n" + blanks +
                       "001) 00 01 02 03   04 05 06 07   08 09 0a 0b   0c 0d 0e 0f   "
                       "................\r\n" +
                       blanks + "002) 10 11 12 13                                             ....\r\n"));
}

TEST_F(LogProcessTest, DebugLinesNamePathPortPathInThisOrder) {
  ConfigureLogging("<Module_PRINTER_USB/>");
  auto child = Start("say");
  EXPECT_EQ(child.Wait(), 0);
  const std::string path = "[MZP]: Log Library XML File Path = " + ConfigFile().string() + "\n";
  EXPECT_EQ(child.debug_lines(),
            path + "[MZP]: Log Library TCP Port = " + std::to_string(listener_.port()) + "\n" + path);
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, WithoutAFileNothingIsLoggedAndNoneIsMade) {
  auto child = Start("say");
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_FALSE(fs::exists(ConfigFile()));
  EXPECT_THAT(child.debug_lines(), HasSubstr("TCP Port = 38674\n"));
}

TEST_F(LogProcessTest, AFileThatCannotBeParsedLeavesTheDefaultsAndItself) {
  Configure("<MZP><Logging_Configuration>");
  auto child = Start("say");
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_EQ(fs::file_size(ConfigFile()), 28U);
  EXPECT_THAT(child.debug_lines(), HasSubstr("TCP Port = 38674\n"));
}

TEST_F(LogProcessTest, AFileWithoutALoggingSectionLogsNothing) {
  Configure("<MZP><TCP_Port>" + std::to_string(listener_.port()) +
            "</TCP_Port><Log_Level>5</Log_Level></MZP>");
  auto child = Start("say");
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, WithoutAServiceTheProcessRunsAndEndsAsUsual) {
  Configure("<MZP><Logging_Configuration><TCP_Port>" + std::to_string(test::FreePort()) +
            "</TCP_Port><Log_Level>5</Log_Level></Logging_Configuration></MZP>");
  auto child = Start("dump");
  EXPECT_EQ(child.Wait(), 0);
}

TEST_F(LogProcessTest, CallsAfterTheExitRoutineAreSilent) {
  ConfigureLogging();
  auto child = Start("after the end");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_THAT(stream, EndsWith("Child::Say - text 7\r\n"));
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, ThreadsThatStillLogAtTheExitDoNoHarmAndTearNoRecord) {
  ConfigureLogging();
  auto child = Start("while exiting");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(child.Wait(), 0);
  EXPECT_THAT(stream, EndsWith("\tMZP_PRINTER    \tLEVEL_ERROR   \twhile exiting\r\n"));
}

}  // namespace
}  // namespace qlx
