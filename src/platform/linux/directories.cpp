#include "platform/directories.h"

#include <cerrno>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/path_text.h"

namespace qlx::platform {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kPrivateMode = 0700;
constexpr char kFallback[] = "/tmp";

bool IsOwnDirectory(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

}  // namespace

std::wstring TemporaryDirectory() {
  std::error_code failed;
  const fs::path directory = fs::temp_directory_path(failed);
  return PathText(((failed ? fs::path(kFallback) : directory) / "").native());
}

bool MakePrivateDirectory(const std::wstring& path) {
  const std::string name = PathBytes(path);
  return mkdir(name.c_str(), kPrivateMode) == 0 || (errno == EEXIST && IsOwnDirectory(name.c_str()));
}

std::vector<std::wstring> RegularFilesIn(const std::wstring& directory) {
  std::vector<std::wstring> names;
  std::error_code failed;
  fs::directory_iterator entry(PathBytes(directory), failed);
  for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
    std::error_code gone;
    if (entry->symlink_status(gone).type() != fs::file_type::regular) continue;
    names.push_back(PathText(entry->path().filename().native()));
  }
  return names;
}

bool IsRootDirectory(const std::wstring& directory) {
  if (directory.empty()) return true;
  std::error_code failed;
  const fs::path path = fs::weakly_canonical(fs::absolute(PathBytes(directory), failed), failed);
  return path.relative_path().empty();
}

bool RemoveFile(const std::wstring& path) {
  return unlink(PathBytes(path).c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
}

}  // namespace qlx::platform
