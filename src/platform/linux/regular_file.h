// Opening a file that has to be one: never a pipe or device, which can block or act on being opened.
#pragma once

#include <filesystem>
#include <optional>

#include <sys/stat.h>

#include "platform/file_store.h"
#include "platform/linux/Descriptor.h"

namespace qlx::platform {

/// What stands at `path`, through symbolic links; empty with errno set when that cannot be told.
std::optional<struct stat> StatusOf(const std::filesystem::path& path);

/// A regular file open for reading.
struct OpenedFile {
  ReadStatus status;
  Descriptor descriptor{-1};  ///< none unless `status` is kRead
  struct stat info {};
};

OpenedFile OpenRegular(const std::filesystem::path& name);

}  // namespace qlx::platform
