// A program that a test starts, listens to and waits for.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qlx::test {

/// What becomes of the lines that the child writes to the debugger's channel. Where the channel is one for
/// the whole system, children whose lines are kept run one after the other, in whatever test.
enum class DebugLines { kIgnored, kKept };

class ChildProcess {
 public:
  /// Starts `program`; no argument may hold a quotation mark. Throws when it does not start.
  explicit ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments = {},
                        DebugLines debug_lines = DebugLines::kIgnored);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  /// Kills it when it still runs.
  ~ChildProcess();

  std::uint32_t id() const;
  std::uint32_t main_thread_id() const;

  /// The next line of its standard output without the line's end; empty when there is none left.
  std::optional<std::string> ReadLine();

  /// Waits for its end and answers the exit code; another number than it could have returned when it was
  /// killed.
  int Wait();

  /// Ends it at once, as a crash would.
  void Kill();

  /// After Wait: what it wrote to the debugger's channel, each line with "\n".
  std::string debug_lines() const;

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace qlx::test
