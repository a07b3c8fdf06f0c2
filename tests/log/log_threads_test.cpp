// Many threads, one log, a real connection: no record is torn and no dump falls into another.
#include <array>
#include <atomic>
#include <future>
#include <iomanip>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "log/ProcessLog.h"
#include "log/levels.h"
#include "tests/log/fakes.h"
#include "tests/support/LoopbackListener.h"

namespace qlx {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 50;
// Long enough that, without its lock, a dump would be interrupted in nearly every run.
constexpr std::size_t kDumpRows = 50;
constexpr std::size_t kDumpBytes = kDumpRows * 16;

class LogThreadsTest : public testing::Test {
 protected:
  LogThreadsTest() { current = this; }
  ~LogThreadsTest() override { log_.End(); }

  static std::unique_ptr<Logger> Create() {
    ++current->created_;
    const auto read = [](const std::wstring&) -> std::vector<ConfigNode> {
      return {{L"Log_Level", L"5", {}, {}},
              {L"TCP_Port", std::to_wstring(current->listener_.port()), {}, {}}};
    };
    return std::make_unique<Logger>(
        LoggerSystem{platform::ThisProgram(), current->debug_, read, &platform::MakeTcpSocket});
  }

  void Message(const char* format, ...) QLX_PRINTF(2, 3) {
    std::va_list arguments;
    va_start(arguments, format);
    if (log_.Passes(MZP_PRINTER, LEVEL_INFO)) log_.Message(MZP_PRINTER, LEVEL_INFO, format, arguments);
    va_end(arguments);
  }

  void Dump(unsigned char filling, const char* format, ...) QLX_PRINTF(3, 4) {
    std::array<unsigned char, kDumpBytes> bytes;
    bytes.fill(filling);
    std::va_list arguments;
    va_start(arguments, format);
    if (log_.Passes(MZP_PRINTER, LEVEL_INFO))
      log_.HexDump(MZP_PRINTER, LEVEL_INFO, bytes.data(), kDumpBytes, format, arguments);
    va_end(arguments);
  }

  /// Runs `work(thread number)` on all threads, which start together.
  template <typename Work>
  static void Together(Work work) {
    std::promise<void> start;
    const std::shared_future<void> started = start.get_future().share();
    std::vector<std::thread> team;
    team.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread)
      team.emplace_back([&, thread] {
        started.wait();
        work(thread);
      });
    start.set_value();
    for (std::thread& member : team) member.join();
  }

  /// What the service receives while `work` runs, by lines.
  template <typename Work>
  std::vector<std::string> Received(Work work) {
    std::string stream;
    std::thread service([&] { stream = listener_.Accept().ReadAll(); });
    work();
    log_.End();
    service.join();
    return Lines(stream);
  }

  static std::vector<std::string> Lines(const std::string& stream) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < stream.size();) {
      const std::size_t end = stream.find("\r\n", start);
      lines.push_back(stream.substr(start, end - start));
      start = end == std::string::npos ? end : end + 2;
    }
    return lines;
  }

  inline static LogThreadsTest* current = nullptr;

  std::atomic<int> created_ = 0;
  test::FakeDebugOutput debug_;
  test::LoopbackListener listener_;
  ProcessLog log_{&LogThreadsTest::Create};
};

TEST_F(LogThreadsTest, FirstCallsThatRaceCreateOneLogger) {
  Received([&] { Together([&](int thread) { Message("thread %d", thread); }); });
  EXPECT_EQ(created_, 1);
  EXPECT_EQ(debug_.lines.size(), 3U);
}

TEST_F(LogThreadsTest, NoRecordIsTornAndNoneIsLost) {
  const auto lines = Received([&] {
    Together([&](int thread) {
      for (int i = 0; i < kRounds; ++i) Message("<%d %d %s>", thread, i, std::string(200, 'x').c_str());
    });
  });
  const std::regex whole(
      R"(\d\d/\d\d/\d{4} \d\d:\d\d:\d\d\.\d{3}\tP\[[0-9a-f]{4,}\]\tT\[[0-9a-f]{4,}\]\tMZP_PRINTER    \tLEVEL_INFO    \t<\d \d+ x{200}>)");
  for (const std::string& line : lines) EXPECT_TRUE(std::regex_match(line, whole)) << line;
  EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), std::size_t{kThreads * kRounds});
}

/// The rows after each caption, without the messages of other threads between them.
std::vector<std::string> RowsOfEachDump(const std::vector<std::string>& lines) {
  std::vector<std::string> dumps;
  for (const std::string& line : lines) {
    const bool row = line.starts_with(std::string(72, ' '));
    if (line.ends_with("bytes)")) dumps.emplace_back(line.substr(line.find('<')));
    if (row && !dumps.empty()) dumps.back().append("|").append(line, 72, 8);
  }
  return dumps;
}

/// What RowsOfEachDump gives for a dump that nothing fell into.
std::string DumpOf(const std::string& filling) {
  std::ostringstream dump;
  dump << '<' << filling << "> (" << kDumpBytes << " bytes)";
  for (std::size_t row = 1; row <= kDumpRows; ++row)
    dump << '|' << std::setw(3) << std::setfill('0') << row << ") " << filling << ' ';
  return dump.str();
}

TEST_F(LogThreadsTest, NoDumpFallsIntoAnotherWhileMessagesMayFallBetweenItsRows) {
  const auto lines = Received([&] {
    Together([&](int thread) {
      for (int i = 0; i < kRounds; ++i) {
        Dump(static_cast<unsigned char>(0xA0 + thread), "<%x>", 0xA0 + thread);
        Message("between");
      }
    });
  });
  const auto dumps = RowsOfEachDump(lines);
  ASSERT_EQ(dumps.size(), std::size_t{kThreads * kRounds});
  EXPECT_EQ(lines.size(), dumps.size() * (1 + kDumpRows) + std::size_t{kThreads * kRounds});
  for (const std::string& dump : dumps) {
    EXPECT_EQ(dump, DumpOf(dump.substr(1, 2)));
  }
}

TEST_F(LogThreadsTest, ThreadsThatLogWhileTheLogEndsAreSilencedWithoutHarm) {
  std::thread service([&] { listener_.Accept().ReadAll(); });
  std::atomic<int> calls = 0;
  std::thread ending([&] {
    while (calls < kThreads * 10) std::this_thread::yield();
    log_.End();
  });
  Together([&](int thread) {
    for (int i = 0; i < kRounds; ++i, ++calls) {
      Message("<%d %d>", thread, i);
      Dump(1, "dump");
    }
  });
  ending.join();
  service.join();
  EXPECT_EQ(created_, 1);
}

}  // namespace
}  // namespace qlx
