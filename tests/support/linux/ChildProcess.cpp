#include "tests/support/ChildProcess.h"

#include <cstdio>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qlx::test {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// This process's environment, and the order to repeat the debugger's lines on standard error.
std::vector<char*> Environment() {
  static char echo[] = "QUILLON_DEBUG=1";
  std::vector<char*> all = {echo};
  for (char** one = environ; *one != nullptr; ++one) all.push_back(*one);
  all.push_back(nullptr);
  return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

struct ChildProcess::System {
  pid_t process = -1;
  std::optional<int> ended;
  File output;
  File debug_lines;

  void Start(std::vector<std::string> line) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    output.reset(fdopen(ends[0], "r"));
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, ends[1], STDOUT_FILENO);
    if (debug_lines) posix_spawn_file_actions_adddup2(&files, fileno(debug_lines.get()), STDERR_FILENO);
    auto environment = debug_lines ? Environment() : std::vector<char*>();
    const int error = posix_spawn(&process, line.front().c_str(), &files, nullptr, Pointers(line).data(),
                                  debug_lines ? environment.data() : environ);
    posix_spawn_file_actions_destroy(&files);
    close(ends[1]);
    if (error != 0) throw std::runtime_error("cannot start " + line.front());
  }
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                           DebugLines debug_lines)
    : system_(std::make_unique<System>()) {
  if (debug_lines == DebugLines::kKept) system_->debug_lines.reset(std::tmpfile());
  std::vector<std::string> line = {program.string()};
  line.insert(line.end(), arguments.begin(), arguments.end());
  system_->Start(std::move(line));
}

ChildProcess::~ChildProcess() {
  if (system_->ended) return;
  Kill();
  Wait();
}

std::uint32_t ChildProcess::id() const {
  return static_cast<std::uint32_t>(system_->process);
}

std::uint32_t ChildProcess::main_thread_id() const {
  return id();
}

std::optional<std::string> ChildProcess::ReadLine() {
  std::string line;
  int byte = 0;
  while ((byte = std::fgetc(system_->output.get())) != '\n') {
    if (byte == EOF) return std::nullopt;
    line.push_back(static_cast<char>(byte));
  }
  return line;
}

int ChildProcess::Wait() {
  if (!system_->ended) {
    int status = 0;
    waitpid(system_->process, &status, 0);
    system_->ended = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }
  return *system_->ended;
}

void ChildProcess::Kill() {
  kill(system_->process, SIGKILL);
}

std::string ChildProcess::debug_lines() const {
  std::string lines;
  std::rewind(system_->debug_lines.get());
  for (int byte = 0; (byte = std::fgetc(system_->debug_lines.get())) != EOF;)
    lines.push_back(static_cast<char>(byte));
  return lines;
}

}  // namespace qlx::test
