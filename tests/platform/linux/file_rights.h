// Who may do what with a file, and ways to give up rights.
#pragma once

#include <filesystem>
#include <functional>
#include <initializer_list>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qlx::platform {

inline constexpr uid_t kNobody = 65534;
/// A check's answer when this process may not mount.
inline constexpr int kNoMounts = 77;

inline struct stat Status(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

/// What `check` returns in a process of its own, which may give up rights or change what is mounted.
inline int InAnotherProcess(const std::function<int()>& check) {
  const pid_t child = fork();
  if (child == 0) _exit(check());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// From here on this process is a user without rights, who owns `owned` alone. True at once for such a user.
inline bool BecomeNobody(std::initializer_list<std::filesystem::path> owned = {}) {
  if (geteuid() != 0) return true;
  for (const std::filesystem::path& path : owned) {
    if (chown(path.c_str(), kNobody, static_cast<gid_t>(-1)) != 0) return false;
  }
  return seteuid(kNobody) == 0;
}

}  // namespace qlx::platform
