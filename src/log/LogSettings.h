// What the configuration file's section Logging_Configuration decides for the log.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/ConfigNode.h"

namespace qlx {

struct LogSettings {
  std::uint32_t level = 0;
  std::uint32_t modules = 0xFFFFFFFF;
  std::uint32_t port = 38674;
  /// Where the logging service writes, UTF-8; held for it, not used by the tool.
  std::string file_name = "C:\\Program Files\\Harlune\\QLX\\LOG\\qlx.log";
  std::int64_t file_size = 10485760;  ///< bytes
};

/// Takes port, level and modules from `keys`, the children of Logging_Configuration. A missing or malformed
/// key leaves its setting; a module key with any value but "true" clears its module. Pure.
void ReadFilterKeys(const std::vector<ConfigNode>& keys, LogSettings& settings);

/// Takes file name, file size and, once more, level. Pure.
void ReadFileKeys(const std::vector<ConfigNode>& keys, LogSettings& settings);

}  // namespace qlx
