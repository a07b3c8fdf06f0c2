#include "sim/LogFile.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace qlx::sim {

LogFile::LogFile(std::filesystem::path path, std::uint64_t limit)
    : path_(std::move(path)),
      limit_(std::max<std::uint64_t>(limit, 1)),
      stream_(path_, std::ios::binary | std::ios::app) {
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(path_, unknown);
  if (!unknown) size_ = size;
}

bool LogFile::Append(std::string_view bytes) {
  while (!bytes.empty() && stream_) {
    if (size_ >= limit_) Rotate();
    const std::string_view part = bytes.substr(0, std::min<std::uint64_t>(bytes.size(), limit_ - size_));
    stream_.write(part.data(), static_cast<std::streamsize>(part.size()));
    stream_.flush();
    size_ += part.size();
    bytes.remove_prefix(part.size());
  }
  return static_cast<bool>(stream_);
}

void LogFile::Rotate() {
  stream_.close();
  std::error_code failed;
  std::filesystem::rename(path_, path_.native() + ".1", failed);
  stream_.open(path_, std::ios::binary | std::ios::trunc);
  size_ = 0;
}

}  // namespace qlx::sim
