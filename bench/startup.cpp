// From exec to the first drawn window, and the memory it took: the tool against a minimal dialog and against
// one with as many controls as the tool.
//
// usage: startup (on a screen of its own: scripts/private-display build/linux-release/bin/startup)
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/rounds.h"

namespace {

constexpr int kRounds = 15;
constexpr char kTitle[] = "Quillon Configuration Tool";

/// Watches a screen on which nothing else happens.
class WatchedScreen {
 public:
  WatchedScreen() : display_(XOpenDisplay(nullptr)) {
    int error = 0;
    if (display_ == nullptr || !XDamageQueryExtension(display_, &damage_event_, &error)) {
      throw std::runtime_error("no screen with the damage extension");
    }
    XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
  }
  WatchedScreen(const WatchedScreen&) = delete;
  WatchedScreen& operator=(const WatchedScreen&) = delete;
  ~WatchedScreen() { XCloseDisplay(display_); }

  /// Returns once a window with the title has been mapped and drawn into.
  void WaitForDrawnWindow() {
    for (;;) {
      XEvent event;
      XNextEvent(display_, &event);
      if (event.type == MapNotify && HasTitle(event.xmap.window)) {
        XDamageCreate(display_, event.xmap.window, XDamageReportNonEmpty);
      } else if (event.type == damage_event_ + XDamageNotify) {
        return;
      }
    }
  }

  /// Drops what happened while the last program ended.
  void Forget() { XSync(display_, True); }

 private:
  bool HasTitle(Window window) {
    char* name = nullptr;
    const bool same = XFetchName(display_, window, &name) != 0 && std::string(name) == kTitle;
    if (name != nullptr) XFree(name);
    return same;
  }

  Display* display_;
  int damage_event_ = 0;
};

struct Start {
  double milliseconds;
  double resident_mib;
};

Start StartOnce(WatchedScreen& screen, const std::filesystem::path& program, std::string argument = {}) {
  std::string path = program.native();
  char* const arguments[] = {path.data(), argument.empty() ? nullptr : argument.data(), nullptr};
  screen.Forget();
  const auto begin = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawn(&child, path.c_str(), nullptr, nullptr, arguments, environ) != 0) {
    throw std::runtime_error("cannot start " + path);
  }
  screen.WaitForDrawnWindow();
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
  kill(child, SIGKILL);
  rusage usage{};
  wait4(child, nullptr, 0, &usage);
  return {taken.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

/// An X server answers about a window that is already gone with an error, which is no reason to end.
int IgnoreError(Display*, XErrorEvent*) {
  return 0;
}

}  // namespace

int main() {
  const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  // The tool on a file of its own, so that each start loads a complete one.
  std::string scratch = (std::filesystem::temp_directory_path() / "qlx-startup-XXXXXX").native();
  const std::filesystem::path installation = mkdtemp(scratch.data());
  std::filesystem::copy(here / "QLXConfig", installation);
  std::filesystem::copy(here / "startup_floor", installation);

  XSetErrorHandler(IgnoreError);
  WatchedScreen screen;
  qlx::bench::Rounds time("Start to the first drawn window", "ms");
  qlx::bench::Rounds memory("Peak resident memory at that moment", "MiB");
  time.Add("minimal dialog", [&] { return StartOnce(screen, installation / "startup_floor").milliseconds; })
      .Add("dialog alike",
           [&] { return StartOnce(screen, installation / "startup_floor", "alike").milliseconds; })
      .Add("QLXConfig", [&] { return StartOnce(screen, installation / "QLXConfig").milliseconds; });
  time.Run(kRounds);
  memory.Add("minimal dialog", [&] { return StartOnce(screen, installation / "startup_floor").resident_mib; })
      .Add("dialog alike",
           [&] { return StartOnce(screen, installation / "startup_floor", "alike").resident_mib; })
      .Add("QLXConfig", [&] { return StartOnce(screen, installation / "QLXConfig").resident_mib; });
  memory.Run();
  std::filesystem::remove_all(installation);
  const bool fast = time.AtMost(1.25, "QLXConfig", "minimal dialog");
  const bool alike = time.AtMost(1.25, "QLXConfig", "dialog alike");
  const bool lean = memory.AtMost(1.3, "QLXConfig", "minimal dialog");
  return fast && alike && lean ? 0 : 1;
}
