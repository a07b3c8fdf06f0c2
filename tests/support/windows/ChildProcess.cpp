#include "tests/support/ChildProcess.h"

#include <stdexcept>

#include "platform/windows/Handle.h"
#include "tests/support/windows/DebuggerChannel.h"

namespace qlx::test {
namespace {

using platform::Handle;

/// Unlike any code that our programs return.
constexpr UINT kKilled = 1009;

std::wstring CommandLine(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::wstring line = L'"' + program.wstring() + L'"';
  for (const std::string& argument : arguments)
    line += L" \"" + std::wstring(argument.begin(), argument.end()) + L'"';
  return line;
}

}  // namespace

struct ChildProcess::System {
  // Listens before the child can write.
  std::unique_ptr<DebuggerChannel> channel;
  Handle output;
  Handle process;
  DWORD process_id = 0;
  DWORD thread_id = 0;
  std::string debug_lines;

  void Start(const std::filesystem::path& program, std::wstring line) {
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (!CreatePipe(&read, &write, nullptr, 0)) throw std::runtime_error("no pipe");
    output = Handle(read);
    const Handle childs_end(write);
    SetHandleInformation(write, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = write;
    PROCESS_INFORMATION started{};
    const auto create = [&] {
      return CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                            &started);
    };
    // Wine does not begin a program about once in a thousand times: see scripts/wine-start.
    if (!create() && !create()) {
      const DWORD error = GetLastError();
      throw std::runtime_error("cannot start " + program.string() + ": error " + std::to_string(error));
    }
    const Handle thread(started.hThread);
    process = Handle(started.hProcess);
    process_id = started.dwProcessId;
    thread_id = started.dwThreadId;
  }
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                           DebugLines debug_lines)
    : system_(std::make_unique<System>()) {
  if (debug_lines == DebugLines::kKept) system_->channel = std::make_unique<DebuggerChannel>();
  const auto absolute = std::filesystem::absolute(program).make_preferred();
  system_->Start(absolute, CommandLine(absolute, arguments));
}

ChildProcess::~ChildProcess() {
  Kill();
  Wait();
}

std::uint32_t ChildProcess::id() const {
  return system_->process_id;
}

std::uint32_t ChildProcess::main_thread_id() const {
  return system_->thread_id;
}

std::optional<std::string> ChildProcess::ReadLine() {
  std::string line;
  for (char byte = 0; byte != '\n';) {
    DWORD count = 0;
    if (!ReadFile(system_->output.get(), &byte, 1, &count, nullptr) || count == 0) return std::nullopt;
    if (byte != '\r' && byte != '\n') line.push_back(byte);
  }
  return line;
}

int ChildProcess::Wait() {
  WaitForSingleObject(system_->process.get(), INFINITE);
  if (system_->channel) system_->debug_lines = system_->channel->LinesOf(id());
  system_->channel.reset();
  DWORD code = 0;
  GetExitCodeProcess(system_->process.get(), &code);
  return static_cast<int>(code);
}

void ChildProcess::Kill() {
  TerminateProcess(system_->process.get(), kKilled);
}

std::string ChildProcess::debug_lines() const {
  return system_->debug_lines;
}

}  // namespace qlx::test
