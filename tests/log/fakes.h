// Doubles of what a logger uses: a process with a fixed time, a listener for debug lines, a socket that
// obeys.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "log/Logger.h"

namespace qlx::test {

class FakeProgram final : public platform::Program {
 public:
  std::optional<std::wstring> PathBesideExecutable(std::wstring_view file_name) const override {
    if (!has_name) return std::nullopt;
    return L"/opt/" + std::wstring(file_name);
  }
  bool IsAbsolutePath(std::wstring_view path) const override { return path.starts_with(L'/'); }
  std::uint32_t ProcessId() const override { return 0xa1c; }
  std::uint32_t ThreadId() const override { return 0x1f20; }
  platform::WallTime Now() const override { return {1794796067, 123}; }  // 2026-11-16 02:27:47 UTC

  bool has_name = true;
};

class FakeDebugOutput final : public platform::DebugOutput {
 public:
  void Write(std::wstring_view line) override { lines.emplace_back(line); }
  std::vector<std::wstring> lines;
};

/// What the sockets of one test do and what became of them; outlives them.
struct SocketStory {
  bool starts = true;
  std::optional<std::uint32_t> address = 0x7F000001;
  bool creates = true;
  bool binds = true;
  bool connects = true;
  platform::WaitEnd wait = platform::WaitEnd::kReady;
  bool sends = true;

  std::vector<std::string> calls;
  std::vector<std::string> sent;
  std::uint16_t port = 0;
  int alive = 0;
  int made = 0;
};

class FakeSocket final : public platform::TcpSocket {
 public:
  explicit FakeSocket(SocketStory& story) : story_(story) {
    ++story_.alive;
    ++story_.made;
  }
  ~FakeSocket() override { --story_.alive; }

  bool Start() override { return Note("start", story_.starts); }
  std::optional<std::uint32_t> Resolve(const std::string& host) override {
    return Note("resolve " + host, story_.address);
  }
  bool Create() override { return Note("create", story_.creates); }
  bool BindToAny() override { return Note("bind", story_.binds); }
  bool Connect(std::uint32_t, std::uint16_t port, std::chrono::milliseconds limit) override {
    story_.port = port;
    return Note("connect " + std::to_string(limit.count()) + " ms", story_.connects);
  }
  platform::WaitEnd WaitWritable(std::chrono::microseconds limit) override {
    return Note("wait " + std::to_string(limit.count()) + " us", story_.wait);
  }
  bool Send(std::string_view bytes) override {
    if (story_.sends) story_.sent.emplace_back(bytes);
    return Note("send", story_.sends);
  }
  void Close() override { Note("close", true); }
  void Stop() override { Note("stop", true); }

 private:
  template <typename Answer>
  Answer Note(const std::string& call, Answer answer) {
    story_.calls.push_back(call);
    return answer;
  }

  SocketStory& story_;
};

/// A function that makes sockets which act out `story`.
inline MakeSocket SocketsOf(SocketStory& story) {
  return [&story] { return std::make_unique<FakeSocket>(story); };
}

}  // namespace qlx::test
