// The suite's log file, bounded in size.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace qlx::sim {

/// Appends to a file and keeps it within a bound: bytes that would pass it go to a new file, and the full one
/// is kept beside it with ".1" behind its name, in place of the one before.
class LogFile {
 public:
  LogFile(std::filesystem::path path, std::uint64_t limit);

  /// False when the system did not take all of `bytes`.
  bool Append(std::string_view bytes);
  const std::filesystem::path& path() const { return path_; }

 private:
  void Rotate();

  std::filesystem::path path_;
  std::uint64_t limit_;
  std::uint64_t size_ = 0;
  std::ofstream stream_;
};

}  // namespace qlx::sim
