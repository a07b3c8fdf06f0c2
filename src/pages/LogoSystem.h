// What the logos take from the system.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_store.h"
#include "platform/image_file.h"
#include "platform/program.h"

namespace qlx {

/// A test hands over its own. Called on the thread that calls the store.
struct LogoSystem {
  std::function<std::optional<platform::DecodedImage>(const std::wstring& path)> decode;
  std::function<std::vector<std::uint8_t>(const platform::RgbImage& image)> encode;
  platform::FileStore* files;
  /// Names of the regular files directly in a directory.
  std::function<std::vector<std::wstring>(const std::wstring& directory)> files_in;
  std::function<bool(const std::wstring& path)> remove_file;
  /// With a separator at the end; empty when there is none.
  std::function<std::optional<std::wstring>()> data_directory;
  std::wstring temporary_directory;  ///< with a separator at the end
  std::function<platform::WallTime()> now;
  /// Takes one line of the log, module MZP_PRINTER, level 1.
  std::function<void(const std::string& line)> log_error;
};

/// The running system's.
LogoSystem ThisLogoSystem();

}  // namespace qlx
