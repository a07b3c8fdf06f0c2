// The rows of a hexadecimal dump.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace qlx {

/// Walks `bytes`, 16 a row: a label "001) ", two hexadecimal digits and a blank for each byte, two more
/// blanks after every fourth, then the bytes as characters, which start in the same column in every row.
/// Bytes below 0x21 show as "."; those from 0x7F on are kept as they are: wanted, the log is read in the
/// till's own character set.
class HexRows {
 public:
  explicit HexRows(std::span<const unsigned char> bytes) : bytes_(bytes) {}

  bool done() const { return bytes_.empty(); }

  /// The next row, good until the call after; not to be called when done().
  std::string_view Next();

 private:
  std::span<const unsigned char> bytes_;
  std::uint32_t number_ = 0;
  std::array<char, 96> row_;
};

}  // namespace qlx
