// qlxsim as a process of its own.
#pragma once

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/sim/PlayedServices.h"

namespace qlx::sim {

/// Starts it with `arguments`, reads what it says, and ends it at the latest when this object goes.
class SimulatorProcess {
 public:
  explicit SimulatorProcess(std::vector<std::string> arguments) {
    std::array<int, 2> output;
    if (pipe2(output.data(), O_CLOEXEC) != 0) return;
    arguments.insert(arguments.begin(), QLXSIM_PATH);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    process_ = fork();
    if (process_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGTERM);  // a test that is killed at its limit leaves nothing running
      dup2(output[1], STDOUT_FILENO);
      dup2(output[1], STDERR_FILENO);
      execv(QLXSIM_PATH, pointers.data());
      _exit(127);
    }
    close(output[1]);
    reader_ = std::thread([this, descriptor = output[0]] { Read(descriptor); });
  }
  SimulatorProcess(const SimulatorProcess&) = delete;
  SimulatorProcess& operator=(const SimulatorProcess&) = delete;
  ~SimulatorProcess() { End(SIGTERM); }

  SaidLines& said() { return said_; }
  pid_t process() const { return process_; }

  /// Sends it `number` (0: nothing) and waits: its exit code, or empty when a signal ended it.
  std::optional<int> End(int number) {
    if (process_ > 0) {
      kill(process_, number);
      waitpid(process_, &status_, 0);
      process_ = -1;
      reader_.join();
    }
    if (!WIFEXITED(status_)) return std::nullopt;
    return WEXITSTATUS(status_);
  }

  /// The first process that it has started.
  pid_t Child() const {
    const std::string self = std::to_string(process_);
    std::ifstream children("/proc/" + self + "/task/" + self + "/children");
    pid_t child = -1;
    children >> child;
    return child;
  }

 private:
  void Read(int descriptor) {
    const auto say = said_.Listener();
    FILE* stream = fdopen(descriptor, "r");
    char* line = nullptr;
    std::size_t room = 0;
    for (ssize_t count; (count = getline(&line, &room, stream)) > 0;) {
      say(std::string(line, static_cast<std::size_t>(line[count - 1] == '\n' ? count - 1 : count)));
    }
    free(line);
    fclose(stream);
  }

  SaidLines said_;
  pid_t process_ = -1;
  int status_ = 0;
  std::thread reader_;
};

}  // namespace qlx::sim
