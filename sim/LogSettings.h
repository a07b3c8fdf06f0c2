// What the log service takes from the suite's configuration file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace qlx::sim {

struct LogSettings {
  std::uint16_t port = 38674;
  std::string file_name = "qlx.log";  ///< the last component of the configured path
  std::uint64_t file_bytes = 10240 * 1024;
};

/// Reads the file at `configuration` as the tool's own log does; each value that is missing or unusable keeps
/// its default, as the whole does when there is no such file yet.
LogSettings ReadLogSettings(const std::filesystem::path& configuration);

}  // namespace qlx::sim
