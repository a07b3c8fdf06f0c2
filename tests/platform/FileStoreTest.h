// A directory of its own for each test of the file store, and ways to give up rights.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/file_store.h"
#include "platform/linux/path_text.h"

namespace qlx::platform {

namespace fs = std::filesystem;

inline constexpr std::size_t kLimit = 1000;
inline constexpr uid_t kNobody = 65534;
/// A check's answer when this process may not mount.
inline constexpr int kNoMounts = 77;

class FileStoreTest : public testing::Test {
 protected:
  FileStoreTest() {
    std::string name = (fs::temp_directory_path() / "qlx-store-XXXXXX").native();
    directory_ = mkdtemp(name.data());
    fs::permissions(directory_, fs::perms{0755});
  }
  ~FileStoreTest() override { fs::remove_all(directory_); }

  fs::path Path(const char* name = "file") const { return directory_ / name; }
  static std::wstring Text(const fs::path& path) { return PathText(path.native()); }

  static void Put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static struct stat Status(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
  }

  ReadStatus ReadStatusOf(const fs::path& path) const { return store_.Read(Text(path), kLimit).status; }
  std::optional<WriteFailure> Replace(const fs::path& path, std::string_view bytes = "new") const {
    return store_.Replace(Text(path), bytes);
  }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory_))
      names.insert(entry.path().filename().native());
    return names;
  }

  fs::path directory_;
  FileStore& store_ = SystemFileStore();
};

/// What `check` returns in a process of its own, which may give up rights or change what is mounted.
inline int InAnotherProcess(const std::function<int()>& check) {
  const pid_t child = fork();
  if (child == 0) _exit(check());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// From here on this process is a user without rights, who owns `owned` alone. True at once for such a user.
inline bool BecomeNobody(std::initializer_list<fs::path> owned = {}) {
  if (geteuid() != 0) return true;
  for (const fs::path& path : owned) {
    if (chown(path.c_str(), kNobody, static_cast<gid_t>(-1)) != 0) return false;
  }
  return seteuid(kNobody) == 0;
}

}  // namespace qlx::platform
