// qlxsim: plays the suite for the tool until it is told to end.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <vector>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "sim/Suite.h"

namespace {

using qlx::sim::EventLoop;
using qlx::sim::EventSource;
using qlx::sim::Suite;
using qlx::sim::SuiteOptions;
using qlx::sim::UnitBehaviour;

struct Departure {
  const char* flag;
  const char* help;
  bool UnitBehaviour::*member;
};

constexpr Departure kDepartures[] = {
    {"--stopped", "the service does not run at the beginning", &UnitBehaviour::stopped},
    {"--missing", "the manager knows no such service", &UnitBehaviour::missing},
    {"--refuse-stop", "a request to stop is denied", &UnitBehaviour::refuse_stop},
    {"--refuse-start", "a request to start is denied", &UnitBehaviour::refuse_start},
    {"--hang-stopping", "once asked to stop, it stays deactivating", &UnitBehaviour::hang_stopping},
    {"--hang-starting", "once asked to start, it stays activating", &UnitBehaviour::hang_starting},
    {"--fail-stop", "a stop ends in the state failed", &UnitBehaviour::fail_stop},
    {"--fail-start", "a start goes straight to the state failed", &UnitBehaviour::fail_start},
    {"--lose-bus", "a request to stop ends the bus", &UnitBehaviour::lose_bus},
};

struct Duration {
  const char* flag;
  const char* help;
  std::chrono::milliseconds UnitBehaviour::*member;
};

constexpr Duration kDurations[] = {
    {"--start-takes", "milliseconds that every service is activating", &UnitBehaviour::start_takes},
    {"--stop-takes", "milliseconds that every service is deactivating", &UnitBehaviour::stop_takes},
};

void AddOptions(CLI::App& app, SuiteOptions& options) {
  app.add_option("--config", options.configuration, "the suite's configuration file; may come later")
      ->required();
  app.add_option("--dir", options.directory, "directory for sockets and the file 'environment'")->required();
  app.add_option("--log-dir", options.log_directory, "directory of the suite's log file; default: --dir");
  app.add_flag("--never-answer", options.never_answer, "the service manager answers no call");
  for (const Departure& departure : kDepartures) {
    const auto set = [&options, &departure](const std::vector<std::string>& names) {
      for (const std::string& name : names) options.behaviours.at(name).*departure.member = true;
    };
    app.add_option_function<std::vector<std::string>>(departure.flag, set, departure.help)
        ->type_name("SERVICE")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({"QLXSVC", "QLXLOGSVC"}));
  }
  for (const Duration& duration : kDurations) {
    const auto set = [&options, &duration](const int& count) {
      for (auto& behaviour : options.behaviours)
        behaviour.second.*duration.member = std::chrono::milliseconds(count);
    };
    app.add_option_function<int>(duration.flag, set, duration.help)->check(CLI::Range(0, 3'600'000));
  }
}

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
  const Suite suite(loop, options, say);
  const EnvironmentFile environment(options.directory / "environment", suite.Environment());
  std::cout << suite.Environment();
  say("ready");
  loop.Run();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Plays the Quillon suite: a private system bus with its services, and the log service.",
               "qlxsim");
  SuiteOptions options;
  AddOptions(app, options);
  CLI11_PARSE(app, argc, argv);
  try {
    Run(options);
  } catch (const std::exception& failure) {
    std::cerr << "qlxsim: " << failure.what() << std::endl;
    return 1;
  }
  return 0;
}
