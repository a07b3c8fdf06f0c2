// suite_user ACCOUNT: logs numbered records without end and restarts the services whenever it is told to. The
// configuration file lies beside it. What it is told comes by standard input, a line each:
//   restart      restart the services; each report of the restart is said as a line, "progress 2" last
//   burst COUNT  log the next COUNT records without a pause between them
// At the end of standard input it ends. ACCOUNT gets a line for each record: its number, the number of the
// connection that took it and "sent", "refused" (the connection did not take it) or "unconnected".
#include <atomic>
#include <chrono>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "log/Logger.h"
#include "log/levels.h"
#include "log/logging_section.h"
#include "platform/text.h"
#include "services/ServiceRestart.h"

namespace {

using namespace qlx;
using namespace std::chrono_literals;

constexpr auto kBetweenRecords = 2ms;
constexpr std::size_t kLongestFill = 900;  // bytes

/// What became of the record under way.
struct Fate {
  int connection = 0;
  const char* word = "unconnected";
};

/// The system's socket, and what it did.
class WatchedSocket final : public platform::TcpSocket {
 public:
  explicit WatchedSocket(Fate& fate) : fate_(fate) {}

  bool Start() override { return socket_->Start(); }
  std::optional<std::uint32_t> Resolve(const std::string& host) override { return socket_->Resolve(host); }
  bool Create() override { return socket_->Create(); }
  bool BindToAny() override { return socket_->BindToAny(); }
  bool Connect(std::uint32_t address, std::uint16_t port, std::chrono::milliseconds limit) override {
    const bool connected = socket_->Connect(address, port, limit);
    if (connected) ++fate_.connection;
    return connected;
  }
  platform::WaitEnd WaitWritable(std::chrono::microseconds limit) override {
    fate_.word = "refused";
    return socket_->WaitWritable(limit);
  }
  bool Send(std::string_view bytes) override {
    const bool sent = socket_->Send(bytes);
    if (sent) fate_.word = "sent";
    return sent;
  }
  void Close() override { socket_->Close(); }
  void Stop() override { socket_->Stop(); }

 private:
  std::unique_ptr<platform::TcpSocket> socket_ = platform::MakeTcpSocket();
  Fate& fate_;
};

class Recorder {
 public:
  explicit Recorder(const char* account) : account_(account) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() {
    ended_ = true;
    thread_.join();
  }

  void Burst(int count) { burst_ += count; }

 private:
  void Work() {
    while (!ended_) {
      Log();
      if (burst_ > 0) {
        --burst_;
      } else {
        std::this_thread::sleep_for(kBetweenRecords);
      }
    }
  }

  void Log() {
    const std::size_t fill = burst_ > 0 ? kLongestFill : number_ * 37 % kLongestFill;
    fate_.word = "unconnected";
    logger_.Write(MZP_SERVICE, LEVEL_ERROR,
                  "record " + std::to_string(number_) + " " + std::string(fill, 'x') + " end");
    account_ << number_ << ' ' << fate_.connection << ' ' << fate_.word << '\n';
    ++number_;
  }

  Fate fate_;
  Logger logger_{{platform::ThisProgram(), platform::SystemDebugOutput(), &ReadLoggingSection,
                  [this] { return std::make_unique<WatchedSocket>(fate_); }}};
  std::ofstream account_;
  std::size_t number_ = 1;
  std::atomic<int> burst_ = 0;
  std::atomic<bool> ended_ = false;
  std::thread thread_{[this] { Work(); }};
};

class SayingTarget final : public RestartTarget {
 public:
  void OnRestartProgress(int state) override { std::cout << "progress " << state << std::endl; }

  void ShowRestartMessage(const Message& message, RestartIcon) override {
    std::string line = platform::ToUtf8(InEnglish(message));
    for (char& c : line) {
      if (c == '\n') c = '|';
    }
    std::cout << line << std::endl;
  }
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  Recorder recorder(arguments[1]);
  SayingTarget target;
  ServiceRestart restart(platform::OpenServiceManager, target, RestartEnd::kAlways);
  for (std::string line; std::getline(std::cin, line);) {
    // The one before may not be quite over when its last report is read.
    while (line == "restart" && !restart.Start()) std::this_thread::yield();
    if (line.starts_with("burst ")) recorder.Burst(std::stoi(line.substr(6)));
  }
  return 0;
}
