#include "sim/BusDaemon.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "sim/socket_address.h"

namespace qlx::sim {
namespace {

/// Everybody who reaches the socket may do everything: the directory's mode is the guard.
constexpr const char* kSettings =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <auth>EXTERNAL</auth>
  <listen>ADDRESS</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="method_call"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
  </policy>
</busconfig>
)";

/// The characters of a bus address that need no escape, less those that would need one in XML.
constexpr const char* kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_/.";

std::string AddressOf(const std::filesystem::path& socket) {
  std::string address = "unix:path=";
  for (const char c : socket.native()) {
    if (std::string_view(kPlain).find(c) != std::string_view::npos) {
      address += c;
      continue;
    }
    constexpr const char* kDigits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    address += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return address;
}

std::string TextOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Only calls that are allowed between fork and exec. The bus must not outlive a simulator that was killed,
/// and a Ctrl+C of the terminal is the simulator's to handle.
[[noreturn]] void BecomeDaemon(const std::array<const char*, 6>& arguments, int ready, int errors,
                               pid_t parent) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(127);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  dup2(ready, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  execvp(arguments[0], const_cast<char* const*>(arguments.data()));
  _exit(127);
}

/// The daemon prints its address once it listens; the end of the pipe without it means it did not start.
bool AwaitLine(int pipe) {
  std::array<char, 512> bytes;
  ssize_t count = 0;
  do {
    count = read(pipe, bytes.data(), bytes.size());
  } while (count < 0 && errno == EINTR);
  return count > 0;
}

}  // namespace

BusDaemon::BusDaemon(const std::filesystem::path& directory)
    : socket_(directory / "bus"),
      settings_(directory / "bus.conf"),
      errors_(directory / "bus.errors"),
      address_(AddressOf(socket_)) {
  SocketAddress(socket_);  // its path must have room in one
  std::string text = kSettings;
  text.replace(text.find("ADDRESS"), 7, address_);
  std::ofstream file(settings_);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + settings_.native());
  try {
    Spawn();
  } catch (...) {
    Kill();
    RemoveFiles();
    throw;
  }
}

BusDaemon::~BusDaemon() {
  Kill();
  RemoveFiles();
}

void BusDaemon::Spawn() {
  std::array<int, 2> ready;
  if (pipe2(ready.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  const std::string settings = "--config-file=" + settings_.native();
  const std::array<const char*, 6> arguments = {"dbus-daemon", settings.c_str(),  "--nofork",
                                                "--nopidfile", "--print-address", nullptr};
  const pid_t parent = getpid();
  const int errors = open(errors_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  process_ = fork();
  if (process_ == 0) BecomeDaemon(arguments, ready[1], errors, parent);
  close(ready[1]);
  close(errors);
  const bool started = process_ > 0 && AwaitLine(ready[0]);
  close(ready[0]);
  if (!started) throw std::runtime_error("dbus-daemon did not start\n" + TextOf(errors_));
}

void BusDaemon::Kill() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
}

void BusDaemon::RemoveFiles() const {
  for (const auto& path : {socket_, settings_, errors_}) {
    std::error_code gone;
    std::filesystem::remove(path, gone);
  }
}

}  // namespace qlx::sim
