// The log of a whole process: a child program with its own configuration file beside its executable.
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include "tests/platform/LoopbackListener.h"

namespace qlx {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;

class LogProcessTest : public testing::Test {
 protected:
  LogProcessTest() {
    std::string name = testing::TempDir() + "logXXXXXX";
    directory_ = mkdtemp(name.data());
    fs::copy_file(QLX_LOG_CHILD, directory_ / "child");
  }
  ~LogProcessTest() override { fs::remove_all(directory_); }

  fs::path ConfigFile() const { return directory_ / "QLXConfig.xml"; }

  void Configure(const std::string& text) const { std::ofstream(ConfigFile()) << text; }

  /// The port of the listener, level trace, and `more` keys.
  void ConfigureLogging(const std::string& more = {}) const {
    Configure("<MZP><Logging_Configuration><TCP_Port>" + std::to_string(listener_.port()) +
              "</TCP_Port><Log_Level>5</Log_Level>" + more + "</Logging_Configuration></MZP>");
  }

  /// Starts the child; its debug lines go to `debug.txt`.
  pid_t Start(const char* task) const {
    const pid_t child = fork();
    if (child != 0) return child;
    const std::string program = directory_ / "child";
    const std::string lines = directory_ / "debug.txt";
    setenv("QUILLON_DEBUG", "1", 1);
    if (freopen(lines.c_str(), "w", stderr) != nullptr) execl(program.c_str(), "child", task, nullptr);
    _exit(127);
  }

  static int ExitCode(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }

  int Run(const char* task) const { return ExitCode(Start(task)); }

  std::string DebugLines() const {
    std::ostringstream text;
    text << std::ifstream(directory_ / "debug.txt").rdbuf();
    return text.str();
  }

  bool AnyConnection() const { return listener_.HasConnection(0); }

  fs::path directory_;
  const test::LoopbackListener listener_;
};

TEST_F(LogProcessTest, AMessageReachesTheServiceWithTheProcessesOwnIdentifiers) {
  ConfigureLogging();
  const pid_t child = Start("say");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(ExitCode(child), 0);
  char identifiers[64];
  std::snprintf(identifiers, sizeof identifiers, "\tP[%04x]\tT[%04x]\t", static_cast<unsigned>(child),
                static_cast<unsigned>(child));
  EXPECT_TRUE(std::regex_search(stream, std::regex(R"(^\d\d/\d\d/\d{4} \d\d:\d\d:\d\d\.\d{3}\t)"))) << stream;
  EXPECT_EQ(stream.substr(23),
            std::string(identifiers) + "MZP_PRINTER    \tLEVEL_ERROR   \tChild::Say - text 7\r\n");
}

TEST_F(LogProcessTest, ADumpReachesTheServiceAsCaptionAndRows) {
  ConfigureLogging();
  const pid_t child = Start("dump");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(ExitCode(child), 0);
  const std::string blanks(72, ' ');
  EXPECT_THAT(stream,
              EndsWith("LEVEL_TRACE   \tChild::Dump (20 bytes)\r\n" + blanks +
                       "001) 00 01 02 03   04 05 06 07   08 09 0a 0b   0c 0d 0e 0f   "
                       "................\r\n" +
                       blanks + "002) 10 11 12 13                                             ....\r\n"));
}

TEST_F(LogProcessTest, DebugLinesNamePathPortPathInThisOrder) {
  ConfigureLogging("<Module_PRINTER_USB/>");
  EXPECT_EQ(Run("say"), 0);
  const std::string path = "[MZP]: Log Library XML File Path = " + ConfigFile().native() + "\n";
  EXPECT_EQ(DebugLines(),
            path + "[MZP]: Log Library TCP Port = " + std::to_string(listener_.port()) + "\n" + path);
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, WithoutAFileNothingIsLoggedAndNoneIsMade) {
  EXPECT_EQ(Run("say"), 0);
  EXPECT_FALSE(fs::exists(ConfigFile()));
  EXPECT_THAT(DebugLines(), testing::HasSubstr("TCP Port = 38674\n"));
}

TEST_F(LogProcessTest, AFileThatCannotBeParsedLeavesTheDefaultsAndItself) {
  Configure("<MZP><Logging_Configuration>");
  EXPECT_EQ(Run("say"), 0);
  EXPECT_EQ(fs::file_size(ConfigFile()), 28U);
  EXPECT_THAT(DebugLines(), testing::HasSubstr("TCP Port = 38674\n"));
}

TEST_F(LogProcessTest, AFileWithoutALoggingSectionLogsNothing) {
  Configure("<MZP><TCP_Port>" + std::to_string(listener_.port()) +
            "</TCP_Port><Log_Level>5</Log_Level></MZP>");
  EXPECT_EQ(Run("say"), 0);
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, WithoutAServiceTheProcessRunsAndEndsAsUsual) {
  Configure("<MZP><Logging_Configuration><TCP_Port>" + std::to_string(test::FreePort()) +
            "</TCP_Port><Log_Level>5</Log_Level></Logging_Configuration></MZP>");
  EXPECT_EQ(Run("dump"), 0);
}

TEST_F(LogProcessTest, CallsAfterTheExitRoutineAreSilent) {
  ConfigureLogging();
  const pid_t child = Start("after the end");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(ExitCode(child), 0);
  EXPECT_THAT(stream, EndsWith("Child::Say - text 7\r\n"));
  EXPECT_FALSE(AnyConnection());
}

TEST_F(LogProcessTest, ThreadsThatStillLogAtTheExitDoNoHarmAndTearNoRecord) {
  ConfigureLogging();
  const pid_t child = Start("while exiting");
  const std::string stream = listener_.Accept().ReadAll();
  EXPECT_EQ(ExitCode(child), 0);
  EXPECT_THAT(stream, EndsWith("\tMZP_PRINTER    \tLEVEL_ERROR   \twhile exiting\r\n"));
}

}  // namespace
}  // namespace qlx
