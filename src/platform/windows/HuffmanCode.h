// The codes of a JPEG file (ISO/IEC 10918-1, annexes C and F.2.2).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/windows/EntropyBits.h"

namespace qlx::platform {

/// A prefix code for bytes, codewords of 1 to 16 bits.
class HuffmanCode {
 public:
  static constexpr std::size_t kLengths = 16;

  /// `counts` tells how many codewords there are of each length, `values` what they stand for. Empty when
  /// there cannot be so many, or more than 256.
  static std::optional<HuffmanCode> Make(std::span<const std::uint8_t, kLengths> counts,
                                         std::span<const std::uint8_t> values);

  /// The byte that the next bits stand for; marks `bits` as broken when they stand for none.
  std::uint8_t Decode(EntropyBits& bits) const;

 private:
  std::array<std::uint8_t, kLengths> counts_{};
  std::vector<std::uint8_t> values_;
};

}  // namespace qlx::platform
