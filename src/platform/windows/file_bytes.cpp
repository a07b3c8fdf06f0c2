#include "platform/windows/file_bytes.h"

#include <algorithm>

namespace qlx::platform {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;

}  // namespace

std::optional<std::size_t> ReadSome(HANDLE file, char* block, std::size_t size) {
  DWORD got = 0;
  if (ReadFile(file, block, static_cast<DWORD>(std::min(size, kMostAtOnce)), &got, nullptr) == 0)
    return std::nullopt;
  return got;
}

std::optional<std::string> ReadAll(HANDLE file, std::size_t limit) {
  LARGE_INTEGER stated{};
  GetFileSizeEx(file, &stated);
  std::string bytes(std::min(static_cast<std::size_t>(stated.QuadPart), limit) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    const auto got = ReadSome(file, bytes.data() + filled, bytes.size() - filled);
    if (!got) return std::nullopt;
    filled += *got;
    if (*got == 0 || filled > limit) break;
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(std::min(filled, limit + 1));
  return bytes;
}

bool WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (WriteFile(file, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce)), &written,
                  nullptr) == 0)
      return false;
    bytes.remove_prefix(written);
  }
  return true;
}

}  // namespace qlx::platform
