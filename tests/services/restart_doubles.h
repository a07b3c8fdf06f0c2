// A service manager and a restart's target that write what happens to them into one list.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/text.h"
#include "services/ServiceRestart.h"

namespace qlx {

using Happenings = std::vector<std::string>;

/// How one service answers. Queries are answered in order, and with "stopped" once the list is used up.
struct ServiceScript {
  std::deque<std::optional<platform::ServiceState>> states;
  std::optional<int> stop_error;
  std::optional<int> start_error;
  int queries = 0;
};

class ScriptedService final : public platform::Service {
 public:
  ScriptedService(std::string name, ServiceScript& script, Happenings& happened)
      : name_(std::move(name)), script_(script), happened_(happened) {
    happened_.push_back("open " + name_);
  }
  ScriptedService(const ScriptedService&) = delete;
  ScriptedService& operator=(const ScriptedService&) = delete;
  ~ScriptedService() override { happened_.push_back("close " + name_); }

  std::optional<platform::ServiceState> QueryState() override {
    ++script_.queries;
    if (script_.states.empty()) return platform::ServiceState::kStopped;
    const auto state = script_.states.front();
    script_.states.pop_front();
    return state;
  }

  std::optional<int> RequestStop() override {
    happened_.push_back("stop " + name_);
    return script_.stop_error;
  }

  std::optional<int> Start() override {
    happened_.push_back("start " + name_);
    return script_.start_error;
  }

 private:
  std::string name_;
  ServiceScript& script_;
  Happenings& happened_;
};

class ScriptedManager final : public platform::ServiceManager {
 public:
  ScriptedManager(std::map<std::string, ServiceScript>& scripts, Happenings& happened)
      : scripts_(scripts), happened_(happened) {}
  ScriptedManager(const ScriptedManager&) = delete;
  ScriptedManager& operator=(const ScriptedManager&) = delete;
  ~ScriptedManager() override { happened_.push_back("close manager"); }

  std::unique_ptr<platform::Service> Open(std::string_view name) override {
    return std::make_unique<ScriptedService>(std::string(name), scripts_[std::string(name)], happened_);
  }

 private:
  std::map<std::string, ServiceScript>& scripts_;
  Happenings& happened_;
};

/// Boxes are written as "box TEXT" and "information TEXT".
class RecordingTarget final : public RestartTarget {
 public:
  explicit RecordingTarget(Happenings& happened) : happened_(happened) {}

  void OnRestartProgress(int state) override {
    if (before_progress) before_progress(state);
    happened_.push_back("progress " + std::to_string(state));
  }

  void ShowRestartMessage(const Message& message, RestartIcon icon) override {
    happened_.push_back((icon == RestartIcon::kInformation ? "information " : "box ") +
                        platform::ToUtf8(InEnglish(message)));
  }

  std::function<void(int)> before_progress;

 private:
  Happenings& happened_;
};

}  // namespace qlx
