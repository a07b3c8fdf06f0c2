// qlxsim: plays the suite for the tool until it is told to end.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <vector>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "sim/Keyboard.h"
#include "sim/Suite.h"
#include "sim/control_client.h"
#include "sim/options.h"

namespace {

using qlx::sim::AddControlOptions;
using qlx::sim::AddOptions;
using qlx::sim::ControlOptions;
using qlx::sim::EventLoop;
using qlx::sim::EventSource;
using qlx::sim::Keyboard;
using qlx::sim::Suite;
using qlx::sim::SuiteOptions;

/// Blocked here and read by the loop, so that every end is the same clean one.
std::vector<EventSource> EndOnSignals(EventLoop& loop) {
  std::vector<EventSource> sources;
  sigset_t ends;
  sigemptyset(&ends);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ends, number);
  sigprocmask(SIG_BLOCK, &ends, nullptr);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    sources.push_back(loop.OnSignal(number, [&loop] { loop.Stop(); }));
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGTTIN, SIG_IGN);  // in the background the keyboard is somebody else's
  return sources;
}

/// Makes the directories and keeps a second simulator out of the first one's as long as the process lives.
void TakeDirectories(SuiteOptions& options) {
  if (options.log_directory.empty()) options.log_directory = options.directory;
  std::filesystem::create_directories(options.directory);
  std::filesystem::create_directories(options.log_directory);
  options.directory = std::filesystem::canonical(options.directory);
  options.log_directory = std::filesystem::canonical(options.log_directory);
  options.configuration = std::filesystem::absolute(options.configuration);
  const int directory = open(options.directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) throw std::runtime_error(options.directory.native() + ": " + std::strerror(errno));
  if (flock(directory, LOCK_EX | LOCK_NB) != 0) {
    throw std::runtime_error("another simulator uses " + options.directory.native());
  }
}

/// The file that leads programs to this suite, there only while it runs.
class EnvironmentFile {
 public:
  EnvironmentFile(std::filesystem::path path, const std::string& text) : path_(std::move(path)) {
    std::ofstream file(path_);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path_.native());
  }
  EnvironmentFile(const EnvironmentFile&) = delete;
  EnvironmentFile& operator=(const EnvironmentFile&) = delete;
  ~EnvironmentFile() {
    std::error_code gone;
    std::filesystem::remove(path_, gone);
  }

 private:
  std::filesystem::path path_;
};

void Run(SuiteOptions& options) {
  TakeDirectories(options);
  EventLoop loop;
  const std::vector<EventSource> signals = EndOnSignals(loop);
  const auto say = [](const std::string& line) { std::cout << line << std::endl; };
  Suite suite(loop, options, say);
  const EnvironmentFile environment(options.directory / "environment", suite.Environment());
  std::cout << suite.Environment();
  say("ready");
  std::optional<Keyboard> keyboard;
  if (isatty(STDIN_FILENO) == 1) {
    keyboard.emplace(loop, STDIN_FILENO, [&suite](const std::string& line) { return suite.Execute(line); });
  }
  loop.Run();
}

/// The exit code that tells whether the command was done.
int Ask(const ControlOptions& options) {
  const std::string answer = qlx::sim::AskSimulator(options.socket, options.Command());
  const bool done = qlx::sim::IsOk(answer);
  (done ? std::cout : std::cerr) << answer;
  return done ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Plays the Quillon suite: a private system bus with its services, the log service, and the "
      "devices on their virtual ports.",
      "qlxsim");
  SuiteOptions options;
  ControlOptions control;
  AddOptions(app, options);
  AddControlOptions(app, control);
  CLI11_PARSE(app, argc, argv);
  try {
    if (!control.socket.empty()) return Ask(control);
    Run(options);
  } catch (const std::exception& failure) {
    std::cerr << "qlxsim: " << failure.what() << std::endl;
    return 1;
  }
  return 0;
}
