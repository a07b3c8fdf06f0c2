// The suite's two units on a private bus, played in a thread of their own.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <future>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>

#include "sim/BusDaemon.h"
#include "sim/EventLoop.h"
#include "sim/UnitManager.h"

namespace qlx::sim {

/// A directory of its own, gone with its contents.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::string name = testing::TempDir() + "qlxXXXXXX";
    path_ = mkdtemp(name.data());
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory() {
    std::error_code left;
    std::filesystem::remove_all(path_, left);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// The lines that a part of the simulator said, in their order. From any thread.
class SaidLines {
 public:
  Say Listener() {
    return [this](const std::string& line) {
      const std::lock_guard hold(lock_);
      lines_.push_back(line);
      changed_.notify_all();
    };
  }

  std::vector<std::string> All() {
    const std::lock_guard hold(lock_);
    return lines_;
  }

  /// True once `line` has been said `times`; false when that does not happen within ten seconds.
  bool Await(const std::string& line, std::ptrdiff_t times = 1) {
    std::unique_lock hold(lock_);
    return changed_.wait_for(hold, std::chrono::seconds(10),
                             [&] { return std::count(lines_.begin(), lines_.end(), line) >= times; });
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  std::vector<std::string> lines_;
};

/// Runs a loop in a thread as long as it lives.
class LoopThread {
 public:
  explicit LoopThread(EventLoop& loop) : loop_(loop), thread_([&loop] { loop.Run(); }) {}
  LoopThread(const LoopThread&) = delete;
  LoopThread& operator=(const LoopThread&) = delete;
  ~LoopThread() {
    loop_.Stop();
    thread_.join();
  }

  /// Has `action` done in the loop and waits for it.
  void Do(const std::function<void()>& action) {
    std::promise<void> done;
    loop_.Post([&] {
      action();
      done.set_value();
    });
    done.get_future().wait();
  }

 private:
  EventLoop& loop_;
  std::thread thread_;
};

/// DBUS_SYSTEM_BUS_ADDRESS leads to its bus.
class PlayedServices {
 public:
  explicit PlayedServices(const UnitBehaviour& framework = {}, const UnitBehaviour& logging = {})
      : bus_(directory_.path()),
        manager_(loop_, bus_.address(), said_.Listener()),
        framework_(Add("QLXSVC.service", framework)),
        logging_(Add("QLXLOGSVC.service", logging)) {
    manager_.OnLoseBus([this] { bus_.Kill(); });
    setenv("DBUS_SYSTEM_BUS_ADDRESS", bus_.address().c_str(), 1);
    thread_.emplace(loop_);
  }

  SaidLines& said() { return said_; }
  void Release() {
    thread_->Do([this] {
      framework_.Release();
      logging_.Release();
    });
  }
  void FallSilent() {
    thread_->Do([this] { manager_.FallSilent(); });
  }
  void LoseBus() {
    thread_->Do([this] { bus_.Kill(); });
  }
  ActiveState framework_state() { return StateOf(framework_); }
  ActiveState logging_state() { return StateOf(logging_); }

 private:
  Unit& Add(const char* name, const UnitBehaviour& behaviour) {
    return manager_.Add(
        name, behaviour, [] { return true; }, [] {});
  }

  ActiveState StateOf(const Unit& unit) {
    ActiveState state{};
    thread_->Do([&] { state = unit.state(); });
    return state;
  }

  ScratchDirectory directory_;
  SaidLines said_;
  BusDaemon bus_;
  EventLoop loop_;
  UnitManager manager_;
  Unit& framework_;
  Unit& logging_;
  std::optional<LoopThread> thread_;
};

}  // namespace qlx::sim
