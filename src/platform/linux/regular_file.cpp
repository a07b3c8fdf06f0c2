#include "platform/linux/regular_file.h"

#include <cerrno>

#include <fcntl.h>

namespace qlx::platform {

std::optional<struct stat> StatusOf(const std::filesystem::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

OpenedFile OpenRegular(const std::filesystem::path& name) {
  OpenedFile file{ReadStatus::kUnreadable};
  const auto before = StatusOf(name);
  if (!before) {
    if (errno == ENOENT || errno == ENOTDIR) file.status = ReadStatus::kMissing;
    return file;
  }
  // Asked before the open too: to open a device can have effects of its own.
  file.status = ReadStatus::kNotRegular;
  if (!S_ISREG(before->st_mode)) return file;
  file.descriptor = Descriptor(Retry([&] { return open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  file.status = ReadStatus::kUnreadable;
  if (!file.descriptor || fstat(file.descriptor.number(), &file.info) != 0) return file;
  file.status = S_ISREG(file.info.st_mode) ? ReadStatus::kRead : ReadStatus::kNotRegular;
  return file;
}

}  // namespace qlx::platform
