// A port whose every answer a test writes down beforehand.
#pragma once

#include <condition_variable>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/serial_port.h"

namespace qlx::testing {

/// How one read goes: its start, its wait and what it brings; no bytes at all for a result that failed.
struct ReadScript {
  platform::IoStart start = platform::IoStart::kPending;
  platform::IoWait wait = platform::IoWait::kEnded;
  std::optional<std::string> bytes{};
  int error = 0;  ///< counts without bytes
};

/// How one write goes; `waits` are the answers to one wait after the other, the last one to all that follow.
struct WriteScript {
  platform::IoStart start = platform::IoStart::kCompleted;
  std::vector<platform::IoWait> waits{};
  bool result = true;
};

/// What both sides of the port know. The reads that follow the script stay pending until Stop.
struct SerialScript {
  std::deque<ReadScript> reads;
  std::deque<WriteScript> writes;

  std::mutex lock;
  std::condition_variable changed;
  std::vector<std::string> written;
  std::vector<std::string> calls;
  int read_starts = 0;
  bool dirty_buffer = false;
  bool stopped = false;
  bool closed = false;

  void Note(std::string call) {
    const std::lock_guard guard(lock);
    calls.push_back(std::move(call));
  }
  /// What was called so far; the reader goes on calling.
  std::vector<std::string> Calls() {
    const std::lock_guard guard(lock);
    return calls;
  }
  /// Until the reader has begun its read number `count`.
  void AwaitRead(int count) {
    std::unique_lock guard(lock);
    changed.wait(guard, [&] { return read_starts >= count; });
  }
};

class FakeSerialPort : public platform::SerialPort {
 public:
  explicit FakeSerialPort(std::shared_ptr<SerialScript> script) : script_(std::move(script)) {}
  FakeSerialPort(const FakeSerialPort&) = delete;
  FakeSerialPort& operator=(const FakeSerialPort&) = delete;
  ~FakeSerialPort() override {
    const std::lock_guard guard(script_->lock);
    script_->closed = true;
  }

  platform::IoStart StartRead(std::span<std::uint8_t> buffer) override {
    const std::lock_guard guard(script_->lock);
    for (const std::uint8_t byte : buffer) script_->dirty_buffer |= byte != 0;
    scripted_ = !script_->reads.empty();
    read_ = scripted_ ? script_->reads.front() : ReadScript{};
    if (scripted_) script_->reads.pop_front();
    if (read_.bytes) std::memcpy(buffer.data(), read_.bytes->data(), read_.bytes->size());
    ++script_->read_starts;
    script_->changed.notify_all();
    return read_.start;
  }
  platform::IoWait WaitRead(std::chrono::milliseconds limit) override {
    script_->Note("wait read " + std::to_string(limit.count()));
    if (scripted_) return read_.wait;
    std::unique_lock guard(script_->lock);
    script_->changed.wait(guard, [this] { return script_->stopped; });
    return platform::IoWait::kStopped;
  }
  std::optional<std::size_t> ReadResult() override {
    return read_.bytes ? std::optional(read_.bytes->size()) : std::nullopt;
  }
  int ReadError() const override { return read_.error; }
  void CancelRead() override { script_->Note("cancel read"); }

  platform::IoStart StartWrite(std::span<const std::uint8_t> bytes) override {
    write_ = {};
    if (!script_->writes.empty()) {
      write_ = script_->writes.front();
      script_->writes.pop_front();
    }
    script_->written.emplace_back(bytes.begin(), bytes.end());
    return write_.start;
  }
  platform::IoWait WaitWrite(std::chrono::milliseconds limit) override {
    script_->Note("wait write " + std::to_string(limit.count()));
    const platform::IoWait answer = write_.waits.front();
    if (write_.waits.size() > 1) write_.waits.erase(write_.waits.begin());
    return answer;
  }
  bool WriteResult() override { return write_.result; }
  void CancelWrite() override { script_->Note("cancel write"); }

  void Stop() override {
    const std::lock_guard guard(script_->lock);
    script_->stopped = true;
    script_->changed.notify_all();
  }

 private:
  std::shared_ptr<SerialScript> script_;
  ReadScript read_;
  bool scripted_ = false;
  WriteScript write_;
};

}  // namespace qlx::testing
