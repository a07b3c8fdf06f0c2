#include "log/HexRows.h"

#include <algorithm>
#include <charconv>

namespace qlx {
namespace {

constexpr std::size_t kRowBytes = 16;
constexpr std::size_t kGroupBytes = 4;
constexpr std::size_t kHexColumns = kRowBytes * 3 + kRowBytes / kGroupBytes * 2;
constexpr unsigned char kFirstShown = 0x21;

/// Writes "001) " and returns where it ends.
char* WriteLabel(char* out, char* end, std::uint32_t number) {
  for (std::uint32_t width = 100; width > number && width > 1; width /= 10) *out++ = '0';
  out = std::to_chars(out, end, number).ptr;
  *out++ = ')';
  *out++ = ' ';
  return out;
}

void WriteHex(char* out, std::span<const unsigned char> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    char* place = out + i * 3 + i / kGroupBytes * 2;
    place[0] = kDigits[bytes[i] >> 4];
    place[1] = kDigits[bytes[i] & 0x0F];
  }
}

char Shown(unsigned char byte) {
  return byte < kFirstShown ? '.' : static_cast<char>(byte);
}

}  // namespace

std::string_view HexRows::Next() {
  const auto bytes = bytes_.first(std::min(kRowBytes, bytes_.size()));
  bytes_ = bytes_.subspan(bytes.size());
  char* const hex = WriteLabel(row_.data(), row_.data() + row_.size(), ++number_);
  char* const characters = std::fill_n(hex, kHexColumns, ' ');
  WriteHex(hex, bytes);
  const char* const end = std::transform(bytes.begin(), bytes.end(), characters, Shown);
  return {row_.data(), end};
}

}  // namespace qlx
