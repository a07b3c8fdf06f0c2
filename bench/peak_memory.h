// The memory that work takes, measured in a process of its own.
#pragma once

#include <functional>
#include <stdexcept>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qlx::bench {

/// Peak resident memory of `work` in MiB. It starts with this process's own peak, which must still be small.
inline double PeakMemory(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("a measured process failed");
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace qlx::bench
